#include "App/window/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include <algorithm>
#include <iterator>
#include <tuple>

#include "App/session/Exports.h"
#include "App/session/FileKinds.h"
#include "App/session/Streams.h"
#include "App/session/Text.h"
#include "App/window/Bin.h"
#include "App/window/ImportFormatWindow.h"
#include "App/window/Labels.h"
#include "App/window/ProblemsWindow.h"
#include "App/window/ProgressWindow.h"
#include "App/window/Settings.h"
#include "App/window/StreamOnShow.h"

namespace App {

namespace fs = std::filesystem;

namespace {

fs::path ToPath(const QString& file) {
  return fs::path(file.toStdString());
}

QString ProjectFilter() {
  return Label("$$$/Vidra/Captivo/Filter/Projects=Captivo projects (*.captivo)");
}

QString AllFilter() {
  return Label("$$$/Vidra/Captivo/Filter/All=All files (*)");
}

// The suffix that goes with a file's kind, unless the user typed one.
QString WithSuffix(const QString& file, const QString& suffix) {
  return file.isEmpty() || !QFileInfo(file).suffix().isEmpty() ? file : file + suffix;
}

// The file dialog has asked about the name that was chosen, and knows nothing of the ones made of it.
bool MayReplace(QWidget* parent, const std::vector<ExportTarget>& targets, const fs::path& chosen) {
  std::vector<ExportTarget> there;
  std::error_code error;
  std::copy_if(targets.begin(), targets.end(), std::back_inserter(there),
               [&](const ExportTarget& target) { return target.path != chosen && fs::exists(target.path, error); });
  if (there.empty())
    return true;
  std::string names;
  for (const ExportTarget& target : there)
    names += (names.empty() ? "" : ", ") + target.path.filename().string();
  QMessageBox box(parent);
  box.setWindowTitle(Label("$$$/Vidra/Captivo/Replace/Title=Replace Files"));
  box.setText(Label("$$$/Vidra/Captivo/Replace/Question=There are such files already: {1}. Replace them?", {names}));
  QPushButton* replace = box.addButton(Label("$$$/Vidra/Captivo/Button/Replace=Replace"), QMessageBox::DestructiveRole);
  box.setDefaultButton(box.addButton(Label("$$$/Vidra/Captivo/Button/Cancel=Cancel"), QMessageBox::RejectRole));
  box.exec();
  return box.clickedButton() == replace;
}

} // namespace

// --- Projects

void MainWindow::NewProject() {
  if (const auto problem = Session::Instance().NewProject()) {
    ShowProblem(*problem);
    return;
  }
  ShowProject();
}

void MainWindow::ChooseProject() {
  const QString file = QFileDialog::getOpenFileName(this, Label("$$$/Vidra/Captivo/Choose/Project=Open Project"),
                                                    settings::GetFolder(), ProjectFilter() + ";;" + AllFilter());
  if (file.isEmpty())
    return;
  settings::SetFolderOf(file);
  OpenProject(ToPath(file));
}

void MainWindow::OpenProject(const fs::path& path, bool readOnly) {
  if (const auto problem = Session::Instance().OpenProject(path, readOnly)) {
    ShowProblem(*problem);
    return;
  }
  ShowProject();
}

void MainWindow::SaveProjectAs() {
  const InterfaceRef<BE::Project> project = Session::Instance().GetProject();
  if (!project)
    return;
  const QString name = project->IsUntitled() ? QString() : ToQString(project->GetName());
  const QString file =
      WithSuffix(QFileDialog::getSaveFileName(this, Label("$$$/Vidra/Captivo/Choose/SaveAs=Save Project As"),
                                              QDir(settings::GetFolder()).filePath(name), ProjectFilter()),
                 QStringLiteral(".captivo"));
  if (file.isEmpty())
    return;
  settings::SetFolderOf(file);
  if (const auto problem = Session::Instance().SaveProjectAs(ToPath(file))) {
    ShowProblem(*problem);
    return;
  }
  settings::AddRecentProject(project->GetPath());
  UpdateReadOnly();
}

// --- Media and captions

bool MainWindow::RunBusy(const std::function<void(const Progress&)>& work) {
  ProgressWindow window(this);
  mBusy = true;
  work(window.GetProgress());
  // What panels make of it may take as long again, and is waited for under the same window.
  if (window.IsShown())
    QCoreApplication::processEvents();
  mBusy = false;
  return !window.WasStopped();
}

void MainWindow::ChooseMedia() {
  if (!MayChange())
    return;
  const QStringList files =
      QFileDialog::getOpenFileNames(this, Label("$$$/Vidra/Captivo/Choose/Media=Import Media"), settings::GetFolder(),
                                    Label("$$$/Vidra/Captivo/Filter/Media=Media files (*.mp4 *.mov *.m4v *.mkv *.webm "
                                          "*.avi *.mxf *.mpg *.mpeg *.ts *.m2ts "
                                          "*.wav *.mp3 *.m4a *.flac *.ogg *.png *.jpg *.jpeg)") +
                                        ";;" + AllFilter());
  if (files.isEmpty())
    return;
  settings::SetFolderOf(files.front());
  Clip last;
  for (const QString& file : files)
    if (const Clip clip = ImportMedia(ToPath(file)))
      last = clip;
  if (last)
    ShowClip(last);
}

MainWindow::Clip MainWindow::ImportMedia(const fs::path& path) {
  Result<MediaReport> result;
  const bool finished =
      RunBusy([&](const Progress& progress) { result = Session::Instance().ImportMediaReport(path, progress); });
  if (!result) {
    if (finished)
      ShowProblem(result.problem);
    else
      Notice(QString::fromStdString(result.problem.text));
    return nullptr;
  }
  if (!result.value->problems.empty())
    ShowProblems(
        this, Label("$$$/Vidra/Captivo/Problems/ImportTitle=Not Everything Was Imported"),
        Label("$$$/Vidra/Captivo/Problems/MediaSummary={1} came in. Of its subtitles this did not, or not as it was:",
              {path.filename().string()}),
        result.value->problems);
  return result.value->clip;
}

void MainWindow::ChooseCaptions() {
  if (!MayChange())
    return;
  const Clip clip = Session::Instance().GetSelectedClip();
  if (!clip) {
    ShowProblem({Text(
        "$$$/Vidra/Captivo/Error/NoClipForCaptions=Captions belong to a clip, and none is selected. Import a media "
        "file or select a clip in the project first.")});
    return;
  }
  const QString file = QFileDialog::getOpenFileName(
      this, Label("$$$/Vidra/Captivo/Choose/Captions=Import Captions"), settings::GetFolder(),
      Label("$$$/Vidra/Captivo/Filter/Captions=Caption files (*.srt *.vtt)") + ";;" + AllFilter());
  if (file.isEmpty())
    return;
  settings::SetFolderOf(file);
  if (const auto format = AskImportFormat(this, clip, QFileInfo(file).fileName()))
    ImportCaptions(clip, ToPath(file), *format);
}

void MainWindow::ImportCaptions(const Clip& clip, const fs::path& path, zebcaptioning::StreamFormat format) {
  Result<ImportReport> result;
  const bool finished = RunBusy(
      [&](const Progress& progress) { result = Session::Instance().ImportCaptions(clip, path, format, progress); });
  if (!result) {
    if (finished)
      ShowProblem(result.problem);
    else
      Notice(QString::fromStdString(result.problem.text));
    return;
  }
  const ImportReport& report = *result.value;
  const std::string name = path.filename().string();
  const std::string count = std::to_string(report.stream->GetCaptionCount());
  ShowClip(clip);
  SelectClip(clip, report.stream);
  Notice(Label("$$$/Vidra/Captivo/Notice/Imported={1}: {2} captions imported ({3})", {name, count, report.encoding}));
  if (!report.problems.empty())
    ShowProblems(
        this, Label("$$$/Vidra/Captivo/Problems/ImportTitle=Not Everything Was Imported"),
        Label("$$$/Vidra/Captivo/Problems/ImportSummary={2} captions of {1} came in. This did not, or not as it was:",
              {name, count}),
        report.problems);
}

void MainWindow::ExportCaptions() {
  const Stream stream = GetCurrentStream();
  if (!stream)
    return;
  const QString subRip = Label("$$$/Vidra/Captivo/Filter/SubRip=SubRip (*.srt)");
  const QString webVTT = Label("$$$/Vidra/Captivo/Filter/WebVTT=WebVTT (*.vtt)");
  const Clip clip = stream->GetMasterClip();
  const BE::CaptionsExportSettings preset = BE::GetCaptionsExportSettings(*Session::Instance().GetProject());
  const QString name = QString::fromStdString(
      SuggestExportName(QFileInfo(ToQString(clip->GetName())).completeBaseName().toStdString(), preset));
  QString filter = preset.format == BE::SidecarFormat::WebVTT ? webVTT : subRip;
  QString file =
      QFileDialog::getSaveFileName(this, Label("$$$/Vidra/Captivo/Choose/Export=Export Captions"),
                                   QDir(settings::GetFolder()).filePath(name), subRip + ";;" + webVTT, &filter);
  if (file.isEmpty())
    return;
  const fs::path chosen = ToPath(file);
  const bool asWebVTT = file.endsWith(QLatin1String(".vtt"), Qt::CaseInsensitive) ||
                        (filter == webVTT && !file.endsWith(QLatin1String(".srt"), Qt::CaseInsensitive));
  // The language in a name is no ending.
  const QString ending = asWebVTT ? QStringLiteral(".vtt") : QStringLiteral(".srt");
  const bool endsInLanguage =
      !preset.language.empty() && file.endsWith(QLatin1Char('.') + QString::fromStdString(preset.language));
  file = endsInLanguage ? file + ending : WithSuffix(file, ending);
  settings::SetFolderOf(file);
  const auto targets = FindExportTargets(clip, stream, ToPath(file), preset);
  if (!targets) {
    ShowProblem(targets.problem);
    return;
  }
  if (!MayReplace(this, *targets.value, chosen))
    return;

  Result<std::vector<ExportReport>> result;
  const bool finished = RunBusy([&](const Progress& progress) {
    result = Session::Instance().ExportBySettings(
        clip, stream, ToPath(file), asWebVTT ? Formats::FileKind::WebVTT : Formats::FileKind::SubRip, progress);
  });
  std::string shown = QFileInfo(file).fileName().toStdString();
  std::vector<Formats::Problem> problems;
  if (result)
    std::tie(shown, problems) = JoinReports(*result.value);
  if (!result && finished)
    ShowProblem(result.problem);
  else if (!result)
    Notice(QString::fromStdString(result.problem.text));
  else if (problems.empty())
    Notice(Label("$$$/Vidra/Captivo/Notice/Exported={1} was written", {shown}));
  else
    ShowProblems(
        this, Label("$$$/Vidra/Captivo/Problems/ExportTitle=Not Everything Could Be Written"),
        Label("$$$/Vidra/Captivo/Problems/ExportSummary={1} was written. This has no place in such a file:", {shown}),
        problems);
}

// --- Files from outside

bool MainWindow::AcceptsDrop(const QMimeData* dragged) const {
  if (mBusy || !dragged->hasUrls())
    return false;
  const QList<QUrl> urls = dragged->urls();
  return std::all_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
}

// The clip whose file has the captions' name, else the selected one, else the newest.
MainWindow::Clip MainWindow::FindClipFor(const fs::path& captions) const {
  const InterfaceRef<BE::Project> project = Session::Instance().GetProject();
  const auto clips = project ? project->GetClips() : std::vector<Clip>();
  for (const Clip& clip : clips)
    if (captions.stem() == clip->GetMediaPath().stem())
      return clip;
  if (const Clip selected = Session::Instance().GetSelectedClip())
    return selected;
  return clips.empty() ? nullptr : clips.back();
}

// A project first, then media, then the captions that go with them.
void MainWindow::OpenFiles(const std::vector<fs::path>& files, bool readOnly) {
  std::map<FileKind, std::vector<fs::path>> byKind;
  for (const fs::path& path : files)
    byKind[FindKind(path)].push_back(path);
  if (!byKind[FileKind::Project].empty())
    OpenProject(byKind[FileKind::Project].back(), readOnly);
  if (!Session::Instance().GetProject())
    NewProject();
  // Said once, however many files there are.
  const InterfaceRef<BE::Project> project = Session::Instance().GetProject();
  const bool addsSomething = !byKind[FileKind::Media].empty() || !byKind[FileKind::Captions].empty();
  if (addsSomething && project && project->IsReadOnly()) {
    ShowProblem(DescribeReadOnly(*project));
    return;
  }

  Clip shown;
  for (const fs::path& path : byKind[FileKind::Media])
    if (const Clip clip = ImportMedia(path))
      shown = clip;
  if (shown)
    ShowClip(shown);
  for (const fs::path& path : byKind[FileKind::Captions]) {
    if (const Clip clip = FindClipFor(path))
      ImportCaptions(clip, path, GetLastImportFormat());
    else
      ShowProblem(
          {Text("$$$/Vidra/Captivo/Error/CaptionsWithoutClip={1} cannot come in yet: captions belong to a clip. Import "
                "the media file first.",
                {path.filename().string()})});
  }
}

// --- Streams

MainWindow::Stream MainWindow::GetCurrentStream() const {
  if (const Stream stream = mBin->GetCurrentStream())
    return stream;
  return mStreamOnShow->Get();
}

void MainWindow::ShowClip(const Clip& clip) {
  mBin->RefreshNow();
  mBin->SetCurrentClip(clip);
  OpenClip(clip, nullptr);
}

void MainWindow::NewStream(zebcaptioning::StreamFormat format) {
  Present(Session::Instance().NewStream(Session::Instance().GetSelectedClip(), format));
}

void MainWindow::DuplicateStream(zebcaptioning::StreamFormat format) {
  Present(Session::Instance().DuplicateStream(GetCurrentStream(), format));
}

void MainWindow::Present(const Result<Stream>& stream) {
  if (!stream) {
    ShowProblem(stream.problem);
    return;
  }
  mBin->RefreshNow();
  mBin->SetCurrentStream(*stream.value);
  OpenClip((*stream.value)->GetMasterClip(), *stream.value);
}

void MainWindow::DeleteStream() {
  if (!MayChange())
    return;
  if (const Stream stream = GetCurrentStream())
    Session::Instance().DeleteStream(stream);
  mBin->RefreshNow();
  UpdateMenus();
}

void MainWindow::RemoveClip() {
  if (!MayChange())
    return;
  if (const Clip clip = mBin->GetCurrentClip())
    Session::Instance().RemoveClip(clip);
  mBin->RefreshNow();
  UpdateMenus();
}

} // namespace App
