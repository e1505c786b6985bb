#include <gmock/gmock.h>

#include <QColor>
#include <QImage>

#include <string>
#include <utility>
#include <vector>

#include "App/monitor/CaptionsOnShow.h"
#include "App/monitor/ScreenPainter.h"
#include "Support.h"
#include "WindowSupport.h"
#include "zebcaptioning/Spans.h"
#include "zebcaptioning/StreamNumbers.h"

// What a decoder has on its screen, and what that looks like.
namespace AppTest {

using App::monitor::CaptionOnShow;
using App::monitor::CaptionScreen;
using App::monitor::LayOutScreen;
using App::monitor::MeasureScreen;
using App::monitor::PaintScreen;
using zebcaptioning::CaptionStatePtr;
using zebcaptioning::ParagraphStyleAttributes;
using zebcaptioning::StreamFormat;
using zebcaptioning::TextSpanAttributes;
using zebmediatypes::TickTime;

namespace {

constexpr QSize kPicture(1920, 1080);
const QColor kBehind(60, 110, 90);

using Runs = std::vector<std::pair<std::uint32_t, TextSpanAttributes>>;

struct At {
  int x = 0;
  int y = 0;
  int anchor = 9;
  ParagraphStyleAttributes::TextAlignmentType alignment = ParagraphStyleAttributes::kTextAlignment_Left;
  zebcaptioning::CaptionType type = zebcaptioning::kCaptionType_PopOn;
};

CaptionStatePtr Caption(const zebcore::UString& text, const At& at, const Runs& runs = {}) {
  ParagraphStyleAttributes paragraph;
  paragraph.x = at.x;
  paragraph.y = at.y;
  paragraph.anchor = at.anchor;
  paragraph.alignment = at.alignment;
  paragraph.captionType = at.type;
  std::vector<zebcaptioning::TextRun> shared;
  for (const auto& [start, look] : runs)
    shared.push_back({start, zebcaptioning::Share(look)});
  return zebcaptioning::MakeCaptionState(TickTime(0), TickTime(10), text, shared, paragraph);
}

CaptionScreen Screen(const char* family, const std::vector<CaptionOnShow>& captions, int columns = 0) {
  NeedApplication();
  return LayOutScreen(captions, zebcaptioning::GetStreamFormat(family, 1), columns, 0);
}
CaptionScreen Screen(const char* family, const CaptionStatePtr& caption) {
  return Screen(family, {{caption, {}, {}}});
}

CaptionScreen Empty(const char* family, int columns = 0) {
  return Screen(family, std::vector<CaptionOnShow>(), columns);
}

// A row from the cell before its first to the one behind its last: dots where nothing is boxed.
std::string Row(const CaptionScreen& screen, int row) {
  std::string text;
  for (int column = -1; column <= screen.GetColumns(); ++column) {
    const auto& cell = screen.At(row, column);
    text += !cell.text.empty() ? zebcore::ToUTF8(cell.text) : cell.isBoxed ? "_" : ".";
  }
  return text;
}
std::string Dots(int count) {
  return std::string(static_cast<std::size_t>(count), '.');
}
bool IsRowEmpty(const CaptionScreen& screen, int row) {
  return Row(screen, row) == Dots(screen.GetColumns() + 2);
}

TextSpanAttributes Colored(float red, float green, float blue) {
  TextSpanAttributes look;
  look.textColor = {red, green, blue, 1.0F};
  return look;
}
TextSpanAttributes DoubleHeight() {
  TextSpanAttributes look;
  look.size = zebcaptioning::kFontSize_Double;
  return look;
}

// How many pixels of a cell are of a colour.
int Count(const QImage& image, const QRectF& cell, const QColor& color) {
  int count = 0;
  const QRect area = cell.toRect();
  for (int y = area.top(); y <= area.bottom(); ++y)
    for (int x = area.left(); x <= area.right(); ++x)
      count += image.valid(x, y) && QColor(image.pixel(x, y)) == color;
  return count;
}

QRectF Whole() {
  return QRectF(QPointF(), QSizeF(kPicture));
}

} // namespace

TEST(DecoderScreen, BoxesARowWithASpaceBeforeAndBehindIt) {
  const CaptionScreen screen = Screen("cea608", Caption(u"Hello you", {4, 12}));
  EXPECT_EQ(Row(screen, 12), Dots(4) + "_Hello_you_" + Dots(32 + 2 - 15));
  EXPECT_TRUE(IsRowEmpty(screen, 11));
  EXPECT_TRUE(IsRowEmpty(screen, 13));
}

TEST(DecoderScreen, BoxesEachRowByItsOwnLengthAndLeavesEmptyLinesOut) {
  const CaptionScreen screen = Screen("cea608", Caption(u"ab\n\nabcd", {0, 2}));
  EXPECT_EQ(Row(screen, 2), "_ab_" + Dots(30));
  EXPECT_TRUE(IsRowEmpty(screen, 3));
  EXPECT_EQ(Row(screen, 4), "_abcd_" + Dots(28));
}

TEST(DecoderScreen, AlignsTheRowsOfABlockToEachOther) {
  const At right{2, 0, 9, ParagraphStyleAttributes::kTextAlignment_Right};
  const CaptionScreen screen = Screen("cea608", Caption(u"abcdef\nab", right));
  EXPECT_EQ(Row(screen, 0), ".._abcdef_" + Dots(24)) << "the block stands at its column";
  EXPECT_EQ(screen.At(1, 6).text, u"a");
  const At centre{2, 0, 9, ParagraphStyleAttributes::kTextAlignment_Center};
  EXPECT_EQ(Screen("cea608", Caption(u"abcdef\nab", centre)).At(1, 4).text, u"a");
}

TEST(DecoderScreen, PutsAnAnchoredCaptionIntoItsCell) {
  EXPECT_EQ(Screen("cea608", Caption(u"ab", {9, 9, 0})).At(0, 0).text, u"a");
  EXPECT_EQ(Screen("cea608", Caption(u"ab", {9, 9, 4})).At(7, 15).text, u"a");
  EXPECT_EQ(Screen("cea608", Caption(u"ab", {9, 9, 8})).At(14, 30).text, u"a");
  EXPECT_EQ(Screen("teletext", Caption(u"ab", {9, 9, 0})).At(1, 0).text, u"a") << "row 0 is the page's header";
}

TEST(DecoderScreen, MovesACaptionInThatReachesBeyondTheScreen) {
  const CaptionScreen screen = Screen("cea608", Caption(u"abcd\nef", {30, 14}));
  EXPECT_EQ(screen.At(13, 28).text, u"a");
  EXPECT_EQ(screen.At(14, 28).text, u"e");
  EXPECT_EQ(screen.CountLost(), 0u);
}

TEST(DecoderScreen, CountsTheCharactersForWhichThereIsNoRoom) {
  const CaptionScreen screen = Screen("cea608", Caption(zebcore::UString(35, u'x'), {0, 3}));
  EXPECT_EQ(Row(screen, 3), "_" + std::string(32, 'x') + "_");
  EXPECT_EQ(screen.CountLost(), 3u);
}

TEST(DecoderScreen, PlacesACaptionWithinItsRegion) {
  zebcaptioning::CaptionRegions::Region region;
  region.area = {50.0F, 0.0F, 50.0F, 40.0F};
  const CaptionScreen placed = Screen("cea608", {{Caption(u"ab", {1, 2}), {}, region}});
  EXPECT_EQ(placed.At(2, 17).text, u"a");
  const CaptionScreen anchored = Screen("cea608", {{Caption(u"ab", {0, 0, 6}), {}, region}});
  EXPECT_EQ(anchored.At(5, 16).text, u"a");
}

TEST(DecoderScreen, HasTheRowsAndColumnsOfItsFormat) {
  EXPECT_EQ(Empty("cea708", 42).GetColumns(), 42);
  EXPECT_EQ(Empty("cea708", 32).GetColumns(), 32);
  EXPECT_EQ(Empty("teletext").GetColumns(), 40);
  EXPECT_EQ(Empty("ebu_n19").GetRows(), 23);
  EXPECT_EQ(Empty("australian").GetTop(), 1);
  EXPECT_EQ(Screen("open", Caption(u"ab", {})).GetRows(), 0) << "open captions have no cells";
}

TEST(DecoderScreen, GivesACharacterWithItsMarksOneCell) {
  const CaptionScreen screen = Screen("cea708", Caption(u"e\u0301\U0001F600x", {0, 0}));
  EXPECT_EQ(screen.At(0, 0).text, u"e\u0301");
  EXPECT_EQ(screen.At(0, 1).text, u"\U0001F600");
  EXPECT_EQ(screen.At(0, 2).text, u"x");
}

TEST(DecoderScreen, FillsTheCellsOfARightToLeftTextFromItsEnd) {
  const CaptionScreen screen = Screen("ebu_n19", Caption(u"\u05D0\u05D1\u05D2", {0, 0}));
  EXPECT_EQ(screen.At(0, 0).text, u"\u05D2");
  EXPECT_EQ(screen.At(0, 2).text, u"\u05D0");
}

TEST(DecoderScreen, ShowsALaterCaptionOverAnEarlierOne) {
  const CaptionScreen screen =
      Screen("cea608",
             {{Caption(u"aaaa", {0, 5}), {}, {}}, {Caption(u"bb", {1, 5}), {}, {}}, {Caption(u"c", {9, 0}), {}, {}}});
  EXPECT_EQ(Row(screen, 5), "_abba_" + Dots(28));
  EXPECT_EQ(screen.At(0, 9).text, u"c");
}

TEST(DecoderScreen, GivesDoubleHeightTwoRowsInTeletextButNotInCEA608) {
  const CaptionScreen screen = Screen("teletext", Caption(u"ab\ncd", {3, 10}, {{0, DoubleHeight()}}));
  EXPECT_TRUE(screen.At(10, 3).isDouble);
  EXPECT_EQ(Row(screen, 10), "..._ab_" + Dots(35));
  EXPECT_EQ(Row(screen, 11), "...____" + Dots(35)) << "the box is as tall as the characters";
  EXPECT_EQ(screen.At(12, 3).text, u"c");
  EXPECT_FALSE(Screen("cea608", Caption(u"ab", {3, 10}, {{0, DoubleHeight()}})).At(10, 3).isDouble);
}

TEST(DecoderScreen, LeavesRoomForDoubleHeightAboveTheLastRow) {
  const CaptionScreen screen = Screen("teletext", Caption(u"ab", {0, 23}, {{0, DoubleHeight()}}));
  EXPECT_EQ(screen.At(22, 0).text, u"a");
}

TEST(DecoderScreen, RollsAsManyRowsUpAsTheTypeSaysFromTheBaseRow) {
  const auto lines = [](zebcaptioning::CaptionType type) {
    const At at{0, 14, 9, ParagraphStyleAttributes::kTextAlignment_Left, type};
    CaptionOnShow shown{Caption(u"d", at), {Caption(u"a", at), Caption(u"b", at), Caption(u"c", at)}, {}};
    const CaptionScreen screen = Screen("cea608", {shown});
    std::string text;
    for (int row = 11; row < 15; ++row)
      text += screen.At(row, 0).text.empty() ? "-" : zebcore::ToUTF8(screen.At(row, 0).text);
    return text;
  };
  EXPECT_EQ(lines(zebcaptioning::kCaptionType_RollUp2), "--cd");
  EXPECT_EQ(lines(zebcaptioning::kCaptionType_RollUp3), "-bcd");
  EXPECT_EQ(lines(zebcaptioning::kCaptionType_RollUp4), "abcd");
}

TEST(DecoderScreen, ShowsOfALongRollUpCaptionItsLastRows) {
  const At at{0, 10, 9, ParagraphStyleAttributes::kTextAlignment_Left, zebcaptioning::kCaptionType_RollUp2};
  const CaptionScreen screen = Screen("cea608", Caption(u"a\nb\nc", at));
  EXPECT_TRUE(IsRowEmpty(screen, 10));
  EXPECT_EQ(screen.At(11, 0).text, u"b");
  EXPECT_EQ(screen.At(12, 0).text, u"c");
}

TEST(DecoderScreen, LowersABaseRowThatHasNoRoomForItsRows) {
  const At at{0, 0, 9, ParagraphStyleAttributes::kTextAlignment_Left, zebcaptioning::kCaptionType_RollUp3};
  EXPECT_EQ(Screen("cea608", Caption(u"a", at)).At(2, 0).text, u"a");
}

// --- Drawn

TEST(DecoderPicture, FillsBoxedCellsWithTheirBackgroundAndLeavesTheRest) {
  TextSpanAttributes look;
  look.backgroundColor = {0.0F, 0.0F, 1.0F, 1.0F};
  const CaptionScreen screen = Screen("cea608", Caption(u"a a", {4, 6}, {{0, look}}));
  const QImage image = PaintScreen(screen, kPicture, kBehind);
  const auto geometry = MeasureScreen(screen, Whole());
  for (const int column : {3, 5, 7}) {
    const QRectF cell = geometry.GetCell(6, column);
    EXPECT_EQ(Count(image, cell, Qt::blue), cell.width() * cell.height()) << column;
  }
  EXPECT_EQ(Count(image, geometry.GetCell(6, 2), Qt::blue), 0);
  EXPECT_EQ(Count(image, geometry.GetCell(5, 4), Qt::blue), 0);
}

TEST(DecoderPicture, LetsThePictureThroughAHalfTransparentBoxAndATransparentOne) {
  TextSpanAttributes half;
  half.backgroundColor.alpha = zebcaptioning::kOpacity_Half;
  TextSpanAttributes none;
  none.backgroundColor.alpha = zebcaptioning::kOpacity_Transparent;
  const CaptionScreen screen = Screen(
      "cea608", {{Caption(u"a a", {0, 0}, {{0, half}}), {}, {}}, {Caption(u"a a", {0, 5}, {{0, none}}), {}, {}}});
  const QImage image = PaintScreen(screen, kPicture, kBehind);
  const auto geometry = MeasureScreen(screen, Whole());
  const QColor dimmed(image.pixel(geometry.GetCell(0, 1).center().toPoint()));
  EXPECT_NEAR(dimmed.green(), kBehind.green() / 2, 2);
  EXPECT_EQ(QColor(image.pixel(geometry.GetCell(5, 1).center().toPoint())), kBehind);
}

TEST(DecoderPicture, DrawsEachRunInItsColour) {
  const CaptionScreen screen = Screen("cea608", Caption(u"MM", {0, 0}, {{0, Colored(1, 1, 0)}, {1, Colored(0, 1, 1)}}));
  const QImage image = PaintScreen(screen, kPicture, kBehind);
  const auto geometry = MeasureScreen(screen, Whole());
  EXPECT_GT(Count(image, geometry.GetCell(0, 0), Qt::yellow), 20);
  EXPECT_EQ(Count(image, geometry.GetCell(0, 0), Qt::cyan), 0);
  EXPECT_GT(Count(image, geometry.GetCell(0, 1), Qt::cyan), 20);
}

TEST(DecoderPicture, UnderlinesTextAndItsSpacesButNotTheMarginsOfTheBox) {
  TextSpanAttributes look;
  look.underline = true;
  const CaptionScreen screen = Screen("cea608", Caption(u"a a", {4, 0}, {{0, look}}));
  const QImage image = PaintScreen(screen, kPicture, kBehind);
  const auto geometry = MeasureScreen(screen, Whole());
  EXPECT_GE(Count(image, geometry.GetCell(0, 5), Qt::white), static_cast<int>(geometry.GetCell(0, 5).width()));
  EXPECT_EQ(Count(image, geometry.GetCell(0, 3), Qt::white), 0);
  EXPECT_EQ(Count(image, geometry.GetCell(0, 7), Qt::white), 0);
}

TEST(DecoderPicture, StretchesDoubleHeightOverBothRows) {
  const CaptionScreen plain = Screen("teletext", Caption(u"H", {3, 10}));
  const CaptionScreen tall = Screen("teletext", Caption(u"H", {3, 10}, {{0, DoubleHeight()}}));
  const auto geometry = MeasureScreen(plain, Whole());
  EXPECT_EQ(Count(PaintScreen(plain, kPicture, kBehind), geometry.GetCell(11, 3), Qt::white), 0);
  const QImage image = PaintScreen(tall, kPicture, kBehind);
  EXPECT_GT(Count(image, geometry.GetCell(10, 3), Qt::white), 10);
  EXPECT_GT(Count(image, geometry.GetCell(11, 3), Qt::white), 10);
}

TEST(DecoderPicture, LeansItalics) {
  TextSpanAttributes italic;
  italic.italic = true;
  EXPECT_NE(PaintScreen(Screen("cea608", Caption(u"H", {3, 3}, {{0, italic}})), kPicture, kBehind),
            PaintScreen(Screen("cea608", Caption(u"H", {3, 3})), kPicture, kBehind));
}

TEST(DecoderPicture, DrawsAnEdgeAroundLettersOfCEA708) {
  TextSpanAttributes look;
  look.edgeColor = {1.0F, 0.0F, 0.0F, 1.0F};
  look.edgeWidth = 2.0F;
  const CaptionScreen screen = Screen("cea708", Caption(u"H", {3, 3}, {{0, look}}));
  EXPECT_GT(Count(PaintScreen(screen, kPicture, kBehind), MeasureScreen(screen, Whole()).GetCell(3, 3), Qt::red), 20);
}

TEST(DecoderPicture, KeepsCEA608InTheMiddleOfAWidePictureAndFillsA4To3One) {
  const CaptionScreen screen = Empty("cea608");
  const auto wide = MeasureScreen(screen, QRectF(0, 0, 1600, 900));
  EXPECT_NEAR(wide.area.width(), 1200 * 0.8, 0.01);
  EXPECT_NEAR(wide.area.center().x(), 800, 0.01);
  EXPECT_NEAR(wide.area.height(), 720, 0.01);
  EXPECT_NEAR(MeasureScreen(screen, QRectF(0, 0, 1200, 900)).area.width(), 960, 0.01);
  EXPECT_NEAR(MeasureScreen(Empty("cea708", 42), QRectF(0, 0, 1600, 900)).area.width(), 1280, 0.01);
}

TEST(DecoderPicture, PutsTheFirstRowOfEBUN19WhereTeletextHasItsRowOne) {
  const auto page = MeasureScreen(Empty("teletext"), Whole());
  const auto file = MeasureScreen(Empty("ebu_n19"), Whole());
  EXPECT_EQ(file.GetCell(0, 0), page.GetCell(1, 0));
  EXPECT_EQ(file.GetCell(22, 39), page.GetCell(23, 39));
}

// --- Out of a stream

class StreamOnScreen : public SessionTest {
 protected:
  InterfaceRef<BE::CaptioningStream> Import(const char* text) {
    auto report = session().ImportCaptions(clip, folder.Write("captions.srt", text), cc1);
    EXPECT_TRUE(report) << report.problem.text;
    return report ? report.value->stream : nullptr;
  }
  void MakeAll(const InterfaceRef<BE::CaptioningStream>& stream, zebcaptioning::CaptionType type) {
    std::vector<BE::ICaptioningStream::CaptionKey> keys;
    stream->GetCaptionKeys(keys);
    for (const auto& key : keys) {
      const CaptionStatePtr before = stream->GetCaption(key)->GetState();
      const boost::intrusive_ptr<zebcaptioning::CaptionState> after(new zebcaptioning::CaptionState(*before));
      after->paragraph.captionType = type;
      project()->EditCaptions(stream, {{key, 0, before, after}}, u"Edit");
    }
  }
  TickTime PictureTime(const InterfaceRef<BE::CaptioningStream>& stream, std::size_t index) {
    std::vector<boost::intrusive_ptr<zebcaptioning::Caption>> captions;
    stream->GetCaptions(captions);
    return App::monitor::GetPictureTime(*captions.at(index)->GetState());
  }
};

TEST_F(StreamOnScreen, ShowsTheCaptionsThatAreOnShowTogether) {
  const auto stream =
      Import("1\n00:00:01,000 --> 00:00:09,000\n{\\an8}Above\n\n2\n00:00:03,000 --> 00:00:05,000\nBelow\n\n"
             "3\n00:00:06,000 --> 00:00:07,000\nLater\n");
  const auto shown = App::monitor::FindOnShow(*stream, PictureTime(stream, 1));
  ASSERT_EQ(shown.size(), 2u);
  EXPECT_EQ(shown[0].state->text, u"Above");
  EXPECT_EQ(shown[1].state->text, u"Below");
  const CaptionScreen screen = App::monitor::MakeScreen(*stream, PictureTime(stream, 1));
  EXPECT_THAT(Row(screen, 0), ::testing::HasSubstr("_Above_"));
  EXPECT_THAT(Row(screen, 14), ::testing::HasSubstr("_Below_"));
}

TEST_F(StreamOnScreen, RollsUpWhatStoodUntilACaptionBegan) {
  const auto stream = Import("1\n00:00:01,000 --> 00:00:02,000\nGone\n\n2\n00:00:03,000 --> 00:00:04,000\nOne\n\n"
                             "3\n00:00:04,000 --> 00:00:05,000\nTwo\n\n4\n00:00:05,000 --> 00:00:06,000\nThree\n");
  MakeAll(stream, zebcaptioning::kCaptionType_RollUp4);
  const CaptionScreen screen = App::monitor::MakeScreen(*stream, PictureTime(stream, 3));
  EXPECT_TRUE(IsRowEmpty(screen, 11)) << "what a pause took away does not come back";
  EXPECT_THAT(Row(screen, 12), ::testing::HasSubstr("_One_"));
  EXPECT_THAT(Row(screen, 13), ::testing::HasSubstr("_Two_"));
  EXPECT_THAT(Row(screen, 14), ::testing::HasSubstr("_Three_"));
  MakeAll(stream, zebcaptioning::kCaptionType_PopOn);
  EXPECT_TRUE(IsRowEmpty(App::monitor::MakeScreen(*stream, PictureTime(stream, 3)), 13));
}

TEST_F(StreamOnScreen, RollsUpCaptionsThatOverlap) {
  const auto stream = Import("1\n00:00:01,000 --> 00:00:09,000\nOne\n\n2\n00:00:03,000 --> 00:00:05,000\nTwo\n");
  MakeAll(stream, zebcaptioning::kCaptionType_RollUp2);
  const CaptionScreen screen = App::monitor::MakeScreen(*stream, PictureTime(stream, 1));
  EXPECT_THAT(Row(screen, 13), ::testing::HasSubstr("_One_"));
  EXPECT_THAT(Row(screen, 14), ::testing::HasSubstr("_Two_"));
}

} // namespace AppTest
