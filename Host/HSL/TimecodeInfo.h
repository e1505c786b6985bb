#pragma once

#include "BE/Interfaces.h"
#include "UIF/TimecodeControlInfo.h"

namespace HSL {

// What a timecode control needs to know of the project to start with.
UIF::TimecodeControlInfo GetTimecodeInfo(const zebcore::classref::InterfaceRef<BE::IProject>& project,
                                         zebmediatypes::FrameRate videoRate, zebmediatypes::FrameRate audioRate);

} // namespace HSL
