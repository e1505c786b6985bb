#include <cmath>

#include <QApplication>
#include <QPalette>
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

INSTANTIATE_TEST_SUITE_P(Themes, Contrasts, testing::Values(UIF::Theme::Light, UIF::Theme::Dark),
                         [](const auto& theme) { return theme.param == UIF::Theme::Light ? "Light" : "Dark"; });
