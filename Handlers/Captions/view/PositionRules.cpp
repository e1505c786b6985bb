#include "Captions/view/PositionRules.h"

#include <cmath>
#include <limits>

namespace Captivo {

namespace {

constexpr int kGridSide = 3;
constexpr int kAnchor_None = 9;

bool IsInGrid(int coordinate) {
  return coordinate >= 0 && coordinate < kGridSide;
}

} // namespace

PointT<int> GridCellOfAnchor(int anchor) {
  if (anchor >= 0 && anchor < kGridSide * kGridSide)
    return {anchor % kGridSide, anchor / kGridSide};
  if (anchor == -2 || anchor == -1 || anchor == kAnchor_None)
    return {-1, -1};
  return {0, 0};
}

int AnchorOfGridCell(const PointT<int>& cell) {
  return IsInGrid(cell.x) && IsInGrid(cell.y) ? kGridSide * cell.y + cell.x : kAnchor_None;
}

int TruncateToInt(double value) {
  using Limits = std::numeric_limits<int>;
  if (std::isnan(value))
    return 0;
  if (value >= Limits::max())
    return Limits::max();
  if (value <= Limits::min())
    return Limits::min();
  return static_cast<int>(value);
}

int PositionOfPercent(double percent, int extent) {
  return TruncateToInt(extent * (percent / 100.0) + 0.5);
}

double PercentOfPosition(int position, int extent) {
  return static_cast<double>(position) / static_cast<double>(extent) * 100.0;
}

int RegionExtent(float side, bool percent, int frameSide) {
  const float extent = percent ? static_cast<float>(frameSide) * side / 100.0F : side;
  return TruncateToInt(static_cast<double>(extent + 0.5F));
}

} // namespace Captivo
