#include "Builders.h"

// Where closed captions stand once a position was applied to one that stood in a cell.

using namespace builders;

namespace {

using Paragraph = ParagraphStyleAttributes;

CaptionStatePtr InCell(int anchor, const UString& text, const std::vector<TextRun>& runs = {}) {
  Paragraph paragraph;
  paragraph.anchor = anchor;
  return MakeCaptionState(TickTime(0), TickTime(100), text, runs, paragraph);
}

Paragraph ApplyX(const CaptionStatePtr& state, int x, StreamFormat format = kCC1) {
  CaptionFormatInfo info;
  info.SetPositionX(x);
  return ApplyToRange(state, kFormatPositionX, info, kWhole, format)->paragraph;
}
Paragraph ApplyY(const CaptionStatePtr& state, int y, StreamFormat format = kCC1) {
  CaptionFormatInfo info;
  info.SetPositionY(y);
  return ApplyToRange(state, kFormatPositionY, info, kWhole, format)->paragraph;
}

} // namespace

TEST(PlaceOfAClosedCaption, APositionThatIsAppliedTakesItOutOfItsCell) {
  for (const int anchor : {0, 4, 8}) {
    const Paragraph moved = ApplyX(InCell(anchor, u"ab"), 5);
    EXPECT_EQ(moved.x, 5) << anchor;
    EXPECT_EQ(moved.anchor, -1) << anchor;
  }
}

TEST(PlaceOfAClosedCaption, MovingItAcrossLeavesItsRowAndMovingItDownLeavesItsColumn) {
  EXPECT_EQ(ApplyX(InCell(7, u"ab\ncdef"), 5).y, 13);
  EXPECT_EQ(ApplyX(InCell(4, u"ab\ncd\nef"), 5).y, 6);
  EXPECT_EQ(ApplyX(InCell(1, u"ab"), 5).y, 0);
  EXPECT_EQ(ApplyY(InCell(7, u"ab\ncdef"), 5).x, 14);
  EXPECT_EQ(ApplyY(InCell(8, u"a\U0001F600"), 5).x, 30);
}

TEST(PlaceOfAClosedCaption, RowsCountFromTheFirstThatMayBeUsedAndDoubleHeightTakesTwo) {
  EXPECT_EQ(ApplyX(InCell(0, u"ab"), 5, kTeletext).y, 1);
  EXPECT_EQ(ApplyX(InCell(6, u"ab"), 5, kTeletext).y, 23);
  EXPECT_EQ(ApplyX(InCell(6, u"ab", {{0, Share(Sized(36))}}), 5, kTeletext).y, 22);
}

TEST(PlaceOfAClosedCaption, OfMoreTextThanTheGridHoldsBeginsAtItsFirstCell) {
  EXPECT_EQ(ApplyY(InCell(8, UString(40, u'x')), 5).x, 0);
  EXPECT_EQ(ApplyX(InCell(8, UString(20, u'\n')), 5).y, 0);
}

TEST(PlaceOfAClosedCaption, WithoutACellNothingElseChanges) {
  for (const int anchor : {-2, -1, 9}) {
    const Paragraph moved = ApplyX(InCell(anchor, u"ab"), 5);
    EXPECT_EQ(moved.anchor, anchor);
    EXPECT_EQ(moved.y, 0);
  }
}

TEST(PlaceOfAClosedCaption, InARegionTheOtherCoordinateStaysAsItWasStored) {
  Paragraph paragraph;
  paragraph.anchor = 8;
  paragraph.x = 2;
  paragraph.y = 3;
  paragraph.region = zebcore::utility::ImmutableString("Side");
  const Paragraph moved = ApplyX(MakeCaptionState(TickTime(0), TickTime(100), u"ab", {}, paragraph), 5);
  EXPECT_EQ(moved.x, 5);
  EXPECT_EQ(moved.y, 3);
  EXPECT_EQ(moved.anchor, -1);
}

TEST(PlaceOfAClosedCaption, AnAnchorThatIsAppliedAfterAPositionIsKept) {
  const auto moved = MakeCaptionState(TickTime(0), TickTime(100), u"ab", {}, ApplyX(InCell(0, u"ab"), 5));
  CaptionFormatInfo info;
  info.SetAnchorID(2, false);
  const Paragraph anchored = ApplyToRange(moved, kFormatAnchor, info, kWhole, kCC1)->paragraph;
  EXPECT_EQ(anchored.anchor, 2);
  EXPECT_EQ(anchored.x, 5);
}
