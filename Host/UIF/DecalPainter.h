// For the sources of UIF, DLG, App and Drive only: the drawings behind bitmaps.
#pragma once

#include <QColor>
#include <QPainter>

#include "UIF/Bitmap.h"

namespace UIF {

// Into the square in the middle of the rectangle; sharp where that is a multiple of 16 device pixels wide and starts on
// one. accent: of the part that stands for a colour.
void PaintDecal(QPainter& painter, DecalID decal, const QRectF& rect, const QColor& ink, const QColor& accent);
// The pipette beside a colour.
void PaintEyedropper(QPainter& painter, const QRectF& rect, const QColor& ink);

} // namespace UIF
