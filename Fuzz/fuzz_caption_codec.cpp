#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "zebcaptioning/CaptionCodec.h"

// Bytes as a stored caption: what is decoded is whole, and comes out as it was after another turn.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  zebcaptioning::Decode(bytes);
  const zebcaptioning::CaptionStatePtr state = zebcaptioning::DecodeWithoutChecksum(bytes);
  if (!state)
    return 0;
  if (state->runs.empty() || state->runs.front().start != 0)
    std::abort();
  for (std::size_t i = 1; i < state->runs.size(); ++i) {
    if (state->runs[i].start <= state->runs[i - 1].start)
      std::abort();
  }
  const zebcaptioning::CaptionStatePtr again = zebcaptioning::Decode(zebcaptioning::Encode(*state));
  if (!again || !(*again == *state))
    std::abort();
  return 0;
}
