#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "BE/Project.h"
#include "Captions/contracts/Caption.h"

// What the updater's edits make of a caption, and what their steps are called.
namespace HSL::steps {

using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;

// In the language of the program.
zebcore::UString AddName();
zebcore::UString DeleteName();
zebcore::UString TypeName();
zebcore::UString MoveName();
zebcore::UString FormatName(zebcaptioning::CaptionFormatParameter parameter);

// Ranges count a CR LF pair of the text as one unit. What comes of a caption still has to be measured.
CaptionStatePtr Retype(const CaptionStatePtr& state, const zebcore::UString& oldText, const zebcore::UString& newText,
                       const zebcaptioning::TextRange& caret);
CaptionStatePtr Reformat(const BE::CaptioningStream& stream, const CaptionStatePtr& state,
                         zebcaptioning::CaptionFormatParameter parameter, const zebcaptioning::CaptionFormatInfo& info,
                         const zebcaptioning::TextRange& range);

// Measures open captions in the frame of the stream's clip.
void Measure(const BE::CaptioningStream& stream, std::vector<CaptionStatePtr>& states);
// An open caption's measure goes with its text and its format; that of a closed one is in cells and needs none.
void MeasureChanged(const BE::CaptioningStream& stream, std::vector<BE::CaptionDelta>& deltas);

// Adds to deltas that remove captions those that move every later caption up by what went before it.
void CloseGaps(const BE::CaptioningStream& stream, std::vector<BE::CaptionDelta>& deltas);

} // namespace HSL::steps
