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
#include "UIF/ShortcutManager.h"

namespace App {

namespace {

using Keys = std::vector<std::pair<QString, QString>>;

QString Native(const QKeySequence& keys) {
  return keys.toString(QKeySequence::NativeText);
}

// Those that the command goes by now; a dash for none.
QString KeysOf(const char* command) {
  QStringList list;
  for (const UIF::Keys& keys : UIF::ShortcutManager::Instance()->GetKeys(command))
    list.append(Native(QKeySequence::fromString(QString::fromStdString(keys), QKeySequence::PortableText)));
  return list.isEmpty() ? QStringLiteral("–") : list.join(QStringLiteral(", "));
}

std::pair<QString, QString> CommandKeys(const char* command) {
  return {KeysOf(command), ToQString(UIF::ShortcutManager::Instance()->GetCommandText(command))};
}

Keys ProgramKeys() {
  return {
      {KeysOf("cmd.file.new"), Label("$$$/Vidra/Captivo/Keyboard/New=New project")},
      {KeysOf("cmd.file.open"), Label("$$$/Vidra/Captivo/Keyboard/Open=Open a project")},
      {KeysOf("cmd.file.import.media"), Label("$$$/Vidra/Captivo/Keyboard/ImportMedia=Import media")},
      {KeysOf("cmd.file.import.captions"), Label("$$$/Vidra/Captivo/Keyboard/ImportCaptions=Import captions")},
      {KeysOf("cmd.file.export.captions"), Label("$$$/Vidra/Captivo/Keyboard/ExportCaptions=Export captions")},
      {KeysOf("cmd.edit.undo"), Label("$$$/Vidra/Captivo/Keyboard/Undo=Undo, also while typing")},
      {KeysOf("cmd.edit.redo"), Label("$$$/Vidra/Captivo/Keyboard/Redo=Redo, also while typing")},
      CommandKeys("cmd.panel.next"),
      CommandKeys("cmd.panel.previous"),
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
      CommandKeys("cmd.find.box"),
      {KeysOf("cmd.captions.selectall"), Label("$$$/Vidra/Captivo/Keyboard/SelectAll=Select all")},
      {Native(QKeySequence::Delete), Label("$$$/Vidra/Captivo/Keyboard/Delete=Delete the selected captions")},
      {KeysOf("cmd.captions.bold"), Label("$$$/Vidra/Captivo/Keyboard/Bold=Bold")},
      {KeysOf("cmd.captions.italicize"), Label("$$$/Vidra/Captivo/Keyboard/Italic=Italic")},
      {KeysOf("cmd.captions.underline"), Label("$$$/Vidra/Captivo/Keyboard/Underline=Underline")},
      {QStringList{KeysOf("cmd.captions.justify.left"), KeysOf("cmd.captions.justify.center"),
                   KeysOf("cmd.captions.justify.right")}
           .join(QStringLiteral(", ")),
       Label("$$$/Vidra/Captivo/Keyboard/Align=Align left, in the centre, right")},
      {KeysOf("cmd.captions.musicnote"), Label("$$$/Vidra/Captivo/Keyboard/MusicNote=Insert a music note")},
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
