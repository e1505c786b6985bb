#pragma once

namespace Captivo {

// Every row is as high as any other, whatever its text: painting, hit test and scrolling all count in it.
inline constexpr int kRowHeight = 75;

} // namespace Captivo
