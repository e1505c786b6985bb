#include "Drive/PanelWindow.h"

#include <QApplication>
#include <QPixmap>
#include <QWidget>

namespace Drive {

PanelWindow::PanelWindow() : mWindow(std::make_unique<QWidget>()), mContainer(new QWidget(mWindow.get())) {
  mWindow->setWindowTitle("Captivo");
  Resize(mWidth, mHeight);
  mWindow->show();
  Activate();
}

PanelWindow::~PanelWindow() = default;

void* PanelWindow::GetContainer() {
  return mContainer;
}

void PanelWindow::SetTitle(const UIF::UString& title) {
  mWindow->setWindowTitle(QString::fromUtf16(title.data(), static_cast<qsizetype>(title.size())));
}

void PanelWindow::SetShown(bool shown) {
  mShown = shown;
  mContainer->setVisible(shown);
}

void PanelWindow::Resize(int width, int height) {
  mWidth = width;
  mHeight = height;
  mWindow->resize(width + 2 * kMargin, height + 2 * kMargin);
  mContainer->setGeometry(kMargin, kMargin, width, height);
  // A hidden container would tell its size only once it is shown, and so lay out a view that was just made.
  mContainer->setAttribute(Qt::WA_PendingResizeEvent, false);
}

void PanelWindow::Activate() {
  mWindow->raise();
  mWindow->activateWindow();
  QApplication::setActiveWindow(mWindow.get());
}

bool PanelWindow::WritePicture(const std::string& path, bool wholeWindow) {
  QWidget* widget = wholeWindow ? mWindow.get() : mContainer;
  return widget->grab().save(QString::fromStdString(path), "PNG");
}

} // namespace Drive
