#include <gtest/gtest.h>

#include "Captions/contracts/TextSpanAttributes.h"
#include "Captions/view/FontStyleName.h"

namespace Captivo {

namespace {

using zebcaptioning::TextSpanAttributes;

const UString& Regular() {
  return TextSpanAttributes::kFontStyleString_Regular;
}
const UString& Bold() {
  return TextSpanAttributes::kFontStyleString_Bold;
}
const UString& Italic() {
  return TextSpanAttributes::kFontStyleString_Italic;
}
const UString& BoldItalic() {
  return TextSpanAttributes::kFontStyleString_BoldItalic;
}

const UString kWide = u"Condensed"; // a style word that is no weight

UString Align(const UString& style, bool bold, bool italic) {
  bool isSettled = false;
  return AlignFontStyleName(style, bold, italic, isSettled);
}

std::pair<bool, bool> Parse(const UString& name) {
  bool bold = false;
  bool italic = false;
  ParseFontStyleName(name, bold, italic);
  return {bold, italic};
}

} // namespace

TEST(FontStyleName, TheFourCommonStylesAreKnownByName) {
  EXPECT_EQ(Parse(Regular()), std::pair(false, false));
  EXPECT_EQ(Parse(Italic()), std::pair(false, true));
  EXPECT_EQ(Parse(Bold()), std::pair(true, false));
  EXPECT_EQ(Parse(BoldItalic()), std::pair(true, true));
}

TEST(FontStyleName, OtherStylesAreBoldByTheirBeginningAndItalicByTheirEnd) {
  EXPECT_EQ(Parse(u"Bold Condensed"), std::pair(true, false));
  EXPECT_EQ(Parse(u"Bold Condensed Italic"), std::pair(true, true));
  EXPECT_EQ(Parse(u"Condensed Bold"), std::pair(false, false));
  EXPECT_EQ(Parse(u"Light Italic"), std::pair(false, true));
  EXPECT_EQ(Parse(u"Italic Light"), std::pair(false, false));
  EXPECT_EQ(Parse(u""), std::pair(false, false));
}

TEST(FontStyleName, DemiBoldDoesNotCountAsBold) {
  EXPECT_EQ(Parse(u"Demi Bold"), std::pair(false, false));
  EXPECT_EQ(Align(u"Demi Bold", true, false), Bold()) << "and gives way as a weight when bold is switched on";
}

TEST(FontStyleName, ANameShorterThanItalicDoesNotEndWithIt) {
  EXPECT_FALSE(EndsWithItalic(u""));
  EXPECT_FALSE(EndsWithItalic(u"talic"));
  EXPECT_TRUE(EndsWithItalic(Italic()));
  EXPECT_TRUE(EndsWithItalic(u"SemiItalic"));
  EXPECT_FALSE(EndsWithItalic(u"Light italic"));
}

TEST(FontStyleName, AWeightIsTakenOffTheFrontAndItsBlankStays) {
  for (const UString& weight :
       {UString(u"Ultra Light"), UString(u"Light"), UString(u"Medium"), UString(u"Demi Bold"), UString(u"Heavy")}) {
    UString name = weight + u" Condensed";
    EXPECT_TRUE(StripWeightPrefix(name));
    EXPECT_EQ(name, u" Condensed");
  }
  UString name = u"light";
  EXPECT_FALSE(StripWeightPrefix(name));
  EXPECT_EQ(name, u"light");
  name = u"Extra Light";
  EXPECT_FALSE(StripWeightPrefix(name));
  name = u"LightLight";
  EXPECT_TRUE(StripWeightPrefix(name));
  EXPECT_EQ(name, u"Light") << "once";
}

TEST(FontStyleName, NoStyleYetFollowsTheFlags) {
  for (const UString& style : {UString(), Regular()}) {
    EXPECT_EQ(Align(style, true, true), BoldItalic());
    EXPECT_EQ(Align(style, true, false), Bold());
    EXPECT_EQ(Align(style, false, true), Italic());
    EXPECT_EQ(Align(style, false, false), Regular());
  }
}

TEST(FontStyleName, BoldTakesThePlaceOfAWeight) {
  EXPECT_EQ(Align(u"Light", true, false), Bold());
  EXPECT_EQ(Align(u"Light Italic", true, true), u"Bold Italic");
  EXPECT_EQ(Align(u"Light", false, false), u"Light");
}

TEST(FontStyleName, BoldGoesBeforeAnyOtherStyleAndLeavesItAgain) {
  EXPECT_EQ(Align(kWide, true, false), u"Bold Condensed");
  EXPECT_EQ(Align(u"Bold Condensed", false, false), kWide);
  EXPECT_EQ(Align(Bold(), false, false), Regular());
}

TEST(FontStyleName, ItalicGoesBehindAnyStyleAndLeavesItAgain) {
  EXPECT_EQ(Align(kWide, false, true), u"Condensed Italic");
  EXPECT_EQ(Align(u"Condensed Italic", false, false), kWide);
  EXPECT_EQ(Align(Italic(), false, false), Regular());
}

TEST(FontStyleName, BoldGivingWayToItalicIsSettledWithoutALookAtTheFamily) {
  bool isSettled = false;
  EXPECT_EQ(AlignFontStyleName(Bold(), false, true, isSettled), Italic());
  EXPECT_TRUE(isSettled);
  EXPECT_EQ(AlignFontStyleName(u"Condensed", false, true, isSettled), u"Condensed Italic");
  EXPECT_FALSE(isSettled);
  AlignFontStyleName(Regular(), false, true, isSettled);
  EXPECT_FALSE(isSettled);
}

TEST(FontStyleName, APlaceholderGoesThroughTheSameRules) {
  EXPECT_EQ(Align(u"Multiple", true, false), u"Bold Multiple");
  EXPECT_EQ(Align(u"Multiple", false, true), u"Multiple Italic");
}

} // namespace Captivo
