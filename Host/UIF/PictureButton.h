#pragma once

#include <memory>

#include "UIF/Bitmap.h"
#include "UIF/View.h"

namespace UIF {

// A button with a picture that gives its command to its commander when pressed. It may stay on, to show a state; the
// press itself does not change that.
class PictureButton {
 public:
  explicit PictureButton(Commander* super);
  virtual ~PictureButton();
  PictureButton(const PictureButton&) = delete;
  PictureButton& operator=(const PictureButton&) = delete;

  // Hidden until shown, enabled, off.
  void Create(ViewBase* parent, const RectT<int>& bounds, int command, const Bitmap& picture);
  void Destroy();
  // Pressing the button also takes the keyboard focus. Off, so that a press leaves the focus in a caption's text.
  virtual void SetTakesFocusOnPress(bool takes);
  void SetToolTipText(const UString& text);
  UString GetToolTipText() const;
  void SetBounds(const RectT<int>& bounds);
  RectT<int> GetBounds() const;
  void Show(bool show);
  bool IsShown() const;
  void Enable(bool enable);
  bool IsEnabled() const;
  void SetValue(bool on);
  bool GetValue() const;
  int GetCommandID() const;
  bool HasFocus() const;
  // As a person would; nothing when it is disabled.
  void Press();
  // The node it is on screen with; null before Create.
  zebui::ui::UI_Node* GetNode() const;

 private:
  struct Impl;
  Commander* mSuper;
  std::unique_ptr<Impl> mImpl;
};

} // namespace UIF
