#include <set>
#include <typeinfo>

#include "Captions/contracts/CaptionDisplaySettings.h"
#include "Captions/contracts/CaptioningRenderableModel.h"
#include "Captions/contracts/CaptioningStreamUpdater.h"
#include "Captions/pane/CaptionsFilter.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/view/CaptionsView.h"
#include "zebcore/InterfaceRef.h"

namespace Captivo {

using zebcore::messaging::AddListener;
using zebcore::messaging::RemoveListener;

// Rows are never patched from a stream as a whole: all go, and the stream is read again.
void CaptionsPane::ReloadCaptions() {
  if (updater->IsBusy()) {
    Defer();
    reloadPending = true;
    return;
  }
  const std::size_t formerCount = list->GetRowCount();
  const std::vector<TickTime> selectedTimes = list->GetSelectedTimes();
  const TextRange range = list->NormalizeTextSelection();
  const bool hadFocusInText = list->HasFocusInText();

  list->Clear();
  ForgetVisibleRows();
  ReadRows();
  UpdateVisibleRows();

  if (!list->RestoreSelection(selectedTimes))
    SelectRememberedOrFirst();
  if (hadFocusInText && keepTextFocus)
    list->RestoreTextSelection(range);
  // The only row that came back stands for all of its text while nobody is in that, as a row just selected does.
  if (list->GetSelectedCount() == 1 && !list->HasFocusInText())
    list->ResetTextSelection();
  if (view && list->GetRowCount() != formerCount)
    view->UpdateScrollRange(false);
  UpdateViewAfterRowChange();
}

void CaptionsPane::ReadRows() {
  const auto stream = source.GetCaptioningStream();
  if (!stream || stream->GetCaptionCount() == 0)
    return;
  std::vector<BE::ICaptioningStream::CaptionKey> keys;
  stream->GetCaptionKeys(keys);
  for (const auto& key : keys) {
    const boost::intrusive_ptr<Caption> caption = stream->GetCaption(key);
    if (!caption)
      zebcore::classref::ThrowNullInterface(typeid(Caption)); // it has vanished since the keys were read
    if (PassesFilter(*caption))
      list->AddRow(caption);
  }
}

bool CaptionsPane::PassesFilter(const Caption& caption) const {
  if (filterText.empty())
    return true;
  UString text;
  caption.GetCaptionText(text, true);
  return ContainsFolded(text, filterText);
}

void CaptionsPane::SelectRememberedOrFirst() {
  const auto stream = source.GetCaptioningStream();
  const auto remembered = stream ? lastTimeByStream.find(stream->GetIdentity()) : lastTimeByStream.end();
  const TickTime time = remembered != lastTimeByStream.end() ? remembered->second : list->GetFirstTime();
  if (time != kTime_Min)
    list->SelectSingle(time);
}

bool CaptionsPane::SetSource(const CaptionsSource& newSource) {
  if (newSource == source)
    return true;
  reloadPending = false; // a switch takes the place of a reload that waits
  if (updater->IsBusy() || list->IsSelectedRowBeingEdited()) {
    Defer();
    sourcePending = true;
    pendingSource = newSource;
    return false;
  }
  updater->CommitChangesUndoable(true);
  LeaveSource();
  filterText.clear();
  source = newSource;
  JoinSource();
  UpdateStreamSettings();
  ReloadCaptions();
  return true;
}

void CaptionsPane::LeaveSource() {
  if (source.IsEmpty())
    return;
  updater->UpdateCaptioningStream(nullptr);
  if (const auto station = source.GetCaptioningStream().Query<BE::INotification>())
    RemoveListener(station->GetStationID(), this);
  if (const auto station = source.GetMasterClip().Query<BE::INotification>())
    RemoveListener(station->GetStationID(), this);
}

void CaptionsPane::JoinSource() {
  const bool hasFormat = source.GetStreamFormat() != zebcaptioning::kStreamFormat_None;
  updater->UpdateCaptioningStream(hasFormat ? source.GetCaptioningStream() : nullptr);
  if (source.IsEmpty())
    return;
  if (const auto station = source.GetCaptioningStream().Query<BE::INotification>())
    AddListener(station->GetStationID(), this);
  if (const auto station = source.GetMasterClip().Query<BE::INotification>())
    AddListener(station->GetStationID(), this);
}

void CaptionsPane::ShowMasterClip(const InterfaceRef<BE::IMasterClip>& clip) {
  const CaptionsSource newSource{InterfaceRef<>(clip)};
  if (newSource == source)
    return;
  const auto stream = source.GetCaptioningStream();
  if (stream && !list->GetSelectedTimes().empty())
    lastTimeByStream[stream->GetIdentity()] = list->GetSelectedTimes().front();
  SetSource(newSource);
}

void CaptionsPane::ConsiderMasterClip(const InterfaceRef<BE::IMasterClip>& clip) {
  if (deferActive && sourcePending) {
    // A switch that waits is aimed anew and not queued behind: only the newest target counts.
    if (clip != pendingSource.GetMasterClip())
      pendingSource = CaptionsSource(InterfaceRef<>(clip));
    return;
  }
  if (clip == source.GetMasterClip() || BE::IsMergedClip(clip))
    return;
  ShowMasterClip(clip);
}

void CaptionsPane::SelectStreamFormat(int index) {
  updater->CommitChangesUndoable(true);
  if (const auto station = source.GetCaptioningStream().Query<BE::INotification>())
    RemoveListener(station->GetStationID(), this);
  source.SelectStreamFormatAtIndex(index);
  const auto stream = source.GetCaptioningStream();
  if (const auto station = stream.Query<BE::INotification>())
    AddListener(station->GetStationID(), this);
  updater->UpdateCaptioningStream(stream);
  UpdateStreamSettings();
  ReloadCaptions();
}

void CaptionsPane::SetFilterText(const UString& text) {
  if (text == filterText)
    return;
  filterText = text;
  resetScrollPending = true;
  ReloadCaptions();
}

void CaptionsPane::UpdateStreamSettings() {
  int width = 0;
  int height = 0;
  StreamFormat format = zebcaptioning::kStreamFormat_None;
  if (const auto stream = source.GetCaptioningStream()) {
    const boost::intrusive_ptr<zebcaptioning::CaptionDisplaySettings> settings(
        new zebcaptioning::CaptionDisplaySettings);
    stream->GetDisplaySettings(kTime_Zero, *settings);
    format = settings->GetRegionBaseDimensions(width, height);
  } else {
    width = zebcaptioning::GetCaptionColumns(zebcaptioning::kStreamFormat_None, false);
    height = zebcaptioning::GetCaptionRows(zebcaptioning::kStreamFormat_None);
  }
  list->SetStreamSettings(format, width, height);
  if (!view)
    return;
  if (updater) {
    std::vector<UString> names;
    updater->GetRegionNames(names);
    view->SetRegionNames(names);
    names.clear();
    updater->GetStyleNames(names);
    view->SetStyleNames(names);
  }
  view->UpdateForSource(source, width, height);
}

void CaptionsPane::OnCaptioningStreamChanged(const InterfaceRef<BE::ICaptioningStream>& stream) {
  const std::set<StreamFormat> formerFormats = source.GetAvailableFormats();
  source.RefreshAvailableFormats();
  const bool formatsChanged = source.GetAvailableFormats() != formerFormats;
  UpdateStreamSettings();
  if (stream != source.GetCaptioningStream())
    return;
  updater->UpdateCaptioningStream(stream);
  const StreamFormat kept = source.GetStreamFormat();
  source.Refresh();
  if (formatsChanged && kept != zebcaptioning::kStreamFormat_None)
    source.SelectStreamFormat(kept);
  UpdateStreamSettings();
  ReloadCaptions();
}

} // namespace Captivo
