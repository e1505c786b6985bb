#include <thread>

#include <gtest/gtest.h>

#include "HSL/OpenCaptionLayout.h"
#include "OpenCaptions.h"

// Where open captions stand, in pixels of the picture.

using namespace test;

namespace {

Area Box(const CaptionStatePtr& caption) {
  return Draw(caption).Find(IsRed);
}
const CaptioningColor kBoxColor = kRed;

TEST(OpenCaptionPlace, XAndYAreTheTopLeftOfTheBlockInPixelsOfTheFrame) {
  const auto caption = Caption(u"Here", BoxAlone(kBoxColor), At(333, 222));
  const Area box = Box(caption);
  EXPECT_NEAR(box.left, 333, 1);
  EXPECT_NEAR(box.top, 222, 1);
}

TEST(OpenCaptionPlace, TheMeasureIsTheSizeOfWhatIsDrawn) {
  const auto boxed = BoxAlone(kBoxColor);
  TextSpanAttributes large = BoxAlone(kBoxColor, 40);
  large.bold = true;
  large.italic = true;
  const std::vector<CaptionStatePtr> captions{
      Caption(u"One line", boxed),
      Caption(u"Two\nlines of it", boxed),
      Caption(u"Three\nlines\napart", boxed, Spaced(At(100, 100), 35)),
      Caption(u"Lines\nclose", boxed, Spaced(At(100, 100), -30)),
      Caption(u"Small and large\nand small", Runs{{0, boxed}, {10, large}, {15, boxed}}, Aligned(At(50, 60), 2)),
      Caption(u"السلام عليكم", boxed),
      Caption(u"नमस्ते\nदुनिया", boxed),
      Caption(u"日本語の字幕", boxed)};
  for (const CaptionStatePtr& caption : captions) {
    const Area box = Box(caption);
    const HSL::OpenTextMeasure measure = Measure(caption);
    EXPECT_NEAR(box.Width(), measure.lineWidth, 1) << zebcore::ToUTF8(caption->text);
    EXPECT_NEAR(box.Height(), measure.blockHeight, 1) << zebcore::ToUTF8(caption->text);
  }
}

TEST(OpenCaptionPlace, ABlockAtTheLastXAndYThatTheMeasureLeavesIsWhollySeenAtTheBorder) {
  const auto first = Caption(u"gÄjq", BoxAlone(kBoxColor));
  const HSL::OpenTextMeasure measure = Measure(first);
  const Area box = Box(Caption(u"gÄjq", BoxAlone(kBoxColor), At(1920 - measure.lineWidth, 1080 - measure.blockHeight)));
  EXPECT_NEAR(box.right, 1920, 1);
  EXPECT_NEAR(box.bottom, 1080, 1);
  EXPECT_NEAR(box.Width(), measure.lineWidth, 1);
  EXPECT_NEAR(box.Height(), measure.blockHeight, 1);
}

TEST(OpenCaptionPlace, WithoutABoxEdgesCountSoThatNoneIsCutOffAtTheBorder) {
  TextSpanAttributes edged = Letters(36);
  edged.edgeColor = kBlack;
  edged.edgeWidth = 4;
  const Area inside = Ink(Caption(u"HH", edged, At(500, 500)));
  const HSL::OpenTextMeasure measure = Measure(Caption(u"HH", edged));
  const Area border = Ink(Caption(u"HH", edged, At(0, 0)));
  EXPECT_EQ(border.Width(), inside.Width());
  EXPECT_EQ(border.Height(), inside.Height());
  EXPECT_LE(inside.right, 500 + measure.lineWidth);
  EXPECT_LE(inside.bottom, 500 + measure.blockHeight);
}

TEST(OpenCaptionPlace, PartsBeyondTheFrameAreLeftOutAndTheRestStaysWhereItIs) {
  const Area box = Box(Caption(u"Half of it", BoxAlone(kBoxColor), At(-100, -20)));
  const HSL::OpenTextMeasure measure = Measure(Caption(u"Half of it", BoxAlone(kBoxColor)));
  EXPECT_EQ(box.left, 0);
  EXPECT_EQ(box.top, 0);
  EXPECT_NEAR(box.right, measure.lineWidth - 100, 1);
  EXPECT_NEAR(box.bottom, measure.blockHeight - 20, 1);
  EXPECT_EQ(Draw(Caption(u"Gone", BoxAlone(kBoxColor), At(5000, 5000))).Count(IsInk), 0);
  EXPECT_EQ(Draw(Caption(u"Gone", BoxAlone(kBoxColor), At(-5000, -5000))).Count(IsInk), 0);
}

TEST(OpenCaptionPlace, TheNineCellsLieWithinTheSafeAreaAndTouchItsEdges) {
  constexpr int kAcross[] = {96, 960, 1920 - 96};
  constexpr int kDown[] = {54, 540, 1080 - 54};
  for (int anchor = 0; anchor <= 8; ++anchor) {
    const Area box = Box(Caption(u"Cell", BoxAlone(kBoxColor), InCell(anchor)));
    const int across[] = {box.left, (box.left + box.right) / 2, box.right};
    const int down[] = {box.top, (box.top + box.bottom) / 2, box.bottom};
    EXPECT_NEAR(across[anchor % 3], kAcross[anchor % 3], 1) << anchor;
    EXPECT_NEAR(down[anchor / 3], kDown[anchor / 3], 1) << anchor;
  }
}

TEST(OpenCaptionPlace, ACaptionThatWasNeverPlacedStandsAtTheBottomByItsAlignment) {
  ParagraphStyleAttributes paragraph;
  for (int alignment = 0; alignment <= 2; ++alignment)
    EXPECT_EQ(Box(Caption(u"New", BoxAlone(kBoxColor), Aligned(paragraph, alignment))),
              Box(Caption(u"New", BoxAlone(kBoxColor), Aligned(InCell(6 + alignment), alignment))));
}

TEST(OpenCaptionPlace, LinesAreAlignedWithinTheBlockAndDoNotMoveIt) {
  const auto lines = [](int alignment) {
    const Picture picture = Draw(Caption(u"long long line\nx", Runs{{0, BoxAlone(kRed)}, {15, BoxAlone(kBlue)}},
                                         Aligned(At(300, 300), alignment)));
    return std::pair(picture.Find(IsRed), picture.Find(IsBlue));
  };
  const auto [leftLong, leftShort] = lines(0);
  const auto [centreLong, centreShort] = lines(1);
  const auto [rightLong, rightShort] = lines(2);
  EXPECT_EQ(leftLong, centreLong);
  EXPECT_EQ(leftLong, rightLong);
  EXPECT_EQ(leftShort.left, leftLong.left);
  EXPECT_NEAR(centreShort.left + centreShort.right, centreLong.left + centreLong.right, 2);
  EXPECT_EQ(rightShort.right, rightLong.right);
}

TEST(OpenCaptionPlace, LineSpacingAddsItsPercentageOfALineBetweenLines) {
  const auto distance = [](int percent) {
    const Picture picture =
        Draw(Caption(u"H\nH", Runs{{0, Letters(18, kRed)}, {2, Letters(18, kBlue)}}, Spaced(At(300, 300), percent)));
    return picture.Find(IsBlue).bottom - picture.Find(IsRed).bottom;
  };
  EXPECT_NEAR(distance(0), 72, 1);
  EXPECT_NEAR(distance(50), 108, 1);
  EXPECT_NEAR(distance(100), 144, 1);
  EXPECT_NEAR(distance(-25), 54, 1);
}

TEST(OpenCaptionPlace, LineSpacingGrowsTheMeasureByEveryGapAndMovesNoFirstLine) {
  const auto height = [](int percent) {
    return Measure(Caption(u"a\nb\nc", Letters(), Spaced(At(0, 0), percent))).blockHeight;
  };
  EXPECT_NEAR(height(0), 216, 1);
  EXPECT_NEAR(height(50), 216 + 72, 1);
  EXPECT_NEAR(height(-50), 216 - 72, 1);
  EXPECT_EQ(Box(Caption(u"a", BoxAlone(kBoxColor), Spaced(At(9, 9), 80))),
            Box(Caption(u"a", BoxAlone(kBoxColor), At(9, 9))));
}

TEST(OpenCaptionPlace, AnEmptyLineIsAsHighAsTheOthersAndHasNoBox) {
  EXPECT_EQ(Measure(Caption(u"a\n\nb")).blockHeight, Measure(Caption(u"a\nb\nc")).blockHeight);
  EXPECT_EQ(Measure(Caption(u"a\n   \nb")).blockHeight, Measure(Caption(u"a\nb\nc")).blockHeight);
  const Picture picture = Draw(Caption(u"a\n\nb", BoxAlone(kBoxColor), At(100, 100)));
  const Area box = picture.Find(IsRed);
  EXPECT_FALSE(IsInk(picture(box.left + 2, (box.top + box.bottom) / 2)));
}

TEST(OpenCaptionPlace, LineFeedsAtTheEndTakeNoRoom) {
  EXPECT_EQ(Measure(Caption(u"a\n\n")).blockHeight, Measure(Caption(u"a")).blockHeight);
}

TEST(OpenCaptionPlace, BlanksAtTheStartOfALineIndentIt) {
  EXPECT_GT(Ink(Caption(u"    H")).left, Ink(Caption(u"H")).left + 50);
}

TEST(OpenCaptionPlace, ATextWithNothingToSeeDrawsNothingAndMeasuresNothing) {
  for (const char16_t* text : {u"", u"\n", u"  \n ", u"\u200B"}) {
    EXPECT_EQ(Draw(Caption(text, Boxed(kBlack))).Count(IsInk), 0);
    EXPECT_EQ(Measure(Caption(text)).lineWidth, 0);
    EXPECT_EQ(Measure(Caption(text)).blockHeight, 0);
  }
}

TEST(OpenCaptionPlace, AThumbnailShowsTheLayoutOfTheFrameScaled) {
  for (const auto& caption :
       {Caption(u"The quick brown fox\njumps over the lazy dog.", BoxAlone(kBoxColor), Aligned(InCell(7), 1)),
        Caption(u"At its\nplace", BoxAlone(kBoxColor), Spaced(At(700, 200), 40))}) {
    const Area full = Box(caption);
    const Area small = Draw({caption}, 114, 64).Find(IsRed);
    EXPECT_NEAR(small.left, full.left * 114 / 1920.0, 1);
    EXPECT_NEAR(small.right, full.right * 114 / 1920.0, 1);
    EXPECT_NEAR(small.top, full.top * 64 / 1080.0, 1);
    EXPECT_NEAR(small.bottom, full.bottom * 64 / 1080.0, 1);
  }
}

TEST(OpenCaptionPlace, LettersOfAThumbnailFillTheirBoxAsInTheFrame) {
  const auto caption = Caption(u"HHHHHHHHHHHHHHHH", Letters(36, kRed), At(200, 400));
  const auto isReddish = [](const Pixel& p) { return p.red > p.green + 25; };
  const Area full = Draw(caption).Find(isReddish);
  const Area small = Draw({caption}, 196, 110).Find(isReddish);
  EXPECT_NEAR(small.left, full.left * 196 / 1920.0, 1.5);
  EXPECT_NEAR(small.right, full.right * 196 / 1920.0, 1.5);
}

TEST(OpenCaptionPlace, AThumbnailThatIsNarrowerThanItsFrameSqueezesTheCaptionWithThePicture) {
  const Video wide{4096, 1000, {1, 1}};
  const auto caption = Caption(u"Very wide video", BoxAlone(kBoxColor), Aligned(InCell(7), 1));
  const Area full = Draw({caption}, 4096, 1000, wide).Find(IsRed);
  const Area small = Draw({caption}, 196, 64, wide).Find(IsRed);
  EXPECT_NEAR(small.left, full.left * 196 / 4096.0, 1);
  EXPECT_NEAR(small.right, full.right * 196 / 4096.0, 1);
}

TEST(OpenCaptionPlace, LettersKeepTheirShapeOnPixelsThatAreNotSquare) {
  const Video pal{720, 576, {64, 45}};
  const Video square{1024, 576, {1, 1}};
  const auto caption = Caption(u"OOO", Letters(36, kRed), InCell(4));
  const Area shown = Draw({caption}, 1024, 576, pal).Find(IsRed);
  const Area plain = Draw({caption}, 1024, 576, square).Find(IsRed);
  EXPECT_NEAR(shown.Width(), plain.Width(), 1);
  EXPECT_NEAR(shown.left, plain.left, 1);
  EXPECT_NEAR(Measure(caption, pal).lineWidth * 64.0 / 45.0, Measure(caption, square).lineWidth, 2);
}

TEST(OpenCaptionPlace, XCountsInPixelsOfTheFrameThatAreNotSquareToo) {
  const Video pal{720, 576, {64, 45}};
  const auto caption = Caption(u"Half way", BoxAlone(kBoxColor), At(360, 288));
  const Area box = Draw({caption}, 1024, 576, pal).Find(IsRed);
  EXPECT_NEAR(box.left, 512, 1);
  EXPECT_NEAR(box.top, 288, 1);
}

TEST(OpenCaptionPlace, ATargetALittleLargerThanTheFrameDrawsIntoTheFrameAsItIs) {
  const auto caption = Caption(u"Bottom", BoxAlone(kBoxColor), InCell(7));
  Picture picture(114, 64);
  const boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel> model(
      new zebcaptioning::CaptioningRenderableModel({caption}, 1920, 1080));
  HSL::RenderOpenCaptions(model, {0, 0, 114, 65}, {1, 1}, picture.Frame(), {0, 0, 1920, 1080}, {0, 0, 1920, 1080}, -1,
                          -1, 1.0);
  EXPECT_TRUE(picture.Equals(Draw({caption}, 114, 64)));
}

TEST(OpenCaptionPlace, ATargetWithinTheFrameTakesTheCaptionsWithIt) {
  const auto caption = Caption(u"Inset", BoxAlone(kBoxColor), At(0, 0));
  Picture picture(400, 300);
  const boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel> model(
      new zebcaptioning::CaptioningRenderableModel({caption}, 1920, 1080));
  HSL::RenderOpenCaptions(model, {50, 40, 320, 180}, {1, 1}, picture.Frame(), {0, 0, 1920, 1080}, {0, 0, 1920, 1080},
                          -1, -1, 1.0);
  EXPECT_EQ(picture.Find(IsRed).left, 50);
  EXPECT_EQ(picture.Find(IsRed).top, 40);
}

TEST(OpenCaptionPlace, NoModelNoFrameAndNoSizeDrawNothing) {
  Picture picture(64, 64);
  HSL::RenderOpenCaptions(nullptr, {0, 0, 64, 64}, {1, 1}, picture.Frame(), {0, 0, 64, 64}, {0, 0, 64, 64}, -1, -1,
                          1.0);
  const boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel> model(
      new zebcaptioning::CaptioningRenderableModel({Caption(u"x")}, 0, 0));
  HSL::RenderOpenCaptions(model, {0, 0, 64, 64}, {1, 1}, nullptr, {0, 0, 64, 64}, {0, 0, 64, 64}, -1, -1, 1.0);
  HSL::RenderOpenCaptions(model, {0, 0, 64, 64}, {1, 1}, picture.Frame(), {0, 0, 0, 0}, {0, 0, 0, 0}, -1, -1, 1.0);
  HSL::RenderOpenCaptions(model, {0, 0, 0, 0}, {1, 1}, picture.Frame(), {0, 0, 64, 64}, {0, 0, 64, 64}, -1, -1, 1.0);
  EXPECT_EQ(picture.Count(IsInk), 0);
}

TEST(OpenCaptionsOnShowTogether, AreStackedAwayFromTheEdgeThatTheyAreAnchoredTo) {
  const auto first = Caption(u"First", BoxAlone(kRed), InCell(7));
  const auto second = Caption(u"Second\nof two", BoxAlone(kBlue), InCell(7));
  const Picture bottom = Draw({first, second}, 1920, 1080);
  EXPECT_EQ(bottom.Find(IsRed), Draw(first).Find(IsRed)) << "the first stays where it was";
  EXPECT_NEAR(bottom.Find(IsBlue).bottom, bottom.Find(IsRed).top, 1);
  const Picture top =
      Draw({Caption(u"First", BoxAlone(kRed), InCell(1)), Caption(u"Second", BoxAlone(kBlue), InCell(1))}, 1920, 1080);
  EXPECT_NEAR(top.Find(IsBlue).top, top.Find(IsRed).bottom, 1);
}

TEST(OpenCaptionsOnShowTogether, InDifferentPlacesDoNotMoveEachOther) {
  const auto first = Caption(u"First", BoxAlone(kRed), InCell(6));
  const auto second = Caption(u"Second", BoxAlone(kBlue), InCell(8));
  const Picture both = Draw({first, second}, 1920, 1080);
  EXPECT_EQ(both.Find(IsBlue), Draw(second).Find(IsBlue));
}

TEST(OpenCaptionsOnShowTogether, AtXAndYStayThereAndTheLaterIsInFront) {
  const auto first = Caption(u"MMMMM", BoxAlone(kRed), At(200, 200));
  const auto second = Caption(u"MM", BoxAlone(kBlue), At(200, 200));
  const Picture both = Draw({first, second}, 1920, 1080);
  EXPECT_EQ(both.Find(IsBlue), Draw(second).Find(IsBlue));
  EXPECT_GT(both.Find(IsRed).left, both.Find(IsBlue).left);
}

TEST(OpenCaptionsOnShowTogether, ThatFillTheFrameStayInTheirPlaces) {
  std::vector<HSL::PlacedBlock> blocks(2, {0, 300, 900, 600, false, false});
  HSL::StackBlocks(blocks, 1000);
  EXPECT_EQ(blocks[1].top, 300);
}

TEST(OpenTextMeasure, IsTheSameOnEveryThread) {
  const auto caption = Caption(u"Threads नमस्ते\nand العربية 😀", Boxed());
  const HSL::OpenTextMeasure here = Measure(caption);
  std::vector<HSL::OpenTextMeasure> there(3);
  std::vector<std::thread> threads;
  for (auto& measure : there)
    threads.emplace_back([&] { measure = Measure(caption); });
  for (std::thread& thread : threads)
    thread.join();
  for (const auto& measure : there) {
    EXPECT_EQ(measure.lineWidth, here.lineWidth);
    EXPECT_EQ(measure.blockHeight, here.blockHeight);
  }
}

} // namespace
