#pragma once

#include "Drive/CaptionsInspector.h"
#include "Drive/Driver.h"

// Controls of the panel as JSON.
namespace Drive {

// By the name of its field; RequestError for a control that the panel does not have, or has not made yet.
Captivo::CaptionsInspector::Control FindControl(Driver& driver, const Fields& fields, const char* name);
bool IsVisible(const Captivo::CaptionsInspector::Control& control);
bool IsEnabled(const Captivo::CaptionsInspector::Control& control);
Json DescribeControl(const Captivo::CaptionsInspector::Control& control);

} // namespace Drive
