#include <cmath>
#include <limits>

#include "Builders.h"

// Attributes that are no numbers, or have no end.

using namespace builders;

namespace {

constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float kEndless = std::numeric_limits<float>::infinity();

} // namespace

TEST(SharedAttributes, ThatAreNoNumbersReadAsIfTheyHadNotBeenSaid) {
  TextSpanAttributes span = Bold();
  span.size = kNotANumber;
  span.edgeWidth = -kEndless;
  span.textColor = {kNotANumber, 0.5F, kEndless, 0.25F};
  const SharedSpan shared = Share(span);
  EXPECT_EQ(shared->size, TextSpanAttributes().size);
  EXPECT_EQ(shared->edgeWidth, 0.0F);
  EXPECT_EQ(shared->textColor, CaptioningColor(1, 0.5F, 1, 0.25F));
  EXPECT_TRUE(shared->bold);
}

TEST(SharedAttributes, ThatAreNoNumbersAreStoredOnceAsAllOthersAre) {
  TextSpanAttributes span;
  span.backgroundColor.alpha = kNotANumber;
  EXPECT_EQ(Share(span), Share(span));
}

TEST(SharedAttributes, ThatAreNumbersStayAsTheyAre) {
  TextSpanAttributes span = Italic();
  span.size = -0.0F;
  span.edgeColor = {2.0F, -1.0F, std::numeric_limits<float>::denorm_min(), std::numeric_limits<float>::max()};
  EXPECT_EQ(*Share(span), span);
}

TEST(MergedFormat, OfACaptionWhoseSizeIsNoNumberIsNotMixed) {
  const CaptionStatePtr state = State(u"abc", {{0, Sized(kNotANumber)}});
  bool isUniform = false;
  EXPECT_EQ(Merged({state, state})->GetFontSize(isUniform), TextSpanAttributes().size);
  EXPECT_TRUE(isUniform);
}
