#include "zebcaptioning/ClosedPlacement.h"

#include <algorithm>

#include "zebcaptioning/FormatFacts.h"
#include "zebcaptioning/Spans.h"

namespace zebcaptioning {

namespace {

constexpr ParagraphStyleAttributes::AnchorID kAnchor_ByPosition = -1;
constexpr ParagraphStyleAttributes::AnchorID kAnchor_None = 9;

// In cells.
struct Block {
  int width = 0;
  int height = 0;
};

Block MeasureBlock(const CaptionState& state, bool hasDoubleHeight) {
  Block block{0, 1};
  int width = 0;
  bool isDouble = false;
  for (std::size_t i = 0; i < state.text.size(); ++i) {
    if (state.text[i] == u'\n') {
      block.height += isDouble ? 2 : 1;
      width = 0;
      isDouble = false;
    } else if ((state.text[i] & 0xFC00) != 0xDC00) { // a pair of units is one character
      block.width = std::max(block.width, ++width);
      isDouble =
          isDouble || (hasDoubleHeight && state.runs[FindRun(state, i)].attributes->size > kFontSize_DoubleAbove);
    }
  }
  block.height += isDouble ? 1 : 0;
  return block;
}

} // namespace

void LeaveCell(CaptionState& state, StreamFormat format, int columns, int rows) {
  ParagraphStyleAttributes& paragraph = state.paragraph;
  const int cell = paragraph.anchor;
  if (cell < 0 || cell >= kAnchor_None)
    return;
  paragraph.anchor = kAnchor_ByPosition;
  if (!paragraph.region.IsNull())
    return;
  const FormatFacts& facts = GetFormatFacts(format);
  const Block block = MeasureBlock(state, facts.doubleHeight);
  const int top = facts.topPosition;
  const int freeColumns = std::max(0, GridColumns(format, columns) - block.width);
  const int freeRows = std::max(0, GridRows(format, rows) - top - block.height);
  paragraph.x = freeColumns * (cell % 3) / 2;
  paragraph.y = top + freeRows * (cell / 3) / 2;
}

} // namespace zebcaptioning
