#include "UIF/Theme.h"

#include <QApplication>
#include <QPalette>

#include "UIF/ProgramStyle.h"
#include "UIF/ViewWidget.h"

namespace UIF {

namespace {

constexpr int kFontPixels = 13;

struct Colors {
  QColor window;
  QColor base;
  QColor alternate;
  QColor text;
  QColor weakText;
  QColor button;
  QColor accent;
  QColor onAccent;
  QColor link;
  QColor frame;     // of controls, 3 to 1 against what is around them
  QColor weakFrame; // of controls that are off
  QColor mark;      // under what is selected where the focus is not
};

Colors ColorsOf(Theme theme) {
  const QColor window = ToQt(ColorManager::GetColor(kColor_WindowBackground));
  const QColor text = ToQt(ColorManager::GetColor(kColor_ReversibleBlack));
  if (theme == Theme::Dark)
    return {window,          {22, 24, 29},    {27, 30, 35},  text,
            {172, 179, 189}, {48, 53, 62},    {37, 99, 235}, {255, 255, 255},
            {124, 176, 255}, {115, 122, 133}, {66, 71, 81},  {49, 74, 117}};
  return {window,         {255, 255, 255}, {240, 242, 246}, text,
          {92, 100, 112}, {234, 237, 242}, {29, 99, 209},   {255, 255, 255},
          {18, 86, 190},  {134, 141, 152}, {203, 208, 215}, {184, 207, 243}};
}

QPalette PaletteOf(const Colors& colors) {
  QPalette palette(colors.text, colors.button, colors.button.lighter(120), colors.button.darker(150),
                   colors.button.darker(115), colors.text, colors.text, colors.base, colors.window);
  palette.setColor(QPalette::AlternateBase, colors.alternate);
  palette.setColor(QPalette::PlaceholderText, colors.weakText);
  palette.setColor(QPalette::Highlight, colors.accent);
  palette.setColor(QPalette::HighlightedText, colors.onAccent);
  palette.setColor(QPalette::Inactive, QPalette::Highlight, colors.mark);
  palette.setColor(QPalette::Inactive, QPalette::HighlightedText, colors.text);
  palette.setColor(QPalette::Link, colors.link);
  palette.setColor(QPalette::Mid, colors.frame);
  palette.setColor(QPalette::Disabled, QPalette::Mid, colors.weakFrame);
  palette.setColor(QPalette::ToolTipBase, colors.base);
  palette.setColor(QPalette::ToolTipText, colors.text);
  for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, colors.weakText);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, colors.weakText);
  return palette;
}

} // namespace

void ApplyTheme(Theme theme) {
  ColorManager::SetTheme(theme);
  if (!zebui::toolkit::HasApplication())
    return;
  if (!dynamic_cast<ProgramStyle*>(QApplication::style()))
    QApplication::setStyle(new ProgramStyle);
  QFont font = QApplication::font();
  font.setPixelSize(kFontPixels);
  QApplication::setFont(font);
  QApplication::setPalette(PaletteOf(ColorsOf(theme)));
}

} // namespace UIF
