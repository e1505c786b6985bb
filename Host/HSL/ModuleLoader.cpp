#include <algorithm>
#include <cstring>
#include <fstream>
#include <system_error>

#include <dlfcn.h>
#include <elf.h>

#include "HSL/Module.h"
#include "zebcore/Log.h"

namespace HSL {

namespace fs = std::filesystem;
using zebcore::log::Level;

namespace {

void Complain(const fs::path& library, const std::string& why) {
  zebcore::log::Write(Level::Error, "The module " + library.string() + " is left out: " + why);
}

template <class T> bool ReadAt(std::ifstream& file, std::uint64_t position, T& value) {
  file.seekg(static_cast<std::streamoff>(position));
  return static_cast<bool>(file.read(reinterpret_cast<char*>(&value), sizeof value));
}

// The system maps a library without a look at its length; one that was cut off would bring the program down with it.
bool IsWhole(const fs::path& library) {
  std::error_code error;
  const std::uint64_t size = fs::file_size(library, error);
  std::ifstream file(library, std::ios::binary);
  Elf64_Ehdr header{};
  if (error || !ReadAt(file, 0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0)
    return false;
  for (std::uint64_t i = 0; i < header.e_phnum; ++i) {
    Elf64_Phdr part{};
    if (!ReadAt(file, header.e_phoff + i * sizeof part, part))
      return false;
    const bool fits = part.p_offset <= size && part.p_filesz <= size - part.p_offset;
    if (part.p_type == PT_LOAD && !fits)
      return false;
  }
  return true;
}

// The libraries that lie in the folder themselves; a link that leads out of it is named in the log.
std::vector<fs::path> FindLibraries(const fs::path& folder) {
  std::vector<fs::path> libraries;
  std::error_code error;
  const fs::path home = fs::canonical(folder, error);
  if (error) {
    zebcore::log::Write(Level::Warning, "There is no module folder " + folder.string() + ": " + error.message());
    return libraries;
  }
  for (fs::directory_iterator entry(home, error), end; !error && entry != end; entry.increment(error)) {
    if (entry->path().extension() != ".so")
      continue;
    std::error_code broken;
    const fs::path real = fs::canonical(entry->path(), broken);
    if (broken)
      Complain(entry->path(), broken.message());
    else if (real.parent_path() != home)
      Complain(entry->path(), "it lies outside the module folder");
    else if (!fs::is_regular_file(real, broken))
      Complain(entry->path(), "it is no file");
    else
      libraries.push_back(entry->path());
  }
  if (error)
    zebcore::log::Write(Level::Warning, "The module folder " + home.string() + " cannot be read: " + error.message());
  std::sort(libraries.begin(), libraries.end());
  return libraries;
}

} // namespace

int ModuleLoader::LoadAll(const fs::path& folder) {
  int loaded = 0;
  for (const fs::path& library : FindLibraries(folder)) {
    if (!IsWhole(library)) {
      Complain(library, "it is no whole library");
      continue;
    }
    if (dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL)) {
      ++loaded;
      continue;
    }
    const char* const why = dlerror();
    Complain(library, why ? why : "the system gives no reason");
  }
  return loaded;
}

fs::path ModuleLoader::GetModuleFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error).parent_path();
  fs::path beside = program / "modules";
  if (fs::is_directory(beside, error))
    return beside;
  return (program / ".." / "lib" / "captivo" / "modules").lexically_normal();
}

} // namespace HSL
