#include "App/session/Exports.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "App/session/Files.h"
#include "App/session/Streams.h"
#include "App/session/Text.h"

namespace App {

namespace fs = std::filesystem;
using BE::InterfaceRef;
using BE::Result;

namespace {

// What a file system of any kind takes; other characters part words.
std::string FileNamePart(const std::string& label) {
  std::string part;
  for (const char c : label) {
    const auto unit = static_cast<unsigned char>(c);
    if (unit >= 0x80 || std::isalnum(unit) != 0)
      part += c;
    else if (!part.empty() && part.back() != '-')
      part += '-';
  }
  while (part.ends_with('-'))
    part.pop_back();
  return part;
}

fs::path WithStreamName(const fs::path& path, zebcaptioning::StreamFormat format, std::set<fs::path>& taken) {
  const std::string label = FileNamePart(zebcore::ToUTF8(zebcaptioning::GetFullStreamFormatLabel(format)));
  for (int number = 1;; ++number) {
    const std::string ending = number == 1 ? label : label + "-" + std::to_string(number);
    fs::path named = path.parent_path() / (path.stem().string() + "." + ending + path.extension().string());
    if (taken.insert(named).second)
      return named;
  }
}

BE::Problem NotHeld(const InterfaceRef<BE::MasterClip>& clip, zebcaptioning::StreamFormat format) {
  return {Text(
      "$$$/Vidra/Captivo/Error/NoSuchStream={1} has no stream {2}, the one that the export settings name. "
      "Choose another one there.",
      {Quoted(zebcore::ToUTF8(clip->GetName())), zebcore::ToUTF8(zebcaptioning::GetFullStreamFormatLabel(format))})};
}

} // namespace

std::string SuggestExportName(const std::string& clipName, const BE::CaptionsExportSettings& settings) {
  return settings.language.empty() ? clipName : clipName + "." + settings.language;
}

Result<std::vector<ExportTarget>> FindExportTargets(const InterfaceRef<BE::MasterClip>& clip,
                                                    const InterfaceRef<BE::CaptioningStream>& shown,
                                                    const fs::path& path, const BE::CaptionsExportSettings& settings) {
  std::vector<ExportTarget> targets;
  switch (settings.streams) {
  case BE::ExportedStreams::OnShow:
    if (shown)
      targets.push_back({shown, path});
    break;
  case BE::ExportedStreams::One: {
    if (!clip)
      break;
    const auto streams = clip->GetStreams();
    const auto found = std::find_if(streams.begin(), streams.end(),
                                    [&](const auto& stream) { return stream->GetStreamFormat() == settings.stream; });
    if (found == streams.end())
      return {std::nullopt, NotHeld(clip, settings.stream)};
    targets.push_back({*found, path});
    break;
  }
  case BE::ExportedStreams::All: {
    if (!clip)
      break;
    std::set<fs::path> taken;
    const auto streams = clip->GetStreams();
    for (const auto& stream : streams)
      targets.push_back({stream, streams.size() == 1 ? path : WithStreamName(path, stream->GetStreamFormat(), taken)});
    break;
  }
  }
  if (targets.empty())
    return {std::nullopt, NoStream()};
  return {std::move(targets), {}};
}

std::pair<std::string, std::vector<Formats::Problem>> JoinReports(const std::vector<ExportReport>& reports) {
  std::string names;
  std::vector<Formats::Problem> problems;
  for (const ExportReport& report : reports) {
    const std::string name = report.path.filename().string();
    names += (names.empty() ? "" : ", ") + name;
    for (const Formats::Problem& problem : report.problems)
      problems.push_back({problem.line, reports.size() > 1 ? name + ": " + problem.reason : problem.reason});
  }
  return {names, std::move(problems)};
}

} // namespace App
