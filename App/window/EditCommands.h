#pragma once

namespace App {

// Commands of the Edit menu, by the numbers under which the host routes them to whoever is on duty.
enum class EditCommand : int {
  Delete = 57632,
  Copy = 57634,
  Cut = 57635,
  Paste = 57637,
  SelectAll = 32020,
};

// Commands of the Captions menu.
enum class CaptionCommand : int {
  AlignLeft = 32000,
  AlignCenter = 32001,
  AlignRight = 32002,
  Italic = 32010,
  Underline = 32011,
  MusicNote = 32012,
  Bold = 32015,
  SelectAll = 32020,
};

// To the panel on duty.
bool IsCaptionCommandEnabled(CaptionCommand command);
void ObeyCaptionCommand(CaptionCommand command);

// To the one-line field that has the focus, else to the panel on duty.
bool IsEditCommandEnabled(EditCommand command);
void ObeyEditCommand(EditCommand command);

} // namespace App
