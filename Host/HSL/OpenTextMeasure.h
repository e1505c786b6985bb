#pragma once

#include "Captions/contracts/Caption.h"
#include "zebmediatypes/PixelAspectRatio.h"

namespace HSL {

struct OpenTextMeasure {
  int lineWidth = 0;   // the widest line, pixels of the frame
  int blockHeight = 0; // all lines with their spacing, pixels of the frame
};

// Measures an open caption as it is drawn, with the fonts that draw it; boxes and edges count. Any thread; the first
// call of each reads the fonts.
OpenTextMeasure
MeasureOpenText(const zebcaptioning::CaptionState& caption, int frameWidth, int frameHeight,
                const zebmediatypes::PixelAspectRatio& pixelAspect = zebmediatypes::kPixelAspectRatio_Square);

} // namespace HSL
