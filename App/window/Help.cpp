#include "App/window/Help.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeySequence>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>
#include <vector>

#include "App/window/Icons.h"
#include "App/window/Labels.h"

namespace App {

namespace {

using Keys = std::vector<std::pair<QString, QString>>;

QString Native(const QKeySequence& keys) {
  return keys.toString(QKeySequence::NativeText);
}

Keys ProgramKeys() {
  return {
      {Native(QKeySequence::New), Label("$$$/Vidra/Captivo/Keyboard/New=New project")},
      {Native(QKeySequence::Open), Label("$$$/Vidra/Captivo/Keyboard/Open=Open a project")},
      {Native(Qt::CTRL | Qt::Key_M), Label("$$$/Vidra/Captivo/Keyboard/ImportMedia=Import media")},
      {Native(Qt::CTRL | Qt::SHIFT | Qt::Key_I), Label("$$$/Vidra/Captivo/Keyboard/ImportCaptions=Import captions")},
      {Native(Qt::CTRL | Qt::Key_E), Label("$$$/Vidra/Captivo/Keyboard/ExportCaptions=Export captions")},
      {Native(Qt::CTRL | Qt::Key_Z), Label("$$$/Vidra/Captivo/Keyboard/Undo=Undo, also while typing")},
      {Native(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), Label("$$$/Vidra/Captivo/Keyboard/Redo=Redo, also while typing")},
  };
}

Keys CaptionKeys() {
  return {
      {Label("$$$/Vidra/Captivo/Keyboard/UpDown=Up, Down"),
       Label("$$$/Vidra/Captivo/Keyboard/MoveSelection=Caption above, caption below")},
      {Label("$$$/Vidra/Captivo/Keyboard/HomeEnd=Home, End"),
       Label("$$$/Vidra/Captivo/Keyboard/FirstLast=First caption, last caption")},
      {Label("$$$/Vidra/Captivo/Keyboard/ClickShift=Shift and click"),
       Label("$$$/Vidra/Captivo/Keyboard/Extend=Extend the selection")},
      {Label("$$$/Vidra/Captivo/Keyboard/ClickControl=Ctrl and click"),
       Label("$$$/Vidra/Captivo/Keyboard/Toggle=Add to the selection, or take from it")},
      {Native(QKeySequence::SelectAll), Label("$$$/Vidra/Captivo/Keyboard/SelectAll=Select all")},
      {Native(QKeySequence::Delete), Label("$$$/Vidra/Captivo/Keyboard/Delete=Delete the selected captions")},
      {Native(QKeySequence::Bold), Label("$$$/Vidra/Captivo/Keyboard/Bold=Bold")},
      {Native(QKeySequence::Italic), Label("$$$/Vidra/Captivo/Keyboard/Italic=Italic")},
      {Native(QKeySequence::Underline), Label("$$$/Vidra/Captivo/Keyboard/Underline=Underline")},
      {QStringList{Native(Qt::CTRL | Qt::SHIFT | Qt::Key_L), Native(Qt::CTRL | Qt::SHIFT | Qt::Key_E),
                   Native(Qt::CTRL | Qt::SHIFT | Qt::Key_R)}
           .join(QStringLiteral(", ")),
       Label("$$$/Vidra/Captivo/Keyboard/Align=Align left, in the centre, right")},
      {Native(Qt::CTRL | Qt::SHIFT | Qt::Key_M), Label("$$$/Vidra/Captivo/Keyboard/MusicNote=Insert a music note")},
      {Label("$$$/Vidra/Captivo/Keyboard/EscapeKey=Escape"),
       Label("$$$/Vidra/Captivo/Keyboard/Escape=Leave the text, or put a time back")},
  };
}

void AddKeys(QGridLayout& grid, const QString& title, const Keys& keys) {
  int row = grid.rowCount();
  auto* heading = new QLabel(QStringLiteral("<b>%1</b>").arg(title.toHtmlEscaped()));
  heading->setContentsMargins(0, row > 1 ? 10 : 0, 0, 2);
  grid.addWidget(heading, row++, 0, 1, 2);
  for (const auto& [key, meaning] : keys) {
    grid.addWidget(new QLabel(key), row, 0);
    grid.addWidget(new QLabel(meaning), row++, 1);
  }
}

} // namespace

void ShowAbout(QWidget* parent) {
  QMessageBox box(parent);
  box.setWindowTitle(Label("$$$/Vidra/Captivo/About/Title=About Captivo"));
  box.setIconPixmap(ProgramIcon().pixmap(64));
  box.setText(QStringLiteral("<h3>Captivo %1</h3>").arg(QCoreApplication::applicationVersion()));
  box.setInformativeText(
      Label("$$$/Vidra/Captivo/About/Text=Closed and open captions for picture and sound: opened as rows, retyped, "
            "retimed, and "
            "every step undoable. Everything you do is stored at once. Free software under the MIT licence."));
  QPushButton* close = box.addButton(Label("$$$/Vidra/Captivo/Button/Close=Close"), QMessageBox::AcceptRole);
  box.setDefaultButton(close);
  box.exec();
}

void ShowKeyboard(QWidget* parent) {
  QDialog dialog(parent);
  dialog.setWindowTitle(Label("$$$/Vidra/Captivo/Keyboard/Title=Keyboard"));
  auto* layout = new QVBoxLayout(&dialog);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(24);
  AddKeys(*grid, Label("$$$/Vidra/Captivo/Keyboard/Everywhere=Everywhere"), ProgramKeys());
  AddKeys(*grid, Label("$$$/Vidra/Captivo/Keyboard/Captions=In the captions"), CaptionKeys());
  layout->addLayout(grid);
  auto* buttons = new QDialogButtonBox;
  buttons->addButton(Label("$$$/Vidra/Captivo/Button/Close=Close"), QDialogButtonBox::AcceptRole);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  layout->addWidget(buttons);
  dialog.exec();
}

} // namespace App
