#pragma once

#include "BE/CaptionsSettings.h"
#include "Formats/Formats.h"

// What becomes of the captions of a file, as the project's settings have it, before they are put into a stream. Each
// treatment is a pure function from captions to captions; its time grows with their number and the length of their
// text. What was asked for is told in one line for all captions, what was lost or could not be done for each.
namespace Formats {

using Captions = std::vector<zebcaptioning::CaptionStatePtr>;
using Problems = std::vector<Problem>;

// Each field of the style alone, for captions that bring none: where no character looks other than one without tags
// does. Problems tell what the format cannot hold.
Captions GiveStyle(Captions captions, const BE::ImportStyle& style, zebcaptioning::StreamFormat format,
                   Problems& problems);
// For captions without a place: an alignment of their own stays. Centred at the bottom is where they stand by
// themselves, and changes nothing.
Captions GivePlace(Captions captions, int alignment, int anchor, zebcaptioning::StreamFormat format);

// What begins before zero begins at zero; what ends there or before is left out, as is what lies behind the latest
// time.
Captions ShiftTimes(Captions captions, zebmediatypes::TickTime offset, Problems& problems);

// Lines of more than length cells. A word that is longer stays in one piece. No length: nothing.
Captions BreakLines(Captions captions, BE::LongLines how, std::size_t length, zebcaptioning::StreamFormat format,
                    Problems& problems);
// Captions of more than lineCount lines, one part after the other and as even as can be.
Captions SplitCaptions(Captions captions, std::size_t lineCount, zebcaptioning::StreamFormat format,
                       Problems& problems);

// Captions that share time; in any case the captions come out by begin time. Ending earlier and beginning later leave
// nothing that overlaps: two that begin at once, or one that would have no time left, are put together or the earlier
// one ends sooner. Merging leaves more than kMostMerged at one time as they are.
inline constexpr std::size_t kMostMerged = 8;
Captions ResolveOverlaps(Captions captions, BE::Overlaps how, zebcaptioning::StreamFormat format, Problems& problems);
// On show for at least that long, as far as the next one leaves room. By begin time already.
Captions LengthenCaptions(Captions captions, zebmediatypes::TickTime minimum, Problems& problems);

// All of it, in an order in which no treatment undoes another: style, place, offset, lines, overlaps, split, duration.
// columns is the grid's width for lines without a length of their own; 0 for none.
void Treat(ReadResult& result, const BE::CaptionsImportSettings& settings, zebcaptioning::StreamFormat format,
           int columns, const Progress& progress = {});

} // namespace Formats
