#include <cmath>

#include "FormatStage.h"

namespace Captivo::Testing {

namespace {

using zebcaptioning::ParagraphStyleAttributes;
using Changes = zebui::ui::UI_InteractiveControlChangedMessage;
using Parameters = std::vector<int>;
using Cell = PointT<int>;

SetPlace At(int x, int y) {
  return [=](ParagraphStyleAttributes& place) {
    place.x = x;
    place.y = y;
  };
}
SetPlace Anchored(int anchor) {
  return [=](ParagraphStyleAttributes& place) { place.anchor = anchor; };
}
SetPlace Sized(int lineWidth, int blockHeight) {
  return [=](ParagraphStyleAttributes& place) {
    place.lineWidth = lineWidth;
    place.blockHeight = blockHeight;
  };
}

class Position : public FormatStage {
 protected:
  using Number = zebui::controls::UI_HotTextNumber;
  Number& ClosedX() { return *Inspector::ClosedPositionXControl(View()); }
  Number& ClosedY() { return *Inspector::ClosedPositionYControl(View()); }
  Number& OpenX() { return *Inspector::OpenPositionXControl(View()); }
  Number& OpenY() { return *Inspector::OpenPositionYControl(View()); }
  auto& ClosedGrid() { return Inspector::ClosedPositionGrid(View()); }
  auto& OpenGrid() { return Inspector::OpenPositionGrid(View()); }

  // A format as the selection would give it, with a region of this area.
  void PublishArea(const RectT<float>& area, bool isPercent, bool isKnown = true) {
    const boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> info(new zebcaptioning::CaptionFormatInfo);
    info->SetRegionArea(area, isPercent, isKnown);
    View().PublishFormat(info);
  }
  PointT<int> Grid() { return {Inspector::GridColumns(View()), Inspector::GridRows(View())}; }
  static void ExpectRange(const Number& control, double min, double max) {
    EXPECT_DOUBLE_EQ(control.GetMinValue(), min);
    EXPECT_DOUBLE_EQ(control.GetMaxValue(), max);
  }
};

} // namespace

// --- Closed captions

TEST_F(Position, ColumnsRunFromOneToAllWithoutALineWidth) {
  ShowClosed(MakePlaces({At(4, 2)}));
  EXPECT_EQ(Inspector::MaxPositionX(View()), 31);
  ExpectRange(ClosedX(), 1, 32);
  EXPECT_EQ(ClosedX().GetValue(), 5);
  EXPECT_EQ(ClosedY().GetValue(), 3);
}

TEST_F(Position, AComputedLineWidthLeavesFewerColumnsAndAHeightFewerRows) {
  ShowClosed(MakePlaces({Sized(10, 2), Sized(0, 0), Sized(-5, 1)}));
  EXPECT_EQ(Inspector::MaxPositionX(View()), 22);
  EXPECT_EQ(Inspector::MaxPositionY(View()), 13);
  ExpectRange(ClosedX(), 1, 23);
  ExpectRange(ClosedY(), 1, 14);
  Click(3);
  EXPECT_EQ(Inspector::MaxPositionX(View()), 31) << "no width counts as one column";
  EXPECT_EQ(Inspector::MaxPositionY(View()), 15) << "no height counts as none";
  Click(5);
  EXPECT_EQ(Inspector::MaxPositionX(View()), 31);
}

TEST_F(Position, TeletextAndAustralianRowsAreShownAsTheyAreStored) {
  for (const StreamFormat format : {kTeletextPage1, kAustralianPage1}) {
    ShowStream(format, MakePlaces({At(4, 7)}));
    EXPECT_EQ(Inspector::MinPositionY(View()), 1);
    EXPECT_EQ(Inspector::MaxPositionY(View()), 24);
    ExpectRange(ClosedY(), 1, 24);
    EXPECT_EQ(ClosedY().GetValue(), 7);
    EXPECT_EQ(ClosedX().GetValue(), 5) << "columns count from 1 all the same";
    ClosedY().Enter(9.0);
    EXPECT_EQ(PlaceOf(1).y, 9);
  }
}

TEST_F(Position, EbuRowsCountFromOne) {
  ShowStream(kEbuTrack1, MakePlaces({At(0, 7)}));
  EXPECT_EQ(ClosedY().GetValue(), 8);
  ClosedY().Enter(10.0);
  EXPECT_EQ(PlaceOf(1).y, 9);
}

TEST_F(Position, TypedCellsAreStoredFromZero) {
  ShowClosed(MakePlaces({At(4, 2), At(1, 1)}));
  SelectAll();
  ClosedX().Enter(7.0);
  EXPECT_EQ(TakeApplied(), Parameters{15});
  ClosedY().Enter(6.0);
  EXPECT_EQ(TakeApplied(), Parameters{16});
  for (const double begin : {1.0, 3.0}) {
    EXPECT_EQ(PlaceOf(begin).x, 6);
    EXPECT_EQ(PlaceOf(begin).y, 5);
  }
}

TEST_F(Position, AFractionOfACellIsCutOff) {
  ShowClosed(MakePlaces({At(4, 2)}));
  ClosedX().Enter(7.9);
  EXPECT_EQ(PlaceOf(1).x, 6);
  ClosedY().Enter(6.9);
  EXPECT_EQ(PlaceOf(1).y, 5);
}

TEST_F(Position, ThePositionThatAllHaveIsNotAppliedAgain) {
  ShowClosed(MakePlaces({At(4, 2)}));
  ClosedX().Enter(5.0);
  ClosedY().Enter(3.0);
  EXPECT_EQ(TakeApplied(), Parameters{});
}

TEST_F(Position, TheSameNumberOverAMixedSelectionGoesToAll) {
  ShowClosed(MakePlaces({At(4, 2), At(6, 8)}));
  SelectAll();
  EXPECT_TRUE(ClosedX().IsValueUnknown());
  EXPECT_TRUE(ClosedY().IsValueUnknown());
  ClosedX().Enter(5.0);
  EXPECT_EQ(TakeApplied(), Parameters{15});
  ClosedY().Enter(3.0);
  EXPECT_EQ(TakeApplied(), Parameters{16});
  EXPECT_EQ(PlaceOf(3).x, 4);
  EXPECT_EQ(PlaceOf(3).y, 2);
}

TEST_F(Position, ANumberOnItsWayChangesNothing) {
  ShowClosed(MakePlaces({At(4, 2)}));
  const auto phases = {Changes::kChange_Started, Changes::kChange_Changed, Changes::kChange_Cancelled};
  for (const auto phase : phases) {
    ClosedX().Enter(9.0, phase);
    ClosedY().Enter(9.0, phase);
  }
  EXPECT_EQ(TakeApplied(), Parameters{});
  ShowOpen(MakePlaces({At(4, 2)}));
  for (const auto phase : phases) {
    OpenX().Enter(9.0, phase);
    OpenY().Enter(9.0, phase);
  }
  EXPECT_EQ(TakeApplied(), Parameters{});
}

// --- Open captions

TEST_F(Position, OfOpenCaptionsIsInPercentOfTheFrame) {
  ShowOpen(MakePlaces({[](ParagraphStyleAttributes& place) {
    place.x = 480;
    place.y = 270;
    place.lineWidth = 192;
    place.blockHeight = 108;
  }}));
  ASSERT_EQ(Grid(), (PointT<int>{1920, 1080}));
  ExpectRange(OpenX(), 0, 90);
  ExpectRange(OpenY(), 0, 90);
  EXPECT_DOUBLE_EQ(OpenX().GetValue(), 25);
  EXPECT_DOUBLE_EQ(OpenY().GetValue(), 25);
}

TEST_F(Position, TypedPercentsAreStoredToTheNearestPixel) {
  ShowOpen(MakePlaces({At(4, 2), At(7, 9)}));
  SelectAll();
  EXPECT_TRUE(OpenX().IsValueUnknown());
  EXPECT_TRUE(OpenY().IsValueUnknown());
  OpenX().Enter(10.03); // 192.576
  EXPECT_EQ(TakeApplied(), Parameters{15});
  OpenY().Enter(10.03); // 108.324
  EXPECT_EQ(TakeApplied(), Parameters{16});
  for (const double begin : {1.0, 3.0}) {
    EXPECT_EQ(PlaceOf(begin).x, 193);
    EXPECT_EQ(PlaceOf(begin).y, 108);
  }
  EXPECT_DOUBLE_EQ(OpenX().GetValue(), 193.0 / 1920.0 * 100.0);
  OpenX().Enter(10.06); // 193.152, the same pixel
  EXPECT_EQ(TakeApplied(), Parameters{});
}

TEST_F(Position, EachFormatThatIsPublishedSetsAllFourLimitsAnew) {
  for (const bool isOpen : {false, true}) {
    if (isOpen)
      ShowOpen(MakePlaces({At(4, 2)}));
    else
      ShowClosed(MakePlaces({At(4, 2)}));
    Number& x = isOpen ? OpenX() : ClosedX();
    Number& y = isOpen ? OpenY() : ClosedY();
    const std::vector<double> limits{x.GetMinValue(), x.GetMaxValue(), y.GetMinValue(), y.GetMaxValue()};
    for (Number* number : {&x, &y}) {
      number->SetMinValue(2.5);
      number->SetMaxValue(2.75);
    }
    Pane().PublishSelectionFormat();
    EXPECT_EQ((std::vector<double>{x.GetMinValue(), x.GetMaxValue(), y.GetMinValue(), y.GetMaxValue()}), limits);
  }
}

// --- Regions

TEST_F(Position, ARegionInUnitsIsTheGridUntilTheNextStream) {
  ShowClosed(MakePlaces({At(4, 2)}));
  PublishArea({0, 0, 19.5F, 9.4F}, false);
  EXPECT_EQ(Grid(), (PointT<int>{20, 9}));
  ExpectRange(ClosedX(), 1, 20);
  Click(1);
  EXPECT_EQ(Grid(), (PointT<int>{20, 9})) << "a caption without a region finds that of the one before";
  SelectClip(nullptr);
  SelectClip(clip);
  EXPECT_EQ(Grid(), (PointT<int>{32, 15}));
}

TEST_F(Position, ARegionInPercentIsThatShareOfTheFrame) {
  ShowOpen(MakePlaces({At(4, 2)}));
  PublishArea({10, 10, 80, 33.3F}, true);
  EXPECT_EQ(Grid(), (PointT<int>{1536, 360}));
  ExpectRange(OpenX(), 0, 1535.0 / 1536.0 * 100.0);
}

TEST_F(Position, ARegionThatIsEmptyOrNotTheSameForAllLeavesTheGrid) {
  ShowClosed(MakePlaces({At(4, 2)}));
  PublishArea({0, 0, 0, 9}, false);
  EXPECT_EQ(Grid(), (PointT<int>{32, 15}));
  PublishArea({0, 0, 20, 0}, false);
  EXPECT_EQ(Grid(), (PointT<int>{32, 15}));
  PublishArea({0, 0, 20, 9}, false, false);
  EXPECT_EQ(Grid(), (PointT<int>{32, 15}));
}

TEST_F(Position, ARegionInPercentOfNoFrameIsNoGrid) {
  ShowClosed(MakePlaces({At(4, 2)}));
  ASSERT_EQ(Inspector::FrameRect(View()), RectT<int>());
  PublishArea({0, 0, 80, 80}, true);
  EXPECT_EQ(Grid(), (PointT<int>{0, 0}));
  ExpectRange(ClosedX(), 1, 0);
}

TEST_F(Position, APercentOfNoGridIsNoNumberAndNothingCanBeEntered) {
  ShowOpen(MakePlaces({At(4, 2)}));
  Inspector::FrameRect(View()) = {};
  PublishArea({0, 0, 80, 80}, true);
  EXPECT_TRUE(std::isnan(OpenX().GetMinValue()));
  EXPECT_TRUE(std::isinf(OpenX().GetMaxValue()));
  OpenX().Enter(10.0);
  EXPECT_EQ(TakeApplied(), Parameters{});
}

// --- The grids

TEST_F(Position, EachAnchorMarksItsCell) {
  for (const StreamFormat format : {k608, kOpenTrack1}) {
    const bool isOpen = format == kOpenTrack1;
    ShowStream(format, MakePlaces({Anchored(0), Anchored(1), Anchored(2), Anchored(3), Anchored(4), Anchored(5),
                                   Anchored(6), Anchored(7), Anchored(8)}));
    for (int anchor = 0; anchor < 9; ++anchor) {
      Click(2 * anchor + 1);
      EXPECT_EQ((isOpen ? OpenGrid() : ClosedGrid())->GetValue(), (Cell{anchor % 3, anchor / 3}));
    }
  }
}

TEST_F(Position, AnchorsOfNoCellClearTheGrid) {
  ShowClosed(MakePlaces({Anchored(4), Anchored(9), Anchored(-1), Anchored(-2)}));
  for (const double begin : {3.0, 5.0, 7.0}) {
    Click(1);
    ASSERT_EQ(ClosedGrid()->GetValue(), (Cell{1, 1}));
    Click(begin);
    EXPECT_EQ(ClosedGrid()->GetValue(), (Cell{-1, -1}));
  }
}

TEST_F(Position, ACellSetsTheAnchorOfTheSelection) {
  ShowClosed(MakePlaces({Anchored(9), Anchored(4)}));
  SelectAll();
  EXPECT_EQ(ClosedGrid()->GetValue(), (Cell{-1, -1}));
  zebcore::trace::Take();
  ClosedGrid()->Choose({2, 1});
  EXPECT_EQ(TakeApplied(), Parameters{6});
  EXPECT_EQ(PlaceOf(1).anchor, 5);
  EXPECT_EQ(PlaceOf(3).anchor, 5);
  EXPECT_EQ(ClosedGrid()->GetValue(), (Cell{2, 1}));
}

TEST_F(Position, TheSameCellAgainIsAppliedAgain) {
  ShowOpen(MakePlaces({Anchored(4)}));
  OpenGrid()->Choose({1, 1});
  EXPECT_EQ(TakeApplied(), Parameters{6});
}

TEST_F(Position, TheGridThatIsNotOnShowIsLeftAloneAndChangesNothing) {
  ShowClosed(MakePlaces({Anchored(7)}));
  EXPECT_EQ(ClosedGrid()->GetValue(), (Cell{1, 2}));
  EXPECT_EQ(OpenGrid()->GetValue(), (Cell{0, 0}));
  OpenGrid()->SetDisabled(false);
  OpenGrid()->Choose({2, 0});
  EXPECT_EQ(TakeApplied(), Parameters{});
  const auto openClip = AddClip();
  AddStream(openClip, MakePlaces({Anchored(3)}), kOpenTrack1);
  SelectClip(openClip);
  EXPECT_EQ(OpenGrid()->GetValue(), (Cell{0, 1}));
  EXPECT_EQ(ClosedGrid()->GetValue(), (Cell{1, 2}));
  zebcore::trace::Take();
  ClosedGrid()->SetDisabled(false);
  ClosedGrid()->Choose({0, 0});
  EXPECT_EQ(TakeApplied(), Parameters{});
}

TEST_F(Position, AGridWithoutAMarkThatReportsAChangeIsAnchorNine) {
  ShowClosed(MakePlaces({Anchored(4)}));
  // The report of a listener that was called before the bar and cleared the mark.
  zebui::controls::UI_PositionGridControl& grid = *ClosedGrid();
  grid.SetValue({-1, -1});
  Inspector::ReportClosedGrid(View());
  EXPECT_EQ(TakeApplied(), Parameters{6});
  EXPECT_EQ(PlaceOf(1).anchor, 9);
}

TEST_F(Position, WithoutAGridNothingIsShownAndTheAnchorIsNine) {
  ShowClosed(MakePlaces({Anchored(4)}));
  const auto kept = ClosedGrid();
  ClosedGrid().reset();
  View().PublishFormat(Inspector::FormatInfo(View()));
  Inspector::ReportClosedGrid(View());
  EXPECT_EQ(PlaceOf(1).anchor, 9);
  ClosedGrid() = kept;
}

} // namespace Captivo::Testing
