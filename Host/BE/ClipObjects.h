#pragma once

#include <map>
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
  TrackItemObject(std::string id, const InterfaceRef<ClipObject>& clip, const ItemRecord& record);
  TickTime GetStart() const override { return mRecord.start; }
  TickTime GetEnd() const override;
  // The video clip if the item shows the video, else the audio clip; the first that there is.
  InterfaceRef<IClip> GetClip() const override;
  std::string GetID() const override { return mID; }
  bool HasVideo() const override { return mRecord.video; }
  bool HasAudio() const override { return mRecord.audio; }
  int GetTrack() const override { return mRecord.track; }
  TickTime GetIn() const override { return mRecord.in; }

  const ItemRecord& GetRecord() const { return mRecord; }
  void SetRecord(const ItemRecord& record) { mRecord = record; }
  const InterfaceRef<ClipObject>& GetClipObject() const { return mClip; }

 private:
  std::string mID;
  InterfaceRef<ClipObject> mClip;
  ItemRecord mRecord;
};

class TransitionObject : public Transition {
 public:
  TransitionObject(std::string id, const InterfaceRef<TrackItemObject>& left,
                   const InterfaceRef<TrackItemObject>& right, const TransitionRecord& record);
  std::string GetID() const override { return mID; }
  InterfaceRef<TrackItem> GetLeft() const override { return mLeft; }
  InterfaceRef<TrackItem> GetRight() const override { return mRight; }
  TickTime GetStart() const override;
  TickTime GetEnd() const override { return GetStart() + mRecord.duration; }
  const TransitionRecord& GetRecord() const { return mRecord; }

 private:
  std::string mID;
  InterfaceRef<TrackItemObject> mLeft;
  InterfaceRef<TrackItemObject> mRight;
  TransitionRecord mRecord;
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
  // Throws if a part refers to what is not there.
  SequenceObject(ProjectObject* project, const std::string& tag, SequenceRecord record);
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
  std::vector<InterfaceRef<Transition>> GetTransitions() const override;
  InterfaceRef<Project> GetProject() const override;
  void SetVideoFrameRate(FrameRate rate) override;
  void SetTimeDisplays(TimeDisplay video, TimeDisplay audio) override;
  void SetSettings(FrameRate rate, TimeDisplay video, TimeDisplay audio) override;

  // Without its parts, which are asked one by one.
  const SequenceRecord& GetRecord() const { return mRecord; }
  bool IsRemoved() const { return mRecord.removed; }
  void SetRemoved(bool removed) { mRecord.removed = removed; }
  const ProjectObject* GetProjectObject() const { return mProject; }
  const std::map<ObjectNumber, InterfaceRef<TrackItemObject>>& GetItemObjects() const { return mItems; }
  const std::map<ObjectNumber, InterfaceRef<TransitionObject>>& GetTransitionObjects() const { return mTransitions; }
  // Changes the parts and says nothing.
  void Apply(const std::vector<SequencePartDelta>& deltas, bool forward);
  void ReportParts();
  void Detach() { mProject = nullptr; }

 private:
  void PutItem(const ItemRecord& record);
  void PutTransition(const TransitionRecord& record);
  void FindSound();
  void ReportSettings();
  void Report(const char* property);

  ProjectObject* mProject;
  std::string mTag;
  std::string mID;
  SequenceRecord mRecord;
  zebcore::utility::ImmutableString mStation;
  zebcore::utility::Guid mContent;
  std::map<ObjectNumber, InterfaceRef<TrackItemObject>> mItems;
  std::map<ObjectNumber, InterfaceRef<TrackItemObject>> mGoneItems; // whoever holds one meets it again after undo
  std::map<ObjectNumber, InterfaceRef<TransitionObject>> mTransitions;
  InterfaceRef<SequenceAudioObject> mAudio; // null if no item has sound
};

} // namespace BE
