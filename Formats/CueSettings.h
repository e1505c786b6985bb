#pragma once

#include <optional>
#include <string>

#include "Formats/CueBuilder.h"

// The settings behind a WebVTT cue's times: "line:0 position:10%,line-left align:start".
//
// An anchor is written as a line of 0, of 50% with alignment center, or of -1, and as a position of 0%, 50% or 100%,
// which goes without saying where the text's alignment is that of the anchor's column. Any other line or position is a
// place of its own: a cell of a closed format's grid, or the nearest anchor in open captions.
namespace Formats {

// Losses go to the builder; text is what the caption holds.
Placement ReadCueSettings(std::u16string_view settings, StreamFormat format, CueBuilder& builder);

// With a leading blank, or empty. isLost is set if the place cannot be written.
std::string WriteCueSettings(const Placement& placement, StreamFormat format, std::u16string_view text, bool& isLost);

} // namespace Formats
