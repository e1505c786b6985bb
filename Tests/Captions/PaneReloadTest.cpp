#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Support.h"

namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;

class PaneReload : public PanelTest {
 protected:
  InterfaceRef<BE::MasterClip> AddOtherClip(const Times& begins) {
    const auto other = AddClip(u"Other");
    AddStream(other, MakeCaptions(begins));
    return other;
  }
};

} // namespace

TEST_F(PaneReload, ABusyStreamKeepsRowsSelectionAndScrollPosition) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}), 600, 300);
  Click(3);
  Pane().SetScrollOffset(150);
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  EXPECT_EQ(Begins().size(), 12U);
  EXPECT_EQ(SelectedBegins(), (Times{3}));
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 150U);
  EXPECT_TRUE(Pane().IsUnavailable());
  stream->SetBusy(false);
}

TEST_F(PaneReload, AFurtherReloadOfABusyStreamWaitsAQuarterOfASecondFromThen) {
  OpenPanelOn(MakeCaptions({1}));
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  Tick(200);
  Pane().ReloadCaptions();
  stream->SetBusy(false);
  Tick(200);
  EXPECT_TRUE(Inspector::ReloadPending(Pane()));
  Tick(50);
  EXPECT_FALSE(Inspector::ReloadPending(Pane()));
}

TEST_F(PaneReload, ASourceOfTheSameStreamKeepsTheFilter) {
  OpenPanelOn({MakeCaption(1, 2, u"one"), MakeCaption(3, 4, u"two")});
  Pane().SetFilterText(u"two");
  EXPECT_TRUE(Pane().SetSource(CaptionsSource(InterfaceRef<>(clip))));
  EXPECT_EQ(Inspector::FilterText(Pane()), u"two");
  EXPECT_EQ(Begins(), (Times{3}));
}

TEST_F(PaneReload, ASwitchWaitsWhileTheCaretStandsInTheSelectedRow) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddOtherClip({5});
  FocusText(1);
  EXPECT_FALSE(Pane().SetSource(CaptionsSource(InterfaceRef<>(other))));
  EXPECT_EQ(Begins(), (Times{1, 3}));
  Tick(250);
  EXPECT_EQ(Begins(), (Times{1, 3}));
  Pane().SetFocus();
  Tick(250);
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneReload, ANewSourceStartsUnfiltered) {
  OpenPanelOn({MakeCaption(1, 2, u"one"), MakeCaption(3, 4, u"two")});
  Pane().SetFilterText(u"two");
  SelectClip(AddOtherClip({5}));
  EXPECT_EQ(Inspector::FilterText(Pane()), u"");
}

TEST_F(PaneReload, AFilterThatTakesTheSelectedRowAwaySelectsTheFirstThatIsLeft) {
  OpenPanelOn({MakeCaption(1, 2, u"one"), MakeCaption(3, 4, u"two"), MakeCaption(5, 6, u"two more")});
  Click(1);
  Pane().SetFilterText(u"two");
  EXPECT_EQ(Begins(), (Times{3, 5}));
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneReload, TheRowThatWasSelectedIsSelectedAgainWhenItsClipComesBack) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Click(5);
  SelectClip(AddOtherClip({7}));
  EXPECT_EQ(SelectedBegins(), (Times{7}));
  SelectClip(clip);
  EXPECT_EQ(SelectedBegins(), (Times{5}));
}

TEST_F(PaneReload, AFilterInCapitalsFindsTheSameRows) {
  OpenPanelOn({MakeCaption(1, 2, u"One"), MakeCaption(3, 4, u"two")});
  Pane().SetFilterText(u"ONE");
  EXPECT_EQ(Begins(), (Times{1}));
  Pane().SetFilterText(u"one");
  EXPECT_EQ(Begins(), (Times{1}));
  Pane().SetFilterText(u"");
  EXPECT_EQ(Begins(), (Times{1, 3}));
}

TEST_F(PaneReload, AnEmptyStreamSelectsNothing) {
  OpenPanelOn({});
  EXPECT_EQ(Begins(), Times{});
  EXPECT_EQ(SelectedBegins(), Times{});
  EXPECT_EQ(Inspector::Anchor(List()), kTime_Min);
}

TEST_F(PaneReload, AMergedClipLeavesEverythingAsItIs) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto merged = AddClip(u"Merged", true);
  AddStream(merged, MakeCaptions({5}));
  SelectClip(merged);
  EXPECT_EQ(Begins(), (Times{1, 3}));
}

TEST_F(PaneReload, OfTwoClipsThatAreSelectedDuringOneWaitOnlyTheSecondIsShown) {
  OpenPanelOn(MakeCaptions({1, 3}));
  stream->SetBusy(true);
  SelectClip(AddOtherClip({5}));
  SelectClip(AddOtherClip({7}));
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{7}));
  EXPECT_FALSE(Inspector::SourcePending(Pane()));
  EXPECT_TRUE(Inspector::PendingSource(Pane()).IsEmpty());
}

TEST_F(PaneReload, AFormatOfTheClipIsChosenByItsPlace) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto second = AddStream(clip, MakeCaptions({5}), zebcaptioning::kStreamFormat_608_CC1 + 1);
  Pane().SelectStreamFormat(1);
  EXPECT_EQ(Begins(), (Times{5}));
  const zebcore::messaging::Listener* pane = &Pane();
  EXPECT_TRUE(zebcore::messaging::IsListening(second.Query<BE::INotification>()->GetStationID(), pane));
  EXPECT_FALSE(zebcore::messaging::IsListening(stream.Query<BE::INotification>()->GetStationID(), pane));
}

TEST_F(PaneReload, AReloadGivesTheCaretBackToTheTextThatHadIt) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  Text(1).SetSelection({2, 4});
  Tick(100);
  Pane().ReloadCaptions();
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_EQ(Text(1).GetSelection(), TextRange(2, 4));
}

TEST_F(PaneReload, WithoutAStreamNewCaptionsHaveNoFormat) {
  OpenPanelOn(MakeCaptions({1}));
  SelectClip(nullptr);
  EXPECT_EQ(Begins(), Times{});
  EXPECT_EQ(Inspector::Source(Pane()).GetStreamFormat(), 0U);
}

} // namespace Captivo::Testing
