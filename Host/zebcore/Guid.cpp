#include "zebcore/Guid.h"

#include <cstdio>
#include <random>

namespace zebcore::utility {

Guid Guid::Random() {
  std::random_device source;
  const auto half = [&source] { return std::uint64_t{source()} << 32 | source(); };
  Guid guid;
  // All zero is no identity.
  while (guid == Guid())
    guid = {half(), half()};
  return guid;
}

std::string Guid::ToText() const {
  char text[33];
  std::snprintf(text, sizeof text, "%016llx%016llx", static_cast<unsigned long long>(high),
                static_cast<unsigned long long>(low));
  return text;
}

} // namespace zebcore::utility
