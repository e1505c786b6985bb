// Clicks and keys in the list, by what they call and in which order.

#include "DriveProcess.h"

namespace Tests {

namespace {

constexpr int kUp = -38;
constexpr int kDown = -40;
constexpr int kHome = -36;
constexpr int kEnd = -35;
constexpr int kPageUp = -33;
constexpr int kPageDown = -34;
constexpr int kDelete = -46;
constexpr int kBackspace = 8;
constexpr int kShift = 2;
constexpr int kControl = 4;

class DriveGesture : public DriveTest {
 protected:
  void OpenRows(int count) {
    std::vector<Json> captions;
    for (int i = 0; i < count; ++i)
      captions.push_back(Caption(2 * i + 1, 2 * i + 2, "x"));
    OpenCaptions(captions);
    Trace();
  }
  Json Trace() { return Do("trace").at("calls"); }
  // The first call of a name; -1 without one.
  static int Find(const Json& calls, const std::string& name, int from = 0) {
    for (int i = from; i < static_cast<int>(calls.size()); ++i) {
      if (calls[i].at("call") == name)
        return i;
    }
    return -1;
  }
  static int Count(const Json& calls, const std::string& name) {
    int count = 0;
    for (const Json& call : calls)
      count += call.at("call") == name;
    return count;
  }
  // How often the host was told that a caption is selected.
  static int CountTold(const Json& calls) {
    int count = 0;
    for (const Json& call : calls)
      count += call.at("call") == "messaging::PostMessageToUIThread" &&
               call.at("args").at("message") == "HSL::CaptionSelectedMessage";
    return count;
  }
  bool Press(int code, int modifiers = 0) {
    return Do("key", {{"code", code}, {"modifiers", modifiers}}).at("handled").get<bool>();
  }
  void ClickBelow() { Do("mouse", {{"x", 20}, {"y", 75 * 5 + 20}}); }

  const std::string commit = "CaptioningStreamUpdater::CommitChangesUndoable";
  const std::string post = "messaging::PostMessageToUIThread";
};

} // namespace

TEST_F(DriveGesture, AClickCommitsBeforeTheSelectionChangesAndTellsTheHostBeforeItScrolls) {
  OpenRows(40);
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("type", {{"text", "typed "}});
  Do("focus", {{"pane", true}});
  const std::size_t steps = Do("history").at("undo").size();
  Trace();
  Press(kEnd);
  const Json calls = Trace();
  const int committed = Find(calls, commit);
  const int told = Find(calls, post);
  const int scrolled = Find(calls, "ScrollBar::SetScrollBarPosition");
  const int repainted = Find(calls, "View::Invalidate");
  ASSERT_GE(committed, 0);
  EXPECT_EQ(calls[committed].at("args").at("ends_passage"), true);
  EXPECT_EQ(calls[committed].at("args").at("selected"), Json(Times({1})));
  EXPECT_LT(committed, told);
  EXPECT_LT(told, scrolled);
  EXPECT_LT(told, repainted);
  EXPECT_EQ(CountTold(calls), 1);
  EXPECT_EQ(Do("history").at("undo").size(), steps + 1);
  EXPECT_EQ(Selected(), Times({79}));
}

TEST_F(DriveGesture, AClickOnTheOnlySelectedRowCommitsAndTellsNobody) {
  OpenRows(3);
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("type", {{"text", "a"}});
  const std::size_t steps = Do("history").at("undo").size();
  Trace();
  Click(0);
  const Json calls = Trace();
  EXPECT_EQ(Count(calls, commit), 1);
  EXPECT_EQ(CountTold(calls), 0);
  EXPECT_EQ(Do("history").at("undo").size(), steps + 1);
  EXPECT_EQ(Panel().at("flags").at("keep_text_focus"), false);
}

TEST_F(DriveGesture, TogglesAndExtensionsCommitFirstAndTellNobody) {
  OpenRows(5);
  for (const auto& [row, modifiers] : {std::pair(2, kControl), {4, kShift}, {4, kControl}, {1, kControl | kShift}}) {
    const Json former = Panel().at("selected");
    Trace();
    Click(row, modifiers);
    const Json calls = Trace();
    ASSERT_EQ(Count(calls, commit), 1);
    EXPECT_EQ(calls[Find(calls, commit)].at("args").at("selected"), former);
    EXPECT_EQ(CountTold(calls), 0) << row << ' ' << modifiers;
  }
}

TEST_F(DriveGesture, AToggleOnTheOnlySelectedRowChangesNothing) {
  OpenRows(3);
  Click(0, kControl);
  EXPECT_EQ(Selected(), Times({1}));
  EXPECT_EQ(Count(Trace(), commit), 1);
}

TEST_F(DriveGesture, DownOnTheLastRowStaysThereAndTellsNobody) {
  OpenRows(3);
  Press(kEnd);
  Trace();
  EXPECT_TRUE(Press(kDown));
  const Json calls = Trace();
  EXPECT_EQ(Selected(), Times({5}));
  EXPECT_EQ(Count(calls, commit), 1);
  EXPECT_EQ(CountTold(calls), 0);
}

TEST_F(DriveGesture, APageIsAsManyRowsAsShowInThePane) {
  OpenRows(60);
  for (const int height : {300, 314, 420, 600}) {
    Do("resize", {{"width", 600}, {"height", height}});
    const int rows = (Panel().at("pane_bounds")[3].get<int>() + 74) / 75;
    Press(kHome);
    EXPECT_TRUE(Press(kPageDown));
    EXPECT_EQ(Selected(), Times({1.0 + 2 * rows})) << height;
    Press(kDown);
    Press(kPageUp);
    EXPECT_EQ(Selected(), Times({3})) << height;
  }
}

TEST_F(DriveGesture, KeysBelongToTheTextThatHasTheCaret) {
  OpenRows(3);
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Trace();
  for (const int code : {kUp, kDown, kHome, kEnd, kPageUp, kPageDown, kDelete, kBackspace})
    EXPECT_FALSE(Press(code)) << code;
  EXPECT_EQ(Count(Trace(), commit), 0);
  EXPECT_EQ(RowTimes(), Times({1, 3, 5}));
}

TEST_F(DriveGesture, KeysOfOtherCodesAreNotUsed) {
  OpenRows(3);
  for (const int code : {0, 13, 27, 9, 46, 40, 38, 36, 35, 34, 33, -8, -37, -39, -45, -13, -9})
    EXPECT_FALSE(Press(code)) << code;
  EXPECT_EQ(Count(Trace(), commit), 0);
}

TEST_F(DriveGesture, AClickBelowTheRowsCommitsNothingAndKeepsTheTextFocusInMind) {
  OpenRows(3);
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("type", {{"text", "a"}});
  ASSERT_EQ(Panel().at("flags").at("keep_text_focus"), true);
  const std::size_t steps = Do("history").at("undo").size();
  Trace();
  ClickBelow();
  EXPECT_EQ(Count(Trace(), commit), 0);
  EXPECT_EQ(Do("history").at("undo").size(), steps);
  EXPECT_EQ(Selected(), Times({}));
  EXPECT_EQ(Panel().at("flags").at("keep_text_focus"), true);
}

TEST_F(DriveGesture, UpWithNothingSelectedOnlyCommits) {
  OpenRows(3);
  ClickBelow();
  Trace();
  EXPECT_TRUE(Press(kUp));
  const Json calls = Trace();
  EXPECT_EQ(Count(calls, commit), 1);
  EXPECT_EQ(CountTold(calls), 0);
  EXPECT_EQ(Selected(), Times({}));
}

TEST_F(DriveGesture, DeletingByKeyIsAStepOfItsOwnBetweenTwoCommits) {
  for (const int key : {kDelete, kBackspace}) {
    OpenRows(4);
    Click(1);
    Click(2, kShift);
    const std::size_t steps = Do("history").at("undo").size();
    Trace();
    EXPECT_TRUE(Press(key));
    const Json calls = Trace();
    const int before = Find(calls, commit);
    const int screen = Find(calls, "TabView::UpdateStackedDimensions");
    const int removed = Find(calls, "CaptioningStreamUpdater::RemoveCaptions");
    const int focus = Find(calls, "View::SetFocus");
    const int after = Find(calls, commit, before + 1);
    ASSERT_GE(before, 0);
    EXPECT_EQ(calls[before].at("args").at("rows"), Json(Times({1, 3, 5, 7})));
    EXPECT_LT(before, screen);
    EXPECT_LT(screen, removed);
    EXPECT_LT(removed, focus);
    EXPECT_LT(focus, after);
    EXPECT_EQ(calls[removed].at("args").at("times"), Json(Times({3, 5})));
    EXPECT_EQ(calls[removed].at("args").at("close_gap"), false);
    EXPECT_EQ(calls[removed].at("args").at("rows"), Json(Times({1, 7})));
    EXPECT_EQ(calls[removed].at("args").at("selected"), Json(Times({1})));
    EXPECT_EQ(CountTold(calls), 0);
    EXPECT_EQ(Do("history").at("undo").size(), steps + 1) << "closed at once";
    EXPECT_EQ(Panel().at("focus"), (Json{{"in", "pane"}}));
    EXPECT_EQ(Panel().at("flags").at("reset_scroll_pending"), true);
  }
}

TEST_F(DriveGesture, DeletingTheLastRowsByKeyLeavesNoRowInView) {
  OpenRows(2);
  Click(1, kShift);
  Press(kDelete);
  EXPECT_EQ(RowTimes(), Times({}));
  EXPECT_EQ(Panel().at("first_visible"), -1);
  EXPECT_EQ(Panel().at("last_visible"), -2);
}

TEST_F(DriveGesture, TheMenuOpensOverWhatWasSelectedBefore) {
  OpenRows(3);
  Do("mouse", {{"x", 20}, {"y", 160}, {"button", "right"}});
  const Json calls = Trace();
  const int menu = Find(calls, "MenuUtils::TrackContextMenu");
  ASSERT_GE(menu, 0);
  EXPECT_EQ(calls[menu].at("args").at("menu"), "Captivo_Context_Menu");
  EXPECT_EQ(calls[menu].at("args").at("x"), 20);
  EXPECT_EQ(calls[menu].at("args").at("y"), 160);
  EXPECT_EQ(Count(calls, commit), 0);
  EXPECT_EQ(Selected(), Times({1}));
}

TEST_F(DriveGesture, ASelectionThatComesFromTheHostNeitherCommitsNorIsSaidBack) {
  OpenRows(4);
  Trace();
  Do("select_captions", {{"times", Times({3, 7})}, {"format", 0x36434331}});
  const Json calls = Trace();
  EXPECT_EQ(Selected(), Times({3, 7}));
  EXPECT_EQ(Count(calls, commit), 0);
  EXPECT_EQ(CountTold(calls), 0);
}

TEST_F(DriveGesture, TheCaretRangeIsEmptyWithNothingAndWholeWithOneOrSeveralSelected) {
  OpenRows(3);
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("caret", {{"start", 1}});
  Do("tick", {{"ms", 100}});
  EXPECT_EQ(Panel().at("caret"), Json::array({1, 1}));
  Click(1);
  EXPECT_EQ(Panel().at("caret"), Json::array({0, -1}));
  Click(2, kShift);
  EXPECT_EQ(Panel().at("caret"), Json::array({0, -1}));
}

} // namespace Tests
