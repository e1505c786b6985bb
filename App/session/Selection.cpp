#include "App/Session.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"

// What is selected in the bin and in the timeline, said by the host's messages.
namespace App {

using zebcore::messaging::BroadcastMessage;

namespace {

InterfaceRef<BE::MasterClip> ClipOf(const InterfaceRef<BE::TrackItem>& item) {
  const auto clip = item ? item->GetClip() : nullptr;
  return clip ? clip->GetMasterClip().Query<BE::MasterClip>() : nullptr;
}

} // namespace

// Kept as a message, to be said again just as it was.
void Session::Say(const zebcore::utility::ImmutableString& station, const zebcore::messaging::Message& message) {
  mSelectionStation = station;
  mSelection = message.Clone();
  BroadcastMessage(station, message);
}

template <class M> void Session::SayItem(const InterfaceRef<BE::TrackItem>& item) {
  M message;
  message.info.item = item.Query<BE::ITrackItem>();
  message.info.clip = ClipOf(item).Query<BE::IMasterClip>();
  Say(MZ::kStation_Info, message);
}

void Session::SelectClip(const InterfaceRef<BE::MasterClip>& clip) {
  mSelectedClip = clip;
  MZ::MasterClipSelectedMessage message;
  message.clip = clip;
  Say(MZ::kStation_MasterClipActivation, message);
}

void Session::SelectNothing() {
  SelectClip(nullptr);
}

void Session::SelectTrackItem(const InterfaceRef<BE::TrackItem>& item) {
  if (!item)
    return SelectNoTrackItem();
  mSelectedClip = item->HasVideo() ? ClipOf(item) : nullptr;
  if (item->HasVideo() && item->HasAudio())
    SayItem<MZ::AudioVideoTrackItemInfoMessage>(item);
  else if (item->HasVideo())
    SayItem<MZ::VideoTrackItemInfoMessage>(item);
  else
    SayItem<MZ::AudioTrackItemInfoMessage>(item);
}

void Session::SelectTransition() {
  mSelectedClip = nullptr;
  Say(MZ::kStation_Info, MZ::TransitionTrackItemInfoMessage());
}

void Session::SelectEmptySpot() {
  mSelectedClip = nullptr;
  Say(MZ::kStation_Info, MZ::EmptyTrackItemInfoMessage());
}

void Session::SelectNoTrackItem() {
  mSelectedClip = nullptr;
  Say(MZ::kStation_Info, MZ::NothingInfoMessage());
}

void Session::SelectSequence(const InterfaceRef<BE::Sequence>& sequence) {
  mSelectedClip = nullptr;
  MZ::SequenceSelectedMessage message;
  message.sequence = sequence.Query<BE::ISequence>();
  Say(MZ::kStation_SequenceActivation, message);
}

void Session::SelectBin() {
  mSelectedClip = nullptr;
  MZ::BinSelectedMessage message;
  message.bin = mProject;
  Say(MZ::kStation_BinActivation, message);
}

void Session::SelectSourceClip(const InterfaceRef<BE::MasterClip>& clip) {
  mSelectedClip = clip;
  HSL::SourceClipSelectedMessage message;
  message.kind = 1;
  message.clip = clip;
  Say(HSL::kStation_CaptionSelection, message);
}

void Session::SelectSourceClip(const InterfaceRef<BE::TrackItem>& item) {
  mSelectedClip = ClipOf(item);
  HSL::SourceClipSelectedMessage message;
  message.kind = 2;
  message.item = item.Query<BE::ITrackItem>();
  Say(HSL::kStation_CaptionSelection, message);
}

void Session::RepeatSelection() {
  if (mSelection)
    BroadcastMessage(mSelectionStation, *mSelection);
  else
    BroadcastMessage(MZ::kStation_MasterClipActivation, MZ::MasterClipSelectedMessage());
}

bool Session::IsClipSelected(const InterfaceRef<BE::MasterClip>& clip) const {
  return mSelectedClip == clip && mSelectionStation == MZ::kStation_MasterClipActivation;
}

void Session::LeaveAndRepeatSelection() {
  if (mSelectionStation == MZ::kStation_MasterClipActivation)
    BroadcastMessage(mSelectionStation, MZ::MasterClipSelectedMessage());
  else
    BroadcastMessage(MZ::kStation_Info, MZ::NothingInfoMessage());
  RepeatSelection();
}

void Session::OpenTrackItem(const InterfaceRef<BE::Sequence>& sequence, const InterfaceRef<BE::TrackItem>& item,
                            zebmediatypes::TickTime time) {
  MZ::CaptioningTrackItemOpenedMessage message;
  message.sequence = sequence.Query<BE::ISequence>();
  message.item = item.Query<BE::ITrackItem>();
  message.time = time;
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
}

} // namespace App
