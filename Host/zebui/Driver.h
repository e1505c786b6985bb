#pragma once

#include "zebcore/UString.h"
#include "zebui/Keyboard.h"

// A person at the keyboard, for whoever drives the program.
namespace zebui::driver {

// One press and release at whatever has the focus, through all phases of a key press; text is what the key types. True
// if the press was used by anyone.
bool PressKey(ui::KeyboardCode code, ui::ModKey modifiers = ui::kModKey_None, const zebcore::UString& text = {});
// Key by key; a surrogate pair is one key, CR LF, CR and LF are each one Enter. True if all of it was used.
bool TypeText(const zebcore::UString& text);
// What an input method does: shows a text that is being composed, then puts in the one that was meant.
void ComposeText(const zebcore::UString& preedit, const zebcore::UString& commit);

} // namespace zebui::driver
