#pragma once

#include <string>
#include <string_view>

#include "Captions/contracts/Caption.h"

// Captions as bytes, for the project file: a version, what differs from the defaults, and a checksum. The same on every
// machine.
namespace zebcaptioning {

// Lossless, the typing style and broken surrogate pairs included.
std::string Encode(const CaptionState& state);

// Null for bytes that are damaged, cut off, followed by others, or of a newer version.
CaptionStatePtr Decode(std::string_view bytes);

// As Decode, for bytes of which the checksum at the end is left out: whoever tries damaged bytes on it gets past the
// door that way.
CaptionStatePtr DecodeWithoutChecksum(std::string_view bytes);

} // namespace zebcaptioning
