#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Support.h"

namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;
constexpr StreamFormat kCC1 = zebcaptioning::kStreamFormat_608_CC1;

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

TEST_F(PaneReload, AFilterThatTakesTheSelectedRowAwaySelectsTheTimeRememberedForTheStream) {
  OpenPanelOn({MakeCaption(1, 2, u"one"), MakeCaption(3, 4, u"two"), MakeCaption(5, 6, u"two more")});
  Click(5);
  SelectClip(AddOtherClip({7}));
  SelectClip(clip);
  Click(1);
  Pane().SetFilterText(u"two");
  EXPECT_EQ(Begins(), (Times{3, 5}));
  EXPECT_EQ(SelectedBegins(), (Times{5}));
}

TEST_F(PaneReload, ARememberedTimeThatTheFilterTakesAwayTooSelectsNothing) {
  OpenPanelOn({MakeCaption(1, 2, u"one"), MakeCaption(3, 4, u"two"), MakeCaption(5, 6, u"three")});
  Click(5);
  SelectClip(AddOtherClip({7}));
  SelectClip(clip);
  Click(1);
  Pane().SetFilterText(u"two");
  EXPECT_EQ(Begins(), (Times{3}));
  EXPECT_EQ(SelectedBegins(), Times{});
}

TEST_F(PaneReload, ACapitalBeyondASCIIDoesNotFindItsSmallLetter) {
  OpenPanelOn({MakeCaption(1, 2, u"\u00E4rger"), MakeCaption(3, 4, u"\u00C4rger")});
  Pane().SetFilterText(u"\u00C4RGER");
  EXPECT_EQ(Begins(), (Times{3}));
}

TEST_F(PaneReload, AnEmptyStreamSelectsNothing) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(3);
  SelectClip(AddOtherClip({}));
  EXPECT_FALSE(Pane().IsUnavailable());
  EXPECT_EQ(Begins(), Times{});
  EXPECT_EQ(SelectedBegins(), Times{});
  EXPECT_EQ(Inspector::Anchor(List()), Seconds(3));
}

TEST_F(PaneReload, WithoutARowToBeSelectedTheTimeThatStandsForNoneIsNotSelected) {
  OpenPanelOn({});
  // Only a row at that very time can show whether it was.
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(
      new zebcaptioning::CaptionState(*MakeCaption(0, 1)->GetState()));
  state->begin = kTime_Min;
  List().AddRow(new Caption(zebcaptioning::CaptionStatePtr(state)));
  Inspector::SelectRememberedOrFirst(Pane());
  EXPECT_EQ(List().GetSelectedCount(), 0U);
  List().Clear();
  List().AddRow(MakeCaption(0, 1));
  Inspector::SelectRememberedOrFirst(Pane());
  EXPECT_EQ(List().GetSelectedCount(), 1U);
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

TEST_F(PaneReload, AStreamOnShowWhoseFormatChangesStaysOnShow) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto third = AddStream(clip, MakeCaptions({5, 7}), kCC1 + 2);
  Pane().SelectStreamFormat(1);
  ASSERT_EQ(Begins(), (Times{5, 7}));
  Click(7);
  project->ChangeStreamFormat(third, kCC1 + 1, u"Change format");
  EXPECT_EQ(Inspector::Source(Pane()).GetStreamFormat(), kCC1 + 1);
  EXPECT_TRUE(Inspector::Source(Pane()).GetCaptioningStream() == third);
  EXPECT_EQ(Inspector::Format(List()), kCC1 + 1);
  EXPECT_EQ(Begins(), (Times{5, 7}));
  EXPECT_EQ(SelectedBegins(), (Times{7}));
  Pane().AddNewCaption();
  EXPECT_EQ(third->GetCaptionCount(), 3U);
}

TEST_F(PaneReload, AChangedFormatOfAnotherStreamIsOfferedAndChangesNoRow) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto third = AddStream(clip, MakeCaptions({5}), kCC1 + 2);
  Click(3);
  project->ChangeStreamFormat(third, kCC1 + 1, u"Change format");
  BE::CaptioningStreamChangedMessage message;
  message.stream = third;
  zebcore::trace::Take();
  Pane().HandleMessage(message);
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::UpdateCaptioningStream"), std::vector<std::string>{});
  EXPECT_EQ(OfferedFormats(), (std::vector<StreamFormat>{kCC1, kCC1 + 1}));
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneReload, AStreamThatChangedUnderTheSameFormatsGivesWayToTheFirstThatTheClipOffers) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto open = AddStream(clip, MakeCaptions({5}), kOpenTrack1);
  Pane().SelectStreamFormat(1);
  ASSERT_EQ(Begins(), (Times{5}));
  ASSERT_EQ(Inspector::Format(List()), kOpenTrack1);
  BE::CaptioningStreamChangedMessage message;
  message.stream = open;
  Pane().HandleMessage(message);
  EXPECT_EQ(Begins(), (Times{1, 3}));
  EXPECT_EQ(Inspector::Format(List()), kCC1);
}

TEST_F(PaneReload, AFurtherStreamOfTheClipIsOfferedAtOnce) {
  OpenPanelOn(MakeCaptions({1, 3}));
  ASSERT_EQ(OfferedFormats(), (std::vector<StreamFormat>{kCC1}));
  AddStream(clip, MakeCaptions({5}), kCC1 + 1);
  EXPECT_EQ(OfferedFormats(), (std::vector<StreamFormat>{kCC1, kCC1 + 1}));
  EXPECT_EQ(Begins(), (Times{1, 3}));
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

TEST_F(PaneReload, AReloadLeavesTheCaretAwayFromATextThatGaveTheFocusUp) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  Tick(100);
  Pane().SetFocus();
  ASSERT_TRUE(Inspector::KeepTextFocus(Pane()));
  Pane().ReloadCaptions();
  EXPECT_FALSE(Text(1).UI_HasKeyboardFocus(false));
}

TEST_F(PaneReload, WithoutAStreamNewCaptionsHaveNoFormatAndTheGridOfAnEmptyPanel) {
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}), kOpenTrack1);
  OpenPanel();
  SelectClip(clip);
  EXPECT_EQ(Inspector::Format(List()), kOpenTrack1);
  EXPECT_EQ(Inspector::Columns(List()), 1920);
  EXPECT_EQ(Inspector::Rows(List()), 1080);
  SelectClip(nullptr);
  EXPECT_EQ(Begins(), Times{});
  EXPECT_EQ(Inspector::Source(Pane()).GetStreamFormat(), 0U);
  EXPECT_EQ(Inspector::Format(List()), 0U);
  const int columns = zebcaptioning::GetCaptionColumns(0, false);
  const int rows = zebcaptioning::GetCaptionRows(0);
  ASSERT_NE(columns, rows);
  EXPECT_EQ(Inspector::Columns(List()), columns);
  EXPECT_EQ(Inspector::Rows(List()), rows);
  EXPECT_EQ(Inspector::GridColumns(View()), columns);
  EXPECT_EQ(Inspector::GridRows(View()), rows);
}

} // namespace Captivo::Testing
