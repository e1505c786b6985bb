#include <cmath>

#include <QApplication>
#include <QPalette>
#include <QScrollBar>
#include <QStyle>
#include <gtest/gtest.h>

#include "UIF/Drawing.h"
#include "UIF/Theme.h"

namespace {

double Channel(double value) {
  return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}
double Luminance(const QColor& color) {
  return 0.2126 * Channel(color.redF()) + 0.7152 * Channel(color.greenF()) + 0.0722 * Channel(color.blueF());
}
// As the web's accessibility guidelines reckon it, from 1 to 21.
double Contrast(const QColor& one, const QColor& other) {
  const double a = Luminance(one) + 0.05;
  const double b = Luminance(other) + 0.05;
  return std::max(a, b) / std::min(a, b);
}

struct Pair {
  const char* what;
  QPalette::ColorGroup group;
  QPalette::ColorRole ink;
  QPalette::ColorRole ground;
};

// What the controls write in, and on.
constexpr Pair kWritten[] = {
    {"labels", QPalette::Active, QPalette::WindowText, QPalette::Window},
    {"hot text and the ring around the focus", QPalette::Active, QPalette::Link, QPalette::Window},
    {"buttons and popups", QPalette::Active, QPalette::ButtonText, QPalette::Button},
    {"typed text and lists", QPalette::Active, QPalette::Text, QPalette::Base},
    {"what an empty box is for", QPalette::Active, QPalette::PlaceholderText, QPalette::Base},
    {"the chosen line of a list", QPalette::Active, QPalette::HighlightedText, QPalette::Highlight},
    {"dimmed labels", QPalette::Disabled, QPalette::WindowText, QPalette::Window},
    {"dimmed text in fields", QPalette::Disabled, QPalette::Text, QPalette::Base},
    {"dimmed buttons and popups", QPalette::Disabled, QPalette::ButtonText, QPalette::Button},
    {"what is marked where the focus is not", QPalette::Inactive, QPalette::HighlightedText, QPalette::Highlight},
};

class Contrasts : public testing::TestWithParam<UIF::Theme> {
 protected:
  void SetUp() override {
    mBefore = UIF::ColorManager::GetTheme();
    UIF::ApplyTheme(GetParam());
  }
  void TearDown() override { UIF::ApplyTheme(mBefore); }

 private:
  UIF::Theme mBefore{};
};

} // namespace

TEST_P(Contrasts, OfAllThatIsWrittenAreAtLeastFourAndAHalfToOne) {
  const QPalette palette = QApplication::palette();
  for (const Pair& pair : kWritten)
    EXPECT_GE(Contrast(palette.color(pair.group, pair.ink), palette.color(pair.group, pair.ground)), 4.5) << pair.what;
}

// Frames of controls, the ring around the focus, and the handles of scroll bars, which take the frames' colour.
TEST_P(Contrasts, OfWhatControlsAreKnownByAreAtLeastThreeToOne) {
  const QPalette palette = QApplication::palette();
  for (const QPalette::ColorRole ink : {QPalette::Mid, QPalette::Link}) {
    for (const QPalette::ColorRole ground : {QPalette::Window, QPalette::Base})
      EXPECT_GE(Contrast(palette.color(ink), palette.color(ground)), 3.0) << ink << " on " << ground;
  }
}

TEST_P(Contrasts, OfAScrollBarsHandleAreThoseOfAFrame) {
  QScrollBar bar(Qt::Vertical);
  bar.resize(QApplication::style()->pixelMetric(QStyle::PM_ScrollBarExtent), 200);
  bar.setRange(0, 300);
  bar.setPageStep(100);
  const QImage picture = bar.grab().toImage();
  const int middle = bar.width() / 2;
  const QPalette palette = QApplication::palette();
  EXPECT_EQ(picture.pixelColor(middle, 25), palette.color(QPalette::Mid)) << "a quarter of it, from the very top";
  EXPECT_EQ(picture.pixelColor(middle, 2), palette.color(QPalette::Mid)) << "no arrow above it";
  EXPECT_EQ(picture.pixelColor(middle, 75), palette.color(QPalette::Window));
  bar.setValue(300);
  EXPECT_EQ(bar.grab().toImage().pixelColor(middle, 197), palette.color(QPalette::Mid));
  bar.setRange(0, 0);
  EXPECT_EQ(bar.grab().toImage().pixelColor(middle, 100), palette.color(QPalette::Window)) << "nothing to scroll";
}

INSTANTIATE_TEST_SUITE_P(Themes, Contrasts, testing::Values(UIF::Theme::Light, UIF::Theme::Dark),
                         [](const auto& theme) { return theme.param == UIF::Theme::Light ? "Light" : "Dark"; });
