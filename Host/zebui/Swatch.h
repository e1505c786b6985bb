#pragma once

#include "zebui/Node.h"

namespace zebui::controls {

using ui::UI_ControlView;
using ui::UI_Node;

// Red, green, blue and alpha from 0 to 1, in no particular colour space.
struct UnManagedRGBA {
  float red = 0.0F;
  float green = 0.0F;
  float blue = 0.0F;
  float alpha = 1.0F;
  friend bool operator==(const UnManagedRGBA&, const UnManagedRGBA&) = default;
};

// A patch of colour that reports a click, Space or Enter.
class UI_Swatch : public UI_ControlView {
 public:
  UI_Swatch();
  ~UI_Swatch() override;
  void SetValue(const UnManagedRGBA& color);
  UnManagedRGBA GetValue() const;
  void SetDisplayBorder(bool border);
  // As a person would; nothing when it is disabled.
  void Press();

  bool UI_DoKeyboardEvent(UI_Node* focus, const ui::KeyboardEvent& event) override;

 private:
  struct Patch;
  std::unique_ptr<Patch> mPatch;
};

} // namespace zebui::controls
