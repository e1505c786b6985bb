#include "BE/Preferences.h"
#include "Captions/contracts/Stations.h"
#include "Support.h"
#include "zebui/NodeManager.h"

namespace Captivo::Testing {

namespace {

class PaneLifecycle : public PanelTest {
 protected:
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
  EXPECT_TRUE(Inspector::DeferActive(Pane()));
  EXPECT_TRUE(Inspector::ReloadPending(Pane()));
  EXPECT_TRUE(Due(Inspector::DeferTimer(Pane())));
  manager->PopModalWindow();
  Tick(250);
  EXPECT_FALSE(Inspector::DeferActive(Pane()));
  EXPECT_FALSE(Inspector::ReloadPending(Pane()));
  EXPECT_FALSE(Due(Inspector::DeferTimer(Pane())));
}

TEST_F(PaneLifecycle, ThePollPublishesNothingWhileAStepIsPutOff) {
  OpenPanelOn(MakeCaptions({1}));
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  const auto info = Inspector::FormatInfo(View());
  EXPECT_FALSE(Pane().DispatchTimer(Inspector::PollTimer(Pane())));
  EXPECT_EQ(Inspector::FormatInfo(View()), info);
  stream->SetBusy(false);
}

TEST_F(PaneLifecycle, AReloadThatIsPutOffAgainLeavesItsFlagAndTheTimer) {
  OpenPanelOn(MakeCaptions({1}));
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  Tick(250);
  EXPECT_FALSE(Inspector::DeferActive(Pane()));
  EXPECT_TRUE(Inspector::ReloadPending(Pane()));
  EXPECT_TRUE(Due(Inspector::DeferTimer(Pane())));
  stream->SetBusy(false);
  Tick(250);
  EXPECT_FALSE(Inspector::ReloadPending(Pane()));
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
  EXPECT_EQ(TakeCalls("UI_NodeManager::RemoveTimer").size(), 1U);
  EXPECT_FALSE(Due(poll));
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
