// A pointer's way over a widget, for tests.
#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

namespace test {

inline void Mouse(QWidget* widget, QEvent::Type type, int x, Qt::KeyboardModifiers modifiers = {}) {
  const QPointF at(x, 8);
  QMouseEvent event(type, at, widget->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, modifiers);
  QCoreApplication::sendEvent(widget, &event);
}

inline void Click(QWidget* widget, int x = 5) {
  Mouse(widget, QEvent::MouseButtonPress, x);
  Mouse(widget, QEvent::MouseButtonRelease, x);
}

// True if the widget had use for it.
inline bool Wheel(QWidget* widget, int eighths, Qt::KeyboardModifiers modifiers = {}) {
  QWheelEvent event(QPointF(5, 5), widget->mapToGlobal(QPointF(5, 5)), {}, {0, eighths}, Qt::NoButton, modifiers,
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(widget, &event);
  return event.isAccepted();
}

} // namespace test
