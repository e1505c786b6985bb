#include <boost/bind/bind.hpp>

#include "Captions/shell/CaptionsCommands.h"
#include "Captions/view/CaptionsView.h"
#include "Captions/view/ControlBlocks.h"

namespace Captivo {

using boost::placeholders::_1;
using zebui::controls::UI_Divider;
using zebui::controls::UI_HotTextNumber;
using zebui::controls::UI_PositionGridControl;
using zebui::controls::UI_StaticText;
using zebui::controls::UI_Swatch;

namespace {

constexpr int kDividerWidth = 2;
constexpr int kLabelWidth = 10;
constexpr int kClosedNumberWidth = 30;
constexpr int kOpenNumberWidth = 36;

constexpr const char* kText_X = "$$$/Vidra/Handlers/Captions/x=x:";
constexpr const char* kText_Y = "$$$/Vidra/Handlers/Captions/y=y:";
constexpr const char* kText_UnitPercent = "$$$/Vidra/Handlers/Captions/UnitPercent=%";

boost::intrusive_ptr<UI_StaticText> MakeLabel(const RectT<int>& place, const char* text) {
  boost::intrusive_ptr<UI_StaticText> label(new UI_StaticText);
  label->SetValue(Localize(text));
  label->UI_SetLocalRectF(ToFloat(WithWidth(place, kLabelWidth)));
  label->UI_Show(true);
  return label;
}

} // namespace

// A press leaves the focus where it is: in the text whose format it changes.
void CaptionsView::CreatePictureButton(UIF::PictureButton& button, const RectT<int>& place, int command,
                                       UIF::DecalID decal, const char* toolTip) {
  button.Create(this, place, command, UIF::Bitmap::GetBitmap(decal, nullptr));
  button.SetTakesFocusOnPress(false);
  button.SetToolTipText(Localize(toolTip));
  button.Show(true);
}

CaptionsView::Divider CaptionsView::CreateDivider(const RectT<int>& place) {
  Divider divider(new UI_Divider);
  divider->UI_SetLocalRectF(ToFloat(WithWidth(place, kDividerWidth)));
  divider->UI_Show(true);
  GetZEBNode()->ChildPushBack(divider);
  return divider;
}

// --- Alignment and style

void CaptionsView::CreateStyleButtons(RectT<int>& place) {
  CreatePictureButton(alignLeftButton, place, kCommand_JustifyLeft, UIF::kCaptionJustifyLeftDecal,
                      "$$$/Vidra/Handlers/Captions/AlignLeftTooltip=Align Left");
  place.x += 25;
  CreatePictureButton(alignCenterButton, place, kCommand_JustifyCenter, UIF::kCaptionJustifyCenterDecal,
                      "$$$/Vidra/Handlers/Captions/AlignCenterTooltip=Align Center");
  place.x += 25;
  CreatePictureButton(alignRightButton, place, kCommand_JustifyRight, UIF::kCaptionJustifyRightDecal,
                      "$$$/Vidra/Handlers/Captions/AlignRightTooltip=Align Right");
  place.x += 30;
  alignDivider = CreateDivider(place);
  place.x += 5;
  CreatePictureButton(boldButton, place, kCommand_Bold, UIF::kCaptionBoldDecal,
                      "$$$/Vidra/Handlers/Captions/BoldTooltip=Bold");
  place.x += 8;
  CreatePictureButton(italicButton, place, kCommand_Italicize, UIF::kCaptionItalicizeDecal,
                      "$$$/Vidra/Handlers/Captions/ItalicizeTooltip=Italicize");
  place.x += 25;
  CreatePictureButton(underlineButton, place, kCommand_Underline, UIF::kCaptionUnderlineDecal,
                      "$$$/Vidra/Handlers/Captions/UnderlineTooltip=Underline");
  place.x += 25;
  CreatePictureButton(musicNoteButton, place, kCommand_MusicNote, UIF::kCaptionMusicNoteDecal,
                      "$$$/Vidra/Handlers/Captions/MusicNoteTooltip=Insert Music Note");
  place.x += 30;
  styleDivider = CreateDivider(place);
  place.x += 8;
}

// --- Colours

void CaptionsView::CreateColorControls(RectT<int>& place) {
  CreatePictureButton(backgroundColorButton, place, kCommand_BackgroundColor, UIF::kCaptionBackgroundColorDecal,
                      "$$$/Vidra/Handlers/Captions/BackgroundColorTooltip=Background Color");
  place.x += 20;
  CreatePictureButton(textColorButton, place, kCommand_TextColor, UIF::kCaptionTextColorDecal,
                      "$$$/Vidra/Handlers/Captions/TextColorTooltip=Text Color");
  place.x += 20;
  CreatePictureButton(edgeColorButton, place, kCommand_EdgeColor, UIF::kCaptionTextOutlineColorDecal,
                      "$$$/Vidra/Handlers/Captions/TextEdgeColorTooltip=Edge Color");
  place.x += 25;

  colorSwatch.reset(new UI_Swatch);
  colorSwatch->UI_SetLocalRectF(ToFloat(place));
  const zebui::controls::UnManagedRGBA blue{0.0F, 0.0F, 1.0F, 1.0F};
  colorSwatch->NotifyWhenChanged(boost::bind(&CaptionsView::ShowColorMenu, this));
  colorSwatch->SetValue(blue);
  colorSwatch->SetDisplayBorder(true);
  colorSwatch->UI_Show(true);
  colorSwatch->UI_SetToolTip(Localize("$$$/Vidra/Handlers/Captions/ColorSwatchTooltip=Choose Color"), kToolTipDelay);
  GetZEBNode()->ChildPushBack(colorSwatch);
  place.x += 25;

  colorPicker.Create(this, place, 0, {0, 0}, UString());
  zebcore::messaging::AddListener(colorPicker.GetStationID(), this);
  SelectColorType(colorType);
  place.x += 35;

  opacityControl.reset(new UI_HotTextNumber);
  opacityControl->UI_SetLocalRectF({319.0F, 3.0F, 40.0F, 19.0F});
  opacityControl->NotifyWhenChangedInteractively(boost::bind(&CaptionsView::OnOpacityChanged, this, _1));
  SetUpNumber(*opacityControl, {0, 100.0, 0.0, 100.0}, "$$$/Vidra/Handlers/Captions/OpacityTooltip=Opacity");
  GetZEBNode()->ChildPushBack(opacityControl);
  place.x += 25;
  opacityUnitText = MakeLabel(place, kText_UnitPercent);
  GetZEBNode()->ChildPushBack(opacityUnitText);
  place.x += 25;
  colorDivider = CreateDivider(place);
  place.x += 5;
}

// --- Position

// The grid of closed captions starts with no cell, that of open ones on the top left one.
void CaptionsView::CreateClosedPositionControls(RectT<int>& place) {
  closedPositionGrid.reset(new UI_PositionGridControl);
  closedPositionGrid->UI_SetLocalRectF(ToFloat(place));
  closedPositionGrid->NotifyWhenChanged(boost::bind(&CaptionsView::OnClosedGridChanged, this, _1));
  closedPositionGrid->SetValue({-1, -1});
  closedPositionGrid->UI_SetToolTip(Localize("$$$/Vidra/Handlers/Captions/PositionGridTooltip=Position Caption Block"),
                                    kToolTipDelay);
  closedPositionGrid->UI_Show(true);
  GetZEBNode()->ChildPushBack(closedPositionGrid);
  place.x += 30;

  closedPositionXLabel = MakeLabel(place, kText_X);
  GetZEBNode()->ChildPushBack(closedPositionXLabel);
  place.x += 15;

  closedPositionXControl.reset(new UI_HotTextNumber);
  closedPositionXControl->UI_SetLocalRectF(ToFloat(WithWidth(place, kClosedNumberWidth)));
  closedPositionXControl->NotifyWhenChangedInteractively(
      boost::bind(&CaptionsView::OnClosedPositionXChanged, this, _1));
  SetUpNumber(*closedPositionXControl, {0, 1.0, 1.0, 32.0},
              "$$$/Vidra/Handlers/Captions/PositionXTooltip=Set Horizontal Position");
  GetZEBNode()->ChildPushBack(closedPositionXControl);
  place.x += 25;

  closedPositionYLabel = MakeLabel(place, kText_Y);
  GetZEBNode()->ChildPushBack(closedPositionYLabel);
  place.x += 15;

  closedPositionYControl.reset(new UI_HotTextNumber);
  closedPositionYControl->UI_SetLocalRectF(ToFloat(WithWidth(place, kClosedNumberWidth)));
  closedPositionYControl->NotifyWhenChangedInteractively(
      boost::bind(&CaptionsView::OnClosedPositionYChanged, this, _1));
  SetUpNumber(*closedPositionYControl, {0, 1.0, 1.0, 15.0},
              "$$$/Vidra/Handlers/Captions/PositionYTooltip=Set Vertical Position");
  GetZEBNode()->ChildPushBack(closedPositionYControl);
  place.x += 30;
}

void CaptionsView::CreateOpenPositionControls(RectT<int>& place) {
  openPositionGrid.reset(new UI_PositionGridControl);
  openPositionGrid->UI_SetLocalRectF(ToFloat(place));
  openPositionGrid->NotifyWhenChanged(boost::bind(&CaptionsView::OnOpenGridChanged, this, _1));
  openPositionGrid->SetValue({0, 0});
  openPositionGrid->UI_SetToolTip(
      Localize("$$$/Vidra/Handlers/Captions/OpenPositionGridTooltip=Open Position Caption Block"), kToolTipDelay);
  openPositionGrid->UI_Show(true);
  GetZEBNode()->ChildPushBack(openPositionGrid);
  place.x += 25;

  openPositionXLabel = MakeLabel(place, kText_X);
  GetZEBNode()->ChildPushBack(openPositionXLabel);
  place.x += 30;

  openPositionXControl.reset(new UI_HotTextNumber);
  openPositionXControl->UI_SetLocalRectF(ToFloat(WithWidth(place, kOpenNumberWidth)));
  openPositionXControl->NotifyWhenChangedInteractively(boost::bind(&CaptionsView::OnOpenPositionXChanged, this, _1));
  SetUpNumber(*openPositionXControl, {2, 0.0, 0.0, 100.0},
              "$$$/Vidra/Handlers/Captions/OpenPositionXTooltip=Set Horizontal Position (%)");
  GetZEBNode()->ChildPushBack(openPositionXControl);
  place.x += 25;

  openPositionXUnitText = MakeLabel(place, kText_UnitPercent);
  GetZEBNode()->ChildPushBack(openPositionXUnitText);
  place.x += 40;

  openPositionYLabel = MakeLabel(place, kText_Y);
  GetZEBNode()->ChildPushBack(openPositionYLabel);
  place.x += 30;

  openPositionYControl.reset(new UI_HotTextNumber);
  openPositionYControl->UI_SetLocalRectF(ToFloat(WithWidth(place, kOpenNumberWidth)));
  openPositionYControl->NotifyWhenChangedInteractively(boost::bind(&CaptionsView::OnOpenPositionYChanged, this, _1));
  SetUpNumber(*openPositionYControl, {2, 0.0, 0.0, 100.0},
              "$$$/Vidra/Handlers/Captions/OpenPositionyTooltip=Set Vertical Position (%)");
  GetZEBNode()->ChildPushBack(openPositionYControl);
  place.x += 25;

  openPositionYUnitText = MakeLabel(place, kText_UnitPercent);
  GetZEBNode()->ChildPushBack(openPositionYUnitText);
}

} // namespace Captivo
