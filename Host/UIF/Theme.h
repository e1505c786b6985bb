#pragma once

#include "UIF/Drawing.h"

namespace UIF {

// Dresses the whole program: style, colours, font. Needs the application object; may be called again to change the
// theme.
void ApplyTheme(Theme theme);

} // namespace UIF
