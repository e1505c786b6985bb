#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "Captions/contracts/CaptioningRenderableModel.h"
#include "MF/VideoFrame.h"
#include "zebcore/Geometry.h"
#include "zebcore/InterfaceRef.h"
#include "zebmediatypes/PixelAspectRatio.h"

namespace HSL {

// Draws the captions of a model over a BGRA frame, in place. target: the part of the frame that shows the whole
// picture. pixelAspect is that of the frame. source and full: the video's own frame rectangle, to which the captions'
// positions refer. row and column narrow the drawing to one cell; -1 draws all. opacity from 0 to 1. A null model draws
// nothing.
void RenderOpenCaptions(const boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel>& model,
                        const zebcore::geom::RectT<int>& target, const zebmediatypes::PixelAspectRatio& pixelAspect,
                        const zebcore::classref::InterfaceRef<MF::IVideoFrame>& frame,
                        const zebcore::geom::RectT<int>& source, const zebcore::geom::RectT<int>& full, int row,
                        int column, double opacity);

} // namespace HSL
