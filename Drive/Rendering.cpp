#include "Drive/Rendering.h"

#include <algorithm>
#include <map>

#include "BE/Interfaces.h"
#include "Captions/contracts/SelectionMessages.h"
#include "MF/VideoFrame.h"
#include "ML/FrameService.h"
#include "ML/RenderFrame.h"
#include "zebcore/Messaging.h"
#include "zebcore/Trace.h"

namespace Drive::Rendering {

namespace {

using zebcore::classref::InterfaceRef;
using zebmediatypes::TickTime;

// Far above those that the host's renderer counts, with which they share the panel's record.
constexpr std::uint32_t kFirstRequest = 0x40000000;
constexpr int kPlainGrey = 0x80;

struct Size {
  int width = 1;
  int height = 1;
};

// All that is needed to answer later.
struct Request {
  zebcore::utility::ImmutableString station;
  TickTime time;
  InterfaceRef<MF::IVideoFrame> frame;
};

struct State {
  Mode mode = Mode::Real;
  std::uint32_t next = kFirstRequest;
  std::map<std::uint32_t, Request> held;
  // Of the renderer that was made last.
  zebcore::utility::ImmutableString station;
  Size size;
};

State& TheState() {
  static State state;
  return state;
}

InterfaceRef<MF::IVideoFrame> MakePlainFrame(const Size& size) {
  auto frame =
      MF::CreateVideoFrame(std::max(1, size.width), std::max(1, size.height), zebmediatypes::kPixelAspectRatio_Square);
  const auto rect = frame->GetRect();
  std::uint8_t* row = frame->GetWritablePixels();
  for (int y = 0; y < rect.height; ++y, row += frame->GetRowBytes()) {
    for (int x = 0; x < rect.width; ++x) {
      std::uint8_t* const pixel = row + 4 * x;
      std::fill(pixel, pixel + 3, static_cast<std::uint8_t>(kPlainGrey));
      pixel[3] = 0xff;
    }
  }
  return frame;
}

void PostCompletion(const zebcore::utility::ImmutableString& station, std::uint32_t request, TickTime time,
                    const InterfaceRef<MF::IVideoFrame>& frame) {
  ML::RenderFrameCompletionMessage message;
  message.requestID = request;
  message.time = time;
  message.frame = frame;
  zebcore::messaging::PostMessageToUIThread(station, message, false);
}

// The host's renderer, with the answers as the script wants them.
class Renderer final : public ML::IRenderFrame {
 public:
  Renderer() : mInner(ML::CreateRenderFrame().Query<ML::IRenderFrame>()) {
    TheState().station = mInner->GetStationID();
  }

  void SetLookAhead(int frames) override { mInner->SetLookAhead(frames); }
  void SetFields(int fields) override { mInner->SetFields(fields); }
  void SetProgressive(int progressive) override { mInner->SetProgressive(progressive); }
  void SetQuality(int flags) override { mInner->SetQuality(flags); }
  void SetDownsampling(int mode) override { mInner->SetDownsampling(mode); }
  void SetPriority(int priority) override { mInner->SetPriority(priority); }
  zebcore::utility::ImmutableString GetStationID() const override { return mInner->GetStationID(); }
  void SetFrameSize(const zebcore::geom::RectT<int>& rect, const zebmediatypes::PixelAspectRatio& aspect) override {
    mSize = TheState().size = {rect.width, rect.height};
    mInner->SetFrameSize(rect, aspect);
  }
  void SetLetterbox(int mode) override { mInner->SetLetterbox(mode); }

  ML::RenderStatus Render(const TickTime& time, const zebcore::utility::Guid& content,
                          const InterfaceRef<BE::IVideoSegments>& video,
                          const std::vector<zebmediatypes::PixelFormat>& formats, bool fieldsOnly, int timeout,
                          int flags, InterfaceRef<MF::IVideoFrame>& frame, std::uint32_t& requestID, bool synchronous,
                          zebmediatypes::PixelFormat fallback, const zebmediatypes::ColorSpace& colorSpace,
                          const zebcore::utility::Guid& context) override {
    const auto render = [&](bool wait) {
      return mInner->Render(time, content, video, formats, fieldsOnly, timeout, flags, frame, requestID, wait, fallback,
                            colorSpace, context);
    };
    State& state = TheState();
    if (state.mode == Mode::Real)
      return render(synchronous);
    // The picture itself is the host's in each mode; only when it arrives differs. What its renderer records of that is
    // not what the panel sees.
    zebcore::trace::SetOn(false);
    const bool isReal = render(true) == ML::kRenderStatus_Complete;
    zebcore::trace::SetOn(true);
    const InterfaceRef<MF::IVideoFrame> picture = isReal ? frame : MakePlainFrame(mSize);
    requestID = state.next++;
    const bool atOnce = state.mode == Mode::AtOnce;
    zebcore::trace::Record("RenderFrame::Render",
                           {{"time", time.GetTicks()}, {"request", requestID}, {"at_once", atOnce}});
    frame = atOnce ? picture : nullptr;
    if (atOnce)
      return ML::kRenderStatus_Complete;
    state.held[requestID] = {GetStationID(), time, picture};
    return ML::kRenderStatus_Pending;
  }

 private:
  InterfaceRef<ML::IRenderFrame> mInner;
  Size mSize;
};

InterfaceRef<> CreateRenderer() {
  return InterfaceRef<>(new Renderer());
}

} // namespace

void Install() {
  zebcore::classref::RegisterClass(ML::kRenderFrameClassID, &CreateRenderer);
}

void Uninstall() {
  zebcore::classref::RegisterClass(ML::kRenderFrameClassID, &ML::CreateRenderFrame);
  TheState() = {};
}

Mode GetMode() {
  return TheState().mode;
}

void SetMode(Mode mode) {
  TheState().mode = mode;
}

zebcore::utility::ImmutableString GetStation() {
  return TheState().station;
}

std::vector<Held> GetHeld() {
  std::vector<Held> held;
  for (const auto& [id, request] : TheState().held)
    held.push_back({id, request.time});
  return held;
}

bool Complete(std::uint32_t request, TickTime time) {
  State& state = TheState();
  const auto found = state.held.find(request);
  if (found != state.held.end()) {
    PostCompletion(found->second.station, request, time, found->second.frame);
    state.held.erase(found);
    return true;
  }
  if (state.station.IsNull())
    return false;
  PostCompletion(state.station, request, time, MakePlainFrame(state.size));
  return true;
}

void WaitForDecoding() {
  ML::FrameService::Instance().WaitUntilIdle();
}

} // namespace Drive::Rendering
