#pragma once

#include "zebcaptioning/FormatFacts.h"

// The tables themselves; GetFormatFacts reads them.
namespace zebcaptioning::tables {

const FormatFacts& Find(FormatFamily family);

// Localiser's keys; null for a type or an opacity that no format has.
const char* TypeName(CaptionType type);
const char* OpacityName(float opacity);

} // namespace zebcaptioning::tables
