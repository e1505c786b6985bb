#include "HSL/OpenCaptionScript.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "HSL/OpenCaptionFonts.h"

namespace HSL {

namespace {

using zebcaptioning::CaptioningColor;
using zebcaptioning::CaptionState;
using zebcaptioning::TextSpanAttributes;

constexpr double kPointsOfARow = 18.0;
constexpr double kRowsOfAFrame = 15.0;
// A box reaches this share of the font size beyond its characters.
constexpr double kBoxPadding = 0.12;
// Without a border no box is drawn; this one is too narrow to be seen.
constexpr double kNoBorder = 0.01;
constexpr char16_t kZeroWidthSpace = 0x200B;
constexpr char16_t kZeroWidthJoiner = 0x200D;
constexpr char16_t kNoBreakSpace = 0x00A0;
constexpr char16_t kWordJoiner = 0x2060;
// Stands for an empty line where its height is found out.
constexpr char16_t kSampleLetter = u'x';

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

// A family name inside a tag: braces, parentheses and backslashes would end it.
std::string WriteFamily(const zebcore::UString& family) {
  std::string text;
  for (const char c : zebcore::ToUTF8(family))
    if (c != '{' && c != '}' && c != '(' && c != ')' && c != '\\' && c != '\n' && c != '\r')
      text += c;
  return "\\fn" + text;
}

std::string WriteFont(const FontPiece& piece, const TextSpanAttributes& span, double pixelsPerPoint) {
  return WriteFamily(piece.family) + WriteNumber("fs", span.size * pixelsPerPoint * piece.scale) +
         (span.bold ? "\\b1" : "\\b0") + (span.italic ? "\\i1" : "\\i0") + (span.underline ? "\\u1" : "\\u0");
}

bool HasEdge(const TextSpanAttributes& span) {
  return span.edgeWidth > 0.0F && !span.edgeColor.IsTransparent();
}

std::string WriteCharacterTags(const TextSpanAttributes& span, double pixelsPerPoint) {
  return WriteColor(1, span.textColor) + WriteColor(3, span.edgeColor) +
         WriteNumber("bord", HasEdge(span) ? span.edgeWidth * pixelsPerPoint : 0.0);
}

std::string WriteBoxTags(std::size_t run) {
  char color[48];
  std::snprintf(color, sizeof color, "\\1a&HFF&\\3c&H%02X%02X%02X&\\3a&H00&", static_cast<unsigned>(run & 0xFF),
                static_cast<unsigned>(run >> 8 & 0xFF), static_cast<unsigned>(run >> 16 & 0xFF));
  return color + WriteNumber("bord", kNoBorder);
}

bool IsBlank(std::u16string_view text) {
  return std::all_of(text.begin(), text.end(), [](char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == kZeroWidthSpace || c == kNoBreakSpace || c == 0x3000;
  });
}

// Braces open tags and a backslash may begin one, so neither may stand as it is. Blanks at the start of a line are
// there to be seen.
zebcore::UString Escape(std::u16string_view text, bool& isLineStart) {
  zebcore::UString escaped;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    const bool isPair = c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size();
    const char32_t character = isPair ? 0x10000 + ((c - 0xD800U) << 10) + (text[i + 1] - 0xDC00U) : c;
    // What a joiner ties together is drawn side by side where there is no picture for the whole.
    const bool tiesEmoji = c == kZeroWidthJoiner && i + 1 < text.size() &&
                           (text[i + 1] >= 0xD83C || (text[i + 1] >= 0x2600 && text[i + 1] <= 0x27BF));
    if (c == u'\r' || c == kZeroWidthSpace || IsEmojiModifier(character) || tiesEmoji) {
      i += isPair ? 1 : 0;
      continue;
    }
    if (c == u'{' || c == u'}')
      escaped += u'\\';
    const bool isSpace = c == u' ' || c == u'\t';
    escaped += isSpace && isLineStart ? kNoBreakSpace : isSpace ? u' ' : c;
    if (c == u'\\')
      escaped += kWordJoiner;
    isLineStart = isLineStart && isSpace;
    if (isPair)
      escaped += text[++i];
  }
  return escaped;
}

bool TakeSameRoom(const TextSpanAttributes& a, const TextSpanAttributes& b) {
  const auto edge = [](const TextSpanAttributes& span) { return HasEdge(span) ? span.edgeWidth : 0.0F; };
  return a.family == b.family && a.size == b.size && a.bold == b.bold && a.italic == b.italic &&
         a.underline == b.underline && edge(a) == edge(b) &&
         a.backgroundColor.IsTransparent() == b.backgroundColor.IsTransparent();
}

class LineWriter {
 public:
  LineWriter(const CaptionState& caption, int frameHeight)
      : mCaption(caption), mText(caption.text), mPixelsPerPoint(GetPixelsPerPoint(frameHeight)) {}

  OpenCaptionScript Write() {
    const std::size_t end = mText.find_last_not_of(u"\r\n") + 1;
    if (IsBlank(RemoveLineEnds(end)))
      return {};
    for (std::size_t start = 0; start <= end;) {
      const std::size_t lineEnd = std::min(mText.find(u'\n', start), end);
      WriteLine(start, lineEnd);
      start = lineEnd + 1;
    }
    return std::move(mScript);
  }

 private:
  zebcore::UString RemoveLineEnds(std::size_t end) const {
    zebcore::UString text(mText.substr(0, end));
    std::erase(text, u'\n');
    return text;
  }

  std::size_t RunEnd(std::size_t run) const {
    return run + 1 < mCaption.runs.size() ? mCaption.runs[run + 1].start : mText.size();
  }

  void WriteLine(std::size_t start, std::size_t end) {
    OpenCaptionLine line;
    const bool isBlank = IsBlank(mText.substr(start, end - start));
    bool isLineStart = true;
    for (std::size_t run = 0; run < mCaption.runs.size(); ++run) {
      const std::size_t from = std::max<std::size_t>(start, mCaption.runs[run].start);
      const std::size_t to = std::min(end, RunEnd(run));
      const bool holdsEmptyLine =
          isBlank && mCaption.runs[run].start <= start && (start < RunEnd(run) || run + 1 == mCaption.runs.size());
      if (holdsEmptyLine)
        WriteSample(*mCaption.runs[run].attributes, line);
      else if (!isBlank && from < to)
        WriteRun(mCaption.runs[run].attributes, mText.substr(from, to - from), isLineStart, line);
    }
    mScript.lines.push_back(std::move(line));
  }

  void WriteSample(const TextSpanAttributes& span, OpenCaptionLine& line) const {
    const std::u16string_view sample(&kSampleLetter, 1);
    const FontPiece piece = SplitByFont(sample, span.family, span.bold, span.italic).front();
    line.boxes =
        "{" + WriteFont(piece, span, mPixelsPerPoint) + WriteBoxTags(0) + "}" + static_cast<char>(kSampleLetter);
  }

  void WriteRun(const zebcaptioning::SharedSpan& span, std::u16string_view text, bool& isLineStart,
                OpenCaptionLine& line) {
    const std::size_t run = mScript.runs.size();
    mScript.runs.push_back(span);
    if (!span->backgroundColor.IsTransparent())
      mScript.boxPadding = std::max(mScript.boxPadding, span->size * mPixelsPerPoint * kBoxPadding);
    const double edge = HasEdge(*span) ? span->edgeWidth * mPixelsPerPoint : 0.0;
    mScript.margin = std::max({mScript.margin, mScript.boxPadding, edge});
    const std::string drawn = WriteCharacterTags(*span, mPixelsPerPoint) + "}";
    const std::string boxed = WriteBoxTags(run) + "}";
    for (const FontPiece& piece : SplitByFont(text, span->family, span->bold, span->italic)) {
      const std::string font = "{" + WriteFont(piece, *span, mPixelsPerPoint);
      const std::string words = zebcore::ToUTF8(Escape(text.substr(piece.start, piece.end - piece.start), isLineStart));
      line.characters.append(font).append(drawn).append(words);
      line.boxes.append(font).append(boxed).append(words);
    }
  }

  const CaptionState& mCaption;
  std::u16string_view mText;
  double mPixelsPerPoint;
  OpenCaptionScript mScript;
};

} // namespace

double GetPixelsPerPoint(int frameHeight) {
  return frameHeight / kRowsOfAFrame / kPointsOfARow;
}

bool TakeSameRoom(const CaptionState& a, const CaptionState& b) {
  return a.text == b.text && a.paragraph.lineSpacing == b.paragraph.lineSpacing &&
         std::equal(a.runs.begin(), a.runs.end(), b.runs.begin(), b.runs.end(),
                    [](const auto& left, const auto& right) {
                      return left.start == right.start && TakeSameRoom(*left.attributes, *right.attributes);
                    });
}

OpenCaptionScript WriteOpenCaptionScript(const CaptionState& caption, int frameHeight) {
  return LineWriter(caption, frameHeight).Write();
}

} // namespace HSL
