#pragma once

#include <optional>

#include "Formats/CueBuilder.h"

// Tags inside the text of captions.
namespace Formats {

enum class Dialect { SubRip, WebVTT };

// Appends a cue's text, lines parted by line feeds, to the builder: tags become attributes, character references become
// characters, and what cannot be kept is among the builder's losses. The anchor that an override ("{\an8}", SubRip
// only) gives, if one does.
std::optional<int> AppendMarkup(std::u16string_view text, Dialect dialect, CueBuilder& builder);

// The inside of an override block of Advanced SubStation Alpha, "\an8\b1"; plain is what "\r" goes back to. Sets the
// anchor if the block does; isDrawing says whether shapes instead of words follow.
void ApplyOverrides(std::u16string_view block, const TextSpanAttributes& plain, CueBuilder& builder,
                    std::optional<int>& anchor, bool& isDrawing);
// The text of an event of that format: override blocks, "\N", "\n" and "\h".
std::optional<int> AppendEventText(std::u16string_view text, const TextSpanAttributes& plain, CueBuilder& builder);
// "&HBBGGRR&", "&HAABBGGRR" or the number alone; transparency is left out.
std::optional<CaptioningColor> ParseEventColor(std::u16string_view text);
// From the numeric keypad's 1 to 9 to a cell of the grid.
int AnchorFromKeypad(int key);
int KeypadFromAnchor(int anchor);

} // namespace Formats
