#pragma once

#include "Drive/CaptionsInspector.h"
#include "Drive/Driver.h"

// The panel's state as JSON.
namespace Drive {

Json DescribePanel(Driver& driver);
Json DescribeSource(const Captivo::CaptionsInspector::SourceState& source);
Json DescribeView(Driver& driver);
// {"in": "pane"}, {"in": "control", "name"}, {"in": "row", "row", "part"}, or null when the focus is nowhere or not in
// the panel.
Json DescribeFocus(Driver& driver);

} // namespace Drive
