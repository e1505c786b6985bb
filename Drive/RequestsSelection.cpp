// What the user has selected and opened elsewhere in the host, said by the host's own messages.

#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Drive/CaptionJson.h"
#include "Drive/Driver.h"
#include "Drive/TimeDisplayNames.h"

namespace Drive {

namespace {

using zebcore::messaging::BroadcastMessage;

MZ::TrackItemInfo Describe(const BE::InterfaceRef<BE::TrackItem>& item) {
  MZ::TrackItemInfo info;
  info.item = item.Query<BE::ITrackItem>();
  const auto clip = item->GetClip();
  info.clip = clip ? clip->GetMasterClip() : nullptr;
  return info;
}

template <class M> void SayItem(Driver& driver, const MZ::TrackItemInfo& info) {
  M message;
  message.info = info;
  driver.SaySelection(MZ::kStation_Info, message);
}

void SelectItem(Driver& driver, const Fields& fields) {
  const auto item = driver.Item(fields);
  const MZ::TrackItemInfo info = Describe(item);
  if (item->HasVideo() && item->HasAudio())
    SayItem<MZ::AudioVideoTrackItemInfoMessage>(driver, info);
  else if (item->HasVideo())
    SayItem<MZ::VideoTrackItemInfoMessage>(driver, info);
  else
    SayItem<MZ::AudioTrackItemInfoMessage>(driver, info);
}

void SelectClip(Driver& driver, const Fields& fields) {
  MZ::MasterClipSelectedMessage message;
  message.clip = driver.AnyClip(fields);
  driver.SaySelection(MZ::kStation_MasterClipActivation, message);
}

void SelectSequence(Driver& driver, const Fields& fields) {
  MZ::SequenceSelectedMessage message;
  message.sequence = driver.Sequence(fields).Query<BE::ISequence>();
  driver.SaySelection(MZ::kStation_SequenceActivation, message);
}

void SelectSourceClip(Driver& driver, const Fields& fields) {
  HSL::SourceClipSelectedMessage message;
  if (fields.Has("item")) {
    message.kind = 2;
    message.item = driver.Item(fields).Query<BE::ITrackItem>();
  } else {
    message.kind = 1;
    message.clip = driver.AnyClip(fields);
  }
  driver.SaySelection(HSL::kStation_CaptionSelection, message);
}

template <class M> void Say(Driver& driver, const Fields&) {
  driver.SaySelection(MZ::kStation_Info, M());
}

Json Select(Driver& driver, const Fields& fields) {
  static const std::map<std::string, void (*)(Driver&, const Fields&)> kinds = {
      {"clip", &SelectClip},
      {"item", &SelectItem},
      {"transition", &Say<MZ::TransitionTrackItemInfoMessage>},
      {"empty", &Say<MZ::EmptyTrackItemInfoMessage>},
      {"nothing", &Say<MZ::NothingInfoMessage>},
      {"bin", [](Driver& to, const Fields&) { to.SaySelection(MZ::kStation_BinActivation, MZ::BinSelectedMessage()); }},
      {"sequence", &SelectSequence},
      {"source_clip", &SelectSourceClip},
      {"no_clip", [](Driver& to, const Fields&) {
         to.SaySelection(MZ::kStation_MasterClipActivation, MZ::MasterClipSelectedMessage());
       }}};
  const auto kind = kinds.find(fields.Text("what"));
  if (kind == kinds.end())
    fields.Refuse("what", "must be clip, item, transition, empty, nothing, bin, sequence, source_clip or no_clip");
  kind->second(driver, fields);
  return Json::object();
}

Json CloseClip(Driver& driver, const Fields& fields) {
  MZ::MasterClipClosedMessage message;
  message.clip = driver.AnyClip(fields);
  BroadcastMessage(MZ::kStation_MasterClipActivation, message);
  return Json::object();
}

Json SayCaptionsOpened(Driver& driver, const Fields&) {
  driver.Session().OpenCaptions();
  return Json::object();
}

Json SayCommitEdits(Driver&, const Fields&) {
  BroadcastMessage(HSL::kStation_CaptionSelection, HSL::CaptionCommitEditsMessage());
  return Json::object();
}

Json SayItemOpened(Driver& driver, const Fields& fields) {
  MZ::CaptioningTrackItemOpenedMessage message;
  const auto item = driver.Item(fields);
  for (const auto& sequence : driver.Project()->GetSequences()) {
    for (const auto& other : sequence->GetItems()) {
      if (other == item)
        message.sequence = sequence.Query<BE::ISequence>();
    }
  }
  message.item = item.Query<BE::ITrackItem>();
  message.time = fields.Time("time");
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
  return Json::object();
}

Json SayCaptionsSelected(Driver&, const Fields& fields) {
  MZ::CaptionsSelectionChangedMessage message;
  message.times = fields.Times("times");
  message.format = ReadFormat(fields, "format");
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
  return Json::object();
}

Json SayTimeDisplay(Driver&, const Fields& fields) {
  const std::string which = fields.Text("which");
  if (which != "source" && which != "sequence")
    fields.Refuse("which", "must be source or sequence");
  UIF::HotTimecodeVideoTimeDisplayChangedMessage message;
  message.display = ReadTimeDisplay(fields, "display");
  BroadcastMessage(
      which == "source" ? UIF::kStation_SourceTimeDisplayChanged : UIF::kStation_SequenceTimeDisplayChanged, message);
  return Json::object();
}

Json ChangeSequence(Driver& driver, const Fields& fields) {
  const auto sequence = driver.Sequence(fields);
  // All at once, so that it is said once.
  const auto rate = fields.Has("frame_rate") ? fields.Rate("frame_rate") : sequence->GetVideoFrameRate();
  const auto video =
      fields.Has("video_display") ? ReadTimeDisplay(fields, "video_display") : sequence->GetVideoTimeDisplay();
  const auto audio =
      fields.Has("audio_display") ? ReadTimeDisplay(fields, "audio_display") : sequence->GetAudioTimeDisplay();
  sequence->SetSettings(rate, video, audio);
  return Json::object();
}

} // namespace

void AddSelectionRequests(RequestTable& table) {
  table["select"] = {&Select};
  table["close_clip"] = {&CloseClip};
  table["captions_opened"] = {&SayCaptionsOpened};
  table["commit_edits"] = {&SayCommitEdits};
  table["item_opened"] = {&SayItemOpened};
  table["select_captions"] = {&SayCaptionsSelected};
  table["time_display"] = {&SayTimeDisplay};
  table["sequence_settings"] = {&ChangeSequence};
}

} // namespace Drive
