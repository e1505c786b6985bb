#pragma once

// Features of the host that can be switched on and off by name. One that nobody set is off.
namespace zebappsupport::feature {

bool IsFeatureEnabled(const char* name);
void SetFeatureEnabled(const char* name, bool enabled);

} // namespace zebappsupport::feature
