#include "ML/RenderFrame.h"

#include <atomic>
#include <future>
#include <mutex>
#include <set>

#include "BE/Project.h"
#include "Captions/contracts/SelectionMessages.h"
#include "ML/FrameService.h"
#include "zebcore/Messaging.h"
#include "zebcore/Trace.h"

namespace ML {

const zebcore::classref::ClassID kRenderFrameClassID("ML.RenderFrame");

namespace {

using zebcore::utility::ImmutableString;

std::atomic<std::uint32_t> sNextRequest{1};
std::atomic<std::uint32_t> sNextStation{1};

// True the first time for each clip.
bool IsNews(const zebcore::utility::Guid& content) {
  static std::mutex mutex;
  static std::set<zebcore::utility::Guid> told;
  const std::lock_guard lock(mutex);
  return told.insert(content).second;
}

// On the worker.
void SayUndecodable(const FrameOrder& order) {
  if (!IsNews(order.content))
    return;
  PictureUndecodableMessage message;
  message.media = order.media;
  message.time = order.time;
  zebcore::messaging::PostMessageToUIThread(kStation_UndecodablePictures, message, false);
}

InterfaceRef<MF::IVideoFrame> WaitFor(const FrameOrder& order) {
  std::promise<InterfaceRef<MF::IVideoFrame>> promise;
  FrameService::Instance().Order(order, [&](const auto& decoded) {
    if (!decoded)
      SayUndecodable(order);
    promise.set_value(decoded);
  });
  return promise.get_future().get();
}

class RenderFrame final : public IRenderFrame {
 public:
  RenderFrame() : mStation("renderframe:" + std::to_string(sNextStation.fetch_add(1))) {}

  void SetLookAhead(int frames) override { Configure("RenderFrame::SetLookAhead", frames); }
  void SetFields(int fields) override { Configure("RenderFrame::SetFields", fields); }
  void SetProgressive(int progressive) override { Configure("RenderFrame::SetProgressive", progressive); }
  void SetQuality(int flags) override { Configure("RenderFrame::SetQuality", flags); }
  void SetDownsampling(int mode) override { Configure("RenderFrame::SetDownsampling", mode); }
  void SetPriority(int priority) override { Configure("RenderFrame::SetPriority", priority); }
  ImmutableString GetStationID() const override { return mStation; }
  void SetFrameSize(const zebcore::geom::RectT<int>& rect, const zebmediatypes::PixelAspectRatio& aspect) override {
    if (zebcore::trace::IsOn())
      zebcore::trace::Record("RenderFrame::SetFrameSize",
                             {{"size", {rect.width, rect.height}}, {"aspect", {aspect.numerator, aspect.denominator}}});
    mWidth = rect.width;
    mHeight = rect.height;
  }
  void SetLetterbox(int mode) override { Configure("RenderFrame::SetLetterbox", mode); }

  RenderStatus Render(const zebmediatypes::TickTime& time, const zebcore::utility::Guid& content,
                      const InterfaceRef<BE::IVideoSegments>& video, const std::vector<zebmediatypes::PixelFormat>&,
                      bool, int, int, InterfaceRef<MF::IVideoFrame>& frame, std::uint32_t& requestID, bool synchronous,
                      zebmediatypes::PixelFormat, const zebmediatypes::ColorSpace&,
                      const zebcore::utility::Guid&) override {
    requestID = sNextRequest.fetch_add(1);
    const FrameOrder order{MediaOf(video), content, time, mWidth, mHeight};
    const bool hasMedia = !order.media.empty();
    frame = hasMedia ? FrameService::Instance().Find(order) : nullptr;
    if (!frame && hasMedia && synchronous)
      frame = WaitFor(order);
    if (zebcore::trace::IsOn())
      zebcore::trace::Record(
          "RenderFrame::Render",
          {{"time", time.GetTicks()}, {"request", requestID}, {"at_once", static_cast<bool>(frame)}});
    if (frame)
      return kRenderStatus_Complete;
    if (hasMedia && !synchronous)
      FrameService::Instance().Order(order, [station = mStation, requestID, order](const auto& decoded) {
        Report(station, requestID, order, decoded);
      });
    return kRenderStatus_Pending;
  }

 private:
  // On the worker. The place of a picture that cannot be decoded stays empty.
  static void Report(const ImmutableString& station, std::uint32_t requestID, const FrameOrder& order,
                     const InterfaceRef<MF::IVideoFrame>& decoded) {
    if (!decoded) {
      SayUndecodable(order);
      return;
    }
    RenderFrameCompletionMessage message;
    message.requestID = requestID;
    message.time = order.time;
    message.frame = decoded;
    zebcore::messaging::PostMessageToUIThread(station, message, false);
  }

  static std::filesystem::path MediaOf(const InterfaceRef<BE::IVideoSegments>& video) {
    auto master = video.Query<BE::MasterClip>();
    if (const auto clip = video.Query<BE::IClip>(); clip && !master)
      master = clip->GetMasterClip().Query<BE::MasterClip>();
    return master ? master->GetMediaPath() : std::filesystem::path();
  }

  static void Configure(const char* call, int value) {
    if (zebcore::trace::IsOn())
      zebcore::trace::Record(call, {{"value", value}});
  }

  ImmutableString mStation;
  int mWidth = 0;
  int mHeight = 0;
};

[[maybe_unused]] const bool sRegistered = [] {
  zebcore::classref::RegisterClass(kRenderFrameClassID, &CreateRenderFrame);
  return true;
}();

} // namespace

InterfaceRef<> CreateRenderFrame() {
  return InterfaceRef<>(new RenderFrame());
}

} // namespace ML
