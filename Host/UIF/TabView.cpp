#include "UIF/TabView.h"

#include <memory>

#include <QEvent>

#include "UIF/ViewFocus.h"
#include "UIF/ViewWidget.h"
#include "UIF/Workspace.h"
#include "zebcore/Boundary.h"
#include "zebcore/Trace.h"

namespace UIF {

namespace toolkit = zebui::toolkit;
using zebcore::boundary::Guard;

namespace {

// Keeps a tab view as large as the container of its frame; the view's widget keeps it.
class ContainerFollower : public QObject {
 public:
  ContainerFollower(ViewWidget* widget, QWidget* container) : mWidget(widget) { container->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    ViewBase* const view = mWidget->GetView();
    if (event->type() == QEvent::Resize && view) {
      const toolkit::EventScope scope;
      const auto* container = static_cast<QWidget*>(watched);
      view->SetBounds({0, 0, container->width(), container->height()});
    }
    return false;
  }

 private:
  ViewWidget* mWidget;
};

void Trace(const char* call, const TabView& view, const char* name = nullptr, const nlohmann::json& value = {}) {
  if (!zebcore::trace::IsOn())
    return;
  nlohmann::json args{{"id", zebcore::ToUTF8(view.GetTabViewID())}};
  if (name)
    args[name] = value;
  zebcore::trace::Record(call, std::move(args));
}

} // namespace

TabView::TabView(Commander* super) : ViewBase(super) {
  Impl().tabView = this;
}

TabView::~TabView() {
  ForgetDutyOf(this);
  if (Workspace* workspace = Workspace::Instance())
    workspace->Forget(this);
  Impl().tabView = nullptr;
}

void TabView::Create(const UString& id, const UString& name, WorkspaceFrame* frame, bool visible) {
  auto* const container = frame ? static_cast<QWidget*>(frame->GetContainer()) : nullptr;
  if (IsCreated() || !container)
    return;
  mID = id;
  mName = name;
  mFrame = frame;
  Trace("TabView::Create", *this, "visible", visible);
  const RectT<int> client{0, 0, container->width(), container->height()};
  CreateViewWidget(*this, container, client, visible);
  Impl().widget->setAccessibleName(toolkit::ToQt(name));
  toolkit::SetTabGroup(*Impl().widget);
  if (Workspace* workspace = Workspace::Instance())
    workspace->mViews[id] = this;
  frame->SetTitle(name);
  Guard("ViewBase::CreateSelf", [&] { CreateSelf(client); });
  if (!IsCreated())
    return;
  Impl().widget->Keep(std::make_unique<ContainerFollower>(Impl().widget, container));
  frame->SetShown(visible);
  if (frame->LaysOutNewViews())
    SetBounds({0, 0, container->width(), container->height()});
}

void TabView::Destroy() {
  TabView::Destroy(kDestroy_Default);
}

void TabView::Destroy(DestroyFlags flags) {
  if (!IsCreated())
    return;
  const toolkit::WidgetScope scope;
  Trace("TabView::Destroy", *this, "flags", static_cast<int>(flags));
  TakeOffDuty(this);
  WorkspaceFrame* const frame = mFrame;
  ViewBase::Destroy();
  if (Workspace* workspace = Workspace::Instance())
    workspace->Forget(this);
  mFrame = nullptr;
  if (frame)
    frame->SetShown(false);
}

void TabView::Show(bool show) {
  Trace("TabView::Show", *this, "show", show);
  if (!IsCreated())
    return;
  ViewBase::Show(show);
  mFrame->SetShown(show);
}

bool TabView::IsShown() const {
  return ViewBase::IsShown() && mFrame && mFrame->IsShown();
}

bool TabView::IsFrontMost() const {
  return IsCreated() && mFrame && mFrame->IsFrontMost();
}

void TabView::BringToFront(bool activate, bool animate) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("TabView::BringToFront",
                           {{"id", zebcore::ToUTF8(mID)}, {"activate", activate}, {"animate", animate}});
  if (!IsCreated())
    return;
  mFrame->BringToFront();
  if (activate && !IsOnDuty())
    SetFocus();
}

bool TabView::IsOnDuty() const {
  return GetTabViewOnDuty() == this;
}

int TabView::GetStackedDimensionHeightMin() const {
  return 0;
}

void TabView::SetIsStacked(bool stacked) {
  mStacked = stacked;
}

bool TabView::GetIsStacked() const {
  return mStacked;
}

void TabView::UpdateStackedDimensions(bool animate) {
  Trace("TabView::UpdateStackedDimensions", *this, "animate", animate);
  if (mFrame)
    mFrame->StackedDimensionsChanged();
}

std::string TabView::GetWingMenuName() const {
  return {};
}

bool TabView::FindCommandEnabled(int, bool&) {
  return false;
}

} // namespace UIF
