#include <QFontDatabase>
#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

#include "App/window/Labels.h"
#include "App/window/TimelineMeasures.h"
#include "App/window/TimelineView.h"

// What a timeline looks like. Nothing outside of the view is walked over, and pieces that fall on one pixel are drawn
// once.
namespace App {

using What = TimelineSelection::What;
using namespace timeline;

namespace {

constexpr int kLabelGap = 36;
constexpr int kRadius = 3;
constexpr int kTextMargin = 5;
constexpr int kBadgeWidth = 20;
constexpr int kBadgeHeight = 12;
constexpr int kBandWidth = 4; // the colour of the clip
constexpr int kFewestPixelsForText = 24;

struct Tint {
  int hue;
  int saturation;
};
// Far enough apart to be told from their neighbours.
constexpr Tint kTints[] = {{212, 120}, {28, 130}, {152, 95}, {282, 85}, {350, 105}, {188, 110}, {48, 120}, {236, 80}};

QColor PieceColor(int hue, bool isVideo, bool dark) {
  const Tint tint = kTints[hue % 8];
  const int lightness = dark ? (isVideo ? 62 : 50) : (isVideo ? 206 : 222);
  return QColor::fromHsl(tint.hue, dark ? tint.saturation * 2 / 3 : tint.saturation, lightness);
}

QColor BandColor(int hue, bool dark) {
  return QColor::fromHsl(kTints[hue % 8].hue, 150, dark ? 140 : 110);
}

QFont SmallFont(const QFont& font) {
  QFont small = font;
  small.setPixelSize(11);
  return small;
}

QColor Mixed(const QColor& a, const QColor& b, double share) {
  const auto mix = [share](int x, int y) { return static_cast<int>(std::lround(x * (1 - share) + y * share)); };
  return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

// The distance between two labels: whole frames, seconds, minutes or hours that people count by.
std::int64_t ChooseStep(double fewestTicks, std::int64_t ticksPerFrame) {
  for (const std::int64_t frames : {1, 2, 5, 10}) {
    const std::int64_t ticks = frames * ticksPerFrame;
    if (static_cast<double>(ticks) >= fewestTicks && ticks < zebmediatypes::kTicksPerSecond)
      return ticks;
  }
  // Of whole frames, so that timecode labels stay in step at any rate.
  const auto framesPerSecond = static_cast<std::int64_t>(
      std::llround(static_cast<double>(zebmediatypes::kTicksPerSecond) / static_cast<double>(ticksPerFrame)));
  const std::int64_t second = std::max<std::int64_t>(1, framesPerSecond) * ticksPerFrame;
  for (const std::int64_t seconds : {1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 14400, 36000}) {
    if (static_cast<double>(seconds * second) >= fewestTicks)
      return seconds * second;
  }
  return 72000 * second;
}

} // namespace

void TimelineView::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  painter.fillRect(viewport()->rect(), palette().color(QPalette::Base));
  if (!mModel.GetSequence()) {
    PaintHint(painter,
              Label("$$$/Vidra/Captivo/Timeline/NoSequence=Drag a clip here to make a sequence of it, or choose "
                    "Sequence > New Sequence from Clip."));
  } else {
    for (int lane = 0; lane < static_cast<int>(mModel.GetLanes().size()); ++lane)
      PaintLane(painter, lane);
    PaintSelection(painter);
    if (mGhost)
      PaintGhost(painter);
    if (mModel.IsEmpty() && !mGhost)
      PaintHint(painter, Label("$$$/Vidra/Captivo/Timeline/EmptySequence=Drag clips from the project onto a track."));
    PaintHeaders(painter);
    PaintRuler(painter);
    PaintPlayhead(painter);
  }
  if (hasFocus()) {
    painter.setClipping(false);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(viewport()->rect().adjusted(1, 1, -1, -1));
  }
}

void TimelineView::PaintHint(QPainter& painter, const QString& text) const {
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(viewport()->rect().adjusted(kHeaderWidth + kFitMargin, kRulerHeight, -kFitMargin, 0),
                   Qt::AlignCenter | Qt::TextWordWrap, text);
}

void TimelineView::PaintRuler(QPainter& painter) const {
  const QRect ruler(0, 0, viewport()->width(), kRulerHeight);
  painter.fillRect(ruler, palette().color(QPalette::Window));
  painter.setPen(Mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.25));
  painter.drawLine(ruler.bottomLeft(), ruler.bottomRight());
  painter.setClipRect(ruler.adjusted(kHeaderWidth, 0, 0, 0));
  painter.setFont(SmallFont(font()));
  const int labelWidth = painter.fontMetrics().horizontalAdvance(WriteTime(TimeAt(viewport()->width()))) + kLabelGap;
  const std::int64_t frame = GetRate().IsValid() ? GetRate().GetTicksPerFrame() : zebmediatypes::kTicksPerSecond / 25;
  const std::int64_t step = ChooseStep(labelWidth * mTicksPerPixel, frame);
  const std::int64_t minor = step / 5 >= frame ? step / 5 : step;
  const std::int64_t first = std::max<std::int64_t>(0, TimeAt(kHeaderWidth - labelWidth).GetTicks() / step * step);
  const std::int64_t last = TimeAt(viewport()->width()).GetTicks();
  const QColor ink = palette().color(QPalette::WindowText);
  const QColor weak = Mixed(palette().color(QPalette::Window), ink, 0.4);
  for (std::int64_t at = first; at <= last; at += minor) {
    const int x = XOf(TickTime(at));
    const bool isMajor = (at - first) % step == 0;
    painter.setPen(weak);
    painter.drawLine(x, kRulerHeight - (isMajor ? 9 : 5), x, kRulerHeight - 2);
    if (!isMajor)
      continue;
    // Whole or not at all, at the right edge too.
    const QString label = WriteTime(TickTime(at));
    if (x + 3 + painter.fontMetrics().horizontalAdvance(label) > ruler.right())
      continue;
    painter.setPen(ink);
    painter.drawText(QRect(x + 3, 1, labelWidth, kRulerHeight - 8), Qt::AlignLeft | Qt::AlignVCenter, label);
  }
  painter.setClipping(false);
  painter.setFont(font());
}

std::vector<const TimelineModel::Piece*> TimelineView::FindPiecesDrawn(int index) const {
  const TimelineModel::Lane& lane = mModel.GetLanes()[static_cast<std::size_t>(index)];
  const TickTime end = TimeAt(viewport()->width());
  std::vector<const TimelineModel::Piece*> drawn;
  std::size_t at = mModel.FindFirst(index, TimeAt(kHeaderWidth));
  while (at < lane.pieces.size() && lane.pieces[at].start < end) {
    drawn.push_back(&lane.pieces[at]);
    // Whatever ends on the same pixel is under what is drawn there.
    const int right = XOf(lane.pieces[at].end);
    ++at;
    if (at < lane.pieces.size() && XOf(lane.pieces[at].end) <= right + 1)
      at = std::max(at, mModel.FindFirst(index, TimeAt(right + 1)));
  }
  return drawn;
}

void TimelineView::PaintLane(QPainter& painter, int index) const {
  const TimelineModel::Lane& lane = mModel.GetLanes()[static_cast<std::size_t>(index)];
  const QRect rect = LaneRect(index);
  if (rect.bottom() < kRulerHeight || rect.top() > viewport()->height())
    return;
  painter.setClipRect(rect);
  if (lane.track % 2 == 1)
    painter.fillRect(rect, palette().color(QPalette::AlternateBase));
  painter.setPen(Mixed(palette().color(QPalette::Base), palette().color(QPalette::Text), 0.15));
  painter.drawLine(rect.bottomLeft(), rect.bottomRight());

  for (const TimelineModel::Piece* piece : FindPiecesDrawn(index))
    PaintPiece(painter, rect, *piece, lane.isVideo);
  const TickTime begin = TimeAt(rect.left());
  const TickTime end = TimeAt(rect.right() + 1);
  auto dissolve = std::lower_bound(lane.dissolves.begin(), lane.dissolves.end(), begin,
                                   [](const TimelineModel::Dissolve& each, TickTime time) { return each.end <= time; });
  int painted = rect.left() - 1;
  for (; dissolve != lane.dissolves.end() && dissolve->start < end; ++dissolve) {
    if (const int right = XOf(dissolve->end); right > painted) {
      PaintDissolve(painter, rect, *dissolve);
      painted = right;
    }
  }
  painter.setClipping(false);
}

void TimelineView::PaintPiece(QPainter& painter, const QRect& lane, const TimelineModel::Piece& piece,
                              bool isVideo) const {
  // Far ends are cut off, which keeps coordinates small and the name in view.
  const int left = std::max(XOf(piece.start), lane.left() - 10);
  const int right = std::min(XOf(piece.end), lane.right() + 10);
  const QRect box(left, lane.top() + kPieceMargin, std::max(1, right - left - 1), lane.height() - 2 * kPieceMargin);
  const bool dark = IsDark();
  const QColor fill = piece.isOffline ? Mixed(palette().color(QPalette::Base), palette().color(QPalette::Text), 0.12)
                                      : PieceColor(piece.hue, isVideo, dark);
  if (box.width() < 2 * kBandWidth) {
    painter.fillRect(box, Mixed(fill, BandColor(piece.hue, dark), 0.4));
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Mixed(fill, palette().color(QPalette::Text), 0.35));
  painter.setBrush(fill);
  painter.drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
  if (piece.isOffline) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(Mixed(fill, palette().color(QPalette::Text), 0.25), Qt::BDiagPattern));
    painter.drawRoundedRect(box, kRadius, kRadius);
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.fillRect(QRect(box.left() + 1, box.top() + 2, kBandWidth - 1, box.height() - 3), BandColor(piece.hue, dark));

  const int textLeft = std::max(box.left() + kBandWidth + kTextMargin, lane.left() + kTextMargin);
  int room = std::min(box.right(), lane.right()) - textLeft - kTextMargin;
  if (piece.hasCaptions && isVideo && room > kBadgeWidth) {
    const QRect badge(std::min(box.right(), lane.right()) - kBadgeWidth - 3, box.top() + 3, kBadgeWidth, kBadgeHeight);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Text));
    painter.drawRoundedRect(badge, 2, 2);
    QFont tiny = SmallFont(font());
    tiny.setPixelSize(9);
    tiny.setBold(true);
    painter.setFont(tiny);
    painter.setPen(palette().color(QPalette::Base));
    painter.drawText(badge, Qt::AlignCenter, QStringLiteral("CC"));
    room -= kBadgeWidth + kTextMargin;
  }
  if (room < kFewestPixelsForText)
    return;
  painter.setFont(SmallFont(font()));
  painter.setPen(palette().color(QPalette::Text));
  const QRect line(textLeft, box.top() + 1, room, isVideo ? kPieceTitle + 2 : box.height() - 2);
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(piece.name, Qt::ElideMiddle, room));
  painter.setFont(font());
}

void TimelineView::PaintDissolve(QPainter& painter, const QRect& lane, const TimelineModel::Dissolve& dissolve) const {
  const QRect box = DissolveRect(lane, dissolve);
  const QColor ink = palette().color(QPalette::Text);
  QColor fill = Mixed(palette().color(QPalette::Base), palette().color(QPalette::Highlight), IsDark() ? 0.35 : 0.25);
  fill.setAlpha(215);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(ink);
  painter.setBrush(fill);
  painter.drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
  painter.drawLine(box.bottomLeft(), box.topRight());
  painter.setRenderHint(QPainter::Antialiasing, false);
}

void TimelineView::PaintHeaders(QPainter& painter) const {
  painter.setFont(SmallFont(font()));
  for (int lane = 0; lane < static_cast<int>(mModel.GetLanes().size()); ++lane) {
    const TimelineModel::Lane& each = mModel.GetLanes()[static_cast<std::size_t>(lane)];
    const QRect rect = LaneRect(lane);
    const QRect header(0, rect.top(), kHeaderWidth, rect.height());
    painter.fillRect(header, palette().color(QPalette::Window));
    painter.setPen(Mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.25));
    painter.drawLine(header.bottomLeft(), header.bottomRight());
    painter.drawLine(header.topRight(), header.bottomRight());
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(header, Qt::AlignCenter,
                     (each.isVideo ? QStringLiteral("V%1") : QStringLiteral("A%1")).arg(each.track + 1));
  }
  painter.setFont(font());
}

void TimelineView::PaintSelection(QPainter& painter) const {
  if (mSelection.what == What::Nothing)
    return;
  const TickTime start = mModel.GetStart(mSelection);
  const TickTime end = mModel.GetEnd(mSelection);
  painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
  QColor fill = palette().color(QPalette::Highlight);
  fill.setAlpha(mSelection.what == What::EmptySpot ? 60 : 40);
  painter.setBrush(fill);
  const TimelineModel::Piece* piece = mModel.GetPiece(mSelection);
  for (int lane = 0; lane < static_cast<int>(mModel.GetLanes().size()); ++lane) {
    const QRect rect = LaneRect(lane);
    const int left = std::max(XOf(start), rect.left() - 10);
    const int right = std::min(XOf(end), rect.right() + 10);
    const QRect box(left, rect.top() + kPieceMargin, std::max(3, right - left - 1), rect.height() - 2 * kPieceMargin);
    painter.setClipRect(rect);
    // Picture and sound of an item are selected together.
    const TimelineModel::Lane& each = mModel.GetLanes()[static_cast<std::size_t>(lane)];
    const bool isPart = piece && each.track == piece->item->GetTrack() &&
                        (each.isVideo ? piece->item->HasVideo() : piece->item->HasAudio());
    if (const auto* dissolve = lane == mSelection.lane ? mModel.GetDissolve(mSelection) : nullptr)
      painter.drawRect(DissolveRect(rect, *dissolve).adjusted(1, 1, -1, -1));
    else if (isPart || (lane == mSelection.lane && mSelection.what == What::EmptySpot))
      painter.drawRoundedRect(box.adjusted(1, 1, -1, -1), kRadius, kRadius);
  }
  painter.setClipping(false);
}

void TimelineView::PaintGhost(QPainter& painter) const {
  painter.setPen(QPen(palette().color(QPalette::Highlight), 2, Qt::DashLine));
  QColor fill = palette().color(QPalette::Highlight);
  fill.setAlpha(70);
  painter.setBrush(fill);
  for (int lane = 0; lane < static_cast<int>(mModel.GetLanes().size()); ++lane) {
    const TimelineModel::Lane& each = mModel.GetLanes()[static_cast<std::size_t>(lane)];
    if (each.track != mGhost->track || !(each.isVideo ? mGhost->video : mGhost->audio))
      continue;
    const QRect rect = LaneRect(lane);
    const int left = std::max(XOf(mGhost->start), rect.left() - 10);
    const int right = std::min(XOf(mGhost->start + mGhost->length), rect.right() + 10);
    painter.setClipRect(rect);
    painter.drawRoundedRect(
        QRect(left, rect.top() + kPieceMargin, std::max(3, right - left - 1), rect.height() - 2 * kPieceMargin),
        kRadius, kRadius);
  }
  painter.setClipping(false);
}

void TimelineView::PaintPlayhead(QPainter& painter) const {
  const int x = XOf(mPlayhead);
  if (x < kHeaderWidth || x > viewport()->width())
    return;
  const QColor color = IsDark() ? QColor(255, 110, 110) : QColor(200, 30, 40);
  painter.setPen(color);
  painter.drawLine(x, kRulerHeight - 8, x, viewport()->height());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(color);
  painter.setPen(Qt::NoPen);
  painter.drawPolygon(QPolygon({{x - 5, kRulerHeight - 11}, {x + 6, kRulerHeight - 11}, {x, kRulerHeight - 2}}));
  painter.setRenderHint(QPainter::Antialiasing, false);
}

} // namespace App
