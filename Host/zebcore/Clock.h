#pragma once

#include <cstdint>

namespace zebcore {

// The one place from which timers take their time, in milliseconds. It runs by itself, or stands still and is turned by
// hand.
class Clock {
 public:
  static Clock& Instance();

  std::int64_t Now() const;
  bool IsManual() const;
  // From now on the clock stands at its present time and moves by SetNow only.
  void UseManual();
  // Goes on from where it stands.
  void UseReal();
  // Moves a clock that stands still; never backwards, an earlier time changes nothing.
  void SetNow(std::int64_t milliseconds);

 private:
  Clock() = default;
  bool mManual = false;
  std::int64_t mNow = 0;    // where it stands
  std::int64_t mOffset = 0; // running: against the machine's clock
};

} // namespace zebcore
