#include "App/monitor/CaptionsOnShow.h"

#include <algorithm>
#include <cstdint>

namespace App::monitor {

using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using zebmediatypes::TickTime;

namespace {

constexpr std::size_t kMostRollUpRows = 4;

bool RollsUp(const CaptionState& state) {
  return CountRollUpRows(state.paragraph.captionType) > 0;
}

// The one that a caption pushes up: of those that roll up and stand until it begins, the newest. Null for none.
CaptionStatePtr FindPushedUp(const BE::CaptioningStream& stream, const CaptionState& state) {
  CaptionStatePtr newest;
  for (const auto& caption : stream.FindAt(TickTime(state.begin.GetTicks() - 1))) {
    const CaptionStatePtr& candidate = caption->GetState();
    if (RollsUp(*candidate) && (!newest || candidate->begin >= newest->begin))
      newest = candidate;
  }
  return newest;
}

std::vector<CaptionStatePtr> FindRolledUp(const BE::CaptioningStream& stream, const CaptionStatePtr& state) {
  std::vector<CaptionStatePtr> above;
  for (CaptionStatePtr at = FindPushedUp(stream, *state); at && above.size() < kMostRollUpRows;
       at = FindPushedUp(stream, *at))
    above.push_back(at);
  std::reverse(above.begin(), above.end());
  return above;
}

std::optional<zebcaptioning::CaptionRegions::Region> FindRegion(const BE::CaptioningStream& stream,
                                                                const CaptionState& state) {
  if (state.paragraph.region.IsNull())
    return std::nullopt;
  for (const auto& region : stream.GetDescription().regions)
    if (zebcore::utility::ImmutableString(region.name) == state.paragraph.region)
      return zebcaptioning::CaptionRegions::Region{state.paragraph.region, region.area, region.percent};
  return std::nullopt;
}

} // namespace

TickTime GetPictureTime(const CaptionState& caption) {
  const std::int64_t begin = caption.begin.GetTicks();
  const std::int64_t end = caption.end.GetTicks();
  return end > begin ? TickTime(begin + (end - begin) / 2) : caption.begin;
}

std::vector<CaptionOnShow> FindOnShow(const BE::CaptioningStream& stream, TickTime time) {
  std::vector<CaptionStatePtr> states;
  for (const auto& caption : stream.FindAt(time))
    states.push_back(caption->GetState());
  std::stable_sort(states.begin(), states.end(), [](const auto& a, const auto& b) { return a->begin < b->begin; });

  const auto newest = std::find_if(states.rbegin(), states.rend(), [](const auto& state) { return RollsUp(*state); });
  const std::vector<CaptionStatePtr> rolledUp =
      newest != states.rend() ? FindRolledUp(stream, *newest) : std::vector<CaptionStatePtr>();
  std::vector<CaptionOnShow> shown;
  for (const CaptionStatePtr& state : states) {
    if (std::find(rolledUp.begin(), rolledUp.end(), state) != rolledUp.end())
      continue;
    const bool isNewest = newest != states.rend() && state == *newest;
    shown.push_back({state, isNewest ? rolledUp : std::vector<CaptionStatePtr>(), FindRegion(stream, *state)});
  }
  return shown;
}

CaptionScreen MakeScreen(const BE::CaptioningStream& stream, TickTime time) {
  zebcaptioning::CaptionDisplaySettings settings;
  stream.GetDisplaySettings(time, settings);
  int columns = 0;
  int rows = 0;
  const zebcaptioning::StreamFormat format = settings.GetRegionBaseDimensions(columns, rows);
  return LayOutScreen(FindOnShow(stream, time), format, columns, rows);
}

} // namespace App::monitor
