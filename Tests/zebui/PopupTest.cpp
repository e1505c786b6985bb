#include "zebui/Popup.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QListView>
#include <gtest/gtest.h>

#include "Pointer.h"
#include "Screen.h"
#include "zebcore/Clock.h"
#include "zebui/Controls.h"
#include "zebui/Driver.h"

using namespace zebui;
using controls::UI_Popup;
using zebcore::UString;

namespace {

// Arial, Courier, Comic and Dialog, of which nothing is the value.
struct Popup : testing::Test {
  test::Window window;
  boost::intrusive_ptr<UI_Popup> popup{new UI_Popup(0, false)};
  boost::intrusive_ptr<controls::UI_TextEdit> next{new controls::UI_TextEdit(0, 0)};
  int reports = 0;

  void SetUp() override {
    for (const char16_t* name : {u"Arial", u"Courier", u"Comic", u"Dialog"})
      popup->AddItem(name);
    popup->NotifyWhenChanged([this](const ui::UI_ControlChangedMessage&) { ++reports; });
    popup->SetItemCheckStyle(true);
    popup->UI_SetLocalRectF({10, 10, 120, 20});
    next->UI_SetLocalRectF({200, 10, 100, 20});
    window.root->ChildPushBack(popup);
    window.root->ChildPushBack(next);
    window.Activate();
  }
  void TearDown() override { zebcore::Clock::Instance().UseReal(); }

  QWidget* Widget() const { return toolkit::WidgetOf(popup.get()); }
  // The list, while it is open.
  QListView* List() const {
    for (QListView* list : Widget()->findChildren<QListView*>())
      if (list->isVisible())
        return list;
    return nullptr;
  }
  void Focus() { popup->UI_GainKeyboardFocus(ui::kFocusChange_Advance); }
  static bool Press(ui::KeyboardCode code, ui::ModKey modifiers = ui::kModKey_None, const UString& text = {}) {
    return driver::PressKey(code, modifiers, text);
  }
  void PressInList(int key, Qt::KeyboardModifiers modifiers = {}) const {
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QCoreApplication::sendEvent(List(), &event);
  }
};

constexpr std::int64_t kNone = UI_Popup::kNoItem;

} // namespace

TEST_F(Popup, CountsItsItemsAndAnswersNothingOutOfRange) {
  EXPECT_EQ(popup->Size(), 4);
  EXPECT_EQ(popup->GetItems(), 4);
  EXPECT_EQ(popup->GetItemString(2), u"Comic");
  EXPECT_EQ(popup->GetItemString(4), u"");
  EXPECT_EQ(popup->GetItemString(-1), u"");
  EXPECT_EQ(popup->AddItem(u"Serif"), 4);
}

TEST_F(Popup, TakesNoItemForItsValueByItself) {
  EXPECT_EQ(popup->GetValue(), kNone);
  EXPECT_EQ(popup->GetValueString(), u"");
}

TEST_F(Popup, ShowsTheItemThatTheProgramSetsAndReportsNothing) {
  popup->SetValue(1);
  EXPECT_EQ(popup->GetValue(), 1);
  EXPECT_EQ(popup->GetValueString(), u"Courier");
  popup->SetValue(9);
  EXPECT_EQ(popup->GetValue(), kNone);
  EXPECT_EQ(popup->GetValueString(), u"");
  EXPECT_EQ(reports, 0);
}

TEST_F(Popup, ShowsATextThatNoItemBears) {
  popup->SetValue(1);
  popup->SetValueString(u"Multiple", true, true);
  EXPECT_EQ(popup->GetValueString(), u"Multiple");
  EXPECT_EQ(popup->GetValue(), kNone);
  EXPECT_EQ(popup->Size(), 4);
  EXPECT_EQ(reports, 0);
}

TEST_F(Popup, SelectsTheFirstItemThatBearsExactlyTheTextThatIsSet) {
  popup->AddItem(u"Comic");
  popup->SetValueString(u"Comic", true, true);
  EXPECT_EQ(popup->GetValue(), 2);
  popup->SetValueString(u"comic", true, true);
  EXPECT_EQ(popup->GetValue(), kNone);
}

TEST_F(Popup, ATextThatIsNotToBeSelectedKeepsTheItemOnlyIfItBearsIt) {
  popup->SetValue(2);
  popup->SetValueString(u"Comic", false, true);
  EXPECT_EQ(popup->GetValue(), 2);
  popup->SetValueString(u"Dialog", false, true);
  EXPECT_EQ(popup->GetValue(), kNone);
  EXPECT_EQ(popup->GetValueString(), u"Dialog");
}

TEST_F(Popup, KeepsItsValueWhenAnotherItemIsRemoved) {
  popup->SetValue(2);
  popup->RemoveItem(0);
  EXPECT_EQ(popup->GetValue(), 1);
  EXPECT_EQ(popup->GetValueString(), u"Comic");
  popup->RemoveItem(2);
  EXPECT_EQ(popup->GetValue(), 1);
  popup->RemoveItem(17);
  EXPECT_EQ(popup->Size(), 2);
}

TEST_F(Popup, ShowsNothingWhenItsValueIsRemoved) {
  popup->SetValue(2);
  popup->RemoveItem(2);
  EXPECT_EQ(popup->GetValue(), kNone);
  EXPECT_EQ(popup->GetValueString(), u"");
  popup->SetValue(0);
  popup->DeleteAllItems();
  EXPECT_EQ(popup->GetValue(), kNone);
  EXPECT_EQ(popup->Size(), 0);
}

TEST_F(Popup, ReportsAChoiceAlsoOfTheSameItem) {
  popup->Choose(1);
  popup->Choose(1);
  EXPECT_EQ(reports, 2);
  EXPECT_EQ(popup->GetValue(), 1);
}

TEST_F(Popup, TakesNoChoiceThatIsNoItemOrWhileItIsDisabled) {
  popup->Choose(4);
  popup->Choose(-1);
  popup->SetDisabled(true);
  popup->Choose(1);
  EXPECT_EQ(reports, 0);
  EXPECT_EQ(popup->GetValue(), kNone);
}

TEST_F(Popup, ChangesWithTheArrowsAndStopsAtTheEnds) {
  popup->SetValue(2);
  Focus();
  EXPECT_TRUE(Press(ui::kKeyboardCode_Down));
  EXPECT_EQ(popup->GetValue(), 3);
  EXPECT_TRUE(Press(ui::kKeyboardCode_Down));
  EXPECT_EQ(reports, 1);
  Press(ui::kKeyboardCode_Home);
  EXPECT_EQ(popup->GetValue(), 0);
  Press(ui::kKeyboardCode_Up);
  EXPECT_EQ(reports, 2);
  Press(ui::kKeyboardCode_End);
  EXPECT_EQ(popup->GetValue(), 3);
}

TEST_F(Popup, GoesFromATextThatNoItemBearsToTheFirstOrTheLast) {
  popup->SetValueString(u"Multiple", true, true);
  Focus();
  Press(ui::kKeyboardCode_Down);
  EXPECT_EQ(popup->GetValue(), 0);
  popup->SetValueString(u"Multiple", true, true);
  Press(ui::kKeyboardCode_Up);
  EXPECT_EQ(popup->GetValue(), 3);
}

TEST_F(Popup, JumpsToTheItemThatBeginsWithTheLetterTyped) {
  Focus();
  Press(ui::KeyboardCode('D'), ui::kModKey_None, u"d");
  EXPECT_EQ(popup->GetValue(), 3);
  EXPECT_EQ(reports, 1);
}

TEST_F(Popup, GoesThroughTheItemsOfALetterThatIsTypedAgain) {
  zebcore::Clock::Instance().UseManual();
  Focus();
  for (const std::int64_t expected : {1, 2, 1}) {
    Press(ui::KeyboardCode('C'), ui::kModKey_None, u"c");
    EXPECT_EQ(popup->GetValue(), expected);
  }
}

TEST_F(Popup, JumpsByMoreLettersThatAreTypedInOneGo) {
  auto& clock = zebcore::Clock::Instance();
  clock.UseManual();
  Focus();
  driver::TypeText(u"com");
  EXPECT_EQ(popup->GetValue(), 2);
  clock.SetNow(clock.Now() + 5000);
  driver::TypeText(u"a");
  EXPECT_EQ(popup->GetValue(), 0);
}

TEST_F(Popup, KeepsASpaceInsideOfWhatIsTypedInOneGo) {
  zebcore::Clock::Instance().UseManual();
  popup->AddItem(u"Times");
  popup->AddItem(u"Times New");
  Focus();
  driver::TypeText(u"times n");
  EXPECT_EQ(popup->GetValue(), 5);
  EXPECT_EQ(List(), nullptr);
}

TEST_F(Popup, OpensWithSpaceWithEnterAndWithAltAndDown) {
  popup->SetValue(1);
  Focus();
  const auto opens = [&](auto&&... key) {
    EXPECT_TRUE(Press(key...));
    ASSERT_NE(List(), nullptr);
    EXPECT_EQ(List()->currentIndex().row(), 1);
    PressInList(Qt::Key_Escape);
    EXPECT_EQ(List(), nullptr);
  };
  opens(ui::KeyboardCode(' '), ui::kModKey_None, UString(u" "));
  opens(ui::kKeyboardCode_Enter, ui::kModKey_None, UString(u"\r"));
  opens(ui::kKeyboardCode_Down, ui::kModKey_Alt);
  EXPECT_EQ(reports, 0);
  EXPECT_TRUE(popup->UI_HasKeyboardFocus(false));
}

TEST_F(Popup, ChoosesInTheOpenListByKey) {
  popup->SetValue(1);
  Focus();
  Press(ui::kKeyboardCode_Enter);
  PressInList(Qt::Key_Down);
  EXPECT_EQ(reports, 0);
  PressInList(Qt::Key_Return);
  EXPECT_EQ(reports, 1);
  EXPECT_EQ(popup->GetValue(), 2);
  EXPECT_EQ(List(), nullptr);
}

TEST_F(Popup, ChoosesInTheOpenListByClick) {
  test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
  ASSERT_NE(List(), nullptr);
  QWidget* const viewport = List()->viewport();
  const QPoint at = List()->visualRect(List()->model()->index(3, 0)).center();
  for (const QEvent::Type type : {QEvent::MouseMove, QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    QMouseEvent event(type, QPointF(at), viewport->mapToGlobal(QPointF(at)), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(viewport, &event);
  }
  EXPECT_EQ(reports, 1);
  EXPECT_EQ(popup->GetValue(), 3);
  EXPECT_TRUE(popup->UI_HasKeyboardFocus(false));
}

TEST_F(Popup, TheReleaseOfThePressThatOpenedItChoosesNothing) {
  test::Click(Widget());
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(reports, 0);
}

TEST_F(Popup, OpensNoListWithoutItemsOrWhileItIsDisabled) {
  popup->DeleteAllItems();
  Focus();
  Press(ui::kKeyboardCode_Enter);
  EXPECT_EQ(List(), nullptr);
}

TEST_F(Popup, ClosesItsListWhenItsItemsChange) {
  Focus();
  Press(ui::kKeyboardCode_Enter);
  ASSERT_NE(List(), nullptr);
  popup->DeleteAllItems();
  EXPECT_EQ(List(), nullptr);
}

TEST_F(Popup, ClosesItsListWhenItIsDisabled) {
  Focus();
  Press(ui::kKeyboardCode_Enter);
  ASSERT_NE(List(), nullptr);
  popup->SetDisabled(true);
  EXPECT_EQ(List(), nullptr);
}

TEST_F(Popup, TurnsWithTheWheelOnlyWhenItHasTheFocus) {
  popup->SetValue(1);
  EXPECT_FALSE(test::Wheel(Widget(), -120));
  EXPECT_EQ(popup->GetValue(), 1);
  Focus();
  EXPECT_TRUE(test::Wheel(Widget(), -120));
  EXPECT_EQ(popup->GetValue(), 2);
  EXPECT_EQ(reports, 1);
}

TEST_F(Popup, LeavesKeysAloneThatAreNotItsOwn) {
  Focus();
  EXPECT_FALSE(Press(ui::kKeyboardCode_Escape));
  EXPECT_FALSE(Press(ui::KeyboardCode('A'), ui::kModKey_Control, u"\x01"));
  EXPECT_TRUE(Press(ui::kKeyboardCode_Tab));
  EXPECT_TRUE(next->UI_HasKeyboardFocus(false));
}

TEST_F(Popup, OpensALongListAtOnceAndDrawsOnlyWhatIsOnShow) {
  for (int i = 0; i < 500; ++i)
    popup->AddItem(u"Family " + toolkit::FromQt(QString::number(i)));
  popup->SetValue(480);
  Focus();
  Press(ui::kKeyboardCode_Enter);
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(List()->model()->rowCount(), 504);
  const QRect chosen = List()->visualRect(List()->currentIndex());
  EXPECT_TRUE(List()->viewport()->rect().contains(chosen));
  EXPECT_LE(List()->viewport()->height(), 20 * chosen.height());
}

TEST_F(Popup, RecommendsRoomForItsWidestItemWhateverIsOnShow) {
  const auto width = [this] { return popup->Impl().recommend().x; };
  popup->SetValue(0);
  const float before = width();
  popup->SetValue(1);
  EXPECT_EQ(width(), before);
  popup->AddItem(u"A family with quite a long name");
  const float wide = width();
  EXPECT_GT(wide, before);
  popup->SetValueString(u"A text on show that is longer than any of its items", true, true);
  EXPECT_GT(width(), wide);
  popup->SetValue(0);
  popup->RemoveItem(4);
  EXPECT_EQ(width(), before);
}

TEST_F(Popup, LooksLikeAListAlsoWithoutItems) {
  const QImage nothing = [this] {
    popup->SetValueString(u" ", false, true);
    return Widget()->grab().toImage();
  }();
  popup->DeleteAllItems();
  EXPECT_GE(popup->Impl().recommend().x, 80.0F);
  EXPECT_EQ(popup->GetValueString(), u"");
  EXPECT_NE(Widget()->grab().toImage(), nothing) << "a dash says that there is nothing to choose";
}

TEST_F(Popup, RecommendsMoreRoomInALargerFont) {
  const float before = popup->Impl().recommend().x;
  QFont font = Widget()->font();
  font.setPixelSize(40);
  Widget()->setFont(font);
  EXPECT_GT(popup->Impl().recommend().x, before);
}

TEST_F(Popup, TellsTheWholeTextInItsTipWhereItIsCutOff) {
  popup->UI_SetToolTip(u"Select Font Family", 400);
  const auto ask = [this] {
    QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), Widget()->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(Widget(), &event);
    return Widget()->toolTip();
  };
  popup->SetValue(0);
  EXPECT_EQ(ask(), QStringLiteral("Select Font Family"));
  popup->SetValueString(u"A family with quite a long name", true, true);
  EXPECT_EQ(ask(), QStringLiteral("A family with quite a long name\nSelect Font Family"));
  popup->SetValue(0);
  EXPECT_EQ(ask(), QStringLiteral("Select Font Family"));
}

TEST_F(Popup, ShowsThatItHasTheKeyboard) {
  const QImage without = Widget()->grab().toImage();
  Focus();
  EXPECT_NE(Widget()->grab().toImage(), without);
}

TEST_F(Popup, MayBeTakenAwayByTheOneWhoHearsOfTheChoice) {
  popup->NotifyWhenChanged([this](const ui::UI_ControlChangedMessage&) {
    window.root->ChildRemove(popup);
    popup = nullptr;
  });
  Focus();
  Press(ui::kKeyboardCode_Enter);
  PressInList(Qt::Key_Down);
  PressInList(Qt::Key_Return);
  EXPECT_EQ(popup, nullptr);
}

TEST_F(Popup, MayBeTakenAwayWhileItsListIsOpen) {
  Focus();
  Press(ui::kKeyboardCode_Enter);
  window.root->ChildRemove(popup);
  popup = nullptr;
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  SUCCEED();
}

TEST_F(Popup, WorksOffTheScreen) {
  window.root->ChildRemove(popup);
  popup->SetValue(0);
  popup->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  Press(ui::kKeyboardCode_Down);
  EXPECT_EQ(popup->GetValue(), 1);
  Press(ui::kKeyboardCode_Enter);
  EXPECT_EQ(reports, 1);
}

TEST_F(Popup, IsReadByAssistiveTechnologyAsAComboBoxWithItsValue) {
  popup->UI_SetToolTip(u"Select Font Family", 400);
  popup->SetValueString(u"Multiple", true, true);
  QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(Widget());
  ASSERT_NE(seen, nullptr);
  EXPECT_EQ(seen->role(), QAccessible::ComboBox);
  EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Select Font Family"));
  EXPECT_EQ(seen->text(QAccessible::Value), QStringLiteral("Multiple"));
  EXPECT_TRUE(seen->state().collapsed);
  seen->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  ASSERT_NE(List(), nullptr);
  EXPECT_TRUE(seen->state().expanded);
  QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(List());
  EXPECT_EQ(list->role(), QAccessible::List);
  EXPECT_EQ(list->child(1)->text(QAccessible::Name), QStringLiteral("Courier"));
}
