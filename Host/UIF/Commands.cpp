#include "UIF/CommandHandler.h"
#include "UIF/CommandRouter.h"
#include "UIF/TabView.h"
#include "zebcore/Boundary.h"
#include "zebcore/Trace.h"

namespace UIF {

using zebcore::boundary::Guard;

namespace {

Application* sApplication = nullptr;

template <class Visit> bool WalkChain(TabView* view, Visit&& visit) {
  Commander* commander = view ? view : GetTabViewOnDuty();
  if (!commander)
    commander = Application::Instance().GetCommander();
  for (; commander; commander = commander->GetSuperCommander()) {
    if (visit(*commander))
      return true;
  }
  return false;
}

} // namespace

CommandHandler::~CommandHandler() = default;

bool CommandHandler::FindCommandStatus(int id, bool&, bool&, MenuMark&, UString&) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("CommandHandler::FindCommandStatus", {{"id", id}});
  return false;
}

void CommandHandler::UpdateCommandForDisableMenuAppStatus(int, bool&) {}

bool CommandHandler::ObeyCommand(const Command& command) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("CommandHandler::ObeyCommand", {{"id", command.GetID()}});
  return false;
}

void Commander::NowOnDuty() {}

void Commander::NowOffDuty() {}

Application::Application() {
  sApplication = this;
}

Application::~Application() {
  if (sApplication == this)
    sApplication = nullptr;
}

Application& Application::Instance() {
  // The program's own, or a plain one for programs that have none.
  struct Plain : Application {};
  if (!sApplication)
    new Plain; // stays, as the root of every chain that still names it
  return *sApplication;
}

Commander* Application::GetCommander() {
  static Commander root(nullptr);
  return &root;
}

bool RouteCommand(int id) {
  return RouteCommand(nullptr, id);
}

bool RouteCommand(TabView* view, int id) {
  const Command command(id);
  return WalkChain(view, [&](Commander& commander) {
    bool obeyed = false;
    Guard("CommandHandler::ObeyCommand", [&] { obeyed = commander.ObeyCommand(command); });
    return obeyed;
  });
}

bool FindStatus(int id, bool& enabled, bool& marked, MenuMark& mark, UString& name) {
  return FindStatus(nullptr, id, enabled, marked, mark, name);
}

bool FindStatus(TabView* view, int id, bool& enabled, bool& marked, MenuMark& mark, UString& name) {
  enabled = false;
  marked = false;
  mark = MenuMark::None;
  return WalkChain(view, [&](Commander& commander) {
    bool answered = false;
    Guard("CommandHandler::FindCommandStatus",
          [&] { answered = commander.FindCommandStatus(id, enabled, marked, mark, name); });
    return answered;
  });
}

bool FindStatus(int id, bool& enabled) {
  bool marked = false;
  MenuMark mark = MenuMark::None;
  UString name;
  return FindStatus(id, enabled, marked, mark, name);
}

} // namespace UIF
