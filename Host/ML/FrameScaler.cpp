#include "ML/FrameScaler.h"

#include <cstring>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}

namespace ML {

namespace {

constexpr int kBytesPerPixel = 4;
// The scaler may write whole vectors: rows are aligned to them, and behind the last one there is room for one.
constexpr int kRowAlignment = 64;
constexpr int kHighDefinitionHeight = 720;

// Pictures that do not say which colours they have are taken as players take them, by their size.
int GetColorMatrix(const AVFrame& picture) {
  switch (picture.colorspace) {
  case AVCOL_SPC_UNSPECIFIED:
  case AVCOL_SPC_RESERVED:
    return picture.height >= kHighDefinitionHeight ? SWS_CS_ITU709 : SWS_CS_ITU601;
  default:
    return picture.colorspace;
  }
}

} // namespace

FrameScaler::FrameScaler() = default;
FrameScaler::~FrameScaler() = default;

void FrameScaler::ContextCloser::operator()(SwsContext* context) const {
  sws_freeContext(context);
}

void FrameScaler::UseColors(const AVFrame& picture) {
  int* matrix = nullptr;
  int* targetMatrix = nullptr;
  int range = 0;
  int targetRange = 0;
  int brightness = 0;
  int contrast = 0;
  int saturation = 0;
  if (sws_getColorspaceDetails(mContext.get(), &matrix, &range, &targetMatrix, &targetRange, &brightness, &contrast,
                               &saturation) < 0)
    return;
  const bool isFull =
      picture.color_range == AVCOL_RANGE_JPEG || (picture.color_range == AVCOL_RANGE_UNSPECIFIED && range);
  sws_setColorspaceDetails(mContext.get(), sws_getCoefficients(GetColorMatrix(picture)), isFull ? 1 : 0, targetMatrix,
                           targetRange, brightness, contrast, saturation);
}

zebcore::classref::InterfaceRef<MF::IVideoFrame> FrameScaler::Scale(const AVFrame& picture, int width, int height) {
  mContext.reset(sws_getCachedContext(mContext.release(), picture.width, picture.height,
                                      static_cast<AVPixelFormat>(picture.format), width, height, AV_PIX_FMT_BGRA,
                                      SWS_BICUBIC, nullptr, nullptr, nullptr));
  if (!mContext)
    return nullptr;
  UseColors(picture);
  const int stride = (width * kBytesPerPixel + kRowAlignment - 1) / kRowAlignment * kRowAlignment;
  mRows.resize(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height) + kRowAlignment);
  std::uint8_t* const planes[4] = {mRows.data(), nullptr, nullptr, nullptr};
  const int strides[4] = {stride, 0, 0, 0};
  if (sws_scale(mContext.get(), picture.data, picture.linesize, 0, picture.height, planes, strides) <= 0)
    return nullptr;
  auto frame = MF::CreateVideoFrame(width, height, zebmediatypes::kPixelAspectRatio_Square);
  for (int y = 0; y < height; ++y)
    std::memcpy(frame->GetWritablePixels() + static_cast<std::ptrdiff_t>(y) * frame->GetRowBytes(),
                mRows.data() + static_cast<std::ptrdiff_t>(y) * stride,
                static_cast<std::size_t>(width) * kBytesPerPixel);
  return frame;
}

} // namespace ML
