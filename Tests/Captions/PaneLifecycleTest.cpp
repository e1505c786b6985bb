#include "BE/Preferences.h"
#include "Captions/contracts/Stations.h"
#include "MF/VideoFrame.h"
#include "Support.h"
#include "zebui/NodeManager.h"

namespace Captivo::Testing {

namespace {

using Stations = std::vector<std::string>;

class PaneLifecycle : public PanelTest {
 protected:
  // Those that the pane itself joined or left since the last time.
  Stations StationsOfThePane(const std::string& call) {
    Stations stations;
    for (const auto& recorded : zebcore::trace::Take()) {
      if (recorded.call == call && recorded.args["listener"] == "Captivo::CaptionsPane")
        stations.push_back(recorded.args["station"]);
    }
    return stations;
  }
  std::vector<std::uint32_t> RemovedTimers() {
    std::vector<std::uint32_t> timers;
    for (const auto& recorded : zebcore::trace::Take()) {
      if (recorded.call == "UI_NodeManager::RemoveTimer")
        timers.push_back(recorded.args["id"]);
    }
    return timers;
  }
  std::optional<std::int64_t> Due(std::uint32_t timer) {
    return zebui::ui::UI_NodeManager::Get()->GetTimeUntilDue(timer);
  }
};

} // namespace

TEST_F(PaneLifecycle, AModalWindowLeavesTheDeferredStepWaiting) {
  OpenPanelOn(MakeCaptions({1}));
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  stream->SetBusy(false);
  auto* manager = zebui::ui::UI_NodeManager::Get();
  manager->PushModalWindow();
  Tick(600);
  EXPECT_TRUE(Pane().DispatchTimer(Inspector::DeferTimer(Pane())));
  EXPECT_TRUE(Inspector::DeferActive(Pane()));
  EXPECT_TRUE(Inspector::ReloadPending(Pane()));
  EXPECT_TRUE(Due(Inspector::DeferTimer(Pane())));
  manager->PopModalWindow();
  Tick(250);
  EXPECT_FALSE(Inspector::DeferActive(Pane()));
  EXPECT_FALSE(Inspector::ReloadPending(Pane()));
  EXPECT_FALSE(Due(Inspector::DeferTimer(Pane())));
}

TEST_F(PaneLifecycle, AModalWindowHoldsThePollAsWell) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  Text(1).SetSelection({1, 3});
  auto* manager = zebui::ui::UI_NodeManager::Get();
  manager->PushModalWindow();
  const TextRange former = Inspector::TextSelection(List());
  EXPECT_TRUE(Pane().DispatchTimer(Inspector::PollTimer(Pane())));
  EXPECT_EQ(Inspector::TextSelection(List()), former);
  manager->PopModalWindow();
  Tick(100);
  EXPECT_EQ(Inspector::TextSelection(List()), TextRange(1, 3));
}

TEST_F(PaneLifecycle, ThePollPublishesNothingWhileAStepIsPutOff) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  Tick(100);
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  Text(1).SetSelection({1, 3});
  const auto info = Inspector::FormatInfo(View());
  const TextRange former = Inspector::TextSelection(List());
  EXPECT_FALSE(Pane().DispatchTimer(Inspector::PollTimer(Pane())));
  EXPECT_EQ(Inspector::TextSelection(List()), former);
  EXPECT_EQ(Inspector::FormatInfo(View()), info);
  stream->SetBusy(false);
  Inspector::DeferActive(Pane()) = false;
  EXPECT_TRUE(Pane().DispatchTimer(Inspector::PollTimer(Pane())));
  EXPECT_EQ(Inspector::TextSelection(List()), TextRange(1, 3));
  EXPECT_NE(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneLifecycle, AnyOtherTimerIsNotThePanes) {
  OpenPanelOn(MakeCaptions({1}));
  EXPECT_FALSE(Pane().DispatchTimer(Inspector::DeferTimer(Pane()) + 1000));
  EXPECT_TRUE(Pane().DispatchTimer(Inspector::PollTimer(Pane())));
}

TEST_F(PaneLifecycle, AReloadThatIsPutOffAgainLeavesItsFlagAndTheTimer) {
  OpenPanelOn(MakeCaptions({1}));
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  Tick(250);
  EXPECT_FALSE(Inspector::DeferActive(Pane()));
  EXPECT_TRUE(Inspector::ReloadPending(Pane()));
  EXPECT_EQ(Due(Inspector::DeferTimer(Pane())), 250);
  stream->SetBusy(false);
  Tick(250);
  EXPECT_FALSE(Inspector::ReloadPending(Pane()));
  EXPECT_FALSE(Due(Inspector::DeferTimer(Pane())));
}

TEST_F(PaneLifecycle, ASwitchThatIsPutOffAgainLeavesItsFlagAndTheTimer) {
  OpenPanelOn(MakeCaptions({1}));
  stream->SetBusy(true);
  SelectClip(nullptr);
  Tick(250);
  EXPECT_FALSE(Inspector::DeferActive(Pane()));
  EXPECT_TRUE(Inspector::SourcePending(Pane()));
  EXPECT_EQ(Due(Inspector::DeferTimer(Pane())), 250);
  stream->SetBusy(false);
  Tick(250);
  EXPECT_TRUE(Inspector::Source(Pane()).IsEmpty());
  EXPECT_FALSE(Due(Inspector::DeferTimer(Pane())));
}

TEST_F(PaneLifecycle, TheRendererIsSetUpInOrder) {
  OpenPanel();
  const std::vector<std::pair<std::string, int>> settings{{"SetLookAhead", 2},    {"SetFields", 0},
                                                          {"SetProgressive", 1},  {"SetQuality", 31},
                                                          {"SetDownsampling", 1}, {"SetPriority", 6}};
  EXPECT_EQ(renderer.settings, settings);
}

TEST_F(PaneLifecycle, ThePaneJoinsItsStationsInOrder) {
  MakeHandler();
  zebcore::trace::Take();
  OpenPanel();
  EXPECT_EQ(StationsOfThePane("messaging::AddListener"),
            (Stations{"test.renderer", MZ::kStation_Info.Text(), BE::kBackendPreferencesChangedStationID.Text(),
                      MZ::kStation_MasterClipActivation.Text(), MZ::kStation_SequenceActivation.Text(),
                      MZ::kStation_TrackItemActivation.Text(), UIF::kStation_SourceTimeDisplayChanged,
                      MZ::kStation_BinActivation.Text(), HSL::kStation_CaptionSelection.Text()}));
}

TEST_F(PaneLifecycle, ThePaneLeavesItsStationsInOrderAndThatOfTheSelectionNotAtAll) {
  OpenPanelOn(MakeCaptions({1}));
  const std::string streamStation = stream.Query<BE::INotification>()->GetStationID().Text();
  const std::string clipStation = clip.Query<BE::INotification>()->GetStationID().Text();
  zebcore::trace::Take();
  Pane().Destroy();
  EXPECT_EQ(StationsOfThePane("messaging::RemoveListener"),
            (Stations{streamStation, clipStation, UIF::kStation_SourceTimeDisplayChanged, "test.renderer",
                      BE::kBackendPreferencesChangedStationID.Text(), MZ::kStation_Info.Text(),
                      MZ::kStation_MasterClipActivation.Text(), MZ::kStation_SequenceActivation.Text(),
                      MZ::kStation_TrackItemActivation.Text(), MZ::kStation_BinActivation.Text(),
                      // With the source that it gives up.
                      streamStation, clipStation}));
  EXPECT_TRUE(zebcore::messaging::IsListening(HSL::kStation_CaptionSelection, &Pane()));
}

TEST_F(PaneLifecycle, ADestroyedPaneHasNoRowsNoSourceAndNoPictures) {
  OpenPanelOn(MakeCaptions({1}));
  CompleteRender(1, Seconds(1), MF::CreateVideoFrame(64, 36, zebmediatypes::kPixelAspectRatio_Square));
  ASSERT_FALSE(Inspector::PreviewCache(Pane()).empty());
  Pane().Destroy();
  EXPECT_FALSE(Inspector::IsCreated(Pane()));
  EXPECT_EQ(Pane().GetRowCount(), 0U);
  EXPECT_EQ(Inspector::FirstVisibleRow(Pane()), -1);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), -2);
  EXPECT_TRUE(Inspector::Source(Pane()).IsEmpty());
  EXPECT_TRUE(Inspector::PreviewCache(Pane()).empty());
}

TEST_F(PaneLifecycle, ThePollFollowsTheCaretInTheText) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  Text(1).SetSelection({1, 3});
  Tick(100);
  EXPECT_EQ(Inspector::TextSelection(List()), TextRange(1, 3));
  const auto info = Inspector::FormatInfo(View());
  Tick(100);
  EXPECT_EQ(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneLifecycle, DestroyingThePanelWithNothingPutOffRemovesThePollAlone) {
  OpenPanelOn(MakeCaptions({1}));
  const auto poll = Inspector::PollTimer(Pane());
  const auto view = Inspector::View(Handler());
  zebcore::trace::Take();
  view->Destroy(UIF::TabView::kDestroy_Closing);
  EXPECT_EQ(RemovedTimers(), (std::vector<std::uint32_t>{poll}));
  EXPECT_FALSE(Due(poll));
}

TEST_F(PaneLifecycle, DestroyingThePanelWithAStepPutOffRemovesItsTimerBeforeThePoll) {
  OpenPanelOn(MakeCaptions({1}));
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  stream->SetBusy(false);
  const auto poll = Inspector::PollTimer(Pane());
  const auto deferred = Inspector::DeferTimer(Pane());
  const auto view = Inspector::View(Handler());
  zebcore::trace::Take();
  view->Destroy(UIF::TabView::kDestroy_Closing);
  EXPECT_EQ(RemovedTimers(), (std::vector<std::uint32_t>{deferred, poll}));
  EXPECT_FALSE(Due(deferred));
}

TEST_F(PaneLifecycle, DestroyingThePanelLeavesItsStations) {
  OpenPanelOn(MakeCaptions({1}));
  const auto streamStation = stream.Query<BE::INotification>()->GetStationID();
  const zebcore::messaging::Listener* pane = &Pane();
  for (const auto& station :
       {MZ::kStation_Info, MZ::kStation_MasterClipActivation, MZ::kStation_SequenceActivation,
        MZ::kStation_TrackItemActivation, MZ::kStation_BinActivation, BE::kBackendPreferencesChangedStationID,
        HSL::kStation_CaptionSelection, streamStation, clip.Query<BE::INotification>()->GetStationID()})
    EXPECT_TRUE(zebcore::messaging::IsListening(station, pane)) << station.Text();
  View().Destroy(UIF::TabView::kDestroy_Closing);
  EXPECT_EQ(zebcore::messaging::CountListeners(MZ::kStation_Info), 0U);
  EXPECT_EQ(zebcore::messaging::CountListeners(HSL::kStation_CaptionSelection), 0U);
  // The handler goes on following.
  EXPECT_EQ(zebcore::messaging::CountListeners(streamStation), 1U);
}

TEST_F(PaneLifecycle, TheContentHasOneRowsHeightToSpareUnlessStacked) {
  OpenPanelOn(MakeCaptions({1, 3}));
  EXPECT_EQ(Pane().GetRowHeight(), 75);
  EXPECT_EQ(Pane().GetContentHeight(false), 225);
  EXPECT_EQ(Pane().GetContentHeight(true), 150);
}

TEST_F(PaneLifecycle, WithoutAStreamThePaneIsUnavailable) {
  OpenPanel();
  EXPECT_TRUE(Pane().IsUnavailable());
  clip = AddClip();
  AddStream(clip, {});
  SelectClip(clip);
  EXPECT_FALSE(Pane().IsUnavailable());
}

} // namespace Captivo::Testing
