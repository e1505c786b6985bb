#include "Support.h"
#include "zebui/Keyboard.h"
#include "zebui/NodeManager.h"

// Phases, modifiers and reasons that the text of a row tells apart.
namespace Captivo::Testing {

namespace {

using namespace zebui::ui;

class TextEditPhases : public PanelTest {
 protected:
  TextEditPhases() { OpenPanelOn({MakeCaption(1, 2, u"One"), MakeCaption(3, 4, u"Three")}); }
  bool Filter(double row, KeyboardEventType type, ModKey modifiers = kModKey_None) {
    return Text(row).UI_DoPreKeyboardEvent(nullptr, {type, kKeyboardCode_Escape, modifiers});
  }
  // Whether a Tab was used, and whether the focus has stayed.
  using Outcome = std::pair<bool, bool>;
  const Outcome kSwallowed{true, true};
  Outcome Send(KeyboardEventType type, ModKey modifiers) {
    FocusText(1);
    const bool used = Text(1).UI_DoKeyboardEvent(&Text(1), {type, kKeyboardCode_Tab, modifiers});
    return {used, Text(1).UI_HasKeyboardFocus(false)};
  }
  // The same, had the row's text no mind of its own.
  Outcome SendBelow(KeyboardEventType type, ModKey modifiers) {
    FocusText(1);
    const bool used =
        Text(1).zebui::controls::UI_TextEdit::UI_DoKeyboardEvent(&Text(1), {type, kKeyboardCode_Tab, modifiers});
    return {used, Text(1).UI_HasKeyboardFocus(false)};
  }
  std::size_t CountReverts() { return TakeCalls("CaptioningStreamUpdater::RevertChanges").size(); }
  UString LongText() {
    UString lines;
    for (int i = 0; i < 40; ++i)
      lines += u"line\r\n";
    return lines;
  }
};

} // namespace

TEST_F(TextEditPhases, TheNumbersOfKeysPhasesAndReasonsAreTheHosts) {
  EXPECT_EQ(kKeyboardCode_Escape.GetNumber(), 6);
  EXPECT_EQ(kKeyboardCode_Tab.GetNumber(), 3);
  EXPECT_EQ(int{kKeyboardEvent_KeyDown}, 2);
  EXPECT_EQ(kFocusChange_Program, 3);
  EXPECT_EQ(kFocusChange_Window, 5);
}

TEST_F(TextEditPhases, EscapeWithNothingChangedIsSwallowedAndRevertsNothing) {
  FocusText(1);
  Text(1).FinishInteractiveChange();
  zebcore::trace::Take();
  EXPECT_TRUE(Filter(1, kKeyboardEvent_KeyDown));
  EXPECT_EQ(CountReverts(), 0U);
}

TEST_F(TextEditPhases, OnlyTheTextThatHasTheFocusSwallowsEscape) {
  FocusText(3);
  Text(3).SetValue(u"Changed", true);
  zebcore::trace::Take();
  for (const KeyboardEventType type :
       {kKeyboardEvent_Shortcut, kKeyboardEvent_KeyDown, kKeyboardEvent_Character, kKeyboardEvent_KeyUp})
    EXPECT_FALSE(Filter(1, type)) << type;
  EXPECT_EQ(CountReverts(), 0U);
  EXPECT_EQ(Row(3)->GetText(), u"Changed");
  const auto dispatch = UI_NodeManager::Get()->DispatchKeyboardEvent(
      KeyboardEvent(kKeyboardEvent_KeyDown, kKeyboardCode_Escape, kModKey_None));
  EXPECT_TRUE(dispatch.filtered) << "though the text of another row is asked first";
  EXPECT_EQ(CountReverts(), 1U);
  EXPECT_EQ(Row(3)->GetText(), u"Three");
}

TEST_F(TextEditPhases, EscapeWithAnyModifierHeldIsNoCancelInAnyPhase) {
  FocusText(1);
  Text(1).SetValue(u"Changed", true);
  zebcore::trace::Take();
  for (const ModKey modifier : {kModKey_Shift, kModKey_Control, kModKey_Alt, kModKey_Meta}) {
    for (const KeyboardEventType type : {kKeyboardEvent_KeyDown, kKeyboardEvent_KeyUp})
      EXPECT_FALSE(Filter(1, type, modifier)) << modifier << ' ' << type;
  }
  EXPECT_EQ(CountReverts(), 0U);
  EXPECT_EQ(Row(1)->GetText(), u"Changed");
}

TEST_F(TextEditPhases, AnyOtherKeyPassesTheFilter) {
  FocusText(1);
  for (const KeyboardCode code : {kKeyboardCode_Enter, kKeyboardCode_Tab, kKeyboardCode_Delete, kKeyboardCode_Left})
    EXPECT_FALSE(Text(1).UI_DoPreKeyboardEvent(nullptr, {kKeyboardEvent_KeyDown, code, kModKey_None}))
        << code.GetNumber();
}

TEST_F(TextEditPhases, ATextThatIsGoneSeesNoMoreKeys) {
  FocusText(1);
  Text(1).SetValue(u"Changed", true);
  const boost::intrusive_ptr<CaptionsTextEdit> gone = Row(1)->GetTextEdit();
  const int held = static_cast<int>(gone->use_count());
  ASSERT_GE(held, 1);
  Row(1)->DestroyControls();
  const auto dispatch = UI_NodeManager::Get()->DispatchKeyboardEvent(
      KeyboardEvent(kKeyboardEvent_KeyDown, kKeyboardCode_Escape, kModKey_None));
  EXPECT_FALSE(dispatch.filtered);
}

TEST_F(TextEditPhases, TheTabKeyIsSwallowedOnlyAsItGoesDown) {
  EXPECT_EQ(Send(kKeyboardEvent_KeyDown, kModKey_None), kSwallowed);
  for (const KeyboardEventType type : {kKeyboardEvent_Shortcut, kKeyboardEvent_Character, kKeyboardEvent_KeyUp})
    EXPECT_EQ(Send(type, kModKey_None), SendBelow(type, kModKey_None)) << type;
}

TEST_F(TextEditPhases, EachModifierButTwoLetsTheTabKeyThrough) {
  for (const ModKey also : {kModKey_None, kModKey_Shift, ModKey(kModKey_Shift | kModKey_CapsLock)}) {
    for (int bit = 0; bit < 8; ++bit) {
      const auto modifier = static_cast<ModKey>(1U << bit);
      const bool isSwallowed = modifier == kModKey_Shift || modifier == kModKey_CapsLock;
      const Outcome below = SendBelow(kKeyboardEvent_KeyDown, modifier | also);
      EXPECT_NE(below, kSwallowed) << modifier << ": or the difference is not seen";
      EXPECT_EQ(Send(kKeyboardEvent_KeyDown, modifier | also), isSwallowed ? kSwallowed : below) << modifier;
    }
  }
}

TEST_F(TextEditPhases, NoOtherChangeOfTheFocusFinishesAChangeHere) {
  FocusText(1);
  Text(1).SetValue(u"Changed", true);
  for (const FocusChangeReason reason :
       {kFocusChange_None, kFocusChange_Advance, kFocusChange_GoBack, kFocusChange_Program, kFocusChange_Pointer}) {
    Text(1).UI_FocusChanged(reason);
    EXPECT_TRUE(Text(1).IsInteractiveChangeUnderWay()) << reason;
  }
}

TEST_F(TextEditPhases, LeavingTheWindowSendsTheTextAndKeepsTheChangeOpen) {
  FocusText(1);
  Text(1).SetValue(u"Changed", true);
  zebcore::trace::Take();
  Text(1).UI_FocusChanged(kFocusChange_Window);
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::"), std::vector<std::string>{}) << "the text went with the last key";
  EXPECT_EQ(stream->FindByBegin(Seconds(1))->GetState()->text, u"Changed");
}

TEST_F(TextEditPhases, AChangeOfTheFocusThatLeavesItHereDoesNotScroll) {
  FocusText(1);
  Text(1).SetValue(LongText(), true);
  Text(1).SetSelection({200, 200});
  const int scrolled = Text(1).GetScrollPosition();
  ASSERT_GT(scrolled, 0);
  for (const FocusChangeReason reason : {kFocusChange_None, kFocusChange_Program, kFocusChange_Window})
    Text(1).UI_FocusChanged(reason);
  EXPECT_EQ(Text(1).GetScrollPosition(), scrolled);
  Pane().SetFocus();
  EXPECT_EQ(Text(1).GetScrollPosition(), 0);
}

TEST_F(TextEditPhases, EachPartOfAnEditReachesTheRow) {
  FocusText(3);
  Text(3).FinishInteractiveChange();
  Pane().SelectCaptionAtTime(Seconds(1));
  Text(3).StartInteractiveChange();
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{3})) << "entered";
  Text(3).SetValue(u"Changed", false);
  Text(3).FinishInteractiveChange();
  EXPECT_EQ(stream->FindByBegin(Seconds(3))->GetState()->text, u"Changed") << "finished";
  Text(3).StartInteractiveChange();
  Text(3).CancelInteractiveChange();
  EXPECT_EQ(stream->FindByBegin(Seconds(3))->GetState()->text, u"Three") << "cancelled";
  EXPECT_TRUE(Pane().HasFocus());
}

} // namespace Captivo::Testing
