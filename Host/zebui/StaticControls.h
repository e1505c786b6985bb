#pragma once

#include "zebui/Node.h"

namespace zebui::controls {

enum ControlAlignment : int { kControlAlignment_Left = 0, kControlAlignment_Center = 1, kControlAlignment_Right = 2 };

// A line of text that names the control beside it. Takes no focus. Disabled it is drawn dimmed.
class UI_StaticText : public ui::UI_ControlView {
 public:
  UI_StaticText();
  ~UI_StaticText() override;
  void SetValue(const zebcore::UString& text);
  zebcore::UString GetValue() const;
  void SetAlignment(int alignment);
  int GetAlignment() const;

 private:
  struct Text;
  std::unique_ptr<Text> mText;
};

// A thin upright line between groups of controls.
class UI_Divider : public ui::UI_ControlView {
 public:
  UI_Divider();
  ~UI_Divider() override;
};

} // namespace zebui::controls
