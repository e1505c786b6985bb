#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Captions/contracts/Caption.h"
#include "zebcore/Geometry.h"

namespace HSL {

// Sets open captions in type with the fonts of the machine, complex scripts, right-to-left text and emoji included. One
// for each thread; making one reads the font configuration, so keep it.
class OpenCaptionRenderer {
 public:
  OpenCaptionRenderer();
  ~OpenCaptionRenderer();
  OpenCaptionRenderer(const OpenCaptionRenderer&) = delete;
  OpenCaptionRenderer& operator=(const OpenCaptionRenderer&) = delete;

  // A patch of one colour: 8-bit coverage, width by height, at x, y of the picture.
  struct Patch {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int rowBytes = 0;
    const std::uint8_t* coverage = nullptr; // until the next call
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 0;
  };

  // The captions as patches, back to front, for a picture of pictureWidth by pictureHeight that shows a frame of
  // frameWidth by frameHeight; positions of the captions are pixels of the frame.
  std::vector<Patch> Render(const std::vector<zebcaptioning::CaptionStatePtr>& captions, int frameWidth,
                            int frameHeight, int pictureWidth, int pictureHeight);

  // The size of a caption's block, the widest line and the height of all, in pixels of the frame. Zeros for no text.
  struct Size {
    int width = 0;
    int height = 0;
  };
  Size Measure(const zebcaptioning::CaptionState& caption, int frameWidth, int frameHeight);

 private:
  struct Impl;
  std::unique_ptr<Impl> mImpl;
};

} // namespace HSL
