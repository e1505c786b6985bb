#include "zebappsupport/Feature.h"

#include <mutex>
#include <set>
#include <string>

namespace zebappsupport::feature {

namespace {

struct Features {
  std::mutex mutex;
  std::set<std::string, std::less<>> enabled;
};

Features& TheFeatures() {
  static auto* const features = new Features;
  return *features;
}

} // namespace

bool IsFeatureEnabled(const char* name) {
  if (!name)
    return false;
  Features& features = TheFeatures();
  std::lock_guard lock(features.mutex);
  return features.enabled.contains(std::string_view(name));
}

void SetFeatureEnabled(const char* name, bool enabled) {
  if (!name)
    return;
  Features& features = TheFeatures();
  std::lock_guard lock(features.mutex);
  if (enabled)
    features.enabled.emplace(name);
  else
    features.enabled.erase(name);
}

} // namespace zebappsupport::feature
