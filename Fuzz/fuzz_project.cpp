#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <unistd.h>

#include "BE/Project.h"

namespace {

// In memory where there is such a place: every run writes the file anew.
std::filesystem::path WorkFile() {
  static const std::filesystem::path file = [] {
    const std::filesystem::path shared = "/dev/shm";
    const std::filesystem::path folder =
        (std::filesystem::exists(shared) ? shared : std::filesystem::temp_directory_path()) /
        ("fuzz_project." + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    return folder / "project.captivo";
  }();
  return file;
}

} // namespace

// Bytes as a project file: it opens and can be looked through, undone and edited, or there is one message.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::filesystem::path file = WorkFile();
  for (const char* suffix : {"-journal", "-wal", "-shm"})
    std::filesystem::remove(file.string() + suffix);
  {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  auto project = BE::Project::Open(file);
  if (!project) {
    if (project.problem.text.empty())
      std::abort();
    return 0;
  }
  for (const auto& clip : (*project.value)->GetClips()) {
    for (const auto& stream : clip->GetStreams())
      stream->FindAt(zebmediatypes::kTime_Zero);
  }
  (*project.value)->Undo();
  (*project.value)->Redo();
  (*project.value)->Close();
  return 0;
}
