#pragma once

#include <QDialog>

#include <string>
#include <vector>

#include "UIF/ShortcutManager.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace App {

class KeyRecorder;

// All commands with their keys, by context. It changes the shortcut manager at once; whoever opened it puts the old
// keys back if it is left by Cancel.
class ShortcutsWindow : public QDialog {
 public:
  explicit ShortcutsWindow(QWidget* parent);
  // Modal for the whole program; true if the changes are to stay.
  bool Run();

 private:
  struct Row {
    std::string context;
    std::string command;
    QTreeWidgetItem* item;
  };

  void FillTree();
  void UpdateRows();
  void Filter(const QString& text);
  const Row* GetCurrent() const;
  void ShowCurrent();
  void ShowClashes();
  void Assign();
  QString Describe(const UIF::KeysList& keys) const;

  std::vector<Row> mRows;
  QLineEdit* mSearch;
  QTreeWidget* mTree;
  KeyRecorder* mRecorder;
  QPushButton* mAssign;
  QPushButton* mRemove;
  QPushButton* mReset;
  QLabel* mWarning;
};

} // namespace App
