#include <algorithm>

#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Support.h"
#include "zebui/NodeManager.h"

// Messages in states and mixtures other than the usual: nothing on show, several streams, a step put off.
namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;
using Captions = std::vector<boost::intrusive_ptr<Caption>>;

class PaneMessagesEdge : public PanelTest {
 protected:
  template <class M> M Naming(const InterfaceRef<BE::CaptioningStream>& ofStream, const Captions& captions) {
    M message;
    for (const auto& caption : captions)
      message.captions.emplace_back(ofStream, caption);
    return message;
  }
  BE::CaptionsRemovedMessage Removed(const InterfaceRef<BE::CaptioningStream>& ofStream, const Times& begins) {
    BE::CaptionsRemovedMessage message;
    for (const double begin : begins)
      message.captions.emplace_back(ofStream, Seconds(begin));
    return message;
  }
  std::size_t CountCalls(const std::string& name, const std::string& ofClass) {
    std::size_t count = 0;
    for (const auto& call : zebcore::trace::Take()) {
      if (call.call == name && call.args.contains("class") && call.args["class"] == ofClass)
        ++count;
    }
    return count;
  }
  InterfaceRef<BE::MasterClip> AddOtherClip(const Times& begins) {
    const auto other = AddClip(u"Other");
    AddStream(other, MakeCaptions(begins));
    return other;
  }
  std::optional<std::int64_t> Due() {
    return zebui::ui::UI_NodeManager::Get()->GetTimeUntilDue(Inspector::DeferTimer(Pane()));
  }
};

} // namespace

TEST_F(PaneMessagesEdge, WithNothingOnShowCaptionsThatComeGoAndChangeDoNothing) {
  OpenPanel();
  stream = AddStream(AddClip(), MakeCaptions({1}));
  const auto info = Inspector::FormatInfo(View());
  BE::CaptionsMovedMessage moved;
  moved.ranges.push_back({stream, kTime_Min, kTime_Max, Seconds(1)});
  zebcore::trace::Take();
  Pane().HandleMessage(Naming<BE::CaptionsAddedMessage>(stream, MakeCaptions({1})));
  Pane().HandleMessage(Naming<BE::CaptionsAddedMessage>(nullptr, MakeCaptions({2})));
  Pane().HandleMessage(Naming<BE::CaptionsChangedMessage>(stream, MakeCaptions({1})));
  Pane().HandleMessage(Removed(stream, {1}));
  Pane().HandleMessage(moved);
  EXPECT_EQ(Pane().GetRowCount(), 0U);
  EXPECT_EQ(Inspector::FormatInfo(View()), info);
  EXPECT_TRUE(zebcore::trace::Take().empty());
}

TEST_F(PaneMessagesEdge, OfAMessageThatNamesSeveralStreamsOnlyTheEntriesOfTheOneOnShowAreTaken) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddStream(AddClip(), MakeCaptions({5}));
  auto added = Naming<BE::CaptionsAddedMessage>(other, MakeCaptions({7}));
  added.captions.emplace_back(stream, MakeCaption(9, 10));
  added.captions.emplace_back(other, MakeCaption(11, 12));
  added.captions.emplace_back(nullptr, MakeCaption(13, 14));
  Pane().HandleMessage(added);
  EXPECT_EQ(Begins(), (Times{1, 3, 9}));
  auto changed = Naming<BE::CaptionsChangedMessage>(other, MakeCaptions({15}));
  changed.captions.emplace_back(stream, MakeCaption(17, 18));
  Pane().HandleMessage(changed);
  EXPECT_EQ(Begins(), (Times{1, 3, 9, 17}));
  auto removed = Removed(other, {1, 3});
  removed.captions.emplace_back(stream, Seconds(9));
  removed.captions.emplace_back(nullptr, Seconds(1));
  Pane().HandleMessage(removed);
  EXPECT_EQ(Begins(), (Times{1, 3, 17}));
}

TEST_F(PaneMessagesEdge, EachNewRowMovesTheEndOfTheRowsInViewByOne) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11, 13, 15, 17, 19}), 600, 300);
  const auto known = stream->FindByBegin(Seconds(1));
  const auto end = static_cast<std::size_t>(Inspector::LastVisibleRow(Pane()));
  ASSERT_GT(end, 1U);
  List().ClearSelection(); // nothing to scroll to
  const double last = Begins()[end];
  const double lastButOne = Begins()[end - 1];
  Pane().HandleMessage(Naming<BE::CaptionsAddedMessage>(stream, {MakeCaption(0, 0.2), known, MakeCaption(0.5, 1)}));
  // Both were pushed out of view, and both were looked at.
  EXPECT_FALSE(Row(last)->HasControls());
  EXPECT_FALSE(Row(lastButOne)->HasControls());
}

TEST_F(PaneMessagesEdge, SeveralNewRowsRefreshThePanelOnce) {
  OpenPanelOn(MakeCaptions({1}));
  zebcore::trace::Take();
  Pane().HandleMessage(Naming<BE::CaptionsAddedMessage>(stream, MakeCaptions({3, 5, 7})));
  EXPECT_EQ(TakeCalls("TabView::UpdateStackedDimensions").size(), 1U);
  Pane().HandleMessage(Removed(stream, {3, 5, 99}));
  EXPECT_EQ(TakeCalls("TabView::UpdateStackedDimensions").size(), 1U);
  Pane().HandleMessage(Naming<BE::CaptionsChangedMessage>(stream, MakeCaptions({9, 11})));
  EXPECT_EQ(TakeCalls("TabView::UpdateStackedDimensions").size(), 1U);
  EXPECT_EQ(Begins(), (Times{1, 7, 9, 11}));
}

TEST_F(PaneMessagesEdge, AChangeOfKnownCaptionsPaintsThePaneAnew) {
  OpenPanelOn(MakeCaptions({1}));
  zebcore::trace::Take();
  Pane().HandleMessage(Naming<BE::CaptionsChangedMessage>(stream, {stream->FindByBegin(Seconds(1))}));
  EXPECT_EQ(CountCalls("View::Invalidate", "Captivo::CaptionsPane"), 1U);
  Pane().HandleMessage(Naming<BE::CaptionsAddedMessage>(stream, {stream->FindByBegin(Seconds(1))}));
  EXPECT_EQ(CountCalls("View::Invalidate", "Captivo::CaptionsPane"), 0U);
}

TEST_F(PaneMessagesEdge, AnEmptyListOfRemovedOrChangedCaptions) {
  OpenPanelOn(MakeCaptions({1}));
  auto info = Inspector::FormatInfo(View());
  Pane().HandleMessage(BE::CaptionsRemovedMessage());
  EXPECT_EQ(Inspector::FormatInfo(View()), info);
  Pane().HandleMessage(BE::CaptionsChangedMessage());
  EXPECT_NE(Inspector::FormatInfo(View()), info);
}

TEST_F(PaneMessagesEdge, AShiftRefreshesTheRowsInViewEvenIfItIsOneOfAnotherStream) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(3);
  const auto other = AddStream(AddClip(), MakeCaptions({3}));
  BE::CaptionsMovedMessage message;
  message.ranges.push_back({other, kTime_Min, kTime_Max, Seconds(1)});
  Inspector::LastVisibleRow(Pane()) = 0;
  Pane().HandleMessage(message);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 1);
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneMessagesEdge, EveryRangeOfAShiftIsTaken) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Click(1);
  Click(5, UIF::KeyModifiers::kToggle);
  const auto set = [&](double begin, double newBegin) {
    const auto caption = stream->FindByBegin(Seconds(begin));
    const boost::intrusive_ptr<zebcaptioning::CaptionState> state(
        new zebcaptioning::CaptionState(*caption->GetState()));
    state->begin = Seconds(newBegin);
    caption->SetState(zebcaptioning::CaptionStatePtr(state));
  };
  set(1, 1.5);
  set(5, 5.5);
  BE::CaptionsMovedMessage message;
  message.ranges.push_back({stream, Seconds(0.5), Seconds(1.5), Seconds(0.5)});
  message.ranges.push_back({stream, Seconds(4), Seconds(6), Seconds(0.5)});
  Pane().HandleMessage(message);
  EXPECT_EQ(SelectedBegins(), (Times{1.5, 5.5}));
}

TEST_F(PaneMessagesEdge, WhileAStepIsPutOffTheRowsThatStandAreCorrectedAllTheSame) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddOtherClip({5});
  const auto otherStream = other->GetStreams().front();
  stream->SetBusy(true);
  SelectClip(other);
  ASSERT_TRUE(Inspector::DeferActive(Pane()));
  Pane().HandleMessage(Naming<BE::CaptionsAddedMessage>(stream, MakeCaptions({7})));
  Pane().HandleMessage(Naming<BE::CaptionsAddedMessage>(otherStream, MakeCaptions({9})));
  EXPECT_EQ(Begins(), (Times{1, 3, 7}));
  Pane().HandleMessage(Removed(stream, {1}));
  Pane().HandleMessage(Removed(otherStream, {3}));
  EXPECT_EQ(Begins(), (Times{3, 7}));
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneMessagesEdge, WhileASwitchWaitsTheClipThatClosesIsComparedWithTheOneOnShow) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddOtherClip({5});
  stream->SetBusy(true);
  SelectClip(other);
  MZ::MasterClipClosedMessage message;
  message.clip = other;
  Pane().HandleMessage(message);
  EXPECT_TRUE(Inspector::PendingSource(Pane()).GetMasterClip() == other);
  message.clip = clip;
  Pane().HandleMessage(message);
  EXPECT_TRUE(Inspector::PendingSource(Pane()).IsEmpty());
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), Times{});
}

TEST_F(PaneMessagesEdge, AudioTransitionsAndNothingAimAWaitingSwitchAtNothing) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddOtherClip({5});
  stream->SetBusy(true);
  const auto aims = [&](const zebcore::messaging::Message& message) {
    SelectClip(other);
    ASSERT_TRUE(Inspector::PendingSource(Pane()).GetMasterClip() == other);
    const auto due = Due();
    Tick(10);
    Pane().HandleMessage(message);
    EXPECT_TRUE(Inspector::PendingSource(Pane()).IsEmpty());
    EXPECT_EQ(Due(), *due - 10);
  };
  aims(MZ::AudioTrackItemInfoMessage());
  aims(MZ::TransitionTrackItemInfoMessage());
  aims(MZ::EmptyTrackItemInfoMessage());
  aims(MZ::NothingInfoMessage());
  MZ::VideoTrackItemInfoMessage video;
  video.info.clip = other;
  Pane().HandleMessage(video);
  EXPECT_TRUE(Inspector::PendingSource(Pane()).GetMasterClip() == other);
  stream->SetBusy(false);
}

TEST_F(PaneMessagesEdge, ASequenceThatIsSelectedWhileASwitchWaitsIsPutOffInItsOwnRight) {
  OpenPanelOn(MakeCaptions({1, 3}));
  stream->SetBusy(true);
  SelectClip(AddOtherClip({5}));
  Tick(200);
  Pane().HandleMessage(MZ::SequenceSelectedMessage());
  EXPECT_TRUE(Inspector::PendingSource(Pane()).IsEmpty());
  EXPECT_EQ(Due(), 250);
  stream->SetBusy(false);
}

TEST_F(PaneMessagesEdge, ATrackItemThatIsNoneShowsNothing) {
  OpenPanelOn(MakeCaptions({1, 3}));
  HSL::SourceClipSelectedMessage message;
  message.kind = 2;
  message.clip = clip;
  Pane().HandleMessage(message);
  EXPECT_EQ(Begins(), Times{});
  EXPECT_EQ(Inspector::Source(Pane()).GetKind(), CaptionsSource::kKind_TrackItem);
}

TEST_F(PaneMessagesEdge, ATrackItemOfTheHostGoesPastASwitchThatWaits) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddOtherClip({5});
  const auto third = AddOtherClip({7});
  const auto sequence = project->AddSequence(u"Sequence", zebmediatypes::kFrameRate_25, zebmediatypes::FrameRate(),
                                             {{third, Seconds(0)}});
  stream->SetBusy(true);
  SelectClip(other);
  Tick(100);
  HSL::SourceClipSelectedMessage message;
  message.kind = 2;
  message.item = sequence->GetItems().front();
  Pane().HandleMessage(message);
  EXPECT_EQ(Due(), 250);
  EXPECT_EQ(Inspector::PendingSource(Pane()).GetKind(), CaptionsSource::kKind_TrackItem);
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), (Times{7}));
}

TEST_F(PaneMessagesEdge, ATrackItemOfTheHostDoesNotRememberWhatIsLeft) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto third = AddOtherClip({7});
  const auto sequence = project->AddSequence(u"Sequence", zebmediatypes::kFrameRate_25, zebmediatypes::FrameRate(),
                                             {{third, Seconds(0)}});
  Click(3);
  HSL::SourceClipSelectedMessage message;
  message.kind = 2;
  message.item = sequence->GetItems().front();
  Pane().HandleMessage(message);
  ASSERT_EQ(Begins(), (Times{7}));
  SelectClip(clip);
  EXPECT_EQ(SelectedBegins(), (Times{1}));
}

TEST_F(PaneMessagesEdge, AClipThatWasOpenedIsShownLikeOneThatWasSelected) {
  OpenPanelOn(MakeCaptions({1, 3}));
  MZ::MasterClipSelectedMessage message;
  message.clip = AddOtherClip({5});
  message.opened = true;
  Pane().HandleMessage(message);
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneMessagesEdge, TheClipOnShowThatIsSelectedAgainReadsNothing) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(3);
  zebcore::trace::Take();
  SelectClip(clip);
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::"), std::vector<std::string>{});
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneMessagesEdge, ADisplayThatIsChosenReachesTheRowsThatHaveControlsAlone) {
  Times begins;
  for (int i = 0; i < 20; ++i)
    begins.push_back(2 * i + 1);
  OpenPanelOn(MakeCaptions(begins), 600, 300);
  ASSERT_FALSE(Row(39)->HasControls());
  zebcore::trace::Take();
  UIF::HotTimecodeVideoTimeDisplayChangedMessage message;
  message.display = zebmediatypes::kTimeDisplay_Frames;
  zebcore::messaging::BroadcastMessage(UIF::kStation_SourceTimeDisplayChanged, message);
  EXPECT_EQ(Row(1)->GetInControl().GetText(), u"25");
  EXPECT_EQ(Row(1)->GetOutControl().GetText(), u"50");
  EXPECT_FALSE(Row(39)->HasControls());
}

} // namespace Captivo::Testing
