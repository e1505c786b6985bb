#include "Captions/contracts/CaptioningRenderableModel.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/pane/Thumbnail.h"
#include "HSL/RenderOpenCaptions.h"
#include "ML/RenderFrame.h"
#include "UIF/VideoFrameBlit.h"
#include "VF/VideoFrameManipulators.h"

namespace Captivo {

using zebmediatypes::PixelFormat;

namespace {

constexpr int kRenderTimeout = 800;
constexpr int kRenderFlags = 0;
constexpr int kLetterbox_None = 0;
constexpr int kRenderQuality = 4;

} // namespace

// A row shows the last frame of its caption.
TickTime CaptionsPane::GetLastFrameTime(const TickTime& end) const {
  return end - GetFrameRate().GetFrameDuration();
}

void CaptionsPane::RequestPreview(const TickTime& time, const CaptionsSource& ofSource) {
  const auto video = ofSource.GetVideoClip();
  if (!video)
    return;
  const std::vector<PixelFormat> formats{zebmediatypes::kPixelFormat_BGRA_4444_8u};
  const RectT<int> size = Thumbnail::GetSourceRect(video->GetFrameRect(), video->GetPixelAspectRatio());
  renderer->SetFrameSize(size, zebmediatypes::kPixelAspectRatio_Square);
  renderer->SetLetterbox(kLetterbox_None);

  InterfaceRef<MF::IVideoFrame> frame;
  std::uint32_t requestID = 0;
  const ML::RenderStatus status = renderer->Render(
      time, video->GetContentID(), video, formats, false, kRenderTimeout, kRenderFlags, frame, requestID, false,
      zebmediatypes::kPixelFormat_Invalid, zebmediatypes::ColorSpace(), zebcore::utility::Guid());
  if (status == ML::kRenderStatus_Complete)
    FindPreviewEntry(video, time, frame);
  else
    pendingRenders[requestID] = video;
}

void CaptionsPane::OnRenderFrameCompleted(const ML::RenderFrameCompletionMessage& message) {
  FindPreviewEntry(pendingRenders[message.requestID], message.time, message.frame);
  Invalidate();
}

CaptionsPane::PreviewEntry& CaptionsPane::FindPreviewEntry(const InterfaceRef<BE::IVideoSegments>& video,
                                                           const TickTime& time,
                                                           const InterfaceRef<MF::IVideoFrame>& frame) {
  PreviewEntry& entry = previewCache[video][time];
  if (frame && frame != entry.frame)
    entry.frame = frame;
  const auto stream = source.GetCaptioningStream();
  if (!stream || stream->GetStreamFormat() == zebcaptioning::kStreamFormat_None || stream->GetCaptionCount() == 0)
    return entry; // a frame is kept with no overlay too
  const auto hash = zebcaptioning::CaptioningRenderableModel::CalculateRequestHash(stream->GetGuid(), time,
                                                                                   stream->GetStreamFormat());
  if (hash != entry.requestHash) {
    entry.model = stream->GetRenderableModel(time);
    entry.requestHash = hash;
    Invalidate();
  }
  return entry;
}

void CaptionsPane::PaintThumbnail(UIF::DC& dc, const InterfaceRef<BE::IVideoSegments>& video, const TickTime& time,
                                  const RectT<int>& sourceRect, const RectT<int>& targetRect) {
  const PreviewEntry& entry = FindPreviewEntry(video, time, nullptr);
  if (!entry.frame)
    return;
  if (!entry.model) {
    UIF::VideoFrameBlit::BlitFrame(entry.frame, sourceRect, dc, targetRect, 1.0);
    return;
  }
  // The cached frame is never drawn upon.
  const auto copy = VF::VideoFrameManipulators::CreateBlankFrame(entry.frame);
  VF::VideoFrameManipulators::CopyFrame(entry.frame, copy, kRenderQuality,
                                        zebmediatypes::ColorSpaceConversionParameters());
  HSL::RenderOpenCaptions(entry.model, {0, 0, targetRect.width, targetRect.height}, copy->GetPixelAspectRatio(), copy,
                          video->GetFrameRect(), video->GetFrameRect(), -1, -1, 1.0);
  UIF::VideoFrameBlit::BlitFrame(copy, sourceRect, dc, targetRect, 1.0);
}

void CaptionsPane::ForgetPreview(const InterfaceRef<BE::IVideoSegments>& video) {
  previewCache.erase(video);
}

} // namespace Captivo
