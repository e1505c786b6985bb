// For the sources of zebui, UIF, DLG, App and Drive only: a button that its control paints, and the colours for it.
#pragma once

#include <functional>

#include <QPainter>
#include <QPushButton>
#include <nlohmann/json.hpp>

#include "zebui/Node.h"

namespace zebui::toolkit {

struct ButtonLook {
  bool enabled = true;
  bool hovered = false;
  bool pressed = false;
  bool on = false;
  bool focused = false;
};

// What a flat control is drawn with on the window's background. Ink and accent have a contrast of at least 4.5 to 1 on
// every fill that they come with.
struct ControlColors {
  QColor ink;
  QColor accent;
  QColor fill;   // invalid for none
  QColor border; // invalid for none
};
ControlColors ColorsFor(const QPalette& palette, const ButtonLook& look);

// Sharp at every scale of the screen: the frame of a rectangle, one device pixel or more wide, inside it.
void PaintFrame(QPainter& painter, const QRectF& rect, const QColor& color, qreal width, qreal radius);

// A node's button. Keys go through the node, which answers Space and Enter by IsPressKey, once for each time that they
// are held down; a click does what clicked is
// connected to. Being checked is up to the control, a click leaves it alone. Assistive technology finds a check box
// where it can be checked, else a button, with a click as the one thing to do.
class PaintedButton : public QPushButton {
 public:
  using Paint = std::function<void(QPainter& painter, const QRectF& rect, const ButtonLook& look)>;
  PaintedButton(ui::UI_Node& owner, Paint paint, QWidget* parent);
  // The control goes before its widget does.
  void Orphan();
  ButtonLook GetLook() const;
  // The pointer's place while it is over the button; (-1, -1) while it is not.
  QPointF GetPointer() const { return mPointer; }

  QSize sizeHint() const override { return {20, 20}; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void nextCheckState() override {}
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  bool MoveByTab(const QKeyEvent& key);

  ui::UI_Node* mOwner;
  Paint mPaint;
  QPointF mPointer{-1, -1};
};

// A control was given a value, by the names that the trace has for it.
void TraceValue(const char* call, const ui::UI_Node& node, const nlohmann::json& value);

// A key that presses a button. In the phase that asks for shortcuts it says that the key is wanted.
bool IsPressKey(const ui::KeyboardEvent& event);

} // namespace zebui::toolkit
