#pragma once

#include "zebmediatypes/FrameRate.h"
#include "zebmediatypes/TimeDisplay.h"

namespace UIF {

struct TimecodeControlInfo {
  zebmediatypes::TimeDisplay display;
  zebmediatypes::FrameRate videoRate;
  zebmediatypes::FrameRate audioRate;
};

} // namespace UIF
