#pragma once

#include <string>

namespace UIF {

class TabView;
class WorkspaceFrame;

class TabViewCreator {
 public:
  virtual ~TabViewCreator();
  // Makes the view and loads its state into it.
  virtual TabView* CreateTabViewSelf(WorkspaceFrame* frame, const std::basic_string<unsigned char>& state);
  virtual TabView* CreateTabView(WorkspaceFrame* frame) = 0;
  virtual bool ShouldHideWhenClosed() const;
  virtual bool ShouldDestroyWhenClosed() const;
  virtual bool ShouldSaveStateWhenDestroyed() const;
};

} // namespace UIF
