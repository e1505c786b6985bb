#include "ML/FrameDecoder.h"

#include <algorithm>
#include <fstream>
#include <numeric>
#include <random>

#include <gtest/gtest.h>

#include "ClipMaking.h"
#include "zebmediatypes/FrameRate.h"

namespace MLTest {

namespace {

using ML::FrameDecoder;
using zebmediatypes::FrameRate;
using zebmediatypes::TickTime;

const TickTime kOneTick(1);

int NumberAt(FrameDecoder& decoder, TickTime time) {
  return NumberOn(decoder.Decode(time, kWidth, kHeight));
}

TickTime FramesOf(AVRational rate, std::int64_t count) {
  return TickTime(FrameRate::FromRational(rate.num, rate.den).GetTicksPerFrame() * count);
}
TickTime Frames(std::int64_t count) {
  return FramesOf({25, 1}, count);
}

// Each picture once, in an order without any order.
std::vector<int> Shuffled(int count) {
  std::vector<int> numbers(static_cast<std::size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 0);
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(7));
  return numbers;
}

// Asks for every picture at its first tick, in its middle and at its last tick, across the file and then in sequence.
void ExpectEveryPictureExact(const ClipDescription& description) {
  const Clip clip(description);
  FrameDecoder decoder(clip.Path());
  ASSERT_TRUE(decoder.IsOpen());
  std::vector<int> order = Shuffled(description.pictures);
  for (int number = 0; number < description.pictures; ++number)
    order.push_back(number);
  const auto startOf = [&](int number) {
    const auto at = static_cast<std::size_t>(number);
    if (!description.starts.empty() && at < description.starts.size())
      return FramesOf(description.rate, description.starts[at]);
    return FramesOf(description.rate, description.starts.empty() ? number : description.starts.back() + 1);
  };
  for (const int number : order) {
    const TickTime start = startOf(number);
    const TickTime end = startOf(number + 1);
    ASSERT_EQ(NumberAt(decoder, start), number) << "at its first tick";
    ASSERT_EQ(NumberAt(decoder, TickTime((start.GetTicks() + end.GetTicks()) / 2)), number) << "in its middle";
    ASSERT_EQ(NumberAt(decoder, end - kOneTick), number) << "at its last tick";
  }
}

TEST(FrameDecoder, FindsEveryPictureOfH264WithBFramesInMp4) {
  ExpectEveryPictureExact({.name = "b.mp4", .bFrames = 3});
}

TEST(FrameDecoder, FindsEveryPictureOfH264WhoseKeyPicturesAreTenSecondsApart) {
  ExpectEveryPictureExact({.name = "long.mp4", .keyInterval = 250, .bFrames = 2});
}

TEST(FrameDecoder, FindsEveryPictureOfH264WhoseGroupsLeanOnTheOneBefore) {
  ExpectEveryPictureExact({.name = "open.mp4", .bFrames = 3, .options = {{"x264-params", "open-gop=1"}}});
}

TEST(FrameDecoder, FindsEveryPictureOfMpeg2InATransportStream) {
  ExpectEveryPictureExact({.name = "m2.ts", .encoder = "mpeg2video", .keyInterval = 12, .bFrames = 2});
}

TEST(FrameDecoder, FindsEveryPictureOfProResInQuickTime) {
  ExpectEveryPictureExact({.name = "p.mov", .encoder = "prores_ks", .format = AV_PIX_FMT_YUV422P10});
}

// Every third picture lasts two frames, and one of them a whole second.
std::vector<int> UnevenStarts(int count) {
  std::vector<int> starts;
  for (int number = 0; number < count; ++number)
    starts.push_back(number + number / 3 + (number > 100 ? 24 : 0));
  return starts;
}

TEST(FrameDecoder, FindsEveryPictureOfAVariableFrameRateInMatroska) {
  ExpectEveryPictureExact({.name = "vfr.mkv", .pictures = 200, .starts = UnevenStarts(200), .bFrames = 2});
}

TEST(FrameDecoder, FindsEveryPictureOfAVariableFrameRateInMp4) {
  ExpectEveryPictureExact({.name = "vfr.mp4", .pictures = 200, .starts = UnevenStarts(200), .bFrames = 2});
}

TEST(FrameDecoder, CountsTimeFromTheFirstPictureWhenTimestampsDoNotStartAtZero) {
  ExpectEveryPictureExact({.name = "late.ts", .bFrames = 2, .firstSecond = 3600});
  ExpectEveryPictureExact({.name = "late.mkv", .bFrames = 2, .firstSecond = 10});
  ExpectEveryPictureExact({.name = "late.mp4", .bFrames = 2, .firstSecond = 4});
}

TEST(FrameDecoder, KeepsToTheGridOfTheRateWhereTheFileRoundsTimestampsToMilliseconds) {
  ExpectEveryPictureExact({.name = "ntsc.mkv", .rate = {30000, 1001}, .bFrames = 2});
  ExpectEveryPictureExact({.name = "film.mkv", .rate = {24000, 1001}, .bFrames = 2});
}

TEST(FrameDecoder, FindsEveryPictureOfFractionalRatesInOtherContainers) {
  ExpectEveryPictureExact({.name = "ntsc.mp4", .rate = {30000, 1001}, .bFrames = 2});
  ExpectEveryPictureExact({.name = "fast.ts", .rate = {60000, 1001}, .bFrames = 2});
}

TEST(FrameDecoder, ShowsTheOnePictureOfAStillAtAnyTime) {
  const Clip clip({.name = "still.png", .encoder = "png", .format = AV_PIX_FMT_RGB24, .pictures = 1});
  FrameDecoder decoder(clip.Path());
  ASSERT_TRUE(decoder.IsOpen());
  for (const TickTime time : {Frames(0), Frames(90000), TickTime(-7), zebmediatypes::kTime_Max})
    EXPECT_EQ(NumberAt(decoder, time), 0);
}

TEST(FrameDecoder, AStillIsShownInItsOwnColours) {
  const Clip clip({.name = "still.png", .encoder = "png", .format = AV_PIX_FMT_RGB24, .pictures = 1});
  FrameDecoder decoder(clip.Path());
  const auto frame = decoder.Decode(Frames(0), 7, 5);
  ASSERT_TRUE(frame);
  EXPECT_EQ(frame->GetPixels()[0], 0);
  EXPECT_EQ(frame->GetPixels()[3], 255) << "opaque";
}

TEST(FrameDecoder, ShowsTheFirstPictureBeforeTheClipAndTheLastBehindIt) {
  for (const char* name : {"ends.mp4", "ends.mkv", "ends.ts"}) {
    const Clip clip({.name = name, .pictures = 100, .bFrames = 2});
    FrameDecoder decoder(clip.Path());
    EXPECT_EQ(NumberAt(decoder, TickTime(-5)), 0) << name;
    EXPECT_EQ(NumberAt(decoder, zebmediatypes::kTime_Min), 0) << name;
    EXPECT_EQ(NumberAt(decoder, Frames(5000)), 99) << name;
    EXPECT_EQ(NumberAt(decoder, zebmediatypes::kTime_Max), 99) << name;
  }
}

TEST(FrameDecoder, AFileThatIsNoVideoHasNoPictures) {
  FrameDecoder decoder("/etc/hostname");
  EXPECT_FALSE(decoder.IsOpen());
  EXPECT_FALSE(decoder.Decode(Frames(0), 10, 10));
}

TEST(FrameDecoder, APictureIsMadeInTheSizeAskedFor) {
  const Clip clip({.name = "size.mp4", .pictures = 10});
  FrameDecoder decoder(clip.Path());
  const auto frame = decoder.Decode(Frames(3), 114, 64);
  ASSERT_TRUE(frame);
  EXPECT_EQ(frame->GetRect(), (zebcore::geom::RectT<int>{0, 0, 114, 64}));
  EXPECT_EQ(frame->GetRowBytes(), 114 * 4);
  EXPECT_EQ(frame->GetPixelFormat(), zebmediatypes::kPixelFormat_BGRA_4444_8u);
  EXPECT_EQ(frame->GetPixelAspectRatio(), zebmediatypes::kPixelAspectRatio_Square);
}

// However a picture is squeezed or stretched, all of it is there.
TEST(FrameDecoder, PicturesOfOtherPixelsAreStretchedWhole) {
  const Clip clip({.name = "wide.mp4", .pictures = 100, .pixelAspect = {64, 45}});
  FrameDecoder decoder(clip.Path());
  for (const int width : {64, 91, 196})
    EXPECT_EQ(NumberOn(decoder.Decode(Frames(85), width, 64)), 85) << width;
}

// A clip of which much of the second half was overwritten; what tells where its pictures are stands in front.
void ExpectNoPictureInTheDamagedHalf(ClipDescription description) {
  description.muxerOptions["movflags"] = "faststart";
  const Clip clip(description);
  clip.Damage(0.5, 0.85);
  FrameDecoder decoder(clip.Path());
  ASSERT_TRUE(decoder.IsOpen());
  for (const int number : {10, 200, 60, 180, 30, 190, 296})
    EXPECT_EQ(NumberAt(decoder, Frames(number)), number < 110 || number > 290 ? number : -1)
        << description.name << " " << number;
}

TEST(FrameDecoder, PicturesOfADamagedStretchAreNoneAndNotTheirNeighbours) {
  ExpectNoPictureInTheDamagedHalf({.name = "damaged.mp4", .bFrames = 2});
  ExpectNoPictureInTheDamagedHalf({.name = "damaged.mov", .encoder = "prores_ks", .format = AV_PIX_FMT_YUV422P10});
  ExpectNoPictureInTheDamagedHalf({.name = "damaged.ts", .encoder = "mpeg2video", .keyInterval = 12, .bFrames = 2});
}

// What tells how long the file should be stands in front, so that it opens.
TEST(FrameDecoder, PicturesBehindTheCutOfAFileThatEndsTooEarlyAreNone) {
  const Clip clip({.name = "cut.mp4", .bFrames = 2, .muxerOptions = {{"movflags", "faststart"}}});
  clip.CutOff(0.5);
  FrameDecoder decoder(clip.Path());
  ASSERT_TRUE(decoder.IsOpen());
  EXPECT_EQ(NumberAt(decoder, Frames(20)), 20);
  EXPECT_EQ(NumberAt(decoder, Frames(280)), -1);
  EXPECT_EQ(NumberAt(decoder, Frames(30)), 30);
}

} // namespace

} // namespace MLTest
