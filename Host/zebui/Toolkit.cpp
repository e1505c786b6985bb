#include "zebui/Toolkit.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include <QApplication>
#include <QRect>

namespace zebui::toolkit {

namespace {

int sWidgetScopes = 0;
int sEventScopes = 0;
constexpr const char* kTabGroup = "tabGroup";

bool IsTabStop(const QWidget& widget, const QWidget& window) {
  return (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus && widget.isEnabled() && widget.isVisibleTo(&window) &&
         !widget.focusProxy();
}

const QWidget* TabGroupOf(const QWidget* widget) {
  while (widget && !widget->property(kTabGroup).toBool())
    widget = widget->isWindow() ? nullptr : widget->parentWidget();
  return widget;
}

// The stops in the group line by line, each from left to right, with that widget among them. What overlaps in height
// by more than half stands in one line.
std::vector<QWidget*> ReadingOrder(const QWidget& group, QWidget& from) {
  struct Stop {
    QWidget* widget;
    QRect rect;
    int line = 0;
  };
  std::vector<Stop> stops;
  for (QWidget* widget : group.findChildren<QWidget*>()) {
    const bool isStop = IsTabStop(*widget, *group.window()) && !from.isAncestorOf(widget);
    if (widget == &from || isStop)
      stops.push_back({widget, QRect(widget->mapTo(&group, QPoint()), widget->size())});
  }
  if (&from == &group)
    stops.insert(stops.begin(), {&from, QRect(0, 0, group.width(), 1)});
  std::ranges::stable_sort(stops, {}, [](const Stop& stop) { return stop.rect.top(); });
  int line = 0;
  int lineBottom = -1;
  for (Stop& stop : stops) {
    const int shared = std::min(lineBottom, stop.rect.bottom()) - stop.rect.top() + 1;
    if (2 * shared <= stop.rect.height()) {
      ++line;
      lineBottom = stop.rect.bottom();
    }
    lineBottom = std::max(lineBottom, stop.rect.bottom());
    stop.line = line;
  }
  std::ranges::stable_sort(stops, {}, [](const Stop& stop) { return std::pair(stop.line, stop.rect.left()); });
  std::vector<QWidget*> order;
  std::ranges::transform(stops, std::back_inserter(order), &Stop::widget);
  return order;
}

std::vector<QPointer<QWidget>>& Trash() {
  static std::vector<QPointer<QWidget>> trash;
  return trash;
}

} // namespace

bool HasApplication() {
  return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

QWidget* WidgetOf(const UI_Node* node) {
  return node ? node->Impl().widget.data() : nullptr;
}

void SetTraceName(UI_Node& node, std::string name) {
  node.Impl().traceName = std::move(name);
}

bool IsPassingWindow(const QWidget* window) {
  if (!window)
    return false;
  const Qt::WindowType type = window->windowType();
  return window->isModal() || type == Qt::Popup || type == Qt::Dialog || type == Qt::ToolTip || type == Qt::Sheet ||
         type == Qt::SplashScreen;
}

QWidget* NextTabStop(QWidget* from, bool backwards) {
  if (!from)
    return nullptr;
  const QWidget* window = from->window();
  const QWidget* group = TabGroupOf(from);
  if (group) {
    const std::vector<QWidget*> order = ReadingOrder(*group, *from);
    const auto at = std::ranges::find(order, from);
    if (backwards && at != order.begin())
      return *std::prev(at);
    if (!backwards && std::next(at) != order.end())
      return *std::next(at);
  }
  QWidget* entered = nullptr;
  for (QWidget* next = backwards ? from->previousInFocusChain() : from->nextInFocusChain(); next && next != from;
       next = backwards ? next->previousInFocusChain() : next->nextInFocusChain()) {
    if (!IsTabStop(*next, *window) || from->isAncestorOf(next) || (group && group->isAncestorOf(next)))
      continue;
    entered = next;
    break;
  }
  // A group is entered at its end that is nearer in reading, and one that fills its window begins anew.
  group = entered ? TabGroupOf(entered) : group;
  const std::vector<QWidget*> order = group ? ReadingOrder(*group, *from) : std::vector<QWidget*>();
  std::vector<QWidget*> stops;
  std::ranges::copy_if(order, std::back_inserter(stops), [from](const QWidget* stop) { return stop != from; });
  if (stops.empty())
    return entered;
  return backwards ? stops.back() : stops.front();
}

void SetTabGroup(QWidget& widget) {
  widget.setProperty(kTabGroup, true);
}

KeepAlive::KeepAlive(const UI_Node& node) : mNode(node.use_count() > 0 ? &node : nullptr) {
  if (mNode)
    intrusive_ptr_add_ref(mNode);
}

KeepAlive::~KeepAlive() {
  if (mNode)
    intrusive_ptr_release(mNode);
}

WidgetScope::WidgetScope() {
  ++sWidgetScopes;
}

WidgetScope::~WidgetScope() {
  if (--sWidgetScopes > 0 || sEventScopes > 0)
    return;
  std::vector<QPointer<QWidget>> trash;
  trash.swap(Trash());
  for (const QPointer<QWidget>& widget : trash)
    delete widget.data();
}

EventScope::EventScope() {
  ++sEventScopes;
}

EventScope::~EventScope() {
  if (--sEventScopes > 0 || sWidgetScopes > 0)
    return;
  std::vector<QPointer<QWidget>> trash;
  trash.swap(Trash());
  for (const QPointer<QWidget>& widget : trash) {
    if (widget)
      widget->deleteLater();
  }
}

void Dispose(QWidget* widget) {
  if (!widget)
    return;
  TakeFocusAwayFrom(widget);
  if (sEventScopes == 0 && sWidgetScopes == 0) {
    delete widget;
    return;
  }
  widget->hide();
  widget->setParent(nullptr);
  Trash().emplace_back(widget);
}

} // namespace zebui::toolkit
