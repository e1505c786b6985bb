// The toolkit's side that node controls have in common, for the sources of zebui and UIF only.
#pragma once

#include <cmath>
#include <utility>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPainter>
#include <QWidget>

#include "zebui/Toolkit.h"

namespace zebui::controls {

using zebcore::UString;
using zebcore::geom::PointT;

// Gives a key event to the node, and moves on from its widget with Tab if the node has no use for it. True for events
// that it took care of; whether they were used is in the event.
bool RunNodeKey(ui::UI_Node& node, QWidget& widget, QEvent& event);
// The toolkit's event behind a node's, or one made of it.
QKeyEvent ToQtKeyEvent(const ui::KeyboardEvent& event);

// The line around what has the keyboard focus, inside the rectangle.
void PaintFocusRing(QPainter& painter, const QRectF& rect, const QPalette& palette);
// With contrast on every theme's window: what a person can change is in the first colour.
QColor HotColor(const QPalette& palette);

// Around what is written in the program's font; 7 by 16 pixels a character while there is no application.
float TextWidth(const QString& text, const QWidget* widget);
float TextHeight(const QWidget* widget);

// A widget of a node control: its keys go to the node.
template <class Base> class NodeWidget : public Base {
 public:
  template <class... Arguments>
  explicit NodeWidget(ui::UI_Node* node, Arguments&&... arguments)
      : Base(std::forward<Arguments>(arguments)...), mNode(node) {}
  // The node goes before the widget does.
  virtual void Orphan() { mNode = nullptr; }
  ui::UI_Node* Node() const { return mNode; }

 protected:
  bool event(QEvent* event) override {
    const toolkit::EventScope scope;
    if (mNode && RunNodeKey(*mNode, *this, *event))
      return true;
    return Base::event(event);
  }

 private:
  ui::UI_Node* mNode;
};

// What a widget says of itself to assistive technology, beyond its name.
class Described {
 public:
  virtual ~Described() = default;
  virtual QAccessibleInterface* MakeAccessible() = 0;

 protected:
  Described();
};

} // namespace zebui::controls
