#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BE/CaptionsSettings.h"
#include "BE/Project.h"
#include "Formats/Formats.h"
#include "zebcore/Messaging.h"

// What the program does with a project, without a window: the main window and the driver both stand on it. UI thread;
// what takes long reports progress and can be stopped, and then leaves the project as it was.
namespace App {

using BE::Problem;
using BE::Result;
using zebcore::classref::InterfaceRef;

// Progress from 0 to 1 and what is being done; answers false to stop.
using Progress = std::function<bool(double fraction, const std::string& what)>;

struct ImportReport {
  InterfaceRef<BE::CaptioningStream> stream;
  std::string encoding;
  std::vector<Formats::Problem> problems;
};

struct ExportReport {
  std::filesystem::path path;
  InterfaceRef<BE::CaptioningStream> stream;
  std::vector<Formats::Problem> problems; // what could not be written
};

struct MediaReport {
  InterfaceRef<BE::MasterClip> clip;
  std::vector<Formats::Problem> problems; // what of its subtitle tracks did not come in
};

struct ExportTarget;

class Session {
 public:
  static Session& Instance();

  // The project in hand; null if there is none. Each of these commits what is open and closes the one before; when it
  // fails, that one stays as it is.
  InterfaceRef<BE::Project> GetProject() const { return mProject; }
  std::optional<Problem> NewProject(const std::filesystem::path& path = {});
  void NewProjectInMemory();
  std::optional<Problem> OpenProject(const std::filesystem::path& path, bool readOnly = false);
  std::optional<Problem> SaveProjectAs(const std::filesystem::path& path);
  // Locks the project against changes, or opens it for them again. A file that may not be written stays locked, and the
  // problem says so. Unlocking may replace the project by one that was read anew.
  std::optional<Problem> SetReadOnly(bool readOnly);
  void CloseProject();

  // A media file as a clip of the bin, its text subtitle tracks as streams. Without a name it has that of the file.
  Result<InterfaceRef<BE::MasterClip>> ImportMedia(const std::filesystem::path& path, const Progress& progress = {},
                                                   const std::string& name = {});

  Result<MediaReport> ImportMediaReport(const std::filesystem::path& path, const Progress& progress = {},
                                        const std::string& name = {});

  // A caption file as a new stream of a clip: the format asked for or, if the clip holds that already, the next free
  // number of its family. One undoable step. The project's import settings say what becomes of its captions.
  Result<ImportReport> ImportCaptions(const InterfaceRef<BE::MasterClip>& clip, const std::filesystem::path& path,
                                      zebcaptioning::StreamFormat format, const Progress& progress = {});
  // Whole or not at all: a file that stood there stays when writing fails. The problems are what could not be written.
  // Times, encoding and language are those of the project's export settings.
  Result<std::vector<Formats::Problem>> ExportCaptions(const InterfaceRef<BE::CaptioningStream>& stream,
                                                       const std::filesystem::path& path, Formats::FileKind kind,
                                                       const Progress& progress = {});
  // The streams of a clip that the export settings mean, a file for each; shown is the one that the panel shows.
  // Nothing is written before all of them are ready.
  Result<std::vector<ExportReport>> ExportBySettings(const InterfaceRef<BE::MasterClip>& clip,
                                                     const InterfaceRef<BE::CaptioningStream>& shown,
                                                     const std::filesystem::path& path, Formats::FileKind kind,
                                                     const Progress& progress = {});

  Result<InterfaceRef<BE::CaptioningStream>> NewStream(const InterfaceRef<BE::MasterClip>& clip,
                                                       zebcaptioning::StreamFormat format);
  // The same captions in another format; what that format does not allow takes the nearest that it does.
  Result<InterfaceRef<BE::CaptioningStream>> DuplicateStream(const InterfaceRef<BE::CaptioningStream>& stream,
                                                             zebcaptioning::StreamFormat format);
  void DeleteStream(const InterfaceRef<BE::CaptioningStream>& stream);

  // Says to the host's listeners what is selected, and says it again when a panel was made.
  void SelectClip(const InterfaceRef<BE::MasterClip>& clip);
  void SelectNothing();
  // An item whose pictures are shown stands for its clip; one of sound alone, and all the rest, shows no captions.
  void SelectTrackItem(const InterfaceRef<BE::TrackItem>& item);
  void SelectTransition();
  void SelectEmptySpot();
  void SelectNoTrackItem();
  void SelectSequence(const InterfaceRef<BE::Sequence>& sequence);
  void SelectBin();
  // What is looked at as a source.
  void SelectSourceClip(const InterfaceRef<BE::MasterClip>& clip);
  void SelectSourceClip(const InterfaceRef<BE::TrackItem>& item);
  void RepeatSelection();
  // As if something else had been selected in between: a panel takes up anew what it was on already.
  void LeaveAndRepeatSelection();
  // The clip whose captions are worked on: the one selected, or that of the selected item; null for none.
  InterfaceRef<BE::MasterClip> GetSelectedClip() const { return mSelectedClip; }
  // As a clip of the bin, and not as that of an item or a source.
  bool IsClipSelected(const InterfaceRef<BE::MasterClip>& clip) const;
  // Out of the bin, with its streams. Panels hear that it was closed.
  void RemoveClip(const InterfaceRef<BE::MasterClip>& clip);
  // Asks panels to show this stream of the selected clip.
  void SelectStream(const InterfaceRef<BE::CaptioningStream>& stream);
  void OpenCaptions(); // MZ::ClosedCaptionsOpenedMessage

  // Opens the captions of an item, at a time of its stream.
  void OpenTrackItem(const InterfaceRef<BE::Sequence>& sequence, const InterfaceRef<BE::TrackItem>& item,
                     zebmediatypes::TickTime time);

  // A sequence at the rate of the clip, which lies in it; an empty one without a clip. Null if there is no project that
  // may be changed.
  InterfaceRef<BE::Sequence> NewSequence(const InterfaceRef<BE::MasterClip>& clip);
  void RemoveSequence(const InterfaceRef<BE::Sequence>& sequence);
  // Each is one undoable step; what is open is committed first.
  InterfaceRef<BE::TrackItem> PutClip(const InterfaceRef<BE::Sequence>& sequence,
                                      const InterfaceRef<BE::MasterClip>& clip, zebmediatypes::TickTime start,
                                      int track);
  void MoveItems(const InterfaceRef<BE::Sequence>& sequence, const std::vector<BE::Project::ItemPlace>& places);
  void RemoveItem(const InterfaceRef<BE::Sequence>& sequence, const InterfaceRef<BE::TrackItem>& item);
  // A second long, or as long as the items allow. Null if they do not meet.
  InterfaceRef<BE::Transition> AddDissolve(const InterfaceRef<BE::Sequence>& sequence,
                                           const InterfaceRef<BE::TrackItem>& left,
                                           const InterfaceRef<BE::TrackItem>& right);
  void RemoveTransition(const InterfaceRef<BE::Sequence>& sequence, const InterfaceRef<BE::Transition>& transition);

  bool Undo();
  bool Redo();

 private:
  Session();
  std::optional<Problem> Replace(Result<InterfaceRef<BE::Project>> next);
  // What is open in the panel and anywhere else becomes a step of the history.
  void Commit();
  Result<std::vector<ExportReport>> WriteTargets(const std::vector<ExportTarget>& targets, Formats::FileKind kind,
                                                 const BE::CaptionsExportSettings& settings, const Progress& progress);
  void Say(const zebcore::utility::ImmutableString& station, const zebcore::messaging::Message& message);
  template <class M> void SayItem(const InterfaceRef<BE::TrackItem>& item);

  InterfaceRef<BE::Project> mProject;
  bool mIsCopy = false; // opened for reading only: what is in hand is a copy, which never reaches the file
  InterfaceRef<BE::MasterClip> mSelectedClip;
  zebcore::utility::ImmutableString mSelectionStation;
  std::shared_ptr<const zebcore::messaging::Message> mSelection; // null before anything was selected
};

// All of a clip, as it is put into a sequence.
BE::Project::SequenceItem MakeSequenceItem(const InterfaceRef<BE::MasterClip>& clip, zebmediatypes::TickTime start,
                                           int track);

// The stream numbers of a family, in the order in which they are given out: "cea608" CC1 to CC4, "cea708" services,
// "teletext" pages, "ebu_n19", "australian", "open" tracks. channel counts from 1; 0 for an unknown name or channel.
zebcaptioning::StreamFormat GetStreamFormat(const std::string& family, int channel);
std::vector<std::string> GetStreamFamilies();

} // namespace App
