// Edits by what they call and in which order: first the rows, then the screen, and the stream last.

#include "DriveProcess.h"

namespace Tests {

namespace {

const std::string kUpdater = "CaptioningStreamUpdater::";

class DriveEditOrder : public DriveTest {
 protected:
  Json Trace() { return Do("trace").at("calls"); }
  static int Find(const Json& calls, const std::string& name, int from = 0) {
    for (int i = from; i < static_cast<int>(calls.size()); ++i) {
      if (calls[i].at("call") == name)
        return i;
    }
    return -1;
  }
  static std::vector<std::string> UpdaterCalls(const Json& calls) {
    std::vector<std::string> names;
    for (const Json& call : calls) {
      const std::string name = call.at("call");
      if (name.rfind(kUpdater, 0) == 0)
        names.push_back(name.substr(kUpdater.size()));
    }
    return names;
  }
  static int CountTold(const Json& calls) {
    int count = 0;
    for (const Json& call : calls)
      count += call.at("call") == "messaging::PostMessageToUIThread";
    return count;
  }
  void FocusText(double begin, int caret) {
    Do("focus", {{"row", Seconds(begin)}, {"part", "text"}});
    Do("caret", {{"start", caret}});
  }
  void SetTime(double row, const char* end, double value, int modifiers = 0) {
    Do("row_time",
       {{"row", Seconds(row)}, {"end", end}, {"value", Seconds(value)}, {"how", "scrub"}, {"modifiers", modifiers}});
  }
  using Names = std::vector<std::string>;
};

} // namespace

TEST_F(DriveEditOrder, AddingCommitsInPassingThenShowsTheRowThenTellsTheStream) {
  OpenCaptions({Caption(1, 2, "a"), Caption(5, 6, "b")});
  FocusText(1, 1);
  Do("type", {{"text", "x"}});
  Trace();
  Do("press", {{"control", "addCaptionButton"}});
  const Json calls = Trace();
  EXPECT_EQ(UpdaterCalls(calls), (Names{"CommitChangesUndoable", "AddCaption"}));
  const int commit = Find(calls, kUpdater + "CommitChangesUndoable");
  const int screen = Find(calls, "TabView::UpdateStackedDimensions");
  const int added = Find(calls, kUpdater + "AddCaption");
  EXPECT_EQ(calls[commit].at("args").at("ends_passage"), false);
  EXPECT_EQ(calls[commit].at("args").at("rows"), Json(Times({1, 5})));
  EXPECT_LT(commit, screen);
  EXPECT_LT(screen, added);
  EXPECT_EQ(calls[added].at("args").at("rows"), Json(Times({1, 2, 5})));
  EXPECT_EQ(calls[added].at("args").at("selected"), Json(Times({2})));
  EXPECT_LT(added, Find(calls, "View::SetFocus"));
  EXPECT_EQ(CountTold(calls), 0);
}

TEST_F(DriveEditOrder, ARefusedNewCaptionKeepsItsCommitAndTellsTheStreamNothing) {
  OpenCaptions({Caption(1, 2, "a"), Caption(2, 3, "b")});
  FocusText(1, 1);
  Do("type", {{"text", "x"}});
  const std::size_t steps = Do("history").at("undo").size();
  Trace();
  Do("press", {{"control", "addCaptionButton"}});
  EXPECT_EQ(UpdaterCalls(Trace()), Names{"CommitChangesUndoable"});
  const Json boxes = Do("boxes").at("boxes");
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].at("text"), "There is not enough time available to insert a new caption between the current "
                                 "caption and the next caption in the list.");
  EXPECT_EQ(Do("history").at("undo").size(), steps + 1);
  EXPECT_EQ(RowTimes(), Times({1, 2}));
  EXPECT_EQ(Selected(), Times({1}));
}

TEST_F(DriveEditOrder, RoomForANewCaptionIsLookedForBehindTheLastOfTheSelectedRowsOrOfAll) {
  OpenCaptions({Caption(1, 2, "a"), Caption(3, 4, "b"), Caption(10, 12, "c")});
  Click(0);
  Click(1, 4);
  Do("press", {{"control", "addCaptionButton"}});
  EXPECT_EQ(RowTimes(), Times({1, 3, 4, 10}));
  EXPECT_EQ(Selected(), Times({4}));
  Do("mouse", {{"x", 20}, {"y", 75 * 5 + 20}});
  ASSERT_EQ(Selected(), Times({}));
  Do("press", {{"control", "addCaptionButton"}});
  EXPECT_EQ(RowTimes(), Times({1, 3, 4, 10, 12}));
  EXPECT_TRUE(Do("boxes").at("boxes").empty());
}

TEST_F(DriveEditOrder, TypingSendsEachKeyAndCommitsNothing) {
  OpenCaptions({Caption(1, 2, "One")});
  FocusText(1, 3);
  Do("type", {{"text", "s"}});
  Trace();
  Do("type", {{"text", "ab"}});
  const Json calls = Trace();
  EXPECT_EQ(UpdaterCalls(calls), (Names{"ApplyTextChange", "ApplyTextChange"}));
  const Json first = calls[Find(calls, kUpdater + "ApplyTextChange")].at("args");
  EXPECT_EQ(first.at("begin"), Seconds(1));
  EXPECT_EQ(first.at("old_text"), "Ones");
  EXPECT_EQ(first.at("new_text"), "Onesa");
  EXPECT_EQ(first.at("range"), Json::array({5, 5}));
  EXPECT_EQ(first.at("without_focus"), false);
}

TEST_F(DriveEditOrder, AnEnterCountsOnceInTheRangeThatTheStreamIsTold) {
  OpenCaptions({Caption(1, 2, "One")});
  FocusText(1, 3);
  Do("type", {{"key_name", "enter"}});
  Trace();
  Do("type", {{"text", "T"}});
  const Json calls = Trace();
  const Json args = calls[Find(calls, kUpdater + "ApplyTextChange")].at("args");
  EXPECT_EQ(args.at("old_text"), "One\n");
  EXPECT_EQ(args.at("new_text"), "One\nT");
  EXPECT_EQ(args.at("range"), Json::array({5, 5}));
}

TEST_F(DriveEditOrder, AMovePastANeighbourIsOnTheListAndOnTheScreenBeforeTheStreamHears) {
  OpenCaptions({Caption(1, 2, "a"), Caption(5, 6, "b"), Caption(8, 9, "c")});
  Click(2);
  Trace();
  SetTime(8, "in", 2.5);
  const Json calls = Trace();
  EXPECT_EQ(UpdaterCalls(calls), (Names{"CommitChangesUndoable", "UpdateCaptionStartAndDuration"}));
  const int screen = Find(calls, "TabView::UpdateStackedDimensions");
  const int commit = Find(calls, kUpdater + "CommitChangesUndoable");
  const int moved = Find(calls, kUpdater + "UpdateCaptionStartAndDuration");
  ASSERT_GE(screen, 0);
  EXPECT_LT(screen, commit);
  const Json args = calls[moved].at("args");
  EXPECT_EQ(args.at("rows"), Json(Times({1, 2.5, 5})));
  EXPECT_EQ(args.at("selected"), Json(Times({2.5})));
  EXPECT_EQ(args.at("old_begin"), Seconds(8));
  EXPECT_EQ(args.at("new_begin"), Seconds(2.5));
  EXPECT_EQ(args.at("duration"), Seconds(2.5)) << "cut at the next caption";
  EXPECT_EQ(args.at("align_to_frame"), false);
  EXPECT_EQ(CountTold(calls), 0) << "the selection went along and is no other";
  EXPECT_EQ(Selected(), Times({2.5}));
}

TEST_F(DriveEditOrder, ATimeOfTheOnlySelectedRowCommitsOnlyIfItsBeginChanges) {
  OpenCaptions({Caption(1, 2, "a"), Caption(5, 6, "b")});
  Trace();
  SetTime(1, "out", 3);
  EXPECT_EQ(UpdaterCalls(Trace()), Names{"UpdateCaptionStartAndDuration"});
  SetTime(1, "in", 1.4);
  EXPECT_EQ(UpdaterCalls(Trace()), (Names{"CommitChangesUndoable", "UpdateCaptionStartAndDuration"}));
}

TEST_F(DriveEditOrder, AnOutTimeOfAnotherRowSelectsItAndTellsTheHostBeforeTheStream) {
  OpenCaptions({Caption(1, 2, "a"), Caption(5, 6, "b")});
  Trace();
  SetTime(5, "out", 7);
  const Json calls = Trace();
  const int told = Find(calls, "messaging::PostMessageToUIThread");
  const int moved = Find(calls, kUpdater + "UpdateCaptionStartAndDuration");
  ASSERT_GE(told, 0);
  EXPECT_LT(Find(calls, kUpdater + "CommitChangesUndoable"), told);
  EXPECT_LT(told, moved);
  EXPECT_EQ(calls[moved].at("args").at("selected"), Json(Times({5})));
  EXPECT_EQ(Selected(), Times({5}));
}

TEST_F(DriveEditOrder, ARefusedMoveTellsTheStreamNothingAndTheFieldShowsTheOldTime) {
  OpenCaptions({Caption(1, 3, "a"), Caption(5, 6, "b")});
  Trace();
  for (const double begin : {1.0, 2.0}) {
    SetTime(5, "in", begin);
    EXPECT_EQ(UpdaterCalls(Trace()), Names{}) << begin;
    const Json boxes = Do("boxes").at("boxes");
    ASSERT_EQ(boxes.size(), 1U) << begin;
    EXPECT_EQ(boxes[0].at("text"), "The selected caption cannot be moved because another caption already exists in the "
                                   "specified location.");
    EXPECT_EQ(boxes[0].at("title"), "Closed Captioning");
    EXPECT_EQ(Row(Seconds(5)).at("in_value"), Seconds(5));
    EXPECT_EQ(Row(Seconds(5)).at("out_value"), Seconds(6));
  }
  SetTime(5, "in", 3);
  EXPECT_TRUE(Do("boxes").at("boxes").empty()) << "exactly at the end of the one before";
  EXPECT_EQ(RowTimes(), Times({1, 3}));
}

TEST_F(DriveEditOrder, ATypedPassageIsClosedBeforeTheSourceIsLeftAndStationsChangeInOrder) {
  OpenCaptions({Caption(1, 2, "a")});
  const std::string otherClip = Do("add_clip", {{"name", "Other"}, {"frame_rate", {25, 1}}}).at("clip");
  const std::string otherStream =
      Do("add_stream", {{"clip", otherClip}, {"format", "cea608"}, {"captions", {Caption(7, 8, "z")}}}).at("stream");
  FocusText(1, 1);
  Do("type", {{"text", "x"}});
  Do("focus", {{"none", true}});
  const std::size_t steps = Do("history").at("undo").size();
  Trace();
  Do("select", {{"what", "clip"}, {"clip", otherClip}});
  const Json all = Trace();
  std::vector<Json> course;
  for (const Json& call : all) {
    const std::string name = call.at("call");
    const Json& args = call.at("args");
    if (name == kUpdater + "CommitChangesUndoable")
      course.push_back({"commit", args.at("ends_passage"), args.at("rows")});
    else if (name == kUpdater + "UpdateCaptioningStream")
      course.push_back({"updater", args.at("to")});
    else if (name.rfind("messaging::", 0) == 0 && args.contains("listener") &&
             args.at("listener") == "Captivo::CaptionsPane")
      course.push_back({name.substr(11), args.at("station")});
  }
  EXPECT_EQ(course, (std::vector<Json>{{"commit", true, Times({1})},
                                       {"updater", nullptr},
                                       {"RemoveListener", "stream:" + stream},
                                       {"RemoveListener", "clip:" + clip},
                                       {"updater", otherStream},
                                       {"AddListener", "stream:" + otherStream},
                                       {"AddListener", "clip:" + otherClip}}));
  EXPECT_EQ(Do("history").at("undo").size(), steps + 1);
  EXPECT_EQ(RowTimes(), Times({7}));
}

TEST_F(DriveEditOrder, TheHostsWishToCommitIsInPassing) {
  OpenCaptions({Caption(1, 2, "a")});
  FocusText(1, 1);
  Do("type", {{"text", "x"}});
  Trace();
  Do("commit_edits");
  const Json calls = Trace();
  EXPECT_EQ(UpdaterCalls(calls), Names{"CommitChangesUndoable"});
  EXPECT_EQ(calls[Find(calls, kUpdater + "CommitChangesUndoable")].at("args").at("ends_passage"), false);
}

TEST_F(DriveEditOrder, EscapeRevertsOnceAndThenTakesTheFocus) {
  OpenCaptions({Caption(1, 2, "One")});
  FocusText(1, 0);
  Do("type", {{"text", "x"}});
  Trace();
  Do("type", {{"key_name", "escape"}});
  const Json calls = Trace();
  EXPECT_EQ(UpdaterCalls(calls), Names{"RevertChanges"});
  EXPECT_LT(Find(calls, kUpdater + "RevertChanges"), Find(calls, "View::SetFocus"));
  EXPECT_EQ(Panel().at("flags").at("keep_text_focus"), true);
  EXPECT_EQ(Selected(), Times({1}));
}

TEST_F(DriveEditOrder, EscapeWithAModifierOrWithTheFocusElsewhereCancelsNothing) {
  OpenCaptions({Caption(1, 2, "One")});
  FocusText(1, 0);
  Do("type", {{"text", "x"}});
  constexpr int kEscape = 6;
  constexpr int kKeyDown = 2;
  for (const int modifiers : {1, 2, 4, 16})
    EXPECT_EQ(Do("node_key", {{"code", kEscape}, {"modifiers", modifiers}, {"type", kKeyDown}}).at("filtered"), false)
        << modifiers;
  Do("focus", {{"pane", true}});
  EXPECT_EQ(Do("node_key", {{"code", kEscape}, {"type", kKeyDown}}).at("filtered"), false);
  EXPECT_EQ(Stream()[0].at("text"), "xOne");
}

TEST_F(DriveEditOrder, EveryPhaseOfEscapeIsSwallowedAndOnlyTheKeyGoingDownCancels) {
  OpenCaptions({Caption(1, 2, "One")});
  FocusText(1, 0);
  Do("type", {{"text", "x"}});
  constexpr int kEscape = 6;
  for (const int type : {1, 3, 4}) {
    EXPECT_EQ(Do("node_key", {{"code", kEscape}, {"type", type}}).at("filtered"), true) << type;
    EXPECT_EQ(Stream()[0].at("text"), "xOne") << type;
  }
  EXPECT_EQ(Do("node_key", {{"code", kEscape}, {"type", 2}}).at("filtered"), true);
  EXPECT_EQ(Stream()[0].at("text"), "One");
}

TEST_F(DriveEditOrder, TheClipboardCommandsGoToTheTextOfTheOnlySelectedRow) {
  OpenCaptions({Caption(1, 2, "Harbour"), Caption(3, 4, "b")});
  constexpr int kDelete = 57632;
  constexpr int kCopy = 57634;
  constexpr int kCut = 57635;
  constexpr int kPaste = 57637;
  FocusText(1, 0);
  EXPECT_EQ(Do("status", {{"number", kCut}}).at("enabled"), false) << "nothing is marked in the text";
  EXPECT_EQ(Do("status", {{"number", kCopy}}).at("enabled"), false);
  Do("caret", {{"start", 0}, {"end", 3}});
  EXPECT_EQ(Do("status", {{"number", kCut}}).at("enabled"), true);
  EXPECT_EQ(Do("command", {{"number", kCut}}).at("handled"), true);
  EXPECT_EQ(Stream()[0].at("text"), "bour");
  EXPECT_EQ(Do("clipboard").at("text"), "Har");
  EXPECT_EQ(Do("status", {{"number", kPaste}}).at("enabled"), true);
  Do("command", {{"number", kPaste}});
  EXPECT_EQ(Stream()[0].at("text"), "Harbour");
  Do("caret", {{"start", 3}, {"end", 7}});
  EXPECT_EQ(Do("status", {{"number", kDelete}}).at("enabled"), true);
  Do("command", {{"number", kDelete}});
  EXPECT_EQ(Stream()[0].at("text"), "Har");
  EXPECT_EQ(Do("clipboard").at("text"), "Har") << "deleting leaves the clipboard alone";
}

} // namespace Tests
