#pragma once

#include <cstddef>
#include <cstdint>

#include "Captions/contracts/Caption.h"

// What may be done to a caption's text and attributes: pure functions from one state to the next. A function that has
// nothing to change gives the state that it was given.
namespace zebcaptioning {

// The range inside the text, ordered, and grown so that it begins and ends between characters.
TextRange ClampRange(const zebcore::UString& text, TextRange range);

// The run that the unit at index belongs to; the last one for an index at or behind the end.
std::size_t FindRun(const CaptionState& state, std::size_t index);
// What a character typed there would look like: the typing style if it was set at that place, else the run before it,
// else the first run. An index inside a surrogate pair counts as in front of it.
const SharedSpan& GetTypingStyle(const CaptionState& state, std::size_t index);

// The state with the line width and block height that were measured in a frame, as MeasureMark names it.
CaptionStatePtr WithMeasure(const CaptionState& state, int lineWidth, int blockHeight, std::uint32_t frame);

// The new text, with the runs of what both texts begin and end with; what was typed between takes the typing style if
// it was set at that place, else the run before it. caret is the selection after the change: it tells where, among
// equal characters, the change happened; kTextRange_End for its first where that is not known. The typing style has
// been used up. A text without runs of its own any more keeps the first one.
CaptionStatePtr ReplaceText(const CaptionStatePtr& state, const zebcore::UString& newText, const TextRange& caret);

// One attribute of info. A span attribute goes to the range, which splits at most two runs, and an empty range makes it
// the style of what is typed there next; but the whole of an empty text is its one run. A paragraph attribute goes to
// the caption. An edge colour comes with info's edge width and the reverse; the force flags bring bold and italic along
// with a span attribute. What the format does not allow is not stored, positions are moved into the grid's rows and
// columns. columns and rows as GetFormatInfo takes them; 0 for the format's own.
CaptionStatePtr ApplyToRange(const CaptionStatePtr& state, CaptionFormatParameter parameter,
                             const CaptionFormatInfo& info, const TextRange& range, StreamFormat format,
                             int columns = 0, int rows = 0);

// Puts the runs into their proper form: one at 0, rising starts inside the text, no two equal neighbours, no null.
void NormaliseRuns(CaptionState& state);
// A run for each stretch of the text; what they leave uncovered in front takes the default attributes.
CaptionStatePtr MakeCaptionState(const zebmediatypes::TickTime& begin, const zebmediatypes::TickTime& end,
                                 zebcore::UString text, std::vector<TextRun> runs = {},
                                 const ParagraphStyleAttributes& paragraph = {});

} // namespace zebcaptioning
