// What other parts of the host do to the project and to the panel: requests that no longer story needs.

#include "DriveProcess.h"

namespace Tests {

namespace {

// A sequence with the clip in it.
Json AddFilm(const std::string& clip) {
  return {{"name", "Film"},
          {"frame_rate", {25, 1}},
          {"items", Json::array({{{"clip", clip}, {"start", 0}, {"media", "both"}}})}};
}

bool BeginsWith(const std::string& text, const std::string& start) {
  return text.rfind(start, 0) == 0;
}

} // namespace

TEST_F(DriveTest, AStreamTakesAnotherFormatAndBackByUndo) {
  OpenCaptions({Caption(1, 2, "One")});
  const std::int64_t before = Do("source").at("stream_format");
  const Json changed = Do("change_format", {{"stream", stream}, {"format", "teletext"}});
  EXPECT_NE(changed.at("stream_format"), before);
  EXPECT_EQ(Do("source").at("stream_format"), changed.at("stream_format"));
  EXPECT_EQ(Do("source").at("available_formats"), Json::array({changed.at("stream_format")}));
  Do("undo");
  EXPECT_EQ(Do("source").at("stream_format"), before);
  EXPECT_TRUE(
      BeginsWith(Refused("change_format", {{"stream", stream}, {"format", "teletext"}, {"channel", 99}}), "channel: "));
}

TEST_F(DriveTest, TheTabViewIsMadeByItsCreatorAndTakenAwayAgain) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("close_panel");
  EXPECT_EQ(Panel().at("created"), false);
  EXPECT_EQ(Do("create_tab_view").at("created"), true);
  EXPECT_EQ(Panel().at("created"), true);
  EXPECT_TRUE(Rows().empty()) << "nobody has said the selection once more";
  Do("select", {{"what", "clip"}, {"clip", clip}});
  EXPECT_EQ(RowTimes(), Times({1}));
}

TEST_F(DriveTest, ThePanelIsShownBroughtToFrontAndSetOnDutyUnlessItIsSaidToBeOff) {
  OpenCaptions({Caption(1, 2, "One")});
  const auto is = [&](const char* field) { return Panel().at(field).get<bool>(); };
  Do("show_panel", {{"on", false}});
  EXPECT_FALSE(is("shown"));
  Do("show_panel");
  EXPECT_TRUE(is("shown"));
  EXPECT_EQ(Do("front", {{"on", false}}).at("front_most"), false);
  EXPECT_FALSE(is("front_most"));
  Do("front");
  EXPECT_TRUE(is("front_most"));
  Do("duty", {{"on", false}});
  EXPECT_EQ(Do("view").at("on_duty"), false);
  EXPECT_EQ(Do("duty").at("on_duty"), true);
  EXPECT_EQ(Do("view").at("on_duty"), true);
}

TEST_F(DriveTest, GoingOffDutyCommitsTheOpenChange) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("type", {{"text", "x"}});
  const std::size_t before = Do("history").at("undo").size();
  Do("trace");
  Do("duty", {{"on", false}});
  EXPECT_FALSE(Calls({"CaptioningStreamUpdater::CommitChangesUndoable"}).empty());
  EXPECT_GE(Do("history").at("undo").size(), before);
}

TEST_F(DriveTest, TheWheelScrollsByStepsAndAPanByPixels) {
  std::vector<Json> captions;
  for (int i = 0; i < 40; ++i)
    captions.push_back(Caption(2 * i + 1, 2 * i + 2, "Caption"));
  OpenCaptions(captions);
  const std::int64_t step = Do("control", {{"name", "scrollBar"}}).at("step");
  EXPECT_EQ(Do("wheel", {{"delta", -3}}).at("handled"), true);
  EXPECT_EQ(Panel().at("scroll_position"), 3 * step);
  EXPECT_EQ(Do("pan", {{"dy", -10}}).at("handled"), true);
  EXPECT_EQ(Panel().at("scroll_position"), 3 * step - 10);
  EXPECT_EQ(Do("scroll", {{"position", 5}}).at("position"), 5);
  EXPECT_EQ(Panel().at("scroll_position"), 5);
}

TEST_F(DriveTest, TheTimeDisplaysOfSourcesAndSequencesAreSaidOnTheirOwnStations) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("time_display", {{"which", "source"}, {"display", "frames"}});
  EXPECT_EQ(Row(Seconds(1)).at("in_text"), "25");
  const Json frames = Do("source").at("overrides");
  Do("time_display", {{"which", "sequence"}, {"display", "samples"}});
  const Json both = Do("source").at("overrides");
  EXPECT_EQ(both[0], frames[0]);
  EXPECT_NE(both[2], frames[2]);
  Do("time_display", {{"which", "source"}, {"display", "25"}});
  EXPECT_EQ(Row(Seconds(1)).at("in_text"), "00:00:01:00");
  EXPECT_TRUE(BeginsWith(Refused("time_display", {{"which", "both"}, {"display", 3}}), "which: "));
  EXPECT_TRUE(BeginsWith(Refused("time_display", {{"which", "source"}, {"display", "sundial"}}), "display: "));
}

TEST_F(DriveTest, AnItemThatIsOpenedSelectsTheCaptionAtItsTime) {
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two")});
  const Json film = Do("add_sequence", AddFilm(clip));
  Do("item_opened", {{"item", film.at("items")[0]}, {"time", Seconds(3)}});
  EXPECT_EQ(Selected(), Times({3}));
  EXPECT_EQ(Do("source", {{"of", "handler"}}).at("stream"), stream);
  EXPECT_TRUE(BeginsWith(Refused("item_opened", {{"item", "none"}, {"time", 0}}), "item: "));
}

TEST_F(DriveTest, TheCaptionsCommandOpensThePanel) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("close_panel");
  Do("captions_opened");
  EXPECT_EQ(Panel().at("created"), true);
}

TEST_F(DriveTest, AClipThatIsClosedEmptiesThePanelAndAnotherOneDoesNot) {
  OpenCaptions({Caption(1, 2, "One")});
  const std::string other = Do("add_clip", {{"name", "Other"}}).at("clip");
  Do("close_clip", {{"clip", other}});
  EXPECT_EQ(RowTimes(), Times({1}));
  Do("close_clip", {{"clip", clip}});
  EXPECT_TRUE(Rows().empty());
}

TEST_F(DriveTest, WithoutAnActiveProjectThePanelSaysWhatItMissesAndGoesOn) {
  OpenCaptions({Caption(1, 2, "One")});
  const Json answer = drive->Ask({{"do", "no_project"}, {"on", true}});
  ASSERT_TRUE(answer.contains("exception"));
  EXPECT_EQ(answer.at("exception").at("text"), "A NULL interface pointer has been dereferenced: BE::IProject");
  EXPECT_FALSE(drive->Ask({{"do", "no_project"}, {"on", false}}).contains("exception"));
  EXPECT_EQ(RowTimes(), Times({1}));
}

TEST_F(DriveTest, AReadOnlyProjectLetsNothingBeAdded) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("read_only");
  EXPECT_EQ(Do("control", {{"name", "addCaptionButton"}}).at("enabled"), false);
  EXPECT_FALSE(Refused("add_stream", {{"clip", clip}, {"format", "open"}}).empty());
  Do("read_only", {{"on", false}});
  EXPECT_EQ(Do("control", {{"name", "addCaptionButton"}}).at("enabled"), true);
}

TEST_F(DriveTest, AProjectIsSavedWhereItIsAndElsewhere) {
  const std::string here = folder / "here.captivo";
  const std::string there = folder / "there.captivo";
  Do("new", {{"path", here}});
  clip = Do("add_clip", {{"name", "Harbour"}}).at("clip");
  EXPECT_EQ(Do("save").at("path"), here);
  EXPECT_EQ(Do("save", {{"path", there}}).at("path"), there);
  Do("close");
  EXPECT_EQ(Do("open", {{"path", there}}).at("clips").size(), 1U);
  EXPECT_TRUE(BeginsWith(Refused("save", {{"path", "/nowhere/at/all.captivo"}}), "path: "));
}

TEST_F(DriveTest, APreferenceGivesStillImagesTheirRateUntilItIsTakenAway) {
  Do("new");
  const std::string still = Do("add_clip", {{"name", "Still"}, {"still", true}}).at("clip");
  const std::string rate = "BE::kPrefsStillImagesDefaultFramerate";
  Do("preference", {{"name", rate}, {"value", {25, 1}}});
  Do("add_stream", {{"clip", still}, {"format", "cea608"}, {"captions", Json::array({Caption(1, 2, "One")})}});
  Do("open_panel");
  Do("select", {{"what", "clip"}, {"clip", still}});
  EXPECT_EQ(Do("source").at("frame_rate"), kFrame);
  Do("preference", {{"name", rate}, {"value", nullptr}});
  Do("select", {{"what", "no_clip"}});
  Do("select", {{"what", "clip"}, {"clip", still}});
  EXPECT_EQ(Do("source").at("frame_rate"), 0x7fffffffffffffff) << "no rate";
}

TEST_F(DriveTest, ADebugEntryIsATextANumberOrAFlagAndNullTakesItAway) {
  for (const Json& value : {Json("text"), Json(7), Json(1.5), Json(true), Json(nullptr)})
    EXPECT_TRUE(Do("debug", {{"name", "New_XML_Caption_Reading"}, {"value", value}}).at("ok")) << value;
  EXPECT_TRUE(BeginsWith(Refused("debug", {{"name", "X"}, {"value", Json::array({1})}}), "value: "));
  EXPECT_TRUE(BeginsWith(Refused("debug", {{"value", "text"}}), "name: "));
}

TEST_F(DriveTest, AMediaFileIsCalledAsTheScriptSaysOrAsItsFile) {
  const std::string path = CAPTIVO_SOURCE_DIR "/Samples/harbour.mp4";
  Do("new");
  EXPECT_EQ(Do("add_clip", {{"name", "Tape"}, {"path", path}}).at("name"), "Tape");
  EXPECT_EQ(Do("add_clip", {{"name", "Offset"}, {"path", path}, {"media_offset", kSecond}}).at("name"), "Offset");
  EXPECT_EQ(Do("add_clip", {{"path", path}}).at("name"), "harbour.mp4");
}

TEST_F(DriveTest, ALengthOrARateThatNoClipHasIsRefused) {
  Do("new");
  EXPECT_TRUE(BeginsWith(Refused("add_clip", {{"name", "A"}, {"duration", -1}}), "duration: "));
  EXPECT_TRUE(BeginsWith(Refused("add_clip", {{"name", "A"}, {"frame_rate", 0}}), "frame_rate: "));
  EXPECT_TRUE(BeginsWith(Refused("add_clip", {{"name", "A"}, {"frame_rate", -7}}), "frame_rate: "));
  clip = Do("add_clip", {{"name", "A"}}).at("clip");
  Do("add_stream", {{"clip", clip}, {"format", "open"}});
  EXPECT_TRUE(BeginsWith(Refused("add_stream", {{"clip", clip}, {"format", "open"}}), "format: "));
}

} // namespace Tests
