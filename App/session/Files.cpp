#include "App/session/Files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "App/session/Text.h"
#include "Formats/Formats.h"

namespace App {

namespace fs = std::filesystem;
using BE::Problem;
using BE::Result;

namespace {

constexpr std::size_t kFirstBytes = 64 * 1024;
constexpr std::size_t kBytesAtATime = 1024 * 1024;

class File {
 public:
  File(const char* path, int flags, mode_t mode = 0) : mDescriptor(::open(path, flags | O_CLOEXEC, mode)) {}
  explicit File(int descriptor) : mDescriptor(descriptor) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (mDescriptor >= 0)
      ::close(mDescriptor);
  }
  bool IsOpen() const { return mDescriptor >= 0; }
  int Get() const { return mDescriptor; }
  // A full disk may show only now.
  bool Close() { return ::close(std::exchange(mDescriptor, -1)) == 0; }

 private:
  int mDescriptor;
};

std::string Reason(int error) {
  return std::generic_category().message(error);
}

Problem NoSuchFile(const fs::path& path) {
  return {
      Text("$$$/Vidra/Captivo/Error/NotThere={1} is not there. It may have been moved, renamed or deleted: look for it "
           "and try again.",
           {QuotedName(path)})};
}

Problem NoPermission(const fs::path& path) {
  return {
      Text("$$$/Vidra/Captivo/Error/NoPermission={1} may not be read by you. Ask its owner for permission, or choose "
           "another file.",
           {QuotedName(path)})};
}

Problem CannotRead(const fs::path& path, int error) {
  switch (error) {
  case ENOENT:
  case ENOTDIR:
    return NoSuchFile(path);
  case EACCES:
  case EPERM:
    return NoPermission(path);
  default:
    return {
        Text("$$$/Vidra/Captivo/Error/CannotRead={1} cannot be read: {2}. Check the disk that it is on, or make a copy "
             "and try that.",
             {QuotedName(path), Reason(error)})};
  }
}

Problem CannotWrite(const fs::path& path, int error) {
  return {Text(
      "$$$/Vidra/Captivo/Error/CannotWrite={1} could not be written: {2}. Choose another folder or make room; what "
      "was there before is untouched.",
      {QuotedName(path), Reason(error)})};
}

Problem NoCaptionFile(const fs::path& path) {
  return {
      Text("$$$/Vidra/Captivo/Error/NoCaptionFile={1} is no caption file that can be read here. Choose a SubRip (.srt) "
           "or WebVTT (.vtt) file.",
           {QuotedName(path)})};
}

// Appends up to count bytes; the count that came, or -1.
ssize_t ReadMore(const File& file, std::string& bytes, std::size_t count) {
  const std::size_t before = bytes.size();
  bytes.resize(before + count);
  std::size_t got = 0;
  while (got < count) {
    const ssize_t n = ::read(file.Get(), bytes.data() + before + got, count - got);
    if (n < 0 && errno == EINTR)
      continue;
    if (n < 0) {
      bytes.resize(before);
      return -1;
    }
    if (n == 0)
      break;
    got += static_cast<std::size_t>(n);
  }
  bytes.resize(before + got);
  return static_cast<ssize_t>(got);
}

bool WriteAll(const File& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t n = ::write(file.Get(), bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR)
      continue;
    if (n < 0)
      return false;
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
  return true;
}

// A link stays a link: what it leads to is replaced.
fs::path Destination(const fs::path& path) {
  std::error_code error;
  const fs::path real = fs::canonical(path, error);
  return error ? path : real;
}

} // namespace

std::string QuotedName(const fs::path& path) {
  const fs::path name = path.filename();
  return Quoted(name.empty() ? path.string() : name.string());
}

std::optional<Problem> FindFileProblem(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::not_found)
    return NoSuchFile(path);
  if (error)
    return CannotRead(path, error.value());
  if (fs::is_directory(status))
    return Problem{Text("$$$/Vidra/Captivo/Error/IsFolder={1} is a folder. Choose a file in it.", {QuotedName(path)})};
  if (!fs::is_regular_file(status))
    return Problem{
        Text("$$$/Vidra/Captivo/Error/NoFile={1} is a device or a pipe. Choose an ordinary file.", {QuotedName(path)})};
  if (::access(path.c_str(), R_OK) != 0)
    return CannotRead(path, errno);
  return std::nullopt;
}

Result<std::string> ReadCaptionFile(const fs::path& path, JobState& state) {
  if (auto problem = FindFileProblem(path))
    return {std::nullopt, *problem};
  const File file(path.c_str(), O_RDONLY);
  if (!file.IsOpen())
    return {std::nullopt, CannotRead(path, errno)};

  std::string bytes;
  if (ReadMore(file, bytes, kFirstBytes) < 0)
    return {std::nullopt, CannotRead(path, errno)};
  if (bytes.empty())
    return {std::nullopt,
            {Text("$$$/Vidra/Captivo/Error/Empty={1} is empty: it holds no captions. Choose another file.",
                  {QuotedName(path)})}};
  const bool zeros = std::all_of(bytes.begin(), bytes.end(), [](char c) { return c == 0; });
  if (zeros || Formats::Detect(bytes, path.filename().string()) == Formats::FileKind::Unknown)
    return {std::nullopt, NoCaptionFile(path)};

  struct stat attributes {};
  if (::fstat(file.Get(), &attributes) == 0 && static_cast<std::uintmax_t>(attributes.st_size) > kLargestCaptionFile)
    return {
        std::nullopt,
        {Text(
            "$$$/Vidra/Captivo/Error/TooLarge={1} has {2} MB, more than any caption file. Files up to {3} MB are read; "
            "divide it if it really holds captions.",
            {QuotedName(path), std::to_string(attributes.st_size >> 20), std::to_string(kLargestCaptionFile >> 20)})}};

  for (ssize_t n = 1; n > 0 && !state.stop && bytes.size() <= kLargestCaptionFile;) {
    n = ReadMore(file, bytes, kBytesAtATime);
    if (n < 0)
      return {std::nullopt, CannotRead(path, errno)};
  }
  return {std::move(bytes), {}};
}

std::optional<Problem> WriteWholeFile(const fs::path& path, std::string_view bytes) {
  const fs::path destination = Destination(path);
  struct stat before {};
  const bool replaces = ::stat(destination.c_str(), &before) == 0;
  if (replaces && S_ISDIR(before.st_mode))
    return CannotWrite(path, EISDIR);
  if (replaces && !S_ISREG(before.st_mode))
    return CannotWrite(path, EINVAL);
  if (replaces && ::access(destination.c_str(), W_OK) != 0)
    return CannotWrite(path, errno);

  std::string temporary = destination.string() + ".XXXXXX";
  File file(::mkostemp(temporary.data(), O_CLOEXEC));
  if (!file.IsOpen())
    return CannotWrite(path, errno);
  const mode_t mask = ::umask(0);
  ::umask(mask);
  const mode_t mode = replaces ? before.st_mode & 07777 : 0666 & ~mask;
  if (::fchmod(file.Get(), mode) == 0 && WriteAll(file, bytes) && ::fsync(file.Get()) == 0 && file.Close() &&
      ::rename(temporary.c_str(), destination.c_str()) == 0)
    return std::nullopt;
  const int error = errno;
  ::unlink(temporary.c_str());
  return CannotWrite(path, error);
}

} // namespace App
