#include "zebcore/Localizer.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

#include "zebcore/Log.h"

namespace zebcore::config {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

// The bytes of a compiled catalogue with these entries, which must be in ascending order.
std::string Compiled(const std::vector<std::pair<std::string, std::string>>& entries) {
  std::string bytes;
  const auto put = [&bytes](std::size_t number) {
    for (int shift = 0; shift < 32; shift += 8)
      bytes.push_back(static_cast<char>(number >> shift & 0xff));
  };
  const std::size_t count = entries.size();
  for (const std::size_t field : {std::size_t{0x950412de}, std::size_t{0}, count, std::size_t{28}, 28 + 8 * count,
                                  std::size_t{0}, 28 + 16 * count})
    put(field);
  std::size_t offset = 28 + 16 * count;
  const auto place = [&](const std::string& text) {
    put(text.size());
    put(offset);
    offset += text.size() + 1;
  };
  for (const auto& [key, text] : entries)
    place(key);
  for (const auto& [key, text] : entries)
    place(text);
  for (const auto& [key, text] : entries)
    bytes += key + '\0';
  for (const auto& [key, text] : entries)
    bytes += text + '\0';
  return bytes;
}

struct Languages : testing::Test {
  Languages() { localizer.SetLanguage("en"); }
  ~Languages() override {
    log::SetSink(nullptr);
    localizer.SetLanguage("en");
    localizer.SetCatalogueFolder("");
    fs::remove_all(folder);
  }
  void Write(const std::string& language, const std::string& bytes) {
    const fs::path place = folder / language / "LC_MESSAGES";
    fs::create_directories(place);
    std::ofstream(place / "captivo.mo", std::ios::binary) << bytes;
  }
  void UseOwnFolder() { localizer.SetCatalogueFolder(folder.string()); }
  std::string Text(std::string_view key) const { return ToUTF8(localizer.Localize(key)); }

  Localizer& localizer = Localizer::Get();
  fs::path folder = fs::path(testing::TempDir()) / ("captivo-languages-" + std::to_string(getpid()));
};

TEST_F(Languages, TheDefaultTextIsWhatFollowsTheFirstEqualsSign) {
  EXPECT_EQ(Text("$$$/Vidra/Handlers/Captions/CaptionsWindowTitle=Captions"), "Captions");
  EXPECT_EQ(Text("$$$/Test/Formula=a=b"), "a=b");
  EXPECT_EQ(Text("$$$/Test/Empty="), "");
}

TEST_F(Languages, WithoutAnEqualsSignTheKeyIsTheText) {
  EXPECT_EQ(Text("$$$/Test/Bare"), "$$$/Test/Bare");
  EXPECT_EQ(Text(""), "");
  EXPECT_EQ(Text("=only a text"), "only a text");
}

TEST_F(Languages, GermanIsThereAndFoundBesideTheProgram) {
  EXPECT_EQ(localizer.GetLanguage(), "en");
  EXPECT_EQ(localizer.GetLanguages().front(), "en");
  ASSERT_TRUE(localizer.SetLanguage("de"));
  EXPECT_EQ(localizer.GetLanguage(), "de");
  EXPECT_EQ(localizer.Localize("$$$/Vidra/Handlers/Captions/CaptionsWindowTitle=Captions"), u"Untertitel");
  EXPECT_EQ(localizer.Localize("$$$/Vidra/Handlers/Captions/FontSize=Size:"), u"Gr\u00f6\u00dfe:");
}

TEST_F(Languages, ATextThatAnotherLanguageLacksKeepsItsDefault) {
  ASSERT_TRUE(localizer.SetLanguage("de"));
  EXPECT_EQ(Text("$$$/Test/Unknown=Default text"), "Default text");
  EXPECT_EQ(Text("$$$/Test/UnknownBare"), "$$$/Test/UnknownBare");
}

TEST_F(Languages, BackToTheLanguageOfTheDefaults) {
  ASSERT_TRUE(localizer.SetLanguage("de"));
  ASSERT_TRUE(localizer.SetLanguage("en"));
  EXPECT_EQ(Text("$$$/Vidra/Handlers/Captions/CaptionsWindowTitle=Captions"), "Captions");
}

TEST_F(Languages, ALanguageWithoutACatalogueChangesNothing) {
  ASSERT_TRUE(localizer.SetLanguage("de"));
  for (const char* language : {"fr", "", "de_XX", "../de", "de/../de", "."})
    EXPECT_FALSE(localizer.SetLanguage(language)) << language;
  EXPECT_EQ(localizer.GetLanguage(), "de");
  EXPECT_EQ(Text("$$$/Vidra/Handlers/Captions/CaptionsWindowTitle=Captions"), "Untertitel");
}

TEST_F(Languages, EnglishIsListedFirstAndEveryOtherAscending) {
  for (const char* language : {"sv", "de", "en", "fr_CA"})
    Write(language, Compiled({{"$$$/Test/A", language}}));
  fs::create_directories(folder / "nl");
  UseOwnFolder();
  EXPECT_THAT(localizer.GetLanguages(), ElementsAre("en", "de", "fr_CA", "sv"));
}

TEST_F(Languages, AFolderThatDoesNotExistHasNoLanguageButEnglish) {
  UseOwnFolder();
  EXPECT_THAT(localizer.GetLanguages(), ElementsAre("en"));
}

TEST_F(Languages, ACatalogueIsReadWhateverLanguagesTheMachineHas) {
  const std::string header = "Content-Type: text/plain; charset=UTF-8\n";
  Write("tlh", Compiled({{"", header}, {"$$$/Test/A", "nuqneH \xe2\x99\xaa"}, {"$$$/Test/B", ""}}));
  Write("fr_CA", Compiled({{"", header}, {"$$$/Test/A", "\xc3\xa9t\xc3\xa9"}}));
  UseOwnFolder();
  ASSERT_TRUE(localizer.SetLanguage("tlh"));
  EXPECT_EQ(localizer.Localize("$$$/Test/A=Hello"), u"nuqneH \u266a");
  EXPECT_EQ(Text("$$$/Test/B=an empty translation is none"), "an empty translation is none");
  ASSERT_TRUE(localizer.SetLanguage("fr_CA"));
  EXPECT_EQ(localizer.Localize("$$$/Test/A=Hello"), u"\u00e9t\u00e9");
}

TEST_F(Languages, ABrokenCatalogueIsRefused) {
  log::SetSink([](log::Level, std::string_view) {});
  Write("xx", "this is no catalogue");
  Write("yy", "");
  Write("zz", Compiled({{"$$$/Test/A", "a"}, {"$$$/Test/B", "b"}}).substr(0, 50));
  UseOwnFolder();
  for (const char* language : {"xx", "yy", "zz"})
    EXPECT_FALSE(localizer.SetLanguage(language)) << language;
  EXPECT_EQ(localizer.GetLanguage(), "en");
}

TEST_F(Languages, WithAnotherFolderTheLanguageStaysIfItIsThereToo) {
  ASSERT_TRUE(localizer.SetLanguage("de"));
  Write("de", Compiled({{"", "Content-Type: text/plain; charset=UTF-8\n"}, {"$$$/Test/A", "hier"}}));
  UseOwnFolder();
  EXPECT_EQ(localizer.GetLanguage(), "de");
  EXPECT_EQ(Text("$$$/Test/A=here"), "hier");
  localizer.SetCatalogueFolder((folder / "nowhere").string());
  EXPECT_EQ(localizer.GetLanguage(), "en");
  EXPECT_EQ(Text("$$$/Test/A=here"), "here");
}

} // namespace
} // namespace zebcore::config
