// For the sources of UIF, DLG, App and Drive only: the widgets behind views.
#pragma once

#include <memory>
#include <set>
#include <string>

#include <QPainter>
#include <QPointer>
#include <QWidget>
#include <nlohmann/json.hpp>

#include "UIF/Drawing.h"
#include "UIF/View.h"
#include "zebui/Toolkit.h"

namespace UIF {

class ViewWidget : public QWidget {
 public:
  ViewWidget(ViewBase* view, QWidget* parent);
  ViewBase* GetView() const { return mView; }
  // The view goes before its widget does.
  void Orphan() { mView = nullptr; }
  // What watches other widgets for this one. It goes first: a widget that goes has the toolkit send events to those.
  void Keep(std::unique_ptr<QObject> watcher) { mWatcher = std::move(watcher); }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  ViewBase* mView;
  int mWheelRest = 0; // eighths of a degree short of a notch
  std::unique_ptr<QObject> mWatcher;
};

class TabView;

struct ViewImpl {
  ViewImpl();
  ~ViewImpl();
  QPointer<ViewWidget> widget;
  // The view that it was created under, which a view's own GetParent may deny.
  ViewBase* parent = nullptr;
  TabView* tabView = nullptr; // the view itself, when it is one
  boost::intrusive_ptr<zebui::ui::UI_Node> node;
  RectT<int> bounds;
  bool created = false;
  bool shown = false;
  bool enabled = true;
  bool wantsDragAndDrop = false;
  UString toolTip;
  std::set<std::uint32_t> timers;
  std::string traceName;
};

// A painter as a device context. Lives as long as the pass.
struct DC::Impl {
  explicit Impl(QPainter& target);
  ~Impl();
  QPainter& painter;
  std::shared_ptr<zebui::drawbot::Drawbot> drawbot;
};

// The widget that a view is on screen with; null while it is not created.
QWidget* WidgetOf(const ViewBase* view);
// The innermost view whose widget this is or lies in; null for none.
ViewBase* ViewOf(QWidget* widget);
// The tab view that the widget lies in; null for none.
TabView* TabViewOf(QWidget* widget);
// Makes the widget of a view; the view's own CreateSelf is up to the caller.
void CreateViewWidget(ViewBase& view, QWidget* parent, const RectT<int>& bounds, bool shown);
// Takes it away again with its timers.
void DestroyViewWidget(ViewBase& view);
void SetTraceName(ViewBase& view, std::string name);
// The class, and the name if it has one.
nlohmann::json TraceArgs(const ViewBase& view);

inline QRect ToQt(const RectT<int>& rect) {
  return {rect.x, rect.y, std::max(0, rect.width), std::max(0, rect.height)};
}
inline RectT<int> FromQt(const QRect& rect) {
  return {rect.x(), rect.y(), rect.width(), rect.height()};
}
inline QColor ToQt(const Color& color, int alpha = 255) {
  return {color.red, color.green, color.blue, alpha};
}
nlohmann::json TraceRect(const RectT<int>& rect);

} // namespace UIF
