#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <boost/function.hpp>

#include "zebui/Node.h"

namespace zebui::ui {

using TimerID = std::uint32_t;

// What all windows share: the focus, keyboard filters, timers and whether a modal window is up. Timers run on
// zebcore::Clock.
class UI_NodeManager {
 public:
  // The flag asks for a manager even before the user interface stands; without it too there is one, always.
  static UI_NodeManager* Get(bool evenWithoutInterface = false);

  TimerID GetUniqueTimerID();
  // Repeats every period until it is removed; setting it again starts the period anew. The callback's result is kept as
  // "handled".
  void SetTimer(TimerID id, std::int64_t periodMilliseconds, const boost::function<bool(TimerID)>& callback);
  void RemoveTimer(TimerID id);
  // Milliseconds of the clock until it is due; nothing for an id that is not set.
  std::optional<std::int64_t> GetTimeUntilDue(TimerID id) const;
  // Of all timers; nothing without one.
  std::optional<std::int64_t> GetTimeUntilNextDue() const;
  struct Fired {
    TimerID id;
    std::int64_t at;
    bool handled;
  };
  // Fires what is due, in order of due time, and says what each answered.
  std::vector<Fired> FireDueTimers();
  // Called when the next due time may have changed.
  void SetTimerNotifier(const boost::function<void()>& notifier);

  bool HasModalWindow() const;
  // For modal windows, nested, and for tests.
  void PushModalWindow();
  void PopModalWindow();

  // A filter node sees every keyboard event first, newest filter first. The flag is the host's own.
  void AddKeyboardEventFilterNode(UI_Node* node, bool flag);
  void RemoveKeyboardEventFilterNode(UI_Node* node, bool flag);
  struct Dispatch {
    bool filtered;
    bool handled;
  };
  // Through the filters to the focus node, as a key press of the toolkit goes too.
  Dispatch DispatchKeyboardEvent(const KeyboardEvent& event);

  // Null when no node has the focus.
  UI_Node* GetFocusNode() const;

 private:
  UI_NodeManager();
  ~UI_NodeManager();
  struct Impl;
  Impl* mImpl;
};

} // namespace zebui::ui
