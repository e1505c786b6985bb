#include "zebmediatypes/FrameRate.h"

#include "zebmediatypes/WideInteger.h"

namespace zebmediatypes {

FrameRate FrameRate::FromRational(std::int64_t numerator, std::int64_t denominator) {
  if (numerator == 0 || denominator == 0 || (numerator < 0) != (denominator < 0))
    return kFrameRate_Invalid;
  const Int128 frames = numerator < 0 ? -Int128{numerator} : Int128{numerator};
  const Int128 seconds = denominator < 0 ? -Int128{denominator} : Int128{denominator};
  const Int128 ticks = (seconds * kTicksPerSecond + frames / 2) / frames;
  return ticks > 0 && ticks < kInvalidTicks ? FrameRate(static_cast<std::int64_t>(ticks)) : kFrameRate_Invalid;
}

} // namespace zebmediatypes
