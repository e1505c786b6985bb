#include "Captions/contracts/CaptioningStreamUpdater.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Support.h"

// What an edit calls, with which arguments and in which order, and where it leaves selection and focus.
namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;
using Json = nlohmann::json;
constexpr std::uint8_t kToggle = UIF::KeyModifiers::kToggle;
const std::string kUpdater = "CaptioningStreamUpdater::";

class PaneEditCourse : public PanelTest, public zebcore::messaging::Listener {
 protected:
  PaneEditCourse() { zebcore::messaging::AddListener(HSL::kStation_CaptionSelection, this); }
  ~PaneEditCourse() override { zebcore::messaging::RemoveListener(HSL::kStation_CaptionSelection, this); }
  void HandleMessage(const zebcore::messaging::Message& message) override {
    if (zebcore::messaging::MessageCast<HSL::CaptionSelectedMessage>(message))
      ++told;
  }
  int TakeTold() {
    zebcore::messaging::DeliverPostedMessages();
    return std::exchange(told, 0);
  }
  void Open(const std::vector<boost::intrusive_ptr<Caption>>& captions) {
    OpenPanelOn(captions);
    TakeTold();
    zebcore::trace::Take();
  }
  // The calls on the updater, refreshes of the scroll range ("refresh"), boxes and the pane's focus.
  std::vector<std::string> TakeCourse() {
    std::vector<std::string> course;
    for (const auto& call : zebcore::trace::Take()) {
      if (call.call.rfind(kUpdater, 0) == 0) {
        course.push_back(call.call.substr(kUpdater.size()));
        if (call.args.contains("ends_passage"))
          course.back() += call.args["ends_passage"] == true ? "(true)" : "(false)";
        lastArgs = call.args;
      } else if (call.call == "TabView::UpdateStackedDimensions") {
        course.push_back("refresh");
      } else if (call.call == "UIF::MessageBoxW") {
        course.push_back("box");
      } else if (call.call == "View::SetFocus") {
        course.push_back("focus");
      } else if (call.call == "messaging::PostMessageToUIThread") {
        course.push_back("tell");
      }
    }
    return course;
  }
  bool TakePublished() {
    const auto now = Inspector::FormatInfo(View());
    return std::exchange(published, now) != now;
  }
  UString Stored(double begin) { return stream->FindByBegin(Seconds(begin))->GetState()->text; }
  const TextRange& Caret() { return Inspector::TextSelection(List()); }

  using Course = std::vector<std::string>;
  Json lastArgs;
  int told = 0;

 private:
  boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> published;
};

} // namespace

TEST_F(PaneEditCourse, AddingCommitsInPassingShowsTheRowThenTellsTheStreamAndTakesTheFocus) {
  Open(MakeCaptions({1, 5}));
  Pane().AddNewCaption();
  EXPECT_EQ(TakeCourse(), (Course{"CommitChangesUndoable(false)", "refresh", "AddCaption", "focus"}));
  EXPECT_EQ(SelectedBegins(), (Times{2}));
  EXPECT_FALSE(Inspector::ResetScrollPending(Pane())) << "the refresh has used it up";
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneEditCourse, ARefusedNewCaptionLeavesTheCommitAndNothingElse) {
  Open(MakeCaptions({1, 2}));
  FocusText(1);
  Text(1).SetValue(u"Typed", true);
  const auto steps = project->GetUndoNames().size();
  TakePublished();
  TakeCourse();
  Pane().AddNewCaption();
  EXPECT_EQ(TakeCourse(), (Course{"CommitChangesUndoable(false)", "box"}));
  EXPECT_EQ(project->GetUndoNames().size(), steps + 1);
  EXPECT_EQ(Begins(), (Times{1, 2}));
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_FALSE(TakePublished());
}

TEST_F(PaneEditCourse, ARefusedNewCaptionSaysThatThereIsNotEnoughTime) {
  Open(MakeCaptions({1, 2}));
  Pane().AddNewCaption();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].text,
            u"There is not enough time available to insert a new caption between the current caption and "
            u"the next caption in the list.");
  EXPECT_EQ(boxes[0].title, u"Closed Captioning");
}

TEST_F(PaneEditCourse, DeletingCommitsRefreshesThenTellsTheStreamAndTakesTheFocus) {
  Open(MakeCaptions({1, 3, 5}));
  Click(3, kToggle);
  TakeCourse();
  Pane().DeleteSelectedCaptions();
  EXPECT_EQ(TakeCourse(), (Course{"CommitChangesUndoable(true)", "refresh", "RemoveCaptions", "focus"}));
  EXPECT_EQ(lastArgs["times"], (Json{Seconds(1).GetTicks(), Seconds(3).GetTicks()}));
  EXPECT_EQ(lastArgs["close_gap"], false);
  EXPECT_TRUE(Inspector::ResetScrollPending(Pane())) << "for the next refresh";
  EXPECT_EQ(SelectedBegins(), Times{}) << "the last row of the list does not take over";
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneEditCourse, DeletingWithNothingSelectedTakesNoFocusAndRefreshesNothing) {
  Open(MakeCaptions({1}));
  List().ClearSelection();
  Pane().DeleteSelectedCaptions();
  EXPECT_EQ(TakeCourse(), (Course{"CommitChangesUndoable(true)"}));
  EXPECT_FALSE(Inspector::ResetScrollPending(Pane()));
}

TEST_F(PaneEditCourse, TypedTextGoesToTheStreamOpenWithTheRangeInStoredUnits) {
  Open({MakeCaption(1, 2, u"ab")});
  FocusText(1);
  TakeTold();
  TakeCourse();
  Text(1).SetSelection({0, 0});
  Text(1).SetValue(u"x\r\nyz", false);
  Text(1).SetSelection({4, 4});
  Row(1)->CommitText(false);
  EXPECT_EQ(TakeCourse(), (Course{"ApplyTextChange"}));
  EXPECT_EQ(lastArgs["begin"], Seconds(1).GetTicks());
  EXPECT_EQ(lastArgs["old_text"], "ab");
  EXPECT_EQ(lastArgs["new_text"], "x\nyz");
  EXPECT_EQ(lastArgs["range"], (Json{3, 3}));
  EXPECT_EQ(lastArgs["without_focus"], false);
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneEditCourse, TheCaretIsReadFirstForATextThatSortsLowerAndForNoOther) {
  Open({MakeCaption(1, 2, u"")});
  FocusText(1);
  const auto isCaretRead = [&](const UString& before, const UString& after) {
    Text(1).SetValue(u"some text", false);
    Text(1).SetSelection({3, 3});
    List().SetTextSelection({7, 7});
    Pane().ApplyTextChange(Seconds(1), before, after, {3, 3}, false);
    return Caret() == TextRange(3, 3);
  };
  EXPECT_TRUE(isCaretRead(u"ab", u"a")) << "the shorter first on a common beginning";
  EXPECT_FALSE(isCaretRead(u"a", u"ab"));
  EXPECT_TRUE(isCaretRead(u"b", u"abc")) << "longer, and lower";
  EXPECT_FALSE(isCaretRead(u"abc", u"b")) << "shorter, and higher";
  EXPECT_FALSE(isCaretRead(u"z", u"\uFFFD")) << "units are compared without a sign";
  EXPECT_TRUE(isCaretRead(u"\uFFFD", u"\U0001F3B5")) << "and unit by unit, not by character";
  EXPECT_TRUE(isCaretRead(u"a", u""));
}

TEST_F(PaneEditCourse, ATextOfEqualLengthThatDiffersInOneUnitIsSent) {
  Open({MakeCaption(1, 2, u"abc")});
  Pane().ApplyTextChange(Seconds(1), u"abc", u"abd", {0, 0}, true);
  EXPECT_EQ(TakeCourse(), (Course{"ApplyTextChange"}));
  EXPECT_EQ(lastArgs["without_focus"], true);
}

TEST_F(PaneEditCourse, AMoveThatReordersRefreshesCommitsAndThenTellsTheStream) {
  Open(MakeCaptions({1, 3, 7}));
  Pane().ChangeCaptionTimes(Seconds(1), Seconds(5), Seconds(1));
  EXPECT_EQ(TakeCourse(), (Course{"refresh", "CommitChangesUndoable(true)", "UpdateCaptionStartAndDuration"}));
  EXPECT_EQ(lastArgs["old_begin"], Seconds(1).GetTicks());
  EXPECT_EQ(lastArgs["new_begin"], Seconds(5).GetTicks());
  EXPECT_EQ(lastArgs["duration"], Seconds(1).GetTicks());
  EXPECT_EQ(lastArgs["align_to_frame"], false);
  EXPECT_EQ(lastArgs["time_display"], Pane().GetTimeDisplay().GetNumber());
  EXPECT_EQ(Begins(), (Times{3, 5, 7}));
  EXPECT_EQ(SelectedBegins(), (Times{5})) << "the selection goes along";
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneEditCourse, AMoveInsideItsGapRefreshesNothingAndOnlyCommits) {
  Open(MakeCaptions({1, 5}));
  Pane().ChangeCaptionTimes(Seconds(1), Seconds(2), Seconds(1));
  EXPECT_EQ(TakeCourse(), (Course{"CommitChangesUndoable(true)", "UpdateCaptionStartAndDuration"}));
  EXPECT_EQ(SelectedBegins(), (Times{2}));
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneEditCourse, AMovedRowThatIsNotSelectedLeavesTheSelectionAlone) {
  Open(MakeCaptions({1, 5}));
  Pane().ChangeCaptionTimes(Seconds(5), Seconds(6), Seconds(1));
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneEditCourse, AChangedEndOfTheOnlySelectedRowCommitsNothing) {
  Open(MakeCaptions({1, 5}));
  Pane().ChangeCaptionTimes(Seconds(1), Seconds(1), Seconds(2));
  EXPECT_EQ(TakeCourse(), (Course{"UpdateCaptionStartAndDuration"}));
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneEditCourse, AChangedEndOfARowThatIsNotSelectedSelectsItAndTellsTheHost) {
  Open(MakeCaptions({1, 5}));
  Pane().ChangeCaptionTimes(Seconds(5), Seconds(5), Seconds(2));
  EXPECT_EQ(TakeCourse(), (Course{"CommitChangesUndoable(true)", "tell", "UpdateCaptionStartAndDuration"}));
  EXPECT_EQ(SelectedBegins(), (Times{5}));
  EXPECT_EQ(TakeTold(), 1);
}

TEST_F(PaneEditCourse, AChangedEndOfOneOfSeveralSelectedRowsSelectsItAloneAndTellsTheHost) {
  Open(MakeCaptions({1, 5, 9}));
  Pane().SelectAllCaptions();
  Pane().ChangeCaptionTimes(Seconds(5), Seconds(5), Seconds(2));
  EXPECT_EQ(SelectedBegins(), (Times{5}));
  EXPECT_EQ(TakeTold(), 1);
}

TEST_F(PaneEditCourse, AnEndThatIsChangedWithTheToggleKeyHeldTogglesTheRow) {
  Open(MakeCaptions({1, 5}));
  UIF::KeyModifiers::SetCurrent(UIF::KeyModifiers(kToggle));
  Pane().ChangeCaptionTimes(Seconds(5), Seconds(5), Seconds(2));
  UIF::KeyModifiers::SetCurrent(UIF::KeyModifiers());
  EXPECT_EQ(SelectedBegins(), (Times{1, 5}));
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneEditCourse, AMoveThatWasCutSendsTheShorterDurationAndAsksForThePictureOfItsLastFrame) {
  Open(MakeCaptions({1, 3}));
  renderRequests.clear();
  const TickTime duration = Seconds(4);
  Pane().ChangeCaptionTimes(Seconds(1), Seconds(2), duration);
  TakeCourse();
  EXPECT_EQ(lastArgs["duration"], Seconds(1).GetTicks());
  EXPECT_EQ(duration, Seconds(4));
  ASSERT_FALSE(renderRequests.empty());
  EXPECT_EQ(renderRequests.back().time, Seconds(3) - zebmediatypes::kFrameRate_25.GetFrameDuration());
}

TEST_F(PaneEditCourse, ARefusedMoveOnlyShowsTheBox) {
  Open(MakeCaptions({1, 5}));
  Click(5);
  TakeTold();
  TakeCourse();
  renderRequests.clear();
  Pane().ChangeCaptionTimes(Seconds(5), Seconds(1), Seconds(1));
  EXPECT_EQ(TakeCourse(), (Course{"box"}));
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].text,
            u"The selected caption cannot be moved because another caption already exists in the specified location.");
  EXPECT_EQ(boxes[0].title, u"Closed Captioning");
  EXPECT_EQ(SelectedBegins(), (Times{5}));
  EXPECT_TRUE(renderRequests.empty());
}

TEST_F(PaneEditCourse, AMoveOfACaptionThatIsGoneIsRefusedWithTheSameBox) {
  Open(MakeCaptions({1}));
  Pane().ChangeCaptionTimes(Seconds(2), Seconds(3), Seconds(1));
  EXPECT_EQ(TakeCourse(), (Course{"box"}));
  EXPECT_EQ(Begins(), (Times{1}));
}

TEST_F(PaneEditCourse, ARevertPutsTheTextBackThenTakesTheFocusAndPublishes) {
  Open({MakeCaption(1, 2, u"One")});
  FocusText(1);
  Text(1).SetValue(u"Two", true);
  Inspector::KeepTextFocus(Pane()) = false;
  TakeTold();
  TakeCourse();
  TakePublished();
  Pane().RevertTextChange(true);
  EXPECT_EQ(TakeCourse(), (Course{"RevertChanges", "focus"}));
  EXPECT_EQ(Text(1).GetValue(), u"One");
  EXPECT_TRUE(Inspector::KeepTextFocus(Pane()));
  EXPECT_TRUE(TakePublished());
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneEditCourse, ARevertWithoutTheFocusLeavesItWhereItIs) {
  Open({MakeCaption(1, 2, u"One")});
  FocusText(1);
  Text(1).SetValue(u"Two", true);
  Inspector::KeepTextFocus(Pane()) = false;
  Pane().RevertTextChange(false);
  EXPECT_EQ(Stored(1), u"One");
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_FALSE(Pane().HasFocus());
}

TEST_F(PaneEditCourse, ARevertWithNothingOpenHasTheSameVisibleResult) {
  Open({MakeCaption(1, 2, u"One")});
  FocusText(1);
  Inspector::KeepTextFocus(Pane()) = false;
  TakeCourse();
  TakePublished();
  Pane().RevertTextChange(true);
  EXPECT_EQ(TakeCourse(), (Course{"RevertChanges", "focus"}));
  EXPECT_EQ(Text(1).GetValue(), u"One");
  EXPECT_TRUE(Inspector::KeepTextFocus(Pane()));
  EXPECT_TRUE(Pane().HasFocus());
  EXPECT_TRUE(TakePublished());
}

TEST_F(PaneEditCourse, AnInsertionSaysWhetherTheTextHeldTheFocus) {
  Open({MakeCaption(1, 2, u"Hello")});
  List().SetTextSelection({1, 2});
  Pane().InsertText(u"\u266A");
  EXPECT_EQ(TakeCourse(), (Course{"ApplyTextChange"}));
  EXPECT_EQ(lastArgs["begin"], Seconds(1).GetTicks());
  EXPECT_EQ(lastArgs["old_text"], "Hello");
  EXPECT_EQ(lastArgs["new_text"], "H\u266Allo");
  EXPECT_EQ(lastArgs["range"], (Json{1, 2}));
  EXPECT_EQ(lastArgs["without_focus"], true);
  EXPECT_FALSE(Text(1).UI_HasKeyboardFocus(false));
  Inspector::KeepTextFocus(Pane()) = true;
  Pane().InsertText(u"\u266A");
  TakeCourse();
  EXPECT_EQ(lastArgs["without_focus"], false);
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
}

TEST_F(PaneEditCourse, AnInsertionIsTakenUpByTheRowAndReachesTheStreamOnce) {
  Open({MakeCaption(1, 2, u"Hello")});
  Click(1);
  TakeTold();
  TakeCourse();
  TakePublished();
  Pane().InsertText(u"\u266A");
  EXPECT_EQ(Row(1)->GetText(), u"\u266A");
  Row(1)->CommitText(false);
  EXPECT_EQ(TakeCourse(), (Course{"ApplyTextChange"})) << "nothing is left to be sent by the row";
  EXPECT_TRUE(TakePublished());
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneEditCourse, AnInsertionBehindTheEndOfTheTextIsAppended) {
  Open({MakeCaption(1, 2, u"ab")});
  List().SetTextSelection({7, 9});
  Pane().InsertText(u"\u266A");
  EXPECT_EQ(Stored(1), u"ab\u266A");
  EXPECT_EQ(Caret(), TextRange(8, 8));
}

TEST_F(PaneEditCourse, AnInsertionUpToTheEndOfTheTextKeepsWhatIsBefore) {
  Open({MakeCaption(1, 2, u"abc")});
  List().SetTextSelection({1, 3});
  Pane().InsertText(u"\u266A");
  EXPECT_EQ(Stored(1), u"a\u266A");
}

TEST_F(PaneEditCourse, TheCaretGoesOneFurtherHoweverLongTheInsertionIs) {
  Open({MakeCaption(1, 2, u"abc")});
  List().SetTextSelection({1, 1});
  Pane().InsertText(u"long");
  EXPECT_EQ(Stored(1), u"alongbc");
  EXPECT_EQ(Caret(), TextRange(2, 2));
}

TEST_F(PaneEditCourse, AnInsertionBehindATypedLineEndCountsInTheUnitsOfTheText) {
  Open({MakeCaption(1, 2, u"")});
  FocusText(1);
  Text(1).SetValue(u"a\r\nbc", true);
  Text(1).SetSelection({4, 4});
  Tick(100);
  ASSERT_EQ(Caret(), TextRange(3, 3));
  Pane().InsertText(u"\u266A");
  EXPECT_EQ(Text(1).GetValue(), u"a\r\n\u266Abc") << "three units of the control, where the pair counts two";
}

TEST_F(PaneEditCourse, InsertingIntoARowOutOfViewDoesNothing) {
  std::vector<double> begins;
  for (int i = 0; i < 40; ++i)
    begins.push_back(2 * i + 1);
  Open(MakeCaptions(begins));
  Pane().SetScrollOffset(75 * 30);
  ASSERT_FALSE(Row(1)->HasControls());
  ASSERT_EQ(SelectedBegins(), (Times{1}));
  TakeCourse();
  Pane().InsertText(u"\u266A");
  bool enabled = false;
  EXPECT_FALSE(Pane().FindTextCommandStatus(57637, enabled));
  EXPECT_FALSE(Pane().ObeyTextCommand(UIF::Command(57637)));
  EXPECT_EQ(TakeCourse(), Course{});
}

TEST_F(PaneEditCourse, AFormatGoesToAllSelectedCaptionsInOneCallAndTellsNobody) {
  Open(MakeCaptions({1, 3, 5}));
  Pane().SelectAllCaptions();
  List().SetTextSelection({2, 3});
  TakeCourse();
  TakePublished();
  Pane().ApplyFormat(zebcaptioning::kFormatItalic, zebcaptioning::CaptionFormatInfo());
  EXPECT_EQ(TakeCourse(), (Course{"ApplyFormatParameter"}));
  EXPECT_EQ(lastArgs["times"], (Json{Seconds(1).GetTicks(), Seconds(3).GetTicks(), Seconds(5).GetTicks()}));
  EXPECT_EQ(lastArgs["range"], (Json{0, -1}));
  EXPECT_EQ(lastArgs["parameter"], 2);
  EXPECT_TRUE(TakePublished());
  EXPECT_EQ(SelectedBegins(), (Times{1, 3, 5}));
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneEditCourse, EachRoadThatEndsAPassageOfTypingSaysSoAndTheOthersDoNot) {
  Open(MakeCaptions({1, 5}));
  const auto other = AddClip(u"Other");
  AddStream(other, MakeCaptions({1}));
  const auto commits = [&] {
    Course found;
    for (const std::string& call : TakeCourse()) {
      if (call.rfind("Commit", 0) == 0)
        found.push_back(call);
    }
    return found;
  };
  const Course ends{"CommitChangesUndoable(true)"};
  const Course inPassing{"CommitChangesUndoable(false)"};
  zebcore::messaging::BroadcastMessage(HSL::kStation_CaptionSelection, HSL::CaptionCommitEditsMessage());
  EXPECT_EQ(commits(), inPassing);
  Pane().SelectStreamFormat(0);
  EXPECT_EQ(commits(), ends);
  SelectClip(other);
  EXPECT_EQ(commits(), ends);
  Pane().SelectCaptionAtTime(Seconds(1));
  Pane().SelectAllCaptions();
  EXPECT_EQ(commits(), Course{});
}

TEST_F(PaneEditCourse, ANewCaptionMakesTheScrollBarLongerAndScrollsFromTheTop) {
  Open(MakeCaptions({1, 5}));
  Pane().AddNewCaption();
  std::vector<Json> calls;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call == "ScrollBar::SetScrollParameters" || call.call == "ScrollBar::SetScrollBarPosition")
      calls.push_back(call.args);
  }
  ASSERT_GE(calls.size(), 2U);
  EXPECT_EQ(calls[0]["max"], 4 * 75) << "three rows and one to spare";
  EXPECT_EQ(calls[1]["position"], 0);
}

TEST_F(PaneEditCourse, ANewCaptionTakesTheControlsOfTheRowThatItPushesOutOfView) {
  std::vector<double> begins;
  for (int i = 0; i < 30; ++i)
    begins.push_back(2 * i + 1);
  Open(MakeCaptions(begins));
  const int last = Inspector::LastVisibleRow(Pane());
  Pane().AddNewCaption();
  ASSERT_EQ(Inspector::LastVisibleRow(Pane()), last);
  int realized = 0;
  for (const double begin : Begins())
    realized += Row(begin)->HasControls();
  EXPECT_EQ(realized, last + 1);
}

TEST_F(PaneEditCourse, EditsOfACaptionThatTheStreamDoesNotKnowAreShownAndPublishedAllTheSame) {
  Open(MakeCaptions({1}));
  List().AddRow(MakeCaption(5, 6, u"Hello"));
  Pane().UpdateVisibleRows();
  Pane().SelectCaptionAtTime(Seconds(5));
  List().SetTextSelection({5, 5});
  TakePublished();
  Pane().InsertText(u"!");
  EXPECT_EQ(Row(5)->GetText(), u"Hello!");
  EXPECT_EQ(Text(5).GetValue(), u"Hello!");
  EXPECT_TRUE(TakePublished());
  Pane().ApplyFormat(zebcaptioning::kFormatBold, zebcaptioning::CaptionFormatInfo());
  EXPECT_TRUE(TakePublished());
  Pane().RestoreTextFocus();
  EXPECT_TRUE(TakePublished());
  Pane().ChangeCaptionTimes(Seconds(5), Seconds(7), Seconds(1));
  Pane().DeleteSelectedCaptions();
  EXPECT_EQ(Begins(), (Times{1}));
  EXPECT_EQ(stream->GetCaptionCount(), 1U);
}

TEST_F(PaneEditCourse, ARowThatIsReadAgainWhileItsTextIsTakenUpIsSafe) {
  Open({MakeCaption(1, 2, u"a"), MakeCaption(3, 4, u"b")});
  // Another part of the host that has the whole stream read again after every change.
  struct Rereader : zebcore::messaging::Listener {
    void HandleMessage(const zebcore::messaging::Message& message) override {
      if (!zebcore::messaging::MessageCast<BE::CaptionsChangedMessage>(message))
        return;
      BE::CaptioningStreamChangedMessage changed;
      changed.stream = stream;
      zebcore::messaging::BroadcastMessage(stream->GetStationID(), changed);
    }
    InterfaceRef<BE::CaptioningStream> stream;
  } rereader;
  rereader.stream = stream;
  zebcore::messaging::AddListener(stream->GetStationID(), &rereader);
  FocusText(1);
  Text(1).SetValue(u"typed", true);
  zebcore::messaging::RemoveListener(stream->GetStationID(), &rereader);
  EXPECT_EQ(Stored(1), u"typed");
  EXPECT_EQ(Row(1)->GetText(), u"typed");
  EXPECT_EQ(Text(1).GetValue(), u"typed");
  EXPECT_EQ(SelectedBegins(), (Times{1}));
}

} // namespace Captivo::Testing
