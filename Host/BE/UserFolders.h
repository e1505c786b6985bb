#pragma once

#include <filesystem>

// Where the program keeps what is the user's, as the XDG base directories say. The folders need not exist.
namespace BE::folders {

std::filesystem::path GetConfigFolder();
std::filesystem::path GetDataFolder();

} // namespace BE::folders
