#pragma once

#include "HSL/HostCommands.h"

namespace App {

// Commands of the Edit menu, by the numbers under which the host routes them to whoever is on duty.
enum class EditCommand : int {
  Delete = HSL::kCommand_Delete,
  Copy = HSL::kCommand_Copy,
  Cut = HSL::kCommand_Cut,
  Paste = HSL::kCommand_Paste,
  SelectAll = HSL::kCommand_SelectAllCaptions,
};

// Commands of the Captions menu.
enum class CaptionCommand : int {
  Add = HSL::kCommand_AddCaption,
  Delete = HSL::kCommand_DeleteCaptions,
  Next = HSL::kCommand_NextCaption,
  Previous = HSL::kCommand_PreviousCaption,
  First = HSL::kCommand_FirstCaption,
  Last = HSL::kCommand_LastCaption,
  AlignLeft = HSL::kCommand_AlignLeft,
  AlignCenter = HSL::kCommand_AlignCenter,
  AlignRight = HSL::kCommand_AlignRight,
  Italic = HSL::kCommand_Italic,
  Underline = HSL::kCommand_Underline,
  MusicNote = HSL::kCommand_MusicNote,
  Bold = HSL::kCommand_Bold,
  TextColor = HSL::kCommand_TextColor,
  BackgroundColor = HSL::kCommand_BackgroundColor,
  EdgeColor = HSL::kCommand_EdgeColor,
  SelectAll = HSL::kCommand_SelectAllCaptions,
  ImportSettings = HSL::kCommand_ImportSettings,
  ExportSettings = HSL::kCommand_ExportSettings,
};

// To the panel on duty.
bool IsCaptionCommandEnabled(CaptionCommand command);
void ObeyCaptionCommand(CaptionCommand command);

// To the one-line field that has the focus, else to the panel on duty.
bool IsEditCommandEnabled(EditCommand command);
void ObeyEditCommand(EditCommand command);

} // namespace App
