#include "HSL/OpenCaptionLayout.h"

#include <algorithm>

namespace HSL {

namespace {

using zebcaptioning::ParagraphStyleAttributes;

// Half lines of pixels do not count as covered.
constexpr double kTolerance = 0.5;

bool Covers(const PlacedBlock& a, const PlacedBlock& b) {
  return a.left + a.width > b.left + kTolerance && b.left + b.width > a.left + kTolerance &&
         a.top + a.height > b.top + kTolerance && b.top + b.height > a.top + kTolerance;
}

} // namespace

void ArrangeLines(OpenCaptionLayout& layout, const ParagraphStyleAttributes& paragraph, double margin) {
  double next = 0.0;
  double first = 0.0;
  double last = 0.0;
  double widest = 0.0;
  for (OpenCaptionLayout::Line& line : layout.lines) {
    line.top = next;
    first = std::min(first, line.top);
    last = std::max(last, line.top + line.height);
    widest = std::max(widest, line.width);
    next += line.height * (1.0 + paragraph.lineSpacing / 100.0);
  }
  const double share = paragraph.alignment == ParagraphStyleAttributes::kTextAlignment_Right    ? 1.0
                       : paragraph.alignment == ParagraphStyleAttributes::kTextAlignment_Center ? 0.5
                                                                                                : 0.0;
  for (OpenCaptionLayout::Line& line : layout.lines) {
    line.top += margin - first;
    line.left = margin + (widest - line.width) * share;
  }
  layout.width = widest + 2.0 * margin;
  layout.height = last - first + 2.0 * margin;
}

void StackBlocks(std::vector<PlacedBlock>& blocks, double frameHeight) {
  for (std::size_t i = 1; i < blocks.size(); ++i) {
    if (blocks[i].isFixed)
      continue;
    PlacedBlock moved = blocks[i];
    // Each step clears one earlier block for good, so that there are no more steps than blocks.
    for (std::size_t steps = 0; steps <= i; ++steps) {
      const auto end = blocks.begin() + static_cast<std::ptrdiff_t>(i);
      const auto covered = std::find_if(blocks.begin(), end, [&moved](const PlacedBlock& earlier) {
        return !earlier.isFixed && Covers(moved, earlier);
      });
      if (covered == end)
        break;
      moved.top = moved.isAtTop ? covered->top + covered->height : covered->top - moved.height;
    }
    if (moved.top >= 0.0 && moved.top + moved.height <= frameHeight)
      blocks[i] = moved;
  }
}

} // namespace HSL
