#include "DLG/ColorPickerDialog.h"

#include <QApplication>
#include <QColorDialog>

#include "DLG/ModalScope.h"
#include "zebcore/Localizer.h"
#include "zebcore/Trace.h"
#include "zebui/Toolkit.h"

namespace DLG {

namespace toolkit = zebui::toolkit;

namespace {

ColorPickerDialog::Hook& GetHook() {
  static ColorPickerDialog::Hook hook;
  return hook;
}

UIF::Color FromQt(const QColor& color) {
  return {static_cast<std::uint8_t>(color.red()), static_cast<std::uint8_t>(color.green()),
          static_cast<std::uint8_t>(color.blue())};
}

std::optional<UIF::Color> Ask(const UIF::Color& current) {
  // The program's own window on every desktop: in its theme, and with a field for a number such as #ff8800.
  QColorDialog dialog(QColor(current.red, current.green, current.blue), QApplication::activeWindow());
  dialog.setOption(QColorDialog::DontUseNativeDialog);
  dialog.setWindowTitle(
      toolkit::ToQt(zebcore::config::Localizer::Get().Localize("$$$/Vidra/DLG/ColorPicker/Title=Choose a Color")));
  const ModalScope modal;
  const bool accepted = dialog.exec() == QDialog::Accepted;
  return accepted ? std::optional(FromQt(dialog.selectedColor())) : std::nullopt;
}

} // namespace

bool ColorPickerDialog::PickColor(const UIF::Color& current, UIF::Color& result) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("ColorPickerDialog::PickColor", {{"color", {current.red, current.green, current.blue}}});
  std::optional<UIF::Color> picked;
  if (const Hook hook = GetHook())
    picked = hook(current);
  else if (toolkit::HasApplication())
    picked = Ask(current);
  result = picked.value_or(current);
  return picked.has_value();
}

void ColorPickerDialog::SetHook(Hook hook) {
  GetHook() = std::move(hook);
}

} // namespace DLG
