// The document: opening and closing, clips, streams, sequences and caption files.

#include "BE/CaptionsSettings.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Drive/CaptionJson.h"
#include "Drive/Driver.h"
#include "Formats/Delivery.h"
#include "MF/MediaFile.h"
#include "MZ/Actions.h"

namespace Drive {

namespace {

constexpr int kSampleRate = 48000;
constexpr int kDefaultWidth = 1920;
constexpr int kDefaultHeight = 1080;
constexpr std::int64_t kDefaultDuration = 3600 * zebmediatypes::kTicksPerSecond;

void Expect(const std::optional<BE::Problem>& problem) {
  if (problem)
    throw RequestError(problem->text);
}

template <class T> const T& Expect(const BE::Result<T>& result) {
  if (!result)
    throw RequestError(result.problem.text);
  return *result.value;
}

// What has to do with the file that the field names.
void ExpectOfPath(const Fields& fields, const std::optional<BE::Problem>& problem) {
  if (problem)
    fields.Refuse("path", problem->text);
}

template <class T> const T& ExpectOfPath(const Fields& fields, const BE::Result<T>& result) {
  if (!result)
    fields.Refuse("path", result.problem.text);
  return *result.value;
}

Json TellProject(const Driver& driver) {
  const auto project = driver.Project();
  Json clips = Json::array();
  for (const auto& clip : project->GetClips()) {
    Json streams = Json::array();
    for (const auto& stream : clip->GetStreams())
      streams.push_back({{"stream", stream->GetID()}, {"stream_format", stream->GetStreamFormat()}});
    clips.push_back({{"clip", clip->GetID()}, {"name", FromText(clip->GetName())}, {"streams", std::move(streams)}});
  }
  Json sequences = Json::array();
  for (const auto& sequence : project->GetSequences())
    sequences.push_back({{"sequence", sequence->GetID()}, {"name", FromText(sequence->GetName())}});
  return {{"path", project->GetPath().string()}, {"clips", std::move(clips)}, {"sequences", std::move(sequences)}};
}

// Where the project stops being the one in hand, what was selected in it is selected no more.
void Leave(Driver& driver) {
  driver.ForgetSelection();
  driver.removedStreams.clear();
  driver.busyStreams.clear();
}

Json NewProject(Driver& driver, const Fields& fields) {
  if (fields.Has("path"))
    ExpectOfPath(fields, driver.Session().NewProject(fields.Text("path")));
  else
    driver.Session().NewProjectInMemory();
  Leave(driver);
  return TellProject(driver);
}

Json OpenProject(Driver& driver, const Fields& fields) {
  ExpectOfPath(fields, driver.Session().OpenProject(fields.Text("path"), fields.Flag("read_only", false)));
  Leave(driver);
  return TellProject(driver);
}

Json SaveProject(Driver& driver, const Fields& fields) {
  const auto project = driver.Project();
  if (fields.Has("path")) {
    ExpectOfPath(fields, driver.Session().SaveProjectAs(fields.Text("path")));
  } else {
    zebcore::messaging::BroadcastMessage(HSL::kStation_CaptionSelection, HSL::CaptionCommitEditsMessage());
    project->CommitOpenChanges();
    Expect(project->GetStorageProblem());
  }
  return {{"path", project->GetPath().string()}};
}

Json CloseProject(Driver& driver, const Fields&) {
  driver.Session().CloseProject();
  Leave(driver);
  return Json::object();
}

Json SetReadOnly(Driver& driver, const Fields& fields) {
  driver.Project()->SetReadOnly(fields.Flag("on", true));
  return Json::object();
}

Json SetNoProject(Driver& driver, const Fields& fields) {
  if (fields.Flag("on", true))
    MZ::SetActiveProject(nullptr);
  else
    MZ::SetActiveProject(driver.Project());
  return Json::object();
}

BE::MediaInfo ReadMedia(const Fields& fields) {
  BE::MediaInfo info;
  const bool audioOnly = fields.Flag("audio_only", false);
  info.still = fields.Flag("still", false);
  if (audioOnly && info.still)
    fields.Refuse("still", "a still image has no sound");
  if (!audioOnly) {
    info.width = static_cast<int>(fields.Integer("width", 1, 65535, kDefaultWidth));
    info.height = static_cast<int>(fields.Integer("height", 1, 65535, kDefaultHeight));
  }
  if (!info.still)
    info.sampleRate = kSampleRate;
  if (fields.Has("pixel_aspect")) {
    const auto [numerator, denominator] = fields.Pair("pixel_aspect");
    if (numerator <= 0 || denominator <= 0)
      fields.Refuse("pixel_aspect", "both numbers must be above 0");
    info.pixelAspect = {numerator, denominator};
  }
  info.frameRate = fields.Has("frame_rate") ? fields.Rate("frame_rate") : zebmediatypes::kFrameRate_25;
  info.duration = fields.Has("duration") ? fields.Time("duration") : zebmediatypes::TickTime(kDefaultDuration);
  if (info.duration < zebmediatypes::kTime_Zero)
    fields.Refuse("duration", "must not be below 0");
  info.dropFrame = fields.Flag("drop_frame", false);
  if (fields.Has("media_offset"))
    info.start = fields.Time("media_offset");
  return info;
}

Json TellStreams(const BE::InterfaceRef<BE::MasterClip>& clip) {
  Json streams = Json::array();
  for (const auto& stream : clip->GetStreams())
    streams.push_back({{"stream", stream->GetID()}, {"stream_format", stream->GetStreamFormat()}});
  return streams;
}

// What the program never does by itself: a media file as a merged clip, or with another start.
BE::InterfaceRef<BE::MasterClip> AddMedia(Driver& driver, const Fields& fields, const std::filesystem::path& path) {
  BE::MediaInfo info = ExpectOfPath(fields, MF::ProbeMedia(path));
  if (fields.Has("media_offset"))
    info.start = fields.Time("media_offset");
  const std::string name = fields.Text("name", path.filename().string());
  return driver.Project()->AddClip(zebcore::FromUTF8(name), path, info, fields.Flag("merged", false));
}

Json AddClip(Driver& driver, const Fields& fields) {
  const auto project = driver.Project();
  if (!fields.Has("path")) {
    const zebcore::UString name = zebcore::FromUTF8(fields.Text("name"));
    const auto clip = project->AddClip(name, {}, ReadMedia(fields), fields.Flag("merged", false));
    return {{"clip", clip->GetID()}};
  }
  const std::string path = fields.Text("path");
  const bool asItIs = !fields.Flag("merged", false) && !fields.Has("media_offset");
  const auto clip = asItIs ? ExpectOfPath(fields, driver.Session().ImportMedia(path, {}, fields.Text("name", "")))
                           : AddMedia(driver, fields, path);
  return {{"clip", clip->GetID()}, {"name", FromText(clip->GetName())}, {"streams", TellStreams(clip)}};
}

std::vector<BE::StreamDescription::Region> ReadRegions(const Fields& fields) {
  std::vector<BE::StreamDescription::Region> regions;
  if (!fields.Has("regions"))
    return regions;
  for (const Fields& region : fields.Objects("regions")) {
    const Json& area = region.Get("area");
    if (!area.is_array() || area.size() != 4 ||
        !std::all_of(area.begin(), area.end(), [](const Json& number) { return number.is_number(); }))
      region.Refuse("area", "must be [x, y, width, height]");
    regions.push_back({region.Text("name"),
                       {area[0].get<float>(), area[1].get<float>(), area[2].get<float>(), area[3].get<float>()},
                       region.Flag("percent", true)});
  }
  return regions;
}

Json AddStream(Driver& driver, const Fields& fields) {
  const auto clip = driver.Clip(fields);
  BE::StreamDescription description;
  description.format = ReadFormat(fields, "format");
  description.regions = ReadRegions(fields);
  if (fields.Has("styles"))
    description.styles = fields.Texts("styles");
  const auto captions = ReadCaptions(fields, "captions");
  const auto result = driver.Project()->AddStream(clip, description, captions, u"Add caption stream");
  if (!result && !driver.Project()->IsReadOnly())
    fields.Refuse("format", result.problem.text);
  const auto stream = Expect(result);
  return {{"stream", stream->GetID()}, {"stream_format", stream->GetStreamFormat()}};
}

Json RemoveStream(Driver& driver, const Fields& fields) {
  const auto stream = driver.Stream(fields);
  driver.removedStreams[stream->GetID()] = stream;
  driver.Session().DeleteStream(stream);
  return Json::object();
}

Json TellProblems(const std::vector<Formats::Problem>& problems) {
  Json list = Json::array();
  for (const auto& problem : problems)
    list.push_back({{"line", problem.line}, {"reason", problem.reason}});
  return list;
}

Json ImportCaptions(Driver& driver, const Fields& fields) {
  const auto clip = driver.Clip(fields);
  const auto report = ExpectOfPath(
      fields, driver.Session().ImportCaptions(clip, fields.Text("path"), ReadFormat(fields, "format", "cea608")));
  return {{"stream", report.stream->GetID()},
          {"stream_format", report.stream->GetStreamFormat()},
          {"encoding", report.encoding},
          {"problems", TellProblems(report.problems)}};
}

// A name without an ending leaves it to the export settings.
Formats::FileKind ReadKind(const Driver& driver, const Fields& fields, const std::filesystem::path& path) {
  std::string kind = fields.Text("kind", path.extension().string());
  if (kind.empty())
    return Formats::GetFileKind(BE::GetCaptionsExportSettings(*driver.Project()).format);
  std::transform(kind.begin(), kind.end(), kind.begin(), [](unsigned char c) { return std::tolower(c); });
  if (kind == ".vtt" || kind == "vtt" || kind == "webvtt")
    return Formats::FileKind::WebVTT;
  if (kind == ".srt" || kind == "srt" || kind == "subrip")
    return Formats::FileKind::SubRip;
  fields.Refuse(fields.Has("kind") ? "kind" : "path", "captions are written as .srt or .vtt");
}

Json ExportClip(Driver& driver, const Fields& fields) {
  const std::filesystem::path path = fields.Text("path");
  const auto shown = fields.Has("stream") ? driver.Stream(fields) : nullptr;
  const auto reports = ExpectOfPath(
      fields, driver.Session().ExportBySettings(driver.Clip(fields), shown, path, ReadKind(driver, fields, path)));
  Json files = Json::array();
  for (const auto& report : reports)
    files.push_back({{"stream", report.stream->GetID()},
                     {"path", report.path.string()},
                     {"problems", TellProblems(report.problems)}});
  return {{"files", std::move(files)}};
}

Json ExportCaptions(Driver& driver, const Fields& fields) {
  if (fields.Has("clip"))
    return ExportClip(driver, fields);
  const auto stream = driver.Stream(fields);
  const std::filesystem::path path = fields.Text("path");
  const auto problems =
      ExpectOfPath(fields, driver.Session().ExportCaptions(stream, path, ReadKind(driver, fields, path)));
  return {{"stream", stream->GetID()}, {"problems", TellProblems(problems)}};
}

// Puts fields of a settings document over what the project holds. One that it cannot keep as it is given is refused,
// and nothing changes.
template <class Normalize>
void ChangeSettings(BE::Project& project, const char* key, const Fields& changes, Normalize normalize) {
  const std::string before = project.GetSetting(key, "{}");
  normalize();
  Json document = Json::parse(project.GetSetting(key, "{}"));
  document.update(changes.GetJson());
  project.SetSetting(key, document.dump());
  normalize();
  const Json kept = Json::parse(project.GetSetting(key, "{}"));
  for (const auto& [name, value] : changes.GetJson().items()) {
    const auto found = kept.find(name);
    // Parts of colours lose digits.
    const bool isKept = found != kept.end() ? value.is_array() || *found == value
                                            : value.is_null() && (name.ends_with("_color") || name == "start_timecode");
    if (isKept)
      continue;
    project.SetSetting(key, before);
    changes.Refuse(name.c_str(), "is no such setting, or has a value that it cannot have");
  }
}

Json SettingsOfCaptions(Driver& driver, const Fields& fields) {
  const auto ref = driver.Project();
  BE::Project& project = *ref;
  const auto normalizeImport = [&] { SetCaptionsImportSettings(project, GetCaptionsImportSettings(project)); };
  const auto normalizeExport = [&] { SetCaptionsExportSettings(project, GetCaptionsExportSettings(project)); };
  if (fields.Has("import"))
    ChangeSettings(project, BE::kSetting_CaptionsImport, fields.Object("import"), normalizeImport);
  if (fields.Has("export"))
    ChangeSettings(project, BE::kSetting_CaptionsExport, fields.Object("export"), normalizeExport);
  return {{"import", Json::parse(project.GetSetting(BE::kSetting_CaptionsImport, "{}"))},
          {"export", Json::parse(project.GetSetting(BE::kSetting_CaptionsExport, "{}"))}};
}

Json AddSequence(Driver& driver, const Fields& fields) {
  std::vector<BE::Project::SequenceItem> items;
  if (fields.Has("items")) {
    for (const Fields& item : fields.Objects("items")) {
      const std::string media = item.Text("media", "both");
      if (media != "video" && media != "audio" && media != "both")
        item.Refuse("media", "must be video, audio or both");
      items.push_back({driver.Clip(item), item.Time("start"), media != "audio", media != "video"});
    }
  }
  const zebmediatypes::FrameRate rate =
      fields.Has("frame_rate") ? fields.Rate("frame_rate") : zebmediatypes::kFrameRate_25;
  const auto sequence = driver.Project()->AddSequence(zebcore::FromUTF8(fields.Text("name")), rate,
                                                      zebmediatypes::FrameRate::FromRational(kSampleRate, 1), items);
  Json ids = Json::array();
  for (const auto& item : sequence->GetItems())
    ids.push_back(item->GetID());
  return {{"sequence", sequence->GetID()},
          {"items", std::move(ids)},
          {"clip", sequence.Query<BE::IMasterClip>() ? Json(sequence->GetID()) : Json()}};
}

Json TellHistory(Driver& driver, const Fields&) {
  const auto names = [](const std::vector<BE::UString>& steps) {
    Json list = Json::array();
    for (const auto& step : steps)
      list.push_back(FromText(step));
    return list;
  };
  const auto project = driver.Project();
  return {{"undo", names(project->GetUndoNames())}, {"redo", names(project->GetRedoNames())}};
}

Json Undo(Driver& driver, const Fields& fields) {
  driver.Project();
  const bool done = driver.Session().Undo();
  Json answer = TellHistory(driver, fields);
  answer["done"] = done;
  return answer;
}

Json Redo(Driver& driver, const Fields& fields) {
  driver.Project();
  const bool done = driver.Session().Redo();
  Json answer = TellHistory(driver, fields);
  answer["done"] = done;
  return answer;
}

} // namespace

void AddProjectRequests(RequestTable& table) {
  table["new"] = {&NewProject};
  table["open"] = {&OpenProject};
  table["save"] = {&SaveProject};
  table["close"] = {&CloseProject};
  table["read_only"] = {&SetReadOnly};
  table["no_project"] = {&SetNoProject};
  table["add_clip"] = {&AddClip};
  table["add_stream"] = {&AddStream};
  table["remove_stream"] = {&RemoveStream};
  table["import"] = {&ImportCaptions};
  table["export"] = {&ExportCaptions};
  table["caption_settings"] = {&SettingsOfCaptions};
  table["add_sequence"] = {&AddSequence};
  table["undo"] = {&Undo};
  table["redo"] = {&Redo};
  table["history"] = {&TellHistory};
}

} // namespace Drive
