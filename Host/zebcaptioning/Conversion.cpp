#include "zebcaptioning/Conversion.h"

#include <algorithm>
#include <cmath>

#include "zebcaptioning/FormatFacts.h"
#include "zebcaptioning/Spans.h"

namespace zebcaptioning {

namespace {

struct Area {
  int width = 0;
  int height = 0;
};

Area AreaOf(StreamFormat format, int columns, int rows, int frameWidth, int frameHeight) {
  if (IsOpenCaptions(format))
    return {frameWidth, frameHeight};
  return {GridColumns(format, columns), GridRows(format, rows)};
}

// To the same place of another length, in whole units.
int Rescale(int value, int from, int to) {
  if (from <= 0 || to <= 0)
    return value;
  return static_cast<int>(std::lround(static_cast<double>(value) * to / from));
}

void ConformSpans(CaptionState& state, StreamFormat format) {
  const auto conform = [format](SharedSpan& span) {
    const TextSpanAttributes legal = NearestLegalSpan(format, *span);
    if (!(legal == *span))
      span = Share(legal);
  };
  for (TextRun& run : state.runs)
    conform(run.attributes);
  if (state.typing)
    conform(state.typing);
  NormaliseRuns(state);
}

void ConformParagraph(ParagraphStyleAttributes& paragraph, StreamFormat format, int columns, int rows) {
  const FormatFacts& facts = GetFormatFacts(format);
  if (paragraph.captionType != kCaptionType_None && !IsLegalCaptionType(format, paragraph.captionType))
    paragraph.captionType = GetDefaultCaptionType(format);
  if (!facts.limited)
    return;
  paragraph.x = std::clamp(paragraph.x, 0, std::max(0, GridColumns(format, columns) - 1));
  paragraph.y = std::clamp(paragraph.y, facts.topPosition, std::max(facts.topPosition, GridRows(format, rows) - 1));
  paragraph.lineSpacing = 0;
}

} // namespace

CaptionStatePtr ConformToFormat(const CaptionStatePtr& state, StreamFormat format, int columns, int rows) {
  if (GetFormatFacts(format).family == FormatFamily::None)
    return state;
  const boost::intrusive_ptr<CaptionState> next(new CaptionState(*state));
  ConformParagraph(next->paragraph, format, columns, rows);
  ConformSpans(*next, format);
  return *next == *state ? state : CaptionStatePtr(next);
}

CaptionStatePtr ConvertToFormat(const CaptionStatePtr& state, StreamFormat from, StreamFormat to, int columns, int rows,
                                int frameWidth, int frameHeight) {
  if (from == to || GetFormatFacts(to).family == FormatFamily::None)
    return state;
  const bool isGridOfSource = IsOpenCaptions(to);
  const Area source = AreaOf(from, isGridOfSource ? columns : 0, isGridOfSource ? rows : 0, frameWidth, frameHeight);
  const Area target = AreaOf(to, columns, rows, frameWidth, frameHeight);

  const boost::intrusive_ptr<CaptionState> next(new CaptionState(*state));
  ParagraphStyleAttributes& paragraph = next->paragraph;
  // Rows count from the first that may be used, so that the top of one format is the top of the other.
  const int sourceTop = GetTopPosition(from);
  const int targetTop = GetTopPosition(to);
  paragraph.x = Rescale(paragraph.x, source.width, target.width);
  paragraph.y = targetTop + Rescale(paragraph.y - sourceTop, source.height - sourceTop, target.height - targetTop);
  if (source.width != target.width || source.height != target.height) {
    paragraph.lineWidth = ParagraphStyleAttributes::kLineWidth_Unknown;
    paragraph.blockHeight = 0;
  }
  if (!IsLegalCaptionType(to, paragraph.captionType))
    paragraph.captionType = GetDefaultCaptionType(to);
  ConformParagraph(paragraph, to, target.width, target.height);
  ConformSpans(*next, to);
  return *next == *state ? state : CaptionStatePtr(next);
}

} // namespace zebcaptioning
