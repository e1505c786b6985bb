#include "Support.h"

// Changes of rows at their edges: what stays when nothing is to be done, and captions with odd times.
namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;

class ItemListEdit : public testing::Test {
 protected:
  void Add(double begin, double end) { list.AddRow(MakeCaption(begin, end)); }
  void Add(const Times& begins) {
    for (const double begin : begins)
      Add(begin, begin + 1);
  }
  void Select(const Times& begins) {
    list.ClearSelection();
    for (const double begin : begins)
      list.ToggleSelection(Seconds(begin));
  }
  bool Move(double from, double to, double length) {
    duration = Seconds(length);
    return list.MoveRow(Seconds(from), Seconds(to), duration, reordered);
  }
  Times Begins() {
    Times begins;
    for (int i = 0; i < static_cast<int>(list.GetRowCount()); ++i)
      begins.push_back(zebmediatypes::ToSeconds(list.GetTimeAtIndex(i)));
    return begins;
  }
  Times Selected() {
    Times begins;
    for (const TickTime& time : list.GetSelectedTimes())
      begins.push_back(zebmediatypes::ToSeconds(time));
    EXPECT_EQ(Inspector::SelectedKeys(list), list.GetSelectedTimes());
    return begins;
  }
  boost::shared_ptr<CaptionsItem> Row(double begin) {
    boost::shared_ptr<CaptionsItem> row;
    EXPECT_TRUE(list.FindItem(Seconds(begin), row));
    return row;
  }
  double End(double begin) { return zebmediatypes::ToSeconds(Row(begin)->GetEndTime()); }

  CaptionsItemList list{nullptr};
  TickTime duration;
  bool reordered = false;
};

} // namespace

TEST_F(ItemListEdit, RemovingAnUnselectedRowWhileAnotherIsSelectedChangesNoSelection) {
  Add({1, 2, 3});
  Select({1});
  EXPECT_TRUE(list.RemoveRowAt(Seconds(2)));
  EXPECT_EQ(Selected(), (Times{1}));
}

TEST_F(ItemListEdit, RemovingARowWithNothingSelectedSelectsItsNeighbour) {
  Add({1, 2, 3});
  EXPECT_TRUE(list.RemoveRowAt(Seconds(2)));
  EXPECT_EQ(Selected(), (Times{3}));
  list.ClearSelection();
  EXPECT_TRUE(list.RemoveRowAt(Seconds(3)));
  EXPECT_EQ(Selected(), (Times{1}));
}

TEST_F(ItemListEdit, RemovingNoRowChangesNothing) {
  Add({1, 2});
  Select({1, 2});
  EXPECT_FALSE(list.RemoveRowAt(Seconds(1.5)));
  EXPECT_EQ(Begins(), (Times{1, 2}));
  EXPECT_EQ(Selected(), (Times{1, 2}));
}

TEST_F(ItemListEdit, RemovingAnEmptySelectionAddsNoTimes) {
  Add({1});
  std::vector<TickTime> removed{Seconds(9)};
  list.RemoveSelectedRows(removed);
  EXPECT_EQ(removed, std::vector<TickTime>{Seconds(9)});
  Select({1});
  list.RemoveSelectedRows(removed);
  EXPECT_EQ(removed, (std::vector<TickTime>{Seconds(9), Seconds(1)})) << "behind what is there";
}

TEST_F(ItemListEdit, RemovingAllRowsKeepsAnchorAndCaretRange) {
  Add({1, 2});
  list.SelectSingle(Seconds(2));
  list.ToggleSelection(Seconds(1));
  list.SetTextSelection({3, 4});
  std::vector<TickTime> removed;
  list.RemoveSelectedRows(removed);
  EXPECT_EQ(Selected(), Times{});
  EXPECT_EQ(Inspector::Anchor(list), Seconds(2));
  EXPECT_EQ(Inspector::TextSelection(list), TextRange(3, 4));
}

TEST_F(ItemListEdit, TheRowThatTakesOverIsSelectedAsByAClick) {
  Add({1, 2, 3});
  list.SelectSingle(Seconds(2));
  list.SetTextSelection({3, 4});
  std::vector<TickTime> removed;
  list.RemoveSelectedRows(removed);
  EXPECT_EQ(Selected(), (Times{1}));
  EXPECT_EQ(Inspector::Anchor(list), Seconds(1));
  EXPECT_EQ(Inspector::TextSelection(list), kTextRange_Whole);
}

TEST_F(ItemListEdit, ARefusedNewCaptionKeepsSelectionAnchorAndCaretRange) {
  Add({1, 2});
  list.SelectSingle(Seconds(1));
  list.SetTextSelection({3, 4});
  EXPECT_FALSE(list.InsertCaptionAfterSelection(Seconds(1)));
  EXPECT_EQ(Selected(), (Times{1}));
  EXPECT_EQ(Inspector::Anchor(list), Seconds(1));
  EXPECT_EQ(Inspector::TextSelection(list), TextRange(3, 4));
}

TEST_F(ItemListEdit, ANewCaptionIsSelectedAloneAndIsTheNewAnchor) {
  Add({1, 3, 5});
  list.SelectAll();
  list.SetTextSelection({3, 4});
  EXPECT_TRUE(list.InsertCaptionAfterSelection(Seconds(1)));
  EXPECT_EQ(Selected(), (Times{6}));
  EXPECT_EQ(Inspector::Anchor(list), Seconds(6));
  EXPECT_EQ(Inspector::TextSelection(list), kTextRange_Whole);
}

TEST_F(ItemListEdit, ANewCaptionThatReachesTheNextBeginExactlyKeepsItsLength) {
  Add({1, 3});
  Select({1});
  EXPECT_TRUE(list.InsertCaptionAfterSelection(Seconds(1)));
  EXPECT_EQ(End(2), 3);
}

TEST_F(ItemListEdit, TimesAreTakenAsTheyStandAndNotAlignedToFrames) {
  list.AddRow(MakeCaption(1, 2.0123));
  EXPECT_TRUE(list.InsertCaptionAfterSelection(TickTime(7)));
  EXPECT_EQ(list.GetLastTime(), Row(1)->GetEndTime());
}

TEST_F(ItemListEdit, AMoveInFrontOfAllRowsIsLegal) {
  Add({5, 7});
  EXPECT_TRUE(Move(7, 1, 1));
  EXPECT_TRUE(reordered);
  EXPECT_EQ(Begins(), (Times{1, 5}));
}

TEST_F(ItemListEdit, AMoveBehindAllRowsKeepsItsLength) {
  Add({1, 3});
  EXPECT_TRUE(Move(1, 20, 5));
  EXPECT_EQ(duration, Seconds(5));
  EXPECT_EQ(Begins(), (Times{3, 20}));
}

TEST_F(ItemListEdit, ARowDoesNotCutItself) {
  Add({1, 5});
  EXPECT_TRUE(Move(5, 4.5, 2));
  EXPECT_EQ(duration, Seconds(2));
  EXPECT_EQ(End(4.5), 6.5);
}

TEST_F(ItemListEdit, ARowIsNotInItsOwnWay) {
  Add(5, 9);
  EXPECT_TRUE(Move(5, 6, 3));
  EXPECT_EQ(Begins(), (Times{6}));
}

TEST_F(ItemListEdit, AnEndMayGoPastTheNextBeginWhereTheBeginStays) {
  Add({1, 3});
  EXPECT_TRUE(Move(1, 1, 4));
  EXPECT_EQ(duration, Seconds(4)) << "the row after is not looked for";
  EXPECT_EQ(End(1), 5);
}

TEST_F(ItemListEdit, ARefusedMoveKeepsDurationSelectionAndTimes) {
  Add({1, 5});
  list.SelectSingle(Seconds(5));
  reordered = true;
  EXPECT_FALSE(Move(5, 1.5, 9));
  EXPECT_EQ(duration, Seconds(9));
  EXPECT_FALSE(reordered);
  EXPECT_EQ(Selected(), (Times{5}));
  EXPECT_EQ(End(5), 6);
}

TEST_F(ItemListEdit, AMoveOfNoRowTouchesNothing) {
  Add({1});
  reordered = true;
  EXPECT_FALSE(Move(2, 3, 1));
  EXPECT_TRUE(reordered);
}

TEST_F(ItemListEdit, AMovedRowAmongSeveralSelectedOnesStaysSelectedInItsNewPlace) {
  Add({1, 3, 5});
  Select({1, 5});
  EXPECT_TRUE(Move(1, 8, 1));
  EXPECT_EQ(Selected(), (Times{5, 8}));
  EXPECT_TRUE(Move(3, 20, 1));
  EXPECT_EQ(Selected(), (Times{5, 8}));
}

TEST_F(ItemListEdit, AMoveOntoAnEmptyCaptionTakesItsPlaceAndItsSelection) {
  Add(1, 1);
  Add(5, 6);
  Select({1});
  EXPECT_TRUE(Move(5, 1, 1));
  EXPECT_EQ(Begins(), (Times{1}));
  EXPECT_EQ(Selected(), (Times{1}));
  EXPECT_EQ(End(1), 2);
}

TEST_F(ItemListEdit, AReversedCaptionCutsNothingBehindItsBeginAndStopsNobody) {
  Add(5, 3);
  Add(8, 9);
  EXPECT_TRUE(Move(8, 6, 1));
  EXPECT_EQ(duration, Seconds(1));
  EXPECT_EQ(Begins(), (Times{5, 6}));
  EXPECT_TRUE(Move(6, 4, 9));
  EXPECT_EQ(duration, Seconds(1)) << "it ends where the reversed one begins";
}

TEST_F(ItemListEdit, ACaptionInsideAnOverlapCanOnlyLeaveIt) {
  Add(1, 6);
  Add(4, 5);
  Add(9, 10);
  EXPECT_FALSE(Move(4, 3, 1));
  EXPECT_TRUE(Move(4, 4.5, 1)) << "it is itself the last one that begins earlier";
  EXPECT_TRUE(Move(4.5, 6, 1));
  EXPECT_EQ(Begins(), (Times{1, 6, 9}));
}

TEST_F(ItemListEdit, TimesBelowZeroAreOrderedAndMovedLikeAnyOther) {
  Add({-5, -3, 1});
  Select({-5});
  EXPECT_TRUE(list.InsertCaptionAfterSelection(Seconds(9)));
  EXPECT_EQ(Begins(), (Times{-5, -4, -3, 1}));
  EXPECT_EQ(End(-4), -3);
  EXPECT_TRUE(Move(-4, -1.5, 9));
  EXPECT_EQ(duration, Seconds(2.5));
  EXPECT_EQ(Begins(), (Times{-5, -3, -1.5, 1}));
}

TEST_F(ItemListEdit, TheGreatestTimesAreSafe) {
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(
      new zebcaptioning::CaptionState(*MakeCaption(1, 2)->GetState()));
  state->begin = kTime_Max;
  state->end = kTime_Max;
  const boost::intrusive_ptr<Caption> last(new Caption(zebcaptioning::CaptionStatePtr(state)));
  list.AddRow(last);
  Add({1});
  EXPECT_EQ(list.GetLastTime(), kTime_Max);
  list.SelectSingle(Seconds(1));
  EXPECT_TRUE(list.InsertCaptionAfterSelection(Seconds(1)));
  TickTime length = Seconds(1);
  EXPECT_TRUE(list.MoveRow(kTime_Max, Seconds(5), length, reordered));
  EXPECT_EQ(Begins(), (Times{1, 2, 5}));
}

TEST_F(ItemListEdit, ARowWhoseOwnCaptionHasMovedOnIsNotReadAgainForACaptionOfItsFormerBegin) {
  Add(1, 2);
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(
      new zebcaptioning::CaptionState(*Row(1)->GetCaption()->GetState()));
  state->begin = Seconds(1.5);
  state->end = Seconds(2.5);
  Row(1)->GetCaption()->SetState(zebcaptioning::CaptionStatePtr(state));
  EXPECT_FALSE(list.AddOrUpdateCaption(MakeCaption(1, 4)));
  EXPECT_EQ(End(1), 2);
  EXPECT_EQ(Begins(), (Times{1}));
}

TEST_F(ItemListEdit, WithoutARowOrWithoutControlsFocusAndTextStayAsTheyAre) {
  list.RestoreTextSelection({1, 2});
  list.SetStoredTextOfSelection(u"x");
  Add({1, 3});
  list.SelectAll();
  list.RestoreTextSelection({1, 2});
  list.SetStoredTextOfSelection(u"x");
  EXPECT_EQ(Row(1)->GetText(), u"Text");
  EXPECT_EQ(Row(3)->GetText(), u"Text");
  list.SelectSingle(Seconds(3));
  list.SetStoredTextOfSelection(u"x");
  EXPECT_EQ(Row(1)->GetText(), u"Text");
  EXPECT_EQ(Row(3)->GetText(), u"x");
  list.RestoreTextSelection({1, 2});
  EXPECT_EQ(Inspector::TextSelection(list), kTextRange_Whole);
}

} // namespace Captivo::Testing
