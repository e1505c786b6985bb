#include "UIF/Workspace.h"

#include <algorithm>

#include "UIF/TabView.h"
#include "zebcore/Boundary.h"
#include "zebcore/Log.h"
#include "zebcore/Trace.h"

namespace UIF {

using zebcore::boundary::Guard;

const UString kCaptionsWindowTypeID = u"UIF.WindowType.Captions";
const UString kDefaultWindowID = u"UIF.Window.Default";
const UString kDefaultWindowContextID = u"UIF.WindowContext.Default";

namespace {

struct Registry {
  std::vector<WindowClass> classes;
  std::vector<WindowMenuEntry> windowMenu;
  std::map<UString, TabViewCreator*> creators;
  Workspace::FrameFactory factory;
  std::unique_ptr<Workspace> workspace;
  std::function<void()> repeater;
};

Registry& GetRegistry() {
  // Never destroyed: handlers with a static lifetime withdraw themselves at the very end.
  static auto* const registry = new Registry;
  return *registry;
}

void Trace(const char* call, const UString& id) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record(call, {{"id", zebcore::ToUTF8(id)}});
}

} // namespace

void AddWindowClass(const UString& typeID, const UString& handlerID, WindowClassType type) {
  Trace("UIF::AddWindowClass", typeID);
  auto& classes = GetRegistry().classes;
  std::erase_if(classes, [&](const WindowClass& known) { return known.typeID == typeID; });
  classes.push_back({typeID, handlerID, type});
}

void RemoveWindowClass(const UString& typeID) {
  Trace("UIF::RemoveWindowClass", typeID);
  std::erase_if(GetRegistry().classes, [&](const WindowClass& known) { return known.typeID == typeID; });
  // Its menu entries would open nothing any more.
  std::erase_if(GetRegistry().windowMenu, [&](const WindowMenuEntry& entry) { return entry.typeID == typeID; });
}

void AddWindow(const UString& typeID, const UString& windowID, const UString& title, const UString& contextID) {
  Trace("UIF::AddWindow", typeID);
  auto& menu = GetRegistry().windowMenu;
  std::erase_if(menu, [&](const WindowMenuEntry& entry) {
    return entry.typeID == typeID && entry.windowID == windowID && entry.contextID == contextID;
  });
  menu.push_back({typeID, windowID, title, contextID});
}

std::vector<WindowClass> GetWindowClasses() {
  return GetRegistry().classes;
}

std::vector<WindowMenuEntry> GetWindowMenu() {
  return GetRegistry().windowMenu;
}

WorkspaceFrame::~WorkspaceFrame() = default;

TabViewCreator::~TabViewCreator() = default;

TabView* TabViewCreator::CreateTabViewSelf(WorkspaceFrame* frame, const std::basic_string<unsigned char>&) {
  return CreateTabView(frame);
}

bool TabViewCreator::ShouldHideWhenClosed() const {
  return false;
}

bool TabViewCreator::ShouldDestroyWhenClosed() const {
  return true;
}

bool TabViewCreator::ShouldSaveStateWhenDestroyed() const {
  return false;
}

Workspace* Workspace::Instance() {
  return GetRegistry().workspace.get();
}

void Workspace::SetFrameFactory(FrameFactory factory) {
  Registry& registry = GetRegistry();
  registry.factory = std::move(factory);
  registry.workspace.reset(registry.factory ? new Workspace : nullptr);
}

void Workspace::RegisterCreator(const UString& tabID, TabViewCreator* creator) {
  GetRegistry().creators[tabID] = creator;
}

void Workspace::UnregisterCreator(const UString& tabID, TabViewCreator* creator) {
  const auto found = GetRegistry().creators.find(tabID);
  if (found != GetRegistry().creators.end() && found->second == creator)
    GetRegistry().creators.erase(found);
}

TabView* Workspace::CreateOrReanimateTabView(const UString& tabID, const PropertyList&) {
  Trace("Workspace::CreateOrReanimateTabView", tabID);
  if (TabView* open = FindTabView(tabID))
    return open;
  Registry& registry = GetRegistry();
  const auto creator = registry.creators.find(tabID);
  if (creator == registry.creators.end()) {
    zebcore::log::Write(zebcore::log::Level::Warning, "No panel answers to the id " + zebcore::ToUTF8(tabID));
    return nullptr;
  }
  WorkspaceFrame*& frame = mFrames[tabID];
  if (!frame)
    frame = registry.factory(tabID);
  if (!frame)
    return nullptr;
  TabView* view = nullptr;
  Guard("TabViewCreator::CreateTabView", [&] { view = creator->second->CreateTabViewSelf(frame, {}); });
  if (!view)
    return nullptr;
  mViews[tabID] = view;
  if (registry.repeater)
    Guard("Workspace::SetSelectionRepeater", registry.repeater);
  return view;
}

TabView* Workspace::FindTabView(const UString& tabID) const {
  const auto found = mViews.find(tabID);
  return found != mViews.end() && found->second->IsCreated() ? found->second : nullptr;
}

void Workspace::SetSelectionRepeater(std::function<void()> repeater) {
  GetRegistry().repeater = std::move(repeater);
}

void Workspace::Forget(TabView* view) {
  std::erase_if(mViews, [&](const auto& entry) { return entry.second == view; });
}

} // namespace UIF
