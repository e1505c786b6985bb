#include "BE/UserFolders.h"

#include <cstdlib>

namespace BE::folders {

namespace {

// A relative path in the variable is to be ignored, says the standard.
std::filesystem::path GetFolder(const char* variable, const char* underHome) {
  if (const char* folder = std::getenv(variable); folder && *folder == '/')
    return std::filesystem::path(folder) / "captivo";
  const char* home = std::getenv("HOME");
  return std::filesystem::path(home && *home ? home : "/tmp") / underHome / "captivo";
}

} // namespace

std::filesystem::path GetConfigFolder() {
  return GetFolder("XDG_CONFIG_HOME", ".config");
}
std::filesystem::path GetDataFolder() {
  return GetFolder("XDG_DATA_HOME", ".local/share");
}

} // namespace BE::folders
