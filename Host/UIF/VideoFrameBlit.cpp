#include "UIF/VideoFrameBlit.h"

#include <QImage>
#include <QPainter>

#include "UIF/ViewWidget.h"
#include "zebcore/Trace.h"

namespace UIF::VideoFrameBlit {

void BlitFrame(const zebcore::classref::InterfaceRef<MF::IVideoFrame>& frame, const RectT<int>& source, DC& dc,
               const RectT<int>& target, double opacity) {
  if (!frame)
    return;
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("VideoFrameBlit::BlitFrame", {{"source", {source.x, source.y, source.width, source.height}},
                                                         {"target", {target.x, target.y, target.width, target.height}},
                                                         {"opacity", opacity}});
  const RectT<int> size = frame->GetRect();
  // Blue, green, red and alpha in memory are one 32-bit number to the toolkit on a little-endian machine.
  const QImage image(frame->GetPixels(), size.width, size.height, frame->GetRowBytes(), QImage::Format_ARGB32);
  QPainter& painter = dc.GetImpl().painter;
  painter.save();
  painter.setOpacity(opacity);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(ToQt(target), image, ToQt(source));
  painter.restore();
}

} // namespace UIF::VideoFrameBlit
