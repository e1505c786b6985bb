#pragma once

#include <string>
#include <vector>

#include "Captions/contracts/Caption.h"

namespace HSL {

// Pixels of the frame in a point: 18 points are a fifteenth of the frame's height, one row of a caption grid. The size
// of a font is the height of its lines.
double GetPixelsPerPoint(int frameHeight);

// A line of a caption as texts of events of an Advanced SubStation Alpha script, override tags included.
struct OpenCaptionLine {
  std::string characters; // with their edges, as they are drawn; empty for a line of blanks
  // The same characters unseen, each run in a box of a colour that is the run's index in OpenCaptionScript::runs, as
  // 0xRRGGBB, to find out how much room it takes. Never empty: an empty line is as high as its run's characters.
  std::string boxes;
};

struct OpenCaptionScript {
  std::vector<OpenCaptionLine> lines; // line feeds at the end of the text open none; none without a visible character
  std::vector<zebcaptioning::SharedSpan> runs;
  double boxPadding = 0.0; // how far the boxes reach beyond their lines, pixels of the frame; 0 without a visible box
  double margin = 0.0;     // how far boxes and edges reach beyond their lines, pixels of the frame
};

// Whether two captions differ in nothing that shows in the size of their block, such as colours, place or times only.
bool TakeSameRoom(const zebcaptioning::CaptionState& a, const zebcaptioning::CaptionState& b);

// Fonts, sizes and colours are resolved: equal scripts draw equal pictures. Any thread.
OpenCaptionScript WriteOpenCaptionScript(const zebcaptioning::CaptionState& caption, int frameHeight);

} // namespace HSL
