#include "App/window/MonitorFrames.h"

#include <QTimer>

#include <algorithm>
#include <vector>

#include "Captions/contracts/SelectionMessages.h"
#include "zebmediatypes/PixelAspectRatio.h"

namespace App {

namespace {

// How long an answer is awaited before the next picture is asked for all the same: one that cannot be decoded gets
// none.
constexpr int kPatienceMilliseconds = 300;
constexpr int kStaleMilliseconds = 1500;
constexpr int kRenderTimeout = 800;

} // namespace

MonitorFrames::MonitorFrames()
    : mRenderer(zebcore::classref::CreateClassInstanceRef(ML::kRenderFrameClassID).Query<ML::IRenderFrame>()),
      mAskLater(new QTimer), mGiveUp(new QTimer) {
  if (mRenderer)
    zebcore::messaging::AddListener(mRenderer->GetStationID(), this);
  mAskLater->setSingleShot(true);
  mGiveUp->setSingleShot(true);
  QObject::connect(mAskLater, &QTimer::timeout, [this] { Ask(); });
  QObject::connect(mGiveUp, &QTimer::timeout, [this] { Show(nullptr); });
}

MonitorFrames::~MonitorFrames() {
  delete mAskLater;
  delete mGiveUp;
}

void MonitorFrames::Want(const Video& video, zebmediatypes::TickTime time, const QSize& size) {
  const Order order{video, time, size};
  if (order == mWanted)
    return;
  const bool isOther = video != mWanted.video;
  mWanted = order;
  if (isOther) {
    mRequest = 0;
    mGiveUp->stop();
    Show(nullptr);
  }
  if (!video || size.isEmpty()) {
    mAskLater->stop();
    mRequest = 0;
    return;
  }
  const qint64 left = mRequest != 0 ? kPatienceMilliseconds - mSinceAsked.elapsed() : 0;
  if (left > 0)
    mAskLater->start(static_cast<int>(left));
  else
    Ask();
}

void MonitorFrames::Ask() {
  mAskLater->stop();
  if (!mRenderer || !mWanted.video)
    return;
  mAsked = mWanted;
  mSinceAsked.start();
  mRenderer->SetFrameSize({0, 0, mAsked.size.width(), mAsked.size.height()}, zebmediatypes::kPixelAspectRatio_Square);
  Frame frame;
  std::uint32_t request = 0;
  const ML::RenderStatus status =
      mRenderer->Render(mAsked.time, mAsked.video->GetContentID(), mAsked.video,
                        {zebmediatypes::kPixelFormat_BGRA_4444_8u}, false, kRenderTimeout, 0, frame, request, false,
                        zebmediatypes::kPixelFormat_Invalid, zebmediatypes::ColorSpace(), zebcore::utility::Guid());
  if (status == ML::kRenderStatus_Complete) {
    mRequest = 0;
    mGiveUp->stop();
    Show(frame);
    return;
  }
  mRequest = request;
  if (mFrame && !mGiveUp->isActive())
    mGiveUp->start(kStaleMilliseconds);
}

void MonitorFrames::HandleMessage(const zebcore::messaging::Message& message) {
  const auto* completed = zebcore::messaging::MessageCast<ML::RenderFrameCompletionMessage>(message);
  if (!completed || completed->requestID != mRequest)
    return;
  mRequest = 0;
  mGiveUp->stop();
  if (mAsked.video == mWanted.video)
    Show(completed->frame);
  if (!(mAsked == mWanted))
    Ask();
}

void MonitorFrames::Show(const Frame& frame) {
  if (frame == mFrame)
    return;
  mFrame = frame;
  if (whenChanged)
    whenChanged();
}

} // namespace App
