#include "Captions/contracts/Stations.h"

namespace BE {

const zebcore::utility::ImmutableString kBackendPreferencesChangedStationID("BE::kBackendPreferencesChangedStationID");
const zebcore::utility::ImmutableString kBackendProjectActivationStationID("BE::kBackendProjectActivationStationID");

} // namespace BE

// Here, where all that commits open edits can reach it.
namespace HSL {

const zebcore::utility::ImmutableString kStation_CaptionSelection("HSL::kStation_CaptionSelection");

} // namespace HSL
