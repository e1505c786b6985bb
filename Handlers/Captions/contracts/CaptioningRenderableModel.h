#pragma once

#include <vector>

#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include "Captions/contracts/Caption.h"
#include "zebcore/Guid.h"
#include "zebmediatypes/PixelAspectRatio.h"

namespace zebcaptioning {

// The open captions on show at one time, ready to be drawn. Closed formats have none.
class CaptioningRenderableModel : public boost::intrusive_ref_counter<CaptioningRenderableModel> {
 public:
  // Takes captions as they are; the model does not change with them. The frame is the video's, in its own pixels.
  CaptioningRenderableModel(
      std::vector<CaptionStatePtr> captions, int frameWidth, int frameHeight,
      const zebmediatypes::PixelAspectRatio& pixelAspect = zebmediatypes::kPixelAspectRatio_Square);

  // A pure function of its arguments; never all zero.
  static zebcore::utility::Guid CalculateRequestHash(const zebcore::utility::Guid& stream,
                                                     const zebmediatypes::TickTime& time, StreamFormat format);

  // By begin time, the oldest first.
  const std::vector<CaptionStatePtr>& GetCaptions() const { return mCaptions; }
  int GetFrameWidth() const { return mFrameWidth; }
  int GetFrameHeight() const { return mFrameHeight; }
  zebmediatypes::PixelAspectRatio GetPixelAspectRatio() const { return mPixelAspect; }

 private:
  std::vector<CaptionStatePtr> mCaptions;
  int mFrameWidth;
  int mFrameHeight;
  zebmediatypes::PixelAspectRatio mPixelAspect;
};

} // namespace zebcaptioning
