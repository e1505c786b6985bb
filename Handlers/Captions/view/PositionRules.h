#pragma once

#include "Captions/shell/HostTypes.h"

// Arithmetic between what the bar shows of a caption's position and what the caption holds.
namespace Captivo {

// Anchors 0 to 8 are cells of a 3 by 3 grid, row by row; -2, -1 and 9 mark none, which is (-1, -1). Any other anchor
// counts as the top left one.
PointT<int> GridCellOfAnchor(int anchor);
// 9 for anything but a cell of the grid.
int AnchorOfGridCell(const PointT<int>& cell);

// Toward zero; a number that does not fit saturates, and what is no number is 0.
int TruncateToInt(double value);
// To the nearest of extent steps.
int PositionOfPercent(double percent, int extent);
// Infinite, or not a number, for an extent of 0.
double PercentOfPosition(int position, int extent);
// One side of a region, in the stream's units.
int RegionExtent(float side, bool percent, int frameSide);

} // namespace Captivo
