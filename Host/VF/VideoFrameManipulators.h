#pragma once

#include "MF/VideoFrame.h"
#include "zebcore/InterfaceRef.h"
#include "zebmediatypes/PixelAspectRatio.h"

namespace VF::VideoFrameManipulators {

// A blank frame of the size, aspect and format of another. Null for null.
zebcore::classref::InterfaceRef<MF::IVideoFrame>
CreateBlankFrame(const zebcore::classref::InterfaceRef<MF::IVideoFrame>& like);

// The pixels of one frame into another of the same size, which is written. Both BGRA; a difference in size copies what
// both have. quality and parameters are for frames that need scaling or another colour space, which these never do.
void CopyFrame(const zebcore::classref::InterfaceRef<MF::IVideoFrame>& from,
               const zebcore::classref::InterfaceRef<MF::IVideoFrame>& to, int quality,
               const zebmediatypes::ColorSpaceConversionParameters& parameters);

} // namespace VF::VideoFrameManipulators
