#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Captions/contracts/Caption.h"
#include "zebmediatypes/PixelAspectRatio.h"

namespace HSL {

// Sets open captions in type with the fonts of the machine, complex scripts, right-to-left text and emoji included. An
// object belongs to one thread; making one reads the font configuration and takes tens of milliseconds, so take that of
// the thread. What it remembers, lines measured and characters drawn, is bounded.
class OpenCaptionRenderer {
 public:
  OpenCaptionRenderer();
  ~OpenCaptionRenderer();
  OpenCaptionRenderer(const OpenCaptionRenderer&) = delete;
  OpenCaptionRenderer& operator=(const OpenCaptionRenderer&) = delete;

  // The one of the calling thread, made at the first call and gone with the thread.
  static OpenCaptionRenderer& ForThisThread();

  // The video's frame, to whose pixels positions and sizes of captions refer.
  struct Frame {
    int width = 0;
    int height = 0;
    zebmediatypes::PixelAspectRatio pixelAspect = zebmediatypes::kPixelAspectRatio_Square;
  };

  // A patch of one colour: 8-bit coverage, width by height, at x, y of the picture.
  struct Patch {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int rowBytes = 0;                       // 0 if all rows are alike
    const std::uint8_t* coverage = nullptr; // until the next call
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 0;
  };

  // The captions as patches, back to front, for a picture of pictureWidth by pictureHeight that shows the whole frame.
  // The layout is that of the frame, whatever the picture's size: a small picture shows the same lines in the same
  // places. Patches may reach beyond the picture.
  std::vector<Patch> Render(const std::vector<zebcaptioning::CaptionStatePtr>& captions, const Frame& frame,
                            int pictureWidth, int pictureHeight);

  // The size of a caption's block as it is drawn, the widest line and all lines with their spacing, boxes and edges
  // included, in pixels of the frame, rounded up. Zeros for a text with nothing to see.
  struct Size {
    int width = 0;
    int height = 0;
  };
  Size Measure(const zebcaptioning::CaptionState& caption, const Frame& frame);

 private:
  struct Impl;
  std::unique_ptr<Impl> mImpl;
};

} // namespace HSL
