#pragma once

#include <filesystem>
#include <memory>
#include <string>

struct AVFormatContext;

namespace MF {

struct MediaSourceCloser {
  void operator()(AVFormatContext* context) const;
};
using MediaSourcePtr = std::unique_ptr<AVFormatContext, MediaSourceCloser>;

// A file, opened and looked into. Nothing but that file is read, whatever it names. On failure null, and problem says
// what is wrong with the file, localised: no such file, a directory, unreadable, empty, no media, cut off.
MediaSourcePtr OpenMediaSource(const std::filesystem::path& path, std::string& problem);

} // namespace MF
