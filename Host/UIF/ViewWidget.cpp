#include "UIF/ViewWidget.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include "UIF/KeyCodes.h"
#include "UIF/TabView.h"
#include "UIF/ViewFocus.h"
#include "zebui/NodeManager.h"

namespace UIF {

namespace toolkit = zebui::toolkit;

namespace {

constexpr int kEighthsPerNotch = 120;

KeyModifiers ModifiersOf(const QInputEvent& event) {
  return KeyModifiers(static_cast<std::uint8_t>(toolkit::ToModKey(event.modifiers())));
}

PointT<int> PointOf(const QPointF& point) {
  return {static_cast<int>(point.x()), static_cast<int>(point.y())};
}

// The panel's own upright scroll bar; null while it has none on show.
QScrollBar* ScrollBarOf(const QWidget& widget) {
  const TabView* tabView = TabViewOf(const_cast<QWidget*>(&widget));
  const QWidget* panel = tabView ? WidgetOf(tabView) : nullptr;
  if (!panel)
    return nullptr;
  for (QScrollBar* bar : panel->findChildren<QScrollBar*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (bar->orientation() == Qt::Vertical && !bar->isHidden())
      return bar;
  }
  return nullptr;
}

// A move that would pass an end of the panel's scroll bar stops there, as scroll bars do: views count on wheels and
// fingers without that bound. distance: pixels, down is positive. False if it stays inside, or if there is no bar.
bool StopsAtEnd(QScrollBar* bar, int distance) {
  if (!bar)
    return false;
  const int target = bar->value() + distance;
  if (target >= bar->minimum() && target <= bar->maximum())
    return false;
  bar->setValue(target);
  return true;
}

} // namespace

ViewImpl::ViewImpl() = default;
ViewImpl::~ViewImpl() = default;

ViewWidget::ViewWidget(ViewBase* view, QWidget* parent) : QWidget(parent), mView(view) {
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent, false);
}

bool ViewWidget::event(QEvent* event) {
  const toolkit::EventScope scope;
  const bool hasOwnFocus = toolkit::GetFocusWidget() == this;
  if (event->type() == QEvent::ShortcutOverride && hasOwnFocus) {
    event->setAccepted(toolkit::FilterKeyEvent(*static_cast<QKeyEvent*>(event)));
    return true;
  }
  // Tab belongs to the view first; the toolkit would take it to move the focus.
  if (event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    const bool isTab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
    if (isTab && mView && hasOwnFocus) {
      keyPressEvent(key);
      if (key->isAccepted() || !mView)
        return true;
      const bool backwards = key->key() == Qt::Key_Backtab || (key->modifiers() & Qt::ShiftModifier);
      QWidget* const next = toolkit::NextTabStop(this, backwards);
      if (next)
        toolkit::MoveFocus(next, backwards ? zebui::ui::kFocusChange_GoBack : zebui::ui::kFocusChange_Advance);
      event->setAccepted(next != nullptr);
      return true;
    }
  }
  return QWidget::event(event);
}

void ViewWidget::paintEvent(QPaintEvent*) {
  if (!mView)
    return;
  QPainter painter(this);
  DC::Impl impl(painter);
  DC dc(impl);
  mView->DispatchPaint(dc);
}

void ViewWidget::mousePressEvent(QMouseEvent* event) {
  if (!mView)
    return;
  const PointT<int> point = PointOf(event->position());
  if (event->button() == Qt::LeftButton)
    mView->DispatchLeftButtonDown(point, ModifiersOf(*event));
  else if (event->button() == Qt::RightButton)
    mView->DispatchRightButtonDown(point, ModifiersOf(*event));
}

void ViewWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (!mView)
    return;
  const PointT<int> point = PointOf(event->position());
  if (event->button() == Qt::LeftButton)
    mView->DispatchLeftButtonUp(point, ModifiersOf(*event));
  else if (event->button() == Qt::RightButton)
    mView->DispatchRightButtonUp(point, ModifiersOf(*event));
}

void ViewWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  if (!mView)
    return;
  if (event->button() == Qt::LeftButton)
    mView->DispatchLeftButtonMultiClick(PointOf(event->position()), ModifiersOf(*event), 2);
  else
    mousePressEvent(event);
}

void ViewWidget::mouseMoveEvent(QMouseEvent* event) {
  if (mView)
    mView->DispatchMouseMove(PointOf(event->position()), ModifiersOf(*event));
}

void ViewWidget::leaveEvent(QEvent*) {
  if (mView)
    mView->DispatchMouseLeave();
}

// Asked for what has the focus below, too.
bool ViewWidget::focusNextPrevChild(bool next) {
  QWidget* const from = toolkit::GetFocusWidget();
  if (!mView || !mView->Impl().tabView || !from || (from != this && !isAncestorOf(from)))
    return QWidget::focusNextPrevChild(next);
  QWidget* const to = toolkit::NextTabStop(from, !next);
  if (to)
    toolkit::MoveFocus(to, next ? zebui::ui::kFocusChange_Advance : zebui::ui::kFocusChange_GoBack);
  return to != nullptr;
}

void ViewWidget::wheelEvent(QWheelEvent* event) {
  event->accept();
  if (!mView)
    return;
  // A stacked panel shows all that it has; the column that it stands in scrolls.
  if (const TabView* tabView = TabViewOf(this); tabView && tabView->GetIsStacked()) {
    event->ignore();
    return;
  }
  const PointT<int> point = PointOf(event->position());
  // A touchpad says how far the fingers went; a wheel only counts notches.
  if (event->phase() != Qt::NoScrollPhase && !event->pixelDelta().isNull()) {
    const QPoint distance = -event->pixelDelta();
    if (!StopsAtEnd(ScrollBarOf(*this), distance.y()))
      mView->DispatchMousePan(point, {distance.x(), distance.y()});
    return;
  }
  const int turned = event->angleDelta().y();
  if (turned == 0)
    return;
  // What is left from turning the other way is forgotten.
  if ((turned > 0) != (mWheelRest > 0))
    mWheelRest = 0;
  mWheelRest += turned;
  const int notches = mWheelRest / kEighthsPerNotch;
  mWheelRest -= notches * kEighthsPerNotch;
  QScrollBar* const bar = ScrollBarOf(*this);
  if (notches != 0 && !StopsAtEnd(bar, bar ? -notches * bar->singleStep() : 0))
    mView->DispatchMouseWheel(point, ModifiersOf(*event), notches);
}

void ViewWidget::keyPressEvent(QKeyEvent* event) {
  if (!mView) {
    event->ignore();
    return;
  }
  if (toolkit::FilterKeyEvent(*event)) {
    event->accept();
    return;
  }
  const QString text = event->text();
  const wchar_t character = text.isEmpty() ? L'\0' : static_cast<wchar_t>(text.at(0).unicode());
  const bool used = mView->DispatchKeyDown(character, ToViewKeyCode(event->key()), event->isAutoRepeat());
  const bool typed = !used && mView && character != 0 && mView->DispatchCharacterInput(character);
  event->setAccepted(used || typed);
}

void ViewWidget::keyReleaseEvent(QKeyEvent* event) {
  if (!mView || toolkit::FilterKeyEvent(*event)) {
    event->setAccepted(mView != nullptr);
    return;
  }
  const QString text = event->text();
  const wchar_t character = text.isEmpty() ? L'\0' : static_cast<wchar_t>(text.at(0).unicode());
  event->setAccepted(mView->DispatchKeyUp(character, ToViewKeyCode(event->key())));
}

QWidget* WidgetOf(const ViewBase* view) {
  return view ? view->Impl().widget.data() : nullptr;
}

ViewBase* ViewOf(QWidget* widget) {
  for (; widget; widget = widget->parentWidget()) {
    if (auto* own = dynamic_cast<ViewWidget*>(widget))
      return own->GetView();
  }
  return nullptr;
}

TabView* TabViewOf(QWidget* widget) {
  for (; widget; widget = widget->parentWidget()) {
    auto* own = dynamic_cast<ViewWidget*>(widget);
    if (own && own->GetView() && own->GetView()->Impl().tabView)
      return own->GetView()->Impl().tabView;
  }
  return nullptr;
}

void CreateViewWidget(ViewBase& view, QWidget* parent, const RectT<int>& bounds, bool shown) {
  ViewImpl& impl = view.Impl();
  FollowViewFocus();
  impl.widget = new ViewWidget(&view, parent);
  impl.widget->setGeometry(ToQt(bounds));
  impl.widget->setToolTip(toolkit::ToQt(impl.toolTip));
  impl.widget->setEnabled(impl.enabled);
  impl.widget->setVisible(shown);
  impl.bounds = bounds;
  impl.shown = shown;
  impl.created = true;
  impl.node = new zebui::ui::UI_Node;
  toolkit::BindViewNode(*impl.node, impl.widget);
}

void DestroyViewWidget(ViewBase& view) {
  ViewImpl& impl = view.Impl();
  for (const std::uint32_t id : impl.timers)
    zebui::ui::UI_NodeManager::Get()->RemoveTimer(id);
  impl.timers.clear();
  impl.created = false;
  impl.shown = false;
  impl.parent = nullptr;
  ViewWidget* const widget = impl.widget;
  toolkit::TakeFocusAwayFrom(widget);
  if (impl.node)
    toolkit::UnbindViewNode(*impl.node);
  impl.node = nullptr;
  impl.widget = nullptr;
  if (!widget)
    return;
  widget->Orphan();
  toolkit::Dispose(widget);
}

void SetTraceName(ViewBase& view, std::string name) {
  view.Impl().traceName = std::move(name);
}

nlohmann::json TraceRect(const RectT<int>& rect) {
  return {rect.x, rect.y, rect.width, rect.height};
}

nlohmann::json TraceArgs(const ViewBase& view) {
  nlohmann::json args{{"class", toolkit::TypeName(view)}};
  if (!view.Impl().traceName.empty())
    args["control"] = view.Impl().traceName;
  return args;
}

} // namespace UIF
