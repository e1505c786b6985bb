#include "BE/CaptionsSettings.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <string_view>

#include <nlohmann/json.hpp>

namespace BE {

namespace {

using nlohmann::json;
using zebcaptioning::CaptioningColor;

constexpr int kLastAlignment = 2;
constexpr int kLastAnchor = 8;
constexpr int kLongestLine = 200;
constexpr int kMostLines = 15;
constexpr float kLargestSize = 1000.0F;
constexpr std::size_t kLongestTagPart = 8;
constexpr std::size_t kLongestTag = 35;

// Values by the name under which they are kept, in the order of the enumerators.
template <class Enum> struct Names;
template <> struct Names<LongLines> {
  static constexpr std::array<std::string_view, 3> kNames{"keep", "wrap", "reflow"};
};
template <> struct Names<LongCaptions> { static constexpr std::array<std::string_view, 2> kNames{"keep", "split"}; };
template <> struct Names<Overlaps> {
  static constexpr std::array<std::string_view, 4> kNames{"keep", "end-earlier", "begin-later", "merge"};
};
template <> struct Names<SidecarFormat> {
  static constexpr std::array<std::string_view, 2> kNames{"subrip", "webvtt"};
};
template <> struct Names<TextEncoding> {
  static constexpr std::array<std::string_view, 4> kNames{"utf-8", "utf-8-bom", "utf-16", "windows-1252"};
};
template <> struct Names<ExportedStreams> {
  static constexpr std::array<std::string_view, 3> kNames{"on-show", "one", "all"};
};

template <class Enum> json ToJson(Enum value) {
  return Names<Enum>::kNames.at(static_cast<std::size_t>(value));
}
json ToJson(const CaptioningColor& color) {
  return json::array({color.red, color.green, color.blue, color.alpha});
}
json ToJson(FrameRate rate) {
  return rate.IsValid() ? json(rate.GetTicksPerFrame()) : json();
}

// Each of these leaves the value alone when the document has none that makes sense.
const json* Find(const json& document, const char* key) {
  const auto found = document.find(key);
  return found != document.end() ? &*found : nullptr;
}
void Take(const json& document, const char* key, bool& value) {
  if (const json* found = Find(document, key); found && found->is_boolean())
    value = found->get<bool>();
}
void Take(const json& document, const char* key, int& value, int first, int last) {
  if (const json* found = Find(document, key); found && found->is_number_integer()) {
    const auto number = found->get<std::int64_t>();
    if (number >= first && number <= last)
      value = static_cast<int>(number);
  }
}
void Take(const json& document, const char* key, std::string& value) {
  if (const json* found = Find(document, key); found && found->is_string())
    value = found->get<std::string>();
}
void Take(const json& document, const char* key, TickTime& value) {
  if (const json* found = Find(document, key); found && found->is_number_integer())
    value = TickTime(found->get<std::int64_t>());
}
void Take(const json& document, const char* key, FrameRate& value) {
  const json* found = Find(document, key);
  if (!found || !found->is_number_integer())
    return;
  const FrameRate rate(found->get<std::int64_t>());
  if (rate.IsValid())
    value = rate;
}
void Take(const json& document, const char* key, std::optional<CaptioningColor>& value) {
  const json* found = Find(document, key);
  if (!found || !found->is_array() || found->size() != 4)
    return;
  const bool isColor = std::ranges::all_of(*found, [](const json& part) {
    return part.is_number() && part.get<double>() >= 0.0 && part.get<double>() <= 1.0;
  });
  if (isColor)
    value = CaptioningColor((*found)[0].get<float>(), (*found)[1].get<float>(), (*found)[2].get<float>(),
                            (*found)[3].get<float>());
}
template <class Enum>
requires std::is_enum_v<Enum>
void Take(const json& document, const char* key, Enum& value) {
  const json* found = Find(document, key);
  if (!found || !found->is_string())
    return;
  const auto& names = Names<Enum>::kNames;
  const auto name = std::ranges::find(names, found->get<std::string>());
  if (name != names.end())
    value = static_cast<Enum>(name - names.begin());
}

json Read(const Project& project, const char* key) {
  json document = json::parse(project.GetSetting(key, "{}"), nullptr, false);
  return document.is_object() ? document : json::object();
}

} // namespace

CaptionsImportSettings GetCaptionsImportSettings(const Project& project) {
  const json document = Read(project, kSetting_CaptionsImport);
  CaptionsImportSettings settings;
  Take(document, "family", settings.style.family);
  if (const json* size = Find(document, "size"); size && size->is_number()) {
    const auto points = size->get<float>();
    if (points >= 0.0F && points <= kLargestSize)
      settings.style.size = points;
  }
  Take(document, "bold", settings.style.bold);
  Take(document, "italic", settings.style.italic);
  Take(document, "text_color", settings.style.textColor);
  Take(document, "background_color", settings.style.backgroundColor);
  Take(document, "alignment", settings.alignment, 0, kLastAlignment);
  Take(document, "anchor", settings.anchor, 0, kLastAnchor);
  Take(document, "frame_rate", settings.frameRate);
  Take(document, "drop_frame", settings.dropFrame);
  Take(document, "offset", settings.offset);
  Take(document, "long_lines", settings.longLines);
  Take(document, "line_length", settings.lineLength, 0, kLongestLine);
  Take(document, "long_captions", settings.longCaptions);
  Take(document, "line_count", settings.lineCount, 1, kMostLines);
  Take(document, "minimum_duration", settings.minimumDuration);
  settings.minimumDuration = std::max(settings.minimumDuration, TickTime());
  Take(document, "overlaps", settings.overlaps);
  return settings;
}

void SetCaptionsImportSettings(Project& project, const CaptionsImportSettings& settings) {
  json document{{"family", settings.style.family},
                {"size", settings.style.size},
                {"bold", settings.style.bold},
                {"italic", settings.style.italic},
                {"alignment", settings.alignment},
                {"anchor", settings.anchor},
                {"frame_rate", ToJson(settings.frameRate)},
                {"drop_frame", settings.dropFrame},
                {"offset", settings.offset.GetTicks()},
                {"long_lines", ToJson(settings.longLines)},
                {"line_length", settings.lineLength},
                {"long_captions", ToJson(settings.longCaptions)},
                {"line_count", settings.lineCount},
                {"minimum_duration", settings.minimumDuration.GetTicks()},
                {"overlaps", ToJson(settings.overlaps)}};
  if (settings.style.textColor)
    document["text_color"] = ToJson(*settings.style.textColor);
  if (settings.style.backgroundColor)
    document["background_color"] = ToJson(*settings.style.backgroundColor);
  project.SetSetting(kSetting_CaptionsImport, document.dump(-1, ' ', false, json::error_handler_t::replace));
}

CaptionsExportSettings GetCaptionsExportSettings(const Project& project) {
  const json document = Read(project, kSetting_CaptionsExport);
  CaptionsExportSettings settings;
  Take(document, "format", settings.format);
  Take(document, "encoding", settings.encoding);
  Take(document, "frame_rate", settings.frameRate);
  Take(document, "drop_frame", settings.dropFrame);
  if (const json* start = Find(document, "start_timecode"); start && start->is_number_integer())
    settings.startTimecode = TickTime(start->get<std::int64_t>());
  std::string language;
  Take(document, "language", language);
  if (IsLanguageTag(language))
    settings.language = language;
  Take(document, "streams", settings.streams);
  if (const json* stream = Find(document, "stream"); stream && stream->is_number_unsigned())
    settings.stream = static_cast<StreamFormat>(stream->get<std::uint64_t>());
  return settings;
}

void SetCaptionsExportSettings(Project& project, const CaptionsExportSettings& settings) {
  json document{{"format", ToJson(settings.format)},
                {"encoding", ToJson(settings.encoding)},
                {"frame_rate", ToJson(settings.frameRate)},
                {"drop_frame", settings.dropFrame},
                {"language", settings.language},
                {"streams", ToJson(settings.streams)},
                {"stream", settings.stream}};
  if (settings.startTimecode)
    document["start_timecode"] = settings.startTimecode->GetTicks();
  project.SetSetting(kSetting_CaptionsExport, document.dump(-1, ' ', false, json::error_handler_t::replace));
}

bool IsLanguageTag(const std::string& text) {
  if (text.empty() || text.size() > kLongestTag)
    return false;
  std::size_t length = 0;
  for (const char c : text) {
    const bool isHyphen = c == '-';
    if (isHyphen ? length == 0 : !std::isalnum(static_cast<unsigned char>(c)))
      return false;
    length = isHyphen ? 0 : length + 1;
    if (length > kLongestTagPart)
      return false;
  }
  return length > 0;
}

} // namespace BE
