#include "Captions/pane/CaptionsPane.h"
#include "Captions/view/CaptionsView.h"

namespace Captivo {

namespace {

// What the height of closed captions is as a font size.
constexpr float kFontSize_NormalHeight = 18.0F;
constexpr float kFontSize_DoubleHeight = 36.0F;

constexpr std::int64_t kHeightItem_Double = 1;
constexpr std::int64_t kHeightItem_Mixed = 2;

} // namespace

void CaptionsView::ApplyFormatInfo(zebcaptioning::CaptionFormatParameter parameter) {
  const CaptionFormatInfo copy(*formatInfo);
  pane->ApplyFormat(parameter, copy);
}

void CaptionsView::OnDoubleHeightChanged(const Changed&) {
  const std::int64_t item = doubleHeightPopup->GetValue();
  if (item == kHeightItem_Mixed)
    return;
  formatInfo->SetFontSize(item == kHeightItem_Double ? kFontSize_DoubleHeight : kFontSize_NormalHeight, true);
  ApplyFormatInfo(zebcaptioning::kFormatFontSize);
}

void CaptionsView::OnFontSizeChanged(const InteractivelyChanged& message) {
  if (message.GetChangeMessage() != InteractivelyChanged::kChange_Finished)
    return;
  formatInfo->SetFontSize(static_cast<float>(fontSizeControl->GetValue()), true);
  ApplyFormatInfo(zebcaptioning::kFormatFontSize);
}

// Every edge gets a colour with its width.
void CaptionsView::OnEdgeWidthChanged(const InteractivelyChanged& message) {
  if (message.GetChangeMessage() != InteractivelyChanged::kChange_Finished)
    return;
  formatInfo->SetTextEdgeWidth(static_cast<float>(edgeWidthControl->GetValue()), true);
  CaptionFormatInfo copy(*formatInfo);
  copy.SetColor(zebcaptioning::CaptioningColor::kColorType_Edge, GetEdgeColorForNewEdge(), true);
  pane->ApplyFormat(zebcaptioning::kFormatEdgeWidth, copy);
}

void CaptionsView::OnLineSpacingChanged(const InteractivelyChanged& message) {
  if (message.GetChangeMessage() != InteractivelyChanged::kChange_Finished)
    return;
  CaptionFormatInfo copy(*formatInfo);
  copy.SetLineSpacing(static_cast<int>(static_cast<float>(lineSpacingControl->GetValue())), true);
  pane->ApplyFormat(zebcaptioning::kFormatLineSpacing, copy);
}

} // namespace Captivo
