#include "App/session/LogFile.h"

#include <cstdio>
#include <ctime>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>

#include "BE/UserFolders.h"

namespace App {

namespace fs = std::filesystem;
using zebcore::log::Level;

namespace {

const char* NameOf(Level level) {
  return level == Level::Info ? "info" : level == Level::Warning ? "warning" : "error";
}

std::string Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[32];
  const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
  return {text, length};
}

// Lines of one text stay one line of the file.
std::string OnOneLine(std::string_view text) {
  std::string line(text);
  for (char& c : line) {
    if (c == '\n' || c == '\r')
      c = ' ';
  }
  return line;
}

struct File {
  std::mutex mutex;
  std::ofstream stream;

  void Write(Level level, std::string_view text) {
    std::lock_guard lock(mutex);
    // At once, so that it is there after whatever happens next.
    stream << Now() << "  " << NameOf(level) << "  " << OnOneLine(text) << std::endl;
    if (level != Level::Info || !stream)
      std::fprintf(stderr, "captivo: %s: %.*s\n", NameOf(level), static_cast<int>(text.size()), text.data());
  }
};

void PutAsideIfLarge(const fs::path& path) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(path, error);
  if (error || size <= LogFile::kLargest)
    return;
  fs::path aside = path;
  aside += ".old";
  fs::rename(path, aside, error);
}

} // namespace

LogFile::LogFile(fs::path path) {
  std::error_code error;
  fs::create_directories(path.parent_path(), error);
  PutAsideIfLarge(path);
  const auto file = std::make_shared<File>();
  file->stream.open(path, std::ios::app);
  if (!file->stream)
    return;
  zebcore::log::SetSink([file](Level level, std::string_view text) { file->Write(level, text); });
}

LogFile::~LogFile() {
  zebcore::log::SetSink(nullptr);
}

fs::path LogFile::GetUsualPath() {
  return BE::folders::GetDataFolder() / "captivo.log";
}

} // namespace App
