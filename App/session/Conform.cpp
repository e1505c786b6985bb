#include "App/session/Conform.h"

#include <algorithm>
#include <cmath>

#include "zebcaptioning/FormatFacts.h"

namespace App {

using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using zebcaptioning::StreamFormat;

namespace {

// An unknown frame counts as one of full high definition.
constexpr int kFrameWidth = 1920;
constexpr int kFrameHeight = 1080;

bool IsStandardAspect(const BE::MediaInfo& media) {
  if (media.width <= 0 || media.height <= 0)
    return false;
  constexpr double kBetweenStandardAndWide = 1.5;
  return media.pixelAspect.ToDouble() * media.width / media.height < kBetweenStandardAndWide;
}

int Scale(int value, int from, int to) {
  if (from <= 0 || to <= 0 || from == to)
    return value;
  return static_cast<int>(std::lround(static_cast<double>(value) * to / from));
}

std::vector<zebcaptioning::TextRun> ConformRuns(const std::vector<zebcaptioning::TextRun>& runs, StreamFormat format) {
  std::vector<zebcaptioning::TextRun> conformed;
  for (const zebcaptioning::TextRun& run : runs) {
    const auto span = zebcaptioning::Share(zebcaptioning::NearestLegalSpan(format, *run.attributes));
    if (conformed.empty() || conformed.back().attributes != span)
      conformed.push_back({run.start, span});
  }
  return conformed;
}

} // namespace

Grid GridOf(const BE::InterfaceRef<BE::CaptioningStream>& stream) {
  zebcaptioning::CaptionDisplaySettings settings;
  stream->GetDisplaySettings(zebmediatypes::kTime_Zero, settings);
  Grid grid;
  grid.format = settings.GetRegionBaseDimensions(grid.columns, grid.rows);
  return grid;
}

Grid GridOf(StreamFormat format, const BE::MediaInfo& media) {
  if (zebcaptioning::IsOpenCaptions(format))
    return {format, media.width > 0 ? media.width : kFrameWidth, media.height > 0 ? media.height : kFrameHeight};
  return {format, zebcaptioning::GetCaptionColumns(format, IsStandardAspect(media)),
          zebcaptioning::GetCaptionRows(format)};
}

CaptionStatePtr Conform(const CaptionStatePtr& state, const Grid& from, const Grid& to) {
  boost::intrusive_ptr<CaptionState> moved(new CaptionState(*state));
  moved->paragraph.x = Scale(state->paragraph.x, from.columns, to.columns);
  moved->paragraph.y = Scale(state->paragraph.y, from.rows, to.rows);
  const boost::intrusive_ptr<zebcaptioning::Caption> pattern(new zebcaptioning::Caption(CaptionStatePtr(moved)));
  const zebcaptioning::Caption model(state->begin, state->end, pattern, to.format, to.columns, to.rows);

  boost::intrusive_ptr<CaptionState> conformed(new CaptionState(*moved));
  conformed->paragraph = model.GetState()->paragraph;
  conformed->runs = ConformRuns(state->runs, to.format);
  conformed->typing = nullptr;
  return conformed;
}

} // namespace App
