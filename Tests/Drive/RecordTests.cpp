// The record by the names of controls, what is sent as another part of the host would, and what controls refuse.

#include "DriveProcess.h"

namespace Tests {

namespace {

bool BeginsWith(const std::string& text, const std::string& start) {
  return text.rfind(start, 0) == 0;
}

} // namespace

TEST_F(DriveTest, WhatControlsAreGivenAsThePanelIsMadeIsRecordedByTheirNames) {
  OpenCaptions({Caption(1, 2, "One")});
  const Json calls = Do("trace").at("calls");
  const auto given = [&](const std::string& call, const std::string& control, const std::string& name) {
    Json values = Json::array();
    for (const Json& one : calls) {
      if (one.at("call") == call && one.at("args").value("control", "") == control)
        values.push_back(one.at("args").at(name));
    }
    return values;
  };
  EXPECT_EQ(given("UI_TextButton::SetText", "addCaptionButton", "text"), Json::array({"+"}));
  EXPECT_EQ(given("UI_TextButton::SetText", "deleteCaptionButton", "text"), Json::array({"-"}));
  EXPECT_EQ(given("UI_HotTextNumber::SetMaxValue", "fontSizeControl", "value"), Json::array({144.0}));
  EXPECT_EQ(given("UI_Popup::AddItem", "doubleHeightPopup", "text"), (Json::array({"Normal", "Double", "Mixed"})));
  EXPECT_FALSE(given("ScrollBar::SetScrollParameters", "scrollBar", "max").empty());
  EXPECT_FALSE(given("PictureButton::SetValue", "textColorButton", "value").empty());
}

TEST_F(DriveTest, APopupThatLosesAnItemIsOnTheRecord) {
  const Json small = Json::array({{{"size", 18}}});
  const Json large = Json::array({{{"size", 36}}});
  Json one = Caption(1, 2, "One");
  Json two = Caption(3, 4, "Two");
  one["runs"] = small;
  two["runs"] = large;
  Do("new");
  clip = Do("add_clip", {{"name", "Harbour"}}).at("clip");
  Do("add_stream", {{"clip", clip}, {"format", "teletext"}, {"captions", {one, two}}});
  Do("open_panel");
  Do("select", {{"what", "clip"}, {"clip", clip}});
  const auto changes = [&] { return Calls({"UI_Popup::AddItem", "UI_Popup::RemoveItem"}); };
  Do("command", {{"number", 32020}});
  Do("trace");
  Click(1);
  EXPECT_EQ(changes(), std::vector<std::string>{"UI_Popup::RemoveItem"});
  Do("command", {{"number", 32020}});
  EXPECT_EQ(changes(), std::vector<std::string>{"UI_Popup::AddItem"});
  EXPECT_EQ(Do("control", {{"name", "doubleHeightPopup"}}).at("text"), "Mixed");
}

TEST_F(DriveTest, TheScrollBarIsCalledByANameThatIsReadOut) {
  OpenCaptions({Caption(1, 2, "One")});
  EXPECT_EQ(Do("control", {{"name", "scrollBar"}}).at("accessible_name"), "Scroll");
}

TEST_F(DriveTest, AnAnchorThatAllCaptionsLackIsOneThatTheyShare) {
  Json two = Caption(3, 4, "Two");
  Json three = Caption(5, 6, "Three");
  three["paragraph"] = {{"anchor", 4}};
  OpenCaptions({Caption(1, 2, "One"), two, three});
  const auto anchor = [&] { return Do("view").at("format").at("anchor"); };
  Click(0);
  Click(1, 4);
  EXPECT_EQ(anchor(), (Json{{"value", 9}, {"uniform", true}}));
  Click(2, 4);
  EXPECT_EQ(anchor(), (Json{{"value", 9}, {"uniform", false}}));
  Click(2);
  EXPECT_EQ(anchor(), (Json{{"value", 4}, {"uniform", true}}));
}

TEST_F(DriveTest, AGridCanBeSetToNoCell) {
  Json one = Caption(1, 2, "One");
  one["paragraph"] = {{"anchor", 4}};
  OpenCaptions({one});
  Click(0);
  EXPECT_EQ(Do("control", {{"name", "closedPositionGrid"}}).at("value"), (Json::array({1, 1})));
  Do("set", {{"control", "closedPositionGrid"}, {"value", {-1, -1}}});
  EXPECT_EQ(Stream()[0].at("paragraph").at("anchor"), 9);
  for (const Json& point : {Json::array({3, 0}), Json::array({0, -1}), Json::array({1}), Json("left")})
    EXPECT_TRUE(BeginsWith(Refused("set", {{"control", "closedPositionGrid"}, {"value", point}}), "value"));
  EXPECT_EQ(Stream()[0].at("paragraph").at("anchor"), 9);
}

TEST_F(DriveTest, WhatNoControlTakesIsRefusedByTheNameOfTheField) {
  OpenCaptions({Caption(1, 2, "One")});
  Click(0);
  const auto refuses = [&](const char* control, const Json& value) {
    return BeginsWith(Refused("set", {{"control", control}, {"value", value}, {"force", true}}), "value");
  };
  EXPECT_TRUE(refuses("closedPositionXControl", "nan"));
  EXPECT_TRUE(refuses("closedPositionXControl", "three"));
  EXPECT_TRUE(refuses("doubleHeightPopup", 3));
  EXPECT_TRUE(refuses("doubleHeightPopup", -1));
  EXPECT_TRUE(refuses("doubleHeightPopup", "Triple"));
  EXPECT_TRUE(BeginsWith(Refused("picker"), "color: "));
  EXPECT_TRUE(BeginsWith(Refused("picker", {{"swatch", "yes"}}), "swatch: "));
}

TEST_F(DriveTest, EntriesOfAMessageMayBeBeginTimesOfTheStreamOnWhoseStationItIsSent) {
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two"), Caption(5, 6, "Three")});
  const auto remove = [&](const Json& fields) {
    Do("send", {{"message", "BE::CaptionsRemovedMessage"}, {"station", "stream:" + stream}, {"fields", fields}});
  };
  remove({{"captions", Json::array({Seconds(1)})}});
  EXPECT_EQ(RowTimes(), Times({3, 5}));
  remove({{"captions", Json::array({Json::array({stream, Seconds(3)})})}});
  EXPECT_EQ(RowTimes(), Times({5}));
  remove({{"captions", Json::array({{{"stream", nullptr}, {"begin", Seconds(5)}}})}});
  EXPECT_EQ(RowTimes(), Times({5})) << "of no stream";
  remove({{"captions", Json::array()}});
  remove(Json::object());
  EXPECT_EQ(RowTimes(), Times({5}));
}

TEST_F(DriveTest, ALineThatIsTooDeepToBeCopiedIsRefused) {
  const auto nested = [](int depth) {
    return "{\"do\": \"nonsense\", \"id\": " + std::string(static_cast<std::size_t>(depth), '[') +
           std::string(static_cast<std::size_t>(depth), ']') + "}";
  };
  EXPECT_EQ(drive->AskLine(nested(400)).at("error"), "unknown request");
  for (const int depth : {501, 5000, 200000})
    EXPECT_NE(drive->AskLine(nested(depth)).at("error"), "unknown request") << depth;
  EXPECT_EQ(drive->Ask({{"do", "nonsense"}, {"id", std::string(2000, '[')}}).at("error"), "unknown request");
  EXPECT_EQ(drive->Ask({{"do", "nonsense"}, {"id", std::string(2000, '"') + '['}}).at("error"), "unknown request");
  Do("new");
}

TEST_F(DriveTest, AVeryLongLineIsAnsweredLikeAnyOther) {
  EXPECT_EQ(drive->Ask({{"do", "feature"}, {"name", std::string(5000000, 'x')}, {"on", true}}).at("ok"), true);
  EXPECT_TRUE(BeginsWith(Refused("stream", {{"stream", std::string(100000, 'x')}}), "there is no open project"));
}

} // namespace Tests
