#pragma once

#include "zebcore/Geometry.h"

namespace zebui::drawbot {
class Drawbot;
}

namespace UIF {

// Pictures of buttons.
enum DecalID : int {
  kNoDecal = 0,
  kCaptionJustifyLeftDecal,
  kCaptionJustifyCenterDecal,
  kCaptionJustifyRightDecal,
  kCaptionBoldDecal,
  kCaptionItalicizeDecal,
  kCaptionUnderlineDecal,
  kCaptionMusicNoteDecal,
  kCaptionBackgroundColorDecal,
  kCaptionTextColorDecal,
  kCaptionTextOutlineColorDecal,
};

class DrawingSupplier;

// A picture drawn from outlines, crisp at any scale and in the colours of the theme on show.
class Bitmap {
 public:
  Bitmap() = default;
  // supplier: whose surface it is made for; null for any.
  static Bitmap GetBitmap(DecalID decal, const DrawingSupplier* supplier);
  DecalID GetDecal() const { return mDecal; }

 private:
  explicit Bitmap(DecalID decal) : mDecal(decal) {}
  DecalID mDecal = kNoDecal;
};

} // namespace UIF
