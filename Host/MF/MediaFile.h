#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "BE/Project.h"

namespace MF {

// What a media file holds, or why it cannot be used: no such file, a directory, unreadable, no media, no picture and no
// sound, cut off before the first frame.
BE::Result<BE::MediaInfo> ProbeMedia(const std::filesystem::path& path);

// Text subtitle tracks of a media file.
struct SubtitleTrack {
  int index = 0;        // of the stream in the file
  std::string language; // ISO 639-2, empty if unknown
  std::string title;
};
std::vector<SubtitleTrack> FindSubtitleTracks(const std::filesystem::path& path);

} // namespace MF
