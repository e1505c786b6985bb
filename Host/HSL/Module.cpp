#include "HSL/Module.h"

#include <map>

namespace HSL {

const UString kCaptionsModuleID = u"HSL.Module.Captions";
const UString kCaptionsHandlerID = u"HSL.Handler.Captions";

namespace {

std::map<UString, Module::Factory>& GetFactories() {
  // Never destroyed: a library's registration may outlive every other static.
  static auto* const factories = new std::map<UString, Module::Factory>;
  return *factories;
}

} // namespace

Module::Module(const UString& name) : mName(name) {}

Module::~Module() = default;

bool Module::RegisterFactory(const UString& id, Factory factory) {
  GetFactories()[id] = factory;
  return true;
}

std::unique_ptr<Module> Module::CreateModule(const UString& id, const UString& name) {
  const auto found = GetFactories().find(id);
  if (found == GetFactories().end() || !found->second)
    return nullptr;
  return std::unique_ptr<Module>(found->second(name));
}

} // namespace HSL
