#pragma once

#include <map>

#include "zebcore/UString.h"

namespace zebcaptioning {

// In place of what the machine's font configuration says: the families that stand for generic names. Any other name
// among them is generic too, as long as it is. A generic name that is not among them goes on being asked for. An empty
// map restores the machine's.
void SetGenericUIFontNames(std::map<zebcore::UString, zebcore::UString> names);

} // namespace zebcaptioning
