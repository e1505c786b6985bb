#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "Building.h"
#include "Formats/CueBuilder.h"
#include "Formats/Treatment.h"

using namespace building;
using namespace Formats;
using BE::LongLines;
using BE::Overlaps;

namespace {

// "1000-2000 One|2000-3000 Two": times in milliseconds, line feeds as a slash.
std::string Print(const Captions& captions) {
  std::string text;
  for (const CaptionStatePtr& caption : captions) {
    std::string words = Text(caption);
    std::replace(words.begin(), words.end(), '\n', '/');
    text += (text.empty() ? "" : "|") + std::to_string(ToMilliseconds(caption->begin)) + "-" +
            std::to_string(ToMilliseconds(caption->end)) + " " + words;
  }
  return text;
}

Captions Imported(const std::string& text, StreamFormat format = k608) {
  return ReadSubRip(SubRip(text), format).captions;
}

std::string Broken(const UString& text, LongLines how, std::size_t length) {
  Problems problems;
  return Print(BreakLines({Caption(0, 1000, text)}, how, length, k608, problems)).substr(7);
}

const Captions kOverlapping{Caption(0, 4000, u"A"), Caption(2000, 6000, u"B"), Caption(8000, 9000, u"C")};

std::string Resolved(const Captions& captions, Overlaps how, Problems* told = nullptr) {
  Problems problems;
  const std::string text = Print(ResolveOverlaps(captions, how, k608, problems));
  if (told != nullptr)
    *told = problems;
  return text;
}

} // namespace

TEST(GiveStyle, ACaptionWithoutTagsTakesTheStyleOfTheSettings) {
  Problems problems;
  const Captions styled =
      GiveStyle(Imported("One", kOpen), {"Serif", 30.0F, true, true, kYellow, kBlue}, kOpen, problems);
  const TextSpanAttributes& span = *styled[0]->runs[0].attributes;
  EXPECT_EQ(zebcore::ToUTF8(span.family), "Serif");
  EXPECT_EQ(span.size, 30.0F);
  EXPECT_TRUE(span.bold);
  EXPECT_TRUE(span.italic);
  EXPECT_EQ(span.textColor, kYellow);
  EXPECT_EQ(span.backgroundColor, kBlue);
  EXPECT_TRUE(problems.empty());
}

TEST(GiveStyle, EachFieldIsTakenAlone) {
  BE::ImportStyle style;
  style.italic = true;
  style.textColor = kYellow;
  Problems problems;
  // Italics it has of its own, and only there; a colour it has none.
  EXPECT_EQ(Runs(GiveStyle(Imported("One <i>two</i>"), style, k608, problems)[0]), "#ffff00:One |i#ffff00:two");
  EXPECT_EQ(Runs(GiveStyle(Imported("<font color=red>One</font> two"), style, k608, problems)[0]),
            "i#ff0000:One|i: two");
}

TEST(GiveStyle, WhatTheFormatCannotHoldIsToldOnce) {
  BE::ImportStyle style;
  style.bold = true;
  Problems problems;
  const Captions captions{Caption(0, 1, u"One"), Caption(1, 2, u"Two")};
  const Captions styled = GiveStyle(captions, style, kTeletext, problems);
  EXPECT_FALSE(styled[0]->runs[0].attributes->bold);
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_TRUE(Says(problems[0].reason, "import settings"));
}

TEST(GivePlace, ACaptionWithoutAPlaceTakesTheOneOfTheSettings) {
  const CaptionStatePtr placed = GivePlace(Imported("One"), 0, 0, k608)[0];
  EXPECT_EQ(placed->paragraph.anchor, 0);
  EXPECT_EQ(placed->paragraph.alignment, 0);
  EXPECT_EQ(placed->paragraph.x, 0);
  EXPECT_EQ(placed->paragraph.y, zebcaptioning::GetTopPosition(k608));
}

TEST(GivePlace, APlaceOfTheFileStays) {
  const Captions captions = Imported("{\\an9}One");
  EXPECT_EQ(GivePlace(captions, 0, 0, k608)[0], captions[0]);
  const Captions elsewhere = ReadWebVTT(WebVTT("One", "line:20% position:30%"), k608).captions;
  EXPECT_EQ(GivePlace(elsewhere, 0, 0, k608)[0], elsewhere[0]);
}

TEST(GivePlace, AnAlignmentOfTheFileStaysWhereItHasNoPlace) {
  const Captions captions = ReadWebVTT(WebVTT("One", "align:end"), k608).captions;
  const CaptionStatePtr placed = GivePlace(captions, 0, 1, k608)[0];
  EXPECT_EQ(placed->paragraph.anchor, 1);
  EXPECT_EQ(placed->paragraph.alignment, 2);
}

TEST(GivePlace, CentredAtTheBottomIsWhereCaptionsStandByThemselves) {
  const Captions captions = Imported("One");
  EXPECT_EQ(GivePlace(captions, 1, 7, k608)[0], captions[0]);
}

TEST(ShiftTimes, EveryTimeIsMoved) {
  Problems problems;
  EXPECT_EQ(Print(ShiftTimes(kOverlapping, Ms(500), problems)), "500-4500 A|2500-6500 B|8500-9500 C");
  EXPECT_TRUE(problems.empty());
}

TEST(ShiftTimes, WhatFallsBeforeZeroIsCutOffOrLeftOutAndTold) {
  Problems problems;
  const Captions captions{Caption(0, 1000, u"Gone"), Caption(500, 2000, u"Cut"), Caption(3000, 4000, u"Whole")};
  EXPECT_EQ(Print(ShiftTimes(captions, Ms(-1000), problems)), "0-1000 Cut|2000-3000 Whole");
  ASSERT_EQ(problems.size(), 2U);
  EXPECT_TRUE(Says(problems[0].reason, "Gone"));
  EXPECT_TRUE(Says(problems[1].reason, "Cut"));
}

TEST(ShiftTimes, NoOffsetIsTooLargeToBeReckonedWith) {
  Problems problems;
  EXPECT_EQ(Print(ShiftTimes(kOverlapping, zebmediatypes::kTime_Max, problems)), "");
  EXPECT_EQ(Print(ShiftTimes(kOverlapping, zebmediatypes::kTime_Min, problems)), "");
  EXPECT_EQ(problems.size(), 6U);
}

TEST(BreakLines, WrappingBreaksOnlyTheLinesThatAreTooLong) {
  EXPECT_EQ(Broken(u"one two three\nfour", LongLines::Wrap, 8), "one two/three/four");
  EXPECT_EQ(Broken(u"one two\nfour", LongLines::Wrap, 8), "one two/four");
  EXPECT_EQ(Broken(u"one   two", LongLines::Wrap, 5), "one/two");
  EXPECT_EQ(Broken(u"a b c d e f", LongLines::Wrap, 3), "a b/c d/e f");
  EXPECT_EQ(Broken(u"exactly8 x", LongLines::Wrap, 8), "exactly8/x");
}

TEST(BreakLines, ReflowingJoinsAllLinesAndBreaksThemEvenly) {
  EXPECT_EQ(Broken(u"one two three four five six\nseven", LongLines::Reflow, 20), "one two three four/five six seven");
  EXPECT_EQ(Broken(u"  one  two\nthree ", LongLines::Reflow, 9), "one two/three");
  EXPECT_EQ(Broken(u"short\nlines", LongLines::Reflow, 20), "short/lines");
}

TEST(BreakLines, KeepingAndNoLengthLeaveLinesAlone) {
  EXPECT_EQ(Broken(u"one two three", LongLines::Keep, 3), "one two three");
  EXPECT_EQ(Broken(u"one two three", LongLines::Wrap, 0), "one two three");
}

TEST(BreakLines, AWordLongerThanALineStaysInOnePieceAndIsTold) {
  Problems problems;
  const Captions broken = BreakLines({Caption(0, 1000, u"a harbourmaster b")}, LongLines::Wrap, 5, k608, problems);
  EXPECT_EQ(Print(broken), "0-1000 a/harbourmaster/b");
  ASSERT_EQ(problems.size(), 2U);
  EXPECT_TRUE(Says(problems[0].reason, "harbourmaster"));
  EXPECT_TRUE(Says(problems[1].reason, "1"));
}

TEST(BreakLines, WordsKeepTheirAttributes) {
  Problems problems;
  const Captions captions = Imported("one <i>two three</i> four");
  EXPECT_EQ(Runs(BreakLines(captions, LongLines::Wrap, 8, k608, problems)[0]), ":one |i:two\nthree|:\nfour");
}

TEST(BreakLines, ABlockThatGrowsStaysAtTheBottomOfTheGrid) {
  Problems problems;
  const Captions captions = Imported("one two three");
  const CaptionStatePtr broken = BreakLines(captions, LongLines::Wrap, 5, k608, problems)[0];
  const Placement expected = PlaceText(k608, u"one\ntwo\nthree", 9, 1);
  EXPECT_EQ(broken->paragraph.y, expected.y);
  EXPECT_EQ(broken->paragraph.x, expected.x);
  EXPECT_LT(broken->paragraph.y, captions[0]->paragraph.y);
}

TEST(BreakLines, ABlockWithAPlaceOfItsOwnLeavesItOnlyWhereTheGridEnds) {
  Problems problems;
  const auto top = Caption(0, 1000, u"one two");
  top->paragraph.x = 3;
  top->paragraph.y = 4;
  const auto bottom = Caption(0, 1000, u"one two");
  bottom->paragraph.x = 3;
  bottom->paragraph.y = 14;
  const Captions broken = BreakLines({top, bottom}, LongLines::Wrap, 3, k608, problems);
  EXPECT_EQ(broken[0]->paragraph.y, 4);
  EXPECT_EQ(broken[1]->paragraph.y, 13);
  EXPECT_EQ(broken[1]->paragraph.x, 3);
}

TEST(SplitCaptions, PartsShareTheTimeByTheLengthOfTheirText) {
  Problems problems;
  EXPECT_EQ(Print(SplitCaptions({Caption(0, 4000, u"aaa\nbbb\ncc")}, 2, k608, problems)),
            "0-3000 aaa/bbb|3000-4000 cc");
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(Print(SplitCaptions({Caption(0, 4000, u"a\nb\nc\nd\ne")}, 3, k608, problems)),
            "0-2400 a/b/c|2400-4000 d/e");
}

TEST(SplitCaptions, PartsKeepTheirWordsAttributes) {
  Problems problems;
  const Captions parts = SplitCaptions(Imported("one <i>two\nthree</i> four"), 1, k608, problems);
  ASSERT_EQ(parts.size(), 2U);
  EXPECT_EQ(Runs(parts[0]), ":one |i:two");
  EXPECT_EQ(Runs(parts[1]), "i:three|: four");
}

TEST(SplitCaptions, TooShortATimeKeepsTheLinesTogetherAndIsTold) {
  Problems problems;
  const auto caption = Caption(0, 0, u"a\nb\nc");
  caption->end = TickTime(2);
  EXPECT_EQ(SplitCaptions({caption}, 1, k608, problems).size(), 1U);
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_TRUE(Says(problems[0].reason, "3 lines"));
}

TEST(ResolveOverlaps, KeepingChangesNothing) {
  EXPECT_EQ(Resolved(kOverlapping, Overlaps::Keep), Print(kOverlapping));
}

TEST(ResolveOverlaps, TheEarlierOneEndsWhereTheNextOneBegins) {
  Problems problems;
  EXPECT_EQ(Resolved(kOverlapping, Overlaps::EndEarlier, &problems), "0-2000 A|2000-6000 B|8000-9000 C");
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_TRUE(Says(problems[0].reason, "1"));
}

TEST(ResolveOverlaps, TheLaterOneBeginsWhereTheEarlierOneEnds) {
  EXPECT_EQ(Resolved(kOverlapping, Overlaps::BeginLater), "0-4000 A|4000-6000 B|8000-9000 C");
}

TEST(ResolveOverlaps, BothAreMergedForAsLongAsBothAreOnShow) {
  Problems problems;
  EXPECT_EQ(Resolved(kOverlapping, Overlaps::Merge, &problems), "0-2000 A|2000-4000 A/B|4000-6000 B|8000-9000 C");
  EXPECT_EQ(problems.size(), 1U);
  EXPECT_EQ(Resolved({Caption(0, 9000, u"A"), Caption(2000, 4000, u"B")}, Overlaps::Merge),
            "0-2000 A|2000-4000 A/B|4000-9000 A");
}

TEST(ResolveOverlaps, TwoThatBeginAtOnceAreOneCaption) {
  const Captions twins{Caption(0, 2000, u"A"), Caption(0, 3000, u"B"), Caption(5000, 6000, u"C")};
  EXPECT_EQ(Resolved(twins, Overlaps::EndEarlier), "0-3000 A/B|5000-6000 C");
  EXPECT_EQ(Resolved({Caption(0, 3000, u"A"), Caption(0, 2000, u"B")}, Overlaps::BeginLater), "0-3000 A/B");
  EXPECT_EQ(Resolved(twins, Overlaps::Merge), "0-2000 A/B|2000-3000 B|5000-6000 C");
}

TEST(ResolveOverlaps, OneThatWouldHaveNoTimeLeftIsNotLost) {
  EXPECT_EQ(Resolved({Caption(0, 9000, u"A"), Caption(2000, 4000, u"B")}, Overlaps::BeginLater),
            "0-2000 A|2000-4000 B");
}

TEST(ResolveOverlaps, APositionThatIsLostInMergingIsTold) {
  const Captions captions{Imported("{\\an8}Top")[0], Imported("Bottom")[0]};
  Problems problems;
  EXPECT_EQ(Resolved(captions, Overlaps::Merge, &problems), "1000-2000 Top/Bottom");
  ASSERT_EQ(problems.size(), 2U);
  EXPECT_TRUE(Says(problems[1].reason, "position"));
}

TEST(ResolveOverlaps, MoreThanCanBeMergedStayAsTheyAreAndAreTold) {
  Captions captions;
  for (std::size_t i = 0; i <= kMostMerged; ++i)
    captions.push_back(Caption(0, 1000, u"A"));
  Problems problems;
  EXPECT_EQ(Resolved(captions, Overlaps::Merge, &problems), "0-1000 A|0-1000 A/A/A/A/A/A/A/A");
  EXPECT_EQ(problems.size(), 2U);
}

TEST(LengthenCaptions, OneIsOnShowForTheShortestDurationAsFarAsTheNextLeavesRoom) {
  Problems problems;
  const Captions captions{Caption(0, 100, u"A"), Caption(500, 600, u"B"), Caption(3000, 5000, u"C")};
  EXPECT_EQ(Print(LengthenCaptions(captions, Ms(1000), problems)), "0-500 A|500-1500 B|3000-5000 C");
  ASSERT_EQ(problems.size(), 2U);
  EXPECT_TRUE(Says(problems[0].reason, "2"));
  EXPECT_TRUE(Says(problems[1].reason, "1"));
}

TEST(LengthenCaptions, OneThatOverlapsStays) {
  Problems problems;
  EXPECT_EQ(Print(LengthenCaptions({Caption(0, 900, u"A"), Caption(500, 2000, u"B")}, Ms(1000), problems)),
            "0-900 A|500-2000 B");
}

TEST(Treat, SettingsAsTheyComeLeaveAFileAlone) {
  const std::string file = SubRip("A line that is longer than the thirty-two cells of the grid\none\ntwo\nthree");
  ReadResult result = ReadSubRip(file, k608);
  const Captions before = result.captions;
  Treat(result, {}, k608, 32);
  EXPECT_EQ(result.captions, before);
  EXPECT_TRUE(result.problems.empty());
}

TEST(Treat, SplitPartsShareTheTimeThatOverlapsLeave) {
  BE::CaptionsImportSettings settings;
  settings.overlaps = Overlaps::EndEarlier;
  settings.longLines = LongLines::Wrap;
  settings.lineLength = 4;
  settings.longCaptions = BE::LongCaptions::Split;
  settings.lineCount = 1;
  settings.offset = Ms(1000);
  ReadResult result;
  result.captions = {Caption(0, 4000, u"aaaa bbbb"), Caption(2000, 3000, u"c")};
  Treat(result, settings, k608, 32);
  EXPECT_EQ(Print(result.captions), "1000-2000 aaaa|2000-3000 bbbb|3000-4000 c");
}

TEST(Treat, LinesWithoutALengthOfTheirOwnHaveThatOfTheGrid) {
  BE::CaptionsImportSettings settings;
  settings.longLines = LongLines::Wrap;
  ReadResult result;
  result.captions = {Caption(0, 4000, u"aaaa bbbb")};
  Treat(result, settings, k608, 4);
  EXPECT_EQ(Print(result.captions), "0-4000 aaaa/bbbb");
}

TEST(Treat, CanBeStopped) {
  ReadResult result;
  result.captions = kOverlapping;
  Treat(result, {}, k608, 32, [](double) { return false; });
  EXPECT_TRUE(result.cancelled);
}

// The factor is far above what a busy machine makes of equal work, and far below what looking at all for each would
// take.
TEST(Treat, TenThousandCaptionsOfOneTimeTakeAboutAsLongAsOneAfterTheOther) {
  constexpr int kCount = 10000;
  constexpr int kFactor = 30;
  const auto measure = [](Overlaps overlaps, int apart) {
    ReadResult result;
    for (int i = 0; i < kCount; ++i)
      result.captions.push_back(Caption(i * apart, i * apart + 2000, u"The harbour wakes and gulls are crying"));
    BE::CaptionsImportSettings settings;
    settings.longLines = LongLines::Reflow;
    settings.longCaptions = BE::LongCaptions::Split;
    settings.lineCount = 1;
    settings.overlaps = overlaps;
    const auto start = std::chrono::steady_clock::now();
    Treat(result, settings, k608, 20);
    return std::chrono::steady_clock::now() - start;
  };
  for (const Overlaps overlaps : {Overlaps::EndEarlier, Overlaps::BeginLater, Overlaps::Merge})
    EXPECT_LT(measure(overlaps, 0), kFactor * measure(overlaps, 1500)) << static_cast<int>(overlaps);
}

TEST(CountedFrames, AreTimesAtTheRateOfTheSettings) {
  const std::string file = "1\n00:00:01:12 --> 00:00:02:00\nOne\n";
  const CaptionStatePtr caption = Only(ReadSubRip(file, k608, {}, {zebmediatypes::kFrameRate_25}));
  EXPECT_EQ(ToMilliseconds(caption->begin), 1480);
  EXPECT_EQ(ToMilliseconds(caption->end), 2000);
}

TEST(CountedFrames, BehindASemicolonDropFrames) {
  const std::string file = "1\n00:01:00;02 --> 00:01:01;00\nOne\n";
  const CaptionStatePtr caption = Only(ReadSubRip(file, k608, {}, {zebmediatypes::kFrameRate_2997}));
  EXPECT_EQ(caption->begin, TickTime(1800 * zebmediatypes::kFrameRate_2997.GetTicksPerFrame()));
}

TEST(CountedFrames, ThatASecondDoesNotHaveLeaveTheCaptionOut) {
  const ReadResult result =
      ReadSubRip("1\n00:00:01:25 --> 00:00:02:00\nOne\n", k608, {}, {zebmediatypes::kFrameRate_25});
  EXPECT_TRUE(result.captions.empty());
  EXPECT_EQ(ProblemLine(result), 2);
}

TEST(CountedFrames, WithoutARateLeaveTheCaptionOut) {
  EXPECT_EQ(ProblemLine(ReadSubRip("1\n00:00:01:12 --> 00:00:02:00\nOne\n", k608)), 2);
}

TEST(CountedFrames, MakeAFileACaptionFileWhateverItsName) {
  EXPECT_EQ(Detect("1\n00:00:01:12 --> 00:00:02:00\nOne\n", "captions.txt"), FileKind::SubRip);
}
