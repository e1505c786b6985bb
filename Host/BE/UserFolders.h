#pragma once

#include <filesystem>

// Where the program keeps what is the user's, after the XDG Base Directory Specification. The folders need not exist.
namespace BE::folders {

std::filesystem::path GetConfigFolder();
std::filesystem::path GetDataFolder();

} // namespace BE::folders
