#include <gtest/gtest.h>

#include "Captions/list/LineEnds.h"
#include "Captions/pane/CaptionsFilter.h"
#include "Captions/pane/Thumbnail.h"

namespace Captivo {

TEST(LineEnds, APairBecomesALineFeedAndLoneOnesStay) {
  UString text = u"a\r\nb\rc\nd\r\r\n";
  LineEnds::Normalize(text);
  EXPECT_EQ(text, u"a\nb\rc\nd\r\n");
}

TEST(LineEnds, PairsBeforeTheCaretCountOnceInStoredUnits) {
  EXPECT_EQ(LineEnds::ToStoredRange(u"a\r\nb\r\ncd", {7, 8}), TextRange(5, 6));
}

TEST(LineEnds, ACaretBeforeAPairIsNotMoved) {
  EXPECT_EQ(LineEnds::ToStoredRange(u"a\r\nb", {1, 1}), TextRange(1, 1));
}

TEST(LineEnds, ACaretBehindAPairComesBackToWhereItWas) {
  for (const std::size_t caret : {0U, 1U, 3U, 4U, 6U, 7U}) {
    const TextRange range{caret, caret};
    const UString text = u"a\r\nb\r\nc";
    EXPECT_EQ(LineEnds::ToControlRange(text, LineEnds::ToStoredRange(text, range)), range) << caret;
  }
}

TEST(LineEnds, TheWholeTextStaysTheWholeText) {
  EXPECT_EQ(LineEnds::ToControlRange(u"\r\na", kTextRange_Whole), kTextRange_Whole);
}

TEST(Filter, ASCIILettersMatchInEitherCase) {
  EXPECT_TRUE(ContainsFolded(u"Good Morning", u"MORN"));
  EXPECT_TRUE(ContainsFolded(u"GOOD MORNING", u"morn"));
}

TEST(Filter, ACapitalBeyondASCIIDoesNotFindItsSmallLetter) {
  EXPECT_FALSE(ContainsFolded(u"\u00e9t\u00e9", u"\u00c9T"));
  EXPECT_TRUE(ContainsFolded(u"\u00c9t\u00e9", u"\u00c9T"));
}

TEST(Filter, SignsBesideTheLettersAreNotFolded) {
  EXPECT_FALSE(ContainsFolded(u"@", u"`"));
  EXPECT_FALSE(ContainsFolded(u"[", u"{"));
}

TEST(Thumbnail, IsSixtyFourPixelsHighInTheShapeOfTheVideo) {
  EXPECT_EQ(Thumbnail::GetSourceRect({0, 0, 1920, 1080}, {1, 1}), (RectT<int>{0, 0, 114, 64}));
  EXPECT_EQ(Thumbnail::GetSourceRect({0, 0, 720, 576}, {16, 15}), (RectT<int>{0, 0, 85, 64}));
}

TEST(Thumbnail, AVeryWideVideoIsSqueezedIntoTheLimit) {
  EXPECT_EQ(Thumbnail::GetSourceRect({0, 0, 4000, 200}, {1, 1}).width, 196);
}

TEST(Thumbnail, StandsInItsRow) {
  EXPECT_EQ(Thumbnail::GetTargetRect({0, 0, 114, 64}, {0, 0}), (RectT<int>{5, 6, 114, 65}));
}

TEST(Thumbnail, AVideoWithoutHeightDoesNoHarm) {
  EXPECT_GE(Thumbnail::GetSourceRect({0, 0, 0, 0}, {1, 1}).width, 0);
}

} // namespace Captivo
