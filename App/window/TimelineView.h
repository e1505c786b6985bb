#pragma once

#include <QAbstractScrollArea>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "App/window/TimelineModel.h"

class QMenu;
class QPainter;

namespace App {

// The type of what is dragged from the bin: the id of a clip.
inline constexpr const char* kClipMimeType = "application/x-captivo-clip";

// The tracks of a sequence under a ruler. What is drawn, and what drawing costs, is what is in view.
class TimelineView : public QAbstractScrollArea {
 public:
  explicit TimelineView(QWidget* parent = nullptr);

  void SetSequence(const BE::InterfaceRef<BE::Sequence>& sequence);
  // After something of it changed. What is selected stays selected if it is still there.
  void Refresh();
  // How times are written; the invalid display for the sequence's own.
  void SetTimeDisplay(zebmediatypes::TimeDisplay display);

  const TimelineModel& GetModel() const { return mModel; }
  const TimelineSelection& GetSelection() const { return mSelection; }
  // Shows it, and reports nothing.
  void SetSelection(const TimelineSelection& selection);
  TickTime GetPlayhead() const { return mPlayhead; }
  void SetPlayhead(TickTime time);
  QString WriteTime(TickTime time) const;

  void ZoomIn();
  void ZoomOut();
  void ZoomToFit();
  double GetTicksPerPixel() const { return mTicksPerPixel; }

  // In the viewport. A time may lie outside of what is in view.
  int XOf(TickTime time) const;
  TickTime TimeAt(int x) const;
  QRect LaneRect(int lane) const;

  // What is drawn of a lane: of pieces that end on the same pixel the first.
  std::vector<const TimelineModel::Piece*> FindPiecesDrawn(int lane) const;

  // Called when a person did it.
  std::function<void(const TimelineSelection&)> whenSelected;
  std::function<void(const TimelineModel::Piece&, TickTime)> whenItemOpened; // at a time of the sequence
  std::function<void(const BE::InterfaceRef<BE::TrackItem>&, TickTime start, int track)> whenItemMoved;
  std::function<void()> whenDeleteAsked;
  std::function<void(const std::string& clip, TickTime start, int track)> whenClipDropped;
  std::function<void()> whenPlayheadMoved;
  std::function<void(QMenu&)> fillMenu;
  std::function<void(QMenu&)> fillRulerMenu;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool event(QEvent* event) override;

 private:
  // Where a piece that is being dragged would come to lie.
  struct Ghost {
    TickTime start;
    TickTime length;
    int track = 0;
    bool video = true;
    bool audio = true;
    QString name;
  };

  // Painting
  void PaintRuler(QPainter& painter) const;
  void PaintLane(QPainter& painter, int lane) const;
  void PaintPiece(QPainter& painter, const QRect& lane, const TimelineModel::Piece& piece, bool isVideo) const;
  void PaintDissolve(QPainter& painter, const QRect& lane, const TimelineModel::Dissolve& dissolve) const;
  void PaintHeaders(QPainter& painter) const;
  void PaintSelection(QPainter& painter) const;
  void PaintGhost(QPainter& painter) const;
  void PaintPlayhead(QPainter& painter) const;
  void PaintHint(QPainter& painter, const QString& text) const;
  bool IsDark() const;

  // Place and scale
  zebmediatypes::TimeDisplay GetDisplay() const;
  zebmediatypes::FrameRate GetRate() const;
  QRect DissolveRect(const QRect& lane, const TimelineModel::Dissolve& dissolve) const;
  int LaneAt(int y) const;
  int ContentHeight() const;
  void SetScale(double ticksPerPixel, int aroundX);
  void UpdateScrollBars();
  void Reveal(TickTime from, TickTime to);
  TickTime Snap(TickTime start, TickTime length) const;

  // Gestures
  TimelineSelection HitTest(const QPoint& point) const;
  void Select(const TimelineSelection& selection);
  void Announce();
  QString Describe(const TimelineSelection& selection) const;
  void SelectByKey(const TimelineSelection& selection);
  bool HandleMoveKey(const QKeyEvent& event);
  bool HandleZoomKey(const QKeyEvent& event);
  void StepToLane(int step);
  void StepPlayhead(std::int64_t frames);
  void Nudge(std::int64_t frames);
  void OpenSelected();
  void DragTo(const QPoint& point);
  std::optional<Ghost> GhostOfDrop(const QDropEvent& event) const;

  TimelineModel mModel;
  TimelineSelection mSelection;
  TickTime mPlayhead;
  zebmediatypes::TimeDisplay mDisplay = zebmediatypes::kTimeDisplay_Invalid;
  double mTicksPerPixel;
  bool mIsFitting = true; // until someone zooms
  std::optional<Ghost> mGhost;
  QPoint mPressedAt;
  bool mIsPressed = false;
  bool mIsScrubbing = false;
};

} // namespace App
