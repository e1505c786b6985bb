#include "UIF/ProgramStyle.h"

#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QPen>
#include <QStyleFactory>
#include <QStyleOption>
#include <QStyleOptionSlider>
#include <QWidget>

#include <algorithm>

namespace UIF {

namespace {

constexpr int kScrollBarWidth = 14;
constexpr int kHandleMargin = 3;
constexpr int kShortestHandle = 28;
constexpr int kSeparatorWidth = 5;
constexpr int kSmallIcon = 16;
constexpr double kCorner = 3.0;
constexpr double kRing = 1.5;

QPalette::ColorGroup GroupOf(const QStyleOption& option) {
  return option.state & QStyle::State_Enabled ? QPalette::Active : QPalette::Disabled;
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128;
}

// Towards the text, away from the surface.
QColor Stronger(const QPalette& palette, const QColor& color, int percent) {
  return IsDark(palette) ? color.lighter(100 + percent) : color.darker(100 + percent);
}

void StrokeFrame(QPainter& painter, const QRect& rect, const QColor& color, double width, double corner = kCorner) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(color, width));
  const double half = width / 2;
  painter.drawRoundedRect(QRectF(rect).adjusted(half, half, -half, -half), corner, corner);
  painter.restore();
}

// A frame says too whether what it surrounds has the focus.
void PaintFrame(QPainter& painter, const QStyleOption& option) {
  if ((option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_Enabled))
    StrokeFrame(painter, option.rect, option.palette.color(QPalette::Link), kRing);
  else
    StrokeFrame(painter, option.rect, option.palette.color(GroupOf(option), QPalette::Mid), 1);
}

void PaintButton(QPainter& painter, const QStyleOption& option) {
  QColor fill = option.palette.color(GroupOf(option), QPalette::Button);
  if (option.state & (QStyle::State_Sunken | QStyle::State_On))
    fill = Stronger(option.palette, fill, 18);
  else if ((option.state & QStyle::State_MouseOver) && (option.state & QStyle::State_Enabled))
    fill = Stronger(option.palette, fill, 6);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(fill);
  painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
  painter.restore();
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  const bool isDefault = button && (button->features & QStyleOptionButton::DefaultButton);
  if (isDefault && (option.state & QStyle::State_Enabled) && !(option.state & QStyle::State_HasFocus))
    StrokeFrame(painter, option.rect, option.palette.color(QPalette::Link), 1);
  else
    PaintFrame(painter, option);
}

// The plain style draws the frame of a box a little darker than the window, which is next to nothing on a dark one.
void PaintIndicatorFrame(QPainter& painter, const QStyleOption& option, bool isRound) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(option.palette.color(QPalette::PlaceholderText), 1));
  const QRectF frame = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
  if (isRound)
    painter.drawEllipse(frame);
  else
    painter.drawRoundedRect(frame, 2, 2);
  painter.restore();
}

QRect HandleOf(const QStyleOptionSlider& bar, const QRect& groove) {
  const bool isUpright = bar.orientation == Qt::Vertical;
  const int room = isUpright ? groove.height() : groove.width();
  const std::int64_t range = std::int64_t{bar.maximum} - bar.minimum;
  if (range <= 0)
    return groove;
  const auto share = static_cast<int>(std::int64_t{bar.pageStep} * room / (range + bar.pageStep));
  const int length = std::min(room, std::max(kShortestHandle, share));
  const int start =
      QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, room - length, bar.upsideDown);
  return isUpright ? QRect(groove.left(), groove.top() + start, groove.width(), length)
                   : QRect(groove.left() + start, groove.top(), length, groove.height());
}

QRect PartOfScrollBar(const QStyleOptionSlider& bar, QStyle::SubControl part) {
  const QRect groove = bar.rect;
  const QRect handle = HandleOf(bar, groove);
  const bool isUpright = bar.orientation == Qt::Vertical;
  switch (part) {
  case QStyle::SC_ScrollBarGroove:
    return groove;
  case QStyle::SC_ScrollBarSlider:
    return handle;
  case QStyle::SC_ScrollBarSubPage:
    return isUpright ? QRect(groove.topLeft(), QPoint(groove.right(), handle.top() - 1))
                     : QRect(groove.topLeft(), QPoint(handle.left() - 1, groove.bottom()));
  case QStyle::SC_ScrollBarAddPage:
    return isUpright ? QRect(QPoint(groove.left(), handle.bottom() + 1), groove.bottomRight())
                     : QRect(QPoint(handle.right() + 1, groove.top()), groove.bottomRight());
  default:
    return {}; // no arrows
  }
}

// The symbol of a chosen line is made for the strong ground that the line has only where the focus is.
QStyleOptionViewItem WithPlainIcon(QStyleOptionViewItem item) {
  const bool isWeak = (item.state & QStyle::State_Selected) && !(item.state & QStyle::State_Active);
  if (!isWeak || item.icon.isNull())
    return item;
  const qreal scale = item.widget ? item.widget->devicePixelRatioF() : 1.0;
  const QPixmap symbol = item.icon.pixmap(item.decorationSize, scale, QIcon::Normal);
  item.icon = QIcon(symbol);
  item.icon.addPixmap(symbol, QIcon::Selected);
  return item;
}

void PaintScrollBar(QPainter& painter, const QStyleOptionSlider& bar) {
  painter.fillRect(bar.rect, bar.palette.color(QPalette::Window));
  if (bar.maximum <= bar.minimum || !(bar.state & QStyle::State_Enabled))
    return;
  const bool isUpright = bar.orientation == Qt::Vertical;
  const QRect part = PartOfScrollBar(bar, QStyle::SC_ScrollBarSlider);
  const QRectF handle = QRectF(part).adjusted(isUpright ? kHandleMargin : 1, isUpright ? 1 : kHandleMargin,
                                              isUpright ? -kHandleMargin : -1, isUpright ? -1 : -kHandleMargin);
  const bool isHeld = bar.activeSubControls & QStyle::SC_ScrollBarSlider;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(bar.palette.color(QPalette::Active, isHeld ? QPalette::PlaceholderText : QPalette::Mid));
  const double corner = std::min(handle.width(), handle.height()) / 2;
  painter.drawRoundedRect(handle, corner, corner);
  painter.restore();
}

} // namespace

ProgramStyle::ProgramStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

int ProgramStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  switch (metric) {
  case PM_ScrollBarExtent:
    return kScrollBarWidth;
  case PM_ScrollBarSliderMin:
    return kShortestHandle;
  case PM_DockWidgetSeparatorExtent:
    return kSeparatorWidth;
  case PM_SmallIconSize:
    return kSmallIcon;
  default:
    return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returned) const {
  if (hint == SH_ToolTip_WakeUpDelay && widget) {
    const int delay = widget->property("toolTipDelay").toInt();
    if (delay > 0)
      return delay;
  }
  return QProxyStyle::styleHint(hint, option, widget, returned);
}

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
  switch (element) {
  case PE_PanelButtonCommand:
    PaintButton(*painter, *option);
    return;
  case PE_FrameLineEdit:
    PaintFrame(*painter, *option);
    return;
  case PE_PanelScrollAreaCorner:
    painter->fillRect(option->rect, option->palette.color(QPalette::Window));
    return;
  case PE_Frame:
    StrokeFrame(*painter, option->rect, option->palette.color(GroupOf(*option), QPalette::Mid), 1, 0);
    return;
  default:
    break;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool isRound = element == PE_IndicatorRadioButton;
  if (isRound || element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck)
    PaintIndicatorFrame(*painter, *option, isRound);
}

void ProgramStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  if (const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option); item && element == CE_ItemViewItem) {
    const QStyleOptionViewItem plain = WithPlainIcon(*item);
    QProxyStyle::drawControl(element, &plain, painter, widget);
    return;
  }
  if (element != CE_HeaderSection && element != CE_HeaderEmptyArea) {
    QProxyStyle::drawControl(element, option, painter, widget);
    return;
  }
  painter->fillRect(option->rect, option->palette.color(QPalette::Button));
  QColor line = option->palette.color(QPalette::Mid);
  line.setAlphaF(0.6F);
  painter->setPen(line);
  painter->drawLine(option->rect.bottomLeft(), option->rect.bottomRight());
  if (element == CE_HeaderSection)
    painter->drawLine(option->rect.topRight() + QPoint(0, 4), option->rect.bottomRight() - QPoint(0, 4));
}

void ProgramStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                      const QWidget* widget) const {
  if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option); bar && control == CC_ScrollBar) {
    PaintScrollBar(*painter, *bar);
    return;
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (control == CC_SpinBox)
    PaintFrame(*painter, *option);
}

QRect ProgramStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                   const QWidget* widget) const {
  if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option); bar && control == CC_ScrollBar)
    return visualRect(bar->direction, bar->rect, PartOfScrollBar(*bar, part));
  return QProxyStyle::subControlRect(control, option, part, widget);
}

} // namespace UIF
