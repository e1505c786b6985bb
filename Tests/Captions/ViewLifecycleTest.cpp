#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "MZ/Actions.h"
#include "Support.h"
#include "UIF/Drawing.h"

// What a view is from its making to its end, and what it makes of another source.
namespace Captivo::Testing {

namespace {

using Strings = std::vector<std::string>;
using Json = nlohmann::json;

constexpr StreamFormat kTeletext = 0x54545831;   // "TTX1"
constexpr StreamFormat kAustralian = 0x41555331; // "AUS1"

class ViewLifecycle : public PanelTest {
 protected:
  // Stations joined or left by the view itself.
  static Strings TakeStations(const std::string& call) {
    Strings stations;
    for (const auto& recorded : zebcore::trace::Take()) {
      if (recorded.call == call && recorded.args.at("listener") == "Captivo::CaptionsView")
        stations.push_back(recorded.args.at("station"));
    }
    return stations;
  }
  // How often the bar was laid out since last asked: each time its first control is placed.
  static int TakeLayouts() {
    int layouts = 0;
    for (const auto& recorded : zebcore::trace::Take()) {
      layouts +=
          recorded.call == "UI_Node::UI_SetLocalRectF" && recorded.args.at("rect") == Json({3.0, 3.0, 167.0, 20.0});
    }
    return layouts;
  }
  void ShowStream(StreamFormat format) {
    clip = AddClip();
    stream = AddStream(clip, MakeCaptions({1}), format);
    OpenPanel(1000, 700);
    SelectClip(clip);
    zebcore::trace::Take();
  }
  CaptionsSource& Source() { return Inspector::Source(Pane()); }
  CaptionsSource SourceOf(StreamFormat format) {
    const auto other = AddClip();
    AddStream(other, MakeCaptions({1}), format);
    CaptionsSource source{InterfaceRef<>(other)};
    source.Refresh();
    return source;
  }
  UString Size() { return Inspector::GridSizeText(View())->GetValue(); }
};

} // namespace

TEST_F(ViewLifecycle, ANewViewShowsNothingAndHasMadeNothingYet) {
  CaptionsView view("captions");
  EXPECT_EQ(Inspector::ContextName(view), "captions");
  EXPECT_EQ(Inspector::Pane(view), nullptr);
  EXPECT_FALSE(Inspector::IsCreated(view));
  EXPECT_FALSE(Inspector::IsOnDuty(view));
  EXPECT_EQ(Inspector::ScrollPosition(view), 0);
  EXPECT_EQ(Inspector::FormatBarHeight(view), 52);
  EXPECT_FALSE(Inspector::RegionAndStyleEnabled(view));
  EXPECT_EQ(Inspector::FilterBox(view), nullptr);
  EXPECT_EQ(Inspector::DeleteCaptionButton(view), nullptr);
  EXPECT_TRUE(Inspector::CaptionTypeMap(view).empty());
  EXPECT_EQ(Inspector::StreamFormatOnShow(view), 0U);
  EXPECT_FALSE(Inspector::IsOpenCaptions(view));
  EXPECT_TRUE(Inspector::FamilyFonts(view).empty());
  EXPECT_EQ(Inspector::ColorType(view), 0);
  EXPECT_NE(Inspector::FormatInfo(view), nullptr);
  EXPECT_TRUE(Inspector::UnderlineAllowed(view));
  EXPECT_TRUE(Inspector::ItalicAllowed(view));
  EXPECT_TRUE(Inspector::BoldAllowed(view));
  EXPECT_EQ(Inspector::FrameRect(view), (RectT<std::int32_t>{0, 0, 0, 0}));
  EXPECT_EQ(Inspector::GridColumns(view), 0);
  EXPECT_EQ(Inspector::GridRows(view), 0);
  EXPECT_EQ(Inspector::MinPositionX(view), 0);
  EXPECT_EQ(Inspector::MaxPositionX(view), 0);
  EXPECT_EQ(Inspector::MinPositionY(view), 0);
  EXPECT_EQ(Inspector::MaxPositionY(view), 0);
  const auto& edge = Inspector::LastEdgeColor(view);
  EXPECT_EQ(std::vector<float>({edge.red, edge.green, edge.blue, edge.alpha}), std::vector<float>(4, 0.0F));
  EXPECT_TRUE(Inspector::FontStyleName(view).empty());
  EXPECT_FALSE(Inspector::EyedropperActive(view));
}

TEST_F(ViewLifecycle, AFilterThatChangesBeforeThereIsAPaneDoesNothing) {
  CaptionsView view("captions");
  zebcore::trace::Take();
  Inspector::ReportFilterChange(view);
  EXPECT_TRUE(zebcore::trace::Take().empty());
}

TEST_F(ViewLifecycle, DutyOfAViewWithoutAPaneIsOnlyRemembered) {
  CaptionsView view("captions");
  view.NowOnDuty();
  EXPECT_TRUE(Inspector::IsOnDuty(view));
  view.NowOffDuty();
  EXPECT_FALSE(Inspector::IsOnDuty(view));
}

TEST_F(ViewLifecycle, AViewWithoutAPaneOffersRoomForARowMoreUnlessStacked) {
  CaptionsView view("captions");
  EXPECT_EQ(view.GetStackedDimensionHeightMin(), 75 + 52 + 51);
  view.SetIsStacked(true);
  EXPECT_EQ(view.GetStackedDimensionHeightMin(), 52 + 51);
}

TEST_F(ViewLifecycle, TheViewHasNoParentAndTheMenuOfThePanel) {
  OpenPanel();
  EXPECT_EQ(View().GetParent(), nullptr);
  EXPECT_EQ(View().GetWingMenu(), "Captivo_Wing_Menu");
}

TEST_F(ViewLifecycle, TheViewJoinsPickerAndBarAsTheyAreMadeAndTheOtherStationsLast) {
  OpenPanel();
  EXPECT_EQ(TakeStations("messaging::AddListener"),
            (Strings{Inspector::ColorPicker(View()).GetStationID().Text(), Inspector::Bar(View()).GetStationID().Text(),
                     MZ::kStation_SequenceActivation.Text(), BE::kBackendProjectActivationStationID.Text()}));
  EXPECT_TRUE(Inspector::IsCreated(View()));
}

TEST_F(ViewLifecycle, TheViewIsPaintedInTheColourOfTheWindow) {
  OpenPanel(600, 500);
  zebcore::trace::Take();
  Paint();
  const UIF::Color color = UIF::ColorManager::GetColor(UIF::kColor_WindowBackground);
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call != "DC::FillRect")
      continue;
    EXPECT_EQ(call.args.at("rect"), Json({0, 0, 600, 500}));
    EXPECT_EQ(call.args.at("color"), Json({color.red, color.green, color.blue}));
    EXPECT_EQ(call.args.at("alpha"), 255);
    return;
  }
  FAIL() << "nothing was filled";
}

TEST_F(ViewLifecycle, DestroyingGivesUpThePaneFirstAndTheStationsAfterIt) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  const std::string picker = Inspector::ColorPicker(View()).GetStationID().Text();
  const std::string bar = Inspector::Bar(View()).GetStationID().Text();
  View().Destroy();
  Strings steps;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call == "TabView::Destroy")
      steps.push_back("closing " + call.args.at("flags").dump());
    else if (call.call == "CaptioningStreamUpdater::~CaptioningStreamUpdater")
      steps.push_back("the pane is gone");
    else if (call.call == "messaging::RemoveListener" && call.args.at("listener") == "Captivo::CaptionsView")
      steps.push_back(call.args.at("station"));
  }
  EXPECT_EQ(steps, (Strings{"closing 1", "the pane is gone", picker, bar, MZ::kStation_SequenceActivation.Text(),
                            BE::kBackendProjectActivationStationID.Text()}));
  EXPECT_FALSE(Inspector::IsCreated(View()));
  EXPECT_EQ(Inspector::Pane(View()), nullptr);
}

TEST_F(ViewLifecycle, ADestroyedViewLetsGoOfTheButtonsBelowAndHoldsTheBar) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  View().Destroy();
  EXPECT_EQ(Inspector::ImportSettingsButton(View()), nullptr);
  EXPECT_EQ(Inspector::ExportSettingsButton(View()), nullptr);
  EXPECT_EQ(Inspector::AddCaptionButton(View()), nullptr);
  EXPECT_EQ(Inspector::DeleteCaptionButton(View()), nullptr);
  EXPECT_NE(Inspector::FilterBox(View()), nullptr);
  EXPECT_NE(Inspector::OpenPositionYUnitText(View()), nullptr);
  EXPECT_EQ(Inspector::AlignLeftButton(View()).GetNode(), nullptr);
  EXPECT_EQ(Inspector::BoldButton(View()).GetNode(), nullptr);
  EXPECT_EQ(Inspector::ColorPicker(View()).GetNode(), nullptr);
  EXPECT_EQ(Inspector::Bar(View()).GetBounds(), (RectT<int>{})) << "nor is there a bar";
}

TEST_F(ViewLifecycle, OnlyTheMessagesOfItsStationsMoveTheView) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  View().HandleMessage(HSL::CaptionCommitEditsMessage());
  EXPECT_TRUE(zebcore::trace::Take().empty());
}

TEST_F(ViewLifecycle, AProjectThatComesToTheFrontBringsTheControlsUpToDate) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  Inspector::StreamLabel(View())->SetDisabled(true);
  zebcore::messaging::BroadcastMessage(BE::kBackendProjectActivationStationID, BE::ProjectActivatedMessage());
  EXPECT_FALSE(Inspector::StreamLabel(View())->IsDisabled());
}

// --- Another source

TEST_F(ViewLifecycle, AnotherSourceOfTheSameClassIsLaidOutOnce) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  const CaptionsSource teletext = SourceOf(kTeletext);
  zebcore::trace::Take();
  View().UpdateForSource(teletext, 40, 25);
  EXPECT_EQ(TakeLayouts(), 1);
}

TEST_F(ViewLifecycle, ASourceOfTheOtherClassIsLaidOutBeforeAndAfterItsPopupsAreFilled) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  const CaptionsSource open = SourceOf(kOpenTrack1);
  zebcore::trace::Take();
  View().UpdateForSource(open, 32, 15);
  EXPECT_EQ(TakeLayouts(), 2);
  EXPECT_EQ(Pane().GetBounds().y, 85 + 7);
}

TEST_F(ViewLifecycle, AnotherSourceIsTakenUpFromTheFilterToTheStatesInThisOrder) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  const CaptionsSource open = SourceOf(kOpenTrack1);
  const auto take = [] {
    Strings steps;
    for (const auto& call : zebcore::trace::Take()) {
      std::string step;
      if (call.call == "UI_TextEdit::SetValue")
        step = "filter, notifying " + call.args.at("notify").dump();
      else if (call.call == "UI_Node::UI_SetLocalRectF" && call.args.at("rect") == Json({3.0, 3.0, 167.0, 20.0}))
        step = "bar";
      else if (call.call == "ScrollBar::SetBounds")
        step = "content";
      else if (call.call == "UI_Node::UI_Show" && call.args.at("class") == "zebui::controls::UI_Divider")
        step = "a divider on or off";
      else if (call.call == "UI_Node::UI_Show")
        step = "visibility";
      else if (call.call == "UI_Popup::DeleteAllItems")
        step = "popup";
      else if (call.call == "UI_StaticText::SetValue")
        step = "text " + call.args.at("text").get<std::string>();
      else if (call.call == "View::Enable")
        step = "states";
      if (!step.empty() && (steps.empty() || step == "popup" || steps.back() != step))
        steps.push_back(step);
    }
    return steps;
  };
  take();
  View().UpdateForSource(open, 32, 15);
  EXPECT_EQ(take(), (Strings{"filter, notifying false", "bar", "content", "visibility", "popup", "popup",
                             "text Frame:", "text 1920x1080", "bar", "visibility", "states"}));
  View().UpdateForSource(open, 32, 15);
  EXPECT_EQ(take(), (Strings{"filter, notifying false", "popup", "popup", "text Frame:", "text 1920x1080", "bar",
                             "visibility", "states"}));
}

TEST_F(ViewLifecycle, ControlsComeOnShowAndGoInTheirOrder) {
  ShowStream(kOpenTrack1);
  const CaptionsSource source = Source();
  zebcore::trace::Take();
  View().UpdateForSource(source, 32, 15);
  Strings shown;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call == "UI_Node::UI_Show") {
      const std::string control = call.args.contains("control") ? call.args.at("control") : call.args.at("class");
      shown.push_back(control.substr(control.rfind(':') + 1) + (call.args.at("show") == true ? " on" : " off"));
    }
  }
  const std::string number = "UI_HotTextNumberT<double> on";
  EXPECT_EQ(
      shown,
      (Strings{// font, size, edge, line spacing
               "UI_StaticText on", "UI_Popup on", "UI_Popup on", "UI_StaticText on", number, "UI_StaticText on", number,
               "UI_StaticText on", number,
               // region, style
               "UI_Popup off", "UI_Popup off",
               // bold, edge colour, picker, opacity, position
               "command 32015 on", "command 32016 on", "colorPicker on", number, "UI_StaticText on",
               "UI_PositionGridControl on", "UI_StaticText on", number, "UI_StaticText on", "UI_StaticText on", number,
               "UI_StaticText on",
               // grid and its size, height
               "UI_StaticText on", "UI_StaticText on", "UI_Popup off",
               // those of closed captions
               "UI_StaticText off", "UI_Popup off", "UI_PositionGridControl off", "UI_Swatch off", "UI_StaticText off",
               "UI_HotTextNumberT<double> off", "UI_StaticText off", "UI_HotTextNumberT<double> off"}));
}

TEST_F(ViewLifecycle, AnotherSourceEmptiesTheFilterBoxWithoutFilteringAnew) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  Inspector::FilterBox(View())->SetValue(u"no such text", true);
  ASSERT_EQ(Begins(), std::vector<double>{});
  View().UpdateForSource(Source(), 32, 15);
  EXPECT_EQ(Inspector::FilterBox(View())->GetValue(), u"");
  EXPECT_EQ(Begins(), std::vector<double>{});
}

TEST_F(ViewLifecycle, ANewStreamFormatStartsFromADefaultFormatThatTheControlsShowOnlyOnceItIsPublished) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  View().ObeyCommand(UIF::Command(32002));
  ASSERT_TRUE(Inspector::AlignRightButton(View()).GetValue());
  View().UpdateForSource(SourceOf(kTeletext), 40, 25);
  const boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> unset(new zebcaptioning::CaptionFormatInfo);
  bool isUniform = false;
  EXPECT_EQ(Inspector::FormatInfo(View())->GetTextAlignment(isUniform), unset->GetTextAlignment(isUniform));
  EXPECT_TRUE(Inspector::AlignRightButton(View()).GetValue());
}

TEST_F(ViewLifecycle, ClosedCaptionsTellTheirGridAndOpenOnesTheFrameOfTheirVideo) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  View().UpdateForSource(Source(), 32, 15);
  EXPECT_EQ(Inspector::GridLabel(View())->GetValue(), u"Grid:");
  EXPECT_EQ(Size(), u"32x15");
  View().UpdateForSource(SourceOf(kOpenTrack1), 42, 24);
  EXPECT_EQ(Inspector::GridLabel(View())->GetValue(), u"Frame:");
  EXPECT_EQ(Size(), u"1920x1080");
  EXPECT_EQ(Inspector::FrameRect(View()), (RectT<std::int32_t>{0, 0, 1920, 1080}));
  EXPECT_EQ(Inspector::GridColumns(View()), 42);
  EXPECT_EQ(Inspector::GridRows(View()), 24);
  View().UpdateForSource(Source(), 32, 15);
  EXPECT_EQ(Inspector::GridLabel(View())->GetValue(), u"Grid:");
  EXPECT_EQ(Size(), u"32x15");
}

TEST_F(ViewLifecycle, OpenCaptionsWithoutVideoTellNoSizeAndKeepTheFormerFrame) {
  ShowStream(kOpenTrack1);
  BE::MediaInfo sound;
  sound.sampleRate = 48000;
  sound.duration = Seconds(60);
  const auto other = AddClip(sound);
  AddStream(other, MakeCaptions({1}), kOpenTrack1);
  CaptionsSource source{InterfaceRef<>(other)};
  source.Refresh();
  View().UpdateForSource(source, 32, 15);
  EXPECT_EQ(Inspector::GridLabel(View())->GetValue(), u"Frame:");
  EXPECT_EQ(Size(), u"");
  EXPECT_EQ(Inspector::FrameRect(View()), (RectT<std::int32_t>{0, 0, 1920, 1080}));
}

TEST_F(ViewLifecycle, UnderlineAndItalicAreAllowedByTheFormatAndItalicOfOpenCaptionsByItsFont) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  const auto allowed = [&](StreamFormat format) {
    View().UpdateForSource(SourceOf(format), 32, 15);
    return std::pair(Inspector::UnderlineAllowed(View()), Inspector::ItalicAllowed(View()));
  };
  EXPECT_EQ(allowed(kTeletext), std::pair(false, false));
  EXPECT_EQ(allowed(kOpenTrack1), std::pair(true, false));
  EXPECT_EQ(allowed(zebcaptioning::kStreamFormat_608_CC1), std::pair(true, true));
  EXPECT_EQ(allowed(kOpenTrack1), std::pair(true, true));
  EXPECT_EQ(allowed(kAustralian), std::pair(false, false));
}

} // namespace Captivo::Testing
