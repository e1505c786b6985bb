#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Captions/contracts/StreamFormat.h"
#include "zebcaptioning/FormatFacts.h"

// The numbers of stream formats: four characters read from the high byte down, the last of them the channel. "6CC1" to
// "6CC4" are CEA-608's channels, "7SV1" to "7SV6" CEA-708's services, "TTX1" and on Teletext pages, "EBN1" and on EBU
// N19 tracks, "AUS1" and on Australian pages, "OPN1" and on open tracks.
namespace zebcaptioning {

struct StreamFamily {
  const char* name; // "cea608", "cea708", "teletext", "ebu_n19", "australian", "open"
  FormatFamily family;
  int channels;
};

// In the order in which they are offered to people.
const std::vector<StreamFamily>& GetStreamFamilies();

// channel counts from 1. kStreamFormat_None for a family or a channel that does not exist.
StreamFormat GetStreamFormat(std::string_view family, int channel);
StreamFormat GetStreamFormat(FormatFamily family, int channel);

struct StreamNumber {
  FormatFamily family;
  int channel; // 0 for a number that names the family as such
};
// Nothing for a number that names no format.
std::optional<StreamNumber> ReadStreamNumber(StreamFormat format);
// Null for FormatFamily::None.
const StreamFamily* FindStreamFamily(FormatFamily family);

// The page that a Teletext or Australian stream is sent on, 100 to 899; 0 for any other.
int GetTeletextPage(StreamFormat format);

} // namespace zebcaptioning
