#include <algorithm>

#include "Captions/contracts/CaptioningRenderableModel.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/pane/CaptionsTextEdit.h"
#include "Captions/pane/PaneMeasures.h"
#include "Captions/pane/Thumbnail.h"
#include "MF/VideoFrame.h"
#include "UIF/Drawing.h"
#include "zebcore/Localizer.h"
#include "zebui/Skin.h"

namespace Captivo {

namespace {

constexpr int kSelectionBandHeight = 74;
constexpr int kGap = 5; // from thumbnail to labels, from labels to timecodes
constexpr int kExtraLabelWidth = 5;
constexpr int kLineHeight = 17; // of labels and timecodes
constexpr int kTimecodeWidth = 80;
constexpr int kFirstLineTop = 5; // in the row
constexpr int kSecondLineTop = 53;
constexpr int kTextGap = 10;
constexpr int kTextHeight = 65;
constexpr int kTextRightMargin = 5;
constexpr int kFirstRowTop = 1;
constexpr int kPlainTextInset = 3;
constexpr int kPlainTextHeight = 58;
constexpr int kOpaque = 255;
constexpr int kAntiAliasing_Smooth = 1;

UString Localize(const char* key) {
  return zebcore::config::Localizer::Get().Localize(key);
}

UIF::Color GetDividerColor() {
  const auto id = zebui::skins::core::utilities::GetDividerColorID(nullptr);
  return UIF::ZEBConversionUtilities::ZEBColorRGBAtoKSLColor(zebui::ui::GetColor(id));
}

} // namespace

// Horizontal places, and what all rows of one pass are painted with.
struct CaptionsPane::RowGeometry {
  UIF::Font font;
  UString inLabel;
  UString outLabel;
  UIF::Color bandColor;
  UIF::Color labelColor;
  UIF::Color dividerColor;
  RectT<int> client;
  InterfaceRef<BE::IVideoSegments> video;
  RectT<int> thumbnailSource;
  RectT<int> thumbnailTarget; // in a row whose top is 0
  int labelX;
  int labelWidth;
  int timecodeX;
  int textX;
  int textWidth;
};

void CaptionsPane::SetScrollOffset(unsigned pixels) {
  if (IsUnavailable() && list->GetRowCount() != 0)
    return;
  scrollOffset = pixels / kRowHeight * kRowHeight;
  UpdateVisibleRows();
  Invalidate();
}

void CaptionsPane::UpdateVisibleRows() {
  if (list->GetRowCount() == 0)
    return;
  const int lastRow = static_cast<int>(list->GetRowCount()) - 1;
  const int top = static_cast<int>(scrollOffset / kRowHeight);
  const int bottom = top - 1 + (ClientRect().height + kRowHeight - 1) / kRowHeight;
  const int first = std::clamp(top, 0, lastRow);
  const int last = std::clamp(bottom, 0, lastRow);

  boost::shared_ptr<CaptionsItem> item;
  if (firstVisibleRow != -1) {
    lastVisibleRow = std::min(lastVisibleRow, lastRow);
    for (int index = firstVisibleRow; index <= lastVisibleRow; ++index) {
      if ((index < first || index > last) && list->GetRowAtIndex(index, item))
        item->DestroyControls();
    }
  }
  for (int index = first; index <= last; ++index) {
    if (!list->GetRowAtIndex(index, item))
      continue;
    if (!item->HasControls()) {
      item->CreateControls();
      RequestPreview(GetLastFrameTime(item->GetEndTime()), source);
    }
    item->SyncFromCaption();
    item->UpdateTimeDisplay();
  }
  firstVisibleRow = first;
  lastVisibleRow = last;
}

void CaptionsPane::PaintSelf(UIF::DC& dc) {
  const auto surface = dc.GetDrawbot();
  dc.FillRect(ClientRect(), UIF::ColorManager::GetColor(UIF::kColor_WindowBackground), kOpaque);
  surface->SetAntiAliasing(kAntiAliasing_Smooth);

  const RowGeometry geometry = ComputeRowGeometry();
  const int rowCount = static_cast<int>(list->GetRowCount());
  // The list may have shrunk since the rows in view were last worked out.
  if (lastVisibleRow >= rowCount)
    lastVisibleRow = rowCount == 0 ? -2 : rowCount - 1;
  int rowTop = geometry.client.y + kFirstRowTop;
  boost::shared_ptr<CaptionsItem> item;
  for (int index = firstVisibleRow; index <= lastVisibleRow; ++index) {
    if (!list->GetRowAtIndex(index, item))
      continue;
    PaintRow(dc, *item, index, geometry, rowTop);
    rowTop += kRowHeight;
  }
}

CaptionsPane::RowGeometry CaptionsPane::ComputeRowGeometry() const {
  RowGeometry geometry{UIF::Font::GetFont(UIF::kFont_Normal),
                       Localize("$$$/Vidra/Handlers/CaptionView/inLabel=In:"),
                       Localize("$$$/Vidra/Handlers/CaptionView/outLabel=Out:"),
                       UIF::ColorManager::GetColor(UIF::kColor_ReversibleGray),
                       UIF::ColorManager::GetColor(UIF::kColor_ReversibleBlack),
                       GetDividerColor(),
                       ClientRect(),
                       source.GetVideoClip(),
                       Thumbnail::kDefaultRect,
                       {},
                       0,
                       0,
                       0,
                       0,
                       0};
  const float labelWidth =
      std::max(geometry.font.StringWidth(geometry.inLabel), geometry.font.StringWidth(geometry.outLabel));
  if (const auto& video = geometry.video)
    geometry.thumbnailSource = Thumbnail::GetSourceRect(video->GetFrameRect(), video->GetPixelAspectRatio());
  geometry.thumbnailTarget = Thumbnail::GetTargetRect(geometry.thumbnailSource, {geometry.client.x, -kFirstRowTop});

  geometry.labelX = geometry.thumbnailTarget.Right() + kGap;
  geometry.labelWidth = static_cast<int>(labelWidth) + kExtraLabelWidth;
  geometry.timecodeX = static_cast<int>(static_cast<float>(geometry.labelX) + labelWidth + kGap);
  geometry.textX = geometry.timecodeX + kTimecodeWidth + kTextGap;
  geometry.textWidth = geometry.client.Right() - kTextRightMargin - geometry.textX;
  return geometry;
}

// Back to front.
void CaptionsPane::PaintRow(UIF::DC& dc, CaptionsItem& item, int index, const RowGeometry& geometry, int rowTop) {
  const RectT<int>& client = geometry.client;
  if (list->IsSelected(item.GetBeginTime()))
    dc.FillRect({client.x, rowTop + 1, client.width, kSelectionBandHeight}, geometry.bandColor, kOpaque);
  if (geometry.video) {
    RectT<int> target = geometry.thumbnailTarget;
    target.y += rowTop;
    PaintThumbnail(dc, geometry.video, GetLastFrameTime(item.GetEndTime()), geometry.thumbnailSource, target);
  }

  PaintTimeLine(dc, geometry, geometry.inLabel, rowTop + kFirstLineTop,
                item.HasControls() ? &item.GetInControl() : nullptr);
  PaintTimeLine(dc, geometry, geometry.outLabel, rowTop + kSecondLineTop,
                item.HasControls() ? &item.GetOutControl() : nullptr);
  const RectT<float> text{static_cast<float>(geometry.textX), static_cast<float>(rowTop + kFirstLineTop),
                          static_cast<float>(geometry.textWidth), static_cast<float>(kTextHeight)};
  if (const auto& textEdit = item.GetTextEdit()) {
    textEdit->UI_SetLocalRectF(text);
    textEdit->UI_Show(true);
  } else {
    // A row in view has its controls: nothing is drawn on this road.
    const auto surface = dc.GetDrawbot();
    surface->SaveState();
    surface->Clip({text.x, text.y + kPlainTextInset, text.width, static_cast<float>(kPlainTextHeight)});
    surface->RestoreState();
  }
  if (index != lastVisibleRow) {
    const int y = rowTop + kRowHeight;
    dc.DrawLine({client.x, y}, {client.Right(), y}, geometry.dividerColor, 1, kOpaque);
  }
}

// A label and the timecode behind it, which is only placed: it paints itself.
void CaptionsPane::PaintTimeLine(UIF::DC& dc, const RowGeometry& geometry, const UString& label, int top,
                                 UIF::HotTimecodeControl* control) {
  dc.DrawString(geometry.font, {geometry.labelX, top, geometry.labelWidth, kLineHeight}, label, geometry.labelColor,
                UIF::kAlign_Right, UIF::kVerticalAlignment_Center, UIF::kTruncate_End, false);
  if (!control)
    return;
  control->SetBounds({geometry.timecodeX, top, kTimecodeWidth, kLineHeight});
  control->Show(true);
}

} // namespace Captivo
