#include "HSL/OpenTextMeasure.h"

#include "HSL/OpenCaptionRenderer.h"

namespace HSL {

OpenTextMeasure MeasureOpenText(const zebcaptioning::CaptionState& caption, int frameWidth, int frameHeight,
                                const zebmediatypes::PixelAspectRatio& pixelAspect) {
  const OpenCaptionRenderer::Size size =
      OpenCaptionRenderer::ForThisThread().Measure(caption, {frameWidth, frameHeight, pixelAspect});
  return {size.width, size.height};
}

} // namespace HSL
