#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "Captions/contracts/CaptioningRenderableModel.h"
#include "MF/VideoFrame.h"
#include "zebcore/Geometry.h"
#include "zebcore/InterfaceRef.h"
#include "zebmediatypes/PixelAspectRatio.h"

namespace HSL {

// Draws the captions of a model over a BGRA frame, in place, laid out as in the video's own frame and scaled to the
// target. target: the part of the frame that shows the whole picture; what of it lies beyond the frame counts to the
// frame's edge, so that a target a little larger than the frame draws into the frame as it is. source and full: the
// video's own frame rectangle, to whose pixels the captions' positions refer; the model knows their aspect, and
// pixelAspect, that of the frame drawn upon, follows from the target. row and column narrow the drawing to a cell of
// formats that have cells; open captions have none and are drawn whole. opacity from 0 to 1. A null model or frame
// draws nothing. Any thread, each with a renderer of its own; the first call of a thread reads the fonts, later ones
// take a millisecond or so for a thumbnail.
void RenderOpenCaptions(const boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel>& model,
                        const zebcore::geom::RectT<int>& target, const zebmediatypes::PixelAspectRatio& pixelAspect,
                        const zebcore::classref::InterfaceRef<MF::IVideoFrame>& frame,
                        const zebcore::geom::RectT<int>& source, const zebcore::geom::RectT<int>& full, int row,
                        int column, double opacity);

} // namespace HSL
