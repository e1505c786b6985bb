#include "zebcore/Clock.h"

#include <chrono>

namespace zebcore {

namespace {

std::int64_t MachineNow() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

Clock& Clock::Instance() {
  static Clock clock;
  return clock;
}

std::int64_t Clock::Now() const {
  return mManual ? mNow : MachineNow() + mOffset;
}

bool Clock::IsManual() const {
  return mManual;
}

void Clock::UseManual() {
  mNow = Now();
  mManual = true;
}

void Clock::UseReal() {
  if (!mManual)
    return;
  mOffset = mNow - MachineNow();
  mManual = false;
}

void Clock::SetNow(std::int64_t milliseconds) {
  if (mManual && milliseconds > mNow)
    mNow = milliseconds;
}

} // namespace zebcore
