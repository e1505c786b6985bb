#pragma once

#include <atomic>
#include <filesystem>
#include <memory>

#include "MF/VideoFrame.h"
#include "zebcore/InterfaceRef.h"
#include "zebmediatypes/TickTime.h"

namespace ML {

// Pictures of one media file, exact to the frame. Belongs to one thread at a time.
class FrameDecoder {
 public:
  // While stop is true nothing is decoded any more: a call under way comes back soon, with null. It may be null.
  explicit FrameDecoder(const std::filesystem::path& path, const std::atomic<bool>* stop = nullptr);
  ~FrameDecoder();
  FrameDecoder(const FrameDecoder&) = delete;
  FrameDecoder& operator=(const FrameDecoder&) = delete;

  // The picture that is on show at a time, counted from the first picture: the last one that starts at or before it. Of
  // times before the first picture the first, of times behind the last one the last; of a still the one that there is.
  // Scaled to width by height. Null when that very picture cannot be decoded, however good its neighbours are.
  //
  // Where the pictures keep a constant rate they start on its grid, even if the file rounds its timestamps.
  zebcore::classref::InterfaceRef<MF::IVideoFrame> Decode(zebmediatypes::TickTime time, int width, int height);

  // The file could be opened and has pictures.
  bool IsOpen() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> mImpl;
};

} // namespace ML
