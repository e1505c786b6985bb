#include "Support.h"

// The list alone, with rows that are not in view.
namespace Captivo::Testing {

namespace {

class ItemList : public testing::Test {
 protected:
  void Add(const std::vector<double>& begins) {
    for (const auto& caption : MakeCaptions(begins))
      list.AddRow(caption);
  }
  void Select(const std::vector<double>& begins) {
    list.ClearSelection();
    for (const double begin : begins)
      list.ToggleSelection(Seconds(begin));
  }
  double NextSelectable() {
    TickTime next;
    list.GetNextSelectableTime(next);
    return next == kTime_Min ? -1 : zebmediatypes::ToSeconds(next);
  }
  std::vector<double> Selected() {
    std::vector<double> begins;
    for (const TickTime& time : list.GetSelectedTimes())
      begins.push_back(zebmediatypes::ToSeconds(time));
    EXPECT_EQ(Inspector::SelectedKeys(list), list.GetSelectedTimes());
    return begins;
  }
  std::vector<double> Begins() {
    std::vector<double> begins;
    for (int i = 0; i < static_cast<int>(list.GetRowCount()); ++i)
      begins.push_back(zebmediatypes::ToSeconds(list.GetTimeAtIndex(i)));
    return begins;
  }
  boost::shared_ptr<CaptionsItem> Row(double begin) {
    boost::shared_ptr<CaptionsItem> row;
    EXPECT_TRUE(list.FindItem(Seconds(begin), row));
    return row;
  }
  bool Move(double from, double to, double duration) {
    moved = Seconds(duration);
    return list.MoveRow(Seconds(from), Seconds(to), moved, reordered);
  }

  static void SetText(const boost::intrusive_ptr<Caption>& caption, const UString& text) {
    const boost::intrusive_ptr<zebcaptioning::CaptionState> state(
        new zebcaptioning::CaptionState(*caption->GetState()));
    state->text = text;
    caption->SetState(state);
  }

  CaptionsItemList list{nullptr};
  TickTime moved;
  bool reordered = false;
};

using Times = std::vector<double>;

} // namespace

TEST_F(ItemList, AnEmptyListAnswersNothing) {
  boost::shared_ptr<CaptionsItem> row;
  EXPECT_FALSE(list.GetRowAtIndex(0, row));
  EXPECT_FALSE(list.GetRowAtIndex(-1, row));
  EXPECT_EQ(list.GetTimeAtIndex(0), kTime_Min);
  EXPECT_EQ(list.GetFirstTime(), kTime_Min);
  EXPECT_EQ(list.GetLastTime(), kTime_Min);
  EXPECT_EQ(list.GetFirstSelectedIndex(), -1);
  EXPECT_EQ(list.GetTimeByOffset(1), kTime_Min);
  EXPECT_EQ(NextSelectable(), -1);
}

TEST_F(ItemList, RowsStandInOrderOfTheirBeginWhateverTheOrderOfAdding) {
  Add({5, 1, 3});
  EXPECT_EQ(Begins(), (Times{1, 3, 5}));
}

TEST_F(ItemList, TwoCaptionsWithOneBeginMakeOneRowWithTheLaterOne) {
  list.AddRow(MakeCaption(1, 2, u"first"));
  list.AddRow(MakeCaption(1, 3, u"second"));
  EXPECT_EQ(list.GetRowCount(), 1U);
  EXPECT_EQ(Row(1)->GetText(), u"second");
}

TEST_F(ItemList, ASelectedRowThatIsReplacedIsSelectedAsTheNewOne) {
  list.AddRow(MakeCaption(1, 2, u"first"));
  Select({1});
  list.AddRow(MakeCaption(1, 3, u"second"));
  boost::intrusive_ptr<Caption> selected;
  list.GetSelectedCaption(selected);
  EXPECT_EQ(selected, Row(1)->GetCaption());
}

TEST_F(ItemList, TheFormatOfARowThatWasReplacedIsThatOfItsNewCaption) {
  const boost::intrusive_ptr<zebcaptioning::CaptionState> centered(new zebcaptioning::CaptionState);
  centered->begin = Seconds(1);
  centered->end = Seconds(3);
  centered->paragraph.alignment = zebcaptioning::ParagraphStyleAttributes::kTextAlignment_Center;
  centered->runs = {{0, zebcaptioning::Share(zebcaptioning::TextSpanAttributes())}};
  const auto first = MakeCaption(1, 2, u"first");
  list.AddRow(first);
  Select({1});
  list.AddRow(new Caption(zebcaptioning::CaptionStatePtr(centered)));
  boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> info(new zebcaptioning::CaptionFormatInfo);
  list.GatherSelectionFormat(info);
  bool isUniform = false;
  EXPECT_EQ(info->GetTextAlignment(isUniform), zebcaptioning::ParagraphStyleAttributes::kTextAlignment_Center);
}

TEST_F(ItemList, TheOnlySelectedRowCannotBeToggledOff) {
  Add({1, 2});
  Select({1});
  EXPECT_FALSE(list.ToggleSelection(Seconds(1)));
  EXPECT_EQ(Selected(), (Times{1}));
}

TEST_F(ItemList, OneOfSeveralSelectedRowsIsToggledOff) {
  Add({1, 2});
  Select({1, 2});
  EXPECT_TRUE(list.ToggleSelection(Seconds(1)));
  EXPECT_EQ(Selected(), (Times{2}));
}

TEST_F(ItemList, ExtendingSelectsFromTheAnchorInEitherDirection) {
  Add({1, 2, 3, 4, 5});
  list.SelectSingle(Seconds(3));
  EXPECT_TRUE(list.ExtendSelection(Seconds(5)));
  EXPECT_EQ(Selected(), (Times{3, 4, 5}));
  EXPECT_TRUE(list.ExtendSelection(Seconds(1)));
  EXPECT_EQ(Selected(), (Times{1, 2, 3}));
  EXPECT_EQ(Inspector::Anchor(list), Seconds(3));
}

TEST_F(ItemList, ExtendingToTheAnchorChangesNothing) {
  Add({1, 2});
  list.SelectSingle(Seconds(1));
  EXPECT_FALSE(list.ExtendSelection(Seconds(1)));
}

TEST_F(ItemList, ExtendingAfterTheAnchorLeftTheSelectionSelectsPlainly) {
  Add({1, 2, 3});
  list.SelectSingle(Seconds(1));
  list.ToggleSelection(Seconds(2));
  list.ToggleSelection(Seconds(1));
  EXPECT_TRUE(list.ExtendSelection(Seconds(3)));
  EXPECT_EQ(Selected(), (Times{3}));
}

TEST_F(ItemList, WithTheFirstTwoOfThreeSelectedNothingTakesOver) {
  Add({1, 2, 3});
  Select({1, 2});
  EXPECT_EQ(NextSelectable(), -1);
}

TEST_F(ItemList, WithTheMiddleOneSelectedTheFirstTakesOver) {
  Add({1, 2, 3});
  Select({2});
  EXPECT_EQ(NextSelectable(), 1);
}

TEST_F(ItemList, WithTheFirstOneSelectedTheSecondTakesOver) {
  Add({1, 2, 3});
  Select({1});
  EXPECT_EQ(NextSelectable(), 2);
}

TEST_F(ItemList, AnOffsetOfNothingIsTheLastSelectedRow) {
  Add({1, 2, 3});
  Select({1, 2});
  EXPECT_EQ(list.GetTimeByOffset(0), Seconds(2));
}

TEST_F(ItemList, UpStartsFromTheTopOfTheSelectionAndDownFromItsBottom) {
  Add({1, 2, 3, 4});
  Select({2, 3});
  EXPECT_EQ(list.GetTimeByOffset(-1), Seconds(1));
  EXPECT_EQ(list.GetTimeByOffset(1), Seconds(4));
  EXPECT_EQ(list.GetTimeByOffset(-7), Seconds(1));
  EXPECT_EQ(list.GetTimeByOffset(7), Seconds(4));
}

TEST_F(ItemList, SelectingTheOnlySelectedRowAgainIsNoChange) {
  Add({1, 2});
  EXPECT_TRUE(list.SelectSingle(Seconds(1)));
  EXPECT_FALSE(list.SelectSingle(Seconds(1)));
}

TEST_F(ItemList, ASelectionOfNoRowChangesNothing) {
  Add({1, 2});
  Select({1});
  EXPECT_FALSE(list.SelectSingle(Seconds(7)));
  EXPECT_FALSE(list.ToggleSelection(Seconds(7)));
  EXPECT_FALSE(list.ExtendSelection(Seconds(7)));
  EXPECT_EQ(Selected(), (Times{1}));
}

TEST_F(ItemList, ARestoredSelectionKeepsTheRowsThatAreStillThere) {
  Add({1, 2, 3});
  EXPECT_FALSE(list.RestoreSelection({Seconds(2), Seconds(9)}));
  EXPECT_EQ(Selected(), (Times{2}));
  EXPECT_TRUE(list.RestoreSelection({Seconds(1), Seconds(3)}));
  EXPECT_FALSE(list.RestoreSelection({Seconds(9)}));
  EXPECT_EQ(Selected(), (Times{1}));
}

TEST_F(ItemList, ATimeBetweenRowsHasARowOnEachSide) {
  Add({1, 3});
  boost::shared_ptr<CaptionsItem> at;
  boost::shared_ptr<CaptionsItem> after;
  list.FindItemsAround(Seconds(2), at, after);
  EXPECT_EQ(at, Row(1));
  EXPECT_EQ(after, Row(3));
  list.FindItemsAround(Seconds(0), at, after);
  EXPECT_EQ(at, nullptr);
  EXPECT_EQ(after, Row(1));
  list.FindItemsAround(Seconds(4), at, after);
  EXPECT_EQ(at, Row(3));
  EXPECT_EQ(after, nullptr);
}

TEST_F(ItemList, ATimeOfARowLeavesTheRowAfterItAlone) {
  Add({1, 3});
  boost::shared_ptr<CaptionsItem> at;
  boost::shared_ptr<CaptionsItem> after = Row(1);
  list.FindItemsAround(Seconds(3), at, after);
  EXPECT_EQ(at, Row(3));
  EXPECT_EQ(after, Row(1));
}

TEST_F(ItemList, ClearingKeepsTheAnchor) {
  Add({1});
  list.SelectSingle(Seconds(1));
  list.Clear();
  EXPECT_EQ(list.GetRowCount(), 0U);
  EXPECT_EQ(Selected(), Times{});
  EXPECT_EQ(Inspector::TextSelection(list), kTextRange_Empty);
  EXPECT_EQ(Inspector::Anchor(list), Seconds(1));
}

TEST_F(ItemList, TheTextSelectionHasANormalForm) {
  Add({1, 2});
  list.SetTextSelection({3, 4});
  EXPECT_EQ(list.NormalizeTextSelection(), kTextRange_Empty);
  list.SelectSingle(Seconds(1));
  list.SetTextSelection({3, 4});
  EXPECT_EQ(list.NormalizeTextSelection(), TextRange(3, 4));
  list.SelectAll();
  EXPECT_EQ(list.NormalizeTextSelection(), kTextRange_Whole);
}

// --- Formats of several captions.

TEST_F(ItemList, AMixedAttributeIsUniformOnlyIfAllSelectedCaptionsAgree) {
  Add({1, 2});
  zebcaptioning::TextSpanAttributes italic;
  italic.italic = true;
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(
      new zebcaptioning::CaptionState(*Row(2)->GetCaption()->GetState()));
  state->runs = {{0, zebcaptioning::Share(italic)}};
  Row(2)->GetCaption()->SetState(state);
  list.SelectAll();
  boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> info(new zebcaptioning::CaptionFormatInfo);
  list.NormalizeTextSelection();
  list.GatherSelectionFormat(info);
  bool isUniform = true;
  info->GetIsItalicized(isUniform);
  EXPECT_FALSE(isUniform);
  info->GetIsBolded(isUniform);
  EXPECT_TRUE(isUniform);
}

// --- New captions.

TEST_F(ItemList, ANewCaptionBehindTheLastRowStartsAtItsEndAndKeepsItsLength) {
  Add({1, 3});
  Select({3});
  EXPECT_TRUE(list.InsertCaptionAfterSelection(Seconds(2)));
  EXPECT_EQ(Selected(), (Times{4}));
  EXPECT_EQ(Row(4)->GetEndTime(), Seconds(6));
}

TEST_F(ItemList, ANewCaptionIsRefusedWhereTheNextRowFollowsAtOnce) {
  Add({1, 2});
  Select({1});
  EXPECT_FALSE(list.InsertCaptionAfterSelection(Seconds(1)));
  EXPECT_EQ(Selected(), (Times{1}));
  EXPECT_EQ(list.GetRowCount(), 2U);
}

TEST_F(ItemList, ANewCaptionFillsAGapThatIsShorterThanItsLength) {
  Add({1, 2.25});
  Select({1});
  EXPECT_TRUE(list.InsertCaptionAfterSelection(Seconds(1)));
  EXPECT_EQ(Row(2)->GetEndTime(), Seconds(2.25));
}

TEST_F(ItemList, TheFirstCaptionStartsAtZeroWithTheFormatOfADefaultCaption) {
  EXPECT_TRUE(list.InsertCaptionAfterSelection(Seconds(1)));
  EXPECT_EQ(Row(0)->GetEndTime(), Seconds(1));
  EXPECT_EQ(Row(0)->GetText(), u"");
  boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> info(new zebcaptioning::CaptionFormatInfo);
  boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> plain(new zebcaptioning::CaptionFormatInfo);
  Row(0)->GetCaption()->GetFormatInfo(info, kTextRange_Whole, 32, 15, true);
  boost::intrusive_ptr<Caption>(new Caption)->GetFormatInfo(plain, kTextRange_Whole, 32, 15, true);
  bool isUniform = false;
  EXPECT_EQ(info->GetIsBolded(isUniform), plain->GetIsBolded(isUniform));
  EXPECT_EQ(info->GetTextAlignment(isUniform), plain->GetTextAlignment(isUniform));
}

TEST_F(ItemList, ANewCaptionBehindAnOverlapIsNotRefusedAndEndsBeforeItBegins) {
  list.AddRow(MakeCaption(1, 5));
  list.AddRow(MakeCaption(3, 4));
  Select({1});
  EXPECT_TRUE(list.InsertCaptionAfterSelection(Seconds(1)));
  EXPECT_EQ(Row(5)->GetEndTime(), Seconds(3));
}

TEST_F(ItemList, TheFirstCaptionTakesNothingFromARowThatIsGone) {
  const auto italicised = MakeCaption(1, 2);
  zebcaptioning::TextSpanAttributes italic;
  italic.italic = true;
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(
      new zebcaptioning::CaptionState(*italicised->GetState()));
  state->runs = {{0, zebcaptioning::Share(italic)}};
  italicised->SetState(state);
  list.AddRow(italicised);
  Select({1});
  ASSERT_TRUE(list.InsertCaptionAfterSelection(Seconds(1)));
  ASSERT_TRUE(Row(2)->GetCaption()->GetState()->runs.front().attributes->italic);
  list.SelectAll();
  std::vector<TickTime> removed;
  list.RemoveSelectedRows(removed);
  ASSERT_EQ(list.GetRowCount(), 0U);
  EXPECT_TRUE(list.InsertCaptionAfterSelection(Seconds(1)));
  EXPECT_FALSE(Row(0)->GetCaption()->GetState()->runs.front().attributes->italic);
}

// --- Moving.

TEST_F(ItemList, AMoveIntoThePreviousCaptionIsRefused) {
  list.AddRow(MakeCaption(1, 3));
  list.AddRow(MakeCaption(5, 6));
  EXPECT_FALSE(Move(5, 2, 1));
  EXPECT_EQ(Begins(), (Times{1, 5}));
  EXPECT_EQ(Row(5)->GetEndTime(), Seconds(6));
}

TEST_F(ItemList, AMoveOntoAnotherBeginIsRefused) {
  Add({1, 5});
  EXPECT_FALSE(Move(5, 1, 1));
}

TEST_F(ItemList, AMoveToTheEndOfThePreviousCaptionIsAccepted) {
  Add({1, 5});
  EXPECT_TRUE(Move(5, 2, 1));
  EXPECT_EQ(Begins(), (Times{1, 2}));
}

TEST_F(ItemList, ADurationThatReachesPastTheNextBeginIsCutToIt) {
  Add({1, 5});
  EXPECT_TRUE(Move(1, 4.5, 1));
  EXPECT_EQ(moved, Seconds(0.5));
  EXPECT_EQ(Row(4.5)->GetEndTime(), Seconds(5));
}

TEST_F(ItemList, ADurationThatEndsAtTheNextBeginStaysAsItIs) {
  Add({1, 5});
  EXPECT_TRUE(Move(1, 4, 1));
  EXPECT_EQ(moved, Seconds(1));
}

TEST_F(ItemList, AMovePastANeighbourIntoAGapReordersTheRows) {
  Add({1, 3, 7});
  EXPECT_TRUE(Move(1, 5, 1));
  EXPECT_TRUE(reordered);
  EXPECT_EQ(Begins(), (Times{3, 5, 7}));
}

TEST_F(ItemList, AMoveInsideItsGapDoesNotReorder) {
  Add({1, 3});
  EXPECT_TRUE(Move(3, 4, 1));
  EXPECT_FALSE(reordered);
}

TEST_F(ItemList, AMoveToTheSameBeginOnlyChangesTheEnd) {
  Add({1, 3});
  EXPECT_TRUE(Move(1, 1, 0.5));
  EXPECT_FALSE(reordered);
  EXPECT_EQ(Row(1)->GetEndTime(), Seconds(1.5));
}

TEST_F(ItemList, TheSelectionGoesAlongWithAMovedRowButTheAnchorStays) {
  Add({1, 3});
  list.SelectSingle(Seconds(1));
  EXPECT_TRUE(Move(1, 6, 1));
  EXPECT_EQ(Selected(), (Times{6}));
  EXPECT_EQ(Inspector::Anchor(list), Seconds(1));
  EXPECT_TRUE(list.ExtendSelection(Seconds(3)));
  EXPECT_EQ(Selected(), (Times{3}));
}

TEST_F(ItemList, AMoveOfNoRowIsRefused) {
  Add({1});
  EXPECT_FALSE(Move(2, 5, 1));
}

// --- Removing.

TEST_F(ItemList, TheLastRowSelectedAloneHandsTheSelectionToTheOneBefore) {
  Add({1, 2, 3});
  Select({3});
  EXPECT_TRUE(list.RemoveRowAt(Seconds(3)));
  EXPECT_EQ(Selected(), (Times{2}));
}

TEST_F(ItemList, ARowSelectedAloneHandsTheSelectionToTheOneAfter) {
  Add({1, 2, 3});
  Select({2});
  EXPECT_TRUE(list.RemoveRowAt(Seconds(2)));
  EXPECT_EQ(Selected(), (Times{3}));
}

TEST_F(ItemList, RemovingTheRowOfAListOfOneLeavesNothingSelected) {
  Add({1});
  Select({1});
  EXPECT_TRUE(list.RemoveRowAt(Seconds(1)));
  EXPECT_EQ(Selected(), Times{});
}

TEST_F(ItemList, RemovingOneOfSeveralSelectedRowsLeavesTheOthersSelected) {
  Add({1, 2, 3});
  Select({1, 3});
  EXPECT_TRUE(list.RemoveRowAt(Seconds(1)));
  EXPECT_EQ(Selected(), (Times{3}));
  EXPECT_FALSE(list.RemoveRowAt(Seconds(1)));
}

TEST_F(ItemList, RemovingTheSelectionGivesBackItsTimesAscending) {
  Add({1, 2, 3, 4});
  Select({4, 2});
  std::vector<TickTime> removed;
  list.RemoveSelectedRows(removed);
  EXPECT_EQ(removed, (std::vector<TickTime>{Seconds(2), Seconds(4)}));
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(Selected(), (Times{1}));
}

TEST_F(ItemList, RemovingAllButTheLastRowLeavesNothingSelectedAndTheAnchor) {
  Add({1, 2, 3});
  list.SelectSingle(Seconds(1));
  list.ToggleSelection(Seconds(2));
  std::vector<TickTime> removed;
  list.RemoveSelectedRows(removed);
  EXPECT_EQ(Begins(), (Times{3}));
  EXPECT_EQ(Selected(), Times{});
  EXPECT_EQ(Inspector::Anchor(list), Seconds(1));
}

// --- From the stream.

TEST_F(ItemList, ACaptionThatHasItsRowIsReadAgainAndNotAdded) {
  const auto caption = MakeCaption(1, 2, u"before");
  EXPECT_TRUE(list.AddOrUpdateCaption(caption));
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(new zebcaptioning::CaptionState(*caption->GetState()));
  state->text = u"after";
  caption->SetState(state);
  EXPECT_FALSE(list.AddOrUpdateCaption(caption));
  EXPECT_EQ(Row(1)->GetText(), u"after");
}

TEST_F(ItemList, AStrangersCaptionOfTheSameBeginOnlyFindsTheRow) {
  const auto caption = MakeCaption(1, 2, u"own");
  list.AddRow(caption);
  EXPECT_FALSE(list.AddOrUpdateCaption(MakeCaption(1, 4, u"other")));
  EXPECT_EQ(Row(1)->GetCaption(), caption);
  EXPECT_EQ(Row(1)->GetText(), u"own");
}

TEST_F(ItemList, TheSelectionFollowsCaptionsThatTheStreamMoved) {
  const auto caption = MakeCaption(1, 2);
  list.AddRow(caption);
  Add({20});
  list.SelectSingle(Seconds(1));
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(new zebcaptioning::CaptionState(*caption->GetState()));
  state->begin = Seconds(2);
  caption->SetState(state);
  list.AdjustRows(kTime_Min, Seconds(10), Seconds(1));
  EXPECT_EQ(Selected(), (Times{2}));
}

TEST_F(ItemList, ASelectedRowOutsideTheMovedRangeIsNotReadAgainAndStaysSelected) {
  const auto inside = MakeCaption(1, 2, u"before");
  const auto outside = MakeCaption(20, 21, u"before");
  list.AddRow(inside);
  list.AddRow(outside);
  Select({1, 20});
  SetText(inside, u"after");
  SetText(outside, u"after");
  list.AdjustRows(kTime_Min, Seconds(10), Seconds(1));
  EXPECT_EQ(Row(1)->GetText(), u"after");
  EXPECT_EQ(Row(20)->GetText(), u"before");
  EXPECT_EQ(Selected(), (Times{1, 20}));
}

TEST_F(ItemList, TheMovedRangeReachesFromItsNewBeginToItsNewEndInclusive) {
  for (const double begin : {2, 3, 4, 5, 6})
    list.AddRow(MakeCaption(begin, begin + 1, u"before"));
  Select({2, 3, 4, 5, 6});
  for (const double begin : {2, 3, 4, 5, 6})
    SetText(Row(begin)->GetCaption(), u"after");
  list.AdjustRows(Seconds(2), Seconds(4), Seconds(1));
  std::vector<double> readAgain;
  for (const double begin : {2, 3, 4, 5, 6}) {
    if (Row(begin)->GetText() == u"after")
      readAgain.push_back(begin);
  }
  EXPECT_EQ(readAgain, (Times{3, 4, 5}));
}

TEST_F(ItemList, ARangeWithoutAnEndReachesTheLastRow) {
  const auto caption = MakeCaption(1000000, 1000001, u"before");
  list.AddRow(caption);
  Select({1000000});
  SetText(caption, u"after");
  list.AdjustRows(Seconds(5), kTime_Max, Seconds(-36000000));
  EXPECT_EQ(Row(1000000)->GetText(), u"after");
}

TEST_F(ItemList, RowsThatAreNotSelectedAreNotReadAgainByAMove) {
  const auto caption = MakeCaption(1, 2, u"before");
  list.AddRow(caption);
  SetText(caption, u"after");
  list.AdjustRows(kTime_Min, kTime_Max, Seconds(1));
  EXPECT_EQ(Row(1)->GetText(), u"before");
}

} // namespace Captivo::Testing
