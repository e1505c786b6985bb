#pragma once

#include <compare>
#include <memory>

#include "Captions/contracts/CaptioningColor.h"
#include "zebcore/UString.h"

namespace zebcaptioning {

// What a run of characters looks like. A value; equal values are stored once (see SharedSpan).
class TextSpanAttributes {
 public:
  // Style names of the four faces that every text family has.
  static const zebcore::UString kFontStyleString_Regular;
  static const zebcore::UString kFontStyleString_Italic;
  static const zebcore::UString kFontStyleString_Bold;
  static const zebcore::UString kFontStyleString_BoldItalic;

  // "default", "monospace", "sansSerif", "serif", "monospaceSansSerif", "monospaceSerif", "proportionalSansSerif",
  // "proportionalSerif" (the generic families of W3C TTML2 10.2.20), and the seven font tags of CEA-708.
  static bool IsGenericFontName(const zebcore::UString& family);
  // The installed family that stands for a generic one, found once and remembered; any other name is returned as it is.
  static zebcore::UString GetGenericUIFontName(const zebcore::UString& family);

  friend bool operator==(const TextSpanAttributes&, const TextSpanAttributes&) = default;

  zebcore::UString family = u"default";
  float size = 18.0F; // points on open captions; 18 normal and 36 double height on closed ones
  bool bold = false;
  bool italic = false;
  bool underline = false;
  CaptioningColor textColor{1.0F, 1.0F, 1.0F, 1.0F};
  CaptioningColor backgroundColor{0.0F, 0.0F, 0.0F, 1.0F};
  CaptioningColor edgeColor{0.0F, 0.0F, 0.0F, 0.0F};
  float edgeWidth = 0.0F; // points
};

// Immutable and interned: equal attributes share one object, which goes with its last user.
using SharedSpan = std::shared_ptr<const TextSpanAttributes>;
SharedSpan Share(const TextSpanAttributes& attributes);

} // namespace zebcaptioning
