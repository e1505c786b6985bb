#include <QAccessible>
#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>

#include "Screen.h"
#include "UIF/ColorPickerControl.h"
#include "zebui/Driver.h"

using namespace UIF;
namespace toolkit = zebui::toolkit;
using zebcore::messaging::Message;
using zebcore::messaging::MessageCast;

namespace {

std::string Text(const Color& color) {
  return std::to_string(color.red) + "," + std::to_string(color.green) + "," + std::to_string(color.blue);
}

struct Picker : testing::Test, zebcore::messaging::Listener {
  std::string log;
  std::string ignored;
  test::Frame frame;
  test::Panel panel{&ignored};
  ColorPickerControl picker{&panel};
  bool destroys = false;

  void SetUp() override {
    panel.Create(u"test.panel", u"Panel", &frame, true);
    picker.Create(&panel, {416, 32, 40, 20}, 7, {0, 0}, u"");
    picker.Show(true);
    zebcore::messaging::AddListener(picker.GetStationID(), this);
    station = picker.GetStationID();
  }
  void TearDown() override {
    zebcore::messaging::RemoveListener(station, this);
    picker.Destroy();
    panel.Destroy();
  }
  void HandleMessage(const Message& message) override {
    if (const auto* changed = MessageCast<ColorPickerControlChangedMessage>(message))
      log +=
          "changed(" + Text({changed->red, changed->green, changed->blue}) + "#" + std::to_string(changed->id) + ") ";
    if (MessageCast<ColorPickerSwatchClickedMessage>(message))
      log += "clicked ";
    if (MessageCast<ColorPickerSwatchStartEyedropperModeMessage>(message))
      log += "start ";
    if (MessageCast<ColorPickerSwatchEndEyedropperModeMessage>(message))
      log += "end ";
    if (destroys)
      picker.Destroy();
  }
  QPushButton* Half(int index) const {
    return toolkit::WidgetOf(picker.GetNode())->findChildren<QPushButton*>().at(index);
  }
  // The cover that the eyedropper puts over the screen; null without one.
  static QWidget* Cover() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->isVisible() && window->accessibleName() == QStringLiteral("Pick a color from the screen"))
        return window;
    }
    return nullptr;
  }
  static void Key(QWidget* widget, int key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
  }
  static void Press(QWidget* widget, const QPointF& at, Qt::MouseButton button) {
    QMouseEvent event(QEvent::MouseButtonPress, at, widget->mapToGlobal(at), button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
  }
  zebcore::utility::ImmutableString station;
};

} // namespace

TEST_F(Picker, ReportsNothingWhenTheProgramSetsItsColour) {
  picker.SetColor({10, 20, 30}, false);
  EXPECT_EQ(log, "");
  EXPECT_EQ(Text(picker.GetColor()), "10,20,30");
}

TEST_F(Picker, ReportsAColourThatIsSetAsIfAPersonHadPickedIt) {
  picker.SetColor({10, 20, 30}, true);
  EXPECT_EQ(log, "changed(10,20,30#7) ");
}

TEST_F(Picker, SaysThatItsSwatchWasClicked) {
  Half(0)->click();
  picker.ClickSwatch();
  EXPECT_EQ(log, "clicked clicked ");
}

TEST_F(Picker, ShowsItsColourInTheSwatch) {
  picker.SetColor({200, 30, 90}, false);
  EXPECT_EQ(Half(0)->grab().toImage().pixelColor(10, 10), QColor(200, 30, 90));
}

TEST_F(Picker, KeepsTheSwatchToTheExtentThatItIsGiven) {
  ColorPickerControl other(&panel);
  other.Create(&panel, {0, 100, 60, 20}, 1, {10, 10}, u"Paint");
  other.Show(true);
  other.SetColor({0, 255, 0}, false);
  QWidget* swatch = toolkit::WidgetOf(other.GetNode())->findChildren<QPushButton*>().at(0);
  const QImage picture = swatch->grab().toImage();
  EXPECT_EQ(picture.pixelColor(5, 10), QColor(0, 255, 0));
  EXPECT_NE(picture.pixelColor(20, 10), QColor(0, 255, 0));
  EXPECT_EQ(swatch->accessibleName(), QStringLiteral("Paint"));
}

TEST_F(Picker, PicksTheColourUnderAClickAnywhereOnTheScreen) {
  // A window of a known colour in the middle of the screen, under the cover.
  QWidget target;
  target.setStyleSheet(QStringLiteral("background: #123456"));
  target.setGeometry(100, 100, 200, 200);
  target.show();
  QCoreApplication::processEvents();
  Half(1)->click();
  ASSERT_EQ(log, "start ");
  EXPECT_TRUE(picker.IsEyedropperActive());
  QWidget* cover = Cover();
  ASSERT_NE(cover, nullptr);
  EXPECT_EQ(cover->geometry(), QGuiApplication::primaryScreen()->geometry());
  Press(cover, {200, 200}, Qt::LeftButton);
  EXPECT_EQ(log, "start changed(18,52,86#7) end ");
  EXPECT_EQ(Text(picker.GetColor()), "18,52,86");
  EXPECT_FALSE(picker.IsEyedropperActive());
  EXPECT_EQ(Cover(), nullptr);
}

TEST_F(Picker, EscapeEndsTheEyedropperWithoutAColour) {
  picker.SetColor({1, 2, 3}, false);
  picker.StartEyedropper();
  Key(Cover(), Qt::Key_Escape);
  EXPECT_EQ(log, "start end ");
  EXPECT_EQ(Text(picker.GetColor()), "1,2,3");
  EXPECT_EQ(Cover(), nullptr);
}

TEST_F(Picker, AnotherMouseButtonEndsTheEyedropperWithoutAColour) {
  picker.StartEyedropper();
  Press(Cover(), {5, 5}, Qt::RightButton);
  EXPECT_EQ(log, "start end ");
}

TEST_F(Picker, TheEyedropperTakesAllKeysAndLeavesTheFocusAlone) {
  frame.Activate();
  QPushButton text(frame.container);
  text.show();
  text.setFocus();
  picker.StartEyedropper();
  EXPECT_EQ(QWidget::keyboardGrabber(), Cover());
  EXPECT_EQ(QApplication::focusWidget(), &text);
  picker.EndEyedropper(nullptr);
  EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
}

TEST_F(Picker, TheMagnifierIsBesideThePointerAndInsideTheScreen) {
  picker.StartEyedropper();
  QWidget* cover = Cover();
  const auto move = [&](const QPointF& at) {
    QMouseEvent event(QEvent::MouseMove, at, cover->mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(cover, &event);
    return cover->grab().toImage();
  };
  QEvent leave(QEvent::Leave);
  QCoreApplication::sendEvent(cover, &leave);
  const QImage bare = cover->grab().toImage();
  EXPECT_NE(move({50, 50}).copy(68, 68, 121, 121), bare.copy(68, 68, 121, 121));
  const int right = cover->width() - 10;
  const int bottom = cover->height() - 10;
  EXPECT_NE(move(QPointF(right, bottom)).copy(right - 139, bottom - 159, 100, 100),
            bare.copy(right - 139, bottom - 159, 100, 100));
}

TEST_F(Picker, EndsWithAColourThatItIsGivenInPlaceOfAPerson) {
  picker.StartEyedropper();
  const Color orange{255, 128, 0};
  picker.EndEyedropper(&orange);
  picker.EndEyedropper(&orange);
  EXPECT_EQ(log, "start changed(255,128,0#7) end ");
}

TEST_F(Picker, DoesNotStartTwice) {
  picker.StartEyedropper();
  picker.StartEyedropper();
  EXPECT_EQ(log, "start ");
}

TEST_F(Picker, GoesAwayWithItsEyedropper) {
  picker.StartEyedropper();
  picker.Destroy();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(Cover(), nullptr);
  EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
}

TEST_F(Picker, TakesAColourThatIsDroppedOnItsSwatch) {
  QMimeData data;
  data.setColorData(QColor(1, 200, 3));
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(Half(0), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(Half(0), &drop);
  EXPECT_EQ(log, "changed(1,200,3#7) ");
}

TEST_F(Picker, DoesNothingWhenDisabled) {
  picker.Enable(false);
  picker.ClickSwatch();
  picker.StartEyedropper();
  Half(0)->click();
  Half(1)->click();
  EXPECT_EQ(log, "");
  EXPECT_FALSE(picker.IsEnabled());
}

TEST_F(Picker, BothHalvesAreReachedByTabAndPressedBySpace) {
  for (const int half : {0, 1}) {
    EXPECT_TRUE((Half(half)->focusPolicy() & Qt::TabFocus) == Qt::TabFocus);
    EXPECT_FALSE((Half(half)->focusPolicy() & Qt::ClickFocus) == Qt::ClickFocus);
    toolkit::MoveFocus(Half(half), zebui::ui::kFocusChange_Advance);
    EXPECT_TRUE(picker.HasFocus());
    EXPECT_TRUE(zebui::driver::PressKey(zebui::ui::KeyboardCode(0x20), zebui::ui::kModKey_None, u" "));
  }
  EXPECT_EQ(log, "clicked start ");
}

TEST_F(Picker, TellsAssistiveTechnologyBothButtonsAndTheColour) {
  picker.SetColor({255, 128, 0}, false);
  QAccessibleInterface* swatch = QAccessible::queryAccessibleInterface(Half(0));
  QAccessibleInterface* dropper = QAccessible::queryAccessibleInterface(Half(1));
  EXPECT_EQ(swatch->role(), QAccessible::Button);
  EXPECT_EQ(swatch->text(QAccessible::Name), QStringLiteral("Choose a color"));
  EXPECT_EQ(swatch->text(QAccessible::Description), QStringLiteral("#ff8000"));
  EXPECT_EQ(dropper->text(QAccessible::Name), QStringLiteral("Pick a color from the screen"));
}

TEST_F(Picker, DividesItsBoundsBetweenBothHalves) {
  picker.SetBounds({10, 66, 40, 20});
  EXPECT_EQ(toolkit::WidgetOf(picker.GetNode())->geometry(), QRect(10, 66, 40, 20));
  EXPECT_EQ(Half(0)->geometry(), QRect(0, 0, 20, 20));
  EXPECT_EQ(Half(1)->geometry(), QRect(20, 0, 20, 20));
}

TEST_F(Picker, MayBeDestroyedByWhoeverHearsIt) {
  destroys = true;
  Half(0)->click();
  EXPECT_EQ(log, "clicked ");
  EXPECT_EQ(picker.GetNode(), nullptr);
}

TEST_F(Picker, MayBeDestroyedWhileTheEyedropperStartsAndEnds) {
  destroys = true;
  picker.StartEyedropper();
  EXPECT_EQ(log, "start ");
  EXPECT_EQ(Cover(), nullptr);
}

TEST_F(Picker, TellsItsEndAlsoWhenItIsDestroyedByTheColour) {
  picker.StartEyedropper();
  destroys = true;
  Press(Cover(), {5, 5}, Qt::LeftButton);
  EXPECT_EQ(log.substr(log.size() - 4), "end ");
}
