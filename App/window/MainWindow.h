#pragma once

#include <QByteArray>
#include <QMainWindow>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "App/Session.h"
#include "App/window/TimeDisplays.h"

class QAction;
class QLabel;
class QMenu;
class QMimeData;

namespace HSL {
class Handler;
}
namespace UIF {
class WorkspaceFrame;
}

namespace App {

class Bin;
class DockFrame;
class MonitorDock;
class ReadOnlyWatch;
class StreamOnShow;
class TimelineDock;
struct TimelineSelection;

// The window of the program: the project's bin and the host's panels as docks, the menus, and what they do.
class MainWindow : public QMainWindow {
 public:
  // What the window asks of the program, since it does not outlive it: to be made anew, in another language for
  // instance.
  explicit MainWindow(std::function<void()> askRebuild);
  ~MainWindow() override;

  // Projects are opened, media and caption files imported.
  void OpenFiles(const std::vector<std::filesystem::path>& files, bool readOnly = false);
  // Shows a project that the session has opened, on the clip that was selected when it was last open.
  void ShowProject();
  // From 1, in the order of the bin.
  void SelectClipByNumber(int number);
  void Notice(const QString& text);
  void ShowProblem(const Problem& problem);
  // Opens the panels; asLeft puts window and docks where they last were.
  void RestoreLayout(bool asLeft);
  void StoreLayout();
  // Docks and panels as a new user finds them.
  void ResetWorkspace();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* target, QEvent* event) override;

 private:
  using Clip = InterfaceRef<BE::MasterClip>;
  using Stream = InterfaceRef<BE::CaptioningStream>;

  // Docks and status
  void MakeDocks();
  void MakeStatusBar();
  void OpenPanel();
  bool IsPanelShown() const;
  void LeavePanel();
  UIF::WorkspaceFrame* MakeFrame(const zebcore::UString& tabID);
  void UpdateTitle();
  void UpdateMenus();
  // What to do where the panel has nothing to show.
  void UpdateHint();
  void ShowStorageProblem(const std::optional<Problem>& problem);
  void DetachProject();
  // The widths and heights that the docks begin with.
  void SizeDocks();
  void SetPanelsStacked(bool stacked);
  void MakeReadOnlySign();
  void UpdateReadOnly();
  void SetReadOnly(bool readOnly);
  // False in a project that is read-only, which is said.
  bool MayChange();

  // Menus
  void MakeMenus();
  void MakeFileMenu();
  void MakeEditMenu();
  void MakeCaptionsMenu();
  void AddStreamEntries(QMenu* menu);
  void AddCaptionEntries(QMenu* menu);
  void MakeWindowMenu();
  void MakeHelpMenu();
  QAction* AddAction(QMenu* menu, std::string_view text, const QString& symbol, const QKeySequence& keys,
                     std::function<void()> act);
  // Shown as they are when the menu opens; while it is closed a shortcut finds out by itself.
  void EnableWhileOpen(QMenu* menu, std::vector<std::pair<QAction*, std::function<bool()>>> entries);
  void FillRecentMenu();
  void FillWindowMenu(QMenu* menu);
  void FillStreamFormats(QMenu* menu, const Clip& clip, const std::function<void(zebcaptioning::StreamFormat)>& choose);
  void FillBinMenu(QMenu& menu);
  void SetDark(bool dark);
  void SetLanguage(const std::string& language);

  // Projects
  void NewProject();
  void ChooseProject();
  void OpenProject(const std::filesystem::path& path, bool readOnly = false);
  void SaveProjectAs();

  // Media and captions
  void ChooseMedia();
  void ChooseCaptions();
  Clip ImportMedia(const std::filesystem::path& path);
  void ImportCaptions(const Clip& clip, const std::filesystem::path& path, zebcaptioning::StreamFormat format);
  void ExportCaptions();
  Clip FindClipFor(const std::filesystem::path& captions) const;
  bool AcceptsDrop(const QMimeData* dragged) const;
  // Runs what takes long with its progress on show. False when the user stopped it.
  bool RunBusy(const std::function<void(const Progress&)>& work);

  // Streams
  void ShowClip(const Clip& clip);
  void Present(const Result<Stream>& stream);
  void NewStream(zebcaptioning::StreamFormat format);
  void DuplicateStream(zebcaptioning::StreamFormat format);
  void DeleteStream();
  void RemoveClip();
  // The stream that is current in the bin, else the one that the panel shows; null for none.
  Stream GetCurrentStream() const;
  void SelectClip(const Clip& clip, const Stream& stream);
  void OpenClip(const Clip& clip, const Stream& stream);

  // Sequences
  void MakeTimeline();
  void MakeSequenceMenu();
  void FillTimelineMenu(QMenu& menu);
  // For the sequence that is current in the bin. False if none is.
  bool FillSequenceMenu(QMenu& menu);
  void AddClipEntries(QMenu& menu, const Clip& clip);
  void FillTimeDisplays(QMenu& menu, timedisplays::Which which);
  void SelectInTimeline(const TimelineSelection& selection);
  // At a time of the sequence.
  void OpenItem(const InterfaceRef<BE::TrackItem>& item, zebmediatypes::TickTime time);
  void OpenSequence(const InterfaceRef<BE::Sequence>& sequence);
  void Show(const InterfaceRef<BE::Sequence>& sequence);
  void NewSequence();
  void RemoveSequence(const InterfaceRef<BE::Sequence>& sequence);
  void PutClip(const std::string& clip, zebmediatypes::TickTime start, int track);
  void DeleteInTimeline();
  // Two items of a video track between which there is room for a dissolve; null without any.
  std::pair<InterfaceRef<BE::TrackItem>, InterfaceRef<BE::TrackItem>> FindMeetingItems() const;
  void AddDissolve();
  void ChangeSequence();

  std::function<void()> mAskRebuild;
  // The sizes that a person gave the docks beside the panels: a window that grows gives the panels what it gains.
  void NoteDockSizes();
  void KeepDockSizes();
  QSize mSizeOfNote; // of the window when it was laid out last
  int mBinWidth = 0;
  int mTimelineHeight = 0;
  int mMonitorHeight = 0;
  Bin* mBin = nullptr;
  TimelineDock* mTimeline = nullptr;
  MonitorDock* mMonitor = nullptr;
  std::map<zebcore::UString, DockFrame*> mFrames;
  std::unique_ptr<StreamOnShow> mStreamOnShow;
  std::unique_ptr<HSL::Handler> mCaptionsHandler; // null if the panel's module is not there
  std::unique_ptr<ReadOnlyWatch> mReadOnlyWatch;
  QByteArray mFirstLayout; // of the docks, before any was moved
  QLabel* mReadOnlySign = nullptr;
  QLabel* mProblemSymbol = nullptr;
  QLabel* mProblemText = nullptr;
  QMenu* mRecentMenu = nullptr;
  QMenu* mNewStreamMenu = nullptr;
  QMenu* mDuplicateMenu = nullptr;
  QAction* mReadOnly = nullptr;
  QAction* mSaveAs = nullptr;
  QAction* mImportMedia = nullptr;
  QAction* mImportCaptions = nullptr;
  QAction* mExportCaptions = nullptr;
  QAction* mUndo = nullptr;
  QAction* mRedo = nullptr;
  QAction* mDeleteStream = nullptr;
  bool mBusy = false; // something long is under way
};

} // namespace App
