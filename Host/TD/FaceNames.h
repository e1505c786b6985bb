#pragma once

#include <string>

#include "TD/TitlerFontList.h"

namespace TD {

// What is known of a face before it has its place in the list. Weight, slant and width are the font configuration's
// numbers.
struct FaceFacts {
  std::string style;
  std::string fullName;
  double weight = 80;
  int slant = 0;
  double width = 100;
  bool color = false; // pictures, of which no bold and no slanted ones can be made
};

// The face's style as menus show it: "Regular" for upright faces of common weight and width whatever they call
// themselves, "Italic" at the end for every slant, "Bold" in front, and weights by the words that the panel takes apart
// ("Ultra Light", "Light", "Medium", "Demi Bold", "Heavy").
UString StyleName(const FaceFacts& face);

// The records of a family: Regular, Italic, Bold and Bold Italic first, then the others by weight and slant. Of several
// faces with one style name the first counts.
std::vector<CaptionFontRecord> MakeRecords(std::vector<FaceFacts> faces);

} // namespace TD
