#include "Drive/PanelInput.h"

#include "UIF/TabView.h"

namespace Drive {

Captivo::CaptionsInspector::Row RealizedRow(Driver& driver, const Fields& fields) {
  driver.CreatedView();
  const auto row = Captivo::CaptionsInspector(driver.Handler()).FindRow(fields.Time("row"));
  if (!row)
    fields.Refuse("row", "no row begins there");
  if (!row->textEdit)
    fields.Refuse("row", "the row is not in view, so it has no controls");
  return *row;
}

} // namespace Drive
