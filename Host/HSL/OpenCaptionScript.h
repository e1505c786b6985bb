#pragma once

#include <string>

#include "Captions/contracts/Caption.h"

namespace HSL {

// Pixels of the frame in a point: 18 points are a fifteenth of the frame's height, one row of a caption grid.
double GetPixelsPerPoint(int frameHeight);

// Text of a caption as an event of an Advanced SubStation Alpha script, override tags included, in two layers: the
// boxes behind the characters, and the characters with their edges. Empty for a layer with nothing to draw.
struct OpenCaptionScript {
  std::string boxes;
  std::string characters;
};
OpenCaptionScript WriteOpenCaptionScript(const zebcaptioning::CaptionState& caption, int frameHeight);

} // namespace HSL
