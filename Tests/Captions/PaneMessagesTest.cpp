#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Support.h"

namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;
using zebcore::messaging::BroadcastMessage;

const Times kTwelve{1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23};

class PaneMessages : public PanelTest {
 protected:
  void ScrollOneRow() {
    View().DispatchMouseWheel({10, 100}, UIF::KeyModifiers(), -2); // a notch is a little less than a row
    ASSERT_EQ(Inspector::ScrollOffset(Pane()), 75U);
  }
  ImmutableString Station() { return stream.Query<BE::INotification>()->GetStationID(); }
  template <class M> void SendCaptions(const std::vector<boost::intrusive_ptr<Caption>>& captions) {
    M message;
    for (const auto& caption : captions)
      message.captions.emplace_back(stream, caption);
    BroadcastMessage(Station(), message);
  }
};

} // namespace

TEST_F(PaneMessages, AnAddedCaptionThatHasItsRowAlreadyPublishesTheFormatAndNothingElse) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Inspector::LastVisibleRow(Pane()) = 0; // a refresh would work it out anew
  Inspector::ResetScrollPending(Pane()) = true;
  const auto info = Inspector::FormatInfo(View());
  zebcore::trace::Take();
  SendCaptions<BE::CaptionsAddedMessage>({stream->FindByBegin(Seconds(1))});
  EXPECT_EQ(TakeCalls("TabView::UpdateStackedDimensions"), std::vector<std::string>{});
  EXPECT_EQ(Begins(), (Times{1, 3, 5}));
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 0);
  EXPECT_TRUE(Inspector::ResetScrollPending(Pane()));
  EXPECT_NE(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneMessages, AnAddedCaptionThatThePaneMadeItselfAddsNoSecondRow) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(3);
  zebcore::trace::Take();
  Pane().AddNewCaption();
  EXPECT_EQ(TakeCalls("TabView::UpdateStackedDimensions").size(), 1U);
  EXPECT_EQ(Begins(), (Times{1, 3, 4}));
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 2);
}

TEST_F(PaneMessages, AnEmptyListOfAddedCaptionsPublishesTheFormat) {
  OpenPanelOn(MakeCaptions({1}));
  const auto info = Inspector::FormatInfo(View());
  SendCaptions<BE::CaptionsAddedMessage>({});
  EXPECT_NE(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneMessages, AnAddedCaptionScrollsToTheTopAndTakesTheControlsOfTheRowThatItPushedOut) {
  OpenPanelOn(MakeCaptions(kTwelve), 600, 300);
  const double last = Begins()[static_cast<std::size_t>(Inspector::LastVisibleRow(Pane()))];
  ASSERT_TRUE(Row(last)->HasControls());
  Click(3);
  ScrollOneRow();
  SendCaptions<BE::CaptionsAddedMessage>({MakeCaption(4, 4.5)});
  EXPECT_EQ(Inspector::ScrollPosition(View()), 0);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 0U);
  EXPECT_FALSE(Inspector::ResetScrollPending(Pane()));
  EXPECT_TRUE(Row(4)->HasControls());
  EXPECT_FALSE(Row(last)->HasControls());
}

TEST_F(PaneMessages, AnAddedCaptionMovesTheEndOfTheRowsInViewAlong) {
  OpenPanelOn(MakeCaptions(kTwelve), 600, 300);
  const double last = Begins()[static_cast<std::size_t>(Inspector::LastVisibleRow(Pane()))];
  SendCaptions<BE::CaptionsAddedMessage>({MakeCaption(2, 3)});
  EXPECT_FALSE(Row(last)->HasControls());
}

TEST_F(PaneMessages, AnAddedCaptionBecomesARow) {
  OpenPanelOn(MakeCaptions({1, 3}));
  SendCaptions<BE::CaptionsAddedMessage>({MakeCaption(2, 3)});
  EXPECT_EQ(Begins(), (Times{1, 2, 3}));
  EXPECT_TRUE(Row(2)->HasControls());
}

TEST_F(PaneMessages, RowsThatAreGoneAlreadyRefreshNothing) {
  OpenPanelOn(MakeCaptions({1, 3}));
  BE::CaptionsRemovedMessage message;
  message.captions.emplace_back(stream, Seconds(9));
  Inspector::LastVisibleRow(Pane()) = 0;
  Inspector::ResetScrollPending(Pane()) = true;
  const auto info = Inspector::FormatInfo(View());
  zebcore::trace::Take();
  BroadcastMessage(Station(), message);
  EXPECT_EQ(TakeCalls("TabView::UpdateStackedDimensions"), std::vector<std::string>{});
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 0);
  EXPECT_TRUE(Inspector::ResetScrollPending(Pane()));
  EXPECT_EQ(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneMessages, RowsThatThePaneTookOutItselfRefreshOnce) {
  OpenPanelOn(MakeCaptions({1, 3}));
  zebcore::trace::Take();
  Pane().DeleteSelectedCaptions();
  EXPECT_EQ(TakeCalls("TabView::UpdateStackedDimensions").size(), 1U);
  EXPECT_TRUE(Inspector::ResetScrollPending(Pane()));
}

TEST_F(PaneMessages, ARemovedCaptionTakesItsRowAlong) {
  OpenPanelOn(MakeCaptions({1, 3}));
  BE::CaptionsRemovedMessage message;
  message.captions.emplace_back(stream, Seconds(1));
  BroadcastMessage(Station(), message);
  EXPECT_EQ(Begins(), (Times{3}));
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneMessages, ARemovedCaptionScrollsToTheTop) {
  OpenPanelOn(MakeCaptions(kTwelve), 600, 300);
  Click(3);
  ScrollOneRow();
  BE::CaptionsRemovedMessage message;
  message.captions.emplace_back(stream, Seconds(23));
  BroadcastMessage(Station(), message);
  EXPECT_EQ(Inspector::ScrollPosition(View()), 0);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 0U);
}

TEST_F(PaneMessages, AChangedCaptionThatTheListDoesNotKnowMakesARowAndKeepsTheScrollPosition) {
  OpenPanelOn(MakeCaptions(kTwelve), 600, 300);
  Click(3);
  ScrollOneRow();
  Inspector::ResetScrollPending(Pane()) = false;
  const int last = Inspector::LastVisibleRow(Pane());
  const int position = Inspector::ScrollPosition(View());
  SendCaptions<BE::CaptionsChangedMessage>({MakeCaption(30, 31)});
  EXPECT_EQ(Begins().back(), 30);
  EXPECT_EQ(Inspector::ScrollPosition(View()), position);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 75U);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), last);
}

TEST_F(PaneMessages, AChangedCaptionThatTheListDoesNotKnowLeavesTheEndOfTheRowsInViewWhereItWas) {
  OpenPanelOn(MakeCaptions(kTwelve), 600, 300);
  const double last = Begins()[static_cast<std::size_t>(Inspector::LastVisibleRow(Pane()))];
  Inspector::ResetScrollPending(Pane()) = false;
  SendCaptions<BE::CaptionsChangedMessage>({MakeCaption(2, 3)});
  ASSERT_TRUE(Row(2)->HasControls());
  // The row behind that end was not looked at.
  EXPECT_TRUE(Row(last)->HasControls());
}

TEST_F(PaneMessages, AChangedCaptionThatTheListKnowsIsReadAgainAndTheFormatPublished) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Inspector::LastVisibleRow(Pane()) = 0;
  const auto info = Inspector::FormatInfo(View());
  const auto caption = stream->FindByBegin(Seconds(1));
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(new zebcaptioning::CaptionState(*caption->GetState()));
  state->text = u"Other";
  caption->SetState(zebcaptioning::CaptionStatePtr(state));
  zebcore::trace::Take();
  SendCaptions<BE::CaptionsChangedMessage>({caption});
  EXPECT_EQ(TakeCalls("TabView::UpdateStackedDimensions"), std::vector<std::string>{});
  EXPECT_EQ(Text(1).GetValue(), u"Other");
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 0);
  EXPECT_NE(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneMessages, EntriesOfAnotherStreamAreSkipped) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddStream(AddClip(), MakeCaptions({1}));
  BE::CaptionsRemovedMessage message;
  message.captions.emplace_back(other, Seconds(1));
  BroadcastMessage(Station(), message);
  EXPECT_EQ(Begins(), (Times{1, 3}));
}

TEST_F(PaneMessages, AShiftInTheStreamReachesRowsAndSelection) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Click(3);
  project->ShiftCaptions(stream, Seconds(2), Seconds(10), Seconds(0.5), u"Shift");
  EXPECT_EQ(Begins(), (Times{1, 3.5, 5.5}));
  EXPECT_EQ(SelectedBegins(), (Times{3.5}));
}

TEST_F(PaneMessages, AShiftOfTheWholeStreamTakesTheSelectionAlongHoweverFarItGoes) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Click(3);
  Click(5, UIF::KeyModifiers::kToggle);
  project->ShiftCaptions(stream, kTime_Min, kTime_Max, Seconds(20), u"Shift");
  EXPECT_EQ(SelectedBegins(), (Times{23, 25}));
}

TEST_F(PaneMessages, AShiftThatTheStreamReportsLeavesScrollFormatAndBroadcastAlone) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  const auto info = Inspector::FormatInfo(View());
  Inspector::LastVisibleRow(Pane()) = 0;
  Inspector::ResetScrollPending(Pane()) = true;
  BE::CaptionsMovedMessage message;
  message.ranges.push_back({stream, Seconds(2), Seconds(10), Seconds(1)});
  zebcore::trace::Take();
  BroadcastMessage(Station(), message);
  EXPECT_EQ(TakeCalls("messaging::PostMessageToUIThread"), std::vector<std::string>{});
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 2); // the rows in view were refreshed
  EXPECT_TRUE(Inspector::ResetScrollPending(Pane()));
  EXPECT_EQ(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneMessages, TheHostsWishToCommitClosesWhatIsOpen) {
  OpenPanelOn({MakeCaption(1, 2, u"One")});
  const auto steps = project->GetUndoNames().size();
  FocusText(1);
  Text(1).SetValue(u"Other", true);
  BroadcastMessage(HSL::kStation_CaptionSelection, HSL::CaptionCommitEditsMessage());
  EXPECT_EQ(project->GetUndoNames().size(), steps + 1);
}

TEST_F(PaneMessages, UndoReachesTheRowsAsTheStreamsOwnReport) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(3);
  Pane().DeleteSelectedCaptions();
  EXPECT_EQ(Begins(), (Times{1}));
  ASSERT_TRUE(project->Undo());
  EXPECT_EQ(Begins(), (Times{1, 3}));
  ASSERT_TRUE(project->Redo());
  EXPECT_EQ(Begins(), (Times{1}));
}

} // namespace Captivo::Testing
