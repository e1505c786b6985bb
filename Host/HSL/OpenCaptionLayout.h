#pragma once

#include <cstddef>
#include <vector>

#include "Captions/contracts/ParagraphStyleAttributes.h"

namespace HSL {

// Where the lines of an open caption stand. All lengths are pixels of the frame as it is shown: high as the frame, and
// wide as its pixels are.
struct OpenCaptionLayout {
  // A stretch of one run in a line. A run that is written in both directions has several.
  struct Stretch {
    std::size_t run = 0; // index in OpenCaptionScript::runs
    double left = 0.0;   // from the left of the line
    double right = 0.0;
  };
  struct Line {
    double width = 0.0;
    double height = 0.0;
    std::vector<Stretch> stretches; // from left to right; none in an empty line
    double left = 0.0;              // from the left of the block
    double top = 0.0;               // from the top of the block
  };
  std::vector<Line> lines;
  double width = 0.0; // of the block: all lines, and the margin around them
  double height = 0.0;
};

// Gives lines of known width and height their places in the block, and the block its size. margin lies around them.
// Line spacing adds its percentage of a line's height below it, or takes it away.
void ArrangeLines(OpenCaptionLayout& layout, const zebcaptioning::ParagraphStyleAttributes& paragraph, double margin);

// A block that was given a place, in the order of the captions.
struct PlacedBlock {
  double left = 0.0;
  double top = 0.0;
  double width = 0.0;
  double height = 0.0;
  bool isFixed = false; // at its y
  bool isAtTop = false; // anchored to the upper edge
};

// Captions that are on show together do not cover each other: a later one is moved away from the edge that it is
// anchored to, until it is clear of the earlier ones. Where there is no room it stays in its place. What is fixed
// neither moves nor makes others move.
void StackBlocks(std::vector<PlacedBlock>& blocks, double frameHeight);

} // namespace HSL
