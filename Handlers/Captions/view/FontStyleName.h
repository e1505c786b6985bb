#pragma once

#include "Captions/shell/HostTypes.h"

// A weight is stored nowhere in a caption, which knows a family, bold and italic. These rules tell how the style names
// of a family's faces go with the two flags.
namespace Captivo {

// By the four names that every family has, else by how the name begins and ends.
void ParseFontStyleName(const UString& name, bool& bold, bool& italic);
bool EndsWithItalic(const UString& name);
// Takes a weight ("Light", "Demi Bold") off the front and leaves the blank behind it; false without one.
bool StripWeightPrefix(UString& name);
// The style that comes nearest to the one on show and goes with the flags. isSettled: the family need not have it.
UString AlignFontStyleName(const UString& style, bool bold, bool italic, bool& isSettled);

} // namespace Captivo
