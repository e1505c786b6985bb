#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "UIF/CommandHandler.h"
#include "UIF/TabViewCreator.h"
#include "zebcore/UString.h"

namespace HSL {

using zebcore::UString;

extern const UString kCaptionsModuleID;
extern const UString kCaptionsHandlerID;

// A library that the host has loaded.
class Module {
 public:
  explicit Module(const UString& name);
  virtual ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  const UString& GetName() const { return mName; }

  using Factory = Module* (*)(const UString& name);
  // Called as a library loads. Registering an id again replaces the factory. Returns true, so that a static can hold
  // it.
  static bool RegisterFactory(const UString& id, Factory factory);
  // Null if the id is unknown or the factory gave nothing.
  static std::unique_ptr<Module> CreateModule(const UString& id, const UString& name);

 private:
  UString mName;
};

// What stands for a panel while the panel itself may be closed.
class Handler : public UIF::CommandHandler, public UIF::TabViewCreator {
 public:
  Handler(const UString& name, const UString& id);
  ~Handler() override;
  const UString& GetName() const { return mName; }
  // What UIF::Workspace knows the handler's tab view by.
  const UString& GetTabID() const { return mTabID; }

  bool ObeyCommand(const UIF::Command& command) override;
  virtual const std::string& GetShortcutContextName() const = 0;
  virtual bool AllowClose();
  // The host's own search and panel-to-panel movement. False, "not done", unless a host says otherwise.
  virtual bool OnSelectFindBox();
  virtual bool OnSelectNextPanel();
  virtual bool OnSelectPreviousPanel();
  // What answers these three in a host that has such things, or drives the program; null for none.
  enum class PanelMovement { FindBox, NextPanel, PreviousPanel };
  using PanelMovementHook = std::function<bool(PanelMovement)>;
  static void SetPanelMovementHook(PanelMovementHook hook);

  using Factory = Handler* (*)(const UString& name);
  static bool RegisterFactory(const UString& id, Factory factory);
  // Null if the id is unknown or the factory gave nothing.
  static std::unique_ptr<Handler> CreateHandler(const UString& id, const UString& name);

 private:
  UString mName;
  UString mTabID;
};

// Loads every library of the module folder, in order of name, and from nowhere else. One that fails to load is named in
// the log and left out. Libraries stay loaded to the end of the process.
class ModuleLoader {
 public:
  // Returns how many were loaded.
  static int LoadAll(const std::filesystem::path& folder);
  // The folder of modules that belongs to the running program.
  static std::filesystem::path GetModuleFolder();
};

} // namespace HSL
