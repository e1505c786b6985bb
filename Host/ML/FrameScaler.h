#pragma once

#include <memory>
#include <vector>

#include "MF/VideoFrame.h"
#include "zebcore/InterfaceRef.h"

struct AVFrame;
struct SwsContext;

namespace ML {

// Makes pictures as they come out of a decoder into BGRA of any size, in the colours that the picture says it has.
class FrameScaler {
 public:
  FrameScaler();
  ~FrameScaler();
  FrameScaler(const FrameScaler&) = delete;
  FrameScaler& operator=(const FrameScaler&) = delete;

  // With square pixels. Null for a picture in a form that cannot be converted. Width and height are at least 1.
  zebcore::classref::InterfaceRef<MF::IVideoFrame> Scale(const AVFrame& picture, int width, int height);

 private:
  struct ContextCloser {
    void operator()(SwsContext* context) const;
  };
  void UseColors(const AVFrame& picture);

  std::unique_ptr<SwsContext, ContextCloser> mContext;
  std::vector<std::uint8_t> mRows;
};

} // namespace ML
