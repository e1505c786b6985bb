#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "Formats/Formats.h"

// From marked-up text to captions: what every reader does in the same way.
namespace Formats {

using zebcaptioning::CaptioningColor;
using zebcaptioning::CaptionStatePtr;
using zebcaptioning::StreamFormat;
using zebcaptioning::TextSpanAttributes;
using zebcore::UString;

// "#rrggbb" with or without the number sign, "#rgb", "#rrggbbaa", "rgb(r, g, b)" or a CSS Color colour name.
std::optional<CaptioningColor> ParseColor(std::u16string_view text);
// "#rrggbb" in lower case.
std::string PrintColor(const CaptioningColor& color);
// The eight that WebVTT has classes for: "white", "lime", "cyan", "red", "yellow", "magenta", "blue", "black".
const std::vector<std::pair<std::u16string_view, CaptioningColor>>& GetCueColors();
CaptioningColor NearestColor(const CaptioningColor& wanted, const std::vector<CaptioningColor>& legal);

// What a stream's format makes of the attributes that a file asks for.
class FormatRules {
 public:
  explicit FormatRules(StreamFormat format);

  StreamFormat GetFormat() const { return mFormat; }
  bool IsOpen() const { return mIsOpen; }
  // The nearest that the format allows; what had to change is added to losses, each once.
  zebcaptioning::SharedSpan Fit(const TextSpanAttributes& wanted, std::vector<std::string>& losses);

 private:
  struct Fitted {
    TextSpanAttributes wanted;
    zebcaptioning::SharedSpan span;
    std::vector<std::string> losses;
  };
  static constexpr std::size_t kMaxKnown = 16;
  const Fitted& Find(const TextSpanAttributes& wanted);

  StreamFormat mFormat;
  bool mIsOpen;
  std::vector<Fitted> mKnown; // oldest first
};

// Where a caption stands: what the two file formats can say about it.
struct Placement {
  int anchor = 9;
  int alignment = zebcaptioning::ParagraphStyleAttributes::kTextAlignment_Center;
  int x = 0;
  int y = 0;
  friend bool operator==(const Placement&, const Placement&) = default;
};
// Position of a block with this text: in the grid of a closed format at the anchor or, without one (9), at the bottom
// and by its alignment; (0, 0) in open captions, where no file names a pixel. There an anchor of 0 to 8 lays the block
// out, one that was put somewhere has anchor -1 and its place in x and y, and 9 at (0, 0) was never placed.
Placement PlaceText(StreamFormat format, std::u16string_view text, int anchor, int alignment);
// Alignment that goes with an anchor's column; centre for none.
int GetAnchorAlignment(int anchor);

// Builds one caption: text is appended with the attributes in force. Elements may nest and overlap.
class CueBuilder {
 public:
  enum class Element { Bold, Italic, Underline, Font, Class, Voice, Language, Ruby, RubyText, Count };

  explicit CueBuilder(FormatRules& rules);

  // An element opens; colours hold until it is closed.
  void Open(Element element, std::optional<CaptioningColor> textColor = {},
            std::optional<CaptioningColor> backgroundColor = {});
  // Closes the innermost open element of the kind; false if there is none.
  bool Close(Element element);
  bool IsOpen(Element element) const { return mDepth[static_cast<std::size_t>(element)] > 0; }
  void CloseAll();
  // Attributes from outside elements, for formats that switch instead of nesting.
  const TextSpanAttributes& GetBase() const { return mBase; }
  void SetBase(const TextSpanAttributes& base);
  void Append(std::u16string_view text);

  const UString& GetText() const { return mText; }
  // Something that does not come in. A caption's losses are told in one line.
  void Lose(std::string what);
  // Trailing line feeds go.
  void TrimEnd();
  // Losses that the stream's format causes are added to the others.
  boost::intrusive_ptr<zebcaptioning::CaptionState> Build(zebmediatypes::TickTime begin, zebmediatypes::TickTime end,
                                                          const Placement& placement);
  const std::vector<std::string>& GetLosses() const { return mLosses; }

 private:
  struct Colored {
    Element element;
    std::optional<CaptioningColor> text;
    std::optional<CaptioningColor> background;
  };
  struct Run {
    std::uint32_t start;
    TextSpanAttributes attributes;
  };
  TextSpanAttributes Current() const;

  FormatRules& mRules;
  UString mText;
  TextSpanAttributes mBase;
  std::array<int, static_cast<std::size_t>(Element::Count)> mDepth{};
  std::vector<Colored> mOpen; // outermost first, as far as depth is kept
  std::vector<Run> mRuns;
  bool mChanged = true;
  std::vector<std::string> mLosses;
};

// "The caption came in without: ..."; empty if nothing was lost.
std::string DescribeLosses(const std::vector<std::string>& losses);

// The text of a caption file. Without bytes, or without text, the result's error says so; the latter in the words of
// the kind of file.
UString OpenText(std::string_view bytes, std::string (*sayNoText)(), ReadResult& result);

// By begin time, otherwise as they came.
void SortByBegin(std::vector<CaptionStatePtr>& captions);

// Milliseconds as ticks, exactly, and back to the nearest.
zebmediatypes::TickTime FromMilliseconds(std::int64_t milliseconds);
std::int64_t ToMilliseconds(zebmediatypes::TickTime time);

// Tells a listener about every hundredth of the way.
class ProgressMeter {
 public:
  ProgressMeter(const Progress& progress, std::size_t total);
  // False to stop.
  bool Reach(std::size_t done);

 private:
  const Progress& mProgress;
  std::size_t mTotal;
  std::size_t mStep;
  std::size_t mNext = 0;
};

} // namespace Formats
