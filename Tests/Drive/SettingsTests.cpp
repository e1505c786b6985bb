// Caption files by the settings of the project.

#include <fstream>
#include <iterator>

#include "DriveProcess.h"

namespace Tests {

namespace {

std::string Bytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST_F(DriveTest, ImportAndExportGoByTheSettingsOfTheProject) {
  OpenCaptions({});
  const std::string in = folder / "in.srt";
  std::ofstream(in) << "1\n00:00:01,000 --> 00:00:04,000\nOne\n\n2\n00:00:02,000 --> 00:00:05,000\nTwo\n";
  const Json settings = Do("caption_settings", {{"import", {{"overlaps", "end-earlier"}, {"offset", kSecond}}},
                                                {"export", {{"start_timecode", 10 * kSecond}, {"language", "de"}}}});
  EXPECT_EQ(settings.at("import").at("overlaps"), "end-earlier");
  EXPECT_EQ(settings.at("import").at("line_count"), 2);
  const Json imported = Do("import", {{"clip", clip}, {"path", in}, {"format", "cea608"}, {"channel", 3}});
  const Json captions = Do("stream", {{"stream", imported.at("stream")}}).at("captions");
  ASSERT_EQ(captions.size(), 2U);
  EXPECT_EQ(captions[0].at("begin"), 2 * kSecond);
  EXPECT_EQ(captions[0].at("end"), 3 * kSecond);
  EXPECT_EQ(imported.at("problems").size(), 1U);

  const std::string out = folder / "out.vtt";
  Do("export", {{"stream", imported.at("stream")}, {"path", out}});
  EXPECT_TRUE(Bytes(out).starts_with("WEBVTT\nLanguage: de\n\n00:00:12.000 --> 00:00:13.000")) << Bytes(out);
}

TEST_F(DriveTest, TheSettingsSayWhichStreamsOfAClipAreExported) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("add_stream", {{"clip", clip}, {"format", "teletext"}, {"captions", Json::array({Caption(1, 2, "Two")})}});
  Do("caption_settings", {{"export", {{"streams", "all"}, {"format", "webvtt"}}}});
  const Json files = Do("export", {{"clip", clip}, {"path", std::string(folder / "out")}}).at("files");
  ASSERT_EQ(files.size(), 2U);
  EXPECT_TRUE(Bytes(files[0].at("path")).starts_with("WEBVTT"));
  EXPECT_NE(Bytes(files[1].at("path")).find("Two"), std::string::npos);
}

TEST_F(DriveTest, ASettingThatThereIsNotOrThatCannotBeIsRefusedAndNothingChanges) {
  OpenCaptions({});
  const Json before = Do("caption_settings");
  EXPECT_NE(Refused("caption_settings", {{"import", {{"overlap", "merge"}}}}), "");
  EXPECT_NE(Refused("caption_settings", {{"import", {{"overlaps", "never"}}}}), "");
  EXPECT_NE(Refused("caption_settings", {{"export", {{"language", "de"}, {"encoding", "latin"}}}}), "");
  Do("caption_settings", {{"import", Json::object()}, {"export", Json::object()}});
  EXPECT_EQ(Do("caption_settings").at("export").at("language"), "");
  EXPECT_EQ(Do("caption_settings").at("import").at("overlaps"), "keep");
  EXPECT_TRUE(before.at("import").empty());
}

} // namespace Tests
