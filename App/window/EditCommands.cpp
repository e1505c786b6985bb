#include "App/window/EditCommands.h"

#include <QLineEdit>

#include "UIF/CommandRouter.h"
#include "zebui/Toolkit.h"

namespace App {

namespace {

// A one-line field, such as the search box or a timecode being typed, edits itself.
QLineEdit* FindLineWithFocus() {
  return qobject_cast<QLineEdit*>(zebui::toolkit::GetFocusWidget());
}

bool IsEnabledIn(const QLineEdit& line, EditCommand command) {
  switch (command) {
  case EditCommand::Copy:
    return line.hasSelectedText();
  case EditCommand::Cut:
  case EditCommand::Delete:
    return line.hasSelectedText() && !line.isReadOnly();
  case EditCommand::Paste:
    return !line.isReadOnly();
  case EditCommand::SelectAll:
    return !line.text().isEmpty();
  }
  return false;
}

void ObeyIn(QLineEdit& line, EditCommand command) {
  switch (command) {
  case EditCommand::Copy:
    return line.copy();
  case EditCommand::Cut:
    return line.cut();
  case EditCommand::Delete:
    return line.del();
  case EditCommand::Paste:
    return line.paste();
  case EditCommand::SelectAll:
    return line.selectAll();
  }
}

bool IsEnabled(int command) {
  bool enabled = false;
  return UIF::FindStatus(command, enabled) && enabled;
}

} // namespace

bool IsCaptionCommandEnabled(CaptionCommand command) {
  return IsEnabled(static_cast<int>(command));
}

void ObeyCaptionCommand(CaptionCommand command) {
  UIF::RouteCommand(static_cast<int>(command));
}

bool IsEditCommandEnabled(EditCommand command) {
  if (const QLineEdit* line = FindLineWithFocus())
    return IsEnabledIn(*line, command);
  return IsEnabled(static_cast<int>(command));
}

void ObeyEditCommand(EditCommand command) {
  if (QLineEdit* line = FindLineWithFocus())
    ObeyIn(*line, command);
  else
    UIF::RouteCommand(static_cast<int>(command));
}

} // namespace App
