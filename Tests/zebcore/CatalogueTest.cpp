#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// The catalogues against the sources: every text for people is translated, and with the same places for values.

namespace {

namespace fs = std::filesystem;
using Texts = std::map<std::string, std::string>; // by key

std::string ReadAll(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file, std::ios::binary).rdbuf();
  return text.str();
}

bool IsSource(const fs::path& file) {
  return file.extension() == ".cpp" || file.extension() == ".h";
}

// Takes the string literal that begins here, together with those that follow it and belong to it.
std::string TakeLiteral(std::string_view source, std::size_t& place) {
  std::string text;
  while (place < source.size() && source[place] == '"') {
    for (++place; place < source.size() && source[place] != '"' && source[place] != '\n'; ++place) {
      text.push_back(source[place]);
      if (source[place] == '\\' && place + 1 < source.size())
        text.push_back(source[++place]);
    }
    const std::size_t next = source.find_first_not_of(" \t\r\n", place + 1);
    place = next != std::string_view::npos && source[next] == '"' ? next : place + 1;
  }
  return text;
}

void CollectTexts(const std::string& source, Texts& texts) {
  constexpr std::string_view kStart = "\"$$$/Vidra/";
  std::size_t place = 0;
  while ((place = source.find(kStart, place)) != std::string::npos) {
    const std::string text = TakeLiteral(source, place);
    if (const std::size_t equals = text.find('='); equals != std::string::npos)
      texts[text.substr(0, equals)] = text.substr(equals + 1);
  }
}

Texts TextsOfTheSources() {
  Texts texts;
  for (const char* folder : {"App", "Drive", "Formats", "Handlers", "Host"})
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(CAPTIVO_SOURCE_DIR) / folder))
      if (entry.is_regular_file() && IsSource(entry.path()))
        CollectTexts(ReadAll(entry.path()), texts);
  return texts;
}

Texts TextsOfACatalogue(const fs::path& file) {
  Texts texts;
  std::ifstream lines(file);
  std::string line;
  std::string key;
  std::string* target = nullptr;
  while (std::getline(lines, line)) {
    const std::size_t quote = line.find('"');
    if (quote == std::string::npos || line.front() == '#')
      continue;
    const std::string text = line.substr(quote + 1, line.rfind('"') - quote - 1);
    if (line.starts_with("msgid ")) {
      key.clear();
      target = &key;
    } else if (line.starts_with("msgstr ")) {
      target = &texts[key];
    }
    if (target)
      *target += text;
  }
  texts.erase("");
  return texts;
}

std::vector<fs::path> Catalogues() {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(fs::path(CAPTIVO_SOURCE_DIR) / "po"))
    if (entry.path().extension() == ".po")
      files.push_back(entry.path());
  return files;
}

// Calls for each text of the sources and each catalogue; the translation is null where there is none.
template <class Call> void ForEachText(Call call) {
  const Texts texts = TextsOfTheSources();
  for (const fs::path& file : Catalogues()) {
    const Texts translations = TextsOfACatalogue(file);
    for (const auto& [key, text] : texts) {
      const auto found = translations.find(key);
      call(key, text, found == translations.end() ? nullptr : &found->second);
    }
  }
}

// The numbers in "{1}" and "%1", each as often as it stands there.
std::multiset<std::string> PlacesForValues(const std::string& text) {
  std::multiset<std::string> places;
  for (std::size_t i = 1; i < text.size(); ++i)
    if ((text[i - 1] == '{' || text[i - 1] == '%') && text[i] >= '0' && text[i] <= '9')
      places.insert(text.substr(i - 1, 2));
  return places;
}

// "(*.srt *.vtt)" of a file filter; empty for another text.
std::string Patterns(const std::string& text) {
  const std::size_t start = text.find("(*");
  return start == std::string::npos ? "" : text.substr(start, text.find(')', start) + 1 - start);
}

TEST(Catalogues, ThereIsGermanAndTheSourcesHaveTexts) {
  EXPECT_FALSE(Catalogues().empty());
  EXPECT_GT(TextsOfTheSources().size(), 50u);
}

TEST(Catalogues, EveryTextOfTheSourcesIsTranslated) {
  ForEachText([](const std::string& key, const std::string& text, const std::string* translation) {
    EXPECT_TRUE(translation && (text.empty() || !translation->empty())) << key << "=" << text;
  });
}

TEST(Catalogues, ATranslationHasPlacesForTheSameValues) {
  ForEachText([](const std::string& key, const std::string& text, const std::string* translation) {
    if (translation) {
      EXPECT_EQ(PlacesForValues(*translation), PlacesForValues(text)) << key;
    }
  });
}

TEST(Catalogues, AFileFilterKeepsItsPatterns) {
  ForEachText([](const std::string& key, const std::string& text, const std::string* translation) {
    if (translation) {
      EXPECT_EQ(Patterns(*translation), Patterns(text)) << key;
    }
  });
}

TEST(Catalogues, AMenuEntryKeepsItsAccessKey) {
  ForEachText([](const std::string& key, const std::string& text, const std::string* translation) {
    if (translation) {
      EXPECT_EQ(std::count(translation->begin(), translation->end(), '&'), std::count(text.begin(), text.end(), '&'))
          << key;
    }
  });
}

} // namespace
