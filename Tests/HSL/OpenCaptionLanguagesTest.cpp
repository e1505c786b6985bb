#include <set>

#include <gtest/gtest.h>

#include "HSL/OpenCaptionFonts.h"
#include "OpenCaptions.h"

// Open captions in the scripts of the world, in pixels of the picture.

using namespace test;

namespace {

int Width(const UString& text, const TextSpanAttributes& span = Letters()) {
  return Measure(Caption(text, span)).lineWidth;
}

TEST(OpenCaptionLanguages, ArabicLettersJoin) {
  // The same letters, kept apart by a non-joiner.
  EXPECT_LT(Width(u"سسس"), Width(u"س\u200Cس\u200Cس") * 9 / 10);
}

TEST(OpenCaptionLanguages, ArabicLettersJoinAcrossAChangeOfColour) {
  const auto one = Caption(u"سلام");
  const auto two = Caption(u"سلام", Runs{{0, Letters()}, {1, Letters(18, kRed)}}, At(400, 300));
  EXPECT_NEAR(Measure(two).lineWidth, Measure(one).lineWidth, 1);
  EXPECT_NEAR(Draw(two).Find(IsInk).Width(), Draw(one).Find(IsInk).Width(), 1);
}

TEST(OpenCaptionLanguages, ARightToLeftLineBeginsAtTheRight) {
  for (const char16_t* text : {u"שלום עולם", u"سلام عليكم"}) {
    const Picture picture = Draw(Caption(text, Runs{{0, Letters(36, kRed)}, {5, Letters(36, kBlue)}}, At(300, 300)));
    EXPECT_GT(picture.Find(IsRed).left, picture.Find(IsBlue).right) << zebcore::ToUTF8(text);
  }
}

TEST(OpenCaptionLanguages, TheFirstLetterOfALineSaysInWhichDirectionItRuns) {
  const auto places = [](const UString& text, std::uint32_t second) {
    const Picture picture =
        Draw(Caption(text, Runs{{0, Letters(36, kRed)}, {second, Letters(36, kBlue)}}, At(300, 300)));
    return std::pair(picture.Find(IsRed), picture.Find(IsBlue));
  };
  const auto [latin, hebrewAfter] = places(u"abc שלום", 4);
  EXPECT_LT(latin.right, hebrewAfter.left);
  const auto [hebrew, latinAfter] = places(u"שלום abc", 5);
  EXPECT_GT(hebrew.left, latinAfter.right);
}

TEST(OpenCaptionLanguages, PunctuationAtTheEndOfARightToLeftLineStandsAtItsLeft) {
  const Picture picture = Draw(Caption(u"שלום!", Runs{{0, Letters(36, kRed)}, {4, Letters(36, kBlue)}}, At(300, 300)));
  EXPECT_LT(picture.Find(IsBlue).right, picture.Find(IsRed).left);
}

TEST(OpenCaptionLanguages, NumbersWithinARightToLeftLineRunFromTheLeft) {
  const Picture picture =
      Draw(Caption(u"אב 12", Runs{{0, Letters(36)}, {3, Letters(36, kRed)}, {4, Letters(36, kBlue)}}, At(300, 300)));
  EXPECT_LT(picture.Find(IsRed).left, picture.Find(IsBlue).left);
}

TEST(OpenCaptionLanguages, ARunThatIsPartedByTheDirectionsHasItsBoxUnderEachPart) {
  // Seen from the left: "abc", the second Hebrew word, the first one.
  const Picture picture = Draw(Caption(u"abc אב גד", Runs{{0, BoxAlone(kRed)}, {6, BoxAlone(kBlue)}}, At(300, 300)));
  const Area box = picture.Find(IsInk);
  const int y = (box.top + box.bottom) / 2;
  EXPECT_TRUE(IsRed(picture(box.left + 2, y)));
  EXPECT_TRUE(IsRed(picture(box.right - 2, y)));
  EXPECT_GT(picture.Find(IsBlue).left, box.left + 20);
  EXPECT_LT(picture.Find(IsBlue).right, box.right - 20);
}

TEST(OpenCaptionLanguages, EachLineHasItsOwnDirectionAndTheAlignmentStays) {
  const Picture picture =
      Draw(Caption(u"a long line of Latin\nשלום", Runs{{0, BoxAlone(kRed)}, {21, BoxAlone(kBlue)}}, At(300, 300)));
  EXPECT_EQ(picture.Find(IsBlue).left, picture.Find(IsRed).left);
}

TEST(OpenCaptionLanguages, DevanagariConsonantsMakeConjuncts) {
  EXPECT_LT(Width(u"क्ष"), Width(u"क") + Width(u"ष") - 5);
}

TEST(OpenCaptionLanguages, ADevanagariVowelThatIsWrittenBeforeItsConsonantStandsBeforeIt) {
  // The short i reaches over the letter from its left, the long one from its right.
  TextSpanAttributes span = Letters(72);
  const Picture picture = Draw(Caption(u"कि", span, At(300, 300)));
  const Picture alone = Draw(Caption(u"क", span, At(300, 300)));
  EXPECT_GT(picture.Find(IsInk).Width(), alone.Find(IsInk).Width() + 10);
  EXPECT_FALSE(picture.Equals(Draw(Caption(u"की", span, At(300, 300)))));
  // Below the headline the letter's own stem has moved to the right by the vowel's width.
  const auto firstInk = [](const Picture& in) {
    const Area ink = in.Find(IsInk);
    const int y = ink.bottom - 12;
    int x = ink.left;
    while (x < ink.right && !IsInk(in(x, y)))
      ++x;
    return x;
  };
  EXPECT_NE(firstInk(picture), firstInk(alone));
}

TEST(OpenCaptionLanguages, ThaiMarksStackAboveTheirConsonant) {
  EXPECT_EQ(Width(u"ที่"), Width(u"ท"));
  EXPECT_LT(Ink(Caption(u"ที่", Letters(36))).top, Ink(Caption(u"ท", Letters(36))).top - 5);
}

TEST(OpenCaptionLanguages, CombiningMarksStandOnTheirLetter) {
  EXPECT_EQ(Width(u"a\u0308"), Width(u"ä"));
  EXPECT_TRUE(Draw(Caption(u"a\u0308")).Equals(Draw(Caption(u"ä"))));
}

// A font without a character draws the same box for all of them, so that two of one script would look alike.
TEST(OpenCaptionLanguages, ScriptsThatTheWantedFontLacksAreDrawnByOneThatHasThem) {
  const std::vector<std::pair<UString, UString>> pairs{
      {u"日", u"語"}, {u"か", u"な"}, {u"한", u"글"}, {u"न", u"म"}, {u"ส", u"ว"}, {u"த", u"மி"}, {u"ব", u"ল"},
      {u"ქ", u"ა"},   {u"አ", u"ማ"},   {u"ש", u"ל"},   {u"س", u"ل"}, {u"Д", u"Ж"}, {u"ք", u"ա"},  {u"ខ", u"ម"},
      {u"♪", u"♫"},   {u"😀", u"😂"},   {u"👍", u"👎"},   {u"🔥", u"🚀"}, {u"🎵", u"🎉"}};
  for (const auto& [a, b] : pairs) {
    const Picture first = Draw(Caption(a, Letters(72)));
    EXPECT_GT(first.Count(IsInk), 200) << zebcore::ToUTF8(a);
    EXPECT_FALSE(first.Equals(Draw(Caption(b, Letters(72))))) << zebcore::ToUTF8(a);
  }
}

TEST(OpenCaptionLanguages, CharactersOfAnotherFontAreAsLargeAsThoseOfTheWanted) {
  TextSpanAttributes cjk = Letters(36);
  cjk.family = u"Noto Sans CJK JP";
  // An ideograph is as wide as the em, of which the wanted font's letters take their share.
  const double em = Width(u"M", Letters(36)) / 0.863;
  EXPECT_NEAR(Width(u"字", Letters(36)), em, em / 30);
  EXPECT_LT(Width(u"字", cjk), em * 0.9);
}

TEST(OpenCaptionLanguages, EmojiAreDrawnAsOutlinesInTheColourOfTheText) {
  const Picture picture = Draw(Caption(u"🚀", Letters(72, kRed)));
  EXPECT_GT(picture.Count(IsRed), 500);
}

TEST(OpenCaptionLanguages, SelectorsAndTonesOfSkinLeaveNoEmptyBoxBehind) {
  EXPECT_TRUE(Draw(Caption(u"❤\uFE0F")).Equals(Draw(Caption(u"❤"))));
  EXPECT_TRUE(Draw(Caption(u"👍🏽")).Equals(Draw(Caption(u"👍"))));
  EXPECT_TRUE(Draw(Caption(u"👩\u200D💻")).Equals(Draw(Caption(u"👩🏽\uFE0F\u200D💻"))));
  EXPECT_NEAR(Width(u"👩\u200D💻"), Width(u"👩") + Width(u"💻"), Width(u"👩") / 4);
}

TEST(OpenCaptionLanguages, GermanLettersAndQuotesComeFromTheWantedFont) {
  const auto pieces = HSL::SplitByFont(u"„Größe“ – Übermaß…", u"DejaVu Sans", false, false);
  ASSERT_EQ(pieces.size(), 1U);
  EXPECT_EQ(pieces[0].family, u"DejaVu Sans");
  EXPECT_EQ(pieces[0].scale, 1.0);
}

TEST(SplittingByFont, CoversTheTextInOrderAndKeepsMarksWithTheirLetters) {
  const UString text = u"abc नमस्ते def 日本 👩\u200D💻 x";
  const auto pieces = HSL::SplitByFont(text, u"DejaVu Sans", false, false);
  ASSERT_FALSE(pieces.empty());
  EXPECT_EQ(pieces.front().start, 0U);
  EXPECT_EQ(pieces.back().end, text.size());
  for (std::size_t i = 1; i < pieces.size(); ++i) {
    EXPECT_EQ(pieces[i].start, pieces[i - 1].end);
    EXPECT_NE(pieces[i].family, pieces[i - 1].family);
  }
  const std::size_t hindi = text.find(u"नमस्ते");
  EXPECT_TRUE(std::any_of(pieces.begin(), pieces.end(), [hindi](const HSL::FontPiece& piece) {
    return piece.start == hindi && piece.end == hindi + 6;
  }));
}

TEST(SplittingByFont, OfBrokenTextAndUnknownCharactersStillCoversIt) {
  for (const UString& text : {UString(u"\xD83D"), UString(u"a\xDE00z"), UString(u"\u0301"), UString(1, u'\xFFFF')}) {
    const auto pieces = HSL::SplitByFont(text, u"DejaVu Sans", false, false);
    ASSERT_FALSE(pieces.empty());
    EXPECT_EQ(pieces.back().end, text.size());
    EXPECT_GE(Measure(Caption(text)).blockHeight, 0);
  }
}

TEST(SplittingByFont, OfAGenericFamilyTakesTheInstalledOneThatStandsForIt) {
  for (const char16_t* name :
       {u"default", u"monospace", u"sansSerif", u"serif", u"monospaceSansSerif", u"monospaceSerif",
        u"proportionalSansSerif", u"proportionalSerif", u"casual", u"cursive", u"smallCapitals"}) {
    const auto pieces = HSL::SplitByFont(u"abc", name, false, false);
    ASSERT_EQ(pieces.size(), 1U);
    EXPECT_EQ(pieces[0].family, TextSpanAttributes::GetGenericUIFontName(name)) << zebcore::ToUTF8(name);
    EXPECT_FALSE(TextSpanAttributes::IsGenericFontName(pieces[0].family)) << zebcore::ToUTF8(name);
  }
}

TEST(SplittingByFont, OfAFamilyThatIsNotInstalledTakesOneThatIs) {
  const auto pieces = HSL::SplitByFont(u"abc", u"No Such Family", false, false);
  ASSERT_EQ(pieces.size(), 1U);
  EXPECT_NE(pieces[0].family, u"No Such Family");
  EXPECT_FALSE(pieces[0].family.empty());
}

TEST(SplittingByFont, TakesChineseCharactersAsTheLettersAroundThemSay) {
  const auto japanese = HSL::SplitByFont(u"直す", u"DejaVu Sans", false, false);
  EXPECT_EQ(japanese.front().family, u"Noto Sans CJK JP");
  const auto korean = HSL::SplitByFont(u"直한", u"DejaVu Sans", false, false);
  EXPECT_EQ(korean.front().family, u"Noto Sans CJK KR");
}

} // namespace
