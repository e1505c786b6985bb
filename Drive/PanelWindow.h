#pragma once

#include <memory>
#include <string>

#include "UIF/Workspace.h"

class QWidget;

namespace Drive {

// A bare window with the panel in it.
class PanelWindow : public UIF::WorkspaceFrame {
 public:
  PanelWindow();
  ~PanelWindow() override;

  void* GetContainer() override;
  void SetTitle(const UIF::UString& title) override;
  void SetShown(bool shown) override;
  bool IsShown() const override { return mShown; }
  void BringToFront() override { mFrontMost = true; }
  bool IsFrontMost() const override { return mFrontMost && mShown; }

  bool LaysOutNewViews() const override { return mLaysOut; }
  void SetLaysOutNewViews(bool laysOut) { mLaysOut = laysOut; }

  // Another panel takes the place in front, or gives it back.
  void SetFrontMost(bool front) { mFrontMost = front; }
  void Resize(int width, int height);
  int GetWidth() const { return mWidth; }
  int GetHeight() const { return mHeight; }
  // Makes it the window that has the user's focus.
  void Activate();
  // False if the picture could not be written.
  bool WritePicture(const std::string& path, bool wholeWindow);

 private:
  static constexpr int kMargin = 8;
  std::unique_ptr<QWidget> mWindow;
  QWidget* mContainer;
  bool mShown = false;
  bool mFrontMost = false;
  bool mLaysOut = true;
  int mWidth = 800;
  int mHeight = 600;
};

} // namespace Drive
