#pragma once

#include <QElapsedTimer>
#include <QSize>

#include <cstdint>
#include <functional>

#include "BE/Interfaces.h"
#include "ML/RenderFrame.h"
#include "zebcore/Messaging.h"

class QTimer;

namespace App {

// The one picture that the monitor wants, decoded where nobody waits for it. Whoever runs through captions faster than
// pictures can be decoded sees some of them, and the last in any case.
class MonitorFrames : private zebcore::messaging::Listener {
 public:
  using Video = BE::InterfaceRef<BE::IVideoSegments>;
  using Frame = BE::InterfaceRef<MF::IVideoFrame>;

  MonitorFrames();
  ~MonitorFrames() override;

  // A null video wants nothing. size is in pixels.
  void Want(const Video& video, zebmediatypes::TickTime time, const QSize& size);
  // What was wanted or, until it is there, the picture before of the same video, but not for long; null without any.
  const Frame& Get() const { return mFrame; }

  std::function<void()> whenChanged;

 private:
  struct Order {
    Video video;
    zebmediatypes::TickTime time;
    QSize size;
    friend bool operator==(const Order&, const Order&) = default;
  };

  void HandleMessage(const zebcore::messaging::Message& message) override;
  void Ask();
  void Show(const Frame& frame);

  BE::InterfaceRef<ML::IRenderFrame> mRenderer;
  Order mWanted;
  Order mAsked;
  std::uint32_t mRequest = 0; // 0: nothing is awaited
  QElapsedTimer mSinceAsked;
  Frame mFrame;
  QTimer* mAskLater;
  QTimer* mGiveUp; // on an earlier picture in the place of one that does not come
};

} // namespace App
