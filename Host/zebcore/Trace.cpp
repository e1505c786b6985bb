#include "zebcore/Trace.h"

#include <atomic>
#include <mutex>
#include <thread>
#include <utility>

namespace zebcore::trace {

namespace {

std::atomic<bool> gOn{false};
thread_local bool tAnnotating = false;

struct Tape {
  std::mutex mutex;
  std::vector<Call> calls;
  Annotator annotator;
  std::thread::id annotatorThread;
};

Tape& TheTape() {
  static auto* const tape = new Tape;
  return *tape;
}

void Annotate(Call& call) {
  if (tAnnotating)
    return;
  Annotator annotator;
  {
    Tape& tape = TheTape();
    std::lock_guard lock(tape.mutex);
    if (tape.annotator && tape.annotatorThread == std::this_thread::get_id())
      annotator = tape.annotator;
  }
  if (!annotator)
    return;
  struct Scope {
    Scope() { tAnnotating = true; }
    ~Scope() { tAnnotating = false; }
  } scope;
  annotator(call);
}

} // namespace

bool IsOn() noexcept {
  return gOn.load(std::memory_order_relaxed);
}

void SetOn(bool on) {
  gOn.store(on, std::memory_order_relaxed);
}

void Record(const char* call, nlohmann::json args, const void* subject) {
  if (!IsOn())
    return;
  Call record{call, std::move(args), subject};
  Annotate(record);
  Tape& tape = TheTape();
  std::lock_guard lock(tape.mutex);
  tape.calls.push_back(std::move(record));
}

std::vector<Call> Take() {
  Tape& tape = TheTape();
  std::lock_guard lock(tape.mutex);
  return std::exchange(tape.calls, {});
}

void SetAnnotator(Annotator annotator) {
  Tape& tape = TheTape();
  std::lock_guard lock(tape.mutex);
  tape.annotator.swap(annotator);
  tape.annotatorThread = std::this_thread::get_id();
}

} // namespace zebcore::trace
