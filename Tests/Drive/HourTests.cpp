// A captioner's hour: a file is imported, corrected, coloured, moved and exported, and all of it undone and done again.

#include "DriveProcess.h"

#include <fstream>
#include <sstream>

namespace Tests {

class ACaptionersHour : public DriveTest {
 protected:
  // The sample's captions on a clip, beside a stream of open captions, in a panel of a screen's size.
  void Import() {
    Do("new");
    clip = Do("add_clip", {{"name", "Harbour"}, {"width", 1920}, {"height", 1080}, {"frame_rate", {25, 1}}}).at("clip");
    const Json report = Do("import", {{"clip", clip}, {"path", CAPTIVO_SOURCE_DIR "/Samples/harbour.srt"}});
    stream = report.at("stream");
    EXPECT_EQ(report.at("problems").size(), 1U) << "CEA-608 has no bold";
    open = Do("add_stream", {{"clip", clip}, {"format", "open"}, {"captions", Json::array({Caption(1, 2, "Harbour")})}})
               .at("stream");
    Do("select", {{"what", "clip"}, {"clip", clip}});
    Do("open_panel");
    Do("resize", {{"width", 1000}, {"height", 700}});
    states.push_back(Stream());
  }
  Json Control(const std::string& name) { return Do("control", {{"name", name}}); }
  Json At(double begin) {
    for (const Json& caption : Stream()) {
      if (caption.at("begin") == Seconds(begin))
        return caption;
    }
    ADD_FAILURE() << "no caption begins at " << begin;
    return Json::object();
  }
  // Into the text, with this much of it marked; the panel looks where the caret is ten times a second.
  void Mark(double begin, int from, int to) {
    Do("focus", {{"row", Seconds(begin)}, {"part", "text"}});
    Do("caret", {{"start", from}, {"end", to}});
    Do("tick", {{"ms", 100}});
    EXPECT_EQ(Selected(), Times({begin}));
    EXPECT_EQ(Panel().at("caret"), Json::array({from, to}));
  }
  // The work so far becomes a step, and the rows are what the stream holds.
  void Commit(const std::string& step) {
    Do("commit_edits");
    EXPECT_EQ(Do("history").at("undo").at(0), step);
    states.push_back(Stream());
    ExpectRowsOfStream();
  }
  void ExpectRowsOfStream() {
    const Json rows = Rows();
    const Json captions = Stream();
    ASSERT_EQ(rows.size(), captions.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
      EXPECT_EQ(rows[i].at("begin"), captions[i].at("begin")) << i;
      EXPECT_EQ(rows[i].at("end"), captions[i].at("end")) << i;
      EXPECT_EQ(rows[i].at("text"), captions[i].at("text")) << i;
    }
  }
  std::size_t CountSteps() { return Do("history").at("undo").size(); }

  void SwitchStreams();
  void CorrectAText();
  void ColourTwoWords();
  void MoveACaptionUp();
  void MakeASong();
  void AddAndDelete();
  void Filter();
  void UndoAndRedoAll();
  void Export();

  std::string open;
  // The stream after each step, the imported one first.
  std::vector<Json> states;
};

void ACaptionersHour::SwitchStreams() {
  EXPECT_EQ(Control("streamPopup").at("items"), (Json{"CEA-608 CC1", "Open captions 1"}));
  EXPECT_EQ(Rows().size(), 15U);
  Do("set", {{"control", "streamPopup"}, {"value", 1}});
  EXPECT_EQ(Do("source").at("stream"), open);
  EXPECT_EQ(RowTimes(), Times({1}));
  EXPECT_EQ(Control("fontFamilyPopup").at("visible"), true);
  Do("set", {{"control", "streamPopup"}, {"value", 0}});
  EXPECT_EQ(Do("source").at("stream"), stream);
  EXPECT_EQ(Control("fontFamilyPopup").at("visible"), false);
  ExpectRowsOfStream();
}

void ACaptionersHour::CorrectAText() {
  Mark(3.4, 0, 6);
  Do("type", {{"text", "Until"}});
  EXPECT_EQ(At(3.4).at("text"), "Until the town wakes up,\nthe harbour is already talking.");
  EXPECT_EQ(Row(Seconds(3.4)).at("text_value"), At(3.4).at("text"));
  Commit("Type");
}

void ACaptionersHour::ColourTwoWords() {
  const Json white{1.0, 1.0, 1.0, 1.0};
  const Json yellow{1.0, 1.0, 0.0, 1.0};
  Mark(6.6, 0, 11);
  EXPECT_EQ(Control("colorSwatch").at("value"), white);
  Do("next_menu", {{"choose", 7}});
  Do("press", {{"control", "colorSwatch"}});
  EXPECT_EQ(Do("menus").at("menus").at(0).at("items").at(6).at("text"), "Yellow");
  const Json runs = At(6.6).at("runs");
  ASSERT_EQ(runs.size(), 2U);
  EXPECT_EQ(runs[0].at("end"), 11);
  EXPECT_EQ(runs[0].at("text_color"), yellow);
  EXPECT_EQ(runs[1].at("text_color"), white);
  EXPECT_EQ(Control("colorSwatch").at("value"), yellow);
  EXPECT_EQ(Panel().at("caret"), (Json{0, 11})) << "the words stay marked";
  Commit("Text colour");
}

void ACaptionersHour::MoveACaptionUp() {
  Do("row_time", {{"row", Seconds(14.4)}, {"end", "in"}, {"value", Seconds(14.4) - 5 * kFrame}});
  EXPECT_EQ(Selected(), Times({14.2}));
  EXPECT_EQ(At(14.2).at("end"), Seconds(16.4));
  EXPECT_EQ(Row(Seconds(14.2)).at("in_text"), "00:00:14:05");
  Commit("Move caption");
  Do("focus", {{"row", Seconds(12)}, {"part", "text"}});
  EXPECT_EQ(At(12).at("paragraph").at("y"), 13);
  EXPECT_EQ(Control("closedPositionYControl").at("value"), 14.0) << "rows are counted from 1";
  Do("set", {{"control", "closedPositionYControl"}, {"value", 3}});
  EXPECT_EQ(At(12).at("paragraph").at("y"), 2);
  EXPECT_EQ(Control("closedPositionYControl").at("value"), 3.0);
  Commit("Position");
}

void ACaptionersHour::MakeASong() {
  Do("scroll", {{"position", 660}});
  Mark(32.4, 0, 0);
  Do("press", {{"control", "musicNoteButton"}});
  const std::string note = "\xe2\x99\xaa";
  EXPECT_EQ(At(32.4).at("text"), note + "There it is. Right on time.");
  Mark(32.4, 28, 28);
  Do("press", {{"control", "musicNoteButton"}});
  EXPECT_EQ(At(32.4).at("text"), note + "There it is. Right on time." + note);
  EXPECT_EQ(Row(Seconds(32.4)).at("text_selection"), (Json{29, 29})) << "the caret is behind the note";
  Commit("Type");
  Do("mouse", {{"x", 20}, {"y", Row(Seconds(32.4)).at("in_bounds").at(1).get<int>() + 20}});
  EXPECT_EQ(Selected(), Times({32.4}));
  EXPECT_EQ(Control("italicButton").at("on"), false);
  Do("press", {{"control", "italicButton"}});
  EXPECT_EQ(Control("italicButton").at("on"), true);
  const Json song = At(32.4);
  for (const Json& run : song.at("runs"))
    EXPECT_EQ(run.at("italic"), true) << run;
  EXPECT_EQ(At(32.4).at("runs").at(1).at("underline"), true) << "what was underlined stays so";
  Commit("Italic");
}

void ACaptionersHour::AddAndDelete() {
  Do("press", {{"control", "addCaptionButton"}});
  EXPECT_EQ(Selected(), Times({34.6}));
  EXPECT_EQ(At(34.6).at("end"), Seconds(34.8)) << "as long as there is room";
  EXPECT_EQ(At(34.6).at("text"), "");
  Commit("Add caption");
  Do("press", {{"control", "addCaptionButton"}});
  EXPECT_EQ(Do("boxes").at("boxes").size(), 1U) << "no room for another";
  EXPECT_EQ(Stream(), states.back());
  Mark(34.6, 0, 0);
  Do("type", {{"text", "Hush."}});
  EXPECT_EQ(At(34.6).at("text"), "Hush.");
  Commit("Type");
  Do("focus", {{"row", Seconds(25)}, {"part", "text"}});
  Do("press", {{"control", "deleteCaptionButton"}});
  EXPECT_EQ(Stream().size(), 15U);
  EXPECT_EQ(Selected(), Times({22})) << "the caption above";
  Commit("Delete caption");
}

void ACaptionersHour::Filter() {
  const std::size_t steps = CountSteps();
  Do("set", {{"control", "filterBox"}, {"value", "harbour"}});
  EXPECT_EQ(RowTimes(), Times({3.4}));
  EXPECT_EQ(Stream(), states.back()) << "only what is shown is fewer";
  Do("set", {{"control", "filterBox"}, {"value", ""}});
  ExpectRowsOfStream();
  EXPECT_EQ(CountSteps(), steps);
}

void ACaptionersHour::UndoAndRedoAll() {
  for (std::size_t i = states.size() - 1; i > 0; --i) {
    Do("undo");
    EXPECT_EQ(Stream(), states[i - 1]) << i;
    ExpectRowsOfStream();
  }
  const Json history = Do("history");
  EXPECT_EQ(history.at("undo").size(), 2U) << "the import and the other stream";
  EXPECT_EQ(history.at("redo").size(), states.size() - 1);
  for (std::size_t i = 1; i < states.size(); ++i) {
    Do("redo");
    EXPECT_EQ(Stream(), states[i]) << i;
    ExpectRowsOfStream();
  }
  EXPECT_EQ(Do("history").at("redo").size(), 0U);
}

void ACaptionersHour::Export() {
  const std::string path = folder / "harbour.srt";
  EXPECT_EQ(Do("export", {{"stream", stream}, {"path", path}}).at("ok"), true);
  std::ostringstream written;
  written << std::ifstream(path).rdbuf();
  EXPECT_NE(written.str().find("<font color=\"#ffff00\">Ropes creak</font>, a bell answers,"), std::string::npos);
  EXPECT_NE(written.str().find("00:00:14,200 --> 00:00:16,400"), std::string::npos);
  const Json again = Do("import", {{"clip", clip}, {"path", path}, {"channel", 2}});
  EXPECT_EQ(again.at("problems").size(), 0U);
  const Json captions = Do("stream", {{"stream", again.at("stream")}}).at("captions");
  ASSERT_EQ(captions.size(), states.back().size());
  for (std::size_t i = 0; i < captions.size(); ++i) {
    for (const char* field : {"begin", "end", "text", "runs"})
      EXPECT_EQ(captions[i].at(field), states.back()[i].at(field)) << i << " " << field;
  }
}

TEST_F(ACaptionersHour, IsHeldByTheStreamTheListAndTheBarAtEveryStepAndUndoneAndRedoneExactly) {
  Import();
  SwitchStreams();
  CorrectAText();
  ColourTwoWords();
  MoveACaptionUp();
  MakeASong();
  AddAndDelete();
  Filter();
  UndoAndRedoAll();
  Export();
}

} // namespace Tests
