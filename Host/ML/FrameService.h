#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>

#include "MF/VideoFrame.h"
#include "zebcore/Guid.h"
#include "zebcore/InterfaceRef.h"
#include "zebmediatypes/TickTime.h"

namespace ML {

struct FrameOrder {
  std::filesystem::path media;
  zebcore::utility::Guid content; // of the media
  zebmediatypes::TickTime time;
  int width = 0;
  int height = 0;
};

// Decodes frames for the whole process on a worker of its own, the newest order first. Every order is served; what was
// decoded before is kept, within bounds, and answered at once.
class FrameService {
 public:
  static FrameService& Instance();

  // The frame if it is at hand, else null. Any thread.
  zebcore::classref::InterfaceRef<MF::IVideoFrame> Find(const FrameOrder& order);

  // Called on the worker when the order was served; the frame is null if nothing could be decoded.
  using Done = std::function<void(const zebcore::classref::InterfaceRef<MF::IVideoFrame>&)>;
  void Order(const FrameOrder& order, Done done);

  // Orders that are not being served yet. Any thread.
  std::size_t CountWaiting() const;

  // Waits until nothing is ordered any more. Not for the UI thread of the program.
  void WaitUntilIdle();

 private:
  FrameService();
  ~FrameService();
  struct Impl;
  std::unique_ptr<Impl> mImpl;
};

} // namespace ML
