#include <algorithm>

#include "Captions/view/CaptionsView.h"
#include "zebui/Drawbot.h"

namespace Captivo {

using zebui::drawbot::Drawbot;
using zebui::ui::UI_Node;

namespace {

constexpr int kRowHeight_Bar = 20;
constexpr float kRowTop_First = 3.0F;
constexpr float kRowTop_Second = 33.0F;
constexpr float kRowTop_Third = 66.0F;

constexpr float kGap = 4.0F;
constexpr float kFilterWidth = 167.0F;
constexpr float kPopupMinWidth = 149.0F;
constexpr float kWeightMinWidth = 100.0F;
constexpr float kHeightMinWidth = 80.0F;
constexpr float kNumberWidth = 24.0F;
constexpr float kNamesWidth = 100.0F; // of the region and style popups
constexpr int kButtonWidth = 20;
constexpr int kDividerWidth = 2;
constexpr int kPickerWidth = 40;
constexpr int kClosedNumberWidth = 30;
constexpr int kOpenNumberWidth = 38;

float RecommendedWidth(const UI_Node& node, Drawbot& drawbot) {
  return node.UI_GetRecommendedSize(drawbot).x;
}

void Place(UI_Node& node, float x, float y, float width) {
  node.UI_SetLocalRectF({x, y, width, static_cast<float>(kRowHeight_Bar)});
}

void Place(UI_Node& node, int x, int y, float width) {
  Place(node, static_cast<float>(x), static_cast<float>(y), width);
}

// At its recommended width, which is returned.
float PlaceLabel(UI_Node& node, float x, float y, Drawbot& drawbot) {
  const float width = RecommendedWidth(node, drawbot);
  Place(node, x, y, width);
  return width;
}

float PlaceLabel(UI_Node& node, int x, int y, Drawbot& drawbot) {
  return PlaceLabel(node, static_cast<float>(x), static_cast<float>(y), drawbot);
}

float PlacePopup(UI_Node& node, float x, float y, float minWidth, Drawbot& drawbot) {
  const float width = std::max(RecommendedWidth(node, drawbot), minWidth);
  Place(node, x, y, width);
  return width;
}

template <class Button> void PlaceButton(Button& button, int x, int y, int width = kButtonWidth) {
  button.SetBounds({x, y, width, kRowHeight_Bar});
}

} // namespace

// Fixed rows from left to right; nothing here looks at the width of the panel.
void CaptionsView::LayoutFormatBar() {
  Drawbot drawbot(*GetZEBNode());
  LayoutStreamRow(drawbot);
  if (isOpenCaptions) {
    constexpr int kButtonsX = 4;
    LayoutFontRow(drawbot);
    LayoutButtons(drawbot, kButtonsX, static_cast<int>(kRowTop_Third));
  } else {
    const float buttonsX = LayoutCaptionType(drawbot);
    LayoutButtons(drawbot, static_cast<int>(buttonsX), static_cast<int>(kRowTop_Second));
  }
}

void CaptionsView::LayoutStreamRow(Drawbot& drawbot) {
  constexpr float kPopupGap = 10.0F;
  float x = 3.0F;
  Place(*filterBox, x, kRowTop_First, kFilterWidth);
  x += kFilterWidth + kGap;
  x += PlaceLabel(*streamLabel, x, kRowTop_First, drawbot) + kGap;
  x += PlacePopup(*streamPopup, x, kRowTop_First, kPopupMinWidth, drawbot) + kPopupGap;
  x += PlaceLabel(*gridLabel, x, kRowTop_First, drawbot) + kGap;
  PlaceLabel(*gridSizeText, x, kRowTop_First, drawbot);
}

void CaptionsView::LayoutFontRow(Drawbot& drawbot) {
  float x = 8.0F;
  x += PlaceLabel(*fontLabel, x, kRowTop_Second, drawbot) + kGap;
  x += PlacePopup(*fontFamilyPopup, x, kRowTop_Second, kPopupMinWidth, drawbot) + kGap;
  x += PlacePopup(*fontWeightPopup, x, kRowTop_Second, kWeightMinWidth, drawbot) + kGap;
  x += PlaceLabel(*fontSizeLabel, x, kRowTop_Second, drawbot) + kGap;
  Place(*fontSizeControl, x, kRowTop_Second, kNumberWidth);
  x += kNumberWidth + kGap;
  x += PlaceLabel(*edgeWidthLabel, x, kRowTop_Second, drawbot) + kGap;
  Place(*edgeWidthControl, x, kRowTop_Second, kNumberWidth);
  x += kNumberWidth + kGap;
  x += PlaceLabel(*lineSpacingLabel, x, kRowTop_Second, drawbot) + kGap;
  Place(*lineSpacingControl, x, kRowTop_Second, kNumberWidth);
  x += kNumberWidth + kGap;
  Place(*regionPopup, x, kRowTop_Second, kNamesWidth);
  x += kNamesWidth + kGap;
  Place(*stylePopup, x, kRowTop_Second, kNamesWidth);
}

float CaptionsView::LayoutCaptionType(Drawbot& drawbot) {
  constexpr float kButtonsGap = 14.0F;
  float x = 4.0F;
  x += PlaceLabel(*captionTypeLabel, x, kRowTop_Second, drawbot) + kGap;
  return x + PlaceLabel(*captionTypePopup, x, kRowTop_Second, drawbot) + kButtonsGap;
}

void CaptionsView::LayoutButtons(Drawbot& drawbot, int x, int y) {
  PlaceButton(alignLeftButton, x, y);
  x += 25;
  PlaceButton(alignCenterButton, x, y);
  x += 25;
  PlaceButton(alignRightButton, x, y);
  x += 30;
  Place(*alignDivider, x, y, kDividerWidth);
  x += 8;
  if (isOpenCaptions) {
    PlaceButton(boldButton, x, y);
    x += 25;
  }
  PlaceButton(italicButton, x, y);
  x += 25;
  PlaceButton(underlineButton, x, y);
  x += 25;
  PlaceButton(musicNoteButton, x, y);
  x += 30;
  Place(*styleDivider, x, y, kDividerWidth);
  x += 8;
  PlaceButton(backgroundColorButton, x, y);
  x += 20;
  PlaceButton(textColorButton, x, y);
  if (isOpenCaptions) {
    x += 20;
    PlaceButton(edgeColorButton, x, y);
  }
  x += 25;
  if (isOpenCaptions) {
    PlaceButton(colorPicker, x, y, kPickerWidth);
    x += 45;
    Place(*opacityControl, x, y, kNumberWidth);
    x += 30;
    x += static_cast<int>(PlaceLabel(*opacityUnitText, x, y, drawbot) + 10.0F);
  } else {
    Place(*colorSwatch, x, y, kButtonWidth);
    x += 35;
  }
  Place(*colorDivider, x, y, kDividerWidth);
  if (isOpenCaptions)
    LayoutOpenPosition(drawbot, x + 34, y);
  else
    LayoutClosedPosition(drawbot, x + 8, y);
}

void CaptionsView::LayoutOpenPosition(Drawbot& drawbot, int x, int y) {
  Place(*openPositionGrid, x, y, kButtonWidth);
  x += 30;
  x += static_cast<int>(PlaceLabel(*openPositionXLabel, x, y, drawbot) + kGap);
  Place(*openPositionXControl, x, y, kOpenNumberWidth);
  x += kOpenNumberWidth;
  x += static_cast<int>(PlaceLabel(*openPositionXUnitText, x, y, drawbot) + 10.0F);
  x += static_cast<int>(PlaceLabel(*openPositionYLabel, x, y, drawbot) + kGap);
  Place(*openPositionYControl, x, y, kOpenNumberWidth);
  x += kOpenNumberWidth;
  PlaceLabel(*openPositionYUnitText, x, y, drawbot);
}

void CaptionsView::LayoutClosedPosition(Drawbot& drawbot, int x, int y) {
  Place(*closedPositionGrid, x, y, kButtonWidth);
  x += 27;
  x += static_cast<int>(PlaceLabel(*closedPositionXLabel, x, y, drawbot) + kGap);
  Place(*closedPositionXControl, x, y, kClosedNumberWidth);
  x += 35;
  x += static_cast<int>(PlaceLabel(*closedPositionYLabel, x, y, drawbot) + kGap);
  Place(*closedPositionYControl, x, y, kClosedNumberWidth);
  x += 35;
  PlacePopup(*doubleHeightPopup, static_cast<float>(x), static_cast<float>(y), kHeightMinWidth, drawbot);
}

} // namespace Captivo
