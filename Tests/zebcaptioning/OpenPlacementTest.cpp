#include "zebcaptioning/OpenPlacement.h"

#include <gtest/gtest.h>

#include "Builders.h"

using namespace builders;

namespace {

using Paragraph = ParagraphStyleAttributes;

CaptionStatePtr Placed(const Paragraph& paragraph) {
  return MakeCaptionState(TickTime(0), TickTime(100), u"a", {}, paragraph);
}

// Measured at 200 by 100 pixels.
Paragraph InCell(int anchor) {
  Paragraph paragraph;
  paragraph.anchor = anchor;
  paragraph.lineWidth = 200;
  paragraph.blockHeight = 100;
  return paragraph;
}

CaptionStatePtr ApplyX(const CaptionStatePtr& state, int x, StreamFormat format = kOpen) {
  CaptionFormatInfo info;
  info.SetPositionX(x);
  return ApplyToRange(state, kFormatPositionX, info, kWhole, format, 1000, 500);
}
CaptionStatePtr ApplyY(const CaptionStatePtr& state, int y) {
  CaptionFormatInfo info;
  info.SetPositionY(y);
  return ApplyToRange(state, kFormatPositionY, info, kWhole, kOpen, 1000, 500);
}
OpenPlace PlaceOf(const CaptionStatePtr& state) {
  return GetOpenPlace(state->paragraph, 200, 100, 1000, 500);
}

TEST(PlaceOfAnOpenCaption, AnAnchorPutsItIntoItsCellOfTheSafeArea) {
  EXPECT_EQ(PlaceOf(Placed(InCell(0))).x, 50);
  EXPECT_EQ(PlaceOf(Placed(InCell(0))).y, 25);
  EXPECT_EQ(PlaceOf(Placed(InCell(4))).x, 400);
  EXPECT_EQ(PlaceOf(Placed(InCell(4))).y, 200);
  EXPECT_EQ(PlaceOf(Placed(InCell(8))).x, 750);
  EXPECT_EQ(PlaceOf(Placed(InCell(8))).y, 375);
}

TEST(PlaceOfAnOpenCaption, APositionThatIsAppliedHoldsWhateverCellItHadBefore) {
  for (const int anchor : {-2, -1, 0, 4, 7, 8, 9}) {
    const auto moved = ApplyY(ApplyX(Placed(InCell(anchor)), 123), 45);
    EXPECT_EQ(PlaceOf(moved).x, 123) << anchor;
    EXPECT_EQ(PlaceOf(moved).y, 45) << anchor;
  }
}

TEST(PlaceOfAnOpenCaption, TheTopLeftCornerCanBeAppliedToo) {
  const auto moved = ApplyY(ApplyX(Placed(InCell(7)), 0), 0);
  EXPECT_EQ(PlaceOf(moved).x, 0);
  EXPECT_EQ(PlaceOf(moved).y, 0);
}

TEST(PlaceOfAnOpenCaption, MovingItAcrossLeavesItsHeightAndMovingItDownLeavesItsSide) {
  const auto state = Placed(InCell(7));
  EXPECT_EQ(PlaceOf(ApplyX(state, 10)).y, PlaceOf(state).y);
  EXPECT_EQ(PlaceOf(ApplyY(state, 10)).x, PlaceOf(state).x);
}

TEST(PlaceOfAnOpenCaption, AnAnchorThatIsAppliedAfterAPositionHolds) {
  CaptionFormatInfo info;
  info.SetAnchorID(8, false);
  const auto anchored = ApplyToRange(ApplyX(Placed(InCell(0)), 10), kFormatAnchor, info, kWhole, kOpen, 1000, 500);
  EXPECT_EQ(PlaceOf(anchored).x, 750);
}

TEST(PlaceOfAnOpenCaption, OneThatWasNeverPlacedStandsAtTheBottomByItsAlignment) {
  Paragraph paragraph = InCell(9);
  paragraph.alignment = Paragraph::kTextAlignment_Center;
  EXPECT_FALSE(StandsAtX(paragraph));
  EXPECT_FALSE(StandsAtY(paragraph));
  EXPECT_EQ(PlaceOf(Placed(paragraph)).x, 400);
  EXPECT_EQ(PlaceOf(Placed(paragraph)).y, 375);
}

TEST(PlaceOfAnOpenCaption, WithoutACellXAndYSayIt) {
  Paragraph paragraph = InCell(9);
  paragraph.x = 20;
  paragraph.y = 30;
  EXPECT_EQ(PlaceOf(Placed(paragraph)).x, 20);
  EXPECT_EQ(PlaceOf(Placed(paragraph)).y, 30);
}

TEST(PlaceOfAnOpenCaption, ACoordinateThatWasNeverSetLeavesTheCaptionAtTheBottomOrAtItsSide) {
  Paragraph paragraph = InCell(9);
  paragraph.x = 20;
  EXPECT_EQ(PlaceOf(Placed(paragraph)).x, 20);
  EXPECT_EQ(PlaceOf(Placed(paragraph)).y, 375);
  paragraph.x = 0;
  paragraph.y = 30;
  EXPECT_EQ(PlaceOf(Placed(paragraph)).x, 50);
  EXPECT_EQ(PlaceOf(Placed(paragraph)).y, 30);
}

TEST(PlaceOfAnOpenCaption, WithoutACellNothingButTheCoordinateThatIsAppliedChanges) {
  const auto across = ApplyX(Placed(InCell(9)), 20);
  EXPECT_EQ(across->paragraph.x, 20);
  EXPECT_EQ(across->paragraph.y, 0);
  EXPECT_EQ(across->paragraph.anchor, 9);
  const auto down = ApplyY(across, 30);
  EXPECT_EQ(down->paragraph.x, 20);
  EXPECT_EQ(down->paragraph.y, 30);
  EXPECT_EQ(down->paragraph.anchor, 9);
}

TEST(PlaceOfAnOpenCaption, WithoutACellABorderOfTheFrameCanBeAppliedToo) {
  Paragraph paragraph = InCell(9);
  paragraph.x = 20;
  paragraph.y = 30;
  const auto atLeft = ApplyX(Placed(paragraph), 0);
  EXPECT_EQ(PlaceOf(atLeft).x, 0);
  EXPECT_EQ(PlaceOf(atLeft).y, 30);
}

} // namespace
