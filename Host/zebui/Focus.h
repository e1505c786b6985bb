// The inside of the focus record, for zebui's own sources.
#pragma once

#include "zebui/Toolkit.h"

namespace zebui::toolkit {

// Listens to the toolkit's focus changes from now on.
void FollowApplicationFocus();
UI_Node* GetFocusRecordNode();
// A node that goes away takes no leave.
void ForgetFocusOf(const UI_Node* node);
// The one road of every change: record, toolkit, old node, observer, new node.
void ChangeFocus(UI_Node* node, QWidget* widget, FocusChangeReason reason);

} // namespace zebui::toolkit
