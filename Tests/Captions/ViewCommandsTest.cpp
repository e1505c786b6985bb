#include <QClipboard>
#include <QGuiApplication>

#include "Captions/contracts/StreamMessages.h"
#include "DLG/CaptionsSettingsDialogs.h"
#include "DLG/ColorPickerDialog.h"
#include "FormatBar.h"

namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;

constexpr int kPanelCommands[] = {32000, 32001, 32002, 32010, 32011, 32012, 32013,
                                  32014, 32015, 32016, 32020, 32030, 32031};

class ViewCommands : public FormatBarTest {
 protected:
  ~ViewCommands() override {
    DLG::SetCaptionsSettingsHook(nullptr);
    DLG::ColorPickerDialog::SetHook(nullptr);
  }
  bool Obey(int id) { return View().ObeyCommand(UIF::Command(id)); }
  // Whether the view answers for the command; enabled starts as false.
  bool Ask(int id) {
    enabled = false;
    return View().FindCommandStatus(id, enabled, marked, mark, name);
  }
  void ExpectAllPanelCommandsEnabled() {
    for (const int id : kPanelCommands) {
      EXPECT_TRUE(Ask(id)) << id;
      EXPECT_TRUE(enabled) << id;
    }
  }
  void ExpectColorButtons(bool text, bool background, bool edge) {
    EXPECT_EQ(Inspector::TextColorButton(View()).GetValue(), text);
    EXPECT_EQ(Inspector::BackgroundColorButton(View()).GetValue(), background);
    EXPECT_EQ(Inspector::EdgeColorButton(View()).GetValue(), edge);
  }

  bool enabled = false;
  bool marked = false;
  UIF::MenuMark mark = UIF::MenuMark::None;
  UString name;
};

} // namespace

TEST_F(ViewCommands, AreEnabledInEveryStateOfTheProgram) {
  OpenPanel();
  ExpectAllPanelCommandsEnabled();
  ShowClosed(MakeCaptions({1, 3}));
  ExpectAllPanelCommandsEnabled();
  SelectNothing();
  ExpectAllPanelCommandsEnabled();
  project->SetReadOnly(true);
  ExpectAllPanelCommandsEnabled();
}

TEST_F(ViewCommands, OfOtherNumbersAreNotAnsweredAndNotObeyed) {
  ShowClosed(MakeCaptions({1}));
  for (const int id : {0, 1, 31999, 32003, 32009, 32017, 32019, 32021, 32029, 32032, 57633, 57636, 11310, 11312}) {
    EXPECT_FALSE(Ask(id)) << id;
    EXPECT_FALSE(enabled) << id;
    EXPECT_FALSE(Obey(id)) << id;
  }
}

TEST_F(ViewCommands, OfTheClipboardAreEnabledAsTheTextOfTheOnlySelectedRowAllows) {
  ShowClosed({MakeCaption(1, 2, u"Hello")});
  QGuiApplication::clipboard()->setText("there");
  FocusText(1);
  Text(1).SetSelection({0, 2});
  for (const int id : {57632, 57634, 57635, 57637}) {
    EXPECT_TRUE(Ask(id)) << id;
    EXPECT_TRUE(enabled) << id;
  }
  QGuiApplication::clipboard()->clear();
  Text(1).SetSelection({5, 5});
  for (const int id : {57632, 57634, 57635, 57637}) {
    enabled = true;
    EXPECT_TRUE(View().FindCommandStatus(id, enabled, marked, mark, name)) << id;
    EXPECT_FALSE(enabled) << id;
  }
}

TEST_F(ViewCommands, OfTheClipboardReachTheTextOfTheOnlySelectedRow) {
  ShowClosed({MakeCaption(1, 2, u"Hello")});
  FocusText(1);
  Text(1).SetSelection({0, 2});
  EXPECT_TRUE(Obey(57634));
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "He");
  EXPECT_TRUE(Obey(57635));
  EXPECT_EQ(Row(1)->GetText(), u"llo");
  EXPECT_TRUE(Obey(57637));
  EXPECT_EQ(Row(1)->GetText(), u"Hello");
  Text(1).SetSelection({4, 5});
  EXPECT_TRUE(Obey(57632));
  EXPECT_EQ(Row(1)->GetText(), u"Hell");
}

TEST_F(ViewCommands, ThatDeleteTextAreNotAnsweredWithTwoRowsSelected) {
  ShowClosed(MakeCaptions({1, 3}));
  Pane().SelectAllCaptions();
  for (const int id : {57632, 57634, 57635, 57637}) {
    EXPECT_FALSE(Ask(id)) << id;
    EXPECT_FALSE(Obey(id)) << id;
  }
}

TEST_F(ViewCommands, ThatThePaneDoesNotHandleAreLeftUnhandledInEveryState) {
  ShowClosed(MakeCaptions({1, 3}));
  const auto expectUnhandled = [this] {
    for (const int id : {57642, 57643, 57644}) {
      EXPECT_FALSE(Ask(id)) << id;
      EXPECT_FALSE(Obey(id)) << id;
    }
  };
  expectUnhandled();
  FocusText(1);
  expectUnhandled();
  Pane().SelectAllCaptions();
  expectUnhandled();
  SelectNothing();
  expectUnhandled();
}

TEST_F(ViewCommands, FindMovesTheFocusToTheFilterBoxThoughItsStatusIsNotAnswered) {
  ShowClosed(MakeCaptions({1}));
  EXPECT_FALSE(Ask(11311));
  ASSERT_FALSE(Inspector::FilterBox(View())->UI_HasKeyboardFocus(true));
  EXPECT_TRUE(Obey(11311));
  EXPECT_TRUE(Inspector::FilterBox(View())->UI_HasKeyboardFocus(true));
}

TEST_F(ViewCommands, FindIsNotHandledWithoutAFilterBox) {
  ShowClosed(MakeCaptions({1}));
  const auto kept = std::exchange(Inspector::FilterBox(View()), nullptr);
  EXPECT_FALSE(Obey(11311));
  Inspector::FilterBox(View()) = kept;
}

TEST_F(ViewCommands, JustifyAlignsTheSelectedCaptions) {
  ShowClosed(MakeCaptions({1, 3}));
  Pane().SelectAllCaptions();
  zebcore::trace::Take();
  for (const int alignment : {1, 2, 0}) {
    const Info held = Shown();
    EXPECT_TRUE(Obey(32000 + alignment));
    EXPECT_EQ(TakeApplications(), (Applications{{7, {1, 3}, kWholeText}}));
    EXPECT_EQ(Stored(1).paragraph.alignment, alignment);
    EXPECT_EQ(Stored(3).paragraph.alignment, alignment);
    bool isUniform = false;
    EXPECT_EQ(held->GetTextAlignment(isUniform), alignment);
    EXPECT_TRUE(isUniform);
  }
}

TEST_F(ViewCommands, ItalicAndUnderlineToggle) {
  ShowClosed(MakeCaptions({1}));
  EXPECT_TRUE(Obey(32010));
  EXPECT_EQ(TakeApplications(), (Applications{{2, {1}, kWholeText}}));
  EXPECT_TRUE(Look(1).italic);
  EXPECT_TRUE(Obey(32011));
  EXPECT_EQ(TakeApplications(), (Applications{{1, {1}, kWholeText}}));
  EXPECT_TRUE(Look(1).underline);
  EXPECT_TRUE(Obey(32010));
  EXPECT_FALSE(Look(1).italic);
  EXPECT_TRUE(Obey(32011));
  EXPECT_FALSE(Look(1).underline);
}

TEST_F(ViewCommands, BoldToggles) {
  ShowOpen(MakeCaptions({1}));
  EXPECT_TRUE(Obey(32015));
  EXPECT_EQ(TakeApplications(), (Applications{{3, {1}, kWholeText}}));
  EXPECT_TRUE(Look(1).bold);
  EXPECT_TRUE(Obey(32015));
  EXPECT_FALSE(Look(1).bold);
}

TEST_F(ViewCommands, ATogglesResultIsTheOppositeOfTheFirstCaptionsAndHoldsForEveryOne) {
  Span italic;
  italic.italic = true;
  ShowClosed({MakeLook(1, Span()), MakeLook(3, italic), MakeLook(5, Span())});
  Pane().SelectAllCaptions();
  EXPECT_TRUE(Obey(32010));
  for (const double begin : {1, 3, 5})
    EXPECT_TRUE(Look(begin).italic) << begin;
  bool isUniform = false;
  EXPECT_TRUE(Shown()->GetIsItalicized(isUniform));
  EXPECT_TRUE(isUniform);

  ShowClosed({MakeLook(1, italic), MakeLook(3, Span())});
  Pane().SelectAllCaptions();
  EXPECT_TRUE(Obey(32010));
  EXPECT_FALSE(Look(1).italic);
  EXPECT_FALSE(Look(3).italic);
}

TEST_F(ViewCommands, TheMusicNoteGoesThroughTheTextAndNeverThroughTheFormat) {
  ShowClosed({MakeCaption(1, 2, u"la la")});
  SelectPart(1, {3, 5});
  EXPECT_TRUE(Obey(32012));
  const auto calls = TakeCalls("CaptioningStreamUpdater::");
  EXPECT_EQ(calls, std::vector<std::string>{"CaptioningStreamUpdater::ApplyTextChange"});
  EXPECT_EQ(Stored(1).text, u"la \u266A");
}

TEST_F(ViewCommands, OfTheColoursShowWhichColourIsUnderEdit) {
  ShowOpen(MakeCaptions({1}));
  EXPECT_TRUE(Obey(32013));
  EXPECT_EQ(static_cast<int>(Inspector::ColorType(View())), 1);
  ExpectColorButtons(false, true, false);
  EXPECT_TRUE(Obey(32016));
  EXPECT_EQ(static_cast<int>(Inspector::ColorType(View())), 2);
  ExpectColorButtons(false, false, true);
  EXPECT_TRUE(Obey(32014));
  EXPECT_EQ(static_cast<int>(Inspector::ColorType(View())), 0);
  ExpectColorButtons(true, false, false);
}

TEST_F(ViewCommands, AColourCommandOnAMixedSelectionAppliesNothingAndShowsThatColour) {
  Span red;
  red.textColor = {1, 0, 0, 1};
  Span blue;
  blue.textColor = {0, 0, 1, 1};
  ShowClosed({MakeLook(1, red), MakeLook(3, blue)});
  Pane().SelectAllCaptions();
  const auto mixed = Inspector::ColorSwatch(View())->GetValue();
  zebcore::trace::Take();
  EXPECT_TRUE(Obey(32013));
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::"), std::vector<std::string>{});
  const auto shown = Inspector::ColorSwatch(View())->GetValue();
  EXPECT_NE(std::make_tuple(shown.red, shown.green, shown.blue), std::make_tuple(mixed.red, mixed.green, mixed.blue));
  EXPECT_EQ(std::make_tuple(shown.red, shown.green, shown.blue), std::make_tuple(0.0F, 0.0F, 0.0F));
}

TEST_F(ViewCommands, AColourCommandShowsTheColourItselfAndThenOnceMoreWithTheFormatThatItPublishes) {
  ShowClosed(MakeCaptions({1}));
  zebcore::trace::Take();
  EXPECT_TRUE(Obey(32013));
  EXPECT_EQ(TakeCalls("UI_Swatch::SetValue").size(), 2U);
}

TEST_F(ViewCommands, AColourCommandGivesTheTextItsCaretBackAndPublishesTheFormat) {
  ShowClosed({MakeCaption(1, 2, u"Hello")});
  SelectPart(1, {1, 3});
  Pane().SetFocus();
  ASSERT_FALSE(Text(1).UI_HasKeyboardFocus(false));
  const Info held = Shown();
  EXPECT_TRUE(Obey(32013));
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_EQ(Text(1).GetSelection(), TextRange(1, 3));
  EXPECT_NE(Shown(), held);
}

TEST_F(ViewCommands, SelectAllSelectsAllRows) {
  ShowClosed(MakeCaptions({1, 3, 5}));
  EXPECT_TRUE(Obey(32020));
  EXPECT_EQ(SelectedBegins(), (Times{1, 3, 5}));
}

TEST_F(ViewCommands, TheSettingsOpenTheirDialogsAndWhateverComesOfItThePanelStaysAsItIs) {
  ShowClosed(MakeCaptions({1}));
  std::vector<DLG::CaptionsSettings> opened;
  bool answer = false;
  DLG::SetCaptionsSettingsHook([&](DLG::CaptionsSettings which) {
    opened.push_back(which);
    return answer;
  });
  const Info held = Shown();
  for (const bool accepted : {false, true}) {
    answer = accepted;
    opened.clear();
    EXPECT_TRUE(Obey(32030));
    EXPECT_TRUE(Obey(32031));
    Inspector::ImportSettingsButton(View())->Press();
    Inspector::ExportSettingsButton(View())->Press();
    EXPECT_EQ(opened,
              (std::vector<DLG::CaptionsSettings>{DLG::CaptionsSettings::Import, DLG::CaptionsSettings::Export,
                                                  DLG::CaptionsSettings::Import, DLG::CaptionsSettings::Export}));
  }
  EXPECT_EQ(Shown(), held);
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::"), std::vector<std::string>{});
}

TEST_F(ViewCommands, APictureButtonAndItsCommandArriveAtTheSamePlace) {
  ShowClosed(MakeCaptions({1}));
  zebcore::trace::Take();
  Inspector::ItalicButton(View()).Press();
  Inspector::UnderlineButton(View()).Press();
  Inspector::AlignRightButton(View()).Press();
  EXPECT_EQ(TakeApplications(), (Applications{{2, {1}, kWholeText}, {1, {1}, kWholeText}, {7, {1}, kWholeText}}));
  Inspector::BackgroundColorButton(View()).Press();
  ExpectColorButtons(false, true, false);
}

TEST_F(ViewCommands, AShortcutReachesTheCaptionsOfAReadOnlyProjectsPanel) {
  ShowClosed(MakeCaptions({1}));
  project->SetReadOnly(true);
  zebcore::trace::Take();
  EXPECT_TRUE(Obey(32010));
  EXPECT_EQ(TakeApplications(), (Applications{{2, {1}, kWholeText}}));
  project->SetReadOnly(false);
}

TEST_F(ViewCommands, WithNothingSelectedAFormatCommandChangesOnlyWhatTheViewHolds) {
  ShowClosed(MakeCaptions({1}));
  SelectNothing();
  zebcore::trace::Take();
  const Info held = Shown();
  EXPECT_TRUE(Obey(32010));
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::"), std::vector<std::string>{});
  EXPECT_EQ(Shown(), held);
  bool isUniform = false;
  EXPECT_TRUE(held->GetIsItalicized(isUniform));
  EXPECT_FALSE(Inspector::ItalicButton(View()).GetValue());
}

TEST_F(ViewCommands, ThePickersMessagesAreHeardAndTheOnesOfTheEyedropperKept) {
  ShowOpen(MakeCaptions({1}));
  UIF::ColorPickerControlChangedMessage picked;
  picked.red = 255;
  picked.blue = 51;
  View().HandleMessage(picked);
  EXPECT_EQ(Look(1).textColor, zebcaptioning::CaptioningColor(1, 0, 51 / 255.0F, 1));
  DLG::ColorPickerDialog::SetHook([](const UIF::Color&) {
    UIF::Color green;
    green.green = 255;
    return green;
  });
  View().HandleMessage(UIF::ColorPickerSwatchClickedMessage());
  EXPECT_EQ(Look(1).textColor, zebcaptioning::CaptioningColor(0, 1, 0, 1));
  View().HandleMessage(UIF::ColorPickerSwatchStartEyedropperModeMessage());
  EXPECT_TRUE(Inspector::EyedropperActive(View()));
  View().HandleMessage(UIF::ColorPickerSwatchEndEyedropperModeMessage());
  EXPECT_FALSE(Inspector::EyedropperActive(View()));
}

TEST_F(ViewCommands, ScrollingAndTheProjectsMessagesAreHeard) {
  std::vector<double> begins;
  for (int i = 0; i < 30; ++i)
    begins.push_back(2 * i + 1);
  ShowClosed(MakeCaptions(begins));
  UIF::ScrollVerticalMessage scrolled;
  scrolled.position = 150;
  View().HandleMessage(scrolled);
  EXPECT_EQ(Inspector::ScrollPosition(View()), 150);
  project->SetReadOnly(true);
  View().HandleMessage(BE::ProjectActivatedMessage());
  EXPECT_FALSE(Inspector::ItalicButton(View()).IsEnabled());
  project->SetReadOnly(false);
  View().HandleMessage(BE::ReadOnlyStateChangedMessage());
  EXPECT_TRUE(Inspector::ItalicButton(View()).IsEnabled());
}

TEST_F(ViewCommands, GoingOffDutyClosesTheFormatChangesAsOneStep) {
  ShowClosed(MakeCaptions({1}));
  View().NowOnDuty();
  EXPECT_TRUE(Inspector::IsOnDuty(View()));
  const auto steps = project->GetUndoNames().size();
  Obey(32010);
  Obey(32011);
  EXPECT_EQ(project->GetUndoNames().size(), steps);
  zebcore::trace::Take();
  View().NowOffDuty();
  EXPECT_FALSE(Inspector::IsOnDuty(View()));
  bool endsPassage = false;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call == "CaptioningStreamUpdater::CommitChangesUndoable")
      endsPassage = call.args["ends_passage"];
  }
  EXPECT_TRUE(endsPassage);
  EXPECT_EQ(project->GetUndoNames().size(), steps + 1);
}

} // namespace Captivo::Testing
