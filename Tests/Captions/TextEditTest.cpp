#include "Support.h"
#include "zebui/Driver.h"
#include "zebui/Keyboard.h"
#include "zebui/NodeManager.h"

namespace Captivo::Testing {

namespace {

using namespace zebui::ui;

class TextEditing : public PanelTest {
 protected:
  TextEditing() { OpenPanelOn({MakeCaption(1, 2, u"One"), MakeCaption(3, 4, u"Three")}); }
  UI_NodeManager::Dispatch Send(KeyboardEventType type, KeyboardCode code, ModKey modifiers = kModKey_None) {
    return UI_NodeManager::Get()->DispatchKeyboardEvent(KeyboardEvent(type, code, modifiers));
  }
  // The text as a person would leave it half typed.
  void TypeInto(double begin, const UString& text) {
    FocusText(begin);
    Text(begin).SetValue(text, true);
  }
};

} // namespace

TEST_F(TextEditing, EscapeWithTheFocusElsewherePassesTheTextBy) {
  TypeInto(1, u"Changed");
  EXPECT_FALSE(Text(3).UI_DoPreKeyboardEvent(nullptr, {kKeyboardEvent_KeyDown, kKeyboardCode_Escape, kModKey_None}));
  EXPECT_EQ(Row(1)->GetText(), u"Changed");
}

TEST_F(TextEditing, EscapeWithAModifierIsNoCancel) {
  TypeInto(1, u"Changed");
  EXPECT_FALSE(Text(1).UI_DoPreKeyboardEvent(nullptr, {kKeyboardEvent_KeyDown, kKeyboardCode_Escape, kModKey_Shift}));
  EXPECT_EQ(Row(1)->GetText(), u"Changed");
}

TEST_F(TextEditing, EscapeCancelsOnceOnKeyDownAndIsSwallowedInEveryPhase) {
  TypeInto(1, u"Changed");
  ASSERT_EQ(stream->FindByBegin(Seconds(1))->GetState()->text, u"Changed");
  zebcore::trace::Take();
  for (const KeyboardEventType phase : {kKeyboardEvent_Shortcut, kKeyboardEvent_Character, kKeyboardEvent_KeyUp}) {
    EXPECT_TRUE(Send(phase, kKeyboardCode_Escape).filtered) << phase;
    EXPECT_EQ(Row(1)->GetText(), u"Changed") << phase;
  }
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::RevertChanges").size(), 0U);
  EXPECT_TRUE(Send(kKeyboardEvent_KeyDown, kKeyboardCode_Escape).filtered);
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::RevertChanges").size(), 1U);
  EXPECT_EQ(Row(1)->GetText(), u"One");
  EXPECT_EQ(Text(1).GetValue(), u"One");
  EXPECT_EQ(stream->FindByBegin(Seconds(1))->GetState()->text, u"One");
}

TEST_F(TextEditing, TheTabKeyIsSwallowedWithNoModifierButShiftOrCapsLock) {
  FocusText(1);
  for (const ModKey modifiers :
       {kModKey_None, kModKey_Shift, kModKey_CapsLock, ModKey(kModKey_Shift | kModKey_CapsLock)}) {
    EXPECT_TRUE(Text(1).UI_DoKeyboardEvent(&Text(1), {kKeyboardEvent_KeyDown, kKeyboardCode_Tab, modifiers}));
    EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false)) << modifiers;
    EXPECT_EQ(Text(1).GetValue(), u"One");
    zebui::driver::PressKey(kKeyboardCode_Tab, modifiers);
    EXPECT_TRUE(Text(1).UI_HasKeyboardFocus(false)) << modifiers;
    EXPECT_EQ(Text(1).GetValue(), u"One");
  }
}

TEST_F(TextEditing, TheTabKeyWithAnotherModifierReachesTheTextControl) {
  FocusText(1);
  const KeyboardEvent event(kKeyboardEvent_KeyDown, kKeyboardCode_Tab, kModKey_Control);
  EXPECT_TRUE(Text(1).UI_DoKeyboardEvent(&Text(1), event));
  EXPECT_FALSE(Text(1).UI_HasKeyboardFocus(false)) << "which is left by it";
  EXPECT_EQ(Text(1).GetValue(), u"One");
}

TEST_F(TextEditing, ALongTextShowsItsBeginningAgainOnceTheFocusHasLeft) {
  UString lines;
  for (int i = 0; i < 40; ++i)
    lines += u"line\r\n";
  TypeInto(1, lines);
  Text(1).SetSelection({lines.size(), lines.size()});
  Text(1).UI_FocusChanged(kFocusChange_None);
  const int scrolled = Text(1).GetScrollPosition();
  EXPECT_GT(scrolled, 0);
  FocusText(3);
  EXPECT_EQ(Text(1).GetScrollPosition(), 0);
}

TEST_F(TextEditing, LeavingTheWindowFinishesTheChange) {
  TypeInto(1, u"Changed");
  ASSERT_TRUE(Text(1).IsInteractiveChangeUnderWay());
  Text(1).UI_FocusChanged(kFocusChange_Window);
  EXPECT_FALSE(Text(1).IsInteractiveChangeUnderWay());
}

TEST_F(TextEditing, EnteringATextSelectsItsRow) {
  FocusText(3);
  Text(3).StartInteractiveChange();
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{3}));
}

} // namespace Captivo::Testing
