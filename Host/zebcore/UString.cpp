#include "zebcore/UString.h"

#include <cstdint>

namespace zebcore {

namespace {

constexpr char32_t kReplacement = 0xfffd;

void AppendUTF16(UString& out, char32_t c) {
  if (c < 0x10000) {
    out.push_back(static_cast<char16_t>(c));
    return;
  }
  out.push_back(static_cast<char16_t>(0xd7c0 + (c >> 10)));
  out.push_back(static_cast<char16_t>(0xdc00 + (c & 0x3ff)));
}

void AppendUTF8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out.push_back(static_cast<char>(0xc0 | c >> 6));
    out.push_back(static_cast<char>(0x80 | (c & 0x3f)));
  } else if (c < 0x10000) {
    out.push_back(static_cast<char>(0xe0 | c >> 12));
    out.push_back(static_cast<char>(0x80 | (c >> 6 & 0x3f)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3f)));
  } else {
    out.push_back(static_cast<char>(0xf0 | c >> 18));
    out.push_back(static_cast<char>(0x80 | (c >> 12 & 0x3f)));
    out.push_back(static_cast<char>(0x80 | (c >> 6 & 0x3f)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3f)));
  }
}

// What may follow a lead byte. The range of the first continuation byte keeps out overlong forms, surrogates and
// everything past U+10FFFF.
struct Lead {
  int continuations = 0;
  unsigned char low = 0x80;
  unsigned char high = 0xbf;
  char32_t bits = 0;
};

Lead ClassifyLead(unsigned char byte) {
  if (byte >= 0xc2 && byte <= 0xdf)
    return {1, 0x80, 0xbf, byte & 0x1fu};
  if (byte >= 0xe0 && byte <= 0xef)
    return {2, byte == 0xe0 ? std::uint8_t{0xa0} : std::uint8_t{0x80},
            byte == 0xed ? std::uint8_t{0x9f} : std::uint8_t{0xbf}, byte & 0x0fu};
  if (byte >= 0xf0 && byte <= 0xf4)
    return {3, byte == 0xf0 ? std::uint8_t{0x90} : std::uint8_t{0x80},
            byte == 0xf4 ? std::uint8_t{0x8f} : std::uint8_t{0xbf}, byte & 0x07u};
  return {};
}

} // namespace

UString FromUTF8(std::string_view text) {
  UString out;
  out.reserve(text.size());
  std::size_t i = 0;
  while (i < text.size()) {
    const auto byte = static_cast<unsigned char>(text[i++]);
    if (byte < 0x80) {
      out.push_back(byte);
      continue;
    }
    Lead lead = ClassifyLead(byte);
    if (lead.continuations == 0) {
      out.push_back(kReplacement);
      continue;
    }
    // A byte that does not belong is not eaten: it begins the next sequence.
    while (lead.continuations > 0 && i < text.size()) {
      const auto next = static_cast<unsigned char>(text[i]);
      if (next < lead.low || next > lead.high)
        break;
      lead = {lead.continuations - 1, 0x80, 0xbf, lead.bits << 6 | (next & 0x3fu)};
      ++i;
    }
    AppendUTF16(out, lead.continuations == 0 ? lead.bits : kReplacement);
  }
  return out;
}

std::string ToUTF8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char32_t unit = text[i];
    const bool high = unit >= 0xd800 && unit <= 0xdbff;
    const bool low = unit >= 0xdc00 && unit <= 0xdfff;
    if (high && i + 1 < text.size() && text[i + 1] >= 0xdc00 && text[i + 1] <= 0xdfff)
      AppendUTF8(out, 0x10000 + ((unit - 0xd800) << 10) + (text[++i] - 0xdc00u));
    else
      AppendUTF8(out, high || low ? kReplacement : unit);
  }
  return out;
}

} // namespace zebcore
