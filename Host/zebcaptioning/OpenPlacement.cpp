#include "zebcaptioning/OpenPlacement.h"

#include <algorithm>
#include <cmath>

namespace zebcaptioning {

namespace {

// Blocks that are anchored to a cell of the frame keep this share of it free at the frame's edges (SMPTE ST 2046-1, the
// safe title area of 90 percent).
constexpr double kSafeMargin = 0.05;
constexpr ParagraphStyleAttributes::AnchorID kAnchor_BottomLeft = 6;
constexpr ParagraphStyleAttributes::AnchorID kAnchor_ByPosition = -1;
constexpr ParagraphStyleAttributes::AnchorID kAnchor_None = 9;

bool HasCell(const ParagraphStyleAttributes& paragraph) {
  return paragraph.anchor >= 0 && paragraph.anchor < kAnchor_None;
}

// A coordinate of 0 without a cell was never set: anchor -1 says that 0 is meant.
bool WasNeverSet(const ParagraphStyleAttributes& paragraph, int coordinate) {
  return paragraph.anchor == kAnchor_None && coordinate == 0;
}

} // namespace

bool StandsAtX(const ParagraphStyleAttributes& paragraph) {
  return !HasCell(paragraph) && !WasNeverSet(paragraph, paragraph.x);
}
bool StandsAtY(const ParagraphStyleAttributes& paragraph) {
  return !HasCell(paragraph) && !WasNeverSet(paragraph, paragraph.y);
}

OpenPlace GetOpenPlace(const ParagraphStyleAttributes& paragraph, double blockWidth, double blockHeight,
                       double frameWidth, double frameHeight) {
  const int cell = HasCell(paragraph) ? paragraph.anchor : kAnchor_BottomLeft + paragraph.alignment;
  const int row = cell / 3;
  const double freeWidth = frameWidth * (1.0 - 2.0 * kSafeMargin) - blockWidth;
  const double freeHeight = frameHeight * (1.0 - 2.0 * kSafeMargin) - blockHeight;
  return {StandsAtX(paragraph) ? paragraph.x : frameWidth * kSafeMargin + freeWidth * (cell % 3) / 2.0,
          StandsAtY(paragraph) ? paragraph.y : frameHeight * kSafeMargin + freeHeight * row / 2.0};
}

void MakeRoomForPosition(ParagraphStyleAttributes& paragraph, int coordinate, int frameWidth, int frameHeight) {
  if (!HasCell(paragraph) && !WasNeverSet(paragraph, coordinate))
    return;
  const OpenPlace place = GetOpenPlace(paragraph, std::max(0, paragraph.lineWidth), std::max(0, paragraph.blockHeight),
                                       frameWidth, frameHeight);
  paragraph.x = static_cast<int>(std::lround(place.x));
  paragraph.y = static_cast<int>(std::lround(place.y));
  paragraph.anchor = kAnchor_ByPosition;
}

} // namespace zebcaptioning
