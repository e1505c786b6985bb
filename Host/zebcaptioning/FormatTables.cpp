#include "zebcaptioning/FormatTables.h"

#include <algorithm>
#include <iterator>

namespace zebcaptioning::tables {

namespace {

constexpr NamedColor kBlack{0, 0, 0, "$$$/Vidra/Captioning/Color/Black=Black"};
constexpr NamedColor kRed{1, 0, 0, "$$$/Vidra/Captioning/Color/Red=Red"};
constexpr NamedColor kGreen{0, 1, 0, "$$$/Vidra/Captioning/Color/Green=Green"};
constexpr NamedColor kYellow{1, 1, 0, "$$$/Vidra/Captioning/Color/Yellow=Yellow"};
constexpr NamedColor kBlue{0, 0, 1, "$$$/Vidra/Captioning/Color/Blue=Blue"};
constexpr NamedColor kMagenta{1, 0, 1, "$$$/Vidra/Captioning/Color/Magenta=Magenta"};
constexpr NamedColor kCyan{0, 1, 1, "$$$/Vidra/Captioning/Color/Cyan=Cyan"};
constexpr NamedColor kWhite{1, 1, 1, "$$$/Vidra/Captioning/Color/White=White"};

constexpr NamedColor kEightColors[] = {kBlack, kRed, kGreen, kYellow, kBlue, kMagenta, kCyan, kWhite};
// At level 1 no code makes characters black: 0/0 is "alpha black" from level 2.5 on only.
constexpr std::span<const NamedColor> kSevenColors{kEightColors + 1, 7};

constexpr float kLevels[] = {0.0F, 1.0F / 3.0F, 2.0F / 3.0F, 1.0F};

// Two bits for each channel: 64 colours.
constexpr std::array<NamedColor, 64> MakeSixtyFourColors() {
  std::array<NamedColor, 64> colors{};
  for (std::size_t i = 0; i < colors.size(); ++i) {
    colors[i] = {kLevels[i >> 4], kLevels[i >> 2 & 3], kLevels[i & 3], nullptr};
    for (const NamedColor& named : kEightColors) {
      if (named.red == colors[i].red && named.green == colors[i].green && named.blue == colors[i].blue)
        colors[i].name = named.name;
    }
  }
  return colors;
}
constexpr std::array<NamedColor, 64> kSixtyFourColors = MakeSixtyFourColors();

constexpr float kSolidOnly[] = {kOpacity_Solid};
constexpr float kThreeOpacities[] = {kOpacity_Transparent, kOpacity_Half, kOpacity_Solid};

constexpr CaptionType kTypesOf608[] = {kCaptionType_PopOn, kCaptionType_PaintOn, kCaptionType_RollUp2,
                                       kCaptionType_RollUp3, kCaptionType_RollUp4};
constexpr CaptionType kTypesOf708[] = {kCaptionType_PopOn, kCaptionType_PaintOn, kCaptionType_RollUp};

// Colours, italics and underline come with preamble address codes and mid-row codes; black characters and backgrounds
// with the optional background attribute codes, each opaque, semi-transparent or none.
FormatFacts MakeCEA608() {
  FormatFacts facts;
  facts.family = FormatFamily::CEA608;
  facts.types = kTypesOf608;
  facts.italic = true;
  facts.underline = true;
  facts.colors[CaptioningColor::kColorType_Text] = {kEightColors, kSolidOnly};
  facts.colors[CaptioningColor::kColorType_Background] = {kEightColors, kThreeOpacities};
  return facts;
}

// A window has at most 15 rows of 42 characters, 32 in a 4:3 picture. Flashing is an opacity there which nothing else
// knows, and is left out.
FormatFacts MakeCEA708() {
  FormatFacts facts;
  facts.family = FormatFamily::CEA708;
  facts.columns = 42;
  facts.types = kTypesOf708;
  facts.italic = true;
  facts.underline = true;
  facts.genericFonts = true;
  facts.edges = true;
  facts.colors[CaptioningColor::kColorType_Text] = {kSixtyFourColors, kThreeOpacities};
  facts.colors[CaptioningColor::kColorType_Background] = {kSixtyFourColors, kThreeOpacities};
  facts.colors[CaptioningColor::kColorType_Edge] = {kSixtyFourColors, kThreeOpacities};
  return facts;
}

// Row 0 is the page header and row 24 belongs to the page's links, so that captions stand in rows 1 to 23. They are
// boxed, hence opaque; any colour that characters may have can be made the background.
FormatFacts MakeTeletext(FormatFamily family) {
  FormatFacts facts;
  facts.family = family;
  facts.rows = 24;
  facts.columns = 40;
  facts.standardColumns = 40;
  facts.topPosition = 1;
  facts.doubleHeight = true;
  facts.colors[CaptioningColor::kColorType_Text] = {kSevenColors, kSolidOnly};
  facts.colors[CaptioningColor::kColorType_Background] = {kEightColors, kSolidOnly};
  return facts;
}

// The vertical position counts from 1 to 23; it is stored from 0. Italics and underline have codes of their own next to
// Teletext's, and "unboxed" is no background.
FormatFacts MakeEbuN19() {
  static constexpr float kBoxedOrNot[] = {kOpacity_Transparent, kOpacity_Solid};
  FormatFacts facts;
  facts.family = FormatFamily::EbuN19;
  facts.rows = 23;
  facts.columns = 40;
  facts.standardColumns = 40;
  facts.italic = true;
  facts.underline = true;
  facts.doubleHeight = true;
  facts.colors[CaptioningColor::kColorType_Text] = {kEightColors, kSolidOnly};
  facts.colors[CaptioningColor::kColorType_Background] = {kEightColors, kBoxedOrNot};
  return facts;
}

FormatFacts MakeOpen() {
  FormatFacts facts;
  facts.family = FormatFamily::Open;
  facts.limited = false;
  facts.bold = true;
  facts.italic = true;
  facts.underline = true;
  facts.edges = true;
  return facts;
}

} // namespace

const FormatFacts& Find(FormatFamily family) {
  static const FormatFacts facts[] = {FormatFacts{}, MakeCEA608(),
                                      MakeCEA708(),  MakeTeletext(FormatFamily::Teletext),
                                      MakeEbuN19(),  MakeTeletext(FormatFamily::Australian),
                                      MakeOpen()};
  const auto found =
      std::find_if(std::begin(facts), std::end(facts), [family](const auto& entry) { return entry.family == family; });
  return found != std::end(facts) ? *found : facts[0];
}

const char* TypeName(CaptionType type) {
  switch (type) {
  case kCaptionType_PopOn:
    return "$$$/Vidra/Captioning/Type/PopOn=Pop-on";
  case kCaptionType_PaintOn:
    return "$$$/Vidra/Captioning/Type/PaintOn=Paint-on";
  case kCaptionType_RollUp2:
    return "$$$/Vidra/Captioning/Type/RollUp2=Roll-up 2 rows";
  case kCaptionType_RollUp3:
    return "$$$/Vidra/Captioning/Type/RollUp3=Roll-up 3 rows";
  case kCaptionType_RollUp4:
    return "$$$/Vidra/Captioning/Type/RollUp4=Roll-up 4 rows";
  case kCaptionType_RollUp:
    return "$$$/Vidra/Captioning/Type/RollUp=Roll-up";
  default:
    return nullptr;
  }
}

const char* OpacityName(float opacity) {
  if (opacity == kOpacity_Transparent)
    return "$$$/Vidra/Captioning/Opacity/Transparent=Transparent";
  if (opacity == kOpacity_Half)
    return "$$$/Vidra/Captioning/Opacity/SemiTransparent=Semi-transparent";
  return opacity == kOpacity_Solid ? "$$$/Vidra/Captioning/Opacity/Opaque=Opaque" : nullptr;
}

} // namespace zebcaptioning::tables
