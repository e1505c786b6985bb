// Which part of a text a format is for when others than the user change the selection, and controls used by force.

#include "DriveProcess.h"

namespace Tests {

class CaretRange : public DriveTest {
 protected:
  void SetUp() override {
    DriveTest::SetUp();
    OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two")});
  }
  void SelectFromTheHost(std::initializer_list<double> seconds) {
    Do("select_captions", {{"times", Times(seconds)}, {"format", 0}});
  }
  std::vector<bool> Italic(int caption) {
    std::vector<bool> runs;
    const Json captions = Stream();
    for (const Json& run : captions.at(caption).at("runs"))
      runs.push_back(run.at("italic"));
    return runs;
  }
};

TEST_F(CaretRange, OfACaptionThatTheHostSelectsIsAllOfItsTextThoughACaretStoodInAnother) {
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("caret", {{"start", 1}, {"end", 2}});
  Do("tick", {{"ms", 100}});
  ASSERT_EQ(Panel().at("caret"), Json({1, 2}));
  SelectFromTheHost({3});
  EXPECT_EQ(Panel().at("caret"), Json({0, -1}));
  Do("command", {{"number", 32010}});
  EXPECT_EQ(Italic(1), std::vector<bool>{true});
  EXPECT_EQ(Italic(0), std::vector<bool>{false});
}

TEST_F(CaretRange, OfACaptionThatTheHostSelectsIsAllOfItsTextThoughNoneWasSelectedBefore) {
  Do("mouse", {{"x", 20}, {"y", 300}});
  Do("command", {{"number", 32013}});
  ASSERT_EQ(Panel().at("caret"), Json({0, 0}));
  SelectFromTheHost({3});
  Do("command", {{"number", 32010}});
  EXPECT_EQ(Italic(1), std::vector<bool>{true});
}

TEST_F(CaretRange, StaysWhenTheHostSelectsTheCaptionThatIsSelectedAlready) {
  Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
  Do("caret", {{"start", 1}, {"end", 2}});
  Do("tick", {{"ms", 100}});
  Do("focus", {{"control", "filterBox"}});
  SelectFromTheHost({1});
  EXPECT_EQ(Panel().at("caret"), Json({1, 2}));
}

TEST_F(CaretRange, AControlThatWasForcedFollowsTheSelectionAgain) {
  Do("mouse", {{"x", 20}, {"y", 300}});
  ASSERT_TRUE(Selected().empty());
  ASSERT_EQ(Do("control", {{"name", "captionTypePopup"}}).at("enabled"), false);
  Do("set", {{"control", "captionTypePopup"}, {"value", 1}, {"force", true}});
  EXPECT_EQ(Do("control", {{"name", "captionTypePopup"}}).at("enabled"), false);
  Click(0);
  EXPECT_EQ(Do("control", {{"name", "captionTypePopup"}}).at("enabled"), true);
}

} // namespace Tests
