#include "UIF/ViewFocus.h"

#include "UIF/CommandRouter.h"
#include "UIF/TabView.h"
#include "UIF/ViewWidget.h"
#include "zebcore/Boundary.h"

namespace UIF {

namespace toolkit = zebui::toolkit;
using zebcore::boundary::Guard;

namespace {

TabView* sOnDuty = nullptr;

ViewBase* ViewWithWidget(QWidget* widget) {
  auto* own = dynamic_cast<ViewWidget*>(widget);
  return own ? own->GetView() : nullptr;
}

void FocusMoved(QWidget* from, QWidget* to) {
  if (ViewBase* const left = ViewWithWidget(from))
    left->DispatchFocus(false);
  // Nowhere is not elsewhere: a control that vanished leaves its panel on duty, and so does a dialog above it.
  if (to && !toolkit::IsPassingWindow(to->window()))
    SetTabViewOnDuty(TabViewOf(to));
  if (ViewBase* const entered = ViewWithWidget(to); entered && toolkit::GetFocusWidget() == to)
    entered->DispatchFocus(true);
}

} // namespace

void FollowViewFocus() {
  static const bool followed = [] {
    toolkit::SetFocusObserver([](QWidget* from, QWidget* to, zebui::ui::FocusChangeReason) { FocusMoved(from, to); });
    return true;
  }();
  (void)followed;
}

void SetTabViewOnDuty(TabView* view) {
  if (view == sOnDuty)
    return;
  TabView* const old = std::exchange(sOnDuty, view);
  if (old)
    Guard("Commander::NowOffDuty", [&] { old->NowOffDuty(); });
  if (view && sOnDuty == view)
    Guard("Commander::NowOnDuty", [&] { view->NowOnDuty(); });
}

TabView* GetTabViewOnDuty() {
  return sOnDuty;
}

void TakeOffDuty(TabView* view) {
  if (view == sOnDuty)
    SetTabViewOnDuty(nullptr);
}

void ForgetDutyOf(const TabView* view) {
  if (view == sOnDuty)
    sOnDuty = nullptr;
}

} // namespace UIF
