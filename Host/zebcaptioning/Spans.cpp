#include "zebcaptioning/Spans.h"

#include <algorithm>
#include <cmath>

#include "zebcaptioning/ClosedPlacement.h"
#include "zebcaptioning/FormatFacts.h"
#include "zebcaptioning/OpenPlacement.h"

namespace zebcaptioning {

using zebcore::UString;

namespace {

bool IsHighSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Whether a cut in front of the unit at index would part a character.
bool PartsCharacter(const UString& text, std::size_t index) {
  return index > 0 && index < text.size() && IsLowSurrogate(text[index]) && IsHighSurrogate(text[index - 1]);
}

const SharedSpan& DefaultSpan() {
  static const SharedSpan span = Share(TextSpanAttributes());
  return span;
}

bool AreEqual(const SharedSpan& a, const SharedSpan& b) {
  return a == b || *a == *b;
}

// What of the old text a change replaced, and by how much of the new one.
struct Replacement {
  std::size_t start = 0;    // in both texts
  std::size_t removed = 0;  // units of the old text
  std::size_t inserted = 0; // units of the new text
};

std::size_t CommonPrefix(const UString& a, const UString& b) {
  const std::size_t most = std::min(a.size(), b.size());
  std::size_t length = 0;
  while (length < most && a[length] == b[length])
    ++length;
  while (PartsCharacter(a, length) || PartsCharacter(b, length))
    --length;
  return length;
}

std::size_t CommonSuffix(const UString& a, const UString& b, std::size_t prefix) {
  const std::size_t most = std::min(a.size(), b.size()) - prefix;
  std::size_t length = 0;
  while (length < most && a[a.size() - 1 - length] == b[b.size() - 1 - length])
    ++length;
  while (length > 0 && (PartsCharacter(a, a.size() - length) || PartsCharacter(b, b.size() - length)))
    --length;
  return length;
}

// Among equal characters the place of a pure insertion or deletion is open; the caret tells it.
std::size_t MoveToCaret(const UString& oldText, const UString& newText, const Replacement& change, std::size_t caret) {
  const bool isInsertion = change.removed == 0;
  if (caret == kTextRange_End || (!isInsertion && change.inserted != 0))
    return change.start;
  const UString& longer = isInsertion ? newText : oldText;
  const std::size_t length = isInsertion ? change.inserted : change.removed;
  const std::size_t wanted = isInsertion ? (caret > length ? caret - length : 0) : caret;
  std::size_t start = change.start;
  // One to the left stays the same change as long as the unit that leaves it in front is the one that enters it behind.
  while (start > wanted && longer[start - 1] == longer[start - 1 + length])
    --start;
  while (start < change.start &&
         (PartsCharacter(oldText, start) || PartsCharacter(newText, start) || PartsCharacter(longer, start + length)))
    ++start;
  return start;
}

Replacement FindReplacement(const UString& oldText, const UString& newText, std::size_t caret) {
  Replacement change;
  change.start = CommonPrefix(oldText, newText);
  const std::size_t suffix = CommonSuffix(oldText, newText, change.start);
  change.removed = oldText.size() - change.start - suffix;
  change.inserted = newText.size() - change.start - suffix;
  change.start = MoveToCaret(oldText, newText, change, caret);
  return change;
}

// Adds the runs of [from, to) of a text, moved by the difference of to and where they go.
void AppendRuns(std::vector<TextRun>& target, const std::vector<TextRun>& source, std::size_t from, std::size_t to,
                std::size_t at) {
  for (std::size_t i = 0; i < source.size(); ++i) {
    const std::size_t end = i + 1 < source.size() ? source[i + 1].start : to;
    const std::size_t start = std::max<std::size_t>(source[i].start, from);
    if (start < std::min(end, to))
      target.push_back({static_cast<std::uint32_t>(start - from + at), source[i].attributes});
  }
}

void MergeNeighbours(std::vector<TextRun>& runs) {
  runs.erase(std::unique(runs.begin(), runs.end(),
                         [](const TextRun& a, const TextRun& b) { return AreEqual(a.attributes, b.attributes); }),
             runs.end());
}

boost::intrusive_ptr<CaptionState> Copy(const CaptionStatePtr& state) {
  return new CaptionState(*state);
}

CaptionStatePtr KeepIfEqual(const CaptionStatePtr& before, const boost::intrusive_ptr<CaptionState>& after) {
  return *before == *after ? before : CaptionStatePtr(after);
}

// One span attribute, as far as the format allows it.
class SpanChange {
 public:
  SpanChange(CaptionFormatParameter parameter, const CaptionFormatInfo& info, StreamFormat format)
      : mParameter(parameter), mInfo(info), mFormat(format), mFacts(GetFormatFacts(format)) {}

  // Whether the format takes anything of it, for any text or for this.
  bool IsAllowedIn(const CaptionState& state) const {
    TextSpanAttributes usual;
    const auto isAllowedOver = [this](const SharedSpan& span) {
      TextSpanAttributes copy = *span;
      return ApplyTo(copy);
    };
    return ApplyTo(usual) || (state.typing && isAllowedOver(state.typing)) ||
           std::any_of(state.runs.begin(), state.runs.end(),
                       [&isAllowedOver](const TextRun& run) { return isAllowedOver(run.attributes); });
  }

  SharedSpan Apply(const SharedSpan& before) const {
    TextSpanAttributes span = *before;
    ApplyTo(span);
    return span == *before ? before : Share(span);
  }

 private:
  // All of these: false if the format allows nothing of it, and nothing was written.
  bool ApplyTo(TextSpanAttributes& span) const {
    bool isAllowed = ApplyParameter(span);
    bool ignored = false;
    if (mInfo.GetForceBolded())
      isAllowed |= Write(mFacts.bold, span.bold, mInfo.GetIsBolded(ignored));
    if (mInfo.GetForceItalicized())
      isAllowed |= Write(mFacts.italic, span.italic, mInfo.GetIsItalicized(ignored));
    return isAllowed;
  }

  template <class T> static bool Write(bool isAllowed, T& target, const T& value) {
    if (isAllowed)
      target = value;
    return isAllowed;
  }

  bool ApplyParameter(TextSpanAttributes& span) const {
    bool ignored = false;
    switch (mParameter) {
    case kFormatUnderline:
      return Write(mFacts.underline, span.underline, mInfo.GetIsUnderlined(ignored));
    case kFormatItalic:
      return Write(mFacts.italic, span.italic, mInfo.GetIsItalicized(ignored));
    case kFormatBold:
      return Write(mFacts.bold, span.bold, mInfo.GetIsBolded(ignored));
    case kFormatFontFamily:
      return ApplyFamily(span);
    case kFormatFontSize: {
      const float size = mInfo.GetFontSize(ignored);
      return Write(IsLegalSize(mFormat, size), span.size, size);
    }
    case kFormatTextColor:
      return ApplyColor(CaptioningColor::kColorType_Text, span.textColor);
    case kFormatBackgroundColor:
      return ApplyColor(CaptioningColor::kColorType_Background, span.backgroundColor);
    case kFormatEdgeColor:
    case kFormatEdgeWidth: {
      const bool isColorAllowed = ApplyColor(CaptioningColor::kColorType_Edge, span.edgeColor);
      return ApplyEdgeWidth(span) || isColorAllowed;
    }
    case kFormatTextOpacity:
      return ApplyOpacity(CaptioningColor::kColorType_Text, span.textColor);
    case kFormatBackgroundOpacity:
      return ApplyOpacity(CaptioningColor::kColorType_Background, span.backgroundColor);
    case kFormatEdgeOpacity:
      return ApplyOpacity(CaptioningColor::kColorType_Edge, span.edgeColor);
    default:
      return false;
    }
  }

  bool ApplyFamily(TextSpanAttributes& span) const {
    UString family;
    bool ignored = false;
    mInfo.GetFontFamily(family, ignored);
    return Write(IsLegalFamily(mFormat, family), span.family, family);
  }

  bool ApplyColor(CaptioningColor::ColorType type, CaptioningColor& target) const {
    CaptioningColor color;
    bool ignored = false;
    mInfo.GetColor(type, color, ignored);
    const bool isLegal = SnapToLegalColor(mFormat, type, color) || SnapToLegalColorBeside(mFormat, type, target, color);
    return Write(isLegal, target, color);
  }

  bool ApplyOpacity(CaptioningColor::ColorType type, CaptioningColor& target) const {
    bool ignored = false;
    float opacity = mInfo.GetOpacity(type, ignored);
    const bool isLegal = SnapToLegalOpacity(mFormat, type, opacity);
    return Write(isLegal, target.alpha, opacity);
  }

  bool ApplyEdgeWidth(TextSpanAttributes& span) const {
    bool ignored = false;
    const float width = mInfo.GetTextEdgeWidth(ignored);
    return Write(mFacts.edges && std::isfinite(width) && width >= 0.0F, span.edgeWidth, width);
  }

  CaptionFormatParameter mParameter;
  const CaptionFormatInfo& mInfo;
  StreamFormat mFormat;
  const FormatFacts& mFacts;
};

bool IsParagraphParameter(CaptionFormatParameter parameter) {
  switch (parameter) {
  case kFormatCaptionType:
  case kFormatAnchor:
  case kFormatTextAlignment:
  case kFormatPositionX:
  case kFormatPositionY:
  case kFormatLineSpacing:
    return true;
  default:
    return false;
  }
}

bool IsAnchor(int anchor) {
  return anchor >= -2 && anchor <= 9;
}

// A block whose height is not known may begin right below the grid, which is as far as the panel's limits let it.
int LastRowOf(const ParagraphStyleAttributes& paragraph, int rows) {
  return paragraph.blockHeight > 0 ? rows - 1 : rows;
}

// info is a copy: some of its getters are not const.
void ApplyToParagraph(ParagraphStyleAttributes& paragraph, CaptionFormatParameter parameter, CaptionFormatInfo info,
                      StreamFormat format, int columns, int rows) {
  const FormatFacts& facts = GetFormatFacts(format);
  bool ignored = false;
  switch (parameter) {
  case kFormatCaptionType:
    if (const CaptionType type = info.GetCaptionType(ignored); IsLegalCaptionType(format, type))
      paragraph.captionType = type;
    break;
  case kFormatAnchor:
    if (IsAnchor(info.GetAnchorID()))
      paragraph.anchor = info.GetAnchorID();
    break;
  case kFormatTextAlignment:
    if (const int alignment = info.GetTextAlignment(ignored);
        alignment >= ParagraphStyleAttributes::kTextAlignment_Left &&
        alignment <= ParagraphStyleAttributes::kTextAlignment_Right)
      paragraph.alignment = info.GetTextAlignment(ignored);
    break;
  case kFormatPositionX:
    if (IsOpenCaptions(format))
      MakeRoomForPosition(paragraph, info.GetPositionX(ignored), columns, rows);
    paragraph.x = info.GetPositionX(ignored);
    if (facts.limited)
      paragraph.x = std::clamp(paragraph.x, 0, std::max(0, GridColumns(format, columns) - 1));
    break;
  case kFormatPositionY:
    if (IsOpenCaptions(format))
      MakeRoomForPosition(paragraph, info.GetPositionY(ignored), columns, rows);
    paragraph.y = info.GetPositionY(ignored);
    if (facts.limited)
      paragraph.y = std::clamp(paragraph.y, facts.topPosition,
                               std::max(facts.topPosition, LastRowOf(paragraph, GridRows(format, rows))));
    break;
  case kFormatLineSpacing:
    if (!facts.limited)
      paragraph.lineSpacing = info.GetLineSpacing(ignored);
    break;
  default:
    break;
  }
}

} // namespace

TextRange ClampRange(const UString& text, TextRange range) {
  const std::size_t size = text.size();
  std::size_t start = std::min({range.first, range.second, size});
  std::size_t end = std::min(std::max(range.first, range.second), size);
  const bool isEmpty = start == end;
  if (PartsCharacter(text, start))
    --start;
  if (isEmpty)
    return {start, start};
  if (PartsCharacter(text, end))
    ++end;
  return {start, end};
}

std::size_t FindRun(const CaptionState& state, std::size_t index) {
  const auto after = std::upper_bound(state.runs.begin(), state.runs.end(), index,
                                      [](std::size_t at, const TextRun& run) { return at < run.start; });
  return after == state.runs.begin() ? 0 : static_cast<std::size_t>(after - state.runs.begin()) - 1;
}

const SharedSpan& GetTypingStyle(const CaptionState& state, std::size_t index) {
  index = ClampRange(state.text, {index, index}).first;
  if (state.typing && state.typingAt == index)
    return state.typing;
  return state.runs[FindRun(state, index > 0 ? index - 1 : 0)].attributes;
}

CaptionStatePtr WithMeasure(const CaptionState& state, int lineWidth, int blockHeight, std::uint32_t frame) {
  auto* measured = new CaptionState(state);
  measured->measured.frame = frame;
  measured->paragraph.lineWidth = lineWidth;
  measured->paragraph.blockHeight = blockHeight;
  return measured;
}

CaptionStatePtr ReplaceText(const CaptionStatePtr& state, const UString& newText, const TextRange& caret) {
  if (state->text == newText)
    return state;
  const Replacement change = FindReplacement(state->text, newText, caret.second);
  const boost::intrusive_ptr<CaptionState> next = Copy(state);
  next->text = newText;
  next->runs.clear();
  AppendRuns(next->runs, state->runs, 0, change.start, 0);
  if (change.inserted > 0)
    next->runs.push_back({static_cast<std::uint32_t>(change.start), GetTypingStyle(*state, change.start)});
  AppendRuns(next->runs, state->runs, change.start + change.removed, state->text.size(),
             change.start + change.inserted);
  if (next->runs.empty())
    next->runs.push_back({0, state->runs.front().attributes});
  MergeNeighbours(next->runs);
  next->typing.reset();
  next->typingAt = 0;
  return next;
}

CaptionStatePtr ApplyToRange(const CaptionStatePtr& state, CaptionFormatParameter parameter,
                             const CaptionFormatInfo& info, const TextRange& range, StreamFormat format, int columns,
                             int rows) {
  const boost::intrusive_ptr<CaptionState> next = Copy(state);
  if (IsParagraphParameter(parameter)) {
    if (GetFormatFacts(format).limited && (parameter == kFormatPositionX || parameter == kFormatPositionY))
      LeaveCell(*next, format, columns, rows);
    ApplyToParagraph(next->paragraph, parameter, info, format, columns, rows);
    return KeepIfEqual(state, next);
  }

  const SpanChange change(parameter, info, format);
  if (!change.IsAllowedIn(*state))
    return state;
  const bool isWhole = range.first == 0 && range.second == kTextRange_End;
  const TextRange covered = ClampRange(state->text, range);
  if (covered.first == covered.second && !isWhole) {
    const SharedSpan& before = GetTypingStyle(*state, covered.first);
    next->typing = change.Apply(before);
    next->typingAt = static_cast<std::uint32_t>(covered.first);
    return next->typing == before ? state : CaptionStatePtr(next);
  }

  next->typing.reset();
  next->typingAt = 0;
  if (state->text.empty()) {
    next->runs = {{0, change.Apply(GetTypingStyle(*state, 0))}};
    return KeepIfEqual(state, next);
  }
  next->runs.clear();
  AppendRuns(next->runs, state->runs, 0, covered.first, 0);
  const std::size_t firstChanged = next->runs.size();
  AppendRuns(next->runs, state->runs, covered.first, covered.second, covered.first);
  for (std::size_t i = firstChanged; i < next->runs.size(); ++i)
    next->runs[i].attributes = change.Apply(next->runs[i].attributes);
  AppendRuns(next->runs, state->runs, covered.second, state->text.size(), covered.second);
  MergeNeighbours(next->runs);
  return KeepIfEqual(state, next);
}

void NormaliseRuns(CaptionState& state) {
  std::vector<TextRun>& runs = state.runs;
  std::stable_sort(runs.begin(), runs.end(), [](const TextRun& a, const TextRun& b) { return a.start < b.start; });
  const std::size_t end = std::max<std::size_t>(state.text.size(), 1);
  std::vector<TextRun> proper;
  proper.reserve(runs.size() + 1);
  if (runs.empty() || runs.front().start > 0)
    proper.push_back({0, DefaultSpan()});
  for (TextRun& run : runs) {
    if (run.start >= end)
      break;
    if (!run.attributes)
      run.attributes = DefaultSpan();
    if (PartsCharacter(state.text, run.start))
      --run.start;
    if (!proper.empty() && proper.back().start == run.start)
      proper.back() = std::move(run);
    else
      proper.push_back(std::move(run));
  }
  MergeNeighbours(proper);
  proper.shrink_to_fit();
  runs = std::move(proper);
}

CaptionStatePtr MakeCaptionState(const zebmediatypes::TickTime& begin, const zebmediatypes::TickTime& end, UString text,
                                 std::vector<TextRun> runs, const ParagraphStyleAttributes& paragraph) {
  const boost::intrusive_ptr<CaptionState> state(new CaptionState);
  state->begin = begin;
  state->end = end;
  state->text = std::move(text);
  state->runs = std::move(runs);
  state->paragraph = paragraph;
  NormaliseRuns(*state);
  return state;
}

} // namespace zebcaptioning
