#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "BE/Interfaces.h"
#include "MF/VideoFrame.h"
#include "zebcore/Guid.h"
#include "zebcore/InterfaceRef.h"
#include "zebcore/Messaging.h"

namespace ML {

using zebcore::classref::InterfaceRef;

extern const zebcore::classref::ClassID kRenderFrameClassID;
using RenderStatus = std::uint32_t;
inline constexpr RenderStatus kRenderStatus_Complete = 0x200D0000;
inline constexpr RenderStatus kRenderStatus_Pending = 0x200D0001;

// A picture of a media file cannot be decoded: the file is damaged there, or not there at all. Said once for each clip,
// whoever asks for how many pictures; what asked stays without an answer.
inline constexpr const char* kStation_UndecodablePictures = "ML.UndecodablePictures";
struct PictureUndecodableMessage : zebcore::messaging::MessageOf<PictureUndecodableMessage> {
  static constexpr const char* kTypeName = "ML::PictureUndecodableMessage";
  std::filesystem::path media;
  zebmediatypes::TickTime time; // of the first picture that failed
};

// Renders single frames of a clip at a small size, on a worker; it answers at once with what it holds already, else by
// RenderFrameCompletionMessage on its station. The newest request is served first and none is dropped.
//
// The video is a clip's, or a clip itself that is a still image. A request of a video without a media file stays
// without an answer.
class IRenderFrame : public virtual zebcore::classref::IObject {
 public:
  // Hints, in the order in which they are set: how many frames ahead (2), fields (0), progressive (1), quality flags
  // (31), downsampling (1), priority (6).
  virtual void SetLookAhead(int frames) = 0;
  virtual void SetFields(int fields) = 0;
  virtual void SetProgressive(int progressive) = 0;
  virtual void SetQuality(int flags) = 0;
  virtual void SetDownsampling(int mode) = 0;
  virtual void SetPriority(int priority) = 0;
  virtual zebcore::utility::ImmutableString GetStationID() const = 0;
  virtual void SetFrameSize(const zebcore::geom::RectT<int>& rect, const zebmediatypes::PixelAspectRatio& aspect) = 0;
  virtual void SetLetterbox(int mode) = 0;
  // formats: those that the caller takes; BGRA is all that is made. synchronous: waits for the picture, and is complete
  // whenever there is one; never for what must go on meanwhile.
  virtual RenderStatus Render(const zebmediatypes::TickTime& time, const zebcore::utility::Guid& content,
                              const InterfaceRef<BE::IVideoSegments>& video,
                              const std::vector<zebmediatypes::PixelFormat>& formats, bool fieldsOnly, int timeout,
                              int flags, InterfaceRef<MF::IVideoFrame>& frame, std::uint32_t& requestID,
                              bool synchronous, zebmediatypes::PixelFormat fallback,
                              const zebmediatypes::ColorSpace& colorSpace, const zebcore::utility::Guid& context) = 0;
};

// A renderer with a station of its own, as the class registry makes it. One that is registered in its place, to hold
// requests for instance, may pass them on to this.
InterfaceRef<> CreateRenderFrame();

} // namespace ML
