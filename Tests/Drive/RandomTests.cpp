// Hundreds of random operations, each compared with a small model of what has to come of it.

#include "CaptionsModel.h"
#include "DriveProcess.h"

#include <random>

namespace Tests {

namespace {

constexpr int kOperations = 400;
constexpr int kToggle = 4;
constexpr int kExtend = 2;

} // namespace

class RandomOperations : public DriveTest, public ::testing::WithParamInterface<unsigned> {
 protected:
  int Draw(int least, int most) { return std::uniform_int_distribution<int>(least, most)(mRandom); }
  bool Chance(int percent) { return Draw(1, 100) <= percent; }
  // A frame of the first forty seconds.
  Time DrawTime() { return Draw(0, 1000) * kFrame; }
  std::string DrawText() {
    static const char* const kTexts[] = {"a", "Harbour",          "two\nlines",
                                         "",  "\xc3\xa4\xc3\xb6", "long text that goes on"};
    return kTexts[Draw(0, 5)];
  }
  int DrawModifiers() { return Chance(60) ? 0 : Chance(50) ? kToggle : kExtend; }

  // A row that a person could reach now.
  std::optional<Time> DrawRow() {
    std::vector<Time> inView;
    for (const Json& row : mPanel.at("rows")) {
      if (row.at("realized").get<bool>())
        inView.push_back(row.at("begin"));
    }
    return inView.empty() ? std::nullopt : std::optional(inView[Draw(0, static_cast<int>(inView.size()) - 1)]);
  }
  int IndexOf(Time time) const {
    return static_cast<int>(std::distance(mModel.GetRows().begin(), mModel.GetRows().find(time)));
  }

  void Operate();
  void Retime(Time row);
  void Retype(Time row);
  void HostEdit();
  void Compare();

  std::mt19937 mRandom{GetParam()};
  CaptionsModel mModel{kFrame};
  Json mPanel;
  std::string mDone;
  int mCompared = 0;
};

void RandomOperations::Retime(Time row) {
  const bool outEnd = Chance(50);
  const bool typed = Chance(50);
  const Time now = outEnd ? mModel.GetRows().at(row).end : row;
  Time value = Chance(50) ? DrawTime() : std::max<Time>(0, now + Draw(-60, 60) * kFrame);
  if (value == now)
    value += kFrame;
  mDone = "retime " + std::to_string(row) + (outEnd ? " out " : " in ") + std::to_string(value) +
          (typed ? " typed" : " scrub");
  Do("row_time", {{"row", row}, {"end", outEnd ? "out" : "in"}, {"value", value}, {"how", typed ? "typed" : "scrub"}});
  const bool moved = mModel.Retime(row, outEnd, value, typed);
  EXPECT_EQ(Do("boxes").at("boxes").size(), moved ? 0U : 1U);
}

void RandomOperations::Retype(Time row) {
  if (Chance(30)) {
    mDone = "type in " + std::to_string(row);
    Do("focus", {{"row", row}, {"part", "text"}});
    Do("caret", {{"start", 0}, {"end", 0}});
    Do("type", {{"text", "k"}});
    mModel.Enter(row);
    mModel.Retype(row, "k" + mModel.GetRows().at(row).text);
    Do("focus", {{"none", true}});
    return;
  }
  const std::string text = DrawText();
  mDone = "retype " + std::to_string(row) + " '" + text + "'";
  Do("row_text", {{"row", row}, {"phase", 0}});
  Do("row_text", {{"row", row}, {"value", text}, {"phase", 1}});
  Do("row_text", {{"row", row}, {"phase", 2}});
  mModel.Enter(row);
  if (text != mModel.GetRows().at(row).text)
    mModel.Retype(row, text);
}

void RandomOperations::HostEdit() {
  const auto captions = mModel.GetStream();
  const int kind = captions.empty() ? 0 : Draw(0, 3);
  if (kind == 0) {
    const Time begin = Chance(20) && !captions.empty() ? captions.front().begin : DrawTime();
    const Time end = begin + Draw(1, 100) * kFrame;
    mDone = "host adds at " + std::to_string(begin);
    Do("edit_stream", {{"stream", stream}, {"add", Json::array({{{"begin", begin}, {"end", end}, {"text", "host"}}})}});
    mModel.HostAdd({{0, begin, end, "host"}});
    return;
  }
  const Time begin = captions[Draw(0, static_cast<int>(captions.size()) - 1)].begin;
  if (kind == 1) {
    mDone = "host removes " + std::to_string(begin);
    Do("edit_stream", {{"stream", stream}, {"remove", Json::array({begin})}});
    mModel.HostRemove(begin);
  } else if (kind == 2) {
    const Time end = begin + Draw(1, 100) * kFrame;
    mDone = "host changes " + std::to_string(begin);
    Do("edit_stream",
       {{"stream", stream}, {"change", Json::array({{{"begin", begin}, {"end", end}, {"text", "changed"}}})}});
    mModel.HostChange(begin, end, "changed");
  } else {
    const Time to = begin + Draw(0, 200) * kFrame;
    const Time offset = Draw(-50, 50) * kFrame;
    mDone = "host moves " + std::to_string(begin) + " to " + std::to_string(to) + " by " + std::to_string(offset);
    Do("edit_stream", {{"stream", stream}, {"move", {{"from", begin}, {"to", to}, {"offset", offset}}}});
    mModel.HostMove(begin, to, offset);
  }
}

void RandomOperations::Operate() {
  const int kind = Draw(1, 100);
  const std::optional<Time> row = DrawRow();
  const int modifiers = DrawModifiers();
  const bool toggle = modifiers == kToggle;
  const bool extend = modifiers == kExtend;
  if (kind <= 15 && row) {
    mDone = "click " + std::to_string(*row) + " with " + std::to_string(modifiers);
    const int inView = IndexOf(*row) - mPanel.at("first_visible").get<int>();
    Do("mouse", {{"x", 5}, {"y", inView * 75 + 30}, {"modifiers", modifiers}});
    mModel.Click(*row, toggle, extend);
  } else if (kind <= 25) {
    const int move = Chance(50) ? 1 : -1;
    mDone = "arrow " + std::to_string(move) + " with " + std::to_string(modifiers);
    Do("key", {{"code", move > 0 ? -40 : -38}, {"modifiers", modifiers}});
    mModel.MoveKey(move, toggle, extend);
  } else if (kind <= 29) {
    const bool last = Chance(50);
    mDone = std::string(last ? "end" : "home") + " with " + std::to_string(modifiers);
    Do("key", {{"code", last ? -35 : -36}, {"modifiers", modifiers}});
    mModel.EndKey(last, toggle, extend);
  } else if (kind <= 32) {
    const int page = (mPanel.at("pane_bounds")[3].get<int>() + 74) / 75;
    mDone = "page down with " + std::to_string(modifiers);
    Do("key", {{"code", -34}, {"modifiers", modifiers}});
    mModel.MoveKey(page, toggle, extend);
  } else if (kind <= 46) {
    mDone = "add";
    Do("press", {{"control", "addCaptionButton"}});
    const bool added = mModel.Add();
    EXPECT_EQ(Do("boxes").at("boxes").size(), added ? 0U : 1U);
  } else if (kind <= 53) {
    // Without a selection the button is disabled.
    const bool byKey = Chance(50) || mModel.GetSelected().empty();
    mDone = byKey ? "delete by key" : "delete by button";
    if (byKey)
      Do("key", {{"code", -46}});
    else
      Do("press", {{"control", "deleteCaptionButton"}});
    mModel.Delete(byKey);
  } else if (kind <= 68 && row) {
    Retime(*row);
  } else if (kind <= 78 && row) {
    Retype(*row);
  } else if (kind <= 86) {
    if (Do("history").at("undo").size() <= 1 && !Chance(20))
      return;
    mDone = "undo";
    if (mModel.Undo())
      Do("undo");
    else
      Do("commit_edits");
  } else if (kind <= 91) {
    mDone = "redo";
    const bool done = mModel.Redo();
    EXPECT_EQ(Do("redo").at("done"), done);
  } else if (kind <= 93) {
    mDone = "tick";
    Do("tick", {{"ms", Draw(1, 300)}});
  } else {
    HostEdit();
  }
}

void RandomOperations::Compare() {
  mPanel = Panel();
  Json rows = Json::array();
  for (const Json& row : mPanel.at("rows"))
    rows.push_back({row.at("begin"), row.at("end"), row.at("text")});
  Json wanted = Json::array();
  for (const auto& [begin, row] : mModel.GetRows())
    wanted.push_back({begin, row.end, row.text});
  ASSERT_EQ(rows, wanted);
  ASSERT_EQ(mPanel.at("selected"), Json(mModel.GetSelected()));
  ASSERT_EQ(mPanel.at("anchor"), mModel.GetAnchor() ? Json(*mModel.GetAnchor()) : Json());
  Json captions = Json::array();
  for (const Json& caption : Stream())
    captions.push_back({caption.at("begin"), caption.at("end"), caption.at("text")});
  Json wantedCaptions = Json::array();
  for (const ModelCaption& caption : mModel.GetStream())
    wantedCaptions.push_back({caption.begin, caption.end, caption.text});
  ASSERT_EQ(captions, wantedCaptions);
  // What a row in view shows is what it holds.
  for (const Json& row : mPanel.at("rows")) {
    if (!row.at("realized").get<bool>())
      continue;
    ASSERT_EQ(row.at("in_value"), row.at("begin"));
    ASSERT_EQ(row.at("out_value"), row.at("end"));
    ASSERT_EQ(row.at("time_edit_pending"), false);
  }
}

TEST_P(RandomOperations, LeaveRowsSelectionAnchorAndStreamAsTheModelHasThem) {
  const std::vector<ModelCaption> captions = {{0, 1 * kSecond, 2 * kSecond, "One"},
                                              {0, 3 * kSecond, 5 * kSecond, "Two"},
                                              {0, 5 * kSecond, 6 * kSecond, "Three"},
                                              {0, 9 * kSecond, 11 * kSecond, "Four"}};
  std::vector<Json> list;
  for (const ModelCaption& caption : captions)
    list.push_back({{"begin", caption.begin}, {"end", caption.end}, {"text", caption.text}});
  OpenCaptions(list);
  mModel.Open(captions);
  Compare();
  for (int i = 0; i < kOperations && !HasFatalFailure() && !HasNonfatalFailure(); ++i) {
    Operate();
    if (mModel.MeansOtherCaptions())
      break;
    ++mCompared;
    SCOPED_TRACE("operation " + std::to_string(i) + ": " + mDone);
    Compare();
  }
  EXPECT_GE(mCompared, kOperations / 4);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomOperations, ::testing::Values(1U, 2U, 3U, 4U, 5U, 6U));

} // namespace Tests
