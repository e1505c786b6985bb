// Single controls of the panel, and commands.

#include <algorithm>
#include <cmath>
#include <optional>

#include "Drive/CaptionsInspector.h"
#include "Drive/ControlJson.h"
#include "Drive/Driver.h"
#include "UIF/ColorPickerControl.h"
#include "UIF/PictureButton.h"
#include "UIF/ScrollBar.h"
#include "UIF/TabView.h"
#include "zebcore/Boundary.h"
#include "zebui/Controls.h"
#include "zebui/HotNumber.h"
#include "zebui/Popup.h"
#include "zebui/PositionGrid.h"
#include "zebui/Swatch.h"

namespace Drive {

namespace {

using Captivo::CaptionsInspector;
using zebcore::boundary::Guard;
using zebui::ui::UI_Node;
namespace controls = zebui::controls;

Json TellControls(Driver& driver, const Fields&) {
  driver.CreatedView();
  Json list = Json::array();
  for (const auto& control : CaptionsInspector(driver.Handler()).GetControls())
    list.push_back(DescribeControl(control));
  return {{"controls", std::move(list)}};
}

Json TellControl(Driver& driver, const Fields& fields) {
  return DescribeControl(FindControl(driver, fields, "name"));
}

void RefuseUnlessUsable(const Fields& fields, const CaptionsInspector::Control& control) {
  if (fields.Flag("force", false))
    return;
  if (!IsVisible(control))
    fields.Refuse("control", control.name + " is hidden");
  if (!IsEnabled(control))
    fields.Refuse("control", control.name + " is disabled");
}

// Which phases of a change are to be seen: 0 it starts, 1 the value changes, 2 it is finished.
std::vector<int> GetPhases(const Fields& fields) {
  if (!fields.Has("phases"))
    return {0, 1, 2};
  const Json& phases = fields.Get("phases");
  std::vector<int> list;
  if (phases.is_number_integer()) {
    for (int phase = 0; phase <= fields.Integer("phases", 0, 2); ++phase)
      list.push_back(phase);
    return list;
  }
  if (!phases.is_array())
    fields.Refuse("phases", "must be a list of 0, 1 and 2");
  for (const Json& phase : phases) {
    if (!phase.is_number_integer() || phase < 0 || phase > 2)
      fields.Refuse("phases", "must be a list of 0, 1 and 2");
    list.push_back(phase.get<int>());
  }
  return list;
}

void SetText(const Fields& fields, controls::UI_TextEdit& edit) {
  const zebcore::UString text = zebcore::FromUTF8(fields.Text("value"));
  for (const int phase : GetPhases(fields)) {
    if (phase == 0)
      edit.StartInteractiveChange();
    else if (phase == 1)
      edit.SetValue(text, true);
    else
      edit.FinishInteractiveChange();
  }
}

void SetNumber(const Fields& fields, controls::UI_HotTextNumber& number) {
  const double value = fields.Number("value");
  if (std::isnan(value))
    fields.Refuse("value", "nobody can enter what is no number");
  if (!(number.GetMinValue() <= number.GetMaxValue()))
    fields.Refuse("value", "the limits of the control let no number in");
  const std::vector<int> phases = GetPhases(fields);
  if (!phases.empty())
    number.Enter(value, static_cast<zebui::ui::UI_InteractiveControlChangedMessage::ChangeMessage>(
                            *std::max_element(phases.begin(), phases.end())));
}

// By index, or by the text of an item.
void SetPopup(const Fields& fields, controls::UI_Popup& popup) {
  if (fields.Get("value").is_string()) {
    const zebcore::UString text = zebcore::FromUTF8(fields.Text("value"));
    for (std::int64_t i = 0; i < popup.Size(); ++i) {
      if (popup.GetItemString(i) == text)
        return popup.Choose(i);
    }
    fields.Refuse("value", "the popup has no item of that text");
  }
  if (popup.Size() == 0)
    fields.Refuse("value", "the popup has no items");
  popup.Choose(fields.Integer("value", 0, popup.Size() - 1));
}

// [-1, -1] is no cell, which a grid can stand at though nobody can choose it by hand.
void SetGrid(const Fields& fields, controls::UI_PositionGridControl& grid) {
  constexpr int kLast = 2;
  const auto [column, row] = fields.Pair("value");
  const bool isCell = column >= 0 && column <= kLast && row >= 0 && row <= kLast;
  if (!isCell && (column != -1 || row != -1))
    fields.Refuse("value", "must be a column and a row from 0 to 2, or [-1, -1]");
  grid.Choose({column, row});
}

bool SetNode(const Fields& fields, UI_Node& node) {
  const boost::intrusive_ptr<UI_Node> alive(&node);
  if (auto* edit = dynamic_cast<controls::UI_TextEdit*>(&node)) {
    SetText(fields, *edit);
  } else if (auto* number = dynamic_cast<controls::UI_HotTextNumber*>(&node)) {
    SetNumber(fields, *number);
  } else if (auto* popup = dynamic_cast<controls::UI_Popup*>(&node)) {
    SetPopup(fields, *popup);
  } else if (auto* grid = dynamic_cast<controls::UI_PositionGridControl*>(&node)) {
    SetGrid(fields, *grid);
  } else {
    return false;
  }
  return true;
}

UIF::Color ReadColor(const Fields& fields, const char* name) {
  const Json& color = fields.Get(name);
  if (!color.is_array() || color.size() < 3)
    fields.Refuse(name, "must be [red, green, blue, alpha]");
  const auto part = [&](std::size_t index) {
    const Json& value = color[index];
    if (!value.is_number() || value < 0 || value > 1)
      fields.Refuse(name, "must be numbers from 0 to 1");
    return static_cast<std::uint8_t>(std::lround(value.get<double>() * 255.0));
  };
  return {part(0), part(1), part(2)};
}

Json SetControl(Driver& driver, const Fields& fields) {
  const auto control = FindControl(driver, fields, "control");
  RefuseUnlessUsable(fields, control);
  if (UIF::ScrollBar* const* bar = std::get_if<UIF::ScrollBar*>(&control.pointer)) {
    (*bar)->SetScrollBarPosition(fields.Int("value"), true);
    return DescribeControl(control);
  }
  const ForcedControl forced(control, fields.Flag("force", false));
  bool known = false;
  if (UIF::ColorPickerControl* const* picker = std::get_if<UIF::ColorPickerControl*>(&control.pointer)) {
    const UIF::Color color = ReadColor(fields, "value");
    Guard("ColorPickerControl::SetColor", [&] { (*picker)->SetColor(color, true); });
    known = true;
  } else if (UI_Node* const* node = std::get_if<UI_Node*>(&control.pointer)) {
    known = SetNode(fields, **node);
  }
  if (!known)
    fields.Refuse("control", control.name + " has no value that can be set");
  return DescribeControl(control);
}

bool Press(const CaptionsInspector::Control& control) {
  if (UIF::PictureButton* const* button = std::get_if<UIF::PictureButton*>(&control.pointer)) {
    (*button)->Press();
    return true;
  }
  UI_Node* const* found = std::get_if<UI_Node*>(&control.pointer);
  if (!found)
    return false;
  const boost::intrusive_ptr<UI_Node> alive(*found);
  if (auto* button = dynamic_cast<controls::UI_TextButton*>(*found))
    button->Press();
  else if (auto* swatch = dynamic_cast<controls::UI_Swatch*>(*found))
    swatch->Press();
  else
    return false;
  return true;
}

Json PressControl(Driver& driver, const Fields& fields) {
  const auto control = FindControl(driver, fields, "control");
  RefuseUnlessUsable(fields, control);
  const ForcedControl forced(control, fields.Flag("force", false));
  bool pressed = false;
  Guard("UI_ControlView::Press", [&] {
    pressed = true;
    pressed = Press(control);
  });
  if (!pressed)
    fields.Refuse("control", control.name + " is no button");
  return Json::object();
}

UIF::CommandHandler& FindReceiver(Driver& driver, const Fields& fields) {
  const std::string to = fields.Text("to", "view");
  if (to == "view")
    return driver.CreatedView();
  if (to == "handler" && driver.Handler())
    return *driver.Handler();
  if (to == "pane") {
    driver.CreatedView();
    return *CaptionsInspector(driver.Handler()).GetPane();
  }
  fields.Refuse("to", to == "handler" ? "there is no handler" : "must be view, handler or pane");
}

Json ObeyCommand(Driver& driver, const Fields& fields) {
  const int number = fields.Int("number");
  UIF::CommandHandler& receiver = FindReceiver(driver, fields);
  bool handled = false;
  Guard("CommandHandler::ObeyCommand", [&] { handled = receiver.ObeyCommand(UIF::Command(number)); });
  return {{"handled", handled}};
}

Json FindStatus(Driver& driver, const Fields& fields) {
  const int number = fields.Int("number");
  UIF::CommandHandler& receiver = FindReceiver(driver, fields);
  bool answered = false;
  bool enabled = false;
  bool marked = false;
  UIF::MenuMark mark = UIF::MenuMark::None;
  UIF::UString name;
  Guard("CommandHandler::FindCommandStatus",
        [&] { answered = receiver.FindCommandStatus(number, enabled, marked, mark, name); });
  return {{"answered", answered}, {"enabled", enabled}, {"marked", marked}, {"name", FromText(name)}};
}

Json SetNextPanelResult(Driver& driver, const Fields& fields) {
  driver.popups.panelMovementResult = fields.Flag("value");
  return Json::object();
}

// Null: the next dialog is cancelled, as all are that nobody has a colour for.
Json SetNextColor(Driver& driver, const Fields& fields) {
  driver.popups.nextColor.reset();
  if (fields.Has("color"))
    driver.popups.nextColor = ReadColor(fields, "color");
  else if (!fields.Mentions("color"))
    throw RequestError("color: missing");
  return Json::object();
}

// What a person does at the colour picker, which need not be on show for it.
Json UsePicker(Driver& driver, const Fields& fields) {
  driver.CreatedView();
  for (const auto& control : CaptionsInspector(driver.Handler()).GetControls()) {
    UIF::ColorPickerControl* const* found = std::get_if<UIF::ColorPickerControl*>(&control.pointer);
    if (!found)
      continue;
    UIF::ColorPickerControl& picker = **found;
    const ForcedControl forced(control, true);
    const std::string eyedropper = fields.Text("eyedropper", "");
    if (!eyedropper.empty() && eyedropper != "start" && eyedropper != "end")
      fields.Refuse("eyedropper", "must be start or end");
    std::optional<UIF::Color> color;
    if (fields.Has("color"))
      color = ReadColor(fields, "color");
    const bool clicks = fields.Flag("swatch", false);
    if (!color && !clicks && eyedropper.empty())
      fields.Refuse("color", "give color, swatch or eyedropper");
    Guard("ColorPickerControl", [&] {
      if (eyedropper == "start")
        picker.StartEyedropper();
      else if (eyedropper == "end")
        picker.EndEyedropper(color ? &*color : nullptr);
      else if (color)
        picker.SetColor(*color, true);
      if (clicks)
        picker.ClickSwatch();
    });
    return DescribeControl(control);
  }
  throw RequestError("the panel has no colour picker");
}

} // namespace

void AddControlRequests(RequestTable& table) {
  table["controls"] = {&TellControls};
  table["control"] = {&TellControl};
  table["set"] = {&SetControl};
  table["press"] = {&PressControl};
  table["command"] = {&ObeyCommand};
  table["status"] = {&FindStatus};
  table["next_panel_result"] = {&SetNextPanelResult};
  table["next_color"] = {&SetNextColor};
  table["picker"] = {&UsePicker};
}

} // namespace Drive
