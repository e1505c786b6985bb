#include "zebui/Swatch.h"

#include <algorithm>
#include <cmath>

#include "zebui/PaintedButton.h"
#include "zebui/Toolkit.h"

namespace zebui::controls {

namespace {

constexpr qreal kCheck = 4.0; // a field of the checkerboard, in pixels
constexpr float kSide = 20.0F;

float Legal(float part) {
  return std::isnan(part) ? 0.0F : std::clamp(part, 0.0F, 1.0F);
}

QColor ToColor(const UnManagedRGBA& color) {
  return QColor::fromRgbF(Legal(color.red), Legal(color.green), Legal(color.blue), Legal(color.alpha));
}

void PaintCheckerboard(QPainter& painter, const QRectF& rect) {
  painter.fillRect(rect, QColor(255, 255, 255));
  for (int row = 0; row * kCheck < rect.height(); ++row) {
    for (int column = row % 2; column * kCheck < rect.width(); column += 2) {
      const QRectF field(rect.left() + column * kCheck, rect.top() + row * kCheck, kCheck, kCheck);
      painter.fillRect(field & rect, QColor(176, 176, 176));
    }
  }
}

} // namespace

struct UI_Swatch::Patch {
  UnManagedRGBA color;
  bool border = false;

  void Paint(QPainter& painter, const QRectF& rect, const QPalette& palette, const toolkit::ButtonLook& look) const {
    const toolkit::ControlColors colors = toolkit::ColorsFor(palette, look);
    painter.save();
    if (!look.enabled)
      painter.setOpacity(0.4);
    // The ring of the focus takes the place of the frame and wants a gap inside it.
    const qreal inset = look.focused ? 3.0 : border ? 2.0 : 0.0;
    const QRectF inner = rect.adjusted(inset, inset, -inset, -inset);
    const QColor shown = ToColor(color);
    if (shown.alpha() < 255)
      PaintCheckerboard(painter, inner);
    painter.fillRect(inner, shown);
    painter.restore();
    if (look.focused)
      toolkit::PaintFrame(painter, inner.adjusted(-1, -1, 1, 1), palette.color(QPalette::Active, QPalette::Window), 1,
                          0);
    if (!border || look.focused)
      return;
    // Two lines, so that one of them stands out whatever the colour.
    toolkit::PaintFrame(painter, inner.adjusted(-1, -1, 1, 1), palette.color(QPalette::Active, QPalette::Window), 1, 0);
    const bool strong = look.hovered || look.pressed;
    toolkit::PaintFrame(painter, rect, strong ? colors.accent : palette.color(QPalette::Disabled, QPalette::WindowText),
                        strong ? 2 : 1, 2);
  }

  void Show(QWidget* widget) const {
    if (!widget)
      return;
    const QColor shown = ToColor(color);
    widget->setAccessibleDescription(
        shown.alpha() == 0 ? QString() : shown.name(shown.alpha() < 255 ? QColor::HexArgb : QColor::HexRgb));
    widget->update();
  }
};

UI_Swatch::UI_Swatch() : mPatch(std::make_unique<Patch>()) {
  Impl().makeWidget = [this](QWidget* parent) {
    auto* button = new toolkit::PaintedButton(
        *this,
        [this](QPainter& painter, const QRectF& rect, const toolkit::ButtonLook& look) {
          mPatch->Paint(painter, rect, Impl().widget->palette(), look);
        },
        parent);
    button->setFocusPolicy(Qt::StrongFocus);
    QObject::connect(button, &QPushButton::clicked, button, [this] { Press(); });
    mPatch->Show(button);
    return button;
  };
  Impl().widgetGoes = [this] {
    if (auto* button = dynamic_cast<toolkit::PaintedButton*>(Impl().widget.data()))
      button->Orphan();
  };
  Impl().recommend = [] { return zebcore::geom::PointT<float>{kSide, kSide}; };
}

UI_Swatch::~UI_Swatch() {
  if (Impl().widgetGoes)
    Impl().widgetGoes();
}

void UI_Swatch::SetValue(const UnManagedRGBA& color) {
  toolkit::TraceValue("UI_Swatch::SetValue", *this, {color.red, color.green, color.blue, color.alpha});
  mPatch->color = color;
  mPatch->Show(Impl().widget);
}

UnManagedRGBA UI_Swatch::GetValue() const {
  return mPatch->color;
}

void UI_Swatch::SetDisplayBorder(bool border) {
  mPatch->border = border;
  mPatch->Show(Impl().widget);
}

void UI_Swatch::Press() {
  if (!UI_IsEnabled() || IsDisabled())
    return;
  const toolkit::WidgetScope scope;
  Changed();
}

bool UI_Swatch::UI_DoKeyboardEvent(UI_Node*, const ui::KeyboardEvent& event) {
  if (!toolkit::IsPressKey(event))
    return false;
  if (event.GetType() == ui::kKeyboardEvent_KeyDown)
    Press();
  return true;
}

} // namespace zebui::controls
