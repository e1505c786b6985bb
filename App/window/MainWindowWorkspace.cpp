#include "App/window/MainWindow.h"

#include <QAction>
#include <QDockWidget>
#include <QLabel>
#include <QStatusBar>
#include <QTimer>

#include <algorithm>

#include "App/session/Streams.h"
#include "App/window/Bin.h"
#include "App/window/DockFrame.h"
#include "App/window/Labels.h"
#include "App/window/MonitorDock.h"
#include "App/window/Settings.h"
#include "App/window/TimelineDock.h"

namespace App {

namespace {

constexpr int kBinWidth = 360;
constexpr int kTimelineHeight = 264;
constexpr int kMonitorHeight = 290;
// Of the docks that there are: a layout of others is not taken up.
constexpr int kLayoutVersion = 2;

} // namespace

// --- How docks and panels lie

// The docks are told of before they exist: the panel's is made when it is first opened.
void MainWindow::RestoreLayout(bool asLeft) {
  OpenPanel();
  mFirstLayout = saveState(kLayoutVersion);
  for (const auto& [tabID, frame] : mFrames)
    frame->SetStacked(asLeft && settings::ArePanelsStacked());
  if (asLeft && restoreGeometry(settings::GetGeometry()) && restoreState(settings::GetLayout(), kLayoutVersion))
    return;
  // Docks take their widths only once the window has its own.
  QTimer::singleShot(0, this, [this] { SizeDocks(); });
}

void MainWindow::SizeDocks() {
  QList<QDockWidget*> docks{findChild<QDockWidget*>(QStringLiteral("bin"))};
  QList<int> widths{kBinWidth};
  QList<QDockWidget*> rows{mTimeline};
  QList<int> heights{kTimelineHeight};
  for (const auto& [tabID, frame] : mFrames) {
    docks.push_back(frame);
    widths.push_back(std::max(1, width() - kBinWidth));
    rows.push_back(frame);
    heights.push_back(std::max(1, height() - kTimelineHeight));
  }
  resizeDocks(docks, widths, Qt::Horizontal);
  resizeDocks(rows, heights, Qt::Vertical);
  resizeDocks({docks.front(), mMonitor}, {std::max(1, height() - kMonitorHeight), kMonitorHeight}, Qt::Vertical);
}

// The docks are resized before the window hears of its own new size: what they take then is none of a person's doing.
void MainWindow::NoteDockSizes() {
  const QDockWidget* const bin = findChild<QDockWidget*>(QStringLiteral("bin"));
  if (size() != mSizeOfNote || !bin)
    return;
  mBinWidth = bin->width();
  mTimelineHeight = mTimeline->height();
  mMonitorHeight = mMonitor->height();
}

void MainWindow::KeepDockSizes() {
  QDockWidget* const bin = findChild<QDockWidget*>(QStringLiteral("bin"));
  if (mBinWidth <= 0 || !bin || mFrames.empty())
    return;
  QDockWidget* const panel = mFrames.begin()->second;
  const int width = bin->width() + panel->width();
  resizeDocks({bin, panel}, {mBinWidth, std::max(1, width - mBinWidth)}, Qt::Horizontal);
  const int height = mTimeline->height() + panel->height();
  resizeDocks({mTimeline, panel}, {mTimelineHeight, std::max(1, height - mTimelineHeight)}, Qt::Vertical);
  const int column = bin->height() + mMonitor->height();
  resizeDocks({bin, mMonitor}, {std::max(1, column - mMonitorHeight), mMonitorHeight}, Qt::Vertical);
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  KeepDockSizes();
  mSizeOfNote = size();
}

void MainWindow::StoreLayout() {
  settings::SetWindow(saveGeometry(), saveState(kLayoutVersion));
}

void MainWindow::ResetWorkspace() {
  SetPanelsStacked(false);
  OpenPanel();
  restoreState(mFirstLayout, kLayoutVersion);
  QTimer::singleShot(0, this, [this] { SizeDocks(); });
  StoreLayout();
}

void MainWindow::SetPanelsStacked(bool stacked) {
  settings::SetPanelsStacked(stacked);
  for (const auto& [tabID, frame] : mFrames)
    frame->SetStacked(stacked);
}

// --- Projects that may not be changed

void MainWindow::MakeReadOnlySign() {
  mReadOnlySign = new QLabel(Label("$$$/Vidra/Captivo/Status/ReadOnly=Read-only"));
  mReadOnlySign->setObjectName(QStringLiteral("read-only"));
  mReadOnlySign->hide();
  statusBar()->addPermanentWidget(mReadOnlySign);
}

void MainWindow::UpdateReadOnly() {
  const InterfaceRef<BE::Project> project = Session::Instance().GetProject();
  const bool readOnly = project && project->IsReadOnly();
  if (readOnly)
    mReadOnlySign->setToolTip(QString::fromStdString(DescribeReadOnly(*project).text));
  const bool isNews = readOnly && mReadOnlySign->isHidden();
  mReadOnlySign->setVisible(readOnly);
  if (isNews)
    Notice(mReadOnlySign->toolTip());
  UpdateTitle();
  UpdateMenus();
}

void MainWindow::SetReadOnly(bool readOnly) {
  const InterfaceRef<BE::Project> before = Session::Instance().GetProject();
  if (const auto problem = Session::Instance().SetReadOnly(readOnly))
    ShowProblem(*problem);
  if (Session::Instance().GetProject() != before)
    ShowProject();
  // The entry of the menu has switched by itself already.
  UpdateReadOnly();
}

bool MainWindow::MayChange() {
  const InterfaceRef<BE::Project> project = Session::Instance().GetProject();
  if (!project || !project->IsReadOnly())
    return true;
  Notice(QString::fromStdString(DescribeReadOnly(*project).text));
  return false;
}

} // namespace App
