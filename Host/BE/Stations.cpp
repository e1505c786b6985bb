#include "Captions/contracts/Stations.h"

namespace BE {

const zebcore::utility::ImmutableString kBackendPreferencesChangedStationID("backend.preferences.changed");
const zebcore::utility::ImmutableString kBackendProjectActivationStationID("backend.project.activation");

} // namespace BE
