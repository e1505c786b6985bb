// A window on the offscreen platform, for tests of what is on screen.
#pragma once

#include <QApplication>
#include <QWidget>
#include <gtest/gtest.h>

#include "zebui/Toolkit.h"

namespace test {

struct Window {
  QWidget widget;
  boost::intrusive_ptr<zebui::ui::UI_Node> root = new zebui::ui::UI_Node;

  Window() {
    widget.resize(400, 300);
    zebui::toolkit::BindViewNode(*root, &widget);
  }
  ~Window() {
    zebui::toolkit::UnbindViewNode(*root);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  void Activate() {
    widget.show();
    widget.activateWindow();
    QApplication::setActiveWindow(&widget);
    QCoreApplication::processEvents();
  }
  template <class Control> boost::intrusive_ptr<Control> Add(Control* control, float x = 0, float y = 0) {
    boost::intrusive_ptr<Control> kept(control);
    kept->UI_SetLocalRectF({x, y, 200, 65});
    root->ChildPushBack(kept);
    return kept;
  }
};

} // namespace test
