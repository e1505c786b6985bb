#include "DLG/ColorPickerDialog.h"

#include <QApplication>
#include <QColorDialog>
#include <QCoreApplication>
#include <QTranslator>

#include <string_view>

#include "UIF/ModalScope.h"
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

// The toolkit's texts of its dialog, in the program's language.
struct DialogText {
  std::string_view source;
  const char* text;
};
const DialogText kTexts[] = {
    {"&Basic colors", "$$$/Vidra/DLG/ColorPicker/Basic=&Basic colors"},
    {"&Custom colors", "$$$/Vidra/DLG/ColorPicker/Custom=&Custom colors"},
    {"&Add to Custom Colors", "$$$/Vidra/DLG/ColorPicker/AddCustom=&Add to Custom Colors"},
    {"&Pick Screen Color", "$$$/Vidra/DLG/ColorPicker/PickScreen=&Pick Screen Color"},
    {"Cursor at %1, %2\nPress ESC to cancel",
     "$$$/Vidra/DLG/ColorPicker/Picking=Pointer at %1, %2\nPress Escape to leave"},
    {"Hu&e:", "$$$/Vidra/DLG/ColorPicker/Hue=Hu&e:"},
    {"&Sat:", "$$$/Vidra/DLG/ColorPicker/Saturation=&Sat:"},
    {"&Val:", "$$$/Vidra/DLG/ColorPicker/Value=&Val:"},
    {"&Red:", "$$$/Vidra/DLG/ColorPicker/Red=&Red:"},
    {"&Green:", "$$$/Vidra/DLG/ColorPicker/Green=&Green:"},
    {"Bl&ue:", "$$$/Vidra/DLG/ColorPicker/Blue=Bl&ue:"},
    {"&HTML:", "$$$/Vidra/DLG/ColorPicker/Number=&HTML:"},
    {"OK", "$$$/Vidra/DLG/ColorPicker/OK=OK"},
    {"&OK", "$$$/Vidra/DLG/ColorPicker/OK=OK"},
    {"Cancel", "$$$/Vidra/DLG/ColorPicker/Cancel=Cancel"},
};

// Answers the toolkit while it lives.
class DialogTranslator : public QTranslator {
 public:
  DialogTranslator() { QCoreApplication::installTranslator(this); }
  ~DialogTranslator() override { QCoreApplication::removeTranslator(this); }

  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char*, int) const override {
    if (std::string_view(context) != "QColorDialog" && std::string_view(context) != "QPlatformTheme")
      return {};
    for (const DialogText& one : kTexts)
      if (one.source == source)
        return toolkit::ToQt(zebcore::config::Localizer::Get().Localize(one.text));
    return {};
  }
};

std::optional<UIF::Color> Ask(const UIF::Color& current) {
  // The program's own window on every desktop: in its theme, and with a field for a number such as #ff8800.
  const DialogTranslator translator;
  QColorDialog dialog(QColor(current.red, current.green, current.blue), QApplication::activeWindow());
  dialog.setOption(QColorDialog::DontUseNativeDialog);
  dialog.setWindowTitle(
      toolkit::ToQt(zebcore::config::Localizer::Get().Localize("$$$/Vidra/DLG/ColorPicker/Title=Choose a Color")));
  const UIF::ModalScope modal;
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
