#include "Captions/shell/CaptionsCommands.h"

#include "UIF/ShortcutManager.h"
#include "zebcore/Localizer.h"

namespace Captivo {

namespace {

struct CommandEntry {
  const char* name;
  int number;
};

constexpr CommandEntry kCommands[] = {
    {"cmd.captions.justify.left", kCommand_JustifyLeft},
    {"cmd.captions.justify.center", kCommand_JustifyCenter},
    {"cmd.captions.justify.right", kCommand_JustifyRight},
    {"cmd.captions.italicize", kCommand_Italicize},
    {"cmd.captions.underline", kCommand_Underline},
    {"cmd.captions.musicnote", kCommand_MusicNote},
    {"cmd.captions.background.color", kCommand_BackgroundColor},
    {"cmd.captions.text.color", kCommand_TextColor},
    {"cmd.captions.bold", kCommand_Bold},
    {"cmd.captions.edge.color", kCommand_EdgeColor},
    {"cmd.captions.selectall", kCommand_SelectAll},
    {"cmd.captions.importsettings", kCommand_ImportSettings},
    {"cmd.captions.exportsettings", kCommand_ExportSettings},
};

} // namespace

void RegisterCaptionsCommands(UIF::ShortcutManager* manager) {
  manager->GetContext("global");
  UIF::CommandContext& context = manager->AddContext(
      kShortcutContext,
      zebcore::config::Localizer::Get().Localize("$$$/Vidra/Handlers/Captions/CaptionsPanel=Captions Panel"));
  for (const CommandEntry& command : kCommands)
    context.DeclareCommand(command.name, command.number, 0, "", zebcore::utility::ImmutableString(), false);
}

} // namespace Captivo
