#include "zebui/PaintedButton.h"

#include <algorithm>
#include <cmath>

#include <QAccessibleWidget>
#include <QMouseEvent>

#include "zebui/ControlWidget.h"
#include "zebui/Toolkit.h"

namespace zebui::toolkit {

namespace {

constexpr qreal kHoverFill = 0.10;
constexpr qreal kPressedFill = 0.20;
constexpr qreal kOnFill = 0.16;
constexpr int kKey_Space = 0x20;

QColor Blend(const QColor& from, const QColor& to, qreal part) {
  const auto mix = [part](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * part)); };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

// A key that is held down presses once.
bool IsRepeatedPress(QEvent& event) {
  if (event.type() != QEvent::KeyPress || !static_cast<QKeyEvent&>(event).isAutoRepeat())
    return false;
  const bool isPress = IsPressKey(ToKeyboardEvent(static_cast<QKeyEvent&>(event), ui::kKeyboardEvent_KeyDown));
  if (isPress)
    event.accept();
  return isPress;
}

// The toolkit's own would check the button without a click.
class ButtonAccess : public QAccessibleWidget {
 public:
  explicit ButtonAccess(PaintedButton* button) : QAccessibleWidget(button, QAccessible::Button) {}

  QAccessible::Role role() const override {
    return Button().isCheckable() ? QAccessible::CheckBox : QAccessible::Button;
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = Button().isCheckable();
    state.checked = Button().isChecked();
    state.pressed = Button().isDown();
    return state;
  }
  QStringList actionNames() const override {
    return Button().isEnabled() ? QStringList{pressAction(), setFocusAction()} : QStringList();
  }
  void doAction(const QString& name) override {
    if (name == pressAction())
      static_cast<PaintedButton*>(widget())->click();
    else
      QAccessibleWidget::doAction(name);
  }

 private:
  const PaintedButton& Button() const { return static_cast<const PaintedButton&>(*widget()); }
};

QAccessibleInterface* MakeButtonAccess(const QString&, QObject* object) {
  auto* button = dynamic_cast<PaintedButton*>(object);
  return button ? new ButtonAccess(button) : nullptr;
}

} // namespace

ControlColors ColorsFor(const QPalette& palette, const ButtonLook& look) {
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  ControlColors colors;
  if (!look.enabled) {
    colors.ink = palette.color(QPalette::Disabled, QPalette::ButtonText);
    colors.accent = colors.ink;
    if (look.on)
      colors.border = Blend(window, colors.ink, 0.5);
    return colors;
  }
  colors.ink = palette.color(QPalette::Active, QPalette::ButtonText);
  colors.accent = palette.color(QPalette::Active, QPalette::Link);
  if (look.on) {
    colors.fill = Blend(window, colors.accent, look.hovered || look.pressed ? kPressedFill : kOnFill);
    colors.border = colors.accent;
    // The accent itself comes too close to its own tint.
    colors.accent = Blend(colors.accent, colors.ink, look.hovered || look.pressed ? 0.3 : 0.15);
  } else if (look.pressed || look.hovered) {
    colors.fill = Blend(window, colors.ink, look.pressed ? kPressedFill : kHoverFill);
    colors.accent = Blend(colors.accent, colors.ink, look.pressed ? 0.35 : 0.15);
  }
  return colors;
}

void PaintFrame(QPainter& painter, const QRectF& rect, const QColor& color, qreal width, qreal radius) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
  painter.setBrush(Qt::NoBrush);
  const QRectF inner = rect.adjusted(width / 2, width / 2, -width / 2, -width / 2);
  if (radius > 0)
    painter.drawRoundedRect(inner, radius, radius);
  else
    painter.drawRect(inner);
  painter.restore();
}

PaintedButton::PaintedButton(ui::UI_Node& owner, Paint paint, QWidget* parent)
    : QPushButton(parent), mOwner(&owner), mPaint(std::move(paint)) {
  static const bool isInstalled = [] {
    QAccessible::installFactory(MakeButtonAccess);
    return true;
  }();
  static_cast<void>(isInstalled);
  setAutoDefault(false);
  setAttribute(Qt::WA_Hover);
  setMouseTracking(true);
}

void PaintedButton::Orphan() {
  mOwner = nullptr;
  mPaint = nullptr;
  // No more than that: assistive technology wants to hear of the widget's end.
  QObject::disconnect(this, &QAbstractButton::clicked, nullptr, nullptr);
}

ButtonLook PaintedButton::GetLook() const {
  return {isEnabled(), isEnabled() && underMouse(), isDown(), isChecked(), hasFocus() || GetFocusWidget() == this};
}

bool PaintedButton::event(QEvent* event) {
  const EventScope scope;
  if (IsRepeatedPress(*event))
    return true;
  if (mOwner && DispatchKeyEvent(*mOwner, *event)) {
    if (event->isAccepted())
      return true;
    // The toolkit's buttons would take arrows too, and go to a neighbour.
    if (event->type() == QEvent::KeyPress && MoveByTab(*static_cast<QKeyEvent*>(event)))
      event->accept();
    return event->isAccepted();
  }
  return QPushButton::event(event);
}

// Accepted, else the key would go to the widgets around, and the focus on with it.
bool PaintedButton::MoveByTab(const QKeyEvent& key) {
  const bool isTab = key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab;
  if (!isTab || (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)))
    return false;
  return focusNextPrevChild(key.key() == Qt::Key_Tab && !(key.modifiers() & Qt::ShiftModifier));
}

void PaintedButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF whole = rect();
  if (mPaint)
    mPaint(painter, whole, GetLook());
  if (GetLook().focused)
    controls::PaintFocusRing(painter, whole, palette());
}

void PaintedButton::mouseMoveEvent(QMouseEvent* event) {
  mPointer = event->position();
  QPushButton::mouseMoveEvent(event);
  update();
}

void PaintedButton::leaveEvent(QEvent* event) {
  mPointer = {-1, -1};
  QPushButton::leaveEvent(event);
  update();
}

void TraceValue(const char* call, const ui::UI_Node& node, const nlohmann::json& value) {
  TraceNode(call, node, "value", value);
}

bool IsPressKey(const ui::KeyboardEvent& event) {
  const bool isPhase = event.GetType() == ui::kKeyboardEvent_KeyDown || event.GetType() == ui::kKeyboardEvent_Shortcut;
  constexpr ui::KeyboardCode kSpace{kKey_Space};
  const bool isKey = event.CompareShortcut(kSpace, ui::kModKey_None) ||
                     event.CompareShortcut(ui::kKeyboardCode_Enter, ui::kModKey_None);
  return isPhase && isKey;
}

} // namespace zebui::toolkit
