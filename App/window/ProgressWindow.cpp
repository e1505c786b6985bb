#include "App/window/ProgressWindow.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

#include "App/window/Labels.h"
#include "zebui/NodeManager.h"

namespace App {

namespace {
constexpr qint64 kLongestWaitToBeShown = 100; // milliseconds
constexpr int kSteps = 1000;
constexpr int kWidth = 380;
} // namespace

ProgressWindow::ProgressWindow(QWidget* parent, qint64 shownAfterMilliseconds)
    : mParent(parent), mShownAfter(shownAfterMilliseconds) {
  mSince.start();
}

ProgressWindow::~ProgressWindow() {
  if (mDialog)
    zebui::ui::UI_NodeManager::Get(true)->PopModalWindow();
}

Progress ProgressWindow::GetProgress() {
  return [this](double fraction, const std::string& what) { return Report(fraction, what); };
}

bool ProgressWindow::Report(double fraction, const std::string& what) {
  const bool newStage = what != mStage && !mStage.empty();
  mStage = what;
  if (!mDialog && (newStage || mSince.elapsed() >= mShownAfter))
    ShowWindow();
  if (!mDialog) {
    // Nothing that the user does may start something else in the meantime; keys and clicks wait.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return !mStopped;
  }
  mWhat->setText(QString::fromStdString(what));
  mBar->setValue(static_cast<int>(fraction * kSteps));
  if (newStage)
    PaintNow();
  else
    QCoreApplication::processEvents();
  return !mStopped;
}

// The next stage may leave no time for painting: a window that has just been opened is waited for.
void ProgressWindow::PaintNow() {
  QElapsedTimer since;
  since.start();
  do {
    QCoreApplication::processEvents();
  } while (!mDialog->windowHandle()->isExposed() && since.elapsed() < kLongestWaitToBeShown);
  mDialog->repaint();
  QCoreApplication::processEvents();
}

void ProgressWindow::ShowWindow() {
  mDialog = std::make_unique<QDialog>(mParent);
  mDialog->setWindowTitle(Label("$$$/Vidra/Captivo/Progress/Title=Captivo"));
  mDialog->setWindowModality(Qt::ApplicationModal);
  auto* layout = new QVBoxLayout(mDialog.get());
  mWhat = new QLabel;
  mBar = new QProgressBar;
  mBar->setRange(0, kSteps);
  mBar->setTextVisible(false);
  mBar->setMinimumWidth(kWidth);
  auto* buttons = new QDialogButtonBox;
  QPushButton* stop =
      buttons->addButton(Label("$$$/Vidra/Captivo/Progress/Cancel=Cancel"), QDialogButtonBox::RejectRole);
  layout->addWidget(mWhat);
  layout->addWidget(mBar);
  layout->addWidget(buttons);
  QObject::connect(mDialog.get(), &QDialog::rejected, [this] { mStopped = true; });
  QObject::connect(stop, &QPushButton::clicked, mDialog.get(), &QDialog::reject);
  zebui::ui::UI_NodeManager::Get(true)->PushModalWindow();
  mDialog->show();
}

} // namespace App
