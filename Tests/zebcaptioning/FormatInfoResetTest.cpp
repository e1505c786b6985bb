#include <optional>

#include "Builders.h"
#include "zebcaptioning/CaptionRegions.h"

// What a format info holds before anything was merged, and after it was used for other captions before.
using namespace builders;

namespace {

using Area = zebcore::geom::RectT<float>;

struct KnownArea {
  Area area;
  bool percent;
  bool known;
};

std::optional<KnownArea> AreaOf(const CaptionFormatInfo& info) {
  KnownArea found{{}, false, false};
  return info.GetRegionArea(found.area, found.percent, found.known) ? std::optional(found) : std::nullopt;
}

boost::intrusive_ptr<Caption> InRegion(const char* name, const boost::intrusive_ptr<CaptionRegions>& regions) {
  ParagraphStyleAttributes paragraph;
  paragraph.region = name;
  const auto caption = Held(MakeCaptionState(TickTime(0), TickTime(100), u"text", {}, paragraph));
  caption->SetRegions(regions);
  return caption;
}

} // namespace

TEST(CaptionFormatInfo, AsConstructedHasTheValuesOfACaptionThatNobodyHasFormatted) {
  CaptionFormatInfo info;
  const TextSpanAttributes plain;
  const ParagraphStyleAttributes paragraph;
  bool uniform = false;
  UString family;
  info.GetFontFamily(family, uniform);
  EXPECT_EQ(family, plain.family);
  EXPECT_EQ(info.GetFontSize(uniform), plain.size);
  EXPECT_EQ(info.GetTextEdgeWidth(uniform), plain.edgeWidth);
  EXPECT_EQ(info.GetTextAlignment(uniform), paragraph.alignment);
  EXPECT_EQ(info.GetLineSpacing(uniform), paragraph.lineSpacing);
  const std::pair<CaptioningColor::ColorType, CaptioningColor> colors[] = {
      {CaptioningColor::kColorType_Text, plain.textColor},
      {CaptioningColor::kColorType_Background, plain.backgroundColor},
      {CaptioningColor::kColorType_Edge, plain.edgeColor}};
  for (const auto& [type, expected] : colors) {
    CaptioningColor color;
    info.GetColor(type, color, uniform);
    EXPECT_EQ(color, expected);
    EXPECT_TRUE(uniform);
  }
  EXPECT_FALSE(AreaOf(info));
}

TEST(CaptionFormatInfo, UsedForOtherCaptionsBeforeKeepsNothingOfThem) {
  const auto inBold = Held(State(u"bold", {{0, Bold()}}));
  const auto plain = Held(State(u"plain"));
  boost::intrusive_ptr<CaptionFormatInfo> info(new CaptionFormatInfo);
  info->SetForceBolded(true);
  info->SetForceItalicized(true);
  info->SetRegionArea({1, 2, 3, 4}, true, true);
  inBold->GetFormatInfo(info, kWhole, 32, 15, true);
  EXPECT_FALSE(info->GetForceBolded());
  EXPECT_FALSE(info->GetForceItalicized());
  EXPECT_FALSE(AreaOf(*info));
  // The bold look is merged anew, though it was the one before.
  plain->GetFormatInfo(info, kWhole, 32, 15, true);
  inBold->GetFormatInfo(info, kWhole, 32, 15, false);
  bool uniform = true;
  EXPECT_FALSE(info->GetIsBolded(uniform));
  EXPECT_FALSE(uniform);
}

TEST(CaptionFormatInfo, KeepsTheAreaThatIsSet) {
  CaptionFormatInfo info;
  info.SetRegionArea({10, 20, 30, 40}, true, false);
  const auto found = AreaOf(info);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->area, Area(10, 20, 30, 40));
  EXPECT_TRUE(found->percent);
  EXPECT_FALSE(found->known);
  info.SetRegionArea({1, 2, 3, 4}, false, true);
  EXPECT_EQ(AreaOf(info)->area, Area(1, 2, 3, 4));
  EXPECT_FALSE(AreaOf(info)->percent);
  EXPECT_TRUE(AreaOf(info)->known);
}

TEST(GetFormatInfo, TellsTheAreaOfTheFirstCaptionThatHasOne) {
  const boost::intrusive_ptr<CaptionRegions> regions(new CaptionRegions);
  regions->SetRegions({{"left", {0, 0, 50, 100}, true}, {"box", {100, 200, 300, 400}, false}});
  boost::intrusive_ptr<CaptionFormatInfo> info;
  const auto merge = [&](const char* name, bool first) {
    InRegion(name, regions)->GetFormatInfo(info, kWhole, 32, 15, first);
  };
  merge("left", true);
  EXPECT_EQ(AreaOf(*info)->area, Area(0, 0, 50, 100));
  EXPECT_TRUE(AreaOf(*info)->percent);
  merge("box", false);
  EXPECT_EQ(AreaOf(*info)->area, Area(0, 0, 50, 100));
  EXPECT_FALSE(AreaOf(*info)->known);
  merge("none", true);
  merge("left", false);
  EXPECT_EQ(AreaOf(*info)->area, Area(0, 0, 50, 100));
  EXPECT_TRUE(AreaOf(*info)->percent);
  EXPECT_FALSE(AreaOf(*info)->known);
}

TEST(CaptionFormatInfo, OfMixedRegionsAndStylesIsUniformAgainForOneCaption) {
  ParagraphStyleAttributes named;
  named.region = "left";
  named.style = "loud";
  const auto inRegion = Held(MakeCaptionState(TickTime(0), TickTime(100), u"text", {}, named));
  const auto plain = Held(State(u"plain"));
  boost::intrusive_ptr<CaptionFormatInfo> info;
  inRegion->GetFormatInfo(info, kWhole, 32, 15, true);
  plain->GetFormatInfo(info, kWhole, 32, 15, false);
  bool uniform = true;
  EXPECT_EQ(info->GetRegionName(uniform), u"left");
  EXPECT_FALSE(uniform);
  EXPECT_EQ(info->GetStyleName(uniform), u"loud");
  EXPECT_FALSE(uniform);
  plain->GetFormatInfo(info, kWhole, 32, 15, true);
  EXPECT_EQ(info->GetRegionName(uniform), u"");
  EXPECT_TRUE(uniform);
  EXPECT_EQ(info->GetStyleName(uniform), u"");
  EXPECT_TRUE(uniform);
}
