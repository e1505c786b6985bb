#include "HSL/RenderOpenCaptions.h"

#include <algorithm>
#include <cmath>

#include "HSL/OpenCaptionRenderer.h"
#include "zebcore/Trace.h"

namespace HSL {

namespace {

constexpr int kBytesPerPixel = 4;

void Blend(std::uint8_t& below, std::uint8_t above, int alpha) {
  below = static_cast<std::uint8_t>((below * (255 - alpha) + above * alpha + 127) / 255);
}

// One patch over the frame, clipped to it.
void BlendPatch(MF::IVideoFrame& frame, const OpenCaptionRenderer::Patch& patch, int left, int top, double opacity) {
  const zebcore::geom::RectT<int> bounds = frame.GetRect();
  const int opaque = static_cast<int>(std::lround(patch.alpha * std::clamp(opacity, 0.0, 1.0)));
  for (int y = 0; y < patch.height; ++y) {
    const int frameY = top + patch.y + y;
    if (frameY < 0 || frameY >= bounds.height)
      continue;
    std::uint8_t* row = frame.GetWritablePixels() + static_cast<std::ptrdiff_t>(frameY) * frame.GetRowBytes();
    const std::uint8_t* coverage = patch.coverage + static_cast<std::ptrdiff_t>(y) * patch.rowBytes;
    for (int x = 0; x < patch.width; ++x) {
      const int frameX = left + patch.x + x;
      if (frameX < 0 || frameX >= bounds.width || coverage[x] == 0)
        continue;
      std::uint8_t* pixel = row + static_cast<std::ptrdiff_t>(frameX) * kBytesPerPixel;
      const int alpha = coverage[x] * opaque / 255;
      Blend(pixel[0], patch.blue, alpha);
      Blend(pixel[1], patch.green, alpha);
      Blend(pixel[2], patch.red, alpha);
      Blend(pixel[3], 255, alpha);
    }
  }
}

} // namespace

void RenderOpenCaptions(const boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel>& model,
                        const zebcore::geom::RectT<int>& target, const zebmediatypes::PixelAspectRatio&,
                        const zebcore::classref::InterfaceRef<MF::IVideoFrame>& frame,
                        const zebcore::geom::RectT<int>& source, const zebcore::geom::RectT<int>&, int, int,
                        double opacity) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("HSL::RenderOpenCaptions", {{"target", {target.x, target.y, target.width, target.height}},
                                                       {"source", {source.x, source.y, source.width, source.height}},
                                                       {"opacity", opacity}});
  if (!model || !frame)
    return;
  const zebcore::geom::RectT<int> bounds = frame->GetRect();
  const int width = std::min(target.width, bounds.width - target.x);
  const int height = std::min(target.height, bounds.height - target.y);
  for (const auto& patch : OpenCaptionRenderer::ForThisThread().Render(
           model->GetCaptions(), {source.width, source.height, model->GetPixelAspectRatio()}, width, height))
    BlendPatch(*frame, patch, target.x, target.y, opacity);
}

} // namespace HSL
