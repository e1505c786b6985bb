#include "BE/ClipObjects.h"

#include "BE/ProjectObject.h"
#include "Captions/contracts/StreamMessages.h"

namespace BE {

FrameRate MediaClipObject::GetFrameRate() const {
  if (!mOwner)
    return FrameRate();
  const MediaInfo& info = mOwner->GetMediaInfo();
  if (mType == kMediaType_Video)
    return info.frameRate;
  return FrameRate::FromRational(info.sampleRate, 1);
}

TickTime MediaClipObject::GetDuration() const {
  return mOwner ? mOwner->GetMediaInfo().duration : TickTime();
}

InterfaceRef<IMasterClip> MediaClipObject::GetMasterClip() const {
  return InterfaceRef<IMasterClip>(mOwner);
}

VideoClipObject::VideoClipObject(ClipObject* owner)
    : MediaClipObject(owner, kMediaType_Video), mContent(owner->GetContentID()) {}

zebcore::geom::RectT<int> VideoClipObject::GetFrameRect() const {
  return GetOwner() ? GetOwner()->GetFrameRect() : zebcore::geom::RectT<int>();
}

zebmediatypes::PixelAspectRatio VideoClipObject::GetPixelAspectRatio() const {
  return GetOwner() ? GetOwner()->GetPixelAspectRatio() : zebmediatypes::PixelAspectRatio();
}

ClipObject::ClipObject(ProjectObject* project, std::string id, ClipRecord record)
    : mProject(project), mID(std::move(id)), mRecord(std::move(record)), mStation(std::string_view("clip:" + mID)),
      mContent(zebcore::utility::Guid::Random()) {
  if (mRecord.info.width > 0 && !mRecord.info.still)
    mVideo = new VideoClipObject(this);
  if (mRecord.info.sampleRate > 0)
    mAudio = new MediaClipObject(this, kMediaType_Audio);
}

ClipObject::~ClipObject() {
  for (const InterfaceRef<MediaClipObject>& medium : {mVideo, mAudio}) {
    if (medium)
      medium->Detach();
  }
  for (const InterfaceRef<StreamObject>& stream : mStreams)
    stream->DetachFromClip();
}

InterfaceRef<IClip> ClipObject::GetClip(MediaType type, int index) const {
  if (index != 0)
    return nullptr;
  return type == kMediaType_Video ? mVideo : mAudio;
}

InterfaceRef<Project> ClipObject::GetProject() const {
  return InterfaceRef<Project>(mProject);
}

std::vector<InterfaceRef<CaptioningStream>> ClipObject::GetStreams() const {
  std::vector<InterfaceRef<CaptioningStream>> streams;
  for (const InterfaceRef<StreamObject>& stream : mStreams) {
    if (!stream->IsRemoved())
      streams.push_back(stream);
  }
  std::sort(streams.begin(), streams.end(),
            [](const auto& a, const auto& b) { return a->GetStreamFormat() < b->GetStreamFormat(); });
  return streams;
}

bool ClipObject::IsOffline() const {
  std::error_code error;
  return !mRecord.media.empty() && !std::filesystem::exists(mRecord.media, error);
}

zebcore::geom::RectT<int> ClipObject::GetFrameRect() const {
  return {0, 0, mRecord.info.width, mRecord.info.height};
}

void ClipObject::AddStream(const InterfaceRef<StreamObject>& stream) {
  mStreams.push_back(stream);
}

void ClipObject::DropStream(const StreamObject* stream) {
  std::erase_if(mStreams, [stream](const auto& each) { return each.Get() == stream; });
}

InterfaceRef<StreamObject> ClipObject::FindStream(StreamFormat format) const {
  for (const InterfaceRef<StreamObject>& stream : mStreams) {
    if (!stream->IsRemoved() && stream->GetStreamFormat() == format)
      return stream;
  }
  return nullptr;
}

void ClipObject::ReportStreams(const InterfaceRef<ICaptioningStream>& stream) const {
  CaptioningStreamChangedMessage message;
  message.stream = stream;
  zebcore::messaging::BroadcastMessage(mStation, message);
}

TrackItemObject::TrackItemObject(std::string id, const InterfaceRef<ClipObject>& clip, TickTime start, bool video,
                                 bool audio)
    : mID(std::move(id)), mClip(clip), mStart(start), mVideo(video), mAudio(audio) {}

InterfaceRef<IClip> TrackItemObject::GetClip() const {
  const InterfaceRef<IClip> video = mClip->GetClip(kMediaType_Video, 0);
  const InterfaceRef<IClip> audio = mClip->GetClip(kMediaType_Audio, 0);
  if (mVideo && video)
    return video;
  return audio ? audio : video;
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

SequenceObject::SequenceObject(ProjectObject* project, const std::string& tag, SequenceRecord record,
                               std::vector<InterfaceRef<ClipObject>> clips)
    : mProject(project), mID(tag + "-" + std::to_string(record.number)), mRecord(std::move(record)),
      mStation(std::string_view("sequence:" + mID)), mContent(zebcore::utility::Guid::Random()),
      mClips(std::move(clips)) {
  bool hasSound = false;
  for (std::size_t at = 0; at < mRecord.items.size(); ++at) {
    const SequenceRecord::Item& item = mRecord.items[at];
    mItems.push_back(
        new TrackItemObject(tag + "-" + std::to_string(item.number), mClips[at], item.start, item.video, item.audio));
    hasSound = hasSound || (item.audio && mClips[at]->GetMediaInfo().sampleRate > 0);
  }
  if (hasSound)
    mAudio = new SequenceAudioObject(this);
}

SequenceObject::~SequenceObject() {
  if (mAudio)
    mAudio->Detach();
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
  for (const InterfaceRef<TrackItemObject>& item : mItems)
    end = std::max(end, item->GetEnd());
  return end;
}

InterfaceRef<IMasterClip> SequenceObject::GetMasterClip() const {
  return InterfaceRef<IMasterClip>(const_cast<SequenceObject*>(this));
}

// A sequence is as large as the first picture in it.
zebcore::geom::RectT<int> SequenceObject::GetFrameRect() const {
  for (const InterfaceRef<ClipObject>& clip : mClips) {
    if (clip->GetMediaInfo().width > 0)
      return clip->GetFrameRect();
  }
  return {};
}

zebmediatypes::PixelAspectRatio SequenceObject::GetPixelAspectRatio() const {
  for (const InterfaceRef<ClipObject>& clip : mClips) {
    if (clip->GetMediaInfo().width > 0)
      return clip->GetPixelAspectRatio();
  }
  return {};
}

std::vector<InterfaceRef<TrackItem>> SequenceObject::GetItems() const {
  return {mItems.begin(), mItems.end()};
}

InterfaceRef<Project> SequenceObject::GetProject() const {
  return InterfaceRef<Project>(mProject);
}

void SequenceObject::SetVideoFrameRate(FrameRate rate) {
  if (rate == mRecord.videoRate)
    return;
  mRecord.videoRate = rate;
  ReportChange("videoFrameRate");
}

void SequenceObject::SetTimeDisplays(TimeDisplay video, TimeDisplay audio) {
  if (video == mRecord.videoDisplay && audio == mRecord.audioDisplay)
    return;
  mRecord.videoDisplay = video;
  mRecord.audioDisplay = audio;
  ReportChange("timeDisplays");
}

void SequenceObject::ReportChange(const char* property) {
  if (mProject)
    mProject->GetStorage().Write([record = mRecord](ProjectFile& file) { file.PutSequence(record); });
  PropertiesChangedMessage message;
  message.records.push_back({InterfaceRef<>(this), zebcore::utility::ImmutableString(property)});
  zebcore::messaging::BroadcastMessage(mStation, message);
}

} // namespace BE
