#pragma once

#include <string>
#include <string_view>

namespace zebcore {

// The host's string: UTF-16 code units. Every position in a text counts these units.
using UString = std::u16string;

// Malformed input never fails: each broken sequence becomes U+FFFD.
UString FromUTF8(std::string_view text);
std::string ToUTF8(std::u16string_view text);

} // namespace zebcore
