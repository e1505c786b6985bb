// Import and export by the settings of the project.

#include <cstdlib>

#include "App/session/Exports.h"
#include "BE/CaptionsSettings.h"
#include "Support.h"

namespace AppTest {

namespace {

std::vector<std::string> Texts(const InterfaceRef<BE::CaptioningStream>& stream) {
  std::vector<boost::intrusive_ptr<zebcaptioning::Caption>> captions;
  stream->GetCaptions(captions);
  std::vector<std::string> texts;
  for (const auto& caption : captions)
    texts.push_back(zebcore::ToUTF8(caption->GetState()->text));
  return texts;
}

} // namespace

class CaptionsSettingsTest : public SessionTest {
 protected:
  void SetExport(const BE::CaptionsExportSettings& settings) { BE::SetCaptionsExportSettings(*project(), settings); }
  InterfaceRef<BE::CaptioningStream> Import() {
    const auto report = session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1);
    EXPECT_TRUE(report);
    return report ? report.value->stream : nullptr;
  }
};

TEST_F(CaptionsSettingsTest, ImportTreatsCaptionsAsTheProjectHasIt) {
  BE::CaptionsImportSettings settings;
  settings.longLines = BE::LongLines::Wrap;
  settings.lineLength = 12;
  settings.offset = zebmediatypes::TickTimeFromSeconds(10);
  BE::SetCaptionsImportSettings(*project(), settings);
  const auto report = session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1);
  ASSERT_TRUE(report);
  EXPECT_EQ(Texts(report.value->stream), (std::vector<std::string>{"The harbour\nwakes.", "A gull\ncalls."}));
  ASSERT_EQ(report.value->problems.size(), 1U);
  ASSERT_TRUE(session().ExportCaptions(report.value->stream, folder / "out.srt", Formats::FileKind::SubRip));
  EXPECT_NE(ReadFile(folder / "out.srt").find("00:00:11,000 --> 00:00:12,000"), std::string::npos);
}

TEST_F(CaptionsSettingsTest, TracksInsideMediaAreTreatedButKeepTheTimesOfTheMedia) {
  folder.Write("track.srt", kTwoCaptions);
  const std::string command = "cd '" + folder.GetPath().string() +
                              "' && ffmpeg -nostdin -v error -y -f lavfi -i color=size=64x36:rate=25:duration=5 -i "
                              "track.srt -c:s srt clip.mkv";
  ASSERT_EQ(std::system(command.c_str()), 0);
  BE::CaptionsImportSettings settings;
  settings.longLines = BE::LongLines::Wrap;
  settings.lineLength = 12;
  settings.offset = zebmediatypes::TickTimeFromSeconds(10);
  BE::SetCaptionsImportSettings(*project(), settings);
  const auto media = session().ImportMedia(folder / "clip.mkv");
  ASSERT_TRUE(media);
  const auto streams = (*media.value)->GetStreams();
  ASSERT_EQ(streams.size(), 1U);
  EXPECT_EQ(Texts(streams[0]), (std::vector<std::string>{"The harbour\nwakes.", "A gull\ncalls."}));
  ASSERT_TRUE(session().ExportCaptions(streams[0], folder / "out.srt", Formats::FileKind::SubRip));
  EXPECT_NE(ReadFile(folder / "out.srt").find("00:00:01,000 --> 00:00:02,000"), std::string::npos);
}

TEST_F(CaptionsSettingsTest, FramesAreCountedAtTheRateOfTheClipUnlessTheSettingsSayAnother) {
  const auto path = folder.Write("frames.srt", "1\n00:00:01:10 --> 00:00:02:00\nOne\n");
  const auto exported = [&] {
    const auto report = session().ImportCaptions(clip, path, cc1);
    EXPECT_TRUE(report);
    EXPECT_TRUE(session().ExportCaptions(report.value->stream, folder / "out.srt", Formats::FileKind::SubRip));
    return ReadFile(folder / "out.srt");
  };
  EXPECT_NE(exported().find("00:00:01,400 --> "), std::string::npos);
  BE::CaptionsImportSettings settings;
  settings.frameRate = zebmediatypes::kFrameRate_50;
  BE::SetCaptionsImportSettings(*project(), settings);
  EXPECT_NE(exported().find("00:00:01,200 --> "), std::string::npos);
}

TEST_F(CaptionsSettingsTest, ExportWritesTimesAndEncodingAsTheProjectHasIt) {
  BE::CaptionsExportSettings settings;
  settings.startTimecode = zebmediatypes::TickTimeFromSeconds(3600);
  settings.encoding = BE::TextEncoding::UTF8WithMark;
  SetExport(settings);
  ASSERT_TRUE(session().ExportCaptions(Import(), folder / "out.srt", Formats::FileKind::SubRip));
  EXPECT_TRUE(ReadFile(folder / "out.srt")
                  .starts_with("\xEF\xBB\xBF"
                               "1\n01:00:01,000 --> 01:00:02,000\n"));
}

TEST_F(CaptionsSettingsTest, TheStreamOnShowIsExportedUnderTheNameGiven) {
  const auto first = Import();
  const auto second = Import();
  const auto reports = session().ExportBySettings(clip, second, folder / "out.srt", Formats::FileKind::SubRip);
  ASSERT_TRUE(reports);
  ASSERT_EQ(reports.value->size(), 1U);
  EXPECT_EQ(reports.value->front().stream, second);
  EXPECT_EQ(reports.value->front().path, folder / "out.srt");
}

TEST_F(CaptionsSettingsTest, OneStreamIsExportedWhicheverIsOnShow) {
  const auto first = Import();
  const auto second = Import();
  BE::CaptionsExportSettings settings;
  settings.streams = BE::ExportedStreams::One;
  settings.stream = first->GetStreamFormat();
  SetExport(settings);
  const auto reports = session().ExportBySettings(clip, second, folder / "out.srt", Formats::FileKind::SubRip);
  ASSERT_TRUE(reports);
  EXPECT_EQ(reports.value->front().stream, first);
}

TEST_F(CaptionsSettingsTest, AStreamThatTheClipDoesNotHoldIsNamed) {
  BE::CaptionsExportSettings settings;
  settings.streams = BE::ExportedStreams::One;
  settings.stream = App::GetStreamFormat("teletext", 1);
  SetExport(settings);
  const auto reports = session().ExportBySettings(clip, Import(), folder / "out.srt", Formats::FileKind::SubRip);
  ASSERT_FALSE(reports);
  EXPECT_NE(reports.problem.text.find("has no stream"), std::string::npos);
  EXPECT_FALSE(fs::exists(folder / "out.srt"));
}

TEST_F(CaptionsSettingsTest, AllStreamsAreExportedToAFileEach) {
  const auto first = Import();
  Import();
  BE::CaptionsExportSettings settings;
  settings.streams = BE::ExportedStreams::All;
  SetExport(settings);
  const auto reports = session().ExportBySettings(clip, first, folder / "out.srt", Formats::FileKind::SubRip);
  ASSERT_TRUE(reports);
  ASSERT_EQ(reports.value->size(), 2U);
  EXPECT_NE((*reports.value)[0].path, (*reports.value)[1].path);
  for (const auto& report : *reports.value) {
    EXPECT_TRUE(report.path.filename().string().starts_with("out.")) << report.path;
    EXPECT_EQ(report.path.extension(), ".srt");
    EXPECT_NE(ReadFile(report.path).find("The harbour wakes."), std::string::npos);
  }
  EXPECT_FALSE(fs::exists(folder / "out.srt"));
}

TEST_F(CaptionsSettingsTest, TheOnlyStreamOfAllKeepsTheNameGiven) {
  const auto only = Import();
  BE::CaptionsExportSettings settings;
  settings.streams = BE::ExportedStreams::All;
  SetExport(settings);
  ASSERT_TRUE(session().ExportBySettings(clip, only, folder / "out.srt", Formats::FileKind::SubRip));
  EXPECT_TRUE(fs::exists(folder / "out.srt"));
}

TEST_F(CaptionsSettingsTest, AnExportThatIsStoppedWritesNoFile) {
  const auto first = Import();
  Import();
  BE::CaptionsExportSettings settings;
  settings.streams = BE::ExportedStreams::All;
  SetExport(settings);
  const auto reports = session().ExportBySettings(clip, first, folder / "out.srt", Formats::FileKind::SubRip,
                                                  [](double, const std::string&) { return false; });
  EXPECT_FALSE(reports);
  const auto count = std::distance(fs::directory_iterator(folder.GetPath()), fs::directory_iterator());
  EXPECT_FALSE(session().ExportBySettings(clip, first, folder / "out.srt", Formats::FileKind::SubRip,
                                          [](double, const std::string&) { return false; }));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.GetPath()), fs::directory_iterator()), count);
  for (const auto& entry : fs::directory_iterator(folder.GetPath()))
    EXPECT_FALSE(entry.path().filename().string().starts_with("out")) << entry.path();
}

TEST_F(CaptionsSettingsTest, TheNameToBeginWithHoldsTheLanguage) {
  BE::CaptionsExportSettings settings;
  EXPECT_EQ(App::SuggestExportName("Harbour", settings), "Harbour");
  settings.language = "pt-BR";
  EXPECT_EQ(App::SuggestExportName("Harbour", settings), "Harbour.pt-BR");
}

TEST_F(CaptionsSettingsTest, ProblemsOfSeveralFilesAreToldWithTheirNames) {
  const auto [names, problems] = App::JoinReports({{"a/one.srt", nullptr, {{3, "Bad."}}}, {"a/two.srt", nullptr, {}}});
  EXPECT_EQ(names, "one.srt, two.srt");
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].reason, "one.srt: Bad.");
  EXPECT_EQ(App::JoinReports({{"a/one.srt", nullptr, {{3, "Bad."}}}}).second[0].reason, "Bad.");
}

} // namespace AppTest
