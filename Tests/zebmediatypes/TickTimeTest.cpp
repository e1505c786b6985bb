#include <cmath>
#include <limits>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "zebmediatypes/FrameRate.h"
#include "zebmediatypes/TickTime.h"

namespace zebmediatypes {

namespace {

constexpr FrameRate kVideoRates[] = {kFrameRate_23976, kFrameRate_24, kFrameRate_25,   kFrameRate_2997, kFrameRate_30,
                                     kFrameRate_48,    kFrameRate_50, kFrameRate_5994, kFrameRate_60};

TickTime Aligned(TickTime time, FrameRate rate) {
  time.AlignToFrame(rate);
  return time;
}

TEST(TickTimes, TheFrameDurationOfEveryTimecodeRateIsAWholeNumberOfTicks) {
  EXPECT_EQ(kFrameRate_23976, FrameRate::FromRational(24000, 1001));
  EXPECT_EQ(kFrameRate_24, FrameRate::FromRational(24, 1));
  EXPECT_EQ(kFrameRate_25, FrameRate::FromRational(25, 1));
  EXPECT_EQ(kFrameRate_2997, FrameRate::FromRational(30000, 1001));
  EXPECT_EQ(kFrameRate_30, FrameRate::FromRational(30, 1));
  EXPECT_EQ(kFrameRate_48, FrameRate::FromRational(48, 1));
  EXPECT_EQ(kFrameRate_50, FrameRate::FromRational(50, 1));
  EXPECT_EQ(kFrameRate_5994, FrameRate::FromRational(60000, 1001));
  EXPECT_EQ(kFrameRate_60, FrameRate::FromRational(60, 1));
  EXPECT_EQ(kFrameRate_2997.GetTicksPerFrame() * 30000, kTicksPerSecond * 1001);
  EXPECT_EQ(kFrameRate_23976.GetTicksPerFrame() * 24000, kTicksPerSecond * 1001);
}

TEST(TickTimes, AnAudioRateIsAFrameRateOfOneSample) {
  EXPECT_EQ(FrameRate::FromRational(48000, 1).GetTicksPerFrame(), 5292000);
  EXPECT_EQ(FrameRate::FromRational(44100, 1).GetTicksPerFrame(), 5760000);
}

TEST(TickTimes, ARateThatIsNotAboveZeroIsInvalid) {
  EXPECT_FALSE(FrameRate::FromRational(0, 1).IsValid());
  EXPECT_FALSE(FrameRate::FromRational(25, 0).IsValid());
  EXPECT_FALSE(FrameRate::FromRational(-25, 1).IsValid());
  EXPECT_FALSE(FrameRate::FromRational(25, -1).IsValid());
  EXPECT_FALSE(FrameRate().IsValid());
  EXPECT_FALSE(kFrameRate_Zero.IsValid());
  EXPECT_FALSE(FrameRate(-1).IsValid());
  EXPECT_EQ(kFrameRate_Invalid.GetTicksPerFrame(), 0x7fffffffffffffff);
}

TEST(TickTimes, ARateTooFastOrTooSlowForTicksIsInvalid) {
  EXPECT_FALSE(FrameRate::FromRational(std::numeric_limits<std::int64_t>::max(), 1).IsValid());
  EXPECT_FALSE(FrameRate::FromRational(1, std::numeric_limits<std::int64_t>::max()).IsValid());
}

TEST(TickTimes, BothPartsOfARateMayBeNegative) {
  EXPECT_EQ(FrameRate::FromRational(-30000, -1001), kFrameRate_2997);
}

TEST(TickTimes, ARateThatTicksCannotHoldIsTakenToTheNearestTick) {
  // 254016000000 / 7 is 36288000000, / 11 is 23092363636.36, / 13 is 19539692307.69.
  EXPECT_EQ(FrameRate::FromRational(7, 1).GetTicksPerFrame(), 36288000000);
  EXPECT_EQ(FrameRate::FromRational(11, 1).GetTicksPerFrame(), 23092363636);
  EXPECT_EQ(FrameRate::FromRational(13, 1).GetTicksPerFrame(), 19539692308);
}

TEST(TickTimes, EveryFrameOfFortyEightHoursAlignsToItsOwnStart) {
  for (const FrameRate rate : kVideoRates) {
    const std::int64_t step = rate.GetTicksPerFrame();
    const std::int64_t frames = 48 * 3600 * kTicksPerSecond / step;
    std::int64_t wrong = 0;
    for (std::int64_t frame = 0; frame <= frames; ++frame) {
      const TickTime start(frame * step);
      wrong += Aligned(start, rate) != start;
      wrong += Aligned(TickTime(start.GetTicks() + step - 1), rate) != start;
    }
    EXPECT_EQ(wrong, 0) << step;
  }
}

TEST(TickTimes, ATimeBeforeZeroAlignsDownToo) {
  EXPECT_EQ(Aligned(TickTime(-1), kFrameRate_25), TickTime(-kFrameRate_25.GetTicksPerFrame()));
  EXPECT_EQ(Aligned(TickTime(-kFrameRate_25.GetTicksPerFrame()), kFrameRate_25),
            TickTime(-kFrameRate_25.GetTicksPerFrame()));
}

TEST(TickTimes, AnInvalidOrZeroRateAlignsNothing) {
  for (const FrameRate rate : {kFrameRate_Invalid, kFrameRate_Zero, FrameRate(-5)})
    EXPECT_EQ(Aligned(TickTime(12345), rate), TickTime(12345));
}

TEST(TickTimes, TheInvalidTimeStaysInvalidAndNoOtherBecomesInvalidWhenAligned) {
  for (const FrameRate rate : kVideoRates) {
    EXPECT_EQ(Aligned(kTime_Invalid, rate), kTime_Invalid);
    EXPECT_EQ(Aligned(kTime_Min, rate), kTime_Min);
    EXPECT_LE(Aligned(kTime_Max, rate), kTime_Max);
    EXPECT_GT(Aligned(kTime_Max, rate), kTime_Zero);
  }
}

RC_GTEST_PROP(TickTimes, AnAlignedTimeIsTheLastFrameStartThatIsNotLater, (std::int64_t ticks)) {
  RC_PRE(ticks > kTime_Min.GetTicks() + kTicksPerSecond);
  const FrameRate rate = *rc::gen::elementOf(std::vector<FrameRate>(std::begin(kVideoRates), std::end(kVideoRates)));
  const TickTime aligned = Aligned(TickTime(ticks), rate);
  RC_ASSERT(aligned.GetTicks() % rate.GetTicksPerFrame() == 0);
  RC_ASSERT(aligned.GetTicks() <= ticks);
  RC_ASSERT(ticks - aligned.GetTicks() < rate.GetTicksPerFrame());
  RC_ASSERT(Aligned(aligned, rate) == aligned);
}

TEST(TickTimes, SumsAndDifferencesWrapAround) {
  EXPECT_EQ(kTime_Max + TickTime(1), kTime_Invalid);
  EXPECT_EQ(kTime_Invalid - TickTime(1), kTime_Max);
  EXPECT_EQ(TickTime(5) - TickTime(7), TickTime(-2));
}

TEST(TickTimes, TheOrderIsThatOfSignedNumbers) {
  EXPECT_LT(kTime_Invalid, kTime_Min);
  EXPECT_LT(kTime_Min, TickTime(-1));
  EXPECT_LT(TickTime(-1), kTime_Zero);
  EXPECT_LT(kTime_Zero, kTime_Max);
}

TEST(TickTimes, SecondsBecomeTheNearestTick) {
  EXPECT_EQ(TickTimeFromSeconds(1.5), TickTime(381024000000));
  EXPECT_EQ(TickTimeFromSeconds(-1.5), TickTime(-381024000000));
  EXPECT_EQ(TickTimeFromSeconds(0.6 / kTicksPerSecond), TickTime(1));
  EXPECT_EQ(TickTimeFromSeconds(-0.6 / kTicksPerSecond), TickTime(-1));
  EXPECT_EQ(TickTimeFromSeconds(0.4 / kTicksPerSecond), kTime_Zero);
  EXPECT_DOUBLE_EQ(ToSeconds(TickTime(381024000000)), 1.5);
}

TEST(TickTimes, SecondsThatDoNotFitSaturate) {
  EXPECT_EQ(TickTimeFromSeconds(1e9), kTime_Max);
  EXPECT_EQ(TickTimeFromSeconds(-1e9), kTime_Min);
  EXPECT_EQ(TickTimeFromSeconds(std::numeric_limits<double>::infinity()), kTime_Max);
  EXPECT_EQ(TickTimeFromSeconds(-std::numeric_limits<double>::infinity()), kTime_Min);
  EXPECT_EQ(TickTimeFromSeconds(std::nan("")), kTime_Invalid);
}

TEST(TickTimes, ARationalTimeIsExactWithoutOverflowBetween) {
  EXPECT_EQ(TickTimeFromRational(1001, 1, 30000), kFrameRate_2997.GetFrameDuration());
  EXPECT_EQ(TickTimeFromRational(10'000'000, 1001, 30000), TickTime(kFrameRate_2997.GetTicksPerFrame() * 10'000'000));
  EXPECT_EQ(TickTimeFromRational(-1, 1, 25), TickTime(-kFrameRate_25.GetTicksPerFrame()));
  EXPECT_EQ(TickTimeFromRational(1, -1, -25), TickTime(kFrameRate_25.GetTicksPerFrame()));
  const std::int64_t large = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(TickTimeFromRational(large, 7, large), TickTime(7 * kTicksPerSecond));
  EXPECT_EQ(TickTimeFromRational(large - 1, large, large), kTime_Max);
}

TEST(TickTimes, ARationalTimeThatDoesNotFitSaturates) {
  const std::int64_t large = std::numeric_limits<std::int64_t>::max();
  const std::int64_t small = std::numeric_limits<std::int64_t>::min();
  EXPECT_EQ(TickTimeFromRational(large, large, 1), kTime_Max);
  EXPECT_EQ(TickTimeFromRational(small, large, 1), kTime_Min);
  EXPECT_EQ(TickTimeFromRational(small, small, 1), kTime_Max);
  EXPECT_EQ(TickTimeFromRational(small, small, small), kTime_Min);
  EXPECT_EQ(TickTimeFromRational(36310202, 1, 1), kTime_Max);
  EXPECT_EQ(TickTimeFromRational(36310201, 1, 1), TickTime(36310201 * kTicksPerSecond));
  EXPECT_EQ(TickTimeFromRational(1, 1, 0), kTime_Invalid);
}

TEST(TickTimes, ARationalTimeIsTakenToTheNearestTick) {
  EXPECT_EQ(TickTimeFromRational(1, 1, 11), TickTime(23092363636));
  EXPECT_EQ(TickTimeFromRational(1, 1, 13), TickTime(19539692308));
  EXPECT_EQ(TickTimeFromRational(-1, 1, 13), TickTime(-19539692308));
  EXPECT_EQ(TickTimeFromRational(1, 1, 2 * kTicksPerSecond), TickTime(1));
  EXPECT_EQ(TickTimeFromRational(-1, 1, 2 * kTicksPerSecond), TickTime(-1));
}

} // namespace
} // namespace zebmediatypes
