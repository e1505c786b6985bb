#include <algorithm>

#include <unicode/ucnv.h>

#include "Formats/Formats.h"
#include "Formats/Text.h"

namespace Formats {

using zebcore::UString;

namespace {

// As far as anything about a file as a whole is guessed from its beginning.
constexpr std::size_t kSampleSize = 1 << 16;

enum class Wide { No, LittleEndian, BigEndian };

// UTF-16 without a mark: every caption file has arrows, or the signature, whatever script its words are in.
Wide GuessWide(std::string_view bytes) {
  using namespace std::string_view_literals;
  const std::string_view sample = bytes.substr(0, kSampleSize);
  if (sample.find('\0') == std::string_view::npos)
    return Wide::No;
  const auto isAt = [&](std::string_view pattern, std::size_t parity) {
    for (std::size_t at = sample.find(pattern); at != std::string_view::npos; at = sample.find(pattern, at + 1)) {
      if (at % 2 == parity)
        return true;
    }
    return false;
  };
  for (const std::string_view ascii : {"-->"sv, "WEBVTT"sv}) {
    std::string little;
    std::string big;
    for (const char c : ascii) {
      little += c;
      little += '\0';
      big += '\0';
      big += c;
    }
    if (isAt(little, 0))
      return Wide::LittleEndian;
    if (isAt(big, 0))
      return Wide::BigEndian;
  }
  return Wide::No;
}

struct Utf8Check {
  std::size_t sequences = 0; // well-formed, of more than one byte
  std::size_t broken = 0;
};

// RFC 3629: how many bytes the well-formed sequence at the start has; 0 for a broken one.
std::size_t Utf8Length(std::string_view bytes) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const auto isTail = [&](std::size_t i) { return i < bytes.size() && (at(i) & 0xC0) == 0x80; };
  const unsigned first = at(0);
  if (first < 0x80)
    return 1;
  if (first >= 0xC2 && first < 0xE0)
    return isTail(1) ? 2 : 0;
  if (first >= 0xE0 && first < 0xF0) {
    if (!isTail(1) || !isTail(2))
      return 0;
    const bool isOverlong = first == 0xE0 && at(1) < 0xA0;
    const bool isSurrogate = first == 0xED && at(1) >= 0xA0;
    return isOverlong || isSurrogate ? 0 : 3;
  }
  if (first >= 0xF0 && first < 0xF5) {
    if (!isTail(1) || !isTail(2) || !isTail(3))
      return 0;
    const bool isOverlong = first == 0xF0 && at(1) < 0x90;
    const bool isTooLarge = first == 0xF4 && at(1) >= 0x90;
    return isOverlong || isTooLarge ? 0 : 4;
  }
  return 0;
}

Utf8Check CheckUtf8(std::string_view bytes) {
  Utf8Check check;
  for (std::size_t i = 0; i < bytes.size();) {
    const std::size_t length = Utf8Length(bytes.substr(i, 4));
    if (length > 1)
      ++check.sequences;
    if (length == 0)
      ++check.broken;
    i += length == 0 ? 1 : length;
  }
  return check;
}

bool HasC1(std::string_view bytes) {
  for (const char c : bytes) {
    if (static_cast<unsigned char>(c) >= 0x80 && static_cast<unsigned char>(c) < 0xA0)
      return true;
  }
  return false;
}

// Without a byte order mark. A text in UTF-8 with a few damaged characters is still UTF-8: single bytes above 0x7F that
// happen to form well-formed sequences are rare in the Latin encodings.
std::string GuessEncoding(std::string_view bytes) {
  switch (GuessWide(bytes)) {
  case Wide::LittleEndian:
    return "UTF-16LE";
  case Wide::BigEndian:
    return "UTF-16BE";
  case Wide::No:
    break;
  }
  const Utf8Check check = CheckUtf8(bytes);
  if (check.broken == 0 || check.sequences >= check.broken * 10)
    return "UTF-8";
  return HasC1(bytes) ? "windows-1252" : "ISO-8859-1";
}

UString Convert(std::string_view bytes, const std::string& encoding) {
  UErrorCode status = U_ZERO_ERROR;
  UConverter* converter = ucnv_open(encoding.c_str(), &status);
  UString text;
  if (U_FAILURE(status))
    return text;
  // The largest a text can become: one unit for each byte or pair; a broken byte becomes one U+FFFD.
  text.resize((encoding.starts_with("UTF-16") ? bytes.size() / 2 : bytes.size()) + 2);
  UChar* target = text.data();
  const char* source = bytes.data();
  ucnv_toUnicode(converter, &target, text.data() + text.size(), &source, bytes.data() + bytes.size(), nullptr, true,
                 &status);
  text.resize(static_cast<std::size_t>(target - text.data()));
  ucnv_close(converter);
  return text;
}

} // namespace

bool IsBinary(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
    return false;
  const std::string_view sample = bytes.substr(0, kSampleSize);
  const auto zeros = static_cast<std::size_t>(std::count(sample.begin(), sample.end(), '\0'));
  // A stray zero is damage; one in ten is no text.
  return zeros * 10 > sample.size() && GuessWide(bytes) == Wide::No;
}

UString DecodeText(std::string_view bytes, std::string& encoding) {
  if (bytes.starts_with("\xEF\xBB\xBF")) {
    encoding = "UTF-8";
    bytes.remove_prefix(3);
  } else if (bytes.starts_with("\xFF\xFE")) {
    encoding = "UTF-16LE";
    bytes.remove_prefix(2);
  } else if (bytes.starts_with("\xFE\xFF")) {
    encoding = "UTF-16BE";
    bytes.remove_prefix(2);
  } else {
    encoding = GuessEncoding(bytes);
  }
  UString text = Convert(bytes, encoding);
  // A zero is no character of any text; it would end strings further down the road.
  for (char16_t& c : text) {
    if (c == 0)
      c = 0xFFFD;
  }
  return text;
}

} // namespace Formats
