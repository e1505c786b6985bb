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

} // namespace

bool StandsAtPosition(const ParagraphStyleAttributes& paragraph) {
  const bool wasNeverPlaced = paragraph.anchor == kAnchor_None && paragraph.x == 0 && paragraph.y == 0;
  return !HasCell(paragraph) && !wasNeverPlaced;
}

OpenPlace GetOpenPlace(const ParagraphStyleAttributes& paragraph, double blockWidth, double blockHeight,
                       double frameWidth, double frameHeight) {
  if (StandsAtPosition(paragraph))
    return {static_cast<double>(paragraph.x), static_cast<double>(paragraph.y)};
  const int cell = HasCell(paragraph) ? paragraph.anchor : kAnchor_BottomLeft + paragraph.alignment;
  const double freeWidth = frameWidth * (1.0 - 2.0 * kSafeMargin) - blockWidth;
  const double freeHeight = frameHeight * (1.0 - 2.0 * kSafeMargin) - blockHeight;
  return {frameWidth * kSafeMargin + freeWidth * (cell % 3) / 2.0,
          frameHeight * kSafeMargin + freeHeight * (cell / 3) / 2.0};
}

void TakePositionInPlace(ParagraphStyleAttributes& paragraph, int frameWidth, int frameHeight) {
  if (!StandsAtPosition(paragraph)) {
    const OpenPlace place = GetOpenPlace(paragraph, std::max(0, paragraph.lineWidth),
                                         std::max(0, paragraph.blockHeight), frameWidth, frameHeight);
    paragraph.x = static_cast<int>(std::lround(place.x));
    paragraph.y = static_cast<int>(std::lround(place.y));
  }
  paragraph.anchor = kAnchor_ByPosition;
}

} // namespace zebcaptioning
