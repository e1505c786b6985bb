#pragma once

#include <string>
#include <string_view>

#include "Formats/Formats.h"

// The line above a cue that says when it is on show: "00:00:01,000 --> 00:00:02,500".
namespace Formats {

struct CueTimes {
  zebmediatypes::TickTime begin;
  zebmediatypes::TickTime end;
  std::u16string_view rest; // what stands behind the end, without blanks around it
  std::string error;        // localised; empty if the times can be used
};

// "00:00:01.000", the usual way to name a caption in messages and in files; 0 to 9999 hours.
std::string PrintCueTime(std::int64_t milliseconds, char decimalMark);
std::string PrintCueTime(zebmediatypes::TickTime time);

// The line means to be such a line, right or wrong: it has an arrow, and digits where the times belong.
bool LooksLikeTimes(std::u16string_view line);

// SubRip as it is met: a comma or a point, one to nine digits behind it or none, hours or none; or frames instead of a
// fraction, "00:00:01:12", also behind a semicolon, which says that the count drops frames.
CueTimes ParseLooseTimes(std::u16string_view line, const FrameCount& frames = {});
// WebVTT: two digits of minutes and seconds, three behind the point (a comma is let through), hours or none.
CueTimes ParseStrictTimes(std::u16string_view line);

} // namespace Formats
