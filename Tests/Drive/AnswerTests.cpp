// What single answers say, field by field.

#include "DriveProcess.h"

namespace Tests {

TEST_F(DriveTest, AFileThatIsNotThereIsRefusedByTheNameOfItsField) {
  const std::string nowhere = folder / "nowhere.srt";
  Do("new");
  clip = Do("add_clip", {{"name", "Harbour"}}).at("clip");
  EXPECT_EQ(Refused("import", {{"clip", clip}, {"path", nowhere}}).rfind("path: ", 0), 0U);
  EXPECT_EQ(Refused("open", {{"path", nowhere}}).rfind("path: ", 0), 0U);
  EXPECT_EQ(Refused("add_clip", {{"path", nowhere}}).rfind("path: ", 0), 0U);
}

TEST_F(DriveTest, SettingsOfASequenceAreSaidOnceHoweverManyChange) {
  OpenCaptions({Caption(1, 2, "One")});
  const Json items = Json::array({{{"clip", clip}, {"start", 0}, {"media", "both"}}});
  const std::string sequence =
      Do("add_sequence", {{"name", "Film"}, {"frame_rate", {25, 1}}, {"items", items}}).at("sequence");
  Do("trace");
  Do("sequence_settings",
     {{"sequence", sequence}, {"frame_rate", {30, 1}}, {"video_display", "frames"}, {"audio_display", "samples"}});
  int said = 0;
  const Json trace = Do("trace", {{"only", {"messaging::BroadcastMessage"}}});
  for (const Json& call : trace.at("calls"))
    said += call.at("args").at("message") == "MZ::SequenceSettingsChangedMessage";
  EXPECT_EQ(said, 1);
}

TEST_F(DriveTest, ALongJobIsOnOrOffHoweverOftenThatIsSaid) {
  OpenCaptions({Caption(1, 2, "One")});
  const auto say = [&](bool on) { return Do("busy", {{"stream", stream}, {"on", on}}).at("busy"); };
  EXPECT_EQ(say(false), false);
  EXPECT_EQ(say(true), true);
  EXPECT_EQ(say(true), true);
  EXPECT_EQ(say(false), false);
}

TEST_F(DriveTest, FontsAnswerTheListThatIsInForce) {
  const Json face = {{"style", "Regular"},      {"full_name", "Foo"}, {"bold", false},
                     {"bold_selectable", true}, {"italic", false},    {"italic_selectable", false}};
  const Json families = Json::array({{{"name", "Foo"}, {"faces", Json::array({face})}}});
  EXPECT_EQ(Do("fonts", {{"families", families}}).at("families"), families);
  const Json again = Do("fonts");
  EXPECT_EQ(again.at("families"), families);
  EXPECT_EQ(again.at("styles").at("bold_italic"), "Bold Italic");
  EXPECT_TRUE(Do("fonts", {{"families", Json::array()}}).at("families").empty()) << "a machine without fonts";
  EXPECT_FALSE(Do("fonts", {{"families", nullptr}}).at("families").empty()) << "the machine's";
}

TEST_F(DriveTest, AFormatKeepsWhatItsCaptionsCanDifferIn) {
  const Json keeps = Do("facts", {{"stream_format", "cea608"}}).at("keeps");
  for (const char* kept : {"caption_type", "italic", "underline", "text_color", "background_color", "x", "y"})
    EXPECT_EQ(keeps.at(kept), true) << kept;
  for (const char* lost : {"bold", "family", "size", "edge_color", "edge_width", "line_spacing"})
    EXPECT_EQ(keeps.at(lost), false) << lost;
  EXPECT_EQ(Do("facts", {{"stream_format", "teletext"}}).at("keeps").at("size"), true) << "double height";
  EXPECT_EQ(Do("facts", {{"stream_format", "cea708"}}).at("keeps").at("edge_color"), true);
  const Json open = Do("facts", {{"stream_format", "open"}}).at("keeps");
  for (const auto& [name, kept] : open.items())
    EXPECT_EQ(kept, name != "caption_type") << name;
}

TEST_F(DriveTest, EveryColourOfTheRecordIsFourNumbersFromZeroToOne) {
  OpenCaptions({Caption(1, 2, "One")});
  int colours = 0;
  Json calls = Do("paint").at("calls");
  const Json trace = Do("trace");
  for (const Json& call : trace.at("calls"))
    calls.push_back(call);
  for (const Json& call : calls) {
    const Json color = call.at("args").value("color", Json());
    if (color.is_null())
      continue;
    ++colours;
    ASSERT_EQ(color.size(), 4U) << call;
    for (const Json& part : color)
      EXPECT_TRUE(part >= 0.0 && part <= 1.0) << call;
  }
  EXPECT_GT(colours, 5);
}

TEST_F(DriveTest, TheLimitsThatThePanelGivesANumberAreOnTheRecord) {
  OpenCaptions({Caption(1, 2, "One")});
  const Json trace = Do("trace", {{"only", {"UI_HotTextNumber::SetMaxValue"}}});
  int given = 0;
  for (const Json& call : trace.at("calls"))
    given += call.at("args").at("value") == Do("control", {{"name", "closedPositionXControl"}}).at("max");
  EXPECT_GE(given, 1);
}

TEST_F(DriveTest, AButtonOfTheBarCanHaveTheFocusAndSaysSo) {
  OpenCaptions({Caption(1, 2, "One")});
  const Json italic = {{"in", "control"}, {"name", "italicButton"}};
  EXPECT_EQ(Do("focus", {{"control", "italicButton"}}).at("focus"), italic);
  EXPECT_EQ(Panel().at("focus"), italic);
  EXPECT_EQ(Do("control", {{"name", "italicButton"}}).at("focus"), true);
  EXPECT_EQ(Do("control", {{"name", "scrollBar"}}).at("focus"), false);
  EXPECT_EQ(Do("focus", {{"none", true}}).at("focus"), nullptr);
}

TEST_F(DriveTest, TheRegionsAreaIsToldWithWhetherItIsTheSame) {
  OpenCaptions({Caption(1, 2, "One")});
  const Json area = Do("view").at("format").at("region_area");
  EXPECT_EQ(area, (Json{{"value", nullptr}, {"uniform", true}}));
}

} // namespace Tests
