#include "zebcaptioning/CaptionCodec.h"

#include <bit>
#include <cmath>
#include <optional>

#include "zebcaptioning/Spans.h"

namespace zebcaptioning {

namespace {

using zebcore::utility::ImmutableString;

constexpr std::uint8_t kVersion = 1;
constexpr std::size_t kChecksumSize = 4;

// What stands in front of the times.
constexpr std::uint64_t kHasTyping = 1;

// Which attributes of a span differ from the defaults. The three faces need no value beside their bit.
constexpr std::uint64_t kSpanFamily = 1;
constexpr std::uint64_t kSpanSize = 2;
constexpr std::uint64_t kSpanBold = 4;
constexpr std::uint64_t kSpanItalic = 8;
constexpr std::uint64_t kSpanUnderline = 16;
constexpr std::uint64_t kSpanTextColor = 32;
constexpr std::uint64_t kSpanBackgroundColor = 64;
constexpr std::uint64_t kSpanEdgeColor = 128;
constexpr std::uint64_t kSpanEdgeWidth = 256;
constexpr std::uint64_t kSpanAll = 511;

constexpr std::uint64_t kParagraphType = 1;
constexpr std::uint64_t kParagraphAlignment = 2;
constexpr std::uint64_t kParagraphAnchor = 4;
constexpr std::uint64_t kParagraphX = 8;
constexpr std::uint64_t kParagraphY = 16;
constexpr std::uint64_t kParagraphLineSpacing = 32;
constexpr std::uint64_t kParagraphLineWidth = 64;
constexpr std::uint64_t kParagraphBlockHeight = 128;
constexpr std::uint64_t kParagraphRegion = 256;
constexpr std::uint64_t kParagraphStyle = 512;
constexpr std::uint64_t kParagraphAll = 1023;

// FNV-1a.
std::uint32_t Checksum(std::string_view bytes) {
  std::uint32_t sum = 2166136261U;
  for (const char byte : bytes)
    sum = (sum ^ static_cast<std::uint8_t>(byte)) * 16777619U;
  return sum;
}

const TextSpanAttributes& DefaultSpan() {
  static const TextSpanAttributes span;
  return span;
}

class Writer {
 public:
  void Number(std::uint64_t value) {
    for (; value >= 0x80; value >>= 7)
      mBytes.push_back(static_cast<char>(value | 0x80));
    mBytes.push_back(static_cast<char>(value));
  }
  void Signed(std::int64_t value) {
    Number(static_cast<std::uint64_t>(value) << 1 ^ static_cast<std::uint64_t>(value >> 63));
  }
  void Fixed(std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8)
      mBytes.push_back(static_cast<char>(value >> shift));
  }
  void Float(float value) { Fixed(std::bit_cast<std::uint32_t>(value)); }
  void Text(const zebcore::UString& text) {
    Number(text.size());
    for (const char16_t unit : text)
      Number(unit);
  }
  void Name(const ImmutableString& name) {
    Number(name.Text().size());
    mBytes += name.Text();
  }
  void Color(const CaptioningColor& color) {
    for (const float channel : {color.red, color.green, color.blue, color.alpha})
      Float(channel);
  }
  void Span(const TextSpanAttributes& span);
  void Paragraph(const ParagraphStyleAttributes& paragraph);

  std::string Finish() {
    Fixed(Checksum(mBytes));
    return std::move(mBytes);
  }

 private:
  std::string mBytes;
};

void Writer::Span(const TextSpanAttributes& span) {
  const TextSpanAttributes& usual = DefaultSpan();
  std::uint64_t bits = 0;
  bits |= span.family != usual.family ? kSpanFamily : 0;
  bits |= span.size != usual.size ? kSpanSize : 0;
  bits |= span.bold ? kSpanBold : 0;
  bits |= span.italic ? kSpanItalic : 0;
  bits |= span.underline ? kSpanUnderline : 0;
  bits |= span.textColor != usual.textColor ? kSpanTextColor : 0;
  bits |= span.backgroundColor != usual.backgroundColor ? kSpanBackgroundColor : 0;
  bits |= span.edgeColor != usual.edgeColor ? kSpanEdgeColor : 0;
  bits |= span.edgeWidth != usual.edgeWidth ? kSpanEdgeWidth : 0;
  Number(bits);
  if (bits & kSpanFamily)
    Text(span.family);
  if (bits & kSpanSize)
    Float(span.size);
  if (bits & kSpanTextColor)
    Color(span.textColor);
  if (bits & kSpanBackgroundColor)
    Color(span.backgroundColor);
  if (bits & kSpanEdgeColor)
    Color(span.edgeColor);
  if (bits & kSpanEdgeWidth)
    Float(span.edgeWidth);
}

void Writer::Paragraph(const ParagraphStyleAttributes& paragraph) {
  const ParagraphStyleAttributes usual;
  std::uint64_t bits = 0;
  bits |= paragraph.captionType != usual.captionType ? kParagraphType : 0;
  bits |= paragraph.alignment != usual.alignment ? kParagraphAlignment : 0;
  bits |= paragraph.anchor != usual.anchor ? kParagraphAnchor : 0;
  bits |= paragraph.x != usual.x ? kParagraphX : 0;
  bits |= paragraph.y != usual.y ? kParagraphY : 0;
  bits |= paragraph.lineSpacing != usual.lineSpacing ? kParagraphLineSpacing : 0;
  bits |= paragraph.lineWidth != usual.lineWidth ? kParagraphLineWidth : 0;
  bits |= paragraph.blockHeight != usual.blockHeight ? kParagraphBlockHeight : 0;
  bits |= paragraph.region.IsNull() ? 0 : kParagraphRegion;
  bits |= paragraph.style.IsNull() ? 0 : kParagraphStyle;
  Number(bits);
  if (bits & kParagraphType)
    Signed(paragraph.captionType);
  if (bits & kParagraphAlignment)
    Signed(paragraph.alignment);
  if (bits & kParagraphAnchor)
    Signed(paragraph.anchor);
  if (bits & kParagraphX)
    Signed(paragraph.x);
  if (bits & kParagraphY)
    Signed(paragraph.y);
  if (bits & kParagraphLineSpacing)
    Signed(paragraph.lineSpacing);
  if (bits & kParagraphLineWidth)
    Signed(paragraph.lineWidth);
  if (bits & kParagraphBlockHeight)
    Signed(paragraph.blockHeight);
  if (bits & kParagraphRegion)
    Name(paragraph.region);
  if (bits & kParagraphStyle)
    Name(paragraph.style);
}

// Reads on after a fault without harm: everything is zero from then on, and Failed() says so.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : mBytes(bytes) {}

  bool Failed() const { return mFailed; }
  bool AtEnd() const { return mBytes.empty(); }

  std::uint8_t Byte() {
    if (mBytes.empty()) {
      mFailed = true;
      return 0;
    }
    const auto byte = static_cast<std::uint8_t>(mBytes.front());
    mBytes.remove_prefix(1);
    return byte;
  }
  std::uint64_t Number() {
    std::uint64_t value = 0;
    for (int shift = 0; shift < 64; shift += 7) {
      const std::uint8_t byte = Byte();
      if (shift == 63 && byte > 1)
        break;
      value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
      if (!(byte & 0x80))
        return value;
    }
    return Fail();
  }
  std::int64_t Signed() {
    const std::uint64_t value = Number();
    return static_cast<std::int64_t>(value >> 1 ^ (~(value & 1) + 1));
  }
  int Int() {
    const std::int64_t value = Signed();
    return static_cast<int>(std::in_range<int>(value) ? value : static_cast<std::int64_t>(Fail()));
  }
  int IntBetween(int least, int most) {
    const int value = Int();
    return value >= least && value <= most ? value : static_cast<int>(Fail());
  }
  // A bit set that holds none but the known ones.
  std::uint64_t Bits(std::uint64_t known) {
    const std::uint64_t bits = Number();
    return bits & ~known ? Fail() : bits;
  }
  // How many things follow that take at least a byte each.
  std::size_t Count() {
    const std::uint64_t count = Number();
    return count <= mBytes.size() ? static_cast<std::size_t>(count) : static_cast<std::size_t>(Fail());
  }
  float Float() {
    std::uint32_t value = 0;
    for (int shift = 0; shift < 32; shift += 8)
      value |= static_cast<std::uint32_t>(Byte()) << shift;
    const auto number = std::bit_cast<float>(value);
    return std::isfinite(number) ? number : static_cast<float>(Fail());
  }
  zebcore::UString Text() {
    zebcore::UString text(Count(), u'\0');
    for (char16_t& unit : text) {
      const std::uint64_t value = Number();
      unit = static_cast<char16_t>(value <= 0xFFFF ? value : Fail());
      if (mFailed)
        return {};
    }
    return text;
  }
  ImmutableString Name() {
    const std::size_t size = Count();
    ImmutableString name(mBytes.substr(0, size));
    mBytes.remove_prefix(size);
    return name;
  }
  CaptioningColor Color() {
    CaptioningColor color;
    color.red = Float();
    color.green = Float();
    color.blue = Float();
    color.alpha = Float();
    return color;
  }
  SharedSpan Span();
  ParagraphStyleAttributes Paragraph();
  std::vector<TextRun> Runs(std::size_t textSize);

 private:
  std::uint64_t Fail() {
    mFailed = true;
    mBytes = {};
    return 0;
  }

  std::string_view mBytes;
  bool mFailed = false;
};

SharedSpan Reader::Span() {
  const std::uint64_t bits = Bits(kSpanAll);
  TextSpanAttributes span;
  if (bits & kSpanFamily)
    span.family = Text();
  if (bits & kSpanSize)
    span.size = Float();
  span.bold = bits & kSpanBold;
  span.italic = bits & kSpanItalic;
  span.underline = bits & kSpanUnderline;
  if (bits & kSpanTextColor)
    span.textColor = Color();
  if (bits & kSpanBackgroundColor)
    span.backgroundColor = Color();
  if (bits & kSpanEdgeColor)
    span.edgeColor = Color();
  if (bits & kSpanEdgeWidth)
    span.edgeWidth = Float();
  return Share(span);
}

ParagraphStyleAttributes Reader::Paragraph() {
  const std::uint64_t bits = Bits(kParagraphAll);
  ParagraphStyleAttributes paragraph;
  if (bits & kParagraphType)
    paragraph.captionType = Int();
  if (bits & kParagraphAlignment)
    paragraph.alignment = static_cast<ParagraphStyleAttributes::TextAlignmentType>(IntBetween(0, 2));
  if (bits & kParagraphAnchor)
    paragraph.anchor = IntBetween(-2, 9);
  if (bits & kParagraphX)
    paragraph.x = Int();
  if (bits & kParagraphY)
    paragraph.y = Int();
  if (bits & kParagraphLineSpacing)
    paragraph.lineSpacing = Int();
  if (bits & kParagraphLineWidth)
    paragraph.lineWidth = Int();
  if (bits & kParagraphBlockHeight)
    paragraph.blockHeight = Int();
  if (bits & kParagraphRegion)
    paragraph.region = Name();
  if (bits & kParagraphStyle)
    paragraph.style = Name();
  return paragraph;
}

std::vector<TextRun> Reader::Runs(std::size_t textSize) {
  std::vector<TextRun> runs(Count());
  if (runs.empty())
    Fail();
  std::uint64_t start = 0;
  for (std::size_t i = 0; i < runs.size() && !mFailed; ++i) {
    const std::uint64_t step = i > 0 ? Number() : 0;
    if (i > 0 && (step == 0 || step >= textSize || start + step >= textSize))
      Fail();
    start += step;
    runs[i] = {static_cast<std::uint32_t>(start), Span()};
    if (i > 0 && *runs[i].attributes == *runs[i - 1].attributes)
      Fail();
  }
  return runs;
}

} // namespace

std::string Encode(const CaptionState& state) {
  Writer writer;
  writer.Number(kVersion);
  writer.Number(state.typing ? kHasTyping : 0);
  writer.Signed(state.begin.GetTicks());
  writer.Signed((state.end - state.begin).GetTicks());
  writer.Text(state.text);
  writer.Paragraph(state.paragraph);
  writer.Number(state.runs.size());
  for (std::size_t i = 0; i < state.runs.size(); ++i) {
    if (i > 0)
      writer.Number(state.runs[i].start - state.runs[i - 1].start);
    writer.Span(*state.runs[i].attributes);
  }
  if (state.typing) {
    writer.Number(state.typingAt);
    writer.Span(*state.typing);
  }
  return writer.Finish();
}

CaptionStatePtr Decode(std::string_view bytes) {
  if (bytes.size() < kChecksumSize)
    return nullptr;
  const std::string_view content = bytes.substr(0, bytes.size() - kChecksumSize);
  const std::uint32_t sum = Checksum(content);
  for (std::size_t i = 0; i < kChecksumSize; ++i) {
    if (static_cast<std::uint8_t>(bytes[content.size() + i]) != static_cast<std::uint8_t>(sum >> 8 * i))
      return nullptr;
  }
  return DecodeWithoutChecksum(content);
}

CaptionStatePtr DecodeWithoutChecksum(std::string_view bytes) {
  Reader reader(bytes);
  if (reader.Number() != kVersion)
    return nullptr;
  const std::uint64_t has = reader.Bits(kHasTyping);
  const boost::intrusive_ptr<CaptionState> state(new CaptionState);
  state->begin = zebmediatypes::TickTime(reader.Signed());
  state->end = state->begin + zebmediatypes::TickTime(reader.Signed());
  state->text = reader.Text();
  state->paragraph = reader.Paragraph();
  state->runs = reader.Runs(state->text.size());
  if (has & kHasTyping) {
    const std::uint64_t at = reader.Number();
    if (at > state->text.size())
      return nullptr;
    state->typingAt = static_cast<std::uint32_t>(at);
    state->typing = reader.Span();
  }
  return reader.Failed() || !reader.AtEnd() ? nullptr : CaptionStatePtr(state);
}

} // namespace zebcaptioning
