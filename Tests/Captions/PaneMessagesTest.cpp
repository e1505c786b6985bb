#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Support.h"

namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;
using zebcore::messaging::BroadcastMessage;

class PaneMessages : public PanelTest {
 protected:
  ImmutableString Station() { return stream.Query<BE::INotification>()->GetStationID(); }
  template <class M> void SendCaptions(const std::vector<boost::intrusive_ptr<Caption>>& captions) {
    M message;
    for (const auto& caption : captions)
      message.captions.emplace_back(stream, caption);
    BroadcastMessage(Station(), message);
  }
};

} // namespace

TEST_F(PaneMessages, ACaptionThatHasItsRowAlreadyAddsNone) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const int last = Inspector::LastVisibleRow(Pane());
  Inspector::ResetScrollPending(Pane()) = false;
  SendCaptions<BE::CaptionsAddedMessage>({stream->FindByBegin(Seconds(1))});
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), last);
  EXPECT_FALSE(Inspector::ResetScrollPending(Pane()));
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
  zebcore::trace::Take();
  BroadcastMessage(Station(), message);
  EXPECT_EQ(TakeCalls("TabView::UpdateStackedDimensions"), std::vector<std::string>{});
  EXPECT_EQ(Begins(), (Times{1, 3}));
}

TEST_F(PaneMessages, ARemovedCaptionTakesItsRowAlong) {
  OpenPanelOn(MakeCaptions({1, 3}));
  BE::CaptionsRemovedMessage message;
  message.captions.emplace_back(stream, Seconds(1));
  BroadcastMessage(Station(), message);
  EXPECT_EQ(Begins(), (Times{3}));
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneMessages, AChangedCaptionThatTheListDoesNotKnowMakesARowAndKeepsTheScrollPosition) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}), 600, 300);
  Click(1);
  Pane().SetScrollOffset(75);
  Inspector::ResetScrollPending(Pane()) = false;
  SendCaptions<BE::CaptionsChangedMessage>({MakeCaption(30, 31)});
  EXPECT_EQ(Begins().back(), 30);
  EXPECT_FALSE(Inspector::ResetScrollPending(Pane()));
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
  project->ShiftCaptions(stream, Seconds(2), Seconds(10), Seconds(20), u"Shift");
  EXPECT_EQ(Begins(), (Times{1, 23, 25}));
}

TEST_F(PaneMessages, ClosingAnotherClipChangesNothingAndClosingThisOneEmptiesThePane) {
  OpenPanelOn(MakeCaptions({1, 3}));
  MZ::MasterClipClosedMessage message;
  message.clip = AddClip();
  BroadcastMessage(MZ::kStation_MasterClipActivation, message);
  EXPECT_EQ(Begins(), (Times{1, 3}));
  message.clip = clip;
  BroadcastMessage(MZ::kStation_MasterClipActivation, message);
  EXPECT_EQ(Begins(), Times{});
}

TEST_F(PaneMessages, SelectingABinWhileASwitchWaitsTakesTheWaitingOnesPlace) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddClip();
  AddStream(other, MakeCaptions({5}));
  stream->SetBusy(true);
  SelectClip(other);
  EXPECT_TRUE(Inspector::PendingSource(Pane()).GetMasterClip() == other);
  BroadcastMessage(MZ::kStation_BinActivation, MZ::BinSelectedMessage());
  EXPECT_TRUE(Inspector::SourcePending(Pane()));
  EXPECT_TRUE(Inspector::PendingSource(Pane()).IsEmpty());
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), Times{});
}

TEST_F(PaneMessages, AnAudioTrackItemEmptiesThePaneEvenIfItsClipHasCaptions) {
  OpenPanelOn(MakeCaptions({1, 3}));
  MZ::AudioTrackItemInfoMessage message;
  message.info.clip = clip;
  BroadcastMessage(MZ::kStation_Info, message);
  EXPECT_EQ(Begins(), Times{});
}

TEST_F(PaneMessages, AVideoTrackItemShowsTheCaptionsOfItsClip) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddClip();
  AddStream(other, MakeCaptions({5}));
  MZ::VideoTrackItemInfoMessage message;
  message.info.clip = other;
  BroadcastMessage(MZ::kStation_Info, message);
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneMessages, ASelectedSequenceOrNothingEmptiesThePane) {
  OpenPanelOn(MakeCaptions({1, 3}));
  BroadcastMessage(MZ::kStation_SequenceActivation, MZ::SequenceSelectedMessage());
  EXPECT_EQ(Begins(), Times{});
  SelectClip(clip);
  BroadcastMessage(MZ::kStation_Info, MZ::NothingInfoMessage());
  EXPECT_EQ(Begins(), Times{});
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
