// Formats of parts of a text: behind CR LF pairs, and through typing and music notes.

#include "DriveProcess.h"
#include "zebcore/UString.h"

namespace Tests {

class TextFormats : public DriveTest {
 protected:
  // The pieces of the text that are underlined.
  std::vector<std::string> Underlined() {
    const Json caption = Stream().at(0);
    const std::u16string text = zebcore::FromUTF8(caption.at("text").get<std::string>());
    std::vector<std::string> pieces;
    for (const Json& run : caption.at("runs")) {
      const std::size_t start = run.at("start");
      if (run.at("underline"))
        pieces.push_back(zebcore::ToUTF8(text.substr(start, run.at("end").get<std::size_t>() - start)));
    }
    return pieces;
  }
  void SelectText(int start, int end) {
    Do("focus", {{"row", Seconds(1)}, {"part", "text"}});
    Do("caret", {{"start", start}, {"end", end}});
    Do("tick", {{"ms", 100}});
  }
};

TEST_F(TextFormats, AFormatReachesTheCharactersThatAreSelectedBehindAPair) {
  OpenCaptions({Caption(1, 2, "Hello\r\nwide\r\nworld")});
  SelectText(13, 16);
  EXPECT_EQ(Panel().at("caret"), Json({11, 14}));
  Do("command", {{"number", 32011}});
  EXPECT_EQ(Underlined(), std::vector<std::string>{"wor"});
  EXPECT_EQ(Do("control", {{"name", "underlineButton"}}).at("on"), true);
}

TEST_F(TextFormats, TypingInATextWithPairsKeepsTheFormatsOfAllItsLines) {
  OpenCaptions({Caption(1, 2, "Hello\r\nwide\r\nworld")});
  SelectText(13, 16);
  Do("command", {{"number", 32011}});
  SelectText(1, 1);
  Do("type", {{"text", "X"}});
  EXPECT_EQ(Stream().at(0).at("text"), "HXello\nwide\nworld");
  EXPECT_EQ(Underlined(), std::vector<std::string>{"wor"});
}

TEST_F(TextFormats, AMusicNoteInATextWhoseLinesWereTypedKeepsTheFormatsOfAllItsLines) {
  OpenCaptions({Caption(1, 2, "ab")});
  SelectText(2, 2);
  for (const char* line : {"cd", "ef"}) {
    Do("type", {{"key_name", "enter"}});
    Do("type", {{"text", line}});
  }
  SelectText(4, 6); // the second line
  Do("command", {{"number", 32011}});
  ASSERT_EQ(Underlined(), std::vector<std::string>{"cd"});
  SelectText(0, 0);
  Do("command", {{"number", 32012}});
  EXPECT_EQ(Underlined(), std::vector<std::string>{"cd"});
}

TEST_F(TextFormats, AMusicNoteBehindANoteTakesTheFormatOfTheOneInFrontOfIt) {
  OpenCaptions({Caption(1, 2, "a\u266a")});
  SelectText(1, 2);
  Do("command", {{"number", 32011}});
  SelectText(2, 2);
  Do("command", {{"number", 32012}});
  EXPECT_EQ(Underlined(), std::vector<std::string>{"\u266a\u266a"});
}

TEST_F(TextFormats, AMusicNoteBehindANoteTakesTheFormatThatWasChosenForIt) {
  OpenCaptions({Caption(1, 2, "\u266a")});
  SelectText(1, 1);
  Do("command", {{"number", 32011}});
  Do("command", {{"number", 32012}});
  const Json runs = Stream().at(0).at("runs");
  ASSERT_EQ(runs.size(), 2U);
  EXPECT_EQ(runs[0].at("underline"), false);
  EXPECT_EQ(runs[1].at("underline"), true);
}

TEST_F(TextFormats, AMusicNoteOverASelectionLeavesTheNoteBehindItAsItWas) {
  OpenCaptions({Caption(1, 2, "\u266a\u266aa\u266a\u266a")});
  SelectText(4, 5);
  Do("command", {{"number", 32011}});
  SelectText(0, 4);
  Do("command", {{"number", 32012}});
  EXPECT_EQ(Stream().at(0).at("text"), "\u266a\u266a");
  const Json runs = Stream().at(0).at("runs");
  ASSERT_EQ(runs.size(), 2U);
  EXPECT_EQ(runs[0].at("underline"), false);
  EXPECT_EQ(runs[1].at("underline"), true);
}

TEST_F(TextFormats, ASizeThatIsNoNumberIsRefusedByItsName) {
  OpenCaptions({Caption(1, 2, "One")});
  for (const char* name : {"size", "edge_width"}) {
    for (const Json& value : {Json("nan"), Json("inf"), Json("-inf"), Json(1e39)}) {
      Json change = Caption(1, 2, "One");
      change["runs"] = {{{"start", 0}, {"end", 3}, {name, value}}};
      const std::string error = Refused("edit_stream", {{"stream", stream}, {"change", {change}}});
      EXPECT_EQ(error, std::string("change[0].runs[0].") + name + ": must be a number that is finite") << value;
    }
  }
}

} // namespace Tests
