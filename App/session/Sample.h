#pragma once

#include <filesystem>
#include <vector>

#include "App/Session.h"

namespace App {

// Where the sample clip and its captions lie: beside the program, else where it was built from.
std::filesystem::path FindSampleFolder();

// Opens the sample project, which is made in the user's data folder at first and is the user's own from then on. A
// problem if there is no sample.
std::optional<Problem> OpenSampleProject();

// The media and the caption files of a folder, by name.
struct SampleFiles {
  std::vector<std::filesystem::path> media;
  std::vector<std::filesystem::path> captions;
};
SampleFiles FindSampleFiles(const std::filesystem::path& folder);

} // namespace App
