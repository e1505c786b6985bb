#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "Formats/CueBuilder.h"

// Captions cut, joined and broken into lines, with every word's attributes kept. All functions are pure: they give new
// states and leave the old ones alone.
namespace Formats {

using CaptionDraft = boost::intrusive_ptr<zebcaptioning::CaptionState>;
CaptionDraft CopyCaption(const zebcaptioning::CaptionState& state);

// Units from begin up to end of the text, and what stands there instead; 0 for nothing.
struct TextChange {
  std::size_t begin;
  std::size_t end;
  char16_t with;
};
// Changes are in order and do not meet.
void ChangeText(zebcaptioning::CaptionState& caption, std::span<const TextChange> changes);

// Units from begin up to end, with times and place of the whole. What it takes goes by the part and not by the whole.
CaptionDraft CutCaption(const zebcaptioning::CaptionState& state, std::size_t begin, std::size_t end);
// The other one's text comes below, behind a line feed; of texts without a character nothing is seen.
void AppendBelow(zebcaptioning::CaptionState& caption, const zebcaptioning::CaptionState& below);

// A closed caption whose text was another one before: where it stood by itself it does so again, and one with a place
// of its own stays there as far as the grid holds its lines.
void PlaceAgain(zebcaptioning::CaptionState& caption, std::u16string_view textBefore, StreamFormat format);
// Likewise; before is where it would have stood by itself.
void PlaceAgain(zebcaptioning::CaptionState& caption, const Placement& before, StreamFormat format);

// Cells that a line takes: a character outside the basic plane is one, a combining mark none.
std::size_t CountCells(std::u16string_view line);
// Where lines may be broken: blank, tab, ideographic space.
bool IsBreakable(char16_t c);

} // namespace Formats
