#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "Captions/view/PositionRules.h"

namespace Captivo {

TEST(PositionRules, AnchorsZeroToEightAreTheCellsRowByRow) {
  for (int anchor = 0; anchor < 9; ++anchor) {
    const PointT<int> cell = GridCellOfAnchor(anchor);
    EXPECT_EQ(cell, (PointT<int>{anchor % 3, anchor / 3}));
    EXPECT_EQ(AnchorOfGridCell(cell), anchor);
  }
}

TEST(PositionRules, AnchorsThatMarkNoCell) {
  for (const int anchor : {-2, -1, 9})
    EXPECT_EQ(GridCellOfAnchor(anchor), (PointT<int>{-1, -1}));
}

TEST(PositionRules, AnyOtherAnchorIsTheTopLeftCell) {
  for (const int anchor : {-3, 10, 255, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
    EXPECT_EQ(GridCellOfAnchor(anchor), (PointT<int>{0, 0}));
}

TEST(PositionRules, AnyPointOutsideTheGridIsAnchorNine) {
  for (const PointT<int> cell : {PointT<int>{-1, -1}, {0, -1}, {-1, 0}, {3, 0}, {0, 3}, {3, 3}})
    EXPECT_EQ(AnchorOfGridCell(cell), 9);
}

TEST(PositionRules, PercentIsRoundedToTheNearestStepByHalfAndTruncation) {
  EXPECT_EQ(PositionOfPercent(50.0, 1920), 960);
  EXPECT_EQ(PositionOfPercent(0.0, 1920), 0);
  EXPECT_EQ(PositionOfPercent(100.0, 1080), 1080);
  EXPECT_EQ(PositionOfPercent(0.02, 1920), 0);  // 0.384
  EXPECT_EQ(PositionOfPercent(0.03, 1920), 1);  // 0.576
  EXPECT_EQ(PositionOfPercent(-0.05, 1920), 0); // -0.96 + 0.5 goes toward zero
}

TEST(PositionRules, WhatDoesNotFitSaturates) {
  EXPECT_EQ(TruncateToInt(1e300), std::numeric_limits<int>::max());
  EXPECT_EQ(TruncateToInt(-1e300), std::numeric_limits<int>::min());
  EXPECT_EQ(TruncateToInt(std::numeric_limits<double>::infinity()), std::numeric_limits<int>::max());
  EXPECT_EQ(TruncateToInt(std::nan("")), 0);
  EXPECT_EQ(TruncateToInt(-1.9), -1);
  EXPECT_EQ(TruncateToInt(1.9), 1);
}

TEST(PositionRules, APercentOfNothingIsNoNumber) {
  EXPECT_TRUE(std::isnan(PercentOfPosition(0, 0)));
  EXPECT_TRUE(std::isinf(PercentOfPosition(5, 0)));
  EXPECT_DOUBLE_EQ(PercentOfPosition(480, 1920), 25.0);
}

TEST(PositionRules, ARegionIsInPercentOfTheFrameOrInUnits) {
  EXPECT_EQ(RegionExtent(80.0F, true, 1920), 1536);
  EXPECT_EQ(RegionExtent(33.3F, true, 1000), 333);
  EXPECT_EQ(RegionExtent(80.0F, true, 0), 0);
  EXPECT_EQ(RegionExtent(31.4F, false, 1920), 31);
  EXPECT_EQ(RegionExtent(31.5F, false, 1920), 32);
}

} // namespace Captivo
