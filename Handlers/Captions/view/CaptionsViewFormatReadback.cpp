#include "Captions/view/CaptionsView.h"
#include "Captions/view/ViewTexts.h"

namespace Captivo {

using zebcaptioning::ParagraphStyleAttributes;
using zebui::controls::UI_HotTextNumber;
using zebui::controls::UI_Popup;

namespace {

// Closed captions above this font size are of double height.
constexpr float kFontSize_HeightLimit = 24.0F;

constexpr std::int64_t kHeightItem_Normal = 0;
constexpr std::int64_t kHeightItem_Double = 1;
constexpr std::int64_t kHeightItem_Mixed = 2;
constexpr std::int64_t kHeightItems_WithoutMixed = 2;

void ShowNumber(UI_HotTextNumber& control, double value, bool isUniform) {
  if (isUniform)
    control.SetValue(value);
  else
    control.SetValueUnknown();
}

// Item 0 stands for no name. A name that the popup lacks leaves it as it was.
void ShowName(UI_Popup* popup, const UString& name, bool isUniform) {
  if (!popup)
    return;
  if (!isUniform) {
    popup->SetValueString(Localize(kText_PopupMultiple), true, true);
    return;
  }
  if (name.empty()) {
    popup->SetValue(0);
    return;
  }
  const std::int64_t size = popup->Size();
  for (std::int64_t i = 1; i < size; ++i) {
    if (popup->GetItemString(i) == name) {
      popup->SetValue(i);
      return;
    }
  }
}

} // namespace

// The info on show once more refreshes nothing but the grid.
void CaptionsView::PublishFormat(const boost::intrusive_ptr<CaptionFormatInfo>& info) {
  if (!info)
    return;
  if (info != formatInfo) {
    formatInfo = info;
    UpdateFormatControls();
    UpdatePositionRanges();
  }
  UpdatePositionGrid(info->GetAnchorID());
}

void CaptionsView::UpdateFormatControls() {
  UpdateCaptionTypePopup();
  bool isUniform = false;
  italicButton.SetValue(formatInfo->GetIsItalicized(isUniform));
  underlineButton.SetValue(formatInfo->GetIsUnderlined(isUniform));
  if (isOpenCaptions)
    boldButton.SetValue(formatInfo->GetIsBolded(isUniform));
  UpdateAlignmentButtons();
  UpdateColorControls();
  if (!isOpenCaptions) {
    UpdateDoubleHeightPopup();
    return;
  }
  UpdateFontFamilyPopup();
  UpdateFontWeightPopup();
  const float size = formatInfo->GetFontSize(isUniform);
  ShowNumber(*fontSizeControl, static_cast<double>(size), isUniform);
  const float edgeWidth = formatInfo->GetTextEdgeWidth(isUniform);
  ShowNumber(*edgeWidthControl, static_cast<double>(edgeWidth), isUniform);
  const int lineSpacing = formatInfo->GetLineSpacing(isUniform);
  ShowNumber(*lineSpacingControl, lineSpacing, isUniform);
  UpdateRegionAndStylePopups();
}

void CaptionsView::UpdateCaptionTypePopup() {
  if (!captionTypePopup)
    return;
  bool isUniform = false;
  const zebcaptioning::CaptionType type = formatInfo->GetCaptionType(isUniform);
  if (!isUniform) {
    captionTypePopup->SetValueString(Localize(kText_PopupMultiple), true, true);
    return;
  }
  const auto entry = captionTypeMap.right.find(type);
  const bool isListed = type != zebcaptioning::kCaptionType_None && entry != captionTypeMap.right.end();
  captionTypePopup->SetValue(isListed ? entry->second : 0);
}

void CaptionsView::UpdateAlignmentButtons() {
  bool isUniform = false;
  const auto alignment = formatInfo->GetTextAlignment(isUniform);
  alignLeftButton.SetValue(isUniform && alignment == ParagraphStyleAttributes::kTextAlignment_Left);
  alignCenterButton.SetValue(isUniform && alignment == ParagraphStyleAttributes::kTextAlignment_Center);
  alignRightButton.SetValue(isUniform && alignment == ParagraphStyleAttributes::kTextAlignment_Right);
}

// The third item is there only while the selection is mixed.
void CaptionsView::UpdateDoubleHeightPopup() {
  if (!doubleHeightPopup)
    return;
  bool isUniform = false;
  const float size = formatInfo->GetFontSize(isUniform);
  if (!isUniform) {
    if (doubleHeightPopup->Size() == kHeightItems_WithoutMixed)
      doubleHeightPopup->AddItem(Localize(kText_MixedHeight));
    doubleHeightPopup->SetValue(kHeightItem_Mixed);
    return;
  }
  if (doubleHeightPopup->Size() == kHeightItems_WithoutMixed + 1)
    doubleHeightPopup->RemoveItem(kHeightItem_Mixed);
  doubleHeightPopup->SetValue(size > kFontSize_HeightLimit ? kHeightItem_Double : kHeightItem_Normal);
}

// By the beginning of the name: a family whose name begins another's finds whichever comes first.
void CaptionsView::UpdateFontFamilyPopup() {
  if (!fontFamilyPopup)
    return;
  UString family;
  bool isUniform = false;
  formatInfo->GetFontFamily(family, isUniform);
  const UString shown = fontFamilyPopup->GetValueString();
  const UString multiple = Localize(kText_MultipleFontFamily);
  const bool showsOne = shown != multiple;
  if (shown == family && showsOne == isUniform)
    return;
  if (!isUniform) {
    fontFamilyPopup->SetValueString(multiple, true, true);
    return;
  }
  const std::int64_t size = fontFamilyPopup->Size();
  for (std::int64_t i = 0; i < size; ++i) {
    const UString item = fontFamilyPopup->GetItemString(i);
    if (item.starts_with(family)) {
      fontFamilyPopup->SetValueString(item, true, true);
      FillFontWeights(item);
      return;
    }
  }
}

void CaptionsView::UpdateRegionAndStylePopups() {
  bool isUniform = false;
  const UString region = formatInfo->GetRegionName(isUniform);
  ShowName(regionPopup.get(), region, isUniform);
  const UString style = formatInfo->GetStyleName(isUniform);
  ShowName(stylePopup.get(), style, isUniform);
}

} // namespace Captivo
