// The controls of one row, and the clock.

#include "Drive/CaptionsInspector.h"
#include "Drive/Driver.h"
#include "Drive/PanelInput.h"
#include "Drive/PanelJson.h"
#include "Drive/RowTimes.h"
#include "UIF/HotTimecodeControl.h"
#include "UIF/TabView.h"
#include "zebcore/Clock.h"
#include "zebui/Controls.h"
#include "zebui/NodeManager.h"
#include "zebui/Toolkit.h"

namespace Drive {

namespace {

using Captivo::CaptionsInspector;
using zebui::ui::UI_NodeManager;

constexpr std::int64_t kMostMilliseconds = 24LL * 3600 * 1000;
constexpr int kMostTimers = 1000000;

Json ChangeRowText(Driver& driver, const Fields& fields) {
  const auto row = RealizedRow(driver, fields);
  const auto phase = static_cast<int>(fields.Integer("phase", 0, 3, 1));
  // The row may let go of its text as the change reaches the panel.
  const boost::intrusive_ptr<zebui::controls::UI_TextEdit> edit(row.textEdit);
  if (phase == 0) {
    edit->StartInteractiveChange();
    return Json::object();
  }
  if (phase == 3) {
    edit->CancelInteractiveChange();
    return Json::object();
  }
  if (phase == 1 || fields.Has("value"))
    edit->SetValue(zebcore::FromUTF8(fields.Text("value")), true);
  if (phase == 2)
    edit->FinishInteractiveChange();
  return Json::object();
}

Json ChangeRowTime(Driver& driver, const Fields& fields) {
  const auto row = RealizedRow(driver, fields);
  const std::string end = fields.Text("end");
  if (end != "in" && end != "out")
    fields.Refuse("end", "must be in or out");
  UIF::HotTimecodeControl& control = end == "in" ? *row.in : *row.out;
  const std::string how = fields.Text("how", "typed");
  const HeldKeys held(fields.Modifiers());
  if (how == "typed") {
    const auto source = CaptionsInspector(driver.Handler()).GetSource(CaptionsInspector::SourceOf::Pane);
    TypeTime(control, source.value(), fields, "value");
    zebui::toolkit::MoveFocus(nullptr, zebui::ui::kFocusChange_None);
  } else if (how == "scrub") {
    control.Scrub(fields.Time("value"), true);
  } else if (how == "report") {
    zebui::toolkit::MoveFocus(nullptr, zebui::ui::kFocusChange_None);
    control.ReportValue(fields.Time("value"));
  } else {
    fields.Refuse("how", "must be typed, scrub or report");
  }
  return Json::object();
}

Json NameTimer(const Driver& driver, zebui::ui::TimerID id) {
  const auto pane = CaptionsInspector(driver.Handler()).GetPaneState();
  if (pane && id == pane->pollTimer)
    return "poll";
  if (pane && id == pane->deferTimer)
    return "defer";
  return nullptr;
}

Json Tick(Driver& driver, const Fields& fields) {
  auto& clock = zebcore::Clock::Instance();
  auto* manager = UI_NodeManager::Get();
  const std::int64_t until = clock.Now() + fields.Integer("ms", 0, kMostMilliseconds);
  Json fired = Json::array();
  for (int count = 0; count < kMostTimers; ++count) {
    const auto next = manager->GetTimeUntilNextDue();
    if (!next || clock.Now() + *next > until)
      break;
    clock.SetNow(clock.Now() + *next);
    for (const auto& timer : manager->FireDueTimers())
      fired.push_back({{"timer", NameTimer(driver, timer.id)},
                       {"id", timer.id},
                       {"at", driver.SinceStart(timer.at)},
                       {"result", timer.handled}});
    driver.Settle();
  }
  clock.SetNow(until);
  return {{"fired", std::move(fired)}, {"now", driver.SinceStart(clock.Now())}};
}

} // namespace

void AddRowRequests(RequestTable& table) {
  table["row_text"] = {&ChangeRowText};
  table["row_time"] = {&ChangeRowTime};
  table["tick"] = {&Tick};
}

} // namespace Drive
