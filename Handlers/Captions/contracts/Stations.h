#pragma once

#include "zebcore/ImmutableString.h"

// Stations that the host exports.

namespace MZ {
extern const zebcore::utility::ImmutableString kStation_ClosedCaptionsActivation;
extern const zebcore::utility::ImmutableString kStation_MasterClipActivation;
extern const zebcore::utility::ImmutableString kStation_Info;
extern const zebcore::utility::ImmutableString kStation_SequenceActivation;
extern const zebcore::utility::ImmutableString kStation_TrackItemActivation;
extern const zebcore::utility::ImmutableString kStation_BinActivation;
} // namespace MZ

namespace BE {
extern const zebcore::utility::ImmutableString kBackendPreferencesChangedStationID;
extern const zebcore::utility::ImmutableString kBackendProjectActivationStationID;
} // namespace BE

namespace HSL {
extern const zebcore::utility::ImmutableString kStation_CaptionSelection;
} // namespace HSL

namespace UIF {
// What is chosen here is shown by every timecode control; the two names are fixed.
inline constexpr const char* kStation_SourceTimeDisplayChanged = "timecodeControl.timedisplay.changed.station.source";
inline constexpr const char* kStation_SequenceTimeDisplayChanged =
    "timecodeControl.timedisplay.changed.station.sequence";
} // namespace UIF
