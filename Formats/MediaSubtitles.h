#pragma once

#include <filesystem>

#include "Formats/Formats.h"

namespace Formats {

// One text subtitle track of a media file (MP4 timed text; SubRip, WebVTT and ASS in Matroska), by the number of its
// stream; see MF::FindSubtitleTracks. Lines of problems are the captions' places in the track, from 1. The kind is that
// of the file format that holds the same marks, encoding is empty.
ReadResult ReadSubtitleTrack(const std::filesystem::path& path, int index, zebcaptioning::StreamFormat format,
                             const Progress& progress = {});

} // namespace Formats
