#include <gmock/gmock.h>

#include <cstdlib>

#include <sys/stat.h>

#include "App/session/Background.h"
#include "App/session/FileKinds.h"
#include "App/session/Files.h"
#include "App/session/Text.h"
#include "Support.h"

namespace AppTest {

using ::testing::HasSubstr;

TEST(WritingAFile, PutsItThereWholeAndLeavesNothingBeside) {
  const Folder folder;
  EXPECT_FALSE(App::WriteWholeFile(folder / "out.srt", "new"));
  EXPECT_EQ(ReadFile(folder / "out.srt"), "new");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.GetPath()), fs::directory_iterator()), 1);
}

TEST(WritingAFile, KeepsTheRightsOfTheOneItReplaces) {
  const Folder folder;
  const fs::path path = folder.Write("out.srt", "old");
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  EXPECT_FALSE(App::WriteWholeFile(path, "new"));
  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
}

TEST(WritingAFile, ThroughALinkReplacesWhatTheLinkLeadsTo) {
  const Folder folder;
  folder.Write("real.srt", "old");
  fs::create_symlink("real.srt", folder / "link.srt");
  EXPECT_FALSE(App::WriteWholeFile(folder / "link.srt", "new"));
  EXPECT_TRUE(fs::is_symlink(folder / "link.srt"));
  EXPECT_EQ(ReadFile(folder / "real.srt"), "new");
}

TEST(WritingAFile, IntoAFolderThatIsNotThereSaysSo) {
  const Folder folder;
  const auto problem = App::WriteWholeFile(folder / "none/out.srt", "new");
  ASSERT_TRUE(problem);
  EXPECT_THAT(problem->text, HasSubstr("out.srt"));
}

TEST(WritingAFile, OverAPipeIsRefusedAndThePipeStays) {
  const Folder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe.srt").c_str(), 0600), 0);
  EXPECT_TRUE(App::WriteWholeFile(folder / "pipe.srt", "new"));
  EXPECT_TRUE(fs::is_fifo(folder / "pipe.srt"));
}

TEST(FileKinds, AreToldByContentBeforeName) {
  const Folder folder;
  EXPECT_EQ(App::FindKind(folder.Write("a.captivo", "")), App::FileKind::Project);
  EXPECT_EQ(App::FindKind(folder.Write("b.bin", "SQLite format 3")), App::FileKind::Project);
  EXPECT_EQ(App::FindKind(folder.Write("c.SRT", "")), App::FileKind::Captions);
  EXPECT_EQ(App::FindKind(folder.Write("d.txt", "WEBVTT\n\n00:01.000 --> 00:02.000\nHello\n")),
            App::FileKind::Captions);
  EXPECT_EQ(App::FindKind(folder.Write("e.mp4", "anything")), App::FileKind::Media);
  EXPECT_EQ(App::FindKind(folder.GetPath()), App::FileKind::Media);
}

TEST(Texts, PutArgumentsInTheirPlaces) {
  EXPECT_EQ(App::Text("$$$/Test/Order={2} before {1}", {"b", "a"}), "a before b");
  EXPECT_EQ(App::Text("$$$/Test/Braces={1} {3} {x}", {"{2}", "never"}), "{2} {3} {x}");
}

TEST(ABackgroundJob, ThatNobodyWatchesSimplyRuns) {
  const auto result = App::RunInBackground<int>([](App::JobState&) { return 7; }, {}, "", App::Stopping::ByItself);
  EXPECT_EQ(result, 7);
}

TEST(ABackgroundJob, TellsHowFarItIsUntilItEnds) {
  std::atomic<bool> seen{false};
  double last = -1.0;
  const auto result = App::RunInBackground<int>(
      [&seen](App::JobState& state) {
        state.Report(0.5);
        while (!seen)
          std::this_thread::yield();
        return 7;
      },
      [&](double fraction, const std::string&) {
        last = fraction;
        seen = seen || fraction == 0.5;
        return true;
      },
      "", App::Stopping::ByItself);
  EXPECT_EQ(result, 7);
  EXPECT_EQ(last, 0.5);
}

TEST(ABackgroundJob, ThatIsStoppedHearsOfItAndGivesNothing) {
  bool stopped = false;
  int calls = 0;
  const auto result = App::RunInBackground<int>(
      [&stopped](App::JobState& state) {
        while (state.Report(0.1))
          std::this_thread::yield();
        stopped = true;
        return 7;
      },
      [&calls](double, const std::string&) { return ++calls < 3; }, "", App::Stopping::ByItself);
  EXPECT_FALSE(result);
  EXPECT_TRUE(stopped);
}

TEST(ABackgroundJob, ThatThrowsThrowsHere) {
  const auto fail = [](App::JobState&) -> int { throw std::runtime_error("lost"); };
  EXPECT_THROW(App::RunInBackground<int>(
                   fail, [](double, const std::string&) { return true; }, "", App::Stopping::ByItself),
               std::runtime_error);
}

class Scripts : public ::testing::TestWithParam<const char*> {};

TEST_P(Scripts, AreGoodShellAndMayBeRun) {
  const fs::path script = fs::path(CAPTIVO_SOURCE_DIR) / GetParam();
  EXPECT_EQ(std::system(("bash -n '" + script.string() + "'").c_str()), 0);
  const bool isCommand = script.extension() != ".sh";
  EXPECT_EQ((fs::status(script).permissions() & fs::perms::owner_exec) != fs::perms::none, isCommand);
}

INSTANTIATE_TEST_SUITE_P(All, Scripts, ::testing::Values("captivo", "check", ".ci/run", "cmake/setup.sh"));

TEST(TheCommands, ExplainThemselvesFromAnyFolderWithoutALanguage) {
  for (const char* command : {"captivo", "check"}) {
    const std::string call = "cd / && env -u LANG -u LC_ALL '" + (fs::path(CAPTIVO_SOURCE_DIR) / command).string() +
                             "' --help | grep -q '^usage: ./" + command + "'";
    EXPECT_EQ(std::system(call.c_str()), 0) << command;
  }
}

TEST(ThePackageList, GivesAReasonForEachPackage) {
  std::ifstream list(fs::path(CAPTIVO_SOURCE_DIR) / "cmake/packages.txt");
  ASSERT_TRUE(list);
  int packages = 0;
  for (std::string line; std::getline(list, line);) {
    if (line.empty() || line[0] == '#')
      continue;
    ++packages;
    EXPECT_THAT(line, ::testing::MatchesRegex("[a-z0-9+.-]+ +# .+"));
  }
  EXPECT_GT(packages, 0);
}

} // namespace AppTest
