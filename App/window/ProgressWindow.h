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

// Keeps the window alive while something long is done, and after half a second shows how far it is, with a way to stop.
class ProgressWindow {
 public:
  explicit ProgressWindow(QWidget* parent);
  ~ProgressWindow();
  ProgressWindow(const ProgressWindow&) = delete;
  ProgressWindow& operator=(const ProgressWindow&) = delete;

  Progress GetProgress();
  bool WasStopped() const { return mStopped; }

 private:
  bool Report(double fraction, const std::string& what);
  void ShowWindow();

  QWidget* mParent;
  QElapsedTimer mSince;
  std::unique_ptr<QDialog> mDialog;
  QLabel* mWhat = nullptr;
  QProgressBar* mBar = nullptr;
  bool mStopped = false;
};

} // namespace App
