// What is recorded of the panel's doings, and pictures of it.

#include <QImage>
#include <QPainter>

#include "BE/Project.h"
#include "Drive/CaptionsInspector.h"
#include "Drive/Driver.h"
#include "Drive/PanelWindow.h"
#include "UIF/Drawing.h"
#include "UIF/MenuUtils.h"
#include "UIF/TabView.h"
#include "UIF/ViewWidget.h"
#include "zebui/NodeManager.h"

namespace Drive {

namespace {

Json TellBoxes(Driver& driver, const Fields&) {
  return {{"boxes", std::exchange(driver.popups.boxes, Json::array())}};
}

Json TellMenus(Driver& driver, const Fields&) {
  return {{"menus", std::exchange(driver.popups.menus, Json::array())}};
}

Json SetNextMenu(Driver& driver, const Fields& fields) {
  driver.popups.nextMenuChoice = fields.Int("choose", 0);
  return Json::object();
}

// As a person would open it at the panel's title.
Json OpenWingMenu(Driver& driver, const Fields&) {
  return {{"shown", UIF::MenuUtils::TrackWingMenu(driver.CreatedView(), {0, 0})}};
}

Json SetModal(Driver& driver, const Fields& fields) {
  const bool on = fields.Flag("on", true);
  if (on == driver.modal)
    return Json::object();
  driver.modal = on;
  if (on)
    zebui::ui::UI_NodeManager::Get()->PushModalWindow();
  else
    zebui::ui::UI_NodeManager::Get()->PopModalWindow();
  return Json::object();
}

// The host draws in bytes; colours are told like all others.
bool IsByteColor(const zebcore::trace::Call& call, const std::string& name, const Json& value) {
  if (name != "color" && (name != "value" || call.call != "ColorPickerControl::SetColor"))
    return false;
  return value.is_array() && value.size() == 3 &&
         std::all_of(value.begin(), value.end(), [](const Json& part) { return part.is_number_integer(); });
}

Json FromCall(const zebcore::trace::Call& call) {
  constexpr float kMost = 255.0F;
  Json args = call.args;
  for (auto& [name, value] : args.items()) {
    if (!IsByteColor(call, name, value))
      continue;
    for (Json& part : value)
      part = FromFloat(part.get<float>() / kMost);
    value.push_back(FromFloat(call.args.value("alpha", kMost) / kMost));
  }
  return {{"call", call.call}, {"args", std::move(args)}};
}

Json TellTrace(Driver& driver, const Fields& fields) {
  const std::vector<std::string> only = fields.Has("only") ? fields.Texts("only") : std::vector<std::string>();
  const auto isWanted = [&](const std::string& name) {
    return only.empty() || std::any_of(only.begin(), only.end(), [&](const std::string& start) {
             return name.compare(0, start.size(), start) == 0;
           });
  };
  driver.trace.Collect();
  const std::size_t dropped = driver.trace.CountDropped();
  Json calls = Json::array();
  for (const auto& call : driver.trace.Take()) {
    if (isWanted(call.call))
      calls.push_back(FromCall(call));
  }
  return {{"calls", std::move(calls)}, {"dropped", dropped}};
}

bool IsDrawing(const std::string& name) {
  static constexpr const char* kDrawers[] = {"DC::", "VideoFrameBlit::", "RenderOpenCaptions",
                                             "HSL::RenderOpenCaptions"};
  return std::any_of(std::begin(kDrawers), std::end(kDrawers),
                     [&](const char* start) { return name.compare(0, std::string_view(start).size(), start) == 0; });
}

// One pass over a picture of the pane's size, so that no view above paints along.
void PaintOnce(UIF::ViewBase& pane) {
  const UIF::RectT<int> client = pane.ClientRect();
  QImage picture(std::max(1, client.width), std::max(1, client.height), QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  UIF::DC::Impl impl(painter);
  UIF::DC dc(impl);
  pane.DispatchPaint(dc);
}

Json Paint(Driver& driver, const Fields&) {
  driver.CreatedView();
  driver.Settle();
  driver.trace.Collect();
  PaintOnce(*Captivo::CaptionsInspector(driver.Handler()).GetPane());
  Json calls = Json::array();
  // What else happens meanwhile, a model that is fetched for instance, stays on the record.
  for (auto& call : zebcore::trace::Take()) {
    if (IsDrawing(call.call))
      calls.push_back(FromCall(call));
    else
      driver.trace.Put(std::move(call));
  }
  return {{"calls", std::move(calls)}};
}

// The clip whose pictures these are; null for a video that no clip of the project has.
Json NameVideo(const Driver& driver, const BE::InterfaceRef<BE::IVideoSegments>& video) {
  const auto project = driver.Session().GetProject();
  if (!project || !video)
    return nullptr;
  for (const auto& clip : project->GetClips()) {
    if (clip->GetClip(BE::kMediaType_Video, 0) == video || clip.Query<BE::IVideoSegments>() == video)
      return clip->GetID();
  }
  return nullptr;
}

Json TellPreviews(Driver& driver, const Fields&) {
  driver.CreatedView();
  const Captivo::CaptionsInspector inspector(driver.Handler());
  Json entries = Json::array();
  for (const auto& preview : inspector.GetPreviews())
    entries.push_back({{"clip", NameVideo(driver, preview.video)},
                       {"time", FromTime(preview.time)},
                       {"frame", preview.hasFrame},
                       {"model", preview.hasModel},
                       {"hash", preview.hash == zebcore::utility::Guid() ? Json() : Json(preview.hash.ToText())}});
  Json pending = Json::array();
  for (const auto& [request, video] : inspector.GetPendingRenders())
    pending.push_back({{"request", request}, {"clip", NameVideo(driver, video)}});
  return {{"entries", std::move(entries)}, {"pending", std::move(pending)}};
}

Json TakeShot(Driver& driver, const Fields& fields) {
  const std::string path = fields.Text("path");
  const std::string what = fields.Text("what", "panel");
  if (what != "panel" && what != "window")
    fields.Refuse("what", "must be panel or window");
  if (what == "panel")
    driver.CreatedView();
  driver.Settle();
  if (!driver.Window().WritePicture(path, what == "window"))
    fields.Refuse("path", "no picture can be written to " + path);
  return {{"path", path}};
}

} // namespace

void AddRecordRequests(RequestTable& table) {
  table["boxes"] = {&TellBoxes};
  table["menus"] = {&TellMenus};
  table["next_menu"] = {&SetNextMenu};
  table["wing_menu"] = {&OpenWingMenu};
  table["modal"] = {&SetModal};
  table["trace"] = {&TellTrace};
  table["paint"] = {&Paint};
  table["previews"] = {&TellPreviews};
  table["shot"] = {&TakeShot};
}

} // namespace Drive
