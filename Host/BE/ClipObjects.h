#pragma once

#include <string>
#include <vector>

#include "BE/ProjectRecords.h"

// A project's clips and sequences. They know their project as long as it lives.
namespace BE {

class ClipObject;
class ProjectObject;
class SequenceObject;
class StreamObject;

// One medium of a master clip.
class MediaClipObject : public IClip {
 public:
  MediaClipObject(ClipObject* owner, MediaType type) : mOwner(owner), mType(type) {}
  MediaType GetMediaType() const override { return mType; }
  FrameRate GetFrameRate() const override;
  TickTime GetDuration() const override;
  InterfaceRef<IMasterClip> GetMasterClip() const override;
  void Detach() { mOwner = nullptr; }

 protected:
  const ClipObject* GetOwner() const { return mOwner; }

 private:
  ClipObject* mOwner;
  MediaType mType;
};

class VideoClipObject : public MediaClipObject, public IVideoSegments {
 public:
  explicit VideoClipObject(ClipObject* owner);
  zebcore::geom::RectT<int> GetFrameRect() const override;
  zebmediatypes::PixelAspectRatio GetPixelAspectRatio() const override;
  zebcore::utility::Guid GetContentID() const override { return mContent; }

 private:
  zebcore::utility::Guid mContent;
};

// The picture of a clip is asked from the clip itself too, so that a still image, which has no video clip, has one.
class ClipObject : public MasterClip, public IVideoSegments {
 public:
  ClipObject(ProjectObject* project, std::string id, ClipRecord record);
  ~ClipObject() override;

  UString GetName() const override { return mRecord.name; }
  InterfaceRef<IClip> GetClip(MediaType type, int index) const override;
  TickTime GetMediaOffset(int) const override { return mRecord.info.start; }
  bool IsMerged() const override { return mRecord.merged; }
  bool IsStill() const override { return mRecord.info.still; }

  zebcore::utility::ImmutableString GetStationID() const override { return mStation; }

  std::string GetID() const override { return mID; }
  std::filesystem::path GetMediaPath() const override { return mRecord.media; }
  const MediaInfo& GetMediaInfo() const override { return mRecord.info; }
  InterfaceRef<Project> GetProject() const override;
  std::vector<InterfaceRef<CaptioningStream>> GetStreams() const override;
  bool IsOffline() const override;

  zebcore::geom::RectT<int> GetFrameRect() const override;
  zebmediatypes::PixelAspectRatio GetPixelAspectRatio() const override { return mRecord.info.pixelAspect; }
  zebcore::utility::Guid GetContentID() const override { return mContent; }

  const ClipRecord& GetRecord() const { return mRecord; }
  bool IsRemoved() const { return mRecord.removed; }
  void SetRemoved(bool removed) { mRecord.removed = removed; }
  void Detach() { mProject = nullptr; }
  void AddStream(const InterfaceRef<StreamObject>& stream);
  void DropStream(const StreamObject* stream);
  // The stream of that format that is not removed; null if there is none.
  InterfaceRef<StreamObject> FindStream(StreamFormat format) const;
  // Says that the streams of the clip changed.
  void ReportStreams(const InterfaceRef<ICaptioningStream>& stream) const;

 protected:
  ProjectObject* mProject;

 private:
  std::string mID;
  ClipRecord mRecord;
  zebcore::utility::ImmutableString mStation;
  zebcore::utility::Guid mContent;
  InterfaceRef<MediaClipObject> mVideo;
  InterfaceRef<MediaClipObject> mAudio;
  std::vector<InterfaceRef<StreamObject>> mStreams;
};

class TrackItemObject : public TrackItem {
 public:
  TrackItemObject(std::string id, const InterfaceRef<ClipObject>& clip, TickTime start, bool video, bool audio);
  TickTime GetStart() const override { return mStart; }
  TickTime GetEnd() const override { return mStart + mClip->GetMediaInfo().duration; }
  // The video clip if the item shows the video, else the audio clip; the first that there is.
  InterfaceRef<IClip> GetClip() const override;
  std::string GetID() const override { return mID; }
  bool HasVideo() const override { return mVideo; }
  bool HasAudio() const override { return mAudio; }

 private:
  std::string mID;
  InterfaceRef<ClipObject> mClip;
  TickTime mStart;
  bool mVideo;
  bool mAudio;
};

// The sound of a sequence.
class SequenceAudioObject : public IClip {
 public:
  explicit SequenceAudioObject(SequenceObject* owner) : mOwner(owner) {}
  MediaType GetMediaType() const override { return kMediaType_Audio; }
  FrameRate GetFrameRate() const override;
  TickTime GetDuration() const override;
  InterfaceRef<IMasterClip> GetMasterClip() const override;
  void Detach() { mOwner = nullptr; }

 private:
  SequenceObject* mOwner;
};

// A sequence, which is at once its own master clip.
class SequenceObject : public Sequence, public IMasterClip, public IClip, public IVideoSegments {
 public:
  SequenceObject(ProjectObject* project, const std::string& tag, SequenceRecord record,
                 std::vector<InterfaceRef<ClipObject>> clips);
  ~SequenceObject() override;

  UString GetName() const override { return mRecord.name; }
  FrameRate GetVideoFrameRate() const override { return mRecord.videoRate; }
  FrameRate GetAudioFrameRate() const override { return mRecord.audioRate; }
  TickTime GetZeroPoint() const override { return zebmediatypes::kTime_Zero; }
  TimeDisplay GetVideoTimeDisplay() const override { return mRecord.videoDisplay; }
  TimeDisplay GetAudioTimeDisplay() const override { return mRecord.audioDisplay; }
  int GetFrameAlignment() const override { return 0; }

  zebcore::utility::ImmutableString GetStationID() const override { return mStation; }

  InterfaceRef<IClip> GetClip(MediaType type, int index) const override;
  TickTime GetMediaOffset(int) const override { return zebmediatypes::kTime_Zero; }
  bool IsMerged() const override { return false; }
  bool IsStill() const override { return false; }

  MediaType GetMediaType() const override { return kMediaType_Video; }
  FrameRate GetFrameRate() const override { return mRecord.videoRate; }
  TickTime GetDuration() const override;
  InterfaceRef<IMasterClip> GetMasterClip() const override;

  zebcore::geom::RectT<int> GetFrameRect() const override;
  zebmediatypes::PixelAspectRatio GetPixelAspectRatio() const override;
  zebcore::utility::Guid GetContentID() const override { return mContent; }

  std::string GetID() const override { return mID; }
  std::vector<InterfaceRef<TrackItem>> GetItems() const override;
  InterfaceRef<Project> GetProject() const override;
  void SetVideoFrameRate(FrameRate rate) override;
  void SetTimeDisplays(TimeDisplay video, TimeDisplay audio) override;

  void Detach() { mProject = nullptr; }

 private:
  void ReportChange(const char* property);

  ProjectObject* mProject;
  std::string mID;
  SequenceRecord mRecord;
  zebcore::utility::ImmutableString mStation;
  zebcore::utility::Guid mContent;
  std::vector<InterfaceRef<ClipObject>> mClips; // one for each item
  std::vector<InterfaceRef<TrackItemObject>> mItems;
  InterfaceRef<SequenceAudioObject> mAudio; // null if no item has sound
};

} // namespace BE
