#include "Support.h"
#include "zebcore/SystemFonts.h"
#include "zebmediatypes/FrameRate.h"

// What a row's controls show, and when that is written to them.
namespace Captivo::Testing {

namespace {

class ItemControls : public PanelTest {
 protected:
  std::pair<TickTime, TickTime> Shown(double row) {
    return {Row(row)->GetInControl().GetValue(), Row(row)->GetOutControl().GetValue()};
  }
  // As the stream's own captions change: without a word to anybody.
  void ChangeEnd(double row, double end) {
    const boost::intrusive_ptr<zebcaptioning::CaptionState> state(
        new zebcaptioning::CaptionState(*Row(row)->GetCaption()->GetState()));
    state->end = Seconds(end);
    Row(row)->GetCaption()->SetState(state);
  }
};

using Times = std::pair<TickTime, TickTime>;

int sFontProbes = 0;

bool CountFontProbe(const wchar_t*) {
  ++sFontProbes;
  return true;
}

} // namespace

TEST_F(ItemControls, AnInPointDraggedIntoThePreviousCaptionIsRefusedAndBothControlsShowTheOldTimesAgain) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Row(3)->GetInControl().Scrub(Seconds(1.4), false);
  Row(3)->GetOutControl().SetValue(Seconds(9), true);
  Row(3)->GetInControl().Scrub(Seconds(1.4), true);
  EXPECT_EQ(Begins(), (std::vector<double>{1, 3}));
  EXPECT_EQ(Shown(3), Times(Seconds(3), Seconds(4)));
}

TEST_F(ItemControls, AnOutPointDraggedIntoThePreviousCaptionIsRefusedAndShowsTheOldTimeAgain) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Row(3)->GetOutControl().Scrub(Seconds(1.4), true);
  EXPECT_EQ(Begins(), (std::vector<double>{1, 3}));
  EXPECT_EQ(Shown(3), Times(Seconds(3), Seconds(4)));
}

TEST_F(ItemControls, TimesThatAreSetAreShownAtOnce) {
  OpenPanelOn(MakeCaptions({1}));
  Row(1)->SetTimes(Seconds(6), Seconds(8));
  EXPECT_EQ(Row(1)->GetInControl().GetValue(), Seconds(6));
  EXPECT_EQ(Row(1)->GetOutControl().GetValue(), Seconds(8));
}

TEST_F(ItemControls, ACaptionThatIsReadAgainShowsItsTimes) {
  OpenPanelOn(MakeCaptions({1}));
  ChangeEnd(1, 2.4);
  Row(1)->GetInControl().SetValue(Seconds(1.2), true);
  Row(1)->SyncFromCaption();
  EXPECT_EQ(Shown(1), Times(Seconds(1), Seconds(2.4)));
}

TEST_F(ItemControls, TheStoredTextHasSingleLineFeedsWhateverTheCaptionHas) {
  OpenPanelOn({MakeCaption(1, 2, u"a\r\nb\rc")});
  EXPECT_EQ(Row(1)->GetText(), u"a\nb\rc");
  zebcore::trace::Take();
  Row(1)->CommitText(false);
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::ApplyTextChange"), std::vector<std::string>{});
}

TEST_F(ItemControls, ATimecodeThatLeftTheViewIsGoneThoughItsRowStays) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}), 600, 300);
  const auto row = Row(1);
  Pane().SetScrollOffset(75 * 8);
  ASSERT_FALSE(row->HasControls());
  EXPECT_FALSE(row->GetInControl().IsCreated());
  EXPECT_FALSE(row->GetOutControl().IsCreated());
}

TEST_F(ItemControls, ATextThatWasKeptWhenItsRowLeftTheViewReportsToNobody) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}), 600, 300);
  const boost::intrusive_ptr<CaptionsTextEdit> kept = Row(1)->GetTextEdit();
  Pane().SetScrollOffset(75 * 8);
  Click(19);
  kept->StartInteractiveChange();
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{19}));
}

TEST_F(ItemControls, ARefreshedTimeDisplayTakesThePlaceOfTheControlsOwn) {
  OpenPanelOn(MakeCaptions({1}));
  for (UIF::HotTimecodeControl* control : {&Row(1)->GetInControl(), &Row(1)->GetOutControl()})
    control->SetDisplayOverride(zebmediatypes::kTimeDisplay_Frames.GetNumber());
  ASSERT_EQ(Row(1)->GetInControl().GetText(), u"25");
  Row(1)->UpdateTimeDisplay();
  EXPECT_EQ(Row(1)->GetInControl().GetText(), u"00:00:01:00");
  EXPECT_EQ(Row(1)->GetOutControl().GetText(), u"00:00:02:00");
}

TEST_F(ItemControls, ARefreshedTimeDisplayWritesATimeOnlyIfItLiesBetweenFrames) {
  OpenPanelOn({MakeCaption(1, 2), MakeCaption(3.01, 4.01)});
  for (const double row : {1.0, 3.01}) {
    Row(row)->GetInControl().SetValue(Seconds(8), true);
    Row(row)->GetOutControl().SetValue(Seconds(9), true);
  }
  List().RefreshTimeDisplays();
  EXPECT_EQ(Shown(1), Times(Seconds(8), Seconds(9)));
  TickTime aligned = Seconds(3.01);
  aligned.AlignToFrame(zebmediatypes::kFrameRate_25);
  EXPECT_EQ(Shown(3.01), Times(aligned, Seconds(4.01)));
}

TEST_F(ItemControls, AnOutControlThatReportsItsOwnValueSendsNothingAndBlocksFurtherEdits) {
  OpenPanelOn(MakeCaptions({1}));
  zebcore::trace::Take();
  Row(1)->GetOutControl().ReportValue(Seconds(2));
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::"), std::vector<std::string>{});
  EXPECT_TRUE(Inspector::IsTimeEditPending(*Row(1)));
  Row(1)->GetOutControl().ReportValue(Seconds(3));
  EXPECT_EQ(Row(1)->GetEndTime(), Seconds(2));
}

TEST_F(ItemControls, AnOutPointAtTheInPointLeavesOneFrameInFrontOfIt) {
  OpenPanelOn(MakeCaptions({5}));
  Row(5)->GetOutControl().ReportValue(Seconds(5));
  EXPECT_EQ(List().GetFirstTime(), Seconds(5) - zebmediatypes::kFrameRate_25.GetFrameDuration());
  boost::shared_ptr<CaptionsItem> row;
  ASSERT_TRUE(List().GetRowAtIndex(0, row));
  EXPECT_EQ(row->GetEndTime(), Seconds(5));
}

TEST_F(ItemControls, AnInPointAtTheOutPointLeavesOneFrameBehindIt) {
  OpenPanelOn(MakeCaptions({5}));
  Row(5)->GetInControl().ReportValue(Seconds(6));
  ASSERT_NE(Row(6), nullptr);
  EXPECT_EQ(Row(6)->GetEndTime(), Seconds(6) + zebmediatypes::kFrameRate_25.GetFrameDuration());
}

TEST_F(ItemControls, WithoutATextControlThereIsNoTextToSend) {
  OpenPanelOn(MakeCaptions({1}));
  CaptionsItem row(&Pane(), MakeCaption(1, 2, u"Other"));
  zebcore::trace::Take();
  row.CommitText(true);
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::"), std::vector<std::string>{});
}

TEST_F(ItemControls, ASelectedRowOutOfViewHasNoFocusAndNoCaretAndHoldsUpNoSwitch) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}), 600, 300);
  const auto other = AddClip(u"Other");
  AddStream(other, MakeCaptions({100}));
  Pane().SetScrollOffset(75 * 8);
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{1}));
  EXPECT_FALSE(Row(1)->HasFocus());
  TextRange range{3, 4};
  Row(1)->GetTextSelection(range);
  EXPECT_EQ(range, TextRange(0, 0));
  Row(1)->SetTextSelection({0, 1});
  SelectClip(other);
  EXPECT_FALSE(Inspector::SourcePending(Pane()));
  EXPECT_EQ(Begins(), (std::vector<double>{100}));
}

TEST_F(ItemControls, ControlsThatAreThereAreNotMadeAgain) {
  OpenPanelOn(MakeCaptions({1}));
  const boost::intrusive_ptr<CaptionsTextEdit> text = Row(1)->GetTextEdit();
  const ImmutableString station = Row(1)->GetInControl().GetStationID();
  Row(1)->CreateControls();
  EXPECT_EQ(Row(1)->GetTextEdit(), text);
  EXPECT_EQ(Row(1)->GetInControl().GetStationID(), station);
  EXPECT_EQ(zebcore::messaging::CountListeners(station), 1U);
}

TEST_F(ItemControls, TheCaptionFontIsLookedForOnceWhateverTheNumberOfRows) {
  sFontProbes = 0;
  zebcore::SetFontProbe(&CountFontProbe);
  Inspector::ForgetFontProbe();
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  zebcore::SetFontProbe(nullptr);
  Inspector::ForgetFontProbe();
  EXPECT_EQ(sFontProbes, 1);
}

TEST_F(ItemControls, ATextThatWasSentIsTheStoredOneThoughNoStreamTookIt) {
  OpenPanelOn(MakeCaptions({1}));
  CaptionsItem row(&Pane(), MakeCaption(4, 5, u"Other"));
  row.CreateControls();
  row.GetTextEdit()->SetValue(u"New\r\nline", false);
  row.CommitText(false);
  EXPECT_EQ(row.GetText(), u"New\nline");
}

} // namespace Captivo::Testing
