#include "Captions/contracts/TextSpanAttributes.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/view/CaptionsView.h"
#include "Captions/view/FontStyleName.h"
#include "Captions/view/ViewTexts.h"
#include "MZ/Actions.h"
#include "TD/TitlerFontList.h"

namespace Captivo {

namespace {

// Chosen for captions.
constexpr MZ::FontUsageType kFontUsage_Captions = 0;

const TD::TitlerFontFamily* FindFamily(const UString& name) {
  for (const auto& [key, family] : TD::GetTitlerFontList()) {
    if (family.name == name)
      return &family;
  }
  return nullptr;
}

} // namespace

// One face that cannot be switched takes the button from the whole family.
void CaptionsView::FillFontWeights(const UString& familyName) {
  const TD::TitlerFontFamily* family = FindFamily(familyName);
  if (!family)
    return;
  familyFonts = family->faces ? *family->faces : std::vector<const TD::CaptionFontRecord*>();
  italicAllowed = true;
  boldAllowed = true;
  fontWeightPopup->DeleteAllItems();
  for (const TD::CaptionFontRecord* face : familyFonts) {
    if (!face)
      continue;
    fontWeightPopup->AddItem(face->styleName);
    boldAllowed &= face->boldSelectable;
    italicAllowed &= face->italicSelectable;
  }
  if (familyFonts.empty())
    return;
  LayoutFormatBar();
  UpdateFontWeightPopup();
  UpdateControlStates();
}

UString CaptionsView::ComposeFontStyleName(bool& uniform) const {
  bool isBoldUniform = false;
  bool isItalicUniform = false;
  const bool italic = formatInfo->GetIsItalicized(isItalicUniform);
  const bool bold = formatInfo->GetIsBolded(isBoldUniform);
  uniform = isBoldUniform && isItalicUniform;

  bool isSettled = false;
  UString candidate = AlignFontStyleName(fontStyleName, bold, italic, isSettled);
  if (isSettled)
    return candidate;
  const std::int64_t size = fontWeightPopup->Size();
  for (std::int64_t i = 0; i < size; ++i) {
    if (fontWeightPopup->GetItemString(i) == candidate)
      return candidate;
  }
  for (const TD::CaptionFontRecord* face : familyFonts) {
    if (face && face->isBold == bold && face->isItalic == italic)
      return face->styleName;
  }
  return fontWeightPopup->GetItemString(0);
}

void CaptionsView::UpdateFontWeightPopup() {
  UString family;
  bool isFamilyUniform = false;
  formatInfo->GetFontFamily(family, isFamilyUniform);
  UString name = Localize(kText_MultipleFontWeight);
  if (isFamilyUniform) {
    bool isStyleUniform = false;
    const UString composed = ComposeFontStyleName(isStyleUniform);
    if (isStyleUniform)
      name = composed;
  } else {
    italicAllowed = false;
    boldAllowed = false;
    fontWeightPopup->SetDisabled(true);
  }
  if (fontStyleName != name)
    fontStyleName = name;
  fontWeightPopup->SetValueString(fontStyleName, true, true);
}

void CaptionsView::ApplyStyleToFlags(bool& boldChanged, bool& italicChanged) {
  bool isBoldUniform = false;
  bool isItalicUniform = false;
  const bool isItalicized = formatInfo->GetIsItalicized(isItalicUniform);
  const bool isBolded = formatInfo->GetIsBolded(isBoldUniform);
  bool bold = false;
  bool italic = false;
  ParseFontStyleName(fontStyleName, bold, italic);
  boldChanged = bold != isBolded || !isBoldUniform;
  if (boldChanged) {
    boldButton.SetValue(bold);
    formatInfo->SetIsBolded(bold, true);
  }
  italicChanged = italic != isItalicized || !isItalicUniform;
  if (italicChanged) {
    italicButton.SetValue(italic);
    formatInfo->SetIsItalicized(italic, true);
  }
}

// The last face of that style wins.
void CaptionsView::LogChosenFont() const {
  if (familyFonts.empty())
    return;
  const TD::CaptionFontRecord* chosen = familyFonts.front();
  bool isUniform = false;
  const UString name = ComposeFontStyleName(isUniform);
  if (isUniform) {
    for (const TD::CaptionFontRecord* face : familyFonts) {
      if (face && face->styleName == name)
        chosen = face;
    }
  }
  if (chosen)
    MZ::LogFontUsage({chosen->fullName}, kFontUsage_Captions);
}

// A family that lacks the style on show changes bold and italic too, and forces both on the captions.
void CaptionsView::OnFontFamilyChanged(const Changed&) {
  const UString name = fontFamilyPopup->GetValueString();
  MZ::LogFontUsage({name}, kFontUsage_Captions);
  formatInfo->SetFontFamily(name, true);
  FillFontWeights(name);
  bool boldChanged = false;
  bool italicChanged = false;
  ApplyStyleToFlags(boldChanged, italicChanged);
  LogChosenFont();
  CaptionFormatInfo copy(*formatInfo);
  copy.SetForceBolded(boldChanged);
  copy.SetForceItalicized(italicChanged);
  pane->ApplyFormat(zebcaptioning::kFormatFontFamily, copy);
}

// Another weight of the same two flags changes no caption.
void CaptionsView::OnFontWeightChanged(const Changed&) {
  fontStyleName = fontWeightPopup->GetValueString();
  bool boldChanged = false;
  bool italicChanged = false;
  ApplyStyleToFlags(boldChanged, italicChanged);
  CaptionFormatInfo copy(*formatInfo);
  if (boldChanged) {
    copy.SetForceItalicized(italicChanged);
    pane->ApplyFormat(zebcaptioning::kFormatBold, copy);
  } else if (italicChanged) {
    pane->ApplyFormat(zebcaptioning::kFormatItalic, copy);
  }
}

} // namespace Captivo
