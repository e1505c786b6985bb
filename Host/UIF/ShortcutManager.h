#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <boost/function.hpp>

#include "zebcore/ImmutableString.h"
#include "zebcore/UString.h"

namespace UIF {

using zebcore::UString;
using CommandKind = int;

struct CommandDeclaration {
  std::string name;
  int number;
  CommandKind kind;
  std::string decal;
  zebcore::utility::ImmutableString text;
  bool flag;
};

// A named group of commands whose shortcuts hold while a panel of that context is on duty.
class CommandContext {
 public:
  CommandContext(std::string id, UString name) : mID(std::move(id)), mName(std::move(name)) {}
  void DeclareCommand(const std::string& name, int number, CommandKind kind, const std::string& decal,
                      zebcore::utility::ImmutableString text, bool flag);
  const std::string& GetID() const { return mID; }
  // In the language of the moment, if the host knows the context.
  UString GetName() const;
  const std::vector<CommandDeclaration>& GetCommands() const { return mCommands; }

 private:
  friend class ShortcutManager;
  std::string mID;
  UString mName;
  std::string mText; // the name as a text with its key; empty for a context that the host does not know
  std::vector<CommandDeclaration> mCommands;
};

struct WindowMenuID {
  std::string context;
  UString label;
  std::string menu;
};

// A key with its modifiers as people write it, whatever the language: "Ctrl+Shift+L", "F6", "Alt+Down".
using Keys = std::string;
using KeysList = std::vector<Keys>;

// The commands that the panels and the program declare, and the keys they go by: those that the host gives them, unless
// the user has chosen other ones. A key of a panel's context holds while the panel is on duty, one of "global" always;
// so the same key clashes within a context and with "global".
class ShortcutManager {
 public:
  static ShortcutManager* Instance();

  // Null for an unknown one. "global" stands from the beginning.
  CommandContext* GetContext(const std::string& id);
  // The context of that id; a new one if there is none. Declaring a number again in a context changes nothing.
  CommandContext& AddContext(const std::string& id, const UString& name);
  // What the host calls the context of that id, whether it stands already or not: a panel gives the name in the
  // language of the moment in which it is loaded. A text with its key.
  void SetContextText(const std::string& id, const std::string& text);
  // Calls the registrar at once.
  void RegisterCommandContext(const boost::function<void(ShortcutManager*)>& registrar);
  // A wing menu: the menu behind a panel's title. Adding the same menu again replaces it.
  void AddWindowMenuID(const std::string& context, const UString& label, const std::string& menu);

  const std::vector<std::unique_ptr<CommandContext>>& GetContexts() const { return mContexts; }
  const std::vector<WindowMenuID>& GetWindowMenuIDs() const { return mWindowMenuIDs; }

  // What the host gives to a command, by its name, declared or not yet: what people call it, as a text with its key,
  // and its keys. The first key is the one that menus show.
  void SetCommandDefaults(const std::string& name, const std::string& text, const KeysList& keys);
  // In the language of the moment; the name itself for a command without a text.
  UString GetCommandText(const std::string& name) const;

  // None for an unknown command.
  KeysList GetKeys(const std::string& name) const;
  KeysList GetDefaultKeys(const std::string& name) const;
  bool AreKeysDefault(const std::string& name) const;
  // The user's choice; an empty list leaves the command without keys. Keys are put into their usual order first, those
  // that are none are left out.
  void SetKeys(const std::string& name, KeysList keys);
  void ResetKeys(const std::string& name);
  void ResetAllKeys();
  // What differs from the defaults, for the user's settings. Setting it replaces all choices.
  const std::map<std::string, KeysList>& GetUserKeys() const { return mUserKeys; }
  void SetUserKeys(const std::map<std::string, KeysList>& keys);

  struct Clash {
    std::string context;
    std::string command;
  };
  // The other declared commands that would stand in each other's way with this one.
  std::vector<Clash> FindClashes(const std::string& context, const std::string& name, const Keys& keys) const;
  // The number of the command that the keys mean in the context, else in "global"; 0 for none.
  int FindCommand(const std::string& context, const Keys& keys) const;
  // Of the first declared command with this number; empty without any.
  Keys GetFirstKeysOf(int number) const;
  const CommandDeclaration* FindDeclaration(const std::string& name) const;

  // Called after keys have changed; null takes it away.
  void SetKeysListener(std::function<void()> listener) { mKeysListener = std::move(listener); }

 private:
  struct Defaults {
    std::string text;
    KeysList keys;
  };

  ShortcutManager();
  void KeysChanged() const;
  std::vector<std::unique_ptr<CommandContext>> mContexts;
  std::vector<WindowMenuID> mWindowMenuIDs;
  std::map<std::string, Defaults> mDefaults;
  std::map<std::string, std::string> mContextTexts;
  std::map<std::string, KeysList> mUserKeys;
  std::function<void()> mKeysListener;
};

// Modifiers in their usual order and the key as the host names it; empty for a text that names no key.
Keys NormalizeKeys(const Keys& keys);
// Whether a person who types could mean a character by it: such keys are no shortcuts.
bool IsTypingKey(const Keys& keys);

} // namespace UIF
