#include "zebui/SearchBox.h"

#include <QAccessible>
#include <QClipboard>
#include <QTextEdit>
#include <gtest/gtest.h>

#include "Pointer.h"
#include "Screen.h"
#include "zebui/Driver.h"

using namespace zebui;
using controls::UI_SearchBox;

namespace {

struct SearchBox : testing::Test {
  test::Window window;
  boost::intrusive_ptr<UI_SearchBox> box;
  std::string log;

  void SetUp() override { Make(false); }
  void Make(bool searchOnEnter) {
    if (box)
      window.root->ChildRemove(box);
    box = new UI_SearchBox(false, searchOnEnter);
    box->NotifyWhenChangedInteractively([this](const ui::UI_InteractiveControlChangedMessage& message) {
      log += std::to_string(message.GetChangeMessage()) + " ";
    });
    box->NotifyWhenChanged([this](const ui::UI_ControlChangedMessage&) { log += "changed "; });
    box->UI_SetLocalRectF({3, 3, 167, 19});
    window.root->ChildPushBack(box);
    box->UI_SetToolTip(u"Filter caption content", 400);
    window.Activate();
  }
  void Focus() {
    box->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
    log.clear();
  }
  QTextEdit* Widget() const { return static_cast<QTextEdit*>(toolkit::WidgetOf(box.get())); }
  // The button that empties it, by what assistive technology calls it.
  QWidget* ClearButton() const {
    for (QWidget* part : Widget()->findChildren<QWidget*>())
      if (part->accessibleName() == QStringLiteral("Clear search"))
        return part;
    return nullptr;
  }
};

} // namespace

TEST_F(SearchBox, ReportsInteractivelyWithEveryKey) {
  Focus();
  driver::TypeText(u"ab");
  EXPECT_EQ(log, "1 1 ");
  EXPECT_EQ(box->GetValue(), u"ab");
}

TEST_F(SearchBox, ReportsAsChangedOnEnter) {
  Focus();
  driver::TypeText(u"a");
  log.clear();
  driver::PressKey(ui::kKeyboardCode_Enter);
  EXPECT_EQ(log, "changed 2 ");
  EXPECT_EQ(box->GetValue(), u"a");
}

TEST_F(SearchBox, ReportsOnlyOnEnterIfItIsToldSo) {
  Make(true);
  Focus();
  driver::TypeText(u"ab");
  EXPECT_EQ(log, "");
  driver::PressKey(ui::kKeyboardCode_Enter);
  EXPECT_EQ(log, "1 changed 2 ");
}

TEST_F(SearchBox, ReportsInteractivelyOnceForATextThatIsSetAsAPersonWould) {
  box->SetValue(u"abc", true);
  EXPECT_EQ(log, "0 1 2 ");
}

TEST_F(SearchBox, IsEmptiedByEscape) {
  Focus();
  driver::TypeText(u"ab");
  log.clear();
  EXPECT_TRUE(driver::PressKey(ui::kKeyboardCode_Escape));
  EXPECT_EQ(box->GetValue(), u"");
  EXPECT_EQ(log, "1 changed ");
}

TEST_F(SearchBox, LeavesEscapeToOthersWhenItIsEmpty) {
  Focus();
  EXPECT_FALSE(driver::PressKey(ui::kKeyboardCode_Escape));
  EXPECT_EQ(log, "");
}

TEST_F(SearchBox, ShowsItsButtonOnlyWhileThereIsSomethingToEmpty) {
  ASSERT_NE(ClearButton(), nullptr);
  EXPECT_FALSE(ClearButton()->isVisible());
  box->SetValue(u"a", false);
  EXPECT_TRUE(ClearButton()->isVisible());
  box->SetValue(u"", false);
  EXPECT_FALSE(ClearButton()->isVisible());
}

TEST_F(SearchBox, IsEmptiedByItsButton) {
  Focus();
  driver::TypeText(u"ab");
  log.clear();
  test::Click(ClearButton());
  EXPECT_EQ(box->GetValue(), u"");
  EXPECT_EQ(log, "1 changed ");
  EXPECT_TRUE(box->UI_HasKeyboardFocus(false));
}

TEST_F(SearchBox, IsEmptiedByItsButtonWithoutTheFocusToo) {
  box->SetValue(u"ab", false);
  test::Click(ClearButton());
  EXPECT_EQ(log, "0 1 changed 2 ");
}

TEST_F(SearchBox, IsNotEmptiedWhileItIsDisabled) {
  box->SetValue(u"ab", false);
  box->SetDisabled(true);
  box->Clear();
  EXPECT_EQ(box->GetValue(), u"ab");
  EXPECT_EQ(log, "");
}

TEST_F(SearchBox, SaysWhatItIsForWhileItIsEmpty) {
  box->UI_SetLocalRectF({3, 3, 350, 19});
  EXPECT_EQ(Widget()->placeholderText(), QStringLiteral("Filter caption content"));
  box->UI_SetToolTip(u"Find", 400);
  EXPECT_EQ(Widget()->placeholderText(), QStringLiteral("Find"));
}

TEST_F(SearchBox, SaysItOnOneLineWhereItIsNarrow) {
  box->UI_SetLocalRectF({3, 3, 90, 19});
  const QString shown = Widget()->placeholderText();
  EXPECT_TRUE(shown.startsWith(QStringLiteral("Fil")));
  EXPECT_LE(Widget()->fontMetrics().horizontalAdvance(shown), Widget()->viewport()->width());
}

TEST_F(SearchBox, KeepsOneLineOfWhatIsPasted) {
  QGuiApplication::clipboard()->setText(QStringLiteral("one\r\ntwo"));
  Focus();
  box->Paste();
  EXPECT_EQ(box->GetValue().find_first_of(u"\r\n"), zebcore::UString::npos);
  EXPECT_EQ(box->GetValue().substr(0, 3), u"one");
}

TEST_F(SearchBox, MayBeTakenAwayByTheOneWhoHearsThatItIsEmptied) {
  box->SetValue(u"ab", false);
  box->NotifyWhenChanged([this](const ui::UI_ControlChangedMessage&) {
    window.root->ChildRemove(box);
    box = nullptr;
  });
  test::Click(ClearButton());
  EXPECT_EQ(box, nullptr);
}

TEST_F(SearchBox, IsReadByAssistiveTechnologyWithItsButton) {
  QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(Widget());
  ASSERT_NE(seen, nullptr);
  EXPECT_EQ(seen->role(), QAccessible::EditableText);
  EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Filter caption content"));
  QAccessibleInterface* const button = QAccessible::queryAccessibleInterface(ClearButton());
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->role(), QAccessible::Button);
  EXPECT_EQ(button->text(QAccessible::Name), QStringLiteral("Clear search"));
  box->SetValue(u"ab", false);
  button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(box->GetValue(), u"");
}
