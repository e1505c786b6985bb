#include "UIF/View.h"

#include <optional>

#include <QApplication>

#include "UIF/TabView.h"
#include "UIF/ViewFocus.h"
#include "UIF/ViewWidget.h"
#include "zebcore/Boundary.h"
#include "zebcore/Trace.h"
#include "zebui/Focus.h"

namespace UIF {

namespace toolkit = zebui::toolkit;
using zebcore::boundary::Guard;
using zebui::ui::UI_NodeManager;

namespace {

std::optional<KeyModifiers> sModifiers;

void Trace(const char* call, const ViewBase& view) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record(call, TraceArgs(view), &view);
}

template <class T> void Trace(const char* call, const ViewBase& view, const char* name, const T& value) {
  if (!zebcore::trace::IsOn())
    return;
  nlohmann::json args = TraceArgs(view);
  args[name] = value;
  zebcore::trace::Record(call, std::move(args), &view);
}

} // namespace

KeyModifiers KeyModifiers::GetCurrent() {
  if (sModifiers)
    return *sModifiers;
  if (!toolkit::HasApplication())
    return {};
  return KeyModifiers(static_cast<std::uint8_t>(toolkit::ToModKey(QGuiApplication::keyboardModifiers())));
}

void KeyModifiers::SetCurrent(KeyModifiers modifiers) {
  sModifiers = modifiers;
}

std::optional<KeyModifiers> KeyModifiers::ReplaceCurrent(std::optional<KeyModifiers> modifiers) {
  return std::exchange(sModifiers, modifiers);
}

ViewBase::ViewBase(Commander* super) : Commander(super), mImpl(std::make_unique<ViewImpl>()) {}

ViewBase::~ViewBase() {
  // Too late for the hook; whoever wants it calls Destroy first. Too late also for a control in it to say that it lost
  // the focus: who listens is most often the part of this view that is gone already.
  const QWidget* const focused = toolkit::GetFocusWidget();
  if (focused && mImpl->widget && mImpl->widget->isAncestorOf(focused))
    toolkit::ForgetFocusOf(toolkit::GetFocusRecordNode());
  if (mImpl->created || mImpl->widget)
    DestroyViewWidget(*this);
}

void ViewBase::Destroy() {
  if (!mImpl->created)
    return;
  const toolkit::WidgetScope scope;
  Trace("View::Destroy", *this);
  Guard("ViewBase::DestroySelf", [&] { DestroySelf(); });
  DestroyViewWidget(*this);
}

void ViewBase::SetBounds(const RectT<int>& bounds) {
  Trace("View::SetBounds", *this, "bounds", TraceRect(bounds));
  if (!mImpl->created)
    return;
  mImpl->bounds = bounds;
  if (mImpl->widget)
    mImpl->widget->setGeometry(ToQt(bounds));
  Guard("ViewBase::SetBoundsSelf", [&] { SetBoundsSelf(bounds); });
}

RectT<int> ViewBase::GetBounds() const {
  return mImpl->bounds;
}

RectT<int> ViewBase::ClientRect() const {
  return {0, 0, mImpl->bounds.width, mImpl->bounds.height};
}

void ViewBase::Show(bool show) {
  Trace("View::Show", *this, "show", show);
  if (!mImpl->created)
    return;
  const bool changed = mImpl->shown != show;
  mImpl->shown = show;
  if (!show)
    toolkit::TakeFocusAwayFrom(mImpl->widget);
  if (mImpl->widget)
    mImpl->widget->setVisible(show);
  if (changed)
    Guard("ViewBase::VisibilityChangedSelf", [&] { VisibilityChangedSelf(show); });
}

void ViewBase::Hide() {
  Show(false);
}

bool ViewBase::IsShown() const {
  return mImpl->created && mImpl->shown;
}

ViewBase* ViewBase::GetParent() const {
  return mImpl->parent;
}

ViewBase* ViewBase::GetLayoutParent() const {
  return nullptr;
}

zebui::ui::UI_Node* ViewBase::GetZEBNode() const {
  return mImpl->node.get();
}

void ViewBase::Enable(bool enable) {
  Trace("View::Enable", *this, "enable", enable);
  mImpl->enabled = enable;
  if (!enable)
    toolkit::TakeFocusAwayFrom(mImpl->widget);
  if (mImpl->widget)
    mImpl->widget->setEnabled(enable);
}

void ViewBase::Disable() {
  Enable(false);
}

bool ViewBase::IsEnabled() const {
  return mImpl->enabled;
}

void ViewBase::SetToolTipText(const UString& text) {
  mImpl->toolTip = text;
  if (mImpl->widget)
    mImpl->widget->setToolTip(toolkit::ToQt(text));
}

bool ViewBase::IsCreated() const {
  return mImpl->created;
}

void ViewBase::Invalidate() {
  Trace("View::Invalidate", *this);
  if (mImpl->widget)
    mImpl->widget->update();
}

void ViewBase::Redraw() {
  Trace("View::Redraw", *this);
  if (mImpl->widget && mImpl->widget->isVisible())
    mImpl->widget->repaint();
}

void ViewBase::SetFocus() {
  Trace("View::SetFocus", *this);
  if (!mImpl->widget || !mImpl->enabled)
    return;
  FollowViewFocus();
  toolkit::MoveFocus(mImpl->widget, zebui::ui::kFocusChange_Program);
}

bool ViewBase::HasFocus() const {
  return mImpl->widget && toolkit::GetFocusWidget() == mImpl->widget;
}

void ViewBase::EnableDoubleBuffering(bool enable, bool opaque) {
  if (zebcore::trace::IsOn()) {
    nlohmann::json args = TraceArgs(*this);
    args["enable"] = enable;
    args["opaque"] = opaque;
    zebcore::trace::Record("View::EnableDoubleBuffering", std::move(args));
  }
  // The toolkit paints into a buffer in any case.
  if (mImpl->widget)
    mImpl->widget->setAttribute(Qt::WA_OpaquePaintEvent, opaque);
}

void ViewBase::WantsDragAndDropEvents(bool wants) {
  Trace("View::WantsDragAndDropEvents", *this, "wants", wants);
  // No hook of a view takes a drop so far: what is dropped on it goes on to the window, which opens files.
  mImpl->wantsDragAndDrop = wants;
}

void ViewBase::SetTimer(std::uint32_t id, int periodMilliseconds) {
  mImpl->timers.insert(id);
  UI_NodeManager::Get()->SetTimer(id, periodMilliseconds,
                                  [this](zebui::ui::TimerID timer) { return DispatchTimer(timer); });
}

void ViewBase::RemoveTimer(std::uint32_t id) {
  mImpl->timers.erase(id);
  UI_NodeManager::Get()->RemoveTimer(id);
}

void ViewBase::DispatchLeftButtonDown(const PointT<int>& point, const KeyModifiers& modifiers) {
  const toolkit::WidgetScope scope;
  bool wantsFocus = false;
  Guard("ViewBase::WantsFocusSelf", [&] { wantsFocus = WantsFocusSelf(); });
  if (wantsFocus && mImpl->widget && mImpl->enabled) {
    FollowViewFocus();
    toolkit::MoveFocus(mImpl->widget, zebui::ui::kFocusChange_Pointer);
  }
  Guard("ViewBase::LeftButtonDownSelf", [&] { LeftButtonDownSelf(point, modifiers); });
}

void ViewBase::DispatchLeftButtonUp(const PointT<int>& point, const KeyModifiers& modifiers) {
  const toolkit::WidgetScope scope;
  Guard("ViewBase::LeftButtonUpSelf", [&] { LeftButtonUpSelf(point, modifiers); });
}

void ViewBase::DispatchLeftButtonMultiClick(const PointT<int>& point, const KeyModifiers& modifiers, int clicks) {
  const toolkit::WidgetScope scope;
  Guard("ViewBase::LeftButtonMultiClickSelf", [&] { LeftButtonMultiClickSelf(point, modifiers, clicks); });
}

void ViewBase::DispatchRightButtonDown(const PointT<int>& point, const KeyModifiers& modifiers) {
  const toolkit::WidgetScope scope;
  Guard("ViewBase::RightButtonDownSelf", [&] { RightButtonDownSelf(point, modifiers); });
}

void ViewBase::DispatchRightButtonUp(const PointT<int>& point, const KeyModifiers& modifiers) {
  const toolkit::WidgetScope scope;
  Guard("ViewBase::RightButtonUpSelf", [&] { RightButtonUpSelf(point, modifiers); });
}

void ViewBase::DispatchMouseMove(const PointT<int>& point, const KeyModifiers& modifiers) {
  const toolkit::WidgetScope scope;
  Guard("ViewBase::MouseMoveSelf", [&] { MouseMoveSelf(point, modifiers); });
}

void ViewBase::DispatchMouseLeave() {
  const toolkit::WidgetScope scope;
  Guard("ViewBase::MouseLeaveSelf", [&] { MouseLeaveSelf(); });
}

bool ViewBase::DispatchMouseWheel(const PointT<int>& point, const KeyModifiers& modifiers, int delta) {
  const toolkit::WidgetScope scope;
  ViewBase* const parent = mImpl->parent;
  const PointT<int> inParent{point.x + mImpl->bounds.x, point.y + mImpl->bounds.y};
  bool used = false;
  Guard("ViewBase::MouseWheelSelf", [&] { used = MouseWheelSelf(point, modifiers, delta); });
  return used || (parent && parent->DispatchMouseWheel(inParent, modifiers, delta));
}

bool ViewBase::DispatchMousePan(const PointT<int>& point, const PointT<int>& delta) {
  const toolkit::WidgetScope scope;
  ViewBase* const parent = mImpl->parent;
  const PointT<int> inParent{point.x + mImpl->bounds.x, point.y + mImpl->bounds.y};
  bool used = false;
  Guard("ViewBase::MousePanSelf", [&] { used = MousePanSelf(point, delta); });
  return used || (parent && parent->DispatchMousePan(inParent, delta));
}

bool ViewBase::DispatchKeyDown(wchar_t character, short keyCode, bool repeat) {
  const toolkit::WidgetScope scope;
  ViewBase* const parent = mImpl->parent;
  bool used = false;
  Guard("ViewBase::KeyDownSelf", [&] { used = KeyDownSelf(character, keyCode, repeat); });
  return used || (parent && parent->DispatchKeyDown(character, keyCode, repeat));
}

bool ViewBase::DispatchKeyUp(wchar_t character, short keyCode) {
  const toolkit::WidgetScope scope;
  bool used = false;
  Guard("ViewBase::KeyUpSelf", [&] { used = KeyUpSelf(character, keyCode); });
  return used;
}

bool ViewBase::DispatchCharacterInput(wchar_t character) {
  const toolkit::WidgetScope scope;
  bool used = false;
  Guard("ViewBase::CharacterInputSelf", [&] { used = CharacterInputSelf(character); });
  return used;
}

void ViewBase::DispatchPaint(DC& dc) {
  Guard("ViewBase::PaintSelf", [&] { PaintSelf(dc); });
}

bool ViewBase::DispatchTimer(std::uint32_t id) {
  const toolkit::WidgetScope scope;
  bool handled = false;
  Guard("ViewBase::TimerNotifySelf", [&] { handled = TimerNotifySelf(id); });
  return handled;
}

void ViewBase::DispatchFocus(bool gained) {
  const toolkit::WidgetScope scope;
  Guard(gained ? "ViewBase::SetFocusSelf" : "ViewBase::KillFocusSelf",
        [&] { gained ? SetFocusSelf() : KillFocusSelf(); });
}

void ViewBase::CreateSelf(const RectT<int>&) {}
void ViewBase::DestroySelf() {}
void ViewBase::SetBoundsSelf(const RectT<int>&) {}
void ViewBase::SetFocusSelf() {}
void ViewBase::KillFocusSelf() {}
void ViewBase::PaintSelf(DC&) {}
void ViewBase::LeftButtonDownSelf(const PointT<int>&, const KeyModifiers&) {}
void ViewBase::LeftButtonUpSelf(const PointT<int>&, const KeyModifiers&) {}
void ViewBase::LeftButtonMultiClickSelf(const PointT<int>&, const KeyModifiers&, int) {}
void ViewBase::RightButtonDownSelf(const PointT<int>&, const KeyModifiers&) {}
void ViewBase::RightButtonUpSelf(const PointT<int>&, const KeyModifiers&) {}
void ViewBase::MouseMoveSelf(const PointT<int>&, const KeyModifiers&) {}
void ViewBase::MouseLeaveSelf() {}
bool ViewBase::MouseWheelSelf(const PointT<int>&, const KeyModifiers&, int) {
  return false;
}
bool ViewBase::MousePanSelf(const PointT<int>&, const PointT<int>&) {
  return false;
}
bool ViewBase::KeyDownSelf(wchar_t, short, bool) {
  return false;
}
bool ViewBase::KeyUpSelf(wchar_t, short) {
  return false;
}
bool ViewBase::CharacterInputSelf(wchar_t) {
  return false;
}
bool ViewBase::TimerNotifySelf(std::uint32_t) {
  return false;
}
bool ViewBase::WantsFocusSelf() const {
  return true;
}
void ViewBase::VisibilityChangedSelf(bool) {}

SubView::SubView(Commander* super) : ViewBase(super) {}

SubView::~SubView() = default;

void SubView::Create(ViewBase* parent, const RectT<int>& bounds) {
  if (IsCreated() || !parent || !parent->IsCreated())
    return;
  Trace("SubView::Create", *this, "bounds", TraceRect(bounds));
  CreateViewWidget(*this, WidgetOf(parent), bounds, false);
  if (const TabView* tabView = parent->Impl().tabView)
    Impl().widget->setAccessibleName(toolkit::ToQt(tabView->GetName()));
  Impl().parent = parent;
  Guard("ViewBase::CreateSelf", [&] { CreateSelf(bounds); });
}

} // namespace UIF
