#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "zebmediatypes/TimeDisplay.h"

extern "C" {
#include <libavutil/timecode.h>
}

namespace zebmediatypes {
namespace {

using zebcore::ToUTF8;

struct Timecode {
  TimeDisplay display;
  FrameRate rate;
  AVRational rational;
  bool dropFrame;
};

const Timecode kTimecodes[] = {
    {kTimeDisplay_Timecode23976, kFrameRate_23976, {24000, 1001}, false},
    {kTimeDisplay_Timecode24, kFrameRate_24, {24, 1}, false},
    {kTimeDisplay_Timecode25, kFrameRate_25, {25, 1}, false},
    {kTimeDisplay_Timecode2997Drop, kFrameRate_2997, {30000, 1001}, true},
    {kTimeDisplay_Timecode2997NonDrop, kFrameRate_2997, {30000, 1001}, false},
    {kTimeDisplay_Timecode30, kFrameRate_30, {30, 1}, false},
    {kTimeDisplay_Timecode48, kFrameRate_48, {48, 1}, false},
    {kTimeDisplay_Timecode50, kFrameRate_50, {50, 1}, false},
    {kTimeDisplay_Timecode5994Drop, kFrameRate_5994, {60000, 1001}, true},
    {kTimeDisplay_Timecode5994NonDrop, kFrameRate_5994, {60000, 1001}, false},
    {kTimeDisplay_Timecode60, kFrameRate_60, {60, 1}, false},
};

std::string Printed(const Timecode& timecode, std::int64_t frame) {
  return ToUTF8(FormatTime(TickTime(frame * timecode.rate.GetTicksPerFrame()), timecode.display, timecode.rate));
}

// The frames to look at: all around every minute as it is without drops, all of the first 25 minutes, and a spread of
// the others, over 48 hours.
std::vector<int> FramesOfTwoDays(int framesPerSecond) {
  std::vector<int> frames;
  const int last = 48 * 3600 * framesPerSecond;
  const int minute = 60 * framesPerSecond;
  for (int around = 0; around <= last; around += minute)
    for (int frame = std::max(0, around - 6); frame < around + 6; ++frame)
      frames.push_back(frame);
  for (int frame = 0; frame <= last; frame += 61)
    frames.push_back(frame);
  for (int frame = 0; frame < 25 * minute; ++frame)
    frames.push_back(frame);
  return frames;
}

TEST(Timecode, AgreesWithAnIndependentCounterOverFortyEightHours) {
  for (const Timecode& timecode : kTimecodes) {
    AVTimecode counter;
    ASSERT_EQ(0, av_timecode_init(&counter, timecode.rational, timecode.dropFrame ? AV_TIMECODE_FLAG_DROPFRAME : 0, 0,
                                  nullptr));
    int differences = 0;
    for (const int frame : FramesOfTwoDays(static_cast<int>(counter.fps))) {
      char expected[AV_TIMECODE_STR_SIZE];
      av_timecode_make_string(&counter, expected, frame);
      const std::string printed = Printed(timecode, frame);
      if (printed != expected && ++differences < 5)
        ADD_FAILURE() << "display " << timecode.display.GetNumber() << " frame " << frame << ": " << printed
                      << " instead of " << expected;
    }
    EXPECT_EQ(differences, 0);
  }
}

TEST(Timecode, EveryMinuteBoundaryOfFortyEightHoursDropsTheRightNumbers) {
  for (const Timecode& timecode : kTimecodes) {
    if (!timecode.dropFrame)
      continue;
    AVTimecode counter;
    ASSERT_EQ(0, av_timecode_init(&counter, timecode.rational, AV_TIMECODE_FLAG_DROPFRAME, 0, nullptr));
    const int framesPerSecond = static_cast<int>(counter.fps);
    const int dropped = framesPerSecond / 15;
    for (int minute = 1; minute <= 48 * 60; ++minute) {
      const int leftOutBefore = dropped * (minute - minute / 10);
      const int firstNumber = minute * 60 * framesPerSecond + (minute % 10 == 0 ? 0 : dropped);
      const int first = firstNumber - leftOutBefore;
      for (int frame = first - 3; frame < first + 3; ++frame) {
        char expected[AV_TIMECODE_STR_SIZE];
        ASSERT_EQ(Printed(timecode, frame), av_timecode_make_string(&counter, expected, frame)) << frame;
      }
      char start[32];
      std::snprintf(start, sizeof start, "%02d:%02d:00;%02d", minute / 60, minute % 60, minute % 10 == 0 ? 0 : dropped);
      ASSERT_EQ(Printed(timecode, first), start);
    }
  }
}

TEST(Timecode, EveryPrintedFrameOfFortyEightHoursIsReadBackAsTheSameFrame) {
  for (const Timecode& timecode : kTimecodes) {
    const int framesPerSecond = static_cast<int>(av_q2d(timecode.rational) + 0.5);
    for (const int frame : FramesOfTwoDays(framesPerSecond)) {
      const TickTime time(frame * timecode.rate.GetTicksPerFrame());
      ASSERT_EQ(ParseTime(FormatTime(time, timecode.display, timecode.rate), timecode.display, timecode.rate), time)
          << Printed(timecode, frame);
    }
  }
}

TEST(Timecode, ADisplayBelongsToEachRate) {
  for (const Timecode& timecode : kTimecodes) {
    EXPECT_EQ(GetTimecodeDisplay(timecode.rate, timecode.dropFrame), timecode.display);
    EXPECT_EQ(GetDisplayRate(timecode.display, kFrameRate_Invalid), timecode.rate);
    EXPECT_EQ(IsDropFrame(timecode.display), timecode.dropFrame);
  }
}

TEST(Timecode, DropFrameIsAskedInVainOfARateThatIsCountedOneWayOnly) {
  EXPECT_EQ(GetTimecodeDisplay(kFrameRate_25, true), kTimeDisplay_Timecode25);
  EXPECT_EQ(GetTimecodeDisplay(kFrameRate_30, true), kTimeDisplay_Timecode30);
  EXPECT_EQ(GetTimecodeDisplay(kFrameRate_23976, true), kTimeDisplay_Timecode23976);
}

TEST(Timecode, ARateThatNoTimecodeCountsHasTheDefaultDisplay) {
  EXPECT_EQ(GetTimecodeDisplay(FrameRate::FromRational(15, 1), false), kTimeDisplay_Default);
  EXPECT_EQ(GetTimecodeDisplay(kFrameRate_Invalid, true), kTimeDisplay_Default);
  EXPECT_EQ(GetTimecodeDisplay(kFrameRate_Zero, true), kTimeDisplay_Default);
}

TEST(Timecode, OnlyTimecodesHaveARateOfTheirOwn) {
  for (const TimeDisplay display :
       {kTimeDisplay_Default, kTimeDisplay_Frames, kTimeDisplay_FeetAndFrames35mm, kTimeDisplay_FeetAndFrames16mm,
        kTimeDisplay_Milliseconds, kTimeDisplay_AudioSamples, kTimeDisplay_Invalid}) {
    EXPECT_EQ(GetDisplayRate(display, kFrameRate_48), kFrameRate_48);
    EXPECT_FALSE(IsDropFrame(display));
  }
}

TEST(Timecode, EveryDisplayButTheInvalidOneHasANameOfItsOwn) {
  std::set<zebcore::UString> names;
  for (int number = 0; number <= 16; ++number)
    names.insert(GetTimeDisplayName(TimeDisplay(number)));
  EXPECT_EQ(names.size(), 17u);
  EXPECT_FALSE(names.contains(u""));
  EXPECT_EQ(GetTimeDisplayName(kTimeDisplay_Invalid), u"");
}

} // namespace
} // namespace zebmediatypes
