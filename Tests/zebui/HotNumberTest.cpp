#include "zebui/HotNumber.h"

#include <limits>

#include <QAccessible>
#include <QLineEdit>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "Pointer.h"
#include "Screen.h"
#include "zebui/Controls.h"
#include "zebui/Driver.h"
#include "zebui/NodeManager.h"

using namespace zebui;
using controls::UI_HotTextNumber;
using Changes = ui::UI_InteractiveControlChangedMessage;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// From 0 to 100, at 50, with a text field after it.
struct HotNumber : testing::Test {
  test::Window window;
  boost::intrusive_ptr<UI_HotTextNumber> number{new UI_HotTextNumber};
  boost::intrusive_ptr<controls::UI_TextEdit> next{new controls::UI_TextEdit(0, 0)};
  std::string log;

  void SetUp() override {
    number->SetMinValue(0);
    number->SetMaxValue(100);
    number->SetValue(50);
    number->SetUnknownStateText(u"mul.");
    number->NotifyWhenChangedInteractively([this](const Changes& message) {
      log += std::to_string(message.GetChangeMessage());
      if (message.GetChangeMessage() == Changes::kChange_Changed)
        log += "(" + Shown() + ")";
      log += " ";
    });
    number->UI_SetLocalRectF({10, 10, 24, 20});
    next->UI_SetLocalRectF({100, 10, 100, 20});
    window.root->ChildPushBack(number);
    window.root->ChildPushBack(next);
    window.Activate();
  }

  std::string Shown() const {
    const auto text = number->GetText();
    return QString::fromStdU16String(text).toStdString();
  }
  QWidget* Widget() const { return toolkit::WidgetOf(number.get()); }
  QLineEdit* Editor() const { return Widget()->findChild<QLineEdit*>(); }
  int Shakes() const {
    const QLineEdit* editor = Editor();
    return (editor ? editor : Widget())->property("shakes").toInt();
  }
  void Focus() {
    number->UI_GainKeyboardFocus(ui::kFocusChange_Advance);
    log.clear();
  }
  void Press(ui::KeyboardCode code, ui::ModKey modifiers = ui::kModKey_None) { driver::PressKey(code, modifiers); }
  // Into the opened field, with Enter.
  void Type(const zebcore::UString& text) {
    test::Click(Widget());
    log.clear();
    driver::TypeText(text + u"\n");
  }
};

} // namespace

TEST_F(HotNumber, ShowsItsValueWithItsDecimals) {
  EXPECT_EQ(number->GetText(), u"50");
  number->SetDecimalPlaces(2);
  number->SetValue(33.333333);
  EXPECT_EQ(number->GetText(), u"33.33");
  EXPECT_EQ(number->GetValue(), 33.333333);
}

TEST_F(HotNumber, ShowsNoMinusBeforeAZero) {
  number->SetDecimalPlaces(1);
  number->SetValue(-0.01);
  EXPECT_EQ(number->GetText(), u"0.0");
}

TEST_F(HotNumber, ReportsNothingThatTheProgramSets) {
  number->SetValue(7);
  number->SetValueUnknown();
  number->SetMinValue(10);
  EXPECT_EQ(log, "");
  EXPECT_EQ(number->GetValue(), 7.0);
}

TEST_F(HotNumber, ShowsTheTextForAnUnknownValueUntilItsNextValue) {
  number->SetValueUnknown();
  EXPECT_EQ(number->GetText(), u"mul.");
  EXPECT_TRUE(number->IsValueUnknown());
  EXPECT_EQ(number->GetValue(), 50.0);
  number->SetValue(50);
  EXPECT_EQ(number->GetText(), u"50");
}

TEST_F(HotNumber, StartsChangesAndFinishesWhileItIsDragged) {
  test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
  test::Mouse(Widget(), QEvent::MouseMove, 7);
  EXPECT_EQ(log, "");
  test::Mouse(Widget(), QEvent::MouseMove, 11);
  test::Mouse(Widget(), QEvent::MouseMove, 14);
  test::Mouse(Widget(), QEvent::MouseButtonRelease, 14);
  EXPECT_EQ(log, "0 1(52) 1(53) 2 ");
  EXPECT_EQ(Editor(), nullptr);
}

TEST_F(HotNumber, IsDraggedTenTimesAsFastWithShift) {
  test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
  test::Mouse(Widget(), QEvent::MouseMove, 11, Qt::ShiftModifier);
  EXPECT_EQ(number->GetValue(), 70.0);
}

TEST_F(HotNumber, IsDraggedATenthAsFastWithControl) {
  number->SetDecimalPlaces(2);
  test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
  test::Mouse(Widget(), QEvent::MouseMove, 35, Qt::ControlModifier);
  EXPECT_EQ(number->GetText(), u"50.01");
  test::Mouse(Widget(), QEvent::MouseMove, 38);
  EXPECT_EQ(number->GetText(), u"50.02");
}

TEST_F(HotNumber, MakesNoJumpWhenAModifierIsPressedOnTheWay) {
  test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
  test::Mouse(Widget(), QEvent::MouseMove, 35);
  EXPECT_EQ(number->GetValue(), 60.0);
  test::Mouse(Widget(), QEvent::MouseMove, 35, Qt::ShiftModifier);
  EXPECT_EQ(number->GetValue(), 60.0);
  test::Mouse(Widget(), QEvent::MouseMove, 38, Qt::ShiftModifier);
  EXPECT_EQ(number->GetValue(), 70.0);
}

TEST_F(HotNumber, IsPutBackByEscapeWhileItIsDragged) {
  test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
  test::Mouse(Widget(), QEvent::MouseMove, 35);
  log.clear();
  Press(ui::kKeyboardCode_Escape);
  EXPECT_EQ(log, "3 ");
  EXPECT_EQ(number->GetValue(), 50.0);
  test::Mouse(Widget(), QEvent::MouseMove, 65);
  test::Mouse(Widget(), QEvent::MouseButtonRelease, 65);
  EXPECT_EQ(log, "3 ");
}

TEST_F(HotNumber, DraggedBackToWhereItWasEndsAsCancelled) {
  test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
  test::Mouse(Widget(), QEvent::MouseMove, 11);
  test::Mouse(Widget(), QEvent::MouseMove, 5);
  test::Mouse(Widget(), QEvent::MouseButtonRelease, 5);
  EXPECT_EQ(log, "0 1(52) 1(50) 3 ");
}

TEST_F(HotNumber, IsLetGoOfWhenItIsDisabledWhileItIsDragged) {
  test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
  test::Mouse(Widget(), QEvent::MouseMove, 35);
  log.clear();
  number->SetDisabled(true);
  EXPECT_EQ(log, "3 ");
  EXPECT_EQ(number->GetValue(), 50.0);
}

TEST_F(HotNumber, AValueSetWhileItIsDraggedIsWhatEscapeGoesBackTo) {
  test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
  test::Mouse(Widget(), QEvent::MouseMove, 35);
  number->SetValue(20);
  EXPECT_EQ(number->GetValue(), 60.0);
  Press(ui::kKeyboardCode_Escape);
  EXPECT_EQ(number->GetValue(), 20.0);
}

TEST_F(HotNumber, StopsAtItsBounds) {
  test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
  test::Mouse(Widget(), QEvent::MouseMove, 1005);
  EXPECT_EQ(number->GetValue(), 100.0);
  test::Mouse(Widget(), QEvent::MouseMove, -2000);
  EXPECT_EQ(number->GetValue(), 0.0);
}

TEST_F(HotNumber, OpensOnAClickWithItsTextSelected) {
  test::Click(Widget());
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->selectedText(), QStringLiteral("50"));
  EXPECT_TRUE(number->UI_HasKeyboardFocus(false));
  EXPECT_EQ(log, "0 ");
}

TEST_F(HotNumber, TakesWhatIsTypedOnEnterAndKeepsTheFocus) {
  Type(u"72");
  EXPECT_EQ(log, "1(72) 2 ");
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_TRUE(number->UI_HasKeyboardFocus(false));
}

TEST_F(HotNumber, TakesArithmetic) {
  Type(u"+2.5");
  EXPECT_EQ(number->GetValue(), 53.0);
  Type(u"*2");
  EXPECT_EQ(number->GetValue(), 100.0);
  Type(u"/2");
  EXPECT_EQ(number->GetValue(), 50.0);
  Type(u"20+4*1,5");
  EXPECT_EQ(number->GetValue(), 26.0);
}

TEST_F(HotNumber, RoundsWhatIsTypedToItsDecimals) {
  number->SetDecimalPlaces(1);
  Type(u"7,26");
  EXPECT_EQ(number->GetValue(), 7.3);
}

TEST_F(HotNumber, BringsWhatIsTypedBetweenItsBounds) {
  Type(u"250");
  EXPECT_EQ(number->GetValue(), 100.0);
  Type(u"-4");
  EXPECT_EQ(number->GetValue(), 0.0);
}

TEST_F(HotNumber, KeepsAValueOutsideItsBoundsUntilAPersonChangesIt) {
  number->SetValue(400);
  EXPECT_EQ(number->GetText(), u"400");
  Focus();
  Press(ui::kKeyboardCode_Up);
  EXPECT_EQ(number->GetValue(), 100.0);
}

TEST_F(HotNumber, ShakesAtATextThatIsNoNumberAndStays) {
  Type(u"soon");
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Shakes(), 1);
  EXPECT_EQ(log, "");
  EXPECT_EQ(number->GetValue(), 50.0);
}

TEST_F(HotNumber, RefusesToGoOutFromAnUnknownValueButTakesAPlainNumber) {
  number->SetValueUnknown();
  Type(u"+2");
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Shakes(), 1);
  Editor()->selectAll();
  driver::TypeText(u"12\n");
  EXPECT_EQ(log, "1(12) 2 ");
  EXPECT_FALSE(number->IsValueUnknown());
}

TEST_F(HotNumber, TakesTheNumberItLastHeldOverAnUnknownValue) {
  number->SetValueUnknown();
  Type(u"50");
  EXPECT_EQ(log, "1(50) 2 ");
}

TEST_F(HotNumber, ChangesNothingWhenItsTextIsEnteredAsItWas) {
  number->SetDecimalPlaces(1);
  number->SetValue(33.3333);
  test::Click(Widget());
  log.clear();
  Press(ui::kKeyboardCode_Enter);
  EXPECT_EQ(log, "3 ");
  EXPECT_EQ(number->GetValue(), 33.3333);
  number->SetValueUnknown();
  test::Click(Widget());
  Press(ui::kKeyboardCode_Enter);
  EXPECT_TRUE(number->IsValueUnknown());
}

TEST_F(HotNumber, IsPutBackByEscapeWhileItIsTyped) {
  test::Click(Widget());
  driver::TypeText(u"7");
  log.clear();
  Press(ui::kKeyboardCode_Escape);
  EXPECT_EQ(log, "3 ");
  EXPECT_EQ(number->GetText(), u"50");
  EXPECT_EQ(Editor(), nullptr);
}

TEST_F(HotNumber, TakesWhatWasTypedWhenTheFocusGoesElsewhere) {
  test::Click(Widget());
  driver::TypeText(u"7");
  log.clear();
  next->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  EXPECT_EQ(log, "1(7) 2 ");
  EXPECT_TRUE(next->UI_HasKeyboardFocus(false));
}

TEST_F(HotNumber, GivesUpATextThatIsNoNumberWhenTheFocusGoesElsewhere) {
  test::Click(Widget());
  driver::TypeText(u"x");
  log.clear();
  next->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
  EXPECT_EQ(log, "3 ");
  EXPECT_EQ(number->GetText(), u"50");
}

TEST_F(HotNumber, TabTakesWhatIsTypedAndGoesOn) {
  test::Click(Widget());
  driver::TypeText(u"7");
  Press(ui::kKeyboardCode_Tab);
  EXPECT_EQ(number->GetValue(), 7.0);
  EXPECT_TRUE(next->UI_HasKeyboardFocus(false));
  Press(ui::kKeyboardCode_Tab, ui::kModKey_Shift);
  EXPECT_TRUE(number->UI_HasKeyboardFocus(false));
}

TEST_F(HotNumber, TabStaysAtATextThatIsNoNumber) {
  test::Click(Widget());
  driver::TypeText(u"x");
  Press(ui::kKeyboardCode_Tab);
  EXPECT_NE(Editor(), nullptr);
  EXPECT_TRUE(number->UI_HasKeyboardFocus(false));
}

TEST_F(HotNumber, OpensWhenANumberIsTypedOnIt) {
  Focus();
  driver::TypeText(u"7");
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->text(), QStringLiteral("7"));
  driver::TypeText(u"5\n");
  EXPECT_EQ(number->GetValue(), 75.0);
}

TEST_F(HotNumber, StepsWithTheArrowsAndByTenWithShift) {
  Focus();
  Press(ui::kKeyboardCode_Up);
  EXPECT_EQ(log, "0 1(51) 2 ");
  Press(ui::kKeyboardCode_Down, ui::kModKey_Shift);
  EXPECT_EQ(number->GetValue(), 41.0);
  Press(ui::kKeyboardCode_Right);
  Press(ui::kKeyboardCode_Left);
  EXPECT_EQ(number->GetValue(), 41.0);
}

TEST_F(HotNumber, StepsInTheLastOfItsDecimals) {
  Focus();
  number->SetDecimalPlaces(1);
  Press(ui::kKeyboardCode_Up);
  EXPECT_EQ(number->GetText(), u"50.1");
  number->SetDecimalPlaces(2);
  Press(ui::kKeyboardCode_Up);
  EXPECT_EQ(number->GetText(), u"50.11");
}

TEST_F(HotNumber, StepsByTenWithThePageKeysAndGoesToItsBoundsWithHomeAndEnd) {
  Focus();
  Press(ui::kKeyboardCode_PageUp);
  EXPECT_EQ(number->GetValue(), 60.0);
  Press(ui::kKeyboardCode_PageDown);
  EXPECT_EQ(number->GetValue(), 50.0);
  Press(ui::kKeyboardCode_Home);
  EXPECT_EQ(number->GetValue(), 0.0);
  Press(ui::kKeyboardCode_End);
  EXPECT_EQ(number->GetValue(), 100.0);
}

TEST_F(HotNumber, ReportsNothingForAStepThatItsBoundsAllowNoMore) {
  number->SetValue(100);
  Focus();
  Press(ui::kKeyboardCode_Up);
  EXPECT_EQ(log, "");
}

TEST_F(HotNumber, ShakesAtAStepFromAnUnknownValue) {
  number->SetValueUnknown();
  Focus();
  Press(ui::kKeyboardCode_Up);
  EXPECT_EQ(log, "");
  EXPECT_EQ(Shakes(), 1);
  EXPECT_TRUE(number->IsValueUnknown());
}

TEST_F(HotNumber, StepsTheTextInItsEditor) {
  test::Click(Widget());
  log.clear();
  Press(ui::kKeyboardCode_Up);
  EXPECT_EQ(Editor()->text(), QStringLiteral("51"));
  EXPECT_EQ(log, "");
  Press(ui::kKeyboardCode_Enter);
  EXPECT_EQ(log, "1(51) 2 ");
}

TEST_F(HotNumber, StepsWithTheWheelOnlyWhenItHasTheFocus) {
  EXPECT_FALSE(test::Wheel(Widget(), 120));
  EXPECT_EQ(log, "");
  Focus();
  EXPECT_TRUE(test::Wheel(Widget(), 120));
  EXPECT_TRUE(test::Wheel(Widget(), -120, Qt::ShiftModifier));
  EXPECT_EQ(log, "0 1(51) 2 0 1(41) 2 ");
}

TEST_F(HotNumber, LeavesKeysAloneThatAreNotItsOwn) {
  Focus();
  EXPECT_FALSE(driver::PressKey(ui::kKeyboardCode_Escape));
  EXPECT_FALSE(driver::PressKey(ui::KeyboardCode('S'), ui::kModKey_Control));
  EXPECT_FALSE(driver::PressKey(ui::kKeyboardCode_Up, ui::kModKey_Alt));
  EXPECT_FALSE(driver::PressKey(ui::KeyboardCode('J'), ui::kModKey_None, u"j"));
}

TEST_F(HotNumber, PassesAKeyThatItsEditorHasNoUseForOnOnce) {
  struct Counter : ui::UI_Node {
    int keys = 0;
    bool UI_DoPreKeyboardEvent(ui::UI_Node*, const ui::KeyboardEvent& event) override {
      keys += event.GetType() == ui::kKeyboardEvent_KeyDown ? 1 : 0;
      return false;
    }
  };
  const boost::intrusive_ptr<Counter> counter(new Counter);
  test::Click(Widget());
  ui::UI_NodeManager::Get()->AddKeyboardEventFilterNode(counter.get(), true);
  QKeyEvent event(QEvent::KeyPress, Qt::Key_F9, {});
  QCoreApplication::sendEvent(Editor(), &event);
  ui::UI_NodeManager::Get()->RemoveKeyboardEventFilterNode(counter.get(), true);
  EXPECT_FALSE(event.isAccepted());
  EXPECT_EQ(counter->keys, 1);
}

TEST_F(HotNumber, TakesNothingFromAPersonBetweenBoundsThatAreNone) {
  for (const auto& [minimum, maximum] : {std::pair(kNaN, 100.0), std::pair(0.0, kNaN), std::pair(10.0, 5.0)}) {
    number->SetMinValue(minimum);
    number->SetMaxValue(maximum);
    Focus();
    Press(ui::kKeyboardCode_Up);
    Press(ui::kKeyboardCode_Home);
    Press(ui::kKeyboardCode_End);
    number->Enter(7);
    test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
    test::Mouse(Widget(), QEvent::MouseMove, 35);
    test::Mouse(Widget(), QEvent::MouseButtonRelease, 35);
    EXPECT_EQ(log, "");
    EXPECT_EQ(number->GetValue(), 50.0);
  }
}

TEST_F(HotNumber, LivesWithInfiniteBoundsAndValues) {
  number->SetMinValue(-kInfinity);
  number->SetMaxValue(kInfinity);
  Focus();
  Press(ui::kKeyboardCode_Home);
  Press(ui::kKeyboardCode_End);
  EXPECT_EQ(log, "");
  Press(ui::kKeyboardCode_Up);
  EXPECT_EQ(number->GetValue(), 51.0);
  for (const double value : {kInfinity, -kInfinity, kNaN}) {
    number->SetValue(value);
    EXPECT_FALSE(number->GetText().empty());
    Press(ui::kKeyboardCode_Down);
    test::Click(Widget());
    driver::TypeText(u"+1\n");
    Press(ui::kKeyboardCode_Escape);
    EXPECT_EQ(std::isnan(number->GetValue()), std::isnan(value));
    Type(u"4");
    EXPECT_EQ(number->GetValue(), 4.0);
  }
}

TEST_F(HotNumber, IsEnteredInThreePhasesByWhoeverDrivesTheProgram) {
  number->SetDecimalPlaces(0);
  number->Enter(7.25);
  EXPECT_EQ(log, "0 1(7) 2 ");
  EXPECT_EQ(number->GetValue(), 7.25);
}

TEST_F(HotNumber, StopsShortWhereTheDriverSays) {
  number->Enter(7, Changes::kChange_Started);
  EXPECT_EQ(log, "0 ");
  EXPECT_EQ(number->GetValue(), 50.0);
  number->Enter(7, Changes::kChange_Changed);
  EXPECT_EQ(log, "0 1(7) ");
  number->Enter(8, Changes::kChange_Cancelled);
  EXPECT_EQ(log, "0 1(7) 1(8) 3 ");
  EXPECT_EQ(number->GetValue(), 7.0);
}

TEST_F(HotNumber, TakesNothingWhileItIsDisabled) {
  number->SetDisabled(true);
  number->Enter(7);
  number->OpenEditor();
  EXPECT_EQ(log, "");
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_FALSE(number->EnterText(u"7"));
}

TEST_F(HotNumber, GivesUpItsEditorWhenItIsDisabled) {
  test::Click(Widget());
  driver::TypeText(u"7");
  log.clear();
  number->SetDisabled(true);
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(log, "3 ");
}

TEST_F(HotNumber, GivesUpWhatIsTypedWhenItIsPutAway) {
  test::Click(Widget());
  driver::TypeText(u"7");
  log.clear();
  number->UI_Show(false);
  EXPECT_EQ(log, "3 ");
  EXPECT_EQ(number->GetValue(), 50.0);
}

TEST_F(HotNumber, GoesBackWhenItIsPutAwayWhileItIsDragged) {
  test::Mouse(Widget(), QEvent::MouseButtonPress, 5);
  test::Mouse(Widget(), QEvent::MouseMove, 35);
  log.clear();
  number->UI_Show(false);
  EXPECT_EQ(log, "3 ");
  EXPECT_EQ(number->GetValue(), 50.0);
}

TEST_F(HotNumber, ShowsThatItHasTheKeyboard) {
  const QImage without = Widget()->grab().toImage();
  Focus();
  EXPECT_NE(Widget()->grab().toImage(), without);
}

TEST_F(HotNumber, WorksOffTheScreen) {
  const boost::intrusive_ptr<UI_HotTextNumber> off(new UI_HotTextNumber);
  off->SetMaxValue(10);
  off->SetValue(9);
  off->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  Press(ui::kKeyboardCode_Up);
  EXPECT_EQ(off->GetValue(), 10.0);
  off->OpenEditor();
  EXPECT_FALSE(off->EnterText(u"3"));
}

TEST_F(HotNumber, MayBeTakenAwayByTheOneWhoHearsOfItsChange) {
  number->NotifyWhenChangedInteractively([this](const Changes& message) {
    if (message.GetChangeMessage() == Changes::kChange_Changed && number) {
      window.root->ChildRemove(number);
      number = nullptr;
    }
  });
  test::Click(Widget());
  driver::TypeText(u"7\n");
  EXPECT_EQ(number, nullptr);
}

TEST_F(HotNumber, RecommendsRoomForItsBoundsAndItsUnknownText) {
  const float narrow = number->Impl().recommend().x;
  number->SetMaxValue(100000);
  EXPECT_GT(number->Impl().recommend().x, narrow);
}

TEST_F(HotNumber, OpensWideEnoughForASumAndIsNarrowAgain) {
  test::Click(Widget());
  EXPECT_GT(Widget()->width(), 40);
  EXPECT_EQ(Editor()->width(), Widget()->width());
  Press(ui::kKeyboardCode_Escape);
  EXPECT_EQ(Widget()->width(), 24);
}

TEST_F(HotNumber, IsReadByAssistiveTechnologyAsASpinBoxWithValueAndBounds) {
  number->UI_SetToolTip(u"Set Font Size", 400);
  QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(Widget());
  ASSERT_NE(seen, nullptr);
  EXPECT_EQ(seen->role(), QAccessible::SpinBox);
  EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Set Font Size"));
  EXPECT_EQ(seen->text(QAccessible::Value), QStringLiteral("50"));
  ASSERT_NE(seen->valueInterface(), nullptr);
  EXPECT_EQ(seen->valueInterface()->maximumValue().toDouble(), 100.0);
  seen->valueInterface()->setCurrentValue(60);
  EXPECT_EQ(log, "0 1(60) 2 ");
  number->SetValueUnknown();
  EXPECT_EQ(seen->text(QAccessible::Value), QStringLiteral("mul."));
}

RC_GTEST_FIXTURE_PROP(HotNumber, IsNeverOutOfItsBoundsAfterAPersonChangedIt, (const std::vector<std::uint8_t>& keys)) {
  number->SetDecimalPlaces(1);
  number->SetValue(50);
  number->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  for (const std::uint8_t key : keys) {
    static constexpr ui::KeyboardCode kKeys[] = {ui::kKeyboardCode_Up,     ui::kKeyboardCode_Down,
                                                 ui::kKeyboardCode_PageUp, ui::kKeyboardCode_PageDown,
                                                 ui::kKeyboardCode_Home,   ui::kKeyboardCode_End};
    driver::PressKey(kKeys[key % std::size(kKeys)], (key & 0x80) ? ui::kModKey_Shift : ui::kModKey_None);
    RC_ASSERT(number->GetValue() >= 0.0 && number->GetValue() <= 100.0);
  }
}
