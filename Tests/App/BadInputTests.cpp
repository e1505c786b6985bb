#include <SQLiteCpp/SQLiteCpp.h>
#include <gmock/gmock.h>

#include <cstdlib>

#include <sys/stat.h>
#include <unistd.h>

#include "Support.h"

namespace AppTest {

using ::testing::HasSubstr;

// Each of these gets one message that names the file, and leaves the open project as it was.
class BadCaptionFile : public SessionTest {
 protected:
  BadCaptionFile() : before(TakePicture()) {}

  std::string Import(const fs::path& path) {
    const auto report = session().ImportCaptions(clip, path, cc1);
    EXPECT_FALSE(report);
    EXPECT_THAT(report.problem.text, HasSubstr(path.filename().string()));
    EXPECT_EQ(TakePicture(), before);
    return report.problem.text;
  }

  Picture before;
};

TEST_F(BadCaptionFile, ThatIsNotThereIsSaidToBeMissing) {
  EXPECT_THAT(Import(folder / "gone.srt"), HasSubstr("not there"));
}

TEST_F(BadCaptionFile, ThatIsEmptyIsSaidToBeEmpty) {
  EXPECT_THAT(Import(folder.Write("empty.srt", "")), HasSubstr("empty"));
}

TEST_F(BadCaptionFile, ThatIsAFolderIsSaidToBeOne) {
  fs::create_directory(folder / "folder.srt");
  EXPECT_THAT(Import(folder / "folder.srt"), HasSubstr("is a folder"));
}

TEST_F(BadCaptionFile, ThatIsAPipeIsRefusedWithoutWaitingForIt) {
  ASSERT_EQ(::mkfifo((folder / "pipe.srt").c_str(), 0600), 0);
  EXPECT_THAT(Import(folder / "pipe.srt"), HasSubstr("pipe"));
}

TEST_F(BadCaptionFile, ThatMayNotBeReadNamesThePermission) {
  const fs::path path = folder.Write("secret.srt", kTwoCaptions);
  fs::permissions(folder.GetPath(), fs::perms::owner_all | fs::perms::others_exec);
  fs::permissions(path, fs::perms::none);
  // Root may read everything, so for once it is nobody.
  constexpr uid_t kNobody = 65534;
  const bool isRoot = ::geteuid() == 0;
  ASSERT_TRUE(!isRoot || ::seteuid(kNobody) == 0);
  const std::string text = Import(path);
  ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
  EXPECT_THAT(text, HasSubstr("may not be read"));
}

TEST_F(BadCaptionFile, OfTwoHundredMegabytesOfZerosIsRefusedAfterItsFirstBytes) {
  EXPECT_THAT(Import(folder.WriteZeros("zeros.srt", std::uintmax_t{200} << 20)), HasSubstr("no caption file"));
}

TEST_F(BadCaptionFile, ThatBeginsLikeCaptionsAndIsTooLargeSaysBothSizes) {
  std::string many;
  while (many.size() < 100'000)
    many += kTwoCaptions;
  const fs::path path = folder.Write("large.srt", many);
  fs::resize_file(path, std::uintmax_t{200} << 20);
  const std::string text = Import(path);
  EXPECT_THAT(text, HasSubstr("200 MB"));
  EXPECT_THAT(text, HasSubstr("100 MB"));
}

TEST_F(BadCaptionFile, ThatIsNoCaptionFileSaysWhichOnesCanBeRead) {
  const std::string text = Import(folder.Write("picture.png", "\x89PNG\r\n\x1a\nnothing that could be captions"));
  EXPECT_THAT(text, HasSubstr("SubRip"));
  EXPECT_THAT(text, HasSubstr("WebVTT"));
}

TEST_F(BadCaptionFile, WhoseEveryCueIsBrokenNamesTheFirstThingWrong) {
  EXPECT_THAT(Import(folder.Write("broken.srt", "1\n00:00:05,000 --> 00:0x:06,000\nNever\n")), HasSubstr("line"));
}

TEST_F(SessionTest, ABrokenCueStaysOutAndIsListedWithItsLineAndReason) {
  const fs::path path = folder.Write("some.srt", "1\n00:00:01,000 --> 00:00:02,000\nGood\n\n"
                                                 "2\n00:00:0x,000 --> 00:00:04,000\nBroken\n\n"
                                                 "3\n00:00:05,000 --> 00:00:06,000\nGood again\n");
  const auto report = session().ImportCaptions(clip, path, cc1);
  ASSERT_TRUE(report) << report.problem.text;
  EXPECT_EQ(report.value->stream->GetCaptionCount(), 2u);
  ASSERT_EQ(report.value->problems.size(), 1u);
  EXPECT_EQ(report.value->problems[0].line, 6);
  EXPECT_FALSE(report.value->problems[0].reason.empty());
}

class BadMedia : public SessionTest {
 protected:
  BadMedia() : before(TakePicture()) {}

  std::string Import(const fs::path& path) {
    const auto result = session().ImportMedia(path);
    EXPECT_FALSE(result);
    EXPECT_THAT(result.problem.text, HasSubstr(path.filename().string()));
    EXPECT_EQ(TakePicture(), before);
    return result.problem.text;
  }
  // A second of moving pictures; its index is written behind the pictures.
  fs::path MakeVideo() {
    const fs::path path = folder / "video.mp4";
    const std::string command =
        "ffmpeg -loglevel error -f lavfi -i testsrc=size=64x48:rate=25:duration=1 -pix_fmt yuv420p " + path.string();
    EXPECT_EQ(std::system(command.c_str()), 0);
    return path;
  }

  Picture before;
};

TEST_F(BadMedia, ThatIsNotThereIsRefused) {
  Import(folder / "gone.mp4");
}

TEST_F(BadMedia, ThatIsEmptyIsRefused) {
  Import(folder.Write("empty.mp4", ""));
}

TEST_F(BadMedia, ThatIsAFolderIsRefused) {
  fs::create_directory(folder / "folder.mp4");
  Import(folder / "folder.mp4");
}

TEST_F(BadMedia, OfTwoHundredMegabytesOfZerosIsRefused) {
  Import(folder.WriteZeros("zeros.mp4", std::uintmax_t{200} << 20));
}

TEST_F(BadMedia, ThatIsTextIsRefused) {
  Import(folder.Write("text.mp4", "This is a letter and no film.\n"));
}

TEST_F(BadMedia, ThatIsCutOffHalfWayIsRefused) {
  const fs::path path = MakeVideo();
  fs::resize_file(path, fs::file_size(path) / 2);
  Import(path);
}

TEST_F(BadMedia, WithNothingButSubtitlesIsRefused) {
  const fs::path captions = folder.Write("captions.srt", kTwoCaptions);
  const fs::path path = folder / "nothing.mkv";
  const std::string command = "ffmpeg -loglevel error -i " + captions.string() + " " + path.string();
  ASSERT_EQ(std::system(command.c_str()), 0);
  Import(path);
}

TEST_F(BadMedia, DoesNotStandInTheWayOfGoodMedia) {
  const auto result = session().ImportMedia(MakeVideo());
  ASSERT_TRUE(result) << result.problem.text;
  EXPECT_EQ((*result.value)->GetMediaInfo().width, 64);
  EXPECT_FALSE((*result.value)->IsOffline());
}

class BadProject : public SessionTest {
 protected:
  BadProject() {
    EXPECT_TRUE(session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1));
    before = TakePicture();
  }

  std::string Open(const fs::path& path) {
    const auto problem = session().OpenProject(path);
    EXPECT_TRUE(problem);
    EXPECT_EQ(TakePicture(), before);
    return problem ? problem->text : std::string();
  }

  Picture before;
};

TEST_F(BadProject, ThatIsNotThereLeavesTheOpenOneAsItWas) {
  EXPECT_THAT(Open(folder / "gone.captivo"), HasSubstr("gone"));
}

TEST_F(BadProject, ThatIsNoDatabaseLeavesTheOpenOneAsItWas) {
  EXPECT_THAT(Open(folder.Write("letter.captivo", "Dear reader, this is no project at all.")), HasSubstr("letter"));
}

TEST_F(BadProject, ThatIsAFolderLeavesTheOpenOneAsItWas) {
  fs::create_directory(folder / "folder.captivo");
  EXPECT_THAT(Open(folder / "folder.captivo"), HasSubstr("folder"));
}

TEST_F(BadProject, ThatIsCutOffHalfWayLeavesTheOpenOneAsItWas) {
  ASSERT_FALSE(session().SaveProjectAs(folder / "whole.captivo"));
  ASSERT_FALSE(session().NewProject(folder / "Other.captivo"));
  clip = AddClip("Other");
  before = TakePicture();
  const std::string bytes = ReadFile(folder / "whole.captivo");
  EXPECT_THAT(Open(folder.Write("half.captivo", std::string_view(bytes).substr(0, bytes.size() / 2))),
              HasSubstr("half"));
}

TEST_F(BadProject, OfANewerVersionSaysSoAndStaysAsItIs) {
  const fs::path path = folder / "newer.captivo";
  {
    const auto newer = BE::Project::Create(path);
    ASSERT_TRUE(newer) << newer.problem.text;
    (*newer.value)->Close();
  }
  {
    SQLite::Database file(path.string(), SQLite::OPEN_READWRITE);
    file.exec("PRAGMA user_version=99");
  }
  const std::string bytes = ReadFile(path);
  EXPECT_THAT(Open(path), AllOf(HasSubstr("saved by a newer version"), HasSubstr("99")));
  EXPECT_EQ(ReadFile(path), bytes);
}

TEST_F(BadProject, WhosePlaceIsTakenIsNotMadeAnewOverAnother) {
  const fs::path taken = folder.Write("taken.captivo", "something else");
  const auto problem = session().NewProject(taken);
  ASSERT_TRUE(problem);
  EXPECT_EQ(TakePicture(), before);
  EXPECT_EQ(ReadFile(taken), "something else");
}

} // namespace AppTest
