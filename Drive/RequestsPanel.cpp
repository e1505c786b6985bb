// Opening, placing and looking at the panel as a whole.

#include "Drive/CaptionsInspector.h"
#include "Drive/Driver.h"
#include "Drive/PanelJson.h"
#include "Drive/PanelWindow.h"
#include "UIF/CommandRouter.h"
#include "UIF/TabView.h"
#include "zebcore/Boundary.h"

namespace Drive {

namespace {

using zebcore::boundary::Guard;

// The view follows its frame's container; where that did not change, it is laid out all the same.
void Resize(PanelWindow& window, UIF::TabView& view, int width, int height) {
  const UIF::RectT<int> bounds{0, 0, width, height};
  const bool same = view.GetBounds() == bounds;
  window.Resize(width, height);
  if (same || view.GetBounds() != bounds)
    view.SetBounds(bounds);
}

HSL::Handler& NeedHandler(Driver& driver) {
  if (!driver.Handler())
    throw RequestError("there is no handler to make the panel");
  return *driver.Handler();
}

Json OpenPanel(Driver& driver, const Fields& fields) {
  const bool layout = fields.Flag("layout", true);
  HSL::Handler& handler = NeedHandler(driver);
  UIF::Workspace* workspace = UIF::Workspace::Instance();
  if (!workspace)
    throw RequestError("the workspace is not there");
  driver.Window().SetLaysOutNewViews(layout);
  UIF::TabView* view = workspace->CreateOrReanimateTabView(handler.GetTabID(), {});
  driver.Window().SetLaysOutNewViews(true);
  if (!view || !view->IsCreated())
    throw RequestError("the panel could not be made");
  if (!view->IsShown())
    view->Show(true);
  if (!view->IsFrontMost())
    view->BringToFront(true, false);
  driver.Window().Activate();
  return {{"created", true}};
}

Json CreateTabView(Driver& driver, const Fields&) {
  HSL::Handler& handler = NeedHandler(driver);
  UIF::TabView* view = nullptr;
  Guard("TabViewCreator::CreateTabView", [&] { view = handler.CreateTabView(&driver.Window()); });
  return {{"created", view && view->IsCreated()}};
}

Json ClosePanel(Driver& driver, const Fields&) {
  driver.CreatedView().Destroy();
  return Json::object();
}

Json ShowPanel(Driver& driver, const Fields& fields) {
  driver.CreatedView().Show(fields.Flag("on", true));
  return Json::object();
}

Json SetFront(Driver& driver, const Fields& fields) {
  const bool on = fields.Flag("on", true);
  UIF::TabView& view = driver.CreatedView();
  if (on)
    view.BringToFront(true, false);
  driver.Window().SetFrontMost(on);
  return {{"front_most", view.IsFrontMost()}};
}

Json SetDuty(Driver& driver, const Fields& fields) {
  UIF::TabView& view = driver.CreatedView();
  UIF::SetTabViewOnDuty(fields.Flag("on", true) ? &view : nullptr);
  return {{"on_duty", view.IsOnDuty()}};
}

Json ResizePanel(Driver& driver, const Fields& fields) {
  constexpr int kMost = 16384;
  const int width = static_cast<int>(fields.Integer("width", 0, kMost, driver.Window().GetWidth()));
  const int height = static_cast<int>(fields.Integer("height", 0, kMost, driver.Window().GetHeight()));
  // Without a panel, the size in which it will be made.
  const UIF::TabView* open = driver.View();
  if ((!open || !open->IsCreated()) && !fields.Has("stacked")) {
    driver.Window().Resize(width, height);
    return Json::object();
  }
  UIF::TabView& view = driver.CreatedView();
  if (fields.Has("stacked"))
    view.SetIsStacked(fields.Flag("stacked"));
  Resize(driver.Window(), view, width, height);
  return Json::object();
}

Json TellPanel(Driver& driver, const Fields&) {
  return DescribePanel(driver);
}

Json TellSource(Driver& driver, const Fields& fields) {
  using Of = Captivo::CaptionsInspector::SourceOf;
  static const std::map<std::string, Of> places = {
      {"pane", Of::Pane}, {"pending", Of::Pending}, {"handler", Of::Handler}};
  const auto place = places.find(fields.Text("of", "pane"));
  if (place == places.end())
    fields.Refuse("of", "must be pane, pending or handler");
  const auto source = Captivo::CaptionsInspector(driver.Handler()).GetSource(place->second);
  if (!source)
    throw RequestError(place->second == Of::Handler ? "there is no handler" : "the panel is not open");
  return DescribeSource(*source);
}

Json TellView(Driver& driver, const Fields&) {
  driver.CreatedView();
  return DescribeView(driver);
}

} // namespace

void AddPanelRequests(RequestTable& table) {
  table["open_panel"] = {&OpenPanel};
  table["create_tab_view"] = {&CreateTabView};
  table["close_panel"] = {&ClosePanel};
  table["show_panel"] = {&ShowPanel};
  table["front"] = {&SetFront};
  table["duty"] = {&SetDuty};
  table["resize"] = {&ResizePanel};
  table["panel"] = {&TellPanel};
  table["source"] = {&TellSource};
  table["view"] = {&TellView};
}

} // namespace Drive
