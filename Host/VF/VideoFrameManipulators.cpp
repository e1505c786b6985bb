#include "VF/VideoFrameManipulators.h"

#include <algorithm>
#include <cstring>

#include "zebcore/Trace.h"

namespace VF::VideoFrameManipulators {

namespace {
constexpr int kBytesPerPixel = 4;
}

zebcore::classref::InterfaceRef<MF::IVideoFrame>
CreateBlankFrame(const zebcore::classref::InterfaceRef<MF::IVideoFrame>& like) {
  if (!like)
    return nullptr;
  return MF::CreateVideoFrame(like->GetRect().width, like->GetRect().height, like->GetPixelAspectRatio());
}

void CopyFrame(const zebcore::classref::InterfaceRef<MF::IVideoFrame>& from,
               const zebcore::classref::InterfaceRef<MF::IVideoFrame>& to, int quality,
               const zebmediatypes::ColorSpaceConversionParameters&) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("VideoFrameManipulators::CopyFrame",
                           {{"size", {from->GetRect().width, from->GetRect().height}}, {"quality", quality}});
  const int width = std::min(from->GetRect().width, to->GetRect().width);
  const int height = std::min(from->GetRect().height, to->GetRect().height);
  for (int y = 0; y < height; ++y)
    std::memcpy(to->GetWritablePixels() + static_cast<std::ptrdiff_t>(y) * to->GetRowBytes(),
                from->GetPixels() + static_cast<std::ptrdiff_t>(y) * from->GetRowBytes(),
                static_cast<std::size_t>(width) * kBytesPerPixel);
}

} // namespace VF::VideoFrameManipulators
