#pragma once

#include <cstdint>

#include "zebcore/Geometry.h"
#include "zebcore/InterfaceRef.h"
#include "zebmediatypes/PixelAspectRatio.h"

namespace MF {

// A picture in memory. It does not change once it was handed out, but through the copy's own maker.
class IVideoFrame : public virtual zebcore::classref::IObject {
 public:
  virtual zebcore::geom::RectT<int> GetRect() const = 0;
  virtual zebmediatypes::PixelFormat GetPixelFormat() const = 0;
  virtual zebmediatypes::PixelAspectRatio GetPixelAspectRatio() const = 0;
  virtual const std::uint8_t* GetPixels() const = 0;
  virtual std::uint8_t* GetWritablePixels() = 0;
  virtual int GetRowBytes() const = 0;
};

// A frame of its own memory, BGRA, transparent black. Width and height are at least 1.
zebcore::classref::InterfaceRef<IVideoFrame> CreateVideoFrame(int width, int height,
                                                              const zebmediatypes::PixelAspectRatio& aspect);

} // namespace MF
