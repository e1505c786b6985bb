#pragma once

#include <compare>
#include <map>

#include "Captions/contracts/StreamFormat.h"
#include "zebcore/UString.h"

namespace zebcaptioning {

// Red, green, blue and alpha, each from 0 to 1.
class CaptioningColor {
 public:
  enum ColorType : int { kColorType_Text = 0, kColorType_Background = 1, kColorType_Edge = 2 };

  CaptioningColor() = default;
  CaptioningColor(float r, float g, float b, float a) : red(r), green(g), blue(b), alpha(a) {}

  // No alpha.
  bool IsTransparent() const { return alpha == 0.0F; }

  // The colours and opacities that a format allows for a type of colour, with their names in the program's language.
  // False, and both maps empty, for a format that allows any (open captions) or none (0, or a type it lacks).
  static bool EnumerateLegalColors(StreamFormat format, ColorType type,
                                   std::map<CaptioningColor, zebcore::UString>& colors,
                                   std::map<float, zebcore::UString>& opacities);

  friend bool operator==(const CaptioningColor&, const CaptioningColor&) = default;
  friend auto operator<=>(const CaptioningColor&, const CaptioningColor&) = default;

  float red = 0.0F;
  float green = 0.0F;
  float blue = 0.0F;
  float alpha = 0.0F;
};

} // namespace zebcaptioning
