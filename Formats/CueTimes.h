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

// The line means to be such a line, right or wrong: it has an arrow, and digits where the times belong.
bool LooksLikeTimes(std::u16string_view line);

// SubRip as it is met: a comma or a point, one to nine digits behind it or none, hours or none.
CueTimes ParseLooseTimes(std::u16string_view line);
// WebVTT: two digits of minutes and seconds, three behind the point (a comma is let through), hours or none.
CueTimes ParseStrictTimes(std::u16string_view line);

} // namespace Formats
