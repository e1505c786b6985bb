#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Support.h"
#include "zebcore/DebugDatabase.h"

namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;

class Panel : public PanelTest {
 protected:
  static RectT<int> Place(const zebui::ui::UI_Node& node) {
    const auto rect = node.UI_GetLocalRectF();
    return {static_cast<int>(rect.x), static_cast<int>(rect.y), static_cast<int>(rect.width),
            static_cast<int>(rect.height)};
  }
  RectT<int> AddPlace() { return Place(*Inspector::AddButton(View())); }
  RectT<int> DeletePlace() { return Place(*Inspector::DeleteButton(View())); }
  static Times Many(int count) {
    Times begins;
    for (int i = 0; i < count; ++i)
      begins.push_back(2 * i + 1);
    return begins;
  }
  int Position() { return Inspector::ScrollPosition(View()); }
};

} // namespace

TEST_F(Panel, LaysThePaneBetweenBarAndButtons) {
  OpenPanelOn(MakeCaptions({1}), 600, 500);
  const int bar = UIF::ScrollBar::GetDefaultSize();
  EXPECT_EQ(Pane().GetBounds(), (RectT<int>{0, 59, 600 - bar, 500 - 59 - 40}));
  EXPECT_EQ(Inspector::Bar(View()).GetBounds(), (RectT<int>{600 - bar, 59, bar, 500 - 59 - 40}));
  EXPECT_EQ(AddPlace(), (RectT<int>{600 - 192, 470, 88, 18}));
  EXPECT_EQ(DeletePlace(), (RectT<int>{600 - 96, 470, 88, 18}));
}

TEST_F(Panel, OpenCaptionsHaveAHigherBarAndThePaneMakesRoomForIt) {
  OpenPanelOn(MakeCaptions({1}), 600, 500);
  EXPECT_EQ(View().GetStackedDimensionHeightMin(), 2 * 75 + 52 + 51);
  const auto openClip = AddClip();
  AddStream(openClip, MakeCaptions({1}), kOpenTrack1);
  SelectClip(openClip);
  EXPECT_EQ(Inspector::FormatBarHeight(View()), 85);
  EXPECT_EQ(Pane().GetBounds().y, 92);
  EXPECT_EQ(View().GetStackedDimensionHeightMin(), 2 * 75 + 85 + 51);
}

TEST_F(Panel, TheAddButtonStopsBesideTheSettingsButtons) {
  OpenPanelOn(MakeCaptions({1}), 600, 500);
  Inspector::LayoutContent(View(), {0, 0, 410, 500});
  EXPECT_EQ(AddPlace().x, 218);
  Inspector::LayoutContent(View(), {0, 0, 409, 500});
  EXPECT_EQ(AddPlace().x, 220);
  EXPECT_EQ(DeletePlace().x, 316);
}

TEST_F(Panel, APanelThatIsTooLowLeavesPaneAndButtonsWhereTheyWere) {
  OpenPanelOn(MakeCaptions({1}), 600, 500);
  const auto pane = Pane().GetBounds();
  const auto add = AddPlace();
  Inspector::LayoutContent(View(), {0, 0, 600, 52 + 47});
  EXPECT_EQ(Pane().GetBounds(), pane);
  EXPECT_EQ(AddPlace(), add);
  EXPECT_EQ(Inspector::Bar(View()).GetBounds().height, 0);
  int min = 0;
  int max = 0;
  int page = -1;
  int step = 0;
  Inspector::Bar(View()).GetScrollParameters(min, max, page, step);
  EXPECT_EQ(page, 0);
  EXPECT_EQ(step, 73);
  Inspector::LayoutContent(View(), {0, 0, 600, 80});
  EXPECT_EQ(Pane().GetBounds(), pane);
  EXPECT_EQ(Inspector::Bar(View()).GetBounds().height, 80 - 52 - 47);
  Inspector::LayoutContent(View(), {0, 0, 600, 52 + 48});
  EXPECT_EQ(Pane().GetBounds().height, 1);
}

TEST_F(Panel, AStackedViewHasNoScrollBarAndNoRowToSpare) {
  OpenPanelOn(MakeCaptions({1, 3}), 600, 500);
  View().SetIsStacked(true);
  Inspector::LayoutContent(View(), View().ClientRect());
  EXPECT_FALSE(Inspector::Bar(View()).IsShown());
  EXPECT_EQ(Pane().GetBounds().width, 600);
  EXPECT_EQ(View().GetStackedDimensionHeightMin(), 2 * 75 + 52 + 51);
  int min = 0;
  int max = 0;
  int page = 0;
  int step = 0;
  Inspector::Bar(View()).GetScrollParameters(min, max, page, step);
  EXPECT_EQ(max, 150);
}

TEST_F(Panel, AContentThatGotShorterThanThePaneScrollsBackInStepsAndWholeRows) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  Inspector::ScrollPosition(View()) = 1400;
  Inspector::LayoutContent(View(), {0, 0, 600, 399});
  // 21 rows of 75 less 300 pixels of pane.
  EXPECT_EQ(Position(), 1275 / 73 * 73);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 1241U / 75 * 75);
}

TEST_F(Panel, TheWheelMovesBySteps) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  View().DispatchMouseWheel({10, 100}, UIF::KeyModifiers(), -2);
  EXPECT_EQ(Position(), 146);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 75U);
}

TEST_F(Panel, TheWheelPastTheTopLeavesANegativePositionAndPanningDoesNot) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  View().DispatchMouseWheel({10, 100}, UIF::KeyModifiers(), 1);
  EXPECT_EQ(Position(), -73);
  View().DispatchMousePan({10, 100}, {0, -50});
  EXPECT_EQ(Position(), 0);
}

TEST_F(Panel, TheWheelPastTheTopFromFurtherDownLeavesANegativePositionToo) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  View().DispatchMouseWheel({10, 100}, UIF::KeyModifiers(), -1);
  View().DispatchMouseWheel({10, 100}, UIF::KeyModifiers(), 2);
  EXPECT_EQ(Position(), -73);
}

TEST_F(Panel, APanGoesDownToTheLengthOfTheContentAndNoFurther) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  View().DispatchMousePan({10, 100}, {0, 100000});
  EXPECT_EQ(Position(), 21 * 75);
}

TEST_F(Panel, APanInsideOneStepLeavesThePaneAlone) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  zebcore::trace::Take();
  View().DispatchMousePan({10, 100}, {0, 70});
  EXPECT_EQ(TakeCalls("View::Invalidate"), std::vector<std::string>{});
  View().DispatchMousePan({10, 100}, {0, 10});
  EXPECT_EQ(Position(), 80);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 75U);
}

TEST_F(Panel, PanningEndsAtTheLengthOfTheContent) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  View().DispatchMousePan({10, 100}, {0, 5000});
  // 21 rows of 75 for the pan; the bar itself keeps a page of 300 on show.
  EXPECT_EQ(Inspector::Bar(View()).GetScrollBarPosition(), 21 * 75);
  EXPECT_GE(Position(), 21 * 75);
  EXPECT_LE(Position(), 21 * 75);
}

TEST_F(Panel, TheBarMovesThePaneAndSaysNothingNewTwice) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  Inspector::Bar(View()).SetScrollBarPosition(200, true);
  EXPECT_EQ(Position(), 200);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 150U);
  zebcore::trace::Take();
  UIF::ScrollVerticalMessage again;
  again.position = 200;
  View().HandleMessage(again);
  EXPECT_TRUE(zebcore::trace::Take().empty());
}

TEST_F(Panel, AChangedNumberOfRowsOnlyMovesThePaneWhenItIsAskedTo) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  View().DispatchMouseWheel({10, 100}, UIF::KeyModifiers(), -3);
  View().UpdateScrollRange(false);
  EXPECT_EQ(Position(), 219);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 150U);
  View().UpdateScrollRange(true);
  EXPECT_EQ(Position(), 0);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 0U);
  EXPECT_EQ(Inspector::Bar(View()).GetScrollBarPosition(), 0);
}

TEST_F(Panel, ASelectedRowUnderTheViewComesIntoIt) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  Pane().SelectCaptionAtTime(Seconds(21)); // row 10, pane of 300 pixels
  EXPECT_EQ(Position(), (12 * 75 - 300) / 75 * 75);
  EXPECT_TRUE(Row(21)->HasControls());
}

TEST_F(Panel, ASelectedRowAboveTheViewComesToItsTop) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  Pane().SelectCaptionAtTime(Seconds(21));
  Pane().SelectCaptionAtTime(Seconds(3));
  EXPECT_EQ(Position(), 75);
}

TEST_F(Panel, ASelectedRowInTheViewMovesNothing) {
  OpenPanelOn(MakeCaptions(Many(20)), 600, 399);
  Pane().SelectCaptionAtTime(Seconds(5));
  EXPECT_EQ(Position(), 0);
}

TEST_F(Panel, WithNothingSelectedTheButtonsAreStillBroughtUpToDate) {
  OpenPanelOn(MakeCaptions({1}));
  EXPECT_FALSE(Inspector::DeleteButton(View())->IsDisabled());
  Pane().DispatchLeftButtonUp({10, 400}, UIF::KeyModifiers());
  EXPECT_TRUE(Inspector::DeleteButton(View())->IsDisabled());
  Inspector::DeleteButton(View())->SetDisabled(false);
  TakeCalls("");
  View().ScrollSelectionIntoView();
  EXPECT_EQ(TakeCalls("View::Invalidate"), std::vector<std::string>{"View::Invalidate"});
  EXPECT_TRUE(Inspector::DeleteButton(View())->IsDisabled());
}

TEST_F(Panel, AReadOnlyProjectTakesNoEditsFromTheButtons) {
  OpenPanelOn(MakeCaptions({1}));
  project->SetReadOnly(true);
  BE::ReadOnlyStateChangedMessage message;
  message.readOnly = true;
  zebcore::messaging::BroadcastMessage(BE::kBackendProjectActivationStationID, message);
  EXPECT_TRUE(Inspector::AddButton(View())->IsDisabled());
  EXPECT_TRUE(Inspector::DeleteButton(View())->IsDisabled());
  EXPECT_FALSE(Pane().IsEnabled());
  project->SetReadOnly(false);
  zebcore::messaging::BroadcastMessage(BE::kBackendProjectActivationStationID, message);
  EXPECT_TRUE(Pane().IsEnabled());
}

TEST_F(Panel, TheButtonsAddAndDelete) {
  OpenPanelOn(MakeCaptions({1}));
  Inspector::AddButton(View())->Press();
  EXPECT_EQ(Begins(), (Times{1, 2}));
  Inspector::DeleteButton(View())->Press();
  EXPECT_EQ(Begins(), (Times{1}));
}

TEST_F(Panel, PaneAndButtonsHideWhileThePaneIsUnavailable) {
  OpenPanelOn(MakeCaptions({1}));
  EXPECT_TRUE(Pane().IsShown());
  SelectClip(nullptr);
  EXPECT_FALSE(Pane().IsShown());
  EXPECT_FALSE(Inspector::AddButton(View())->UI_IsShown());
}

TEST_F(Panel, RegionsAndStylesStayOffWhateverTheSwitchSays) {
  zebcore::debug::DebugDatabase::Instance().SetValue("New_XML_Caption_Reading", "true");
  OpenPanel();
  zebcore::debug::DebugDatabase::Instance().RemoveValue("New_XML_Caption_Reading");
  EXPECT_FALSE(Inspector::RegionAndStyleEnabled(View()));
}

TEST_F(Panel, ANewStreamFormatStartsFromANewFormat) {
  OpenPanelOn(MakeCaptions({1}));
  const auto shown = Inspector::FormatInfo(View());
  View().UpdateForSource(Inspector::Source(Pane()), 32, 15);
  EXPECT_EQ(Inspector::FormatInfo(View()), shown);
  View().UpdateForSource(CaptionsSource(), 32, 15);
  EXPECT_NE(Inspector::FormatInfo(View()), shown);
}

TEST_F(Panel, AMessageOfAnotherClassChangesNothing) {
  OpenPanelOn(MakeCaptions({1}));
  zebcore::trace::Take();
  zebcore::messaging::BroadcastMessage(BE::kBackendProjectActivationStationID, HSL::CaptionCommitEditsMessage());
  EXPECT_EQ(TakeCalls("View::"), std::vector<std::string>{});
}

TEST_F(Panel, LeavingThePanelCommits) {
  OpenPanelOn({MakeCaption(1, 2, u"One")});
  View().NowOnDuty();
  EXPECT_TRUE(Inspector::IsOnDuty(View()));
  const auto steps = project->GetUndoNames().size();
  FocusText(1);
  Text(1).SetValue(u"Other", true);
  View().NowOffDuty();
  EXPECT_FALSE(Inspector::IsOnDuty(View()));
  EXPECT_EQ(project->GetUndoNames().size(), steps + 1);
}

TEST_F(Panel, TheMusicNoteGoesIntoTheTextAndSelectAllSelectsAll) {
  OpenPanelOn({MakeCaption(1, 2, u"la"), MakeCaption(3, 4, u"b")});
  Click(1);
  EXPECT_TRUE(View().ObeyCommand(UIF::Command(32012)));
  EXPECT_EQ(Row(1)->GetText(), u"\u266A");
  EXPECT_TRUE(View().ObeyCommand(UIF::Command(32020)));
  EXPECT_EQ(SelectedBegins(), (Times{1, 3}));
}

TEST_F(Panel, DeletingTextWithSeveralRowsSelectedIsNotAnswered) {
  OpenPanelOn(MakeCaptions({1, 3}));
  View().ObeyCommand(UIF::Command(32020));
  bool enabled = false;
  bool marked = false;
  UIF::MenuMark mark = UIF::MenuMark::None;
  UString name;
  EXPECT_FALSE(View().FindCommandStatus(57632, enabled, marked, mark, name));
  EXPECT_FALSE(View().ObeyCommand(UIF::Command(57632)));
  for (const int id : {57642, 57643, 57644}) {
    EXPECT_FALSE(View().FindCommandStatus(id, enabled, marked, mark, name));
    EXPECT_FALSE(View().ObeyCommand(UIF::Command(id)));
  }
}

TEST_F(Panel, ItalicOnAMixedSelectionMakesAllCaptionsAlike) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(1);
  View().ObeyCommand(UIF::Command(32010));
  View().ObeyCommand(UIF::Command(32020));
  View().ObeyCommand(UIF::Command(32010));
  boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> info = Inspector::FormatInfo(View());
  bool isUniform = false;
  info->GetIsItalicized(isUniform);
  EXPECT_TRUE(isUniform);
}

} // namespace Captivo::Testing
