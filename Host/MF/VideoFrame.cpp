#include "MF/VideoFrame.h"

#include <algorithm>
#include <vector>

namespace MF {

namespace {

constexpr int kBytesPerPixel = 4;

class MemoryFrame final : public IVideoFrame {
 public:
  MemoryFrame(int width, int height, const zebmediatypes::PixelAspectRatio& aspect)
      : mWidth(std::max(width, 1)), mHeight(std::max(height, 1)), mAspect(aspect),
        mPixels(static_cast<std::size_t>(mWidth) * static_cast<std::size_t>(mHeight) * kBytesPerPixel) {}

  zebcore::geom::RectT<int> GetRect() const override { return {0, 0, mWidth, mHeight}; }
  zebmediatypes::PixelFormat GetPixelFormat() const override { return zebmediatypes::kPixelFormat_BGRA_4444_8u; }
  zebmediatypes::PixelAspectRatio GetPixelAspectRatio() const override { return mAspect; }
  const std::uint8_t* GetPixels() const override { return mPixels.data(); }
  std::uint8_t* GetWritablePixels() override { return mPixels.data(); }
  int GetRowBytes() const override { return mWidth * kBytesPerPixel; }

 private:
  int mWidth;
  int mHeight;
  zebmediatypes::PixelAspectRatio mAspect;
  std::vector<std::uint8_t> mPixels;
};

} // namespace

zebcore::classref::InterfaceRef<IVideoFrame> CreateVideoFrame(int width, int height,
                                                              const zebmediatypes::PixelAspectRatio& aspect) {
  return zebcore::classref::InterfaceRef<IVideoFrame>(new MemoryFrame(width, height, aspect));
}

} // namespace MF
