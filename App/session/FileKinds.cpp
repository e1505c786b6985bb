#include "App/session/FileKinds.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <string>

#include "Formats/Formats.h"

namespace App {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kFirstBytes = 4096;
constexpr const char* kProjectSuffix = ".captivo";
constexpr std::string_view kDatabaseMark = "SQLite format 3";

std::string LowerSuffix(const fs::path& path) {
  std::string suffix = path.extension().string();
  std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return suffix;
}

std::string FirstBytes(const fs::path& path) {
  std::error_code error;
  std::string bytes;
  if (!fs::is_regular_file(path, error))
    return bytes;
  std::ifstream file(path, std::ios::binary);
  bytes.resize(kFirstBytes);
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(0, file.gcount())));
  return bytes;
}

} // namespace

FileKind FindKind(const fs::path& path) {
  const std::string suffix = LowerSuffix(path);
  const std::string bytes = FirstBytes(path);
  if (suffix == kProjectSuffix || bytes.starts_with(kDatabaseMark))
    return FileKind::Project;
  if (suffix == ".srt" || suffix == ".vtt" ||
      Formats::Detect(bytes, path.filename().string()) != Formats::FileKind::Unknown)
    return FileKind::Captions;
  return FileKind::Media;
}

} // namespace App
