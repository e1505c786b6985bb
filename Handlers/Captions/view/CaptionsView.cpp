#include "Captions/view/CaptionsView.h"

#include "Captions/contracts/StreamMessages.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/pane/PaneMeasures.h"
#include "Captions/view/ViewMeasures.h"
#include "Captions/view/ViewTexts.h"
#include "UIF/Drawing.h"
#include "zebui/Controls.h"

namespace Captivo {

using zebcore::messaging::MessageCast;

namespace {

UString SizeText(int width, int height) {
  return zebcore::FromUTF8(std::to_string(width) + "x" + std::to_string(height));
}

} // namespace

CaptionsView::CaptionsView(const std::string& shortcutContextName)
    : TabView(UIF::Application::Instance().GetCommander()), contextName(shortcutContextName), scrollBar(this),
      formatBarHeight(kFormatBarHeight_Closed), alignLeftButton(this), alignCenterButton(this), alignRightButton(this),
      boldButton(this), italicButton(this), underlineButton(this), musicNoteButton(this), textColorButton(this),
      backgroundColorButton(this), edgeColorButton(this), colorPicker(this) {
  formatInfo.reset(new CaptionFormatInfo);
}

CaptionsView::~CaptionsView() {
  delete pane;
}

void CaptionsView::Destroy() {
  TabView::Destroy(kDestroy_Closing);
}

void CaptionsView::NowOnDuty() {
  onDuty = true;
}

void CaptionsView::NowOffDuty() {
  if (pane)
    pane->CommitChanges();
  onDuty = false;
}

int CaptionsView::GetStackedDimensionHeightMin() const {
  constexpr int kUnderRows = 51;
  const int rows = pane ? static_cast<int>(pane->GetRowCount()) : 0;
  return (rows + (GetIsStacked() ? 0 : 1)) * kRowHeight + formatBarHeight + kUnderRows;
}

std::string CaptionsView::GetWingMenuName() const {
  return "Captivo_Wing_Menu";
}

void CaptionsView::PaintSelf(UIF::DC& dc) {
  dc.FillRect(ClientRect(), UIF::ColorManager::GetColor(UIF::kColor_WindowBackground), 255);
}

void CaptionsView::HandleMessage(const zebcore::messaging::Message& message) {
  if (const auto* scrolled = MessageCast<UIF::ScrollVerticalMessage>(message))
    OnScrollVertical(scrolled->position);
  else if (const auto* picked = MessageCast<UIF::ColorPickerControlChangedMessage>(message))
    OnPickerColorChanged(picked->red, picked->green, picked->blue);
  else if (MessageCast<UIF::ColorPickerSwatchClickedMessage>(message))
    OnPickerSwatchClicked();
  else if (MessageCast<UIF::ColorPickerSwatchStartEyedropperModeMessage>(message))
    eyedropperActive = true;
  else if (MessageCast<UIF::ColorPickerSwatchEndEyedropperModeMessage>(message))
    eyedropperActive = false;
  else if (MessageCast<BE::ProjectActivatedMessage>(message) || MessageCast<BE::ReadOnlyStateChangedMessage>(message))
    UpdateControlStates();
}

void CaptionsView::SelectCaptionAtTime(const TickTime& time) {
  if (pane)
    pane->SelectCaptionAtTime(time);
}

void CaptionsView::ForgetPreview(const InterfaceRef<BE::IVideoSegments>& video) {
  if (pane)
    pane->ForgetPreview(video);
}

void CaptionsView::UpdateForSource(const CaptionsSource& source, int columns, int rows) {
  filterBox->SetValue(UString(), false);
  const StreamFormat format = source.GetStreamFormat();
  if (format != streamFormat)
    formatInfo.reset(new CaptionFormatInfo);
  streamFormat = format;
  const bool isOpen = zebcaptioning::IsOpenCaptions(format);
  if (isOpen != isOpenCaptions) {
    isOpenCaptions = isOpen;
    formatBarHeight = isOpen ? kFormatBarHeight_Open : kFormatBarHeight_Closed;
    LayoutFormatBar();
    LayoutContent(GetBounds());
    UpdateControlVisibility();
  }
  FillStreamPopup(source);
  FillCaptionTypePopup();
  gridColumns = columns;
  gridRows = rows;
  UString size;
  if (isOpen) {
    gridLabel->SetValue(Localize(kText_Frame));
    if (const auto video = source.GetVideoClip()) {
      frameRect = video->GetFrameRect();
      size = SizeText(frameRect.width, frameRect.height);
    }
  } else {
    size = SizeText(gridColumns, gridRows);
    gridLabel->SetValue(Localize(kText_Grid));
  }
  gridSizeText->SetValue(size);
  if (zebcaptioning::IsTeletext(format) || zebcaptioning::IsAustralianCaption(format)) {
    underlineAllowed = false;
    italicAllowed = false;
  } else {
    underlineAllowed = true;
    if (!isOpen)
      italicAllowed = true;
  }
  LayoutFormatBar();
  UpdateControlVisibility();
  UpdateControlStates();
}

} // namespace Captivo
