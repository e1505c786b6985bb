#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QSize>

#include "App/monitor/CaptionScreen.h"

class QPainter;

// Closed captions drawn as a decoder of their standard draws them.
namespace App::monitor {

// Where the cells lie in a picture.
struct ScreenGeometry {
  QRectF area; // of all rows and columns
  double cellWidth = 0.0;
  double cellHeight = 0.0;
  // In whole pixels, so that boxes meet without a seam. rows: how many are taken together.
  QRectF GetCell(int row, int column, int rows = 1) const;
};

// picture: the rectangle of the whole picture, its width and height as they are seen.
ScreenGeometry MeasureScreen(const CaptionScreen& screen, const QRectF& picture);

void PaintScreen(QPainter& painter, const CaptionScreen& screen, const QRectF& picture);
// Over a picture of one colour.
QImage PaintScreen(const CaptionScreen& screen, const QSize& size, const QColor& behind);

// Lines between the cells that captions may use, and the number of each row beside it.
void PaintGrid(QPainter& painter, const CaptionScreen& screen, const QRectF& picture);
// Safe action and safe title areas: 93 and 90 percent (SMPTE ST 2046-1), and the 80 percent of older sets.
void PaintSafeAreas(QPainter& painter, const QRectF& picture);

} // namespace App::monitor
