#pragma once

#include <array>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "Captions/contracts/CaptioningColor.h"
#include "Captions/contracts/StreamFormat.h"
#include "Captions/contracts/TextSpanAttributes.h"

// What each stream format can hold, taken from its published standard: ANSI/CTA-608-E, ANSI/CTA-708-E, ETSI EN 300 706
// (level 1), EBU Tech 3264, and Teletext as Australian television carries it (Free TV OP-42 and OP-47).
namespace zebcaptioning {

enum class FormatFamily { None, CEA608, CEA708, Teletext, EbuN19, Australian, Open };

// Display types. Every format names its own out of these.
inline constexpr CaptionType kCaptionType_PopOn = 0;
inline constexpr CaptionType kCaptionType_PaintOn = 1;
inline constexpr CaptionType kCaptionType_RollUp2 = 2;
inline constexpr CaptionType kCaptionType_RollUp3 = 3;
inline constexpr CaptionType kCaptionType_RollUp4 = 4;
inline constexpr CaptionType kCaptionType_RollUp = 5; // as many rows as the window has

inline constexpr float kFontSize_Normal = 18.0F;
inline constexpr float kFontSize_Double = 36.0F;
// Above this a size counts as double height.
inline constexpr float kFontSize_DoubleAbove = 24.0F;

inline constexpr float kOpacity_Transparent = 0.0F;
inline constexpr float kOpacity_Half = 0.5F;
inline constexpr float kOpacity_Solid = 1.0F;

struct NamedColor {
  float red;
  float green;
  float blue;
  const char* name; // localiser's key; null for one that is named by its levels
};

struct ColorFacts {
  std::span<const NamedColor> colors; // empty: any colour if the format limits none, else this type does not exist
  std::span<const float> opacities;   // ascending
};

struct FormatFacts {
  FormatFamily family = FormatFamily::None;
  int rows = 15;
  int columns = 32;
  int standardColumns = 32; // in a 4:3 picture
  int topPosition = 0;      // first row that may be used; the last is rows - 1
  std::span<const CaptionType> types;
  bool limited = true; // colours, families and sizes are limited; false for open captions
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool doubleHeight = false;
  bool genericFonts = false; // the fonts are the generic ones; without it, and limited, there is one font
  bool edges = false;
  std::array<ColorFacts, 3> colors; // by CaptioningColor::ColorType
};

// Family None for a number that names no format.
const FormatFacts& GetFormatFacts(StreamFormat format);
const FormatFacts& GetFormatFacts(FormatFamily family);

// The columns or rows to reckon with: those given or, where these are not positive, the format's own.
int GridColumns(StreamFormat format, int columns);
int GridRows(StreamFormat format, int rows);

bool IsLegalCaptionType(StreamFormat format, CaptionType type);
// What a caption gets that has none of the format's: the first one. kCaptionType_None for a format without types.
CaptionType GetDefaultCaptionType(StreamFormat format);

// Puts the colour exactly on the legal one that it names, with alpha among the legal opacities (a colour without alpha
// is "none", all zero, where the format can show none). False, and the colour as it was, if it is not legal. Edges may
// always be none.
bool SnapToLegalColor(StreamFormat format, CaptioningColor::ColorType type, CaptioningColor& color);
bool SnapToLegalOpacity(StreamFormat format, CaptioningColor::ColorType type, float& opacity);
// The same for a colour that takes the place of one that is there, which need not be legal itself: its opacity may stay
// beside a legal red, green and blue, and these beside a legal opacity; the opacity that is there stays, or the nearest
// legal one takes the place of none, where the new one is neither. None is legal where a legal colour is none. An edge
// may come solid.
bool SnapToLegalColorBeside(StreamFormat format, CaptioningColor::ColorType type, const CaptioningColor& present,
                            CaptioningColor& color);
// The nearest to the eye (CIE 1976 L*a*b* under D65) that the format allows, with the nearest opacity.
CaptioningColor NearestLegalColor(StreamFormat format, CaptioningColor::ColorType type, const CaptioningColor& color);

// True if the attributes can be stored in the format as they are, one by one.
bool IsLegalFamily(StreamFormat format, const zebcore::UString& family);
bool IsLegalSize(StreamFormat format, float size);

// The nearest attributes that the format allows; a number that names no format changes nothing.
TextSpanAttributes NearestLegalSpan(StreamFormat format, const TextSpanAttributes& span);

// In place of a format's own facts, for people who try the program out on other ones. What is not given stays.
struct FactsOverride {
  std::optional<std::vector<std::pair<CaptionType, zebcore::UString>>> types;
  std::array<std::optional<std::map<CaptioningColor, zebcore::UString>>, 3> colors;
  std::array<std::optional<std::map<float, zebcore::UString>>, 3> opacities;
};
// Without a value the format's own facts are back.
void OverrideFacts(StreamFormat format, std::optional<FactsOverride> facts);

} // namespace zebcaptioning
