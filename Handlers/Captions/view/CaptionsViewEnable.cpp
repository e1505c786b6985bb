#include "Captions/pane/CaptionsPane.h"
#include "Captions/view/CaptionsView.h"
#include "MZ/Actions.h"
#include "zebui/Controls.h"

namespace Captivo {

using zebcaptioning::CaptioningColor;

// One pass with no memory. Nothing is selected in a project that can only be read.
void CaptionsView::UpdateControlStates() {
  const bool isUnavailable = pane->IsUnavailable();
  bool isSelected = pane->HasSelection();
  const bool isReadOnly = MZ::GetActiveProject()->IsReadOnly();
  if (isReadOnly) {
    isSelected = false;
    pane->Disable();
  } else {
    pane->Enable(true);
  }

  streamLabel->SetDisabled(isUnavailable);
  streamPopup->SetDisabled(isUnavailable || streamPopup->Size() <= 1);
  filterBox->SetDisabled(isUnavailable);
  addCaptionButton->SetDisabled(isUnavailable || isReadOnly);
  deleteCaptionButton->SetDisabled(isUnavailable || !isSelected);
  gridLabel->SetDisabled(isUnavailable);
  gridSizeText->SetDisabled(isUnavailable);

  UpdateButtonStates(isSelected);
  const bool isEbu = zebcaptioning::IsEbuN19(streamFormat);
  if (isOpenCaptions) {
    UpdateOpenControlStates(isSelected);
    // Without a selection the height keeps the state that it had, unlike with closed captions.
    if (isSelected)
      doubleHeightPopup->SetDisabled(!isEbu);
  } else {
    UpdateClosedControlStates(isSelected);
    doubleHeightPopup->SetDisabled(!isSelected || !isEbu);
  }
}

void CaptionsView::UpdateButtonStates(bool isSelected) {
  alignLeftButton.Enable(isSelected);
  alignCenterButton.Enable(isSelected);
  alignRightButton.Enable(isSelected);
  boldButton.Enable(isSelected && boldAllowed && isOpenCaptions);
  italicButton.Enable(isSelected && italicAllowed);
  underlineButton.Enable(isSelected && underlineAllowed);
  musicNoteButton.Enable(isSelected);
  textColorButton.Enable(isSelected);
  backgroundColorButton.Enable(isSelected);
  edgeColorButton.Enable(isSelected && isOpenCaptions);
}

// The closed controls keep their state meanwhile.
void CaptionsView::UpdateOpenControlStates(bool isSelected) {
  UString family;
  bool isFamilyUniform = false;
  formatInfo->GetFontFamily(family, isFamilyUniform);
  const bool canChooseWeight = fontWeightPopup->Size() > 1 && isFamilyUniform;
  const bool hasOpacity = colorType != CaptioningColor::kColorType_Text;

  fontLabel->SetDisabled(!isSelected);
  fontFamilyPopup->SetDisabled(!isSelected);
  fontWeightPopup->SetDisabled(!isSelected || !canChooseWeight);
  fontSizeLabel->SetDisabled(!isSelected);
  fontSizeControl->SetDisabled(!isSelected);
  edgeWidthLabel->SetDisabled(!isSelected);
  edgeWidthControl->SetDisabled(!isSelected);
  lineSpacingLabel->SetDisabled(!isSelected);
  lineSpacingControl->SetDisabled(!isSelected);
  regionPopup->SetDisabled(!isSelected || !regionAndStyleEnabled);
  stylePopup->SetDisabled(!isSelected || !regionAndStyleEnabled);
  colorPicker.Enable(isSelected);
  opacityControl->SetDisabled(!isSelected || !hasOpacity);
  opacityUnitText->SetDisabled(!isSelected || !hasOpacity);
  openPositionGrid->SetDisabled(!isSelected);
  openPositionXLabel->SetDisabled(!isSelected);
  openPositionXControl->SetDisabled(!isSelected);
  openPositionXUnitText->SetDisabled(!isSelected);
  openPositionYLabel->SetDisabled(!isSelected);
  openPositionYControl->SetDisabled(!isSelected);
  openPositionYUnitText->SetDisabled(!isSelected);
}

// The open controls keep their state meanwhile.
void CaptionsView::UpdateClosedControlStates(bool isSelected) {
  captionTypeLabel->SetDisabled(!isSelected);
  captionTypePopup->SetDisabled(!isSelected || captionTypeMap.size() <= 1);
  closedPositionGrid->SetDisabled(!isSelected);
  colorSwatch->SetDisabled(!isSelected);
  closedPositionXLabel->SetDisabled(!isSelected);
  closedPositionXControl->SetDisabled(!isSelected);
  closedPositionYLabel->SetDisabled(!isSelected);
  closedPositionYControl->SetDisabled(!isSelected);
}

void CaptionsView::UpdateAvailability() {
  const bool isAvailable = !pane->IsUnavailable();
  addCaptionButton->UI_Show(isAvailable);
  deleteCaptionButton->UI_Show(isAvailable);
  pane->Show(isAvailable);
}

void CaptionsView::UpdateAvailabilityAndLayout() {
  UpdateAvailability();
  UpdateControlStates();
}

} // namespace Captivo
