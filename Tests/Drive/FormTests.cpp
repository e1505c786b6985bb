// How requests are answered, good ones and bad ones.

#include <cstdlib>
#include <fstream>
#include <iterator>

#include <sys/wait.h>

#include "DriveProcess.h"

namespace Tests {

TEST_F(DriveTest, EachRequestIsAnsweredInOrderWithItsID) {
  for (int i = 0; i < 20; ++i) {
    const Json answer = drive->Ask({{"do", "feature"}, {"name", "Test"}, {"on", i % 2 == 0}, {"id", i}});
    EXPECT_EQ(answer.at("id"), i);
    EXPECT_EQ(answer.at("ok"), true);
  }
}

TEST_F(DriveTest, AnIDMayBeAnything) {
  for (const Json& id : {Json("text"), Json(nullptr), Json::array({1, 2}), Json{{"a", 1}}, Json(1.5), Json(false)}) {
    const Json answer = drive->Ask({{"do", "nonsense"}, {"id", id}});
    EXPECT_EQ(answer.at("id"), id);
  }
}

TEST_F(DriveTest, AnswersWithoutAnIDHaveNone) {
  EXPECT_FALSE(drive->Ask({{"do", "feature"}, {"name", "Test"}, {"on", true}}).contains("id"));
}

TEST_F(DriveTest, AnUnknownRequestSaysSo) {
  EXPECT_EQ(Refused("levitate"), "unknown request");
}

TEST_F(DriveTest, ALineThatIsNoRequestIsRefusedAndTheProgramGoesOn) {
  for (const char* line : {"{", "not json", "[]", "7", "\"do\"", "null", "{}", "{\"do\": 3}", "{\"do\": null}",
                           "{\"do\": [\"new\"]}", "{\"do\": \"new\"} {\"do\": \"new\"}", "\xff\xfe",
                           "{\"do\": \"\\ud800\"}", "{\"do\": \"select\", \"what\": {}}"}) {
    const Json answer = drive->AskLine(line);
    ASSERT_TRUE(answer.is_object()) << line;
    EXPECT_EQ(answer.at("ok"), false) << line;
    EXPECT_FALSE(answer.at("error").get<std::string>().empty()) << line;
  }
  Do("new");
}

TEST_F(DriveTest, AVeryDeepLineIsSurvived) {
  const std::string deep(200000, '[');
  EXPECT_EQ(drive->AskLine(deep).at("ok"), false);
  Do("new");
}

TEST_F(DriveTest, EmptyLinesAreNoRequests) {
  EXPECT_EQ(drive->AskLine("\n   \n\t\n{\"do\": \"feature\", \"name\": \"Test\", \"on\": true, \"id\": 5}").at("id"),
            5);
}

TEST_F(DriveTest, AnErrorNamesTheFieldThatIsMissing) {
  Do("new");
  EXPECT_EQ(Refused("add_clip").rfind("name:", 0), 0U);
  EXPECT_EQ(Refused("stream").rfind("stream:", 0), 0U);
  EXPECT_EQ(Refused("select").rfind("what:", 0), 0U);
  EXPECT_EQ(Refused("feature", {{"on", true}}).rfind("name:", 0), 0U);
  EXPECT_EQ(Refused("tick").rfind("ms:", 0), 0U);
}

TEST_F(DriveTest, AnErrorNamesTheFieldThatIsOfTheWrongKind) {
  Do("new");
  const auto begins = [](const std::string& error, const std::string& field) {
    return error.rfind(field + ":", 0) == 0;
  };
  EXPECT_TRUE(begins(Refused("feature", {{"name", "Test"}, {"on", 1}}), "on"));
  EXPECT_TRUE(begins(Refused("add_clip", {{"name", 7}}), "name"));
  EXPECT_TRUE(begins(Refused("add_clip", {{"name", "A"}, {"width", "wide"}}), "width"));
  EXPECT_TRUE(begins(Refused("add_clip", {{"name", "A"}, {"width", 0}}), "width"));
  EXPECT_TRUE(begins(Refused("add_clip", {{"name", "A"}, {"frame_rate", {25, 0}}}), "frame_rate"));
  EXPECT_TRUE(begins(Refused("add_clip", {{"name", "A"}, {"duration", 1.5}}), "duration"));
  EXPECT_TRUE(begins(Refused("add_clip", {{"name", "A"}, {"duration", 1e30}}), "duration"));
  EXPECT_TRUE(begins(Refused("tick", {{"ms", -1}}), "ms"));
  EXPECT_TRUE(begins(Refused("stream", {{"stream", "nowhere"}}), "stream"));
}

TEST_F(DriveTest, AnErrorInsideAListNamesThePlace) {
  Do("new");
  clip = Do("add_clip", {{"name", "Harbour"}}).at("clip");
  const Json captions = Json::array({Caption(1, 2, "a"), {{"begin", 3 * kSecond}, {"text", "b"}}});
  EXPECT_EQ(Refused("add_stream", {{"clip", clip}, {"format", "cea608"}, {"captions", captions}}),
            "captions[1].end: missing");
  const Json runs = Json::array({{{"start", 0}, {"text_color", {0, 0, 2, 1}}}});
  EXPECT_EQ(
      Refused("add_stream", {{"clip", clip},
                             {"format", "cea608"},
                             {"captions", Json::array({{{"begin", 0}, {"end", 1}, {"text", "x"}, {"runs", runs}}})}}),
      "captions[0].runs[0].text_color[2]: must be a number from 0 to 1");
}

TEST_F(DriveTest, ARefusedRequestChangesNothing) {
  Do("new");
  clip = Do("add_clip", {{"name", "Harbour"}}).at("clip");
  Refused("add_stream", {{"clip", clip}, {"format", "cea608"}, {"captions", Json::array({{{"begin", 0}}})}});
  EXPECT_TRUE(Do("history").at("undo").empty());
}

TEST_F(DriveTest, WithoutAProjectRequestsThatNeedOneSaySo) {
  EXPECT_FALSE(Refused("history").empty());
  EXPECT_FALSE(Refused("add_clip", {{"name", "A"}}).empty());
}

TEST_F(DriveTest, WithoutThePanelRequestsThatNeedItSaySo) {
  Do("new");
  for (const char* name : {"close_panel", "controls", "view", "paint"})
    EXPECT_FALSE(Refused(name).empty()) << name;
  const Json panel = Panel();
  EXPECT_EQ(panel.at("created"), false);
  EXPECT_TRUE(panel.at("rows").empty());
  EXPECT_EQ(panel.at("focus"), nullptr);
}

TEST_F(DriveTest, QuittingAnswersAndEndsTheProgram) {
  EXPECT_EQ(drive->Ask({{"do", "quit"}, {"id", 1}}).at("ok"), true);
  EXPECT_EQ(drive->Finish(), 0);
  drive.reset();
}

TEST_F(DriveTest, WithoutADisplayTheProgramSaysThatThereIsNothingToShowThePanelOn) {
  const std::string said = folder / "said";
  const std::string command = "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM \"" CAPTIVO_BINARY_DIR
                              "/captivo-drive\" --show < /dev/null 2> \"" +
                              said + "\"";
  const int status = std::system(command.c_str());
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 2);
  std::ifstream file(said);
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  EXPECT_NE(text.find("there is no display"), std::string::npos) << text;
}

TEST_F(DriveTest, ThatThereIsNoHandlerIsNoExceptionOfTheHost) {
  Do("new");
  Do("handler", {{"destroy", true}});
  for (const char* name : {"open_panel", "create_tab_view"}) {
    const Json answer = drive->Ask({{"do", name}});
    EXPECT_EQ(answer.at("ok"), false) << name;
    EXPECT_FALSE(answer.contains("exception")) << name;
  }
}

TEST_F(DriveTest, AnExceptionOfTheHostIsInTheAnswerAndTheProgramGoesOn) {
  Do("new");
  const Json answer = drive->Ask({{"do", "send"},
                                  {"message", "BE::CaptionStreamFormatModifiedMessage"},
                                  {"station", "MZ::kStation_MasterClipActivation"}});
  ASSERT_TRUE(answer.contains("exception")) << answer.dump();
  EXPECT_NE(answer.at("exception").at("type").get<std::string>().find("NullInterfaceException"), std::string::npos);
  EXPECT_EQ(
      answer.at("exception").at("text").get<std::string>().rfind("A NULL interface pointer has been dereferenced: ", 0),
      0U);
  EXPECT_FALSE(Do("history").contains("exception"));
}

} // namespace Tests
