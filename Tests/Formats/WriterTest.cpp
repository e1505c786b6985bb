#include "Building.h"

using namespace building;

namespace {

boost::intrusive_ptr<CaptionState> Styled() {
  auto state = Caption(1000, 2500, u"One two three");
  TextSpanAttributes bold;
  bold.bold = true;
  TextSpanAttributes both = bold;
  both.italic = true;
  both.textColor = kYellow;
  state->runs = {{0, zebcaptioning::Share(bold)}, {4, zebcaptioning::Share(both)}, {7, zebcaptioning::Share({})}};
  return state;
}

} // namespace

TEST(SubRipWriter, WritesNumbersTimesAndTags) {
  const WriteResult result = Write(FileKind::SubRip, {Styled(), Caption(3723004, 360000000, u"Tea\nfor two")}, kOpen);
  EXPECT_EQ(result.bytes,
            "1\n00:00:01,000 --> 00:00:02,500\n<b>One </b><font color=\"#ffff00\"><b><i>two</i></b></font> "
            "three\n\n2\n01:02:03,004 --> 100:00:00,000\nTea\nfor two\n\n");
  EXPECT_TRUE(result.problems.empty());
}
TEST(SubRipWriter, WritesTheAnchor) {
  auto state = Caption(1000, 2000, u"Tea");
  state->paragraph.anchor = 2;
  state->paragraph.alignment = zebcaptioning::ParagraphStyleAttributes::kTextAlignment_Right;
  EXPECT_EQ(Write(FileKind::SubRip, {state}, kOpen).bytes, "1\n00:00:01,000 --> 00:00:02,000\n{\\an9}Tea\n\n");
}
TEST(SubRipWriter, EscapesOnlyWhatWouldBeReadAsSomethingElse) {
  EXPECT_EQ(Write(FileKind::SubRip, {Caption(0, 1000, u"AT&T <3 &amp; <b> 00:01 --> {\\b1}")}, kOpen).bytes,
            "1\n00:00:00,000 --> 00:00:01,000\nAT&T <3 &amp;amp; &lt;b> 00:01 --&gt; {<b></b>\\b1}\n\n");
}
TEST(WebVTTWriter, WritesTimesTagsAndSettings) {
  auto state = Styled();
  state->paragraph.anchor = 0;
  state->paragraph.alignment = zebcaptioning::ParagraphStyleAttributes::kTextAlignment_Left;
  const WriteResult result = Write(FileKind::WebVTT, {state}, kOpen);
  EXPECT_EQ(result.bytes, "WEBVTT\n\n00:00:01.000 --> 00:00:02.500 line:0 align:start\n"
                          "<b>One </b><c.yellow><b><i>two</i></b></c> three\n\n");
  EXPECT_TRUE(result.problems.empty());
}
TEST(WebVTTWriter, EscapesTheThreeSigns) {
  EXPECT_EQ(Write(FileKind::WebVTT, {Caption(0, 1000, u"a & b < c --> d")}, kOpen).bytes,
            "WEBVTT\n\n00:00:00.000 --> 00:00:01.000\na &amp; b &lt; c --&gt; d\n\n");
}
TEST(Writers, RoundTimesToTheNearestMillisecond) {
  auto state = Caption(0, 0, u"Tea");
  state->begin = zebmediatypes::TickTime(std::int64_t{254016000} * 40 + 127007999); // just under 40.5
  state->end = zebmediatypes::TickTime(std::int64_t{254016000} * 80 + 127008000);
  EXPECT_EQ(Write(FileKind::SubRip, {state}, kOpen).bytes, "1\n00:00:00,040 --> 00:00:00,081\nTea\n\n");
}
TEST(Writers, KeepACaptionThatIsShorterThanAMillisecond) {
  auto state = Caption(1000, 1000, u"Tea");
  state->end = zebmediatypes::TickTime(state->begin.GetTicks() + 1);
  EXPECT_EQ(Write(FileKind::SubRip, {state}, kOpen).bytes, "1\n00:00:01,000 --> 00:00:01,001\nTea\n\n");
}
TEST(Writers, LeaveOutAndListCaptionsWhoseTimesCannotBeWritten) {
  const WriteResult result = Write(
      FileKind::SubRip, {Caption(5, 5, u"A"), Caption(9, 2, u"B"), Caption(-9, -2, u"C"), Caption(1, 2, u"D")}, kOpen);
  EXPECT_EQ(result.bytes, "1\n00:00:00,001 --> 00:00:00,002\nD\n\n");
  EXPECT_EQ(result.problems.size(), 3U);
}
TEST(Writers, BeginNoEarlierThanZeroAndListIt) {
  const WriteResult result = Write(FileKind::WebVTT, {Caption(-500, 1000, u"Tea")}, kOpen);
  EXPECT_TRUE(Says(result.bytes, "00:00:00.000 --> 00:00:01.000"));
  EXPECT_EQ(result.problems.size(), 1U);
}
TEST(Writers, ListWhatTheFileCannotHoldByTheLineOfTheCue) {
  auto state = Caption(1000, 2000, u"Tea");
  TextSpanAttributes span;
  span.family = u"DejaVu Sans";
  span.size = 40;
  span.edgeWidth = 2;
  span.textColor.alpha = 0.5F;
  span.backgroundColor = {1, 0, 0, 0.5F};
  state->runs = {{0, zebcaptioning::Share(span)}};
  state->paragraph.lineSpacing = 10;
  state->paragraph.region = zebcore::utility::ImmutableString("speaker");
  state->paragraph.style = zebcore::utility::ImmutableString("title");
  state->paragraph.x = 100;
  state->paragraph.alignment = zebcaptioning::ParagraphStyleAttributes::kTextAlignment_Left;
  for (const FileKind kind : {FileKind::SubRip, FileKind::WebVTT}) {
    const WriteResult result = Write(kind, {Caption(1, 2, u"First"), state}, kOpen);
    ASSERT_EQ(result.problems.size(), 1U);
    EXPECT_EQ(result.problems[0].line, kind == FileKind::SubRip ? 5 : 6);
    for (const char* loss :
         {"DejaVu Sans", "size", "edge", "opacity", "background", "spacing", "speaker", "title", "position"})
      EXPECT_TRUE(Says(result.problems[0].reason, loss)) << loss << ": " << result.problems[0].reason;
    EXPECT_EQ(Says(result.problems[0].reason, "alignment"), kind == FileKind::SubRip);
  }
}
TEST(Writers, ListADisplayTypeThatIsNotTheUsualOne) {
  auto state = Caption(1000, 2000, u"");
  state->paragraph.y = 14;
  state->paragraph.x = 16;
  state->paragraph.captionType = zebcaptioning::kCaptionType_PopOn;
  EXPECT_TRUE(Write(FileKind::SubRip, {state}, k608).problems.empty());
  state->paragraph.captionType = zebcaptioning::kCaptionType_RollUp3;
  EXPECT_EQ(Write(FileKind::SubRip, {state}, k608).problems.size(), 1U);
}
TEST(WebVTTWriter, TakesTheNearestClassForAColourAndListsIt) {
  auto state = Caption(1000, 2000, u"Tea");
  TextSpanAttributes span;
  span.textColor = {0.9F, 0.1F, 0.0F, 1.0F};
  state->runs = {{0, zebcaptioning::Share(span)}};
  const WriteResult result = Write(FileKind::WebVTT, {state}, kOpen);
  EXPECT_TRUE(Says(result.bytes, "<c.red>Tea</c>"));
  EXPECT_EQ(result.problems.size(), 1U);
}
TEST(Writers, AnUnknownKindIsAProblem) {
  const WriteResult result = Write(FileKind::Unknown, {Caption(1, 2, u"Tea")}, kOpen);
  EXPECT_EQ(result.bytes, "");
  EXPECT_EQ(result.problems.size(), 1U);
}
TEST(Writers, StopWhenAskedTo) {
  std::vector<CaptionStatePtr> captions(1000, Caption(1, 2, u"Tea"));
  int calls = 0;
  const WriteResult result = Formats::Write(FileKind::SubRip, captions, kOpen, [&](double) { return ++calls < 50; });
  EXPECT_EQ(calls, 50);
  EXPECT_LT(result.bytes.size(), 1000U * 30);
}
