#include "Formats/Formats.h"

#include "Formats/CueTimes.h"
#include "Formats/Text.h"
#include "Formats/Writers.h"

namespace Formats {

using zebcaptioning::CaptionStatePtr;
using zebcaptioning::StreamFormat;
using zebcore::UString;

namespace {

constexpr std::size_t kSampleSize = 1 << 16;

bool HasUsableTimes(const Lines& lines) {
  for (std::size_t line = 0; line < lines.Count(); ++line) {
    // Whether frames can be made times of is not what decides.
    if (LooksLikeTimes(lines[line]) && ParseLooseTimes(lines[line], {zebmediatypes::kFrameRate_60}).error.empty())
      return true;
  }
  return false;
}

std::u16string ExtensionOf(std::string_view fileName) {
  const std::size_t dot = fileName.rfind('.');
  return dot == std::string_view::npos ? UString() : LowerASCII(zebcore::FromUTF8(fileName.substr(dot)));
}

} // namespace

FileKind Detect(std::string_view bytes, std::string_view fileName) {
  if (bytes.empty() || IsBinary(bytes))
    return FileKind::Unknown;
  std::string encoding;
  const UString sample = DecodeText(bytes.substr(0, kSampleSize), encoding);
  if (sample.starts_with(u"WEBVTT") &&
      (sample.size() == 6 || std::u16string_view(u" \t\r\n").find(sample[6]) != std::u16string_view::npos))
    return FileKind::WebVTT;
  const UString extension = ExtensionOf(fileName);
  if (extension == u".vtt")
    return FileKind::WebVTT;
  const Lines lines(sample);
  return extension == u".srt" || HasUsableTimes(lines) ? FileKind::SubRip : FileKind::Unknown;
}

ReadResult Read(std::string_view bytes, std::string_view fileName, StreamFormat format, const Progress& progress,
                const FrameCount& frames) {
  switch (Detect(bytes, fileName)) {
  case FileKind::SubRip:
    return ReadSubRip(bytes, format, progress, frames);
  case FileKind::WebVTT:
    return ReadWebVTT(bytes, format, progress);
  case FileKind::Unknown:
    break;
  }
  ReadResult result;
  result.error = bytes.empty() ? Say("$$$/Vidra/Formats/EmptyFile=The file is empty.")
                               : Say("$$$/Vidra/Formats/NoCaptions=This is no caption file; SubRip (.srt) and WebVTT "
                                     "(.vtt) files can be read.");
  return result;
}

WriteResult Write(FileKind kind, std::span<const CaptionStatePtr> captions, StreamFormat format,
                  const Progress& progress, const std::string& language) {
  switch (kind) {
  case FileKind::SubRip:
    return WriteSubRip(captions, format, progress);
  case FileKind::WebVTT:
    return WriteWebVTT(captions, format, progress, language);
  case FileKind::Unknown:
    break;
  }
  WriteResult result;
  result.problems.push_back(
      {0, Say("$$$/Vidra/Formats/UnknownKind=Captions can be written as SubRip or WebVTT only.")});
  return result;
}

} // namespace Formats
