#include "Builders.h"
#include "Captions/contracts/CaptionDisplaySettings.h"
#include "Captions/contracts/CaptioningRenderableModel.h"
#include "zebcaptioning/CaptionRegions.h"
#include "zebcaptioning/Conversion.h"
#include "zebcaptioning/GenericFonts.h"

using namespace builders;

namespace {

using Paragraph = ParagraphStyleAttributes;

CaptionStatePtr WithParagraph(const Paragraph& paragraph) {
  return MakeCaptionState(TickTime(0), TickTime(100), u"text", {}, paragraph);
}

// The uniform flags of everything that has one.
std::map<std::string, bool> Flags(CaptionFormatInfo& info) {
  std::map<std::string, bool> flags;
  UString text;
  CaptioningColor color;
  info.GetCaptionType(flags["type"]);
  info.GetIsUnderlined(flags["underline"]);
  info.GetIsItalicized(flags["italic"]);
  info.GetIsBolded(flags["bold"]);
  info.GetFontFamily(text, flags["family"]);
  info.GetFontSize(flags["size"]);
  info.GetTextEdgeWidth(flags["edge width"]);
  info.GetLineSpacing(flags["line spacing"]);
  info.GetColor(CaptioningColor::kColorType_Text, color, flags["text colour"]);
  info.GetColor(CaptioningColor::kColorType_Background, color, flags["background colour"]);
  info.GetColor(CaptioningColor::kColorType_Edge, color, flags["edge colour"]);
  info.GetOpacity(CaptioningColor::kColorType_Text, flags["text opacity"]);
  info.GetOpacity(CaptioningColor::kColorType_Background, flags["background opacity"]);
  info.GetOpacity(CaptioningColor::kColorType_Edge, flags["edge opacity"]);
  info.GetTextAlignment(flags["alignment"]);
  info.GetPositionX(flags["x"]);
  info.GetPositionY(flags["y"]);
  info.GetRegionName(flags["region"]);
  info.GetStyleName(flags["style"]);
  return flags;
}

std::set<std::string> Mixed(const boost::intrusive_ptr<CaptionFormatInfo>& info) {
  std::set<std::string> mixed;
  for (const auto& [name, uniform] : Flags(*info)) {
    if (!uniform)
      mixed.insert(name);
  }
  return mixed;
}

using Names = std::set<std::string>;

} // namespace

TEST(GetFormatInfo, WithFirstTrueOnTheFirstCaptionAndFalseOnTheRestLeavesAFlagTrueOnlyIfAllAgree) {
  EXPECT_EQ(Mixed(Merged({State(u"a"), State(u"b"), State(u"c")})), Names{});
  EXPECT_EQ(Mixed(Merged({State(u"a"), State(u"b", {{0, Bold()}}), State(u"c")})), Names{"bold"});
  EXPECT_EQ(Mixed(Merged({State(u"a"), State(u"b", {{0, Bold()}}), State(u"c", {{0, Italic()}})})),
            (Names{"bold", "italic"}));
}

TEST(GetFormatInfo, OfEachAttributeThatDiffersClearsThatFlagAlone) {
  const auto differs = [](const std::function<void(TextSpanAttributes&)>& change) {
    TextSpanAttributes span;
    change(span);
    return Mixed(Merged({State(u"a"), State(u"b", {{0, span}})}));
  };
  EXPECT_EQ(differs([](auto& s) { s.underline = true; }), Names{"underline"});
  EXPECT_EQ(differs([](auto& s) { s.family = u"x"; }), Names{"family"});
  EXPECT_EQ(differs([](auto& s) { s.size = 36; }), Names{"size"});
  EXPECT_EQ(differs([](auto& s) { s.edgeWidth = 1; }), Names{"edge width"});
  EXPECT_EQ(differs([](auto& s) { s.textColor.green = 0; }), Names{"text colour"});
  EXPECT_EQ(differs([](auto& s) { s.edgeColor.red = 1; }), Names{"edge colour"});
  EXPECT_EQ(differs([](auto& s) { s.backgroundColor.alpha = 0.5F; }),
            (Names{"background colour", "background opacity"}));

  const auto paragraphDiffers = [](const std::function<void(Paragraph&)>& change) {
    Paragraph paragraph;
    const auto before = WithParagraph(paragraph);
    change(paragraph);
    return Mixed(Merged({before, WithParagraph(paragraph)}));
  };
  EXPECT_EQ(paragraphDiffers([](auto& p) { p.captionType = 2; }), Names{"type"});
  EXPECT_EQ(paragraphDiffers([](auto& p) { p.alignment = Paragraph::kTextAlignment_Center; }), Names{"alignment"});
  EXPECT_EQ(paragraphDiffers([](auto& p) { p.x = 1; }), Names{"x"});
  EXPECT_EQ(paragraphDiffers([](auto& p) { p.y = 1; }), Names{"y"});
  EXPECT_EQ(paragraphDiffers([](auto& p) { p.lineSpacing = 1; }), Names{"line spacing"});
  EXPECT_EQ(paragraphDiffers([](auto& p) { p.region = "r"; }), Names{"region"});
  EXPECT_EQ(paragraphDiffers([](auto& p) { p.style = "s"; }), Names{"style"});
}

TEST(GetFormatInfo, WithFirstTrueReplacesWhatTheInfoHeld) {
  boost::intrusive_ptr<CaptionFormatInfo> info = Merged({State(u"a"), State(u"b", {{0, Bold()}})});
  info->SetForceBolded(true);
  const auto* object = info.get();
  Held(State(u"c", {{0, Italic()}}))->GetFormatInfo(info, kWhole, 32, 15, true);
  EXPECT_EQ(info.get(), object);
  bool uniform = false;
  EXPECT_TRUE(info->GetIsItalicized(uniform));
  EXPECT_EQ(Mixed(info), Names{});
  EXPECT_FALSE(info->GetForceBolded());
}

TEST(GetFormatInfo, MakesAnInfoWhereThereIsNone) {
  boost::intrusive_ptr<CaptionFormatInfo> info;
  Held(State(u"a", {{0, Bold()}}))->GetFormatInfo(info, kWhole, 32, 15, true);
  ASSERT_TRUE(info);
  bool uniform = false;
  EXPECT_TRUE(info->GetIsBolded(uniform));
}

TEST(GetFormatInfo, OfARangeLooksAtItsRunsAlone) {
  const auto state = State(u"aaBBcc", {{0, Plain()}, {2, Bold()}, {4, Italic()}});
  EXPECT_EQ(Mixed(Merged({state}, {2, 4})), Names{});
  EXPECT_EQ(Mixed(Merged({state}, {1, 4})), Names{"bold"});
  EXPECT_EQ(Mixed(Merged({state}, {2, 5})), (Names{"bold", "italic"}));
  EXPECT_EQ(Mixed(Merged({state}, kWhole)), (Names{"bold", "italic"}));
}

TEST(GetFormatInfo, OfAnEmptyRangeGivesTheLookOfWhatWouldBeTypedThere) {
  const auto state = State(u"aaBB", {{0, Plain()}, {2, Bold()}});
  bool uniform = false;
  EXPECT_FALSE(Merged({state}, {2, 2})->GetIsBolded(uniform));
  EXPECT_TRUE(Merged({state}, {3, 3})->GetIsBolded(uniform));
  EXPECT_FALSE(Merged({state}, {0, 0})->GetIsBolded(uniform));
  EXPECT_TRUE(Merged({state}, {99, 99})->GetIsBolded(uniform));
}

TEST(GetFormatInfo, OfAMixedAttributeKeepsTheFirstValue) {
  bool uniform = true;
  EXPECT_EQ(Merged({State(u"a", {{0, Sized(36)}}), State(u"b")})->GetFontSize(uniform), 36);
  EXPECT_FALSE(uniform);
}

TEST(GetFormatInfo, OfDifferingAnchorsGivesNoCell) {
  Paragraph paragraph;
  paragraph.anchor = 7;
  const auto bottom = WithParagraph(paragraph);
  paragraph.anchor = 1;
  const auto top = WithParagraph(paragraph);
  EXPECT_EQ(Merged({bottom, bottom})->GetAnchorID(), 7);
  EXPECT_EQ(Merged({bottom, top})->GetAnchorID(), 9);
  EXPECT_EQ(Merged({bottom, top, bottom})->GetAnchorID(), 9);
}

TEST(GetFormatInfo, GathersTheWidestLineAndTheHighestBlockOfThoseThatWereMeasured) {
  Paragraph paragraph;
  EXPECT_EQ(Merged({WithParagraph(paragraph)})->GetMaxLineWidth(), 0);
  paragraph.lineWidth = 10;
  paragraph.blockHeight = 4;
  const auto wide = WithParagraph(paragraph);
  paragraph.lineWidth = 5;
  paragraph.blockHeight = 6;
  const auto high = WithParagraph(paragraph);
  EXPECT_EQ(Merged({wide, WithParagraph({}), high})->GetMaxLineWidth(), 10);
  EXPECT_EQ(Merged({wide, high})->GetMaxBlockHeight(), 6);
}

TEST(GetFormatInfo, TellsTheAreaOfTheRegionAndWhetherAllAgreeOnIt) {
  const boost::intrusive_ptr<CaptionRegions> regions(new CaptionRegions);
  regions->SetRegions({{"left", {0, 0, 50, 100}, true}, {"right", {50, 0, 50, 100}, true}});
  const auto captionIn = [&regions](const char* name) {
    Paragraph paragraph;
    if (name)
      paragraph.region = name;
    const auto caption = Held(WithParagraph(paragraph));
    caption->SetRegions(regions);
    return caption;
  };
  const auto known = [&](std::vector<const char*> names) -> std::optional<bool> {
    boost::intrusive_ptr<CaptionFormatInfo> info;
    bool first = true;
    for (const char* name : names) {
      captionIn(name)->GetFormatInfo(info, kWhole, 32, 15, first);
      first = false;
    }
    zebcore::geom::RectT<float> area;
    bool percent = true;
    bool all = true;
    return info->GetRegionArea(area, percent, all) ? std::optional(all) : std::nullopt;
  };
  EXPECT_EQ(known({"left"}), true);
  EXPECT_EQ(known({"left", "left"}), true);
  EXPECT_EQ(known({"left", "right"}), false);
  EXPECT_EQ(known({"left", nullptr}), false);
  EXPECT_EQ(known({nullptr, "left"}), false);
  EXPECT_EQ(known({nullptr, nullptr}), std::nullopt);
  EXPECT_EQ(known({"elsewhere"}), std::nullopt);
}

TEST(CaptionFormatInfo, AsConstructedIsUniformInEverything) {
  const boost::intrusive_ptr<CaptionFormatInfo> info(new CaptionFormatInfo);
  EXPECT_EQ(Mixed(info), Names{});
  EXPECT_EQ(info->GetAnchorID(), 9);
  bool uniform = false;
  EXPECT_EQ(info->GetCaptionType(uniform), kCaptionType_None);
}

TEST(CaptionFormatInfo, StoresTheUniformFlagBesideTheValue) {
  CaptionFormatInfo info;
  info.SetFontSize(20, false);
  bool uniform = true;
  EXPECT_EQ(info.GetFontSize(uniform), 20);
  EXPECT_FALSE(uniform);
  info.SetAnchorID(4, false);
  EXPECT_EQ(info.GetAnchorID(), 4);
}

TEST(CaptionFormatInfo, GivesAColourWithTheOpacityAsItsAlpha) {
  CaptionFormatInfo info;
  info.SetColor(CaptioningColor::kColorType_Edge, {1, 0.5F, 0, 1}, true);
  info.SetOpacity(CaptioningColor::kColorType_Edge, 0.25F, false);
  CaptioningColor color;
  bool uniform = true;
  info.GetColor(CaptioningColor::kColorType_Edge, color, uniform);
  EXPECT_EQ(color, CaptioningColor(1, 0.5F, 0, 0.25F));
  EXPECT_FALSE(uniform);
}

TEST(CaptionFormatInfo, CopiedIsAnObjectOfItsOwn) {
  const boost::intrusive_ptr<CaptionFormatInfo> info(new CaptionFormatInfo);
  CaptionFormatInfo copy(*info);
  copy.SetIsBolded(true, true);
  bool uniform = false;
  EXPECT_FALSE(info->GetIsBolded(uniform));
}

TEST(StreamFormatZero, HasTheDimensionsThatAnEmptyListShows) {
  EXPECT_EQ(GetCaptionRows(0), 15);
  EXPECT_EQ(GetCaptionColumns(0, false), 32);
  CaptionDisplaySettings settings;
  int columns = -1;
  int rows = -1;
  EXPECT_EQ(settings.GetRegionBaseDimensions(columns, rows), kStreamFormat_None);
  EXPECT_EQ(columns, 0);
  EXPECT_EQ(rows, 0);
}

TEST(NewCaption, TakesItsFormatFromThePatternAndNoTextAndNoMeasures) {
  Paragraph paragraph;
  paragraph.captionType = kCaptionType_RollUp2;
  paragraph.x = 3;
  paragraph.y = 12;
  paragraph.anchor = 7;
  paragraph.lineWidth = 20;
  paragraph.blockHeight = 2;
  TextSpanAttributes red = Italic();
  red.textColor = kRed;
  const auto pattern =
      Held(MakeCaptionState(TickTime(0), TickTime(5), u"ab", {{0, Share(red)}, {1, Share(Plain())}}, paragraph));
  const Caption made(TickTime(10), TickTime(20), pattern, kCC1, 32, 15);
  EXPECT_EQ(made.GetBeginTime(), TickTime(10));
  EXPECT_EQ(made.GetEndTime(), TickTime(20));
  EXPECT_EQ(made.GetState()->text, u"");
  EXPECT_FALSE(made.HasLineWidth());
  paragraph.lineWidth = Paragraph::kLineWidth_Unknown;
  paragraph.blockHeight = 0;
  EXPECT_EQ(made.GetState()->paragraph, paragraph);
  ASSERT_EQ(made.GetState()->runs.size(), 1U);
  EXPECT_EQ(*made.GetState()->runs[0].attributes, red);
}

TEST(NewCaption, TakesWhatWasChosenForAPatternIntoWhichNothingWasTypedYet) {
  const boost::intrusive_ptr<CaptionFormatInfo> info(new CaptionFormatInfo);
  info->SetIsItalicized(true, true);
  const CaptionStatePtr chosen = ApplyToRange(State(u""), kFormatItalic, *info, {0, 0}, kOpen);
  ASSERT_FALSE(chosen->runs[0].attributes->italic);
  const Caption made(TickTime(10), TickTime(20), Held(chosen), kOpen, 640, 360);
  EXPECT_TRUE(made.GetState()->runs[0].attributes->italic);
}

TEST(NewCaption, TakesTheNearestOfWhatTheFormatDoesNotAllow) {
  TextSpanAttributes span = Bold();
  span.size = 40;
  span.family = u"Some Family";
  span.textColor = {0.9F, 0.1F, 0.05F, 0.8F};
  const Caption made(TickTime(0), TickTime(1), Held(State(u"a", {{0, span}})), kTeletext, 40, 24);
  const TextSpanAttributes& kept = *made.GetState()->runs[0].attributes;
  EXPECT_FALSE(kept.bold);
  EXPECT_EQ(kept.size, 36);
  EXPECT_EQ(kept.family, u"default");
  EXPECT_EQ(kept.textColor, kRed);
  EXPECT_EQ(made.GetState()->paragraph.y, 1);
}

TEST(Caption, AsConstructedIsEmptyAndServesAsAPattern) {
  const boost::intrusive_ptr<Caption> pattern(new Caption);
  UString text = u"something";
  pattern->GetCaptionText(text, true);
  EXPECT_EQ(text, u"");
  EXPECT_FALSE(pattern->HasLineWidth());
  const Caption made(TickTime(1), TickTime(2), pattern, kCC1, 32, 15);
  EXPECT_EQ(made.GetState()->paragraph, Paragraph());
}

TEST(Caption, GivesItsTextAsTypedOrWithoutTheLastLineFeeds) {
  const auto caption = Held(State(u"a\nb\n\n"));
  UString text;
  caption->GetCaptionText(text, true);
  EXPECT_EQ(text, u"a\nb\n\n");
  caption->GetCaptionText(text, false);
  EXPECT_EQ(text, u"a\nb");
}

TEST(CaptioningColor, IsTransparentWithoutAlphaAndIsOrderedByItsChannels) {
  EXPECT_TRUE(CaptioningColor(1, 1, 1, 0).IsTransparent());
  EXPECT_FALSE(CaptioningColor(0, 0, 0, 0.01F).IsTransparent());
  EXPECT_LT(kBlack, kRed);
  EXPECT_LT(CaptioningColor(0, 1, 1, 1), kRed);
}

TEST(SharedSpans, OfEqualAttributesAreOneObjectThatGoesWithItsLastUser) {
  SharedSpan first = Share(Sized(77));
  EXPECT_EQ(first, Share(Sized(77)));
  EXPECT_NE(first, Share(Sized(78)));
  const std::weak_ptr<const TextSpanAttributes> watch = first;
  first.reset();
  EXPECT_TRUE(watch.expired());
  EXPECT_EQ(Share(Sized(77))->size, 77);
}

TEST(GenericFonts, AreKnownByNameAndStoodInForByAFamily) {
  for (const char16_t* name :
       {u"default", u"monospace", u"sansSerif", u"serif", u"monospaceSansSerif", u"monospaceSerif",
        u"proportionalSansSerif", u"proportionalSerif", u"casual", u"cursive", u"smallCapitals"})
    EXPECT_TRUE(TextSpanAttributes::IsGenericFontName(name));
  EXPECT_FALSE(TextSpanAttributes::IsGenericFontName(u"Default"));
  EXPECT_FALSE(TextSpanAttributes::IsGenericFontName(u""));
  EXPECT_EQ(TextSpanAttributes::GetGenericUIFontName(u"Some Family"), u"Some Family");
  SetGenericUIFontNames({{u"serif", u"A Serif"}});
  EXPECT_EQ(TextSpanAttributes::GetGenericUIFontName(u"serif"), u"A Serif");
  SetGenericUIFontNames({});
  EXPECT_NE(TextSpanAttributes::GetGenericUIFontName(u"serif"), u"A Serif");
  EXPECT_FALSE(TextSpanAttributes::GetGenericUIFontName(u"default").empty());
}

TEST(GenericFonts, ANameThatAFamilyIsGivenForIsGenericToo) {
  EXPECT_FALSE(TextSpanAttributes::IsGenericFontName(u"House Style"));
  SetGenericUIFontNames({{u"House Style", u"A Serif"}});
  EXPECT_TRUE(TextSpanAttributes::IsGenericFontName(u"House Style"));
  EXPECT_EQ(TextSpanAttributes::GetGenericUIFontName(u"House Style"), u"A Serif");
  EXPECT_TRUE(TextSpanAttributes::IsGenericFontName(u"serif"));
  SetGenericUIFontNames({});
  EXPECT_FALSE(TextSpanAttributes::IsGenericFontName(u"House Style"));
}

TEST(RequestHash, IsAPureFunctionOfStreamTimeAndFormatAndNeverZero) {
  const auto hash = [](std::uint64_t low, std::int64_t time, StreamFormat format) {
    return CaptioningRenderableModel::CalculateRequestHash({1, low}, TickTime(time), format);
  };
  EXPECT_EQ(hash(1, 2, 3), hash(1, 2, 3));
  EXPECT_NE(hash(1, 2, 3), hash(2, 2, 3));
  EXPECT_NE(hash(1, 2, 3), hash(1, 3, 3));
  EXPECT_NE(hash(1, 2, 3), hash(1, 2, 4));
  EXPECT_NE(hash(0, 0, 0), zebcore::utility::Guid());
}

TEST(Conversion, KeepsProportionsBetweenPixelsAndCells) {
  Paragraph paragraph;
  paragraph.x = 960;
  paragraph.y = 864;
  paragraph.lineSpacing = 20;
  paragraph.lineWidth = 500;
  paragraph.blockHeight = 80;
  const auto closed = ConvertToFormat(WithParagraph(paragraph), kOpen, kCC1, 32, 15, 1920, 1080);
  EXPECT_EQ(closed->paragraph.x, 16);
  EXPECT_EQ(closed->paragraph.y, 12);
  EXPECT_EQ(closed->paragraph.lineSpacing, 0);
  EXPECT_EQ(closed->paragraph.lineWidth, Paragraph::kLineWidth_Unknown);
  EXPECT_EQ(closed->paragraph.captionType, kCaptionType_PopOn);
  const auto open = ConvertToFormat(closed, kCC1, kOpen, 32, 15, 1920, 1080);
  EXPECT_EQ(open->paragraph.x, 960);
  EXPECT_EQ(open->paragraph.y, 864);
  EXPECT_EQ(open->paragraph.captionType, kCaptionType_None);
}

TEST(Conversion, PutsTheTopRowOfOneFormatOnTheTopRowOfTheOther) {
  const auto teletext = ConvertToFormat(WithParagraph({}), kCC1, kTeletext, 40, 24, 0, 0);
  EXPECT_EQ(teletext->paragraph.y, 1);
  EXPECT_EQ(ConvertToFormat(teletext, kTeletext, kEbu, 40, 23, 0, 0)->paragraph.y, 0);
}

TEST(Conversion, TakesTheNearestColourToTheEye) {
  TextSpanAttributes span;
  span.textColor = {0.95F, 0.9F, 0.2F, 1};
  span.backgroundColor = {0.1F, 0.1F, 0.3F, 0.4F};
  const auto after = ConvertToFormat(State(u"a", {{0, span}}), kOpen, kCC1, 32, 15, 1920, 1080);
  EXPECT_EQ(after->runs[0].attributes->textColor, CaptioningColor(1, 1, 0, 1));
  EXPECT_EQ(after->runs[0].attributes->backgroundColor, CaptioningColor(0, 0, 0, 0.5F));
}

TEST(Conversion, MakesOneRunOfTwoThatHaveBecomeEqual) {
  const auto after = ConvertToFormat(State(u"ab", {{0, Bold()}, {1, Plain()}}), kOpen, kCC1, 32, 15, 1920, 1080);
  EXPECT_EQ(after->runs.size(), 1U);
}

TEST(Conversion, OfWhatEveryFormatHasChangesNoRun) {
  const auto state = State(u"plain");
  for (const StreamFormat format : {kCC1, k708, kTeletext, kEbu, kAustralian})
    EXPECT_EQ(ConvertToFormat(state, kOpen, format, 0, 0, 1920, 1080)->runs, state->runs);
}
