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
  // The family can be switched to bold by this face's twin, or a bold one can be made of it.
  bool boldSelectable = true;
  bool isItalic = false;
  bool italicSelectable = true;
};

struct TitlerFontFamily {
  int id = 0;
  UString name;
  const std::vector<const CaptionFontRecord*>* faces = nullptr;
};

// By the name as people sort it, in the machine's language.
using TitlerFontList = std::map<UString, TitlerFontFamily>;

// The scalable text families of this machine, found once; valid until SetTitlerFontList.
const TitlerFontList& GetTitlerFontList();

struct FontFamilyDescription {
  UString name;
  std::vector<CaptionFontRecord> faces;
};
// In place of the machine's fonts; an empty list restores them.
void SetTitlerFontList(std::vector<FontFamilyDescription> families);

} // namespace TD
