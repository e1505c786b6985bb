#include "Drive/ControlJson.h"

#include <boost/core/demangle.hpp>

#include "UIF/ColorPickerControl.h"
#include "UIF/PictureButton.h"
#include "UIF/ScrollBar.h"
#include "UIF/TabView.h"
#include "UIF/ViewWidget.h"
#include "zebui/Controls.h"
#include "zebui/Drawbot.h"
#include "zebui/HotNumber.h"
#include "zebui/Popup.h"
#include "zebui/PositionGrid.h"
#include "zebui/SearchBox.h"
#include "zebui/StaticControls.h"
#include "zebui/Swatch.h"
#include "zebui/Toolkit.h"

namespace Drive {

namespace {

using Captivo::CaptionsInspector;
using zebui::ui::UI_Node;
namespace controls = zebui::controls;

// The name of the object's class, without its namespaces and what it is made for.
template <class T> std::string ClassName(const T& object) {
  std::string name = boost::core::demangle(typeid(object).name());
  name.erase(std::min(name.find('<'), name.size()));
  name = name.substr(name.rfind(':') + 1);
  return name == "UI_HotTextNumberT" ? "UI_HotTextNumber" : name;
}

Json FromByteColor(const UIF::Color& color) {
  constexpr float kMost = 255.0F;
  return Json::array({FromFloat(static_cast<float>(color.red) / kMost),
                      FromFloat(static_cast<float>(color.green) / kMost),
                      FromFloat(static_cast<float>(color.blue) / kMost), 1.0});
}

void DescribeNode(Json& json, UI_Node& node) {
  const zebui::drawbot::Drawbot drawbot(node);
  const auto size = node.UI_GetRecommendedSize(const_cast<zebui::drawbot::Drawbot&>(drawbot));
  json["recommended"] = Json::array({size.x, size.y});
  json["tool_tip"] = FromText(node.UI_GetToolTip());
  if (const QWidget* widget = zebui::toolkit::WidgetOf(&node))
    json["accessible_name"] = widget->accessibleName().toStdString();
}

void DescribePopup(Json& json, const controls::UI_Popup& popup) {
  json["value"] = popup.GetValue();
  json["text"] = FromText(popup.GetValueString());
  Json items = Json::array();
  for (std::int64_t i = 0; i < popup.Size(); ++i)
    items.push_back(FromText(popup.GetItemString(i)));
  json["items"] = std::move(items);
}

void DescribeNumber(Json& json, const controls::UI_HotTextNumber& number) {
  json["value"] = FromNumber(number.GetValue());
  json["text"] = FromText(number.GetText());
  json["unknown"] = number.IsValueUnknown();
  json["min"] = FromNumber(number.GetMinValue());
  json["max"] = FromNumber(number.GetMaxValue());
  json["decimals"] = number.GetDecimalPlaces();
}

// What only one class has.
void DescribeValue(Json& json, const UI_Node& node) {
  if (const auto* edit = dynamic_cast<const controls::UI_TextEdit*>(&node)) {
    json["text"] = json["value"] = FromText(edit->GetValue());
  } else if (const auto* button = dynamic_cast<const controls::UI_TextButton*>(&node)) {
    json["text"] = FromText(button->GetText());
  } else if (const auto* text = dynamic_cast<const controls::UI_StaticText*>(&node)) {
    json["text"] = FromText(text->GetValue());
  } else if (const auto* popup = dynamic_cast<const controls::UI_Popup*>(&node)) {
    DescribePopup(json, *popup);
  } else if (const auto* number = dynamic_cast<const controls::UI_HotTextNumber*>(&node)) {
    DescribeNumber(json, *number);
  } else if (const auto* swatch = dynamic_cast<const controls::UI_Swatch*>(&node)) {
    const auto color = swatch->GetValue();
    json["value"] =
        Json::array({FromFloat(color.red), FromFloat(color.green), FromFloat(color.blue), FromFloat(color.alpha)});
  } else if (const auto* grid = dynamic_cast<const controls::UI_PositionGridControl*>(&node)) {
    json["value"] = Json::array({grid->GetValue().x, grid->GetValue().y});
  }
}

struct Describer {
  Json& json;

  void operator()(UI_Node* node) const {
    json["class"] = ClassName(*node);
    json["visible"] = node->UI_IsShown();
    json["bounds"] = FromRect(node->UI_GetLocalRectF());
    json["focus"] = node->UI_HasKeyboardFocus(true);
    DescribeNode(json, *node);
    DescribeValue(json, *node);
  }

  void operator()(UIF::ViewBase* view) const {
    json["class"] = ClassName(*view);
    json["visible"] = view->IsShown();
    json["bounds"] = FromRect(view->GetBounds());
    json["focus"] = view->HasFocus();
    if (const QWidget* widget = UIF::WidgetOf(view))
      json["accessible_name"] = widget->accessibleName().toStdString();
  }

  void operator()(UIF::PictureButton* button) const {
    json["class"] = "PictureButton";
    json["command"] = button->GetCommandID();
    json["visible"] = button->IsShown();
    json["bounds"] = FromRect(button->GetBounds());
    json["focus"] = button->HasFocus();
    json["on"] = button->GetValue();
    if (UI_Node* node = button->GetNode())
      DescribeNode(json, *node);
    json["tool_tip"] = FromText(button->GetToolTipText());
  }

  void operator()(UIF::ColorPickerControl* picker) const {
    json["class"] = "ColorPickerControl";
    json["visible"] = picker->IsShown();
    json["bounds"] = FromRect(picker->GetBounds());
    json["focus"] = picker->HasFocus();
    json["value"] = FromByteColor(picker->GetColor());
    json["on"] = picker->IsEyedropperActive();
    // Its halves have sizes of their own; the whole has none that it would recommend.
    if (UI_Node* node = picker->GetNode()) {
      DescribeNode(json, *node);
      json.erase("recommended");
    }
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
    json["accessible_name"] = FromText(bar->GetAccessibleName());
    // It is moved by the mouse and by the panel, and takes no focus.
    json["focus"] = false;
  }
};

struct FocusAsker {
  bool operator()(UI_Node* node) const { return node->UI_HasKeyboardFocus(true); }
  bool operator()(UIF::ScrollBar*) const { return false; }
  template <class View> bool operator()(View* view) const { return view->HasFocus(); }
};

struct VisibleAsker {
  bool operator()(UI_Node* node) const { return node->UI_IsShown(); }
  template <class View> bool operator()(View* view) const { return view->IsShown(); }
};

struct EnabledAsker {
  bool operator()(UI_Node* node) const {
    const auto* control = dynamic_cast<const zebui::ui::UI_ControlView*>(node);
    return node->UI_IsEnabled() && (!control || !control->IsDisabled());
  }
  bool operator()(UIF::ScrollBar*) const { return true; }
  template <class View> bool operator()(View* view) const { return view->IsEnabled(); }
};

// What a control says of itself; a node has a state of its own beside that of its being a control.
struct Abilities {
  bool enabled = true;
  bool usable = true;
};

struct AbilitiesAsker {
  Abilities operator()(UI_Node* node) const {
    const auto* control = dynamic_cast<const zebui::ui::UI_ControlView*>(node);
    return {node->UI_IsEnabled(), !control || !control->IsDisabled()};
  }
  Abilities operator()(UIF::ScrollBar*) const { return {}; }
  template <class View> Abilities operator()(View* view) const { return {view->IsEnabled(), true}; }
};

struct AbilitiesSetter {
  Abilities abilities;

  void operator()(UI_Node* node) const {
    if (node->UI_IsEnabled() != abilities.enabled)
      node->UI_SetEnabled(abilities.enabled);
    auto* control = dynamic_cast<zebui::ui::UI_ControlView*>(node);
    if (control && control->IsDisabled() == abilities.usable)
      control->SetDisabled(!abilities.usable);
  }
  void operator()(UIF::ScrollBar*) const {}
  template <class View> void operator()(View* view) const { view->Enable(abilities.enabled); }
};

struct Namer {
  const std::string& name;
  SubjectNames& names;

  void operator()(UI_Node* node) const {
    zebui::toolkit::SetTraceName(*node, name);
    names[node] = name;
  }
  void operator()(UIF::ViewBase* view) const {
    UIF::SetTraceName(*view, name);
    names[view] = name;
  }
  void operator()(UIF::ScrollBar* bar) const { names[bar] = name; }
  template <class View> void operator()(View* view) const {
    if (UI_Node* node = view->GetNode())
      (*this)(node);
  }
};

// Not part of what the panel does.
class Unrecorded {
 public:
  Unrecorded() { zebcore::trace::SetOn(false); }
  ~Unrecorded() { zebcore::trace::SetOn(true); }
  Unrecorded(const Unrecorded&) = delete;
  Unrecorded& operator=(const Unrecorded&) = delete;
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

bool HasFocus(const CaptionsInspector::Control& control) {
  return std::visit(FocusAsker(), control.pointer);
}

Json DescribeControl(const CaptionsInspector::Control& control) {
  Json json = {{"name", control.name}, {"enabled", IsEnabled(control)}};
  std::visit(Describer{json}, control.pointer);
  return json;
}

ForcedControl::ForcedControl(const CaptionsInspector::Control& control, bool force)
    : mControl(control), mForced(force && !IsEnabled(control)) {
  if (!mForced)
    return;
  const Abilities former = std::visit(AbilitiesAsker(), mControl.pointer);
  mWasEnabled = former.enabled;
  mWasUsable = former.usable;
  const Unrecorded unrecorded;
  std::visit(AbilitiesSetter{{}}, mControl.pointer);
}

// Only what was forced is taken back: the panel goes on to write the one of the two states that it writes.
ForcedControl::~ForcedControl() {
  if (!mForced || !IsEnabled(mControl))
    return;
  const Unrecorded unrecorded;
  std::visit(AbilitiesSetter{{mWasEnabled, mWasUsable}}, mControl.pointer);
}

SubjectNames NameControls(Driver& driver) {
  SubjectNames names;
  for (const auto& control : CaptionsInspector(driver.Handler()).GetControls())
    std::visit(Namer{control.name, names}, control.pointer);
  return names;
}

} // namespace Drive
