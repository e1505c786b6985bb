#include <algorithm>

#include "App/Session.h"
#include "App/session/Background.h"
#include "App/session/Files.h"
#include "App/session/Streams.h"
#include "App/session/Text.h"
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
// From so many captions on, setting them in type would hold the window up for more than a moment.
constexpr std::size_t kMeasuredInAdvance = 2000;
// From so many captions on, putting them into the project's file takes long enough to be told.
constexpr std::size_t kManyCaptions = 20000;

// Many open captions are measured where nobody waits for it; of a few the host finds the measure when they are shown.
void MeasureInAdvance(Formats::ReadResult& read, const BE::MediaInfo& picture, JobState& state) {
  std::size_t measured = 0;
  for (CaptionStatePtr& caption : read.captions) {
    const HSL::OpenTextMeasure measure =
        HSL::MeasureOpenText(*caption, picture.width, picture.height, picture.pixelAspect);
    const boost::intrusive_ptr<zebcaptioning::CaptionState> next(new zebcaptioning::CaptionState(*caption));
    next->paragraph.lineWidth = measure.lineWidth;
    next->paragraph.blockHeight = measure.blockHeight;
    caption = next;
    const double done = static_cast<double>(++measured) / static_cast<double>(read.captions.size());
    if (!state.Report(kShareOfReading * (kShareOfParsing + (1.0 - kShareOfParsing) * done))) {
      read.cancelled = true;
      return;
    }
  }
}

Result<Formats::ReadResult> ReadCaptions(const fs::path& path, zebcaptioning::StreamFormat format,
                                         const BE::MediaInfo& picture, JobState& state) {
  Result<std::string> bytes = ReadCaptionFile(path, state);
  if (!bytes)
    return {std::nullopt, bytes.problem};
  const bool isOpen = zebcaptioning::IsOpenCaptions(format);
  const double share = kShareOfReading * (isOpen ? kShareOfParsing : 1.0);
  Formats::ReadResult read = Formats::Read(*bytes.value, path.filename().string(), format,
                                           [&state, share](double done) { return state.Report(done * share); });
  if (!read.error.empty())
    return {std::nullopt, NotReadable(path, read.error)};
  if (read.captions.empty() && !read.problems.empty())
    return {std::nullopt, NoCaption(path, read.problems.front())};
  if (isOpen && picture.width > 0 && read.captions.size() >= kMeasuredInAdvance && !read.cancelled)
    MeasureInAdvance(read, picture, state);
  return {std::move(read), {}};
}

} // namespace

Result<ImportReport> Session::ImportCaptions(const InterfaceRef<BE::MasterClip>& clip, const fs::path& path,
                                             zebcaptioning::StreamFormat format, const Progress& progress) {
  if (!mProject || !clip)
    return {std::nullopt, NoClip()};
  const auto number = FindFreeFormat(clip, format);
  if (!number)
    return {std::nullopt, NoFreeFormat(clip, format)};

  const std::string what = Text("$$$/Vidra/Captivo/Progress/Import=Importing {1}", {QuotedName(path)});
  auto read = RunInBackground<Result<Formats::ReadResult>>(
      [path, number, picture = clip->GetMediaInfo()](JobState& state) {
        return ReadCaptions(path, *number, picture, state);
      },
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

Result<std::vector<Formats::Problem>> Session::ExportCaptions(const InterfaceRef<BE::CaptioningStream>& stream,
                                                              const fs::path& path, Formats::FileKind kind,
                                                              const Progress& progress) {
  if (!stream)
    return {std::nullopt, NoStream()};
  Commit();

  const std::vector<CaptionStatePtr> captions = CaptionStates(stream);
  const zebcaptioning::StreamFormat format = stream->GetStreamFormat();
  const std::string what = Text("$$$/Vidra/Captivo/Progress/Export=Exporting {1}", {QuotedName(path)});
  auto written = RunInBackground<Formats::WriteResult>(
      [captions, format, kind](JobState& state) {
        return Formats::Write(kind, captions, format, [&state](double done) { return state.Report(done); });
      },
      progress, what, Stopping::ByItself);
  if (!written)
    return {std::nullopt, Stopped()};
  if (auto problem = WriteWholeFile(path, written->bytes))
    return {std::nullopt, *problem};
  return {std::move(written->problems), {}};
}

} // namespace App
