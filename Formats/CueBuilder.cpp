#include "Formats/CueBuilder.h"

#include <algorithm>

#include "Formats/Text.h"
#include "zebcaptioning/FormatFacts.h"

namespace Formats {

using zebcaptioning::CaptionState;
using zebcaptioning::ParagraphStyleAttributes;
using zebmediatypes::TickTime;

namespace {

constexpr std::int64_t kTicksPerMillisecond = zebmediatypes::kTicksPerSecond / 1000;
// Files that open elements for ever are damaged; what lies deeper has no colour of its own.
constexpr std::size_t kMaxColorDepth = 256;

} // namespace

CueBuilder::CueBuilder(FormatRules& rules) : mRules(rules) {}

void CueBuilder::Open(Element element, std::optional<CaptioningColor> textColor,
                      std::optional<CaptioningColor> backgroundColor) {
  if (mOpen.size() < kMaxColorDepth)
    mOpen.push_back({element, textColor, backgroundColor});
  ++mDepth[static_cast<std::size_t>(element)];
  mChanged = true;
}

bool CueBuilder::Close(Element element) {
  int& depth = mDepth[static_cast<std::size_t>(element)];
  if (depth == 0)
    return false;
  --depth;
  const auto isSame = [&](const Colored& open) { return open.element == element; };
  // The innermost may lie too deep to be kept.
  if (std::count_if(mOpen.begin(), mOpen.end(), isSame) > depth)
    mOpen.erase(std::next(std::find_if(mOpen.rbegin(), mOpen.rend(), isSame)).base());
  mChanged = true;
  return true;
}

void CueBuilder::SetBase(const TextSpanAttributes& base) {
  mBase = base;
  mChanged = true;
}

void CueBuilder::CloseAll() {
  for (int& depth : mDepth)
    depth = 0;
  mOpen.clear();
  mChanged = true;
}

TextSpanAttributes CueBuilder::Current() const {
  TextSpanAttributes attributes = mBase;
  attributes.bold = attributes.bold || IsOpen(Element::Bold);
  attributes.italic = attributes.italic || IsOpen(Element::Italic);
  attributes.underline = attributes.underline || IsOpen(Element::Underline);
  for (const Colored& color : mOpen) {
    if (color.text)
      attributes.textColor = *color.text;
    if (color.background)
      attributes.backgroundColor = *color.background;
  }
  return attributes;
}

void CueBuilder::Append(std::u16string_view text) {
  if (text.empty())
    return;
  if (mChanged || mRuns.empty()) {
    const TextSpanAttributes current = Current();
    if (mRuns.empty() || !(mRuns.back().attributes == current))
      mRuns.push_back({static_cast<std::uint32_t>(mText.size()), current});
    mChanged = false;
  }
  mText.append(text);
}

void CueBuilder::Lose(std::string what) {
  if (std::find(mLosses.begin(), mLosses.end(), what) == mLosses.end())
    mLosses.push_back(std::move(what));
}

void CueBuilder::TrimEnd() {
  while (!mText.empty() && mText.back() == u'\n')
    mText.pop_back();
  while (!mRuns.empty() && mRuns.back().start >= mText.size())
    mRuns.pop_back();
}

boost::intrusive_ptr<CaptionState> CueBuilder::Build(TickTime begin, TickTime end, const Placement& placement) {
  boost::intrusive_ptr<CaptionState> state(new CaptionState);
  state->begin = begin;
  state->end = end;
  if (mRuns.empty())
    mRuns.push_back({0, Current()});
  for (const Run& run : mRuns) {
    const zebcaptioning::SharedSpan fitted = mRules.Fit(run.attributes, mLosses);
    if (state->runs.empty() || !(*state->runs.back().attributes == *fitted))
      state->runs.push_back({run.start, fitted});
  }
  state->text = std::move(mText);
  state->paragraph.captionType = zebcaptioning::GetDefaultCaptionType(mRules.GetFormat());
  state->paragraph.anchor = placement.anchor;
  state->paragraph.alignment = static_cast<ParagraphStyleAttributes::TextAlignmentType>(placement.alignment);
  state->paragraph.x = placement.x;
  state->paragraph.y = placement.y;
  return state;
}

std::string DescribeLosses(const std::vector<std::string>& losses) {
  if (losses.empty())
    return {};
  std::string list;
  for (const std::string& loss : losses)
    list += (list.empty() ? "" : ", ") + loss;
  return Say("$$$/Vidra/Formats/CameInWithout=The caption came in without {0}.", {list});
}

int GetAnchorAlignment(int anchor) {
  return anchor >= 0 && anchor <= 8 ? anchor % 3 : ParagraphStyleAttributes::kTextAlignment_Center;
}

Placement PlaceText(StreamFormat format, std::u16string_view text, int anchor, int alignment) {
  Placement placement;
  placement.anchor = anchor;
  placement.alignment = alignment;
  if (zebcaptioning::IsOpenCaptions(format))
    return placement;
  const int rows = zebcaptioning::GetCaptionRows(format);
  const int columns = zebcaptioning::GetCaptionColumns(format, false);
  const int top = zebcaptioning::GetTopPosition(format);
  std::size_t height = 1;
  std::size_t width = 0;
  std::size_t line = 0;
  for (const char16_t c : text) {
    if (c == u'\n') {
      ++height;
      line = 0;
    } else {
      width = std::max(width, ++line);
    }
  }
  const int freeRows = rows - static_cast<int>(std::min<std::size_t>(height, static_cast<std::size_t>(rows)));
  const int freeColumns = columns - static_cast<int>(std::min<std::size_t>(width, static_cast<std::size_t>(columns)));
  const bool hasAnchor = anchor >= 0 && anchor <= 8;
  const int row = hasAnchor ? anchor / 3 : 2;
  const int column = hasAnchor ? anchor % 3 : alignment;
  placement.x = freeColumns * column / 2;
  placement.y = std::max(row == 0 ? top : row == 1 ? (top + freeRows) / 2 : freeRows, top);
  return placement;
}

UString OpenText(std::string_view bytes, std::string (*sayNoText)(), ReadResult& result) {
  if (bytes.empty())
    result.error = Say("$$$/Vidra/Formats/EmptyFile=The file is empty.");
  else if (IsBinary(bytes))
    result.error = sayNoText();
  return result.error.empty() ? DecodeText(bytes, result.encoding) : UString();
}

void SortByBegin(std::vector<CaptionStatePtr>& captions) {
  std::stable_sort(captions.begin(), captions.end(),
                   [](const CaptionStatePtr& a, const CaptionStatePtr& b) { return a->begin < b->begin; });
}

TickTime FromMilliseconds(std::int64_t milliseconds) {
  return TickTime(milliseconds * kTicksPerMillisecond);
}

std::int64_t ToMilliseconds(TickTime time) {
  const std::int64_t ticks = time.GetTicks();
  const std::int64_t whole = ticks / kTicksPerMillisecond;
  const std::int64_t rest = ticks % kTicksPerMillisecond;
  if (rest * 2 >= kTicksPerMillisecond)
    return whole + 1;
  return rest * 2 < -kTicksPerMillisecond ? whole - 1 : whole;
}

ProgressMeter::ProgressMeter(const Progress& progress, std::size_t total)
    : mProgress(progress), mTotal(std::max<std::size_t>(total, 1)), mStep(std::max<std::size_t>(mTotal / 100, 1)) {}

bool ProgressMeter::Reach(std::size_t done) {
  if (!mProgress || done < mNext)
    return true;
  mNext = done + mStep;
  return mProgress(static_cast<double>(std::min(done, mTotal)) / static_cast<double>(mTotal));
}

} // namespace Formats
