#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

extern "C" {
#include <libavutil/pixfmt.h>
#include <libavutil/rational.h>
}

#include "MF/VideoFrame.h"
#include "zebcore/InterfaceRef.h"

namespace MLTest {

// Up to 1024 pictures can be told apart.
inline constexpr int kBits = 10;
inline constexpr int kWidth = kBits * 16;
inline constexpr int kHeight = 64;

struct ClipDescription {
  std::string name; // with the extension that says the container
  const char* encoder = "libx264";
  AVPixelFormat format = AV_PIX_FMT_YUV420P;
  int pictures = 300;
  AVRational rate{25, 1};
  // When each picture starts, in frames of the rate; empty for one after another.
  std::vector<int> starts = {};
  int keyInterval = 24;
  int bFrames = 0;
  double firstSecond = 0; // timestamp of the first picture
  AVRational pixelAspect{1, 1};
  std::map<std::string, std::string> options = {}; // of the encoder
  std::map<std::string, std::string> muxerOptions = {};
};

// A clip whose every picture carries its own number as black and white bars, the lowest bit on the left. It goes with
// the object. Throws std::runtime_error if it cannot be made.
class Clip {
 public:
  explicit Clip(const ClipDescription& description);
  ~Clip();
  Clip(const Clip&) = delete;
  Clip& operator=(const Clip&) = delete;
  const std::filesystem::path& Path() const { return mPath; }

  // Overwrites a stretch of the file, from and to as parts of its size, with bytes that are no media.
  void Damage(double from, double to) const;
  // Keeps this part of the file's size.
  void CutOff(double at) const;

 private:
  std::filesystem::path mPath;
};

// The number that a picture carries, whatever its size; -1 for null.
int NumberOn(const zebcore::classref::InterfaceRef<MF::IVideoFrame>& frame);

} // namespace MLTest
