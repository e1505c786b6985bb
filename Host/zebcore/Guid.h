#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace zebcore::utility {

// 128 bits as two halves. Default-constructed it is all zero.
struct Guid {
  std::uint64_t high = 0;
  std::uint64_t low = 0;

  static Guid Random();
  // 32 lower-case hexadecimal digits.
  std::string ToText() const;

  friend auto operator<=>(const Guid&, const Guid&) = default;
};

} // namespace zebcore::utility
