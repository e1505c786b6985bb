#pragma once

#include "Captions/shell/HostTypes.h"

namespace Captivo {

// Whether a text holds another one. ASCII letters match in either case, all others only themselves. An empty one is
// always held.
bool ContainsFolded(const UString& text, const UString& part);

} // namespace Captivo
