#include "zebui/ControlWidget.h"

#include <QApplication>
#include <QFontMetricsF>

namespace zebui::controls {

namespace {

constexpr float kPlainCharacterWidth = 7.0F;
constexpr float kPlainHeight = 16.0F;

QFontMetricsF MetricsOf(const QWidget* widget) {
  return QFontMetricsF(widget ? widget->font() : QApplication::font());
}

QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
  auto* described = dynamic_cast<Described*>(object);
  return described ? described->MakeAccessible() : nullptr;
}

} // namespace

bool RunNodeKey(ui::UI_Node& node, QWidget& widget, QEvent& event) {
  const QPointer<QWidget> here(&widget);
  if (!toolkit::DispatchKeyEvent(node, event))
    return false;
  if (event.isAccepted() || event.type() != QEvent::KeyPress || !here)
    return true;
  const auto& key = static_cast<QKeyEvent&>(event);
  const bool isTab = key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab;
  if (!isTab || (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)))
    return true;
  const bool backwards = key.key() == Qt::Key_Backtab || (key.modifiers() & Qt::ShiftModifier);
  if (QWidget* const next = toolkit::NextTabStop(here, backwards)) {
    event.accept();
    toolkit::MoveFocus(next, backwards ? ui::kFocusChange_GoBack : ui::kFocusChange_Advance);
  }
  return true;
}

QKeyEvent ToQtKeyEvent(const ui::KeyboardEvent& event) {
  const QString text = event.GetCharacter() != 0 ? QString(QChar(event.GetCharacter())) : QString();
  if (const QKeyEvent* key = toolkit::GetKeyEventInDispatch())
    return {QEvent::KeyPress, key->key(), key->modifiers(), key->text(), key->isAutoRepeat()};
  return {QEvent::KeyPress, toolkit::ToQtKey(event.GetCode()), toolkit::ToQtModifiers(event.GetModKey()), text};
}

QColor HotColor(const QPalette& palette) {
  return palette.color(QPalette::Active, QPalette::Link);
}

void PaintFocusRing(QPainter& painter, const QRectF& rect, const QPalette& palette) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(HotColor(palette), 1.5));
  painter.drawRoundedRect(rect.adjusted(0.75, 0.75, -0.75, -0.75), 2.5, 2.5);
  painter.restore();
}

float TextWidth(const QString& text, const QWidget* widget) {
  if (!toolkit::HasApplication())
    return kPlainCharacterWidth * static_cast<float>(text.size());
  return static_cast<float>(std::ceil(MetricsOf(widget).horizontalAdvance(text)));
}

float TextHeight(const QWidget* widget) {
  return toolkit::HasApplication() ? static_cast<float>(std::ceil(MetricsOf(widget).height())) : kPlainHeight;
}

Described::Described() {
  // After the toolkit's own, and so asked before it.
  [[maybe_unused]] static const bool installed = [] {
    QAccessible::installFactory(&MakeInterface);
    return true;
  }();
}

} // namespace zebui::controls
