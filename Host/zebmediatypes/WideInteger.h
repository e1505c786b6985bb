#pragma once

#include <cstdint>

namespace zebmediatypes {

// Room for a product of two 64-bit numbers.
__extension__ using Int128 = __int128;

// Towards minus infinity; the divisor is above zero.
constexpr Int128 FloorDivide(Int128 dividend, std::int64_t divisor) {
  const Int128 quotient = dividend / divisor;
  return dividend % divisor < 0 ? quotient - 1 : quotient;
}

} // namespace zebmediatypes
