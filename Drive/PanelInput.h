#pragma once

#include "Drive/CaptionsInspector.h"
#include "Drive/Driver.h"
#include "UIF/View.h"

// What requests that act as a person have in common.
namespace Drive {

// The modifier keys are held down for as long as this lives.
class HeldKeys {
 public:
  explicit HeldKeys(std::uint8_t flags) { UIF::KeyModifiers::SetCurrent(UIF::KeyModifiers(flags)); }
  ~HeldKeys() { UIF::KeyModifiers::SetCurrent(UIF::KeyModifiers()); }
  HeldKeys(const HeldKeys&) = delete;
  HeldKeys& operator=(const HeldKeys&) = delete;
};

// The row that the field "row" names by its begin time; RequestError if there is none, or if it is not in view.
Captivo::CaptionsInspector::Row RealizedRow(Driver& driver, const Fields& fields);

} // namespace Drive
