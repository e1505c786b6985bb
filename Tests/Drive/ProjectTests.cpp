// Projects, streams and caption files.

#include "DriveProcess.h"

#include <fstream>

namespace Tests {

TEST_F(DriveTest, CaptionsComeBackFromAProjectFileAsTheyWere) {
  const std::string path = folder / "harbour.captivo";
  Do("new", {{"path", path}});
  clip = Do("add_clip", {{"name", "Harbour"}, {"width", 640}, {"height", 360}, {"frame_rate", {25, 1}}}).at("clip");
  const Json rich = {{"begin", Seconds(5)},
                     {"end", Seconds(7)},
                     {"text", "Nur \xc3\xa4u\xc3\x9f"
                              "erst \xf0\x9f\x8e\xb5 leise"},
                     {"paragraph", {{"alignment", 1}, {"x", 4}, {"y", 12}}},
                     {"runs", Json::array({{{"start", 4}, {"end", 10}, {"italic", true}}})}};
  stream =
      Do("add_stream", {{"clip", clip}, {"format", "cea608"}, {"captions", Json::array({Caption(1, 3, "One"), rich})}})
          .at("stream");
  const Json before = Stream();
  Do("close");
  Start();
  const Json opened = Do("open", {{"path", path}});
  ASSERT_EQ(opened.at("clips").size(), 1U);
  EXPECT_EQ(opened.at("clips")[0].at("clip"), clip);
  EXPECT_EQ(opened.at("clips")[0].at("streams")[0].at("stream"), stream);
  EXPECT_EQ(Stream(), before);
  EXPECT_EQ(before[1].at("text"), rich.at("text"));
  EXPECT_EQ(before[1].at("paragraph").at("alignment"), 1);
}

TEST_F(DriveTest, HistorySurvivesAKilledProgram) {
  const std::string path = folder / "harbour.captivo";
  Do("new", {{"path", path}});
  clip = Do("add_clip", {{"name", "Harbour"}}).at("clip");
  stream = Do("add_stream", {{"clip", clip}, {"format", "cea608"}, {"captions", Json::array({Caption(1, 3, "One")})}})
               .at("stream");
  Do("edit_stream", {{"stream", stream}, {"add", Json::array({Caption(4, 5, "Two")})}});
  Do("edit_stream", {{"stream", stream}, {"remove", Times({1})}});
  const Json history = Do("history");
  drive->Kill();
  Start();
  Do("open", {{"path", path}});
  EXPECT_EQ(Do("history").at("undo"), history.at("undo"));
  EXPECT_EQ(Stream().size(), 1U);
  Do("undo");
  EXPECT_EQ(Stream().size(), 2U);
  Do("undo");
  ASSERT_EQ(Stream().size(), 1U);
  EXPECT_EQ(Stream()[0].at("text"), "One");
}

TEST_F(DriveTest, WhatIsTypedSurvivesAKilledProgram) {
  const std::string path = folder / "harbour.captivo";
  Do("new", {{"path", path}});
  clip = Do("add_clip", {{"name", "Harbour"}}).at("clip");
  stream = Do("add_stream", {{"clip", clip}, {"format", "cea608"}, {"captions", Json::array({Caption(1, 3, "One")})}})
               .at("stream");
  Do("select", {{"what", "clip"}, {"clip", clip}});
  Do("open_panel");
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("caret", {{"start", 3}});
  Do("type", {{"text", " more"}});
  drive->Kill();
  Start();
  Do("open", {{"path", path}});
  EXPECT_EQ(Stream()[0].at("text"), "One more");
  Do("undo");
  EXPECT_EQ(Stream()[0].at("text"), "One");
}

TEST_F(DriveTest, UndoAndRedoGoThroughAllSteps) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("edit_stream", {{"stream", stream}, {"add", Json::array({Caption(4, 5, "Two"), Caption(6, 7, "Three")})}});
  Do("edit_stream", {{"stream", stream}, {"change", Json::array({{{"begin", Seconds(4)}, {"text", "Zwei"}}})}});
  Do("edit_stream", {{"stream", stream}, {"move", {{"from", Seconds(4)}, {"to", Seconds(6)}, {"offset", kSecond}}}});
  const Json last = Stream();
  EXPECT_EQ(RowTimes(), Times({1, 5, 7}));
  Json answer;
  for (int i = 0; i < 3; ++i)
    answer = Do("undo");
  EXPECT_EQ(answer.at("redo").size(), 3U);
  EXPECT_EQ(RowTimes(), Times({1}));
  for (int i = 0; i < 3; ++i)
    answer = Do("redo");
  EXPECT_TRUE(answer.at("redo").empty());
  EXPECT_EQ(Stream(), last);
  EXPECT_EQ(RowTimes(), Times({1, 5, 7}));
  EXPECT_EQ(Do("redo").at("done"), false);
}

TEST_F(DriveTest, AClipHoldsOneStreamOfAFormat) {
  OpenCaptions({});
  Refused("add_stream", {{"clip", clip}, {"format", "cea608"}});
  const Json second = Do("add_stream", {{"clip", clip}, {"format", "cea608"}, {"channel", 2}});
  EXPECT_EQ(second.at("stream_format"), 0x36434332);
  Refused("add_stream", {{"clip", clip}, {"format", "cea608"}, {"channel", 5}});
  Refused("add_stream", {{"clip", clip}, {"format", "morse"}});
}

TEST_F(DriveTest, ImportedCaptionsGoOutAsTheyCameIn) {
  OpenCaptions({});
  const std::string in = folder / "in.srt";
  std::ofstream(in) << "1\n00:00:01,000 --> 00:00:02,500\nFirst line\nsecond <i>line</i>\n\n"
                       "2\n00:00:03,000 --> broken\nLost\n\n"
                       "3\n00:00:04,000 --> 00:00:05,000\nLast\n\n";
  const Json imported = Do("import", {{"clip", clip}, {"path", in}, {"format", "cea608"}, {"channel", 3}});
  EXPECT_EQ(imported.at("stream_format"), 0x36434333);
  ASSERT_EQ(imported.at("problems").size(), 1U);
  EXPECT_EQ(imported.at("problems")[0].at("line"), 7);
  const std::string out = folder / "out.srt";
  Do("export", {{"stream", imported.at("stream")}, {"path", out}});
  Do("remove_stream", {{"stream", imported.at("stream")}});
  const Json again = Do("import", {{"clip", clip}, {"path", out}, {"format", "cea608"}, {"channel", 3}});
  EXPECT_TRUE(again.at("problems").empty());
  const Json captions = Do("stream", {{"stream", again.at("stream")}}).at("captions");
  ASSERT_EQ(captions.size(), 2U);
  EXPECT_EQ(captions[0].at("text"), "First line\nsecond line");
  EXPECT_EQ(captions[0].at("runs").size(), 2U);
  EXPECT_EQ(captions[1].at("end"), Seconds(5));
}

TEST_F(DriveTest, AFileThatCannotBeOpenedLeavesTheProject) {
  OpenCaptions({Caption(1, 2, "One")});
  const std::string broken = folder / "broken.captivo";
  std::ofstream(broken) << "this is no project";
  EXPECT_FALSE(Refused("open", {{"path", broken}}).empty());
  EXPECT_FALSE(Refused("open", {{"path", (folder / "nowhere").string()}}).empty());
  EXPECT_FALSE(Refused("open", {{"path", folder.string()}}).empty());
  EXPECT_EQ(RowTimes(), Times({1}));
}

TEST_F(DriveTest, TheFactsOfAFormatAreToldByNumberAndByName) {
  const Json byName = Do("facts", {{"stream_format", "cea608"}});
  const Json byNumber = Do("facts", {{"stream_format", 0x36434331}});
  EXPECT_EQ(byName, byNumber);
  EXPECT_EQ(byName.at("columns"), 32);
  EXPECT_EQ(byName.at("rows"), 15);
  EXPECT_EQ(byName.at("is_open"), false);
  EXPECT_FALSE(byName.at("types").empty());
  EXPECT_FALSE(byName.at("colors").at("text").empty());
  EXPECT_EQ(Do("facts", {{"stream_format", "open"}}).at("is_open"), true);
  EXPECT_EQ(Do("facts", {{"stream_format", "open"}}).at("colors").at("text"), nullptr);
}

TEST_F(DriveTest, OtherFactsCanStandInForAFormatsOwn) {
  const Json own = Do("facts", {{"stream_format", "teletext"}});
  const Json types = Json::array({{{"type", 3}, {"name", "Flying"}}});
  const Json colors = {{"text", Json::array({{{"color", {1, 0, 0, 1}}, {"name", "Signal"}}})}};
  const Json other = Do("facts", {{"stream_format", "teletext"}, {"types", types}, {"colors", colors}});
  EXPECT_EQ(other.at("types"), types);
  ASSERT_EQ(other.at("colors").at("text").size(), 1U);
  EXPECT_EQ(other.at("colors").at("text")[0].at("name"), "Signal");
  EXPECT_EQ(other.at("colors").at("background"), own.at("colors").at("background"));
  EXPECT_EQ(Do("facts", {{"stream_format", "teletext"}, {"types", nullptr}}), own);
}

TEST_F(DriveTest, TheHandlersPanelMovementAnswersAsItWasTold) {
  constexpr int kNextPanel = 11916;
  Do("new");
  EXPECT_EQ(Do("command", {{"number", kNextPanel}, {"to", "handler"}}).at("handled"), false);
  Do("next_panel_result", {{"value", true}});
  EXPECT_EQ(Do("command", {{"number", kNextPanel}, {"to", "handler"}}).at("handled"), true);
}

} // namespace Tests
