#include "Builders.h"

namespace {

using namespace builders;

constexpr auto kText = CaptioningColor::kColorType_Text;

TextSpanAttributes Colored(const CaptioningColor& color) {
  TextSpanAttributes span;
  span.textColor = color;
  return span;
}

CaptioningColor Beside(const CaptioningColor& present, CaptioningColor color) {
  EXPECT_TRUE(SnapToLegalColorBeside(kCC1, kText, present, color));
  return color;
}

TEST(AColorWithAnOpacityThatTheFormatHasNot, ReachesAllRunsAndEachKeepsItsOwnOpacity) {
  CaptionFormatInfo info;
  info.SetColor(kText, {0, 0, 1, 0.5F}, true);
  const CaptionStatePtr state = State(u"abcdef", {{0, Colored({1, 0, 0, 0.5F})}, {2, Colored({0, 1, 0, 1})}});
  const CaptionStatePtr changed = ApplyToRange(state, kFormatTextColor, info, kWhole, kCC1);
  EXPECT_EQ(*changed, *State(u"abcdef", {{0, Colored({0, 0, 1, 0.5F})}, {2, Colored({0, 0, 1, 1})}}));
}

TEST(AColorWithAnOpacityThatTheFormatHasNot, IsSeenWhereNoneWas) {
  EXPECT_EQ(Beside({}, {0, 0, 1, 0.5F}), (CaptioningColor{0, 0, 1, 1}));
}

TEST(AColorWithAnOpacityThatTheFormatHasNot, IsStillRefusedIfItsHueIsNoneOfTheFormats) {
  CaptioningColor odd{0.5F, 0.5F, 0, 0.5F};
  EXPECT_FALSE(SnapToLegalColorBeside(kCC1, kText, kWhite, odd));
}

TEST(NoColor, DoesNotTurnATextBlackThatMustHaveOne) {
  CaptioningColor none{};
  EXPECT_FALSE(SnapToLegalColorBeside(kCC1, kText, kWhite, none));
}

} // namespace
