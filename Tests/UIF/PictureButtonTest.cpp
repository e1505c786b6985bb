#include <set>

#include <QAccessible>
#include <QImage>
#include <QPushButton>
#include <QTest>

#include "Screen.h"
#include "UIF/DecalPainter.h"
#include "UIF/PictureButton.h"
#include "UIF/Theme.h"
#include "zebui/Driver.h"

using namespace UIF;
namespace toolkit = zebui::toolkit;

namespace {

constexpr int kCommand = 32015;

// As a person does, with all that the toolkit makes of it.
void Click(QWidget* widget) {
  QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
}

struct Buttons : testing::Test {
  std::string log;
  test::Frame frame;
  test::Panel super{&log};
  test::Panel panel{&log, &super};
  PictureButton button{&panel};

  void SetUp() override {
    panel.Create(u"test.panel", u"Panel", &frame, true);
    button.Create(&panel, {145, 32, 20, 20}, kCommand, Bitmap::GetBitmap(kCaptionBoldDecal, nullptr));
    button.SetTakesFocusOnPress(false);
    button.SetToolTipText(u"Bold");
    button.Show(true);
    panel.obeys = kCommand;
    log.clear();
  }
  void TearDown() override {
    button.Destroy();
    panel.Destroy();
  }
  QPushButton* Widget() const { return qobject_cast<QPushButton*>(toolkit::WidgetOf(button.GetNode())); }
  QImage Picture() const { return Widget()->grab().toImage(); }
  QAccessibleInterface* Access() const { return QAccessible::queryAccessibleInterface(Widget()); }
};

QImage Draw(DecalID decal, int side) {
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::white);
  QPainter painter(&image);
  PaintDecal(painter, decal, QRectF(0, 0, side, side), Qt::black, Qt::blue);
  return image;
}

} // namespace

TEST_F(Buttons, GivesItsCommandToItsCommanderWhenPressed) {
  Click(Widget());
  EXPECT_EQ(log, "command32015 ");
  button.Press();
  EXPECT_EQ(log, "command32015 command32015 ");
}

TEST_F(Buttons, GoesUpTheChainWhileNobodyObeys) {
  panel.obeys = 0;
  super.obeys = kCommand;
  button.Press();
  EXPECT_EQ(log, "command32015 command32015 ");
}

TEST_F(Buttons, LeavesItsStateToWhoeverObeys) {
  Click(Widget());
  EXPECT_FALSE(button.GetValue());
  EXPECT_FALSE(Widget()->isChecked());
  button.SetValue(true);
  Click(Widget());
  EXPECT_TRUE(button.GetValue());
  EXPECT_TRUE(Widget()->isChecked());
}

TEST_F(Buttons, LeavesTheFocusWhereItIsWhenPressed) {
  frame.Activate();
  QPushButton other(frame.container);
  other.show();
  other.setFocus();
  Click(Widget());
  EXPECT_FALSE(button.HasFocus());
  EXPECT_EQ(QApplication::focusWidget(), &other);
}

TEST_F(Buttons, TakesTheFocusWhenPressedIfItIsToldTo) {
  frame.Activate();
  button.SetTakesFocusOnPress(true);
  Click(Widget());
  EXPECT_TRUE(button.HasFocus());
}

TEST_F(Buttons, IsReachedByTabAndPressedBySpaceAndEnter) {
  EXPECT_TRUE((Widget()->focusPolicy() & Qt::TabFocus) == Qt::TabFocus);
  button.GetNode()->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Advance);
  EXPECT_TRUE(button.HasFocus());
  log.clear();
  EXPECT_TRUE(zebui::driver::PressKey(zebui::ui::KeyboardCode(0x20), zebui::ui::kModKey_None, u" "));
  EXPECT_TRUE(zebui::driver::PressKey(zebui::ui::kKeyboardCode_Enter, zebui::ui::kModKey_None, u"\r"));
  EXPECT_EQ(log, "command32015 command32015 ");
}

TEST_F(Buttons, DoesNothingWhenDisabledAndLosesTheFocus) {
  button.GetNode()->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Advance);
  button.Enable(false);
  EXPECT_FALSE(button.HasFocus());
  log.clear();
  Click(Widget());
  button.Press();
  EXPECT_EQ(log, "");
  EXPECT_FALSE(button.IsEnabled());
}

TEST_F(Buttons, IsHiddenUntilItIsShownAndMovesToItsBounds) {
  PictureButton later(&panel);
  later.Create(&panel, {0, 0, 20, 20}, 1, Bitmap::GetBitmap(kCaptionUnderlineDecal, nullptr));
  EXPECT_FALSE(later.IsShown());
  EXPECT_TRUE(toolkit::WidgetOf(later.GetNode())->isHidden());
  button.SetBounds({4, 66, 20, 20});
  EXPECT_EQ(Widget()->geometry(), QRect(4, 66, 20, 20));
  EXPECT_EQ(button.GetBounds(), (test::RectT<int>{4, 66, 20, 20}));
}

TEST_F(Buttons, ShowsItsToolTipAfterFourTenthsOfASecond) {
  EXPECT_EQ(Widget()->toolTip(), QStringLiteral("Bold"));
  EXPECT_EQ(Widget()->property("toolTipDelay").toInt(), 400);
  EXPECT_EQ(button.GetToolTipText(), u"Bold");
}

TEST_F(Buttons, TellsAssistiveTechnologyItsNameAndWhetherItIsOn) {
  ASSERT_NE(Access(), nullptr);
  EXPECT_EQ(Access()->role(), QAccessible::CheckBox);
  EXPECT_EQ(Access()->text(QAccessible::Name), QStringLiteral("Bold"));
  EXPECT_TRUE(Access()->state().checkable);
  EXPECT_FALSE(Access()->state().checked);
  button.SetValue(true);
  EXPECT_TRUE(Access()->state().checked);
  button.Enable(false);
  EXPECT_TRUE(Access()->state().disabled);
}

TEST_F(Buttons, IsPressedByAssistiveTechnology) {
  const QStringList names = Access()->actionInterface()->actionNames();
  ASSERT_FALSE(names.isEmpty());
  Access()->actionInterface()->doAction(names.first());
  EXPECT_EQ(log, "command32015 ");
  EXPECT_FALSE(button.GetValue());
}

TEST_F(Buttons, TheMusicNoteHasNoStateToTell) {
  PictureButton note(&panel);
  note.Create(&panel, {0, 0, 20, 20}, 32012, Bitmap::GetBitmap(kCaptionMusicNoteDecal, nullptr));
  QAccessibleInterface* access = QAccessible::queryAccessibleInterface(toolkit::WidgetOf(note.GetNode()));
  EXPECT_EQ(access->role(), QAccessible::Button);
  EXPECT_FALSE(access->state().checkable);
  note.SetValue(true);
  EXPECT_TRUE(access->state().checked);
}

TEST_F(Buttons, LooksDifferentOffOnPressedFocusedAndDisabledInLightAndDark) {
  for (const UIF::Theme theme : {UIF::Theme::Light, UIF::Theme::Dark}) {
    ApplyTheme(theme);
    std::vector<QImage> looks{Picture()};
    Widget()->setDown(true);
    looks.push_back(Picture());
    Widget()->setDown(false);
    button.SetValue(true);
    looks.push_back(Picture());
    button.SetValue(false);
    button.GetNode()->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Advance);
    looks.push_back(Picture());
    button.Enable(false);
    looks.push_back(Picture());
    button.Enable(true);
    for (std::size_t i = 0; i < looks.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j)
        EXPECT_NE(looks[i], looks[j]) << i << " and " << j;
    }
  }
  ApplyTheme(UIF::Theme::Light);
}

TEST_F(Buttons, MayBeDestroyedByItsOwnCommand) {
  struct Destroyer : Commander {
    explicit Destroyer(PictureButton** target) : Commander(nullptr), button(target) {}
    bool ObeyCommand(const Command&) override {
      (*button)->Destroy();
      return true;
    }
    PictureButton** button;
  };
  PictureButton* target = nullptr;
  Destroyer destroyer(&target);
  PictureButton brief(&destroyer);
  target = &brief;
  brief.Create(&panel, {0, 0, 20, 20}, 1, Bitmap::GetBitmap(kCaptionBoldDecal, nullptr));
  brief.Show(true);
  Click(toolkit::WidgetOf(brief.GetNode()));
  EXPECT_EQ(brief.GetNode(), nullptr);
  brief.Press();
}

TEST(PictureButtonAlone, AnswersBeforeItIsCreated) {
  Commander commander(nullptr);
  PictureButton button(&commander);
  button.SetValue(true);
  button.Enable(true);
  button.Press();
  EXPECT_FALSE(button.GetValue());
  EXPECT_FALSE(button.IsEnabled());
  EXPECT_EQ(button.GetCommandID(), 0);
}

TEST(Decals, AreAllDifferentAndNoneIsEmpty) {
  for (const int side : {16, 32}) {
    std::vector<QImage> pictures;
    for (int decal = kNoDecal; decal <= kCaptionTextOutlineColorDecal; ++decal) {
      pictures.push_back(Draw(static_cast<DecalID>(decal), side));
      for (std::size_t i = 0; i + 1 < pictures.size(); ++i)
        EXPECT_NE(pictures[i], pictures.back()) << decal;
    }
  }
}

TEST(Decals, LinesOfTextAreSharpAtEveryWholeScale) {
  for (const int side : {16, 32, 48}) {
    const QImage picture = Draw(kCaptionJustifyCenterDecal, side);
    std::set<QRgb> colors;
    for (int y = 0; y < side; ++y) {
      for (int x = 0; x < side; ++x)
        colors.insert(picture.pixel(x, y));
    }
    EXPECT_EQ(colors.size(), 2U) << side;
  }
}

TEST(Decals, TheJustificationsAreAtTheirSides) {
  // The shorter line, in the middle.
  const auto left = Draw(kCaptionJustifyLeftDecal, 16);
  const auto right = Draw(kCaptionJustifyRightDecal, 16);
  EXPECT_EQ(left.pixelColor(3, 8), QColor(Qt::black));
  EXPECT_EQ(left.pixelColor(12, 8), QColor(Qt::white));
  EXPECT_EQ(right.pixelColor(3, 8), QColor(Qt::white));
  EXPECT_EQ(right.pixelColor(12, 8), QColor(Qt::black));
}
