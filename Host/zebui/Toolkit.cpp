#include "zebui/Toolkit.h"

#include <unordered_map>

#include <QApplication>

namespace zebui::toolkit {

namespace {

int sWidgetScopes = 0;
int sEventScopes = 0;
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
  for (QWidget* next = backwards ? from->previousInFocusChain() : from->nextInFocusChain(); next && next != from;
       next = backwards ? next->previousInFocusChain() : next->nextInFocusChain()) {
    const bool isStop = (next->focusPolicy() & Qt::TabFocus) == Qt::TabFocus && next->isEnabled() &&
                        next->isVisibleTo(window) && !next->focusProxy() && !from->isAncestorOf(next);
    if (isStop)
      return next;
  }
  return nullptr;
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
