#include <algorithm>

#include "Captions/pane/CaptionsPane.h"
#include "Captions/pane/PaneMeasures.h"
#include "Captions/view/CaptionsView.h"
#include "Captions/view/ViewMeasures.h"
#include "zebui/Controls.h"

namespace Captivo {

void CaptionsView::SetBoundsSelf(const RectT<int>& bounds) {
  LayoutFormatBar();
  LayoutContent(bounds);
}

int CaptionsView::GetScrollBarWidth() const {
  return GetIsStacked() ? 0 : UIF::ScrollBar::GetDefaultSize();
}

RectT<int> CaptionsView::GetScrollBarRect(const RectT<int>& rect) const {
  const int width = GetScrollBarWidth();
  const int top = rect.y + formatBarHeight + kGapUnderBar;
  return {rect.Right() - width, top, width, rect.Bottom() - top - kSpaceUnderPane};
}

void CaptionsView::SetScrollRange(int page) {
  scrollBar.SetScrollParameters(0, pane->GetContentHeight(GetIsStacked()), page, kScrollStep);
}

void CaptionsView::LayoutContent(const RectT<int>& rect) {
  const RectT<int> barRect = GetScrollBarRect(rect);
  const int height = barRect.height;
  if (height > 0) {
    pane->SetBounds({rect.x, barRect.y, rect.width - barRect.width, height});
    // The test and the move differ by two pixels, and that difference stays.
    constexpr int kTooClose = 10;
    constexpr int kApart = 12;
    const int exportRight = rect.x + kExportSettingsX + kBottomButtonWidth;
    int addX = rect.Right() - kAddCaptionFromRight;
    if (exportRight + kTooClose > addX)
      addX = exportRight + kApart;
    PlaceBottomButtons(rect, addX);
  }
  scrollBar.SetBounds(barRect);
  SetScrollRange(height);
  const int content = pane->GetContentHeight(GetIsStacked());
  if (scrollPosition + height > content) {
    scrollPosition = std::max(content - height, 0) / kScrollStep * kScrollStep;
    scrollBar.SetScrollBarPosition(scrollPosition, true);
    pane->SetScrollOffset(static_cast<unsigned>(scrollPosition));
  }
  scrollBar.Show(!GetIsStacked());
}

void CaptionsView::PlaceBottomButtons(const RectT<int>& rect, int addX) {
  const auto place = [&](const TextButton& button, int x) {
    button->UI_SetLocalRectF({static_cast<float>(x), static_cast<float>(rect.Bottom() - kBottomButtonRise),
                              static_cast<float>(kBottomButtonWidth), static_cast<float>(kBottomButtonHeight)});
  };
  place(importSettingsButton, rect.x + kImportSettingsX);
  place(exportSettingsButton, rect.x + kExportSettingsX);
  place(addCaptionButton, addX);
  place(deleteCaptionButton, addX + kDeleteCaptionFromAdd);
}

void CaptionsView::UpdateScrollRange(bool reset) {
  const RectT<int> barRect = GetScrollBarRect(ClientRect());
  scrollBar.SetBounds(barRect);
  SetScrollRange(barRect.height);
  if (reset) {
    scrollPosition = 0;
    scrollBar.SetScrollBarPosition(0, true);
    pane->SetScrollOffset(0);
  }
  scrollBar.Show(!GetIsStacked());
}

void CaptionsView::OnScrollVertical(int position) {
  const std::int32_t formerPosition = scrollPosition;
  scrollPosition = position;
  if (scrollPosition == formerPosition)
    return;
  scrollBar.SetScrollBarPosition(scrollPosition, true);
  pane->SetScrollOffset(static_cast<unsigned>(scrollPosition));
  Invalidate();
}

// Deliberately without a bound, unlike panning.
bool CaptionsView::MouseWheelSelf(const PointT<int>&, const UIF::KeyModifiers&, int delta) {
  const std::int32_t formerPosition = scrollPosition;
  scrollPosition -= scrollBar.GetStep() * delta;
  if (scrollPosition != formerPosition) {
    scrollBar.SetScrollBarPosition(scrollPosition, true);
    pane->SetScrollOffset(static_cast<unsigned>(scrollPosition));
    Invalidate();
  }
  return true;
}

bool CaptionsView::MousePanSelf(const PointT<int>&, const PointT<int>& delta) {
  int min = 0;
  int max = 0;
  int page = 0;
  int step = 0;
  scrollBar.GetScrollParameters(min, max, page, step);
  const std::int32_t formerPosition = scrollPosition;
  scrollPosition = std::min(std::max(scrollPosition + delta.y, 0), max);
  scrollBar.SetScrollBarPosition(scrollPosition, true);
  // A pan that stays inside one step leaves the pane alone.
  if (scrollPosition / kScrollStep != formerPosition / kScrollStep) {
    pane->SetScrollOffset(static_cast<unsigned>(scrollPosition));
    Invalidate();
    Redraw();
  }
  return true;
}

// Moves the bar alone: the pane follows when the bar reports it.
void CaptionsView::ScrollSelectionIntoView() {
  const int row = pane->GetFirstSelectedIndex();
  if (row != -1) {
    const auto index = static_cast<std::uint32_t>(row);
    const auto height = static_cast<std::uint32_t>(scrollBar.GetBounds().height);
    const auto position = static_cast<std::uint32_t>(scrollPosition);
    const bool isAboveBottom = index < (height + position) / kRowHeight;
    if (!isAboveBottom)
      scrollBar.SetScrollBarPosition(static_cast<int>(((index + 2) * kRowHeight - height) / kRowHeight * kRowHeight),
                                     true);
    else if (index < position / kRowHeight)
      scrollBar.SetScrollBarPosition(static_cast<int>(kRowHeight * index), true);
  }
  UpdateControlStates();
  pane->Invalidate();
}

} // namespace Captivo
