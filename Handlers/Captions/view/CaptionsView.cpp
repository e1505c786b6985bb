#include "Captions/view/CaptionsView.h"

#include "Captions/contracts/StreamMessages.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/pane/PaneMeasures.h"
#include "Captions/view/ViewMeasures.h"
#include "UIF/Drawing.h"
#include "zebui/Controls.h"

namespace Captivo {

using zebcore::messaging::MessageCast;

CaptionsView::CaptionsView(const std::string& shortcutContextName)
    : TabView(UIF::Application::Instance().GetCommander()), contextName(shortcutContextName), scrollBar(this),
      formatBarHeight(kFormatBarHeight_Closed), formatInfo(new zebcaptioning::CaptionFormatInfo) {}

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
  else if (MessageCast<BE::ProjectActivatedMessage>(message) || MessageCast<BE::ReadOnlyStateChangedMessage>(message))
    UpdateControlStates();
}

void CaptionsView::SelectCaptionAtTime(const TickTime& time) {
  if (pane)
    pane->SelectCaptionAtTime(time);
}

void CaptionsView::SelectStreamByFormat(const std::vector<TickTime>& times, const StreamFormat& format) {
  if (!pane)
    return;
  if (format != streamFormat && format != zebcaptioning::kStreamFormat_None) {
    const int index = pane->FindAvailableFormat(format);
    if (index < 0)
      return;
    pane->SelectStreamFormat(index);
  }
  pane->SelectCaptionTimes(times);
}

void CaptionsView::ForgetPreview(const InterfaceRef<BE::IVideoSegments>& video) {
  if (pane)
    pane->ForgetPreview(video);
}

void CaptionsView::PublishFormat(const boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo>& info) {
  if (info)
    formatInfo = info;
}

// No control shows regions or styles unless these are enabled.
void CaptionsView::SetRegionNames(const std::vector<UString>&) {}

void CaptionsView::SetStyleNames(const std::vector<UString>&) {}

void CaptionsView::UpdateForSource(const CaptionsSource& source, int columns, int rows) {
  const StreamFormat format = source.GetStreamFormat();
  if (format != streamFormat)
    formatInfo.reset(new zebcaptioning::CaptionFormatInfo);
  streamFormat = format;
  const bool isOpen = zebcaptioning::IsOpenCaptions(format);
  if (isOpen != isOpenCaptions) {
    isOpenCaptions = isOpen;
    formatBarHeight = isOpen ? kFormatBarHeight_Open : kFormatBarHeight_Closed;
    LayoutContent(GetBounds());
  }
  gridColumns = columns;
  gridRows = rows;
  if (isOpen) {
    if (const auto video = source.GetVideoClip())
      frameRect = video->GetFrameRect();
  }
  if (zebcaptioning::IsTeletext(format) || zebcaptioning::IsAustralianCaption(format)) {
    underlineAllowed = false;
    italicAllowed = false;
  } else {
    underlineAllowed = true;
    if (!isOpen)
      italicAllowed = true;
  }
  UpdateControlStates();
}

} // namespace Captivo
