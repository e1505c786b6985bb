#include "zebcaptioning/GenericFonts.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <mutex>

#include <fontconfig/fontconfig.h>

#include "Captions/contracts/TextSpanAttributes.h"

namespace zebcaptioning {

using zebcore::UString;

namespace {

struct GenericFont {
  const char16_t* name;
  std::array<const char*, 3> wanted; // families for the font configuration, the best first
};

// Four of the font tags of CEA-708 are the last four of the generic families, under their names there; the other three
// follow.
constexpr GenericFont kGenericFonts[] = {{u"default", {"sans-serif", nullptr, nullptr}},
                                         {u"monospace", {"monospace", nullptr, nullptr}},
                                         {u"sansSerif", {"sans-serif", nullptr, nullptr}},
                                         {u"serif", {"serif", nullptr, nullptr}},
                                         {u"monospaceSansSerif", {"monospace", nullptr, nullptr}},
                                         {u"monospaceSerif", {"Courier New", "Courier", "monospace"}},
                                         {u"proportionalSansSerif", {"sans-serif", nullptr, nullptr}},
                                         {u"proportionalSerif", {"serif", nullptr, nullptr}},
                                         {u"casual", {"Comic Neue", "casual", "sans-serif"}},
                                         {u"cursive", {"cursive", "sans-serif", nullptr}},
                                         {u"smallCapitals", {"sans-serif", nullptr, nullptr}}};

const GenericFont* FindGeneric(const UString& family) {
  const auto found = std::find_if(std::begin(kGenericFonts), std::end(kGenericFonts),
                                  [&family](const GenericFont& font) { return family == font.name; });
  return found != std::end(kGenericFonts) ? found : nullptr;
}

struct PatternCloser {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternCloser>;

// Empty on a machine without fonts.
UString AskFontConfiguration(const GenericFont& font) {
  const Pattern wanted(FcPatternCreate());
  for (const char* family : font.wanted) {
    if (family)
      FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  }
  FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
  FcDefaultSubstitute(wanted.get());
  FcResult result = FcResultNoMatch;
  const Pattern match(FcFontMatch(nullptr, wanted.get(), &result));
  FcChar8* family = nullptr;
  if (!match || FcPatternGetString(match.get(), FC_FAMILY, 0, &family) != FcResultMatch)
    return {};
  return zebcore::FromUTF8(reinterpret_cast<const char*>(family));
}

struct KnownNames {
  std::mutex mutex; // captions are drawn and measured by workers too
  std::map<UString, UString> replaced;
  std::map<UString, UString> asked;
};

KnownNames& Known() {
  static KnownNames known;
  return known;
}

} // namespace

bool TextSpanAttributes::IsGenericFontName(const UString& family) {
  if (FindGeneric(family))
    return true;
  KnownNames& known = Known();
  const std::lock_guard lock(known.mutex);
  return known.replaced.count(family) > 0;
}

UString TextSpanAttributes::GetGenericUIFontName(const UString& family) {
  const GenericFont* font = FindGeneric(family);
  KnownNames& known = Known();
  const std::lock_guard lock(known.mutex);
  if (const auto found = known.replaced.find(family); found != known.replaced.end())
    return found->second;
  if (!font)
    return family;
  auto found = known.asked.find(family);
  if (found == known.asked.end())
    found = known.asked.emplace(family, AskFontConfiguration(*font)).first;
  return found->second.empty() ? family : found->second;
}

void SetGenericUIFontNames(std::map<UString, UString> names) {
  KnownNames& known = Known();
  const std::lock_guard lock(known.mutex);
  known.replaced = std::move(names);
}

} // namespace zebcaptioning
