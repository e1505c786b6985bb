#include "Support.h"

// How the scroll bar, the view's copy of its position and the pane keep in step.
namespace Captivo::Testing {

namespace {

using Strings = std::vector<std::string>;

class Scrolling : public PanelTest {
 protected:
  // 20 rows and one to spare in a pane of 300 pixels.
  void ShowTwentyRows() {
    std::vector<double> begins;
    for (int i = 0; i < 20; ++i)
      begins.push_back(2 * i + 1);
    OpenPanelOn(MakeCaptions(begins), 600, 399);
  }
  UIF::ScrollBar& Bar() { return Inspector::Bar(View()); }
  std::int32_t& Position() { return Inspector::ScrollPosition(View()); }
  unsigned Offset() { return Inspector::ScrollOffset(Pane()); }

  // What of the view is to be painted anew: "later" or "at once".
  static Strings TakePaints() {
    Strings paints;
    for (const auto& call : zebcore::trace::Take()) {
      if (!call.args.contains("class") || call.args.at("class") != "Captivo::CaptionsView")
        continue;
      if (call.call == "View::Invalidate")
        paints.emplace_back("later");
      else if (call.call == "View::Redraw")
        paints.emplace_back("at once");
    }
    return paints;
  }
};

} // namespace

TEST_F(Scrolling, TheWheelTakesTheBarAndThePaneAlongAndPaintsTheViewAnew) {
  ShowTwentyRows();
  View().DispatchMouseWheel({10, 100}, UIF::KeyModifiers(), -3);
  EXPECT_EQ(TakePaints(), Strings{"later"});
  EXPECT_EQ(Position(), 219);
  EXPECT_EQ(Bar().GetScrollBarPosition(), 219);
  EXPECT_EQ(Offset(), 150U);
  EXPECT_TRUE(View().DispatchMouseWheel({10, 100}, UIF::KeyModifiers(), 0));
  EXPECT_EQ(TakePaints(), Strings{}) << "a wheel that did not turn";
}

TEST_F(Scrolling, APanIntoAnotherStepTakesThePaneAlongAndPaintsTheViewAtOnce) {
  ShowTwentyRows();
  EXPECT_TRUE(View().DispatchMousePan({10, 100}, {0, 72}));
  EXPECT_EQ(TakePaints(), Strings{}) << "still inside of one step";
  EXPECT_EQ(Bar().GetScrollBarPosition(), 72);
  EXPECT_TRUE(View().DispatchMousePan({10, 100}, {0, 80}));
  const Strings paints = TakePaints();
  ASSERT_GE(paints.size(), 2U);
  EXPECT_EQ(Strings(paints.end() - 2, paints.end()), (Strings{"later", "at once"}));
  EXPECT_EQ(Offset(), 150U);
}

TEST_F(Scrolling, AReportOfTheBarIsGivenBackToItAndPaintsTheViewAnew) {
  ShowTwentyRows();
  UIF::ScrollVerticalMessage message;
  message.position = 150;
  View().HandleMessage(message);
  EXPECT_EQ(TakePaints(), Strings{"later"});
  EXPECT_EQ(Bar().GetScrollBarPosition(), 150);
  EXPECT_EQ(Offset(), 150U);
}

TEST_F(Scrolling, APositionBehindAContentThatGotShorterTakesTheBarAlong) {
  ShowTwentyRows();
  Bar().SetScrollBarPosition(1400, true);
  Inspector::LayoutContent(View(), {0, 0, 600, 399});
  EXPECT_EQ(Position(), 1241);
  EXPECT_EQ(Bar().GetScrollBarPosition(), 1241);
  EXPECT_EQ(Offset(), 1200U);
}

TEST_F(Scrolling, AContentThatIsShorterThanThePaneStandsAtTheTop) {
  OpenPanelOn(MakeCaptions({1}), 600, 399);
  Bar().SetScrollBarPosition(200, true);
  Inspector::LayoutContent(View(), {0, 0, 600, 399});
  EXPECT_EQ(Position(), 0);
  EXPECT_EQ(Bar().GetScrollBarPosition(), 0);
  EXPECT_EQ(Offset(), 0U);
}

TEST_F(Scrolling, AChangedNumberOfRowsPlacesAndShowsTheBarAnew) {
  ShowTwentyRows();
  const auto place = Bar().GetBounds();
  Bar().SetBounds({1, 2, 3, 4});
  Bar().SetScrollParameters(0, 1, 1, 1);
  Bar().Show(false);
  View().UpdateScrollRange(false);
  EXPECT_EQ(Bar().GetBounds(), place);
  EXPECT_TRUE(Bar().IsShown());
  int min = -1;
  int max = 0;
  int page = 0;
  int step = 0;
  Bar().GetScrollParameters(min, max, page, step);
  EXPECT_EQ((std::vector<int>{min, max, page, step}), (std::vector<int>{0, 21 * 75, 300, 73}));
  View().SetIsStacked(true);
  View().UpdateScrollRange(false);
  EXPECT_FALSE(Bar().IsShown());
  EXPECT_EQ(Bar().GetBounds(), (RectT<int>{600, place.y, 0, place.height}));
}

TEST_F(Scrolling, GoingBackToTheTopDoesNotWaitForTheBarsReport) {
  ShowTwentyRows();
  Position() = 150;
  Pane().SetScrollOffset(150);
  ASSERT_EQ(Bar().GetScrollBarPosition(), 0);
  View().UpdateScrollRange(true);
  EXPECT_EQ(Position(), 0);
  EXPECT_EQ(Offset(), 0U);
}

TEST_F(Scrolling, PaneAndBothButtonsOfTheCaptionsGoWhileThePaneIsUnavailable) {
  ShowTwentyRows();
  const auto shown = [&] {
    return std::vector<bool>{Pane().IsShown(), Inspector::AddCaptionButton(View())->UI_IsShown(),
                             Inspector::DeleteCaptionButton(View())->UI_IsShown()};
  };
  ASSERT_EQ(shown(), std::vector<bool>(3, true));
  Inspector::DeferActive(Pane()) = true;
  View().UpdateAvailabilityAndLayout();
  EXPECT_EQ(shown(), std::vector<bool>(3, false));
  EXPECT_TRUE(Inspector::ImportSettingsButton(View())->UI_IsShown());
  EXPECT_TRUE(Inspector::ExportSettingsButton(View())->UI_IsShown());
  Inspector::DeferActive(Pane()) = false;
  View().UpdateAvailability();
  EXPECT_EQ(shown(), std::vector<bool>(3, true));
}

} // namespace Captivo::Testing
