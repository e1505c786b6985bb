#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

#include "App/Session.h"
#include "App/window/TimelineMeasures.h"
#include "App/window/TimelineView.h"

// What a person does in a timeline, by mouse and by keyboard.
namespace App {

using What = TimelineSelection::What;
using namespace timeline;

namespace {

constexpr double kWheelStep = 1.25;
constexpr int kWheelNotch = 120;

} // namespace

// A dissolve takes the lower part of the place that it shares with its items.
TimelineSelection TimelineView::HitTest(const QPoint& point) const {
  const int lane = LaneAt(point.y());
  if (lane < 0 || point.x() < kHeaderWidth)
    return {};
  const TickTime time = TimeAt(point.x());
  // One too short to be seen is drawn wider than it is.
  if (const auto* dissolve = mModel.FindDissolve(lane, TimeAt(point.x() - kNarrowestDissolve));
      dissolve && DissolveRect(LaneRect(lane), *dissolve).contains(point))
    return mModel.SelectDissolve(lane, *dissolve);
  return mModel.SelectAt(lane, time);
}

// Said again when it is selected already, since something else may have been selected elsewhere meanwhile.
void TimelineView::Select(const TimelineSelection& selection) {
  SetSelection(selection.what == What::Nothing ? TimelineSelection() : selection);
  if (whenSelected)
    whenSelected(mSelection);
}

void TimelineView::mousePressEvent(QMouseEvent* event) {
  if (!mModel.GetSequence() || (event->button() != Qt::LeftButton && event->button() != Qt::RightButton))
    return;
  const QPoint point = event->position().toPoint();
  if (point.y() < kRulerHeight) {
    mIsScrubbing = event->button() == Qt::LeftButton;
    if (mIsScrubbing)
      SetPlayhead(TimeAt(std::max(point.x(), kHeaderWidth)));
    return;
  }
  Select(HitTest(point));
  mIsPressed = event->button() == Qt::LeftButton && mSelection.what == What::Item;
  mPressedAt = point;
}

void TimelineView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint point = event->position().toPoint();
  if (mIsScrubbing)
    SetPlayhead(TimeAt(std::max(point.x(), kHeaderWidth)));
  else if (mIsPressed && (mGhost || (point - mPressedAt).manhattanLength() >= QApplication::startDragDistance()))
    DragTo(point);
}

void TimelineView::DragTo(const QPoint& point) {
  const TimelineModel::Piece* piece = mModel.GetPiece(mSelection);
  const BE::InterfaceRef<BE::Project> project = mModel.GetSequence()->GetProject();
  if (!piece || !project || project->IsReadOnly())
    return;
  const TickTime moved = piece->start + (TimeAt(point.x()) - TimeAt(mPressedAt.x()));
  const int lane = LaneAt(point.y());
  int track = mGhost ? mGhost->track : piece->item->GetTrack();
  if (lane >= 0)
    track = mModel.GetLanes()[static_cast<std::size_t>(lane)].track;
  const TickTime length = piece->end - piece->start;
  mGhost = Ghost{Snap(moved, length), length, track, piece->item->HasVideo(), piece->item->HasAudio(), piece->name};
  viewport()->update();
}

void TimelineView::mouseReleaseEvent(QMouseEvent*) {
  const std::optional<Ghost> ghost = std::exchange(mGhost, std::nullopt);
  const bool moved = std::exchange(mIsPressed, false) && ghost;
  mIsScrubbing = false;
  viewport()->update();
  if (const auto* piece = mModel.GetPiece(mSelection); moved && piece && whenItemMoved)
    whenItemMoved(BE::InterfaceRef<BE::TrackItem>(piece->item), ghost->start, ghost->track);
}

void TimelineView::mouseDoubleClickEvent(QMouseEvent* event) {
  mIsPressed = false;
  const TimelineSelection hit = HitTest(event->position().toPoint());
  const TimelineModel::Piece* piece = mModel.GetPiece(hit);
  if (event->button() == Qt::LeftButton && piece && whenItemOpened)
    whenItemOpened(TimelineModel::Piece(*piece), TimeAt(event->position().toPoint().x()));
}

void TimelineView::wheelEvent(QWheelEvent* event) {
  const int delta = event->angleDelta().y() != 0 ? event->angleDelta().y() : event->angleDelta().x();
  if (event->modifiers() & Qt::ControlModifier) {
    SetScale(mTicksPerPixel * std::pow(kWheelStep, -static_cast<double>(delta) / kWheelNotch),
             std::max(kHeaderWidth, event->position().toPoint().x()));
  } else {
    const bool across =
        event->angleDelta().y() != 0 && !(event->modifiers() & Qt::ShiftModifier) && verticalScrollBar()->maximum() > 0;
    QScrollBar* bar = across ? verticalScrollBar() : horizontalScrollBar();
    bar->setValue(bar->value() - delta * 3 * bar->singleStep() / kWheelNotch);
  }
  event->accept();
}

void TimelineView::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  const bool onRuler = event->reason() == QContextMenuEvent::Mouse && event->pos().y() < kRulerHeight;
  if (onRuler && fillRulerMenu)
    fillRulerMenu(menu);
  else if (!onRuler && fillMenu)
    fillMenu(menu);
  QPoint place = event->globalPos();
  if (event->reason() == QContextMenuEvent::Keyboard && mSelection.what != What::Nothing)
    place = viewport()->mapToGlobal(LaneRect(mSelection.lane).topLeft() +
                                    QPoint(std::max(0, XOf(mModel.GetStart(mSelection)) - kHeaderWidth), kAudioHeight));
  if (!menu.isEmpty())
    menu.exec(place);
}

// --- Keyboard

// The keys of the timeline stay with it, whatever shortcut the window has for them.
bool TimelineView::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool plain = !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    switch (key->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
      event->accept();
      return true;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
    case Qt::Key_Plus:
    case Qt::Key_Minus:
    case Qt::Key_0:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Return:
    case Qt::Key_Escape:
      if (plain) {
        event->accept();
        return true;
      }
      break;
    default:
      break;
    }
  }
  return QAbstractScrollArea::event(event);
}

void TimelineView::keyPressEvent(QKeyEvent* event) {
  if (!mModel.GetSequence() || !(HandleMoveKey(*event) || HandleZoomKey(*event)))
    QAbstractScrollArea::keyPressEvent(event);
}

bool TimelineView::HandleMoveKey(const QKeyEvent& event) {
  const std::int64_t frames = event.modifiers() & Qt::ShiftModifier ? 10 : 1;
  const bool isRight = event.key() == Qt::Key_Right;
  switch (event.key()) {
  case Qt::Key_Left:
  case Qt::Key_Right:
    if (event.modifiers() & Qt::ControlModifier)
      StepPlayhead(isRight ? frames : -frames);
    else if (event.modifiers() & Qt::AltModifier)
      Nudge(isRight ? frames : -frames);
    else
      SelectByKey(isRight ? mModel.SelectNext(mSelection) : mModel.SelectPrevious(mSelection));
    return true;
  case Qt::Key_Up:
  case Qt::Key_Down:
    StepToLane(event.key() == Qt::Key_Down ? 1 : -1);
    return true;
  case Qt::Key_Home:
    SelectByKey(mModel.SelectFirst(mSelection.lane));
    return true;
  case Qt::Key_End:
    SelectByKey(mModel.SelectLast(mSelection.lane));
    return true;
  case Qt::Key_Return:
  case Qt::Key_Enter:
    OpenSelected();
    return true;
  case Qt::Key_Delete:
  case Qt::Key_Backspace:
    if (whenDeleteAsked)
      whenDeleteAsked();
    return true;
  case Qt::Key_Escape:
    if (mGhost || mIsPressed) {
      mGhost.reset();
      mIsPressed = false;
      viewport()->update();
    } else {
      Select({});
    }
    return true;
  default:
    return false;
  }
}

bool TimelineView::HandleZoomKey(const QKeyEvent& event) {
  switch (event.key()) {
  case Qt::Key_Plus:
  case Qt::Key_Equal:
    ZoomIn();
    return true;
  case Qt::Key_Minus:
    ZoomOut();
    return true;
  case Qt::Key_0:
    ZoomToFit();
    return true;
  default:
    return false;
  }
}

void TimelineView::SelectByKey(const TimelineSelection& selection) {
  TimelineSelection next = selection;
  // Nothing was selected yet: the lane to begin with is the first that holds something.
  for (int lane = 0; next.what == What::Nothing && mSelection.what == What::Nothing &&
                     lane < static_cast<int>(mModel.GetLanes().size());
       ++lane)
    next = mModel.SelectFirst(lane);
  Select(next);
  if (mSelection.what != What::Nothing)
    Reveal(mModel.GetStart(mSelection), mModel.GetEnd(mSelection));
}

// To what lies in the next lane that holds something at the middle of what is selected, or at its start.
void TimelineView::StepToLane(int step) {
  if (mSelection.what == What::Nothing)
    return SelectByKey({});
  const TickTime start = mModel.GetStart(mSelection);
  const TickTime middle(start.GetTicks() + (mModel.GetEnd(mSelection) - start).GetTicks() / 2);
  for (int lane = mSelection.lane + step; lane >= 0 && lane < static_cast<int>(mModel.GetLanes().size());
       lane += step) {
    if (const TimelineSelection there = mModel.SelectAt(lane, middle); there.what != What::Nothing)
      return SelectByKey(there);
  }
}

void TimelineView::StepPlayhead(std::int64_t frames) {
  if (GetRate().IsValid())
    SetPlayhead(mPlayhead + TickTime(frames * GetRate().GetTicksPerFrame()));
}

void TimelineView::Nudge(std::int64_t frames) {
  const TimelineModel::Piece* piece = mModel.GetPiece(mSelection);
  if (piece && GetRate().IsValid() && whenItemMoved)
    whenItemMoved(BE::InterfaceRef<BE::TrackItem>(piece->item),
                  std::max(TickTime(), piece->start + TickTime(frames * GetRate().GetTicksPerFrame())),
                  piece->item->GetTrack());
}

// At the playhead if that lies on it, else at its beginning.
void TimelineView::OpenSelected() {
  const TimelineModel::Piece* piece = mModel.GetPiece(mSelection);
  if (!piece || !whenItemOpened)
    return;
  const bool isUnder = mPlayhead >= piece->start && mPlayhead < piece->end;
  whenItemOpened(TimelineModel::Piece(*piece), isUnder ? mPlayhead : piece->start);
}

void TimelineView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void TimelineView::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

// --- Clips from the bin

std::optional<TimelineView::Ghost> TimelineView::GhostOfDrop(const QDropEvent& event) const {
  if (!event.mimeData()->hasFormat(QLatin1String(kClipMimeType)))
    return std::nullopt;
  const auto project = Session::Instance().GetProject();
  const auto clip =
      project ? project->FindClip(event.mimeData()->data(QLatin1String(kClipMimeType)).toStdString()) : nullptr;
  if (!clip || project->IsReadOnly())
    return std::nullopt;
  const QPoint point = event.position().toPoint();
  const int lane = LaneAt(point.y());
  const int track = lane < 0 ? 0 : mModel.GetLanes()[static_cast<std::size_t>(lane)].track;
  const BE::Project::SequenceItem item = MakeSequenceItem(clip, TickTime(), track);
  const TickTime start =
      mModel.GetSequence() ? Snap(TimeAt(std::max(point.x(), kHeaderWidth)), item.duration) : TickTime();
  return Ghost{start, item.duration, track, item.video, item.audio, {}};
}

void TimelineView::dragEnterEvent(QDragEnterEvent* event) {
  dragMoveEvent(event);
}

void TimelineView::dragMoveEvent(QDragMoveEvent* event) {
  mGhost = GhostOfDrop(*event);
  event->setAccepted(mGhost.has_value());
  viewport()->update();
}

void TimelineView::dragLeaveEvent(QDragLeaveEvent*) {
  mGhost.reset();
  viewport()->update();
}

void TimelineView::dropEvent(QDropEvent* event) {
  const std::optional<Ghost> ghost = GhostOfDrop(*event);
  mGhost.reset();
  viewport()->update();
  event->setAccepted(ghost.has_value());
  if (ghost && whenClipDropped)
    whenClipDropped(event->mimeData()->data(QLatin1String(kClipMimeType)).toStdString(), ghost->start, ghost->track);
}

} // namespace App
