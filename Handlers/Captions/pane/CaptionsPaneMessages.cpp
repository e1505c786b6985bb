#include <algorithm>

#include "Captions/contracts/CaptioningStreamUpdater.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/StreamMessages.h"
#include "Captions/pane/CaptionsPane.h"
#include "MZ/Actions.h"

namespace Captivo {

using zebcore::messaging::MessageCast;

namespace {

bool IsSameStream(const InterfaceRef<BE::ICaptioningStream>& a, const InterfaceRef<BE::ICaptioningStream>& b) {
  return a && b && a->GetIdentity() == b->GetIdentity();
}

} // namespace

void CaptionsPane::HandleMessage(const zebcore::messaging::Message& message) {
  if (const auto* added = MessageCast<BE::CaptionsAddedMessage>(message))
    OnCaptionsAdded(*added);
  else if (const auto* removed = MessageCast<BE::CaptionsRemovedMessage>(message))
    OnCaptionsRemoved(*removed);
  else if (const auto* changed = MessageCast<BE::CaptionsChangedMessage>(message))
    OnCaptionsChanged(*changed);
  else if (const auto* streamChanged = MessageCast<BE::CaptioningStreamChangedMessage>(message))
    OnCaptioningStreamChanged(streamChanged->stream);
  else if (const auto* moved = MessageCast<BE::CaptionsMovedMessage>(message))
    OnCaptionsMoved(*moved);
  else if (const auto* rendered = MessageCast<ML::RenderFrameCompletionMessage>(message))
    OnRenderFrameCompleted(*rendered);
  else if (const auto* selected = MessageCast<MZ::MasterClipSelectedMessage>(message))
    ConsiderMasterClip(selected->clip);
  else if (const auto* closed = MessageCast<MZ::MasterClipClosedMessage>(message))
    OnMasterClipClosed(closed->clip);
  else if (const auto* video = MessageCast<MZ::VideoTrackItemInfoMessage>(message))
    ConsiderMasterClip(video->info.clip);
  else if (const auto* audioVideo = MessageCast<MZ::AudioVideoTrackItemInfoMessage>(message))
    ConsiderMasterClip(audioVideo->info.clip);
  else if (MessageCast<MZ::AudioTrackItemInfoMessage>(message) ||
           MessageCast<MZ::TransitionTrackItemInfoMessage>(message) ||
           MessageCast<MZ::EmptyTrackItemInfoMessage>(message) || MessageCast<MZ::NothingInfoMessage>(message))
    ConsiderMasterClip(nullptr);
  else if (const auto* properties = MessageCast<BE::PropertiesChangedMessage>(message))
    OnPropertiesChanged(*properties);
  else if (const auto* settings = MessageCast<MZ::SequenceSettingsChangedMessage>(message))
    RefreshSequenceTimeDisplay(settings->sequence);
  else if (const auto* sourceClip = MessageCast<HSL::SourceClipSelectedMessage>(message))
    OnSourceClipSelected(*sourceClip);
  else if (MessageCast<MZ::BinSelectedMessage>(message) || MessageCast<MZ::SequenceSelectedMessage>(message))
    ShowMasterClip(nullptr);
  else if (MessageCast<HSL::CaptionCommitEditsMessage>(message))
    updater->CommitChangesUndoable(false);
}

void CaptionsPane::OnCaptionsAdded(const BE::CaptionsAddedMessage& message) {
  const auto current = source.GetCaptioningStream();
  if (!current)
    return;
  bool anyNew = false;
  for (const auto& [stream, caption] : message.captions) {
    if (IsSameStream(stream, current) && caption && list->AddOrUpdateCaption(caption)) {
      ++lastVisibleRow;
      anyNew = true;
    }
  }
  if (anyNew) {
    resetScrollPending = true;
    RefreshAfterRowChange();
  } else {
    PublishSelectionFormat();
  }
}

void CaptionsPane::OnCaptionsRemoved(const BE::CaptionsRemovedMessage& message) {
  const auto current = source.GetCaptioningStream();
  bool anyRemoved = false;
  for (const auto& [stream, time] : message.captions) {
    if (IsSameStream(stream, current) && list->RemoveRowAt(time))
      anyRemoved = true;
  }
  if (!anyRemoved)
    return;
  resetScrollPending = true;
  RefreshAfterRowChange();
}

void CaptionsPane::OnCaptionsChanged(const BE::CaptionsChangedMessage& message) {
  const auto current = source.GetCaptioningStream();
  if (!current)
    return;
  bool anyNew = false;
  for (const auto& [stream, caption] : message.captions) {
    if (IsSameStream(stream, current) && caption && list->AddOrUpdateCaption(caption))
      anyNew = true;
  }
  if (anyNew) {
    RefreshAfterRowChange();
  } else {
    PublishSelectionFormat();
    Invalidate();
  }
}

void CaptionsPane::OnCaptionsMoved(const BE::CaptionsMovedMessage& message) {
  const auto current = source.GetCaptioningStream();
  if (!current)
    return;
  for (const auto& range : message.ranges) {
    if (IsSameStream(range.stream, current))
      list->AdjustRows(range.begin, range.end, range.offset);
  }
  UpdateVisibleRows();
}

void CaptionsPane::OnMasterClipClosed(const InterfaceRef<BE::IMasterClip>& clip) {
  const auto current = source.GetMasterClip();
  if (current && current == clip)
    ShowMasterClip(nullptr);
}

void CaptionsPane::OnPropertiesChanged(const BE::PropertiesChangedMessage& message) {
  const auto sequence = source.GetSequence();
  if (!sequence)
    return;
  const auto concerns = [&](const auto& record) { return record.object == sequence; };
  if (std::any_of(message.records.begin(), message.records.end(), concerns))
    RefreshSequenceTimeDisplay(sequence);
}

void CaptionsPane::OnSourceClipSelected(const HSL::SourceClipSelectedMessage& message) {
  constexpr int kMasterClip = 1;
  constexpr int kTrackItem = 2;
  if (message.kind == kTrackItem)
    SetSource(CaptionsSource::ForTrackItem(message.item));
  else if (message.kind == kMasterClip)
    ConsiderMasterClip(message.clip);
}

void CaptionsPane::RefreshSequenceTimeDisplay(const InterfaceRef<BE::ISequence>& sequence) {
  if (sequence != source.GetSequence())
    return;
  constexpr int kKind = CaptionsSource::kKind_Sequence;
  const TimeDisplay video = MZ::SequenceActions::GetVideoTimeDisplayFormat(sequence, true);
  const TimeDisplay audio = MZ::SequenceActions::GetAudioTimeDisplayFormat(sequence);
  bool changed = source.SetDisplayOverride(kKind, 1, video);
  changed |= source.SetDisplayOverride(kKind, 0, audio);
  const bool isFrameAligned = MZ::SequenceActions::GetFrameAlignment(sequence) == 0;
  changed |= source.SetMediaIsVideo(kKind, isFrameAligned ? 1 : 0);
  if (changed)
    UpdateVisibleRows();
}

void CaptionsPane::OnTimeDisplayChosen(CaptionsSource::Kind kind, const TimeDisplay& display) {
  if (source.SetDisplayOverride(kind, 1, display))
    list->RefreshTimeDisplays();
}

} // namespace Captivo
