#include <cmath>
#include <gtest/gtest.h>

#include <QScrollBar>
#include <QStyle>

#include "Screen.h"
#include "UIF/Dialogs.h"
#include "UIF/ScrollBar.h"
#include "UIF/Theme.h"
#include "zebcore/UString.h"
#include "zebui/NodeManager.h"

using namespace UIF;
using zebcore::messaging::Message;
using zebcore::messaging::MessageCast;

namespace {

struct Bar : testing::Test, zebcore::messaging::Listener {
  std::string log;
  test::Frame frame;
  test::Panel panel{&log};
  ScrollBar bar{&panel};
  std::vector<int> heard;
  bool answers = false;

  void SetUp() override {
    panel.Create(u"test.panel", u"Panel", &frame, true);
    bar.Create(&panel, {480, 0, 13, 300}, 1, 7);
    bar.SetScrollParameters(0, 1000, 300, 73);
    zebcore::messaging::AddListener(bar.GetStationID(), this);
  }
  void TearDown() override {
    zebcore::messaging::RemoveListener(bar.GetStationID(), this);
    bar.Destroy();
    panel.Destroy();
  }
  void HandleMessage(const Message& message) override {
    const auto* scrolled = MessageCast<ScrollVerticalMessage>(message);
    if (!scrolled)
      return;
    heard.push_back(scrolled->position);
    if (answers)
      bar.SetScrollBarPosition(scrolled->position, true);
  }
};
using Positions = std::vector<int>;

double Luminance(const Color& color) {
  const auto part = [](double value) {
    value /= 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(color.red) + 0.7152 * part(color.green) + 0.0722 * part(color.blue);
}

double Contrast(const Color& a, const Color& b) {
  const double one = Luminance(a);
  const double other = Luminance(b);
  return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

Color FromQt(const QColor& color) {
  return {static_cast<std::uint8_t>(color.red()), static_cast<std::uint8_t>(color.green()),
          static_cast<std::uint8_t>(color.blue())};
}

} // namespace

TEST_F(Bar, ReportsAMoveThatWasAskedForAndIsReal) {
  bar.SetScrollBarPosition(100, true);
  bar.SetScrollBarPosition(100, true);
  bar.SetScrollBarPosition(200, false);
  EXPECT_EQ(heard, Positions({100}));
  EXPECT_EQ(bar.GetScrollBarPosition(), 200);
}

TEST_F(Bar, KeepsAPositionThatTheProgramAsksForAlsoBeyondItsEnds) {
  bar.SetScrollBarPosition(5000, true);
  bar.SetScrollBarPosition(-5, true);
  EXPECT_EQ(heard, Positions({5000, -5}));
  EXPECT_EQ(bar.GetScrollBarPosition(), -5);
}

TEST_F(Bar, NewParametersBringThePositionBetweenTheEndsAndReportNothing) {
  bar.SetScrollBarPosition(5000, false);
  bar.SetScrollParameters(0, 1000, 300, 73);
  EXPECT_EQ(bar.GetScrollBarPosition(), 700);
  bar.SetScrollParameters(0, 100, 300, 73);
  EXPECT_EQ(bar.GetScrollBarPosition(), 0);
  EXPECT_TRUE(heard.empty());
}

TEST_F(Bar, KeepsParametersAsTheyWereGivenAPageBelowZeroToo) {
  bar.SetScrollParameters(0, 75, -8, 73);
  int min = -1;
  int max = -1;
  int page = -1;
  int step = -1;
  bar.GetScrollParameters(min, max, page, step);
  EXPECT_EQ(std::vector<int>({min, max, page, step}), std::vector<int>({0, 75, -8, 73}));
}

TEST_F(Bar, ComesBackIntoRangeWithoutAReportWhenTheContentShrinks) {
  bar.SetScrollBarPosition(700, false);
  bar.SetScrollParameters(0, 500, 300, 73);
  EXPECT_EQ(bar.GetScrollBarPosition(), 200);
  EXPECT_TRUE(heard.empty());
}

TEST_F(Bar, MayBeAnsweredWithItsOwnPositionWithoutEnd) {
  answers = true;
  bar.SetScrollBarPosition(150, true);
  EXPECT_EQ(heard, Positions({150}));
}

TEST_F(Bar, ReportsWhatAPersonDoesWithIt) {
  auto* widget = WidgetOf(&panel)->findChild<QScrollBar*>();
  ASSERT_NE(widget, nullptr);
  widget->triggerAction(QAbstractSlider::SliderSingleStepAdd);
  EXPECT_EQ(heard, Positions({73}));
  EXPECT_EQ(bar.GetScrollBarPosition(), 73);
  EXPECT_EQ(widget->maximum(), 700);
}

TEST_F(Bar, IsHiddenUntilItIsShown) {
  EXPECT_FALSE(bar.IsShown());
  bar.Show(true);
  EXPECT_TRUE(bar.IsShown());
  EXPECT_GT(ScrollBar::GetDefaultSize(), 5);
  EXPECT_EQ(bar.GetStep(), 73);
}

TEST(Theme, TextHasAContrastOfFourAndAHalfOnWindowAndBandInLightAndDark) {
  for (const UIF::Theme theme : {UIF::Theme::Light, UIF::Theme::Dark}) {
    ApplyTheme(theme);
    const Color text = ColorManager::GetColor(kColor_ReversibleBlack);
    EXPECT_GE(Contrast(text, ColorManager::GetColor(kColor_WindowBackground)), 4.5);
    EXPECT_GE(Contrast(text, ColorManager::GetColor(kColor_ReversibleGray)), 4.5);
    const QPalette palette = QApplication::palette();
    EXPECT_GE(Contrast(FromQt(palette.color(QPalette::Text)), FromQt(palette.color(QPalette::Base))), 4.5);
    EXPECT_GE(Contrast(FromQt(palette.color(QPalette::ButtonText)), FromQt(palette.color(QPalette::Button))), 4.5);
    EXPECT_GE(Contrast(FromQt(palette.color(QPalette::PlaceholderText)), FromQt(palette.color(QPalette::Base))), 4.5);
    EXPECT_GE(Contrast(FromQt(palette.color(QPalette::HighlightedText)), FromQt(palette.color(QPalette::Highlight))),
              4.5);
    // Hot text stands on the window and on the band of a selected row.
    const Color hot = FromQt(palette.color(QPalette::Link));
    EXPECT_GE(Contrast(hot, ColorManager::GetColor(kColor_WindowBackground)), 4.5);
    EXPECT_GE(Contrast(hot, ColorManager::GetColor(kColor_ReversibleGray)), 4.5);
  }
  ApplyTheme(UIF::Theme::Light);
}

TEST(Theme, WaitsWithATipAsLongAsItsControlAsks) {
  ApplyTheme(UIF::Theme::Light);
  QWidget widget;
  widget.setProperty("toolTipDelay", 1500);
  EXPECT_EQ(widget.style()->styleHint(QStyle::SH_ToolTip_WakeUpDelay, nullptr, &widget), 1500);
}

TEST(MessageBox, GoesToWhoeverDrivesTheProgram) {
  std::vector<MessageBoxRecord> boxes;
  SetMessageBoxHook([&](const MessageBoxRecord& record) {
    boxes.push_back(record);
    return 1;
  });
  EXPECT_EQ(MessageBoxW(u"No room.", u"Captions", 1, 4, 0), 1);
  SetMessageBoxHook(nullptr);
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].text, u"No room.");
  EXPECT_EQ(boxes[0].title, u"Captions");
  EXPECT_EQ(boxes[0].flags, 1);
  EXPECT_EQ(boxes[0].icon, 4);
  EXPECT_EQ(boxes[0].defaultResult, 0);
}

TEST(ContextMenu, SendsTheCommandThatWasChosenToThePanelOnDuty) {
  std::string log;
  test::Frame frame;
  test::Panel panel(&log);
  panel.Create(u"test.panel", u"Panel", &frame, true);
  SetTabViewOnDuty(&panel);
  panel.obeys = 57632;
  MenuUtils::MenuItem remove;
  remove.text = zebcore::FromUTF8("Delete");
  remove.command = 57632;
  MenuUtils::MenuItem line;
  line.separator = true;
  MenuUtils::SetMenu("Test_Menu", {remove, line});
  std::size_t shown = 0;
  MenuUtils::SetMenuHook([&](const std::string&, const std::vector<MenuUtils::MenuItem>& items) {
    shown = items.size();
    return 57632;
  });
  log.clear();
  MenuUtils::TrackContextMenu("Test_Menu", panel.GetZEBNode(), {5, 5});
  MenuUtils::SetMenuHook(nullptr);
  EXPECT_EQ(shown, 2U);
  EXPECT_EQ(log, "command57632 ");
  panel.Destroy();
}
