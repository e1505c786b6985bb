#include "App/window/MonitorView.h"

#include <QEvent>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "App/monitor/ScreenPainter.h"
#include "HSL/RenderOpenCaptions.h"

namespace App {

namespace {

constexpr QSize kLeastSize{160, 90};
constexpr QSize kUsualSize{384, 216};
constexpr int kMargin = 6;
constexpr double kUsualAspect = 16.0 / 9.0;
constexpr int kResizeMilliseconds = 120;
// In the place of a picture that there is not.
constexpr QColor kNoPicture(48, 48, 48);

struct PictureFacts {
  MonitorFrames::Video video;
  int width = 0; // of the video's own frame
  int height = 0;
  double aspect = kUsualAspect; // as it is seen
};

PictureFacts FactsOf(const BE::CaptioningStream& stream) {
  PictureFacts facts;
  const auto clip = stream.GetMasterClip();
  if (!clip)
    return facts;
  facts.video = clip->IsStill() ? clip.Query<BE::IVideoSegments>()
                                : clip->GetClip(BE::kMediaType_Video, 0).Query<BE::IVideoSegments>();
  const BE::MediaInfo& media = clip->GetMediaInfo();
  if (media.width <= 0 || media.height <= 0)
    return facts;
  facts.width = media.width;
  facts.height = media.height;
  const double aspect = media.width * media.pixelAspect.ToDouble() / media.height;
  if (aspect > 0.0 && std::isfinite(aspect))
    facts.aspect = aspect;
  return facts;
}

// The frame itself is never drawn upon.
BE::InterfaceRef<MF::IVideoFrame> Copy(const BE::InterfaceRef<MF::IVideoFrame>& frame) {
  const auto rect = frame->GetRect();
  auto copy = MF::CreateVideoFrame(rect.width, rect.height, frame->GetPixelAspectRatio());
  constexpr int kBytesPerPixel = 4;
  for (int y = 0; y < rect.height; ++y)
    std::memcpy(copy->GetWritablePixels() + static_cast<std::ptrdiff_t>(y) * copy->GetRowBytes(),
                frame->GetPixels() + static_cast<std::ptrdiff_t>(y) * frame->GetRowBytes(),
                static_cast<std::size_t>(rect.width) * kBytesPerPixel);
  return copy;
}

BE::InterfaceRef<MF::IVideoFrame> MakeEmptyFrame(const QSize& size) {
  auto frame = MF::CreateVideoFrame(size.width(), size.height(), zebmediatypes::kPixelAspectRatio_Square);
  const auto rect = frame->GetRect();
  QImage(frame->GetWritablePixels(), rect.width, rect.height, frame->GetRowBytes(), QImage::Format_ARGB32)
      .fill(kNoPicture);
  return frame;
}

QImage ToImage(const BE::InterfaceRef<MF::IVideoFrame>& frame) {
  const auto rect = frame->GetRect();
  return QImage(frame->GetPixels(), rect.width, rect.height, frame->GetRowBytes(), QImage::Format_RGB32).copy();
}

} // namespace

MonitorView::MonitorView() : mWantSoon(new QTimer(this)) {
  setMinimumSize(kLeastSize);
  mWantSoon->setSingleShot(true);
  connect(mWantSoon, &QTimer::timeout, this, [this] { WantFrame(); });
  mFrames.whenChanged = [this] {
    mComposed = QImage();
    update();
  };
}

QSize MonitorView::sizeHint() const {
  return kUsualSize;
}

void MonitorView::Show(const Stream& stream, zebmediatypes::TickTime time) {
  mStream = stream;
  mTime = time;
  mScreen = stream ? monitor::MakeScreen(*stream, time) : monitor::CaptionScreen();
  mComposed = QImage();
  WantFrame();
  update();
}

void MonitorView::SetHint(const QString& hint) {
  mHint = hint;
  update();
}

void MonitorView::SetGridShown(bool shown) {
  mGridShown = shown;
  update();
}

void MonitorView::SetSafeAreaShown(bool shown) {
  mSafeAreaShown = shown;
  update();
}

QRect MonitorView::GetPictureRect() const {
  if (!mStream)
    return {};
  const QRect room = rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
  const double aspect = FactsOf(*mStream).aspect;
  const int width = std::clamp(static_cast<int>(std::lround(room.height() * aspect)), 1, std::max(1, room.width()));
  const int height = std::clamp(static_cast<int>(std::lround(width / aspect)), 1, std::max(1, room.height()));
  return {room.left() + (room.width() - width) / 2, room.top() + (room.height() - height) / 2, width, height};
}

void MonitorView::WantFrame() {
  if (!mStream || !isVisible()) {
    mFrames.Want(nullptr, {}, {});
    return;
  }
  const QSizeF size = QSizeF(GetPictureRect().size()) * devicePixelRatioF();
  mFrames.Want(FactsOf(*mStream).video, mTime, size.toSize());
}

const QImage& MonitorView::Compose() {
  if (!mComposed.isNull())
    return mComposed;
  const QSize size = (QSizeF(GetPictureRect().size()) * devicePixelRatioF()).toSize();
  const auto frame = mFrames.Get();
  const auto model = mStream->GetRenderableModel(mTime);
  if (model) {
    const auto drawn = frame ? Copy(frame) : MakeEmptyFrame(size);
    const auto rect = drawn->GetRect();
    const zebcore::geom::RectT<int> source{0, 0, model->GetFrameWidth(), model->GetFrameHeight()};
    HSL::RenderOpenCaptions(model, {0, 0, rect.width, rect.height}, drawn->GetPixelAspectRatio(), drawn, source, source,
                            -1, -1, 1.0);
    mComposed = ToImage(drawn);
  } else if (frame) {
    mComposed = ToImage(frame);
  } else {
    mComposed = QImage(size, QImage::Format_RGB32);
    mComposed.fill(kNoPicture);
  }
  return mComposed;
}

void MonitorView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Window).darker(108));
  if (!mStream) {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(rect().adjusted(4 * kMargin, kMargin, -4 * kMargin, -kMargin), Qt::AlignCenter | Qt::TextWordWrap,
                     mHint);
    return;
  }
  const QRect picture = GetPictureRect();
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(picture, Compose());
  const QRectF exact(picture);
  if (mGridShown)
    monitor::PaintGrid(painter, mScreen, exact);
  monitor::PaintScreen(painter, mScreen, exact);
  if (mSafeAreaShown)
    monitor::PaintSafeAreas(painter, exact);
}

// While the size is being dragged the picture that is there is stretched.
void MonitorView::resizeEvent(QResizeEvent*) {
  if (!mFrames.Get())
    mComposed = QImage();
  mWantSoon->start(kResizeMilliseconds);
}

void MonitorView::showEvent(QShowEvent*) {
  mWantSoon->start(0);
}

void MonitorView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange)
    update();
  QWidget::changeEvent(event);
}

} // namespace App
