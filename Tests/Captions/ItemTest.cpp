#include "Captions/contracts/SelectionMessages.h"
#include "Support.h"
#include "zebcore/SystemFonts.h"
#include "zebmediatypes/FrameRate.h"

// Rows in view, with their controls.
namespace Captivo::Testing {

namespace {

using zebcore::messaging::IsListening;

bool FontIsThere(const wchar_t*) {
  return true;
}
bool FontIsMissing(const wchar_t*) {
  return false;
}

class Item : public PanelTest {
 protected:
  ~Item() override {
    zebcore::SetFontProbe(nullptr);
    Inspector::ForgetFontProbe();
  }
  TickTime Frame() { return zebmediatypes::kFrameRate_25.GetFrameDuration(); }
  void ExpectTimes(double row, const TickTime& begin, const TickTime& end) {
    const auto item = Row(row);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetBeginTime(), begin);
    EXPECT_EQ(item->GetEndTime(), end);
    EXPECT_EQ(item->GetInControl().GetValue(), begin);
    EXPECT_EQ(item->GetOutControl().GetValue(), end);
  }
  static std::vector<ImmutableString> Stations(CaptionsItem& item) {
    return {item.GetInControl().GetStationID(), item.GetInControl().GetTimecodeEditTextStationID(),
            item.GetOutControl().GetStationID(), item.GetOutControl().GetTimecodeEditTextStationID()};
  }
};

} // namespace

TEST_F(Item, ShowsItsTimesAndText) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  ExpectTimes(1, Seconds(1), Seconds(2));
  EXPECT_EQ(Text(1).GetValue(), u"Hello");
}

TEST_F(Item, ASelectionBehindPairsIsShorterByTheirNumber) {
  OpenPanelOn({MakeCaption(1, 2, u"")});
  Text(1).SetValue(u"a\r\nb\r\nc", false);
  Text(1).SetSelection({6, 7});
  TextRange range;
  Row(1)->GetTextSelection(range);
  EXPECT_EQ(range, TextRange(4, 5));
  Row(1)->SetTextSelection({4, 5});
  EXPECT_EQ(Text(1).GetSelection(), TextRange(6, 7));
}

TEST_F(Item, AnEditThatOnlyChangesTheLineEndsIsNotSent) {
  OpenPanelOn({MakeCaption(1, 2, u"a\nb")});
  zebcore::trace::Take();
  Text(1).SetValue(u"a\r\nb", true);
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::ApplyTextChange"), std::vector<std::string>{});
  Text(1).SetValue(u"a\r\nc", true);
  EXPECT_EQ(Row(1)->GetText(), u"a\nc");
  EXPECT_FALSE(TakeCalls("CaptioningStreamUpdater::ApplyTextChange").empty());
}

TEST_F(Item, AnInPointPastTheOutPointTakesTheOutPointAlong) {
  OpenPanelOn(MakeCaptions({1}));
  Row(1)->GetInControl().ReportValue(Seconds(5));
  ExpectTimes(5, Seconds(5), Seconds(5) + Frame());
}

TEST_F(Item, AnOutPointBeforeTheInPointTakesTheInPointAlong) {
  OpenPanelOn(MakeCaptions({5}));
  Row(5)->GetOutControl().ReportValue(Seconds(3));
  boost::shared_ptr<CaptionsItem> row;
  ASSERT_TRUE(List().FindItem(Seconds(3) - Frame(), row));
  EXPECT_EQ(row->GetEndTime(), Seconds(3));
}

TEST_F(Item, AnOutPointBelowOneFrameIsRaisedToOneFrameWhateverTheInPoint) {
  OpenPanelOn(MakeCaptions({0}));
  Row(0)->GetOutControl().ReportValue(TickTime(1));
  ExpectTimes(0, kTime_Zero, Frame());
}

TEST_F(Item, AControlThatReportsItsOwnValueBlocksFurtherEditsUntilTheTimesArePushedAgain) {
  OpenPanelOn(MakeCaptions({1}));
  Row(1)->GetInControl().ReportValue(Seconds(1));
  EXPECT_TRUE(Inspector::IsTimeEditPending(*Row(1)));
  Row(1)->GetInControl().ReportValue(Seconds(1.5));
  EXPECT_EQ(Row(1)->GetBeginTime(), Seconds(1));
  Row(1)->ResetTimeControls();
  Row(1)->GetInControl().ReportValue(Seconds(1.5));
  EXPECT_NE(Row(1.5), nullptr);
}

TEST_F(Item, ARowThatLeavesTheViewLeavesAllFourStations) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}), 600, 300);
  const auto row = Row(1);
  const auto stations = Stations(*row);
  const zebcore::messaging::Listener* listener = row.get();
  for (const auto& station : stations)
    EXPECT_TRUE(IsListening(station, listener));
  Pane().SetScrollOffset(75 * 8);
  EXPECT_FALSE(row->HasControls());
  EXPECT_EQ(row->GetTextEdit(), nullptr);
  for (const auto& station : stations)
    EXPECT_FALSE(IsListening(station, listener));
}

TEST_F(Item, ARowThatComesBackHasFreshControlsAndListensOnce) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}), 600, 300);
  Pane().SetScrollOffset(75 * 8);
  Pane().SetScrollOffset(0);
  ExpectTimes(1, Seconds(1), Seconds(2));
  const zebcore::messaging::Listener* listener = Row(1).get();
  for (const auto& station : Stations(*Row(1))) {
    EXPECT_TRUE(IsListening(station, listener));
    EXPECT_EQ(zebcore::messaging::CountListeners(station), 1U);
  }
}

TEST_F(Item, WithoutTheCaptionFontNoFontIsSet) {
  zebcore::SetFontProbe(&FontIsMissing);
  Inspector::ForgetFontProbe();
  clip = AddClip();
  AddStream(clip, MakeCaptions({1, 3}));
  OpenPanel();
  zebcore::trace::Take();
  SelectClip(clip);
  EXPECT_EQ(TakeCalls("UI_TextEdit::SetFont"), std::vector<std::string>{});
}

TEST_F(Item, WithTheCaptionFontEveryRowUsesItInTheSizeThatItHad) {
  zebcore::SetFontProbe(&FontIsThere);
  Inspector::ForgetFontProbe();
  OpenPanelOn(MakeCaptions({1, 3}));
  UString family;
  UString style;
  float size = 0;
  Text(3).GetFont(family, style, size);
  EXPECT_EQ(family, u"Arial Unicode MS");
}

TEST_F(Item, OnlyTheInControlEverShowsAnAlignedTime) {
  OpenPanelOn({MakeCaption(1.01, 2.01)});
  TickTime aligned = Seconds(1.01);
  aligned.AlignToFrame(zebmediatypes::kFrameRate_25);
  ASSERT_NE(aligned, Seconds(1.01));
  EXPECT_EQ(Row(1.01)->GetInControl().GetValue(), aligned);
  EXPECT_EQ(Row(1.01)->GetOutControl().GetValue(), Seconds(2.01));
}

TEST_F(Item, AChosenTimeDisplayReachesTheRowsInView) {
  OpenPanelOn(MakeCaptions({1}));
  UIF::HotTimecodeVideoTimeDisplayChangedMessage message;
  message.display = zebmediatypes::kTimeDisplay_Frames;
  zebcore::messaging::BroadcastMessage("timecodeControl.timedisplay.changed.station.source", message);
  EXPECT_EQ(Row(1)->GetInControl().GetText(), u"25");
}

TEST_F(Item, AMessageOfAClassThatWasNeverComparedBeforeIsToldRight) {
  OpenPanelOn(MakeCaptions({1}));
  UIF::InlineEditTextActiveMessage message;
  List().ClearSelection();
  zebcore::messaging::BroadcastMessage(Row(1)->GetInControl().GetTimecodeEditTextStationID(), message);
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{1}));
}

TEST_F(Item, HasTheFocusWithItsTextOnly) {
  OpenPanelOn(MakeCaptions({1, 3}));
  EXPECT_FALSE(Row(1)->HasFocus());
  FocusText(1);
  EXPECT_TRUE(Row(1)->HasFocus());
  EXPECT_FALSE(Row(3)->HasFocus());
}

} // namespace Captivo::Testing
