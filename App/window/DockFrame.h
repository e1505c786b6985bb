#pragma once

#include <QDockWidget>

#include "UIF/Workspace.h"

class QLabel;

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
  // Stands in the middle of a panel that has nothing to show; empty for none. Clicks go through it.
  void SetHint(const QString& text);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  UIF::UString mTabID;
  QWidget* mContainer;
  QLabel* mHint;
};

} // namespace App
