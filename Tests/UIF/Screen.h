// Frames, views and windows on the offscreen platform.
#pragma once

#include <memory>

#include <QApplication>
#include <QPushButton>
#include <QWidget>
#include <gtest/gtest.h>

#include "UIF/CommandRouter.h"
#include "UIF/TabView.h"
#include "UIF/ViewWidget.h"
#include "UIF/Workspace.h"

namespace test {

using zebcore::UString;
using zebcore::geom::PointT;
using zebcore::geom::RectT;

struct Frame : UIF::WorkspaceFrame {
  QWidget window;
  QWidget* container = new QWidget(&window);
  QString title;
  bool shown = false;
  bool front = false;
  bool laysOut = true;

  Frame() {
    window.resize(500, 400);
    container->setGeometry(0, 0, 500, 360);
  }
  ~Frame() override { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
  void* GetContainer() override { return container; }
  void SetTitle(const UString& text) override { title = QString::fromStdU16String(text); }
  void SetShown(bool show) override { shown = show; }
  bool IsShown() const override { return shown; }
  void BringToFront() override { front = true; }
  bool IsFrontMost() const override { return front; }
  bool LaysOutNewViews() const override { return laysOut; }

  void Activate() {
    window.show();
    window.activateWindow();
    QApplication::setActiveWindow(&window);
    QCoreApplication::processEvents();
  }
};

inline std::string Text(const RectT<int>& r) {
  return std::to_string(r.x) + "," + std::to_string(r.y) + "," + std::to_string(r.width) + "," +
         std::to_string(r.height);
}

// Writes down what happens to it.
struct Panel : UIF::TabView {
  explicit Panel(std::string* sink, UIF::Commander* super = nullptr) : TabView(super), log(sink) {}
  void CreateSelf(const RectT<int>& bounds) override { *log += "create(" + Text(bounds) + ") "; }
  void DestroySelf() override { *log += "destroy "; }
  void SetBoundsSelf(const RectT<int>& bounds) override { *log += "bounds(" + Text(bounds) + ") "; }
  void NowOnDuty() override { *log += "on "; }
  void NowOffDuty() override { *log += "off "; }
  bool ObeyCommand(const UIF::Command& command) override {
    *log += "command" + std::to_string(command.GetID()) + " ";
    return command.GetID() == obeys;
  }
  bool MouseWheelSelf(const PointT<int>& point, const UIF::KeyModifiers&, int delta) override {
    *log += "wheel" + std::to_string(delta) + "@" + std::to_string(point.x) + "," + std::to_string(point.y) + " ";
    return true;
  }
  std::string* log;
  int obeys = 0;
};

struct Pane : UIF::SubView {
  explicit Pane(std::string* sink) : SubView(nullptr), log(sink) {}
  void CreateSelf(const RectT<int>&) override { *log += "pane-create "; }
  void DestroySelf() override { *log += "pane-destroy "; }
  void SetFocusSelf() override { *log += "pane-focus "; }
  void KillFocusSelf() override { *log += "pane-blur "; }
  void LeftButtonDownSelf(const PointT<int>&, const UIF::KeyModifiers&) override { *log += "down "; }
  void LeftButtonUpSelf(const PointT<int>& p, const UIF::KeyModifiers& modifiers) override {
    *log += "up@" + std::to_string(p.x) + "," + std::to_string(p.y) + "/" + std::to_string(modifiers.GetFlags()) + " ";
  }
  void LeftButtonMultiClickSelf(const PointT<int>&, const UIF::KeyModifiers&, int clicks) override {
    *log += "clicks" + std::to_string(clicks) + " ";
  }
  void RightButtonDownSelf(const PointT<int>&, const UIF::KeyModifiers&) override { *log += "right "; }
  bool MousePanSelf(const PointT<int>&, const PointT<int>& delta) override {
    *log += "pan" + std::to_string(delta.y) + " ";
    return true;
  }
  bool KeyDownSelf(wchar_t, short code, bool) override {
    *log += "key" + std::to_string(code) + " ";
    return usesKeys;
  }
  bool TimerNotifySelf(std::uint32_t) override {
    *log += "tick ";
    return true;
  }
  void PaintSelf(UIF::DC& dc) override {
    dc.FillRect(ClientRect(), {255, 0, 0}, 255);
    dc.DrawLine({0, 5}, {10, 5}, {0, 0, 255}, 1, 255);
  }
  std::string* log;
  bool usesKeys = true;
};

} // namespace test
