#include "Fuzz/RoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CheckReader(data, size, Formats::FileKind::WebVTT);
  return 0;
}
