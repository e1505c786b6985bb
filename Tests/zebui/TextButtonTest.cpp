#include <QAccessible>
#include <QImage>
#include <QPushButton>
#include <gtest/gtest.h>

#include "Screen.h"
#include "zebui/Controls.h"

using namespace zebui;
using controls::UI_TextButton;

namespace {

// The stripes just inside both ends, where a text that is cut off would show.
QImage Ends(const UI_TextButton& button) {
  const QImage picture = toolkit::WidgetOf(&button)->grab().toImage();
  QImage ends(4, picture.height(), picture.format());
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < 2; ++x) {
      ends.setPixel(x, y, picture.pixel(1 + x, y));
      ends.setPixel(2 + x, y, picture.pixel(picture.width() - 3 + x, y));
    }
  }
  return ends;
}

} // namespace

TEST(TextButton, WritesATextThatIsTooWideSmallerThanToCutItOff) {
  test::Window window;
  const auto button = window.Add(new UI_TextButton);
  button->UI_SetLocalRectF({0, 0, 88, 18});
  const QImage empty = Ends(*button);
  for (const char16_t* text :
       {u"+", u"Import Settings", u"Importeinstellungen", u"A text that fits in no font at all"}) {
    button->SetText(text);
    EXPECT_EQ(Ends(*button), empty) << zebcore::ToUTF8(text);
  }
}

TEST(TextButton, IsForgottenByAssistiveTechnologyWhenItGoes) {
  test::Window window;
  for (int i = 0; i < 3; ++i) {
    auto button = window.Add(new UI_TextButton);
    button->SetText(u"Add");
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(toolkit::WidgetOf(button.get()));
    ASSERT_NE(access, nullptr);
    const QAccessible::Id id = QAccessible::uniqueId(access);
    EXPECT_EQ(access->text(QAccessible::Name), QStringLiteral("Add"));
    // The last reference is the parent's: the widget goes with the node.
    window.root->ChildRemove(button);
    button = nullptr;
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
  }
}
