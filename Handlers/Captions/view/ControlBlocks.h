#pragma once

#include "Captions/shell/HostTypes.h"
#include "Captions/view/ViewTexts.h"
#include "zebui/HotNumber.h"
#include "zebui/Popup.h"
#include "zebui/StaticControls.h"

// What the blocks that build the bar's controls have in common.
namespace Captivo {

inline constexpr int kToolTipDelay = 400; // milliseconds

inline RectT<float> ToFloat(const RectT<int>& rect) {
  return {static_cast<float>(rect.x), static_cast<float>(rect.y), static_cast<float>(rect.width),
          static_cast<float>(rect.height)};
}

inline RectT<int> WithWidth(RectT<int> rect, int width) {
  rect.width = width;
  return rect;
}

struct NumberRange {
  int decimalPlaces;
  double value;
  double min;
  double max;
};

// The second half of a number's block, after it was connected.
inline void SetUpNumber(zebui::controls::UI_HotTextNumber& control, const NumberRange& range, const char* toolTip) {
  control.SetUnknownStateText(Localize(kText_MultipleValues));
  control.SetDecimalPlaces(range.decimalPlaces);
  control.SetValue(range.value);
  control.SetMinValue(range.min);
  control.SetMaxValue(range.max);
  control.UI_SetToolTip(Localize(toolTip), kToolTipDelay);
  control.UI_Show(true);
  control.SetWantsKeyboardFocus(true);
}

} // namespace Captivo
