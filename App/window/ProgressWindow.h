#pragma once

#include <QElapsedTimer>

#include <memory>
#include <string>

#include "App/Session.h"

class QDialog;
class QLabel;
class QProgressBar;
class QWidget;

namespace App {

// Keeps the window alive while something long is done, and after a moment shows how far it is, with a way to stop. What
// comes to a second stage is long, and is shown at once.
class ProgressWindow {
 public:
  static constexpr qint64 kShownAfterMilliseconds = 400;
  explicit ProgressWindow(QWidget* parent, qint64 shownAfterMilliseconds = kShownAfterMilliseconds);
  ~ProgressWindow();
  ProgressWindow(const ProgressWindow&) = delete;
  ProgressWindow& operator=(const ProgressWindow&) = delete;

  Progress GetProgress();
  bool WasStopped() const { return mStopped; }
  bool IsShown() const { return mDialog != nullptr; }

 private:
  bool Report(double fraction, const std::string& what);
  void ShowWindow();
  void PaintNow();

  QWidget* mParent;
  qint64 mShownAfter;
  QElapsedTimer mSince;
  std::string mStage;
  std::unique_ptr<QDialog> mDialog;
  QLabel* mWhat = nullptr;
  QProgressBar* mBar = nullptr;
  bool mStopped = false;
};

} // namespace App
