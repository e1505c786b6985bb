#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "zebui/LineEndText.h"

using zebcore::UString;
using zebui::controls::LineEndText;

namespace {

// Short texts in which line ends of all kinds meet each other.
rc::Gen<UString> AnyText() {
  return rc::gen::map(rc::gen::container<std::vector<char16_t>>(
                          rc::gen::element<char16_t>(u'a', u'b', u'\r', u'\n', u'\u2029', 0xD83D)),
                      [](const std::vector<char16_t>& units) { return UString(units.begin(), units.end()); });
}

// The same text as a list of pieces, each of which is one unit on screen.
std::vector<UString> Pieces(const UString& text) {
  std::vector<UString> pieces;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n';
    pieces.push_back(text.substr(i, pair ? 2 : 1));
    i += pair ? 1 : 0;
  }
  return pieces;
}

UString Joined(const std::vector<UString>& pieces) {
  UString text;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    text += pieces[i];
    // Two line ends that an edit brought together stay two.
    if (pieces[i] == u"\r" && i + 1 < pieces.size() && pieces[i + 1] == u"\n")
      text += u"\n";
  }
  return text;
}

UString ShownOf(const std::vector<UString>& pieces) {
  UString shown;
  for (const UString& piece : pieces)
    shown += LineEndText::IsLineEnd(piece.front()) ? LineEndText::kShownLineEnd : piece.front();
  return shown;
}

} // namespace

TEST(LineEndText, CarriageReturnAndLineFeedAreOneUnitOnScreenAndTwoInTheText) {
  const LineEndText text(u"a\r\nb");
  EXPECT_EQ(text.GetShown(), u"a\u2029b");
  EXPECT_EQ(text.ToShown(3), 2U);
  EXPECT_EQ(text.FromShown(2), 3U);
}

TEST(LineEndText, APositionInTheMiddleOfALineEndIsShownBeforeIt) {
  EXPECT_EQ(LineEndText(u"a\r\nb").ToShown(2), 1U);
}

TEST(LineEndText, EnterPutsInCarriageReturnAndLineFeedAndLeavesOtherEndsAlone) {
  LineEndText text(u"a\nb\rc");
  text.Replace(1, 0, u"\u2029");
  EXPECT_EQ(text.Get(), u"a\r\n\nb\rc");
}

TEST(LineEndText, ACarriageReturnAndALineFeedThatComeTogetherStayTwoLineEnds) {
  LineEndText text(u"a\rx\nb");
  text.Replace(2, 1, u"");
  EXPECT_EQ(text.GetShown(), u"a\u2029\u2029b");
}

TEST(LineEndText, TheHintTellsWhichOfTwoLineEndsWasTakenOut) {
  LineEndText first(u"a\r\n\nb");
  EXPECT_TRUE(first.Follow(u"a\u2029b", 1, 1, 0));
  EXPECT_EQ(first.Get(), u"a\nb");
  LineEndText second(u"a\r\n\nb");
  EXPECT_TRUE(second.Follow(u"a\u2029b", 2, 1, 0));
  EXPECT_EQ(second.Get(), u"a\r\nb");
}

TEST(LineEndText, AHintThatDoesNotFitIsNotBelieved) {
  LineEndText text(u"one\r\ntwo");
  EXPECT_TRUE(text.Follow(u"one\u2029twos", 0, 2, 1));
  EXPECT_EQ(text.Get(), u"one\r\ntwos");
}

TEST(LineEndText, NothingChangedIsNoEdit) {
  LineEndText text(u"one\r\ntwo");
  EXPECT_FALSE(text.Follow(u"one\u2029two", 0, 7, 7));
  EXPECT_EQ(text.Get(), u"one\r\ntwo");
}

RC_GTEST_PROP(LineEndText, PositionsGoToTheScreenAndBack, ()) {
  const LineEndText text(*AnyText());
  const std::size_t shown = *rc::gen::inRange<std::size_t>(0, text.GetShown().size() + 1);
  RC_ASSERT(text.ToShown(text.FromShown(shown)) == shown);
  RC_ASSERT(text.FromShown(text.GetShown().size()) == text.Get().size());
}

RC_GTEST_PROP(LineEndText, AnyEditOnScreenIsTheSameEditOfThePieces, ()) {
  LineEndText text(*AnyText());
  std::vector<UString> pieces = Pieces(text.Get());
  const int edits = *rc::gen::inRange(1, 6);
  for (int i = 0; i < edits; ++i) {
    const std::size_t from = *rc::gen::inRange<std::size_t>(0, pieces.size() + 1);
    const std::size_t removed = *rc::gen::inRange<std::size_t>(0, pieces.size() - from + 1);
    const UString typed = *AnyText();
    const std::vector<UString> added = Pieces(LineEndText::WithCRLF(typed));

    pieces.erase(pieces.begin() + static_cast<std::ptrdiff_t>(from),
                 pieces.begin() + static_cast<std::ptrdiff_t>(from + removed));
    pieces.insert(pieces.begin() + static_cast<std::ptrdiff_t>(from), added.begin(), added.end());
    pieces = Pieces(Joined(pieces));

    text.Replace(from, removed, typed);
    RC_ASSERT(text.Get() == Joined(pieces));
    RC_ASSERT(text.GetShown() == ShownOf(pieces));
  }
}

RC_GTEST_PROP(LineEndText, FollowingTheScreenKeepsEveryLineEndOutsideTheEdit, ()) {
  LineEndText text(*AnyText());
  LineEndText model = text;
  const std::size_t size = text.GetShown().size();
  const std::size_t from = *rc::gen::inRange<std::size_t>(0, size + 1);
  const std::size_t removed = *rc::gen::inRange<std::size_t>(0, size - from + 1);
  // Nothing put in, so that the edit is the one that the hint names.
  model.Replace(from, removed, u"");
  const bool changed = text.Follow(model.GetShown(), from, removed, 0);
  RC_ASSERT(changed == (removed > 0));
  RC_ASSERT(text.Get() == model.Get());
}
