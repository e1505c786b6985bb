#include <gtest/gtest.h>

#include "Building.h"
#include "Formats/Delivery.h"

using namespace building;
using namespace Formats;

namespace {

BE::CaptionsExportSettings Settings(BE::TextEncoding encoding) {
  BE::CaptionsExportSettings settings;
  settings.encoding = encoding;
  return settings;
}

WriteResult Written(const UString& text, const BE::CaptionsExportSettings& settings, FileKind kind = FileKind::SubRip) {
  return WriteFile(kind, {Caption(1000, 2000, text)}, kOpen, settings);
}

} // namespace

TEST(WriteFile, SettingsAsTheyComeWriteWhatTheWriterWrites) {
  EXPECT_EQ(Written(u"Grün", {}).bytes, Write(FileKind::SubRip, {Caption(1000, 2000, u"Grün")}, kOpen).bytes);
}

TEST(WriteFile, EachEncodingIsReadBackAsItself) {
  const UString text = u"Grün – „café“";
  const std::vector<std::pair<BE::TextEncoding, std::string>> kNames{{BE::TextEncoding::UTF8, "UTF-8"},
                                                                     {BE::TextEncoding::UTF8WithMark, "UTF-8"},
                                                                     {BE::TextEncoding::UTF16, "UTF-16LE"},
                                                                     {BE::TextEncoding::Windows1252, "windows-1252"}};
  for (const auto& [encoding, name] : kNames) {
    const WriteResult written = Written(text, Settings(encoding));
    EXPECT_TRUE(written.problems.empty());
    const ReadResult read = ReadSubRip(written.bytes, kOpen);
    EXPECT_EQ(read.encoding, name);
    EXPECT_EQ(Only(read)->text, text);
  }
}

TEST(WriteFile, ByteOrderMarksAreThoseOfTheirEncodings) {
  EXPECT_TRUE(Written(u"One", Settings(BE::TextEncoding::UTF8WithMark))
                  .bytes.starts_with("\xEF\xBB\xBF"
                                     "1\n"));
  EXPECT_TRUE(Written(u"One", Settings(BE::TextEncoding::UTF16))
                  .bytes.starts_with(std::string("\xFF\xFE"
                                                 "1\0\n\0",
                                                 6)));
}

TEST(WriteFile, ACharacterOutsideTheBasicPlaneIsTwoUnitsOfUTF16) {
  const WriteResult written = Written(u"\U0001F600", Settings(BE::TextEncoding::UTF16));
  EXPECT_NE(written.bytes.find(std::string("\x3D\xD8\x00\xDE", 4)), std::string::npos);
  EXPECT_EQ(Only(ReadSubRip(written.bytes, kOpen))->text, u"\U0001F600");
}

TEST(WriteFile, EveryCharacterOfWindows1252HasItsByte) {
  UString text;
  std::string bytes;
  for (char16_t c = 0xA0; c <= 0xFF; ++c) {
    text += c;
    bytes += static_cast<char>(c);
  }
  const UString upper = u"€‚ƒ„…†‡ˆ‰Š‹ŒŽ‘’“”•–—˜™š›œžŸ";
  text += upper;
  bytes +=
      "\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F";
  const WriteResult written = Written(text, Settings(BE::TextEncoding::Windows1252));
  EXPECT_TRUE(written.problems.empty());
  EXPECT_NE(written.bytes.find(bytes), std::string::npos);
}

TEST(WriteFile, EachCharacterThatWindows1252LacksIsToldOnceWithItsFirstLine) {
  const WriteResult written = Written(u"♪ Hello\n♪ \U0001F600", Settings(BE::TextEncoding::Windows1252));
  EXPECT_NE(written.bytes.find("? Hello\n? ?"), std::string::npos);
  ASSERT_EQ(written.problems.size(), 2U);
  EXPECT_EQ(written.problems[0].line, 3);
  EXPECT_TRUE(Says(written.problems[0].reason, "♪"));
  EXPECT_TRUE(Says(written.problems[0].reason, "U+266A"));
  EXPECT_TRUE(Says(written.problems[0].reason, "2"));
  EXPECT_EQ(written.problems[1].line, 4);
  EXPECT_TRUE(Says(written.problems[1].reason, "U+1F600"));
}

TEST(WriteFile, WebVTTInAnotherEncodingThanItsOwnIsTold) {
  EXPECT_TRUE(Written(u"One", Settings(BE::TextEncoding::UTF8WithMark), FileKind::WebVTT).problems.empty());
  EXPECT_EQ(Written(u"One", Settings(BE::TextEncoding::UTF16), FileKind::WebVTT).problems.size(), 1U);
}

TEST(WriteFile, TheLanguageStandsInTheHeadOfWebVTTAndNowhereInSubRip) {
  BE::CaptionsExportSettings settings;
  settings.language = "pt-BR";
  const WriteResult written = Written(u"One", settings, FileKind::WebVTT);
  EXPECT_TRUE(written.bytes.starts_with("WEBVTT\nLanguage: pt-BR\n\n00:00:01.000 --> "));
  EXPECT_EQ(Only(ReadWebVTT(written.bytes, kOpen))->text, u"One");
  EXPECT_EQ(Written(u"One", settings).bytes, Written(u"One", {}).bytes);
}

TEST(WriteFile, LinesOfProblemsAreThoseBelowTheHeadWithALanguage) {
  BE::CaptionsExportSettings settings;
  const auto caption = Caption(1000, 2000, u"One");
  caption->paragraph.lineSpacing = 10;
  const auto line = [&] { return WriteFile(FileKind::WebVTT, {caption}, kOpen, settings).problems.at(0).line; };
  EXPECT_EQ(line(), 3);
  settings.language = "en";
  EXPECT_EQ(line(), 4);
}

TEST(WriteFile, TheStartTimecodeIsTheTimeOfTheFirstFrame) {
  BE::CaptionsExportSettings settings;
  settings.startTimecode = Ms(3600000);
  EXPECT_NE(Written(u"One", settings).bytes.find("01:00:01,000 --> 01:00:02,000"), std::string::npos);
}

TEST(RetimeForFile, WithoutARateTimesStayToTheTick) {
  const auto caption = Caption(0, 0, u"One");
  caption->begin = TickTime(12345);
  caption->end = TickTime(67890);
  EXPECT_EQ(RetimeForFile({caption}, {})[0], caption);
}

TEST(RetimeForFile, TimesArePutOnTheNearestFrame) {
  BE::CaptionsExportSettings settings;
  settings.frameRate = zebmediatypes::kFrameRate_25;
  const auto retimed = RetimeForFile({Caption(1019, 2021, u"One"), Caption(2021, 2025, u"Two")}, settings);
  EXPECT_EQ(retimed[0]->begin, Ms(1000));
  EXPECT_EQ(retimed[0]->end, Ms(2040));
  EXPECT_EQ(retimed[1]->begin, Ms(2040));
  // Both ends fall on one frame: it is on show for that one.
  EXPECT_EQ(retimed[1]->end, Ms(2080));
}

TEST(RetimeForFile, DropFrameDoesNotChangeRealTime) {
  BE::CaptionsExportSettings settings;
  settings.frameRate = zebmediatypes::kFrameRate_2997;
  const std::vector<CaptionStatePtr> captions{Caption(61000, 62000, u"One")};
  const auto counted = RetimeForFile(captions, settings);
  settings.dropFrame = true;
  EXPECT_EQ(*RetimeForFile(captions, settings)[0], *counted[0]);
}

TEST(RetimeForFile, IsDoneOnceHoweverOftenItIsDone) {
  BE::CaptionsExportSettings settings;
  settings.frameRate = zebmediatypes::kFrameRate_23976;
  const auto once = RetimeForFile({Caption(-777, 1234, u"One")}, settings);
  EXPECT_EQ(*RetimeForFile(once, settings)[0], *once[0]);
}
