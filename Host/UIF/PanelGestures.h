#pragma once

#include "zebcore/UString.h"

namespace UIF {

using zebcore::UString;
class TabView;

// What a person could do in a panel by hand, for commands of the program that mean the same.

// Whether the panel has a button with this tool tip that can be pressed now.
bool CanPressButton(const TabView& view, const UString& toolTip);
// Presses it; false if it cannot be pressed.
bool PressButton(const TabView& view, const UString& toolTip);

// Whether a view inside the panel could take a key: it is shown and enabled.
bool CanPressKey(const TabView& view);
// A key, by the code that views receive, without modifiers, to the views inside the panel until one uses it. The focus
// goes to that view first, so that a text that is being typed is left.
bool PressKey(const TabView& view, short keyCode);

} // namespace UIF
