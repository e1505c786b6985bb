// The panel as a user opens it, and as the host's selection moves it.

#include "DriveProcess.h"

#include <fstream>

namespace Tests {

TEST_F(DriveTest, TheRowsAreTheCaptionsOfTheSelectedClip) {
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two\nlines"), Caption(8, 9, "Three")});
  const Json panel = Panel();
  EXPECT_EQ(panel.at("created"), true);
  EXPECT_EQ(panel.at("shown"), true);
  EXPECT_EQ(panel.at("front_most"), true);
  EXPECT_EQ(panel.at("unavailable"), false);
  EXPECT_EQ(RowTimes(), Times({1, 3, 8}));
  EXPECT_EQ(Selected(), Times({1}));
  EXPECT_EQ(panel.at("anchor"), Seconds(1));
  const Json row = panel.at("rows")[1];
  EXPECT_EQ(row.at("end"), Seconds(4));
  EXPECT_EQ(row.at("text"), "Two\nlines");
  EXPECT_EQ(row.at("realized"), true);
  EXPECT_EQ(row.at("in_value"), Seconds(3));
  EXPECT_EQ(row.at("out_value"), Seconds(4));
  EXPECT_EQ(row.at("in_text"), "00:00:03:00");
}

TEST_F(DriveTest, OnlyRowsInViewHaveControls) {
  std::vector<Json> captions;
  for (int i = 0; i < 100; ++i)
    captions.push_back(Caption(i, i + 0.5, "x"));
  OpenCaptions(captions);
  const Json panel = Panel();
  int realized = 0;
  for (const Json& row : panel.at("rows"))
    realized += row.at("realized").get<bool>();
  EXPECT_EQ(panel.at("rows").size(), 100U);
  EXPECT_EQ(realized, panel.at("last_visible").get<int>() - panel.at("first_visible").get<int>() + 1);
  EXPECT_LT(realized, 12);
  Do("scroll", {{"position", 75 * 50}});
  EXPECT_EQ(Panel().at("scroll_offset"), 75 * 50);
  EXPECT_EQ(Panel().at("first_visible"), 50);
  EXPECT_EQ(Panel().at("rows")[50].at("realized"), true);
  EXPECT_EQ(Panel().at("rows")[0].at("realized"), false);
}

TEST_F(DriveTest, ANewPanelStartsOnWhatIsSelectedAlready) {
  Do("new");
  clip = Do("add_clip", {{"name", "Harbour"}}).at("clip");
  Do("add_stream", {{"clip", clip}, {"format", "cea608"}, {"captions", Json::array({Caption(1, 2, "One")})}});
  Do("select", {{"what", "clip"}, {"clip", clip}});
  Do("captions_opened");
  EXPECT_EQ(RowTimes(), Times({1}));
}

TEST_F(DriveTest, WhatIsSelectedElsewhereDecidesWhatIsOnShow) {
  OpenCaptions({Caption(1, 2, "One")});
  const std::string other = Do("add_clip", {{"name", "Other"}}).at("clip");
  Do("add_stream", {{"clip", other}, {"format", "teletext"}, {"captions", Json::array({Caption(5, 6, "Other")})}});
  const Json sequence =
      Do("add_sequence",
         {{"name", "Cut"},
          {"frame_rate", {25, 1}},
          {"items",
           {{{"clip", other}, {"start", 0}, {"media", "both"}}, {{"clip", other}, {"start", 0}, {"media", "audio"}}}}});
  Do("select", {{"what", "item"}, {"item", sequence.at("items")[0]}});
  EXPECT_EQ(RowTimes(), Times({5}));
  Do("select", {{"what", "item"}, {"item", sequence.at("items")[1]}});
  EXPECT_EQ(RowTimes(), Times({}));
  for (const char* what : {"transition", "empty", "nothing", "bin", "no_clip"}) {
    Do("select", {{"what", "clip"}, {"clip", clip}});
    EXPECT_EQ(RowTimes(), Times({1})) << what;
    Do("select", {{"what", what}});
    EXPECT_EQ(RowTimes(), Times({})) << what;
    EXPECT_EQ(Panel().at("unavailable"), true) << what;
  }
  Do("select", {{"what", "source_clip"}, {"clip", clip}});
  EXPECT_EQ(RowTimes(), Times({1}));
  Do("select", {{"what", "sequence"}, {"sequence", sequence.at("sequence")}});
  EXPECT_EQ(RowTimes(), Times({}));
  Do("select", {{"what", "source_clip"}, {"item", sequence.at("items")[0]}});
  EXPECT_EQ(RowTimes(), Times({5}));
  EXPECT_EQ(Do("source", {{"of", "pane"}}).at("kind"), 3);
}

TEST_F(DriveTest, AClosedClipTakesItsRowsAlong) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("close_clip", {{"clip", clip}});
  EXPECT_EQ(RowTimes(), Times({}));
  EXPECT_EQ(Do("source", {{"of", "pane"}}).at("kind"), 0);
}

TEST_F(DriveTest, TheSourceIsToldAsItStands) {
  OpenCaptions({Caption(1, 2, "One")});
  for (const char* of : {"pane", "handler"}) {
    const Json source = Do("source", {{"of", of}});
    EXPECT_EQ(source.at("kind"), 1) << of;
    EXPECT_EQ(source.at("stream"), stream) << of;
    EXPECT_EQ(source.at("stream_format"), 0x36434331) << of;
    EXPECT_EQ(source.at("available_formats"), Json::array({0x36434331})) << of;
    EXPECT_EQ(source.at("frame_rate"), kFrame) << of;
    EXPECT_EQ(source.at("overrides"), Json::array({999, 999, 999, 999})) << of;
  }
  EXPECT_EQ(Do("source", {{"of", "pending"}}).at("kind"), 0);
}

TEST_F(DriveTest, AnEditFromElsewhereReachesTheRows) {
  OpenCaptions({Caption(1, 2, "One"), Caption(5, 6, "Two")});
  Do("edit_stream", {{"stream", stream}, {"add", Json::array({Caption(3, 4, "Between")})}});
  EXPECT_EQ(RowTimes(), Times({1, 3, 5}));
  Do("edit_stream",
     {{"stream", stream}, {"change", Json::array({{{"begin", Seconds(3)}, {"end", Seconds(4.5)}, {"text", "More"}}})}});
  EXPECT_EQ(Row(Seconds(3)).at("text"), "More");
  EXPECT_EQ(Row(Seconds(3)).at("text_value"), "More");
  EXPECT_EQ(Row(Seconds(3)).at("end"), Seconds(4.5));
  Do("edit_stream", {{"stream", stream}, {"remove", Times({1})}});
  EXPECT_EQ(RowTimes(), Times({3, 5}));
  EXPECT_EQ(Selected(), Times({3})) << "the only selected row hands the selection on";
}

TEST_F(DriveTest, AShiftTakesTheSelectionAlong) {
  OpenCaptions({Caption(1, 2, "One"), Caption(5, 6, "Two"), Caption(9, 10, "Three")});
  Click(1);
  Do("edit_stream",
     {{"stream", stream}, {"move", {{"from", Seconds(5)}, {"to", Seconds(9)}, {"offset", -2 * kSecond}}}});
  EXPECT_EQ(RowTimes(), Times({1, 3, 7}));
  EXPECT_EQ(Selected(), Times({3}));
}

TEST_F(DriveTest, WhileALongJobHoldsTheStreamAReloadWaitsAQuarterOfASecondAtATime) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("busy", {{"stream", stream}, {"on", true}});
  Do("send", {{"message", "BE::CaptioningStreamChangedMessage"},
              {"station", "stream:" + stream},
              {"fields", {{"stream", stream}}}});
  Json panel = Panel();
  EXPECT_EQ(panel.at("flags").at("defer_active"), true);
  EXPECT_EQ(panel.at("flags").at("reload_pending"), true);
  EXPECT_EQ(panel.at("unavailable"), true);
  EXPECT_EQ(panel.at("timers").at("defer"), 250);
  EXPECT_EQ(RowTimes(), Times({1})) << "the old rows stay";
  Do("tick", {{"ms", 249}});
  EXPECT_EQ(Panel().at("flags").at("defer_active"), true);
  const Json tick = Do("tick", {{"ms", 1}});
  EXPECT_EQ(std::count_if(tick.at("fired").begin(), tick.at("fired").end(),
                          [](const Json& fired) { return fired.at("timer") == "defer"; }),
            1);
  panel = Panel();
  EXPECT_EQ(panel.at("flags").at("defer_active"), false) << "a wait that starts anew inside the tick";
  EXPECT_EQ(panel.at("flags").at("reload_pending"), true);
  EXPECT_EQ(panel.at("timers").at("defer"), 250);
  Do("busy", {{"stream", stream}, {"on", false}});
  Do("tick", {{"ms", 250}});
  panel = Panel();
  EXPECT_EQ(panel.at("flags").at("reload_pending"), false);
  EXPECT_EQ(panel.at("timers").at("defer"), nullptr);
  EXPECT_EQ(panel.at("unavailable"), false);
}

TEST_F(DriveTest, ASwitchOfTheSourceWaitsForTheCaretToLeave) {
  OpenCaptions({Caption(1, 2, "One")});
  const std::string other = Do("add_clip", {{"name", "Other"}}).at("clip");
  Do("add_stream", {{"clip", other}, {"format", "cea608"}, {"captions", Json::array({Caption(5, 6, "Other")})}});
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("select", {{"what", "clip"}, {"clip", other}});
  EXPECT_EQ(RowTimes(), Times({1}));
  EXPECT_EQ(Panel().at("flags").at("source_pending"), true);
  EXPECT_EQ(Do("source", {{"of", "pending"}}).at("available_formats").size(), 1U);
  Do("tick", {{"ms", 1000}});
  EXPECT_EQ(RowTimes(), Times({1}));
  Do("focus", {{"none", true}});
  Do("tick", {{"ms", 250}});
  EXPECT_EQ(RowTimes(), Times({5}));
}

TEST_F(DriveTest, TimersStandStillWhileAModalWindowIsUp) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("busy", {{"stream", stream}, {"on", true}});
  Do("send", {{"message", "CaptioningStreamChangedMessage"},
              {"station", "stream:" + stream},
              {"fields", {{"stream", stream}}}});
  Do("busy", {{"stream", stream}, {"on", false}});
  Do("modal", {{"on", true}});
  const Json tick = Do("tick", {{"ms", 600}});
  for (const Json& fired : tick.at("fired"))
    EXPECT_EQ(fired.at("result"), true);
  EXPECT_EQ(Panel().at("flags").at("reload_pending"), true);
  EXPECT_NE(Panel().at("timers").at("defer"), nullptr);
  Do("modal", {{"on", false}});
  Do("tick", {{"ms", 250}});
  EXPECT_EQ(Panel().at("flags").at("reload_pending"), false);
}

TEST_F(DriveTest, TimersFireAtTheirOwnTimesInOrder) {
  OpenCaptions({Caption(1, 2, "One")});
  const Json fired = Do("tick", {{"ms", 350}}).at("fired");
  ASSERT_EQ(fired.size(), 3U);
  for (std::size_t i = 1; i < fired.size(); ++i)
    EXPECT_EQ(fired[i].at("at").get<int>() - fired[i - 1].at("at").get<int>(), 100);
}

TEST_F(DriveTest, AClosedPanelCanBeOpenedAgain) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("close_panel");
  EXPECT_EQ(Panel().at("created"), false);
  Do("edit_stream", {{"stream", stream}, {"add", Json::array({Caption(3, 4, "Two")})}});
  Do("open_panel");
  EXPECT_EQ(RowTimes(), Times({1, 3}));
}

TEST_F(DriveTest, AFeatureOfTheNewerGenerationKeepsTheHandlerFromComing) {
  Do("feature", {{"name", "NewGenCaption"}, {"on", true}});
  EXPECT_EQ(Do("handler", {{"create", true}}).at("created"), false);
  const Json registry = Do("registry");
  EXPECT_TRUE(registry.at("window_classes").empty());
  EXPECT_TRUE(registry.at("window_menu").empty());
  const auto& contexts = registry.at("contexts");
  const auto captions = std::find_if(contexts.begin(), contexts.end(),
                                     [](const Json& context) { return context.at("id") == "captions"; });
  ASSERT_NE(captions, contexts.end()) << "the commands are there all the same";
  EXPECT_EQ(captions->at("commands").size(), 13U);
  Refused("open_panel");
  Do("feature", {{"name", "NewGenCaption"}, {"on", false}});
  EXPECT_EQ(Do("handler", {{"create", true}}).at("created"), true);
  EXPECT_EQ(Do("registry").at("window_classes").size(), 1U);
  EXPECT_EQ(Do("registry").at("wing_menus")[0].at("menu"), "Captivo_Wing_Menu");
}

TEST_F(DriveTest, AHandlerThatGoesTakesItsPanelAndItsListenersAlong) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("handler", {{"destroy", true}});
  EXPECT_EQ(Panel().at("created"), false);
  EXPECT_TRUE(Do("registry").at("window_classes").empty());
  EXPECT_EQ(Do("send", {{"message", "MZ::ClosedCaptionsOpenedMessage"}}).at("listeners"), 0);
  Do("edit_stream", {{"stream", stream}, {"add", Json::array({Caption(3, 4, "Two")})}});
  Do("handler", {{"create", true}});
  Do("open_panel");
  EXPECT_EQ(RowTimes(), Times({1, 3}));
}

TEST_F(DriveTest, AMessageOfAnUnknownClassIsHeardAndIgnored) {
  OpenCaptions({Caption(1, 2, "One")});
  for (const char* station : {"MZ::kStation_Info", "HSL::kStation_CaptionSelection", "kStation_BinActivation"}) {
    const Json answer = Do("send", {{"message", "XX::NobodyKnowsThisMessage"}, {"station", station}});
    EXPECT_EQ(answer.at("known"), false);
    EXPECT_GT(answer.at("listeners"), 0) << station;
  }
  EXPECT_EQ(RowTimes(), Times({1}));
}

TEST_F(DriveTest, MessagesWithEmptyListsAndOfOtherStreamsChangeNoRows) {
  OpenCaptions({Caption(1, 2, "One")});
  const std::string other = Do("add_clip", {{"name", "Other"}}).at("clip");
  const std::string foreign =
      Do("add_stream", {{"clip", other}, {"format", "cea608"}, {"captions", Json::array({Caption(5, 6, "x")})}})
          .at("stream");
  const std::string station = "stream:" + stream;
  for (const char* name : {"CaptionsAddedMessage", "CaptionsRemovedMessage", "CaptionsChangedMessage"}) {
    Do("send", {{"message", name}, {"station", station}});
    Do("send", {{"message", name},
                {"station", station},
                {"fields", {{"captions", Json::array({{{"stream", foreign}, {"begin", Seconds(5)}}})}}}});
  }
  Do("send", {{"message", "CaptionsMovedMessage"}, {"station", station}});
  EXPECT_EQ(RowTimes(), Times({1}));
  EXPECT_EQ(Selected(), Times({1}));
}

TEST_F(DriveTest, APictureOfThePanelIsWritten) {
  OpenCaptions({Caption(1, 2, "One")});
  for (const char* what : {"panel", "window"}) {
    const std::string path = folder / (std::string(what) + ".png");
    Do("shot", {{"path", path}, {"what", what}});
    std::ifstream file(path, std::ios::binary);
    char start[4] = {};
    file.read(start, 4);
    EXPECT_EQ(std::string(start + 1, 3), "PNG") << what;
  }
  Refused("shot", {{"path", (folder / "no" / "such" / "folder.png").string()}});
}

TEST_F(DriveTest, PaintingTellsTheBandTheLabelsAndTheDividers) {
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two")});
  Json fills = Json::array();
  int strings = 0;
  int lines = 0;
  const Json painted = Do("paint");
  for (const Json& call : painted.at("calls")) {
    if (call.at("call") == "DC::FillRect")
      fills.push_back(call.at("args"));
    strings += call.at("call") == "DC::DrawString";
    lines += call.at("call") == "DC::DrawLine";
  }
  EXPECT_EQ(fills.size(), 2U) << "the background, and the band of the selected row";
  EXPECT_EQ(strings, 4);
  EXPECT_EQ(lines, 1) << "none below the last row in view";
}

} // namespace Tests
