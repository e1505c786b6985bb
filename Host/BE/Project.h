#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BE/Interfaces.h"

// The host's document: clips, their caption streams, sequences and the history of what was done to them, kept in one
// SQLite file. Every change is in the file before the operation that made it returns; there is nothing to save.
namespace BE {

class CaptioningStream;
class MasterClip;
class Sequence;
class TrackItem;
class Transition;
class OpenChange;

// Failure that a person can do something about: what happened, to what, and what to do.
struct Problem {
  std::string text; // localised, UTF-8
};
template <class T> struct Result {
  std::optional<T> value;
  Problem problem; // meaningful without a value
  explicit operator bool() const { return value.has_value(); }
};

// Gives states the measure of their text in the frame of the stream, which holds open captions. What draws captions
// lies above this library, which asks this of it; until it is set, measures are taken as they come.
using CaptionMeasurer =
    std::function<void(const CaptioningStream& stream, std::vector<zebcaptioning::CaptionStatePtr>& states)>;
void SetCaptionMeasurer(CaptionMeasurer measurer);

// What is known of a medium. width 0: no video. sampleRate 0: no audio.
struct MediaInfo {
  int width = 0;
  int height = 0;
  zebmediatypes::PixelAspectRatio pixelAspect;
  FrameRate frameRate;
  bool dropFrame = false;
  TickTime duration;
  TickTime start; // start timecode
  int sampleRate = 0;
  bool still = false;
};

// Naming captions to be put into a stream.
struct NewCaption {
  zebcaptioning::CaptionStatePtr state;
};

struct StreamDescription {
  StreamFormat format = zebcaptioning::kStreamFormat_None;
  struct Region {
    std::string name;
    zebcore::geom::RectT<float> area;
    bool percent = true;
  };
  std::vector<Region> regions;
  std::vector<std::string> styles;
};

// One caption before and after a change; null where it did not exist.
struct CaptionDelta {
  ICaptioningStream::CaptionKey key;
  std::uint64_t age = 0; // its place among captions of one begin time
  zebcaptioning::CaptionStatePtr before;
  zebcaptioning::CaptionStatePtr after;
};

class Project : public IProject, public INotification {
 public:
  // A new, empty project in a new file; an existing file is not replaced. An empty path makes one that lives in the
  // user's data folder until it is saved somewhere.
  static Result<InterfaceRef<Project>> Create(const std::filesystem::path& path);
  // A project in memory alone, for tests and for drives that need no file.
  static InterfaceRef<Project> CreateInMemory();
  static Result<InterfaceRef<Project>> Open(const std::filesystem::path& path, bool readOnly = false);

  // A copy of everything, history included, at another place, which the project then lives at. Replaces a file there,
  // whole or not at all.
  virtual std::optional<Problem> SaveAs(const std::filesystem::path& path) = 0;
  virtual std::filesystem::path GetPath() const = 0;
  // Lives in the user's data folder and was never saved by name.
  virtual bool IsUntitled() const = 0;
  virtual void SetReadOnly(bool readOnly) = 0;
  // The last thing that could not be written, until it could. Work goes on in memory.
  virtual std::optional<Problem> GetStorageProblem() const = 0;
  virtual void SetStorageProblemListener(std::function<void(const std::optional<Problem>&)> listener) = 0;

  // Bin. Order is that of adding. Removing a clip, with its streams, is an undoable step; adding is not.
  virtual InterfaceRef<MasterClip> AddClip(const UString& name, const std::filesystem::path& media,
                                           const MediaInfo& info, bool merged) = 0;
  virtual void RemoveClip(const InterfaceRef<MasterClip>& clip) = 0;
  virtual std::vector<InterfaceRef<MasterClip>> GetClips() const = 0;
  virtual InterfaceRef<MasterClip> FindClip(const std::string& id) const = 0;

  struct SequenceItem {
    InterfaceRef<MasterClip> clip;
    TickTime start;
    bool video = true;
    bool audio = true;
    int track = 0;          // from 0, of video and audio alike
    TickTime in = {};       // from the clip's first frame to the first one that is shown
    TickTime duration = {}; // 0: all that follows of the clip
  };
  // Adding a sequence is no step of the history, removing one is.
  virtual InterfaceRef<Sequence> AddSequence(const UString& name, FrameRate videoRate, FrameRate audioRate,
                                             const std::vector<SequenceItem>& items) = 0;
  virtual std::vector<InterfaceRef<Sequence>> GetSequences() const = 0;
  virtual InterfaceRef<Sequence> FindSequence(const std::string& id) const = 0;
  virtual void RemoveSequence(const InterfaceRef<Sequence>& sequence) = 0;

  // Edits of a sequence: one undoable step each, reported on the sequence's station. What is put or moved onto a track
  // takes the place of what lies there, which is cut or goes; transitions go with the cut they lie on. Nothing begins
  // before zero. Null and foreign objects are left out; in a read-only project nothing happens.
  struct ItemPlace {
    InterfaceRef<TrackItem> item;
    TickTime start;
    int track = 0;
  };
  virtual InterfaceRef<TrackItem> InsertItem(const InterfaceRef<Sequence>& sequence, const SequenceItem& item,
                                             const UString& stepName) = 0;
  virtual void MoveItems(const InterfaceRef<Sequence>& sequence, const std::vector<ItemPlace>& places,
                         const UString& stepName) = 0;
  virtual void RemoveItems(const InterfaceRef<Sequence>& sequence, const std::vector<InterfaceRef<TrackItem>>& items,
                           const UString& stepName) = 0;
  // Between two items of one video track that meet, in place of one that is there. It is no longer than the shorter of
  // the two. Null if they do not meet.
  virtual InterfaceRef<Transition> AddTransition(const InterfaceRef<Sequence>& sequence,
                                                 const InterfaceRef<TrackItem>& left,
                                                 const InterfaceRef<TrackItem>& right, TickTime duration,
                                                 const UString& stepName) = 0;
  virtual void RemoveTransition(const InterfaceRef<Sequence>& sequence, const InterfaceRef<Transition>& transition,
                                const UString& stepName) = 0;

  // Streams. Each of these is one undoable step. Adding a format that the clip already holds is a problem, and so is
  // any change of captions or streams in a read-only project, where those that report no problem do nothing.
  virtual Result<InterfaceRef<CaptioningStream>> AddStream(const InterfaceRef<MasterClip>& clip,
                                                           const StreamDescription& description,
                                                           const std::vector<NewCaption>& captions,
                                                           const UString& stepName) = 0;
  virtual void RemoveStream(const InterfaceRef<CaptioningStream>& stream, const UString& stepName) = 0;
  virtual std::optional<Problem> ChangeStreamFormat(const InterfaceRef<CaptioningStream>& stream, StreamFormat format,
                                                    const UString& stepName) = 0;
  virtual InterfaceRef<CaptioningStream> FindStream(const std::string& id) const = 0;

  // Edits from elsewhere in the host: one undoable step each, reported at once. Open changes are committed first. Of a
  // delta the key and after count: before is what the stream holds. A null key names a caption to be added, which gets
  // a key; age 0 makes it the newest. Keys that name none and deltas that change nothing are left out.
  virtual void EditCaptions(const InterfaceRef<CaptioningStream>& stream, const std::vector<CaptionDelta>& deltas,
                            const UString& stepName) = 0;
  // Every caption that begins in [from, to] is moved by offset.
  virtual void ShiftCaptions(const InterfaceRef<CaptioningStream>& stream, TickTime from, TickTime to, TickTime offset,
                             const UString& stepName) = 0;

  // The history. Undo and redo commit what is open first, by HSL::CaptionCommitEditsMessage and by themselves, and do
  // nothing in a read-only project. What is open is no step yet: it is not among the names, though it can be undone.
  virtual bool CanUndo() const = 0;
  virtual bool CanRedo() const = 0;
  // Newest first for undo, next first for redo.
  virtual std::vector<UString> GetUndoNames() const = 0;
  virtual std::vector<UString> GetRedoNames() const = 0;
  virtual bool Undo() = 0;
  virtual bool Redo() = 0;
  // The name of the step that committing what is open would make: undo would take that back first. Nothing if none.
  virtual std::optional<UString> GetOpenChangeName() const = 0;
  // Called after the history, or what is open, changed in any way.
  virtual void SetHistoryListener(std::function<void()> listener) = 0;

  // Closes every open change of every updater.
  virtual void CommitOpenChanges() = 0;

  // The file is closed with nothing left open; the project answers from memory afterwards.
  virtual void Close() = 0;

  // String settings of the document (window layout, import and export settings).
  virtual std::string GetSetting(const std::string& key, const std::string& defaultValue) const = 0;
  virtual void SetSetting(const std::string& key, const std::string& value) = 0;
};

class MasterClip : public IMasterClip, public INotification {
 public:
  virtual std::string GetID() const = 0;
  virtual std::filesystem::path GetMediaPath() const = 0;
  virtual const MediaInfo& GetMediaInfo() const = 0;
  virtual InterfaceRef<Project> GetProject() const = 0;
  // Ascending by format.
  virtual std::vector<InterfaceRef<CaptioningStream>> GetStreams() const = 0;
  // The media file is not where it was.
  virtual bool IsOffline() const = 0;
};

class Sequence : public ISequence, public INotification {
 public:
  virtual std::string GetID() const = 0;
  virtual std::vector<InterfaceRef<TrackItem>> GetItems() const = 0;
  virtual std::vector<InterfaceRef<Transition>> GetTransitions() const = 0;
  virtual InterfaceRef<Project> GetProject() const = 0;
  // Settings are no steps of the history. A change is reported by BE::PropertiesChangedMessage on the sequence's
  // station and by MZ::SequenceSettingsChangedMessage on MZ::kStation_SequenceActivation, once a call.
  virtual void SetVideoFrameRate(FrameRate rate) = 0;
  virtual void SetTimeDisplays(TimeDisplay video, TimeDisplay audio) = 0;
  virtual void SetSettings(FrameRate rate, TimeDisplay video, TimeDisplay audio) = 0;
};

class TrackItem : public ITrackItem, public IClipTrackItem {
 public:
  virtual std::string GetID() const = 0;
  virtual bool HasVideo() const = 0;
  virtual bool HasAudio() const = 0;
  virtual int GetTrack() const = 0;
  // From the clip's first frame to the first one that is shown.
  virtual TickTime GetIn() const = 0;
};

// A dissolve between two items of a sequence that meet, half of it before the cut.
class Transition : public virtual IObject {
 public:
  virtual std::string GetID() const = 0;
  virtual InterfaceRef<TrackItem> GetLeft() const = 0;
  virtual InterfaceRef<TrackItem> GetRight() const = 0;
  virtual TickTime GetStart() const = 0;
  virtual TickTime GetEnd() const = 0;
};

class CaptioningStream : public ICaptioningStream, public INotification {
 public:
  virtual std::string GetID() const = 0;
  virtual InterfaceRef<MasterClip> GetMasterClip() const = 0;
  virtual const StreamDescription& GetDescription() const = 0;

  // Look-ups, logarithmic. Of several captions with one begin time the newest.
  virtual boost::intrusive_ptr<zebcaptioning::Caption> FindByBegin(TickTime begin) const = 0;
  virtual std::optional<CaptionKey> FindKeyByBegin(TickTime begin) const = 0;
  // Those with begin <= time < end, by begin time.
  virtual std::vector<boost::intrusive_ptr<zebcaptioning::Caption>> FindAt(TickTime time) const = 0;

  // A long job holds the stream's updaters: each call with true needs one with false.
  virtual void SetBusy(bool busy) = 0;
  virtual bool IsBusy() const = 0;

  // A change that grows until it is committed or reverted; see OpenChange.
  virtual std::shared_ptr<OpenChange> BeginChange() = 0;

  // Writes measured line widths and block heights: at once, in no step and in no open change, on the file too. Captions
  // that an open change holds keep the measure when that change is reverted.
  struct Measure {
    CaptionKey key;
    int lineWidth = 0;
    int blockHeight = 0;
    std::uint32_t frame = 0; // as zebcaptioning::MeasureMark has it
  };
  virtual void WriteMeasures(const std::vector<Measure>& measures) = 0;
};

// Edits of one stream that are not yet a step. Each Apply is in the stream, in the file's journal and reported on the
// stream's station when it returns; a process that dies leaves the change as a step of its own on the next opening.
// Goes away with the last reference, committing.
class OpenChange {
 public:
  virtual ~OpenChange() = default;
  // Adds to the change. deltas' before is what the stream holds now. stepName names what was done; a change that holds
  // several kinds of edits is named "Edit captions".
  virtual void Apply(const std::vector<CaptionDelta>& deltas, const UString& stepName) = 0;
  // As Apply for one caption that the panel made: the stream takes the very object.
  virtual void Add(const boost::intrusive_ptr<zebcaptioning::Caption>& caption, const UString& stepName) = 0;
  virtual bool IsEmpty() const = 0;
  // One undoable step; none if nothing is different from before.
  virtual void Commit() = 0;
  virtual void Revert() = 0;
};

} // namespace BE
