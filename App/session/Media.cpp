#include "App/Session.h"
#include "App/session/Background.h"
#include "App/session/Files.h"
#include "App/session/Streams.h"
#include "App/session/Text.h"
#include "Formats/MediaSubtitles.h"
#include "Formats/Treatment.h"
#include "MF/MediaFile.h"

// Media files in.
namespace App {

namespace fs = std::filesystem;
using zebcaptioning::StreamFormat;

namespace {

constexpr const char* kFamilyOfTracks = "open";

struct TrackRead {
  StreamFormat format;
  Formats::ReadResult read;
};

// What a worker finds out about a media file.
struct Probe {
  Result<BE::MediaInfo> info;
  std::vector<TrackRead> tracks;
  std::vector<Formats::Problem> problems;
};

std::string NameOf(const MF::SubtitleTrack& track, std::size_t number) {
  if (!track.title.empty())
    return track.title;
  return track.language.empty() ? std::to_string(number) : track.language;
}

// The offset is for files beside the media: a track in it has the media's own times.
Probe ProbeWithTracks(const fs::path& path, BE::CaptionsImportSettings settings, JobState& state) {
  settings.offset = BE::TickTime();
  Probe probe{MF::ProbeMedia(path), {}, {}};
  if (!probe.info)
    return probe;
  const std::vector<MF::SubtitleTrack> tracks = MF::FindSubtitleTracks(path);
  for (std::size_t i = 0; i < tracks.size() && !state.stop; ++i) {
    const std::string name = NameOf(tracks[i], i + 1);
    const StreamFormat format = GetStreamFormat(kFamilyOfTracks, static_cast<int>(i) + 1);
    if (format == zebcaptioning::kStreamFormat_None) {
      probe.problems.push_back(
          {0,
           Text(
               "$$$/Vidra/Captivo/Media/TooManyTracks=Subtitle track {1} stays out: a clip holds no more open streams.",
               {name})});
      continue;
    }
    const double before = static_cast<double>(i) / static_cast<double>(tracks.size());
    Formats::ReadResult read =
        Formats::ReadSubtitleTrack(path, tracks[i].index, format, [&state, before, &tracks](double done) {
          return state.Report(before + done / static_cast<double>(tracks.size()));
        });
    if (read.error.empty() && !read.cancelled)
      Formats::Treat(read, settings, format, 0);
    if (!read.error.empty())
      probe.problems.push_back(
          {0, Text("$$$/Vidra/Captivo/Media/BadTrack=Subtitle track {1} stays out: {2}", {name, read.error})});
    for (const Formats::Problem& problem : read.problems)
      probe.problems.push_back(
          {problem.line, Text("$$$/Vidra/Captivo/Media/TrackProblem=Subtitle track {1}: {2}", {name, problem.reason})});
    if (read.error.empty())
      probe.tracks.push_back({format, std::move(read)});
  }
  return probe;
}

} // namespace

Result<MediaReport> Session::ImportMediaReport(const fs::path& path, const Progress& progress,
                                               const std::string& name) {
  if (!mProject)
    return {std::nullopt,
            {Text("$$$/Vidra/Captivo/Error/NoProject=There is no project. Open one or make a new one first.")}};
  if (mProject->IsReadOnly())
    return {std::nullopt, DescribeReadOnly(*mProject)};
  if (auto problem = FindFileProblem(path))
    return {std::nullopt, *problem};

  const std::string what = Text("$$$/Vidra/Captivo/Progress/Media=Looking at {1}", {QuotedName(path)});
  auto probe = RunInBackground<Probe>([path, settings = BE::GetCaptionsImportSettings(*mProject)](
                                          JobState& state) { return ProbeWithTracks(path, settings, state); },
                                      progress, what, Stopping::Never);
  if (!probe || (progress && !progress(1.0, what)))
    return {std::nullopt, Stopped()};
  if (!probe->info)
    return {std::nullopt, probe->info.problem};

  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  const auto clip = mProject->AddClip(zebcore::FromUTF8(name.empty() ? path.filename().string() : name),
                                      error ? path : absolute, *probe->info.value, false);
  if (!clip)
    return {std::nullopt,
            {Text("$$$/Vidra/Captivo/Error/NotAdded={1} could not be added to the project.", {QuotedName(path)})}};
  for (const TrackRead& track : probe->tracks) {
    BE::StreamDescription description;
    description.format = track.format;
    std::vector<BE::NewCaption> captions;
    for (const auto& state : track.read.captions)
      captions.push_back({state});
    const auto stream =
        mProject->AddStream(clip, description, captions, StepName("$$$/Vidra/Captivo/Step/Import=Import Captions"));
    if (!stream)
      probe->problems.push_back({0, stream.problem.text});
  }
  return {MediaReport{clip, std::move(probe->problems)}, {}};
}

Result<InterfaceRef<BE::MasterClip>> Session::ImportMedia(const fs::path& path, const Progress& progress,
                                                          const std::string& name) {
  Result<MediaReport> report = ImportMediaReport(path, progress, name);
  if (!report)
    return {std::nullopt, report.problem};
  return {report.value->clip, {}};
}

} // namespace App
