#pragma once

#include <functional>
#include <map>
#include <vector>

#include "zebcore/UString.h"

namespace TD {

using zebcore::UString;

// One face of a family.
struct CaptionFontRecord {
  UString styleName; // "Regular", "Bold Italic", "Light"
  UString fullName;
  bool isBold = false;
  // The family can be switched to bold by this face's twin, or a bold one can be made of its outlines; not of coloured
  // pictures without a twin.
  bool boldSelectable = true;
  bool isItalic = false;
  // The same for italic.
  bool italicSelectable = true;
};

struct TitlerFontFamily {
  int id = 0; // its place in the list, from 1
  UString name;
  // Regular, Italic, Bold and Bold Italic first, as far as there are such; no two with one style name. Not null.
  const std::vector<const CaptionFontRecord*>* faces = nullptr;
};

// In the order in which people of the machine's language sort names, unless it was given in another. The keys are for
// that order only.
using TitlerFontList = std::map<UString, TitlerFontFamily>;

// The scalable families of this machine, found once. The list is valid until SetTitlerFontList, faces and their records
// for good. Families whose names start with a dot are the system's own and left out.
const TitlerFontList& GetTitlerFontList();

struct FontFamilyDescription {
  UString name;
  std::vector<CaptionFontRecord> faces;
};
// In place of the machine's fonts; an empty list restores them.
void SetTitlerFontList(std::vector<FontFamilyDescription> families);
// The same, but in the order of families, and an empty list is one. Of two families of one name the first is listed.
void SetTitlerFontListAsGiven(std::vector<FontFamilyDescription> families);

} // namespace TD
