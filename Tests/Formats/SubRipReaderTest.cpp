#include "Building.h"

using namespace building;

namespace {

ReadResult Read(const std::string& bytes, StreamFormat format = kOpen) {
  return Formats::ReadSubRip(bytes, format);
}

void ExpectTimes(const std::string& times, std::int64_t begin, std::int64_t end) {
  const ReadResult result = Read("1\n" + times + "\nTea\n");
  const CaptionStatePtr state = Only(result);
  EXPECT_EQ(state->begin, Ms(begin)) << times;
  EXPECT_EQ(state->end, Ms(end)) << times;
}

void ExpectBroken(const std::string& times, const std::string& why) {
  const ReadResult result = Read(SubRip("Before") + "\n2\n" + times +
                                 "\nBroken\nto the end\n\n3\n"
                                 "00:01:01,000 --> 00:01:02,000\nAfter\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"Before", "After"})) << times;
  EXPECT_EQ(ProblemLine(result), 6) << times;
  EXPECT_TRUE(Says(ProblemReason(result), why)) << ProblemReason(result);
}

} // namespace

TEST(SubRipTimes, AreExactToTheTick) {
  ExpectTimes("01:02:03,004 --> 12:34:56,789", 3723004, 45296789);
}
TEST(SubRipTimes, MayHaveAPointForTheComma) {
  ExpectTimes("00:00:01.500 --> 00:00:02.250", 1500, 2250);
}
TEST(SubRipTimes, MayLackTheHours) {
  ExpectTimes("00:01,500 --> 01:02,250", 1500, 62250);
}
TEST(SubRipTimes, MayLackTheFraction) {
  ExpectTimes("00:00:01 --> 00:00:02", 1000, 2000);
}
TEST(SubRipTimes, TakeFewerDigitsAsTenthsAndHundredths) {
  ExpectTimes("0:0:1,5 --> 0:0:2,25", 1500, 2250);
}
TEST(SubRipTimes, MayHaveNoBlanksAroundTheArrow) {
  ExpectTimes("00:00:01,000-->00:00:02,000", 1000, 2000);
}
TEST(SubRipTimes, MayHaveMoreBlanksThanNeeded) {
  ExpectTimes(" \t00:00:01,000  -->\t00:00:02,000  ", 1000, 2000);
}
TEST(SubRipTimes, MayRunPastAHundredHours) {
  ExpectTimes("100:00:00,000 --> 9999:59:59,999", 360000000, 35999999999);
}

TEST(SubRipTimes, ThatEndBeforeTheyBeginAreListedAndLeftOut) {
  ExpectBroken("00:00:05,000 --> 00:00:04,000", "ends before it begins");
  ExpectBroken("00:00:05,000 --> 00:00:05,000", "ends before it begins");
}
TEST(SubRipTimes, ThatCannotBeReadAreListedAndLeftOut) {
  for (const char* times :
       {"00:00:0x,000 --> 00:00:04,000", "00:00:01,000 --> ", "00:00:01,000 --> soon", "--> 00:00:04,000",
        "00:00:01,000 --> 00:00:04,000x", "00:60:00,000 --> 01:00:00,000", "00:00:60,000 --> 00:01:00,000",
        "-00:00:01,000 --> 00:00:04,000", "1 --> 2", "00:00:01, --> 00:00:04,000", "000:00:01:01,000 --> 00:00:04,000"})
    ExpectBroken(times, "cannot be read");
}
TEST(SubRipTimes, LaterThanTicksCanCountAreListedAndLeftOut) {
  ExpectBroken("99999:00:00,000 --> 99999:00:01,000", "later than any clip");
  ExpectBroken("99999999999999999999:00:00,000 --> 99999999999999999999:00:01,000", "later than any clip");
}

TEST(SubRip, ABrokenCueStaysOutAndTheListSaysLineAndReason) {
  const ReadResult result = Read("1\n00:00:01,000 --> 00:00:02,000\nOne\n\n"
                                 "2\nno times at all\nTwo\n\n"
                                 "3\n00:00:05,000 --> 00:00:06,000\nThree\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"One", "Three"}));
  EXPECT_EQ(ProblemLine(result), 5);
  EXPECT_TRUE(Says(ProblemReason(result), "no times"));
}
TEST(SubRip, AFileOfBrokenCuesAloneHasNoErrorButAList) {
  const ReadResult result = Read("1\n00:00:02,000 --> 00:00:01,000\nOne\n");
  EXPECT_EQ(result.error, "");
  EXPECT_TRUE(result.captions.empty());
  EXPECT_EQ(ProblemLine(result), 2);
}
TEST(SubRip, AnyLineEndWillDo) {
  for (const std::string end : {"\n", "\r\n", "\r"}) {
    const std::string bytes = "1" + end + "00:00:01,000 --> 00:00:02,000" + end + "One" + end + "two" + end + end +
                              "2" + end + "00:00:03,000 --> 00:00:04,000" + end + "Three" + end;
    EXPECT_EQ(Texts(Read(bytes)), (std::vector<std::string>{"One\ntwo", "Three"}));
  }
}
TEST(SubRip, IndicesMayBeMissing) {
  const ReadResult result = Read("00:00:01,000 --> 00:00:02,000\nOne\n\n00:00:03,000 --> 00:00:04,000\nTwo\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"One", "Two"}));
  EXPECT_TRUE(result.problems.empty());
}
TEST(SubRip, IndicesMayBeWrong) {
  const ReadResult result = Read("7\n00:00:01,000 --> 00:00:02,000\nOne\n\n7\n00:00:03,000 --> 00:00:04,000\nTwo\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"One", "Two"}));
}
TEST(SubRip, TheLastLineNeedsNoEnd) {
  EXPECT_EQ(Text(Only(Read("1\n00:00:01,000 --> 00:00:02,000\nOne"))), "One");
}
TEST(SubRip, ALineOfBlanksPartsCuesToo) {
  const ReadResult result =
      Read("\n \n1\n00:00:01,000 --> 00:00:02,000\nOne\n \t \n2\n00:00:03,000 --> 00:00:04,000\nTwo\n\n\n\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"One", "Two"}));
  EXPECT_TRUE(result.problems.empty());
}
TEST(SubRip, TheEmptyLineBetweenCuesMayBeMissing) {
  const ReadResult result = Read("1\n00:00:01,000 --> 00:00:02,000\nOne\n2\n00:00:03,000 --> 00:00:04,000\nTwo\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"One", "Two"}));
}
TEST(SubRip, AnEmptyLineInsideACaptionIsKeptAndListed) {
  const ReadResult result = Read(SubRip("One\n\ntwo") + "\n2\n00:00:03,000 --> 00:00:04,000\nThree\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"One\n\ntwo", "Three"}));
  EXPECT_EQ(ProblemLine(result), 2);
}
TEST(SubRip, ANumberAsTheLastLineOfACaptionIsText) {
  EXPECT_EQ(Texts(Read(SubRip("How many?\n42") + "\n2\n00:00:03,000 --> 00:00:04,000\nSo many.\n")),
            (std::vector<std::string>{"How many?\n42", "So many."}));
}
TEST(SubRip, ACueWithoutTextIsACaptionWithoutText) {
  EXPECT_EQ(Texts(Read("1\n00:00:01,000 --> 00:00:02,000\n\n2\n00:00:03,000 --> 00:00:04,000\nTwo\n")),
            (std::vector<std::string>{"", "Two"}));
}
TEST(SubRip, OverlappingCaptionsAreKept) {
  const ReadResult result = Read("1\n00:00:01,000 --> 00:00:09,000\nOne\n\n2\n00:00:02,000 --> 00:00:03,000\nTwo\n");
  EXPECT_EQ(result.captions.size(), 2U);
  EXPECT_TRUE(result.problems.empty());
}
TEST(SubRip, CaptionsComeByBeginTimeAndEqualOnesAsInTheFile) {
  const ReadResult result = Read("1\n00:00:05,000 --> 00:00:06,000\nLate\n\n2\n00:00:01,000 --> 00:00:03,000\nFirst\n\n"
                                 "3\n00:00:01,000 --> 00:00:02,000\nSecond\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"First", "Second", "Late"}));
}
TEST(SubRip, AHugeLineIsOneCaption) {
  const std::string line(5'000'000, 'x');
  EXPECT_EQ(Text(Only(Read(SubRip(line)))).size(), line.size());
}
TEST(SubRip, AnArrowInsideATextIsText) {
  EXPECT_EQ(Text(Only(Read(SubRip("From A --> to B")))), "From A --> to B");
}
TEST(SubRip, CoordinatesBehindTheTimesAreListed) {
  const ReadResult result = Read("1\n00:00:01,000 --> 00:00:02,000 X1:10 X2:20 Y1:30 Y2:40\nTea\n");
  EXPECT_EQ(Text(Only(result)), "Tea");
  EXPECT_EQ(ProblemLine(result), 2);
  EXPECT_TRUE(Says(ProblemReason(result), "X1:10"));
}

TEST(SubRipTags, BoldItalicAndUnderlineAreRuns) {
  EXPECT_EQ(Runs(Only(Read(SubRip("<b>One</b> <i>two</i> <u>three</u>.")))), "b:One|: |i:two|: |u:three|:.");
}
TEST(SubRipTags, MayNest) {
  EXPECT_EQ(Runs(Only(Read(SubRip("<b>a<i>b<u>c</u></i></b>d")))), "b:a|bi:b|biu:c|:d");
}
TEST(SubRipTags, MayOverlap) {
  EXPECT_EQ(Runs(Only(Read(SubRip("<b>a<i>b</b>c</i>d")))), "b:a|bi:b|i:c|:d");
}
TEST(SubRipTags, TwiceOpenedAreClosedTwice) {
  EXPECT_EQ(Runs(Only(Read(SubRip("<b>a<b>b</b>c</b>d")))), "b:abc|:d");
}
TEST(SubRipTags, HoldOverLineEndsAndToTheEndIfNeverClosed) {
  EXPECT_EQ(Runs(Only(Read(SubRip("a<i>b\nc")))), ":a|i:b\nc");
}
TEST(SubRipTags, MayBeInCapitals) {
  EXPECT_EQ(Runs(Only(Read(SubRip("<B>a</B><I>b</I>")))), "b:a|i:b");
}
TEST(SubRipTags, FontColoursComeByNumberAndByName) {
  EXPECT_EQ(Runs(Only(Read(SubRip("<font color=\"#ff0000\">a</font><font color='YELLOW'>b</font>"
                                  "<font color=#00f>c</font><FONT COLOR=\"#00FFFF\">d</FONT>")))),
            "#ff0000:a|#ffff00:b|#0000ff:c|#00ffff:d");
}
TEST(SubRipTags, TheInnermostFontColourHolds) {
  EXPECT_EQ(Runs(Only(Read(SubRip("<font color=red>a<font color=blue>b</font>c</font>d")))),
            "#ff0000:a|#0000ff:b|#ff0000:c|:d");
}
TEST(SubRipTags, WhatIsUnknownIsTakenOutAndListed) {
  const ReadResult result = Read(SubRip("a <blink>b</blink> <s>c</s>"));
  EXPECT_EQ(Text(Only(result)), "a b c");
  EXPECT_TRUE(Says(ProblemReason(result), "<blink>"));
  EXPECT_TRUE(Says(ProblemReason(result), "<s>"));
  EXPECT_EQ(ProblemLine(result), 2);
}
TEST(SubRipTags, FontFacesAndSizesAreListed) {
  const ReadResult result = Read(SubRip("<font face=\"Serif\" size=\"30\" color=red>a</font>"));
  EXPECT_EQ(Runs(Only(result)), "#ff0000:a");
  EXPECT_TRUE(Says(ProblemReason(result), "Serif"));
  EXPECT_TRUE(Says(ProblemReason(result), "30"));
}
TEST(SubRipTags, AColourThatDoesNotExistIsListed) {
  const ReadResult result = Read(SubRip("<font color=\"puce-ish\">a</font>"));
  EXPECT_EQ(Runs(Only(result)), ":a");
  EXPECT_TRUE(Says(ProblemReason(result), "puce-ish"));
}
TEST(SubRipTags, SignsThatAreNoTagsAreText) {
  for (const char* text : {"I <3 tea", "1 < 2 > 0", "a<b", "< b >", "AT&T & co", "5 > 4", "<", "&", "<b", "{b}", "{"})
    EXPECT_EQ(Text(Only(Read(SubRip(text)))), text);
}
TEST(SubRipTags, CharacterReferencesAreCharacters) {
  EXPECT_EQ(Only(Read(SubRip("&amp;&lt;b&gt;&nbsp;&#233;&#x1F600;&quot;&apos;&lrm;")))->text,
            u"&<b>\u00A0é\U0001F600\"'\u200E");
}
TEST(SubRipTags, AnAnchorComesFromTheNumericKeypad) {
  const int expected[] = {6, 7, 8, 3, 4, 5, 0, 1, 2};
  for (int key = 1; key <= 9; ++key) {
    const CaptionStatePtr state = Only(Read(SubRip("{\\an" + std::to_string(key) + "}Tea")));
    EXPECT_EQ(state->paragraph.anchor, expected[key - 1]);
    EXPECT_EQ(state->paragraph.alignment, expected[key - 1] % 3);
    EXPECT_EQ(Text(state), "Tea");
  }
}
TEST(SubRipTags, WithoutAnAnchorTheCaptionHasNoneAndIsCentred) {
  const CaptionStatePtr state = Only(Read(SubRip("Tea")));
  EXPECT_EQ(state->paragraph.anchor, 9);
  EXPECT_EQ(state->paragraph.alignment, 1);
}
TEST(SubRipTags, OverridesSwitchAndOthersAreListed) {
  const ReadResult result = Read(SubRip("{\\b1}a{\\b0}{\\i1\\c&H0000FF&}b{\\r}c{\\fad(1,2)}d"));
  EXPECT_EQ(Runs(Only(result)), "b:a|i#ff0000:b|:cd");
  EXPECT_TRUE(Says(ProblemReason(result), "\\fad(1,2)"));
}
TEST(SubRipTags, EachLossIsToldOncePerCaption) {
  const ReadResult result = Read(SubRip("<x>a</x><x>b</x><x>c</x>"));
  const std::string reason = ProblemReason(result);
  EXPECT_EQ(reason.find("<x>"), reason.rfind("<x>"));
}
TEST(SubRipTags, DeepNestingCostsNoMoreThanItsLength) {
  std::string text;
  for (int i = 0; i < 200000; ++i)
    text += i % 2 == 0 ? "<b>" : "<font color=red>";
  text += "Tea";
  for (int i = 0; i < 100000; ++i)
    text += "</b>";
  for (int i = 0; i < 100000; ++i)
    text += "</font>";
  EXPECT_EQ(Runs(Only(Read(SubRip(text + "x")))), "b#ff0000:Tea|:x");
}

TEST(ClosedFormats, TakeTheNearestColourAndListIt) {
  const ReadResult result = Read(SubRip("<font color=\"#f01010\">a</font>"), k608);
  EXPECT_EQ(Runs(Only(result)), "#ff0000:a");
  EXPECT_TRUE(Says(ProblemReason(result), "#f01010"));
  EXPECT_TRUE(Says(ProblemReason(result), "#ff0000"));
}
TEST(ClosedFormats, TakeALegalColourWithoutAWord) {
  const ReadResult result = Read(SubRip("<font color=\"#ffff00\">a</font>"), k608);
  EXPECT_EQ(Runs(Only(result)), "#ffff00:a");
  EXPECT_TRUE(result.problems.empty());
}
TEST(ClosedFormats, ListWhatTheyCannotShow) {
  const ReadResult bold = Read(SubRip("<b>a</b><i>b</i><u>c</u>"), k608);
  EXPECT_EQ(Runs(Only(bold)), ":a|i:b|u:c");
  EXPECT_TRUE(Says(ProblemReason(bold), "bold"));
  const ReadResult teletext = Read(SubRip("<i>b</i>"), kTeletext);
  EXPECT_EQ(Runs(Only(teletext)), ":b");
  EXPECT_TRUE(Says(ProblemReason(teletext), "italics"));
}
TEST(ClosedFormats, PutCaptionsAtTheBottomInTheMiddleOfTheGrid) {
  const CaptionStatePtr state = Only(Read(SubRip("1234\n12"), k608));
  EXPECT_EQ(state->paragraph.x, 14);
  EXPECT_EQ(state->paragraph.y, 13);
}
TEST(ClosedFormats, PutCaptionsAtTheirAnchors) {
  const CaptionStatePtr state = Only(Read(SubRip("{\\an9}1234\n12"), kTeletext));
  EXPECT_EQ(state->paragraph.x, 36);
  EXPECT_EQ(state->paragraph.y, 1);
}
TEST(ClosedFormats, KeepTextsThatAreWiderAndHigherThanTheGridInsideIt) {
  std::string text = std::string(100, 'x');
  for (int i = 0; i < 40; ++i)
    text += "\nx";
  const CaptionStatePtr state = Only(Read(SubRip(text), kTeletext));
  EXPECT_EQ(state->paragraph.x, 0);
  EXPECT_EQ(state->paragraph.y, 1);
}

TEST(Progress, IsToldAboutEveryHundredth) {
  std::string bytes;
  for (int i = 0; i < 5000; ++i)
    bytes += SubRip("Tea") + "\n";
  int calls = 0;
  double last = -1;
  Formats::ReadSubRip(bytes, k608, [&](double fraction) {
    EXPECT_GE(fraction, last);
    EXPECT_LE(fraction, 1.0);
    last = fraction;
    ++calls;
    return true;
  });
  EXPECT_GE(calls, 90);
  EXPECT_LE(calls, 110);
}
TEST(Progress, FalseStopsAndKeepsWhatIsThere) {
  std::string bytes;
  for (int i = 0; i < 1000; ++i)
    bytes += SubRip("Tea") + "\n";
  const ReadResult result = Formats::ReadSubRip(bytes, k608, [](double fraction) { return fraction < 0.5; });
  EXPECT_TRUE(result.cancelled);
  EXPECT_EQ(result.error, "");
  EXPECT_GT(result.captions.size(), 400U);
  EXPECT_LT(result.captions.size(), 600U);
}
