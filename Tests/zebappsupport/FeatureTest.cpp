#include <gtest/gtest.h>

#include "zebappsupport/Feature.h"

namespace zebappsupport::feature {
namespace {

TEST(Features, AFeatureThatNobodySetIsOff) {
  EXPECT_FALSE(IsFeatureEnabled("FeatureTest.NeverSet"));
}

TEST(Features, AFeatureIsSwitchedOnAndOffByName) {
  SetFeatureEnabled("FeatureTest.A", true);
  EXPECT_TRUE(IsFeatureEnabled("FeatureTest.A"));
  EXPECT_FALSE(IsFeatureEnabled("FeatureTest.B"));
  EXPECT_FALSE(IsFeatureEnabled("featuretest.a"));
  SetFeatureEnabled("FeatureTest.A", false);
  EXPECT_FALSE(IsFeatureEnabled("FeatureTest.A"));
}

TEST(Features, SwitchingTwiceIsSwitchingOnce) {
  SetFeatureEnabled("FeatureTest.C", true);
  SetFeatureEnabled("FeatureTest.C", true);
  SetFeatureEnabled("FeatureTest.C", false);
  EXPECT_FALSE(IsFeatureEnabled("FeatureTest.C"));
}

TEST(Features, TheNameIsComparedByItsTextNotItsAddress) {
  const std::string first = "FeatureTest.D";
  const std::string second = "FeatureTest.D";
  SetFeatureEnabled(first.c_str(), true);
  EXPECT_TRUE(IsFeatureEnabled(second.c_str()));
  SetFeatureEnabled(second.c_str(), false);
}

TEST(Features, NoNameIsNoFeature) {
  SetFeatureEnabled(nullptr, true);
  EXPECT_FALSE(IsFeatureEnabled(nullptr));
  EXPECT_FALSE(IsFeatureEnabled(""));
}

} // namespace
} // namespace zebappsupport::feature
