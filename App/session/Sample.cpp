#include "App/session/Sample.h"

#include <algorithm>
#include <cctype>

#include "App/session/Text.h"
#include "BE/UserFolders.h"
#include "zebcore/Log.h"

namespace App {

namespace fs = std::filesystem;

namespace {

constexpr const char* kSuffix = ".captivo";
constexpr const char* kSampleFamily = "cea608";

Problem NoSample() {
  return {Text(
      "$$$/Vidra/Captivo/Error/NoSample=The sample clip is missing, so the program starts with an empty project.")};
}

// Captions come with the clip of their name; others with the first.
InterfaceRef<BE::MasterClip> FindClipFor(const fs::path& captions,
                                         const std::vector<InterfaceRef<BE::MasterClip>>& clips) {
  const auto found = std::find_if(clips.begin(), clips.end(), [&captions](const auto& clip) {
    const std::string stem = clip->GetMediaPath().stem().string();
    return captions.stem().string().starts_with(stem);
  });
  return found == clips.end() ? clips.front() : *found;
}

std::optional<Problem> Fill(const SampleFiles& files) {
  Session& session = Session::Instance();
  for (const fs::path& path : files.media)
    if (const auto clip = session.ImportMedia(path); !clip)
      return clip.problem;
  const auto clips = session.GetProject()->GetClips();
  for (const fs::path& path : files.captions)
    if (const auto report = session.ImportCaptions(FindClipFor(path, clips), path, GetStreamFormat(kSampleFamily, 1));
        !report)
      return report.problem;
  session.NewSequence(clips.front());
  return std::nullopt;
}

} // namespace

fs::path FindSampleFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error).parent_path();
  for (const fs::path& folder : {program / "../share/captivo/samples", fs::path(CAPTIVO_SAMPLE_FOLDER)})
    if (!FindSampleFiles(folder).media.empty())
      return folder;
  return {};
}

SampleFiles FindSampleFiles(const fs::path& folder) {
  SampleFiles files;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    if (entry.path().extension() == ".mp4")
      files.media.push_back(entry.path());
    else if (entry.path().extension() == ".srt")
      files.captions.push_back(entry.path());
  }
  std::sort(files.media.begin(), files.media.end());
  std::sort(files.captions.begin(), files.captions.end());
  return files;
}

std::optional<Problem> OpenSampleProject() {
  Session& session = Session::Instance();
  const SampleFiles files = FindSampleFiles(FindSampleFolder());
  if (files.media.empty())
    return NoSample();
  // Named as a person would name it.
  std::string name = files.media.front().stem().string();
  name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
  const fs::path path = BE::folders::GetDataFolder() / (name + kSuffix);
  std::error_code error;
  if (fs::exists(path, error))
    return session.OpenProject(path);

  fs::create_directories(path.parent_path(), error);
  if (auto problem = session.NewProject(path))
    return problem;
  auto problem = Fill(files);
  if (problem) {
    // Half a sample would be found whole by the next start.
    session.CloseProject();
    fs::remove(path, error);
  }
  return problem;
}

} // namespace App
