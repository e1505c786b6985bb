#include "zebui/NodeManager.h"

#include <map>

#include <QApplication>

#include "zebcore/Boundary.h"
#include "zebcore/Clock.h"
#include "zebcore/Trace.h"
#include "zebui/Focus.h"
#include "zebui/Toolkit.h"

namespace zebui::ui {

using zebcore::Clock;
using zebcore::boundary::Guard;

namespace {

struct Timer {
  std::int64_t period;
  std::int64_t due;
  std::uint64_t armed; // in which order timers of one due time were armed
  boost::function<bool(TimerID)> callback;
};

} // namespace

struct UI_NodeManager::Impl {
  TimerID lastID = 0;
  std::uint64_t armed = 0;
  std::map<TimerID, Timer> timers;
  boost::function<void()> notifier;
  int modalWindows = 0;
  std::vector<UI_Node*> filters; // oldest first

  void NotifyTimers() const {
    if (notifier)
      notifier();
  }

  // The timer that comes first; end without any.
  std::map<TimerID, Timer>::iterator First() {
    return std::min_element(timers.begin(), timers.end(), [](const auto& a, const auto& b) {
      return std::pair(a.second.due, a.second.armed) < std::pair(b.second.due, b.second.armed);
    });
  }
};

UI_NodeManager::UI_NodeManager() : mImpl(new Impl) {}

UI_NodeManager::~UI_NodeManager() {
  delete mImpl;
}

UI_NodeManager* UI_NodeManager::Get(bool) {
  // Never destroyed: controls with a static lifetime leave it at the very end.
  static auto* const manager = new UI_NodeManager;
  return manager;
}

TimerID UI_NodeManager::GetUniqueTimerID() {
  return ++mImpl->lastID;
}

void UI_NodeManager::SetTimer(TimerID id, std::int64_t periodMilliseconds,
                              const boost::function<bool(TimerID)>& callback) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("UI_NodeManager::SetTimer", {{"id", id}, {"ms", periodMilliseconds}});
  const std::int64_t period = std::max<std::int64_t>(1, periodMilliseconds);
  mImpl->timers[id] = {period, Clock::Instance().Now() + period, ++mImpl->armed, callback};
  mImpl->NotifyTimers();
}

void UI_NodeManager::RemoveTimer(TimerID id) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("UI_NodeManager::RemoveTimer", {{"id", id}});
  if (mImpl->timers.erase(id) > 0)
    mImpl->NotifyTimers();
}

std::optional<std::int64_t> UI_NodeManager::GetTimeUntilDue(TimerID id) const {
  const auto found = mImpl->timers.find(id);
  if (found == mImpl->timers.end())
    return std::nullopt;
  return std::max<std::int64_t>(0, found->second.due - Clock::Instance().Now());
}

std::optional<std::int64_t> UI_NodeManager::GetTimeUntilNextDue() const {
  const auto first = mImpl->First();
  if (first == mImpl->timers.end())
    return std::nullopt;
  return std::max<std::int64_t>(0, first->second.due - Clock::Instance().Now());
}

std::vector<UI_NodeManager::Fired> UI_NodeManager::FireDueTimers() {
  std::vector<Fired> fired;
  const std::int64_t now = Clock::Instance().Now();
  for (;;) {
    const auto first = mImpl->First();
    if (first == mImpl->timers.end() || first->second.due > now)
      break;
    Timer& timer = first->second;
    const TimerID id = first->first;
    const std::int64_t at = timer.due;
    timer.due += timer.period;
    // On a clock that runs by itself the ticks that were missed are missed.
    if (!Clock::Instance().IsManual() && timer.due <= now)
      timer.due = now + timer.period;
    timer.armed = ++mImpl->armed;
    const auto callback = timer.callback; // which may remove the timer
    bool handled = false;
    Guard("UI_NodeManager::FireDueTimers", [&] { handled = callback && callback(id); });
    fired.push_back({id, at, handled});
  }
  if (!fired.empty())
    mImpl->NotifyTimers();
  return fired;
}

void UI_NodeManager::SetTimerNotifier(const boost::function<void()>& notifier) {
  mImpl->notifier = notifier;
  mImpl->NotifyTimers();
}

bool UI_NodeManager::HasModalWindow() const {
  return mImpl->modalWindows > 0 || (toolkit::HasApplication() && QApplication::activeModalWidget() != nullptr);
}

void UI_NodeManager::PushModalWindow() {
  ++mImpl->modalWindows;
}

void UI_NodeManager::PopModalWindow() {
  mImpl->modalWindows = std::max(0, mImpl->modalWindows - 1);
}

void UI_NodeManager::AddKeyboardEventFilterNode(UI_Node* node, bool) {
  if (node && std::ranges::find(mImpl->filters, node) == mImpl->filters.end())
    mImpl->filters.push_back(node);
}

void UI_NodeManager::RemoveKeyboardEventFilterNode(UI_Node* node, bool) {
  std::erase(mImpl->filters, node);
}

UI_NodeManager::Dispatch UI_NodeManager::DispatchKeyboardEvent(const KeyboardEvent& event) {
  const toolkit::WidgetScope scope;
  UI_Node* const focus = GetFocusNode();
  // Over a copy: a filter may leave, or lead to the end of others, while it is asked.
  const std::vector<UI_Node*> filters = mImpl->filters;
  for (auto filter = filters.rbegin(); filter != filters.rend(); ++filter) {
    if (std::ranges::find(mImpl->filters, *filter) == mImpl->filters.end())
      continue;
    const toolkit::KeepAlive alive(**filter);
    bool swallowed = false;
    Guard("UI_Node::UI_DoPreKeyboardEvent", [&] { swallowed = (*filter)->UI_DoPreKeyboardEvent(focus, event); });
    if (swallowed)
      return {true, false};
  }
  // A filter that moved the focus has not used the event; it goes where the focus is now.
  UI_Node* const target = GetFocusNode();
  if (!target)
    return {false, false};
  const toolkit::KeepAlive alive(*target);
  bool handled = false;
  Guard("UI_Node::UI_DoKeyboardEvent", [&] { handled = target->UI_DoKeyboardEvent(target, event); });
  return {false, handled};
}

UI_Node* UI_NodeManager::GetFocusNode() const {
  return toolkit::GetFocusRecordNode();
}

} // namespace zebui::ui
