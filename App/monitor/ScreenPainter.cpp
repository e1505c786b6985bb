#include "App/monitor/ScreenPainter.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QString>

#include <algorithm>
#include <cmath>

namespace App::monitor {

using zebcaptioning::CaptioningColor;
using zebcaptioning::FormatFamily;
using zebcaptioning::TextSpanAttributes;

namespace {

// The safe title area of CTA-608 and 708 displays.
constexpr double kShareOfCEA = 0.8;
// From here on a picture counts as wide.
constexpr double kWideAspect = 1.5;
constexpr double kStandardAspect = 4.0 / 3.0;
// A Teletext page: 25 rows of ten lines out of 288, 40 characters of one microsecond out of 52 (ETSI EN 300 706).
constexpr double kShareOfPageWidth = 40.0 / 52.0;
constexpr double kShareOfPageHeight = 250.0 / 288.0;
constexpr int kRowsOfPage = 25;
// Glyphs are measured at this size and stretched to their cells.
constexpr int kMeasuredPixels = 64;
constexpr double kShareOfCellWidth = 0.96;
constexpr double kUnderlineAt = 0.90; // of the height of a cell
constexpr double kUnderlineHeight = 0.06;
constexpr double kPointsOfRow = 18.0; // an edge's width is in points of a row that is so high
constexpr double kShareOfAction = 0.93;
constexpr double kShareOfTitle = 0.90;
constexpr QColor kLines(255, 255, 255, 110);
constexpr QColor kFrame(255, 255, 255, 190);
constexpr QColor kShadow(0, 0, 0, 110);

QColor ToQColor(const CaptioningColor& color) {
  return QColor::fromRgbF(std::clamp(color.red, 0.0F, 1.0F), std::clamp(color.green, 0.0F, 1.0F),
                          std::clamp(color.blue, 0.0F, 1.0F), std::clamp(color.alpha, 0.0F, 1.0F));
}

QString ToText(const zebcore::UString& text) {
  return QString(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
}

bool IsPage(FormatFamily family) {
  return family == FormatFamily::Teletext || family == FormatFamily::EbuN19 || family == FormatFamily::Australian;
}

// Cells are all alike wide; a format that has fonts says which one is drawn in them.
QFont MakeFont(const TextSpanAttributes& look) {
  const bool isNamed = TextSpanAttributes::IsGenericFontName(look.family) && look.family != u"default";
  QFont font(ToText(TextSpanAttributes::GetGenericUIFontName(isNamed ? look.family : zebcore::UString(u"monospace"))));
  font.setPixelSize(kMeasuredPixels);
  font.setItalic(look.italic);
  font.setBold(look.bold);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

void PaintGlyph(QPainter& painter, const QString& text, const TextSpanAttributes& look, const QRectF& cell) {
  const QFont font = MakeFont(look);
  const QFontMetricsF metrics(font);
  const double width = std::max(1.0, metrics.horizontalAdvance(text));
  const double usual = std::max(1.0, metrics.horizontalAdvance(u'M'));
  // One that is wider than the others is made as narrow.
  const double stretchX = cell.width() * kShareOfCellWidth / std::max(width, usual);
  const double stretchY = cell.height() / metrics.height();
  const QPointF baseline((cell.width() / stretchX - width) / 2.0, metrics.ascent());

  painter.save();
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  painter.translate(cell.topLeft());
  painter.scale(stretchX, stretchY);
  painter.setFont(font);
  if (look.edgeWidth > 0.0F && look.edgeColor.alpha > 0.0F) {
    QPainterPath outline;
    outline.addText(baseline, font, text);
    const double pen = 2.0 * static_cast<double>(look.edgeWidth) / kPointsOfRow * metrics.height();
    painter.strokePath(outline, QPen(ToQColor(look.edgeColor), pen, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  }
  painter.setPen(ToQColor(look.textColor));
  painter.drawText(baseline, text);
  painter.restore();
}

// Of a character that begins in the row above.
bool IsLowerHalf(const CaptionScreen& screen, int row, int column) {
  return row > 0 && screen.At(row - 1, column).isDouble;
}

void PaintShadowedLine(QPainter& painter, const QLineF& line) {
  painter.setPen(QPen(kShadow, 3));
  painter.drawLine(line);
  painter.setPen(QPen(kFrame, 1));
  painter.drawLine(line);
}

QRectF Share(const QRectF& picture, double share) {
  const double left = picture.width() * (1.0 - share) / 2.0;
  const double top = picture.height() * (1.0 - share) / 2.0;
  return picture.adjusted(left, top, -left, -top);
}

} // namespace

QRectF ScreenGeometry::GetCell(int row, int column, int rows) const {
  const double left = std::round(area.left() + cellWidth * column);
  const double right = std::round(area.left() + cellWidth * (column + 1));
  const double top = std::round(area.top() + cellHeight * row);
  const double bottom = std::round(area.top() + cellHeight * (row + rows));
  return QRectF(left, top, right - left, bottom - top);
}

ScreenGeometry MeasureScreen(const CaptionScreen& screen, const QRectF& picture) {
  ScreenGeometry geometry;
  if (screen.GetRows() <= 0 || screen.GetColumns() <= 0 || picture.isEmpty())
    return geometry;
  if (IsPage(screen.GetFamily())) {
    const double height = picture.height() * kShareOfPageHeight;
    geometry.cellHeight = height / kRowsOfPage;
    geometry.area.setWidth(picture.width() * kShareOfPageWidth);
    // EBU N19 counts its rows from the one below the page's header.
    const int header = screen.GetFamily() == FormatFamily::EbuN19 ? 1 : 0;
    geometry.area.moveTop(picture.center().y() - height / 2.0 + header * geometry.cellHeight);
    geometry.area.setHeight(geometry.cellHeight * screen.GetRows());
  } else {
    // CEA-608 is made for a 4:3 picture; in a wide one its rows stand where that would be, in the middle.
    const bool isNarrow =
        screen.GetFamily() == FormatFamily::CEA608 && picture.width() > picture.height() * kWideAspect;
    const double width = isNarrow ? picture.height() * kStandardAspect : picture.width();
    geometry.area.setSize({width * kShareOfCEA, picture.height() * kShareOfCEA});
    geometry.area.moveTop(picture.center().y() - geometry.area.height() / 2.0);
    geometry.cellHeight = geometry.area.height() / screen.GetRows();
  }
  geometry.area.moveLeft(picture.center().x() - geometry.area.width() / 2.0);
  geometry.cellWidth = geometry.area.width() / screen.GetColumns();
  return geometry;
}

void PaintScreen(QPainter& painter, const CaptionScreen& screen, const QRectF& picture) {
  const ScreenGeometry geometry = MeasureScreen(screen, picture);
  if (geometry.cellWidth <= 0.0)
    return;
  painter.save();
  painter.setClipRect(picture, Qt::IntersectClip);
  // All boxes first: a letter that leans out of its cell is not cut off by the next one's.
  for (int row = 0; row < screen.GetRows(); ++row)
    for (int column = -1; column <= screen.GetColumns(); ++column)
      if (const ScreenCell& cell = screen.At(row, column); cell.isBoxed)
        painter.fillRect(geometry.GetCell(row, column), ToQColor(cell.look->backgroundColor));
  for (int row = 0; row < screen.GetRows(); ++row) {
    for (int column = 0; column < screen.GetColumns(); ++column) {
      const ScreenCell& cell = screen.At(row, column);
      if (!cell.look)
        continue;
      const QRectF place = geometry.GetCell(row, column, cell.isDouble ? 2 : 1);
      if (!cell.text.empty())
        PaintGlyph(painter, ToText(cell.text), *cell.look, place);
      if (cell.look->underline && !IsLowerHalf(screen, row, column))
        painter.fillRect(QRectF(place.left(), place.top() + place.height() * kUnderlineAt, place.width(),
                                std::max(1.0, place.height() * kUnderlineHeight)),
                         ToQColor(cell.look->textColor));
    }
  }
  painter.restore();
}

QImage PaintScreen(const CaptionScreen& screen, const QSize& size, const QColor& behind) {
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(behind);
  QPainter painter(&image);
  PaintScreen(painter, screen, QRectF(QPointF(), QSizeF(size)));
  return image;
}

void PaintGrid(QPainter& painter, const CaptionScreen& screen, const QRectF& picture) {
  const ScreenGeometry geometry = MeasureScreen(screen, picture);
  if (geometry.cellWidth <= 0.0)
    return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(QPen(kLines, 1));
  const QRectF first = geometry.GetCell(screen.GetTop(), 0);
  const QRectF last = geometry.GetCell(screen.GetRows() - 1, screen.GetColumns() - 1);
  for (int row = screen.GetTop(); row <= screen.GetRows(); ++row) {
    const double y = geometry.GetCell(row, 0).top();
    painter.drawLine(QLineF(first.left(), y, last.right(), y));
  }
  for (int column = 0; column <= screen.GetColumns(); ++column) {
    const double x = geometry.GetCell(0, column).left();
    painter.drawLine(QLineF(x, first.top(), x, last.bottom()));
  }
  QFont font = painter.font();
  font.setPixelSize(std::max(6, static_cast<int>(geometry.cellHeight * 0.7)));
  painter.setFont(font);
  // As the format bar counts them.
  const bool isByRow = screen.GetFamily() == FormatFamily::Teletext || screen.GetFamily() == FormatFamily::Australian;
  for (int row = screen.GetTop(); row < screen.GetRows(); ++row) {
    const QRectF cell = geometry.GetCell(row, 0);
    const QRectF beside(picture.left(), cell.top(), std::max(0.0, cell.left() - geometry.cellWidth - picture.left()),
                        cell.height());
    const QString number = QString::number(isByRow ? row : row + 1);
    painter.setPen(kShadow);
    painter.drawText(beside.translated(1, 1), Qt::AlignRight | Qt::AlignVCenter, number);
    painter.setPen(QColor(255, 255, 255, 200));
    painter.drawText(beside, Qt::AlignRight | Qt::AlignVCenter, number);
  }
  painter.restore();
}

void PaintSafeAreas(QPainter& painter, const QRectF& picture) {
  painter.save();
  painter.setBrush(Qt::NoBrush);
  for (const double share : {kShareOfAction, kShareOfTitle, kShareOfCEA}) {
    const QRectF area = Share(picture, share);
    for (const QLineF& line :
         {QLineF(area.topLeft(), area.topRight()), QLineF(area.topRight(), area.bottomRight()),
          QLineF(area.bottomRight(), area.bottomLeft()), QLineF(area.bottomLeft(), area.topLeft())})
      PaintShadowedLine(painter, line);
  }
  painter.restore();
}

} // namespace App::monitor
