#pragma once

#include "zebui/Controls.h"

namespace Captivo {

// The text of a caption row. Escape ends an edit by cancelling it, wherever else Escape would go; the Tab key is kept
// out of the text; and a long text shows its beginning again once the focus has left.
class CaptionsTextEdit : public zebui::controls::UI_TextEdit {
 public:
  CaptionsTextEdit();
  ~CaptionsTextEdit() override;

  bool UI_DoPreKeyboardEvent(zebui::ui::UI_Node* focus, const zebui::ui::KeyboardEvent& event) override;
  bool UI_DoKeyboardEvent(zebui::ui::UI_Node* focus, const zebui::ui::KeyboardEvent& event) override;
  void UI_FocusChanged(zebui::ui::FocusChangeReason reason) override;
};

} // namespace Captivo
