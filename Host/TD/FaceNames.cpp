#include "TD/FaceNames.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>
#include <utility>

#include <fontconfig/fontconfig.h>

namespace TD {

namespace {

constexpr double kNormalWidth = 100;
constexpr double kBoldFrom = FC_WEIGHT_BOLD;

bool IsBold(const FaceFacts& face) {
  return face.weight >= kBoldFrom;
}

bool IsItalic(const FaceFacts& face) {
  return face.slant > FC_SLANT_ROMAN;
}

std::vector<std::string> Words(std::string_view text) {
  std::vector<std::string> words;
  std::string word;
  for (const char c : text) {
    if (c != ' ' && c != '-' && c != '_') {
      word.push_back(c);
      continue;
    }
    if (!word.empty())
      words.push_back(std::exchange(word, {}));
  }
  if (!word.empty())
    words.push_back(word);
  return words;
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower)
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return lower;
}

// Weights that go by several names. What stands for the common weight is left out.
std::string WeightWord(const std::string& word) {
  static constexpr std::array<std::pair<std::string_view, std::string_view>, 12> kNames{{{"extralight", "Ultra Light"},
                                                                                         {"ultralight", "Ultra Light"},
                                                                                         {"semibold", "Demi Bold"},
                                                                                         {"demibold", "Demi Bold"},
                                                                                         {"demi", "Demi Bold"},
                                                                                         {"italic", "Italic"},
                                                                                         {"oblique", "Italic"},
                                                                                         {"slanted", "Italic"},
                                                                                         {"regular", ""},
                                                                                         {"book", ""},
                                                                                         {"roman", ""},
                                                                                         {"normal", ""}}};
  const std::string lower = Lower(word);
  for (const auto& [name, shown] : kNames) {
    if (lower == name)
      return std::string(shown);
  }
  return word;
}

bool IsPrefixOfWeight(const std::string& word, const std::string& next) {
  const std::string lower = Lower(word);
  const std::string after = Lower(next);
  return ((lower == "extra" || lower == "ultra") && after == "light") ||
         ((lower == "semi" || lower == "demi") && after == "bold");
}

int Rank(const CaptionFontRecord& record) {
  static constexpr std::array<std::u16string_view, 4> kFirst{u"Regular", u"Italic", u"Bold", u"Bold Italic"};
  const auto found = std::ranges::find(kFirst, std::u16string_view(record.styleName));
  return static_cast<int>(found - kFirst.begin());
}

} // namespace

UString StyleName(const FaceFacts& face) {
  const std::vector<std::string> words = Words(face.style);
  std::string name;
  bool isSlanted = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    std::string word = words[i];
    if (i + 1 < words.size() && IsPrefixOfWeight(word, words[i + 1]))
      word += words[++i];
    word = WeightWord(word);
    isSlanted = isSlanted || word == "Italic";
    if (word.empty() || word == "Italic")
      continue;
    // "Condensed Bold" is the bold of "Condensed"; a bold face's name starts with the word.
    if (word == "Bold" && !name.empty())
      name.insert(0, word + " ");
    else
      name.append(name.empty() ? "" : " ").append(word);
  }
  // A style that is not told by its name is told by its numbers.
  if (name.empty() && IsBold(face))
    name = "Bold";
  if (isSlanted || IsItalic(face))
    name += name.empty() ? "Italic" : " Italic";
  return zebcore::FromUTF8(name.empty() ? "Regular" : name);
}

std::vector<CaptionFontRecord> MakeRecords(std::vector<FaceFacts> faces) {
  struct Entry {
    CaptionFontRecord record;
    FaceFacts facts;
  };
  // Those of common width first, so that they are the ones that a plain style name stands for.
  const auto order = [](const FaceFacts& face) {
    return std::tuple(face.width != kNormalWidth, face.weight, face.slant, face.style, face.fullName);
  };
  std::ranges::stable_sort(faces, {}, order);
  std::vector<Entry> entries;
  for (const FaceFacts& face : faces) {
    CaptionFontRecord record;
    record.styleName = StyleName(face);
    record.fullName = zebcore::FromUTF8(face.fullName);
    // By the name too: a face that calls itself bold is chosen as a bold one, whatever its weight says.
    record.isBold = IsBold(face) || record.styleName.starts_with(u"Bold");
    record.isItalic = record.styleName.ends_with(u"Italic");
    const bool isKnown =
        std::ranges::any_of(entries, [&](const Entry& entry) { return entry.record.styleName == record.styleName; });
    if (!isKnown)
      entries.push_back({record, face});
  }
  const auto hasTwin = [&entries](bool bold, bool italic) {
    return std::ranges::any_of(
        entries, [=](const Entry& entry) { return entry.record.isBold == bold && entry.record.isItalic == italic; });
  };
  for (Entry& entry : entries) {
    CaptionFontRecord& record = entry.record;
    record.boldSelectable = record.isBold || !entry.facts.color || hasTwin(true, record.isItalic);
    record.italicSelectable = record.isItalic || !entry.facts.color || hasTwin(record.isBold, true);
  }
  std::ranges::stable_sort(entries, {}, [](const Entry& entry) { return Rank(entry.record); });
  std::vector<CaptionFontRecord> records;
  records.reserve(entries.size());
  for (Entry& entry : entries)
    records.push_back(std::move(entry.record));
  return records;
}

} // namespace TD
