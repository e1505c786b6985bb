#include "Captions/view/FontStyleName.h"

#include <array>

#include "Captions/contracts/TextSpanAttributes.h"

namespace Captivo {

using zebcaptioning::TextSpanAttributes;

namespace {

const std::array<UString, 5> kWeights = {u"Ultra Light", u"Light", u"Medium", u"Demi Bold", u"Heavy"};
constexpr char16_t kBlank = u' ';

const UString& Regular() {
  return TextSpanAttributes::kFontStyleString_Regular;
}

const UString& Italic() {
  return TextSpanAttributes::kFontStyleString_Italic;
}

const UString& Bold() {
  return TextSpanAttributes::kFontStyleString_Bold;
}

const UString& NameOfFlags(bool bold, bool italic) {
  if (bold)
    return italic ? TextSpanAttributes::kFontStyleString_BoldItalic : Bold();
  return italic ? Italic() : Regular();
}

UString AlignWithBold(const UString& style, bool bold) {
  const bool isBoldStyle = style.starts_with(Bold());
  if (!bold && isBoldStyle)
    return style == Bold() ? Regular() : style.substr(Bold().size() + 1);
  if (bold && !isBoldStyle) {
    UString rest = style;
    // The blank behind the weight stays and does the joining.
    return StripWeightPrefix(rest) ? Bold() + rest : Bold() + kBlank + style;
  }
  return style;
}

} // namespace

bool EndsWithItalic(const UString& name) {
  return name.ends_with(Italic());
}

bool StripWeightPrefix(UString& name) {
  for (const UString& weight : kWeights) {
    if (name.starts_with(weight)) {
      name.erase(0, weight.size());
      return true;
    }
  }
  return false;
}

void ParseFontStyleName(const UString& name, bool& bold, bool& italic) {
  for (const bool isBold : {false, true}) {
    for (const bool isItalic : {false, true}) {
      if (name == NameOfFlags(isBold, isItalic)) {
        bold = isBold;
        italic = isItalic;
        return;
      }
    }
  }
  bold = name.starts_with(Bold());
  italic = EndsWithItalic(name);
}

UString AlignFontStyleName(const UString& style, bool bold, bool italic, bool& isSettled) {
  isSettled = false;
  if (style.empty() || style == Regular())
    return NameOfFlags(bold, italic);
  UString candidate = AlignWithBold(style, bold);
  if (!italic && EndsWithItalic(candidate)) {
    if (candidate == Italic())
      return Regular();
    candidate.resize(candidate.size() - Italic().size() - 1);
  } else if (italic && !EndsWithItalic(candidate)) {
    if (candidate == Regular()) {
      isSettled = true;
      return Italic();
    }
    candidate += kBlank + Italic();
  }
  return candidate;
}

} // namespace Captivo
