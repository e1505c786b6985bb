#pragma once

#include <QImage>
#include <QWidget>

#include "App/monitor/CaptionsOnShow.h"
#include "App/window/MonitorFrames.h"

class QTimer;

namespace App {

// The picture of the monitor: a frame of the clip as large as there is room, the captions that are on show on it, and
// what is drawn over both.
class MonitorView : public QWidget {
 public:
  using Stream = monitor::Stream;

  MonitorView();

  // A null stream shows the hint alone.
  void Show(const Stream& stream, zebmediatypes::TickTime time);
  void SetHint(const QString& hint);
  void SetGridShown(bool shown);
  void SetSafeAreaShown(bool shown);

  // Of closed captions, as it is drawn; without cells for open ones.
  const monitor::CaptionScreen& GetScreen() const { return mScreen; }
  // Where the picture lies; empty where nothing is shown.
  QRect GetPictureRect() const;

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void WantFrame();
  // The frame in the size of the picture, with open captions on it.
  const QImage& Compose();

  Stream mStream;
  zebmediatypes::TickTime mTime;
  QString mHint;
  bool mGridShown = false;
  bool mSafeAreaShown = false;
  monitor::CaptionScreen mScreen;
  MonitorFrames mFrames;
  QImage mComposed; // null to be made anew
  QTimer* mWantSoon;
};

} // namespace App
