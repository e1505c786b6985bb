#include "zebui/Menu.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTimer>
#include <gtest/gtest.h>

#include "Screen.h"

using namespace zebui;

namespace {

struct Menu : testing::Test {
  std::unique_ptr<utility::OSMenu> menu = utility::CreateOSMenu();
  test::Window window;
  boost::intrusive_ptr<ui::UI_Node> node = window.Add(new ui::UI_Node, 30, 40);

  void TearDown() override { ui::SetPopupMenuHook(nullptr); }
  // Opens it and does this to it as soon as it is open.
  template <class Act> int Open(Act act, bool above = false) {
    window.Activate();
    QTimer::singleShot(0, [&] {
      if (auto* open = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
        act(*open);
        open->close();
      }
    });
    return ui::UI_DoPopupMenu(*menu, node.get(), {30, 140, 20, 20}, above);
  }
};

} // namespace

TEST_F(Menu, NumbersItemsAndSeparatorsFromZeroAndCountsTheItems) {
  EXPECT_EQ(menu->AddItem(u"White"), 0U);
  EXPECT_EQ(menu->AddSeparator(), 1U);
  EXPECT_EQ(menu->AddItem(u"Red"), 2U);
  EXPECT_EQ(menu->CountItems(), 2U);
  EXPECT_TRUE(menu->GetItems()[1].separator);
}

TEST_F(Menu, BeginsItemsDisabledWithoutIdAndCheckMark) {
  menu->AddItem(u"White");
  const auto& item = menu->GetItems().front();
  EXPECT_FALSE(item.enabled);
  EXPECT_EQ(item.id, 0);
  EXPECT_FALSE(item.hasCheck);
}

TEST_F(Menu, KeepsWhatItsItemsAreGivenAndIgnoresOthers) {
  menu->AddItem(u"White");
  menu->EnableItem(0, true);
  menu->SetItemID(0, 7);
  menu->SetItemCheckMark(0, false);
  menu->EnableItem(1, true);
  menu->SetItemID(1, 8);
  menu->SetItemCheckMark(1, true);
  const auto& item = menu->GetItems().front();
  EXPECT_TRUE(item.enabled);
  EXPECT_EQ(item.id, 7);
  EXPECT_TRUE(item.hasCheck);
  EXPECT_FALSE(item.checked);
}

TEST_F(Menu, IsAnsweredByTheHookInPlaceOfTheScreen) {
  menu->AddItem(u"White");
  std::size_t seen = 0;
  ui::SetPopupMenuHook([&](const utility::OSMenu& asked) {
    seen = asked.CountItems();
    return 5;
  });
  EXPECT_EQ(ui::UI_DoPopupMenu(*menu, node.get(), {0, 0, 20, 20}, false), 5);
  EXPECT_EQ(seen, 1U);
}

TEST_F(Menu, AnswersNothingWithoutItems) {
  EXPECT_EQ(ui::UI_DoPopupMenu(*menu, node.get(), {0, 0, 20, 20}, false), 0);
}

TEST_F(Menu, AnswersTheIdOfTheItemThatIsChosen) {
  menu->AddItem(u"White");
  menu->SetItemID(menu->AddItem(u"Red"), 9);
  menu->EnableItem(1, true);
  const int id = Open([](QMenu& open) {
    open.setActiveAction(open.actions().at(1));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, {});
    QCoreApplication::sendEvent(&open, &enter);
  });
  EXPECT_EQ(id, 9);
}

TEST_F(Menu, AnswersNothingWhenItIsClosed) {
  menu->SetItemID(menu->AddItem(u"White"), 9);
  EXPECT_EQ(Open([](QMenu&) {}), 0);
}

TEST_F(Menu, ShowsItsItemsAsTheyAreAndWhereItIsAsked) {
  menu->SetItemID(menu->AddItem(u"Black & White"), 1);
  menu->AddSeparator();
  menu->AddItem(u"Red");
  menu->EnableItem(2, true);
  menu->SetItemCheckMark(2, true);
  QPoint below;
  QPoint above;
  Open([&](QMenu& open) {
    below = open.pos();
    EXPECT_EQ(open.actions().at(0)->text(), QStringLiteral("Black && White"));
    EXPECT_FALSE(open.actions().at(0)->isEnabled());
    EXPECT_TRUE(open.actions().at(1)->isSeparator());
    EXPECT_TRUE(open.actions().at(2)->isEnabled());
    EXPECT_TRUE(open.actions().at(2)->isChecked());
  });
  EXPECT_EQ(below, window.widget.mapToGlobal(QPoint(30, 160)));
  Open([&](QMenu& open) { above = open.pos() + QPoint(0, open.height()); }, true);
  EXPECT_EQ(above, window.widget.mapToGlobal(QPoint(30, 140)));
}
