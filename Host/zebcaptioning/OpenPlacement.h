#pragma once

#include "Captions/contracts/ParagraphStyleAttributes.h"

namespace zebcaptioning {

// The top left of an open caption's block in its frame. One unit for all, pixels of the frame.
struct OpenPlace {
  double x = 0.0;
  double y = 0.0;
};

// Where an open caption stands: in its cell of the safe area (anchors 0 to 8), else at its x and y. A coordinate of 0
// with anchor 9 was never set: the caption then stands at the bottom of the safe area, or across it by its alignment. A
// block larger than the safe area reaches beyond it on the side away from its cell.
OpenPlace GetOpenPlace(const ParagraphStyleAttributes& paragraph, double blockWidth, double blockHeight,
                       double frameWidth, double frameHeight);

// Whether the one coordinate or the other says where it stands.
bool StandsAtX(const ParagraphStyleAttributes& paragraph);
bool StandsAtY(const ParagraphStyleAttributes& paragraph);

// Before one of the two is set to coordinate: a caption that would not stand there, as it has a cell, gives the cell up
// and takes x and y from where it stands, so that the other one stays. One without a cell keeps its anchor and its
// other coordinate, unless 0 is to be set, which anchor 9 cannot say. The frame is in pixels; a block that was not
// measured counts as empty.
void MakeRoomForPosition(ParagraphStyleAttributes& paragraph, int coordinate, int frameWidth, int frameHeight);

} // namespace zebcaptioning
