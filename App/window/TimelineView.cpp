#include "App/window/TimelineView.h"

#include <QAccessible>
#include <QResizeEvent>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

#include "App/window/Labels.h"
#include "App/window/TimelineMeasures.h"
#include "UIF/Drawing.h"

namespace App {

using What = TimelineSelection::What;
using namespace timeline;

namespace {

constexpr double kZoomStep = 1.5;
constexpr double kWidestFrame = 40; // pixels
constexpr double kFallbackSeconds = 60;
constexpr double kLongestSeconds = 200.0 * 3600;

} // namespace

TimelineView::TimelineView(QWidget* parent)
    : QAbstractScrollArea(parent),
      mTicksPerPixel(kFallbackSeconds * static_cast<double>(zebmediatypes::kTicksPerSecond) / 800) {
  setFrameShape(NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  setAcceptDrops(true);
  viewport()->setMouseTracking(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setAccessibleName(Label("$$$/Vidra/Captivo/Timeline/Title=Timeline"));
  setMinimumHeight(kRulerHeight + kVideoHeight + kAudioHeight);
}

void TimelineView::SetSequence(const BE::InterfaceRef<BE::Sequence>& sequence) {
  if (sequence != mModel.GetSequence()) {
    mSelection = {};
    mPlayhead = TickTime();
    mIsFitting = true;
  }
  mModel.SetSequence(sequence);
  Refresh();
}

void TimelineView::Refresh() {
  mModel.Read();
  mSelection = mModel.Renew(mSelection);
  if (mIsFitting)
    ZoomToFit();
  UpdateScrollBars();
  Announce();
  viewport()->update();
}

void TimelineView::SetTimeDisplay(zebmediatypes::TimeDisplay display) {
  mDisplay = display;
  viewport()->update();
}

zebmediatypes::TimeDisplay TimelineView::GetDisplay() const {
  if (mDisplay != zebmediatypes::kTimeDisplay_Invalid || !mModel.GetSequence())
    return mDisplay;
  return mModel.GetSequence()->GetVideoTimeDisplay();
}

zebmediatypes::FrameRate TimelineView::GetRate() const {
  return mModel.GetSequence() ? mModel.GetSequence()->GetVideoFrameRate() : zebmediatypes::FrameRate();
}

QString TimelineView::WriteTime(TickTime time) const {
  return ToQString(zebmediatypes::FormatTime(time, GetDisplay(), GetRate()));
}

void TimelineView::SetSelection(const TimelineSelection& selection) {
  mSelection = mModel.Renew(selection);
  Announce();
  viewport()->update();
}

void TimelineView::SetPlayhead(TickTime time) {
  time = std::max(time, TickTime());
  time.AlignToFrame(GetRate());
  if (time == mPlayhead)
    return;
  mPlayhead = time;
  Reveal(time, time);
  viewport()->update();
  if (whenPlayheadMoved)
    whenPlayheadMoved();
}

// --- Place and scale

int TimelineView::XOf(TickTime time) const {
  const double x = static_cast<double>(time.GetTicks()) / mTicksPerPixel - horizontalScrollBar()->value();
  return kHeaderWidth + static_cast<int>(std::clamp(std::floor(x), -1e8, 1e8));
}

TickTime TimelineView::TimeAt(int x) const {
  return TickTime(
      std::llround((static_cast<double>(x) - kHeaderWidth + horizontalScrollBar()->value()) * mTicksPerPixel));
}

QRect TimelineView::LaneRect(int lane) const {
  const auto& lanes = mModel.GetLanes();
  int y = kRulerHeight - verticalScrollBar()->value();
  for (int at = 0; at < lane; ++at)
    y += lanes[static_cast<std::size_t>(at)].isVideo ? kVideoHeight : kAudioHeight;
  return {kHeaderWidth, y, std::max(0, viewport()->width() - kHeaderWidth),
          lanes[static_cast<std::size_t>(lane)].isVideo ? kVideoHeight : kAudioHeight};
}

QRect TimelineView::DissolveRect(const QRect& lane, const TimelineModel::Dissolve& dissolve) const {
  const int left = XOf(dissolve.start);
  return {left, lane.top() + kPieceMargin + kPieceTitle, std::max(kNarrowestDissolve, XOf(dissolve.end) - left),
          lane.height() - 2 * kPieceMargin - kPieceTitle};
}

int TimelineView::LaneAt(int y) const {
  if (y < kRulerHeight)
    return -1;
  for (int lane = 0; lane < static_cast<int>(mModel.GetLanes().size()); ++lane) {
    const QRect rect = LaneRect(lane);
    if (y >= rect.top() && y <= rect.bottom())
      return lane;
  }
  return -1;
}

int TimelineView::ContentHeight() const {
  const int tracks = static_cast<int>(mModel.GetLanes().size()) / 2;
  return kRulerHeight + tracks * (kVideoHeight + kAudioHeight);
}

void TimelineView::UpdateScrollBars() {
  const int width = std::max(1, viewport()->width() - kHeaderWidth);
  const double content = static_cast<double>(mModel.GetDuration().GetTicks()) / mTicksPerPixel;
  // Half a view more than there is, to put something behind the last item.
  const int most = static_cast<int>(std::clamp(content - width / 2.0, 0.0, 1e9));
  horizontalScrollBar()->setRange(0, mIsFitting ? 0 : most);
  horizontalScrollBar()->setPageStep(width);
  horizontalScrollBar()->setSingleStep(std::max(1, width / 20));
  verticalScrollBar()->setRange(0, std::max(0, ContentHeight() - viewport()->height()));
  verticalScrollBar()->setPageStep(viewport()->height());
  verticalScrollBar()->setSingleStep(kAudioHeight);
}

// What lies under a place of the view stays there.
void TimelineView::SetScale(double ticksPerPixel, int aroundX) {
  const double narrowest = GetRate().IsValid() ? static_cast<double>(GetRate().GetTicksPerFrame()) / kWidestFrame
                                               : static_cast<double>(zebmediatypes::kTicksPerSecond) / 1000;
  const double widest = kLongestSeconds * static_cast<double>(zebmediatypes::kTicksPerSecond) / 1000;
  const TickTime kept = TimeAt(aroundX);
  mTicksPerPixel = std::clamp(ticksPerPixel, narrowest, widest);
  mIsFitting = false;
  UpdateScrollBars();
  horizontalScrollBar()->setValue(static_cast<int>(
      std::clamp(static_cast<double>(kept.GetTicks()) / mTicksPerPixel - (aroundX - kHeaderWidth), 0.0, 1e9)));
  viewport()->update();
}

void TimelineView::ZoomIn() {
  SetScale(mTicksPerPixel / kZoomStep, std::clamp(XOf(mPlayhead), kHeaderWidth, viewport()->width()));
}

void TimelineView::ZoomOut() {
  SetScale(mTicksPerPixel * kZoomStep, std::clamp(XOf(mPlayhead), kHeaderWidth, viewport()->width()));
}

void TimelineView::ZoomToFit() {
  const double seconds = mModel.IsEmpty() ? kFallbackSeconds : zebmediatypes::ToSeconds(mModel.GetDuration());
  const int width = std::max(50, viewport()->width() - kHeaderWidth - kFitMargin);
  SetScale(seconds * static_cast<double>(zebmediatypes::kTicksPerSecond) / width, kHeaderWidth);
  mIsFitting = true;
  UpdateScrollBars();
}

void TimelineView::Reveal(TickTime from, TickTime to) {
  const int left = XOf(from);
  const int right = XOf(to);
  int move = 0;
  if (right > viewport()->width() - kFitMargin)
    move = right - viewport()->width() + kFitMargin;
  if (left - move < kHeaderWidth)
    move = left - kHeaderWidth - kFitMargin;
  if (left >= kHeaderWidth && right <= viewport()->width())
    move = 0;
  horizontalScrollBar()->setValue(horizontalScrollBar()->value() + move);
}

// To whole frames, but first of all to what either end comes near to.
TickTime TimelineView::Snap(TickTime start, TickTime length) const {
  const TickTime within(std::llround(kSnapPixels * mTicksPerPixel));
  const auto near = [&](TickTime time) {
    const TickTime cut = mModel.SnapToCut(time, within);
    const TickTime away = std::max(mPlayhead, time) - std::min(mPlayhead, time);
    return cut == time && away <= within ? mPlayhead : cut;
  };
  TickTime snapped = near(start);
  if (snapped == start)
    snapped = near(start + length) - length;
  if (snapped == start)
    snapped.AlignToFrame(GetRate());
  return std::max(snapped, TickTime());
}

void TimelineView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  if (mIsFitting)
    ZoomToFit();
  UpdateScrollBars();
}

void TimelineView::scrollContentsBy(int, int) {
  viewport()->update();
}

bool TimelineView::IsDark() const {
  return UIF::ColorManager::GetTheme() == UIF::Theme::Dark;
}

// --- For those who do not see it

QString TimelineView::Describe(const TimelineSelection& selection) const {
  const auto times = [&] {
    return QStringLiteral("%1 – %2").arg(WriteTime(mModel.GetStart(selection)), WriteTime(mModel.GetEnd(selection)));
  };
  if (const auto* piece = mModel.GetPiece(selection))
    return Label("$$$/Vidra/Captivo/Timeline/ItemSelected={1}, {2}",
                 {piece->name.toStdString(), times().toStdString()});
  if (mModel.GetDissolve(selection))
    return Label("$$$/Vidra/Captivo/Timeline/TransitionSelected=Cross dissolve, {1}", {times().toStdString()});
  if (selection.what == What::EmptySpot)
    return Label("$$$/Vidra/Captivo/Timeline/EmptySpotSelected=Empty spot, {1}", {times().toStdString()});
  return Label("$$$/Vidra/Captivo/Timeline/NothingSelected=Nothing is selected");
}

void TimelineView::Announce() {
  const QString text = Describe(mSelection);
  if (text == accessibleDescription())
    return;
  setAccessibleDescription(text);
  QAccessibleEvent event(this, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&event);
}

} // namespace App
