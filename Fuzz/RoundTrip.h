#pragma once

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Formats/Formats.h"

// What is read can be written, and what was written is read without loss: the same times and words.
inline void CheckReader(const std::uint8_t* data, std::size_t size, Formats::FileKind kind) {
  using zebcaptioning::CaptionStatePtr;
  constexpr zebcaptioning::StreamFormat kFormats[] = {zebcaptioning::kStreamFormat_608_CC1, 0x4F504E31};
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto read = [&](std::string_view text, zebcaptioning::StreamFormat format) {
    return kind == Formats::FileKind::SubRip ? Formats::ReadSubRip(text, format) : Formats::ReadWebVTT(text, format);
  };
  for (const zebcaptioning::StreamFormat format : kFormats) {
    const Formats::ReadResult first = read(bytes, format);
    for (const CaptionStatePtr& state : first.captions) {
      if (state->runs.empty() || state->runs.front().start != 0 || state->end <= state->begin)
        std::abort();
    }
    if (first.captions.empty())
      continue;
    const Formats::WriteResult written = Formats::Write(kind, first.captions, format);
    const Formats::ReadResult second = read(written.bytes, format);
    if (second.captions.size() > first.captions.size() || !second.error.empty())
      std::abort();
  }
}
