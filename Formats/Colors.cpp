#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

#include "Formats/CueBuilder.h"
#include "Formats/Text.h"
#include "zebcaptioning/FormatFacts.h"

namespace Formats {

namespace {

struct NamedColor {
  std::u16string_view name;
  std::uint32_t rgb;
};

// CSS Color, level 1 names, those of level 2 and 3 that caption files use.
constexpr std::array<NamedColor, 44> kNamedColors{{
    {u"white", 0xFFFFFF},      {u"black", 0x000000},     {u"red", 0xFF0000},      {u"lime", 0x00FF00},
    {u"blue", 0x0000FF},       {u"yellow", 0xFFFF00},    {u"cyan", 0x00FFFF},     {u"aqua", 0x00FFFF},
    {u"magenta", 0xFF00FF},    {u"fuchsia", 0xFF00FF},   {u"green", 0x008000},    {u"silver", 0xC0C0C0},
    {u"gray", 0x808080},       {u"grey", 0x808080},      {u"maroon", 0x800000},   {u"olive", 0x808000},
    {u"navy", 0x000080},       {u"purple", 0x800080},    {u"teal", 0x008080},     {u"orange", 0xFFA500},
    {u"pink", 0xFFC0CB},       {u"brown", 0xA52A2A},     {u"gold", 0xFFD700},     {u"violet", 0xEE82EE},
    {u"indigo", 0x4B0082},     {u"turquoise", 0x40E0D0}, {u"tan", 0xD2B48C},      {u"tomato", 0xFF6347},
    {u"salmon", 0xFA8072},     {u"khaki", 0xF0E68C},     {u"crimson", 0xDC143C},  {u"coral", 0xFF7F50},
    {u"chocolate", 0xD2691E},  {u"orchid", 0xDA70D6},    {u"plum", 0xDDA0DD},     {u"beige", 0xF5F5DC},
    {u"ivory", 0xFFFFF0},      {u"lavender", 0xE6E6FA},  {u"skyblue", 0x87CEEB},  {u"lightblue", 0xADD8E6},
    {u"lightgreen", 0x90EE90}, {u"lightgray", 0xD3D3D3}, {u"darkgray", 0xA9A9A9}, {u"lightyellow", 0xFFFFE0},
}};

CaptioningColor FromBytes(unsigned red, unsigned green, unsigned blue, unsigned alpha = 255) {
  return {static_cast<float>(red) / 255.0F, static_cast<float>(green) / 255.0F, static_cast<float>(blue) / 255.0F,
          static_cast<float>(alpha) / 255.0F};
}

std::optional<CaptioningColor> ParseHex(std::u16string_view digits) {
  unsigned values[8] = {};
  if (digits.size() != 3 && digits.size() != 6 && digits.size() != 8)
    return std::nullopt;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    const char16_t c = digits[i];
    if (IsDigit(c))
      values[i] = static_cast<unsigned>(c - u'0');
    else if (c >= u'a' && c <= u'f')
      values[i] = static_cast<unsigned>(c - u'a' + 10);
    else
      return std::nullopt;
  }
  if (digits.size() == 3)
    return FromBytes(values[0] * 17, values[1] * 17, values[2] * 17);
  const auto byte = [&](std::size_t i) { return values[2 * i] * 16 + values[2 * i + 1]; };
  return FromBytes(byte(0), byte(1), byte(2), digits.size() == 8 ? byte(3) : 255);
}

// "rgb(12, 34, 56)"
std::optional<CaptioningColor> ParseFunction(std::u16string_view text) {
  if (!text.starts_with(u"rgb(") || !text.ends_with(u")"))
    return std::nullopt;
  text = text.substr(4, text.size() - 5);
  unsigned values[3] = {};
  for (unsigned& value : values) {
    const std::size_t comma = text.find(u',');
    const std::optional<double> number = ParseNumber(Trim(text.substr(0, comma)));
    if (!number || *number < 0 || *number > 255)
      return std::nullopt;
    value = static_cast<unsigned>(*number);
    text = comma == std::u16string_view::npos ? std::u16string_view() : text.substr(comma + 1);
  }
  return FromBytes(values[0], values[1], values[2]);
}

unsigned ToByte(float part) {
  return static_cast<unsigned>(std::lround(std::min(std::max(part, 0.0F), 1.0F) * 255.0F));
}

} // namespace

std::optional<CaptioningColor> ParseColor(std::u16string_view text) {
  const UString color = LowerASCII(Trim(text));
  for (const NamedColor& named : kNamedColors) {
    if (color == named.name)
      return FromBytes(named.rgb >> 16, (named.rgb >> 8) & 0xFF, named.rgb & 0xFF);
  }
  if (color.starts_with(u'#'))
    return ParseHex(std::u16string_view(color).substr(1));
  if (const std::optional<CaptioningColor> function = ParseFunction(color))
    return function;
  return color.size() == 6 ? ParseHex(color) : std::nullopt;
}

std::string PrintColor(const CaptioningColor& color) {
  char text[8];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", ToByte(color.red), ToByte(color.green), ToByte(color.blue));
  return text;
}

const std::vector<std::pair<std::u16string_view, CaptioningColor>>& GetCueColors() {
  static const std::vector<std::pair<std::u16string_view, CaptioningColor>> kColors{
      {u"white", {1, 1, 1, 1}},  {u"lime", {0, 1, 0, 1}},    {u"cyan", {0, 1, 1, 1}}, {u"red", {1, 0, 0, 1}},
      {u"yellow", {1, 1, 0, 1}}, {u"magenta", {1, 0, 1, 1}}, {u"blue", {0, 0, 1, 1}}, {u"black", {0, 0, 0, 1}},
  };
  return kColors;
}

CaptioningColor NearestColor(const CaptioningColor& wanted, const std::vector<CaptioningColor>& legal) {
  CaptioningColor nearest = wanted;
  float least = std::numeric_limits<float>::max();
  for (const CaptioningColor& color : legal) {
    const float red = color.red - wanted.red;
    const float green = color.green - wanted.green;
    const float blue = color.blue - wanted.blue;
    const float distance = red * red + green * green + blue * blue;
    if (distance < least) {
      least = distance;
      nearest = color;
    }
  }
  return nearest;
}

FormatRules::FormatRules(StreamFormat format) : mFormat(format), mIsOpen(zebcaptioning::IsOpenCaptions(format)) {}

const FormatRules::Fitted& FormatRules::Find(const TextSpanAttributes& wanted) {
  // A file has few looks, and neighbours mostly share one.
  for (const Fitted& known : mKnown) {
    if (known.wanted == wanted)
      return known;
  }
  if (mKnown.size() >= kMaxKnown)
    mKnown.erase(mKnown.begin());
  Fitted fitted;
  fitted.wanted = wanted;
  const TextSpanAttributes legal = zebcaptioning::NearestLegalSpan(mFormat, wanted);
  static const TextSpanAttributes kPlain;
  const auto lose = [&](bool isDifferent, std::string what) {
    if (isDifferent)
      fitted.losses.push_back(std::move(what));
  };
  const std::string color = PrintColor(wanted.textColor);
  const std::string background = PrintColor(wanted.backgroundColor);
  lose(wanted.textColor != kPlain.textColor && PrintColor(legal.textColor) != color,
       Say("$$$/Vidra/Formats/LossColor=the colour {0} (now {1})", {color, PrintColor(legal.textColor)}));
  lose(wanted.backgroundColor != kPlain.backgroundColor && PrintColor(legal.backgroundColor) != background,
       Say("$$$/Vidra/Formats/LossBackground=the background {0} (now {1})",
           {background, PrintColor(legal.backgroundColor)}));
  lose(wanted.bold && !legal.bold, Say("$$$/Vidra/Formats/LossBold=bold"));
  lose(wanted.italic && !legal.italic, Say("$$$/Vidra/Formats/LossItalic=italics"));
  lose(wanted.underline && !legal.underline, Say("$$$/Vidra/Formats/LossUnderline=underline"));
  fitted.span = zebcaptioning::Share(legal);
  mKnown.push_back(std::move(fitted));
  return mKnown.back();
}

zebcaptioning::SharedSpan FormatRules::Fit(const TextSpanAttributes& wanted, std::vector<std::string>& losses) {
  const Fitted& fitted = Find(wanted);
  for (const std::string& loss : fitted.losses) {
    if (std::find(losses.begin(), losses.end(), loss) == losses.end())
      losses.push_back(loss);
  }
  return fitted.span;
}

} // namespace Formats
