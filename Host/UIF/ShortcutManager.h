#pragma once

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
  const UString& GetName() const { return mName; }
  const std::vector<CommandDeclaration>& GetCommands() const { return mCommands; }

 private:
  std::string mID;
  UString mName;
  std::vector<CommandDeclaration> mCommands;
};

struct WindowMenuID {
  std::string context;
  UString label;
  std::string menu;
};

class ShortcutManager {
 public:
  static ShortcutManager* Instance();

  // Null for an unknown one. "global" stands from the beginning.
  CommandContext* GetContext(const std::string& id);
  // The context of that id; a new one if there is none. Declaring a number again in a context changes nothing.
  CommandContext& AddContext(const std::string& id, const UString& name);
  // Calls the registrar at once.
  void RegisterCommandContext(const boost::function<void(ShortcutManager*)>& registrar);
  // A wing menu: the menu behind a panel's title. Adding the same menu again replaces it.
  void AddWindowMenuID(const std::string& context, const UString& label, const std::string& menu);

  const std::vector<std::unique_ptr<CommandContext>>& GetContexts() const { return mContexts; }
  const std::vector<WindowMenuID>& GetWindowMenuIDs() const { return mWindowMenuIDs; }

 private:
  ShortcutManager();
  std::vector<std::unique_ptr<CommandContext>> mContexts;
  std::vector<WindowMenuID> mWindowMenuIDs;
};

} // namespace UIF
