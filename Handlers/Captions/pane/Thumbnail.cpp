#include "Captions/pane/Thumbnail.h"

#include <algorithm>
#include <limits>

namespace Captivo::Thumbnail {

namespace {

constexpr int kHeight = 64;
constexpr int kMaxWidth = 196;
constexpr int kMargin = 5;
constexpr int kTopInRow = 6;

int RoundToInt(double value) {
  constexpr double kMin = std::numeric_limits<int>::min();
  constexpr double kMax = std::numeric_limits<int>::max();
  return value == value ? static_cast<int>(std::clamp(value + 0.5, kMin, kMax)) : 0;
}

} // namespace

RectT<int> GetSourceRect(const RectT<int>& frameRect, const zebmediatypes::PixelAspectRatio& pixelAspectRatio) {
  const double scale = static_cast<double>(kHeight) / frameRect.height;
  const int width = RoundToInt(pixelAspectRatio.ToDouble() * frameRect.width * scale);
  return {0, 0, std::min(width, kMaxWidth), RoundToInt(frameRect.height * scale)};
}

RectT<int> GetTargetRect(const RectT<int>& sourceRect, const PointT<int>& origin) {
  const int inset = std::max(0, (kHeight - sourceRect.height) / 2);
  return {origin.x + kMargin, origin.y + kTopInRow + inset, sourceRect.width, kHeight + 1 - 2 * inset};
}

} // namespace Captivo::Thumbnail
