#include "Builders.h"

using namespace builders;

namespace {

boost::intrusive_ptr<CaptionFormatInfo> Info() {
  return new CaptionFormatInfo;
}

CaptionStatePtr MakeBold(const CaptionStatePtr& state, TextRange range, StreamFormat format = kOpen) {
  const auto info = Info();
  info->SetIsBolded(true, true);
  return ApplyToRange(state, kFormatBold, *info, range, format);
}

CaptionStatePtr Colour(const CaptionStatePtr& state, CaptionFormatParameter parameter, const CaptioningColor& color,
                       StreamFormat format, TextRange range = kWhole) {
  const auto info = Info();
  for (const auto type :
       {CaptioningColor::kColorType_Text, CaptioningColor::kColorType_Background, CaptioningColor::kColorType_Edge})
    info->SetColor(type, color, true);
  return ApplyToRange(state, parameter, *info, range, format);
}

CaptionStatePtr PutOpacity(const CaptionStatePtr& state, CaptionFormatParameter parameter, float opacity,
                           StreamFormat format) {
  const auto info = Info();
  for (const auto type :
       {CaptioningColor::kColorType_Text, CaptioningColor::kColorType_Background, CaptioningColor::kColorType_Edge})
    info->SetOpacity(type, opacity, true);
  return ApplyToRange(state, parameter, *info, kWhole, format);
}

CaptionStatePtr Resize(const CaptionStatePtr& state, float size, StreamFormat format) {
  const auto info = Info();
  info->SetFontSize(size, true);
  return ApplyToRange(state, kFormatFontSize, *info, kWhole, format);
}

} // namespace

TEST(TypedText, TakesTheRunInFrontOfIt) {
  const auto before = State(u"boldplain", {{0, Bold()}, {4, Plain()}});
  const auto after = ReplaceText(before, u"boldXplain", {5, 5});
  EXPECT_EQ(*after, *State(u"boldXplain", {{0, Bold()}, {5, Plain()}}));
}

TEST(TypedText, AtTheVeryBeginningTakesTheFirstRun) {
  const auto before = State(u"boldplain", {{0, Bold()}, {4, Plain()}});
  EXPECT_EQ(*ReplaceText(before, u"Xboldplain", {1, 1}), *State(u"Xboldplain", {{0, Bold()}, {5, Plain()}}));
}

TEST(TypedText, OverASelectionTakesTheRunInFrontOfTheSelection) {
  const auto before = State(u"aaaBBBccc", {{0, Plain()}, {3, Bold()}, {6, Italic()}});
  EXPECT_EQ(*ReplaceText(before, u"aaaxccc", {4, 4}), *State(u"aaaxccc", {{0, Plain()}, {4, Italic()}}));
}

TEST(TypedText, OverTheBeginningTakesTheRunThatWasThere) {
  const auto before = State(u"BBBccc", {{0, Bold()}, {3, Italic()}});
  EXPECT_EQ(*ReplaceText(before, u"xccc", {1, 1}), *State(u"xccc", {{0, Bold()}, {1, Italic()}}));
}

TEST(TypedText, AmongEqualLettersIsFoundByTheCaret) {
  const auto before = State(u"ab", {{0, Bold()}, {1, Plain()}});
  EXPECT_EQ(*ReplaceText(before, u"abb", {2, 2}), *State(u"abb", {{0, Bold()}, {2, Plain()}}));
  EXPECT_EQ(*ReplaceText(before, u"abb", {3, 3}), *State(u"abb", {{0, Bold()}, {1, Plain()}}));
}

TEST(TypedText, WithoutACaretGoesAfterTheCommonBeginning) {
  const auto before = State(u"ab", {{0, Bold()}, {1, Plain()}});
  EXPECT_EQ(*ReplaceText(before, u"abb", {kTextRange_End, kTextRange_End}),
            *State(u"abb", {{0, Bold()}, {1, Plain()}}));
}

TEST(DeletedText, AmongEqualLettersIsFoundByTheCaret) {
  const auto before = State(u"abbb", {{0, Plain()}, {1, Bold()}, {2, Plain()}});
  EXPECT_EQ(*ReplaceText(before, u"abb", {1, 1}), *State(u"abb"));
  EXPECT_EQ(*ReplaceText(before, u"abb", {3, 3}), *State(u"abb", {{0, Plain()}, {1, Bold()}, {2, Plain()}}));
}

TEST(DeletedText, LeavesTheFirstRunsLookToAnEmptyCaption) {
  const auto empty = ReplaceText(State(u"abc", {{0, Bold()}, {1, Italic()}}), u"", {0, 0});
  EXPECT_EQ(*empty, *State(u"", {{0, Bold()}}));
  EXPECT_EQ(*ReplaceText(empty, u"x", {1, 1}), *State(u"x", {{0, Bold()}}));
}

TEST(DeletedText, BetweenEqualRunsMakesThemOne) {
  const auto before = State(u"aBa", {{0, Plain()}, {1, Bold()}, {2, Plain()}});
  EXPECT_EQ(ReplaceText(before, u"aa", {1, 1})->runs.size(), 1U);
}

TEST(ReplacedText, NeverPartsASurrogatePair) {
  // Both characters begin with the same high surrogate.
  const auto before = State(u"x\U0001F600y", {{0, Plain()}, {1, Bold()}, {3, Italic()}});
  const auto after = ReplaceText(before, u"x\U0001F601y", {3, 3});
  EXPECT_EQ(*after, *State(u"x\U0001F601y", {{0, Plain()}, {3, Italic()}}));
}

TEST(ReplacedText, ThatIsTheSameIsTheSameState) {
  const auto before = State(u"abc");
  EXPECT_EQ(ReplaceText(before, u"abc", {1, 1}), before);
}

TEST(TypingStyle, IsSetByAnEmptyRangeAndChangesNoCharacter) {
  const auto before = State(u"abc");
  const auto styled = MakeBold(before, {1, 1});
  EXPECT_EQ(styled->runs, before->runs);
  EXPECT_TRUE(Merged({styled}, {1, 1})->GetIsBolded(*std::make_unique<bool>()));
  EXPECT_FALSE(Merged({styled}, {2, 2})->GetIsBolded(*std::make_unique<bool>()));
  EXPECT_EQ(*ReplaceText(styled, u"aXbc", {2, 2}), *State(u"aXbc", {{0, Plain()}, {1, Bold()}, {2, Plain()}}));
}

TEST(TypingStyle, HoldsAmongEqualLettersToo) {
  const auto styled = MakeBold(State(u"aaa"), {1, 1});
  EXPECT_EQ(*ReplaceText(styled, u"aaaa", {2, 2}), *State(u"aaaa", {{0, Plain()}, {1, Bold()}, {2, Plain()}}));
}

TEST(TypingStyle, IsOfNoUseElsewhere) {
  const auto styled = MakeBold(State(u"abc"), {1, 1});
  EXPECT_EQ(*ReplaceText(styled, u"abcX", {4, 4}), *State(u"abcX"));
}

TEST(TypingStyle, IsUsedUpByWhatWasTyped) {
  const auto typed = ReplaceText(MakeBold(State(u"abc"), {1, 1}), u"aXbc", {2, 2});
  EXPECT_FALSE(typed->typing);
  EXPECT_EQ(*ReplaceText(typed, u"aXYbc", {3, 3}), *State(u"aXYbc", {{0, Plain()}, {1, Bold()}, {3, Plain()}}));
}

TEST(TypingStyle, GathersSeveralAttributes) {
  auto state = MakeBold(State(u"abc"), {1, 1});
  const auto info = Info();
  info->SetIsItalicized(true, true);
  state = ApplyToRange(state, kFormatItalic, *info, {1, 1}, kOpen);
  TextSpanAttributes both = Bold();
  both.italic = true;
  EXPECT_EQ(*GetTypingStyle(*state, 1), both);
}

TEST(ApplyingAnAttribute, SplitsAtMostTwoRuns) {
  const auto after = MakeBold(State(u"abcdef"), {2, 4});
  EXPECT_EQ(*after, *State(u"abcdef", {{0, Plain()}, {2, Bold()}, {4, Plain()}}));
}

TEST(ApplyingAnAttribute, ToTheWholeTextMakesOneRunOfIt) {
  EXPECT_EQ(*MakeBold(State(u"abc", {{0, Plain()}, {1, Bold()}}), kWhole), *State(u"abc", {{0, Bold()}}));
}

TEST(ApplyingAnAttribute, ToTheWholeOfAnEmptyTextChangesItsRun) {
  EXPECT_EQ(*MakeBold(State(u""), kWhole), *State(u"", {{0, Bold()}}));
}

TEST(ApplyingAnAttribute, BehindTheTextIsHeldToTheText) {
  EXPECT_EQ(*MakeBold(State(u"abc"), {2, 99}), *State(u"abc", {{0, Plain()}, {2, Bold()}}));
  EXPECT_EQ(MakeBold(State(u"abc"), {50, 99})->runs.size(), 1U);
}

TEST(ApplyingAnAttribute, InsideASurrogatePairTakesTheWholeCharacter) {
  EXPECT_EQ(*MakeBold(State(u"a\U0001F600b"), {2, 3}),
            *State(u"a\U0001F600b", {{0, Plain()}, {1, Bold()}, {3, Plain()}}));
}

TEST(ApplyingAnAttribute, ThatIsThereAlreadyGivesTheSameState) {
  const auto before = State(u"abc", {{0, Bold()}});
  EXPECT_EQ(MakeBold(before, kWhole), before);
  EXPECT_EQ(MakeBold(before, {1, 1}), before);
}

TEST(ApplyingAnAttribute, WithForceFlagsWritesBoldAndItalicToo) {
  const auto info = Info();
  info->SetFontFamily(u"Some Family", true);
  info->SetIsBolded(true, true);
  info->SetIsItalicized(true, true);
  auto after = ApplyToRange(State(u"abc"), kFormatFontFamily, *info, kWhole, kOpen);
  EXPECT_FALSE(after->runs[0].attributes->bold);
  EXPECT_FALSE(after->runs[0].attributes->italic);
  info->SetForceBolded(true);
  after = ApplyToRange(State(u"abc"), kFormatFontFamily, *info, kWhole, kOpen);
  EXPECT_TRUE(after->runs[0].attributes->bold);
  EXPECT_FALSE(after->runs[0].attributes->italic);
  EXPECT_EQ(after->runs[0].attributes->family, u"Some Family");
  info->SetForceItalicized(true);
  EXPECT_TRUE(ApplyToRange(State(u"abc"), kFormatBold, *info, kWhole, kOpen)->runs[0].attributes->italic);
}

TEST(ApplyingAnAttribute, WithForceFlagsStillKeepsToTheFormat) {
  const auto info = Info();
  info->SetIsBolded(true, true);
  info->SetForceBolded(true);
  info->SetIsUnderlined(true, true);
  const auto after = ApplyToRange(State(u"abc"), kFormatUnderline, *info, kWhole, kCC1);
  EXPECT_TRUE(after->runs[0].attributes->underline);
  EXPECT_FALSE(after->runs[0].attributes->bold);
}

TEST(ApplyingAnEdge, ColourBringsItsWidthAndWidthItsColour) {
  for (const CaptionFormatParameter parameter : {kFormatEdgeColor, kFormatEdgeWidth}) {
    const auto info = Info();
    info->SetColor(CaptioningColor::kColorType_Edge, kRed, true);
    info->SetTextEdgeWidth(2.5F, true);
    const auto after = ApplyToRange(State(u"abc"), parameter, *info, kWhole, kOpen);
    EXPECT_EQ(after->runs[0].attributes->edgeColor, kRed);
    EXPECT_EQ(after->runs[0].attributes->edgeWidth, 2.5F);
  }
}

TEST(ApplyingAnEdge, IsNothingToAFormatWithoutEdges) {
  const auto info = Info();
  info->SetColor(CaptioningColor::kColorType_Edge, kRed, true);
  info->SetTextEdgeWidth(2.5F, true);
  for (const StreamFormat format : {kCC1, kTeletext, kEbu, kAustralian}) {
    const auto before = State(u"abc");
    EXPECT_EQ(ApplyToRange(before, kFormatEdgeWidth, *info, kWhole, format), before);
  }
}

TEST(ApplyingAColour, WritesItsAlphaAndAnOpacityWritesAlphaAlone) {
  auto state = Colour(State(u"abc"), kFormatBackgroundColor, {0.2F, 0.3F, 0.4F, 0.25F}, kOpen);
  EXPECT_EQ(state->runs[0].attributes->backgroundColor, CaptioningColor(0.2F, 0.3F, 0.4F, 0.25F));
  state = PutOpacity(state, kFormatBackgroundOpacity, 37 / 100.0F, kOpen);
  EXPECT_EQ(state->runs[0].attributes->backgroundColor, CaptioningColor(0.2F, 0.3F, 0.4F, 37 / 100.0F));
}

TEST(ApplyingAColour, ThatTheFormatLacksStoresNothingOfIt) {
  const auto before = State(u"abc");
  EXPECT_EQ(Colour(before, kFormatTextColor, {0.5F, 0, 0, 1}, kCC1), before);
  EXPECT_EQ(Colour(before, kFormatTextColor, {}, kCC1), before);
  EXPECT_EQ(Colour(before, kFormatTextColor, kBlack, kTeletext), before);
  EXPECT_EQ(Colour(before, kFormatEdgeColor, kRed, kCC1), before);
  EXPECT_EQ(PutOpacity(before, kFormatTextOpacity, 0.5F, kCC1), before);
  EXPECT_EQ(PutOpacity(before, kFormatBackgroundOpacity, 0.25F, kCC1), before);
}

TEST(ApplyingAColour, ThatTheFormatHasStoresIt) {
  EXPECT_EQ(Colour(State(u"a"), kFormatTextColor, kRed, kCC1)->runs[0].attributes->textColor, kRed);
  EXPECT_EQ(PutOpacity(State(u"a"), kFormatBackgroundOpacity, 0.5F, kCC1)->runs[0].attributes->backgroundColor,
            CaptioningColor(0, 0, 0, 0.5F));
}

TEST(ApplyingAColour, OfFourZerosTakesTheBackgroundAwayWhereThatIsPossible) {
  EXPECT_TRUE(
      Colour(State(u"a"), kFormatBackgroundColor, {}, kCC1)->runs[0].attributes->backgroundColor.IsTransparent());
  const auto before = State(u"a");
  EXPECT_EQ(Colour(before, kFormatBackgroundColor, {}, kTeletext), before);
}

TEST(ApplyingASize, OnClosedCaptionsKnowsNormalAndWhereItExistsDouble) {
  for (const StreamFormat format : {kTeletext, kEbu, kAustralian})
    EXPECT_EQ(Resize(State(u"a"), 36, format)->runs[0].attributes->size, 36);
  for (const StreamFormat format : {kCC1, k708})
    EXPECT_EQ(Resize(State(u"a"), 36, format)->runs[0].attributes->size, 18);
  for (const StreamFormat format : {kTeletext, kEbu, kAustralian, kCC1, k708})
    EXPECT_EQ(Resize(State(u"a"), 24, format)->runs[0].attributes->size, 18);
  EXPECT_EQ(Resize(State(u"a"), 24.5F, kOpen)->runs[0].attributes->size, 24.5F);
}

TEST(ApplyingUnderlineAndItalic, IsNothingToTeletext) {
  const auto info = Info();
  info->SetIsUnderlined(true, true);
  info->SetIsItalicized(true, true);
  for (const StreamFormat format : {kTeletext, kAustralian}) {
    const auto before = State(u"abc");
    EXPECT_EQ(ApplyToRange(before, kFormatUnderline, *info, kWhole, format), before);
    EXPECT_EQ(ApplyToRange(before, kFormatItalic, *info, kWhole, format), before);
  }
  EXPECT_TRUE(ApplyToRange(State(u"a"), kFormatItalic, *info, kWhole, kCC1)->runs[0].attributes->italic);
}

TEST(ApplyingWhatTheFormatLacks, KeepsTheStyleOfWhatIsTypedNext) {
  const auto info = Info();
  info->SetIsItalicized(true, true);
  for (const UString& text : {UString(), UString(u"abc")}) {
    const auto before = Colour(State(text), kFormatTextColor, kRed, kTeletext, {0, 0});
    ASSERT_TRUE(before->typing);
    EXPECT_EQ(ApplyToRange(before, kFormatItalic, *info, kWhole, kTeletext), before);
    // What it has, though it be there already, reaches the whole and ends that style.
    EXPECT_FALSE(Colour(before, kFormatTextColor, kRed, kTeletext)->typing);
  }
}

// The text may be red or half visible blue, the background yellow; a background shows through by half.
struct OddPalette {
  OddPalette() {
    FactsOverride facts;
    facts.colors[CaptioningColor::kColorType_Text] = {{{1, 0, 0, 1}, u"Red"}, {{0, 0, 1, 0.5F}, u"Blue"}};
    facts.colors[CaptioningColor::kColorType_Background] = {{{1, 1, 0, 1}, u"Yellow"}, {{0, 1, 0, 0}, u"None"}};
    facts.opacities[CaptioningColor::kColorType_Background] = {{0.5F, u"Half"}};
    OverrideFacts(kCC1, facts);
  }
  OddPalette(const OddPalette&) = delete;
  OddPalette& operator=(const OddPalette&) = delete;
  ~OddPalette() { OverrideFacts(kCC1, std::nullopt); }
};

TEST(ApplyingAColour, MayKeepTheOpacityThatIsThere) {
  const OddPalette palette;
  const auto before = State(u"abc");
  EXPECT_EQ(Colour(before, kFormatBackgroundColor, {1, 1, 0, 1}, kCC1)->runs[0].attributes->backgroundColor,
            CaptioningColor(1, 1, 0, 1));
  EXPECT_EQ(Colour(before, kFormatTextColor, {0, 0, 1, 1}, kCC1)->runs[0].attributes->textColor,
            CaptioningColor(0, 0, 1, 1));
  EXPECT_EQ(Colour(before, kFormatBackgroundColor, {1, 1, 0, 0.7F}, kCC1)->runs[0].attributes->backgroundColor,
            CaptioningColor(1, 1, 0, 1))
      << "neither there nor legal";
}

TEST(ApplyingAColour, MayChangeTheOpacityOfAColourThatIsNotLegalItself) {
  const OddPalette palette;
  const auto before = State(u"abc");
  EXPECT_EQ(Colour(before, kFormatBackgroundColor, {0, 0, 0, 0.5F}, kCC1)->runs[0].attributes->backgroundColor,
            CaptioningColor(0, 0, 0, 0.5F));
  EXPECT_EQ(Colour(before, kFormatBackgroundColor, {0, 0.2F, 0, 0.5F}, kCC1), before) << "another colour";
}

TEST(ApplyingAColour, MayTakeItAwayWhereALegalColourIsNone) {
  const OddPalette palette;
  const auto before = State(u"abc");
  EXPECT_EQ(Colour(before, kFormatBackgroundColor, {}, kCC1)->runs[0].attributes->backgroundColor, CaptioningColor());
  EXPECT_EQ(Colour(before, kFormatTextColor, {}, kCC1), before);
}

CaptionStatePtr OneLine() {
  ParagraphStyleAttributes paragraph;
  paragraph.blockHeight = 1;
  return MakeCaptionState(TickTime(0), TickTime(100), u"a", {}, paragraph);
}

TEST(ApplyingAPosition, IsHeldToTheRowsAndColumnsThatMayBeUsed) {
  const auto info = Info();
  info->SetPositionX(99);
  info->SetPositionY(99);
  EXPECT_EQ(ApplyToRange(State(u"a"), kFormatPositionX, *info, kWhole, kCC1)->paragraph.x, 31);
  EXPECT_EQ(ApplyToRange(OneLine(), kFormatPositionY, *info, kWhole, kCC1)->paragraph.y, 14);
  EXPECT_EQ(ApplyToRange(State(u"a"), kFormatPositionX, *info, kWhole, k708, 42, 15)->paragraph.x, 41);
  EXPECT_EQ(ApplyToRange(State(u"a"), kFormatPositionX, *info, kWhole, k708, 32, 15)->paragraph.x, 31);
  EXPECT_EQ(ApplyToRange(OneLine(), kFormatPositionY, *info, kWhole, kTeletext)->paragraph.y, 23);
  EXPECT_EQ(ApplyToRange(OneLine(), kFormatPositionY, *info, kWhole, kEbu)->paragraph.y, 22);
  info->SetPositionY(-3);
  EXPECT_EQ(ApplyToRange(State(u"a"), kFormatPositionY, *info, kWhole, kTeletext)->paragraph.y, 1);
  EXPECT_EQ(ApplyToRange(State(u"a"), kFormatPositionX, *info, kWhole, kOpen)->paragraph.x, 99);
}

TEST(ApplyingAPosition, OfABlockWithoutAHeightReachesAsFarAsTheLimitsOfThePanel) {
  const auto info = Info();
  info->SetPositionY(15);
  EXPECT_EQ(ApplyToRange(State(u"a"), kFormatPositionY, *info, kWhole, kCC1)->paragraph.y, 15);
  info->SetPositionY(99);
  EXPECT_EQ(ApplyToRange(State(u"a"), kFormatPositionY, *info, kWhole, kCC1)->paragraph.y, 15);
}

TEST(ApplyingAParagraphAttribute, ReachesTheWholeCaptionWhateverTheRange) {
  const auto info = Info();
  info->SetTextAlignment(ParagraphStyleAttributes::kTextAlignment_Right, true);
  info->SetAnchorID(7, false);
  info->SetLineSpacing(20, true);
  info->SetCaptionType(kCaptionType_RollUp3, true);
  const auto before = State(u"abc");
  auto after = ApplyToRange(before, kFormatTextAlignment, *info, {1, 1}, kOpen);
  after = ApplyToRange(after, kFormatAnchor, *info, {1, 2}, kOpen);
  after = ApplyToRange(after, kFormatLineSpacing, *info, {0, 0}, kOpen);
  EXPECT_EQ(after->paragraph.alignment, ParagraphStyleAttributes::kTextAlignment_Right);
  EXPECT_EQ(after->paragraph.anchor, 7);
  EXPECT_EQ(after->paragraph.lineSpacing, 20);
  EXPECT_EQ(after->runs, before->runs);
  EXPECT_EQ(ApplyToRange(before, kFormatCaptionType, *info, {1, 1}, kCC1)->paragraph.captionType, kCaptionType_RollUp3);
  EXPECT_EQ(ApplyToRange(before, kFormatCaptionType, *info, {1, 1}, k708), before);
  EXPECT_EQ(ApplyToRange(before, kFormatCaptionType, *info, {1, 1}, kOpen), before);
  EXPECT_EQ(ApplyToRange(before, kFormatLineSpacing, *info, kWhole, kCC1), before);
}

TEST(ApplyingAFamily, KeepsToWhatTheFormatCanName) {
  const auto info = Info();
  info->SetFontFamily(u"casual", true);
  const auto before = State(u"abc");
  EXPECT_EQ(ApplyToRange(before, kFormatFontFamily, *info, kWhole, k708)->runs[0].attributes->family, u"casual");
  EXPECT_EQ(ApplyToRange(before, kFormatFontFamily, *info, kWhole, kCC1), before);
  info->SetFontFamily(u"Some Family", true);
  EXPECT_EQ(ApplyToRange(before, kFormatFontFamily, *info, kWhole, k708), before);
}

namespace {

rc::Gen<UString> Texts() {
  return rc::gen::map(rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 5)), [](std::vector<int> letters) {
    letters.resize(std::min<std::size_t>(letters.size(), 12));
    UString text;
    for (const int letter : letters)
      text += letter == 0   ? u"\U0001F600"
              : letter == 1 ? u"\U0001F601"
                            : UString(1, static_cast<char16_t>(u'a' + letter));
    return text;
  });
}

// The text with look number n at each unit, characters outside the plane under one look.
CaptionStatePtr Painted(const UString& text, const std::vector<int>& looks) {
  std::vector<TextRun> runs;
  for (std::size_t i = 0; i < text.size(); ++i)
    runs.push_back({static_cast<std::uint32_t>(i), Share(Sized(10.0F + looks[i % looks.size()]))});
  return MakeCaptionState(TickTime(0), TickTime(1), text, runs);
}

bool PartsPair(const UString& text, std::size_t at) {
  return at > 0 && at < text.size() && text[at] >= 0xDC00 && text[at] <= 0xDFFF && text[at - 1] >= 0xD800 &&
         text[at - 1] <= 0xDBFF;
}

} // namespace

TEST(SpansProperty, AnAttributeReachesExactlyTheUnitsOfItsRange) {
  EXPECT_TRUE(CheckTenThousand("a range against a model that holds each unit by itself", [] {
    const UString text = *Texts();
    const auto looks = *rc::gen::nonEmpty(rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 3)));
    const auto state = Painted(text, looks);
    const std::size_t first = *rc::gen::inRange<std::size_t>(0, 14);
    const std::size_t second = *rc::gen::inRange<std::size_t>(0, 14);
    auto model = PerUnit(*state);
    std::size_t from = std::min({first, second, text.size()});
    std::size_t to = std::min(std::max(first, second), text.size());
    if (from < to) {
      from -= PartsPair(text, from) ? 1 : 0;
      to += PartsPair(text, to) ? 1 : 0;
      for (std::size_t i = from; i < to; ++i)
        model[i].bold = true;
    }
    const auto after = MakeBold(state, {first, second});
    RC_ASSERT(IsProper(*after));
    RC_ASSERT(PerUnit(*after) == model);
    RC_ASSERT(after->runs.size() <= state->runs.size() + 2);
  }));
}

TEST(SpansProperty, TextThatStaysKeepsItsLookAndTypedTextTakesThatInFrontOfIt) {
  EXPECT_TRUE(CheckTenThousand("edits at a caret against a model that holds each unit by itself", [] {
    const UString text = *Texts();
    const auto looks = *rc::gen::nonEmpty(rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 3)));
    const auto state = Painted(text, looks);
    const TextRange cut =
        ClampRange(text, {*rc::gen::inRange<std::size_t>(0, 14), *rc::gen::inRange<std::size_t>(0, 14)});
    const UString typed = *Texts();
    RC_PRE(typed.empty() || cut.first == cut.second); // either way the caret tells the place
    const UString next = text.substr(0, cut.first) + typed + text.substr(cut.second);

    auto model = PerUnit(*state);
    const TextSpanAttributes look =
        text.empty() ? *state->runs[0].attributes : model[cut.first > 0 ? cut.first - 1 : 0];
    model.erase(model.begin() + static_cast<std::ptrdiff_t>(cut.first),
                model.begin() + static_cast<std::ptrdiff_t>(cut.second));
    model.insert(model.begin() + static_cast<std::ptrdiff_t>(cut.first), typed.size(), look);

    const std::size_t caret = cut.first + typed.size();
    const auto after = ReplaceText(state, next, {caret, caret});
    RC_ASSERT(after->text == next);
    RC_ASSERT(IsProper(*after));
    RC_ASSERT(PerUnit(*after) == model);
  }));
}

TEST(SpansProperty, AnyTextAfterAnyOtherKeepsWhatBothBeginAndEndWith) {
  EXPECT_TRUE(CheckTenThousand("replacing a text by another without a caret", [] {
    const UString text = *Texts();
    const UString next = *Texts();
    const auto looks = *rc::gen::nonEmpty(rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 3)));
    const auto state = Painted(text, looks);
    const auto after = ReplaceText(state, next, {kTextRange_End, kTextRange_End});
    RC_ASSERT(after->text == next);
    RC_ASSERT(IsProper(*after));
    const auto before = PerUnit(*state);
    const auto units = PerUnit(*after);
    std::size_t prefix = 0;
    while (prefix < std::min(text.size(), next.size()) && text[prefix] == next[prefix])
      ++prefix;
    if (PartsPair(text, prefix) || PartsPair(next, prefix))
      --prefix;
    for (std::size_t i = 0; i < prefix; ++i)
      RC_ASSERT(units[i] == before[i]);
    std::size_t suffix = 0;
    while (suffix < std::min(text.size(), next.size()) - prefix &&
           text[text.size() - 1 - suffix] == next[next.size() - 1 - suffix])
      ++suffix;
    if (PartsPair(text, text.size() - suffix) || PartsPair(next, next.size() - suffix))
      --suffix;
    for (std::size_t i = 1; i <= suffix; ++i)
      RC_ASSERT(units[next.size() - i] == before[text.size() - i]);
  }));
}
