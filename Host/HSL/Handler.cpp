#include <map>

#include "HSL/Module.h"
#include "UIF/Workspace.h"
#include "zebcore/Trace.h"

namespace HSL {

namespace {

std::map<UString, Handler::Factory>& GetFactories() {
  // Never destroyed: a library's registration may outlive every other static.
  static auto* const factories = new std::map<UString, Handler::Factory>;
  return *factories;
}

Handler::PanelMovementHook& GetHook() {
  static Handler::PanelMovementHook hook;
  return hook;
}

bool Ask(const char* operation, Handler::PanelMovement movement) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record(operation);
  return GetHook() && GetHook()(movement);
}

} // namespace

Handler::Handler(const UString& name, const UString& id) : mName(name), mTabID(id) {
  UIF::Workspace::RegisterCreator(mTabID, this);
}

Handler::~Handler() {
  UIF::Workspace::UnregisterCreator(mTabID, this);
}

bool Handler::ObeyCommand(const UIF::Command& command) {
  return UIF::CommandHandler::ObeyCommand(command);
}

bool Handler::AllowClose() {
  return true;
}

bool Handler::OnSelectFindBox() {
  return Ask("Handler::OnSelectFindBox", PanelMovement::FindBox);
}

bool Handler::OnSelectNextPanel() {
  return Ask("Handler::OnSelectNextPanel", PanelMovement::NextPanel);
}

bool Handler::OnSelectPreviousPanel() {
  return Ask("Handler::OnSelectPreviousPanel", PanelMovement::PreviousPanel);
}

void Handler::SetPanelMovementHook(PanelMovementHook hook) {
  GetHook() = std::move(hook);
}

bool Handler::RegisterFactory(const UString& id, Factory factory) {
  GetFactories()[id] = factory;
  return true;
}

std::unique_ptr<Handler> Handler::CreateHandler(const UString& id, const UString& name) {
  const auto found = GetFactories().find(id);
  if (found == GetFactories().end() || !found->second)
    return nullptr;
  return std::unique_ptr<Handler>(found->second(name));
}

} // namespace HSL
