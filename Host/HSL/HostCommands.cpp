#include "HSL/HostCommands.h"

#include <algorithm>
#include <initializer_list>

#include "BE/Project.h"
#include "HSL/Module.h"
#include "MZ/Actions.h"
#include "UIF/CommandRouter.h"
#include "UIF/PanelGestures.h"
#include "UIF/ShortcutManager.h"
#include "UIF/TabView.h"
#include "UIF/Workspace.h"
#include "zebcore/Localizer.h"

namespace HSL {

using UIF::MenuUtils::MenuItem;

namespace {

constexpr const char* kContextMenu = "Captivo_Context_Menu";
constexpr const char* kWingMenu = "Captivo_Wing_Menu";
constexpr int kSeparator = 0;

// The tool tips of the panel's buttons, by which a screen reader finds them too.
constexpr const char* kAddButton = "$$$/Vidra/Handlers/Captions/AddCaptionTooltip=Add Caption";
constexpr const char* kDeleteButton = "$$$/Vidra/Handlers/Captions/DeleteCaptionTooltip=Delete Caption";

// As views receive them.
constexpr short kKey_End = -35;
constexpr short kKey_Home = -36;
constexpr short kKey_Up = -38;
constexpr short kKey_Down = -40;

struct CommandEntry {
  int number;
  const char* name;
  const char* text;
  std::initializer_list<const char*> keys;
};

// The panel declares these itself, by the same names and numbers, without texts and keys.
const CommandEntry kPanelCommands[] = {
    {kCommand_AlignLeft, "cmd.captions.justify.left", "$$$/Vidra/HSL/Command/AlignLeft=Align Left", {"Ctrl+Shift+L"}},
    {kCommand_AlignCenter,
     "cmd.captions.justify.center",
     "$$$/Vidra/HSL/Command/AlignCenter=Align Center",
     {"Ctrl+Shift+E"}},
    {kCommand_AlignRight,
     "cmd.captions.justify.right",
     "$$$/Vidra/HSL/Command/AlignRight=Align Right",
     {"Ctrl+Shift+R"}},
    {kCommand_Italic, "cmd.captions.italicize", "$$$/Vidra/HSL/Command/Italic=Italic", {"Ctrl+I"}},
    {kCommand_Underline, "cmd.captions.underline", "$$$/Vidra/HSL/Command/Underline=Underline", {"Ctrl+U"}},
    {kCommand_MusicNote,
     "cmd.captions.musicnote",
     "$$$/Vidra/HSL/Command/MusicNote=Insert Music Note",
     {"Ctrl+Shift+M"}},
    {kCommand_BackgroundColor,
     "cmd.captions.background.color",
     "$$$/Vidra/HSL/Command/BackgroundColor=Edit Background Color",
     {"Ctrl+Shift+B"}},
    {kCommand_TextColor,
     "cmd.captions.text.color",
     "$$$/Vidra/HSL/Command/TextColor=Edit Text Color",
     {"Ctrl+Shift+T"}},
    {kCommand_Bold, "cmd.captions.bold", "$$$/Vidra/HSL/Command/Bold=Bold", {"Ctrl+B"}},
    {kCommand_EdgeColor,
     "cmd.captions.edge.color",
     "$$$/Vidra/HSL/Command/EdgeColor=Edit Edge Color",
     {"Ctrl+Shift+G"}},
    {kCommand_SelectAllCaptions,
     "cmd.captions.selectall",
     "$$$/Vidra/HSL/Command/SelectAll=Select All Captions",
     {"Ctrl+A"}},
    {kCommand_ImportSettings,
     "cmd.captions.importsettings",
     "$$$/Vidra/HSL/Command/ImportSettings=Import Settings…",
     {"Ctrl+Alt+I"}},
    {kCommand_ExportSettings,
     "cmd.captions.exportsettings",
     "$$$/Vidra/HSL/Command/ExportSettings=Export Settings…",
     {"Ctrl+Alt+E"}},
};

// Delete has no keys: the key means captions in the list and letters in a text, and goes to whichever has the focus.
const CommandEntry kGlobalCommands[] = {
    {kCommand_Undo, "cmd.edit.undo", "$$$/Vidra/HSL/Command/Undo=Undo", {"Ctrl+Z"}},
    {kCommand_Redo, "cmd.edit.redo", "$$$/Vidra/HSL/Command/Redo=Redo", {"Ctrl+Shift+Z", "Ctrl+Y"}},
    {kCommand_Cut, "cmd.edit.cut", "$$$/Vidra/HSL/Command/Cut=Cut", {"Ctrl+X", "Shift+Del"}},
    {kCommand_Copy, "cmd.edit.copy", "$$$/Vidra/HSL/Command/Copy=Copy", {"Ctrl+C", "Ctrl+Ins"}},
    {kCommand_Paste, "cmd.edit.paste", "$$$/Vidra/HSL/Command/Paste=Paste", {"Ctrl+V", "Shift+Ins"}},
    {kCommand_Delete, "cmd.edit.delete", "$$$/Vidra/HSL/Command/Delete=Delete Text", {}},
    {kCommand_AddCaption, "cmd.caption.add", "$$$/Vidra/HSL/Command/AddCaption=Add Caption", {"Ctrl+Return"}},
    {kCommand_DeleteCaptions,
     "cmd.caption.delete",
     "$$$/Vidra/HSL/Command/DeleteCaptions=Delete Captions",
     {"Ctrl+Shift+Backspace"}},
    {kCommand_NextCaption, "cmd.caption.next", "$$$/Vidra/HSL/Command/NextCaption=Next Caption", {"Alt+Down"}},
    {kCommand_PreviousCaption,
     "cmd.caption.previous",
     "$$$/Vidra/HSL/Command/PreviousCaption=Previous Caption",
     {"Alt+Up"}},
    {kCommand_FirstCaption, "cmd.caption.first", "$$$/Vidra/HSL/Command/FirstCaption=First Caption", {"Alt+Home"}},
    {kCommand_LastCaption, "cmd.caption.last", "$$$/Vidra/HSL/Command/LastCaption=Last Caption", {"Alt+End"}},
    {kCommand_FindBox, "cmd.find.box", "$$$/Vidra/HSL/Command/FindBox=Find", {"Ctrl+F"}},
    {kCommand_NextPanel, "cmd.panel.next", "$$$/Vidra/HSL/Command/NextPanel=Next Panel", {"F6"}},
    {kCommand_PreviousPanel, "cmd.panel.previous", "$$$/Vidra/HSL/Command/PreviousPanel=Previous Panel", {"Shift+F6"}},
};

void GiveDefaults(const CommandEntry& entry) {
  UIF::ShortcutManager::Instance()->SetCommandDefaults(entry.name, entry.text, {entry.keys.begin(), entry.keys.end()});
}

void DeclareCommands() {
  for (const CommandEntry& entry : kPanelCommands)
    GiveDefaults(entry);
  UIF::ShortcutManager::Instance()->SetContextText("captions",
                                                   "$$$/Vidra/Handlers/Captions/CaptionsPanel=Captions Panel");
  UIF::CommandContext& global = *UIF::ShortcutManager::Instance()->GetContext("global");
  for (const CommandEntry& entry : kGlobalCommands) {
    GiveDefaults(entry);
    global.DeclareCommand(entry.name, entry.number, 0, "", zebcore::utility::ImmutableString(), false);
  }
}

const CommandEntry* FindEntry(int number) {
  for (const CommandEntry& entry : kPanelCommands) {
    if (entry.number == number)
      return &entry;
  }
  const auto* const found = std::ranges::find(kGlobalCommands, number, &CommandEntry::number);
  return found == std::end(kGlobalCommands) ? nullptr : found;
}

std::vector<MenuItem> MakeMenu(std::initializer_list<int> commands) {
  std::vector<MenuItem> items;
  for (const int command : commands) {
    MenuItem item;
    item.command = command;
    item.separator = command == kSeparator;
    if (const CommandEntry* entry = FindEntry(command))
      item.text = UIF::ShortcutManager::Instance()->GetCommandText(entry->name);
    items.push_back(std::move(item));
  }
  return items;
}

UIF::UString Localize(const char* key) {
  return zebcore::config::Localizer::Get().Localize(key);
}

BE::InterfaceRef<BE::Project> ActiveProject() {
  return MZ::GetActiveProject().Query<BE::Project>();
}

// The one on duty, else the captions panel if it is open: a menu of the window takes the focus from it for a moment.
UIF::TabView* FindPanel() {
  if (UIF::TabView* view = UIF::GetTabViewOnDuty())
    return view;
  const UIF::Workspace* workspace = UIF::Workspace::Instance();
  return workspace ? workspace->FindTabView(kCaptionsHandlerID) : nullptr;
}

const char* ButtonOf(int command) {
  switch (command) {
  case kCommand_AddCaption:
    return kAddButton;
  case kCommand_DeleteCaptions:
    return kDeleteButton;
  default:
    return nullptr;
  }
}

// 0 for a command that is no key.
short KeyOf(int command) {
  switch (command) {
  case kCommand_NextCaption:
    return kKey_Down;
  case kCommand_PreviousCaption:
    return kKey_Up;
  case kCommand_FirstCaption:
    return kKey_Home;
  case kCommand_LastCaption:
    return kKey_End;
  default:
    return 0;
  }
}

} // namespace

HostCommands::HostCommands() : Commander(nullptr) {
  DeclareCommands();
  UIF::MenuUtils::SetMenuMaker(kContextMenu, &MakeCaptionsContextMenu);
  UIF::MenuUtils::SetMenuMaker(kWingMenu, &MakeCaptionsWingMenu);
}

HostCommands& HostCommands::Install() {
  // Never destroyed: it is the end of every chain that still names it.
  static auto* const commands = new HostCommands;
  return *commands;
}

bool HostCommands::FindCommandStatus(int id, bool& enabled, bool& marked, UIF::MenuMark& mark, UIF::UString& name) {
  if (id == kCommand_Undo || id == kCommand_Redo) {
    const auto project = ActiveProject();
    enabled = project && (id == kCommand_Undo ? project->CanUndo() : project->CanRedo());
    return true;
  }
  const UIF::TabView* const panel = FindPanel();
  if (const char* button = ButtonOf(id)) {
    enabled = panel && UIF::CanPressButton(*panel, Localize(button));
    return true;
  }
  if (KeyOf(id) != 0) {
    enabled = panel && UIF::CanPressKey(*panel);
    return true;
  }
  return Commander::FindCommandStatus(id, enabled, marked, mark, name);
}

bool HostCommands::ObeyCommand(const UIF::Command& command) {
  const int id = command.GetID();
  if (id == kCommand_Undo || id == kCommand_Redo) {
    const auto project = ActiveProject();
    return project && (id == kCommand_Undo ? project->Undo() : project->Redo());
  }
  const UIF::TabView* const panel = FindPanel();
  if (const char* button = ButtonOf(id))
    return panel && UIF::PressButton(*panel, Localize(button));
  if (const short key = KeyOf(id))
    return panel && UIF::PressKey(*panel, key);
  return Commander::ObeyCommand(command);
}

// What is done to the text first, then to captions, then to how they look.
std::vector<MenuItem> MakeCaptionsContextMenu() {
  return MakeMenu({kCommand_Cut,
                   kCommand_Copy,
                   kCommand_Paste,
                   kCommand_Delete,
                   kCommand_MusicNote,
                   kSeparator,
                   kCommand_AddCaption,
                   kCommand_DeleteCaptions,
                   kSeparator,
                   kCommand_Bold,
                   kCommand_Italic,
                   kCommand_Underline,
                   kSeparator,
                   kCommand_AlignLeft,
                   kCommand_AlignCenter,
                   kCommand_AlignRight,
                   kSeparator,
                   kCommand_TextColor,
                   kCommand_BackgroundColor,
                   kCommand_EdgeColor,
                   kSeparator,
                   kCommand_NextCaption,
                   kCommand_PreviousCaption,
                   kCommand_FirstCaption,
                   kCommand_LastCaption,
                   kSeparator,
                   kCommand_SelectAllCaptions});
}

std::vector<MenuItem> MakeCaptionsWingMenu() {
  return MakeMenu({kCommand_AddCaption, kCommand_DeleteCaptions, kCommand_SelectAllCaptions, kSeparator,
                   kCommand_NextCaption, kCommand_PreviousCaption, kSeparator, kCommand_ImportSettings,
                   kCommand_ExportSettings, kSeparator, kCommand_Undo, kCommand_Redo});
}

} // namespace HSL
