#include "HSL/OpenTextMeasure.h"

#include "HSL/OpenCaptionRenderer.h"

namespace HSL {

OpenTextMeasure MeasureOpenText(const zebcaptioning::CaptionState& caption, int frameWidth, int frameHeight) {
  thread_local OpenCaptionRenderer renderer;
  const OpenCaptionRenderer::Size size = renderer.Measure(caption, frameWidth, frameHeight);
  return {size.width, size.height};
}

} // namespace HSL
