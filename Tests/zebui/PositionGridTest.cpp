#include <ostream>
#include <vector>

#include <QAccessible>
#include <QImage>
#include <QMouseEvent>

#include "Screen.h"
#include "zebui/Driver.h"
#include "zebui/PositionGrid.h"

using namespace zebui;
using controls::UI_PositionGridControl;
using Cell = zebcore::geom::PointT<int>;

namespace zebcore::geom {

void PrintTo(const PointT<int>& cell, std::ostream* out) {
  *out << cell.x << "," << cell.y;
}

} // namespace zebcore::geom

namespace {

constexpr Cell kNone{-1, -1};

struct PositionGrid : testing::Test {
  test::Window window;
  boost::intrusive_ptr<UI_PositionGridControl> grid;
  std::vector<Cell> reports;

  void SetUp() override {
    grid = window.Add(new UI_PositionGridControl);
    grid->UI_SetLocalRectF({0, 0, 20, 20});
    grid->UI_SetToolTip(u"Position Caption Block", 400);
    grid->NotifyWhenChanged([this](const ui::UI_ControlChangedMessage&) { reports.push_back(grid->GetValue()); });
  }
  QWidget* Widget() const { return toolkit::WidgetOf(grid.get()); }
  QImage Picture() const { return Widget()->grab().toImage(); }
  QAccessibleInterface* Access() const { return QAccessible::queryAccessibleInterface(Widget()); }

  void Click(const QPoint& at) const {
    const QPointF global = Widget()->mapToGlobal(QPointF(at));
    QMouseEvent press(QEvent::MouseButtonPress, at, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(Widget(), &press);
    QMouseEvent release(QEvent::MouseButtonRelease, at, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(Widget(), &release);
  }
  bool Press(ui::KeyboardCode code, ui::ModKey modifiers = ui::kModKey_None) {
    if (!grid->UI_HasKeyboardFocus(false))
      grid->UI_GainKeyboardFocus(ui::kFocusChange_Advance);
    return driver::PressKey(code, modifiers);
  }
};
using Cells = std::vector<Cell>;

} // namespace

TEST_F(PositionGrid, HasNoCellUntilItIsGivenOneAndReportsNothingThen) {
  EXPECT_EQ(grid->GetValue(), kNone);
  grid->SetValue({2, 1});
  EXPECT_EQ(grid->GetValue(), (Cell{2, 1}));
  EXPECT_TRUE(reports.empty());
}

TEST_F(PositionGrid, TakesTheCellUnderAClick) {
  Click({3, 3});
  Click({10, 10});
  Click({17, 3});
  Click({10, 17});
  EXPECT_EQ(reports, Cells({{0, 0}, {1, 1}, {2, 0}, {1, 2}}));
}

TEST_F(PositionGrid, TakesTheNearestCellForAClickOnItsRim) {
  Click({0, 0});
  Click({19, 19});
  EXPECT_EQ(reports, Cells({{0, 0}, {2, 2}}));
}

TEST_F(PositionGrid, ReportsAClickOnTheMarkedCellToo) {
  grid->SetValue({1, 1});
  Click({10, 10});
  EXPECT_EQ(reports, Cells({{1, 1}}));
}

TEST_F(PositionGrid, LeavesAPressThatIsTakenBackOutside) {
  const QPointF inside(3, 3);
  const QPointF outside(300, 300);
  QMouseEvent press(QEvent::MouseButtonPress, inside, inside, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(Widget(), &press);
  QMouseEvent move(QEvent::MouseMove, outside, outside, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(Widget(), &move);
  QMouseEvent release(QEvent::MouseButtonRelease, outside, outside, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
  QCoreApplication::sendEvent(Widget(), &release);
  EXPECT_TRUE(reports.empty());
}

TEST_F(PositionGrid, GoesToTheMiddleByAnArrowFromNoCell) {
  for (const ui::KeyboardCode arrow :
       {ui::kKeyboardCode_Left, ui::kKeyboardCode_Right, ui::kKeyboardCode_Up, ui::kKeyboardCode_Down}) {
    grid->SetValue(kNone);
    EXPECT_TRUE(Press(arrow));
  }
  EXPECT_EQ(reports, Cells(4, Cell{1, 1}));
}

TEST_F(PositionGrid, MovesByAnArrowAndStopsAtTheEdgeWithoutAReport) {
  grid->SetValue({1, 1});
  EXPECT_TRUE(Press(ui::kKeyboardCode_Right));
  EXPECT_TRUE(Press(ui::kKeyboardCode_Right));
  EXPECT_TRUE(Press(ui::kKeyboardCode_Up));
  EXPECT_TRUE(Press(ui::kKeyboardCode_Up));
  EXPECT_EQ(reports, Cells({{2, 1}, {2, 0}}));
}

TEST_F(PositionGrid, GoesToTheCornersByHomeAndEnd) {
  EXPECT_TRUE(Press(ui::kKeyboardCode_End));
  EXPECT_TRUE(Press(ui::kKeyboardCode_Home));
  EXPECT_EQ(reports, Cells({{2, 2}, {0, 0}}));
}

TEST_F(PositionGrid, ChoosesTheMarkedCellAgainBySpaceAndEnter) {
  grid->SetValue({0, 2});
  EXPECT_TRUE(Press(ui::KeyboardCode(0x20)));
  EXPECT_TRUE(Press(ui::kKeyboardCode_Enter));
  EXPECT_EQ(reports, Cells(2, Cell{0, 2}));
}

TEST_F(PositionGrid, LeavesArrowsWithModifiersToOthers) {
  grid->SetValue({1, 1});
  EXPECT_FALSE(Press(ui::kKeyboardCode_Left, ui::kModKey_Control));
  EXPECT_TRUE(reports.empty());
}

TEST_F(PositionGrid, DoesNothingWhenDisabled) {
  grid->SetDisabled(true);
  grid->Choose({1, 1});
  Click({3, 3});
  EXPECT_TRUE(reports.empty());
  EXPECT_EQ(grid->GetValue(), kNone);
}

TEST_F(PositionGrid, RefusesCellsThatItDoesNotHave) {
  grid->Choose({3, 0});
  grid->Choose({-1, 0});
  EXPECT_TRUE(reports.empty());
}

TEST_F(PositionGrid, ReportsThatNoCellIsChosen) {
  grid->Choose({1, 2});
  grid->Choose(kNone);
  EXPECT_EQ(reports.size(), 2U);
  EXPECT_EQ(grid->GetValue(), kNone);
}

TEST_F(PositionGrid, LooksDifferentForEachCellAndForNone) {
  std::vector<QImage> pictures{Picture()};
  for (int cell = 0; cell < 9; ++cell) {
    grid->SetValue({cell % 3, cell / 3});
    for (const QImage& earlier : pictures)
      EXPECT_NE(Picture(), earlier) << cell;
    pictures.push_back(Picture());
  }
}

TEST_F(PositionGrid, TellsAssistiveTechnologyItsNameAndTheMarkedCell) {
  ASSERT_NE(Access(), nullptr);
  EXPECT_EQ(Access()->role(), QAccessible::Grouping);
  EXPECT_EQ(Access()->text(QAccessible::Name), QStringLiteral("Position Caption Block"));
  EXPECT_EQ(Access()->text(QAccessible::Value), QStringLiteral("None"));
  grid->SetValue({0, 0});
  EXPECT_EQ(Access()->text(QAccessible::Value), QStringLiteral("Top left"));
  grid->SetValue({2, 2});
  EXPECT_EQ(Access()->text(QAccessible::Value), QStringLiteral("Bottom right"));
}

TEST_F(PositionGrid, IsNineRadioButtonsForAssistiveTechnology) {
  grid->SetValue({1, 0});
  ASSERT_EQ(Access()->childCount(), 9);
  for (int cell = 0; cell < 9; ++cell) {
    QAccessibleInterface* child = Access()->child(cell);
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->role(), QAccessible::RadioButton);
    EXPECT_FALSE(child->text(QAccessible::Name).isEmpty());
    EXPECT_EQ(child->state().checked, cell == 1 ? 1U : 0U);
    EXPECT_EQ(Access()->indexOfChild(child), cell);
    const QPoint middle = child->rect().center();
    EXPECT_EQ(Access()->childAt(middle.x(), middle.y()), child);
  }
  Access()->child(5)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(reports, Cells({{2, 1}}));
}

TEST_F(PositionGrid, MayBeTakenAwayByItsOwnReport) {
  int calls = 0;
  grid->NotifyWhenChanged([&](const ui::UI_ControlChangedMessage&) {
    ++calls;
    window.root->ChildRemove(grid);
    grid = nullptr;
  });
  Click({10, 10});
  EXPECT_EQ(calls, 1);
}

TEST(PositionGridAlone, WorksWithoutAScreen) {
  const boost::intrusive_ptr<UI_PositionGridControl> grid(new UI_PositionGridControl);
  grid->Choose({2, 0});
  EXPECT_EQ(grid->GetValue(), (Cell{2, 0}));
}
