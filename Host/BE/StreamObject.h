#pragma once

#include <map>
#include <string>
#include <vector>

#include "BE/ProjectRecords.h"
#include "Captions/contracts/StreamMessages.h"
#include "zebcaptioning/CaptionIndex.h"
#include "zebcaptioning/CaptionRegions.h"

namespace BE {

class ClipObject;
class ProjectObject;

// What a change of a stream's captions has to report, by begin time: of several captions with one begin time the newest
// is what shows there.
struct CaptionReport {
  CaptionsAddedMessage added;
  CaptionsRemovedMessage removed;
  CaptionsChangedMessage changed;
};

// Alike in all that is seen of a caption and in all that the history keeps. The style waiting at the caret and the
// measures are in no picture and come and go without a step.
bool LooksSame(const zebcaptioning::CaptionStatePtr& a, const zebcaptioning::CaptionStatePtr& b);

class StreamObject : public CaptioningStream {
 public:
  using CaptionPtr = boost::intrusive_ptr<zebcaptioning::Caption>;

  StreamObject(ProjectObject* project, ClipObject* clip, std::string id, StreamRecord record);

  StreamFormat GetStreamFormat() const override { return mRecord.description.format; }
  std::size_t GetCaptionCount() const override;
  void GetCaptionKeys(std::vector<CaptionKey>& keys) const override;
  CaptionPtr GetCaption(const CaptionKey& key) const override;
  void GetCaptions(std::vector<CaptionPtr>& captions) const override;
  void GetDisplaySettings(const TickTime& time, zebcaptioning::CaptionDisplaySettings& settings) const override;
  zebcore::utility::Guid GetGuid() const override { return mGuid; }
  boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel>
  GetRenderableModel(const TickTime& time) const override;
  const void* GetIdentity() const override { return this; }

  zebcore::utility::ImmutableString GetStationID() const override { return mStation; }

  std::string GetID() const override { return mID; }
  InterfaceRef<MasterClip> GetMasterClip() const override;
  const StreamDescription& GetDescription() const override { return mRecord.description; }
  CaptionPtr FindByBegin(TickTime begin) const override;
  std::optional<CaptionKey> FindKeyByBegin(TickTime begin) const override;
  std::vector<CaptionPtr> FindAt(TickTime time) const override;
  void SetBusy(bool busy) override;
  bool IsBusy() const override { return mBusy > 0; }
  std::shared_ptr<OpenChange> BeginChange() override;
  void WriteMeasures(const std::vector<Measure>& measures) override;

  ProjectObject* GetProjectObject() const { return mProject; }
  ClipObject* GetClipObject() const { return mClip; }
  const StreamRecord& GetRecord() const { return mRecord; }
  ObjectNumber GetNumber() const { return mRecord.number; }
  bool IsRemoved() const { return mRecord.removed; }
  // Removed, itself or with its clip: nobody sees it, and nothing is to happen to it.
  bool IsGone() const;
  void SetRemoved(bool removed) { mRecord.removed = removed; }
  void SetFormat(StreamFormat format);
  void Detach();
  void DetachFromClip() { mClip = nullptr; }

  // Fills an empty stream.
  void Load(const std::vector<StoredCaption>& captions);
  bool IsLoaded() const { return mLoaded; }
  StoredCaption MakeStoredCaption(const zebcaptioning::CaptionStatePtr& state);

  // The deltas as they would really come out: before is what the stream holds, keys and ages are given to new captions,
  // what changes nothing or names no caption is left out, and each caption comes once.
  std::vector<CaptionDelta> Resolve(const std::vector<CaptionDelta>& deltas);
  // Every caption that begins in [from, to], later by the offset.
  std::vector<CaptionDelta> MakeShiftDeltas(TickTime from, TickTime to, TickTime offset) const;
  // What the captions lose or change when the stream takes another format.
  std::vector<CaptionDelta> MakeFormatDeltas(StreamFormat format) const;
  // Gives the states that the captions are about to take (after or, backwards, before) the measures of their texts:
  // what was measured since the deltas were made is not in them. A stream that was never measured is left so.
  void RefreshMeasures(std::vector<CaptionDelta>& deltas, bool forward) const;
  // Puts every caption of the deltas into its state after (or, backwards, before) and tells what that has to report.
  // made: the object that a new caption's key takes.
  CaptionReport Apply(const std::vector<CaptionDelta>& deltas, bool forward, const CaptionPtr& made = {});
  // Sends up to three messages, added, removed and changed.
  void Send(const CaptionReport& report) const;
  // Tells those who have already shown a change that was refused how the captions really are.
  void SendAsTheyAre(const std::vector<CaptionDelta>& refused) const;
  // Says that the stream as a whole is another.
  void SendStreamChanged() const;
  void RenewGuid();

 private:
  void Put(const CaptionKey& key, std::uint64_t age, const zebcaptioning::CaptionStatePtr& state,
           const CaptionPtr& made = {});
  void Take(const CaptionKey& key);
  void ReportHidden(const std::vector<CaptionDelta>& deltas, bool forward, CaptionReport& report) const;
  InterfaceRef<ICaptioningStream> Self() const;
  bool IsStandardAspect() const;

  ProjectObject* mProject;
  ClipObject* mClip;
  std::string mID;
  StreamRecord mRecord;
  zebcore::utility::ImmutableString mStation;
  zebcore::utility::Guid mGuid;
  boost::intrusive_ptr<zebcaptioning::CaptionRegions> mRegions;
  zebcaptioning::CaptionIndex mCaptions;
  std::uint64_t mKeyTag; // the half of a key that all captions of a stream have in common
  std::uint64_t mNextAge = 1;
  int mBusy = 0;
  bool mLoaded = false;
};

} // namespace BE
