#include "UIF/ShortcutManager.h"

#include <algorithm>

#include "zebcore/Localizer.h"

namespace UIF {

void CommandContext::DeclareCommand(const std::string& name, int number, CommandKind kind, const std::string& decal,
                                    zebcore::utility::ImmutableString text, bool flag) {
  const bool known = std::ranges::any_of(mCommands, [&](const auto& command) { return command.number == number; });
  if (!known)
    mCommands.push_back({name, number, kind, decal, std::move(text), flag});
}

ShortcutManager::ShortcutManager() {
  AddContext("global", zebcore::config::Localizer::Get().Localize("$$$/Vidra/UIF/GlobalContext=Application"));
}

ShortcutManager* ShortcutManager::Instance() {
  static ShortcutManager manager;
  return &manager;
}

CommandContext* ShortcutManager::GetContext(const std::string& id) {
  const auto found = std::ranges::find_if(mContexts, [&](const auto& context) { return context->GetID() == id; });
  return found == mContexts.end() ? nullptr : found->get();
}

CommandContext& ShortcutManager::AddContext(const std::string& id, const UString& name) {
  if (CommandContext* known = GetContext(id))
    return *known;
  return *mContexts.emplace_back(std::make_unique<CommandContext>(id, name));
}

void ShortcutManager::RegisterCommandContext(const boost::function<void(ShortcutManager*)>& registrar) {
  if (registrar)
    registrar(this);
}

void ShortcutManager::AddWindowMenuID(const std::string& context, const UString& label, const std::string& menu) {
  std::erase_if(mWindowMenuIDs, [&](const WindowMenuID& known) { return known.menu == menu; });
  mWindowMenuIDs.push_back({context, label, menu});
}

} // namespace UIF
