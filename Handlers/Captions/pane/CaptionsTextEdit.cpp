#include "Captions/pane/CaptionsTextEdit.h"

#include "zebui/NodeManager.h"

namespace Captivo {

using zebui::ui::KeyboardEvent;
using zebui::ui::UI_NodeManager;

namespace {

constexpr int kSeveralLines = 1;
constexpr int kAlignLeft = 0;
// Every modifier but Shift and Caps Lock.
constexpr zebui::ui::ModKey kModifiersThatPassTheKeyOn = 0xF5;

} // namespace

CaptionsTextEdit::CaptionsTextEdit() : UI_TextEdit(kSeveralLines, kAlignLeft) {
  UI_NodeManager::Get(false)->AddKeyboardEventFilterNode(this, false);
}

CaptionsTextEdit::~CaptionsTextEdit() {
  UI_NodeManager::Get(false)->RemoveKeyboardEventFilterNode(this, false);
}

// As a filter the control sees every key of the program, so it asks for the focus itself.
bool CaptionsTextEdit::UI_DoPreKeyboardEvent(UI_Node*, const KeyboardEvent& event) {
  if (!event.CompareShortcut(zebui::ui::kKeyboardCode_Escape, zebui::ui::kModKey_None) || !UI_HasKeyboardFocus(false))
    return false;
  if (event.GetType() == zebui::ui::kKeyboardEvent_KeyDown) {
    // Cancelling can take back the very caption that this row shows.
    const boost::intrusive_ptr<CaptionsTextEdit> keep(this);
    CancelInteractiveChange();
  }
  return true;
}

bool CaptionsTextEdit::UI_DoKeyboardEvent(UI_Node* focus, const KeyboardEvent& event) {
  if (event.GetType() == zebui::ui::kKeyboardEvent_KeyDown && event.CompareCode(zebui::ui::kKeyboardCode_Tab) &&
      (event.GetModKey() & kModifiersThatPassTheKeyOn) == 0)
    return true;
  return UI_TextEdit::UI_DoKeyboardEvent(focus, event);
}

void CaptionsTextEdit::UI_FocusChanged(zebui::ui::FocusChangeReason reason) {
  UI_TextEdit::UI_FocusChanged(reason);
  if (reason == zebui::ui::kFocusChange_Window)
    FinishInteractiveChange();
  if (!UI_HasKeyboardFocus(false))
    ScrollToBegin();
}

} // namespace Captivo
