#include <algorithm>

#include <QApplication>

#include "Captions/contracts/SelectionMessages.h"
#include "Support.h"
#include "UIF/HotTimecodeWidget.h"
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
  // As the stream is changed elsewhere in the host.
  bool ChangeTimes(double row, const TickTime& begin, const TickTime& end) {
    const auto key = stream->FindKeyByBegin(Seconds(row));
    if (!key)
      return false;
    const boost::intrusive_ptr<zebcaptioning::CaptionState> state(
        new zebcaptioning::CaptionState(*stream->GetCaption(*key)->GetState()));
    state->begin = begin;
    state->end = end;
    BE::CaptionDelta delta;
    delta.key = *key;
    delta.after = state;
    project->EditCaptions(stream, {delta}, u"Edit");
    return true;
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

TEST_F(Item, AnOutPointBelowOneFrameIsRaisedToOneFrame) {
  OpenPanelOn(MakeCaptions({0}));
  Row(0)->GetOutControl().ReportValue(TickTime(1));
  ExpectTimes(0, kTime_Zero, Frame());
}

TEST_F(Item, AnOutPointBelowOneFrameTakesALaterInPointToZero) {
  OpenPanelOn(MakeCaptions({5}));
  Row(5)->GetOutControl().ReportValue(TickTime(1));
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

TEST_F(Item, ARowThatComesBackShowsTheTimesThatItGotMeanwhile) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}), 600, 300);
  const auto former = Stations(*Row(1));
  Pane().SetScrollOffset(75 * 8);
  ASSERT_FALSE(Row(1)->HasControls());
  ASSERT_TRUE(ChangeTimes(1, Seconds(1.2), Seconds(2.4)));
  Pane().SetScrollOffset(0);
  ExpectTimes(1.2, Seconds(1.2), Seconds(2.4));
  for (const auto& station : Stations(*Row(1.2)))
    EXPECT_EQ(std::count(former.begin(), former.end(), station), 0) << station.Text();
}

TEST_F(Item, ControlsThatAreMadeShowTheTimesOfTheRowAndItsText) {
  OpenPanelOn({MakeCaption(1, 2, u"Hello")});
  CaptionsItem row(&Pane(), MakeCaption(4, 5, u"Other"));
  row.SetTimes(Seconds(6), Seconds(8));
  row.CreateControls();
  EXPECT_EQ(row.GetInControl().GetValue(), Seconds(6));
  EXPECT_EQ(row.GetOutControl().GetValue(), Seconds(8));
  EXPECT_EQ(row.GetTextEdit()->GetValue(), u"Other");
  EXPECT_TRUE(row.GetInControl().IsShown());
  EXPECT_TRUE(row.GetOutControl().IsShown());
}

TEST_F(Item, TimesAreShownFromTheZeroPointOfTheClip) {
  BE::MediaInfo info;
  info.width = 1920;
  info.height = 1080;
  info.frameRate = zebmediatypes::kFrameRate_25;
  info.start = Seconds(3600);
  clip = AddClip(info);
  AddStream(clip, MakeCaptions({1}));
  OpenPanel();
  SelectClip(clip);
  EXPECT_EQ(Row(1)->GetInControl().GetText(), u"01:00:01:00");
  EXPECT_EQ(Row(1)->GetOutControl().GetText(), u"01:00:02:00");
}

TEST_F(Item, NoTimeIsDraggedBelowZero) {
  OpenPanelOn(MakeCaptions({5}));
  for (UIF::HotTimecodeControl* control : {&Row(5)->GetInControl(), &Row(5)->GetOutControl()}) {
    control->Scrub(Seconds(-3), false);
    EXPECT_EQ(control->GetValue(), kTime_Zero);
  }
}

TEST_F(Item, TheTabKeyDoesNotStopAtTimecodes) {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  const QWidgetList others = QApplication::allWidgets(); // of the panels of other tests
  OpenPanelOn(MakeCaptions({1, 3}));
  int timecodes = 0;
  for (QWidget* widget : QApplication::allWidgets()) {
    if (others.contains(widget) || !dynamic_cast<const UIF::HotTimecodeWidget*>(widget))
      continue;
    ++timecodes;
    EXPECT_EQ(widget->focusPolicy() & Qt::TabFocus, 0);
    EXPECT_NE(widget->focusPolicy() & Qt::ClickFocus, 0);
  }
  EXPECT_EQ(timecodes, 4);
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

TEST_F(Item, WithTheCaptionFontEveryRowUsesItInTheSizeAndStyleThatItHad) {
  zebcore::SetFontProbe(&FontIsThere);
  Inspector::ForgetFontProbe();
  UString ownFamily;
  UString ownStyle;
  float ownSize = 0;
  zebui::controls::UI_TextEdit(1, 0).GetFont(ownFamily, ownStyle, ownSize);
  clip = AddClip();
  AddStream(clip, MakeCaptions({1, 3}));
  OpenPanel();
  zebcore::trace::Take();
  SelectClip(clip);
  int fonts = 0;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call != "UI_TextEdit::SetFont")
      continue;
    ++fonts;
    EXPECT_EQ(call.args.at("family"), "Arial Unicode MS");
    EXPECT_EQ(call.args.at("size").get<float>(), ownSize);
    EXPECT_EQ(call.args.at("style"), zebcore::ToUTF8(ownStyle));
  }
  EXPECT_EQ(fonts, 2);
  UString family;
  UString style;
  float size = 0;
  Text(3).GetFont(family, style, size);
  EXPECT_EQ(family, u"Arial Unicode MS");
  EXPECT_EQ(style, ownStyle);
  EXPECT_EQ(size, ownSize);
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

TEST_F(Item, HasTheFocusWithAnInlineEditorOfOneOfItsTimecodes) {
  OpenPanelOn(MakeCaptions({1, 3}));
  for (UIF::HotTimecodeControl* control : {&Row(1)->GetInControl(), &Row(1)->GetOutControl()}) {
    control->OpenInlineEditor();
    EXPECT_TRUE(Row(1)->HasFocus());
    EXPECT_FALSE(Row(3)->HasFocus());
    control->CloseInlineEditor(true);
    EXPECT_FALSE(Row(1)->HasFocus());
  }
}

TEST_F(Item, ASwitchOfTheSourceWaitsForAnInlineEditor) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddClip(u"Other");
  AddStream(other, MakeCaptions({5}));
  Row(1)->GetOutControl().OpenInlineEditor();
  SelectClip(other);
  EXPECT_TRUE(Inspector::SourcePending(Pane()));
  EXPECT_EQ(Begins(), (std::vector<double>{1, 3}));
  Tick(250);
  EXPECT_EQ(Begins(), (std::vector<double>{1, 3}));
  Row(1)->GetOutControl().CloseInlineEditor(true);
  Tick(250);
  EXPECT_EQ(Begins(), (std::vector<double>{5}));
}

} // namespace Captivo::Testing
