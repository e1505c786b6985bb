#include "TD/TitlerFontList.h"

#include <memory>
#include <optional>
#include <set>
#include <string_view>

#include <fontconfig/fontconfig.h>
#include <unicode/coll.h>
#include <unicode/locid.h>

#include "TD/FaceNames.h"

namespace TD {

namespace {

template <class T, void (*Free)(T*)> struct Freer {
  void operator()(T* object) const { Free(object); }
};
using PatternPtr = std::unique_ptr<FcPattern, Freer<FcPattern, FcPatternDestroy>>;
using ObjectSetPtr = std::unique_ptr<FcObjectSet, Freer<FcObjectSet, FcObjectSetDestroy>>;
using FontSetPtr = std::unique_ptr<FcFontSet, Freer<FcFontSet, FcFontSetDestroy>>;

struct FontList {
  TitlerFontList list;
  // What the list points at.
  std::vector<std::unique_ptr<std::vector<CaptionFontRecord>>> records;
  std::vector<std::unique_ptr<std::vector<const CaptionFontRecord*>>> faces;
};

// Keys that are ordered as people of this machine's language sort names; equal ones by the name itself.
class SortKeys {
 public:
  SortKeys() {
    UErrorCode status = U_ZERO_ERROR;
    // A machine without a language sorts by code points, which nobody reads as an order of names.
    const icu::Locale machine;
    const bool hasLanguage = std::string_view(machine.getVariant()) != "POSIX";
    mCollator.reset(icu::Collator::createInstance(hasLanguage ? machine : icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
      mCollator.reset();
  }
  UString Of(const UString& name) const {
    UString key;
    if (mCollator) {
      const icu::UnicodeString text(name.data(), static_cast<std::int32_t>(name.size()));
      std::vector<std::uint8_t> bytes(static_cast<std::size_t>(mCollator->getSortKey(text, nullptr, 0)));
      mCollator->getSortKey(text, bytes.data(), static_cast<std::int32_t>(bytes.size()));
      key.assign(bytes.begin(), bytes.end());
    }
    return key + u'\0' + name;
  }

 private:
  std::unique_ptr<icu::Collator> mCollator;
};

std::string StringOf(const FcPattern* font, const char* object, int index) {
  FcChar8* text = nullptr;
  if (FcPatternGetString(font, object, index, &text) != FcResultMatch)
    return {};
  return reinterpret_cast<const char*>(text);
}

// The string in English, under which a font is known everywhere; without one the first.
std::string EnglishOf(const FcPattern* font, const char* object, const char* languages) {
  for (int i = 0;; ++i) {
    const std::string language = StringOf(font, languages, i);
    if (language.empty())
      return StringOf(font, object, 0);
    if (language == "en" || language.starts_with("en-"))
      return StringOf(font, object, i);
  }
}

// The number, or the start of its range.
double NumberOf(const FcPattern* font, const char* object, double otherwise) {
  double number = otherwise;
  if (FcPatternGetDouble(font, object, 0, &number) == FcResultMatch)
    return number;
  FcRange* range = nullptr;
  double end = 0;
  if (FcPatternGetRange(font, object, 0, &range) != FcResultMatch || !FcRangeGetDouble(range, &number, &end))
    return otherwise;
  return number;
}

bool FlagOf(const FcPattern* font, const char* object) {
  FcBool flag = FcFalse;
  return FcPatternGetBool(font, object, 0, &flag) == FcResultMatch && flag == FcTrue;
}

FaceFacts FactsOf(const FcPattern* font) {
  FaceFacts facts;
  facts.style = EnglishOf(font, FC_STYLE, FC_STYLELANG);
  facts.fullName = EnglishOf(font, FC_FULLNAME, FC_FULLNAMELANG);
  facts.weight = NumberOf(font, FC_WEIGHT, FC_WEIGHT_REGULAR);
  facts.slant = static_cast<int>(NumberOf(font, FC_SLANT, FC_SLANT_ROMAN));
  facts.width = NumberOf(font, FC_WIDTH, FC_WIDTH_NORMAL);
  facts.color = FlagOf(font, FC_COLOR);
  return facts;
}

using Families = std::map<std::string, std::vector<FaceFacts>>;

// All scalable faces by family. A font of variable design comes as its named instances, or as itself without any.
Families ReadMachine() {
  const PatternPtr pattern(FcPatternCreate());
  const ObjectSetPtr objects(FcObjectSetBuild(FC_FAMILY, FC_FAMILYLANG, FC_STYLE, FC_STYLELANG, FC_FULLNAME,
                                              FC_FULLNAMELANG, FC_WEIGHT, FC_SLANT, FC_WIDTH, FC_COLOR, FC_VARIABLE,
                                              nullptr));
  if (!pattern || !objects)
    return {};
  FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
  const FontSetPtr fonts(FcFontList(nullptr, pattern.get(), objects.get()));
  Families families;
  Families variable;
  for (int i = 0; fonts && i < fonts->nfont; ++i) {
    const FcPattern* font = fonts->fonts[i];
    const std::string family = EnglishOf(font, FC_FAMILY, FC_FAMILYLANG);
    const bool isHidden = family.empty() || family.front() == '.';
    if (!isHidden)
      (FlagOf(font, FC_VARIABLE) ? variable : families)[family].push_back(FactsOf(font));
  }
  families.merge(variable);
  return families;
}

void Add(FontList& fonts, UString key, const UString& name, std::vector<CaptionFontRecord> records) {
  auto kept = std::make_unique<std::vector<CaptionFontRecord>>(std::move(records));
  auto faces = std::make_unique<std::vector<const CaptionFontRecord*>>();
  for (const CaptionFontRecord& record : *kept)
    faces->push_back(&record);
  const bool isNew = fonts.list.emplace(std::move(key), TitlerFontFamily{0, name, faces.get()}).second;
  if (!isNew)
    return;
  fonts.records.push_back(std::move(kept));
  fonts.faces.push_back(std::move(faces));
}

void Number(FontList& fonts) {
  int id = 0;
  for (auto& [key, family] : fonts.list)
    family.id = ++id;
}

FontList ListMachine() {
  FontList fonts;
  const SortKeys keys;
  for (auto& [name, faces] : ReadMachine())
    Add(fonts, keys.Of(zebcore::FromUTF8(name)), zebcore::FromUTF8(name), MakeRecords(std::move(faces)));
  Number(fonts);
  return fonts;
}

std::optional<FontList>& Set() {
  static std::optional<FontList> fonts;
  return fonts;
}

// A panel goes on with the faces of the family that it shows.
void KeepWhatWasListed() {
  static std::vector<FontList> kept;
  if (Set())
    kept.push_back(std::move(*Set()));
  Set().reset();
}

} // namespace

const TitlerFontList& GetTitlerFontList() {
  if (Set())
    return Set()->list;
  static const FontList machine = ListMachine();
  return machine.list;
}

void SetTitlerFontList(std::vector<FontFamilyDescription> families) {
  KeepWhatWasListed();
  if (families.empty())
    return;
  Set().emplace();
  const SortKeys keys;
  for (FontFamilyDescription& family : families)
    Add(*Set(), keys.Of(family.name), family.name, std::move(family.faces));
  Number(*Set());
}

void SetTitlerFontListAsGiven(std::vector<FontFamilyDescription> families) {
  KeepWhatWasListed();
  Set().emplace();
  std::set<UString> names;
  for (FontFamilyDescription& family : families) {
    const std::size_t place = names.size();
    if (names.insert(family.name).second)
      Add(*Set(), {static_cast<char16_t>(place >> 16), static_cast<char16_t>(place)}, family.name,
          std::move(family.faces));
  }
  Number(*Set());
}

} // namespace TD
