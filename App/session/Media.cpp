#include "App/Session.h"
#include "App/session/Background.h"
#include "App/session/Files.h"
#include "App/session/Streams.h"
#include "App/session/Text.h"
#include "MF/MediaFile.h"

// Media files in.
namespace App {

namespace fs = std::filesystem;

namespace {

// What a worker finds out about a media file.
struct Probe {
  Result<BE::MediaInfo> info;
};

Problem Stopped() {
  return {Text("$$$/Vidra/Captivo/Error/Stopped=Stopped. Nothing was changed.")};
}

} // namespace

Result<InterfaceRef<BE::MasterClip>> Session::ImportMedia(const fs::path& path, const Progress& progress) {
  if (!mProject)
    return {std::nullopt,
            {Text("$$$/Vidra/Captivo/Error/NoProject=There is no project. Open one or make a new one first.")}};
  if (auto problem = FindFileProblem(path))
    return {std::nullopt, *problem};

  const std::string what = Text("$$$/Vidra/Captivo/Progress/Media=Looking at {1}", {QuotedName(path)});
  auto probe = RunInBackground<Probe>([path](JobState&) { return Probe{MF::ProbeMedia(path)}; }, progress, what,
                                      Stopping::Never);
  if (!probe || (progress && !progress(1.0, what)))
    return {std::nullopt, Stopped()};
  if (!probe->info)
    return {std::nullopt, probe->info.problem};

  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  return {mProject->AddClip(zebcore::FromUTF8(path.filename().string()), error ? path : absolute, *probe->info.value,
                            false),
          {}};
}

} // namespace App
