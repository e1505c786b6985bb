#include "UIF/HotTimecodeWidget.h"

#include <cmath>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QVariantAnimation>
#include <QWheelEvent>

#include "zebui/NodeManager.h"
#include "zebui/Toolkit.h"

namespace UIF {

namespace toolkit = zebui::toolkit;

namespace {

// Where the inline editor begins its text too.
constexpr int kTextMargin = 4;

constexpr int kEighthsPerNotch = 120;
constexpr int kShakePixels = 4;
constexpr int kShakeMilliseconds = 280;

int StepOfKey(const QKeyEvent& event, bool sidewaysToo) {
  const int factor = (event.modifiers() & Qt::ShiftModifier) ? HotTimecodeWidget::kShiftFactor : 1;
  switch (event.key()) {
  case Qt::Key_Up:
    return factor;
  case Qt::Key_Down:
    return -factor;
  case Qt::Key_Right:
    return sidewaysToo ? factor : 0;
  case Qt::Key_Left:
    return sidewaysToo ? -factor : 0;
  default:
    return 0;
  }
}

int StepsOfWheel(const QWheelEvent& event, int& rest) {
  // Shift turns the wheel sideways on some systems.
  const int turned = event.angleDelta().y() != 0 ? event.angleDelta().y() : event.angleDelta().x();
  if ((turned > 0) != (rest > 0))
    rest = 0;
  rest += turned;
  const int notches = rest / kEighthsPerNotch;
  rest -= notches * kEighthsPerNotch;
  return (event.modifiers() & Qt::ShiftModifier) ? notches * HotTimecodeWidget::kShiftFactor : notches;
}

class AccessibleTimecode : public QAccessibleWidget {
 public:
  explicit AccessibleTimecode(QWidget* widget) : QAccessibleWidget(widget, QAccessible::SpinBox) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value)
      return static_cast<HotTimecodeWidget*>(widget())->GetText();
    return QAccessibleWidget::text(kind);
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.editable = !static_cast<HotTimecodeWidget*>(widget())->IsReadOnly();
    state.readOnly = !state.editable;
    return state;
  }
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
  auto* widget = dynamic_cast<HotTimecodeWidget*>(object);
  return widget ? new AccessibleTimecode(widget) : nullptr;
}

} // namespace

void InstallTimecodeAccessibility() {
  static const bool installed = [] {
    QAccessible::installFactory(&MakeAccessible);
    return true;
  }();
  (void)installed;
}

HotTimecodeWidget::HotTimecodeWidget(Owner owner, bool readOnly, QWidget* parent)
    : QWidget(parent), mOwner(std::move(owner)), mReadOnly(readOnly) {
  setMouseTracking(true);
  setCursor(readOnly ? Qt::ArrowCursor : Qt::SizeHorCursor);
}

void HotTimecodeWidget::Orphan() {
  mOwner = {};
}

bool HotTimecodeWidget::event(QEvent* event) {
  const toolkit::EventScope scope;
  const bool hasOwnFocus = toolkit::GetFocusWidget() == this;
  if (event->type() == QEvent::ShortcutOverride && hasOwnFocus) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    const bool ours = StepOfKey(key, true) != 0 || (mDrag != Drag::None && key.key() == Qt::Key_Escape);
    event->setAccepted(toolkit::FilterKeyEvent(key) || ours);
    return true;
  }
  return QWidget::event(event);
}

void HotTimecodeWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const bool hot = isEnabled() && !mReadOnly;
  QFont shown = font();
  shown.setUnderline(hot && (mHovered || mDrag == Drag::Moving));
  painter.setFont(shown);
  painter.setPen(hot ? palette().color(QPalette::Link)
                     : palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
  painter.drawText(rect().adjusted(kTextMargin, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   GetText());
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

void HotTimecodeWidget::enterEvent(QEnterEvent*) {
  mHovered = true;
  update();
}

void HotTimecodeWidget::leaveEvent(QEvent*) {
  mHovered = false;
  update();
}

void HotTimecodeWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || mReadOnly) {
    event->ignore();
    return;
  }
  mDrag = Drag::Pressed;
  mPressedAt = static_cast<int>(event->globalPosition().x());
  mLastSteps = 0;
  // So that Escape comes here while it is dragged.
  toolkit::MoveFocus(this, zebui::ui::kFocusChange_Pointer);
}

void HotTimecodeWidget::mouseMoveEvent(QMouseEvent* event) {
  if (mDrag == Drag::None)
    return;
  const int steps = (static_cast<int>(event->globalPosition().x()) - mPressedAt) / kPixelsPerStep;
  if (mDrag == Drag::Pressed && steps == 0)
    return;
  mDrag = Drag::Moving;
  const int wanted = (event->modifiers() & Qt::ShiftModifier) ? steps * kShiftFactor : steps;
  if (wanted == mLastSteps)
    return;
  mLastSteps = wanted;
  Tell(mOwner.dragged, wanted);
}

void HotTimecodeWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton)
    return;
  const Drag drag = std::exchange(mDrag, Drag::None);
  update();
  if (drag == Drag::Moving)
    Tell(mOwner.dragEnded);
  else if (drag == Drag::Pressed && rect().contains(event->position().toPoint()))
    Tell(mOwner.clicked);
}

void HotTimecodeWidget::wheelEvent(QWheelEvent* event) {
  // Only with the focus: a wheel that passes over the field scrolls what it lies in.
  const bool ours = !mReadOnly && toolkit::GetFocusWidget() == this && mDrag == Drag::None;
  event->setAccepted(ours);
  if (!ours)
    return;
  if (const int steps = StepsOfWheel(*event, mWheelRest); steps != 0)
    Tell(mOwner.stepped, steps);
}

void HotTimecodeWidget::keyPressEvent(QKeyEvent* event) {
  if (toolkit::FilterKeyEvent(*event))
    return;
  if (event->key() == Qt::Key_Escape && mDrag != Drag::None) {
    const bool moved = std::exchange(mDrag, Drag::None) == Drag::Moving;
    if (moved)
      Tell(mOwner.dragCancelled);
    return;
  }
  const int steps = StepOfKey(*event, true);
  const bool opens = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_F2;
  if (!mReadOnly && mDrag == Drag::None && steps != 0)
    Tell(mOwner.stepped, steps);
  else if (!mReadOnly && mDrag == Drag::None && opens)
    Tell(mOwner.clicked);
  else
    event->ignore();
}

InlineEditor::InlineEditor(Owner owner, const QString& text, QWidget* parent)
    : QLineEdit(text, parent), mOwner(std::move(owner)) {
  setFrame(false);
  setTextMargins(0, 0, 0, 0);
  setContextMenuPolicy(Qt::NoContextMenu);
  selectAll();
}

void InlineEditor::Shake() {
  setProperty("shakes", property("shakes").toInt() + 1);
  selectAll();
  auto* animation = new QVariantAnimation(this);
  animation->setDuration(kShakeMilliseconds);
  animation->setStartValue(0.0);
  animation->setEndValue(1.0);
  const QPoint home(0, 0);
  QObject::connect(animation, &QVariantAnimation::valueChanged, this, [this, home](const QVariant& value) {
    // Three swings that die away, and home at the end.
    const double along = value.toDouble();
    const double swing = std::sin(along * 6.0 * 3.14159265) * (1.0 - along) * kShakePixels;
    move(home + QPoint(static_cast<int>(std::lround(swing)), 0));
  });
  animation->start(QAbstractAnimation::DeleteWhenStopped);
}

bool InlineEditor::event(QEvent* event) {
  const toolkit::EventScope scope;
  if (event->type() == QEvent::ShortcutOverride) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    const int code = key.key();
    const bool ours = code == Qt::Key_Escape || code == Qt::Key_Return || code == Qt::Key_Enter ||
                      StepOfKey(key, false) != 0 || toolkit::FilterKeyEvent(key);
    if (ours) {
      event->accept();
      return true;
    }
  }
  if (event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) {
      const bool filtered = toolkit::FilterKeyEvent(*key);
      event->accept();
      const auto tabbed = mOwner.tabbed;
      if (!filtered && tabbed)
        tabbed(key->key() == Qt::Key_Backtab || (key->modifiers() & Qt::ShiftModifier));
      return true;
    }
  }
  return QLineEdit::event(event);
}

void InlineEditor::keyPressEvent(QKeyEvent* event) {
  if (toolkit::FilterKeyEvent(*event))
    return;
  const Owner owner = mOwner;
  event->accept();
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (owner.entered)
      owner.entered();
    return;
  }
  if (event->key() == Qt::Key_Escape) {
    if (owner.cancelled)
      owner.cancelled();
    return;
  }
  if (const int steps = StepOfKey(*event, false); steps != 0) {
    if (owner.stepped)
      owner.stepped(steps);
    return;
  }
  QLineEdit::keyPressEvent(event);
}

void InlineEditor::wheelEvent(QWheelEvent* event) {
  event->accept();
  int rest = property("wheelRest").toInt();
  const int steps = StepsOfWheel(*event, rest);
  setProperty("wheelRest", rest);
  if (steps != 0 && mOwner.stepped)
    mOwner.stepped(steps);
}

void InlineEditor::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  const Qt::FocusReason reason = event->reason();
  const bool stays =
      reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason;
  const auto left = mOwner.left;
  if (!stays && left)
    left();
}

} // namespace UIF
