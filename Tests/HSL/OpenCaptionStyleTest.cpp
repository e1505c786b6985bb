#include <gtest/gtest.h>

#include "OpenCaptions.h"

// How the characters of open captions look, in pixels of the picture.

using namespace test;

namespace {

constexpr int kNear = 2;

TEST(OpenCaptionStyle, TwiceTheSizeIsTwiceAsHigh) {
  const int once = Ink(Caption(u"H", Letters(18))).Height();
  const int twice = Ink(Caption(u"H", Letters(36))).Height();
  EXPECT_GT(once, 30);
  EXPECT_NEAR(twice, 2 * once, kNear);
}

TEST(OpenCaptionStyle, AFifteenthOfTheFrameIsALineOfEighteenPoints) {
  EXPECT_NEAR(Measure(Caption(u"H")).blockHeight, 72, 1);
  EXPECT_NEAR(Measure(Caption(u"H"), {1280, 720, {1, 1}}).blockHeight, 48, 1);
}

TEST(OpenCaptionStyle, AMonospacedFamilyGivesNarrowAndWideLettersTheSameRoom) {
  TextSpanAttributes mono = Letters();
  mono.family = u"DejaVu Sans Mono";
  EXPECT_EQ(Measure(Caption(u"iiii", mono)).lineWidth, Measure(Caption(u"MMMM", mono)).lineWidth);
  EXPECT_LT(Measure(Caption(u"iiii")).lineWidth * 2, Measure(Caption(u"MMMM")).lineWidth);
}

TEST(OpenCaptionStyle, AGenericFamilyDrawsWithTheOneThatStandsForIt) {
  TextSpanAttributes mono = Letters();
  mono.family = u"monospace";
  EXPECT_EQ(Measure(Caption(u"iiii", mono)).lineWidth, Measure(Caption(u"MMMM", mono)).lineWidth);
}

TEST(OpenCaptionStyle, BoldHasMoreInk) {
  TextSpanAttributes bold = Letters(36);
  bold.bold = true;
  EXPECT_GT(Draw(Caption(u"HH", bold)).Count(IsInk), Draw(Caption(u"HH", Letters(36))).Count(IsInk) * 5 / 4);
}

TEST(OpenCaptionStyle, ItalicLeansToTheRight) {
  TextSpanAttributes italic = Letters(72);
  italic.italic = true;
  const Picture picture = Draw(Caption(u"l", italic));
  const Area ink = picture.Find(IsInk);
  const auto firstInkOf = [&](int y) {
    int x = ink.left;
    while (x < ink.right && !IsInk(picture(x, y)))
      ++x;
    return x;
  };
  EXPECT_GT(firstInkOf(ink.top + 10), firstInkOf(ink.bottom - 10) + 10);
}

TEST(OpenCaptionStyle, UnderlineRunsBelowTheLettersFromTheFirstToTheLast) {
  TextSpanAttributes underlined = Letters(36);
  underlined.underline = true;
  const Area plain = Ink(Caption(u"xxx", Letters(36)));
  const Picture picture = Draw(Caption(u"xxx", underlined));
  const Area ink = picture.Find(IsInk);
  EXPECT_GT(ink.bottom, plain.bottom + 2);
  const int y = ink.bottom - 2;
  for (int x = plain.left; x < plain.right; ++x)
    ASSERT_TRUE(IsInk(picture(x, y))) << x;
}

TEST(OpenCaptionStyle, TextEdgeAndBoxHaveTheirOwnColours) {
  TextSpanAttributes span = Letters(72, kRed);
  span.edgeColor = kGreen;
  span.edgeWidth = 2;
  span.backgroundColor = kBlue;
  const Picture picture = Draw(Caption(u"H", span));
  const Area text = picture.Find(IsRed);
  const Area edge = picture.Find(IsGreen);
  const Area box = picture.Find(IsBlue);
  EXPECT_GT(text.Width(), 50);
  EXPECT_NEAR(edge.left, text.left - 8, kNear);
  EXPECT_NEAR(edge.right, text.right + 8, kNear);
  EXPECT_LT(box.left, edge.left);
  EXPECT_GT(box.bottom, edge.bottom);
}

TEST(OpenCaptionStyle, AnEdgeIsAsWideAsItSaysInPointsAtEverySize) {
  for (const float width : {1.0F, 2.5F, 5.0F}) {
    TextSpanAttributes edged = Letters(36);
    edged.edgeColor = kBlack;
    edged.edgeWidth = width;
    const Area plain = Ink(Caption(u"H", Letters(36), InCell(4)));
    const Area ink = Ink(Caption(u"H", edged, InCell(4)));
    EXPECT_NEAR(ink.Width(), plain.Width() + 2 * 4 * width, kNear) << width;
    EXPECT_NEAR(ink.Height(), plain.Height() + 2 * 4 * width, kNear) << width;
  }
}

TEST(OpenCaptionStyle, AnEdgeWithoutColourOrWithoutWidthIsNotDrawn) {
  TextSpanAttributes noColor = Letters();
  noColor.edgeWidth = 4;
  TextSpanAttributes noWidth = Letters();
  noWidth.edgeColor = kBlack;
  const Picture plain = Draw(Caption(u"Edge"));
  EXPECT_TRUE(Draw(Caption(u"Edge", noColor)).Equals(plain));
  EXPECT_TRUE(Draw(Caption(u"Edge", noWidth)).Equals(plain));
}

TEST(OpenCaptionStyle, OpacityOfTheTextLetsThePictureThroughAndNotTheEdge) {
  TextSpanAttributes span = Letters(144, {1, 1, 1, 0.5F});
  span.edgeColor = kBlack;
  span.edgeWidth = 3;
  const Picture picture = Draw(Caption(u"I", span, InCell(4)));
  const Area ink = picture.Find(IsInk);
  const Pixel middle = picture((ink.left + ink.right) / 2, (ink.top + ink.bottom) / 2);
  EXPECT_NEAR(middle.red, (255 + kGrey) / 2, 3);
}

TEST(OpenCaptionStyle, OpacityOfTheBoxLetsThePictureThrough) {
  const Picture picture = Draw(Caption(u"box", BoxAlone({1, 0, 0, 0.5F})));
  const Area ink = picture.Find(IsInk);
  const Pixel middle = picture((ink.left + ink.right) / 2, (ink.top + ink.bottom) / 2);
  EXPECT_NEAR(middle.red, (255 + kGrey) / 2, 2);
  EXPECT_NEAR(middle.green, kGrey / 2, 2);
}

TEST(OpenCaptionStyle, OpacityOfTheEdgeLetsThePictureThrough) {
  TextSpanAttributes span = Letters(144, kBlack);
  span.edgeColor = {1, 0, 0, 0.5F};
  span.edgeWidth = 6;
  const Picture picture = Draw(Caption(u"I", span, InCell(4)));
  const Area ink = picture.Find(IsInk);
  EXPECT_NEAR(picture(ink.left + 12, (ink.top + ink.bottom) / 2).red, (255 + kGrey) / 2, 3);
}

TEST(OpenCaptionStyle, AHalfOpaqueBoxIsEquallyDarkEverywhereWhateverLinesAndRunsItHas) {
  TextSpanAttributes large = BoxAlone({0, 0, 0, 0.5F}, 30);
  const Picture picture = Draw(Caption(
      u"one two\nthree four\nfive", Runs{{0, BoxAlone({0, 0, 0, 0.5F})}, {4, large}, {12, BoxAlone({0, 0, 0, 0.5F})}},
      Spaced(Aligned(InCell(4), 1), 4)));
  const Area box = picture.Find(IsInk);
  EXPECT_GT(box.Height(), 200);
  EXPECT_EQ(picture.Count([](const Pixel& p) { return p.red < kGrey / 2 - 1; }), 0);
  EXPECT_EQ(picture.Count([](const Pixel& p) { return p.red > kGrey / 2 + 1 && p.red < kGrey; }), 0);
}

TEST(OpenCaptionStyle, RunsOfALineStandOnOneBaseline) {
  const Picture picture = Draw(
      Caption(u"HHH", Runs{{0, Letters(18, kRed)}, {1, Letters(54, kGreen)}, {2, Letters(36, kBlue)}}, At(100, 100)));
  const int baseline = picture.Find(IsRed).bottom;
  EXPECT_NEAR(picture.Find(IsGreen).bottom, baseline, 1);
  EXPECT_NEAR(picture.Find(IsBlue).bottom, baseline, 1);
  EXPECT_LE(picture.Find(IsRed).right, picture.Find(IsGreen).left);
  EXPECT_LE(picture.Find(IsGreen).right, picture.Find(IsBlue).left);
}

TEST(OpenCaptionStyle, EachRunOfALineHasItsOwnBox) {
  const Picture picture =
      Draw(Caption(u"HHHH", Runs{{0, BoxAlone(kRed)}, {1, Letters()}, {2, BoxAlone(kBlue)}}, At(100, 100)));
  const Area red = picture.Find(IsRed);
  const Area blue = picture.Find(IsBlue);
  EXPECT_LT(red.right + 20, blue.left) << "no box behind the run between them";
  EXPECT_EQ(red.top, blue.top);
  EXPECT_EQ(red.bottom, blue.bottom);
}

TEST(OpenCaptionStyle, WhatLooksLikeACommandOfTheScriptIsTextLikeAnyOther) {
  EXPECT_GT(Measure(Caption(u"{\\b1}x")).lineWidth, Measure(Caption(u"x")).lineWidth * 3);
  EXPECT_GT(Measure(Caption(u"a\\Nb")).lineWidth, Measure(Caption(u"ab")).lineWidth * 3 / 2);
  EXPECT_EQ(Measure(Caption(u"a\\Nb")).blockHeight, Measure(Caption(u"ab")).blockHeight);
}

TEST(OpenCaptionStyle, AFamilyWhoseNameLooksLikeACommandDoesNoHarm) {
  TextSpanAttributes odd = Letters();
  odd.family = u"No\\fs200 {such} (family)";
  EXPECT_NEAR(Measure(Caption(u"H", odd)).blockHeight, 72, 1);
}

TEST(OpenCaptionStyle, TheOpacityOfTheWholeDrawingCounts) {
  const auto box = Caption(u"box", BoxAlone(kBlack));
  const Picture none = Draw({box}, 1920, 1080, {}, 0.0);
  EXPECT_EQ(none.Count(IsInk), 0);
  const Picture half = Draw({box}, 1920, 1080, {}, 0.5);
  const Area ink = half.Find(IsInk);
  EXPECT_NEAR(half((ink.left + ink.right) / 2, (ink.top + ink.bottom) / 2).red, kGrey / 2, 2);
}

} // namespace
