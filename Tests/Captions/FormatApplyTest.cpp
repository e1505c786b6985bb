#include "FormatBar.h"
#include "zebui/Menu.h"

namespace Captivo::Testing {

namespace {

using zebcaptioning::CaptioningColor;
using zebcaptioning::ParagraphStyleAttributes;

// The format bar, the captions below it, and the road between them.
class FormatApply : public FormatBarTest {
 protected:
  ~FormatApply() override { zebui::ui::SetPopupMenuHook(nullptr); }

  void Obey(int id) { View().ObeyCommand(UIF::Command(id)); }
  void PickColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    UIF::ColorPickerControlChangedMessage message;
    message.red = red;
    message.green = green;
    message.blue = blue;
    View().HandleMessage(message);
  }
  static Span Sized(float size) {
    Span span;
    span.size = size;
    return span;
  }
  float HeldSize(const Info& info) {
    bool isUniform = false;
    const float size = info->GetFontSize(isUniform);
    EXPECT_TRUE(isUniform);
    return size;
  }
};

const CaptioningColor kRed{1, 0, 0, 1};
const CaptioningColor kWhite{1, 1, 1, 1};

} // namespace

TEST_F(FormatApply, AColourReachesOnlyTheSelectedPartAndTheCaretStaysThere) {
  ShowOpen({MakeCaption(1, 2, u"Hello")});
  SelectPart(1, {1, 3});
  PickColor(255, 0, 0);
  EXPECT_EQ(TakeApplications(), (Applications{{8, {1}, {1, 3}}}));
  const auto& runs = Stored(1).runs;
  ASSERT_EQ(runs.size(), 3U);
  EXPECT_EQ(runs[0].attributes->textColor, kWhite);
  EXPECT_EQ(runs[1].start, 1U);
  EXPECT_EQ(runs[1].attributes->textColor, kRed);
  EXPECT_EQ(runs[2].start, 3U);
  EXPECT_EQ(runs[2].attributes->textColor, kWhite);
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_EQ(Text(1).GetSelection(), TextRange(1, 3));
}

TEST_F(FormatApply, TheSelectedPartStaysMeantAfterANumberThatTookTheFocusForItsChange) {
  ShowOpen({MakeCaption(1, 2, u"Hello")});
  SelectPart(1, {1, 3});
  Inspector::FontSizeControl(View())->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  ASSERT_FALSE(Text(1).UI_HasKeyboardFocus(false));
  PickColor(255, 0, 0);
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_EQ(Text(1).GetSelection(), TextRange(1, 3));
  Obey(32015);
  EXPECT_EQ(TakeApplications(), (Applications{{8, {1}, {1, 3}}, {3, {1}, {1, 3}}}));
}

TEST_F(FormatApply, AColourFromTheMenuReachesOnlyTheSelectedPartOfAClosedCaption) {
  ShowClosed({MakeCaption(1, 2, u"Hello")});
  SelectPart(1, {1, 3});
  zebui::ui::SetPopupMenuHook([](const zebui::utility::OSMenu&) { return 2; });
  Inspector::ColorSwatch(View())->Press();
  EXPECT_EQ(TakeApplications(), (Applications{{8, {1}, {1, 3}}}));
  ASSERT_EQ(Stored(1).runs.size(), 3U);
  EXPECT_NE(Stored(1).runs[1].attributes->textColor, kWhite);
  EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false));
  EXPECT_EQ(Text(1).GetSelection(), TextRange(1, 3));
}

TEST_F(FormatApply, AnEmptyCaretRangeIsPassedAsItIsAndTheBarShowsWhatWillBeTyped) {
  ShowOpen({MakeCaption(1, 2, u"Hello")});
  SelectPart(1, {2, 2});
  const auto runs = Stored(1).runs;
  Obey(32010);
  EXPECT_EQ(TakeApplications(), (Applications{{2, {1}, {2, 2}}}));
  EXPECT_EQ(Stored(1).runs, runs);
  EXPECT_TRUE(Inspector::ItalicButton(View()).GetValue());
  EXPECT_EQ(Text(1).GetSelection(), TextRange(2, 2));
  // The caret goes elsewhere, and the bar shows what is there.
  SelectPart(1, {4, 4});
  EXPECT_FALSE(Inspector::ItalicButton(View()).GetValue());
}

TEST_F(FormatApply, WholeCaptionsAreMeantWhereTheTextOfTheOnlySelectedOneHasNoFocus) {
  ShowOpen({MakeCaption(1, 2, u"Hello"), MakeCaption(3, 4, u"there")});
  Click(3);
  zebcore::trace::Take();
  Obey(32010);
  EXPECT_EQ(TakeApplications(), (Applications{{2, {3}, kWholeText}}));
  ASSERT_EQ(Stored(3).runs.size(), 1U);
  EXPECT_TRUE(Look(3).italic);
}

TEST_F(FormatApply, OfTwoSelectedCaptionsTheWholeIsMeantWhereverTheCaretStood) {
  ShowOpen({MakeCaption(1, 2, u"Hello"), MakeCaption(3, 4, u"there")});
  SelectPart(1, {1, 3});
  Pane().SelectAllCaptions();
  zebcore::trace::Take();
  Obey(32010);
  EXPECT_EQ(TakeApplications(), (Applications{{2, {1, 3}, kWholeText}}));
  EXPECT_TRUE(Look(1).italic);
  EXPECT_EQ(Stored(1).runs.size(), 1U);
  EXPECT_TRUE(Look(3).italic);
}

TEST_F(FormatApply, SelectedCaptionsComeInTheOrderOfTheirBeginsWhateverTheOrderOfTheClicks) {
  ShowOpen(MakeCaptions({1, 3, 5}));
  Click(5);
  Click(1, 4);
  zebcore::trace::Take();
  Obey(32010);
  EXPECT_EQ(TakeApplications(), (Applications{{2, {1, 5}, kWholeText}}));
  EXPECT_FALSE(Look(3).italic);
}

TEST_F(FormatApply, WithNothingSelectedNothingIsAppliedAndNothingPublished) {
  ShowOpen({MakeLook(1, Sized(30))});
  SelectNothing();
  zebcore::trace::Take();
  const Info held = Shown();
  Obey(32010);
  EXPECT_EQ(TakeApplications(), Applications{});
  EXPECT_EQ(Shown(), held);
  bool isUniform = false;
  EXPECT_TRUE(held->GetIsItalicized(isUniform));
  EXPECT_FALSE(Inspector::ItalicButton(View()).GetValue());
  // Until the next publication.
  Click(1);
  EXPECT_FALSE(Shown()->GetIsItalicized(isUniform));
}

TEST_F(FormatApply, ThePublishedFormatIsANewObjectWhileTheHandlerStillHoldsTheOld) {
  ShowOpen(MakeCaptions({1}));
  const Info held = Shown();
  Obey(32010);
  EXPECT_NE(Shown(), held);
}

TEST_F(FormatApply, ScrubbingTheSizeFrom20To40AppliesOnce40) {
  ShowOpen({MakeLook(1, Sized(20))});
  auto& size = *Inspector::FontSizeControl(View());
  EXPECT_EQ(size.GetValue(), 20);
  const Info held = Shown();
  for (int value = 21; value <= 40; ++value)
    size.Enter(value, kOngoing);
  EXPECT_EQ(TakeApplications(), Applications{});
  EXPECT_EQ(Shown(), held);
  EXPECT_EQ(HeldSize(held), 20);
  size.Enter(40);
  EXPECT_EQ(TakeApplications(), (Applications{{5, {1}, kWholeText}}));
  EXPECT_EQ(Look(1).size, 40);
  EXPECT_EQ(HeldSize(held), 40);
}

TEST_F(FormatApply, NoNumberOfTheBarAppliesAnythingBeforeItsChangeHasFinished) {
  ShowOpen(MakeCaptions({1}));
  View().ObeyCommand(UIF::Command(32013));
  zebcore::trace::Take();
  for (const auto phase : {zebui::ui::UI_InteractiveControlChangedMessage::kChange_Started, kOngoing,
                           zebui::ui::UI_InteractiveControlChangedMessage::kChange_Cancelled}) {
    Inspector::FontSizeControl(View())->Enter(50, phase);
    Inspector::EdgeWidthControl(View())->Enter(5, phase);
    Inspector::LineSpacingControl(View())->Enter(50, phase);
    Inspector::OpacityControl(View())->Enter(50, phase);
    Inspector::OpenPositionXControl(View())->Enter(5, phase);
    Inspector::OpenPositionYControl(View())->Enter(5, phase);
  }
  EXPECT_EQ(TakeApplications(), Applications{});
}

TEST_F(FormatApply, TheDisplayTypeOfTheChosenItemIsApplied) {
  ShowClosed(MakeCaptions({1}));
  const Info held = Shown();
  Inspector::CaptionTypePopup(View())->Choose(3);
  EXPECT_EQ(TakeApplications(), (Applications{{0, {1}, kWholeText}}));
  EXPECT_EQ(Stored(1).paragraph.captionType, Inspector::CaptionTypeMap(View()).left.at(3));
  bool isUniform = false;
  EXPECT_EQ(held->GetCaptionType(isUniform), Stored(1).paragraph.captionType);
  EXPECT_TRUE(isUniform);
}

TEST_F(FormatApply, AnItemThatNoDisplayTypeBelongsToWritesTypeZero) {
  ParagraphStyleAttributes paintOn;
  paintOn.captionType = 1;
  ShowClosed({MakeLook(1, Span(), paintOn)});
  Inspector::CaptionTypeMap(View()).clear();
  Inspector::CaptionTypePopup(View())->Choose(1);
  EXPECT_EQ(Stored(1).paragraph.captionType, 0);
}

TEST_F(FormatApply, TheHeightPopupWritesFixedSizes) {
  ShowStream(kEbuTrack1, MakeCaptions({1}));
  const Info held = Shown();
  Inspector::DoubleHeightPopup(View())->Choose(1);
  EXPECT_EQ(TakeApplications(), (Applications{{5, {1}, kWholeText}}));
  EXPECT_EQ(Look(1).size, 36);
  EXPECT_EQ(HeldSize(held), 36);
  Inspector::DoubleHeightPopup(View())->Choose(0);
  EXPECT_EQ(TakeApplications(), (Applications{{5, {1}, kWholeText}}));
  EXPECT_EQ(Look(1).size, 18);
}

TEST_F(FormatApply, TheThirdItemOfTheHeightPopupWritesNothing) {
  ShowStream(kEbuTrack1, {MakeLook(1, Sized(18)), MakeLook(3, Sized(36))});
  Pane().SelectAllCaptions();
  ASSERT_EQ(Inspector::DoubleHeightPopup(View())->Size(), 3);
  zebcore::trace::Take();
  const Info held = Shown();
  Inspector::DoubleHeightPopup(View())->Choose(2);
  EXPECT_EQ(TakeApplications(), Applications{});
  EXPECT_EQ(Shown(), held);
  EXPECT_EQ(Look(1).size, 18);
  EXPECT_EQ(Look(3).size, 36);
}

TEST_F(FormatApply, AnEdgesWidthBringsTheRedOfANewEdge) {
  ShowOpen(MakeCaptions({1}));
  const Info held = Shown();
  Inspector::EdgeWidthControl(View())->Enter(4.5);
  EXPECT_EQ(TakeApplications(), (Applications{{14, {1}, kWholeText}}));
  EXPECT_EQ(Look(1).edgeWidth, 4.5F);
  EXPECT_EQ(Look(1).edgeColor, kRed);
  // The width is what the view holds at once, the colour goes with the copy alone.
  bool isUniform = false;
  EXPECT_EQ(held->GetTextEdgeWidth(isUniform), 4.5F);
  CaptioningColor color;
  held->GetColor(CaptioningColor::kColorType_Edge, color, isUniform);
  EXPECT_EQ(color, CaptioningColor());
}

TEST_F(FormatApply, AnEdgesWidthBringsTheLastEdgeColourThatCouldBeSeen) {
  struct Row {
    CaptioningColor last;
    CaptioningColor applied;
  };
  const Row rows[] = {{{0, 0.5F, 0.25F, 0.75F}, {0, 0.5F, 0.25F, 0.75F}},
                      {{0, 0, 1, 0}, {0, 0, 1, 1}},
                      {{0, 1, 0, 1}, {0, 1, 0, 1}},
                      {{1, 1, 0, 0.5F}, {1, 1, 0, 0.5F}},
                      {{0, 0, 0, 1}, kRed},
                      {{0, 0, 0, 0}, kRed}};
  for (const Row& row : rows) {
    ShowOpen(MakeCaptions({1}));
    Inspector::LastEdgeColor(View()) = row.last;
    Inspector::EdgeWidthControl(View())->Enter(2);
    EXPECT_EQ(Look(1).edgeColor, row.applied) << row.last.red << ' ' << row.last.green << ' ' << row.last.blue;
  }
}

TEST_F(FormatApply, ALineSpacingOf99Point9IsAppliedAs99) {
  ShowOpen(MakeCaptions({1}));
  const Info held = Shown();
  Inspector::LineSpacingControl(View())->Enter(99.9);
  EXPECT_EQ(TakeApplications(), (Applications{{17, {1}, kWholeText}}));
  EXPECT_EQ(Stored(1).paragraph.lineSpacing, 99);
  bool isUniform = false;
  EXPECT_EQ(held->GetLineSpacing(isUniform), 0);
  EXPECT_EQ(Inspector::LineSpacingControl(View())->GetValue(), 99);
}

TEST_F(FormatApply, ALineSpacingIsNarrowedToSinglePrecisionFirst) {
  ShowOpen(MakeCaptions({1}));
  Inspector::LineSpacingControl(View())->Enter(19.99999999);
  EXPECT_EQ(Stored(1).paragraph.lineSpacing, 20);
}

TEST_F(FormatApply, AnAnchorGoesWithTheCopyAlone) {
  ShowClosed(MakeCaptions({1}));
  const Info held = Shown();
  const auto anchor = held->GetAnchorID();
  Inspector::ClosedPositionGrid(View())->Choose({2, 1});
  EXPECT_EQ(TakeApplications(), (Applications{{6, {1}, kWholeText}}));
  EXPECT_EQ(Stored(1).paragraph.anchor, 5);
  EXPECT_EQ(held->GetAnchorID(), anchor);
}

TEST_F(FormatApply, WhatAPersonChoosesIsNotTakenDownAsGivenByThePanel) {
  ShowOpen(MakeCaptions({1}));
  zebcore::trace::Take();
  const auto firstCall = [] {
    const auto calls = zebcore::trace::Take();
    return calls.empty() ? std::string() : calls.front().call;
  };
  Inspector::OpenPositionGrid(View())->Choose({2, 1});
  EXPECT_EQ(firstCall(), "CaptioningStreamUpdater::ApplyFormatParameter");
  Inspector::ColorPicker(View()).SetColor(UIF::Color{255, 0, 0}, true);
  EXPECT_EQ(firstCall(), "messaging::BroadcastMessage") << "the picker's own";
}

TEST_F(FormatApply, APositionGoesWithTheCopyAloneAndOnlyIfItIsAnotherOne) {
  ShowClosed(MakeCaptions({1}));
  const Info held = Shown();
  Inspector::ClosedPositionXControl(View())->Enter(5);
  EXPECT_EQ(TakeApplications(), (Applications{{15, {1}, kWholeText}}));
  EXPECT_EQ(Stored(1).paragraph.x, 4);
  bool isUniform = false;
  EXPECT_EQ(held->GetPositionX(isUniform), 0);
  Inspector::ClosedPositionXControl(View())->Enter(5);
  EXPECT_EQ(TakeApplications(), Applications{});
}

TEST_F(FormatApply, RegionsStylesAndStreamsApplyNothing) {
  ShowOpen(MakeCaptions({1}));
  for (const auto* popup : {&Inspector::RegionPopup(View()), &Inspector::StylePopup(View())}) {
    (*popup)->SetDisabled(false);
    (*popup)->Choose(0);
  }
  Inspector::StreamPopup(View())->SetDisabled(false);
  Inspector::StreamPopup(View())->Choose(0);
  EXPECT_EQ(TakeApplications(), Applications{});
}

TEST_F(FormatApply, TwoChangesWithNoSelectionChangeBetweenThemAreUndoneTogether) {
  ShowOpen(MakeCaptions({1, 3}));
  const zebcaptioning::CaptionStatePtr before = stream->FindByBegin(Seconds(1))->GetState();
  const auto steps = project->GetUndoNames().size();
  Inspector::FontSizeControl(View())->Enter(40);
  Obey(32010);
  Inspector::EdgeWidthControl(View())->Enter(3);
  EXPECT_EQ(project->GetUndoNames().size(), steps);
  Click(3);
  EXPECT_EQ(project->GetUndoNames().size(), steps + 1);
  EXPECT_TRUE(project->Undo());
  EXPECT_EQ(Stored(1), *before);
  Click(1);
  EXPECT_EQ(Inspector::FontSizeControl(View())->GetValue(), 18);
  EXPECT_FALSE(Inspector::ItalicButton(View()).GetValue());
}

TEST_F(FormatApply, UndoAndRedoOfAFormatOfSeveralCaptionsReturnToTheExactStates) {
  Span red;
  red.textColor = kRed;
  ShowOpen({MakeLook(1, u"Hello", {{0, Span()}, {2, red}}), MakeLook(3, Sized(30))});
  const zebcaptioning::CaptionStatePtr first = stream->FindByBegin(Seconds(1))->GetState();
  const zebcaptioning::CaptionStatePtr second = stream->FindByBegin(Seconds(3))->GetState();
  Pane().SelectAllCaptions();
  PickColor(0, 0, 255);
  Inspector::FontSizeControl(View())->Enter(55);
  Pane().CommitChanges();
  const zebcaptioning::CaptionStatePtr changed = stream->FindByBegin(Seconds(1))->GetState();
  EXPECT_TRUE(project->Undo());
  EXPECT_EQ(Stored(1), *first);
  EXPECT_EQ(Stored(3), *second);
  EXPECT_TRUE(project->Redo());
  EXPECT_EQ(Stored(1), *changed);
}

// --- What a format does not allow

TEST_F(FormatApply, AFaceThatTheFormatLacksIsNotStoredAndTheButtonsShowWhatIs) {
  ShowStream(kTeletextPage1, MakeCaptions({1}));
  const zebcaptioning::CaptionStatePtr before = stream->FindByBegin(Seconds(1))->GetState();
  Obey(32010);
  Obey(32011);
  EXPECT_EQ(TakeApplications(), (Applications{{2, {1}, kWholeText}, {1, {1}, kWholeText}}));
  EXPECT_EQ(Stored(1), *before);
  EXPECT_FALSE(Inspector::ItalicButton(View()).GetValue());
  EXPECT_FALSE(Inspector::UnderlineButton(View()).GetValue());
  bool isUniform = false;
  EXPECT_FALSE(Shown()->GetIsItalicized(isUniform));
}

TEST_F(FormatApply, AHeightThatTheFormatLacksIsNotStoredAndThePopupShowsWhatIs) {
  ShowClosed(MakeCaptions({1}));
  auto& popup = *Inspector::DoubleHeightPopup(View());
  popup.SetDisabled(false);
  popup.Choose(1);
  EXPECT_EQ(TakeApplications(), (Applications{{5, {1}, kWholeText}}));
  EXPECT_EQ(Look(1).size, 18);
  EXPECT_EQ(popup.GetValue(), 0);
}

TEST_F(FormatApply, AColourThatTheFormatLacksIsNotStoredAndTheSwatchShowsWhatIs) {
  ShowClosed(MakeCaptions({1}));
  PickColor(120, 30, 60);
  EXPECT_EQ(TakeApplications(), (Applications{{8, {1}, kWholeText}}));
  EXPECT_EQ(Look(1).textColor, kWhite);
  EXPECT_EQ(Inspector::ColorSwatch(View())->GetValue(), (zebui::controls::UnManagedRGBA{1, 1, 1, 1}));
}

TEST_F(FormatApply, APositionOutsideTheGridIsMovedIntoItAndTheControlShowsWhere) {
  ShowClosed(MakeCaptions({1}));
  auto& x = *Inspector::ClosedPositionXControl(View());
  x.SetMaxValue(500);
  x.Enter(400);
  EXPECT_EQ(Stored(1).paragraph.x, 31);
  EXPECT_EQ(x.GetValue(), 32);
}

} // namespace Captivo::Testing
