#pragma once

#include <string>

#include "zebcore/UString.h"

namespace UIF {

using zebcore::UString;

class Command {
 public:
  explicit Command(int id) : mID(id) {}
  int GetID() const { return mID; }

 private:
  int mID;
};

enum class MenuMark { None, Check, Dash };

// Whoever answers commands. What it does not answer goes on to the next one of the chain.
class CommandHandler {
 public:
  CommandHandler() = default;
  virtual ~CommandHandler();
  CommandHandler(const CommandHandler&) = delete;
  CommandHandler& operator=(const CommandHandler&) = delete;

  // True if it answers for the command. marked, mark and name are for menus.
  virtual bool FindCommandStatus(int id, bool& enabled, bool& marked, MenuMark& mark, UString& name);
  virtual void UpdateCommandForDisableMenuAppStatus(int id, bool& enabled);
  // True if it was obeyed. The base obeys nothing.
  virtual bool ObeyCommand(const Command& command);
};

// A command handler in the chain of command: what it does not answer goes to its super commander. The one that the
// user's focus is in is on duty.
class Commander : public CommandHandler {
 public:
  explicit Commander(Commander* super) : mSuper(super) {}
  Commander* GetSuperCommander() const { return mSuper; }
  virtual void NowOnDuty();
  virtual void NowOffDuty();

 private:
  Commander* mSuper;
};

// The program as the root of the chain of command.
class Application {
 public:
  static Application& Instance();
  virtual ~Application();
  virtual Commander* GetCommander();

 protected:
  Application();
};

} // namespace UIF
