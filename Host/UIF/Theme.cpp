#include "UIF/Theme.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QPen>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>

#include "UIF/ViewWidget.h"

namespace UIF {

namespace {

constexpr int kFontPixels = 13;
constexpr int kScrollBarWidth = 13;

// The toolkit's plain style with the program's measures, and the delay that a control asks for before its tip comes up.
class ProgramStyle : public QProxyStyle {
 public:
  ProgramStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
    switch (metric) {
    case PM_ScrollBarExtent:
      return kScrollBarWidth;
    case PM_DockWidgetSeparatorExtent:
      return 5;
    case PM_SmallIconSize:
      return 16;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
    }
  }

  // The plain style draws the frame of a box a little darker than the window, which is next to nothing on a dark one.
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool isRound = element == PE_IndicatorRadioButton;
    if (!isRound && element != PE_IndicatorCheckBox && element != PE_IndicatorItemViewItemCheck)
      return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(option->palette.color(QPalette::PlaceholderText), 1));
    const QRectF frame = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (isRound)
      painter->drawEllipse(frame);
    else
      painter->drawRoundedRect(frame, 2, 2);
    painter->restore();
  }

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override {
    if (hint == SH_ToolTip_WakeUpDelay && widget) {
      const int delay = widget->property("toolTipDelay").toInt();
      if (delay > 0)
        return delay;
    }
    return QProxyStyle::styleHint(hint, option, widget, returned);
  }
};

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
};

Colors ColorsOf(Theme theme) {
  const QColor window = ToQt(ColorManager::GetColor(kColor_WindowBackground));
  const QColor text = ToQt(ColorManager::GetColor(kColor_ReversibleBlack));
  if (theme == Theme::Dark)
    return {window,       {22, 24, 29},  {27, 30, 35},    text,           {172, 179, 189},
            {48, 53, 62}, {37, 99, 235}, {255, 255, 255}, {124, 176, 255}};
  return {window,          {255, 255, 255}, {240, 242, 246}, text,         {92, 100, 112},
          {234, 237, 242}, {29, 99, 209},   {255, 255, 255}, {18, 86, 190}};
}

QPalette PaletteOf(const Colors& colors) {
  QPalette palette(colors.text, colors.button, colors.button.lighter(120), colors.button.darker(150),
                   colors.button.darker(115), colors.text, colors.text, colors.base, colors.window);
  palette.setColor(QPalette::AlternateBase, colors.alternate);
  palette.setColor(QPalette::PlaceholderText, colors.weakText);
  palette.setColor(QPalette::Highlight, colors.accent);
  palette.setColor(QPalette::HighlightedText, colors.onAccent);
  palette.setColor(QPalette::Link, colors.link);
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
