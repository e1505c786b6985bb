#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "App/session/Background.h"
#include "BE/Project.h"

// Files of the user's, read and written with their failures told in words.
namespace App {

// The name of a file for messages, UTF-8, in quotation marks.
std::string QuotedName(const std::filesystem::path& path);

// Why a path cannot be opened as a file: not there, a folder, something else than a file, no permission.
std::optional<BE::Problem> FindFileProblem(const std::filesystem::path& path);

// The size above which no file is a caption file.
inline constexpr std::uintmax_t kLargestCaptionFile = std::uintmax_t{100} << 20;

// All of a caption file. What cannot be one is refused after its first bytes.
BE::Result<std::string> ReadCaptionFile(const std::filesystem::path& path, JobState& state);

// Puts the bytes where path leads, whole or not at all.
std::optional<BE::Problem> WriteWholeFile(const std::filesystem::path& path, std::string_view bytes);

} // namespace App
