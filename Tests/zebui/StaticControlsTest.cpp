#include "zebui/StaticControls.h"

#include <QAccessible>
#include <gtest/gtest.h>

#include "Screen.h"
#include "zebui/Controls.h"

using namespace zebui;
using controls::UI_Divider;
using controls::UI_StaticText;

namespace {

// The columns of the picture in which something is written, first and last.
std::pair<int, int> WrittenColumns(QWidget* widget) {
  const QImage picture = widget->grab().toImage();
  const QRgb ground = picture.pixel(0, 0);
  int first = picture.width();
  int last = -1;
  for (int x = 0; x < picture.width(); ++x)
    for (int y = 0; y < picture.height(); ++y)
      if (picture.pixel(x, y) != ground) {
        first = std::min(first, x);
        last = std::max(last, x);
      }
  return {first, last};
}

} // namespace

TEST(StaticText, KeepsItsTextAndItsAlignment) {
  test::Window window;
  const auto text = window.Add(new UI_StaticText);
  text->SetValue(u"Size:");
  text->SetAlignment(controls::kControlAlignment_Right);
  EXPECT_EQ(text->GetValue(), u"Size:");
  EXPECT_EQ(text->GetAlignment(), controls::kControlAlignment_Right);
}

TEST(StaticText, IsWrittenOnTheSideOfItsAlignment) {
  test::Window window;
  const auto text = window.Add(new UI_StaticText);
  window.Activate();
  text->SetValue(u"x:");
  QWidget* const widget = toolkit::WidgetOf(text.get());
  EXPECT_LT(WrittenColumns(widget).second, 40);
  text->SetAlignment(controls::kControlAlignment_Right);
  EXPECT_GT(WrittenColumns(widget).first, 160);
  text->SetAlignment(controls::kControlAlignment_Center);
  const auto [first, last] = WrittenColumns(widget);
  EXPECT_NEAR((first + last) / 2, 100, 3);
}

TEST(StaticText, RecommendsTheRoomThatItsTextNeeds) {
  test::Window window;
  const auto text = window.Add(new UI_StaticText);
  window.Activate();
  text->SetValue(u"Line Spacing:");
  const auto size = text->Impl().recommend();
  text->UI_SetLocalRectF({0, 0, size.x, 20});
  text->SetValue(u"");
  EXPECT_EQ(text->Impl().recommend().x, 0.0F);
  text->SetValue(u"Line Spacing:");
  QWidget* const widget = toolkit::WidgetOf(text.get());
  EXPECT_GE(widget->width(), widget->fontMetrics().horizontalAdvance(QStringLiteral("Line Spacing:")));
}

TEST(StaticText, IsDimmedWhileItIsDisabled) {
  test::Window window;
  const auto text = window.Add(new UI_StaticText);
  text->SetValue(u"Size:");
  window.Activate();
  QWidget* const widget = toolkit::WidgetOf(text.get());
  const QImage before = widget->grab().toImage();
  text->SetDisabled(true);
  EXPECT_NE(widget->grab().toImage(), before);
}

TEST(StaticText, TakesNoFocus) {
  test::Window window;
  const auto text = window.Add(new UI_StaticText);
  window.Activate();
  text->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  EXPECT_FALSE(text->UI_HasKeyboardFocus(false));
  EXPECT_EQ(toolkit::WidgetOf(text.get())->focusPolicy(), Qt::NoFocus);
}

TEST(StaticText, IsReadByAssistiveTechnologyAsItsText) {
  test::Window window;
  const auto text = window.Add(new UI_StaticText);
  text->SetValue(u"Size:");
  QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(toolkit::WidgetOf(text.get()));
  ASSERT_NE(seen, nullptr);
  EXPECT_EQ(seen->role(), QAccessible::StaticText);
  EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Size:"));
  text->SetValue(u"Edge:");
  EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Edge:"));
}

TEST(Divider, IsALineFromTopToBottomThatTakesNoFocus) {
  test::Window window;
  const auto divider = window.Add(new UI_Divider);
  divider->UI_SetLocalRectF({10, 10, 3, 20});
  window.Activate();
  QWidget* const widget = toolkit::WidgetOf(divider.get());
  EXPECT_EQ(widget->focusPolicy(), Qt::NoFocus);
  const QImage picture = window.widget.grab().toImage();
  const QRgb ground = picture.pixel(5, 20);
  for (int y = 10; y < 30; ++y)
    EXPECT_NE(picture.pixel(11, y), ground);
  EXPECT_EQ(picture.pixel(11, 9), ground);
}

TEST(Divider, IsReadByAssistiveTechnologyAsASeparator) {
  test::Window window;
  const auto divider = window.Add(new UI_Divider);
  QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(toolkit::WidgetOf(divider.get()));
  ASSERT_NE(seen, nullptr);
  EXPECT_EQ(seen->role(), QAccessible::Separator);
}
