#include "Captions/contracts/Caption.h"

#include "zebcaptioning/CaptionRegions.h"
#include "zebcaptioning/Conversion.h"
#include "zebcaptioning/LineEnds.h"
#include "zebcaptioning/Spans.h"

namespace zebcaptioning {

bool operator==(const CaptionState& a, const CaptionState& b) {
  const auto same = [](const SharedSpan& left, const SharedSpan& right) {
    return left == right || (left && right && *left == *right);
  };
  return a.begin == b.begin && a.end == b.end && a.text == b.text && a.paragraph == b.paragraph && a.runs == b.runs &&
         same(a.typing, b.typing) && (!a.typing || a.typingAt == b.typingAt);
}

namespace {

CaptionStatePtr MakeFromPattern(const zebmediatypes::TickTime& begin, const zebmediatypes::TickTime& end,
                                const boost::intrusive_ptr<Caption>& pattern, StreamFormat format, int columns,
                                int rows) {
  if (!pattern)
    return ConformToFormat(MakeCaptionState(begin, end, {}), format, columns, rows);
  const CaptionState& source = *pattern->GetState();
  ParagraphStyleAttributes paragraph = source.paragraph;
  paragraph.lineWidth = ParagraphStyleAttributes::kLineWidth_Unknown;
  paragraph.blockHeight = 0;
  // Nothing was typed into the pattern yet, but what would be has its look already.
  const SharedSpan& look = source.text.empty() ? GetTypingStyle(source, 0) : source.runs.front().attributes;
  return ConformToFormat(MakeCaptionState(begin, end, {}, {{0, look}}, paragraph), format, columns, rows);
}

} // namespace

Caption::Caption() {
  static const CaptionStatePtr empty = MakeCaptionState({}, {}, {});
  mState = empty;
}

Caption::Caption(const zebmediatypes::TickTime& begin, const zebmediatypes::TickTime& end,
                 const boost::intrusive_ptr<Caption>& pattern, StreamFormat format, int columns, int rows)
    : mState(MakeFromPattern(begin, end, pattern, format, columns, rows)) {}

Caption::Caption(CaptionStatePtr state) {
  SetState(std::move(state));
}

Caption::~Caption() = default;

void Caption::GetCaptionText(zebcore::UString& text, bool asTyped) const {
  text = mState->text;
  if (!asTyped)
    text.erase(text.find_last_not_of(u'\n') + 1);
}

void Caption::GetFormatInfo(boost::intrusive_ptr<CaptionFormatInfo>& info, const TextRange& range, int, int,
                            bool first) const {
  if (!info) {
    info = new CaptionFormatInfo;
    first = true;
  }
  if (first)
    info->Reset();
  const CaptionState& state = *mState;
  info->MergeParagraph(state.paragraph, first);
  const CaptionRegions::Region* region = mRegions ? mRegions->Find(state.paragraph.region) : nullptr;
  info->MergeRegionArea(region ? &region->area : nullptr, region && region->percent, first);

  if (range.first == 0 && range.second == kTextRange_End && !state.text.empty()) {
    for (const TextRun& run : state.runs) {
      info->MergeSpan(run.attributes, first);
      first = false;
    }
    return;
  }
  const TextRange covered = ClampRange(state.text, ToTextUnits(state.text, range));
  if (covered.first == covered.second) {
    info->MergeSpan(GetTypingStyle(state, covered.first), first);
    return;
  }
  for (std::size_t run = FindRun(state, covered.first);
       run < state.runs.size() && state.runs[run].start < covered.second; ++run) {
    info->MergeSpan(state.runs[run].attributes, first);
    first = false;
  }
}

bool Caption::HasLineWidth() const {
  return mState->paragraph.lineWidth != ParagraphStyleAttributes::kLineWidth_Unknown;
}

void Caption::SetState(CaptionStatePtr state) {
  if (state)
    mState = std::move(state);
  else
    mState = Caption().GetState();
}

void Caption::SetRegions(boost::intrusive_ptr<const CaptionRegions> regions) {
  mRegions = std::move(regions);
}

} // namespace zebcaptioning
