#include "zebcaptioning/LineEnds.h"

#include "Builders.h"

namespace {

using namespace builders;

TEST(LineEnds, ARangeCountsEachPairInFrontAsOneUnit) {
  const UString text = u"ab\r\ncd\r\nef";
  EXPECT_EQ(ToTextUnits(text, {0, 2}), (TextRange{0, 2}));
  EXPECT_EQ(ToTextUnits(text, {3, 5}), (TextRange{4, 6}));
  EXPECT_EQ(ToTextUnits(text, {6, 8}), (TextRange{8, 10}));
}

TEST(LineEnds, ARangeOverAPairTakesAllOfIt) {
  EXPECT_EQ(ToTextUnits(u"ab\r\ncd", {2, 3}), (TextRange{2, 4}));
}

TEST(LineEnds, ALoneCarriageReturnOrLineFeedCountsOne) {
  EXPECT_EQ(ToTextUnits(u"a\rb\nc\r\nd", {4, 6}), (TextRange{4, 7}));
}

TEST(LineEnds, TheWholeTextStaysTheWholeText) {
  EXPECT_EQ(ToTextUnits(u"ab\r\ncd", {0, kTextRange_End}), (TextRange{0, kTextRange_End}));
}

TEST(LineEnds, WhatLiesBehindTheTextStaysBehindIt) {
  EXPECT_EQ(ToTextUnits(u"a\r\nb", {3, 9}), (TextRange{4, 10}));
}

TEST(LineEnds, TheFormatOfARangeBehindAPairIsThatOfItsOwnCharacters) {
  const Caption caption(State(u"ab\r\ncd", {{0, Plain()}, {4, Bold()}, {5, Plain()}}));
  boost::intrusive_ptr<CaptionFormatInfo> info;
  caption.GetFormatInfo(info, {3, 4}, 32, 15, true);
  bool isUniform = false;
  EXPECT_TRUE(info->GetIsBolded(isUniform));
  EXPECT_TRUE(isUniform);
}

TEST(LineEnds, AreTakenFromATextWithEachCharacterInItsRun) {
  const CaptionStatePtr state = State(u"ab\r\ncd\r\nef", {{0, Bold()}, {4, Italic()}, {8, Sized(36)}});
  const CaptionStatePtr single = TakeLineEnds(state, u"ab\ncd\nef");
  EXPECT_EQ(*single, *State(u"ab\ncd\nef", {{0, Bold()}, {3, Italic()}, {6, Sized(36)}}));
  EXPECT_EQ(*TakeLineEnds(single, u"ab\r\ncd\r\nef"), *state);
}

TEST(LineEnds, ARunThatBeganInsideAPairBeginsBehindIt) {
  EXPECT_EQ(*TakeLineEnds(State(u"a\r\nb", {{0, Plain()}, {2, Bold()}}), u"a\nb"),
            *State(u"a\nb", {{0, Plain()}, {2, Bold()}}));
  EXPECT_EQ(*TakeLineEnds(State(u"a\r\nb", {{0, Plain()}, {2, Bold()}, {3, Italic()}}), u"a\nb"),
            *State(u"a\nb", {{0, Plain()}, {2, Italic()}}));
}

TEST(LineEnds, OfATextThatDiffersInMoreAreNotTaken) {
  const CaptionStatePtr state = State(u"ab\r\ncd");
  for (const char16_t* text : {u"ab\ncX", u"ab\ncd\n", u"ab cd", u"ab", u"", u"abXcd"})
    EXPECT_EQ(TakeLineEnds(state, text), state);
}

} // namespace
