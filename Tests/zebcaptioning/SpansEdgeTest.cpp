#include "Builders.h"

// Runs in disorder, carets inside characters, and open captions that are moved down.
using namespace builders;

TEST(Runs, AreTakenInAnyOrderAndWithoutALook) {
  const auto state =
      MakeCaptionState(TickTime(0), TickTime(100), u"abcdef", {{4, Share(Italic())}, {2, Share(Bold())}, {0, nullptr}});
  EXPECT_EQ(*state, *State(u"abcdef", {{0, Plain()}, {2, Bold()}, {4, Italic()}}));
  EXPECT_TRUE(IsProper(*state));
}

TEST(TypedText, AmongEqualCharactersOfTwoUnitsNeverPartsOneWhereverTheCaretIs) {
  const auto before = State(u"\U0001F600\U0001F600", {{0, Bold()}, {2, Plain()}});
  const auto after = ReplaceText(before, u"\U0001F600\U0001F600\U0001F600", {3, 3});
  EXPECT_EQ(*after, *State(u"\U0001F600\U0001F600\U0001F600", {{0, Bold()}, {4, Plain()}}));
}

TEST(TypingStyle, InsideACharacterIsThatInFrontOfIt) {
  const auto before = State(u"a\U0001F600", {{0, Bold()}, {1, Plain()}});
  EXPECT_EQ(*GetTypingStyle(*before, 2), Bold());
  EXPECT_EQ(*GetTypingStyle(*before, 3), Plain());
  CaptionFormatInfo italic;
  italic.SetIsItalicized(true, true);
  const auto chosen = ApplyToRange(before, kFormatItalic, italic, {1, 1}, kCC1, 32, 15);
  EXPECT_TRUE(GetTypingStyle(*chosen, 2)->italic);
}

TEST(ApplyingAPosition, DownwardsTakesAnOpenCaptionOutOfItsCell) {
  ParagraphStyleAttributes paragraph;
  paragraph.anchor = 4;
  paragraph.lineWidth = 200;
  paragraph.blockHeight = 100;
  const auto before = MakeCaptionState(TickTime(0), TickTime(100), u"text", {}, paragraph);
  CaptionFormatInfo info;
  info.SetPositionY(700);
  const auto after = ApplyToRange(before, kFormatPositionY, info, kWhole, kOpen, 1000, 800);
  EXPECT_EQ(after->paragraph.anchor, -1);
  EXPECT_EQ(after->paragraph.x, 400);
  EXPECT_EQ(after->paragraph.y, 700);
}

TEST(Carets, StandInsideNoPairOfSurrogatesAndBetweenAnyOtherTwoUnits) {
  const auto stands = [](char16_t first, char16_t second) {
    return ClampRange(UString{first, second}, {1, 1}) == TextRange(1, 1);
  };
  for (const char16_t high : {char16_t(0xD800), char16_t(0xDBFF)}) {
    EXPECT_FALSE(stands(high, 0xDC00));
    EXPECT_FALSE(stands(high, 0xDFFF));
    EXPECT_TRUE(stands(high, 0xDBFF));
    EXPECT_TRUE(stands(high, 0xE000));
  }
  for (const char16_t low : {char16_t(0xDC00), char16_t(0xDFFF)}) {
    EXPECT_TRUE(stands(0xD7FF, low));
    EXPECT_TRUE(stands(low, low));
  }
}

TEST(ReplacedText, IsWhollyNewWhereHalfOfACharacterStaysOrBecomesOne) {
  const UString whole = u"x\U0001F600";
  const UString half = {u'x', char16_t(0xD83D), u'z'};
  EXPECT_EQ(*ReplaceText(State(whole, {{0, Plain()}, {1, Bold()}}), half, {3, 3}), *State(half));
  EXPECT_EQ(*ReplaceText(State(half, {{0, Plain()}, {1, Bold()}}), whole, {3, 3}), *State(whole));
}

TEST(ReplacedText, ThatIsLongerByACharacterOfNumberZeroIsTakenAsTyped) {
  const UString longer(u"ab\0", 3);
  EXPECT_EQ(*ReplaceText(State(u"ab", {{0, Plain()}, {1, Bold()}}), longer, {3, 3}),
            *State(longer, {{0, Plain()}, {1, Bold()}}));
}
