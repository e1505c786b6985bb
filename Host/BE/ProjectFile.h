#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "BE/ProjectRecords.h"

namespace SQLite {
class Database;
class Statement;
} // namespace SQLite

namespace BE {

// The SQLite file of a project. Everything throws std::exception when the database refuses; Perform leaves the file as
// it was then. One process at a time holds a file.
class ProjectFile {
 public:
  static constexpr int kVersion = 2;
  static constexpr const char* kSuffix = ".captivo";

  // Each answers with a file or with what a person can do about it. Create does not replace a file.
  static Result<std::unique_ptr<ProjectFile>> Create(const std::filesystem::path& path);
  static Result<std::unique_ptr<ProjectFile>> Open(const std::filesystem::path& path);
  // Opens a private copy, which goes away with the object; the original is neither locked nor changed.
  static Result<std::unique_ptr<ProjectFile>> OpenCopy(const std::filesystem::path& path);
  static std::unique_ptr<ProjectFile> CreateInMemory();
  ~ProjectFile();

  // Runs the operation as one transaction.
  void Perform(const std::function<void(ProjectFile&)>& operation);
  // Why the file is no place to write to any more although the system would still take the bytes: it was moved or
  // deleted, or its owner has made it read-only.
  std::optional<Problem> FindObstacle() const;
  // Nothing is at its path any more, or what was put back there could not be opened yet.
  bool IsGone() const;
  // Puts everything back at its path, when it is gone from there. If that throws, everything can still be read and
  // copied, and is to be put back before anything is written.
  void Restore();
  // A copy of everything at another place, whole or not at all; an existing file is replaced. finish is done to the
  // copy before that.
  std::optional<Problem> CopyTo(const std::filesystem::path& path, const std::function<void(ProjectFile&)>& finish);

  void PutSetting(const std::string& key, const std::string& value);
  void PutClip(const ClipRecord& clip);
  void SetClipRemoved(ObjectNumber clip, bool removed);
  // Without its parts.
  void PutSequence(const SequenceRecord& sequence);
  void PutPart(ObjectNumber sequence, const SequencePart& part);
  void ErasePart(ObjectNumber part);
  void PutStream(const StreamRecord& stream);
  // With its captions.
  void EraseStream(ObjectNumber stream);
  void PutCaption(ObjectNumber stream, const ICaptioningStream::CaptionKey& key, std::uint64_t age,
                  const zebcaptioning::CaptionState& state);
  void EraseCaption(ObjectNumber stream, const ICaptioningStream::CaptionKey& key);
  void PutStep(const Step& step, StepState state, std::int64_t position);
  void SetStepState(ObjectNumber step, StepState state);
  // With its deltas.
  void EraseStep(ObjectNumber step);
  void PutDelta(ObjectNumber step, const CaptionDelta& delta);
  void EraseDelta(ObjectNumber step, const ICaptioningStream::CaptionKey& key);
  void PutPartDelta(ObjectNumber step, const SequencePartDelta& delta);

  ProjectRecord LoadProject();
  std::vector<StoredCaption> LoadCaptions(ObjectNumber stream);
  std::vector<CaptionDelta> LoadDeltas(ObjectNumber step);
  std::vector<SequencePartDelta> LoadPartDeltas(ObjectNumber step);

  // A private copy of the file at its path.
  bool IsCopy() const { return !mTemporaryFolder.empty(); }
  // The text for a failure of this file, while work goes on in memory or, before it was read, while there is none yet.
  Problem Describe(const std::exception& failure) const;
  void SetIsRead() { mIsRead = true; }
  const std::filesystem::path& GetPath() const { return mPath; }

 private:
  class FileLock;
  class Checkpointer;
  struct Statements;

  explicit ProjectFile(std::filesystem::path path);
  void Connect(const std::string& place);
  void Disconnect();
  void CreateTables();
  std::optional<Problem> CheckVersion();
  // Brings what an older version wrote to the form of this one.
  void Upgrade(int version);
  void LoadSequences(ProjectRecord& project);
  void WriteCopy(const std::filesystem::path& path);
  void LetGoOfSideFiles();

  std::filesystem::path mPath; // empty: in memory
  std::filesystem::path mTemporaryFolder;
  bool mIsRead = false;
  bool mIsAdrift = false; // what is open has no place on the disk any more
  std::unique_ptr<FileLock> mLock;
  std::unique_ptr<SQLite::Database> mDatabase;
  std::unique_ptr<Checkpointer> mCheckpointer;
  std::unique_ptr<Statements> mStatements;
};

} // namespace BE
