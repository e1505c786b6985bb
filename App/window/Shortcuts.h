#pragma once

class QAction;
class QMainWindow;
class QWidget;

namespace App {

// The program's own commands, in the shortcut context "global" beside those of the host.
enum class ProgramCommand : int {
  New = 57600,
  Open = 57601,
  SaveAs = 57604,
  Quit = 57665,
  Keyboard = 57670,
  ImportMedia = 34000,
  ImportCaptions = 34001,
  ExportCaptions = 34002,
  EditShortcuts = 34003,
};

namespace shortcuts {

// Declares the program's commands with their default keys, and takes over what the user has chosen instead.
void Load();

// From now on the action goes by the keys of the command, in the window that it is in.
void Bind(QAction& action, int command);
inline void Bind(QAction& action, ProgramCommand command) {
  Bind(action, static_cast<int>(command));
}
// Gives every bound action in the window the keys that hold now, and each key to one action only.
void Apply(QMainWindow& window);

// The window in which people see the shortcuts and change them. What was changed is stored and true is answered; false
// if it was left without.
bool Edit(QWidget* parent);

} // namespace shortcuts

} // namespace App
