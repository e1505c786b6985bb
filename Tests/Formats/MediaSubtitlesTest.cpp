#include "Formats/MediaSubtitles.h"

#include "Building.h"
#include "MF/MediaFile.h"
#include "MediaMaking.h"

using namespace building;

namespace {

class MediaSubtitles : public MediaFolder {
 protected:
  // A clip with the file's captions as a track.
  std::filesystem::path Mux(const std::string& captions, const std::string& codec, const std::string& name) const {
    return Make(kPicture + "-i " + captions + " -map 0 -map 1 " + kCheapVideo + "-c:s " + codec +
                    " -metadata:s:s:0 language=eng -metadata:s:s:0 title=Words",
                name);
  }
  ReadResult ReadFirst(const std::filesystem::path& path, StreamFormat format = kOpen) const {
    const auto tracks = MF::FindSubtitleTracks(path);
    EXPECT_EQ(tracks.size(), 1U);
    return tracks.empty() ? ReadResult() : Formats::ReadSubtitleTrack(path, tracks[0].index, format);
  }
};

const std::string kSubRip = "1\n00:00:00,500 --> 00:00:01,000\n<b>One</b>, <i>two</i>\nand <u>three</u>\n\n"
                            "2\n00:00:01,200 --> 00:00:01,800\n<font color=\"#ff0000\">Four</font> five\n\n";

} // namespace

TEST_F(MediaSubtitles, AreFoundWithLanguageAndTitle) {
  WriteFile("a.srt", kSubRip);
  const auto tracks = MF::FindSubtitleTracks(Mux("a.srt", "srt", "a.mkv"));
  ASSERT_EQ(tracks.size(), 1U);
  EXPECT_EQ(tracks[0].index, 1);
  EXPECT_EQ(tracks[0].language, "eng");
  EXPECT_EQ(tracks[0].title, "Words");
}
TEST_F(MediaSubtitles, AreNotFoundWhereThereAreNone) {
  EXPECT_TRUE(MF::FindSubtitleTracks(Make(kPicture + kCheapVideo, "a.mp4")).empty());
  EXPECT_TRUE(MF::FindSubtitleTracks(Path("gone.mp4")).empty());
}
TEST_F(MediaSubtitles, OfMatroskaInSubRipKeepTimesAndRuns) {
  WriteFile("a.srt", kSubRip);
  const ReadResult result = ReadFirst(Mux("a.srt", "srt", "a.mkv"));
  ASSERT_EQ(result.captions.size(), 2U) << result.error;
  EXPECT_EQ(result.captions[0]->begin, Ms(500));
  EXPECT_EQ(result.captions[0]->end, Ms(1000));
  EXPECT_EQ(Runs(result.captions[0]), "b:One|:, |i:two|:\nand |u:three");
  EXPECT_EQ(Runs(result.captions[1]), "#ff0000:Four|: five");
  EXPECT_TRUE(result.problems.empty());
}
TEST_F(MediaSubtitles, OfMP4KeepTimesAndRuns) {
  WriteFile("a.srt", kSubRip);
  const ReadResult result = ReadFirst(Mux("a.srt", "mov_text", "a.mp4"));
  ASSERT_EQ(result.captions.size(), 2U) << result.error;
  EXPECT_EQ(result.captions[0]->begin, Ms(500));
  EXPECT_EQ(result.captions[0]->end, Ms(1000));
  EXPECT_EQ(Runs(result.captions[0]), "b:One|:, |i:two|:\nand |u:three");
  EXPECT_EQ(result.captions[1]->begin, Ms(1200));
  EXPECT_EQ(result.captions[1]->end, Ms(1800));
  EXPECT_EQ(Text(result.captions[1]), "Four five");
}
TEST_F(MediaSubtitles, OfMP4KeepTheColoursOfTheirStyleRecords) {
  WriteFile("a.srt", "1\n00:00:00,500 --> 00:00:01,000\n<b>Four</b> five\n\n");
  Mux("a.srt", "mov_text", "white.mp4");
  // The encoder writes white only: red, green, blue and alpha stand 14 bytes behind the name of the record.
  std::string bytes = ReadFile("white.mp4");
  const std::size_t record = bytes.find("styl");
  ASSERT_NE(record, std::string::npos);
  ASSERT_EQ(bytes.substr(record + 14, 4), "\xFF\xFF\xFF\xFF");
  bytes.replace(record + 14, 4, std::string("\xFF\0\0\xFF", 4));
  const ReadResult result = ReadFirst(WriteFile("a.mp4", bytes));
  EXPECT_EQ(Runs(Only(result)), "b#ff0000:Four|: five");
}
TEST_F(MediaSubtitles, OfMatroskaInWebVTTKeepClassesAndSettings) {
  WriteFile("a.vtt", "WEBVTT\n\n00:00.500 --> 00:01.000 line:0 align:end\n<c.yellow>One</c> <i>two</i>\n\n");
  const ReadResult result = ReadFirst(Mux("a.vtt", "copy", "a.mkv"));
  ASSERT_EQ(result.captions.size(), 1U) << result.error;
  EXPECT_EQ(Runs(result.captions[0]), "#ffff00:One|: |i:two");
  EXPECT_EQ(result.captions[0]->paragraph.anchor, 2);
  EXPECT_EQ(result.captions[0]->paragraph.alignment, 2);
}
TEST_F(MediaSubtitles, OfMatroskaInEventsKeepOverridesAndStyles) {
  WriteFile("a.ass",
            "[Script Info]\nScriptType: v4.00+\n\n[V4+ Styles]\nFormat: Name, Fontname, Fontsize, PrimaryColour, "
            "SecondaryColour, OutlineColour, BackColour, Bold, Italic, Underline, StrikeOut, ScaleX, ScaleY, "
            "Spacing, Angle, BorderStyle, Outline, Shadow, Alignment, MarginL, MarginR, MarginV, Encoding\n"
            "Style: Default,Arial,20,&H00FFFFFF,&H0,&H0,&H0,0,0,0,0,100,100,0,0,1,1,0,2,0,0,0,1\n"
            "Style: Loud,Arial,20,&H0000FFFF,&H0,&H0,&H0,-1,0,0,0,100,100,0,0,1,1,0,8,0,0,0,1\n\n"
            "[Events]\nFormat: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
            "Dialogue: 0,0:00:00.50,0:00:01.00,Default,,0,0,0,,{\\i1}One{\\i0}\\Ntwo, {\\an9\\c&HFF0000&}three\n"
            "Dialogue: 0,0:00:01.20,0:00:01.80,Loud,,0,0,0,,Four {\\blur2}five{\\r}, six\n");
  const ReadResult result = ReadFirst(Mux("a.ass", "copy", "a.mkv"));
  ASSERT_EQ(result.captions.size(), 2U) << result.error;
  EXPECT_EQ(Runs(result.captions[0]), "i:One|:\ntwo, |#0000ff:three");
  EXPECT_EQ(result.captions[0]->paragraph.anchor, 2);
  EXPECT_EQ(Runs(result.captions[1]), "b#ffff00:Four five, six");
  EXPECT_EQ(result.captions[1]->paragraph.anchor, 1);
  EXPECT_EQ(ProblemLine(result), 2);
  EXPECT_TRUE(Says(ProblemReason(result), "\\blur2"));
}
TEST_F(MediaSubtitles, TakeTheNearestThatTheFormatAllows) {
  WriteFile("a.srt", "1\n00:00:00,500 --> 00:00:01,000\n<font color=\"#f00808\">One</font>\n\n");
  const ReadResult result = ReadFirst(Mux("a.srt", "srt", "a.mkv"), k608);
  EXPECT_EQ(Runs(Only(result)), "#ff0000:One");
  EXPECT_TRUE(Says(ProblemReason(result), "#f00808"));
}
TEST_F(MediaSubtitles, OfAStreamThatIsNoneAreAnError) {
  const auto path = Make(kPicture + kCheapVideo, "a.mp4");
  for (const int index : {-1, 0, 7}) {
    const ReadResult result = Formats::ReadSubtitleTrack(path, index, kOpen);
    EXPECT_TRUE(Says(result.error, "no subtitle track")) << index;
  }
  EXPECT_NE(Formats::ReadSubtitleTrack(Path("gone.mp4"), 0, kOpen).error, "");
}
TEST_F(MediaSubtitles, StopWhenAskedTo) {
  WriteFile("a.srt", kSubRip);
  const auto path = Mux("a.srt", "srt", "a.mkv");
  const ReadResult result = Formats::ReadSubtitleTrack(path, 1, kOpen, [](double) { return false; });
  EXPECT_TRUE(result.cancelled);
}
