#pragma once

#include "BE/CaptionsSettings.h"
#include "Formats/Formats.h"

// What becomes of captions on their way into a file, as the project's settings have it.
namespace Formats {

// Times as they stand in the file: put on the nearest frame where a rate is given, on show for at least one of them,
// and then moved by the start timecode. Both kinds of file hold milliseconds of real time, so that drop frame, which
// only numbers frames in another way, does not change them.
std::vector<zebcaptioning::CaptionStatePtr> RetimeForFile(std::vector<zebcaptioning::CaptionStatePtr> captions,
                                                          const BE::CaptionsExportSettings& settings);

// The bytes of a file whose text is UTF-8. UTF-16 is little-endian with a byte order mark. A character that
// Windows-1252 lacks is written as "?", and told once with its first line and how often it stands in the file.
WriteResult EncodeText(WriteResult text, BE::TextEncoding encoding);

FileKind GetFileKind(BE::SidecarFormat format);

// Captions as a whole file by the settings, of a kind that may differ from theirs. Progress from 0 to 1; stopped
// early, bytes are those of a part.
WriteResult WriteFile(FileKind kind, std::vector<zebcaptioning::CaptionStatePtr> captions,
                      zebcaptioning::StreamFormat format, const BE::CaptionsExportSettings& settings,
                      const Progress& progress = {});

} // namespace Formats
