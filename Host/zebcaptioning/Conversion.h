#pragma once

#include "Captions/contracts/Caption.h"

namespace zebcaptioning {

// The nearest to the caption that the format allows, in the format's own grid: display type (an allowed one stays, none
// stays none, any other becomes the default), attributes of the runs, position, line spacing. columns and rows 0 for
// the format's own grid; open captions are not held to a frame. The same state if nothing is out of place.
CaptionStatePtr ConformToFormat(const CaptionStatePtr& state, StreamFormat format, int columns = 0, int rows = 0);

// The caption as it is in another format: attributes as ConformToFormat, positions in proportion, the measures unknown
// unless the grid is the same, and a display type that the format does not have, or none, becomes the default. columns
// and rows are the grid of the closed format, of "to" if both are closed; 0 for the format's own. The frame is that of
// an open format, in pixels.
CaptionStatePtr ConvertToFormat(const CaptionStatePtr& state, StreamFormat from, StreamFormat to, int columns, int rows,
                                int frameWidth, int frameHeight);

} // namespace zebcaptioning
