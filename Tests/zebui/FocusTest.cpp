#include <QLineEdit>
#include <gtest/gtest.h>

#include "Screen.h"
#include "zebui/Controls.h"
#include "zebui/NodeManager.h"

using namespace zebui;
using controls::UI_TextEdit;

namespace {

struct Listening : UI_TextEdit {
  Listening() : UI_TextEdit(1, 0) {}
  void UI_FocusChanged(ui::FocusChangeReason reason) override {
    UI_TextEdit::UI_FocusChanged(reason);
    heard.emplace_back(reason, UI_HasKeyboardFocus(false));
  }
  std::vector<std::pair<int, bool>> heard;
};
using Heard = std::vector<std::pair<int, bool>>;

} // namespace

TEST(Focus, IsRightWithoutAnActiveWindow) {
  test::Window window;
  const auto first = window.Add(new Listening);
  const auto second = window.Add(new Listening, 0, 80);
  first->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  EXPECT_TRUE(first->UI_HasKeyboardFocus(false));
  second->UI_GainKeyboardFocus(ui::kFocusChange_Advance);
  EXPECT_FALSE(first->UI_HasKeyboardFocus(false));
  EXPECT_TRUE(second->UI_HasKeyboardFocus(false));
  EXPECT_EQ(first->heard, Heard({{3, true}, {1, false}}));
  EXPECT_EQ(second->heard, Heard({{1, true}}));
}

TEST(Focus, AgreesWithTheToolkitInAnActiveWindow) {
  test::Window window;
  const auto edit = window.Add(new Listening);
  window.Activate();
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  QCoreApplication::processEvents();
  EXPECT_EQ(QApplication::focusWidget(), toolkit::WidgetOf(edit.get()));
  EXPECT_EQ(edit->heard, Heard({{3, true}}));
}

TEST(Focus, FollowsAClickAndTellsItsReason) {
  test::Window window;
  const auto edit = window.Add(new Listening);
  window.Activate();
  QWidget* widget = toolkit::WidgetOf(edit.get());
  widget->setFocus(Qt::MouseFocusReason);
  EXPECT_TRUE(edit->UI_HasKeyboardFocus(false));
  EXPECT_EQ(edit->heard.back(), std::pair(4, true));
}

TEST(Focus, StaysWithItsNodeWhenTheWindowIsLeftAndIsToldReasonFive) {
  test::Window window;
  const auto edit = window.Add(new Listening);
  window.Activate();
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  edit->heard.clear();
  QApplication::setActiveWindow(nullptr);
  QCoreApplication::processEvents();
  EXPECT_EQ(edit->heard, Heard({{5, true}}));
  EXPECT_TRUE(edit->UI_HasKeyboardFocus(false));
}

TEST(Focus, WaitsBelowADialog) {
  test::Window window;
  const auto edit = window.Add(new Listening);
  window.Activate();
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  QWidget dialog(&window.widget, Qt::Dialog);
  QLineEdit field(&dialog);
  dialog.show();
  QApplication::setActiveWindow(&dialog);
  field.setFocus();
  QCoreApplication::processEvents();
  EXPECT_TRUE(edit->UI_HasKeyboardFocus(false));
}

TEST(Focus, GoesNowhereWhenItsNodeIsHiddenAndNotToANeighbour) {
  test::Window window;
  const auto first = window.Add(new Listening);
  const auto second = window.Add(new Listening, 0, 80);
  window.Activate();
  first->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  first->UI_Show(false);
  QCoreApplication::processEvents();
  EXPECT_EQ(ui::UI_NodeManager::Get()->GetFocusNode(), nullptr);
  EXPECT_TRUE(second->heard.empty());
}

TEST(Focus, GoesNowhereWhenItsNodeIsTakenOffOrDisabled) {
  test::Window window;
  const auto first = window.Add(new Listening);
  const auto second = window.Add(new Listening, 0, 80);
  window.Activate();
  first->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  window.root->ChildRemove(first);
  EXPECT_FALSE(first->UI_HasKeyboardFocus(false));
  second->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  second->SetDisabled(true);
  EXPECT_EQ(ui::UI_NodeManager::Get()->GetFocusNode(), nullptr);
}

TEST(Focus, IsRefusedByAControlThatIsHiddenDisabledOrDoesNotWantIt) {
  test::Window window;
  const auto edit = window.Add(new Listening);
  edit->UI_Show(false);
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  EXPECT_FALSE(edit->UI_HasKeyboardFocus(false));
  edit->UI_Show(true);
  edit->SetDisabled(true);
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  EXPECT_FALSE(edit->UI_HasKeyboardFocus(false));
  edit->SetDisabled(false);
  edit->SetWantsKeyboardFocus(false);
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  EXPECT_FALSE(edit->UI_HasKeyboardFocus(false));
}

TEST(Focus, OfAChildCountsForItsParentIfAskedSo) {
  test::Window window;
  const auto edit = window.Add(new Listening);
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  EXPECT_TRUE(window.root->UI_HasKeyboardFocus(true));
  EXPECT_FALSE(window.root->UI_HasKeyboardFocus(false));
}

TEST(Focus, IsForgottenWithItsNode) {
  test::Window window;
  {
    boost::intrusive_ptr<Listening> edit(new Listening);
    edit->UI_GainKeyboardFocus(ui::kFocusChange_Program);
    EXPECT_EQ(ui::UI_NodeManager::Get()->GetFocusNode(), edit.get());
  }
  EXPECT_EQ(ui::UI_NodeManager::Get()->GetFocusNode(), nullptr);
}
