#pragma once

#include <filesystem>
#include <memory>

#include "MF/VideoFrame.h"
#include "zebcore/InterfaceRef.h"
#include "zebmediatypes/TickTime.h"

namespace ML {

// Pictures of one media file, exact to the frame. Belongs to one thread at a time.
class FrameDecoder {
 public:
  explicit FrameDecoder(const std::filesystem::path& path);
  ~FrameDecoder();
  FrameDecoder(const FrameDecoder&) = delete;
  FrameDecoder& operator=(const FrameDecoder&) = delete;

  // The picture that is on show at a time, counted from the first picture: the last one that starts at or before it. Of
  // times before the first picture the first, of times behind the last one the last. Scaled to width by height. Null
  // when nothing can be decoded there.
  zebcore::classref::InterfaceRef<MF::IVideoFrame> Decode(zebmediatypes::TickTime time, int width, int height);

  // The file could be opened and has pictures.
  bool IsOpen() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> mImpl;
};

} // namespace ML
