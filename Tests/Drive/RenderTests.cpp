// Pictures of the video that arrive when a script says so, and what is recorded of them.

#include "DriveProcess.h"

namespace Tests {

class Render : public DriveTest {
 protected:
  Json Entries() { return Do("previews").at("entries"); }
  Json Trace(const std::vector<std::string>& only) { return Do("trace", {{"only", only}}).at("calls"); }
};

TEST_F(Render, APictureThatIsThereAtOnceIsAnEntryAndNoRequest) {
  Do("render", {{"mode", "at_once"}});
  OpenCaptions({Caption(1, 2, "One")});
  const Json previews = Do("previews");
  ASSERT_EQ(previews.at("entries").size(), 1U);
  const Json entry = previews.at("entries")[0];
  EXPECT_EQ(entry.at("clip"), clip);
  EXPECT_EQ(entry.at("time"), Seconds(2) - kFrame) << "the last frame of the caption";
  EXPECT_EQ(entry.at("frame"), true);
  EXPECT_EQ(entry.at("model"), false) << "closed captions are not drawn";
  EXPECT_NE(entry.at("hash"), nullptr);
  EXPECT_TRUE(previews.at("pending").empty());
}

TEST_F(Render, ARequestThatIsHeldWaitsUntilItIsCompleted) {
  Do("render", {{"mode", "hold"}});
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two")});
  const Json held = Do("render").at("held");
  ASSERT_EQ(held.size(), 2U);
  EXPECT_EQ(Do("previews").at("pending").size(), 2U);
  Do("trace");
  Do("render", {{"complete", {{"request", held[1].at("request")}, {"time", held[1].at("time")}}}});
  EXPECT_EQ(Do("render").at("held").size(), 1U);
  int frames = 0;
  for (const Json& entry : Entries())
    frames += entry.at("frame").get<bool>();
  EXPECT_EQ(frames, 1);
  EXPECT_EQ(Trace({"View::Invalidate"}).empty(), false) << "the pane is painted anew";
  Do("render", {{"complete", held[0].at("request")}});
  EXPECT_TRUE(Do("render").at("held").empty());
}

TEST_F(Render, ACompletionThatNobodyAskedForIsKeptUnderNoClip) {
  Do("render", {{"mode", "hold"}});
  OpenCaptions({Caption(1, 2, "One")});
  Do("render", {{"complete", {{"request", 4711}, {"time", Seconds(7)}}}});
  bool found = false;
  for (const Json& entry : Entries())
    found = found || (entry.at("clip") == nullptr && entry.at("time") == Seconds(7));
  EXPECT_TRUE(found);
}

TEST_F(Render, TheRecordTellsHowTheRendererIsSetUpAndWhatItIsAskedFor) {
  Do("render", {{"mode", "hold"}});
  OpenCaptions({Caption(1, 2, "One")});
  std::vector<std::string> setUp;
  int sizes = 0;
  for (const Json& call : Trace({"RenderFrame::"})) {
    const std::string name = call.at("call");
    if (name == "RenderFrame::Render") {
      EXPECT_EQ(call.at("args").at("time"), Seconds(2) - kFrame);
      EXPECT_EQ(call.at("args").at("at_once"), false);
      EXPECT_EQ(call.at("args").at("request"), Do("render").at("held")[0].at("request"));
    } else if (name == "RenderFrame::SetFrameSize") {
      ++sizes;
    } else if (name != "RenderFrame::SetLetterbox") {
      setUp.push_back(name.substr(13) + " " + call.at("args").at("value").dump());
    }
  }
  EXPECT_EQ(sizes, 1);
  EXPECT_EQ(setUp, (std::vector<std::string>{"SetLookAhead 2", "SetFields 0", "SetProgressive 1", "SetQuality 31",
                                             "SetDownsampling 1", "SetPriority 6"}));
}

TEST_F(Render, AnOverlayOfOpenCaptionsIsDrawnOntoACopyOfTheFrame) {
  Do("render", {{"mode", "at_once"}});
  Do("new");
  clip = Do("add_clip", {{"name", "Harbour"}, {"width", 640}, {"height", 360}, {"frame_rate", {25, 1}}}).at("clip");
  Do("add_stream", {{"clip", clip}, {"format", "open"}, {"captions", Json::array({Caption(1, 2, "One")})}});
  Do("select", {{"what", "clip"}, {"clip", clip}});
  Do("open_panel");
  ASSERT_EQ(Entries().size(), 1U);
  EXPECT_EQ(Entries()[0].at("model"), true);
  Do("trace");
  std::vector<std::string> drawn;
  const Json painted = Do("paint");
  for (const Json& call : painted.at("calls")) {
    const std::string name = call.at("call");
    if (name.rfind("DC::", 0) != 0)
      drawn.push_back(name);
  }
  EXPECT_EQ(drawn, (std::vector<std::string>{"HSL::RenderOpenCaptions", "VideoFrameBlit::BlitFrame"}));
  EXPECT_FALSE(Trace({"VideoFrameManipulators::CopyFrame"}).empty());
}

TEST_F(Render, SettlingWaitsForWhatIsBeingDecoded) {
  OpenCaptions({Caption(1, 2, "One")});
  const Json answer = Do("render", {{"settle", true}});
  EXPECT_EQ(answer.at("mode"), "real");
  EXPECT_TRUE(answer.at("held").empty());
}

TEST_F(Render, AWrongModeAndACompletionWithoutATimeAreRefused) {
  EXPECT_NE(Refused("render", {{"mode", "later"}}).find("mode"), std::string::npos);
  OpenCaptions({Caption(1, 2, "One")});
  EXPECT_NE(Refused("render", {{"complete", {{"request", 3}}}}).find("time"), std::string::npos);
}

} // namespace Tests
