#include "Formats/Text.h"

#include <array>
#include <charconv>

#include "zebcore/Localizer.h"

namespace Formats {

using zebcore::UString;

namespace {

constexpr std::size_t kQuoteLength = 60;

} // namespace

std::string Say(std::string_view keyWithDefault, const std::vector<std::string>& values) {
  const std::string pattern = zebcore::ToUTF8(zebcore::config::Localizer::Get().Localize(keyWithDefault));
  std::string text;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool isPlace = pattern[i] == '{' && i + 2 < pattern.size() && pattern[i + 2] == '}' &&
                         pattern[i + 1] >= '0' && pattern[i + 1] <= '9';
    if (!isPlace) {
      text += pattern[i];
      continue;
    }
    const auto index = static_cast<std::size_t>(pattern[i + 1] - '0');
    if (index < values.size())
      text += values[index];
    i += 2;
  }
  return text;
}

std::string Quote(std::u16string_view text) {
  text = Trim(text);
  const bool isLong = text.size() > kQuoteLength;
  if (isLong) {
    text = text.substr(0, kQuoteLength);
    if (text.back() >= 0xD800 && text.back() < 0xDC00)
      text.remove_suffix(1);
  }
  std::string quoted;
  for (const char c : zebcore::ToUTF8(text))
    quoted += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
  return isLong ? quoted + "…" : quoted;
}

bool IsSpace(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\f';
}
bool IsDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

bool IsBlank(std::u16string_view line) {
  return Trim(line).empty();
}

std::u16string_view Trim(std::u16string_view text) {
  while (!text.empty() && IsSpace(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && IsSpace(text.back()))
    text.remove_suffix(1);
  return text;
}

UString LowerASCII(std::u16string_view text) {
  UString lower(text);
  for (char16_t& c : lower) {
    if (c >= u'A' && c <= u'Z')
      c = static_cast<char16_t>(c + (u'a' - u'A'));
  }
  return lower;
}

bool AllDigits(std::u16string_view text) {
  for (const char16_t c : text) {
    if (!IsDigit(c))
      return false;
  }
  return !text.empty();
}

std::string NarrowASCII(std::u16string_view text) {
  std::string narrow;
  for (const char16_t c : text)
    narrow += c < 0x80 ? static_cast<char>(c) : '?';
  return narrow;
}

std::optional<double> ParseNumber(std::u16string_view text) {
  if (text.empty() || text.size() > 20)
    return std::nullopt;
  const std::string narrow = NarrowASCII(text);
  for (std::size_t i = 0; i < narrow.size(); ++i) {
    const bool isSign = i == 0 && narrow[i] == '-' && narrow.size() > 1;
    const bool isPoint = narrow[i] == '.' && i > 0 && i + 1 < narrow.size();
    if (!isSign && !isPoint && !(narrow[i] >= '0' && narrow[i] <= '9'))
      return std::nullopt;
  }
  double value = 0;
  const auto [end, error] = std::from_chars(narrow.data(), narrow.data() + narrow.size(), value);
  if (error != std::errc() || end != narrow.data() + narrow.size())
    return std::nullopt;
  return value;
}

Lines::Lines(std::u16string_view text) : mText(text) {
  std::size_t begin = 0;
  while (begin < text.size()) {
    std::size_t end = text.find_first_of(u"\r\n", begin);
    if (end == std::u16string_view::npos)
      end = text.size();
    mStarts.emplace_back(begin, end);
    begin = end + 1;
    if (end + 1 < text.size() && text[end] == u'\r' && text[end + 1] == u'\n')
      ++begin;
  }
}

std::u16string_view Lines::operator[](std::size_t line) const {
  return mText.substr(mStarts[line].first, mStarts[line].second - mStarts[line].first);
}

namespace {

void AppendCodePoint(UString& text, std::uint32_t c) {
  if (c == 0 || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000))
    c = 0xFFFD;
  if (c == u'\r')
    c = u'\n';
  if (c < 0x10000) {
    text += static_cast<char16_t>(c);
  } else {
    text += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
  }
}

Entity ParseNumericEntity(std::u16string_view text) {
  const bool isHex = text.size() > 2 && (text[2] == u'x' || text[2] == u'X');
  const std::size_t start = isHex ? 3 : 2;
  std::uint32_t value = 0;
  std::size_t i = start;
  for (; i < text.size() && i < start + 8; ++i) {
    const char16_t c = text[i];
    std::uint32_t digit = 0;
    if (IsDigit(c))
      digit = static_cast<std::uint32_t>(c - u'0');
    else if (isHex && c >= u'a' && c <= u'f')
      digit = static_cast<std::uint32_t>(c - u'a' + 10);
    else if (isHex && c >= u'A' && c <= u'F')
      digit = static_cast<std::uint32_t>(c - u'A' + 10);
    else
      break;
    value = value * (isHex ? 16 : 10) + digit;
  }
  if (i == start || i >= text.size() || text[i] != u';')
    return {};
  Entity entity;
  AppendCodePoint(entity.text, value);
  entity.length = i + 1;
  return entity;
}

} // namespace

Entity ParseEntity(std::u16string_view text) {
  struct Named {
    std::u16string_view name;
    char16_t character;
  };
  static constexpr std::array<Named, 8> kNamed{{{u"&amp;", u'&'},
                                                {u"&lt;", u'<'},
                                                {u"&gt;", u'>'},
                                                {u"&nbsp;", 0x00A0},
                                                {u"&lrm;", 0x200E},
                                                {u"&rlm;", 0x200F},
                                                {u"&quot;", u'"'},
                                                {u"&apos;", u'\''}}};
  if (text.size() < 3 || text[0] != u'&')
    return {};
  if (text[1] == u'#')
    return ParseNumericEntity(text);
  for (const Named& named : kNamed) {
    if (text.starts_with(named.name))
      return {UString(1, named.character), named.name.size()};
  }
  return {};
}

} // namespace Formats
