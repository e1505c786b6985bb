// Single controls of the panel, and commands.

#include "Drive/CaptionsInspector.h"
#include "Drive/ControlJson.h"
#include "Drive/Driver.h"
#include "UIF/ScrollBar.h"
#include "UIF/TabView.h"
#include "zebcore/Boundary.h"
#include "zebui/Controls.h"

namespace Drive {

namespace {

using Captivo::CaptionsInspector;
using zebcore::boundary::Guard;
using zebui::ui::UI_Node;

Json TellControls(Driver& driver, const Fields&) {
  driver.CreatedView();
  Json controls = Json::array();
  for (const auto& control : CaptionsInspector(driver.Handler()).GetControls())
    controls.push_back(DescribeControl(control));
  return {{"controls", std::move(controls)}};
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

// How far a change goes: 0 it starts, 1 the value changes, 2 it is finished.
bool RunsPhase(const Fields& fields, int phase) {
  if (!fields.Has("phases"))
    return true;
  const Json& phases = fields.Get("phases");
  if (!phases.is_array())
    fields.Refuse("phases", "must be a list of 0, 1 and 2");
  return std::find(phases.begin(), phases.end(), Json(phase)) != phases.end();
}

void SetText(const Fields& fields, zebui::controls::UI_TextEdit& edit) {
  const zebcore::UString text = zebcore::FromUTF8(fields.Text("value"));
  if (RunsPhase(fields, 0))
    edit.StartInteractiveChange();
  if (RunsPhase(fields, 1))
    edit.SetValue(text, true);
  if (RunsPhase(fields, 2))
    edit.FinishInteractiveChange();
}

Json SetControl(Driver& driver, const Fields& fields) {
  const auto control = FindControl(driver, fields, "control");
  RefuseUnlessUsable(fields, control);
  if (UIF::ScrollBar* const* bar = std::get_if<UIF::ScrollBar*>(&control.pointer)) {
    (*bar)->SetScrollBarPosition(fields.Int("value"), true);
    return DescribeControl(control);
  }
  UI_Node* const* node = std::get_if<UI_Node*>(&control.pointer);
  auto* edit = node ? dynamic_cast<zebui::controls::UI_TextEdit*>(*node) : nullptr;
  if (!edit)
    fields.Refuse("control", control.name + " has no value that can be set");
  SetText(fields, *edit);
  return DescribeControl(control);
}

Json PressControl(Driver& driver, const Fields& fields) {
  const auto control = FindControl(driver, fields, "control");
  RefuseUnlessUsable(fields, control);
  UI_Node* const* node = std::get_if<UI_Node*>(&control.pointer);
  auto* button = node ? dynamic_cast<zebui::controls::UI_TextButton*>(*node) : nullptr;
  if (!button)
    fields.Refuse("control", control.name + " is no button");
  Guard("UI_TextButton::Press", [&] { button->Press(); });
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

Json RefuseLater(const char* what) {
  throw RequestError(what);
}

Json SetNextColor(Driver&, const Fields&) {
  return RefuseLater("the panel has no colour dialog yet");
}
Json UsePicker(Driver&, const Fields&) {
  return RefuseLater("the panel has no colour picker yet");
}
Json SetRendering(Driver&, const Fields&) {
  return RefuseLater("the renderer cannot be held or completed by hand yet");
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
  table["render"] = {&SetRendering};
}

} // namespace Drive
