#pragma once

#include <functional>
#include <optional>

#include "UIF/Drawing.h"

namespace DLG {

class ColorPickerDialog {
 public:
  // Modal. True, and the colour chosen in result; false when it was cancelled, with current in result, so that whoever
  // does not look at the answer changes nothing.
  static bool PickColor(const UIF::Color& current, UIF::Color& result);

  // In place of the window, for whoever drives the program: the colour chosen, or none for a cancelled dialog; null
  // restores the window.
  using Hook = std::function<std::optional<UIF::Color>(const UIF::Color& current)>;
  static void SetHook(Hook hook);
};

} // namespace DLG
