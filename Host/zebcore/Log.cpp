#include "zebcore/Log.h"

#include <cstdio>
#include <mutex>

namespace zebcore::log {

namespace {

struct Output {
  std::mutex mutex;
  Sink sink;
};

Output& TheOutput() {
  static auto* const output = new Output;
  return *output;
}

const char* NameOf(Level level) {
  switch (level) {
  case Level::Info:
    return "info";
  case Level::Warning:
    return "warning";
  case Level::Error:
    break;
  }
  return "error";
}

} // namespace

void Write(Level level, std::string_view text) {
  Output& output = TheOutput();
  Sink sink;
  {
    std::lock_guard lock(output.mutex);
    sink = output.sink;
  }
  if (sink)
    sink(level, text);
  else
    std::fprintf(stderr, "captivo: %s: %.*s\n", NameOf(level), static_cast<int>(text.size()), text.data());
}

void SetSink(Sink sink) {
  Output& output = TheOutput();
  std::lock_guard lock(output.mutex);
  output.sink.swap(sink);
}

} // namespace zebcore::log
