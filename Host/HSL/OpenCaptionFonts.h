#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "zebcore/UString.h"

namespace HSL {

// A piece of a text, in UTF-16 units, and the installed family that has its characters.
struct FontPiece {
  std::size_t start = 0;
  std::size_t end = 0;
  zebcore::UString family;
  double scale = 1.0; // of the size, so that letters of all pieces are as large as those of the wanted family

  friend bool operator==(const FontPiece&, const FontPiece&) = default;
};

// Divides a text by the fonts that can draw it: the wanted family (a generic name too) wherever it has the characters,
// else the nearest that has, outline fonts alone. A character stays in one piece with its marks, joiners and
// selectors, so that no piece breaks a syllable or an emoji. Pieces cover the whole text in order, no two neighbours of
// one family. Any thread; the first question about a family sorts the machine's fonts, later ones are remembered.
std::vector<FontPiece> SplitByFont(std::u16string_view text, const zebcore::UString& family, bool bold, bool italic);

// What an outline font does not draw and would show as an empty box or a swatch: the choice between text and emoji
// picture, tags and tones of skin.
bool IsEmojiModifier(char32_t character);

} // namespace HSL
