#pragma once

#include "Captions/contracts/Caption.h"

namespace HSL {

struct OpenTextMeasure {
  int lineWidth = 0;   // the widest line, pixels of the frame
  int blockHeight = 0; // all lines, pixels of the frame
};

// Measures an open caption with the fonts that draw it. Any thread; the first call of each reads the fonts.
OpenTextMeasure MeasureOpenText(const zebcaptioning::CaptionState& caption, int frameWidth, int frameHeight);

} // namespace HSL
