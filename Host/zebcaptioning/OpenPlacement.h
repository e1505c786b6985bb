#pragma once

#include "Captions/contracts/ParagraphStyleAttributes.h"

namespace zebcaptioning {

// The top left of an open caption's block in its frame. One unit for all, pixels of the frame.
struct OpenPlace {
  double x = 0.0;
  double y = 0.0;
};

// Where an open caption stands: in its cell of the safe area (anchors 0 to 8), else at its x and y. One that was never
// placed, anchor 9 with x and y at 0, stands at the bottom of the safe area by its alignment. A block larger than the
// safe area reaches beyond it on the side away from its cell.
OpenPlace GetOpenPlace(const ParagraphStyleAttributes& paragraph, double blockWidth, double blockHeight,
                       double frameWidth, double frameHeight);

// Whether x and y say where it stands.
bool StandsAtPosition(const ParagraphStyleAttributes& paragraph);

// Makes x and y say where the caption stands, which leaves it where it is: before one of the two is changed. The frame
// is in pixels; a block that was not measured counts as empty.
void TakePositionInPlace(ParagraphStyleAttributes& paragraph, int frameWidth, int frameHeight);

} // namespace zebcaptioning
