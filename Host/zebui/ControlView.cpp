#include "zebcore/Boundary.h"
#include "zebui/Node.h"
#include "zebui/Toolkit.h"

namespace zebui::ui {

using zebcore::boundary::Guard;

void UI_ControlView::NotifyWhenChanged(const boost::function<void(const UI_ControlChangedMessage&)>& callback) {
  mWhenChanged = callback;
}

void UI_ControlView::Changed() {
  // A copy, since the callback may bring the control to its end.
  const auto callback = mWhenChanged;
  if (!callback)
    return;
  const toolkit::KeepAlive alive(*this);
  Guard("UI_ControlView::NotifyWhenChanged", [&] { callback(UI_ControlChangedMessage()); });
}

UI_InteractiveControlView::UI_InteractiveControlView() = default;

UI_InteractiveControlView::~UI_InteractiveControlView() = default;

void UI_InteractiveControlView::NotifyWhenChangedInteractively(
    const boost::function<void(const UI_InteractiveControlChangedMessage&)>& callback) {
  mWhenChangedInteractively = callback;
}

void UI_InteractiveControlView::StartInteractiveChange() {
  if (mUnderWay)
    return;
  mUnderWay = true;
  Report(UI_InteractiveControlChangedMessage::kChange_Started);
}

void UI_InteractiveControlView::FinishInteractiveChange() {
  if (!mUnderWay)
    return;
  mUnderWay = false;
  Report(UI_InteractiveControlChangedMessage::kChange_Finished);
}

void UI_InteractiveControlView::CancelInteractiveChange() {
  if (!mUnderWay)
    return;
  mUnderWay = false;
  Report(UI_InteractiveControlChangedMessage::kChange_Cancelled);
}

void UI_InteractiveControlView::InteractivelyChanged() {
  const toolkit::KeepAlive alive(*this);
  StartInteractiveChange();
  Report(UI_InteractiveControlChangedMessage::kChange_Changed);
}

void UI_InteractiveControlView::Report(UI_InteractiveControlChangedMessage::ChangeMessage change) {
  const auto callback = mWhenChangedInteractively;
  if (!callback)
    return;
  const toolkit::KeepAlive alive(*this);
  Guard("UI_InteractiveControlView::NotifyWhenChangedInteractively",
        [&] { callback(UI_InteractiveControlChangedMessage(change)); });
}

} // namespace zebui::ui
