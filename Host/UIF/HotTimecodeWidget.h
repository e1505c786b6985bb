// The toolkit's side of the hot timecode, for UIF's own sources.
#pragma once

#include "zebui/HotField.h"

namespace UIF {

using zebui::controls::HotKey;
using zebui::controls::InlineEditor;

// The field of a timecode. It knows nothing of time: what it shows and what is done with a gesture is its owner's.
class HotTimecodeWidget : public zebui::controls::HotFieldWidget {
 public:
  using HotFieldWidget::HotFieldWidget;
};

} // namespace UIF
