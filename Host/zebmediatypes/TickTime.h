#pragma once

#include <compare>
#include <cstdint>
#include <limits>

namespace zebmediatypes {

class FrameRate;

inline constexpr std::int64_t kTicksPerSecond = 254016000000;

// A time or a duration in ticks. Sums and differences wrap around; the order is that of signed numbers.
class TickTime {
 public:
  constexpr TickTime() = default;
  constexpr explicit TickTime(std::int64_t ticks) : mTicks(ticks) {}

  constexpr std::int64_t GetTicks() const { return mTicks; }

  // Down to the start of the frame that is on show at this time, exact at any time; not below kTime_Min. An invalid or
  // zero rate changes nothing, and the invalid time stays invalid.
  void AlignToFrame(const FrameRate& rate);

  friend constexpr TickTime operator+(TickTime a, TickTime b) {
    return TickTime(
        static_cast<std::int64_t>(static_cast<std::uint64_t>(a.mTicks) + static_cast<std::uint64_t>(b.mTicks)));
  }
  friend constexpr TickTime operator-(TickTime a, TickTime b) {
    return TickTime(
        static_cast<std::int64_t>(static_cast<std::uint64_t>(a.mTicks) - static_cast<std::uint64_t>(b.mTicks)));
  }
  friend constexpr auto operator<=>(TickTime, TickTime) = default;

 private:
  std::int64_t mTicks = 0;
};

inline constexpr TickTime kTime_Zero{0};
inline constexpr TickTime kTime_Min{std::numeric_limits<std::int64_t>::min() + 1};
inline constexpr TickTime kTime_Max{std::numeric_limits<std::int64_t>::max()};
inline constexpr TickTime kTime_Invalid{std::numeric_limits<std::int64_t>::min()};

// To the nearest tick; saturates at kTime_Min and kTime_Max. Not a number is the invalid time.
TickTime TickTimeFromSeconds(double seconds);
double ToSeconds(TickTime time);
// value * numerator / denominator seconds, to the nearest tick, without overflow between; saturates. The invalid time
// for a zero denominator.
TickTime TickTimeFromRational(std::int64_t value, std::int64_t numerator, std::int64_t denominator);

} // namespace zebmediatypes
