#pragma once

#include <QDockWidget>

#include "UIF/Workspace.h"

namespace App {

// A dock of the main window that holds one panel of the host's.
class DockFrame : public QDockWidget, public UIF::WorkspaceFrame {
 public:
  DockFrame(const UIF::UString& tabID, QWidget* parent);
  ~DockFrame() override;

  void* GetContainer() override;
  void SetTitle(const UIF::UString& title) override;
  void SetShown(bool shown) override;
  bool IsShown() const override;
  void BringToFront() override;
  bool IsFrontMost() const override;
  void StackedDimensionsChanged() override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  UIF::UString mTabID;
  QWidget* mContainer;
};

} // namespace App
