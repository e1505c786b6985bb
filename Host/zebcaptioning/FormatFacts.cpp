#include "zebcaptioning/FormatFacts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "zebcaptioning/FormatTables.h"
#include "zebcaptioning/StreamNumbers.h"
#include "zebcore/Localizer.h"

namespace zebcaptioning {

using zebcore::UString;

namespace {

// Colours and opacities that come back from eight bits, or from three printed digits, still name the legal one.
constexpr float kSnap = 1.0F / 250.0F;

bool IsNear(float a, float b) {
  return std::abs(a - b) <= kSnap;
}

UString Localize(const char* key) {
  return zebcore::config::Localizer::Get().Localize(key);
}

// With %1, %2, ... replaced by the numbers.
UString Localize(const char* key, std::initializer_list<int> numbers) {
  UString text = Localize(key);
  int place = 1;
  for (const int number : numbers) {
    const UString mark = {u'%', static_cast<char16_t>(u'0' + place++)};
    if (const auto found = text.find(mark); found != UString::npos)
      text.replace(found, mark.size(), zebcore::FromUTF8(std::to_string(number)));
  }
  return text;
}

std::map<StreamFormat, FactsOverride>& Overrides() {
  static std::map<StreamFormat, FactsOverride> overrides;
  return overrides;
}

const FactsOverride* FindOverride(StreamFormat format) {
  const auto found = Overrides().find(format);
  return found != Overrides().end() ? &found->second : nullptr;
}

UString NameColor(const NamedColor& color) {
  if (color.name)
    return Localize(color.name);
  const auto level = [](float channel) { return static_cast<int>(std::lround(channel * 3)); };
  return Localize("$$$/Vidra/Captioning/Color/Levels=Red %1/3, green %2/3, blue %3/3",
                  {level(color.red), level(color.green), level(color.blue)});
}

struct Palette {
  std::vector<CaptioningColor> colors;
  std::vector<float> opacities;
};

Palette GetPalette(StreamFormat format, CaptioningColor::ColorType type) {
  Palette palette;
  const ColorFacts& facts = GetFormatFacts(format).colors[type];
  const FactsOverride* replaced = FindOverride(format);
  if (replaced && replaced->colors[type]) {
    for (const auto& [color, name] : *replaced->colors[type])
      palette.colors.push_back(color);
  } else {
    for (const NamedColor& color : facts.colors)
      palette.colors.emplace_back(color.red, color.green, color.blue, kOpacity_Solid);
  }
  if (replaced && replaced->opacities[type]) {
    for (const auto& [opacity, name] : *replaced->opacities[type])
      palette.opacities.push_back(opacity);
  } else {
    palette.opacities.assign(facts.opacities.begin(), facts.opacities.end());
  }
  return palette;
}

// Any colour goes: open captions, unless their facts were replaced.
bool IsUnlimited(StreamFormat format, CaptioningColor::ColorType type) {
  const FactsOverride* replaced = FindOverride(format);
  return !GetFormatFacts(format).limited && !(replaced && replaced->colors[type]);
}

bool IsProperColor(const CaptioningColor& color) {
  const auto inRange = [](float channel) { return channel >= 0.0F && channel <= 1.0F; };
  return inRange(color.red) && inRange(color.green) && inRange(color.blue) && inRange(color.alpha);
}

struct Lab {
  float lightness;
  float a;
  float b;
};

// sRGB (IEC 61966-2-1) to L*a*b* with the white point D65.
Lab ToLab(const CaptioningColor& color) {
  const auto linear = [](float channel) {
    return channel <= 0.04045F ? channel / 12.92F : std::pow((channel + 0.055F) / 1.055F, 2.4F);
  };
  const float red = linear(color.red);
  const float green = linear(color.green);
  const float blue = linear(color.blue);
  const auto curve = [](float value) {
    return value > 0.008856F ? std::cbrt(value) : (903.3F * value + 16.0F) / 116.0F;
  };
  const float x = curve((0.4124F * red + 0.3576F * green + 0.1805F * blue) / 0.9505F);
  const float y = curve(0.2126F * red + 0.7152F * green + 0.0722F * blue);
  const float z = curve((0.0193F * red + 0.1192F * green + 0.9505F * blue) / 1.089F);
  return {116.0F * y - 16.0F, 500.0F * (x - y), 200.0F * (y - z)};
}

float Distance(const Lab& a, const Lab& b) {
  return std::hypot(a.lightness - b.lightness, a.a - b.a, a.b - b.b);
}

float NearestOpacity(const std::vector<float>& opacities, float opacity) {
  if (opacities.empty())
    return kOpacity_Solid;
  return *std::min_element(opacities.begin(), opacities.end(),
                           [opacity](float a, float b) { return std::abs(a - opacity) < std::abs(b - opacity); });
}

} // namespace

const FormatFacts& GetFormatFacts(FormatFamily family) {
  return tables::Find(family);
}

const FormatFacts& GetFormatFacts(StreamFormat format) {
  const auto number = ReadStreamNumber(format);
  return tables::Find(number ? number->family : FormatFamily::None);
}

int GridColumns(StreamFormat format, int columns) {
  return columns > 0 ? columns : GetCaptionColumns(format, false);
}
int GridRows(StreamFormat format, int rows) {
  return rows > 0 ? rows : GetCaptionRows(format);
}

bool IsOpenCaptions(StreamFormat format) {
  return GetFormatFacts(format).family == FormatFamily::Open;
}
bool IsTeletext(StreamFormat format) {
  return GetFormatFacts(format).family == FormatFamily::Teletext;
}
bool IsAustralianCaption(StreamFormat format) {
  return GetFormatFacts(format).family == FormatFamily::Australian;
}
bool IsEbuN19(StreamFormat format) {
  return GetFormatFacts(format).family == FormatFamily::EbuN19;
}

int GetCaptionRows(StreamFormat format) {
  return GetFormatFacts(format).rows;
}
int GetCaptionColumns(StreamFormat format, bool standardAspect) {
  const FormatFacts& facts = GetFormatFacts(format);
  return standardAspect ? facts.standardColumns : facts.columns;
}
int GetTopPosition(StreamFormat format) {
  return GetFormatFacts(format).topPosition;
}

UString GetFullStreamFormatLabel(StreamFormat format) {
  const auto number = ReadStreamNumber(format);
  if (!number)
    return {};
  switch (number->family) {
  case FormatFamily::CEA608:
    return number->channel == 0 ? Localize("$$$/Vidra/Captioning/Label/CEA608=CEA-608")
                                : Localize("$$$/Vidra/Captioning/Label/CEA608Channel=CEA-608 CC%1", {number->channel});
  case FormatFamily::CEA708:
    return Localize("$$$/Vidra/Captioning/Label/CEA708Service=CEA-708 service %1", {number->channel});
  case FormatFamily::Teletext:
    return Localize("$$$/Vidra/Captioning/Label/TeletextPage=Teletext page %1", {GetTeletextPage(format)});
  case FormatFamily::EbuN19:
    return Localize("$$$/Vidra/Captioning/Label/EbuN19Track=EBU N19 track %1", {number->channel});
  case FormatFamily::Australian:
    return Localize("$$$/Vidra/Captioning/Label/AustralianPage=Australian page %1", {GetTeletextPage(format)});
  case FormatFamily::Open:
    return Localize("$$$/Vidra/Captioning/Label/OpenTrack=Open captions %1", {number->channel});
  case FormatFamily::None:
    break;
  }
  return {};
}

bool GetSupportedCaptionTypes(StreamFormat format, std::set<CaptionType>& types) {
  types.clear();
  const FactsOverride* replaced = FindOverride(format);
  if (replaced && replaced->types) {
    for (const auto& [type, name] : *replaced->types)
      types.insert(type);
  } else {
    const FormatFacts& facts = GetFormatFacts(format);
    types.insert(facts.types.begin(), facts.types.end());
  }
  return !types.empty();
}

UString GetCaptionTypeDescription(CaptionType type) {
  for (const auto& [format, replaced] : Overrides()) {
    if (!replaced.types)
      continue;
    for (const auto& [replacedType, name] : *replaced.types) {
      if (replacedType == type)
        return name;
    }
  }
  const char* name = tables::TypeName(type);
  return name ? Localize(name) : UString();
}

bool IsLegalCaptionType(StreamFormat format, CaptionType type) {
  std::set<CaptionType> types;
  return GetSupportedCaptionTypes(format, types) && types.contains(type);
}

CaptionType GetDefaultCaptionType(StreamFormat format) {
  std::set<CaptionType> types;
  return GetSupportedCaptionTypes(format, types) ? *types.begin() : kCaptionType_None;
}

bool CaptioningColor::EnumerateLegalColors(StreamFormat format, ColorType type,
                                           std::map<CaptioningColor, UString>& colors,
                                           std::map<float, UString>& opacities) {
  colors.clear();
  opacities.clear();
  if (type < kColorType_Text || type > kColorType_Edge)
    return false;
  const ColorFacts& facts = GetFormatFacts(format).colors[type];
  for (const NamedColor& color : facts.colors)
    colors.emplace(CaptioningColor(color.red, color.green, color.blue, kOpacity_Solid), NameColor(color));
  for (const float opacity : facts.opacities)
    opacities.emplace(opacity, Localize(tables::OpacityName(opacity)));
  if (const FactsOverride* replaced = FindOverride(format)) {
    if (replaced->colors[type])
      colors = *replaced->colors[type];
    if (replaced->opacities[type])
      opacities = *replaced->opacities[type];
  }
  return !colors.empty() || !opacities.empty();
}

bool SnapToLegalOpacity(StreamFormat format, CaptioningColor::ColorType type, float& opacity) {
  if (IsUnlimited(format, type))
    return opacity >= 0.0F && opacity <= 1.0F;
  for (const float legal : GetPalette(format, type).opacities) {
    if (IsNear(legal, opacity)) {
      opacity = legal;
      return true;
    }
  }
  return false;
}

bool SnapToLegalColor(StreamFormat format, CaptioningColor::ColorType type, CaptioningColor& color) {
  if (!IsProperColor(color))
    return false;
  if (IsUnlimited(format, type))
    return true;
  const Palette palette = GetPalette(format, type);
  if (palette.colors.empty())
    return false;
  float alpha = color.alpha;
  const bool hasLegalAlpha = SnapToLegalOpacity(format, type, alpha);
  if (color.IsTransparent() && (hasLegalAlpha || type == CaptioningColor::kColorType_Edge)) {
    color = CaptioningColor();
    return true;
  }
  for (const CaptioningColor& legal : palette.colors) {
    if (!IsNear(legal.red, color.red) || !IsNear(legal.green, color.green) || !IsNear(legal.blue, color.blue))
      continue;
    if (!hasLegalAlpha && !IsNear(legal.alpha, color.alpha))
      continue;
    color = {legal.red, legal.green, legal.blue, hasLegalAlpha ? alpha : legal.alpha};
    return true;
  }
  return false;
}

bool SnapToLegalColorBeside(StreamFormat format, CaptioningColor::ColorType type, const CaptioningColor& present,
                            CaptioningColor& color) {
  if (!IsProperColor(color) || IsUnlimited(format, type))
    return false;
  const Palette palette = GetPalette(format, type);
  if (palette.colors.empty())
    return false;
  if (color.IsTransparent() && std::any_of(palette.colors.begin(), palette.colors.end(),
                                           [](const CaptioningColor& legal) { return legal.IsTransparent(); })) {
    color = CaptioningColor();
    return true;
  }
  float alpha = color.alpha;
  const bool isNewEdge = type == CaptioningColor::kColorType_Edge && IsNear(alpha, kOpacity_Solid);
  const bool mayStay = SnapToLegalOpacity(format, type, alpha) || IsNear(alpha, present.alpha) || isNewEdge;
  if (!mayStay && color.IsTransparent())
    return false;
  if (!mayStay)
    alpha = present.IsTransparent() ? NearestOpacity(palette.opacities, alpha) : present.alpha;
  color.alpha = alpha;
  const auto hasHueOf = [&color](const CaptioningColor& other) {
    return IsNear(other.red, color.red) && IsNear(other.green, color.green) && IsNear(other.blue, color.blue);
  };
  return hasHueOf(present) || std::any_of(palette.colors.begin(), palette.colors.end(), hasHueOf);
}

CaptioningColor NearestLegalColor(StreamFormat format, CaptioningColor::ColorType type, const CaptioningColor& color) {
  const auto clamp = [](float channel) { return channel > 0.0F ? std::min(channel, 1.0F) : 0.0F; };
  CaptioningColor nearest{clamp(color.red), clamp(color.green), clamp(color.blue), clamp(color.alpha)};
  if (SnapToLegalColor(format, type, nearest))
    return nearest;
  const Palette palette = GetPalette(format, type);
  if (palette.colors.empty())
    return {};
  nearest.alpha = NearestOpacity(palette.opacities, nearest.alpha);
  if (nearest.IsTransparent())
    return {};
  const Lab wanted = ToLab(nearest);
  float best = std::numeric_limits<float>::max();
  CaptioningColor found = nearest;
  for (const CaptioningColor& legal : palette.colors) {
    if (const float distance = Distance(wanted, ToLab(legal)); distance < best) {
      best = distance;
      found = {legal.red, legal.green, legal.blue, nearest.alpha};
    }
  }
  return found;
}

bool IsLegalFamily(StreamFormat format, const UString& family) {
  const FormatFacts& facts = GetFormatFacts(format);
  if (!facts.limited)
    return !family.empty();
  return facts.genericFonts ? TextSpanAttributes::IsGenericFontName(family) : family == TextSpanAttributes().family;
}

bool IsLegalSize(StreamFormat format, float size) {
  const FormatFacts& facts = GetFormatFacts(format);
  if (!facts.limited)
    return std::isfinite(size) && size > 0.0F;
  return size == kFontSize_Normal || (size == kFontSize_Double && facts.doubleHeight);
}

TextSpanAttributes NearestLegalSpan(StreamFormat format, const TextSpanAttributes& span) {
  const FormatFacts& facts = GetFormatFacts(format);
  if (facts.family == FormatFamily::None)
    return span;
  TextSpanAttributes legal = span;
  if (!IsLegalFamily(format, span.family))
    legal.family = TextSpanAttributes().family;
  if (!IsLegalSize(format, span.size))
    legal.size = facts.doubleHeight && span.size > kFontSize_DoubleAbove ? kFontSize_Double : kFontSize_Normal;
  legal.bold = span.bold && facts.bold;
  legal.italic = span.italic && facts.italic;
  legal.underline = span.underline && facts.underline;
  legal.textColor = NearestLegalColor(format, CaptioningColor::kColorType_Text, span.textColor);
  legal.backgroundColor = NearestLegalColor(format, CaptioningColor::kColorType_Background, span.backgroundColor);
  legal.edgeColor = NearestLegalColor(format, CaptioningColor::kColorType_Edge, span.edgeColor);
  if (!facts.edges || !std::isfinite(span.edgeWidth) || span.edgeWidth < 0.0F)
    legal.edgeWidth = 0.0F;
  return legal;
}

void OverrideFacts(StreamFormat format, std::optional<FactsOverride> facts) {
  if (facts)
    Overrides()[format] = std::move(*facts);
  else
    Overrides().erase(format);
}

} // namespace zebcaptioning
