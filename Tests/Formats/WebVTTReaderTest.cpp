#include "Building.h"

using namespace building;

namespace {

ReadResult Read(const std::string& bytes, StreamFormat format = kOpen) {
  return Formats::ReadWebVTT(bytes, format);
}

void ExpectBroken(const std::string& times) {
  const ReadResult result = Read("WEBVTT\n\n" + times + "\nBroken\n\n01:01.000 --> 01:02.000\nAfter\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"After"})) << times;
  EXPECT_EQ(ProblemLine(result), 3) << times;
}

} // namespace

TEST(WebVTTTimes, AreExactToTheTick) {
  const CaptionStatePtr state = Only(Read("WEBVTT\n\n01:02:03.004 --> 100:00:00.005\nTea\n"));
  EXPECT_EQ(state->begin, Ms(3723004));
  EXPECT_EQ(state->end, Ms(360000005));
}
TEST(WebVTTTimes, MayLackTheHours) {
  const CaptionStatePtr state = Only(Read("WEBVTT\n\n01:02.003-->59:59.999\nTea\n"));
  EXPECT_EQ(state->begin, Ms(62003));
  EXPECT_EQ(state->end, Ms(3599999));
}
TEST(WebVTTTimes, ThatAreWrittenWrongAreListedAndLeftOut) {
  for (const char* times :
       {"00::00:00.000 --> 00:00:01.000", "00:000:00.000 --> 00:00:01.000", "00:00:00.0000 --> 00:00:01.000",
        "00:00:00..000 --> 00:00:01.000", "000:00.000 --> 00:01.000", "00:00.000 --> 000:01.000", "00:00.000 -->",
        "0:00:00.000 --> 0:00:01.000", "00:00 --> 00:01", "00:60.000 --> 02:00.000", "00:01.000 --> 00:02.000x",
        "00:02.000 --> 00:01.000", "00:01.000 --> 00:01.000"})
    ExpectBroken(times);
}
TEST(WebVTT, TheSignatureMayHaveTextBehindItWhichIsListed) {
  const ReadResult result = Read("WEBVTT - my words\nKind: captions\n\n00:01.000 --> 00:02.000\nTea\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"Tea"}));
  EXPECT_EQ(ProblemLine(result), 1);
}
TEST(WebVTT, AFileWithItsSignatureAloneHoldsNoCaptions) {
  for (const char* bytes : {"WEBVTT", "WEBVTT\n", "WEBVTT \n\n", "\xEF\xBB\xBFWEBVTT\t"}) {
    const ReadResult result = Read(bytes);
    EXPECT_EQ(result.error, "");
    EXPECT_TRUE(result.captions.empty());
  }
}
TEST(WebVTT, ACueMayFollowTheSignatureAtOnce) {
  EXPECT_EQ(Texts(Read("WEBVTT\n00:01.000 --> 00:02.000\nTea\n")), (std::vector<std::string>{"Tea"}));
}
TEST(WebVTT, AnyLineEndWillDo) {
  for (const std::string end : {"\n", "\r\n", "\r"}) {
    const std::string bytes = "WEBVTT" + end + end + "00:01.000 --> 00:02.000" + end + "One" + end + "two" + end + end +
                              "00:03.000 --> 00:04.000" + end + "Three";
    EXPECT_EQ(Texts(Read(bytes)), (std::vector<std::string>{"One\ntwo", "Three"}));
  }
}
TEST(WebVTT, CuesThatAreNamedLoseTheirNamesWhichIsListed) {
  const ReadResult result = Read("WEBVTT\n\nintro\n00:01.000 --> 00:02.000\nTea\n\n2\n00:03.000 --> 00:04.000\nTwo\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"Tea", "Two"}));
  EXPECT_EQ(ProblemLine(result), 4);
  EXPECT_TRUE(Says(ProblemReason(result), "intro"));
}
TEST(WebVTT, CommentsStyleSheetsAndRegionsAreListedByTheirLines) {
  const ReadResult result = Read("WEBVTT\n\nNOTE one\ntwo\n\nSTYLE\n::cue { color: red }\n\nREGION\nid:a\n\n"
                                 "00:01.000 --> 00:02.000 region:a\nTea\n");
  EXPECT_EQ(Texts(result), (std::vector<std::string>{"Tea"}));
  ASSERT_EQ(result.problems.size(), 4U);
  EXPECT_EQ(result.problems[0].line, 3);
  EXPECT_EQ(result.problems[1].line, 6);
  EXPECT_EQ(result.problems[2].line, 9);
  EXPECT_EQ(result.problems[3].line, 12);
  EXPECT_TRUE(Says(result.problems[3].reason, "region:a"));
}
TEST(WebVTT, ATextWithoutTimesIsListed) {
  const ReadResult result = Read("WEBVTT\n\nlost words\n\n00:01.000 --> 00:02.000\nTea\n");
  EXPECT_EQ(ProblemLine(result), 3);
  EXPECT_TRUE(Says(ProblemReason(result), "lost words"));
}
TEST(WebVTT, ALineOfBlanksAboveTheNextCueWasMeantToBeEmpty) {
  EXPECT_EQ(Texts(Read("WEBVTT\n\n00:01.000 --> 00:02.000\nOne\n  \n2\n00:03.000 --> 00:04.000\nTwo\n\t\n"
                       "00:05.000 --> 00:06.000\nThree\n")),
            (std::vector<std::string>{"One", "Two", "Three"}));
}
TEST(WebVTT, TheEmptyLineBetweenCuesMayBeMissing) {
  EXPECT_EQ(Texts(Read("WEBVTT\n\n00:01.000 --> 00:02.000\nOne\n00:03.000 --> 00:04.000\nTwo\n")),
            (std::vector<std::string>{"One", "Two"}));
}

TEST(WebVTTTags, BoldItalicUnderlineAndClassesAreRuns) {
  EXPECT_EQ(Runs(Only(Read(WebVTT("<b>a</b><i>b</i><u>c</u><c.yellow>d</c><c.bg_blue>e</c><c.red.bg_cyan>f</c>")))),
            "b:a|i:b|u:c|#ffff00:d|on#0000ff:e|#ff0000on#00ffff:f");
}
TEST(WebVTTTags, EveryColourClassHasItsColour) {
  const std::pair<const char*, const char*> colors[] = {
      {"lime", "#00ff00"}, {"cyan", "#00ffff"},  {"red", "#ff0000"},    {"yellow", "#ffff00"},
      {"blue", "#0000ff"}, {"black", "#000000"}, {"magenta", "#ff00ff"}};
  for (const auto& [name, color] : colors)
    EXPECT_EQ(Runs(Only(Read(WebVTT("<c." + std::string(name) + ">a</c>")))), color + std::string(":a"));
  EXPECT_EQ(Runs(Only(Read(WebVTT("<c.white>a</c>")))), ":a");
  EXPECT_EQ(Runs(Only(Read(WebVTT("<c.bg_white>a</c>")))), "on#ffffff:a");
}
TEST(WebVTTTags, ClassesMayStandOnAnyTag) {
  EXPECT_EQ(Runs(Only(Read(WebVTT("<b.red>a</b><i.lime>b</i>c")))), "b#ff0000:a|i#00ff00:b|:c");
}
TEST(WebVTTTags, MayNestAndOverlap) {
  EXPECT_EQ(Runs(Only(Read(WebVTT("<c.red>a<b>b<c.blue>c</c></b>d</c>e")))),
            "#ff0000:a|b#ff0000:b|b#0000ff:c|#ff0000:d|:e");
  EXPECT_EQ(Runs(Only(Read(WebVTT("<b>a<i>b</b>c</i>d")))), "b:a|bi:b|i:c|:d");
}
TEST(WebVTTTags, UnknownClassesAreListed) {
  EXPECT_TRUE(Says(ProblemReason(Read(WebVTT("<c.loud>a</c>"))), "loud"));
}
TEST(WebVTTTags, SpeakersLanguagesAndTimesAreListedAndTheirTextKept) {
  const ReadResult result = Read(WebVTT("<v Ida Brown>Good <lang fr>matin</lang><00:01.500>, Jon</v>"));
  EXPECT_EQ(Text(Only(result)), "Good matin, Jon");
  const std::string reason = ProblemReason(result);
  EXPECT_TRUE(Says(reason, "Ida Brown"));
  EXPECT_TRUE(Says(reason, "fr"));
  EXPECT_TRUE(Says(reason, "times inside"));
}
TEST(WebVTTTags, RubyTextStandsInBracketsAndIsListed) {
  const ReadResult result = Read(WebVTT("<ruby>右<rt>みぎ</rt>上<rt>うえ</ruby>に"));
  EXPECT_EQ(Text(Only(result)), "右(みぎ)上(うえ)に");
  EXPECT_TRUE(Says(ProblemReason(result), "ruby"));
}
TEST(WebVTTTags, CharacterReferencesAreCharacters) {
  EXPECT_EQ(Only(Read(WebVTT("&amp;&lt;b&gt;&nbsp;&lrm;&rlm;&unknown;")))->text, u"&<b>\u00A0\u200E\u200F&unknown;");
}
TEST(WebVTTTags, AnUnfinishedTagIsListed) {
  const ReadResult result = Read(WebVTT("a<b"));
  EXPECT_EQ(Text(Only(result)), "a");
  EXPECT_TRUE(Says(ProblemReason(result), "<b"));
}
TEST(WebVTTTags, ASignWithABlankBehindItIsText) {
  EXPECT_EQ(Text(Only(Read(WebVTT("1 < 2")))), "1 < 2");
}

TEST(WebVTTSettings, AlignIsTheTextsAlignment) {
  const std::pair<const char*, int> aligns[] = {{"align:start", 0}, {"align:left", 0},  {"align:center", 1},
                                                {"align:end", 2},   {"align:right", 2}, {"", 1}};
  for (const auto& [setting, alignment] : aligns) {
    const ReadResult result = Read(WebVTT("Tea", setting));
    EXPECT_EQ(Only(result)->paragraph.alignment, alignment) << setting;
    EXPECT_EQ(Only(result)->paragraph.anchor, 9) << setting;
    EXPECT_TRUE(result.problems.empty()) << setting;
  }
}
TEST(WebVTTSettings, LineAndPositionGiveTheAnchor) {
  const std::pair<const char*, int> places[] = {{"line:0", 1},
                                                {"line:-1", 7},
                                                {"line:50%,center", 4},
                                                {"line:0 align:end", 2},
                                                {"line:-1 align:start", 6},
                                                {"line:0 position:0%,line-left", 0},
                                                {"line:0 position:100%,line-right align:start", 2}};
  for (const auto& [setting, anchor] : places) {
    const ReadResult result = Read(WebVTT("Tea", setting));
    EXPECT_EQ(Only(result)->paragraph.anchor, anchor) << setting;
    EXPECT_TRUE(result.problems.empty()) << setting;
  }
}
TEST(WebVTTSettings, OpenCaptionsTakeTheNearestAnchorAndListIt) {
  const std::pair<const char*, int> places[] = {{"line:10%", 1}, {"line:80% position:5%", 6},
                                                {"line:2", 1},   {"line:-3", 7},
                                                {"line:45%", 4}, {"position:90%", 8}};
  for (const auto& [setting, anchor] : places) {
    const ReadResult result = Read(WebVTT("Tea", setting));
    EXPECT_EQ(Only(result)->paragraph.anchor, anchor) << setting;
    EXPECT_TRUE(Says(ProblemReason(result), "position")) << setting;
  }
}
TEST(WebVTTSettings, ClosedCaptionsStandInTheirRowAndColumn) {
  struct Place {
    const char* setting;
    int x;
    int y;
  };
  // A block of four columns and two rows on 32 by 15.
  const Place places[] = {{"line:4", 14, 4},
                          {"line:-3", 14, 11},
                          {"line:20%", 14, 3},
                          {"line:80%,end", 14, 10},
                          {"line:3 position:25%,line-left", 8, 3},
                          {"line:3 position:50%,line-right", 12, 3},
                          {"line:3 position:75%", 22, 3},
                          {"line:900 position:100%,line-left", 31, 14},
                          {"line:-900 position:0%,line-right", 0, 0}};
  for (const Place& place : places) {
    const ReadResult result = Read(WebVTT("1234\n12", place.setting), k608);
    EXPECT_EQ(Only(result)->paragraph.x, place.x) << place.setting;
    EXPECT_EQ(Only(result)->paragraph.y, place.y) << place.setting;
    EXPECT_EQ(Only(result)->paragraph.anchor, 9) << place.setting;
    EXPECT_TRUE(result.problems.empty()) << place.setting;
  }
}
TEST(WebVTTSettings, WhatIsUnknownOrWrongIsListed) {
  for (const char* setting : {"size:50%", "vertical:rl", "region:a", "align:CENTER", "line:101%", "line:x", "line:1.5",
                              "position:50", "position:-1%", "line:1,middle", "nonsense", "position:101%", "line:"}) {
    const ReadResult result = Read(WebVTT("Tea", setting));
    EXPECT_EQ(Only(result)->paragraph.anchor, 9) << setting;
    EXPECT_TRUE(Says(ProblemReason(result), setting)) << ProblemReason(result);
  }
}
TEST(WebVTTSettings, APositionWhereTheTextStandsAnywayIsNoPlace) {
  for (const char* setting : {"position:50%", "align:start position:0%", "align:end position:100%,line-right"}) {
    const ReadResult result = Read(WebVTT("Tea", setting));
    EXPECT_EQ(Only(result)->paragraph.anchor, 9) << setting;
    EXPECT_TRUE(result.problems.empty()) << setting;
  }
}
TEST(WebVTTSettings, TheLastOfSeveralHolds) {
  EXPECT_EQ(Only(Read(WebVTT("Tea", "align:start\t align:end")))->paragraph.alignment, 2);
}
