#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "BE/ClipObjects.h"
#include "BE/OpenChangeObject.h"
#include "BE/ProjectStorage.h"
#include "BE/StreamObject.h"

namespace BE {

class ProjectObject : public Project {
 public:
  // An empty project, or what the file holds.
  explicit ProjectObject(std::unique_ptr<ProjectFile> file);
  ~ProjectObject() override;
  // Of a new project.
  void Start();
  // Throws what reading the file throws.
  void Load();
  void SetUntitled(bool untitled) { mUntitled = untitled; }
  void SetShownPath(std::filesystem::path path) { mShownPath = std::move(path); }

  UString GetName() const override;
  bool IsReadOnly() const override { return mReadOnly; }
  zebcore::utility::ImmutableString GetStationID() const override { return mStation; }

  std::optional<Problem> SaveAs(const std::filesystem::path& path) override;
  std::filesystem::path GetPath() const override { return mShownPath; }
  bool IsUntitled() const override { return mUntitled; }
  void SetReadOnly(bool readOnly) override;
  std::optional<Problem> GetStorageProblem() const override { return mStorage.GetProblem(); }
  void SetStorageProblemListener(std::function<void(const std::optional<Problem>&)> listener) override;

  InterfaceRef<MasterClip> AddClip(const UString& name, const std::filesystem::path& media, const MediaInfo& info,
                                   bool merged) override;
  void RemoveClip(const InterfaceRef<MasterClip>& clip) override;
  std::vector<InterfaceRef<MasterClip>> GetClips() const override;
  InterfaceRef<MasterClip> FindClip(const std::string& id) const override;
  InterfaceRef<Sequence> AddSequence(const UString& name, FrameRate videoRate, FrameRate audioRate,
                                     const std::vector<SequenceItem>& items) override;
  std::vector<InterfaceRef<Sequence>> GetSequences() const override;
  InterfaceRef<Sequence> FindSequence(const std::string& id) const override;
  void RemoveSequence(const InterfaceRef<Sequence>& sequence) override;
  InterfaceRef<TrackItem> InsertItem(const InterfaceRef<Sequence>& sequence, const SequenceItem& item,
                                     const UString& stepName) override;
  void MoveItems(const InterfaceRef<Sequence>& sequence, const std::vector<ItemPlace>& places,
                 const UString& stepName) override;
  void RemoveItems(const InterfaceRef<Sequence>& sequence, const std::vector<InterfaceRef<TrackItem>>& items,
                   const UString& stepName) override;
  InterfaceRef<Transition> AddTransition(const InterfaceRef<Sequence>& sequence, const InterfaceRef<TrackItem>& left,
                                         const InterfaceRef<TrackItem>& right, TickTime duration,
                                         const UString& stepName) override;
  void RemoveTransition(const InterfaceRef<Sequence>& sequence, const InterfaceRef<Transition>& transition,
                        const UString& stepName) override;

  Result<InterfaceRef<CaptioningStream>> AddStream(const InterfaceRef<MasterClip>& clip,
                                                   const StreamDescription& description,
                                                   const std::vector<NewCaption>& captions,
                                                   const UString& stepName) override;
  void RemoveStream(const InterfaceRef<CaptioningStream>& stream, const UString& stepName) override;
  std::optional<Problem> ChangeStreamFormat(const InterfaceRef<CaptioningStream>& stream, StreamFormat format,
                                            const UString& stepName) override;
  InterfaceRef<CaptioningStream> FindStream(const std::string& id) const override;
  void EditCaptions(const InterfaceRef<CaptioningStream>& stream, const std::vector<CaptionDelta>& deltas,
                    const UString& stepName) override;
  void ShiftCaptions(const InterfaceRef<CaptioningStream>& stream, TickTime from, TickTime to, TickTime offset,
                     const UString& stepName) override;

  bool CanUndo() const override;
  bool CanRedo() const override;
  std::vector<UString> GetUndoNames() const override;
  std::vector<UString> GetRedoNames() const override;
  std::optional<UString> GetOpenChangeName() const override;
  bool Undo() override;
  bool Redo() override;
  void SetHistoryListener(std::function<void()> listener) override { mHistoryListener = std::move(listener); }
  void CommitOpenChanges() override;
  void Close() override;
  std::string GetSetting(const std::string& key, const std::string& defaultValue) const override;
  void SetSetting(const std::string& key, const std::string& value) override;

  // For the project's own objects.
  ProjectStorage& GetStorage() { return mStorage; }
  // Removed ones too.
  InterfaceRef<ClipObject> FindClipObject(ObjectNumber number) const;
  ObjectNumber TakeNumber() { return mNextNumber++; }
  void Register(OpenChangeObject* change) { mOpenChanges.push_back(change); }
  void Unregister(OpenChangeObject* change) { std::erase(mOpenChanges, change); }
  // Those of the stream but the one given.
  void CommitOpenChangesOf(const StreamObject* stream, const OpenChangeObject* butThis);
  const std::vector<OpenChangeObject*>& GetOpenChanges() const { return mOpenChanges; }
  // A step that was done and is in the file up to its own row, which storing writes. What was undone before it is gone.
  void PushStep(Step step, ProjectStorage::Operation storing);
  void ReportHistory() const;

 private:
  // What is to be sent once everything has changed.
  using Report = std::function<void()>;

  std::string MakeID(ObjectNumber number) const;
  void ReportBin() const;

  // The project's own stream, neither removed nor of a removed clip; null for any other.
  InterfaceRef<StreamObject> Own(const InterfaceRef<CaptioningStream>& stream) const;
  // The same of sequences, and null in a read-only project.
  InterfaceRef<SequenceObject> Own(const InterfaceRef<Sequence>& sequence) const;
  InterfaceRef<SequenceObject> FindSequenceObject(ObjectNumber number) const;
  void PushSequenceEdit(const InterfaceRef<SequenceObject>& sequence, std::vector<SequencePartDelta> deltas,
                        const UString& stepName);
  std::optional<Problem> FindStreamProblem(const InterfaceRef<ClipObject>& clip, StreamFormat format) const;
  void PushEdit(const InterfaceRef<StreamObject>& stream, std::vector<CaptionDelta> deltas, const UString& stepName);

  static void BroadcastCommit();
  void LoadHistory(std::vector<StepRecord> steps);
  // False if what the step needs cannot be read.
  bool Prepare(Step& step);
  // Changes the objects and nothing else.
  Report Perform(const Step& step, bool forward);
  void Store(const Step& step, bool forward);
  void StoreSequence(const Step& step, bool forward);
  bool Move(std::vector<Step>& from, std::vector<Step>& to, bool forward);
  ProjectStorage::Operation ForgetUndone();

  ProjectStorage mStorage;
  std::string mTag;
  zebcore::utility::ImmutableString mStation;
  std::filesystem::path mShownPath;
  bool mUntitled = false;
  bool mReadOnly = false;
  ObjectNumber mNextNumber = 1;
  std::int64_t mNextPosition = 1;
  std::map<std::string, std::string> mSettings;
  std::vector<InterfaceRef<ClipObject>> mClips;
  std::vector<InterfaceRef<SequenceObject>> mSequences;
  std::map<ObjectNumber, InterfaceRef<StreamObject>> mStreams;
  std::vector<Step> mDone;
  std::vector<Step> mUndone;                   // the next to be redone last
  std::vector<OpenChangeObject*> mOpenChanges; // in order of making
  std::function<void()> mHistoryListener;
};

} // namespace BE
