#include "Captions/shell/CaptionsModule.h"

#include <new>

#include "Captions/shell/CaptionsCommands.h"
#include "UIF/ShortcutManager.h"

namespace Captivo {

namespace {

[[maybe_unused]] const bool kIsFactoryRegistered = HSL::Module::RegisterFactory(HSL::kCaptionsModuleID, &CreateModule);

} // namespace

CaptionsModule::CaptionsModule(const UString& name) : Module(name) {}

CaptionsModule::~CaptionsModule() = default;

HSL::Module* CreateModule(const UString& name) {
  HSL::Module* module = new (std::nothrow) CaptionsModule(name);
  if (module)
    UIF::ShortcutManager::Instance()->RegisterCommandContext(&RegisterCaptionsCommands);
  return module;
}

} // namespace Captivo
