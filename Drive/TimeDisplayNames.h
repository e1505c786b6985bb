#pragma once

#include "Drive/Fields.h"
#include "zebmediatypes/TimeDisplay.h"

namespace Drive {

// A time display by its number or by name: "default", "23.976", "24", "25", "29.97 drop", "29.97", "30", "48", "50",
// "59.94 drop", "59.94", "60", "frames", "feet 35mm", "feet 16mm", "milliseconds", "samples", "invalid".
zebmediatypes::TimeDisplay ReadTimeDisplay(const Fields& fields, const char* name);

} // namespace Drive
