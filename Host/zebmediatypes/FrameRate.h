#pragma once

#include <compare>
#include <cstdint>
#include <limits>

#include "zebmediatypes/TickTime.h"

namespace zebmediatypes {

// A frame rate, held as the duration of one frame in ticks. Audio rates are frame rates too: one frame is one sample.
class FrameRate {
 public:
  // The invalid rate.
  constexpr FrameRate() = default;
  constexpr explicit FrameRate(std::int64_t ticksPerFrame) : mTicksPerFrame(ticksPerFrame) {}
  // numerator / denominator frames a second, for instance 30000, 1001; to the nearest tick. Invalid for a rate that is
  // not above zero.
  static FrameRate FromRational(std::int64_t numerator, std::int64_t denominator);

  constexpr std::int64_t GetTicksPerFrame() const { return mTicksPerFrame; }
  constexpr TickTime GetFrameDuration() const { return TickTime(mTicksPerFrame); }
  constexpr bool IsValid() const { return mTicksPerFrame > 0 && mTicksPerFrame != kInvalidTicks; }

  friend constexpr auto operator<=>(FrameRate, FrameRate) = default;

  static constexpr std::int64_t kInvalidTicks = std::numeric_limits<std::int64_t>::max();

 private:
  std::int64_t mTicksPerFrame = kInvalidTicks;
};

inline constexpr FrameRate kFrameRate_Invalid{FrameRate::kInvalidTicks};
inline constexpr FrameRate kFrameRate_Zero{0};
inline constexpr FrameRate kFrameRate_23976{kTicksPerSecond / 24000 * 1001};
inline constexpr FrameRate kFrameRate_24{kTicksPerSecond / 24};
inline constexpr FrameRate kFrameRate_25{kTicksPerSecond / 25};
inline constexpr FrameRate kFrameRate_2997{kTicksPerSecond / 30000 * 1001};
inline constexpr FrameRate kFrameRate_30{kTicksPerSecond / 30};
inline constexpr FrameRate kFrameRate_48{kTicksPerSecond / 48};
inline constexpr FrameRate kFrameRate_50{kTicksPerSecond / 50};
inline constexpr FrameRate kFrameRate_5994{kTicksPerSecond / 60000 * 1001};
inline constexpr FrameRate kFrameRate_60{kTicksPerSecond / 60};

} // namespace zebmediatypes
