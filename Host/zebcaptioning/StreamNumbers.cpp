#include "zebcaptioning/StreamNumbers.h"

#include <array>

namespace zebcaptioning {

namespace {

constexpr std::uint32_t FourCharacters(const char (&text)[5]) {
  return std::uint32_t(static_cast<unsigned char>(text[0])) << 24 |
         std::uint32_t(static_cast<unsigned char>(text[1])) << 16 |
         std::uint32_t(static_cast<unsigned char>(text[2])) << 8 | std::uint32_t(static_cast<unsigned char>(text[3]));
}

struct FirstNumber {
  FormatFamily family;
  StreamFormat first;
};

constexpr std::array<FirstNumber, 6> kFirstNumbers{{{FormatFamily::CEA608, FourCharacters("6CC1")},
                                                    {FormatFamily::CEA708, FourCharacters("7SV1")},
                                                    {FormatFamily::Teletext, FourCharacters("TTX1")},
                                                    {FormatFamily::EbuN19, FourCharacters("EBN1")},
                                                    {FormatFamily::Australian, FourCharacters("AUS1")},
                                                    {FormatFamily::Open, FourCharacters("OPN1")}}};
static_assert(kFirstNumbers[0].first == kStreamFormat_608_CC1);

// Pages on which European broadcasters send subtitles, the most common first.
constexpr std::array<int, 8> kTeletextPages{888, 777, 150, 149, 199, 399, 889, 890};
// 801 is the page that every Australian network uses.
constexpr std::array<int, 2> kAustralianPages{801, 802};

} // namespace

const std::vector<StreamFamily>& GetStreamFamilies() {
  static const std::vector<StreamFamily> families{
      {"cea608", FormatFamily::CEA608, 4},
      {"cea708", FormatFamily::CEA708, 6},
      {"teletext", FormatFamily::Teletext, static_cast<int>(kTeletextPages.size())},
      {"ebu_n19", FormatFamily::EbuN19, 4},
      {"australian", FormatFamily::Australian, static_cast<int>(kAustralianPages.size())},
      {"open", FormatFamily::Open, 9}};
  return families;
}

const StreamFamily* FindStreamFamily(FormatFamily family) {
  for (const StreamFamily& known : GetStreamFamilies()) {
    if (known.family == family)
      return &known;
  }
  return nullptr;
}

StreamFormat GetStreamFormat(FormatFamily family, int channel) {
  const StreamFamily* known = FindStreamFamily(family);
  if (!known || channel < 1 || channel > known->channels)
    return kStreamFormat_None;
  for (const FirstNumber& number : kFirstNumbers) {
    if (number.family == family)
      return number.first + static_cast<StreamFormat>(channel - 1);
  }
  return kStreamFormat_None;
}

StreamFormat GetStreamFormat(std::string_view family, int channel) {
  for (const StreamFamily& known : GetStreamFamilies()) {
    if (family == known.name)
      return GetStreamFormat(known.family, channel);
  }
  return kStreamFormat_None;
}

std::optional<StreamNumber> ReadStreamNumber(StreamFormat format) {
  if (format == kStreamFormat_608)
    return StreamNumber{FormatFamily::CEA608, 0};
  for (const FirstNumber& number : kFirstNumbers) {
    if (format < number.first)
      continue;
    const StreamFormat offset = format - number.first;
    if (offset < static_cast<StreamFormat>(FindStreamFamily(number.family)->channels))
      return StreamNumber{number.family, static_cast<int>(offset) + 1};
  }
  return std::nullopt;
}

int GetTeletextPage(StreamFormat format) {
  const auto number = ReadStreamNumber(format);
  if (!number)
    return 0;
  const auto index = static_cast<std::size_t>(number->channel - 1);
  if (number->family == FormatFamily::Teletext)
    return kTeletextPages[index];
  return number->family == FormatFamily::Australian ? kAustralianPages[index] : 0;
}

} // namespace zebcaptioning
