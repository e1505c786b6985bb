#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTextEdit>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "Screen.h"
#include "zebui/Controls.h"
#include "zebui/Driver.h"
#include "zebui/LineEndText.h"
#include "zebui/NodeManager.h"

using namespace zebui;
using controls::UI_TextEdit;
using zebcore::UString;
using Changes = std::vector<int>;

namespace {

struct Edit {
  Changes changes;
  int changed = 0;
  test::Window window;
  boost::intrusive_ptr<UI_TextEdit> edit = window.Add(new UI_TextEdit(1, 0));

  Edit() {
    edit->NotifyWhenChangedInteractively([this](const ui::UI_InteractiveControlChangedMessage& message) {
      changes.push_back(message.GetChangeMessage());
    });
    edit->NotifyWhenChanged([this](const ui::UI_ControlChangedMessage&) { ++changed; });
  }
  void Enter() {
    edit->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
    changes.clear();
    changed = 0;
  }
};

using Range = std::pair<std::size_t, std::size_t>;

} // namespace

TEST(TextEdit, KeepsTheLineEndsThatItWasGiven) {
  Edit t;
  t.edit->SetValue(u"a\r\nb\nc\rd", false);
  EXPECT_EQ(t.edit->GetValue(), u"a\r\nb\nc\rd");
}

TEST(TextEdit, ACaretIsNeverInsideACharacterOfTwoUnits) {
  Edit t;
  t.edit->SetValue(u"a\U0001F600b", false);
  t.edit->SetSelection({2, 2});
  EXPECT_EQ(t.edit->GetSelection(), Range(1, 1));
  t.Enter();
  t.edit->SetSelection({2, 2});
  driver::TypeText(u"x");
  EXPECT_EQ(t.edit->GetValue(), u"ax\U0001F600b");
}

TEST(TextEdit, ASelectionThatBeginsOrEndsInsideACharacterHoldsAllOfIt) {
  Edit t;
  t.edit->SetValue(u"a\U0001F600b\U0001F601", false);
  for (const auto& [asked, held] :
       {std::pair{Range(2, 4), Range(1, 4)}, {Range(0, 2), Range(0, 3)}, {Range(5, 2), Range(1, 6)}}) {
    t.edit->SetSelection(asked);
    EXPECT_EQ(t.edit->GetSelection(), held) << asked.first << " " << asked.second;
  }
}

TEST(TextEdit, AnotherTextThatPutsACharacterWhereTheCaretWasPutsTheCaretInFrontOfIt) {
  Edit t;
  t.edit->SetValue(u"abc", false);
  t.edit->SetSelection({1, 1});
  t.edit->SetValue(u"\U0001F600c", false);
  EXPECT_EQ(t.edit->GetSelection(), Range(0, 0));
}

TEST(TextEdit, EnterPutsInCarriageReturnAndLineFeed) {
  Edit t;
  t.edit->SetValue(u"ab\nc", false);
  t.Enter();
  t.edit->SetSelection({1, 1});
  driver::PressKey(ui::kKeyboardCode_Enter);
  EXPECT_EQ(t.edit->GetValue(), u"a\r\nb\nc");
  EXPECT_EQ(t.edit->GetSelection(), Range(3, 3));
}

TEST(TextEdit, ShiftEnterPutsInTheSameLineEnd) {
  Edit t;
  t.Enter();
  driver::PressKey(ui::kKeyboardCode_Enter, ui::kModKey_Shift, u"\r");
  EXPECT_EQ(t.edit->GetValue(), u"\r\n");
}

TEST(TextEdit, SelectionsCountCarriageReturnAndLineFeedSeparately) {
  Edit t;
  t.edit->SetValue(u"ab\r\ncd", false);
  t.edit->SetSelection({4, 6});
  EXPECT_EQ(t.edit->GetSelection(), Range(4, 6));
}

TEST(TextEdit, ASelectionPastTheEndIsBroughtInside) {
  Edit t;
  t.edit->SetValue(u"abc", false);
  t.edit->SetSelection({0, static_cast<std::size_t>(-1)});
  EXPECT_EQ(t.edit->GetSelection(), Range(0, 3));
}

TEST(TextEdit, SelectionAndTextOutliveTheScreen) {
  Edit t;
  t.edit->SetValue(u"ab\r\ncd", false);
  t.edit->SetSelection({4, 5});
  t.window.root->ChildRemove(t.edit);
  EXPECT_EQ(t.edit->GetValue(), u"ab\r\ncd");
  EXPECT_EQ(t.edit->GetSelection(), Range(4, 5));
  t.window.root->ChildPushBack(t.edit);
  EXPECT_EQ(t.edit->GetSelection(), Range(4, 5));
}

TEST(TextEdit, SettingAValueKeepsTheCaretAsFarAsTheTextAllows) {
  Edit t;
  t.edit->SetValue(u"abcdef", false);
  t.edit->SetSelection({4, 4});
  t.edit->SetValue(u"uvwxyz", false);
  EXPECT_EQ(t.edit->GetSelection(), Range(4, 4));
  t.edit->SetValue(u"uv", false);
  EXPECT_EQ(t.edit->GetSelection(), Range(2, 2));
}

TEST(TextEdit, AValueSetByTheProgramIsNotReported) {
  Edit t;
  t.edit->SetValue(u"abc", false);
  EXPECT_TRUE(t.changes.empty());
  EXPECT_EQ(t.changed, 0);
}

TEST(TextEdit, AValueSetWithTheFlagIsReportedAsIfAPersonHadEnteredChangedAndLeft) {
  Edit t;
  t.edit->SetValue(u"abc", true);
  EXPECT_EQ(t.changes, Changes({0, 1, 2}));
  EXPECT_EQ(t.changed, 1);
}

TEST(TextEdit, AChangeStartsOnEntryIsReportedPerKeyAndFinishesOnLeaving) {
  Edit t;
  t.edit->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  EXPECT_EQ(t.changes, Changes({0}));
  driver::TypeText(u"ab");
  EXPECT_EQ(t.changes, Changes({0, 1, 1}));
  EXPECT_EQ(t.changed, 2);
  toolkit::MoveFocus(nullptr, ui::kFocusChange_Program);
  EXPECT_EQ(t.changes, Changes({0, 1, 1, 2}));
  EXPECT_EQ(t.edit->GetValue(), u"ab");
}

TEST(TextEdit, AProgramThatBringsTheFocusBackStartsNoChangeBeforeTheNextKey) {
  Edit t;
  t.edit->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  EXPECT_TRUE(t.edit->UI_HasKeyboardFocus(false));
  EXPECT_EQ(t.changes, Changes());
  driver::TypeText(u"a");
  EXPECT_EQ(t.changes, Changes({0, 1}));
}

TEST(TextEdit, TypingAfterACancelStartsAnewChange) {
  Edit t;
  t.Enter();
  t.edit->CancelInteractiveChange();
  t.edit->CancelInteractiveChange();
  EXPECT_EQ(t.changes, Changes({3}));
  driver::TypeText(u"a");
  EXPECT_EQ(t.changes, Changes({3, 0, 1}));
}

TEST(TextEdit, TabMovesOnAndPutsInNothing) {
  Edit t;
  const auto second = t.window.Add(new UI_TextEdit(1, 0), 0, 80);
  t.window.widget.show();
  t.Enter();
  driver::PressKey(ui::kKeyboardCode_Tab, ui::kModKey_None, u"\t");
  EXPECT_TRUE(second->UI_HasKeyboardFocus(false));
  EXPECT_EQ(t.edit->GetValue(), u"");
  driver::PressKey(ui::kKeyboardCode_Tab, ui::kModKey_Shift);
  EXPECT_TRUE(t.edit->UI_HasKeyboardFocus(false));
  driver::PressKey(ui::kKeyboardCode_Tab, ui::kModKey_Control, u"\t");
  EXPECT_TRUE(second->UI_HasKeyboardFocus(false)) << "with Control too, for texts that keep Tab to themselves";
  EXPECT_EQ(t.edit->GetValue(), u"");
}

TEST(TextEdit, BackspaceOverALineEndTakesBothUnits) {
  Edit t;
  t.edit->SetValue(u"a\r\nb", false);
  t.Enter();
  t.edit->SetSelection({3, 3});
  driver::PressKey(ui::kKeyboardCode_Backspace);
  EXPECT_EQ(t.edit->GetValue(), u"ab");
  EXPECT_EQ(t.changes, Changes({1}));
}

TEST(TextEdit, ASurrogatePairIsOneKeyAndGoesAsOne) {
  Edit t;
  t.Enter();
  driver::TypeText(u"a\U0001F3B5b");
  EXPECT_EQ(t.edit->GetValue(), u"a\U0001F3B5b");
  EXPECT_EQ(t.changed, 3);
  t.edit->SetSelection({3, 3});
  driver::PressKey(ui::kKeyboardCode_Backspace);
  EXPECT_EQ(t.edit->GetValue(), u"ab");
}

TEST(TextEdit, WhatIsComposedIsReportedWhenItIsMeantAndNotBefore) {
  Edit t;
  t.Enter();
  driver::ComposeText(u"ni", u"\u4F60");
  EXPECT_EQ(t.edit->GetValue(), u"\u4F60");
  EXPECT_EQ(t.changes, Changes({1}));
}

TEST(TextEdit, CopyingKeepsLineEndsAndPastingPutsInCarriageReturnAndLineFeed) {
  Edit t;
  t.edit->SetValue(u"a\nb\r\nc", false);
  t.Enter();
  t.edit->SetSelection({0, 6});
  ASSERT_TRUE(t.edit->CanCopy());
  t.edit->Copy();
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdU16String(), u"a\nb\r\nc");
  ASSERT_TRUE(t.edit->CanPaste());
  t.edit->SetSelection({6, 6});
  t.edit->Paste();
  EXPECT_EQ(t.edit->GetValue(), u"a\nb\r\nca\r\nb\r\nc");
}

TEST(TextEdit, CutAndDeleteTakeTheSelectionAndAreReported) {
  Edit t;
  t.edit->SetValue(u"abcd", false);
  t.Enter();
  EXPECT_FALSE(t.edit->CanCut());
  t.edit->SetSelection({0, 2});
  t.edit->Cut();
  EXPECT_EQ(t.edit->GetValue(), u"cd");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("ab"));
  t.edit->SetSelection({0, 1});
  t.edit->Delete();
  EXPECT_EQ(t.edit->GetValue(), u"d");
  EXPECT_EQ(t.changes, Changes({1, 1}));
}

TEST(TextEdit, ADisabledTextCanNeitherBeCutNorPastedInto) {
  Edit t;
  t.edit->SetValue(u"abcd", false);
  t.edit->SetSelection({0, 2});
  t.edit->SetDisabled(true);
  EXPECT_FALSE(t.edit->CanCut());
  EXPECT_FALSE(t.edit->CanPaste());
  EXPECT_TRUE(t.edit->CanCopy());
}

TEST(TextEdit, HasNoUndoOfItsOwn) {
  Edit t;
  t.Enter();
  driver::TypeText(u"abc");
  EXPECT_FALSE(driver::PressKey(ui::KeyboardCode('Z'), ui::kModKey_Control, u"\x1a"));
  EXPECT_EQ(t.edit->GetValue(), u"abc");
}

TEST(TextEdit, ALongTextScrollsBackToItsBeginning) {
  Edit t;
  UString text;
  for (int i = 0; i < 40; ++i)
    text += u"line\r\n";
  t.edit->SetValue(text, false);
  t.window.widget.show();
  t.Enter();
  t.edit->SetSelection({text.size(), text.size()});
  driver::TypeText(u"x");
  EXPECT_GT(t.edit->GetScrollPosition(), 0);
  t.edit->ScrollToBegin();
  EXPECT_EQ(t.edit->GetScrollPosition(), 0);
}

TEST(TextEdit, BeginsAtItsBeginningAlsoWhenItWasShownBeforeItHadRoom) {
  Edit t;
  t.edit->UI_SetLocalRectF({0, 0, 0, 0});
  t.edit->SetValue(u"Wind from the west, four knots.\r\nThe Marigold goes out first.", false);
  t.window.widget.show();
  t.edit->UI_Show(true);
  t.edit->UI_SetLocalRectF({0, 0, 100, 60});
  auto* const widget = static_cast<QAbstractScrollArea*>(toolkit::WidgetOf(t.edit.get()));
  ASSERT_GT(widget->verticalScrollBar()->maximum(), 0) << "it has more lines than room";
  EXPECT_EQ(widget->verticalScrollBar()->value(), 0);
}

TEST(TextEdit, AFontIsReadBackAsItWasSet) {
  Edit t;
  UString family;
  UString style;
  float size = 0;
  t.edit->GetFont(family, style, size);
  EXPECT_GT(size, 0);
  const UString bold = u"Bold";
  t.edit->SetFont(L"DejaVu Sans", 17, &bold);
  t.edit->GetFont(family, style, size);
  EXPECT_EQ(family, u"DejaVu Sans");
  EXPECT_EQ(style, u"Bold");
  EXPECT_EQ(size, 17);
  const auto* widget = static_cast<QWidget*>(toolkit::WidgetOf(t.edit.get()));
  EXPECT_EQ(widget->font().pixelSize(), 17);
  EXPECT_TRUE(widget->font().bold());
}

TEST(TextEdit, AnEventThatTheSubclassKeepsToItselfTypesNothing) {
  struct Deaf : UI_TextEdit {
    Deaf() : UI_TextEdit(1, 0) {}
    bool UI_DoKeyboardEvent(ui::UI_Node*, const ui::KeyboardEvent&) override { return true; }
  };
  test::Window window;
  const auto edit = window.Add(new Deaf);
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  EXPECT_TRUE(driver::TypeText(u"abc"));
  EXPECT_EQ(edit->GetValue(), u"");
}

TEST(TextEdit, ASyntheticKeyThroughTheNodeManagerTypesItsCharacterOnce) {
  Edit t;
  t.Enter();
  const auto result = ui::UI_NodeManager::Get()->DispatchKeyboardEvent(
      {ui::kKeyboardEvent_KeyDown, ui::KeyboardCode('A'), ui::kModKey_None, u'a'});
  EXPECT_FALSE(result.filtered);
  EXPECT_TRUE(result.handled);
  EXPECT_EQ(t.edit->GetValue(), u"a");
}

TEST(TextEdit, MayBeTakenAwayByTheOneWhoHearsOfItsChange) {
  test::Window window;
  auto edit = window.Add(new UI_TextEdit(1, 0));
  edit->NotifyWhenChanged([&](const ui::UI_ControlChangedMessage&) {
    window.root->ChildRemove(edit);
    edit = nullptr;
  });
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  driver::TypeText(u"abc");
  EXPECT_EQ(edit, nullptr);
  EXPECT_EQ(ui::UI_NodeManager::Get()->GetFocusNode(), nullptr);
}

TEST(TextEdit, OfOneLineTakesEnterAsTheEndOfTheChange) {
  Changes changes;
  test::Window window;
  const auto edit = window.Add(new UI_TextEdit(0, 0));
  edit->NotifyWhenChangedInteractively(
      [&](const ui::UI_InteractiveControlChangedMessage& message) { changes.push_back(message.GetChangeMessage()); });
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  driver::TypeText(u"a\n");
  EXPECT_EQ(edit->GetValue(), u"a");
  EXPECT_EQ(changes, Changes({0, 1, 2}));
}

TEST(TextEdit, WhatOneCallbackThrowsEndsAtTheBoundary) {
  Edit t;
  t.edit->NotifyWhenChanged([](const ui::UI_ControlChangedMessage&) { throw std::runtime_error("broken"); });
  t.Enter();
  driver::TypeText(u"a");
  EXPECT_EQ(t.edit->GetValue(), u"a");
}

RC_GTEST_PROP(TextEdit, AnyTextComesBackUnchangedWithAnySelection, ()) {
  static test::Window* const window = new test::Window;
  static const auto edit = window->Add(new UI_TextEdit(1, 0));
  const auto units = *rc::gen::container<std::vector<char16_t>>(rc::gen::element<char16_t>(
      u'a', u'\r', u'\n', u'\u2029', u'\u2028', 0xFDD0, 0xFDD1, 0xD83D, 0xDE00, 0xA0, u'\t'));
  const UString text(units.begin(), units.end());
  edit->SetValue(text, false);
  RC_ASSERT(edit->GetValue() == text);
  const controls::LineEndText kept(text);
  const auto* widget = dynamic_cast<QTextEdit*>(toolkit::WidgetOf(edit.get()));
  RC_ASSERT(widget->document()->toRawText().toStdU16String() == kept.GetShown());
}

RC_GTEST_PROP(TextEdit, KeysDoToTheTextWhatTheyDoToAPlainString, ()) {
  static test::Window* const window = new test::Window;
  static const auto edit = window->Add(new UI_TextEdit(1, 0));
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  edit->SetValue(u"", false);
  // The model: pieces that are one step of the caret each, and the caret among them.
  std::vector<UString> pieces;
  std::size_t caret = 0;
  const auto keys = *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 7));
  for (const int key : keys) {
    const auto at = [&](std::size_t i) { return pieces.begin() + static_cast<std::ptrdiff_t>(i); };
    switch (key) {
    case 0:
    case 1:
      driver::TypeText(key == 0 ? u"x" : u"y");
      pieces.insert(at(caret++), key == 0 ? u"x" : u"y");
      break;
    case 2:
      driver::PressKey(ui::kKeyboardCode_Enter);
      pieces.insert(at(caret++), u"\r\n");
      break;
    case 3:
      driver::PressKey(ui::kKeyboardCode_Backspace);
      if (caret > 0)
        pieces.erase(at(--caret));
      break;
    case 4:
      driver::PressKey(ui::kKeyboardCode_Delete);
      if (caret < pieces.size())
        pieces.erase(at(caret));
      break;
    case 5:
      driver::PressKey(ui::kKeyboardCode_Left);
      caret -= caret > 0 ? 1 : 0;
      break;
    default:
      driver::PressKey(ui::kKeyboardCode_Right);
      caret += caret < pieces.size() ? 1 : 0;
      break;
    }
    UString text;
    std::size_t position = 0;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      position += i < caret ? pieces[i].size() : 0;
      text += pieces[i];
    }
    RC_ASSERT(edit->GetValue() == text);
    RC_ASSERT(edit->GetSelection() == Range(position, position));
  }
}
