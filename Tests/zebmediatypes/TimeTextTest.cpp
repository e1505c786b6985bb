#include <limits>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "zebmediatypes/TimeDisplay.h"

namespace zebmediatypes {
namespace {

using zebcore::FromUTF8;
using zebcore::ToUTF8;

const FrameRate k48kHz = FrameRate::FromRational(48000, 1);
const FrameRate k44kHz = FrameRate::FromRational(44100, 1);

TickTime Frames(std::int64_t frames, FrameRate rate) {
  return TickTime(frames * rate.GetTicksPerFrame());
}

std::string Text(TickTime time, TimeDisplay display, FrameRate rate) {
  return ToUTF8(FormatTime(time, display, rate));
}

// What a typed text is taken for, as it is then shown; "no time" for one that is refused.
std::string Taken(std::string_view typed, TimeDisplay display, FrameRate rate) {
  const std::optional<TickTime> time = ParseTime(FromUTF8(typed), display, rate);
  return time ? Text(*time, display, rate) : "no time";
}
std::string Taken25(std::string_view typed) {
  return Taken(typed, kTimeDisplay_Timecode25, kFrameRate_25);
}
std::string TakenDrop(std::string_view typed) {
  return Taken(typed, kTimeDisplay_Timecode2997Drop, kFrameRate_2997);
}
std::string TakenMilliseconds(std::string_view typed) {
  return Taken(typed, kTimeDisplay_Milliseconds, kFrameRate_25);
}

TEST(TimeAsText, DropFrameHasASemicolonBeforeTheFrames) {
  EXPECT_EQ(Text(Frames(1799, kFrameRate_2997), kTimeDisplay_Timecode2997Drop, kFrameRate_2997), "00:00:59;29");
  EXPECT_EQ(Text(Frames(1800, kFrameRate_2997), kTimeDisplay_Timecode2997Drop, kFrameRate_2997), "00:01:00;02");
  EXPECT_EQ(Text(Frames(17982, kFrameRate_2997), kTimeDisplay_Timecode2997Drop, kFrameRate_2997), "00:10:00;00");
  EXPECT_EQ(Text(Frames(1799, kFrameRate_2997), kTimeDisplay_Timecode2997NonDrop, kFrameRate_2997), "00:00:59:29");
  EXPECT_EQ(Text(Frames(3600, kFrameRate_5994), kTimeDisplay_Timecode5994Drop, kFrameRate_5994), "00:01:00;04");
}

TEST(TimeAsText, ATimecodeCountsAtItsOwnRateWhateverRateIsGiven) {
  const TickTime second(kTicksPerSecond);
  EXPECT_EQ(Text(second, kTimeDisplay_Timecode25, kFrameRate_60), "00:00:01:00");
  EXPECT_EQ(Text(second, kTimeDisplay_Timecode25, kFrameRate_Invalid), "00:00:01:00");
}

TEST(TimeAsText, TheDefaultDisplayIsNonDropAtTheGivenRate) {
  EXPECT_EQ(Text(Frames(1800, kFrameRate_2997), kTimeDisplay_Default, kFrameRate_2997), "00:01:00:00");
  EXPECT_EQ(Text(Frames(16, FrameRate::FromRational(15, 1)), kTimeDisplay_Default, FrameRate::FromRational(15, 1)),
            "00:00:01:01");
}

TEST(TimeAsText, FramesOfAFastRateHaveAllTheirDigits) {
  const FrameRate fast = FrameRate::FromRational(120, 1);
  EXPECT_EQ(Text(Frames(239, fast), kTimeDisplay_Default, fast), "00:00:01:119");
  EXPECT_EQ(Text(Frames(99, FrameRate::FromRational(100, 1)), kTimeDisplay_Default, FrameRate::FromRational(100, 1)),
            "00:00:00:99");
  EXPECT_EQ(Taken("1119", kTimeDisplay_Default, fast), "00:00:01:119");
}

TEST(TimeAsText, ATimeInsideAFrameShowsThatFrame) {
  const std::int64_t frame = kFrameRate_2997.GetTicksPerFrame();
  EXPECT_EQ(Text(TickTime(frame - 1), kTimeDisplay_Timecode2997Drop, kFrameRate_2997), "00:00:00;00");
  EXPECT_EQ(Text(TickTime(frame), kTimeDisplay_Timecode2997Drop, kFrameRate_2997), "00:00:00;01");
  EXPECT_EQ(Text(TickTime(2 * frame - 1), kTimeDisplay_Frames, kFrameRate_2997), "1");
}

TEST(TimeAsText, ATimeBeforeZeroHasAMinusSign) {
  EXPECT_EQ(Text(Frames(-1, kFrameRate_25), kTimeDisplay_Timecode25, kFrameRate_25), "-00:00:00:01");
  EXPECT_EQ(Text(TickTime(-1), kTimeDisplay_Timecode25, kFrameRate_25), "-00:00:00:01");
  EXPECT_EQ(Text(Frames(-1800, kFrameRate_2997), kTimeDisplay_Timecode2997Drop, kFrameRate_2997), "-00:01:00;02");
  EXPECT_EQ(Text(Frames(-7, kFrameRate_25), kTimeDisplay_Frames, kFrameRate_25), "-7");
  EXPECT_EQ(Text(Frames(-17, kFrameRate_24), kTimeDisplay_FeetAndFrames35mm, kFrameRate_24), "-1+01");
  EXPECT_EQ(Text(TickTime(-kTicksPerSecond / 4), kTimeDisplay_Milliseconds, kFrameRate_25), "-00:00:00.250");
}

TEST(TimeAsText, HoursRunOnPastTwentyFour) {
  EXPECT_EQ(Text(TickTime(30 * 3600 * kTicksPerSecond), kTimeDisplay_Timecode25, kFrameRate_25), "30:00:00:00");
  EXPECT_EQ(Text(TickTime(100 * 3600 * kTicksPerSecond), kTimeDisplay_Timecode25, kFrameRate_25), "100:00:00:00");
  EXPECT_EQ(Taken25("100:00:00:00"), "100:00:00:00");
}

TEST(TimeAsText, FramesAreOneNumber) {
  EXPECT_EQ(Text(Frames(1798, kFrameRate_2997), kTimeDisplay_Frames, kFrameRate_2997), "1798");
  EXPECT_EQ(Text(kTime_Zero, kTimeDisplay_Frames, kFrameRate_2997), "0");
}

TEST(TimeAsText, AFootOf35mmFilmHas16FramesAndOneOf16mmHas40) {
  EXPECT_EQ(Text(Frames(1798, kFrameRate_24), kTimeDisplay_FeetAndFrames35mm, kFrameRate_24), "112+06");
  EXPECT_EQ(Text(Frames(1798, kFrameRate_24), kTimeDisplay_FeetAndFrames16mm, kFrameRate_24), "44+38");
  EXPECT_EQ(Text(kTime_Zero, kTimeDisplay_FeetAndFrames16mm, kFrameRate_24), "0+00");
}

TEST(TimeAsText, MillisecondsAreCutNotRounded) {
  const TickTime time(59960 * (kTicksPerSecond / 1000));
  EXPECT_EQ(Text(time, kTimeDisplay_Milliseconds, kFrameRate_25), "00:00:59.960");
  EXPECT_EQ(Text(time - TickTime(1), kTimeDisplay_Milliseconds, kFrameRate_25), "00:00:59.959");
}

TEST(TimeAsText, SamplesAreCountedAtTheGivenAudioRate) {
  const TickTime second(kTicksPerSecond);
  EXPECT_EQ(Text(second, kTimeDisplay_AudioSamples, k44kHz), "44100");
  EXPECT_EQ(Text(second, kTimeDisplay_AudioSamples, FrameRate::FromRational(8000, 1)), "8000");
}

TEST(TimeAsText, SamplesAreCountedAt48KilohertzIfTheGivenRateIsNoAudioRate) {
  const TickTime second(kTicksPerSecond);
  EXPECT_EQ(Text(second, kTimeDisplay_AudioSamples, kFrameRate_25), "48000");
  EXPECT_EQ(Text(second, kTimeDisplay_AudioSamples, kFrameRate_Invalid), "48000");
}

TEST(TimeAsText, WithoutARateToCountAtMillisecondsAreShown) {
  const TickTime time(1500 * (kTicksPerSecond / 1000));
  for (const TimeDisplay display : {kTimeDisplay_Default, kTimeDisplay_Frames, kTimeDisplay_FeetAndFrames35mm})
    for (const FrameRate rate : {kFrameRate_Invalid, kFrameRate_Zero, FrameRate(-3)})
      EXPECT_EQ(Text(time, display, rate), "00:00:01.500");
}

TEST(TimeAsText, TheInvalidTimeIsBlankAndTheInvalidDisplayIsTheDefaultOne) {
  EXPECT_EQ(Text(kTime_Invalid, kTimeDisplay_Timecode25, kFrameRate_25), "");
  EXPECT_EQ(Text(Frames(26, kFrameRate_25), kTimeDisplay_Invalid, kFrameRate_25), "00:00:01:01");
}

TEST(TimeAsText, TheEndsOfTimeCanBeShown) {
  EXPECT_EQ(Text(kTime_Max, kTimeDisplay_Milliseconds, kFrameRate_25), "10086:10:01.077");
  EXPECT_EQ(Text(kTime_Min, kTimeDisplay_Milliseconds, kFrameRate_25), "-10086:10:01.078");
}

TEST(TypedTime, FieldsMayBeMissingOnTheLeft) {
  EXPECT_EQ(Taken25("12"), "00:00:00:12");
  EXPECT_EQ(Taken25("3:12"), "00:00:03:12");
  EXPECT_EQ(Taken25("2:03:12"), "00:02:03:12");
  EXPECT_EQ(Taken25("1:02:03:12"), "01:02:03:12");
  EXPECT_EQ(Taken25(":12"), "00:00:00:12");
  EXPECT_EQ(Taken25("::3:12"), "00:00:03:12");
}

TEST(TypedTime, DigitsWithoutSeparatorsFillFromTheRight) {
  EXPECT_EQ(Taken25("1"), "00:00:00:01");
  EXPECT_EQ(Taken25("1212"), "00:00:12:12");
  EXPECT_EQ(Taken25("123"), "00:00:01:23");
  EXPECT_EQ(Taken25("10000"), "00:01:00:00");
  EXPECT_EQ(Taken25("01020304"), "01:02:03:04");
  EXPECT_EQ(Taken25("123020304"), "123:02:03:04");
  EXPECT_EQ(Taken("1234", kTimeDisplay_Timecode50, kFrameRate_50), "00:00:12:34");
}

TEST(TypedTime, AnySeparatorWillDo) {
  for (const char* typed : {"1:2:3:4", "1;2;3;4", "1.2.3.4", "1,2,3,4", "1 2 3 4", "1:2;3.4",
                            "1\t2\xc2\xa0"
                            "3 4"})
    EXPECT_EQ(Taken25(typed), "01:02:03:04") << typed;
}

TEST(TypedTime, BlanksAroundItAndAroundSeparatorsDoNotMatter) {
  EXPECT_EQ(Taken25("  1 : 2  :3: 4 "), "01:02:03:04");
  EXPECT_EQ(Taken25("1   2"), "00:00:01:02");
}

TEST(TypedTime, TheFirstFieldMayRunOver) {
  EXPECT_EQ(Taken25("75"), "00:00:03:00");
  EXPECT_EQ(Taken25("90:00"), "00:01:30:00");
  EXPECT_EQ(Taken25("90:00:00"), "01:30:00:00");
  EXPECT_EQ(Taken25(":250"), "00:00:10:00");
}

TEST(TypedTime, EveryOtherFieldMustBeInRange) {
  EXPECT_EQ(Taken25("1:25"), "no time");
  EXPECT_EQ(Taken25("1:60:00"), "no time");
  EXPECT_EQ(Taken25("1:60:00:00"), "no time");
  EXPECT_EQ(Taken25("1299"), "no time");
  EXPECT_EQ(Taken25("0:0:0:99"), "no time");
}

TEST(TypedTime, WhatIsNoTimeIsRefused) {
  for (const char* typed : {"", " ", "-", ":", "::", "a", "1a", "1:a", "12:", "1::2", "1:2:3:4:5", ":1:2:3:4", "--1",
                            "1-2", "+5", "1:-2", "0x12", "1e3", "12/3"})
    EXPECT_EQ(Taken25(typed), "no time") << typed;
}

TEST(TypedTime, AMinusSignMakesATimeBeforeZero) {
  EXPECT_EQ(Taken25("-12"), "-00:00:00:12");
  EXPECT_EQ(Taken25("- 1:00"), "-00:00:01:00");
  EXPECT_EQ(Taken25("\xe2\x88\x92"
                    "1:00"),
            "-00:00:01:00");
  EXPECT_EQ(Taken25("-0"), "00:00:00:00");
}

TEST(TypedTime, ADropFrameNumberThatDoesNotExistIsTheNextOneThatDoes) {
  EXPECT_EQ(TakenDrop("00:01:00;00"), "00:01:00;02");
  EXPECT_EQ(TakenDrop("00:01:00;01"), "00:01:00;02");
  EXPECT_EQ(TakenDrop("00:01:00;02"), "00:01:00;02");
  EXPECT_EQ(TakenDrop("-00:01:00;00"), "-00:01:00;02");
  EXPECT_EQ(Taken("00:01:00;03", kTimeDisplay_Timecode5994Drop, kFrameRate_5994), "00:01:00;04");
}

TEST(TypedTime, NoDropFrameNumberIsMissingAtATenthMinute) {
  EXPECT_EQ(TakenDrop("00:10:00;00"), "00:10:00;00");
  EXPECT_EQ(TakenDrop("01:00:00;01"), "01:00:00;01");
}

TEST(TypedTime, ARunOverIntoADropFrameMinuteSkipsItsMissingNumbers) {
  EXPECT_EQ(TakenDrop("60;00"), "00:01:00;02");
  EXPECT_EQ(TakenDrop("60;05"), "00:01:00;05");
}

TEST(TypedTime, CountsOfFramesAndSamplesAreOneNumber) {
  EXPECT_EQ(Taken("1798", kTimeDisplay_Frames, kFrameRate_2997), "1798");
  EXPECT_EQ(Taken("1:00", kTimeDisplay_Frames, kFrameRate_2997), "no time");
  EXPECT_EQ(Taken("96000", kTimeDisplay_AudioSamples, k48kHz), "96000");
}

TEST(TypedTime, FeetAndFramesTakeAPlusOrAnyOtherSeparator) {
  for (const char* typed : {"112+06", "112+6", "112:06", "112 06", "112 + 6", "11206"})
    EXPECT_EQ(Taken(typed, kTimeDisplay_FeetAndFrames35mm, kFrameRate_24), "112+06") << typed;
  EXPECT_EQ(Taken("6", kTimeDisplay_FeetAndFrames35mm, kFrameRate_24), "0+06");
  EXPECT_EQ(Taken("+6", kTimeDisplay_FeetAndFrames35mm, kFrameRate_24), "0+06");
  EXPECT_EQ(Taken("1+16", kTimeDisplay_FeetAndFrames35mm, kFrameRate_24), "no time");
  EXPECT_EQ(Taken("1+39", kTimeDisplay_FeetAndFrames16mm, kFrameRate_24), "1+39");
}

TEST(TypedTime, MillisecondsAfterAPointAreDecimals) {
  EXPECT_EQ(TakenMilliseconds("00:00:59.96"), "00:00:59.960");
  EXPECT_EQ(TakenMilliseconds("59,5"), "00:00:59.500");
  EXPECT_EQ(TakenMilliseconds(".5"), "00:00:00.500");
  EXPECT_EQ(TakenMilliseconds("1.0005"), "no time");
}

TEST(TypedTime, MillisecondsWithoutAPointAreCounted) {
  EXPECT_EQ(TakenMilliseconds("5"), "00:00:00.005");
  EXPECT_EQ(TakenMilliseconds("1234"), "00:00:01.234");
  EXPECT_EQ(TakenMilliseconds("1:5"), "00:00:01.005");
  EXPECT_EQ(TakenMilliseconds("1500 "), "00:00:01.500");
}

TEST(TypedTime, ANumberPastEveryTimeIsRefused) {
  EXPECT_EQ(Taken25("99999999:00:00:00"), "no time");
  EXPECT_EQ(Taken("99999999999999999999999999999999999999999999", kTimeDisplay_Frames, kFrameRate_25), "no time");
  EXPECT_EQ(Taken("0000000000000000000000000000000000000000000007", kTimeDisplay_Frames, kFrameRate_25), "7");
}

// Every display at a rate that suits it.
struct Displayed {
  TimeDisplay display;
  FrameRate rate;
  std::int64_t ticksPerCount;
};

rc::Gen<Displayed> AnyDisplay() {
  return rc::gen::apply(
      [](int number, FrameRate rate) -> Displayed {
        const TimeDisplay display(number == 17 ? 999 : number);
        std::int64_t ticks = GetDisplayRate(display, rate).GetTicksPerFrame();
        if (display == kTimeDisplay_Milliseconds)
          ticks = kTicksPerSecond / 1000;
        if (display == kTimeDisplay_AudioSamples && ticks > kTicksPerSecond / 4000)
          ticks = k48kHz.GetTicksPerFrame();
        return {display, rate, ticks};
      },
      rc::gen::inRange(0, 18),
      rc::gen::element(kFrameRate_23976, kFrameRate_24, kFrameRate_25, kFrameRate_2997, kFrameRate_30, kFrameRate_48,
                       kFrameRate_50, kFrameRate_5994, kFrameRate_60, k44kHz, k48kHz, FrameRate::FromRational(96000, 1),
                       FrameRate::FromRational(25, 2), FrameRate::FromRational(1, 1), FrameRate::FromRational(120, 1),
                       FrameRate::FromRational(1000, 1)));
}

constexpr std::int64_t kHundredHours = 100 * 3600 * kTicksPerSecond;

RC_GTEST_PROP(TypedTime, WhatIsShownIsReadBackAsTheSameTimeInEveryDisplay, ()) {
  const Displayed shown = *AnyDisplay();
  const std::int64_t most = kHundredHours / shown.ticksPerCount;
  const TickTime time(*rc::gen::inRange<std::int64_t>(-most, most) * shown.ticksPerCount);
  const zebcore::UString text = FormatTime(time, shown.display, shown.rate);
  RC_LOG() << shown.display.GetNumber() << " " << ToUTF8(text);
  RC_ASSERT(ParseTime(text, shown.display, shown.rate) == time);
}

RC_GTEST_PROP(TypedTime, ATimeBetweenTwoCountsIsReadBackAsTheEarlierOne, ()) {
  const Displayed shown = *AnyDisplay();
  const TickTime time(*rc::gen::inRange<std::int64_t>(-kHundredHours, kHundredHours));
  TickTime start = time;
  start.AlignToFrame(FrameRate(shown.ticksPerCount));
  RC_ASSERT(ParseTime(FormatTime(time, shown.display, shown.rate), shown.display, shown.rate) == start);
}

RC_GTEST_PROP(TypedTime, WhatIsTakenIsAlwaysACountOfTheDisplay, ()) {
  const Displayed shown = *AnyDisplay();
  const auto character = rc::gen::weightedElement<char>(
      {{8, '0'}, {6, '1'}, {4, '5'}, {2, '9'}, {4, ':'}, {2, ';'}, {2, '.'}, {1, ' '}, {1, '-'}, {1, '+'}});
  const auto typed = *rc::gen::mapcat(rc::gen::inRange<std::size_t>(1, 12), [&character](std::size_t length) {
    return rc::gen::container<std::string>(length, character);
  });
  const std::optional<TickTime> time = ParseTime(FromUTF8(typed), shown.display, shown.rate);
  RC_CLASSIFY(time.has_value());
  if (time) {
    RC_ASSERT(time->GetTicks() % shown.ticksPerCount == 0);
    RC_ASSERT(ParseTime(FormatTime(*time, shown.display, shown.rate), shown.display, shown.rate) == time);
  }
}

} // namespace
} // namespace zebmediatypes
