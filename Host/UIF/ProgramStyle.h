// The toolkit's plain style as the program wears it. For UIF's own sources.
#pragma once

#include <QProxyStyle>

namespace UIF {

// Flat surfaces with frames that can be seen in both themes, slim scroll bars without arrows, the program's measures,
// and the delay that a control asks for before its tip comes up. Frames take the palette's Mid.
class ProgramStyle : public QProxyStyle {
 public:
  ProgramStyle();

  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
};

} // namespace UIF
