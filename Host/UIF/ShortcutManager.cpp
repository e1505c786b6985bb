#include "UIF/ShortcutManager.h"

#include <algorithm>

#include <QKeySequence>

#include "zebcore/Localizer.h"

namespace UIF {

namespace {

constexpr const char* kGlobalContext = "global";

KeysList Normalize(const KeysList& keys) {
  KeysList list;
  for (const Keys& one : keys) {
    Keys usable = NormalizeKeys(one);
    if (!usable.empty() && std::ranges::find(list, usable) == list.end())
      list.push_back(std::move(usable));
  }
  return list;
}

bool Contains(const KeysList& list, const Keys& keys) {
  return std::ranges::find(list, keys) != list.end();
}

} // namespace

void CommandContext::DeclareCommand(const std::string& name, int number, CommandKind kind, const std::string& decal,
                                    zebcore::utility::ImmutableString text, bool flag) {
  const bool known = std::ranges::any_of(mCommands, [&](const auto& command) { return command.number == number; });
  if (!known)
    mCommands.push_back({name, number, kind, decal, std::move(text), flag});
}

UString CommandContext::GetName() const {
  return mText.empty() ? mName : zebcore::config::Localizer::Get().Localize(mText);
}

ShortcutManager::ShortcutManager() {
  SetContextText(kGlobalContext, "$$$/Vidra/UIF/GlobalContext=Application");
  AddContext(kGlobalContext, {});
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
  CommandContext& context = *mContexts.emplace_back(std::make_unique<CommandContext>(id, name));
  if (const auto text = mContextTexts.find(id); text != mContextTexts.end())
    context.mText = text->second;
  return context;
}

void ShortcutManager::SetContextText(const std::string& id, const std::string& text) {
  mContextTexts[id] = text;
  if (CommandContext* known = GetContext(id))
    known->mText = text;
}

void ShortcutManager::RegisterCommandContext(const boost::function<void(ShortcutManager*)>& registrar) {
  if (registrar)
    registrar(this);
}

void ShortcutManager::AddWindowMenuID(const std::string& context, const UString& label, const std::string& menu) {
  std::erase_if(mWindowMenuIDs, [&](const WindowMenuID& known) { return known.menu == menu; });
  mWindowMenuIDs.push_back({context, label, menu});
}

void ShortcutManager::SetCommandDefaults(const std::string& name, const std::string& text, const KeysList& keys) {
  mDefaults[name] = {text, Normalize(keys)};
}

UString ShortcutManager::GetCommandText(const std::string& name) const {
  const auto known = mDefaults.find(name);
  if (known == mDefaults.end() || known->second.text.empty())
    return zebcore::FromUTF8(name);
  return zebcore::config::Localizer::Get().Localize(known->second.text);
}

KeysList ShortcutManager::GetKeys(const std::string& name) const {
  const auto chosen = mUserKeys.find(name);
  return chosen == mUserKeys.end() ? GetDefaultKeys(name) : chosen->second;
}

KeysList ShortcutManager::GetDefaultKeys(const std::string& name) const {
  const auto known = mDefaults.find(name);
  return known == mDefaults.end() ? KeysList() : known->second.keys;
}

bool ShortcutManager::AreKeysDefault(const std::string& name) const {
  return !mUserKeys.contains(name);
}

void ShortcutManager::SetKeys(const std::string& name, KeysList keys) {
  keys = Normalize(keys);
  if (keys == GetDefaultKeys(name))
    mUserKeys.erase(name);
  else
    mUserKeys[name] = std::move(keys);
  KeysChanged();
}

void ShortcutManager::ResetKeys(const std::string& name) {
  mUserKeys.erase(name);
  KeysChanged();
}

void ShortcutManager::ResetAllKeys() {
  mUserKeys.clear();
  KeysChanged();
}

void ShortcutManager::SetUserKeys(const std::map<std::string, KeysList>& keys) {
  mUserKeys.clear();
  for (const auto& [name, list] : keys) {
    KeysList usable = Normalize(list);
    if (usable != GetDefaultKeys(name))
      mUserKeys[name] = std::move(usable);
  }
  KeysChanged();
}

void ShortcutManager::KeysChanged() const {
  if (mKeysListener)
    mKeysListener();
}

std::vector<ShortcutManager::Clash> ShortcutManager::FindClashes(const std::string& context, const std::string& name,
                                                                 const Keys& keys) const {
  std::vector<Clash> clashes;
  const Keys wanted = NormalizeKeys(keys);
  if (wanted.empty())
    return clashes;
  for (const auto& other : mContexts) {
    const bool meet = other->GetID() == context || other->GetID() == kGlobalContext || context == kGlobalContext;
    if (!meet)
      continue;
    for (const CommandDeclaration& command : other->GetCommands()) {
      if (command.name != name && Contains(GetKeys(command.name), wanted))
        clashes.push_back({other->GetID(), command.name});
    }
  }
  return clashes;
}

int ShortcutManager::FindCommand(const std::string& context, const Keys& keys) const {
  const Keys wanted = NormalizeKeys(keys);
  if (wanted.empty())
    return 0;
  for (const std::string& id : {context, std::string(kGlobalContext)}) {
    for (const auto& one : mContexts) {
      if (one->GetID() != id)
        continue;
      for (const CommandDeclaration& command : one->GetCommands()) {
        if (Contains(GetKeys(command.name), wanted))
          return command.number;
      }
    }
  }
  return 0;
}

Keys ShortcutManager::GetFirstKeysOf(int number) const {
  for (const auto& context : mContexts) {
    for (const CommandDeclaration& command : context->GetCommands()) {
      if (command.number != number)
        continue;
      const KeysList keys = GetKeys(command.name);
      return keys.empty() ? Keys() : keys.front();
    }
  }
  return {};
}

const CommandDeclaration* ShortcutManager::FindDeclaration(const std::string& name) const {
  for (const auto& context : mContexts) {
    const auto& commands = context->GetCommands();
    const auto found = std::ranges::find(commands, name, &CommandDeclaration::name);
    if (found != commands.end())
      return &*found;
  }
  return nullptr;
}

Keys NormalizeKeys(const Keys& keys) {
  const auto sequence = QKeySequence::fromString(QString::fromStdString(keys), QKeySequence::PortableText);
  if (sequence.count() != 1 || sequence[0].key() == Qt::Key_unknown || sequence[0].key() == Qt::Key(0))
    return {};
  return sequence.toString(QKeySequence::PortableText).toStdString();
}

bool IsTypingKey(const Keys& keys) {
  const auto sequence = QKeySequence::fromString(QString::fromStdString(keys), QKeySequence::PortableText);
  if (sequence.count() != 1)
    return false;
  const QKeyCombination combination = sequence[0];
  if (combination.keyboardModifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
    return false;
  return combination.key() < Qt::Key_F1 || combination.key() > Qt::Key_F35;
}

} // namespace UIF
