#include "Support.h"

namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;

constexpr int kDelete = 57632;
constexpr int kCopy = 57634;
constexpr int kCut = 57635;
constexpr int kPaste = 57637;

class PaneEdit : public PanelTest {
 protected:
  // The first row's text had the caret, and the focus has gone to the pane since.
  void HoldTheCaretAndLeave(const TextRange& range) {
    FocusText(1);
    Text(1).SetSelection(range);
    Tick(100);
    Pane().SetFocus();
    Text(1).SetSelection({0, 0});
    ASSERT_TRUE(Inspector::KeepTextFocus(Pane()));
    ASSERT_FALSE(Text(1).UI_HasKeyboardFocus(false));
    zebcore::trace::Take();
  }
  nlohmann::json FormattedRange() {
    for (const auto& call : zebcore::trace::Take()) {
      if (call.call == "CaptioningStreamUpdater::ApplyFormatParameter")
        return call.args["range"];
    }
    return {};
  }
  const zebcaptioning::CaptionState& Stored(double begin) { return *stream->FindByBegin(Seconds(begin))->GetState(); }
  bool IsStored(double begin) { return stream->FindByBegin(Seconds(begin)) != nullptr; }
  void ExpectOneBox(const UString& start) {
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].text.substr(0, start.size()), start);
    EXPECT_EQ(boxes[0].title, u"Closed Captioning");
    EXPECT_EQ(boxes[0].flags, 1);
    EXPECT_EQ(boxes[0].icon, 4);
    EXPECT_EQ(boxes[0].defaultResult, 0);
  }
};

} // namespace

TEST_F(PaneEdit, TheFirstCaptionLastsOneSecondFromZero) {
  OpenPanelOn({});
  Pane().AddNewCaption();
  EXPECT_EQ(SelectedBegins(), (Times{0}));
  ASSERT_TRUE(IsStored(0));
  EXPECT_EQ(Stored(0).end, TickTime(254016000000));
  EXPECT_TRUE(Pane().HasFocus());
}

TEST_F(PaneEdit, AddingWithNothingSelectedGoesBehindTheLastRow) {
  OpenPanelOn(MakeCaptions({1, 2}));
  List().ClearSelection();
  Pane().AddNewCaption();
  EXPECT_EQ(Begins(), (Times{1, 2, 3}));
  EXPECT_TRUE(boxes.empty());
}

TEST_F(PaneEdit, AddingWhereTheNextRowFollowsAtOnceIsRefusedWithABox) {
  OpenPanelOn(MakeCaptions({1, 2}));
  Click(1);
  Pane().AddNewCaption();
  ExpectOneBox(u"There is not enough time available");
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  EXPECT_EQ(stream->GetCaptionCount(), 2U);
}

TEST_F(PaneEdit, AddingInAShortGapFillsItExactly) {
  OpenPanelOn(MakeCaptions({1, 2.25}));
  Click(1);
  Pane().AddNewCaption();
  EXPECT_EQ(Stored(2).end, Seconds(2.25));
}

TEST_F(PaneEdit, AddingWithSeveralSelectedLooksForRoomBehindTheLastOfThem) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Click(1);
  Click(3, UIF::KeyModifiers::kToggle);
  Pane().AddNewCaption();
  EXPECT_EQ(SelectedBegins(), (Times{4}));
}

TEST_F(PaneEdit, TheStreamTakesTheVeryCaptionOfTheRow) {
  OpenPanelOn(MakeCaptions({1}));
  Pane().AddNewCaption();
  EXPECT_EQ(stream->FindByBegin(Seconds(2)), Row(2)->GetCaption());
  EXPECT_EQ(List().GetRowCount(), 2U);
}

TEST_F(PaneEdit, AMoveOntoAnotherBeginIsRefusedWithABoxAndTheControlsShowTheOldTimes) {
  OpenPanelOn(MakeCaptions({1, 5}));
  Row(5)->GetInControl().ReportValue(Seconds(1));
  ExpectOneBox(u"The selected caption cannot be moved");
  EXPECT_EQ(Row(5)->GetInControl().GetValue(), Seconds(5));
  EXPECT_EQ(Row(5)->GetOutControl().GetValue(), Seconds(6));
  EXPECT_FALSE(Inspector::IsTimeEditPending(*Row(5)));
  EXPECT_TRUE(IsStored(5));
}

TEST_F(PaneEdit, AMoveIntoThePreviousCaptionIsRefusedWithTheSameBox) {
  OpenPanelOn(MakeCaptions({1, 5}));
  Row(5)->GetInControl().ReportValue(Seconds(1.5));
  ExpectOneBox(u"The selected caption cannot be moved");
  EXPECT_EQ(Begins(), (Times{1, 5}));
}

TEST_F(PaneEdit, AMoveToThePreviousCaptionsEndIsAccepted) {
  OpenPanelOn(MakeCaptions({1, 5}));
  Row(5)->GetInControl().ReportValue(Seconds(2));
  EXPECT_TRUE(boxes.empty());
  EXPECT_EQ(Begins(), (Times{1, 2}));
  ASSERT_TRUE(IsStored(2));
  EXPECT_EQ(Stored(2).end, Seconds(6));
}

TEST_F(PaneEdit, AMoveThatReachesPastTheNextBeginIsShortenedToEndThere) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Pane().ChangeCaptionTimes(Seconds(1), Seconds(2.5), Seconds(1));
  EXPECT_EQ(Stored(2.5).end, Seconds(3));
}

TEST_F(PaneEdit, AMoveThatEndsAtTheNextBeginKeepsItsLength) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Pane().ChangeCaptionTimes(Seconds(1), Seconds(2), Seconds(1));
  EXPECT_EQ(Stored(2).end, Seconds(3));
}

TEST_F(PaneEdit, AMovedRowStaysSelected) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Click(3);
  Row(3)->GetInControl().ReportValue(Seconds(7));
  EXPECT_EQ(Begins(), (Times{1, 5, 7}));
  EXPECT_EQ(SelectedBegins(), (Times{7}));
}

TEST_F(PaneEdit, AChangedEndOfARowThatIsNotSelectedSelectsIt) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(1);
  Row(3)->GetOutControl().ReportValue(Seconds(3.5));
  EXPECT_EQ(SelectedBegins(), (Times{3}));
  EXPECT_EQ(Stored(3).end, Seconds(3.5));
}

TEST_F(PaneEdit, APassageOfTypingIsOneStep) {
  OpenPanelOn({MakeCaption(1, 2, u"")});
  const auto steps = project->GetUndoNames().size();
  FocusText(1);
  for (const UString text : {u"H", u"He", u"Hel"})
    Text(1).SetValue(text, true);
  EXPECT_EQ(Stored(1).text, u"Hel");
  Pane().CommitChanges();
  EXPECT_EQ(project->GetUndoNames().size(), steps + 1);
  ASSERT_TRUE(project->Undo());
  EXPECT_EQ(Stored(1).text, u"");
  EXPECT_EQ(Row(1)->GetText(), u"");
  EXPECT_EQ(Text(1).GetValue(), u"");
}

TEST_F(PaneEdit, TypedLineEndsAreStoredAsSingleLineFeeds) {
  OpenPanelOn({MakeCaption(1, 2, u"")});
  FocusText(1);
  Text(1).SetValue(u"one\r\ntwo", true);
  EXPECT_EQ(Stored(1).text, u"one\ntwo");
  EXPECT_EQ(Text(1).GetValue(), u"one\r\ntwo");
}

TEST_F(PaneEdit, AnEqualTextIsNotSentAndALowerOneReadsTheCaretFirst) {
  OpenPanelOn({MakeCaption(1, 2, u"b")});
  zebcore::trace::Take();
  Pane().ApplyTextChange(Seconds(1), u"b", u"b", {0, 0}, false);
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::ApplyTextChange"), std::vector<std::string>{});
  FocusText(1);
  Text(1).SetSelection({1, 1});
  List().SetTextSelection({0, 0});
  Pane().ApplyTextChange(Seconds(1), u"b", u"c", {1, 1}, false);
  EXPECT_EQ(Inspector::TextSelection(List()), TextRange(0, 0));
  Pane().ApplyTextChange(Seconds(1), u"c", u"abc", {1, 1}, false);
  EXPECT_EQ(Inspector::TextSelection(List()), TextRange(1, 1));
}

TEST_F(PaneEdit, InsertingOverTheWholeTextKeepsNothingOfIt) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  Click(1);
  Pane().InsertText(u"\u266A");
  EXPECT_EQ(Stored(1).text, u"\u266A");
  EXPECT_EQ(Text(1).GetValue(), u"\u266A");
  EXPECT_EQ(Inspector::TextSelection(List()), TextRange(1, 1));
}

TEST_F(PaneEdit, InsertingAtTheCaretPutsItBehindWhatWasInserted) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  Text(1).SetSelection({2, 4});
  Tick(100);
  Pane().InsertText(u"\u266A");
  EXPECT_EQ(Stored(1).text, u"He\u266Ao");
  EXPECT_EQ(Text(1).GetSelection(), TextRange(3, 3));
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
}

TEST_F(PaneEdit, InsertingWithSeveralSelectedDoesNothing) {
  OpenPanelOn({MakeCaption(1, 2, u"a"), MakeCaption(3, 4, u"b")});
  Pane().SelectAllCaptions();
  Pane().InsertText(u"\u266A");
  EXPECT_EQ(Stored(1).text, u"a");
}

TEST_F(PaneEdit, InsertingWithNothingSelectedDoesNothing) {
  OpenPanelOn({MakeCaption(1, 2, u"a")});
  List().ClearSelection();
  zebcore::trace::Take();
  Pane().InsertText(u"\u266A");
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::"), std::vector<std::string>{});
}

TEST_F(PaneEdit, AFormatGivesTheCaretBackToTheTextThatHeldIt) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  HoldTheCaretAndLeave({1, 3});
  const auto info = Inspector::FormatInfo(View());
  zebcaptioning::CaptionFormatInfo bold;
  bold.SetIsBolded(true, true);
  Pane().ApplyFormat(zebcaptioning::kFormatBold, bold);
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_EQ(Text(1).GetSelection(), TextRange(1, 3));
  EXPECT_NE(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneEdit, AFormatLeavesTheFocusWhereItIsUnlessATextHeldIt) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  HoldTheCaretAndLeave({1, 3});
  Inspector::KeepTextFocus(Pane()) = false;
  zebcaptioning::CaptionFormatInfo bold;
  bold.SetIsBolded(true, true);
  Pane().ApplyFormat(zebcaptioning::kFormatBold, bold);
  EXPECT_FALSE(Text(1).UI_HasKeyboardFocus(false));
}

TEST_F(PaneEdit, AFormatGoesToTheSelectedPartOfTheTextAndToWholeCaptionsWhenSeveralAreSelected) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello"), MakeCaption(3, 4, u"b")});
  HoldTheCaretAndLeave({1, 3});
  const zebcaptioning::CaptionFormatInfo info;
  Pane().ApplyFormat(zebcaptioning::kFormatItalic, info);
  EXPECT_EQ(FormattedRange(), (nlohmann::json{1, 3}));
  Pane().SelectAllCaptions();
  zebcore::trace::Take();
  Pane().ApplyFormat(zebcaptioning::kFormatItalic, info);
  EXPECT_EQ(FormattedRange(), (nlohmann::json{0, -1}));
}

TEST_F(PaneEdit, AFormatWithNothingSelectedDoesNothing) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  List().ClearSelection();
  const auto info = Inspector::FormatInfo(View());
  zebcore::trace::Take();
  Pane().ApplyFormat(zebcaptioning::kFormatItalic, zebcaptioning::CaptionFormatInfo());
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::"), std::vector<std::string>{});
  EXPECT_EQ(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneEdit, TheTextGetsItsFocusAndCaretBackWhereItWasToKeepThem) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  HoldTheCaretAndLeave({1, 3});
  const auto info = Inspector::FormatInfo(View());
  Pane().RestoreTextFocus();
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_EQ(Text(1).GetSelection(), TextRange(1, 3));
  EXPECT_NE(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneEdit, ATextThatWasNotToKeepTheFocusDoesNotGetItBackButTheFormatIsPublished) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  HoldTheCaretAndLeave({1, 3});
  Inspector::KeepTextFocus(Pane()) = false;
  const auto info = Inspector::FormatInfo(View());
  Pane().RestoreTextFocus();
  EXPECT_FALSE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_NE(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneEdit, WithoutASingleSelectedRowTheCaretRangeIsBroughtToItsNormalForm) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Pane().SelectAllCaptions();
  List().SetTextSelection({2, 3});
  Pane().RestoreTextFocus();
  EXPECT_EQ(Inspector::TextSelection(List()), kTextRange_Whole);
  List().ClearSelection();
  List().SetTextSelection({2, 3});
  Pane().RestoreTextFocus();
  EXPECT_EQ(Inspector::TextSelection(List()), kTextRange_Empty);
}

TEST_F(PaneEdit, RevertingWithNothingOpenGivesThePaneTheFocus) {
  OpenPanelOn({MakeCaption(1, 2, u"a")});
  FocusText(1);
  Pane().RevertTextChange(true);
  EXPECT_TRUE(Pane().HasFocus());
  EXPECT_TRUE(Inspector::KeepTextFocus(Pane()));
  EXPECT_EQ(Stored(1).text, u"a");
}

TEST_F(PaneEdit, CancellingTheFirstWordsOfANewCaptionIsSafeThoughItTakesTheCaptionBack) {
  OpenPanelOn(MakeCaptions({1}));
  Pane().AddNewCaption();
  FocusText(2);
  Text(2).SetValue(u"Hel", true);
  zebui::ui::UI_NodeManager::Get()->DispatchKeyboardEvent(
      {zebui::ui::kKeyboardEvent_KeyDown, zebui::ui::kKeyboardCode_Escape, zebui::ui::kModKey_None});
  EXPECT_EQ(stream->GetCaptionCount(), 1U);
  EXPECT_EQ(Begins(), (Times{1}));
}

TEST_F(PaneEdit, DeletingEverythingForgetsTheRowsInView) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Pane().SelectAllCaptions();
  Pane().DeleteSelectedCaptions();
  EXPECT_EQ(stream->GetCaptionCount(), 0U);
  EXPECT_EQ(Inspector::FirstVisibleRow(Pane()), -1);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), -2);
}

TEST_F(PaneEdit, DeletingWithNothingSelectedOnlyCommits) {
  OpenPanelOn(MakeCaptions({1, 3}));
  List().ClearSelection();
  zebcore::trace::Take();
  Pane().DeleteSelectedCaptions();
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::"),
            std::vector<std::string>{"CaptioningStreamUpdater::CommitChangesUndoable"});
}

TEST_F(PaneEdit, TheClipboardCommandsGoToTheTextOfTheOnlySelectedRow) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello"), MakeCaption(3, 4, u"b")});
  FocusText(1);
  Text(1).SetSelection({0, 4});
  EXPECT_TRUE(Pane().ObeyTextCommand(UIF::Command(kCut)));
  EXPECT_EQ(Stored(1).text, u"o");
  EXPECT_TRUE(Pane().ObeyTextCommand(UIF::Command(kPaste)));
  EXPECT_EQ(Stored(1).text, u"Hello");
  Text(1).SetSelection({4, 5});
  EXPECT_TRUE(Pane().ObeyTextCommand(UIF::Command(kCopy)));
  EXPECT_EQ(Stored(1).text, u"Hello");
  Text(1).SetSelection({0, 4});
  EXPECT_TRUE(Pane().ObeyTextCommand(UIF::Command(kDelete)));
  EXPECT_EQ(Stored(1).text, u"o");
  EXPECT_TRUE(Pane().ObeyTextCommand(UIF::Command(kPaste)));
  EXPECT_EQ(Stored(1).text, u"oo");
}

TEST_F(PaneEdit, TheClipboardCommandsAreOnWhereTheTextCanTakeThem) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  for (const bool selected : {true, false}) {
    Text(1).SetSelection({0, selected ? 4U : 0U});
    for (const int id : {kCopy, kCut}) {
      bool enabled = !selected;
      EXPECT_TRUE(Pane().FindTextCommandStatus(id, enabled));
      EXPECT_EQ(enabled, selected) << id;
    }
    bool enabled = !Text(1).CanDelete();
    EXPECT_TRUE(Pane().FindTextCommandStatus(kDelete, enabled));
    EXPECT_EQ(enabled, Text(1).CanDelete());
  }
  Text(1).SetSelection({0, 4});
  Text(1).Copy();
  bool enabled = false;
  EXPECT_TRUE(Pane().FindTextCommandStatus(kPaste, enabled));
  EXPECT_TRUE(enabled);
}

TEST_F(PaneEdit, AnyOtherCommandIsNoneOfTheClipboard) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  bool enabled = false;
  for (const int id : {57633, 57636, 57642}) {
    EXPECT_FALSE(Pane().FindTextCommandStatus(id, enabled));
    EXPECT_FALSE(Pane().ObeyTextCommand(UIF::Command(id)));
  }
}

TEST_F(PaneEdit, TheClipboardCommandsNeedASingleSelectedRow) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello"), MakeCaption(3, 4, u"b")});
  bool enabled = false;
  for (const bool several : {true, false}) {
    if (several)
      Pane().SelectAllCaptions();
    else
      List().ClearSelection();
    for (const int id : {kDelete, kCopy, kCut, kPaste}) {
      EXPECT_FALSE(Pane().FindTextCommandStatus(id, enabled));
      EXPECT_FALSE(Pane().ObeyTextCommand(UIF::Command(id)));
    }
  }
  EXPECT_EQ(Stored(1).text, u"Hello");
}

TEST_F(PaneEdit, EachEditHasAskedForThePictureOfItsLastFrame) {
  OpenPanelOn(MakeCaptions({1, 3}));
  renderRequests.clear();
  Pane().ChangeCaptionTimes(Seconds(3), Seconds(4), Seconds(2));
  ASSERT_FALSE(renderRequests.empty());
  EXPECT_EQ(renderRequests.back().time, Seconds(6) - zebmediatypes::kFrameRate_25.GetFrameDuration());
}

} // namespace Captivo::Testing
