#include <algorithm>
#include <cstdlib>

#include "Formats/Markup.h"
#include "Formats/Text.h"

namespace Formats {

namespace {

// What a code asks for: 1 or no number sets, 0 clears. Weights count as bold from 600 on.
bool IsSet(std::u16string_view value) {
  const std::optional<double> number = ParseNumber(value);
  return number && (*number == 1 || *number == -1 || *number >= 600);
}

std::optional<int> SmallNumber(std::u16string_view value) {
  if (!AllDigits(value) || value.size() > 2)
    return std::nullopt;
  int number = 0;
  for (const char16_t c : value)
    number = number * 10 + (c - u'0');
  return number;
}

// The older alignment code: 1 to 3 at the bottom, 5 to 7 at the top, 9 to 11 in the middle.
std::optional<int> AnchorFromLegacy(int code) {
  if (code < 1 || code > 11 || code % 4 == 0)
    return std::nullopt;
  const int row = code < 4 ? 2 : code < 8 ? 0 : 1;
  return row * 3 + code % 4 - 1;
}

// Codes are separated by backslashes; one inside brackets, as of an animation, belongs to its code.
std::vector<std::u16string_view> SplitCodes(std::u16string_view block) {
  std::vector<std::u16string_view> codes;
  std::size_t start = std::min(block.find(u'\\'), block.size());
  while (start < block.size()) {
    std::size_t end = start + 1;
    int depth = 0;
    for (; end < block.size() && (block[end] != u'\\' || depth > 0); ++end) {
      if (block[end] == u'(')
        ++depth;
      else if (block[end] == u')' && depth > 0)
        --depth;
    }
    codes.push_back(Trim(block.substr(start + 1, end - start - 1)));
    start = end;
  }
  return codes;
}

} // namespace

int AnchorFromKeypad(int key) {
  return (2 - (key - 1) / 3) * 3 + (key - 1) % 3;
}
int KeypadFromAnchor(int anchor) {
  return (2 - anchor / 3) * 3 + anchor % 3 + 1;
}

std::optional<CaptioningColor> ParseEventColor(std::u16string_view text) {
  text = Trim(text);
  std::uint32_t value = 0;
  if (text.starts_with(u"&H") || text.starts_with(u"&h")) {
    text.remove_prefix(2);
    if (text.ends_with(u'&'))
      text.remove_suffix(1);
    if (text.empty() || text.size() > 8)
      return std::nullopt;
    const std::string digits = NarrowASCII(text);
    char* end = nullptr;
    value = static_cast<std::uint32_t>(std::strtoul(digits.c_str(), &end, 16));
    if (*end != '\0')
      return std::nullopt;
  } else {
    const std::optional<double> number = ParseNumber(text);
    if (!number || *number < 0 || *number > 0xFFFFFF)
      return std::nullopt;
    value = static_cast<std::uint32_t>(*number);
  }
  const auto part = [&](int shift) { return static_cast<float>((value >> shift) & 0xFF) / 255.0F; };
  return CaptioningColor(part(0), part(8), part(16), 1.0F);
}

void ApplyOverrides(std::u16string_view block, const TextSpanAttributes& plain, CueBuilder& builder,
                    std::optional<int>& anchor, bool& isDrawing) {
  TextSpanAttributes base = builder.GetBase();
  for (const std::u16string_view code : SplitCodes(block)) {
    const auto rest = [&](std::size_t length) { return code.substr(length); };
    const bool hasNumber = code.size() == 1 || (code.size() > 1 && (IsDigit(code[1]) || code[1] == u'-'));
    if (code.empty()) {
      continue;
    } else if (code.starts_with(u"an") && SmallNumber(rest(2)).value_or(0) >= 1 && SmallNumber(rest(2)) <= 9) {
      // Of several the first counts.
      if (!anchor)
        anchor = AnchorFromKeypad(*SmallNumber(rest(2)));
    } else if (code[0] == u'a' && SmallNumber(rest(1)) && AnchorFromLegacy(*SmallNumber(rest(1)))) {
      if (!anchor)
        anchor = AnchorFromLegacy(*SmallNumber(rest(1)));
    } else if (code[0] == u'b' && hasNumber) {
      base.bold = code.size() == 1 ? plain.bold : IsSet(rest(1));
    } else if (code[0] == u'i' && hasNumber) {
      base.italic = code.size() == 1 ? plain.italic : IsSet(rest(1));
    } else if (code[0] == u'u' && hasNumber) {
      base.underline = code.size() == 1 ? plain.underline : IsSet(rest(1));
    } else if (code == u"c" || code == u"1c") {
      base.textColor = plain.textColor;
    } else if ((code.starts_with(u"c&") && ParseEventColor(rest(1))) ||
               (code.starts_with(u"1c&") && ParseEventColor(rest(2)))) {
      base.textColor = *ParseEventColor(rest(code[0] == u'c' ? 1 : 2));
    } else if (code[0] == u'r') {
      base = plain;
      if (code.size() > 1)
        builder.Lose(Say("$$$/Vidra/Formats/LossOverride=the override \"{0}\"", {"\\" + Quote(code)}));
    } else if (code[0] == u'p' && SmallNumber(rest(1))) {
      isDrawing = *SmallNumber(rest(1)) > 0;
      if (isDrawing)
        builder.Lose(Say("$$$/Vidra/Formats/LossDrawing=a drawing"));
    } else {
      builder.Lose(Say("$$$/Vidra/Formats/LossOverride=the override \"{0}\"", {"\\" + Quote(code)}));
    }
  }
  builder.SetBase(base);
}

std::optional<int> AppendEventText(std::u16string_view text, const TextSpanAttributes& plain, CueBuilder& builder) {
  std::optional<int> anchor;
  bool isDrawing = false;
  builder.SetBase(plain);
  const std::size_t lastBrace = text.rfind(u'}');
  for (std::size_t at = 0; at < text.size();) {
    const char16_t next = at + 1 < text.size() ? text[at + 1] : u'\0';
    if (text[at] == u'{') {
      // A brace that is never closed is text.
      if (lastBrace != std::u16string_view::npos && lastBrace > at) {
        const std::size_t end = text.find(u'}', at);
        ApplyOverrides(text.substr(at + 1, end - at - 1), plain, builder, anchor, isDrawing);
        at = end + 1;
        continue;
      }
    }
    if (text[at] == u'\\' && (next == u'N' || next == u'n' || next == u'h' || next == u'{' || next == u'}')) {
      if (!isDrawing)
        builder.Append(next == u'N'   ? u"\n"
                       : next == u'n' ? u" "
                       : next == u'h' ? u"\u00A0"
                       : next == u'{' ? u"{"
                                      : u"}");
      at += 2;
      continue;
    }
    const std::size_t end = std::min(text.find_first_of(u"{\\", at + 1), text.size());
    if (!isDrawing)
      builder.Append(text.substr(at, end - at));
    at = end;
  }
  return anchor;
}

} // namespace Formats
