#include <functional>

#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/StreamMessages.h"
#include "Support.h"

// What reaches the pane and is none of its business, and a pane that has nobody above it.
namespace Captivo::Testing {

namespace {

class PaneStray : public PanelTest {
 protected:
  // Of a caption of the stream on show, without a word to anybody.
  void ChangeEnd(double begin, double end) {
    const auto caption = stream->FindByBegin(Seconds(begin));
    const boost::intrusive_ptr<zebcaptioning::CaptionState> state(
        new zebcaptioning::CaptionState(*caption->GetState()));
    state->end = Seconds(end);
    caption->SetState(zebcaptioning::CaptionStatePtr(state));
  }
};

class LayoutRoot : public UIF::SubView {
 public:
  LayoutRoot() : SubView(nullptr) {}
  UIF::ViewBase* GetLayoutParent() const override { return const_cast<LayoutRoot*>(this); }
};

} // namespace

TEST_F(PaneStray, AMessageThatThePaneDoesNotKnowClosesNoEdit) {
  OpenPanelOn({MakeCaption(1, 2, u"One")});
  zebcore::trace::Take();
  Pane().HandleMessage(MZ::ClosedCaptionsOpenedMessage());
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::"), std::vector<std::string>{});
}

TEST_F(PaneStray, AnEntryWithoutACaptionIsPassedOver) {
  OpenPanelOn(MakeCaptions({1}));
  BE::CaptionsAddedMessage added;
  BE::CaptionsChangedMessage changed;
  for (const auto& caption : {boost::intrusive_ptr<Caption>(), MakeCaption(5, 6)}) {
    added.captions.emplace_back(stream, caption);
    changed.captions.emplace_back(stream, caption);
  }
  Pane().HandleMessage(added);
  Pane().HandleMessage(changed);
  EXPECT_EQ(Begins(), (std::vector<double>{1, 5}));
}

TEST_F(PaneStray, AShiftOfAnotherStreamReadsNoSelectedRowAgain) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}), 600, 300);
  const auto other = AddStream(AddClip(), MakeCaptions({1}));
  Pane().SetScrollOffset(75 * 8); // rows in view are read again in any case
  ChangeEnd(1, 2.4);
  BE::CaptionsMovedMessage message;
  message.ranges.push_back({other, kTime_Min, kTime_Max, Seconds(1)});
  Pane().HandleMessage(message);
  EXPECT_EQ(Row(1)->GetEndTime(), Seconds(2));
  message.ranges.front().stream = stream;
  Pane().HandleMessage(message);
  EXPECT_EQ(Row(1)->GetEndTime(), Seconds(2.4));
}

TEST_F(PaneStray, ThePaneHandsTheQuestionForItsLayoutToTheViewAboveIt) {
  OpenPanel();
  LayoutRoot root;
  root.Create(&View(), {0, 0, 100, 100});
  CaptionsPane pane(nullptr);
  pane.Create(&root, {0, 0, 100, 100});
  EXPECT_EQ(pane.GetLayoutParent(), &root);
  pane.Destroy();
  root.Destroy();
}

TEST_F(PaneStray, AStepThatWasPutOffRunsInAPaneThatHasNoViewAboveIt) {
  CaptionsPane pane(nullptr);
  Inspector::ReloadPending(pane) = true;
  Inspector::DeferActive(pane) = true;
  EXPECT_TRUE(pane.DispatchTimer(Inspector::DeferTimer(pane)));
  EXPECT_FALSE(Inspector::ReloadPending(pane));
  EXPECT_FALSE(Inspector::DeferActive(pane));
}

TEST_F(PaneStray, APaneThatHasNoViewAboveItIsPaintedAnewAfterEveryClick) {
  OpenPanelOn(MakeCaptions({1, 3}));
  CaptionsPane pane(nullptr);
  pane.Create(&View(), {0, 0, 100, 300});
  ASSERT_TRUE(pane.SetSource(Inspector::Source(Pane())));
  CaptionsItemList& list = Inspector::List(pane);
  const auto paintsAfter = [&](const std::function<void()>& step) {
    zebcore::trace::Take();
    step();
    return TakeCalls("View::Invalidate").size();
  };
  EXPECT_EQ(paintsAfter([&] { pane.DispatchLeftButtonUp({10, 85}, UIF::KeyModifiers()); }), 1U);
  EXPECT_EQ(list.GetSelectedTimes(), std::vector<TickTime>{Seconds(3)});
  EXPECT_EQ(paintsAfter([&] { pane.DispatchLeftButtonUp({10, 285}, UIF::KeyModifiers()); }), 1U);
  EXPECT_EQ(list.GetSelectedCount(), 0U);
  EXPECT_EQ(paintsAfter([&] { pane.SelectCaptionAtTime(Seconds(1)); }), 1U);
  EXPECT_EQ(list.GetSelectedTimes(), std::vector<TickTime>{Seconds(1)});
  pane.Destroy();
}

TEST_F(PaneStray, ACaptionThatTheHostSelectsIsMeantAsAWholeUnlessItWasTheSelectedOne) {
  OpenPanelOn({MakeCaption(1, 2, u"First"), MakeCaption(3, 4, u"Third")});
  FocusText(1);
  Text(1).SetSelection({1, 3});
  Tick(100);
  ASSERT_EQ(Inspector::TextSelection(List()), TextRange(1, 3));
  Pane().SelectCaptionTimes({Seconds(1)});
  EXPECT_EQ(Inspector::TextSelection(List()), TextRange(1, 3));
  Pane().SelectCaptionTimes({Seconds(3)});
  EXPECT_EQ(Inspector::TextSelection(List()), kTextRange_Whole);
}

} // namespace Captivo::Testing
