#pragma once

#include "Drive/CaptionsInspector.h"
#include "Drive/Driver.h"

// Controls of the panel as JSON.
namespace Drive {

// By the name of its field; RequestError for a control that the panel does not have, or has not made yet.
Captivo::CaptionsInspector::Control FindControl(Driver& driver, const Fields& fields, const char* name);
bool IsVisible(const Captivo::CaptionsInspector::Control& control);
bool HasFocus(const Captivo::CaptionsInspector::Control& control);
bool IsEnabled(const Captivo::CaptionsInspector::Control& control);
Json DescribeControl(const Captivo::CaptionsInspector::Control& control);
// So that the record calls the controls by the names of their fields from now on; the names by what calls are asked of.
SubjectNames NameControls(Driver& driver);

// Usable for as long as this lives, though the panel has disabled it; disabled again afterwards, unless the panel has
// done so meanwhile. Nothing of that is recorded.
class ForcedControl {
 public:
  ForcedControl(const Captivo::CaptionsInspector::Control& control, bool force);
  ~ForcedControl();
  ForcedControl(const ForcedControl&) = delete;
  ForcedControl& operator=(const ForcedControl&) = delete;

 private:
  Captivo::CaptionsInspector::Control mControl;
  bool mForced;
  bool mWasEnabled = true;
  bool mWasUsable = true;
};

} // namespace Drive
