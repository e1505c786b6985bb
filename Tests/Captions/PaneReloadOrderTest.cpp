#include <algorithm>

#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Captions/pane/CaptionsFilter.h"
#include "Support.h"
#include "zebui/NodeManager.h"

// In which order a reload, a switch of the source and one of the format do their steps, what they leave alone, and what
// waits for what.
namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;
using Steps = std::vector<std::string>;
using zebcore::messaging::BroadcastMessage;

constexpr StreamFormat kCC1 = zebcaptioning::kStreamFormat_608_CC1;

class PaneReloadOrder : public PanelTest {
 protected:
  ~PaneReloadOrder() override { zebcore::trace::SetAnnotator(nullptr); }

  InterfaceRef<BE::MasterClip> AddOtherClip(const Times& begins) {
    const auto other = AddClip(u"Other");
    AddStream(other, MakeCaptions(begins));
    return other;
  }
  static std::string StationOf(const InterfaceRef<>& object) {
    return object.Query<BE::INotification>()->GetStationID().Text();
  }
  // The updater's calls, the pane's stations, the scroll bar and the rest of the screen, as one reads them.
  Steps TakeSteps() {
    Steps steps;
    for (const auto& call : zebcore::trace::Take()) {
      const std::string& name = call.call;
      if (name.rfind("CaptioningStreamUpdater::", 0) == 0) {
        std::string step = name.substr(name.rfind(':') + 1);
        if (call.args.contains("to"))
          step += call.args["to"].is_null() ? " null" : " " + call.args["to"].get<std::string>();
        steps.push_back(step);
      } else if (name.rfind("messaging::", 0) == 0) {
        if (call.args.contains("listener") && call.args["listener"] == "Captivo::CaptionsPane")
          steps.push_back(name.substr(name.rfind(':') + 1) + " " + call.args["station"].get<std::string>());
        else if (name == "messaging::PostMessageToUIThread")
          steps.push_back("Post " + call.args["message"].get<std::string>());
      } else if (name == "ScrollBar::SetScrollParameters") {
        steps.emplace_back("Range");
      } else if (name == "ScrollBar::SetScrollBarPosition") {
        steps.push_back("Scroll to " + std::to_string(call.args["position"].get<int>()));
      } else if (name == "TabView::UpdateStackedDimensions") {
        steps.emplace_back(call.args["animate"].get<bool>() ? "Stacked" : "Stacked at once");
      }
    }
    return steps;
  }
  // The same without the screen, which is the view's to lay out.
  Steps TakeStepsOffScreen() {
    Steps steps = TakeSteps();
    std::erase_if(steps, [](const std::string& step) {
      return step == "Range" || step.rfind("Scroll to", 0) == 0 || step.rfind("Stacked", 0) == 0;
    });
    return steps;
  }
  // Without the pane hearing of it.
  void AddToStreamInSecret(double begin) {
    const ImmutableString station = stream.Query<BE::INotification>()->GetStationID();
    zebcore::messaging::RemoveListener(station, &Pane());
    BE::CaptionDelta delta;
    delta.after = MakeCaption(begin, begin + 1)->GetState();
    project->EditCaptions(stream, {delta}, u"Add");
    zebcore::messaging::AddListener(station, &Pane());
    zebcore::trace::Take();
  }
  std::optional<std::int64_t> Due() {
    return zebui::ui::UI_NodeManager::Get()->GetTimeUntilDue(Inspector::DeferTimer(Pane()));
  }
  // How things stand: put off, reload waits, switch waits.
  std::vector<bool> Flags() {
    return {Inspector::DeferActive(Pane()), Inspector::ReloadPending(Pane()), Inspector::SourcePending(Pane())};
  }
};

const Times kTwelve{1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23};

} // namespace

TEST_F(PaneReloadOrder, AReloadAsksTheUpdaterOnceAndTellsNobodyWhatIsSelected) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Inspector::ResetScrollPending(Pane()) = false;
  Click(3);
  zebcore::messaging::DeliverPostedMessages();
  zebcore::trace::Take();
  Pane().ReloadCaptions();
  EXPECT_EQ(TakeSteps(), (Steps{"IsBusy", "Stacked"}));
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneReloadOrder, AReloadWithAnotherNumberOfRowsSetsTheScrollRangeAndKeepsThePlace) {
  OpenPanelOn(MakeCaptions(kTwelve), 600, 300);
  Click(3);
  View().DispatchMouseWheel({10, 100}, UIF::KeyModifiers(), -2);
  ASSERT_EQ(Inspector::ScrollOffset(Pane()), 75U);
  Inspector::ResetScrollPending(Pane()) = false;
  AddToStreamInSecret(30);
  Pane().ReloadCaptions();
  EXPECT_EQ(TakeSteps(), (Steps{"IsBusy", "Range", "Stacked"}));
  EXPECT_EQ(Begins().size(), 13U);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 75U);
}

TEST_F(PaneReloadOrder, AReloadThatIsToScrollToTheTopDoesSoOnceAndBeforeTheStack) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Inspector::ResetScrollPending(Pane()) = true;
  zebcore::trace::Take();
  Pane().ReloadCaptions();
  EXPECT_EQ(TakeSteps(), (Steps{"IsBusy", "Range", "Scroll to 0", "Stacked"}));
  EXPECT_FALSE(Inspector::ResetScrollPending(Pane()));
}

TEST_F(PaneReloadOrder, AReloadOfASelectionOutOfViewScrollsItIntoViewBetweenTheRangeAndTheStack) {
  OpenPanelOn(MakeCaptions(kTwelve), 600, 300);
  List().SelectSingle(Seconds(23));
  Inspector::ResetScrollPending(Pane()) = true;
  zebcore::trace::Take();
  Pane().ReloadCaptions();
  const Steps steps = TakeSteps();
  ASSERT_GT(steps.size(), 4U);
  EXPECT_EQ(Steps(steps.begin(), steps.begin() + 3), (Steps{"IsBusy", "Range", "Scroll to 0"}));
  for (std::size_t i = 3; i + 1 < steps.size(); ++i)
    EXPECT_EQ(steps[i], "Scroll to " + std::to_string(Inspector::ScrollPosition(View())));
  EXPECT_GT(Inspector::ScrollPosition(View()), 0);
  EXPECT_EQ(steps.back(), "Stacked");
}

TEST_F(PaneReloadOrder, AReloadPublishesTheFormat) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto info = Inspector::FormatInfo(View());
  Pane().ReloadCaptions();
  EXPECT_NE(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneReloadOrder, ABusyReloadAsksAndArmsTheTimerAndDoesNothingElse) {
  OpenPanelOn(MakeCaptions({1, 3}));
  stream->SetBusy(true);
  const auto row = Row(1);
  const auto info = Inspector::FormatInfo(View());
  zebcore::trace::Take();
  Pane().ReloadCaptions();
  Steps calls;
  for (const auto& call : zebcore::trace::Take())
    calls.push_back(call.call);
  EXPECT_EQ(calls, (Steps{"CaptioningStreamUpdater::IsBusy", "UI_NodeManager::SetTimer"}));
  Pane().ReloadCaptions();
  calls.clear();
  for (const auto& call : zebcore::trace::Take())
    calls.push_back(call.call);
  EXPECT_EQ(calls,
            (Steps{"CaptioningStreamUpdater::IsBusy", "UI_NodeManager::RemoveTimer", "UI_NodeManager::SetTimer"}));
  EXPECT_EQ(Row(1), row);
  EXPECT_EQ(Inspector::FormatInfo(View()), info);
  EXPECT_EQ(Due(), 250);
  stream->SetBusy(false);
}

TEST_F(PaneReloadOrder, TheOnlyRowThatComesBackWithoutTheFocusStandsForAllOfItsText) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello"), MakeCaption(3, 4, u"World")});
  Click(3);
  Pane().ReloadCaptions();
  ASSERT_EQ(SelectedBegins(), (Times{3}));
  EXPECT_EQ(Inspector::TextSelection(List()), kTextRange_Whole);
  zebcore::trace::Take();
  Pane().ApplyFormat(zebcaptioning::kFormatItalic, zebcaptioning::CaptionFormatInfo());
  std::vector<nlohmann::json> ranges;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call == "CaptioningStreamUpdater::ApplyFormatParameter")
      ranges.push_back(call.args["range"]);
  }
  EXPECT_EQ(ranges, (std::vector<nlohmann::json>{{0, -1}}));
}

TEST_F(PaneReloadOrder, TheOnlyRowThatIsLeftOfSeveralStandsForAllOfItsText) {
  OpenPanelOn({MakeCaption(1, 2, u"two"), MakeCaption(3, 4, u"one"), MakeCaption(5, 6, u"three")});
  Click(5);
  SelectClip(nullptr);
  SelectClip(clip);
  Click(1);
  Click(3, UIF::KeyModifiers::kToggle);
  Pane().SetFilterText(u"two"); // takes the remembered row away as well
  ASSERT_EQ(SelectedBegins(), (Times{1}));
  EXPECT_EQ(Inspector::TextSelection(List()), kTextRange_Whole);
}

TEST_F(PaneReloadOrder, SeveralRowsThatComeBackHaveTheRangeOfAClearedList) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  List().SelectAll();
  Pane().ReloadCaptions();
  ASSERT_EQ(SelectedBegins(), (Times{1, 3, 5}));
  EXPECT_EQ(Inspector::TextSelection(List()), kTextRange_Empty);
}

TEST_F(PaneReloadOrder, NoRowThatComesBackHasTheRangeOfAClearedList) {
  OpenPanelOn(MakeCaptions({1}));
  Pane().SetFilterText(u"nowhere");
  EXPECT_EQ(SelectedBegins(), Times{});
  EXPECT_EQ(Inspector::TextSelection(List()), kTextRange_Empty);
}

TEST_F(PaneReloadOrder, ARowThatComesBackWithTheFocusIsReadByThePoll) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  Text(1).SetSelection({2, 4});
  Tick(100);
  ASSERT_EQ(Inspector::TextSelection(List()), TextRange(2, 4));
  Pane().ReloadCaptions();
  ASSERT_TRUE(Text(1).UI_HasKeyboardFocus(false));
  Tick(100);
  EXPECT_EQ(Inspector::TextSelection(List()), TextRange(2, 4));
}

TEST_F(PaneReloadOrder, ATextThatHadTheFocusLosesItInAReloadUnlessItIsToBeKept) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  Tick(100);
  Inspector::KeepTextFocus(Pane()) = false;
  Pane().ReloadCaptions();
  EXPECT_FALSE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_EQ(Inspector::TextSelection(List()), kTextRange_Whole);
}

TEST_F(PaneReloadOrder, SeveralSelectedRowsThatAllComeBackStaySelectedAndNoRememberedTimeIsTaken) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Click(5);
  SelectClip(AddOtherClip({7}));
  SelectClip(clip);
  ASSERT_EQ(SelectedBegins(), (Times{5}));
  Click(1);
  Click(3, UIF::KeyModifiers::kToggle);
  Pane().ReloadCaptions();
  EXPECT_EQ(SelectedBegins(), (Times{1, 3}));
}

TEST_F(PaneReloadOrder, OneOfSeveralSelectedRowsThatIsMissingBringsTheRememberedTimeBack) {
  OpenPanelOn({MakeCaption(1, 2, u"two"), MakeCaption(3, 4, u"one"), MakeCaption(5, 6, u"two")});
  Click(5);
  SelectClip(AddOtherClip({7}));
  SelectClip(clip);
  Click(1);
  Click(3, UIF::KeyModifiers::kToggle);
  Pane().SetFilterText(u"two");
  EXPECT_EQ(SelectedBegins(), (Times{5}));
}

TEST_F(PaneReloadOrder, AFilterSearchesWithinTheTextAndAcrossItsLines) {
  OpenPanelOn({MakeCaption(1, 2, u"one\ntwo"), MakeCaption(3, 4, u"onetwo"), MakeCaption(5, 6, u"")});
  Pane().SetFilterText(u"E\nT");
  EXPECT_EQ(Begins(), (Times{1}));
  Pane().SetFilterText(u"neT");
  EXPECT_EQ(Begins(), (Times{3}));
}

TEST(Filter, FoldsTheASCIICapitalsAloneAndComparesUnits) {
  EXPECT_TRUE(ContainsFolded(u"abcXYZ", u"ABCxyz"));
  EXPECT_TRUE(ContainsFolded(u"", u""));
  EXPECT_TRUE(ContainsFolded(u"a", u""));
  EXPECT_FALSE(ContainsFolded(u"", u"a"));
  EXPECT_FALSE(ContainsFolded(u"ab", u"abc"));
  // The neighbours of the letters are 32 apart as well.
  EXPECT_FALSE(ContainsFolded(u"@", u"`"));
  EXPECT_FALSE(ContainsFolded(u"[", u"{"));
  EXPECT_FALSE(ContainsFolded(u"\u00C4", u"\u00E4"));
  EXPECT_FALSE(ContainsFolded(u"\u0391", u"\u03B1"));
  EXPECT_FALSE(ContainsFolded(u"\uFF21", u"\uFF41"));
  // Half of a pair is a unit like any other.
  EXPECT_TRUE(ContainsFolded(u"\U0001F600", UString(1, char16_t(0xDE00))));
  EXPECT_TRUE(ContainsFolded(u"aaab", u"AAB"));
}

TEST_F(PaneReloadOrder, TheSameFilterAgainReadsNothing) {
  OpenPanelOn({MakeCaption(1, 2, u"one"), MakeCaption(3, 4, u"two")});
  Pane().SetFilterText(u"two");
  zebcore::trace::Take();
  Pane().SetFilterText(u"two");
  EXPECT_EQ(TakeSteps(), Steps{});
  Pane().SetFilterText(u"TWO");
  EXPECT_EQ(TakeSteps(), (Steps{"IsBusy", "Range", "Scroll to 0", "Stacked"}));
}

TEST_F(PaneReloadOrder, AnotherFilterScrollsToTheTop) {
  OpenPanelOn(MakeCaptions(kTwelve), 600, 300);
  Click(3); // in view from both places
  View().DispatchMouseWheel({10, 100}, UIF::KeyModifiers(), -2);
  ASSERT_EQ(Inspector::ScrollOffset(Pane()), 75U);
  Pane().SetFilterText(u"Text");
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 0U);
  EXPECT_EQ(Inspector::ScrollPosition(View()), 0);
}

TEST_F(PaneReloadOrder, AFilterOfABusyStreamWaitsAndIsKept) {
  OpenPanelOn({MakeCaption(1, 2, u"one"), MakeCaption(3, 4, u"two")});
  stream->SetBusy(true);
  Pane().SetFilterText(u"two");
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(Inspector::FilterText(Pane()), u"two");
  EXPECT_TRUE(Inspector::ResetScrollPending(Pane()));
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{3}));
}

TEST_F(PaneReloadOrder, ASwitchCommitsThenLeavesThenJoinsThenReads) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddOtherClip({5});
  const auto otherStream = other->GetStreams().front();
  zebcore::trace::Take();
  EXPECT_TRUE(Pane().SetSource(CaptionsSource(InterfaceRef<>(other))));
  EXPECT_EQ(
      TakeStepsOffScreen(),
      (Steps{"IsBusy", "CommitChangesUndoable", "UpdateCaptioningStream null",
             "RemoveListener " + StationOf(InterfaceRef<>(stream)), "RemoveListener " + StationOf(InterfaceRef<>(clip)),
             "UpdateCaptioningStream " + otherStream->GetID(), "AddListener " + StationOf(InterfaceRef<>(otherStream)),
             "AddListener " + StationOf(InterfaceRef<>(other)), "GetRegionNames", "GetStyleNames", "IsBusy"}));
}

TEST_F(PaneReloadOrder, ASwitchToNothingJoinsNoStation) {
  OpenPanelOn(MakeCaptions({1, 3}));
  zebcore::trace::Take();
  SelectClip(nullptr);
  EXPECT_EQ(TakeStepsOffScreen(), (Steps{"IsBusy", "CommitChangesUndoable", "UpdateCaptioningStream null",
                                         "RemoveListener " + StationOf(InterfaceRef<>(stream)),
                                         "RemoveListener " + StationOf(InterfaceRef<>(clip)),
                                         "UpdateCaptioningStream null", "GetRegionNames", "GetStyleNames", "IsBusy"}));
}

TEST_F(PaneReloadOrder, ASwitchFromNothingLeavesNoStation) {
  OpenPanel();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  zebcore::trace::Take();
  Pane().SetSource(CaptionsSource(InterfaceRef<>(clip)));
  const Steps steps = TakeStepsOffScreen();
  ASSERT_GE(steps.size(), 5U);
  EXPECT_EQ(
      Steps(steps.begin(), steps.begin() + 5),
      (Steps{"IsBusy", "CommitChangesUndoable", "UpdateCaptioningStream " + stream->GetID(),
             "AddListener " + StationOf(InterfaceRef<>(stream)), "AddListener " + StationOf(InterfaceRef<>(clip))}));
}

TEST_F(PaneReloadOrder, ASwitchToAClipWithoutStreamsJoinsTheClipsStationAlone) {
  OpenPanelOn(MakeCaptions({1}));
  const auto bare = AddClip(u"Bare");
  zebcore::trace::Take();
  SelectClip(bare);
  const Steps steps = TakeSteps();
  EXPECT_EQ(std::count_if(steps.begin(), steps.end(), [](const auto& s) { return s.rfind("AddListener", 0) == 0; }), 1);
  EXPECT_EQ(std::count(steps.begin(), steps.end(), "AddListener " + StationOf(InterfaceRef<>(bare))), 1);
  EXPECT_EQ(std::count(steps.begin(), steps.end(), "UpdateCaptioningStream null"), 2);
}

TEST_F(PaneReloadOrder, ASwitchToTheSameStreamDoesNothingNotEvenAskWhetherItIsBusy) {
  OpenPanelOn(MakeCaptions({1}));
  stream->SetBusy(true);
  zebcore::trace::Take();
  EXPECT_TRUE(Pane().SetSource(CaptionsSource(InterfaceRef<>(clip))));
  EXPECT_EQ(TakeStepsOffScreen(), Steps{});
  stream->SetBusy(false);
  Pane().SetSource(CaptionsSource());
  zebcore::trace::Take();
  EXPECT_TRUE(Pane().SetSource(CaptionsSource(InterfaceRef<>(AddClip(u"Bare")))));
  EXPECT_EQ(TakeStepsOffScreen(), Steps{});
}

TEST_F(PaneReloadOrder, WhatIsOpenIsCommittedWhileTheFormerRowsAndTheirSelectionStillStand) {
  OpenPanelOn({MakeCaption(1, 2, u"One"), MakeCaption(3, 4, u"Two")});
  const auto steps = project->GetUndoNames().size();
  Click(3);
  Pane().ApplyTextChange(Seconds(3), u"Two", u"Other", {0, 0}, false);
  std::vector<std::pair<Times, Times>> standing;
  zebcore::trace::SetAnnotator([&](zebcore::trace::Call& call) {
    if (call.call == "CaptioningStreamUpdater::CommitChangesUndoable")
      standing.emplace_back(Begins(), SelectedBegins());
  });
  SelectClip(AddOtherClip({5}));
  EXPECT_EQ(standing, (std::vector<std::pair<Times, Times>>{{{1, 3}, {3}}}));
  EXPECT_GT(project->GetUndoNames().size(), steps);
  EXPECT_EQ(stream->FindByBegin(Seconds(3))->GetState()->text, u"Other");
}

TEST_F(PaneReloadOrder, AFormatCommitsThenLeavesThenJoinsThenReads) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto second = AddStream(clip, MakeCaptions({5}), kCC1 + 1);
  zebcore::trace::Take();
  Pane().SelectStreamFormat(1);
  EXPECT_EQ(TakeStepsOffScreen(),
            (Steps{"CommitChangesUndoable", "RemoveListener " + StationOf(InterfaceRef<>(stream)),
                   "AddListener " + StationOf(InterfaceRef<>(second)), "UpdateCaptioningStream " + second->GetID(),
                   "GetRegionNames", "GetStyleNames", "IsBusy"}));
}

TEST_F(PaneReloadOrder, AFormatIsChosenThoughTheStreamIsBusyOrARowIsBeingEdited) {
  OpenPanelOn(MakeCaptions({1, 3}));
  AddStream(clip, MakeCaptions({5}), kCC1 + 1);
  FocusText(1);
  stream->SetBusy(true);
  Pane().SelectStreamFormat(1);
  EXPECT_EQ(Begins(), (Times{5}));
  EXPECT_EQ(Flags(), (std::vector<bool>{false, false, false}));
  stream->SetBusy(false);
}

TEST_F(PaneReloadOrder, AFormatKeepsTheFilterAndWhatWasRemembered) {
  OpenPanelOn({MakeCaption(1, 2, u"one"), MakeCaption(3, 4, u"two"), MakeCaption(5, 6, u"two")});
  AddStream(clip, {MakeCaption(7, 8, u"one"), MakeCaption(9, 10, u"two")}, kCC1 + 1);
  Click(5);
  SelectClip(nullptr);
  SelectClip(clip);
  ASSERT_EQ(SelectedBegins(), (Times{5}));
  Click(3);
  Pane().SetFilterText(u"two");
  Pane().SelectStreamFormat(1);
  EXPECT_EQ(Inspector::FilterText(Pane()), u"two");
  EXPECT_EQ(Begins(), (Times{9}));
  Pane().SelectStreamFormat(0);
  EXPECT_EQ(Begins(), (Times{3, 5}));
  EXPECT_EQ(SelectedBegins(), (Times{5}));
}

TEST_F(PaneReloadOrder, AFormatDoesNotRememberWhatWasSelectedInTheOneThatIsLeft) {
  OpenPanelOn(MakeCaptions({1, 3}));
  AddStream(clip, MakeCaptions({5}), kCC1 + 1);
  Click(3);
  Pane().SelectStreamFormat(1);
  Pane().SelectStreamFormat(0);
  EXPECT_EQ(SelectedBegins(), (Times{1}));
}

TEST_F(PaneReloadOrder, AFormatPastTheLastOneIsTheFirst) {
  OpenPanelOn(MakeCaptions({1, 3}));
  AddStream(clip, MakeCaptions({5}), kCC1 + 1);
  for (const int index : {2, -1, 1000}) {
    Pane().SelectStreamFormat(1);
    ASSERT_EQ(Begins(), (Times{5}));
    Pane().SelectStreamFormat(index);
    EXPECT_EQ(Begins(), (Times{1, 3})) << index;
  }
}

TEST_F(PaneReloadOrder, TheFirstSelectedTimeIsRememberedForTheStreamThatIsLeft) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Click(3);
  Click(5, UIF::KeyModifiers::kToggle);
  SelectClip(AddOtherClip({7}));
  SelectClip(clip);
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneReloadOrder, AStreamThatIsLeftWithNothingSelectedKeepsWhatWasRememberedBefore) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Click(3);
  SelectClip(nullptr);
  SelectClip(clip);
  List().ClearSelection();
  SelectClip(nullptr);
  SelectClip(clip);
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneReloadOrder, ASwitchTakesThePlaceOfAReloadThatWaits) {
  OpenPanelOn(MakeCaptions({1}));
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  EXPECT_EQ(Flags(), (std::vector<bool>{true, true, false}));
  SelectClip(AddOtherClip({5}));
  EXPECT_EQ(Flags(), (std::vector<bool>{true, false, true}));
  stream->SetBusy(false);
  zebcore::trace::Take();
  Tick(250);
  EXPECT_EQ(Flags(), (std::vector<bool>{false, false, false}));
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneReloadOrder, AReloadThatIsPutOffAfterASwitchRunsBeforeIt) {
  OpenPanelOn(MakeCaptions({1}));
  const auto other = AddOtherClip({5});
  stream->SetBusy(true);
  SelectClip(other);
  Tick(200);
  Pane().ReloadCaptions();
  EXPECT_EQ(Flags(), (std::vector<bool>{true, true, true}));
  EXPECT_EQ(Due(), 250);
  stream->SetBusy(false);
  zebcore::trace::Take();
  Tick(250);
  const Steps steps = TakeStepsOffScreen();
  ASSERT_GE(steps.size(), 4U);
  // The reload of the rows that stood, then the switch.
  EXPECT_EQ(Steps(steps.begin(), steps.begin() + 4),
            (Steps{"IsBusy", "IsBusy", "CommitChangesUndoable", "UpdateCaptioningStream null"}));
  EXPECT_EQ(Begins(), (Times{5}));
  EXPECT_EQ(Flags(), (std::vector<bool>{false, false, false}));
  EXPECT_FALSE(Due());
}

TEST_F(PaneReloadOrder, ThePanelIsUnavailableForTheWaitAndAvailableAfterIt) {
  OpenPanelOn(MakeCaptions({1}));
  EXPECT_FALSE(Pane().IsUnavailable());
  stream->SetBusy(true);
  SelectClip(AddOtherClip({5}));
  EXPECT_TRUE(Pane().IsUnavailable());
  stream->SetBusy(false);
  Tick(250);
  EXPECT_FALSE(Pane().IsUnavailable());
}

TEST_F(PaneReloadOrder, ASwitchWaitsWhileATimecodeOfTheSelectedRowIsBeingTyped) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddOtherClip({5});
  Row(1)->GetOutControl().OpenInlineEditor();
  ASSERT_TRUE(List().IsSelectedRowBeingEdited());
  EXPECT_FALSE(Pane().SetSource(CaptionsSource(InterfaceRef<>(other))));
  EXPECT_EQ(Flags(), (std::vector<bool>{true, false, true}));
  EXPECT_EQ(Due(), 250);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{1, 3}));
  Row(1)->GetOutControl().CloseInlineEditor(true);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneReloadOrder, ASwitchDoesNotWaitForTheTextOfARowIfSeveralAreSelected) {
  OpenPanelOn(MakeCaptions({1, 3}));
  FocusText(1);
  List().SelectAll();
  SelectClip(AddOtherClip({5}));
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneReloadOrder, AMergedClipThatIsSelectedDuringAWaitIsNotLeftOut) {
  OpenPanelOn(MakeCaptions({1}));
  const auto merged = AddClip(u"Merged", true);
  AddStream(merged, MakeCaptions({7}));
  stream->SetBusy(true);
  SelectClip(AddOtherClip({5}));
  SelectClip(merged);
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{7}));
}

TEST_F(PaneReloadOrder, TheClipThatASwitchWaitsForLeavesTheWaitAsItIs) {
  OpenPanelOn(MakeCaptions({1}));
  const auto other = AddOtherClip({5});
  AddStream(other, MakeCaptions({9}), kCC1 + 1);
  stream->SetBusy(true);
  SelectClip(other);
  Inspector::PendingSource(Pane()).SelectStreamFormat(kCC1 + 1);
  Tick(200);
  SelectClip(other);
  EXPECT_EQ(Due(), 50);
  EXPECT_EQ(Inspector::PendingSource(Pane()).GetStreamFormat(), kCC1 + 1);
  stream->SetBusy(false);
  Tick(50);
  EXPECT_EQ(Begins(), (Times{9}));
}

TEST_F(PaneReloadOrder, TheClipOnShowThatIsSelectedDuringAWaitTakesTheSwitchBack) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Pane().SetFilterText(u"Text");
  stream->SetBusy(true);
  SelectClip(AddOtherClip({5}));
  SelectClip(clip);
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(Inspector::FilterText(Pane()), u"Text");
  EXPECT_EQ(Flags(), (std::vector<bool>{false, false, false}));
  EXPECT_TRUE(Inspector::PendingSource(Pane()).IsEmpty());
}

TEST_F(PaneReloadOrder, TheClipOnShowThatIsSelectedAgainKeepsTheFormatThatWasChosen) {
  OpenPanelOn(MakeCaptions({1, 3}));
  AddStream(clip, MakeCaptions({5}), kCC1 + 1);
  Pane().SelectStreamFormat(1);
  SelectClip(clip);
  EXPECT_EQ(Begins(), (Times{5}));
  // Another road asks for the stream alone.
  Pane().ShowMasterClip(clip);
  EXPECT_EQ(Begins(), (Times{1, 3}));
}

TEST_F(PaneReloadOrder, ASwitchThatWasPutOffTwiceIsPutOffAnewByAnotherClipAndNotByTheOneOnShow) {
  OpenPanelOn(MakeCaptions({1}));
  const auto other = AddOtherClip({5});
  const auto third = AddOtherClip({9});
  stream->SetBusy(true);
  SelectClip(other);
  Tick(250);
  ASSERT_EQ(Flags(), (std::vector<bool>{false, false, true}));
  Tick(100);
  SelectClip(clip);
  EXPECT_EQ(Due(), 150);
  EXPECT_TRUE(Inspector::PendingSource(Pane()).GetMasterClip() == other);
  SelectClip(third);
  EXPECT_EQ(Flags(), (std::vector<bool>{true, false, true}));
  EXPECT_EQ(Due(), 250);
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{9}));
}

TEST_F(PaneReloadOrder, ANewSourceWhoseStreamIsBusyIsTakenUpAndItsRowsWait) {
  OpenPanelOn(MakeCaptions({1}));
  const auto other = AddOtherClip({5});
  const auto busy = other->GetStreams().front();
  busy->SetBusy(true);
  EXPECT_TRUE(Pane().SetSource(CaptionsSource(InterfaceRef<>(other))));
  EXPECT_EQ(Flags(), (std::vector<bool>{true, true, false}));
  EXPECT_EQ(Begins(), (Times{1}));
  busy->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneReloadOrder, AStreamOnShowThatChangesKeepsItsPlaceIfTheFormatsOfItsClipHaveChangedMeanwhile) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto shown = AddStream(clip, MakeCaptions({5}), kCC1 + 1);
  const auto third = AddStream(clip, MakeCaptions({7}), kCC1 + 2);
  Pane().SelectStreamFormat(1);
  ASSERT_EQ(Begins(), (Times{5}));
  // Nobody here listens to that stream.
  project->ChangeStreamFormat(third, kCC1 + 3, u"Change format");
  ASSERT_EQ(OfferedFormats(), (std::vector<StreamFormat>{kCC1, kCC1 + 1, kCC1 + 2}));
  project->ShiftCaptions(shown, kTime_Min, kTime_Max, Seconds(1), u"Shift");
  EXPECT_EQ(Inspector::Source(Pane()).GetStreamFormat(), kCC1 + 1);
  EXPECT_EQ(Begins(), (Times{6}));
  EXPECT_EQ(OfferedFormats(), (std::vector<StreamFormat>{kCC1, kCC1 + 1, kCC1 + 3}));
}

TEST_F(PaneReloadOrder, AChangedStreamIsRefreshedInTheStatedOrder) {
  OpenPanelOn(MakeCaptions({1, 3}));
  BE::CaptioningStreamChangedMessage message;
  message.stream = stream;
  zebcore::trace::Take();
  Pane().HandleMessage(message);
  EXPECT_EQ(TakeStepsOffScreen(), (Steps{"GetRegionNames", "GetStyleNames", "UpdateCaptioningStream " + stream->GetID(),
                                         "GetRegionNames", "GetStyleNames", "IsBusy"}));
}

TEST_F(PaneReloadOrder, AChangedStreamOfABusyUpdaterKeepsItsRowsUntilItIsNot) {
  OpenPanelOn(MakeCaptions({1, 3}));
  stream->SetBusy(true);
  AddToStreamInSecret(5);
  BE::CaptioningStreamChangedMessage message;
  message.stream = stream;
  Pane().HandleMessage(message);
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(Flags(), (std::vector<bool>{true, true, false}));
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{1, 3, 5}));
}

} // namespace Captivo::Testing
