#include "zebui/PositionGrid.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "zebui/PositionGridAccess.h"
#include "zebui/Toolkit.h"

namespace zebui::controls {

using zebcore::geom::PointT;

namespace {

constexpr int kCells = 3;
constexpr PointT<int> kNoCell{-1, -1};
constexpr PointT<int> kMiddle{1, 1};
constexpr float kSide = 20.0F;

bool IsCell(const PointT<int>& cell) {
  return cell.x >= 0 && cell.x < kCells && cell.y >= 0 && cell.y < kCells;
}

// The square in the middle of the control, cut into cells and gaps of whole pixels where there are enough of them.
struct Measures {
  QPointF origin;
  qreal cell;
  qreal gap;

  explicit Measures(const QRectF& rect) {
    const qreal side = std::max(0.0, std::min(rect.width(), rect.height()));
    cell = std::max(1.0, std::floor(side / 5));
    gap = std::max(1.0, std::floor((side - kCells * cell) / (kCells + 1)));
    const qreal whole = kCells * cell + (kCells + 1) * gap;
    origin = {std::floor(rect.left() + (rect.width() - whole) / 2),
              std::floor(rect.top() + (rect.height() - whole) / 2)};
  }
  qreal Whole() const { return kCells * cell + (kCells + 1) * gap; }
  QRectF RectOf(const PointT<int>& at) const {
    return {origin.x() + gap + at.x * (cell + gap), origin.y() + gap + at.y * (cell + gap), cell, cell};
  }
  // Gaps belong to the cells beside them, half each; outside it is the nearest cell.
  PointT<int> CellAt(const QPointF& point) const {
    const auto index = [this](qreal offset) {
      return std::clamp(static_cast<int>(std::floor((offset - gap / 2) / (cell + gap))), 0, kCells - 1);
    };
    return {index(point.x() - origin.x()), index(point.y() - origin.y())};
  }
};

class GridButton : public toolkit::GridWidget {
 public:
  using GridWidget::GridWidget;
  QPointF GetPressed() const { return mPressed; }
  QRect GetCellRect(int cell) const override {
    return Measures(rect()).RectOf({cell % kCells, cell / kCells}).toAlignedRect();
  }

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override {
    mPressed = event->position();
    GridWidget::mouseReleaseEvent(event);
  }

 private:
  QPointF mPressed;
};

} // namespace

struct UI_PositionGridControl::Grid {
  PointT<int> cell = kNoCell;

  void Paint(QPainter& painter, const GridButton& widget, const QRectF& rect, const toolkit::ButtonLook& look) const {
    const QPalette& palette = widget.palette();
    toolkit::ButtonLook flat = look;
    flat.hovered = false;
    flat.pressed = false;
    const toolkit::ControlColors colors = toolkit::ColorsFor(palette, flat);
    const QColor weak = palette.color(QPalette::Disabled, QPalette::WindowText);
    const Measures measures(rect);
    const QRectF whole(measures.origin, QSizeF(measures.Whole(), measures.Whole()));
    painter.fillRect(whole, palette.color(QPalette::Active, QPalette::Base));
    toolkit::PaintFrame(painter, whole, weak, 1, 2);
    const bool points = look.hovered && widget.GetPointer().x() >= 0;
    const PointT<int> pointed = points ? measures.CellAt(widget.GetPointer()) : kNoCell;
    for (int index = 0; index < kCells * kCells; ++index) {
      const PointT<int> at{index % kCells, index / kCells};
      const QRectF full = measures.RectOf(at);
      const qreal inset = std::floor(full.width() / 4);
      // Beside the ring of the focus its own colour would be lost.
      if (at == cell)
        painter.fillRect(full, !look.enabled ? weak : look.focused ? colors.ink : colors.accent);
      else if (at == pointed)
        painter.fillRect(full, look.pressed ? colors.accent : colors.ink);
      else
        painter.fillRect(full.adjusted(inset, inset, -inset, -inset), weak);
    }
  }

  int Index() const { return IsCell(cell) ? cell.y * kCells + cell.x : -1; }
};

UI_PositionGridControl::UI_PositionGridControl() : mGrid(std::make_unique<Grid>()) {
  Impl().makeWidget = [this](QWidget* parent) {
    auto* button = new GridButton(
        *this,
        [this](QPainter& painter, const QRectF& rect, const toolkit::ButtonLook& look) {
          mGrid->Paint(painter, static_cast<const GridButton&>(*Impl().widget), rect, look);
        },
        parent);
    button->setFocusPolicy(Qt::StrongFocus);
    button->SetMarked(mGrid->Index());
    button->SetChooser([this](int index) { Choose({index % kCells, index / kCells}); });
    QObject::connect(button, &QPushButton::clicked, button,
                     [this, button] { Choose(Measures(button->rect()).CellAt(button->GetPressed())); });
    return button;
  };
  Impl().widgetGoes = [this] {
    if (auto* button = dynamic_cast<GridButton*>(Impl().widget.data())) {
      button->SetChooser(nullptr);
      button->Orphan();
    }
  };
  Impl().recommend = [] { return PointT<float>{kSide, kSide}; };
}

UI_PositionGridControl::~UI_PositionGridControl() {
  if (Impl().widgetGoes)
    Impl().widgetGoes();
}

void UI_PositionGridControl::SetValue(const PointT<int>& cell) {
  toolkit::TraceValue("UI_PositionGridControl::SetValue", *this, {cell.x, cell.y});
  Mark(cell);
}

void UI_PositionGridControl::Mark(const PointT<int>& cell) {
  mGrid->cell = cell;
  if (auto* button = dynamic_cast<GridButton*>(Impl().widget.data()))
    button->SetMarked(mGrid->Index());
}

PointT<int> UI_PositionGridControl::GetValue() const {
  return mGrid->cell;
}

void UI_PositionGridControl::Choose(const PointT<int>& cell) {
  if (!UI_IsEnabled() || IsDisabled() || (!IsCell(cell) && cell != kNoCell))
    return;
  const toolkit::WidgetScope scope;
  Mark(cell);
  Changed();
}

bool UI_PositionGridControl::UI_DoKeyboardEvent(UI_Node*, const ui::KeyboardEvent& event) {
  constexpr std::array<std::pair<ui::KeyboardCode, PointT<int>>, 4> kArrows{{{ui::kKeyboardCode_Left, {-1, 0}},
                                                                             {ui::kKeyboardCode_Right, {1, 0}},
                                                                             {ui::kKeyboardCode_Up, {0, -1}},
                                                                             {ui::kKeyboardCode_Down, {0, 1}}}};
  const PointT<int> before = mGrid->cell;
  PointT<int> after = IsCell(before) ? before : kMiddle;
  bool isOurs = toolkit::IsPressKey(event);
  bool reports = isOurs;
  const bool isPhase = event.GetType() == ui::kKeyboardEvent_KeyDown || event.GetType() == ui::kKeyboardEvent_Shortcut;
  for (const auto& [code, step] : kArrows) {
    if (!isPhase || !event.CompareShortcut(code, ui::kModKey_None))
      continue;
    if (IsCell(before))
      after = {std::clamp(before.x + step.x, 0, kCells - 1), std::clamp(before.y + step.y, 0, kCells - 1)};
    isOurs = true;
    reports = after != before;
  }
  for (const auto& [code, cell] : {std::pair{ui::kKeyboardCode_Home, PointT<int>{0, 0}},
                                   std::pair{ui::kKeyboardCode_End, PointT<int>{kCells - 1, kCells - 1}}}) {
    if (!isPhase || !event.CompareShortcut(code, ui::kModKey_None))
      continue;
    after = cell;
    isOurs = true;
    reports = after != before;
  }
  if (isOurs && reports && event.GetType() == ui::kKeyboardEvent_KeyDown)
    Choose(after);
  return isOurs;
}

} // namespace zebui::controls
