#include "Builders.h"

using namespace builders;

namespace {

struct Legal {
  bool limited = false;
  std::map<CaptioningColor, UString> colors;
  std::map<float, UString> opacities;
};

Legal LegalOf(StreamFormat format, CaptioningColor::ColorType type) {
  Legal legal;
  legal.limited = CaptioningColor::EnumerateLegalColors(format, type, legal.colors, legal.opacities);
  return legal;
}

constexpr auto kText = CaptioningColor::kColorType_Text;
constexpr auto kBackground = CaptioningColor::kColorType_Background;
constexpr auto kEdge = CaptioningColor::kColorType_Edge;

std::vector<StreamFormat> EveryFormat() {
  std::vector<StreamFormat> formats;
  for (const StreamFamily& family : GetStreamFamilies()) {
    for (int channel = 1; channel <= family.channels; ++channel)
      formats.push_back(GetStreamFormat(family.name, channel));
  }
  return formats;
}

std::set<CaptionType> TypesOf(StreamFormat format) {
  std::set<CaptionType> types;
  GetSupportedCaptionTypes(format, types);
  return types;
}

} // namespace

TEST(StreamNumbers, OfTheFourChannelsAreFourCharacters) {
  for (int channel = 1; channel <= 4; ++channel)
    EXPECT_EQ(GetStreamFormat("cea608", channel), 0x36434330U + static_cast<unsigned>(channel));
  EXPECT_EQ(GetStreamFormat("cea608", 0), 0U);
  EXPECT_EQ(GetStreamFormat("cea608", 5), 0U);
  EXPECT_EQ(GetStreamFormat("CEA608", 1), 0U);
}

TEST(StreamNumbers, AreAllDifferentAndLeadBackToTheirFamilyAndChannel) {
  std::set<StreamFormat> seen;
  for (const StreamFamily& family : GetStreamFamilies()) {
    for (int channel = 1; channel <= family.channels; ++channel) {
      const StreamFormat format = GetStreamFormat(family.name, channel);
      EXPECT_TRUE(seen.insert(format).second);
      const auto number = ReadStreamNumber(format);
      ASSERT_TRUE(number);
      EXPECT_EQ(number->family, family.family);
      EXPECT_EQ(number->channel, channel);
    }
  }
  EXPECT_FALSE(ReadStreamNumber(0));
  EXPECT_FALSE(ReadStreamNumber(0x36434330));
  EXPECT_FALSE(ReadStreamNumber(0x36434335));
  EXPECT_FALSE(ReadStreamNumber(0xFFFFFFFF));
}

TEST(StreamLabels, AreAllDifferent) {
  std::set<UString> labels;
  for (const StreamFormat format : EveryFormat())
    EXPECT_TRUE(labels.insert(GetFullStreamFormatLabel(format)).second);
  EXPECT_EQ(GetFullStreamFormatLabel(kCC1), u"CEA-608 CC1");
  EXPECT_EQ(GetFullStreamFormatLabel(608), u"CEA-608");
  EXPECT_EQ(GetFullStreamFormatLabel(kTeletext), u"Teletext page 888");
  EXPECT_EQ(GetFullStreamFormatLabel(kAustralian), u"Australian page 801");
  EXPECT_EQ(GetFullStreamFormatLabel(0), u"");
}

TEST(FormatPredicates, HoldForOneFamilyEach) {
  for (const StreamFormat format : EveryFormat()) {
    const auto family = ReadStreamNumber(format)->family;
    EXPECT_EQ(IsOpenCaptions(format), family == FormatFamily::Open);
    EXPECT_EQ(IsTeletext(format), family == FormatFamily::Teletext);
    EXPECT_EQ(IsAustralianCaption(format), family == FormatFamily::Australian);
    EXPECT_EQ(IsEbuN19(format), family == FormatFamily::EbuN19);
  }
  for (const StreamFormat format : {StreamFormat{0}, StreamFormat{608}})
    EXPECT_FALSE(IsOpenCaptions(format) || IsTeletext(format) || IsAustralianCaption(format) || IsEbuN19(format));
}

TEST(Grids, AreThoseOfTheStandards) {
  EXPECT_EQ(GetCaptionRows(kCC1), 15);
  EXPECT_EQ(GetCaptionColumns(kCC1, false), 32);
  EXPECT_EQ(GetCaptionRows(k708), 15);
  EXPECT_EQ(GetCaptionColumns(k708, false), 42);
  EXPECT_EQ(GetCaptionColumns(k708, true), 32);
  for (const StreamFormat format : {kTeletext, kAustralian}) {
    EXPECT_EQ(GetCaptionColumns(format, false), 40);
    EXPECT_EQ(GetTopPosition(format), 1);
    EXPECT_EQ(GetCaptionRows(format) - 1, 23);
  }
  EXPECT_EQ(GetCaptionColumns(kEbu, false), 40);
  EXPECT_EQ(GetCaptionRows(kEbu) - GetTopPosition(kEbu), 23);
  EXPECT_EQ(GetCaptionRows(kOpen), GetCaptionRows(0));
}

TEST(DisplayTypes, OfThe608FamilyCanBeAskedByItsNumber) {
  EXPECT_EQ(TypesOf(608), TypesOf(kCC1));
  EXPECT_EQ(TypesOf(608).size(), 5U);
  std::set<UString> names;
  for (const CaptionType type : TypesOf(608))
    names.insert(GetCaptionTypeDescription(type));
  EXPECT_EQ(names,
            (std::set<UString>{u"Pop-on", u"Paint-on", u"Roll-up 2 rows", u"Roll-up 3 rows", u"Roll-up 4 rows"}));
}

TEST(DisplayTypes, AreNoneWhereTheFormatKnowsNone) {
  std::set<CaptionType> types{7};
  for (const StreamFormat format : {kOpen, kTeletext, kAustralian, kEbu, StreamFormat{0}}) {
    types.insert(7);
    EXPECT_FALSE(GetSupportedCaptionTypes(format, types));
    EXPECT_TRUE(types.empty());
    EXPECT_EQ(GetDefaultCaptionType(format), kCaptionType_None);
  }
  EXPECT_EQ(GetCaptionTypeDescription(kCaptionType_None), u"");
}

TEST(LegalColours, Of608AreEightWithThreeOpacitiesBehindThem) {
  const Legal text = LegalOf(kCC1, kText);
  EXPECT_TRUE(text.limited);
  EXPECT_EQ(text.colors.size(), 8U);
  EXPECT_EQ(text.colors.at(kRed), u"Red");
  EXPECT_EQ(text.opacities.size(), 1U);
  const Legal background = LegalOf(kCC1, kBackground);
  EXPECT_EQ(background.colors.size(), 8U);
  EXPECT_EQ(background.opacities,
            (std::map<float, UString>{{0.0F, u"Transparent"}, {0.5F, u"Semi-transparent"}, {1.0F, u"Opaque"}}));
  EXPECT_FALSE(LegalOf(kCC1, kEdge).limited);
}

TEST(LegalColours, Of708AreFourLevelsOfEachChannel) {
  for (const auto type : {kText, kBackground, kEdge}) {
    const Legal legal = LegalOf(k708, type);
    EXPECT_EQ(legal.colors.size(), 64U);
    EXPECT_EQ(legal.opacities.size(), 3U);
    std::set<UString> names;
    for (const auto& [color, name] : legal.colors)
      names.insert(name);
    EXPECT_EQ(names.size(), 64U);
  }
  EXPECT_TRUE(LegalOf(k708, kText).colors.contains({1.0F / 3, 2.0F / 3, 1, 1}));
}

TEST(LegalColours, OfTeletextHaveNoBlackCharacters) {
  for (const StreamFormat format : {kTeletext, kAustralian}) {
    EXPECT_EQ(LegalOf(format, kText).colors.size(), 7U);
    EXPECT_FALSE(LegalOf(format, kText).colors.contains(kBlack));
    EXPECT_EQ(LegalOf(format, kBackground).colors.size(), 8U);
    EXPECT_EQ(LegalOf(format, kBackground).opacities.size(), 1U);
  }
}

TEST(LegalColours, OfOpenCaptionsAndOfNoFormatAreNotListed) {
  for (const StreamFormat format : {kOpen, StreamFormat{0}}) {
    std::map<CaptioningColor, UString> colors{{kRed, u"x"}};
    std::map<float, UString> opacities{{1.0F, u"x"}};
    EXPECT_FALSE(CaptioningColor::EnumerateLegalColors(format, kText, colors, opacities));
    EXPECT_TRUE(colors.empty());
    EXPECT_TRUE(opacities.empty());
  }
}

TEST(Faces, AreBoldOnOpenCaptionsAloneAndSlantedOrUnderlinedWhereTheStandardCan) {
  for (const StreamFormat format : EveryFormat()) {
    const FormatFacts& facts = GetFormatFacts(format);
    EXPECT_EQ(facts.bold, IsOpenCaptions(format));
    EXPECT_EQ(facts.italic, !IsTeletext(format) && !IsAustralianCaption(format));
    EXPECT_EQ(facts.underline, facts.italic);
    EXPECT_EQ(facts.doubleHeight, IsTeletext(format) || IsAustralianCaption(format) || IsEbuN19(format));
  }
}

TEST(NearestColour, OfALegalOneIsItself) {
  for (const StreamFormat format : EveryFormat()) {
    for (const auto type : {kText, kBackground, kEdge}) {
      for (const auto& [color, name] : LegalOf(format, type).colors)
        EXPECT_EQ(NearestLegalColor(format, type, color), color);
    }
  }
}

TEST(NearestColour, IsAlwaysLegal) {
  EXPECT_TRUE(CheckTenThousand("any colour in any format", [] {
    const auto formats = EveryFormat();
    const StreamFormat format = formats[*rc::gen::inRange<std::size_t>(0, formats.size())];
    const auto type = static_cast<CaptioningColor::ColorType>(*rc::gen::inRange(0, 3));
    const auto channel = [] { return static_cast<float>(*rc::gen::inRange(-20, 280)) / 255.0F; };
    const CaptioningColor nearest =
        NearestLegalColor(format, type, CaptioningColor(channel(), channel(), channel(), channel()));
    CaptioningColor snapped = nearest;
    const bool isNone = nearest == CaptioningColor();
    RC_ASSERT((SnapToLegalColor(format, type, snapped) || isNone));
    RC_ASSERT(snapped == nearest);
  }));
}

TEST(ReplacedFacts, StandInForTheFormatsOwnUntilTheyAreTakenBack) {
  FactsOverride facts;
  facts.types = {{40, u"Forty"}};
  facts.colors[kText] = std::map<CaptioningColor, UString>{{{0.1F, 0.2F, 0.3F, 1}, u""}};
  facts.opacities[kBackground] = std::map<float, UString>{{0.25F, u"Quarter"}};
  OverrideFacts(kCC1, facts);
  EXPECT_EQ(TypesOf(kCC1), std::set<CaptionType>{40});
  EXPECT_EQ(GetCaptionTypeDescription(40), u"Forty");
  EXPECT_EQ(LegalOf(kCC1, kText).colors.size(), 1U);
  EXPECT_EQ(LegalOf(kCC1, kBackground).opacities.size(), 1U);
  EXPECT_EQ(LegalOf(kCC1, kBackground).colors.size(), 8U);
  CaptioningColor red = kRed;
  EXPECT_FALSE(SnapToLegalColor(kCC1, kText, red));
  OverrideFacts(kCC1, std::nullopt);
  EXPECT_EQ(TypesOf(kCC1).size(), 5U);
  EXPECT_TRUE(SnapToLegalColor(kCC1, kText, red));
}
