#include <algorithm>

#include "Captions/contracts/ParagraphStyleAttributes.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/view/CaptionsView.h"
#include "Captions/view/PositionRules.h"

namespace Captivo {

void CaptionsView::UpdatePositionGrid(int anchor) {
  const PositionGrid& grid = isOpenCaptions ? openPositionGrid : closedPositionGrid;
  if (grid)
    grid->SetValue(GridCellOfAnchor(anchor));
}

void CaptionsView::GetGridAnchor(CaptionFormatInfo::AnchorID& anchor) const {
  const PositionGrid& grid = isOpenCaptions ? openPositionGrid : closedPositionGrid;
  anchor = AnchorOfGridCell(grid ? grid->GetValue() : PointT<int>{-1, -1});
}

void CaptionsView::OnOpenGridChanged(const Changed&) {
  if (isOpenCaptions)
    ApplyGridAnchor();
}

void CaptionsView::OnClosedGridChanged(const Changed&) {
  if (!isOpenCaptions)
    ApplyGridAnchor();
}

// The one attribute of the bar that is not set as uniform.
void CaptionsView::ApplyGridAnchor() {
  CaptionFormatInfo::AnchorID anchor = 0;
  GetGridAnchor(anchor);
  CaptionFormatInfo copy(*formatInfo);
  copy.SetAnchorID(anchor, false);
  pane->ApplyFormat(zebcaptioning::kFormatAnchor, copy);
}

void CaptionsView::ApplyPositionX(int x) {
  bool isKnown = false;
  if (x == formatInfo->GetPositionX(isKnown) && isKnown)
    return;
  CaptionFormatInfo copy(*formatInfo);
  copy.SetPositionX(x);
  pane->ApplyFormat(zebcaptioning::kFormatPositionX, copy);
}

void CaptionsView::ApplyPositionY(int y) {
  bool isKnown = false;
  if (y == formatInfo->GetPositionY(isKnown) && isKnown)
    return;
  CaptionFormatInfo copy(*formatInfo);
  copy.SetPositionY(y);
  pane->ApplyFormat(zebcaptioning::kFormatPositionY, copy);
}

void CaptionsView::OnClosedPositionXChanged(const InteractivelyChanged& message) {
  if (message.GetChangeMessage() == InteractivelyChanged::kChange_Finished)
    ApplyPositionX(TruncateToInt(closedPositionXControl->GetValue()) - 1);
}

void CaptionsView::OnClosedPositionYChanged(const InteractivelyChanged& message) {
  if (message.GetChangeMessage() == InteractivelyChanged::kChange_Finished)
    ApplyPositionY(TruncateToInt(closedPositionYControl->GetValue()) - GetShownRowOffset());
}

void CaptionsView::OnOpenPositionXChanged(const InteractivelyChanged& message) {
  if (message.GetChangeMessage() == InteractivelyChanged::kChange_Finished)
    ApplyPositionX(PositionOfPercent(openPositionXControl->GetValue(), gridColumns));
}

void CaptionsView::OnOpenPositionYChanged(const InteractivelyChanged& message) {
  if (message.GetChangeMessage() == InteractivelyChanged::kChange_Finished)
    ApplyPositionY(PositionOfPercent(openPositionYControl->GetValue(), gridRows));
}

int CaptionsView::GetShownRowOffset() const {
  return zebcaptioning::IsTeletext(streamFormat) || zebcaptioning::IsAustralianCaption(streamFormat) ? 0 : 1;
}

// The grid of a caption's region stays until the next stream: a caption without a region finds that of the one before.
void CaptionsView::UpdatePositionRanges() {
  RectT<float> area;
  bool isPercent = true;
  bool isKnown = true;
  if (formatInfo->GetRegionArea(area, isPercent, isKnown) && area.width > 0.0F && area.height > 0.0F && isKnown) {
    gridColumns = RegionExtent(area.width, isPercent, frameRect.width);
    gridRows = RegionExtent(area.height, isPercent, frameRect.height);
  }
  minPositionY = zebcaptioning::GetTopPosition(streamFormat);
  // Without a computed width a line counts as one cell wide; the height has no such rule.
  maxPositionX = gridColumns - std::max(formatInfo->GetMaxLineWidth(), 1);
  maxPositionY = gridRows - formatInfo->GetMaxBlockHeight();
  if (isOpenCaptions)
    UpdateOpenPositionControls();
  else
    UpdateClosedPositionControls();
}

void CaptionsView::UpdateOpenPositionControls() {
  openPositionXControl->SetMinValue(PercentOfPosition(minPositionX, gridColumns));
  openPositionXControl->SetMaxValue(PercentOfPosition(maxPositionX, gridColumns));
  openPositionYControl->SetMinValue(PercentOfPosition(minPositionY, gridRows));
  openPositionYControl->SetMaxValue(PercentOfPosition(maxPositionY, gridRows));
  bool isKnown = false;
  const int x = formatInfo->GetPositionX(isKnown);
  if (isKnown)
    openPositionXControl->SetValue(PercentOfPosition(x, gridColumns));
  else
    openPositionXControl->SetValueUnknown();
  const int y = formatInfo->GetPositionY(isKnown);
  if (isKnown)
    openPositionYControl->SetValue(PercentOfPosition(y, gridRows));
  else
    openPositionYControl->SetValueUnknown();
}

void CaptionsView::UpdateClosedPositionControls() {
  const int rowOffset = GetShownRowOffset();
  closedPositionXControl->SetMinValue(minPositionX + 1);
  closedPositionXControl->SetMaxValue(maxPositionX + 1);
  closedPositionYControl->SetMinValue(minPositionY + rowOffset);
  closedPositionYControl->SetMaxValue(maxPositionY + rowOffset);
  bool isKnown = false;
  const int x = formatInfo->GetPositionX(isKnown);
  if (isKnown)
    closedPositionXControl->SetValue(x + 1);
  else
    closedPositionXControl->SetValueUnknown();
  const int y = formatInfo->GetPositionY(isKnown);
  if (isKnown)
    closedPositionYControl->SetValue(y + rowOffset);
  else
    closedPositionYControl->SetValueUnknown();
}

} // namespace Captivo
