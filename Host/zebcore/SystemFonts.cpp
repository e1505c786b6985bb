#include "zebcore/SystemFonts.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include <fontconfig/fontconfig.h>

#include "zebcore/Trace.h"
#include "zebcore/UString.h"

namespace zebcore {

namespace {

struct FontObject {
  std::string family;
};

struct Handles {
  std::mutex mutex;
  std::set<FontObject*> open;
};

Handles& TheHandles() {
  static auto* const handles = new Handles;
  return *handles;
}

std::atomic<FontProbe> gProbe{nullptr};

std::string FamilyToUTF8(const wchar_t* family) {
  if (!family)
    return {};
  UString text;
  for (; *family != 0; ++family) {
    const auto c = static_cast<char32_t>(*family);
    if (c >= 0x10000 && c <= 0x10ffff) {
      text.push_back(static_cast<char16_t>(0xd7c0 + (c >> 10)));
      text.push_back(static_cast<char16_t>(0xdc00 + (c & 0x3ff)));
    } else {
      text.push_back(c > 0x10ffff ? u'\xfffd' : static_cast<char16_t>(c));
    }
  }
  return ToUTF8(text);
}

template <class T, void (*Free)(T*)> struct Freer {
  void operator()(T* object) const { Free(object); }
};
using PatternPtr = std::unique_ptr<FcPattern, Freer<FcPattern, FcPatternDestroy>>;
using ObjectSetPtr = std::unique_ptr<FcObjectSet, Freer<FcObjectSet, FcObjectSetDestroy>>;
using FontSetPtr = std::unique_ptr<FcFontSet, Freer<FcFontSet, FcFontSetDestroy>>;

bool HasFamily(const FcPattern* font, const std::string& family) {
  FcChar8* name = nullptr;
  for (int i = 0; FcPatternGetString(font, FC_FAMILY, i, &name) == FcResultMatch; ++i)
    if (family == reinterpret_cast<const char*>(name))
      return true;
  return false;
}

// The font configuration compares families loosely, so that its answer is looked through once more.
bool IsInstalled(const std::string& family) {
  const PatternPtr pattern(FcPatternCreate());
  const ObjectSetPtr objects(FcObjectSetBuild(FC_FAMILY, nullptr));
  if (!pattern || !objects)
    return false;
  FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  const FontSetPtr fonts(FcFontList(nullptr, pattern.get(), objects.get()));
  if (!fonts)
    return false;
  for (int i = 0; i < fonts->nfont; ++i)
    if (HasFamily(fonts->fonts[i], family))
      return true;
  return false;
}

} // namespace

void* CreateFontW(int height, int width, int escapement, int orientation, int weight, unsigned italic,
                  unsigned underline, unsigned strikeOut, unsigned charSet, unsigned outputPrecision,
                  unsigned clipPrecision, unsigned quality, unsigned pitchAndFamily, const wchar_t* family) {
  std::string name = FamilyToUTF8(family);
  if (trace::IsOn())
    trace::Record("CreateFontW", {{"height", height},
                                  {"width", width},
                                  {"escapement", escapement},
                                  {"orientation", orientation},
                                  {"weight", weight},
                                  {"italic", italic},
                                  {"underline", underline},
                                  {"strike_out", strikeOut},
                                  {"char_set", charSet},
                                  {"output_precision", outputPrecision},
                                  {"clip_precision", clipPrecision},
                                  {"quality", quality},
                                  {"pitch_and_family", pitchAndFamily},
                                  {"family", name}});
  if (name.empty())
    return nullptr;
  const FontProbe probe = gProbe.load();
  if (!(probe ? probe(family) : IsInstalled(name)))
    return nullptr;
  auto font = std::make_unique<FontObject>(FontObject{std::move(name)});
  Handles& handles = TheHandles();
  std::lock_guard lock(handles.mutex);
  handles.open.insert(font.get());
  return font.release();
}

bool DeleteObject(void* handle) {
  std::unique_ptr<FontObject> font;
  {
    Handles& handles = TheHandles();
    std::lock_guard lock(handles.mutex);
    const auto found = handles.open.find(static_cast<FontObject*>(handle));
    if (found != handles.open.end()) {
      font.reset(*found);
      handles.open.erase(found);
    }
  }
  if (trace::IsOn())
    trace::Record("DeleteObject", {{"family", font ? nlohmann::json(font->family) : nlohmann::json()}});
  return font != nullptr;
}

void SetFontProbe(FontProbe probe) {
  gProbe.store(probe);
}

} // namespace zebcore
