#pragma once

#include "Captions/contracts/StreamFormat.h"
#include "zebcore/ImmutableString.h"

namespace zebcaptioning {

// What belongs to a caption as a whole.
class ParagraphStyleAttributes {
 public:
  enum TextAlignmentType : int { kTextAlignment_Left = 0, kTextAlignment_Center = 1, kTextAlignment_Right = 2 };
  // 0 to 8 are the cells of a three by three grid, by rows from the top left; -2, -1 and 9 are no cell.
  using AnchorID = int;
  static constexpr int kLineWidth_Unknown = -1;

  friend bool operator==(const ParagraphStyleAttributes&, const ParagraphStyleAttributes&) = default;

  CaptionType captionType = kCaptionType_None;
  TextAlignmentType alignment = kTextAlignment_Left;
  AnchorID anchor = 9;
  int x = 0;                                // columns from the left, or pixels of the frame (open captions)
  int y = 0;                                // rows from the top, or pixels of the frame
  int lineSpacing = 0;                      // percent of the line height, added
  int lineWidth = kLineWidth_Unknown;       // widest line, in the unit of x; unknown until computed
  int blockHeight = 0;                      // height of the block, in the unit of y
  zebcore::utility::ImmutableString region; // name in the stream, UTF-8; null for none
  zebcore::utility::ImmutableString style;  // likewise
};

} // namespace zebcaptioning
