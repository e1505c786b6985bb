#pragma once

#include <filesystem>
#include <string_view>

#include "zebcore/Log.h"

namespace App {

// The log as a file that a person can read: date, time, level and text, a line each. What is wrong goes to standard
// error as well.
class LogFile {
 public:
  // A file larger than this is put aside as NAME.old when the program starts, in place of the one before.
  static constexpr std::uintmax_t kLargest = 1 << 20;

  // The host's log goes there until the object ends. A file that cannot be written leaves standard error alone.
  explicit LogFile(std::filesystem::path path);
  ~LogFile();
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;

  // In the user's data folder.
  static std::filesystem::path GetUsualPath();
};

} // namespace App
