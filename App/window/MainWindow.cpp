#include "App/window/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>

#include <algorithm>

#include "App/session/Text.h"
#include "App/window/Bin.h"
#include "App/window/DecodeNotice.h"
#include "App/window/DockFrame.h"
#include "App/window/Icons.h"
#include "App/window/Labels.h"
#include "App/window/MonitorDock.h"
#include "App/window/ReadOnlyWatch.h"
#include "App/window/Settings.h"
#include "App/window/StreamOnShow.h"
#include "App/window/TimeDisplays.h"
#include "App/window/TimelineDock.h"
#include "HSL/HostCommands.h"
#include "HSL/Module.h"
#include "UIF/Dialogs.h"
#include "UIF/ShortcutManager.h"
#include "UIF/TabView.h"
#include "UIF/Workspace.h"
#include "zebcore/Log.h"
#include "zebui/Toolkit.h"

namespace App {

namespace {

constexpr int kNoticeMilliseconds = 8000;
constexpr int kMessage_OneButton = 1;
constexpr int kMessage_Warning = 4;
constexpr const char* kSetting_SelectedClip = "window.clip";
constexpr const char* kSetting_SelectedStream = "window.stream";

// By whatever keys undo and redo go now.
bool IsUndoOrRedo(const QKeyEvent& event) {
  const auto* manager = UIF::ShortcutManager::Instance();
  const QKeySequence pressed(event.keyCombination());
  const int command = manager->FindCommand("global", pressed.toString(QKeySequence::PortableText).toStdString());
  return command == HSL::kCommand_Undo || command == HSL::kCommand_Redo;
}

// Or to a dock of it that floats.
bool BelongsTo(const QWidget& widget, const QMainWindow& main) {
  const QWidget* window = widget.window();
  while (window != &main && window->windowType() != Qt::Dialog && qobject_cast<const QDockWidget*>(window) &&
         window->parentWidget())
    window = window->parentWidget()->window();
  return window == &main;
}

} // namespace

MainWindow::MainWindow(std::function<void()> askRebuild) : mAskRebuild(std::move(askRebuild)) {
  setObjectName(QStringLiteral("main"));
  setWindowIcon(ProgramIcon());
  setDockOptions(AnimatedDocks | AllowNestedDocks | AllowTabbedDocks);
  setAcceptDrops(true);
  MakeDocks();
  // A dock that floats is a window of its own.
  for (QDockWidget* dock : findChildren<QDockWidget*>())
    dock->setAcceptDrops(true);
  MakeStatusBar();
  MakeMenus();
  UpdateTitle();
  mReadOnlyWatch = std::make_unique<ReadOnlyWatch>([this] { UpdateReadOnly(); });
  QApplication::instance()->installEventFilter(this);
}

MainWindow::~MainWindow() {
  QApplication::instance()->removeEventFilter(this);
  DetachProject();
  mCaptionsHandler.reset();
  UIF::Workspace::SetFrameFactory({});
}

void MainWindow::MakeDocks() {
  mBin = new Bin;
  mBin->whenSelected = [this](const Clip& clip, const Stream& stream) { SelectClip(clip, stream); };
  mBin->whenOpened = [this](const Clip& clip, const Stream& stream) {
    OpenClip(clip, stream);
    Session::Instance().SelectSourceClip(clip);
  };
  mBin->fillMenu = [this](QMenu& menu) { FillBinMenu(menu); };
  mBin->whenImportAsked = [this] { ChooseMedia(); };

  auto* dock = new QDockWidget(Label("$$$/Vidra/Captivo/Bin/Title=Project"), this);
  dock->setObjectName(QStringLiteral("bin"));
  dock->setWidget(mBin);
  addDockWidget(Qt::LeftDockWidgetArea, dock);
  // Beside the timeline, where it takes nothing from the panel.
  mMonitor = new MonitorDock(this);
  addDockWidget(Qt::LeftDockWidgetArea, mMonitor);
  MakeTimeline();

  mStreamOnShow = std::make_unique<StreamOnShow>([this] { return IsPanelShown(); });
  mStreamOnShow->whenChanged = [this] {
    mBin->SetStreamOnShow(mStreamOnShow->Get());
    mMonitor->SetStreamOnShow(mStreamOnShow->Get());
    timedisplays::SayAgain();
    UpdateMenus();
  };
  mStreamOnShow->whenSayingAgain = [this] { LeavePanel(); };

  UIF::Workspace::SetFrameFactory([this](const zebcore::UString& tabID) { return MakeFrame(tabID); });
  mCaptionsHandler = HSL::Handler::CreateHandler(HSL::kCaptionsHandlerID, u"captions");
}

UIF::WorkspaceFrame* MainWindow::MakeFrame(const zebcore::UString& tabID) {
  if (const auto made = mFrames.find(tabID); made != mFrames.end())
    return made->second;
  auto* frame = new DockFrame(tabID, this);
  addDockWidget(Qt::RightDockWidgetArea, frame);
  mFrames[tabID] = frame;
  UpdateHint();
  return frame;
}

void MainWindow::OpenPanel() {
  if (!mCaptionsHandler) {
    const std::string text =
        Text("$$$/Vidra/Captivo/Error/NoPanel=The Captions panel could not be loaded, so captions cannot be "
             "shown. Build or install the program again; the log says what was missing.");
    zebcore::log::Write(zebcore::log::Level::Error, text);
    ShowStorageProblem(Problem{text});
    return;
  }
  Session::Instance().OpenCaptions();
  timedisplays::SayAgain();
}

bool MainWindow::IsPanelShown() const {
  return std::any_of(mFrames.begin(), mFrames.end(), [](const auto& frame) { return frame.second->IsShown(); });
}

void MainWindow::UpdateHint() {
  const Stream stream = mStreamOnShow->Get();
  QString hint;
  if (!Session::Instance().GetSelectedClip())
    hint = Label("$$$/Vidra/Captivo/Hint/NoClip=The captions of the clip that you select in the project appear here.");
  else if (!stream)
    hint = Label("$$$/Vidra/Captivo/Hint/NoStream=This clip has no captions yet. Import a caption file, or begin an "
                 "empty stream in the Captions menu.");
  else if (stream->GetCaptionCount() == 0)
    hint = Label("$$$/Vidra/Captivo/Hint/NoCaption=There are no captions in this stream yet. The + button adds the "
                 "first one.");
  for (const auto& [tabID, frame] : mFrames)
    frame->SetHint(hint);
}

// Whoever types there types into a stream that is not there any more.
void MainWindow::LeavePanel() {
  QWidget* focus = zebui::toolkit::GetFocusWidget();
  for (const auto& [tabID, frame] : mFrames)
    if (focus && frame->isAncestorOf(focus))
      focus->clearFocus();
}

void MainWindow::MakeStatusBar() {
  mProblemSymbol = new QLabel;
  mProblemSymbol->setPixmap(Symbol(QStringLiteral("warning"), WarningColor()).pixmap(16));
  mProblemText = new QLabel;
  mProblemText->setTextInteractionFlags(Qt::TextSelectableByMouse);
  mProblemText->setStyleSheet(QStringLiteral("color: %1").arg(WarningColor().name()));
  statusBar()->addWidget(mProblemSymbol);
  statusBar()->addWidget(mProblemText, 1);
  MakeReadOnlySign();
  new DecodeNotice(statusBar());
  ShowStorageProblem(std::nullopt);
}

void MainWindow::Notice(const QString& text) {
  statusBar()->showMessage(text, kNoticeMilliseconds);
}

void MainWindow::ShowStorageProblem(const std::optional<Problem>& problem) {
  const QString text = problem ? QString::fromStdString(problem->text) : QString();
  if (problem)
    statusBar()->clearMessage();
  mProblemText->setText(text);
  mProblemText->setToolTip(text);
  mProblemText->setVisible(problem.has_value());
  mProblemSymbol->setVisible(problem.has_value());
}

void MainWindow::ShowProblem(const Problem& problem) {
  UIF::MessageBoxW(zebcore::FromUTF8(problem.text), u"Captivo", kMessage_OneButton, kMessage_Warning, 1);
}

void MainWindow::ShowProject() {
  const InterfaceRef<BE::Project> project = Session::Instance().GetProject();
  mBin->SetProject(project);
  mTimeline->SetProject(project);
  if (project) {
    project->SetStorageProblemListener([this](const std::optional<Problem>& problem) { ShowStorageProblem(problem); });
    project->SetHistoryListener([this] {
      UpdateMenus();
      mBin->Refresh();
      mTimeline->Refresh();
      mStreamOnShow->LookSoon();
    });
    ShowStorageProblem(project->GetStorageProblem());
    settings::AddRecentProject(project->GetPath());
  }
  UpdateReadOnly();
  if (!project)
    return;
  Clip clip = project->FindClip(project->GetSetting(kSetting_SelectedClip, {}));
  if (!clip && !project->GetClips().empty())
    clip = project->GetClips().front();
  if (!clip)
    return;
  mBin->SetCurrentClip(clip);
  Session& session = Session::Instance();
  session.SelectClip(clip);
  if (const Stream stream = project->FindStream(project->GetSetting(kSetting_SelectedStream, {}));
      stream && stream->GetMasterClip() == clip && stream != mStreamOnShow->Get())
    session.SelectStream(stream);
  UpdateMenus();
}

// The project may live on, its listeners must not call a window that has gone.
void MainWindow::DetachProject() {
  if (const auto project = Session::Instance().GetProject()) {
    project->SetStorageProblemListener({});
    project->SetHistoryListener({});
  }
}

void MainWindow::UpdateTitle() {
  const InterfaceRef<BE::Project> project = Session::Instance().GetProject();
  QString name = Label("$$$/Vidra/Captivo/Title/Untitled=untitled");
  if (project && !project->IsUntitled())
    name = ToQString(project->GetName());
  if (project && project->IsReadOnly())
    name += Label("$$$/Vidra/Captivo/Title/ReadOnly= (read-only)");
  setWindowTitle(name + QStringLiteral(" — Captivo"));
}

void MainWindow::SelectClip(const Clip& clip, const Stream& stream) {
  if (!clip || mBusy)
    return;
  Session& session = Session::Instance();
  if (!session.IsClipSelected(clip)) {
    session.SelectClip(clip);
    session.GetProject()->SetSetting(kSetting_SelectedClip, clip->GetID());
  }
  if (stream && stream != mStreamOnShow->Get())
    session.SelectStream(stream);
  if (stream)
    session.GetProject()->SetSetting(kSetting_SelectedStream, stream->GetID());
  UpdateMenus();
}

void MainWindow::OpenClip(const Clip& clip, const Stream& stream) {
  OpenPanel();
  SelectClip(clip, stream);
}

void MainWindow::SelectClipByNumber(int number) {
  const InterfaceRef<BE::Project> project = Session::Instance().GetProject();
  const auto clips = project ? project->GetClips() : std::vector<Clip>();
  if (number < 1 || static_cast<std::size_t>(number) > clips.size())
    return;
  const Clip clip = clips[static_cast<std::size_t>(number) - 1];
  mBin->RefreshNow();
  mBin->SetCurrentClip(clip);
  SelectClip(clip, nullptr);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (mBusy) {
    event->ignore();
    return;
  }
  StoreLayout();
  event->accept();
  QCoreApplication::quit();
}

// For the whole program: undo belongs to the project, whatever has the focus in this window, and files may be dropped
// anywhere on it, on a text too.
bool MainWindow::eventFilter(QObject* target, QEvent* event) {
  const auto* widget = qobject_cast<QWidget*>(target);
  if (!widget || !BelongsTo(*widget, *this))
    return QMainWindow::eventFilter(target, event);
  switch (event->type()) {
  case QEvent::Resize:
    if (qobject_cast<const QDockWidget*>(widget))
      NoteDockSizes();
    break;
  case QEvent::ShortcutOverride:
    if (IsUndoOrRedo(*static_cast<QKeyEvent*>(event))) {
      event->ignore();
      return true;
    }
    break;
  case QEvent::DragEnter:
  case QEvent::DragMove:
    if (auto* drag = static_cast<QDragMoveEvent*>(event); AcceptsDrop(drag->mimeData())) {
      drag->acceptProposedAction();
      return true;
    }
    break;
  case QEvent::Drop:
    if (auto* drop = static_cast<QDropEvent*>(event); AcceptsDrop(drop->mimeData())) {
      drop->acceptProposedAction();
      std::vector<std::filesystem::path> files;
      for (const QUrl& url : drop->mimeData()->urls())
        files.emplace_back(url.toLocalFile().toStdString());
      // The other program waits for its drop to end; what follows may take long or ask something.
      QTimer::singleShot(0, this, [this, files] { OpenFiles(files); });
      return true;
    }
    break;
  default:
    break;
  }
  return QMainWindow::eventFilter(target, event);
}

} // namespace App
