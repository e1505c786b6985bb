#pragma once

#include "Captions/contracts/Caption.h"

namespace zebcaptioning {

// Before the x or the y of a closed caption is set: one that stands in a cell of the grid (anchors 0 to 8) gives the
// cell up and takes x and y from where it stands, so that the other one stays. One without a cell stays as it is.
// columns and rows of the grid, 0 for the format's own. In a region, whose size is not known here, x and y are left
// alone.
void LeaveCell(CaptionState& state, StreamFormat format, int columns, int rows);

} // namespace zebcaptioning
