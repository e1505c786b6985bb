#pragma once

#include <functional>

#include "Formats/CueBuilder.h"
#include "Formats/Writers.h"

// What the writers share: the road through the captions, their times, and tags around runs.
namespace Formats {

using Losses = std::vector<std::string>;
void AddLoss(Losses& losses, const std::string& what); // each once

// How one kind of file writes things. Texts are UTF-8.
struct Syntax {
  StreamFormat format = zebcaptioning::kStreamFormat_None;
  std::string head; // of the file
  bool hasNumbers = false;
  char decimalMark = '.';
  // Behind the times, with a leading blank, and in front of the text.
  std::function<std::string(const zebcaptioning::CaptionState&, Losses&)> settings;
  std::function<std::string(const zebcaptioning::CaptionState&, Losses&)> prefix;
  // Opening tags for what a run looks like, outermost first.
  std::function<std::vector<std::string>(const TextSpanAttributes&, Losses&)> tags;
  // Characters of one line and one run.
  std::function<std::string(std::u16string_view)> escape;
  // Tags around nothing. They keep an empty line inside a caption from ending it.
  std::string nothing;
};

WriteResult WriteCues(const Syntax& syntax, std::span<const CaptionStatePtr> captions, const Progress& progress);

} // namespace Formats
