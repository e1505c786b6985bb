#include "HSL/OpenCaptionScript.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace HSL {

namespace {

using zebcaptioning::CaptioningColor;
using zebcaptioning::CaptionState;
using zebcaptioning::TextSpanAttributes;

constexpr double kPointsOfARow = 18.0;
constexpr double kRowsOfAFrame = 15.0;
// A box reaches this share of the font size beyond its characters.
constexpr double kBoxPadding = 0.12;
constexpr char16_t kZeroWidthSpace = 0x200B;
constexpr char16_t kWordJoiner = 0x2060;

int ToByte(float channel) {
  return static_cast<int>(std::lround(std::clamp(channel, 0.0F, 1.0F) * 255.0F));
}

// A colour tag and its transparency: blue, green, red, and how little is seen of it.
std::string WriteColor(int which, const CaptioningColor& color) {
  char text[64];
  std::snprintf(text, sizeof text, "\\%dc&H%02X%02X%02X&\\%da&H%02X&", which, ToByte(color.blue), ToByte(color.green),
                ToByte(color.red), which, 255 - ToByte(color.alpha));
  return text;
}

std::string WriteNumber(const char* tag, double value) {
  char text[48];
  std::snprintf(text, sizeof text, "\\%s%.2f", tag, value);
  return text;
}

// A family name inside a tag: braces, backslashes and commas would end it.
std::string WriteFamily(const zebcore::UString& family) {
  std::string text;
  for (const char c : zebcore::ToUTF8(TextSpanAttributes::GetGenericUIFontName(family)))
    if (c != '{' && c != '}' && c != '\\' && c != '\n' && c != '\r')
      text += c;
  return "\\fn" + text;
}

std::string WriteFace(const TextSpanAttributes& span, double pixelsPerPoint) {
  return WriteFamily(span.family) + WriteNumber("fs", span.size * pixelsPerPoint) + (span.bold ? "\\b1" : "\\b0") +
         (span.italic ? "\\i1" : "\\i0") + (span.underline ? "\\u1" : "\\u0");
}

CaptioningColor WithAlpha(const CaptioningColor& color, float alpha) {
  return {color.red, color.green, color.blue, alpha};
}

std::string WriteBoxTags(const TextSpanAttributes& span, double pixelsPerPoint) {
  return "{" + WriteFace(span, pixelsPerPoint) + WriteColor(1, WithAlpha(span.textColor, 0.0F)) +
         WriteColor(3, span.backgroundColor) + WriteNumber("bord", span.size * pixelsPerPoint * kBoxPadding) + "}";
}

std::string WriteCharacterTags(const TextSpanAttributes& span, double pixelsPerPoint) {
  const bool hasEdge = span.edgeWidth > 0.0F && !span.edgeColor.IsTransparent();
  return "{" + WriteFace(span, pixelsPerPoint) + WriteColor(1, span.textColor) + WriteColor(3, span.edgeColor) +
         WriteNumber("bord", hasEdge ? span.edgeWidth * pixelsPerPoint : 0.0) + "}";
}

// Braces open tags and a backslash may begin one, so neither may stand as it is.
zebcore::UString Escape(std::u16string_view text) {
  zebcore::UString escaped;
  for (const char16_t c : text) {
    if (c == u'{' || c == u'}')
      escaped += u'\\';
    if (c == u'\n')
      escaped += u"\\N";
    else if (c != u'\r' && c != kZeroWidthSpace)
      escaped += c;
    if (c == u'\\')
      escaped += kWordJoiner;
  }
  return escaped;
}

} // namespace

double GetPixelsPerPoint(int frameHeight) {
  return frameHeight / kRowsOfAFrame / kPointsOfARow;
}

OpenCaptionScript WriteOpenCaptionScript(const CaptionState& caption, int frameHeight) {
  const double pixelsPerPoint = GetPixelsPerPoint(frameHeight);
  OpenCaptionScript script;
  bool hasBox = false;
  for (std::size_t i = 0; i < caption.runs.size(); ++i) {
    const std::size_t start = std::min<std::size_t>(caption.runs[i].start, caption.text.size());
    const std::size_t end = i + 1 < caption.runs.size()
                                ? std::min<std::size_t>(caption.runs[i + 1].start, caption.text.size())
                                : caption.text.size();
    if (start >= end)
      continue;
    const TextSpanAttributes& span = *caption.runs[i].attributes;
    const std::string text = zebcore::ToUTF8(Escape(std::u16string_view(caption.text).substr(start, end - start)));
    hasBox = hasBox || !span.backgroundColor.IsTransparent();
    script.boxes += WriteBoxTags(span, pixelsPerPoint) + text;
    script.characters += WriteCharacterTags(span, pixelsPerPoint) + text;
  }
  if (!hasBox)
    script.boxes.clear();
  return script;
}

} // namespace HSL
