#include "Drive/ControlJson.h"

#include <boost/core/demangle.hpp>

#include "UIF/ScrollBar.h"
#include "UIF/TabView.h"
#include "zebui/Controls.h"
#include "zebui/Drawbot.h"
#include "zebui/Toolkit.h"

namespace Drive {

namespace {

using Captivo::CaptionsInspector;
using zebui::ui::UI_Node;

// The name of the object's class, without its namespaces.
template <class T> std::string ClassName(const T& object) {
  const std::string name = boost::core::demangle(typeid(object).name());
  return name.substr(name.rfind(':') + 1);
}

struct Describer {
  Json& json;

  void operator()(UI_Node* node) const {
    json["class"] = ClassName(*node);
    json["visible"] = node->UI_IsShown();
    json["bounds"] = FromRect(node->UI_GetLocalRectF());
    const zebui::drawbot::Drawbot drawbot(*node);
    const auto size = node->UI_GetRecommendedSize(const_cast<zebui::drawbot::Drawbot&>(drawbot));
    json["recommended"] = Json::array({size.x, size.y});
    json["tool_tip"] = FromText(node->UI_GetToolTip());
    json["focus"] = node->UI_HasKeyboardFocus(true);
    if (const QWidget* widget = zebui::toolkit::WidgetOf(node))
      json["accessible_name"] = widget->accessibleName().toStdString();
    if (const auto* edit = dynamic_cast<const zebui::controls::UI_TextEdit*>(node))
      json["text"] = json["value"] = FromText(edit->GetValue());
    if (const auto* button = dynamic_cast<const zebui::controls::UI_TextButton*>(node))
      json["text"] = FromText(button->GetText());
  }

  void operator()(UIF::ViewBase* view) const {
    json["class"] = ClassName(*view);
    json["visible"] = view->IsShown();
    json["bounds"] = FromRect(view->GetBounds());
    json["focus"] = view->HasFocus();
  }

  void operator()(UIF::ScrollBar* bar) const {
    json["class"] = "ScrollBar";
    json["visible"] = bar->IsShown();
    json["bounds"] = FromRect(bar->GetBounds());
    int min = 0;
    int max = 0;
    int page = 0;
    int step = 0;
    bar->GetScrollParameters(min, max, page, step);
    json["value"] = bar->GetScrollBarPosition();
    json["min"] = min;
    json["max"] = max;
    json["page"] = page;
    json["step"] = step;
  }
};

struct VisibleAsker {
  bool operator()(UI_Node* node) const { return node->UI_IsShown(); }
  bool operator()(UIF::ViewBase* view) const { return view->IsShown(); }
  bool operator()(UIF::ScrollBar* bar) const { return bar->IsShown(); }
};

struct EnabledAsker {
  bool operator()(UI_Node* node) const {
    const auto* control = dynamic_cast<const zebui::ui::UI_ControlView*>(node);
    return node->UI_IsEnabled() && (!control || !control->IsDisabled());
  }
  bool operator()(UIF::ViewBase* view) const { return view->IsEnabled(); }
  bool operator()(UIF::ScrollBar*) const { return true; }
};

} // namespace

CaptionsInspector::Control FindControl(Driver& driver, const Fields& fields, const char* name) {
  const std::string wanted = fields.Text(name);
  driver.CreatedView();
  for (auto& control : CaptionsInspector(driver.Handler()).GetControls()) {
    if (control.name == wanted)
      return control;
  }
  fields.Refuse(name, "the panel has no control " + wanted);
}

bool IsVisible(const CaptionsInspector::Control& control) {
  return std::visit(VisibleAsker(), control.pointer);
}

bool IsEnabled(const CaptionsInspector::Control& control) {
  return std::visit(EnabledAsker(), control.pointer);
}

Json DescribeControl(const CaptionsInspector::Control& control) {
  Json json = {{"name", control.name}, {"enabled", IsEnabled(control)}};
  std::visit(Describer{json}, control.pointer);
  return json;
}

} // namespace Drive
