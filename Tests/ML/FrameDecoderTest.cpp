#include "ML/FrameDecoder.h"

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "zebmediatypes/FrameRate.h"

namespace {

namespace fs = std::filesystem;
using ML::FrameDecoder;
using zebmediatypes::TickTime;

constexpr int kBits = 8;
constexpr int kBarWidth = 16;
constexpr int kSize = kBits * kBarWidth;

// A clip whose every picture carries its own number as eight black or white bars, the lowest bit on the left.
class Clip {
 public:
  Clip(const std::string& name, const std::string& arguments, const std::string& filter = "")
      : mPath(fs::temp_directory_path() / ("captivo-" + std::to_string(::getpid()) + "-" + name)) {
    const std::string number = "geq=lum='if(mod(floor(N/pow(2\\,floor(X/16)))\\,2)\\,235\\,16)':cb=128:cr=128";
    const std::string command = "ffmpeg -v error -y -f lavfi -i \"color=c=black:s=128x128:r=25:d=4,format=yuv420p," +
                                number + filter + "\" " + arguments + " \"" + mPath.string() + "\" </dev/null";
    mMade = std::system(command.c_str()) == 0;
  }
  ~Clip() {
    std::error_code ignored;
    fs::remove(mPath, ignored);
  }
  bool IsMade() const { return mMade; }
  const fs::path& Path() const { return mPath; }

 private:
  fs::path mPath;
  bool mMade = false;
};

int NumberOn(const zebcore::classref::InterfaceRef<MF::IVideoFrame>& frame) {
  if (!frame)
    return -1;
  int number = 0;
  const std::uint8_t* row = frame->GetPixels() + (kSize / 2) * frame->GetRowBytes();
  for (int bit = 0; bit < kBits; ++bit)
    if (row[(bit * kBarWidth + kBarWidth / 2) * 4] > 128)
      number |= 1 << bit;
  return number;
}

int NumberAt(FrameDecoder& decoder, TickTime time) {
  return NumberOn(decoder.Decode(time, kSize, kSize));
}

const TickTime kFrame = zebmediatypes::kFrameRate_25.GetFrameDuration();
TickTime Frames(int count) {
  return TickTime(kFrame.GetTicks() * count);
}

// Asks for pictures forwards, backwards and across the file, at their first tick, inside and at their last tick.
void ExpectEveryPictureExact(const Clip& clip) {
  ASSERT_TRUE(clip.IsMade());
  FrameDecoder decoder(clip.Path());
  ASSERT_TRUE(decoder.IsOpen());
  for (const int number : {0, 1, 2, 3, 50, 51, 49, 12, 98, 99, 7, 60, 61, 62, 5}) {
    EXPECT_EQ(NumberAt(decoder, Frames(number)), number) << "at its first tick";
    EXPECT_EQ(NumberAt(decoder, Frames(number) + TickTime(kFrame.GetTicks() / 2)), number) << "in its middle";
    EXPECT_EQ(NumberAt(decoder, Frames(number + 1) - TickTime(1)), number) << "at its last tick";
  }
}

TEST(FrameDecoder, FindsEveryPictureOfH264WithBFramesInMp4) {
  ExpectEveryPictureExact(Clip("b.mp4", "-c:v libx264 -g 24 -bf 3 -pix_fmt yuv420p"));
}

TEST(FrameDecoder, FindsEveryPictureOfMpeg2InATransportStream) {
  ExpectEveryPictureExact(Clip("m2.ts", "-c:v mpeg2video -b:v 4M -g 12 -bf 2"));
}

TEST(FrameDecoder, FindsEveryPictureOfProResInQuickTime) {
  ExpectEveryPictureExact(Clip("p.mov", "-c:v prores_ks -profile:v 0"));
}

TEST(FrameDecoder, CountsTimeFromTheFirstPictureWhenTimestampsDoNotStartAtZero) {
  ExpectEveryPictureExact(Clip("late.ts", "-c:v libx264 -g 24 -bf 2 -pix_fmt yuv420p -output_ts_offset 3600"));
}

TEST(FrameDecoder, ShowsThePictureThatLastsWhenTheFrameRateVaries) {
  // Every third picture lasts two frames: picture n starts at frame n + n / 3.
  const Clip clip("vfr.mkv", "-c:v libx264 -g 30 -bf 2 -pix_fmt yuv420p -fps_mode vfr",
                  ",setpts='(N+floor(N/3))/25/TB'");
  ASSERT_TRUE(clip.IsMade());
  FrameDecoder decoder(clip.Path());
  for (const int number : {0, 1, 2, 3, 4, 5, 30, 31, 32, 33, 8, 60}) {
    const int start = number + number / 3;
    EXPECT_EQ(NumberAt(decoder, Frames(start) + TickTime(zebmediatypes::kTicksPerSecond / 500)), number);
    if (number % 3 == 2) {
      EXPECT_EQ(NumberAt(decoder, Frames(start + 1) + TickTime(kFrame.GetTicks() / 2)), number) << "still on show";
    }
  }
}

TEST(FrameDecoder, ShowsTheFirstPictureBeforeTheClipAndTheLastBehindIt) {
  const Clip clip("ends.mp4", "-c:v libx264 -pix_fmt yuv420p");
  ASSERT_TRUE(clip.IsMade());
  FrameDecoder decoder(clip.Path());
  EXPECT_EQ(NumberAt(decoder, TickTime(-5)), 0);
  EXPECT_EQ(NumberAt(decoder, Frames(5000)), 99);
}

TEST(FrameDecoder, AFileThatIsNoVideoHasNoPictures) {
  FrameDecoder decoder("/etc/hostname");
  EXPECT_FALSE(decoder.IsOpen());
  EXPECT_FALSE(decoder.Decode(Frames(0), 10, 10));
}

TEST(FrameDecoder, APictureIsMadeInTheSizeAskedFor) {
  const Clip clip("size.mp4", "-c:v libx264 -pix_fmt yuv420p");
  ASSERT_TRUE(clip.IsMade());
  FrameDecoder decoder(clip.Path());
  const auto frame = decoder.Decode(Frames(3), 114, 64);
  ASSERT_TRUE(frame);
  EXPECT_EQ(frame->GetRect(), (zebcore::geom::RectT<int>{0, 0, 114, 64}));
  EXPECT_EQ(frame->GetPixelFormat(), zebmediatypes::kPixelFormat_BGRA_4444_8u);
}

} // namespace
