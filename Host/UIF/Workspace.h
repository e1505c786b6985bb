#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "UIF/TabViewCreator.h"
#include "zebcore/UString.h"

namespace UIF {

using zebcore::UString;
class TabView;

using PropertyList = std::map<std::string, std::string>;
using WindowClassType = int; // 1: a panel that can be docked

extern const UString kCaptionsWindowTypeID;
extern const UString kDefaultWindowID;
extern const UString kDefaultWindowContextID;

// Window classes that can be opened, and the entries of the Window menu.
void AddWindowClass(const UString& typeID, const UString& handlerID, WindowClassType type);
void RemoveWindowClass(const UString& typeID);
void AddWindow(const UString& typeID, const UString& windowID, const UString& title, const UString& contextID);

struct WindowClass {
  UString typeID;
  UString handlerID;
  WindowClassType type;
};
struct WindowMenuEntry {
  UString typeID;
  UString windowID;
  UString title;
  UString contextID;
};
std::vector<WindowClass> GetWindowClasses();
std::vector<WindowMenuEntry> GetWindowMenu();

// A place of the workspace that holds one tab view. The program implements it with a dock, the driver with a bare
// window.
class WorkspaceFrame {
 public:
  virtual ~WorkspaceFrame();
  // The toolkit's widget (QWidget*) inside which the view lives.
  virtual void* GetContainer() = 0;
  virtual void SetTitle(const UString& title) = 0;
  virtual void SetShown(bool shown) = 0;
  virtual bool IsShown() const = 0;
  virtual void BringToFront() = 0;
  virtual bool IsFrontMost() const = 0;
  virtual void StackedDimensionsChanged() {}
  // Whether a view that was made here gets its first SetBounds at once; else the bounds of creation hold until the
  // frame's container is resized.
  virtual bool LaysOutNewViews() const { return true; }
};

// The arrangement of panels. Null until the program has made one.
class Workspace {
 public:
  static Workspace* Instance();

  using FrameFactory = std::function<WorkspaceFrame*(const UString& tabID)>;
  // Makes the workspace; the factory's frames belong to the program. Null takes it away.
  static void SetFrameFactory(FrameFactory factory);

  // Who makes the tab view of an id; the creator withdraws itself before it goes.
  static void RegisterCreator(const UString& tabID, TabViewCreator* creator);
  static void UnregisterCreator(const UString& tabID, TabViewCreator* creator);

  // The open view of that id, or a new one made by its creator in a frame; null for an unknown id. A view that was made
  // just now hears the current selection once more before this returns.
  TabView* CreateOrReanimateTabView(const UString& tabID, const PropertyList& properties);
  TabView* FindTabView(const UString& tabID) const;
  // Called once a view was made, so that the host says again what is selected.
  static void SetSelectionRepeater(std::function<void()> repeater);

 private:
  friend class TabView;
  Workspace() = default;
  void Forget(TabView* view);
  std::map<UString, TabView*> mViews;
  std::map<UString, WorkspaceFrame*> mFrames;
};

} // namespace UIF
