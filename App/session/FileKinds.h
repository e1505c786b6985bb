#pragma once

#include <filesystem>

namespace App {

enum class FileKind { Project, Captions, Media };

// What the program would take a file for, from its first bytes and its name. What is neither a project nor captions is
// taken for media, which says itself what is wrong with it.
FileKind FindKind(const std::filesystem::path& path);

} // namespace App
