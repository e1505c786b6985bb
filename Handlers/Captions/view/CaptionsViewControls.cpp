#include <boost/bind/bind.hpp>

#include "Captions/contracts/Stations.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/view/CaptionsView.h"
#include "Captions/view/ControlBlocks.h"
#include "TD/TitlerFontList.h"
#include "zebcore/DebugDatabase.h"

namespace Captivo {

using boost::placeholders::_1;
using zebcore::messaging::AddListener;
using zebcore::messaging::RemoveListener;
using zebui::controls::kControlAlignment_Right;
using zebui::controls::UI_HotTextNumber;
using zebui::controls::UI_Popup;
using zebui::controls::UI_SearchBox;
using zebui::controls::UI_StaticText;

namespace {

constexpr int kPopup_List = 0;

// The first half of a popup's block, before it is connected and filled.
void SetUpPopup(UI_Popup& popup, const RectT<int>& bounds, const char* toolTip, bool isDisabled) {
  popup.UI_SetLocalRectF(ToFloat(bounds));
  popup.UI_SetToolTip(Localize(toolTip), kToolTipDelay);
  if (isDisabled)
    popup.SetDisabled(true);
  popup.SetWantsKeyboardFocus(true);
  popup.SetItemCheckStyle(true);
  popup.UI_Show(true);
}

} // namespace

// Nothing is laid out here: the places of creation hold until the first layout.
void CaptionsView::CreateSelf(const RectT<int>& bounds) {
  // The switch can only take away what was enabled before, which nothing does: regions and styles stay off.
  const bool newReading =
      zebcore::debug::DebugDatabase::Instance().GetValue("New_XML_Caption_Reading", "false") == "true";
  if (regionAndStyleEnabled)
    regionAndStyleEnabled = newReading;
  EnableDoubleBuffering(true);

  CreateStreamRow();
  CreateFontRow();
  CreateCaptionTypeControls();
  RectT<int> place{145, 32, 20, 20};
  CreateStyleButtons(place);
  CreateColorControls(place);
  CreateClosedPositionControls(place);
  CreateOpenPositionControls(place);
  CreateBottomRow();
  CreatePaneAndScrollBar(bounds);

  AddListener(MZ::kStation_SequenceActivation, this);
  AddListener(BE::kBackendProjectActivationStationID, this);
  created = true;
  UpdateControlVisibility();
  UpdateControlStates();
}

void CaptionsView::DestroySelf() {
  created = false;
  if (pane) {
    pane->Destroy();
    delete pane;
    pane = nullptr;
  }
  alignLeftButton.Destroy();
  alignCenterButton.Destroy();
  alignRightButton.Destroy();
  italicButton.Destroy();
  underlineButton.Destroy();
  musicNoteButton.Destroy();
  backgroundColorButton.Destroy();
  textColorButton.Destroy();
  edgeColorButton.Destroy();
  boldButton.Destroy();
  exportSettingsButton.reset();
  importSettingsButton.reset();
  addCaptionButton.reset();
  deleteCaptionButton.reset();
  RemoveListener(colorPicker.GetStationID(), this);
  colorPicker.Destroy();
  RemoveListener(scrollBar.GetStationID(), this);
  RemoveListener(MZ::kStation_SequenceActivation, this);
  RemoveListener(BE::kBackendProjectActivationStationID, this);
  scrollBar.Destroy();
  TabView::DestroySelf();
}

// --- First row: the filter, the stream, its grid

void CaptionsView::CreateStreamRow() {
  filterBox.reset(new UI_SearchBox(false, false));
  GetZEBNode()->ChildPushBack(filterBox);
  filterBox->UI_SetToolTip(Localize("$$$/Vidra/Handlers/Captions/FilterTooltop=Filter caption content"), kToolTipDelay);
  filterBox->UI_SetLocalRectF({3.0F, 3.0F, 167.0F, 19.0F});
  filterBox->UI_Show(true);
  filterBox->NotifyWhenChangedInteractively(boost::bind(&CaptionsView::OnFilterChanged, this));
  filterBox->NotifyWhenChanged(boost::bind(&CaptionsView::OnFilterChanged, this));

  streamLabel = CreateLabel({171, 3, 55, 19}, "$$$/Vidra/Handlers/Captions/Standards=Caption Stream:");
  streamLabel->SetAlignment(kControlAlignment_Right);
  streamLabel->UI_Show(true);

  streamPopup.reset(new UI_Popup(kPopup_List, false));
  GetZEBNode()->ChildPushBack(streamPopup);
  SetUpPopup(*streamPopup, {226, 3, 149, 19}, "$$$/Vidra/Handlers/Captions/StandardTooltip=Select caption stream",
             true);
  streamPopup->NotifyWhenChanged(boost::bind(&CaptionsView::OnStreamChanged, this, _1));

  gridLabel = CreateLabel({171, 3, 30, 19}, kText_Grid);
  gridLabel->SetAlignment(kControlAlignment_Right);
  gridLabel->UI_Show(true);

  gridSizeText = CreateLabel({205, 3, 30, 19}, nullptr);
  gridSizeText->SetAlignment(kControlAlignment_Right);
  gridSizeText->UI_Show(true);
}

// --- Second row of open captions; the height popup of closed ones was born among them

void CaptionsView::CreateFontRow() {
  fontLabel = CreateLabel({171, 3, 55, 19}, "$$$/Vidra/Handlers/Captions/Font=Font:");
  fontLabel->SetAlignment(kControlAlignment_Right);
  fontLabel->UI_Show(true);

  fontFamilyPopup.reset(new UI_Popup(kPopup_List, false));
  GetZEBNode()->ChildPushBack(fontFamilyPopup);
  SetUpPopup(*fontFamilyPopup, {226, 3, 149, 19}, "$$$/Vidra/Handlers/Captions/FontFamilyTooltip=Select Font Family",
             true);
  fontFamilyPopup->NotifyWhenChanged(boost::bind(&CaptionsView::OnFontFamilyChanged, this, _1));
  for (const auto& [key, family] : TD::GetTitlerFontList())
    fontFamilyPopup->AddItem(family.name);

  fontWeightPopup.reset(new UI_Popup(kPopup_List, false));
  GetZEBNode()->ChildPushBack(fontWeightPopup);
  SetUpPopup(*fontWeightPopup, {171, 3, 100, 19}, "$$$/Vidra/Handlers/Captions/FontWeightTooltip=Select font weight",
             true);
  fontWeightPopup->NotifyWhenChanged(boost::bind(&CaptionsView::OnFontWeightChanged, this, _1));

  fontSizeLabel = CreateLabel({275, 3, 40, 19}, "$$$/Vidra/Handlers/Captions/FontSize=Size:");
  fontSizeLabel->UI_Show(true);

  fontSizeControl.reset(new UI_HotTextNumber);
  GetZEBNode()->ChildPushBack(fontSizeControl);
  fontSizeControl->UI_SetLocalRectF({319.0F, 3.0F, 40.0F, 19.0F});
  fontSizeControl->NotifyWhenChangedInteractively(boost::bind(&CaptionsView::OnFontSizeChanged, this, _1));
  SetUpNumber(*fontSizeControl, {0, 20.0, 6.0, 144.0}, "$$$/Vidra/Handlers/Captions/FontSizeTooltip=Set Font Size");

  doubleHeightPopup.reset(new UI_Popup(kPopup_List, false));
  GetZEBNode()->ChildPushBack(doubleHeightPopup);
  SetUpPopup(*doubleHeightPopup, {319, 3, 70, 19},
             "$$$/Vidra/Handlers/Captions/DoubleHeightTooltip=Switch between normal and double height", true);
  doubleHeightPopup->NotifyWhenChanged(boost::bind(&CaptionsView::OnDoubleHeightChanged, this, _1));
  doubleHeightPopup->AddItem(Localize("$$$/Vidra/Handlers/Captions/NormalHeight=Normal"));
  doubleHeightPopup->AddItem(Localize("$$$/Vidra/Handlers/Captions/DoubleHeight=Double"));
  doubleHeightPopup->AddItem(Localize(kText_MixedHeight));
  doubleHeightPopup->SetValue(0);

  edgeWidthLabel = CreateLabel({365, 3, 40, 19}, "$$$/Vidra/Handlers/Captions/EdgeWidth=Edge:");
  edgeWidthLabel->UI_Show(true);

  edgeWidthControl.reset(new UI_HotTextNumber);
  GetZEBNode()->ChildPushBack(edgeWidthControl);
  edgeWidthControl->UI_SetLocalRectF({409.0F, 3.0F, 40.0F, 19.0F});
  edgeWidthControl->NotifyWhenChangedInteractively(boost::bind(&CaptionsView::OnEdgeWidthChanged, this, _1));
  SetUpNumber(*edgeWidthControl, {1, 0.0, 0.0, 24.0},
              "$$$/Vidra/Handlers/Captions/TextEdgeWidthTooltip=Set Text Edge Width");

  lineSpacingLabel = CreateLabel({455, 3, 40, 19}, "$$$/Vidra/Handlers/Captions/LineSpacing=Line Spacing:");
  lineSpacingLabel->UI_Show(true);

  lineSpacingControl.reset(new UI_HotTextNumber);
  GetZEBNode()->ChildPushBack(lineSpacingControl);
  lineSpacingControl->UI_SetLocalRectF({500.0F, 3.0F, 20.0F, 19.0F});
  lineSpacingControl->NotifyWhenChangedInteractively(boost::bind(&CaptionsView::OnLineSpacingChanged, this, _1));
  SetUpNumber(*lineSpacingControl, {0, 50.0, 0.0, 100.0},
              "$$$/Vidra/Handlers/Captions/LineSpacingTooltip=Set Line Spacing in %");

  regionPopup.reset(new UI_Popup(kPopup_List, false));
  GetZEBNode()->ChildPushBack(regionPopup);
  SetUpPopup(*regionPopup, {600, 3, 100, 19}, "$$$/Vidra/Handlers/Captions/RegionTooltip=Select Region", true);
  regionPopup->NotifyWhenChanged(boost::bind(&CaptionsView::OnRegionChanged, this, _1));
  regionPopup->AddItem(Localize(kText_NoRegionEntry));
  regionPopup->SetValue(0);

  stylePopup.reset(new UI_Popup(kPopup_List, false));
  GetZEBNode()->ChildPushBack(stylePopup);
  SetUpPopup(*stylePopup, {680, 3, 100, 19}, "$$$/Vidra/Handlers/Captions/StyleTooltip=Select Style", true);
  stylePopup->NotifyWhenChanged(boost::bind(&CaptionsView::OnStyleChanged, this, _1));
  stylePopup->AddItem(Localize(kText_CustomStyle));
  stylePopup->SetValue(0);
}

// --- Second row of closed captions

// Filled before it is connected: the display types of the commonest family, until a stream is on show.
void CaptionsView::CreateCaptionTypeControls() {
  captionTypeLabel = CreateLabel({0, 33, 32, 19}, "$$$/Vidra/Handlers/Captions/Type=Type:");
  captionTypeLabel->SetAlignment(kControlAlignment_Right);
  captionTypeLabel->UI_Show(true);

  captionTypePopup.reset(new UI_Popup(kPopup_List, false));
  GetZEBNode()->ChildPushBack(captionTypePopup);
  SetUpPopup(*captionTypePopup, {34, 33, 99, 19}, "$$$/Vidra/Handlers/Captions/StreamTooltip=Set display style", false);
  streamFormat = zebcaptioning::kStreamFormat_608;
  FillCaptionTypePopup();
  captionTypePopup->NotifyWhenChanged(boost::bind(&CaptionsView::OnCaptionTypeChanged, this, _1));
}

// --- What is on show

void CaptionsView::UpdateControlVisibility() {
  const bool isOpen = isOpenCaptions;
  fontLabel->UI_Show(isOpen);
  fontFamilyPopup->UI_Show(isOpen);
  fontWeightPopup->UI_Show(isOpen);
  fontSizeLabel->UI_Show(isOpen);
  fontSizeControl->UI_Show(isOpen);
  edgeWidthLabel->UI_Show(isOpen);
  edgeWidthControl->UI_Show(isOpen);
  lineSpacingLabel->UI_Show(isOpen);
  lineSpacingControl->UI_Show(isOpen);

  regionPopup->UI_Show(isOpen && regionAndStyleEnabled);
  stylePopup->UI_Show(isOpen && regionAndStyleEnabled);

  boldButton.Show(isOpen);
  edgeColorButton.Show(isOpen);
  colorPicker.Show(isOpen);
  opacityControl->UI_Show(isOpen);
  opacityUnitText->UI_Show(isOpen);
  openPositionGrid->UI_Show(isOpen);
  openPositionXLabel->UI_Show(isOpen);
  openPositionXControl->UI_Show(isOpen);
  openPositionXUnitText->UI_Show(isOpen);
  openPositionYLabel->UI_Show(isOpen);
  openPositionYControl->UI_Show(isOpen);
  openPositionYUnitText->UI_Show(isOpen);

  gridLabel->UI_Show(true);
  gridSizeText->UI_Show(true);

  doubleHeightPopup->UI_Show(zebcaptioning::IsEbuN19(streamFormat));

  captionTypeLabel->UI_Show(!isOpen);
  captionTypePopup->UI_Show(!isOpen);
  closedPositionGrid->UI_Show(!isOpen);
  colorSwatch->UI_Show(!isOpen);
  closedPositionXLabel->UI_Show(!isOpen);
  closedPositionXControl->UI_Show(!isOpen);
  closedPositionYLabel->UI_Show(!isOpen);
  closedPositionYControl->UI_Show(!isOpen);
}

CaptionsView::StaticText CaptionsView::CreateLabel(const RectT<int>& place, const char* text) {
  StaticText label(new UI_StaticText);
  GetZEBNode()->ChildPushBack(label);
  if (text)
    label->SetValue(Localize(text));
  label->UI_SetLocalRectF(ToFloat(place));
  return label;
}

void CaptionsView::OnFilterChanged() {
  if (pane)
    pane->SetFilterText(filterBox->GetValue());
}

} // namespace Captivo
