// The log of the program as a person reads it.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "App/session/LogFile.h"
#include "MZ/Actions.h"

namespace AppTest {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

class Log : public ::testing::Test {
 protected:
  void SetUp() override {
    char name[] = "/tmp/captivo-log-XXXXXX";
    folder = mkdtemp(name);
  }
  void TearDown() override {
    zebcore::log::SetSink(nullptr);
    fs::remove_all(folder);
  }
  static std::string Read(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
  }
  fs::path folder;
  fs::path Path() const { return folder / "new folder" / "captivo.log"; }
};

TEST_F(Log, SaysWhichFontWasUsedAndWhen) {
  const App::LogFile log(Path());
  MZ::LogFontUsage({u"Noto Sans Bold Italic"}, 0);
  EXPECT_THAT(Read(Path()), MatchesRegex("[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+  info  "
                                         "Font used for captions: Noto Sans Bold Italic\n"));
}

TEST_F(Log, GoesOnWhereItStoppedTheLastTime) {
  for (const char* text : {"the first", "the second"}) {
    const App::LogFile log(Path());
    zebcore::log::Write(zebcore::log::Level::Info, text);
  }
  EXPECT_THAT(Read(Path()), HasSubstr("the first"));
  EXPECT_THAT(Read(Path()), HasSubstr("the second"));
}

TEST_F(Log, KeepsATextOfSeveralLinesOnOne) {
  const App::LogFile log(Path());
  zebcore::log::Write(zebcore::log::Level::Warning, "one\r\ntwo");
  EXPECT_THAT(Read(Path()), HasSubstr("warning  one  two\n"));
}

TEST_F(Log, IsPutAsideOnceItIsLarge) {
  fs::create_directories(Path().parent_path());
  std::ofstream(Path()) << std::string(App::LogFile::kLargest + 1, 'x');
  const App::LogFile log(Path());
  zebcore::log::Write(zebcore::log::Level::Info, "anew");
  EXPECT_LT(fs::file_size(Path()), 100U);
  EXPECT_EQ(fs::file_size(Path().parent_path() / "captivo.log.old"), App::LogFile::kLargest + 1);
}

TEST_F(Log, GoesToStandardErrorWhereNoFileCanBe) {
  std::ofstream(folder / "file") << "in the way";
  testing::internal::CaptureStderr();
  const App::LogFile log(folder / "file" / "captivo.log");
  zebcore::log::Write(zebcore::log::Level::Error, "something is wrong");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "captivo: error: something is wrong\n");
}

} // namespace AppTest
