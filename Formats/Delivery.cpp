#include "Formats/Delivery.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>

#include "Formats/CaptionEdit.h"
#include "Formats/Text.h"

namespace Formats {

using zebmediatypes::FrameRate;
using zebmediatypes::TickTime;

namespace {

// Windows-1252 from 0x80 to 0x9F; 0 where it has no character. Above and below it agrees with Unicode.
constexpr std::array<char16_t, 32> kUpperControls{0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                                  0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
constexpr char32_t kFirstUpperControl = 0x80;
constexpr char32_t kFirstSame = 0xA0;
constexpr char32_t kLastSame = 0xFF;

// 0 for none.
char EncodeWestern(char32_t c) {
  if (c < kFirstUpperControl || (c >= kFirstSame && c <= kLastSame))
    return static_cast<char>(c);
  const auto* found = c == 0 || c > 0xFFFF
                          ? kUpperControls.end()
                          : std::find(kUpperControls.begin(), kUpperControls.end(), static_cast<char16_t>(c));
  return found == kUpperControls.end()
             ? '\0'
             : static_cast<char>(kFirstUpperControl + static_cast<char32_t>(found - kUpperControls.begin()));
}

struct Missing {
  int line = 0;
  int count = 0;
};

std::string CodeName(char32_t c) {
  char name[16];
  std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(c));
  return name;
}

WriteResult ToWestern(WriteResult text) {
  const UString units = zebcore::FromUTF8(text.bytes);
  std::string bytes;
  bytes.reserve(units.size());
  std::map<char32_t, Missing> missing;
  int line = 1;
  for (std::size_t i = 0; i < units.size(); ++i) {
    char32_t c = units[i];
    const bool isPair =
        c >= 0xD800 && c < 0xDC00 && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000;
    if (isPair)
      c = 0x10000 + ((c - 0xD800) << 10) + (units[++i] - 0xDC00U);
    const char byte = EncodeWestern(c);
    if (byte == '\0' && c != 0) {
      Missing& seen = missing[c];
      if (seen.count++ == 0)
        seen.line = line;
    }
    bytes += byte == '\0' && c != 0 ? '?' : byte;
    line += c == U'\n' ? 1 : 0;
  }
  text.bytes = std::move(bytes);
  for (const auto& [c, seen] : missing) {
    UString shown;
    if (c > 0xFFFF) {
      shown += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
      shown += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
      shown += static_cast<char16_t>(c);
    }
    text.problems.push_back(
        {seen.line, Say("$$$/Vidra/Formats/NotInWestern=Windows-1252 has no character \"{0}\" ({1}); \"?\" is written "
                        "in its place. Times in the file: {2}.",
                        {zebcore::ToUTF8(shown), CodeName(c), std::to_string(seen.count)})});
  }
  return text;
}

std::string ToUTF16(const std::string& text) {
  std::string bytes = "\xFF\xFE";
  const UString units = zebcore::FromUTF8(text);
  bytes.reserve(2 + 2 * units.size());
  for (const char16_t unit : units) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

std::int64_t FloorDivide(std::int64_t value, std::int64_t by) {
  return value / by - (value % by < 0 ? 1 : 0);
}

// Of two frames as near as each other the later one.
TickTime NearestFrame(TickTime time, FrameRate rate) {
  const std::int64_t length = rate.GetTicksPerFrame();
  return TickTime(FloorDivide(time.GetTicks() + length / 2, length) * length);
}

} // namespace

std::vector<CaptionStatePtr> RetimeForFile(std::vector<CaptionStatePtr> captions,
                                           const BE::CaptionsExportSettings& settings) {
  const FrameRate rate = settings.frameRate;
  const bool hasRate = rate.IsValid();
  const TickTime start = settings.startTimecode.value_or(TickTime());
  if (!hasRate && start == TickTime())
    return captions;
  for (CaptionStatePtr& caption : captions) {
    // One that has no time at all is left for the writer to tell.
    if (caption->end <= caption->begin)
      continue;
    CaptionDraft draft = CopyCaption(*caption);
    if (hasRate) {
      draft->begin = NearestFrame(caption->begin, rate);
      draft->end = std::max(NearestFrame(caption->end, rate), draft->begin + rate.GetFrameDuration());
    }
    draft->begin = draft->begin + start;
    draft->end = draft->end + start;
    caption = draft;
  }
  return captions;
}

WriteResult EncodeText(WriteResult text, BE::TextEncoding encoding) {
  switch (encoding) {
  case BE::TextEncoding::UTF8:
    break;
  case BE::TextEncoding::UTF8WithMark:
    text.bytes.insert(0, "\xEF\xBB\xBF");
    break;
  case BE::TextEncoding::UTF16:
    text.bytes = ToUTF16(text.bytes);
    break;
  case BE::TextEncoding::Windows1252:
    return ToWestern(std::move(text));
  }
  return text;
}

FileKind GetFileKind(BE::SidecarFormat format) {
  return format == BE::SidecarFormat::WebVTT ? FileKind::WebVTT : FileKind::SubRip;
}

WriteResult WriteFile(FileKind kind, std::vector<CaptionStatePtr> captions, StreamFormat format,
                      const BE::CaptionsExportSettings& settings, const Progress& progress) {
  captions = RetimeForFile(std::move(captions), settings);
  WriteResult result = EncodeText(Write(kind, captions, format, progress, settings.language), settings.encoding);
  const bool isUTF8 =
      settings.encoding == BE::TextEncoding::UTF8 || settings.encoding == BE::TextEncoding::UTF8WithMark;
  if (kind == FileKind::WebVTT && !isUTF8)
    result.problems.push_back({0, Say("$$$/Vidra/Formats/WebVTTEncoding=WebVTT files are UTF-8: most players will not "
                                      "understand this one in the encoding of the export settings.")});
  return result;
}

} // namespace Formats
