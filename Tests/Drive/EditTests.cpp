// Editing through the panel, as a captioner does it.

#include "DriveProcess.h"

namespace Tests {

TEST_F(DriveTest, TypingReachesTheStreamKeyByKeyAndIsOneStep) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("caret", {{"start", 3}});
  Do("type", {{"text", " m"}});
  EXPECT_EQ(Stream()[0].at("text"), "One m");
  Do("type", {{"text", "ore"}});
  EXPECT_EQ(Stream()[0].at("text"), "One more");
  EXPECT_EQ(Row(Seconds(1)).at("text"), "One more");
  const std::size_t steps = Do("history").at("undo").size();
  Do("commit_edits");
  EXPECT_EQ(Do("history").at("undo").size(), steps + 1);
  Do("undo");
  EXPECT_EQ(Stream()[0].at("text"), "One");
  EXPECT_EQ(Row(Seconds(1)).at("text_value"), "One");
  Do("redo");
  EXPECT_EQ(Stream()[0].at("text"), "One more");
}

TEST_F(DriveTest, AChangeOfARowHalfOutOfViewSurvivesTheScrollingThatItCauses) {
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two"), Caption(5, 6, "Three"), Caption(7, 8, "Four")});
  Do("resize", {{"width", 900}, {"height", 99 + 3 * 75 + 30}});
  ASSERT_EQ(Panel().at("scroll_offset"), 0);
  Do("row_text", {{"row", Seconds(7)}, {"value", "Changed"}, {"phase", 2}});
  EXPECT_NE(Panel().at("scroll_offset"), 0);
  EXPECT_EQ(Stream()[3].at("text"), "Changed");
  EXPECT_EQ(Row(Seconds(7)).at("text"), "Changed");
}

TEST_F(DriveTest, EnterMakesALineThatIsStoredAsOneLineFeed) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("caret", {{"start", 3}});
  Do("type", {{"key_name", "enter"}});
  Do("type", {{"text", "Two"}});
  EXPECT_EQ(Stream()[0].at("text"), "One\nTwo");
  const Json row = Row(Seconds(1));
  EXPECT_EQ(row.at("text_value"), "One\r\nTwo");
  EXPECT_EQ(row.at("text_selection"), Json::array({8, 8}));
  Do("tick", {{"ms", 100}});
  EXPECT_EQ(Panel().at("caret"), Json::array({7, 7})) << "the list counts a line end once";
}

TEST_F(DriveTest, TheTabKeyStaysOutOfACaption) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  const Json inText{{"in", "row"}, {"row", Seconds(1)}, {"part", "text"}};
  for (const int modifiers : {0, 2}) {
    const Json answer = Do("type", {{"key_name", "tab"}, {"modifiers", modifiers}});
    EXPECT_EQ(answer.at("used"), true) << modifiers;
    EXPECT_EQ(answer.at("focus"), inText) << modifiers << ": the key goes no further, so the focus stays";
  }
  EXPECT_EQ(Stream()[0].at("text"), "One");
  EXPECT_EQ(Row(Seconds(1)).at("text_value"), "One");
}

TEST_F(DriveTest, EscapePutsTheTextBackAndTheFocusInThePane) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("caret", {{"start", 0}, {"end", 3}});
  Do("type", {{"text", "Else"}});
  EXPECT_EQ(Stream()[0].at("text"), "Else");
  const Json answer = Do("type", {{"key_name", "escape"}});
  EXPECT_EQ(answer.at("focus"), (Json{{"in", "pane"}}));
  EXPECT_EQ(Stream()[0].at("text"), "One");
  EXPECT_EQ(Row(Seconds(1)).at("text_value"), "One");
  EXPECT_EQ(Row(Seconds(1)).at("text"), "One");
}

TEST_F(DriveTest, FocusInATextSelectsItsRow) {
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two")});
  EXPECT_EQ(Do("focus", {{"row", Seconds(3)}, {"part", "text"}}).at("focus"),
            (Json{{"in", "row"}, {"row", Seconds(3)}, {"part", "text"}}));
  Do("type", {{"text", "x"}});
  EXPECT_EQ(Selected(), Times({3}));
}

TEST_F(DriveTest, ClicksSelectToggleAndExtend) {
  OpenCaptions({Caption(1, 2, "a"), Caption(3, 4, "b"), Caption(5, 6, "c"), Caption(7, 8, "d")});
  Click(1);
  EXPECT_EQ(Selected(), Times({3}));
  EXPECT_EQ(Panel().at("anchor"), Seconds(3));
  Click(3, 2);
  EXPECT_EQ(Selected(), Times({3, 5, 7}));
  Click(2, 4);
  EXPECT_EQ(Selected(), Times({3, 7}));
  EXPECT_EQ(Panel().at("caret"), Json::array({0, -1}));
  Click(0, 6);
  EXPECT_EQ(Selected(), Times({1, 3, 7})) << "toggling goes before extending";
  Do("mouse", {{"x", 10}, {"y", 4 * 75 + 20}});
  EXPECT_EQ(Selected(), Times({}));
}

TEST_F(DriveTest, KeysMoveAndExtendTheSelection) {
  OpenCaptions({Caption(1, 2, "a"), Caption(3, 4, "b"), Caption(5, 6, "c")});
  constexpr int kDown = -40;
  constexpr int kUp = -38;
  constexpr int kHome = -36;
  constexpr int kEnd = -35;
  EXPECT_EQ(Do("key", {{"code", kDown}}).at("handled"), true);
  EXPECT_EQ(Selected(), Times({3}));
  Do("key", {{"code", kDown}, {"modifiers", 2}});
  EXPECT_EQ(Selected(), Times({3, 5}));
  Do("key", {{"code", kHome}});
  EXPECT_EQ(Selected(), Times({1}));
  Do("key", {{"code", kUp}});
  EXPECT_EQ(Selected(), Times({1}));
  Do("key", {{"code", kEnd}, {"modifiers", 2}});
  EXPECT_EQ(Selected(), Times({1, 3, 5}));
  EXPECT_EQ(Do("key", {{"code", 65}}).at("handled"), false);
}

TEST_F(DriveTest, ANewCaptionFillsTheGapBehindTheSelectedOne) {
  OpenCaptions({Caption(1, 2, "a"), Caption(2.4, 4, "b")});
  Do("press", {{"control", "addCaptionButton"}});
  EXPECT_EQ(RowTimes(), Times({1, 2, 2.4}));
  EXPECT_EQ(Selected(), Times({2}));
  EXPECT_EQ(Stream()[1].at("end"), Seconds(2.4));
  EXPECT_EQ(Stream()[1].at("text"), "");
  EXPECT_EQ(Panel().at("focus"), (Json{{"in", "pane"}}));
  Do("press", {{"control", "addCaptionButton"}});
  const Json boxes = Do("boxes").at("boxes");
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].at("title"), "Closed Captioning");
  EXPECT_EQ(boxes[0].at("flags"), 1);
  EXPECT_EQ(boxes[0].at("icon"), 4);
  EXPECT_EQ(boxes[0].at("default"), 0);
  EXPECT_EQ(RowTimes(), Times({1, 2, 2.4}));
  EXPECT_TRUE(Do("boxes").at("boxes").empty());
}

TEST_F(DriveTest, TheFirstCaptionOfAStreamStartsAtZeroAndLastsASecond) {
  OpenCaptions({});
  Do("press", {{"control", "addCaptionButton"}});
  EXPECT_EQ(RowTimes(), Times({0}));
  EXPECT_EQ(Stream()[0].at("end"), kSecond);
  Do("undo");
  EXPECT_EQ(RowTimes(), Times({}));
  EXPECT_TRUE(Stream().empty());
}

TEST_F(DriveTest, DeletingHandsTheSelectionOnAndCanBeUndone) {
  OpenCaptions({Caption(1, 2, "a"), Caption(3, 4, "b"), Caption(5, 6, "c"), Caption(7, 8, "d")});
  Click(1);
  Click(2, 2);
  Do("press", {{"control", "deleteCaptionButton"}});
  EXPECT_EQ(RowTimes(), Times({1, 7}));
  EXPECT_EQ(Stream().size(), 2U);
  EXPECT_EQ(Selected(), Times({1}));
  Do("key", {{"code", -46}});
  EXPECT_EQ(Selected(), Times({})) << "the last row of the list does not take over";
  Do("undo");
  Do("undo");
  EXPECT_EQ(RowTimes(), Times({1, 3, 5, 7}));
  EXPECT_EQ(Stream().size(), 4U);
}

TEST_F(DriveTest, AMoveIntoAnotherCaptionIsRefusedWithABox) {
  OpenCaptions({Caption(1, 2, "a"), Caption(3, 4, "b")});
  Do("row_time", {{"row", Seconds(3)}, {"end", "in"}, {"value", Seconds(1.4)}, {"how", "typed"}});
  const Json boxes = Do("boxes").at("boxes");
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_NE(boxes[0].at("text").get<std::string>().find("cannot be moved"), std::string::npos);
  EXPECT_EQ(RowTimes(), Times({1, 3}));
  EXPECT_EQ(Row(Seconds(3)).at("in_value"), Seconds(3));
  EXPECT_EQ(Row(Seconds(3)).at("time_edit_pending"), false);
  EXPECT_EQ(Stream()[1].at("begin"), Seconds(3));
  EXPECT_EQ(Panel().at("focus"), nullptr);
}

TEST_F(DriveTest, AMoveIntoAGapIsCutAtTheNextCaption) {
  OpenCaptions({Caption(1, 2, "a"), Caption(3, 4, "b"), Caption(5, 9, "c")});
  Do("row_time", {{"row", Seconds(5)}, {"end", "in"}, {"value", Seconds(2.2)}, {"how", "scrub"}});
  EXPECT_EQ(RowTimes(), Times({1, 2.2, 3}));
  EXPECT_EQ(Row(Seconds(2.2)).at("end"), Seconds(3));
  const Json captions = Stream();
  EXPECT_EQ(captions[1].at("text"), "c");
  EXPECT_EQ(captions[1].at("end"), Seconds(3));
}

TEST_F(DriveTest, AnInTimeBehindTheOutTimePushesItByAFrame) {
  OpenCaptions({Caption(1, 2, "a")});
  Do("row_time", {{"row", Seconds(1)}, {"end", "in"}, {"value", Seconds(4)}, {"how", "typed"}});
  EXPECT_EQ(Stream()[0].at("begin"), Seconds(4));
  EXPECT_EQ(Stream()[0].at("end"), Seconds(4) + kFrame);
  Do("row_time", {{"row", Seconds(4)}, {"end", "out"}, {"value", Seconds(3)}, {"how", "typed"}});
  EXPECT_EQ(Stream()[0].at("begin"), Seconds(3) - kFrame);
  EXPECT_EQ(Stream()[0].at("end"), Seconds(3));
}

TEST_F(DriveTest, AFieldThatReportsItsOwnValueHoldsFurtherTimeEditsBack) {
  OpenCaptions({Caption(1, 2, "a")});
  Do("row_time", {{"row", Seconds(1)}, {"end", "out"}, {"value", Seconds(2)}, {"how", "report"}});
  EXPECT_EQ(Row(Seconds(1)).at("time_edit_pending"), true);
  Do("row_time", {{"row", Seconds(1)}, {"end", "out"}, {"value", Seconds(5)}, {"how", "report"}});
  EXPECT_EQ(Stream()[0].at("end"), Seconds(2));
}

TEST_F(DriveTest, TheRowsAreThereBeforeTheStreamHears) {
  OpenCaptions({Caption(1, 2, "a"), Caption(5, 6, "b")});
  Do("trace");
  Do("press", {{"control", "addCaptionButton"}});
  Do("row_time", {{"row", Seconds(2)}, {"end", "out"}, {"value", Seconds(4)}, {"how", "scrub"}});
  Do("press", {{"control", "deleteCaptionButton"}});
  const Json calls =
      Do("trace", {{"only",
                    {"CaptioningStreamUpdater::AddCaption", "CaptioningStreamUpdater::UpdateCaptionStartAndDuration",
                     "CaptioningStreamUpdater::RemoveCaptions"}}})
          .at("calls");
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[0].at("args").at("rows"), Json(Times({1, 2, 5})));
  EXPECT_EQ(calls[0].at("args").at("selected"), Json(Times({2})));
  EXPECT_EQ(calls[1].at("args").at("rows"), Json(Times({1, 2, 5})));
  EXPECT_EQ(calls[2].at("args").at("rows"), Json(Times({1, 5})));
  EXPECT_EQ(calls[2].at("args").at("selected"), Json(Times({1})));
}

TEST_F(DriveTest, TheTraceIsEmptyOnceItWasAskedFor) {
  OpenCaptions({Caption(1, 2, "a")});
  EXPECT_FALSE(Calls({"messaging::"}).empty());
  EXPECT_TRUE(Calls({}).empty());
}

TEST_F(DriveTest, APlainSelectionIsSaidToTheHostAndAToggleIsNot) {
  OpenCaptions({Caption(1, 2, "a"), Caption(3, 4, "b")});
  const auto posts = [&] {
    int count = 0;
    const Json trace = Do("trace", {{"only", {"messaging::PostMessageToUIThread"}}});
    for (const Json& call : trace.at("calls"))
      count += call.dump().find("CaptionSelectedMessage") != std::string::npos;
    return count;
  };
  posts();
  Click(1);
  EXPECT_EQ(posts(), 1);
  Click(0, 4);
  EXPECT_EQ(posts(), 0);
}

TEST_F(DriveTest, CopyAndPasteGoThroughTheClipboard) {
  OpenCaptions({Caption(1, 2, "Harbour")});
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("clipboard", {{"text", "old "}});
  Do("caret", {{"start", 0}});
  constexpr int kPaste = 57637;
  EXPECT_EQ(Do("command", {{"number", kPaste}}).at("handled"), true);
  EXPECT_EQ(Stream()[0].at("text"), "old Harbour");
  Do("caret", {{"start", 4}, {"end", 11}});
  constexpr int kCopy = 57634;
  EXPECT_EQ(Do("status", {{"number", kCopy}}).at("enabled"), true);
  Do("command", {{"number", kCopy}});
  EXPECT_EQ(Do("clipboard").at("text"), "Harbour");
}

TEST_F(DriveTest, ARowsTextCanBeSetAsOneChange) {
  OpenCaptions({Caption(1, 2, "a"), Caption(3, 4, "b")});
  Do("row_text", {{"row", Seconds(3)}, {"phase", 0}});
  EXPECT_EQ(Selected(), Times({3}));
  Do("row_text", {{"row", Seconds(3)}, {"value", "beta"}, {"phase", 1}});
  EXPECT_EQ(Stream()[1].at("text"), "beta");
  Do("row_text", {{"row", Seconds(3)}, {"value", "gamma"}, {"phase", 2}});
  EXPECT_EQ(Stream()[1].at("text"), "gamma");
  EXPECT_FALSE(Refused("row_text", {{"row", Seconds(2)}, {"value", "x"}}).empty());
}

} // namespace Tests
