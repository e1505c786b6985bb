#include "UIF/DecalPainter.h"

#include <algorithm>
#include <cmath>

#include <QPainterPath>
#include <QPainterPathStroker>

namespace UIF {

namespace {

// All drawings lie on a grid of this many units each way.
constexpr qreal kGrid = 16;

QPainterPath Stroked(const QPainterPath& skeleton, qreal width, Qt::PenJoinStyle join = Qt::MiterJoin,
                     Qt::PenCapStyle cap = Qt::FlatCap) {
  QPainterPathStroker stroker;
  stroker.setWidth(width);
  stroker.setJoinStyle(join);
  stroker.setCapStyle(cap);
  stroker.setMiterLimit(6);
  return stroker.createStroke(skeleton).simplified();
}

QPainterPath Rect(qreal x, qreal y, qreal width, qreal height) {
  QPainterPath path;
  path.addRect(x, y, width, height);
  return path;
}

QPainterPath RoundRect(qreal x, qreal y, qreal width, qreal height, qreal radius) {
  QPainterPath path;
  path.addRoundedRect(x, y, width, height, radius, radius);
  return path;
}

// Three lines of text, the middle one shorter.
QPainterPath Lines(qreal middleX) {
  QPainterPath path = Rect(2, 3, 12, 2);
  path.addRect(middleX, 7, 8, 2);
  path.addRect(2, 11, 12, 2);
  return path;
}

// A capital A that stands on the bottom line.
QPainterPath LetterA(qreal center, qreal top, qreal bottom, qreal halfWidth, qreal weight) {
  const qreal height = bottom - top;
  QPainterPath outside;
  outside.moveTo(center - halfWidth, bottom);
  outside.lineTo(center - weight * 0.62, top);
  outside.lineTo(center + weight * 0.62, top);
  outside.lineTo(center + halfWidth, bottom);
  outside.lineTo(center + halfWidth - weight * 1.15, bottom);
  outside.lineTo(center, top + weight * 1.3);
  outside.lineTo(center - halfWidth + weight * 1.15, bottom);
  outside.closeSubpath();
  const qreal barTop = std::round(bottom - height * 0.36);
  const qreal reach = halfWidth * 0.66;
  return outside.united(Rect(center - reach, barTop - weight * 0.4, 2 * reach, weight * 0.8));
}

QPainterPath LetterB() {
  QPainterPath skeleton;
  skeleton.moveTo(5, 3);
  skeleton.lineTo(8.2, 3);
  skeleton.cubicTo(11.7, 3, 11.7, 7.7, 8.2, 7.7);
  skeleton.lineTo(5, 7.7);
  skeleton.moveTo(8.4, 7.7);
  skeleton.cubicTo(12.6, 7.7, 12.6, 13, 8.4, 13);
  skeleton.lineTo(5, 13);
  return Stroked(skeleton, 2).united(Rect(4, 2, 2.5, 12));
}

QPainterPath LetterI() {
  QPainterPath stem;
  stem.moveTo(9.6, 3);
  stem.lineTo(6.4, 13);
  return Stroked(stem, 1.8).united(Rect(7, 2, 5, 1.5)).united(Rect(4, 12.5, 5, 1.5));
}

QPainterPath LetterU() {
  QPainterPath skeleton;
  skeleton.moveTo(5, 2);
  skeleton.lineTo(5, 7.2);
  skeleton.cubicTo(5, 11.2, 11, 11.2, 11, 7.2);
  skeleton.lineTo(11, 2);
  return Stroked(skeleton, 2).united(Rect(3, 13, 10, 1));
}

QPainterPath Note() {
  QPainterPath head;
  head.addEllipse(QPointF(0, 0), 3.1, 2.3);
  QTransform place;
  place.translate(5.7, 11.8);
  place.rotate(-22);
  QPainterPath flag;
  flag.moveTo(7, 2);
  flag.lineTo(8.5, 2);
  flag.cubicTo(8.8, 4.4, 13.2, 5, 12, 9.6);
  flag.cubicTo(11.6, 7.4, 10, 6.6, 8.5, 6.6);
  flag.lineTo(8.5, 11.4);
  flag.lineTo(7, 11.4);
  flag.closeSubpath();
  return place.map(head).united(flag);
}

void Fill(QPainter& painter, const QPainterPath& path, const QColor& color) {
  painter.fillPath(path, color);
}

void PaintOnGrid(QPainter& painter, DecalID decal, const QColor& ink, const QColor& accent) {
  switch (decal) {
  case kCaptionJustifyLeftDecal:
    return Fill(painter, Lines(2), ink);
  case kCaptionJustifyCenterDecal:
    return Fill(painter, Lines(4), ink);
  case kCaptionJustifyRightDecal:
    return Fill(painter, Lines(6), ink);
  case kCaptionBoldDecal:
    return Fill(painter, LetterB(), ink);
  case kCaptionItalicizeDecal:
    return Fill(painter, LetterI(), ink);
  case kCaptionUnderlineDecal:
    return Fill(painter, LetterU(), ink);
  case kCaptionMusicNoteDecal:
    return Fill(painter, Note(), ink);
  case kCaptionBackgroundColorDecal:
    // The letter is cut out of its box.
    return Fill(painter, RoundRect(1, 2, 14, 12, 1.5).subtracted(LetterA(8, 4, 12, 4.2, 1.6)), accent);
  case kCaptionTextColorDecal:
    Fill(painter, LetterA(8, 1, 11, 5, 2), ink);
    return Fill(painter, Rect(2, 13, 12, 2), accent);
  case kCaptionTextOutlineColorDecal: {
    // The letter is empty, only its edge is drawn.
    const QPainterPath letter = LetterA(8, 3, 13, 5, 2);
    return Fill(painter, Stroked(letter, 2.6, Qt::RoundJoin).united(letter).subtracted(letter), accent);
  }
  case kNoDecal:
    return;
  }
}

// Maps the grid to the square in the middle of the rectangle, on whole device pixels.
void PlaceGrid(QPainter& painter, const QRectF& rect) {
  const qreal ratio = painter.device() ? painter.device()->devicePixelRatioF() : 1;
  const qreal side = std::min(rect.width(), rect.height());
  const auto snap = [ratio](qreal value) { return std::floor(value * ratio + 0.01) / ratio; };
  painter.translate(snap(rect.left() + (rect.width() - side) / 2), snap(rect.top() + (rect.height() - side) / 2));
  painter.scale(side / kGrid, side / kGrid);
  painter.setRenderHint(QPainter::Antialiasing);
}

} // namespace

void PaintDecal(QPainter& painter, DecalID decal, const QRectF& rect, const QColor& ink, const QColor& accent) {
  painter.save();
  PlaceGrid(painter, rect);
  PaintOnGrid(painter, decal, ink, accent);
  painter.restore();
}

void PaintEyedropper(QPainter& painter, const QRectF& rect, const QColor& ink) {
  painter.save();
  PlaceGrid(painter, rect);
  // Upright, tip down, then tilted.
  painter.translate(8, 8);
  painter.rotate(45);
  QPainterPath tube;
  tube.moveTo(-1.7, -1.6);
  tube.lineTo(-1.7, 4.4);
  tube.lineTo(0, 7.4);
  tube.lineTo(1.7, 4.4);
  tube.lineTo(1.7, -1.6);
  Fill(painter, Stroked(tube, 1.2, Qt::RoundJoin), ink);
  Fill(painter, RoundRect(-2, -8.4, 4, 6, 2).united(RoundRect(-3.6, -3.4, 7.2, 2, 0.8)), ink);
  painter.restore();
}

} // namespace UIF
