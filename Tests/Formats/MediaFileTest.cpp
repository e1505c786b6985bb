#include "MF/MediaFile.h"

#include "MediaMaking.h"

using MF::ProbeMedia;
using zebmediatypes::TickTime;

namespace {

using MediaFile = MediaFolder;

bool Says(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

double Seconds(TickTime time) {
  return zebmediatypes::ToSeconds(time);
}

} // namespace

TEST_F(MediaFile, TellsPictureAndSound) {
  const auto info = ProbeMedia(Make(kPicture + kSound + kCheapVideo + "-c:a aac", "a.mp4"));
  ASSERT_TRUE(info) << info.problem.text;
  EXPECT_EQ(info.value->width, 96);
  EXPECT_EQ(info.value->height, 64);
  EXPECT_EQ(info.value->pixelAspect, zebmediatypes::kPixelAspectRatio_Square);
  EXPECT_EQ(info.value->frameRate, zebmediatypes::kFrameRate_25);
  EXPECT_EQ(info.value->sampleRate, 48000);
  EXPECT_NEAR(Seconds(info.value->duration), 2.0, 0.05);
  EXPECT_EQ(info.value->start, zebmediatypes::kTime_Zero);
  EXPECT_FALSE(info.value->dropFrame);
  EXPECT_FALSE(info.value->still);
}
TEST_F(MediaFile, TellsSoundAlone) {
  const auto info = ProbeMedia(Make("-f lavfi -i sine=r=44100:d=1", "a.wav"));
  ASSERT_TRUE(info) << info.problem.text;
  EXPECT_EQ(info.value->width, 0);
  EXPECT_EQ(info.value->height, 0);
  EXPECT_EQ(info.value->sampleRate, 44100);
  EXPECT_EQ(info.value->duration, TickTime(zebmediatypes::kTicksPerSecond));
}
TEST_F(MediaFile, TellsPictureAlone) {
  const auto info = ProbeMedia(Make(kPicture + kCheapVideo, "a.mkv"));
  ASSERT_TRUE(info) << info.problem.text;
  EXPECT_EQ(info.value->sampleRate, 0);
  EXPECT_EQ(info.value->width, 96);
}
TEST_F(MediaFile, TellsPixelsThatAreNotSquare) {
  const auto info = ProbeMedia(Make(kPicture + "-vf setsar=16/15 " + kCheapVideo, "a.mp4"));
  ASSERT_TRUE(info) << info.problem.text;
  EXPECT_EQ(info.value->pixelAspect.numerator, 16);
  EXPECT_EQ(info.value->pixelAspect.denominator, 15);
}
TEST_F(MediaFile, TellsEveryUsualFrameRateExactly) {
  const std::pair<const char*, zebmediatypes::FrameRate> rates[] = {{"24000/1001", zebmediatypes::kFrameRate_23976},
                                                                    {"24", zebmediatypes::kFrameRate_24},
                                                                    {"30000/1001", zebmediatypes::kFrameRate_2997},
                                                                    {"30", zebmediatypes::kFrameRate_30},
                                                                    {"50", zebmediatypes::kFrameRate_50},
                                                                    {"60000/1001", zebmediatypes::kFrameRate_5994},
                                                                    {"60", zebmediatypes::kFrameRate_60}};
  for (const auto& [rate, expected] : rates) {
    // Matroska has time stamps of whole milliseconds, from which the rate must be told none the less.
    for (const char* name : {"a.mp4", "a.mkv"}) {
      const auto info =
          ProbeMedia(Make("-f lavfi -i testsrc2=s=96x64:r=" + std::string(rate) + ":d=1 " + kCheapVideo, name));
      ASSERT_TRUE(info) << info.problem.text;
      EXPECT_EQ(info.value->frameRate, expected) << rate << " " << name;
    }
  }
}
TEST_F(MediaFile, TellsTheStartTimecode) {
  const auto info = ProbeMedia(Make(kPicture + kCheapVideo + "-timecode 10:00:00:05", "a.mp4"));
  ASSERT_TRUE(info) << info.problem.text;
  EXPECT_EQ(info.value->start.GetTicks(), (36000 * 25 + 5) * zebmediatypes::kFrameRate_25.GetTicksPerFrame());
  EXPECT_FALSE(info.value->dropFrame);
}
TEST_F(MediaFile, TellsADropFrameTimecode) {
  const auto info = ProbeMedia(
      Make("-f lavfi -i testsrc2=s=96x64:r=30000/1001:d=1 " + kCheapVideo + "-timecode '01:00:00;00'", "a.mov"));
  ASSERT_TRUE(info) << info.problem.text;
  EXPECT_TRUE(info.value->dropFrame);
  EXPECT_EQ(info.value->start.GetTicks(), 107892 * zebmediatypes::kFrameRate_2997.GetTicksPerFrame());
}
TEST_F(MediaFile, TellsANonDropTimecodeAtADropRate) {
  const auto info = ProbeMedia(
      Make("-f lavfi -i testsrc2=s=96x64:r=30000/1001:d=1 " + kCheapVideo + "-timecode 01:00:00:00", "a.mov"));
  ASSERT_TRUE(info) << info.problem.text;
  EXPECT_FALSE(info.value->dropFrame);
  EXPECT_EQ(info.value->start.GetTicks(), 108000 * zebmediatypes::kFrameRate_2997.GetTicksPerFrame());
}
TEST_F(MediaFile, TellsAStill) {
  for (const char* name : {"a.png", "a.jpg", "a.bmp", "a.tiff"}) {
    const auto info = ProbeMedia(Make("-f lavfi -i testsrc2=s=96x64:r=25:d=1 -frames:v 1", name));
    ASSERT_TRUE(info) << name << info.problem.text;
    EXPECT_TRUE(info.value->still) << name;
    EXPECT_EQ(info.value->width, 96) << name;
    EXPECT_EQ(info.value->duration, zebmediatypes::kTime_Zero) << name;
  }
}
TEST_F(MediaFile, DoesNotTakeACoverForAPicture) {
  Make("-f lavfi -i testsrc2=s=96x64:d=1 -frames:v 1", "cover.jpg");
  const auto info =
      ProbeMedia(Make(kSound + "-i cover.jpg -map 0 -map 1 -c:v copy -disposition:v attached_pic", "a.mp3"));
  ASSERT_TRUE(info) << info.problem.text;
  EXPECT_EQ(info.value->width, 0);
  EXPECT_EQ(info.value->sampleRate, 48000);
}

TEST_F(MediaFile, ThatDoesNotExistIsNamed) {
  const auto info = ProbeMedia(Path("gone.mp4"));
  EXPECT_FALSE(info);
  EXPECT_TRUE(Says(info.problem.text, "gone.mp4")) << info.problem.text;
  EXPECT_TRUE(Says(info.problem.text, "does not exist")) << info.problem.text;
}
TEST_F(MediaFile, ThatIsAFolderIsSaidToBeOne) {
  std::filesystem::create_directories(Path("clips.mp4"));
  const auto info = ProbeMedia(Path("clips.mp4"));
  EXPECT_TRUE(Says(info.problem.text, "folder")) << info.problem.text;
}
TEST_F(MediaFile, ThatCannotBeReadIsSaidSo) {
  std::filesystem::create_symlink("loop", Path("loop"));
  const auto loop = ProbeMedia(Path("loop"));
  EXPECT_FALSE(loop);
  EXPECT_NE(loop.problem.text, "");
  const auto device = ProbeMedia("/dev/null");
  EXPECT_TRUE(Says(device.problem.text, "cannot be read")) << device.problem.text;
  if (geteuid() != 0) {
    WriteFile("a.mp4", "x");
    std::filesystem::permissions(Path("a.mp4"), std::filesystem::perms::none);
    const auto closed = ProbeMedia(Path("a.mp4"));
    EXPECT_TRUE(Says(closed.problem.text, "cannot be read")) << closed.problem.text;
  }
}
TEST_F(MediaFile, ThatIsEmptyIsSaidToBeEmpty) {
  EXPECT_TRUE(Says(ProbeMedia(WriteFile("a.mp4", "")).problem.text, "empty"));
}
TEST_F(MediaFile, ThatIsNoMediaIsRefused) {
  const std::pair<const char*, std::string> files[] = {
      {"a.mp4", "This is a letter.\n"},
      {"a.txt", "This is a letter.\n"},
      {"a.bin", std::string(100000, '\0')},
      {"zeros.mp4", std::string(5000000, '\0')},
      {"a.ffconcat", "ffconcat version 1.0\nfile /etc/hostname\n"},
      {"a.m3u8", "#EXTM3U\n#EXTINF:1,\n/etc/hostname\n#EXT-X-ENDLIST\n"}};
  for (const auto& [name, bytes] : files) {
    const auto info = ProbeMedia(WriteFile(name, bytes));
    EXPECT_FALSE(info) << name;
    EXPECT_TRUE(Says(info.problem.text, "no media file")) << name << ": " << info.problem.text;
  }
}
TEST_F(MediaFile, OfCaptionsAloneIsSaidToBeOne) {
  const auto info = ProbeMedia(WriteFile("a.srt", "1\n00:00:01,000 --> 00:00:02,000\nTea\n\n"));
  EXPECT_TRUE(Says(info.problem.text, "captions")) << info.problem.text;
}
TEST_F(MediaFile, WithNeitherPictureNorSoundIsRefused) {
  WriteFile("a.srt", "1\n00:00:01,000 --> 00:00:02,000\nTea\n\n");
  const auto info = ProbeMedia(Make("-i a.srt", "words.mkv"));
  EXPECT_TRUE(Says(info.problem.text, "neither picture nor sound")) << info.problem.text;
}
TEST_F(MediaFile, ThatIsCutOffBeforeItsIndexIsSaidToBeCutOff) {
  Make(kPicture + kCheapVideo, "a.mp4");
  const std::string bytes = ReadFile("a.mp4");
  const auto info = ProbeMedia(WriteFile("cut.mp4", bytes.substr(0, bytes.size() / 2)));
  EXPECT_TRUE(Says(info.problem.text, "cut off")) << info.problem.text;
}
TEST_F(MediaFile, ThatIsCutOffBehindItsIndexGivesWhatItHolds) {
  Make("-f lavfi -i testsrc2=s=96x64:r=25:d=20 -movflags +faststart " + kCheapVideo, "a.mp4");
  Make("-i a.mp4 -c copy", "a.mkv");
  for (const std::string name : {"a.mp4", "a.mkv"}) {
    const std::string bytes = ReadFile(name);
    const auto info = ProbeMedia(WriteFile("cut-" + name, bytes.substr(0, bytes.size() / 2)));
    ASSERT_TRUE(info) << name << info.problem.text;
    EXPECT_EQ(info.value->width, 96) << name;
    EXPECT_GT(Seconds(info.value->duration), 4.0) << name;
    EXPECT_LT(Seconds(info.value->duration), 16.0) << name;
  }
}
TEST_F(MediaFile, ThatIsCutOffBeforeItsFirstFrameIsRefused) {
  Make("-f lavfi -i testsrc2=s=96x64:r=25:d=20 -movflags +faststart " + kCheapVideo, "a.mp4");
  const std::string bytes = ReadFile("a.mp4");
  const std::size_t media = bytes.find("mdat");
  ASSERT_NE(media, std::string::npos);
  const auto info = ProbeMedia(WriteFile("cut.mp4", bytes.substr(0, media + 20)));
  EXPECT_FALSE(info);
  EXPECT_TRUE(Says(info.problem.text, "cut off")) << info.problem.text;
}
TEST_F(MediaFile, KnowsTheSampleClip) {
  const auto info = ProbeMedia(std::filesystem::path(CAPTIVO_SOURCE_DIR) / "Samples" / "harbour.mp4");
  ASSERT_TRUE(info) << info.problem.text;
  EXPECT_EQ(info.value->width, 640);
  EXPECT_EQ(info.value->height, 360);
  EXPECT_EQ(info.value->frameRate, zebmediatypes::kFrameRate_25);
  EXPECT_NEAR(Seconds(info.value->duration), 40.0, 0.1);
}
