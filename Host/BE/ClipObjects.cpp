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
    : MediaClipObject(owner, kMediaType_Video), mContent(owner->ClipObject::GetContentID()) {}

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

} // namespace BE
