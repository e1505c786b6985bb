#pragma once

#include "MF/VideoFrame.h"
#include "UIF/Drawing.h"
#include "zebcore/InterfaceRef.h"

namespace UIF::VideoFrameBlit {

// Part of a BGRA frame, stretched to a rectangle of the context. opacity from 0 to 1. Draws nothing for null.
void BlitFrame(const zebcore::classref::InterfaceRef<MF::IVideoFrame>& frame, const RectT<int>& source, DC& dc,
               const RectT<int>& target, double opacity);

} // namespace UIF::VideoFrameBlit
