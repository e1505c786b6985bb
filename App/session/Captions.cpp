#include <algorithm>

#include "App/Session.h"
#include "App/session/Background.h"
#include "App/session/Exports.h"
#include "App/session/Files.h"
#include "App/session/Streams.h"
#include "App/session/Text.h"
#include "Formats/Delivery.h"
#include "Formats/Treatment.h"
#include "HSL/OpenTextMeasure.h"

// Caption files in and out.
namespace App {

namespace fs = std::filesystem;
using zebcaptioning::CaptionStatePtr;

namespace {

Problem NotReadable(const fs::path& path, const std::string& reason) {
  return {Text("$$$/Vidra/Captivo/Error/NotReadable={1} could not be imported: {2}", {QuotedName(path), reason})};
}

Problem NoCaption(const fs::path& path, const Formats::Problem& first) {
  return {Text(
      "$$$/Vidra/Captivo/Error/NoCaption={1} holds no caption that could be read. The first thing wrong is in line "
      "{2}: {3}",
      {QuotedName(path), std::to_string(first.line), first.reason})};
}

// Reading and understanding takes its own share of the way; what is left is for the project's file.
constexpr double kShareOfReading = 0.85;
// Of that, what setting open captions in type leaves for the rest.
constexpr double kShareOfParsing = 0.3;
// Of that again, what the treatments by the import settings leave for the rest.
constexpr double kShareOfTheFile = 0.8;
// From so many captions on, setting them in type would hold the window up for more than a moment.
constexpr std::size_t kMeasuredInAdvance = 2000;
// From so many captions on, putting them into the project's file takes long enough to be told.
constexpr std::size_t kManyCaptions = 20000;

// Many open captions are measured where nobody waits for it; of a few the host finds the measure when they are shown.
void MeasureInAdvance(Formats::ReadResult& read, const BE::MediaInfo& picture, JobState& state) {
  read.cancelled = !HSL::MeasureOpenTexts(
      read.captions, picture.width, picture.height, picture.pixelAspect, [&](std::size_t measured) {
        const double done = static_cast<double>(measured) / static_cast<double>(read.captions.size());
        return state.Report(kShareOfReading * (kShareOfParsing + (1.0 - kShareOfParsing) * done));
      });
}

Result<Formats::ReadResult> ReadCaptions(const fs::path& path, zebcaptioning::StreamFormat format,
                                         const BE::MediaInfo& picture, const BE::CaptionsImportSettings& settings,
                                         JobState& state) {
  Result<std::string> bytes = ReadCaptionFile(path, state);
  if (!bytes)
    return {std::nullopt, bytes.problem};
  const bool isOpen = zebcaptioning::IsOpenCaptions(format);
  const double all = kShareOfReading * (isOpen ? kShareOfParsing : 1.0);
  const double share = all * kShareOfTheFile;
  const Formats::FrameCount frames = settings.frameRate.IsValid()
                                         ? Formats::FrameCount{settings.frameRate, settings.dropFrame}
                                         : Formats::FrameCount{picture.frameRate, picture.dropFrame};
  Formats::ReadResult read = Formats::Read(
      *bytes.value, path.filename().string(), format,
      [&state, share](double done) { return state.Report(done * share); }, frames);
  if (!read.error.empty())
    return {std::nullopt, NotReadable(path, read.error)};
  if (read.captions.empty() && !read.problems.empty())
    return {std::nullopt, NoCaption(path, read.problems.front())};
  if (!read.cancelled)
    Formats::Treat(read, settings, format, GetGridColumns(format, picture),
                   [&state, share, all](double done) { return state.Report(share + done * (all - share)); });
  if (isOpen && picture.width > 0 && read.captions.size() >= kMeasuredInAdvance && !read.cancelled)
    MeasureInAdvance(read, picture, state);
  return {std::move(read), {}};
}

BE::CaptionsExportSettings GetExportSettings(const InterfaceRef<BE::Project>& project) {
  return project ? BE::GetCaptionsExportSettings(*project) : BE::CaptionsExportSettings();
}

} // namespace

Result<ImportReport> Session::ImportCaptions(const InterfaceRef<BE::MasterClip>& clip, const fs::path& path,
                                             zebcaptioning::StreamFormat format, const Progress& progress) {
  if (!mProject || !clip)
    return {std::nullopt, NoClip()};
  if (mProject->IsReadOnly())
    return {std::nullopt, DescribeReadOnly(*mProject)};
  const auto number = FindFreeFormat(clip, format);
  if (!number)
    return {std::nullopt, NoFreeFormat(clip, format)};

  const std::string what = Text("$$$/Vidra/Captivo/Progress/Import=Importing {1}", {QuotedName(path)});
  auto read = RunInBackground<Result<Formats::ReadResult>>(
      [path, number, picture = clip->GetMediaInfo(), settings = BE::GetCaptionsImportSettings(*mProject)](
          JobState& state) { return ReadCaptions(path, *number, picture, settings, state); },
      progress, what, Stopping::ByItself);
  if (!read)
    return {std::nullopt, Stopped()};
  if (!*read)
    return {std::nullopt, read->problem};
  Formats::ReadResult& result = *read->value;
  const std::string then = result.captions.size() < kManyCaptions
                               ? what
                               : Text("$$$/Vidra/Captivo/Progress/Storing=Storing {1}", {QuotedName(path)});
  if (result.cancelled || (progress && !progress(kShareOfReading, then)))
    return {std::nullopt, Stopped()};

  BE::StreamDescription description;
  description.format = *number;
  std::vector<BE::NewCaption> captions;
  captions.reserve(result.captions.size());
  for (const CaptionStatePtr& state : result.captions)
    captions.push_back({state});
  auto stream =
      mProject->AddStream(clip, description, captions, StepName("$$$/Vidra/Captivo/Step/Import=Import Captions"));
  if (!stream)
    return {std::nullopt, stream.problem};
  return {ImportReport{*stream.value, result.encoding, std::move(result.problems)}, {}};
}

Result<std::vector<ExportReport>> Session::WriteTargets(const std::vector<ExportTarget>& targets,
                                                        Formats::FileKind kind,
                                                        const BE::CaptionsExportSettings& settings,
                                                        const Progress& progress) {
  Commit();
  struct Job {
    std::vector<CaptionStatePtr> captions;
    zebcaptioning::StreamFormat format;
  };
  std::vector<Job> jobs;
  jobs.reserve(targets.size());
  for (const ExportTarget& target : targets)
    jobs.push_back({CaptionStates(target.stream), target.stream->GetStreamFormat()});
  const std::string what = Text("$$$/Vidra/Captivo/Progress/Export=Exporting {1}", {QuotedName(targets.front().path)});
  auto written = RunInBackground<std::vector<Formats::WriteResult>>(
      [jobs = std::move(jobs), kind, settings](JobState& state) {
        std::vector<Formats::WriteResult> files;
        for (const Job& job : jobs) {
          if (state.stop)
            break;
          const auto done = static_cast<double>(files.size());
          const auto all = static_cast<double>(jobs.size());
          files.push_back(
              Formats::WriteFile(kind, job.captions, job.format, settings,
                                 [&state, done, all](double part) { return state.Report((done + part) / all); }));
        }
        return files;
      },
      progress, what, Stopping::ByItself);
  if (!written)
    return {std::nullopt, Stopped()};
  std::vector<ExportReport> reports;
  for (std::size_t i = 0; i < targets.size(); ++i) {
    if (auto problem = WriteWholeFile(targets[i].path, (*written)[i].bytes))
      return {std::nullopt, *problem};
    reports.push_back({targets[i].path, targets[i].stream, std::move((*written)[i].problems)});
  }
  return {std::move(reports), {}};
}

Result<std::vector<Formats::Problem>> Session::ExportCaptions(const InterfaceRef<BE::CaptioningStream>& stream,
                                                              const fs::path& path, Formats::FileKind kind,
                                                              const Progress& progress) {
  if (!stream)
    return {std::nullopt, NoStream()};
  auto written = WriteTargets({{stream, path}}, kind, GetExportSettings(mProject), progress);
  if (!written)
    return {std::nullopt, written.problem};
  return {std::move(written.value->front().problems), {}};
}

Result<std::vector<ExportReport>> Session::ExportBySettings(const InterfaceRef<BE::MasterClip>& clip,
                                                            const InterfaceRef<BE::CaptioningStream>& shown,
                                                            const fs::path& path, Formats::FileKind kind,
                                                            const Progress& progress) {
  const BE::CaptionsExportSettings settings = GetExportSettings(mProject);
  const auto targets = FindExportTargets(clip, shown, path, settings);
  if (!targets)
    return {std::nullopt, targets.problem};
  return WriteTargets(*targets.value, kind, settings, progress);
}

} // namespace App
