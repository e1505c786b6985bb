#include "Building.h"

using namespace building;

namespace {

std::string Encode(std::u16string_view text, bool isBig) {
  std::string bytes;
  for (const char16_t c : text) {
    const char high = static_cast<char>(c >> 8);
    const char low = static_cast<char>(c & 0xFF);
    bytes += isBig ? high : low;
    bytes += isBig ? low : high;
  }
  return bytes;
}

const UString kFile = u"1\n00:00:01,000 --> 00:00:02,000\nČaj, прошу – 茶\n";

void ExpectText(const std::string& bytes, const std::string& encoding, const UString& text) {
  const ReadResult result = Formats::ReadSubRip(bytes, kOpen);
  EXPECT_EQ(result.encoding, encoding);
  EXPECT_EQ(Only(result)->text, text);
}

} // namespace

TEST(Encoding, Utf8IsFoundWithoutAMark) {
  ExpectText(zebcore::ToUTF8(kFile), "UTF-8", u"Čaj, прошу – 茶");
}
TEST(Encoding, Utf8IsFoundByItsMarkWhichIsNoText) {
  ExpectText("\xEF\xBB\xBF" + zebcore::ToUTF8(kFile), "UTF-8", u"Čaj, прошу – 茶");
}
TEST(Encoding, Utf16LittleEndianIsFoundByItsMark) {
  ExpectText("\xFF\xFE" + Encode(kFile, false), "UTF-16LE", u"Čaj, прошу – 茶");
}
TEST(Encoding, Utf16BigEndianIsFoundByItsMark) {
  ExpectText("\xFE\xFF" + Encode(kFile, true), "UTF-16BE", u"Čaj, прошу – 茶");
}
TEST(Encoding, Utf16LittleEndianIsFoundWithoutAMark) {
  ExpectText(Encode(kFile, false), "UTF-16LE", u"Čaj, прошу – 茶");
}
TEST(Encoding, Utf16BigEndianIsFoundWithoutAMark) {
  ExpectText(Encode(kFile, true), "UTF-16BE", u"Čaj, прошу – 茶");
}
TEST(Encoding, BytesBetween0x80And0x9FMakeItWindows1252) {
  ExpectText(SubRip("Caf\xE9 \x96 5\x80 \x93ja\x94"), "windows-1252", u"Café – 5€ “ja”");
}
TEST(Encoding, AccentsAloneAreLatin1) {
  ExpectText(SubRip("Caf\xE9 \xFC"), "ISO-8859-1", u"Café ü");
}
TEST(Encoding, PlainASCIIIsUtf8) {
  ExpectText(SubRip("Tea"), "UTF-8", u"Tea");
}
TEST(Encoding, OneDamagedByteDoesNotTurnALongUtf8TextIntoLatin1) {
  ExpectText(SubRip("ääääääääääää \xFF"), "UTF-8", u"ääääääääääää �");
}
TEST(Encoding, ATextInUtf8ThatIsCutInsideACharacterIsStillUtf8) {
  std::string bytes = SubRip("äöüäöüäöüäöü");
  bytes.resize(bytes.size() - 2);
  const ReadResult result = Formats::ReadSubRip(bytes, kOpen);
  EXPECT_EQ(result.encoding, "UTF-8");
}
TEST(Encoding, AZeroInATextBecomesTheReplacementCharacter) {
  const std::string bytes = SubRip("Tea" + std::string(1, '\0') + "time");
  EXPECT_EQ(Only(Formats::ReadSubRip(bytes, kOpen))->text, u"Tea\uFFFDtime");
}
TEST(Encoding, WebVTTIsFoundInUtf16AsWell) {
  const std::string bytes = Encode(u"WEBVTT\n\n00:01.000 --> 00:02.000\n茶\n", false);
  const ReadResult result = Formats::Read(bytes, "a.vtt", kOpen);
  EXPECT_EQ(result.encoding, "UTF-16LE");
  EXPECT_EQ(Only(result)->text, u"茶");
}

TEST(Detection, TheSignatureGoesBeforeTheName) {
  EXPECT_EQ(Formats::Detect(WebVTT("Tea"), "tea.srt"), FileKind::WebVTT);
}
TEST(Detection, TimesMakeAFileWithAnyNameSubRip) {
  EXPECT_EQ(Formats::Detect(SubRip("Tea"), "tea.txt"), FileKind::SubRip);
}
TEST(Detection, TheNameDecidesWhereTheTextLeavesItOpen) {
  EXPECT_EQ(Formats::Detect("hello\n", "TEA.SRT"), FileKind::SubRip);
  EXPECT_EQ(Formats::Detect("hello\n", "tea.vtt"), FileKind::WebVTT);
}
TEST(Detection, AnyOtherTextIsUnknown) {
  EXPECT_EQ(Formats::Detect("hello --> world\n", "tea.txt"), FileKind::Unknown);
  EXPECT_EQ(Formats::Detect("", "tea.srt"), FileKind::Unknown);
}

TEST(BadInput, AnEmptyFileIsSaidToBeEmpty) {
  for (const char* name : {"a.srt", "a.vtt", "a.bin"}) {
    const ReadResult result = Formats::Read("", name, k608);
    EXPECT_TRUE(Says(result.error, "empty")) << name;
    EXPECT_TRUE(result.captions.empty());
  }
  EXPECT_TRUE(Says(Formats::ReadSubRip("", k608).error, "empty"));
  EXPECT_TRUE(Says(Formats::ReadWebVTT("", k608).error, "empty"));
}
TEST(BadInput, TwoHundredMegabytesOfZerosAreRefusedAfterTheFirstLook) {
  const std::string zeros(200U << 20U, '\0');
  const Formats::Progress neverAsked = [](double) {
    ADD_FAILURE() << "read on";
    return true;
  };
  for (const char* name : {"a.srt", "a.vtt", "a"}) {
    const ReadResult result = Formats::Read(zeros, name, k608, neverAsked);
    EXPECT_NE(result.error, "") << name;
    EXPECT_EQ(result.encoding, "") << name; // never decoded
  }
  EXPECT_NE(Formats::ReadSubRip(zeros, k608, neverAsked).error, "");
  EXPECT_NE(Formats::ReadWebVTT(zeros, k608, neverAsked).error, "");
}
TEST(BadInput, ATextWithoutTimesIsNoSubRipFile) {
  const ReadResult result = Formats::Read("Dear diary,\n\ntoday --> tomorrow.\n", "diary.srt", k608);
  EXPECT_TRUE(Says(result.error, "no SubRip file"));
  EXPECT_TRUE(result.captions.empty());
  EXPECT_TRUE(result.problems.empty());
}
TEST(BadInput, AWebVTTFileWithoutItsSignatureIsRefused) {
  for (const char* head : {"vtt", "WEBVTTX", " WEBVTT", "webvtt"}) {
    const ReadResult result = Formats::Read(std::string(head) + "\n\n00:01.000 --> 00:02.000\nTea\n", "a.vtt", k608);
    EXPECT_TRUE(Says(result.error, "no WebVTT file")) << head;
  }
}
TEST(BadInput, AnUnknownFileIsToldWhichKindsCanBeRead) {
  EXPECT_TRUE(Says(Formats::Read("\x7F"
                                 "ELF\x02\x01\x01",
                                 "program", k608)
                       .error,
                   ".srt"));
}
