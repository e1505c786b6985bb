#include <QAccessible>
#include <QLineEdit>
#include <QMouseEvent>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "Screen.h"
#include "UIF/HotTimecodeControl.h"
#include "UIF/HotTimecodeWidget.h"
#include "zebui/Controls.h"
#include "zebui/Driver.h"

using namespace UIF;
using zebcore::messaging::Message;
using zebcore::messaging::MessageCast;
using zebmediatypes::kFrameRate_25;

namespace {

constexpr std::int64_t kFrame = zebmediatypes::kTicksPerSecond / 25;
TickTime Frames(std::int64_t count) {
  return TickTime(count * kFrame);
}

struct Field : testing::Test, zebcore::messaging::Listener {
  std::string log;
  test::Frame frame;
  test::Panel panel{&log};
  HotTimecodeControl field{&panel};
  boost::intrusive_ptr<zebui::controls::UI_TextEdit> text = new zebui::controls::UI_TextEdit(1, 0);

  void SetUp() override {
    panel.Create(u"test.panel", u"Panel", &frame, true);
    const TimecodeControlInfo info{zebmediatypes::kTimeDisplay_Timecode25, kFrameRate_25, kFrameRate_25};
    field.Create(&panel, {0, 0, 80, 17}, info, 1, false, false, true, 2);
    field.SetValue(Frames(100), true);
    field.SetMinimum(zebmediatypes::kTime_Zero);
    field.SetMaximum(zebmediatypes::kTime_Max);
    field.SetWantsKeyboardFocusFromAdvance(false);
    field.Show(true);
    text->UI_SetLocalRectF({100, 0, 100, 60});
    panel.GetZEBNode()->ChildPushBack(text);
    zebcore::messaging::AddListener(field.GetStationID(), this);
    zebcore::messaging::AddListener(field.GetTimecodeEditTextStationID(), this);
    frame.Activate();
    log.clear();
  }
  void TearDown() override {
    if (field.IsCreated()) {
      zebcore::messaging::RemoveListener(field.GetStationID(), this);
      zebcore::messaging::RemoveListener(field.GetTimecodeEditTextStationID(), this);
    }
    field.Destroy();
    panel.Destroy();
  }
  void HandleMessage(const Message& message) override {
    if (const auto* changing = MessageCast<HotTimecodeValueChangingMessage>(message))
      log += "changing" + std::to_string(changing->time.GetTicks() / kFrame) + " ";
    if (const auto* changed = MessageCast<HotTimecodeValueChangedMessage>(message))
      log += "changed" + std::to_string(changed->time.GetTicks() / kFrame) + "/" + std::to_string(changed->id) + " ";
    if (MessageCast<InlineEditTextActiveMessage>(message))
      log += "editing ";
    if (destroyOnMessage)
      field.Destroy();
  }
  QWidget* Hot() {
    for (QWidget* child : WidgetOf(&panel)->findChildren<QWidget*>())
      if (dynamic_cast<HotTimecodeWidget*>(child))
        return child;
    return nullptr;
  }
  void Mouse(QEvent::Type type, int x, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* const hot = Hot();
    const QPointF at(x, 8);
    QMouseEvent event(type, at, hot->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, modifiers);
    QCoreApplication::sendEvent(hot, &event);
  }
  QLineEdit* Editor() { return Hot()->findChild<QLineEdit*>(); }
  bool destroyOnMessage = false;
};

} // namespace

TEST(HotTimecode, CostsThreeWordsAsAMember) {
  EXPECT_EQ(sizeof(HotTimecodeControl), 3 * sizeof(void*));
}

TEST(HotTimecode, IsInertBeforeItIsCreated) {
  HotTimecodeControl field(nullptr);
  field.SetValue(Frames(1), true);
  field.Show(true);
  field.OpenInlineEditor();
  EXPECT_FALSE(field.EnterText(u"1"));
  EXPECT_FALSE(field.IsShown());
  EXPECT_TRUE(field.GetStationID().IsNull());
}

TEST_F(Field, ShowsItsValueWithTheZeroPoint) {
  EXPECT_EQ(field.GetText(), u"00:00:04:00");
  field.SetZeroPoint(Frames(25));
  EXPECT_EQ(field.GetText(), u"00:00:05:00");
}

TEST_F(Field, DoesNotReportAValueSetByTheProgram) {
  field.SetValue(Frames(7), true);
  field.SetValue(Frames(8), false);
  EXPECT_EQ(log, "");
  EXPECT_EQ(field.GetValue(), Frames(8));
}

TEST_F(Field, IsDraggedAFrameForEveryFourPixelsAndReportsTheEnd) {
  Mouse(QEvent::MouseButtonPress, 10);
  log.clear();
  Mouse(QEvent::MouseMove, 14);
  Mouse(QEvent::MouseMove, 15);
  Mouse(QEvent::MouseMove, 22);
  Mouse(QEvent::MouseButtonRelease, 22);
  EXPECT_EQ(log, "changing101 changing103 changed103/1 ");
}

TEST_F(Field, IsDraggedByTenFramesWithShift) {
  Mouse(QEvent::MouseButtonPress, 30);
  log.clear();
  Mouse(QEvent::MouseMove, 26, Qt::ShiftModifier);
  Mouse(QEvent::MouseButtonRelease, 26, Qt::ShiftModifier);
  EXPECT_EQ(log, "changing90 changed90/1 ");
}

TEST_F(Field, PutsTheOldValueBackOnEscapeWhileItIsDragged) {
  Mouse(QEvent::MouseButtonPress, 10);
  Mouse(QEvent::MouseMove, 30);
  log.clear();
  zebui::driver::PressKey(zebui::ui::kKeyboardCode_Escape);
  Mouse(QEvent::MouseMove, 50);
  Mouse(QEvent::MouseButtonRelease, 50);
  EXPECT_EQ(log, "changing100 ");
  EXPECT_EQ(field.GetValue(), Frames(100));
}

TEST_F(Field, DraggedBackToWhereItWasReportsNoChange) {
  Mouse(QEvent::MouseButtonPress, 10);
  log.clear();
  Mouse(QEvent::MouseMove, 14);
  Mouse(QEvent::MouseMove, 10);
  Mouse(QEvent::MouseButtonRelease, 10);
  EXPECT_EQ(log, "changing101 changing100 ");
}

TEST_F(Field, MakesNoJumpWhenShiftIsPressedOnTheWay) {
  Mouse(QEvent::MouseButtonPress, 10);
  Mouse(QEvent::MouseMove, 30);
  log.clear();
  Mouse(QEvent::MouseMove, 30, Qt::ShiftModifier);
  EXPECT_EQ(log, "");
  Mouse(QEvent::MouseMove, 34, Qt::ShiftModifier);
  EXPECT_EQ(log, "changing115 ");
}

TEST_F(Field, IsDraggedATenthAsFastWithControl) {
  Mouse(QEvent::MouseButtonPress, 10);
  log.clear();
  Mouse(QEvent::MouseMove, 48, Qt::ControlModifier);
  EXPECT_EQ(log, "");
  Mouse(QEvent::MouseMove, 50, Qt::ControlModifier);
  EXPECT_EQ(log, "changing101 ");
}

TEST_F(Field, APressThatHardlyMovesIsAClick) {
  Mouse(QEvent::MouseButtonPress, 10);
  Mouse(QEvent::MouseMove, 13);
  Mouse(QEvent::MouseButtonRelease, 13);
  EXPECT_NE(field.GetInlineEditText(), nullptr);
}

TEST_F(Field, TakesAPartialEntryFromTheRight) {
  for (const auto& [typed, frames] : {std::pair(u"5", 5), std::pair(u"1203", 303), std::pair(u"1:00:00", 1500)}) {
    field.OpenInlineEditor();
    zebui::driver::TypeText(zebcore::UString(typed) + u"\n");
    EXPECT_EQ(field.GetValue(), Frames(frames));
  }
}

TEST_F(Field, GoesOnFromItsValueWithAPlusInFront) {
  field.SetZeroPoint(Frames(25));
  field.OpenInlineEditor();
  EXPECT_TRUE(field.EnterText(u"+10"));
  EXPECT_EQ(field.GetValue(), Frames(110));
  field.OpenInlineEditor();
  EXPECT_FALSE(field.EnterText(u"+"));
}

TEST_F(Field, OpensWhenATimeIsTypedOnIt) {
  zebui::toolkit::MoveFocus(Hot(), zebui::ui::kFocusChange_Program);
  log.clear();
  zebui::driver::TypeText(u"1");
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->text(), QStringLiteral("1"));
  zebui::driver::TypeText(u"00\n");
  EXPECT_EQ(log, "editing changed25/1 ");
}

TEST_F(Field, OpensOnEnterWithItsTextSelected) {
  zebui::toolkit::MoveFocus(Hot(), zebui::ui::kFocusChange_Program);
  zebui::driver::PressKey(zebui::ui::kKeyboardCode_Enter);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->selectedText(), QStringLiteral("00:00:04:00"));
}

TEST_F(Field, LeavesThePageKeysToTheListAndShortcutsToTheProgram) {
  zebui::toolkit::MoveFocus(Hot(), zebui::ui::kFocusChange_Program);
  log.clear();
  EXPECT_FALSE(zebui::driver::PressKey(zebui::ui::kKeyboardCode_PageDown));
  EXPECT_FALSE(zebui::driver::PressKey(zebui::ui::kKeyboardCode_Up, zebui::ui::kModKey_Alt));
  EXPECT_EQ(log, "");
}

TEST_F(Field, TypesADropFrameTimeThatDoesNotExistAsTheNextThatDoes) {
  field.SetTimeDisplay(zebmediatypes::kTimeDisplay_Timecode2997Drop, zebmediatypes::kFrameRate_2997, false);
  field.OpenInlineEditor();
  EXPECT_TRUE(field.EnterText(u"00:01:00:00"));
  EXPECT_EQ(field.GetText(), u"00:01:00;02");
}

TEST_F(Field, ReadOnlyIsNeitherDraggedNorOpened) {
  HotTimecodeControl fixed(&panel);
  fixed.Create(&panel, {0, 20, 80, 17}, {zebmediatypes::kTimeDisplay_Timecode25, kFrameRate_25, kFrameRate_25}, 3, true,
               false, true, 2);
  fixed.Show(true);
  fixed.OpenInlineEditor();
  EXPECT_EQ(fixed.GetInlineEditText(), nullptr);
  fixed.Scrub(Frames(4), true);
  EXPECT_EQ(fixed.GetValue(), TickTime());
}

TEST_F(Field, StopsAtItsLimits) {
  Mouse(QEvent::MouseButtonPress, 70);
  log.clear();
  Mouse(QEvent::MouseMove, 10, Qt::ShiftModifier);
  Mouse(QEvent::MouseButtonRelease, 10, Qt::ShiftModifier);
  EXPECT_EQ(log, "changing0 changed0/1 ");
}

TEST_F(Field, OpensItsEditorOnAClickWithTheTextSelectedAndSaysSo) {
  Mouse(QEvent::MouseButtonPress, 10);
  log.clear();
  Mouse(QEvent::MouseButtonRelease, 11);
  EXPECT_EQ(log, "editing ");
  ASSERT_NE(field.GetInlineEditText(), nullptr);
  EXPECT_TRUE(InlineEditText::AnyFocused());
  EXPECT_EQ(Editor()->selectedText(), QStringLiteral("00:00:04:00"));
}

TEST_F(Field, TakesWhatIsTypedOnEnterAndLeavesTheFocusNowhere) {
  field.OpenInlineEditor();
  log.clear();
  zebui::driver::TypeText(u"1203\n");
  EXPECT_EQ(log, "changed303/1 ");
  EXPECT_EQ(field.GetInlineEditText(), nullptr);
  EXPECT_FALSE(InlineEditText::AnyFocused());
  EXPECT_EQ(zebui::toolkit::GetFocusWidget(), nullptr);
}

TEST_F(Field, SubtractsTheZeroPointFromWhatIsTyped) {
  field.SetZeroPoint(Frames(25));
  field.OpenInlineEditor();
  EXPECT_TRUE(field.EnterText(u"00:00:02:00"));
  EXPECT_EQ(field.GetValue(), Frames(25));
}

TEST_F(Field, ShakesAtATextThatIsNoTimeAndStaysOpen) {
  field.OpenInlineEditor();
  log.clear();
  EXPECT_FALSE(field.EnterText(u"soon"));
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->property("shakes").toInt(), 1);
  EXPECT_EQ(log, "");
  EXPECT_EQ(field.GetValue(), Frames(100));
}

TEST_F(Field, PutsTheOldValueBackOnEscapeWhileItIsTyped) {
  field.OpenInlineEditor();
  log.clear();
  zebui::driver::TypeText(u"12");
  zebui::driver::PressKey(zebui::ui::kKeyboardCode_Escape);
  EXPECT_EQ(field.GetInlineEditText(), nullptr);
  EXPECT_EQ(field.GetText(), u"00:00:04:00");
  EXPECT_EQ(log, "");
}

TEST_F(Field, TakesWhatWasTypedWhenTheFocusGoesElsewhere) {
  field.OpenInlineEditor();
  zebui::driver::TypeText(u"3");
  log.clear();
  text->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  EXPECT_EQ(log, "changed3/1 ");
  EXPECT_TRUE(text->UI_HasKeyboardFocus(false));
}

TEST_F(Field, GivesUpATextThatIsNoTimeWhenTheFocusGoesElsewhere) {
  field.OpenInlineEditor();
  zebui::driver::TypeText(u"x");
  log.clear();
  text->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  EXPECT_EQ(log, "");
  EXPECT_EQ(field.GetInlineEditText(), nullptr);
}

TEST_F(Field, ReportsNothingWhenTheTextIsEnteredUnchangedEvenInsideAFrame) {
  const TickTime inside(Frames(100).GetTicks() + 5);
  field.SetValue(inside, true);
  field.OpenInlineEditor();
  log.clear();
  zebui::driver::PressKey(zebui::ui::kKeyboardCode_Enter);
  EXPECT_EQ(log, "");
  EXPECT_EQ(field.GetValue(), inside);
}

TEST_F(Field, BringsWhatIsTypedInsideItsLimits) {
  field.SetMaximum(Frames(200));
  field.OpenInlineEditor();
  EXPECT_TRUE(field.EnterText(u"01:00:00:00"));
  EXPECT_EQ(field.GetValue(), Frames(200));
}

TEST_F(Field, StepsByAFrameWithTheArrowsAndByTenWithShift) {
  zebui::toolkit::MoveFocus(Hot(), zebui::ui::kFocusChange_Program);
  log.clear();
  zebui::driver::PressKey(zebui::ui::kKeyboardCode_Up);
  zebui::driver::PressKey(zebui::ui::kKeyboardCode_Down, zebui::ui::kModKey_Shift);
  EXPECT_EQ(log, "changed101/1 changed91/1 ");
}

TEST_F(Field, StepsTheTextInItsEditorWithTheArrowsAndReportsItOnEnter) {
  field.OpenInlineEditor();
  log.clear();
  zebui::driver::PressKey(zebui::ui::kKeyboardCode_Up);
  EXPECT_EQ(Editor()->text(), QStringLiteral("00:00:04:01"));
  EXPECT_EQ(log, "");
  zebui::driver::PressKey(zebui::ui::kKeyboardCode_Enter);
  EXPECT_EQ(log, "changed101/1 ");
}

TEST_F(Field, StepsWithTheWheelOnlyWhenItHasTheFocus) {
  const auto turn = [this] {
    QWheelEvent event(QPointF(5, 5), Hot()->mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(Hot(), &event);
    return event.isAccepted();
  };
  log.clear();
  // Left to the list below, to be scrolled.
  EXPECT_FALSE(turn());
  EXPECT_EQ(log, "");
  zebui::toolkit::MoveFocus(Hot(), zebui::ui::kFocusChange_Program);
  log.clear();
  EXPECT_TRUE(turn());
  EXPECT_EQ(log, "changed101/1 ");
}

TEST_F(Field, TabTakesWhatIsTypedAndGoesOnToTheNextControlThatWantsIt) {
  HotTimecodeControl second(&panel);
  second.Create(&panel, {0, 20, 80, 17}, {}, 2, false, false, true, 2);
  second.SetWantsKeyboardFocusFromAdvance(false);
  second.Show(true);
  field.OpenInlineEditor();
  zebui::driver::TypeText(u"5");
  log.clear();
  zebui::driver::PressKey(zebui::ui::kKeyboardCode_Tab, zebui::ui::kModKey_None, u"\t");
  EXPECT_EQ(log, "changed5/1 ");
  EXPECT_TRUE(text->UI_HasKeyboardFocus(false));
}

TEST_F(Field, TabStaysAtATextThatIsNoTime) {
  field.OpenInlineEditor();
  zebui::driver::TypeText(u"x");
  zebui::driver::PressKey(zebui::ui::kKeyboardCode_Tab, zebui::ui::kModKey_None, u"\t");
  EXPECT_NE(field.GetInlineEditText(), nullptr);
  EXPECT_TRUE(InlineEditText::AnyFocused());
}

TEST_F(Field, ShowsDropFramePunctuationAndFollowsADisplayOfItsOwn) {
  field.SetTimeDisplay(zebmediatypes::kTimeDisplay_Timecode2997Drop, zebmediatypes::kFrameRate_2997, false);
  EXPECT_NE(field.GetText().find(u';'), zebcore::UString::npos);
  field.SetDisplayOverride(zebmediatypes::kTimeDisplay_Frames.GetNumber());
  EXPECT_EQ(field.GetText().find(u';'), zebcore::UString::npos);
  field.SetDisplayOverride(0);
  EXPECT_NE(field.GetText().find(u';'), zebcore::UString::npos);
}

TEST_F(Field, MayBeTakenAwayByTheOneWhoHearsOfItsChange) {
  destroyOnMessage = true;
  field.OpenInlineEditor();
  EXPECT_FALSE(field.IsCreated());
  destroyOnMessage = false;
}

TEST_F(Field, MayBeTakenAwayOnEnter) {
  field.OpenInlineEditor();
  destroyOnMessage = true;
  zebui::driver::TypeText(u"7\n");
  EXPECT_FALSE(field.IsCreated());
  destroyOnMessage = false;
}

TEST_F(Field, IsScrubbedAndAskedToReportByTheDriver) {
  log.clear();
  field.Scrub(Frames(110), false);
  field.Scrub(Frames(120), true);
  field.ReportValue(Frames(120));
  EXPECT_EQ(log, "changing110 changing120 changed120/1 changed120/1 ");
}

TEST_F(Field, IsReadByAssistiveTechnologyWithNameRoleAndValue) {
  QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(Hot());
  ASSERT_NE(seen, nullptr);
  EXPECT_EQ(seen->role(), QAccessible::SpinBox);
  EXPECT_EQ(seen->text(QAccessible::Value), QStringLiteral("00:00:04:00"));
  EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty());
}

TEST_F(Field, HasStationsOfItsOwn) {
  HotTimecodeControl second(&panel);
  second.Create(&panel, {0, 20, 80, 17}, {}, 2, false, false, true, 2);
  EXPECT_FALSE(second.GetStationID() == field.GetStationID());
  EXPECT_FALSE(second.GetStationID() == second.GetTimecodeEditTextStationID());
}
