#include "UIF/PanelGestures.h"

#include <optional>
#include <vector>

#include "UIF/TabView.h"
#include "UIF/ViewWidget.h"
#include "zebui/Controls.h"

namespace UIF {

namespace toolkit = zebui::toolkit;
using zebui::controls::UI_TextButton;

namespace {

bool IsUsable(const UI_TextButton& button) {
  return button.UI_IsShown() && button.UI_IsEnabled() && !button.IsDisabled();
}

UI_TextButton* FindButton(const TabView& view, const UString& toolTip) {
  QWidget* const widget = WidgetOf(&view);
  if (!widget || toolTip.empty())
    return nullptr;
  for (QWidget* const child : widget->findChildren<QWidget*>()) {
    auto* const button = dynamic_cast<UI_TextButton*>(toolkit::NodeOf(child));
    if (button && button->UI_GetToolTip() == toolTip)
      return button;
  }
  return nullptr;
}

std::vector<ViewBase*> FindSubViews(const TabView& view) {
  std::vector<ViewBase*> views;
  QWidget* const widget = WidgetOf(&view);
  if (!widget)
    return views;
  for (QWidget* const child : widget->findChildren<QWidget*>()) {
    const auto* const own = dynamic_cast<ViewWidget*>(child);
    ViewBase* const inner = own ? own->GetView() : nullptr;
    if (inner && inner->IsShown() && inner->IsEnabled())
      views.push_back(inner);
  }
  return views;
}

// Nobody holds a key down that the view would take for an extended selection.
class NoModifiers {
 public:
  NoModifiers() : mBefore(KeyModifiers::ReplaceCurrent(KeyModifiers())) {}
  ~NoModifiers() { KeyModifiers::ReplaceCurrent(mBefore); }
  NoModifiers(const NoModifiers&) = delete;
  NoModifiers& operator=(const NoModifiers&) = delete;

 private:
  std::optional<KeyModifiers> mBefore;
};

} // namespace

bool CanPressButton(const TabView& view, const UString& toolTip) {
  const UI_TextButton* const button = FindButton(view, toolTip);
  return button && IsUsable(*button);
}

bool PressButton(const TabView& view, const UString& toolTip) {
  UI_TextButton* const button = FindButton(view, toolTip);
  if (!button || !IsUsable(*button))
    return false;
  button->Press();
  return true;
}

bool CanPressKey(const TabView& view) {
  return !FindSubViews(view).empty();
}

bool PressKey(const TabView& view, short keyCode) {
  const NoModifiers none;
  for (ViewBase* const inner : FindSubViews(view)) {
    if (!inner->HasFocus())
      inner->SetFocus();
    if (inner->DispatchKeyDown(L'\0', keyCode, false))
      return true;
  }
  return false;
}

} // namespace UIF
