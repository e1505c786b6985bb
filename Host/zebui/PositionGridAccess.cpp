#include "zebui/PositionGridAccess.h"

#include <array>
#include <memory>

#include <QAccessible>
#include <QAccessibleWidget>

#include "zebcore/Localizer.h"
#include "zebui/Toolkit.h"

namespace zebui::toolkit {

namespace {

constexpr int kCells = 9;

// One cell. Lives as long as its grid's interface.
class CellAccess : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  CellAccess(QPointer<GridWidget> grid, int cell) : mGrid(std::move(grid)), mCell(cell) {}

  bool isValid() const override { return mGrid; }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return mGrid ? mGrid->window()->windowHandle() : nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(mGrid); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QString text(QAccessible::Text text) const override {
    return text == QAccessible::Name ? GetCellName(mCell) : QString();
  }
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override {
    if (!mGrid)
      return {};
    const QRect cell = mGrid->GetCellRect(mCell);
    return {mGrid->mapToGlobal(cell.topLeft()), cell.size()};
  }
  QAccessible::Role role() const override { return QAccessible::RadioButton; }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.checkable = true;
    state.checked = mGrid && mGrid->GetMarked() == mCell;
    state.disabled = !mGrid || !mGrid->isEnabled();
    state.invisible = !mGrid || !mGrid->isVisible();
    return state;
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }

  QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& name) override {
    if (name == pressAction() && mGrid)
      mGrid->Choose(mCell);
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  QPointer<GridWidget> mGrid;
  int mCell;
};

class GridAccess : public QAccessibleWidget {
 public:
  explicit GridAccess(GridWidget* grid) : QAccessibleWidget(grid, QAccessible::Grouping) {
    for (int cell = 0; cell < kCells; ++cell) {
      auto* access = new CellAccess(QPointer<GridWidget>(grid), cell);
      mIDs.at(static_cast<std::size_t>(cell)) = QAccessible::registerAccessibleInterface(access);
    }
  }
  ~GridAccess() override {
    for (const QAccessible::Id id : mIDs)
      QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return kCells; }
  QAccessibleInterface* child(int index) const override {
    return index >= 0 && index < kCells ? QAccessible::accessibleInterface(mIDs.at(static_cast<std::size_t>(index)))
                                        : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    for (int cell = 0; cell < kCells; ++cell) {
      if (this->child(cell) == child)
        return cell;
    }
    return -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    for (int cell = 0; cell < kCells; ++cell) {
      if (child(cell)->rect().contains(x, y))
        return child(cell);
    }
    return nullptr;
  }
  QString text(QAccessible::Text text) const override {
    const auto* grid = static_cast<const GridWidget*>(widget());
    return text == QAccessible::Value && grid ? GetCellName(grid->GetMarked()) : QAccessibleWidget::text(text);
  }

 private:
  std::array<QAccessible::Id, kCells> mIDs{};
};

QAccessibleInterface* MakeGridAccess(const QString&, QObject* object) {
  auto* grid = dynamic_cast<GridWidget*>(object);
  return grid ? new GridAccess(grid) : nullptr;
}

} // namespace

GridWidget::GridWidget(ui::UI_Node& owner, Paint paint, QWidget* parent)
    : PaintedButton(owner, std::move(paint), parent) {
  static const bool isInstalled = [] {
    QAccessible::installFactory(MakeGridAccess);
    return true;
  }();
  static_cast<void>(isInstalled);
}

void GridWidget::SetMarked(int cell) {
  const bool changed = mMarked != cell;
  mMarked = cell;
  update();
  if (!changed || !QAccessible::isActive())
    return;
  QAccessibleEvent event(this, QAccessible::NameChanged);
  event.setChild(cell);
  QAccessible::updateAccessibility(&event);
}

void GridWidget::Choose(int cell) {
  const EventScope scope;
  if (const auto chooser = mChooser)
    chooser(cell);
}

QString GetCellName(int cell) {
  static constexpr std::array<const char*, kCells> kNames{
      "$$$/Vidra/UIF/Position/TopLeft=Top left",        "$$$/Vidra/UIF/Position/Top=Top",
      "$$$/Vidra/UIF/Position/TopRight=Top right",      "$$$/Vidra/UIF/Position/Left=Left",
      "$$$/Vidra/UIF/Position/Middle=Middle",           "$$$/Vidra/UIF/Position/Right=Right",
      "$$$/Vidra/UIF/Position/BottomLeft=Bottom left",  "$$$/Vidra/UIF/Position/Bottom=Bottom",
      "$$$/Vidra/UIF/Position/BottomRight=Bottom right"};
  const bool isCell = cell >= 0 && cell < kCells;
  return ToQt(zebcore::config::Localizer::Get().Localize(isCell ? kNames.at(static_cast<std::size_t>(cell))
                                                                : "$$$/Vidra/UIF/Position/None=None"));
}

} // namespace zebui::toolkit
