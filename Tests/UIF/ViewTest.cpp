#include <QImage>
#include <QMouseEvent>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "Screen.h"
#include "UIF/KeyCodes.h"
#include "zebcore/Boundary.h"
#include "zebcore/Clock.h"
#include "zebui/Controls.h"
#include "zebui/Driver.h"
#include "zebui/NodeManager.h"

using namespace UIF;

namespace {

struct Views : testing::Test {
  std::string log;
  test::Frame frame;
  test::Panel panel{&log};
  test::Pane pane{&log};

  void SetUp() override {
    panel.Create(u"test.panel", u"Panel", &frame, true);
    pane.Create(&panel, {10, 20, 200, 100});
    pane.Show(true);
    log.clear();
  }
  void TearDown() override {
    pane.Destroy();
    panel.Destroy();
  }
  void Mouse(QEvent::Type type, Qt::MouseButton button, QPointF at, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* const widget = WidgetOf(&pane);
    QMouseEvent event(type, at, widget->mapToGlobal(at), button, button, modifiers);
    QCoreApplication::sendEvent(widget, &event);
  }
  void Wheel(QPoint pixels, QPoint eighths, Qt::ScrollPhase phase) {
    QWidget* const widget = WidgetOf(&pane);
    QWheelEvent event(QPointF(5, 6), widget->mapToGlobal(QPointF(5, 6)), pixels, eighths, Qt::NoButton, {}, phase,
                      false);
    QCoreApplication::sendEvent(widget, &event);
  }
};

} // namespace

TEST_F(Views, AreInertBeforeTheyAreCreatedAndAfterTheyAreDestroyed) {
  test::Pane other(&log);
  other.SetBounds({1, 2, 3, 4});
  other.Show(true);
  other.Invalidate();
  other.SetFocus();
  EXPECT_FALSE(other.IsCreated());
  EXPECT_FALSE(other.IsShown());
  EXPECT_EQ(other.GetZEBNode(), nullptr);
  pane.Destroy();
  pane.Destroy();
  EXPECT_EQ(log, "pane-destroy ");
  EXPECT_EQ(pane.GetZEBNode(), nullptr);
}

TEST_F(Views, MayBeCreatedAgainAfterTheyWereDestroyed) {
  pane.Destroy();
  pane.Create(&panel, {0, 0, 10, 10});
  EXPECT_TRUE(pane.IsCreated());
  EXPECT_FALSE(pane.IsShown());
  EXPECT_EQ(log, "pane-destroy pane-create ");
}

TEST_F(Views, HaveBoundsInTheirParentAndAClientRectangleOfTheirOwn) {
  pane.SetBounds({5, 6, 70, 80});
  EXPECT_EQ(test::Text(pane.GetBounds()), "5,6,70,80");
  EXPECT_EQ(test::Text(pane.ClientRect()), "0,0,70,80");
}

TEST_F(Views, HearClicksWithTheirModifiersAndTakeTheFocus) {
  Mouse(QEvent::MouseButtonPress, Qt::LeftButton, {7, 8});
  Mouse(QEvent::MouseButtonRelease, Qt::LeftButton, {7, 8}, Qt::ShiftModifier | Qt::ControlModifier);
  EXPECT_EQ(log, "on pane-focus down up@7,8/6 ");
  EXPECT_TRUE(pane.HasFocus());
}

TEST_F(Views, HearDoubleAndRightClicks) {
  Mouse(QEvent::MouseButtonDblClick, Qt::LeftButton, {7, 8});
  Mouse(QEvent::MouseButtonPress, Qt::RightButton, {7, 8});
  EXPECT_EQ(log, "clicks2 right ");
}

TEST_F(Views, GiveTheWheelToTheirParentWhenTheyDoNotUseItInTheParentsCoordinates) {
  Wheel({}, {0, 120}, Qt::NoScrollPhase);
  EXPECT_EQ(log, "wheel1@15,26 ");
}

TEST_F(Views, AddUpAWheelThatTurnsByLessThanANotch) {
  Wheel({}, {0, -60}, Qt::NoScrollPhase);
  EXPECT_EQ(log, "");
  Wheel({}, {0, -60}, Qt::NoScrollPhase);
  EXPECT_EQ(log, "wheel-1@15,26 ");
}

TEST_F(Views, TakeATouchpadsPixelsForAPanDownwardsWhenTheContentGoesUp) {
  Wheel({0, -30}, {0, -60}, Qt::ScrollUpdate);
  EXPECT_EQ(log, "pan30 ");
}

TEST_F(Views, ReceiveSpecialKeysAsNegativeNumbers) {
  pane.SetFocus();
  log.clear();
  for (const auto code :
       {zebui::ui::kKeyboardCode_Delete, zebui::ui::kKeyboardCode_Down, zebui::ui::kKeyboardCode_Up,
        zebui::ui::kKeyboardCode_Home, zebui::ui::kKeyboardCode_End, zebui::ui::kKeyboardCode_PageDown,
        zebui::ui::kKeyboardCode_PageUp, zebui::ui::kKeyboardCode_Backspace})
    EXPECT_TRUE(zebui::driver::PressKey(code));
  EXPECT_EQ(log, "key-46 key-40 key-38 key-36 key-35 key-34 key-33 key8 ");
}

TEST_F(Views, LetAKeyThatNobodyUsesPass) {
  pane.SetFocus();
  pane.usesKeys = false;
  EXPECT_FALSE(zebui::driver::PressKey(zebui::ui::KeyboardCode(9999)));
}

TEST_F(Views, LoseTheFocusToAControlInThem) {
  boost::intrusive_ptr<zebui::controls::UI_TextEdit> edit(new zebui::controls::UI_TextEdit(1, 0));
  pane.GetZEBNode()->ChildPushBack(edit);
  pane.SetFocus();
  log.clear();
  edit->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  EXPECT_EQ(log, "pane-blur ");
  EXPECT_FALSE(pane.HasFocus());
  pane.SetFocus();
  EXPECT_EQ(log, "pane-blur pane-focus ");
  EXPECT_FALSE(edit->UI_HasKeyboardFocus(false));
  pane.GetZEBNode()->ChildRemove(edit);
}

TEST_F(Views, TakeTheFocusFromWhatIsInThemWhenTheyAreHidden) {
  boost::intrusive_ptr<zebui::controls::UI_TextEdit> edit(new zebui::controls::UI_TextEdit(1, 0));
  pane.GetZEBNode()->ChildPushBack(edit);
  edit->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  pane.Show(false);
  EXPECT_FALSE(edit->UI_HasKeyboardFocus(false));
  pane.GetZEBNode()->ChildRemove(edit);
}

TEST_F(Views, AreToldNothingByAControlInThemOnceTheyAreBeingDeleted) {
  auto view = std::make_unique<test::Pane>(&log);
  view->Create(&panel, {10, 130, 200, 100});
  view->Show(true);
  boost::intrusive_ptr<zebui::controls::UI_TextEdit> edit(new zebui::controls::UI_TextEdit(1, 0));
  view->GetZEBNode()->ChildPushBack(edit);
  int told = 0;
  edit->NotifyWhenChangedInteractively([&](const auto&) { ++told; });
  edit->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  ASSERT_TRUE(edit->UI_HasKeyboardFocus(false));
  told = 0;
  view = nullptr;
  EXPECT_EQ(told, 0);
  EXPECT_FALSE(edit->UI_HasKeyboardFocus(false));
}

TEST_F(Views, OutliveTheirParentsWidget) {
  boost::intrusive_ptr<zebui::controls::UI_TextEdit> edit(new zebui::controls::UI_TextEdit(1, 0));
  pane.GetZEBNode()->ChildPushBack(edit);
  panel.Destroy();
  pane.SetBounds({1, 2, 3, 4});
  pane.Invalidate();
  pane.Destroy();
  EXPECT_FALSE(pane.IsCreated());
}

TEST_F(Views, TakeTheirTimersWithThem) {
  zebcore::Clock::Instance().UseManual();
  const auto id = zebui::ui::UI_NodeManager::Get()->GetUniqueTimerID();
  pane.SetTimer(id, 100);
  zebcore::Clock::Instance().SetNow(zebcore::Clock::Instance().Now() + 100);
  zebui::ui::UI_NodeManager::Get()->FireDueTimers();
  EXPECT_EQ(log, "tick ");
  pane.Destroy();
  EXPECT_EQ(zebui::ui::UI_NodeManager::Get()->GetTimeUntilDue(id), std::nullopt);
  zebcore::Clock::Instance().UseReal();
}

TEST_F(Views, PaintThroughADeviceContext) {
  QImage image(20, 20, QImage::Format_RGB32);
  image.fill(Qt::white);
  {
    pane.SetBounds({0, 0, 10, 10});
    QPainter painter(&image);
    DC::Impl impl(painter);
    DC dc(impl);
    pane.DispatchPaint(dc);
  }
  EXPECT_EQ(image.pixelColor(2, 2), QColor(255, 0, 0));
  EXPECT_EQ(image.pixelColor(2, 5), QColor(0, 0, 255));
  EXPECT_EQ(image.pixelColor(15, 15), QColor(255, 255, 255));
}

TEST_F(Views, AnswerForAHookThatThrows) {
  struct Broken : test::Pane {
    using Pane::Pane;
    void LeftButtonUpSelf(const PointT<int>&, const KeyModifiers&) override { throw std::runtime_error("broken"); }
  };
  Broken broken(&log);
  broken.Create(&panel, {0, 0, 10, 10});
  zebcore::boundary::TakeReports();
  broken.DispatchLeftButtonUp({1, 1}, KeyModifiers());
  const auto reports = zebcore::boundary::TakeReports();
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].text, "broken");
  broken.Destroy();
}

TEST(KeyCodes, GoToTheViewAndBack) {
  for (const int key : {int(Qt::Key_Delete), int(Qt::Key_Left), int(Qt::Key_F5), int(Qt::Key_Backspace), int('A')})
    EXPECT_EQ(FromViewKeyCode(ToViewKeyCode(key)), key);
  EXPECT_EQ(ToViewKeyCode(Qt::Key_MediaPlay), 0);
}

TEST(Modifiers, AreWhatTheDriverSaysOnceItSaidSo) {
  KeyModifiers::SetCurrent(KeyModifiers(KeyModifiers::kExtend));
  EXPECT_TRUE(KeyModifiers::GetCurrent().Has(KeyModifiers::kExtend));
  EXPECT_FALSE(KeyModifiers::GetCurrent().Has(KeyModifiers::kToggle));
  KeyModifiers::SetCurrent(KeyModifiers());
}
