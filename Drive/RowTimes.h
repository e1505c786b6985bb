#pragma once

#include "Drive/CaptionsInspector.h"
#include "Drive/Fields.h"

namespace Drive {

// What a person does to type a time over the one in the field: opens the editor, enters the value, commits. The value
// is a time in ticks, or the very text that is typed. A time that the field's display cannot say is dragged to instead,
// once the editor has been opened and left again.
void TypeTime(UIF::HotTimecodeControl& control, const Captivo::CaptionsInspector::SourceState& source,
              const Fields& fields, const char* name);

} // namespace Drive
