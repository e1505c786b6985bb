#include "HSL/TimecodeInfo.h"

namespace HSL {

UIF::TimecodeControlInfo GetTimecodeInfo(const zebcore::classref::InterfaceRef<BE::IProject>&,
                                         zebmediatypes::FrameRate videoRate, zebmediatypes::FrameRate audioRate) {
  // A project has no display of its own: controls begin with the default one and are told the source's.
  return {zebmediatypes::kTimeDisplay_Default, videoRate, audioRate};
}

} // namespace HSL
