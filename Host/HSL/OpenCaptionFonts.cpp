#include "HSL/OpenCaptionFonts.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H
#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include "Captions/contracts/TextSpanAttributes.h"

namespace HSL {

namespace {

using zebcore::UString;

// Families remembered at once; more than a caption stream has, and a bound for one that has every font there is.
constexpr std::size_t kRememberedFamilies = 64;
constexpr char32_t kZeroWidthJoiner = 0x200D;
constexpr char32_t kEnclosingKeycap = 0x20E3;

struct FontSetCloser {
  void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
};
struct PatternCloser {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};

// Installed outline fonts, the nearest to a wanted one first.
struct FontList {
  struct Font {
    UString family;
    const FcCharSet* characters; // belongs to the set
    FcPattern* pattern;          // likewise
  };
  std::unique_ptr<FcFontSet, FontSetCloser> set;
  std::vector<Font> fonts;
};

const FcChar8* AsFontText(const std::string& text) {
  return reinterpret_cast<const FcChar8*>(text.c_str());
}

// The name under which a font goes: the one that was asked for if it bears it, so that a light or narrow member of a
// family stays what it is.
UString NameOf(FcPattern* font, const std::string& wanted) {
  FcChar8* name = nullptr;
  for (int i = 0; FcPatternGetString(font, FC_FAMILY, i, &name) == FcResultMatch; ++i)
    if (FcStrCmpIgnoreCase(name, AsFontText(wanted)) == 0)
      return zebcore::FromUTF8(wanted);
  if (FcPatternGetString(font, FC_FAMILY, 0, &name) != FcResultMatch)
    return {};
  return zebcore::FromUTF8(reinterpret_cast<const char*>(name));
}

bool IsTrue(FcPattern* font, const char* property) {
  FcBool value = FcFalse;
  return FcPatternGetBool(font, property, 0, &value) == FcResultMatch && value == FcTrue;
}

// Height of a font's lines in parts of its em: what the size of a font is measured by.
double ReadLineHeight(const std::string& file, int index) {
  struct LibraryCloser {
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
  };
  struct FaceCloser {
    void operator()(FT_Face face) const { FT_Done_Face(face); }
  };
  FT_Library started = nullptr;
  FT_Face opened = nullptr;
  if (FT_Init_FreeType(&started) != 0)
    return 1.0;
  const std::unique_ptr<FT_LibraryRec_, LibraryCloser> library(started);
  if (FT_New_Face(started, file.c_str(), index, &opened) != 0)
    return 1.0;
  const std::unique_ptr<FT_FaceRec_, FaceCloser> face(opened);
  const auto* metrics = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(opened, FT_SFNT_OS2));
  double height = metrics ? metrics->usWinAscent + metrics->usWinDescent : 0.0;
  if (height <= 0.0)
    height = opened->ascender - opened->descender;
  return height > 0.0 && opened->units_per_EM > 0 ? height / opened->units_per_EM : 1.0;
}

double GetLineHeight(FcPattern* font) {
  FcChar8* file = nullptr;
  int index = 0;
  if (FcPatternGetString(font, FC_FILE, 0, &file) != FcResultMatch)
    return 1.0;
  FcPatternGetInteger(font, FC_INDEX, 0, &index);
  static std::mutex mutex;
  static std::map<std::pair<std::string, int>, double> read; // no more than there are font files
  const std::lock_guard lock(mutex);
  const std::pair<std::string, int> key(reinterpret_cast<const char*>(file), index);
  const auto found = read.find(key);
  return found != read.end() ? found->second : read.emplace(key, ReadLineHeight(key.first, index)).first->second;
}

std::shared_ptr<const FontList> SortFonts(const UString& family, bool bold, bool italic, const char* language) {
  const auto list = std::make_shared<FontList>();
  const std::string wanted = zebcore::ToUTF8(family);
  const std::unique_ptr<FcPattern, PatternCloser> pattern(FcPatternCreate());
  FcPatternAddString(pattern.get(), FC_FAMILY, AsFontText(wanted));
  FcPatternAddInteger(pattern.get(), FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(pattern.get(), FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddBool(pattern.get(), FC_OUTLINE, FcTrue);
  if (*language)
    FcPatternAddString(pattern.get(), FC_LANG, AsFontText(language));
  FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
  FcDefaultSubstitute(pattern.get());
  FcResult result = FcResultNoMatch;
  list->set.reset(FcFontSort(nullptr, pattern.get(), FcFalse, nullptr, &result));
  for (int i = 0; list->set && i < list->set->nfont; ++i) {
    FcPattern* font = list->set->fonts[i];
    FcCharSet* characters = nullptr;
    if (!IsTrue(font, FC_OUTLINE) || IsTrue(font, FC_COLOR) ||
        FcPatternGetCharSet(font, FC_CHARSET, 0, &characters) != FcResultMatch)
      continue;
    list->fonts.push_back({NameOf(font, wanted), characters, font});
  }
  return list;
}

std::shared_ptr<const FontList> GetFonts(const UString& family, bool bold, bool italic, const char* language) {
  using Key = std::tuple<UString, bool, bool, std::string>;
  static std::mutex mutex;
  static std::map<Key, std::shared_ptr<const FontList>> remembered;
  const Key key{family, bold, italic, language};
  {
    const std::lock_guard lock(mutex);
    if (const auto found = remembered.find(key); found != remembered.end())
      return found->second;
  }
  const auto list = SortFonts(family, bold, italic, language);
  const std::lock_guard lock(mutex);
  if (remembered.size() >= kRememberedFamilies)
    remembered.clear();
  return remembered.emplace(key, list).first->second;
}

char32_t CharacterAt(std::u16string_view text, std::size_t at, std::size_t& next) {
  char32_t character = text[at];
  next = at + 1;
  if (U16_IS_LEAD(character) && next < text.size() && U16_IS_TRAIL(text[next]))
    character = U16_GET_SUPPLEMENTARY(character, text[next++]);
  return character;
}

// Drawn with what comes before it.
bool IsExtension(char32_t character) {
  const auto point = static_cast<UChar32>(character);
  return u_hasBinaryProperty(point, UCHAR_GRAPHEME_EXTEND) || u_charType(point) == U_COMBINING_SPACING_MARK ||
         character == kZeroWidthJoiner || character == kEnclosingKeycap || IsEmojiModifier(character);
}

// Any font may draw it, for there is nothing to draw.
bool IsInvisible(char32_t character) {
  const auto point = static_cast<UChar32>(character);
  return character < 0x20 || u_hasBinaryProperty(point, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) ||
         IsEmojiModifier(character);
}

// A character with its marks, and with what a joiner ties to it.
std::size_t ClusterEnd(std::u16string_view text, std::size_t start) {
  std::size_t next = start;
  char32_t last = CharacterAt(text, start, next);
  while (next < text.size()) {
    std::size_t after = next;
    const char32_t character = CharacterAt(text, next, after);
    const bool isTied =
        last == kZeroWidthJoiner && u_hasBinaryProperty(static_cast<UChar32>(character), UCHAR_EXTENDED_PICTOGRAPHIC);
    if (!IsExtension(character) && !isTied)
      break;
    last = character;
    next = after;
  }
  return next;
}

bool Has(const FontList::Font& font, std::u16string_view cluster) {
  for (std::size_t at = 0; at < cluster.size();) {
    const char32_t character = CharacterAt(cluster, at, at);
    if (!IsInvisible(character) && !FcCharSetHasChar(font.characters, character))
      return false;
  }
  return true;
}

const FontList::Font* FindFont(const FontList& list, std::u16string_view cluster) {
  for (const FontList::Font& font : list.fonts)
    if (Has(font, cluster))
      return &font;
  // Marks that no font has must not take the letter along.
  std::size_t next = 0;
  CharacterAt(cluster, 0, next);
  for (const FontList::Font& font : list.fonts)
    if (Has(font, cluster.substr(0, next)))
      return &font;
  return nullptr;
}

double GetScale(const FontList& list, const FontList::Font* font) {
  return font && font != &list.fonts.front() ? GetLineHeight(font->pattern) / GetLineHeight(list.fonts.front().pattern)
                                             : 1.0;
}

// Han characters look different in Japan, China and Korea; the letters around them tell where the text is at home.
const char* GuessLanguage(std::u16string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = CharacterAt(text, at, at);
    if (character >= 0x3040 && character <= 0x30FF)
      return "ja";
    if (character >= 0xAC00 && character <= 0xD7A3)
      return "ko";
  }
  return "";
}

} // namespace

bool IsEmojiModifier(char32_t character) {
  return character == 0xFE0F || character == 0xFE0E || (character >= 0x1F3FB && character <= 0x1F3FF) ||
         (character >= 0xE0020 && character <= 0xE007F);
}

std::vector<FontPiece> SplitByFont(std::u16string_view text, const UString& family, bool bold, bool italic) {
  const UString wanted = zebcaptioning::TextSpanAttributes::GetGenericUIFontName(family);
  const auto list = GetFonts(wanted, bold, italic, GuessLanguage(text));
  std::vector<FontPiece> pieces;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = ClusterEnd(text, start);
    const FontList::Font* font = FindFont(*list, text.substr(start, end - start));
    const UString& name = font ? font->family : list->fonts.empty() ? wanted : list->fonts.front().family;
    if (!pieces.empty() && pieces.back().family == name)
      pieces.back().end = end;
    else
      pieces.push_back({start, end, name, GetScale(*list, font)});
    start = end;
  }
  return pieces;
}

} // namespace HSL
