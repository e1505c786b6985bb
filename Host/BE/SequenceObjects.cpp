#include <algorithm>
#include <stdexcept>

#include "BE/ClipObjects.h"
#include "BE/ProjectObject.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"

namespace BE {

TrackItemObject::TrackItemObject(std::string id, const InterfaceRef<ClipObject>& clip, const ItemRecord& record)
    : mID(std::move(id)), mClip(clip), mRecord(record) {}

TickTime TrackItemObject::GetEnd() const {
  if (mRecord.duration > TickTime())
    return mRecord.start + mRecord.duration;
  return mRecord.start + std::max(mClip->GetMediaInfo().duration - mRecord.in, TickTime());
}

InterfaceRef<IClip> TrackItemObject::GetClip() const {
  InterfaceRef<IClip> video = mClip->GetClip(kMediaType_Video, 0);
  InterfaceRef<IClip> audio = mClip->GetClip(kMediaType_Audio, 0);
  if (mRecord.video && video)
    return video;
  return audio ? audio : video;
}

TransitionObject::TransitionObject(std::string id, const InterfaceRef<TrackItemObject>& left,
                                   const InterfaceRef<TrackItemObject>& right, const TransitionRecord& record)
    : mID(std::move(id)), mLeft(left), mRight(right), mRecord(record) {}

TickTime TransitionObject::GetStart() const {
  return mRight->GetStart() - TickTime(mRecord.duration.GetTicks() / 2);
}

FrameRate SequenceAudioObject::GetFrameRate() const {
  return mOwner ? mOwner->GetAudioFrameRate() : FrameRate();
}
TickTime SequenceAudioObject::GetDuration() const {
  return mOwner ? mOwner->GetDuration() : TickTime();
}
InterfaceRef<IMasterClip> SequenceAudioObject::GetMasterClip() const {
  return InterfaceRef<IMasterClip>(mOwner);
}

SequenceObject::SequenceObject(ProjectObject* project, const std::string& tag, SequenceRecord record)
    : mProject(project), mTag(tag), mID(tag + "-" + std::to_string(record.number)), mRecord(std::move(record)),
      mStation(std::string_view("sequence:" + mID)), mContent(zebcore::utility::Guid::Random()) {
  std::vector<SequencePartDelta> deltas;
  for (const SequencePart& part : std::exchange(mRecord.parts, {}))
    deltas.push_back({std::nullopt, part});
  Apply(deltas, true);
}

SequenceObject::~SequenceObject() {
  if (mAudio)
    mAudio->Detach();
}

// Items first: a transition names those that it lies between.
void SequenceObject::Apply(const std::vector<SequencePartDelta>& deltas, bool forward) {
  for (const bool items : {true, false}) {
    for (const SequencePartDelta& delta : deltas) {
      const std::optional<SequencePart>& part = forward ? delta.after : delta.before;
      const ObjectNumber number = GetNumber(delta.before ? *delta.before : *delta.after);
      if (std::holds_alternative<ItemRecord>(delta.before ? *delta.before : *delta.after) != items)
        continue;
      if (part && items) {
        PutItem(std::get<ItemRecord>(*part));
      } else if (part) {
        PutTransition(std::get<TransitionRecord>(*part));
      } else if (items) {
        if (const auto gone = mItems.extract(number))
          mGoneItems[number] = gone.mapped();
      } else {
        mTransitions.erase(number);
      }
    }
  }
  mContent = zebcore::utility::Guid::Random();
  FindSound();
}

void SequenceObject::PutItem(const ItemRecord& record) {
  if (auto back = mGoneItems.extract(record.number))
    mItems.insert(std::move(back));
  InterfaceRef<TrackItemObject>& item = mItems[record.number];
  if (item) {
    item->SetRecord(record);
    return;
  }
  const InterfaceRef<ClipObject> clip = mProject->FindClipObject(record.clip);
  if (!clip)
    throw std::runtime_error("a clip is missing");
  item = new TrackItemObject(mTag + "-" + std::to_string(record.number), clip, record);
}

void SequenceObject::PutTransition(const TransitionRecord& record) {
  const auto find = [this](ObjectNumber number) {
    if (const auto there = mItems.find(number); there != mItems.end())
      return there->second;
    const auto gone = mGoneItems.find(number);
    if (gone == mGoneItems.end())
      throw std::runtime_error("an item of a transition is missing");
    return gone->second;
  };
  mTransitions[record.number] =
      new TransitionObject(mTag + "-" + std::to_string(record.number), find(record.left), find(record.right), record);
}

void SequenceObject::FindSound() {
  const bool hasSound = std::any_of(mItems.begin(), mItems.end(), [](const auto& item) {
    return item.second->HasAudio() && item.second->GetClipObject()->GetMediaInfo().sampleRate > 0;
  });
  if (hasSound == static_cast<bool>(mAudio))
    return;
  if (mAudio)
    mAudio->Detach();
  mAudio = hasSound ? InterfaceRef<SequenceAudioObject>(new SequenceAudioObject(this)) : nullptr;
}

InterfaceRef<IClip> SequenceObject::GetClip(MediaType type, int index) const {
  if (index != 0)
    return nullptr;
  if (type == kMediaType_Audio)
    return mAudio;
  return InterfaceRef<IClip>(const_cast<SequenceObject*>(this));
}

TickTime SequenceObject::GetDuration() const {
  TickTime end;
  for (const auto& [number, item] : mItems)
    end = std::max(end, item->GetEnd());
  return end;
}

InterfaceRef<IMasterClip> SequenceObject::GetMasterClip() const {
  return InterfaceRef<IMasterClip>(const_cast<SequenceObject*>(this));
}

// A sequence is as large as the first picture in it.
zebcore::geom::RectT<int> SequenceObject::GetFrameRect() const {
  for (const auto& [number, item] : mItems) {
    if (item->GetClipObject()->GetMediaInfo().width > 0)
      return item->GetClipObject()->GetFrameRect();
  }
  return {};
}

zebmediatypes::PixelAspectRatio SequenceObject::GetPixelAspectRatio() const {
  for (const auto& [number, item] : mItems) {
    if (item->GetClipObject()->GetMediaInfo().width > 0)
      return item->GetClipObject()->GetPixelAspectRatio();
  }
  return {};
}

std::vector<InterfaceRef<TrackItem>> SequenceObject::GetItems() const {
  std::vector<InterfaceRef<TrackItem>> items;
  items.reserve(mItems.size());
  for (const auto& [number, item] : mItems)
    items.push_back(item);
  return items;
}

std::vector<InterfaceRef<Transition>> SequenceObject::GetTransitions() const {
  std::vector<InterfaceRef<Transition>> transitions;
  for (const auto& [number, transition] : mTransitions)
    transitions.push_back(transition);
  return transitions;
}

InterfaceRef<Project> SequenceObject::GetProject() const {
  return InterfaceRef<Project>(mProject);
}

void SequenceObject::SetVideoFrameRate(FrameRate rate) {
  SetSettings(rate, mRecord.videoDisplay, mRecord.audioDisplay);
}

void SequenceObject::SetTimeDisplays(TimeDisplay video, TimeDisplay audio) {
  SetSettings(mRecord.videoRate, video, audio);
}

void SequenceObject::SetSettings(FrameRate rate, TimeDisplay video, TimeDisplay audio) {
  if (rate == mRecord.videoRate && video == mRecord.videoDisplay && audio == mRecord.audioDisplay)
    return;
  mRecord.videoRate = rate;
  mRecord.videoDisplay = video;
  mRecord.audioDisplay = audio;
  ReportSettings();
}

void SequenceObject::ReportSettings() {
  if (mProject)
    mProject->GetStorage().Write([record = mRecord](ProjectFile& file) { file.PutSequence(record); });
  Report("settings");
  MZ::SequenceSettingsChangedMessage message;
  message.sequence = InterfaceRef<ISequence>(this);
  zebcore::messaging::BroadcastMessage(MZ::kStation_SequenceActivation, message);
}

void SequenceObject::ReportParts() {
  Report("items");
}

void SequenceObject::Report(const char* property) {
  PropertiesChangedMessage message;
  message.records.push_back({InterfaceRef<>(this), zebcore::utility::ImmutableString(property)});
  zebcore::messaging::BroadcastMessage(mStation, message);
}

} // namespace BE
