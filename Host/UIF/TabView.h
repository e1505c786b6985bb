#pragma once

#include "UIF/View.h"

namespace UIF {

class WorkspaceFrame;

// A panel of the workspace.
class TabView : public ViewBase {
 public:
  enum DestroyFlags : int { kDestroy_Default = 0, kDestroy_Closing = 1 };

  explicit TabView(Commander* super);
  ~TabView() override;

  // Puts the view into the frame, named, and runs CreateSelf with the client rectangle.
  void Create(const UString& id, const UString& name, WorkspaceFrame* frame, bool visible);
  void Destroy() override;
  virtual void Destroy(DestroyFlags flags);

  void Show(bool show) override;
  // Shown itself, in a frame that is shown.
  bool IsShown() const override;
  bool IsFrontMost() const;
  void BringToFront(bool activate, bool animate);
  // The user's focus is in the view, so that it is on duty.
  bool IsOnDuty() const;

  virtual int GetStackedDimensionHeightMin() const;
  void SetIsStacked(bool stacked);
  bool GetIsStacked() const;
  // Tells the frame that the minimum height of a stacked view may have changed.
  void UpdateStackedDimensions(bool animate);
  const UString& GetTabViewID() const { return mID; }
  const UString& GetName() const { return mName; }
  WorkspaceFrame* GetFrame() const { return mFrame; }
  // The menu behind the panel's title; empty for none.
  std::string GetWingMenu() const { return GetWingMenuName(); }

 protected:
  virtual std::string GetWingMenuName() const;
  virtual bool FindCommandEnabled(int id, bool& enabled);

 private:
  UString mID;
  UString mName;
  WorkspaceFrame* mFrame = nullptr;
  bool mStacked = false;
};

} // namespace UIF
