#include "Captions/contracts/Stations.h"

// A station bears the name of its constant, so that a trace reads as the code does.
namespace MZ {

const zebcore::utility::ImmutableString kStation_ClosedCaptionsActivation("MZ::kStation_ClosedCaptionsActivation");
const zebcore::utility::ImmutableString kStation_MasterClipActivation("MZ::kStation_MasterClipActivation");
const zebcore::utility::ImmutableString kStation_Info("MZ::kStation_Info");
const zebcore::utility::ImmutableString kStation_SequenceActivation("MZ::kStation_SequenceActivation");
const zebcore::utility::ImmutableString kStation_TrackItemActivation("MZ::kStation_TrackItemActivation");
const zebcore::utility::ImmutableString kStation_BinActivation("MZ::kStation_BinActivation");

} // namespace MZ
