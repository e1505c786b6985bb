#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "App/Session.h"

// Which streams the export settings mean, and what their files are called.
namespace App {

// A name to begin with, without what the format's files end in: the clip's, then the language: "Harbour.de".
std::string SuggestExportName(const std::string& clipName, const BE::CaptionsExportSettings& settings);

struct ExportTarget {
  BE::InterfaceRef<BE::CaptioningStream> stream;
  std::filesystem::path path;
};

// The streams of a clip; shown is the one that the panel shows and may be null. Of several each file has its stream's
// name in its own, "Harbour.de.CC1.srt", and none takes another one's. A problem if there is no such stream.
BE::Result<std::vector<ExportTarget>> FindExportTargets(const BE::InterfaceRef<BE::MasterClip>& clip,
                                                        const BE::InterfaceRef<BE::CaptioningStream>& shown,
                                                        const std::filesystem::path& path,
                                                        const BE::CaptionsExportSettings& settings);

// What is told about an export: the names of its files, and all problems, with the file's name where there are several.
std::pair<std::string, std::vector<Formats::Problem>> JoinReports(const std::vector<ExportReport>& reports);

} // namespace App
