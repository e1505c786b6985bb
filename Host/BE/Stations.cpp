#include "Captions/contracts/Stations.h"

namespace BE {

const zebcore::utility::ImmutableString kBackendPreferencesChangedStationID("backend.preferences.changed");
const zebcore::utility::ImmutableString kBackendProjectActivationStationID("backend.project.activation");

} // namespace BE

// Here, where all that commits open edits can reach it.
namespace HSL {

const zebcore::utility::ImmutableString kStation_CaptionSelection("caption.selection");

} // namespace HSL
