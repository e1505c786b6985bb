#include "Captions/contracts/Stations.h"

namespace MZ {

const zebcore::utility::ImmutableString kStation_ClosedCaptionsActivation("activation.closedcaptions");
const zebcore::utility::ImmutableString kStation_MasterClipActivation("activation.masterclip");
const zebcore::utility::ImmutableString kStation_Info("activation.info");
const zebcore::utility::ImmutableString kStation_SequenceActivation("activation.sequence");
const zebcore::utility::ImmutableString kStation_TrackItemActivation("activation.trackitem");
const zebcore::utility::ImmutableString kStation_BinActivation("activation.bin");

} // namespace MZ
