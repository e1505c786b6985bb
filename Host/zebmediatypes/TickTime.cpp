#include "zebmediatypes/TickTime.h"

#include <cmath>

#include "zebmediatypes/FrameRate.h"
#include "zebmediatypes/WideInteger.h"

namespace zebmediatypes {

void TickTime::AlignToFrame(const FrameRate& rate) {
  if (!rate.IsValid() || *this == kTime_Invalid)
    return;
  const Int128 frame = FloorDivide(mTicks, rate.GetTicksPerFrame());
  const Int128 start = frame * rate.GetTicksPerFrame();
  // The frame at the very bottom may begin before the least time there is.
  mTicks = start < kTime_Min.GetTicks() ? kTime_Min.GetTicks() : static_cast<std::int64_t>(start);
}

TickTime TickTimeFromSeconds(double seconds) {
  if (std::isnan(seconds))
    return kTime_Invalid;
  // A long double holds every product that fits a time; the limits are powers of two and exact.
  const long double ticks = std::round(static_cast<long double>(seconds) * kTicksPerSecond);
  if (ticks >= 0x1p63L)
    return kTime_Max;
  if (ticks <= -0x1p63L)
    return kTime_Min;
  return TickTime(static_cast<std::int64_t>(ticks));
}

double ToSeconds(TickTime time) {
  return static_cast<double>(static_cast<long double>(time.GetTicks()) / kTicksPerSecond);
}

TickTime TickTimeFromRational(std::int64_t value, std::int64_t numerator, std::int64_t denominator) {
  if (denominator == 0)
    return kTime_Invalid;
  Int128 dividend = Int128{value} * numerator;
  Int128 divisor = denominator;
  if (divisor < 0) {
    dividend = -dividend;
    divisor = -divisor;
  }
  const bool isNegative = dividend < 0;
  if (isNegative)
    dividend = -dividend;
  const Int128 wholeSeconds = dividend / divisor;
  // The sum below would still fit, but the time would not.
  if (wholeSeconds > kTime_Max.GetTicks() / kTicksPerSecond)
    return isNegative ? kTime_Min : kTime_Max;
  const Int128 rest = dividend % divisor * kTicksPerSecond;
  const Int128 ticks = wholeSeconds * kTicksPerSecond + (rest + divisor / 2) / divisor;
  if (ticks > kTime_Max.GetTicks())
    return isNegative ? kTime_Min : kTime_Max;
  return TickTime(static_cast<std::int64_t>(isNegative ? -ticks : ticks));
}

} // namespace zebmediatypes
