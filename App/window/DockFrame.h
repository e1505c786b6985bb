#pragma once

#include <QDockWidget>

#include "UIF/Workspace.h"

class QLabel;
class QScrollArea;
class QTimer;

namespace App {

// A dock of the main window that holds one panel of the host's. Stacked, the dock is a column that scrolls, and the
// panel in it is as tall as all that it shows.
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
  // What the user wants; a panel that grows beyond what a widget can measure stands as if it were not stacked until it
  // has shrunk again.
  void SetStacked(bool stacked);
  bool IsStacked() const { return mStacked; }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void Arrange();
  void Reveal(QWidget* focus);

  UIF::UString mTabID;
  QScrollArea* mColumn;
  QWidget* mContainer;
  QLabel* mHint;
  QTimer* mArrangeSoon;
  bool mStacked = false;
};

} // namespace App
