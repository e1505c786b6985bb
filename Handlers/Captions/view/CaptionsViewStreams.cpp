#include "Captions/pane/CaptionsPane.h"
#include "Captions/view/CaptionsView.h"
#include "Captions/view/ViewTexts.h"

namespace Captivo {

using zebcaptioning::CaptionType;

// The popup's index is also the one by which the pane knows the stream.
void CaptionsView::FillStreamPopup(const CaptionsSource& source) {
  if (!streamPopup)
    return;
  streamPopup->DeleteAllItems();
  std::int64_t current = 0;
  std::int64_t index = 0;
  for (const StreamFormat format : source.GetAvailableFormats()) {
    streamPopup->AddItem(zebcaptioning::GetFullStreamFormatLabel(format));
    if (format == streamFormat)
      current = index;
    ++index;
  }
  streamPopup->SetValue(current);
}

void CaptionsView::OnStreamChanged(const Changed&) {
  if (pane)
    pane->SelectStreamFormat(static_cast<int>(streamPopup->GetValue()));
}

void CaptionsView::FillCaptionTypePopup() {
  captionTypeMap.clear();
  if (!captionTypePopup)
    return;
  captionTypePopup->DeleteAllItems();
  std::set<CaptionType> types;
  if (!zebcaptioning::GetSupportedCaptionTypes(streamFormat, types))
    return;
  for (const CaptionType type : types) {
    const std::int64_t index = captionTypePopup->AddItem(zebcaptioning::GetCaptionTypeDescription(type));
    captionTypeMap.insert({index, type});
  }
  UpdateCaptionTypePopup();
}

void CaptionsView::OnCaptionTypeChanged(const Changed&) {
  const auto entry = captionTypeMap.left.find(captionTypePopup->GetValue());
  formatInfo->SetCaptionType(entry == captionTypeMap.left.end() ? CaptionType{0} : entry->second, true);
  ApplyFormatInfo(zebcaptioning::kFormatCaptionType);
}

namespace {

void FillNames(zebui::controls::UI_Popup& popup, const char* noneKey, const std::vector<UString>& names) {
  popup.DeleteAllItems();
  popup.AddItem(Localize(noneKey));
  popup.SetValue(0);
  for (const UString& name : names)
    popup.AddItem(name);
}

} // namespace

void CaptionsView::SetRegionNames(const std::vector<UString>& names) {
  FillNames(*regionPopup, kText_NoRegionEntry, names);
}

void CaptionsView::SetStyleNames(const std::vector<UString>& names) {
  FillNames(*stylePopup, kText_CustomStyle, names);
}

// A region is shown and not set: the choice stands until the captions' own one is published again.
void CaptionsView::OnRegionChanged(const Changed&) {
  regionPopup->GetValueString();
  PublishFormat(formatInfo);
}

void CaptionsView::OnStyleChanged(const Changed&) {
  stylePopup->GetValueString();
  PublishFormat(formatInfo);
}

void CaptionsView::SelectStreamByFormat(const std::vector<TickTime>& times, const StreamFormat& format) {
  if (!pane)
    return;
  if (format == streamFormat || format == zebcaptioning::kStreamFormat_None || !streamPopup) {
    pane->SelectCaptionTimes(times);
    return;
  }
  const UString label = zebcaptioning::GetFullStreamFormatLabel(format);
  const std::int64_t count = streamPopup->GetItems();
  for (std::int64_t i = 0; i < count; ++i) {
    if (streamPopup->GetItemString(i) == label) {
      pane->SelectStreamFormat(static_cast<int>(i));
      pane->SelectCaptionTimes(times);
      return;
    }
  }
}

} // namespace Captivo
