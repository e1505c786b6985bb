// Captions with times that no captioner would give them, and streams that vanish while they are worked on.

#include "DriveProcess.h"

namespace Tests {

namespace {

constexpr int kDelete = -46;

class DriveOddTimes : public DriveTest {
 protected:
  void Add() { Do("press", {{"control", "addCaptionButton"}}); }
  // Begins and ends of what the stream holds.
  std::vector<std::int64_t> StreamTimes() {
    std::vector<std::int64_t> times;
    for (const Json& caption : Stream()) {
      times.push_back(caption.at("begin"));
      times.push_back(caption.at("end"));
    }
    return times;
  }
  void SetTime(double row, const char* end, double value) {
    Do("row_time", {{"row", Seconds(row)}, {"end", end}, {"value", Seconds(value)}, {"how", "report"}});
  }
};

} // namespace

TEST_F(DriveOddTimes, ANewCaptionBehindAnOverlapIsNotRefusedAndEndsBeforeItBegins) {
  OpenCaptions({Caption(1, 6, "long"), Caption(4, 5, "inside")});
  Add();
  EXPECT_TRUE(Do("boxes").at("boxes").empty());
  EXPECT_EQ(RowTimes(), Times({1, 4, 6}));
  EXPECT_EQ(Row(Seconds(6)).at("end"), Seconds(4));
  EXPECT_EQ(Selected(), Times({6}));
  Do("undo");
  EXPECT_EQ(StreamTimes(), Times({1, 6, 4, 5}));
}

TEST_F(DriveOddTimes, ANewCaptionBehindAReversedOneBeginsAtItsEnd) {
  OpenCaptions({Caption(5, 3, "reversed"), Caption(9, 10, "b")});
  Add();
  EXPECT_EQ(RowTimes(), Times({3, 5, 9}));
  EXPECT_EQ(Row(Seconds(3)).at("end"), Seconds(4));
}

TEST_F(DriveOddTimes, ANewCaptionBehindOneBelowZeroBeginsAtItsEnd) {
  OpenCaptions({Caption(-5, -4, "early"), Caption(-3.5, 1, "b")});
  Add();
  EXPECT_EQ(RowTimes(), Times({-5, -4, -3.5}));
  EXPECT_EQ(Row(Seconds(-4)).at("end"), Seconds(-3.5)) << "cut to the gap";
  Add();
  EXPECT_EQ(Do("boxes").at("boxes").size(), 1U);
}

TEST_F(DriveOddTimes, ANewCaptionBehindAnEmptyOneTakesItsRowAndUndoBringsItBack) {
  OpenCaptions({Caption(1, 1, "empty"), Caption(4, 5, "b")});
  Add();
  EXPECT_EQ(RowTimes(), Times({1, 4}));
  EXPECT_EQ(Row(Seconds(1)).at("end"), Seconds(2));
  EXPECT_EQ(Stream().size(), 3U) << "the stream holds both";
  Do("undo");
  EXPECT_EQ(RowTimes(), Times({1, 4}));
  EXPECT_EQ(Row(Seconds(1)).at("text"), "empty");
}

TEST_F(DriveOddTimes, OfTwoCaptionsWithOneBeginTheLaterIsEditedAndDeletedAndTheOtherComesBack) {
  OpenCaptions({Caption(1, 2, "a"), Caption(4, 9, "older"), Caption(4, 6, "newer")});
  EXPECT_EQ(RowTimes(), Times({1, 4}));
  EXPECT_EQ(Row(Seconds(4)).at("text"), "newer");
  Do("focus", {{"row", Seconds(4)}, {"part", "text"}});
  Do("caret", {{"start", 0}});
  Do("type", {{"text", "x"}});
  EXPECT_EQ(Stream()[1].at("text"), "older");
  EXPECT_EQ(Stream()[2].at("text"), "xnewer");
  SetTime(4, "out", 7);
  EXPECT_EQ(Stream()[1].at("end"), Seconds(9));
  EXPECT_EQ(Stream()[2].at("end"), Seconds(7));
  Click(1);
  Do("focus", {{"pane", true}});
  Do("key", {{"code", kDelete}});
  EXPECT_EQ(Stream().size(), 2U);
  EXPECT_EQ(RowTimes(), Times({1, 4}));
  EXPECT_EQ(Row(Seconds(4)).at("text"), "older");
}

TEST_F(DriveOddTimes, AReversedCaptionIsInNobodysWay) {
  OpenCaptions({Caption(5, 3, "reversed"), Caption(8, 9, "b")});
  SetTime(8, "in", 6);
  EXPECT_TRUE(Do("boxes").at("boxes").empty());
  EXPECT_EQ(RowTimes(), Times({5, 6}));
  SetTime(6, "in", 5);
  EXPECT_TRUE(Do("boxes").at("boxes").empty()) << "it has ended where it begins";
  EXPECT_EQ(Stream().size(), 2U);
}

TEST_F(DriveOddTimes, ACaptionThatOverlapsTheNextOneMayBeStretchedFurther) {
  OpenCaptions({Caption(1, 4, "a"), Caption(3, 5, "b")});
  SetTime(1, "out", 4.4);
  EXPECT_TRUE(Do("boxes").at("boxes").empty());
  EXPECT_EQ(StreamTimes(), Times({1, 4.4, 3, 5}));
}

TEST_F(DriveOddTimes, ACaptionThatOverlapsTheOneBeforeCanBeMovedOutButNotWithin) {
  OpenCaptions({Caption(1, 4, "a"), Caption(3, 5, "b")});
  SetTime(3, "in", 3.4);
  EXPECT_EQ(Do("boxes").at("boxes").size(), 0U) << "the last one that begins earlier is itself";
  EXPECT_EQ(RowTimes(), Times({1, 3.4}));
  SetTime(3.4, "in", 2);
  EXPECT_EQ(Do("boxes").at("boxes").size(), 1U);
  EXPECT_EQ(RowTimes(), Times({1, 3.4}));
  SetTime(3.4, "in", 4);
  EXPECT_EQ(RowTimes(), Times({1, 4}));
}

TEST_F(DriveOddTimes, ACaptionBelowZeroIsMovedLikeAnyOther) {
  OpenCaptions({Caption(-3, -2, "a"), Caption(1, 2, "b")});
  SetTime(-3, "in", 0);
  EXPECT_EQ(StreamTimes(), Times({0, 0.04, 1, 2})) << "past its end, which makes way";
}

TEST_F(DriveOddTimes, AllCaptionsOfAnyTimesAreDeletedAndComeBack) {
  OpenCaptions(
      {Caption(-3, -1, "below zero"), Caption(1, 1, "empty"), Caption(5, 3, "reversed"), Caption(4, 9, "over")});
  const Json before = Stream();
  for (const int key : {-36, -35})
    Do("key", {{"code", key}, {"modifiers", key == -35 ? 2 : 0}});
  ASSERT_EQ(Selected().size(), 4U);
  Do("key", {{"code", kDelete}});
  EXPECT_TRUE(Stream().empty());
  EXPECT_EQ(RowTimes(), Times({}));
  Do("undo");
  EXPECT_EQ(Stream(), before);
  EXPECT_EQ(RowTimes(), Times({-3, 1, 4, 5}));
}

TEST_F(DriveOddTimes, AStreamThatVanishesUnderTheCaretTakesItsRowsAlongAndComesBackWithWhatWasTyped) {
  OpenCaptions({Caption(1, 2, "a"), Caption(4, 5, "b")});
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("type", {{"text", "x"}});
  Do("remove_stream", {{"stream", stream}});
  EXPECT_EQ(RowTimes(), Times({}));
  EXPECT_EQ(Panel().at("unavailable"), true);
  EXPECT_EQ(Do("type", {{"text", "y"}}).at("used"), false);
  Do("type", {{"key_name", "escape"}});
  for (const int code : {kDelete, 8, -40, -36, -35})
    Do("key", {{"code", code}});
  Do("tick", {{"ms", 1000}});
  Do("undo");
  EXPECT_EQ(RowTimes(), Times({1, 4}));
  EXPECT_EQ(Stream()[0].at("text"), "xa");
  Do("redo");
  EXPECT_EQ(RowTimes(), Times({}));
}

TEST_F(DriveOddTimes, EditsOfAStreamThatIsGoneDoNothing) {
  OpenCaptions({Caption(1, 2, "a")});
  Do("remove_stream", {{"stream", stream}});
  const std::size_t steps = Do("history").at("undo").size();
  for (const char* control : {"addCaptionButton", "deleteCaptionButton"})
    Refused("press", {{"control", control}});
  for (const int number : {57632, 57634, 57635, 57637})
    EXPECT_EQ(Do("status", {{"number", number}}).at("enabled"), false) << number;
  Do("commit_edits");
  Do("select_captions", {{"times", Times({1})}, {"format", 0x36434331}});
  EXPECT_EQ(RowTimes(), Times({}));
  EXPECT_EQ(Do("history").at("undo").size(), steps);
}

TEST_F(DriveOddTimes, ACaptionThatVanishesUnderTheCaretLeavesTheOthersToBeEdited) {
  OpenCaptions({Caption(1, 2, "a"), Caption(4, 5, "b")});
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("type", {{"text", "x"}});
  Do("edit_stream", {{"stream", stream}, {"remove", Times({1})}});
  EXPECT_EQ(RowTimes(), Times({4}));
  EXPECT_EQ(Selected(), Times({4}));
  EXPECT_EQ(Panel().at("focus"), nullptr);
  Do("focus", {{"row", Seconds(4)}, {"part", "text"}});
  Do("type", {{"text", "y"}});
  EXPECT_EQ(Stream()[0].at("text"), "yb");
}

} // namespace Tests
