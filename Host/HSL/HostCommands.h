#pragma once

#include <vector>

#include "UIF/CommandHandler.h"
#include "UIF/MenuUtils.h"

namespace UIF {
class TabView;
}

namespace HSL {

// Commands that the host routes and panels know by number.
inline constexpr int kCommand_Delete = 57632;
inline constexpr int kCommand_Copy = 57634;
inline constexpr int kCommand_Cut = 57635;
inline constexpr int kCommand_Paste = 57637;
inline constexpr int kCommand_Undo = 57643;
inline constexpr int kCommand_Redo = 57644;
inline constexpr int kCommand_FindBox = 11311;
inline constexpr int kCommand_NextPanel = 11916;
inline constexpr int kCommand_PreviousPanel = 11917;
// Commands of the captions panel that menus offer.
inline constexpr int kCommand_AlignLeft = 32000;
inline constexpr int kCommand_AlignCenter = 32001;
inline constexpr int kCommand_AlignRight = 32002;
inline constexpr int kCommand_Italic = 32010;
inline constexpr int kCommand_Underline = 32011;
inline constexpr int kCommand_MusicNote = 32012;
inline constexpr int kCommand_BackgroundColor = 32013;
inline constexpr int kCommand_TextColor = 32014;
inline constexpr int kCommand_Bold = 32015;
inline constexpr int kCommand_EdgeColor = 32016;
inline constexpr int kCommand_SelectAllCaptions = 32020;
inline constexpr int kCommand_ImportSettings = 32030;
inline constexpr int kCommand_ExportSettings = 32031;
// The host's own, which it carries out by a button or a key of the panel.
inline constexpr int kCommand_AddCaption = 33000;
inline constexpr int kCommand_DeleteCaptions = 33001;
inline constexpr int kCommand_NextCaption = 33002;
inline constexpr int kCommand_PreviousCaption = 33003;
inline constexpr int kCommand_FirstCaption = 33004;
inline constexpr int kCommand_LastCaption = 33005;

// The end of every chain of command: undo and redo of the active project, and what the host does in a captions panel by
// its buttons and keys. It also declares the commands with their texts and default keys to the shortcut manager, and
// fills the panel's context and wing menus.
class HostCommands : public UIF::Application, public UIF::Commander {
 public:
  // Once for the process, before the first panel is made; again it changes nothing.
  static HostCommands& Install();

  UIF::Commander* GetCommander() override { return this; }
  bool FindCommandStatus(int id, bool& enabled, bool& marked, UIF::MenuMark& mark, UIF::UString& name) override;
  bool ObeyCommand(const UIF::Command& command) override;

 private:
  HostCommands();
};

// The entries of the two menus, in the language of the moment.
std::vector<UIF::MenuUtils::MenuItem> MakeCaptionsContextMenu();
std::vector<UIF::MenuUtils::MenuItem> MakeCaptionsWingMenu();

} // namespace HSL
