#pragma once

#include <cstddef>
#include <functional>
#include <vector>

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

// Gives each of the captions its measure, many of them on all processors at once. Those that were measured in this
// frame stay as they are. progress is told now and then, on the calling thread, how many are done, and stops it by
// false. False if it was stopped: then none has changed.
bool MeasureOpenTexts(std::vector<zebcaptioning::CaptionStatePtr>& captions, int frameWidth, int frameHeight,
                      const zebmediatypes::PixelAspectRatio& pixelAspect,
                      const std::function<bool(std::size_t done)>& progress = {});

// The measure of a caption that differs from one that was measured in this frame in nothing that shows in its size,
// such as colours, place or times only, is that caption's.
bool TakeMeasureFrom(zebcaptioning::CaptionStatePtr& caption, const zebcaptioning::CaptionState& measured,
                     int frameWidth, int frameHeight, const zebmediatypes::PixelAspectRatio& pixelAspect);

} // namespace HSL
