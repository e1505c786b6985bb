#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Captions/contracts/Caption.h"
#include "Captions/contracts/StreamFormat.h"
#include "zebmediatypes/FrameRate.h"

// Readers and writers of caption files: pure functions between bytes and captions. They never throw on what a file
// holds, and they end early, with what they have, when asked to stop.
namespace Formats {

enum class FileKind { Unknown, SubRip, WebVTT };

// Something in a file that did not come in, or something of the captions that did not go out.
struct Problem {
  int line = 0;       // 1 for the first line of the file; 0 where no line can be named
  std::string reason; // localised, UTF-8
};

struct ReadResult {
  FileKind kind = FileKind::Unknown;
  std::string encoding;                                 // "UTF-8", "UTF-16LE", "UTF-16BE", "windows-1252", "ISO-8859-1"
  std::vector<zebcaptioning::CaptionStatePtr> captions; // by begin time, then as in the file
  std::vector<Problem> problems;
  std::string error; // the file as a whole is no caption file, or is empty: why; empty if it could be read
  bool cancelled = false;
};

struct WriteResult {
  std::string bytes;             // UTF-8 without byte order mark
  std::vector<Problem> problems; // line: that of the cue in the written file
};

// Progress from 0 to 1; answers false to stop.
using Progress = std::function<bool(double)>;

// What a file is, from its first bytes and, where they leave it open, its name.
FileKind Detect(std::string_view bytes, std::string_view fileName);

// How a file counts frames that does not say so itself. Without a rate its times cannot be understood.
struct FrameCount {
  zebmediatypes::FrameRate rate;
  bool dropFrame = false;
};

// The format of the stream that the captions go into decides what a run may hold.
ReadResult Read(std::string_view bytes, std::string_view fileName, zebcaptioning::StreamFormat format,
                const Progress& progress = {}, const FrameCount& frames = {});
ReadResult ReadSubRip(std::string_view bytes, zebcaptioning::StreamFormat format, const Progress& progress = {},
                      const FrameCount& frames = {});
ReadResult ReadWebVTT(std::string_view bytes, zebcaptioning::StreamFormat format, const Progress& progress = {});

// The language, a BCP 47 tag or empty, stands in the head of a WebVTT file; SubRip has no place for it.
WriteResult Write(FileKind kind, std::span<const zebcaptioning::CaptionStatePtr> captions,
                  zebcaptioning::StreamFormat format, const Progress& progress = {}, const std::string& language = {});

// Bytes as text, by byte order mark, else by what they are; encoding is set to the name.
zebcore::UString DecodeText(std::string_view bytes, std::string& encoding);

} // namespace Formats
