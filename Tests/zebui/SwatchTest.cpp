#include <algorithm>
#include <cmath>

#include <QAccessible>
#include <QImage>
#include <QPushButton>

#include "Screen.h"
#include "zebui/Driver.h"
#include "zebui/PaintedButton.h"
#include "zebui/Swatch.h"

using namespace zebui;
using controls::UI_Swatch;
using controls::UnManagedRGBA;

namespace {

struct Swatch : testing::Test {
  test::Window window;
  boost::intrusive_ptr<UI_Swatch> swatch;
  int presses = 0;

  void SetUp() override {
    swatch = window.Add(new UI_Swatch);
    swatch->UI_SetLocalRectF({0, 0, 20, 20});
    swatch->UI_SetToolTip(u"Choose Color", 400);
    swatch->NotifyWhenChanged([this](const ui::UI_ControlChangedMessage&) { ++presses; });
    swatch->SetDisplayBorder(true);
  }
  QPushButton* Button() const { return qobject_cast<QPushButton*>(toolkit::WidgetOf(swatch.get())); }
  QImage Picture() const { return Button()->grab().toImage(); }
};

const ui::KeyboardCode kSpace{0x20};

} // namespace

TEST_F(Swatch, ShowsItsColourAndReportsNothingWhenItIsSet) {
  swatch->SetValue({0.0F, 0.0F, 1.0F, 1.0F});
  EXPECT_EQ(Picture().pixelColor(10, 10), QColor(0, 0, 255));
  EXPECT_EQ(swatch->GetValue(), (UnManagedRGBA{0.0F, 0.0F, 1.0F, 1.0F}));
  EXPECT_EQ(presses, 0);
}

TEST_F(Swatch, ShowsACheckerboardUnderWhatCanBeSeenThrough) {
  swatch->SetValue({1.0F, 0.0F, 0.0F, 0.5F});
  const QImage picture = Picture();
  EXPECT_NE(picture.pixelColor(4, 4), picture.pixelColor(8, 4));
  EXPECT_GT(picture.pixelColor(4, 4).red(), picture.pixelColor(4, 4).blue());
  swatch->SetValue({1.0F, 0.0F, 0.0F, 1.0F});
  EXPECT_EQ(Picture().pixelColor(4, 4), Picture().pixelColor(8, 4));
}

TEST_F(Swatch, HasABorderOnlyWhenAskedFor) {
  swatch->SetValue({0.0F, 1.0F, 0.0F, 1.0F});
  EXPECT_NE(Picture().pixelColor(10, 0), QColor(0, 255, 0));
  swatch->SetDisplayBorder(false);
  EXPECT_EQ(Picture().pixelColor(10, 0), QColor(0, 255, 0));
}

TEST_F(Swatch, ReportsAClickSpaceAndEnter) {
  window.Activate();
  Button()->click();
  EXPECT_EQ(presses, 1);
  swatch->UI_GainKeyboardFocus(ui::kFocusChange_Advance);
  EXPECT_TRUE(driver::PressKey(kSpace, ui::kModKey_None, u" "));
  EXPECT_TRUE(driver::PressKey(ui::kKeyboardCode_Enter, ui::kModKey_None, u"\r"));
  EXPECT_EQ(presses, 3);
  EXPECT_FALSE(driver::PressKey(kSpace, ui::kModKey_Control, u" "));
  EXPECT_EQ(presses, 3);
}

TEST_F(Swatch, IsPressedOnceHoweverLongTheKeyIsHeld) {
  swatch->UI_GainKeyboardFocus(ui::kFocusChange_Advance);
  for (const bool isRepeat : {false, true, true}) {
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), isRepeat);
    QCoreApplication::sendEvent(Button(), &event);
    EXPECT_TRUE(event.isAccepted());
  }
  EXPECT_EQ(presses, 1);
}

TEST_F(Swatch, DoesNothingWhenDisabledAndLooksIt) {
  swatch->SetValue({0.0F, 0.0F, 1.0F, 1.0F});
  const QImage before = Picture();
  swatch->SetDisabled(true);
  swatch->Press();
  Button()->click();
  EXPECT_EQ(presses, 0);
  EXPECT_NE(Picture(), before);
}

TEST_F(Swatch, TellsAssistiveTechnologyThatItIsAButtonOfThatNameAndColour) {
  swatch->SetValue({1.0F, 0.5F, 0.0F, 1.0F});
  QAccessibleInterface* access = QAccessible::queryAccessibleInterface(Button());
  ASSERT_NE(access, nullptr);
  EXPECT_EQ(access->role(), QAccessible::Button);
  EXPECT_EQ(access->text(QAccessible::Name), QStringLiteral("Choose Color"));
  EXPECT_EQ(access->text(QAccessible::Description), QStringLiteral("#ff8000"));
  EXPECT_TRUE(access->state().focusable);
}

TEST_F(Swatch, ShowsThatItHasTheFocus) {
  swatch->SetValue({1.0F, 1.0F, 1.0F, 1.0F});
  const QImage without = Picture();
  swatch->UI_GainKeyboardFocus(ui::kFocusChange_Advance);
  EXPECT_NE(Picture(), without);
}

TEST_F(Swatch, TakesColoursOutOfRangeAsTheNearestAndNotANumberAsZero) {
  swatch->SetValue({7.0F, -3.0F, std::nanf(""), 1.0F});
  EXPECT_EQ(Picture().pixelColor(10, 10), QColor(255, 0, 0));
}

TEST_F(Swatch, MayBeTakenAwayByItsOwnReport) {
  swatch->NotifyWhenChanged([this](const ui::UI_ControlChangedMessage&) {
    ++presses;
    window.root->ChildRemove(swatch);
    swatch = nullptr;
  });
  QPushButton* button = Button();
  button->click();
  EXPECT_EQ(presses, 1);
}

TEST(SwatchAlone, WorksWithoutAScreen) {
  const boost::intrusive_ptr<UI_Swatch> swatch(new UI_Swatch);
  int presses = 0;
  swatch->NotifyWhenChanged([&](const ui::UI_ControlChangedMessage&) { ++presses; });
  swatch->SetValue({0.25F, 0.5F, 0.75F, 1.0F});
  swatch->Press();
  EXPECT_EQ(presses, 1);
  EXPECT_EQ(swatch->GetValue().green, 0.5F);
}

TEST(ControlColors, InkAndAccentStandOutFourAndAHalfToOneOnEveryFill) {
  const auto luminance = [](const QColor& color) {
    const auto part = [](double value) {
      return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
  };
  const auto contrast = [&](const QColor& a, const QColor& b) {
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
  };
  // The colours of both themes: window, text, link, weak text.
  const QColor themes[2][4] = {{{246, 247, 249}, {26, 30, 36}, {18, 86, 190}, {104, 112, 124}},
                               {{31, 34, 40}, {230, 233, 238}, {124, 176, 255}, {150, 157, 168}}};
  for (const auto& theme : themes) {
    QPalette palette;
    palette.setColor(QPalette::Window, theme[0]);
    palette.setColor(QPalette::ButtonText, theme[1]);
    palette.setColor(QPalette::Link, theme[2]);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, theme[3]);
    for (int flags = 0; flags < 16; ++flags) {
      toolkit::ButtonLook look;
      look.enabled = (flags & 1) != 0;
      look.hovered = (flags & 2) != 0;
      look.pressed = (flags & 4) != 0;
      look.on = (flags & 8) != 0;
      const toolkit::ControlColors colors = toolkit::ColorsFor(palette, look);
      const QColor ground = colors.fill.isValid() ? colors.fill : theme[0];
      EXPECT_GE(contrast(colors.ink, ground), 4.5) << flags;
      EXPECT_GE(contrast(colors.accent, ground), 4.5) << flags;
    }
  }
}
