#include "zebui/HotField.h"

#include <cmath>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QVariantAnimation>
#include <QWheelEvent>

#include "zebui/TextWidget.h"

namespace zebui::controls {

namespace {

constexpr int kEighthsPerNotch = 120;
constexpr int kShakePixels = 4;
constexpr int kShakeMilliseconds = 280;
constexpr double kFineFactor = 0.1;
constexpr int kPageSteps = 10;
constexpr double kSmallestFont = 0.75; // of the size that was asked
constexpr Qt::KeyboardModifiers kCommandModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

// Three swings that die away, home at the end.
template <class Move> void Swing(QWidget* widget, Move move) {
  widget->setProperty("shakes", widget->property("shakes").toInt() + 1);
  auto* animation = new QVariantAnimation(widget);
  animation->setDuration(kShakeMilliseconds);
  animation->setStartValue(0.0);
  animation->setEndValue(1.0);
  QObject::connect(animation, &QVariantAnimation::valueChanged, widget, [move](const QVariant& value) {
    const double along = value.toDouble();
    move(std::sin(along * 6.0 * 3.14159265) * (1.0 - along) * kShakePixels);
  });
  animation->start(QAbstractAnimation::DeleteWhenStopped);
}

double FactorOf(Qt::KeyboardModifiers modifiers) {
  if (modifiers & Qt::ShiftModifier)
    return HotFieldWidget::kShiftFactor;
  return (modifiers & Qt::ControlModifier) ? kFineFactor : 1.0;
}

bool BeginsValue(const QString& text) {
  return text.size() == 1 && (text.at(0).isDigit() || QStringView(u"+-*/.,:;(").contains(text.at(0)));
}

class AccessibleField : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit AccessibleField(HotFieldWidget* field) : QAccessibleWidget(field, QAccessible::SpinBox) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface && Field().GetOwner().number)
      return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? Field().GetText() : QAccessibleWidget::text(kind);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.editable = !Field().IsReadOnly();
    state.readOnly = !state.editable;
    return state;
  }

  QVariant currentValue() const override { return Field().GetOwner().number ? Field().GetOwner().number() : 0.0; }
  void setCurrentValue(const QVariant& value) override {
    const auto set = Field().GetOwner().setNumber;
    if (set)
      set(value.toDouble());
  }
  QVariant minimumValue() const override { return Bounds().first; }
  QVariant maximumValue() const override { return Bounds().second; }
  QVariant minimumStepSize() const override {
    return Field().GetOwner().increment ? Field().GetOwner().increment() : 0.0;
  }

 private:
  HotFieldWidget& Field() const { return *static_cast<HotFieldWidget*>(widget()); }
  std::pair<double, double> Bounds() const {
    return Field().GetOwner().bounds ? Field().GetOwner().bounds() : std::pair<double, double>();
  }
};

} // namespace

HotKey ReadHotKey(const QKeyEvent& event) {
  using Does = HotKey::Does;
  const Qt::KeyboardModifiers command = event.modifiers() & kCommandModifiers;
  if (command && command != (Qt::ControlModifier | Qt::AltModifier))
    return {};
  const int factor = (event.modifiers() & Qt::ShiftModifier) ? HotFieldWidget::kShiftFactor : 1;
  if (!command) {
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
      return {Does::Step, factor, {}};
    case Qt::Key_Down:
    case Qt::Key_Left:
      return {Does::Step, -factor, {}};
    case Qt::Key_PageUp:
      return {Does::Page, kPageSteps * factor, {}};
    case Qt::Key_PageDown:
      return {Does::Page, -kPageSteps * factor, {}};
    case Qt::Key_Home:
      return {Does::ToMinimum, 0, {}};
    case Qt::Key_End:
      return {Does::ToMaximum, 0, {}};
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
      return {Does::Open, 0, {}};
    default:
      break;
    }
  }
  // Control and Alt together are how some keyboards reach further characters.
  return BeginsValue(event.text()) ? HotKey{Does::Type, 0, event.text()} : HotKey();
}

int ReadWheelSteps(const QWheelEvent& event, int& rest) {
  // Shift turns the wheel sideways on some systems.
  const int turned = event.angleDelta().y() != 0 ? event.angleDelta().y() : event.angleDelta().x();
  if ((turned > 0) != (rest > 0))
    rest = 0;
  rest += turned;
  const int notches = rest / kEighthsPerNotch;
  rest -= notches * kEighthsPerNotch;
  return (event.modifiers() & Qt::ShiftModifier) ? notches * HotFieldWidget::kShiftFactor : notches;
}

void DrawFittingText(QPainter& painter, const QRect& room, const QFont& font, const QString& text) {
  QFont fitting = font;
  const qreal width = QFontMetricsF(font).horizontalAdvance(text);
  if (width > room.width() && width > 0.0) {
    const qreal factor = std::max(kSmallestFont, room.width() / width);
    // Narrower first: it stays as high as its neighbours.
    fitting.setStretch(static_cast<int>(std::floor(factor * 100.0)));
    if (QFontMetricsF(fitting).horizontalAdvance(text) > room.width() && font.pixelSize() > 0) {
      fitting.setStretch(QFont::Unstretched);
      fitting.setPixelSize(static_cast<int>(std::floor(font.pixelSize() * factor)));
    }
  }
  painter.setFont(fitting);
  const QString shown = QFontMetricsF(fitting).elidedText(text, Qt::ElideRight, room.width() + 0.5);
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

HotFieldWidget::HotFieldWidget(Owner owner, bool readOnly, QWidget* parent)
    : QWidget(parent), mOwner(std::move(owner)), mReadOnly(readOnly) {
  setMouseTracking(true);
  setCursor(readOnly ? Qt::ArrowCursor : Qt::SizeHorCursor);
}

void HotFieldWidget::Orphan() {
  mOwner = {};
}

void HotFieldWidget::Shake() {
  Swing(this, [this](double swing) {
    mSwing = swing;
    update();
  });
}

QAccessibleInterface* HotFieldWidget::MakeAccessible() {
  return new AccessibleField(this);
}

bool HotFieldWidget::WantsKey(const QKeyEvent& event) const {
  if (mReadOnly)
    return false;
  const bool endsDrag = mDrag != Drag::None && event.key() == Qt::Key_Escape;
  return endsDrag || ReadHotKey(event).does != HotKey::Does::Nothing;
}

bool HotFieldWidget::RunKey(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Escape && mDrag != Drag::None) {
    const bool moved = std::exchange(mDrag, Drag::None) == Drag::Moving;
    update();
    if (moved)
      Tell(mOwner.dragCancelled);
    return true;
  }
  const HotKey key = ReadHotKey(event);
  const auto run = mOwner.key;
  const bool canRun = !mReadOnly && mDrag == Drag::None && key.does != HotKey::Does::Nothing && run;
  return canRun && run(key);
}

bool HotFieldWidget::event(QEvent* event) {
  const toolkit::EventScope scope;
  const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress ||
                     event->type() == QEvent::KeyRelease;
  const QWidget* const focus = toolkit::GetFocusWidget();
  if (isKey && focus != this && isAncestorOf(focus)) {
    // It went through filters and node on its way out of the editor, which had no use for it.
    event->ignore();
    return true;
  }
  if (mOwner.node)
    return RunNodeKey(*mOwner.node, *this, *event) || QWidget::event(event);
  if (event->type() == QEvent::ShortcutOverride && toolkit::GetFocusWidget() == this) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    event->setAccepted(toolkit::FilterKeyEvent(key) || WantsKey(key));
    return true;
  }
  const bool isTab = event->type() == QEvent::KeyPress && (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab ||
                                                           static_cast<QKeyEvent*>(event)->key() == Qt::Key_Backtab);
  if (event->type() == QEvent::KeyPress && !isTab) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    event->setAccepted(toolkit::FilterKeyEvent(key) || RunKey(key));
    return true;
  }
  return QWidget::event(event);
}

void HotFieldWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const bool hot = isEnabled() && !mReadOnly;
  QFont shown = font();
  shown.setUnderline(hot && (mHovered || mDrag == Drag::Moving));
  const auto group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  painter.setPen(hot ? HotColor(palette()) : palette().color(group, QPalette::WindowText));
  const QRect room = rect().adjusted(mOwner.margin, 0, 0, 0).translated(static_cast<int>(std::lround(mSwing)), 0);
  DrawFittingText(painter, room, shown, GetText());
  if (toolkit::GetFocusWidget() == this)
    PaintFocusRing(painter, rect(), palette());
}

void HotFieldWidget::enterEvent(QEnterEvent*) {
  mHovered = true;
  update();
}

void HotFieldWidget::leaveEvent(QEvent*) {
  mHovered = false;
  update();
}

void HotFieldWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || mReadOnly) {
    event->ignore();
    return;
  }
  mDrag = Drag::Pressed;
  mPressedAt = static_cast<int>(event->globalPosition().x());
  mDraggedTo = mPressedAt;
  mTravel = 0.0;
  mLastSteps = 0;
  // So that Escape comes here while it is dragged.
  toolkit::MoveFocus(this, ui::kFocusChange_Pointer);
}

void HotFieldWidget::mouseMoveEvent(QMouseEvent* event) {
  if (mDrag != Drag::None)
    FollowDrag(*event);
}

void HotFieldWidget::FollowDrag(const QMouseEvent& event) {
  const int x = static_cast<int>(event.globalPosition().x());
  if (mDrag == Drag::Pressed && std::abs(x - mPressedAt) < kDragThreshold)
    return;
  mDrag = Drag::Moving;
  // Weighed as it goes, so that a modifier that is pressed on the way makes no jump.
  mTravel += (x - mDraggedTo) * FactorOf(event.modifiers());
  mDraggedTo = x;
  const int steps = static_cast<int>(mTravel / std::max(1, mOwner.pixelsPerStep));
  if (steps == mLastSteps)
    return;
  mLastSteps = steps;
  Tell(mOwner.dragged, steps);
}

void HotFieldWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton)
    return;
  const Drag drag = std::exchange(mDrag, Drag::None);
  update();
  if (drag == Drag::Moving)
    Tell(mOwner.dragEnded);
  else if (drag == Drag::Pressed && rect().contains(event->position().toPoint()))
    Tell(mOwner.clicked);
}

void HotFieldWidget::wheelEvent(QWheelEvent* event) {
  // Only with the focus: a wheel that passes over the field scrolls what it lies in.
  const bool ours = !mReadOnly && toolkit::GetFocusWidget() == this && mDrag == Drag::None;
  event->setAccepted(ours);
  if (!ours)
    return;
  if (const int steps = ReadWheelSteps(*event, mWheelRest); steps != 0)
    Tell(mOwner.stepped, steps);
}

void HotFieldWidget::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  update();
}

void HotFieldWidget::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  update();
}

// What is disabled or hidden while it is dragged goes back to where it was.
void HotFieldWidget::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::EnabledChange && !isEnabled())
    LetGo();
}

void HotFieldWidget::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  LetGo();
}

void HotFieldWidget::LetGo() {
  if (std::exchange(mDrag, Drag::None) == Drag::Moving)
    Tell(mOwner.dragCancelled);
}

InlineEditor::InlineEditor(Owner owner, const QString& text, const QString& typed, QWidget* parent)
    : QLineEdit(typed.isEmpty() ? text : typed, parent), mOwner(std::move(owner)) {
  setFrame(false);
  // The toolkit's own margin beside the text is two pixels.
  setTextMargins(std::max(0, mOwner.margin - 2), 0, 0, 0);
  setContextMenuPolicy(Qt::NoContextMenu);
  if (typed.isEmpty())
    selectAll();
}

void InlineEditor::Shake() {
  selectAll();
  Swing(this, [this](double swing) { move(static_cast<int>(std::lround(swing)), 0); });
}

bool InlineEditor::WantsKey(const QKeyEvent& event) {
  const int code = event.key();
  return code == Qt::Key_Escape || code == Qt::Key_Return || code == Qt::Key_Enter ||
         event.matches(QKeySequence::Undo) || event.matches(QKeySequence::Redo) ||
         TextWidget::IsEditingKey(event, false);
}

bool InlineEditor::RunTab(const QKeyEvent& event) {
  if (event.modifiers() & kCommandModifiers)
    return false;
  const auto tabbed = mOwner.tabbed;
  if (tabbed)
    tabbed(event.key() == Qt::Key_Backtab || (event.modifiers() & Qt::ShiftModifier));
  return true;
}

bool InlineEditor::RunKey(const QKeyEvent& event) {
  const Owner owner = mOwner;
  switch (event.key()) {
  case Qt::Key_Tab:
  case Qt::Key_Backtab:
    return RunTab(event);
  case Qt::Key_Return:
  case Qt::Key_Enter:
    if (owner.entered)
      owner.entered();
    return true;
  case Qt::Key_Escape:
    if (owner.cancelled)
      owner.cancelled();
    return true;
  default:
    break;
  }
  const bool isUpOrDown = event.key() == Qt::Key_Up || event.key() == Qt::Key_Down;
  const HotKey key = isUpOrDown ? ReadHotKey(event) : HotKey();
  if (key.does == HotKey::Does::Step) {
    if (owner.stepped)
      owner.stepped(key.steps);
    return true;
  }
  QKeyEvent copy(event.type(), event.key(), event.modifiers(), event.text(), event.isAutoRepeat(),
                 static_cast<quint16>(event.count()));
  keyPressEvent(&copy);
  return copy.isAccepted();
}

bool InlineEditor::event(QEvent* event) {
  const toolkit::EventScope scope;
  if (mOwner.node)
    return RunNodeKey(*mOwner.node, *this, *event) || QLineEdit::event(event);
  if (event->type() == QEvent::ShortcutOverride) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    event->setAccepted(toolkit::FilterKeyEvent(key) || WantsKey(key));
    return true;
  }
  if (event->type() == QEvent::KeyPress) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    event->setAccepted(toolkit::FilterKeyEvent(key) || RunKey(key));
    return true;
  }
  return QLineEdit::event(event);
}

void InlineEditor::paintEvent(QPaintEvent* event) {
  QLineEdit::paintEvent(event);
  QPainter painter(this);
  PaintFocusRing(painter, rect(), palette());
}

void InlineEditor::wheelEvent(QWheelEvent* event) {
  event->accept();
  const int steps = ReadWheelSteps(*event, mWheelRest);
  const auto stepped = mOwner.stepped;
  if (steps != 0 && stepped)
    stepped(steps);
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

} // namespace zebui::controls
