#include "BE/Preferences.h"
#include "Captions/contracts/CaptioningStreamUpdater.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Support.h"
#include "zebcore/Boundary.h"
#include "zebui/NodeManager.h"

// What a pane is from its making to its end, step by step.
namespace Captivo::Testing {

namespace {

using Steps = std::vector<std::string>;

class PaneLifecycleOrder : public PanelTest {
 protected:
  static std::string StationOf(const InterfaceRef<>& object) {
    return object.Query<BE::INotification>()->GetStationID().Text();
  }
  // Stations of listeners of this class, the updater's calls and the timers.
  static Steps TakeSteps(const std::string& listener = "Captivo::CaptionsPane") {
    Steps steps;
    for (const auto& call : zebcore::trace::Take()) {
      const std::string& name = call.call;
      const std::string operation = name.substr(name.rfind(':') + 1);
      if (call.args.contains("listener") && call.args["listener"] == listener)
        steps.push_back(operation + " " + call.args["station"].get<std::string>());
      else if (name.rfind("CaptioningStreamUpdater::", 0) == 0)
        steps.push_back(operation);
      else if (name.rfind("UI_NodeManager::", 0) == 0)
        steps.push_back(operation + " " + std::to_string(call.args["id"].get<std::uint32_t>()));
    }
    return steps;
  }
  std::string Poll() { return std::to_string(Inspector::PollTimer(Pane())); }
  std::string Deferred() { return std::to_string(Inspector::DeferTimer(Pane())); }
  static std::optional<std::int64_t> Due(std::uint32_t timer) {
    return zebui::ui::UI_NodeManager::Get()->GetTimeUntilDue(timer);
  }
};

InterfaceRef<> CreateNothing() {
  return nullptr;
}

} // namespace

TEST_F(PaneLifecycleOrder, ANewPaneShowsNothingAndWaitsForNothing) {
  CaptionsPane pane(nullptr);
  EXPECT_FALSE(Inspector::IsCreated(pane));
  EXPECT_TRUE(Inspector::Source(pane).IsEmpty());
  EXPECT_EQ(pane.GetRowCount(), 0U);
  EXPECT_EQ(Inspector::ScrollOffset(pane), 0U);
  EXPECT_EQ(Inspector::FirstVisibleRow(pane), -1);
  EXPECT_EQ(Inspector::LastVisibleRow(pane), -2);
  EXPECT_TRUE(Inspector::ResetScrollPending(pane));
  EXPECT_FALSE(Inspector::DeferActive(pane));
  EXPECT_FALSE(Inspector::ReloadPending(pane));
  EXPECT_FALSE(Inspector::SourcePending(pane));
  EXPECT_TRUE(Inspector::PendingSource(pane).IsEmpty());
  EXPECT_EQ(Inspector::FilterText(pane), u"");
  EXPECT_FALSE(Inspector::KeepTextFocus(pane));
  EXPECT_TRUE(Inspector::RendererStation(pane).IsNull());
  EXPECT_TRUE(Inspector::PreviewCache(pane).empty());
  EXPECT_FALSE(Inspector::Updater(pane).IsBusy());
  EXPECT_TRUE(pane.IsUnavailable());
}

TEST_F(PaneLifecycleOrder, ANewPaneTakesATimerForThePollAndThenOneForWhatIsPutOff) {
  const std::uint32_t former = zebui::ui::UI_NodeManager::Get(false)->GetUniqueTimerID();
  CaptionsPane pane(nullptr);
  const std::uint32_t next = zebui::ui::UI_NodeManager::Get(false)->GetUniqueTimerID();
  EXPECT_LT(former, Inspector::PollTimer(pane));
  EXPECT_LT(Inspector::PollTimer(pane), Inspector::DeferTimer(pane));
  EXPECT_LT(Inspector::DeferTimer(pane), next);
}

TEST_F(PaneLifecycleOrder, ANewPaneFollowsBothTimeDisplaysAndThenMakesItsUpdater) {
  zebcore::trace::Take();
  auto pane = std::make_unique<CaptionsPane>(nullptr);
  const Steps made = TakeSteps("Captivo::TimeDisplayListener");
  EXPECT_EQ(made,
            (Steps{std::string("AddListener ") + UIF::kStation_SourceTimeDisplayChanged,
                   std::string("AddListener ") + UIF::kStation_SequenceTimeDisplayChanged, "CaptioningStreamUpdater"}));
  pane.reset();
  EXPECT_EQ(
      TakeSteps("Captivo::TimeDisplayListener"),
      (Steps{std::string("RemoveListener ") + UIF::kStation_SequenceTimeDisplayChanged,
             std::string("RemoveListener ") + UIF::kStation_SourceTimeDisplayChanged, "~CaptioningStreamUpdater"}));
}

TEST_F(PaneLifecycleOrder, APaneWithoutAViewSwitchesItsSourceAllTheSame) {
  CaptionsPane pane(nullptr);
  clip = AddClip();
  stream = AddStream(clip, {});
  EXPECT_TRUE(pane.SetSource(CaptionsSource(InterfaceRef<>(clip))));
  EXPECT_FALSE(pane.IsUnavailable());
  EXPECT_EQ(Inspector::Format(Inspector::List(pane)), zebcaptioning::kStreamFormat_608_CC1);
  EXPECT_TRUE(Inspector::ResetScrollPending(pane)); // nobody scrolled
  EXPECT_TRUE(pane.SetSource(CaptionsSource()));
}

TEST_F(PaneLifecycleOrder, TheRendererComesFirstThenTheStationsThenTheTimer) {
  MakeHandler();
  zebcore::trace::Take();
  OpenPanel();
  Steps ends;
  for (const auto& call : zebcore::trace::Take()) {
    const auto isOf = [&call](const char* key) {
      return call.args.contains(key) && call.args[key] == "Captivo::CaptionsPane";
    };
    if (isOf("listener"))
      ends.push_back(call.args["station"]);
    else if (call.call == "UI_NodeManager::SetTimer" ||
             (isOf("class") &&
              (call.call == "View::EnableDoubleBuffering" || call.call == "View::WantsDragAndDropEvents")))
      ends.push_back(call.call + " " + call.args.dump());
  }
  ASSERT_EQ(ends.size(), 12U);
  EXPECT_EQ(ends[0], "test.renderer");
  EXPECT_EQ(ends[8], HSL::kStation_CaptionSelection.Text());
  using Json = nlohmann::json;
  const char* const self = "Captivo::CaptionsPane";
  EXPECT_EQ(ends[9],
            "View::EnableDoubleBuffering " + Json({{"class", self}, {"enable", true}, {"opaque", false}}).dump());
  EXPECT_EQ(ends[10], "View::WantsDragAndDropEvents " + Json({{"class", self}, {"wants", true}}).dump());
  EXPECT_EQ(ends[11], "UI_NodeManager::SetTimer " + Json({{"id", Inspector::PollTimer(Pane())}, {"ms", 100}}).dump());
  EXPECT_EQ(renderer.settings.size(), 6U);
  EXPECT_TRUE(Inspector::IsCreated(Pane()));
}

TEST_F(PaneLifecycleOrder, WithoutARendererThePaneThrowsTheHostsExceptionAndJoinsNothing) {
  zebcore::classref::RegisterClass(ML::kRenderFrameClassID, &CreateNothing);
  MakeHandler();
  zebcore::trace::Take();
  OpenPanel();
  EXPECT_EQ(TakeSteps(), (Steps{"CaptioningStreamUpdater"}));
  const auto reports = zebcore::boundary::TakeReports();
  ASSERT_FALSE(reports.empty());
  EXPECT_EQ(reports.front().type, "zebcore::classref::NullInterfaceException");
  EXPECT_EQ(reports.front().text, "A NULL interface pointer has been dereferenced: ML::IRenderFrame");
}

TEST_F(PaneLifecycleOrder, ADestroyedPaneLetsGoInTheStatedOrder) {
  OpenPanelOn(MakeCaptions({1}));
  const std::string streamStation = StationOf(InterfaceRef<>(stream));
  const std::string clipStation = StationOf(InterfaceRef<>(clip));
  zebcore::trace::Take();
  Pane().Destroy();
  const std::string leave = "RemoveListener ";
  EXPECT_EQ(TakeSteps(), (Steps{leave + streamStation,
                                leave + clipStation,
                                leave + UIF::kStation_SourceTimeDisplayChanged,
                                leave + "test.renderer",
                                leave + BE::kBackendPreferencesChangedStationID.Text(),
                                leave + MZ::kStation_Info.Text(),
                                leave + MZ::kStation_MasterClipActivation.Text(),
                                leave + MZ::kStation_SequenceActivation.Text(),
                                leave + MZ::kStation_TrackItemActivation.Text(),
                                leave + MZ::kStation_BinActivation.Text(),
                                "IsBusy",
                                "CommitChangesUndoable",
                                "UpdateCaptioningStream",
                                leave + streamStation,
                                leave + clipStation,
                                "UpdateCaptioningStream",
                                "GetRegionNames",
                                "GetStyleNames",
                                "IsBusy",
                                "RemoveTimer " + Poll()}));
}

TEST_F(PaneLifecycleOrder, ADestroyedPaneThatShowedNothingLeavesNoStreamAndNoClip) {
  OpenPanel();
  zebcore::trace::Take();
  Pane().Destroy();
  const std::string leave = "RemoveListener ";
  EXPECT_EQ(TakeSteps(),
            (Steps{leave + UIF::kStation_SourceTimeDisplayChanged, leave + "test.renderer",
                   leave + BE::kBackendPreferencesChangedStationID.Text(), leave + MZ::kStation_Info.Text(),
                   leave + MZ::kStation_MasterClipActivation.Text(), leave + MZ::kStation_SequenceActivation.Text(),
                   leave + MZ::kStation_TrackItemActivation.Text(), leave + MZ::kStation_BinActivation.Text(),
                   "RemoveTimer " + Poll()}));
}

TEST_F(PaneLifecycleOrder, ADestroyedPaneOfABusyStreamTakesTheTimerAwayThatItHasJustSet) {
  OpenPanelOn(MakeCaptions({1}));
  const std::uint32_t deferred = Inspector::DeferTimer(Pane());
  stream->SetBusy(true);
  zebcore::trace::Take();
  Pane().Destroy();
  Steps timers;
  for (const std::string& step : TakeSteps()) {
    if (step.find("Timer ") != std::string::npos)
      timers.push_back(step);
  }
  EXPECT_EQ(timers, (Steps{"SetTimer " + Deferred(), "RemoveTimer " + Deferred(), "RemoveTimer " + Poll()}));
  EXPECT_FALSE(Due(deferred));
  EXPECT_FALSE(Inspector::Source(Pane()).IsEmpty());
  stream->SetBusy(false);
  Tick(500);
}

TEST_F(PaneLifecycleOrder, APanelDestroyedWhileAStepIsPutOffForTheSecondTimeIsNotCalledAnyMore) {
  OpenPanelOn(MakeCaptions({1}));
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  Tick(250);
  stream->SetBusy(false);
  ASSERT_FALSE(Inspector::DeferActive(Pane()));
  const std::uint32_t deferred = Inspector::DeferTimer(Pane());
  ASSERT_TRUE(Due(deferred));
  const auto view = Inspector::View(Handler());
  view->Destroy(UIF::TabView::kDestroy_Closing);
  EXPECT_FALSE(Due(deferred));
  Tick(500);
}

TEST_F(PaneLifecycleOrder, ADestroyedPaneStillHearsTheHostsWishToCommit) {
  OpenPanelOn(MakeCaptions({1}));
  Pane().Destroy();
  zebcore::trace::Take();
  zebcore::messaging::BroadcastMessage(HSL::kStation_CaptionSelection, HSL::CaptionCommitEditsMessage());
  EXPECT_EQ(TakeSteps(), (Steps{"CommitChangesUndoable"}));
}

TEST_F(PaneLifecycleOrder, ADestroyedPaneDoesNotFollowTheHostAnyMore) {
  OpenPanelOn(MakeCaptions({1}));
  const auto other = AddClip(u"Other");
  AddStream(other, MakeCaptions({5}));
  Pane().Destroy();
  SelectClip(other);
  project->ShiftCaptions(stream, kTime_Min, kTime_Max, Seconds(1), u"Shift");
  EXPECT_TRUE(Inspector::Source(Pane()).IsEmpty());
  EXPECT_EQ(Pane().GetRowCount(), 0U);
}

TEST_F(PaneLifecycleOrder, NewBoundsReachTheRowsUnlessThePaneIsUnavailable) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  RectT<int> bounds = Pane().GetBounds();
  bounds.height = 75;
  Pane().SetBounds(bounds);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 0);
  EXPECT_FALSE(Row(3)->HasControls());
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  stream->SetBusy(false);
  bounds.height = 225;
  Pane().SetBounds(bounds);
  EXPECT_EQ(Pane().GetBounds(), bounds);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 0);
}

TEST_F(PaneLifecycleOrder, ThePaneAnswersNoCommandItself) {
  OpenPanelOn(MakeCaptions({1}));
  bool enabled = false;
  bool marked = false;
  UIF::MenuMark mark{};
  UString name;
  for (const int id : {32010, 32020, 57634, 57637, 0}) {
    EXPECT_FALSE(Pane().FindCommandStatus(id, enabled, marked, mark, name));
    EXPECT_FALSE(Pane().ObeyCommand(UIF::Command(id)));
  }
  EXPECT_FALSE(enabled);
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{1}));
}

TEST_F(PaneLifecycleOrder, TheParentForLayoutIsTheParents) {
  OpenPanel();
  ASSERT_TRUE(Pane().GetParent());
  EXPECT_EQ(Pane().GetLayoutParent(), Pane().GetParent()->GetLayoutParent());
  const CaptionsPane alone(nullptr);
  EXPECT_EQ(alone.GetLayoutParent(), nullptr);
}

TEST_F(PaneLifecycleOrder, AnEmptyListHasRoomForOneRowUnlessStacked) {
  OpenPanel();
  EXPECT_EQ(Pane().GetContentHeight(false), 75);
  EXPECT_EQ(Pane().GetContentHeight(true), 0);
}

TEST_F(PaneLifecycleOrder, ThePaneAnswersForItsListAndItsSource) {
  OpenPanel();
  EXPECT_EQ(Pane().GetFirstSelectedIndex(), -1);
  EXPECT_FALSE(Pane().HasSelection());
  EXPECT_EQ(Pane().GetFrameRate(), zebmediatypes::kFrameRate_Invalid);
  EXPECT_EQ(Pane().GetZeroPoint(), kTime_Zero);
  BE::MediaInfo info;
  info.width = 1920;
  info.height = 1080;
  info.frameRate = zebmediatypes::kFrameRate_25;
  info.start = Seconds(3600);
  clip = AddClip(info);
  AddStream(clip, MakeCaptions({1, 3}));
  SelectClip(clip);
  Click(3);
  EXPECT_EQ(Pane().GetFirstSelectedIndex(), 1);
  EXPECT_TRUE(Pane().HasSelection());
  EXPECT_EQ(Pane().GetFrameRate(), zebmediatypes::kFrameRate_25);
  EXPECT_EQ(Pane().GetZeroPoint(), Inspector::Source(Pane()).GetZeroPoint());
  EXPECT_NE(Pane().GetZeroPoint(), kTime_Zero);
}

TEST_F(PaneLifecycleOrder, APollThatFindsTheCaretWhereItWasCallsNobody) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  Text(1).SetSelection({1, 3});
  Tick(100);
  zebcore::trace::Take();
  EXPECT_TRUE(Pane().DispatchTimer(Inspector::PollTimer(Pane())));
  EXPECT_TRUE(zebcore::trace::Take().empty());
}

TEST_F(PaneLifecycleOrder, AStepThatWasPutOffIsFollowedByTheLayoutOfThePanel) {
  OpenPanelOn(MakeCaptions({1}));
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  stream->SetBusy(false);
  zebcore::trace::Take();
  EXPECT_TRUE(Pane().DispatchTimer(Inspector::DeferTimer(Pane())));
  const auto calls = zebcore::trace::Take();
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls.front().call, "UI_NodeManager::RemoveTimer");
  // The reload still counts as put off while it runs, so what it hides is shown again after it.
  std::vector<bool> shown;
  for (const auto& call : calls) {
    if (call.call == "View::Show" && call.args["class"] == "Captivo::CaptionsPane")
      shown.push_back(call.args["show"]);
  }
  EXPECT_EQ(shown, (std::vector<bool>{false, true}));
  EXPECT_TRUE(Pane().IsShown());
}

TEST_F(PaneLifecycleOrder, ATimerThatFiresWithNothingPutOffOnlyEndsTheWait) {
  OpenPanelOn(MakeCaptions({1}));
  Inspector::DeferActive(Pane()) = true;
  zebcore::trace::Take();
  EXPECT_TRUE(Pane().DispatchTimer(Inspector::DeferTimer(Pane())));
  EXPECT_FALSE(Inspector::DeferActive(Pane()));
  for (const std::string& step : TakeSteps())
    EXPECT_EQ(step, "RemoveTimer " + Deferred());
}

} // namespace Captivo::Testing
