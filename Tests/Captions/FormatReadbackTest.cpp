#include "Captions/contracts/TextSpanAttributes.h"
#include "FormatBar.h"

namespace Captivo::Testing {

namespace {

using zebcaptioning::CaptionFormatInfo;
using zebcaptioning::CaptioningColor;
using zebcaptioning::ParagraphStyleAttributes;

// What the controls show of the selected captions.
class FormatReadback : public FormatBarTest {
 protected:
  static Span Sized(float size) {
    Span span;
    span.size = size;
    return span;
  }
  static Span OfFamily(const UString& family) {
    Span span;
    span.family = family;
    return span;
  }
  static ParagraphStyleAttributes InRegion(const char* region, const char* style = nullptr) {
    ParagraphStyleAttributes paragraph;
    paragraph.region = region;
    if (style)
      paragraph.style = style;
    return paragraph;
  }
  void ShowOpenInRegions(const std::vector<std::string>& regions, const std::vector<std::string>& styles,
                         const std::vector<boost::intrusive_ptr<Caption>>& captions) {
    clip = AddClip();
    BE::StreamDescription description;
    description.format = kOpenTrack1;
    for (const std::string& region : regions)
      description.regions.push_back({region, {0, 0, 100, 100}, true});
    description.styles = styles;
    std::vector<BE::NewCaption> states;
    for (const auto& caption : captions)
      states.push_back({caption->GetState()});
    const auto result = project->AddStream(clip, description, states, u"Add stream");
    stream = *result.value;
    OpenPanel(1000, 700);
    SelectClip(clip);
  }
  static std::vector<UString> Items(const zebui::controls::UI_Popup& popup) {
    std::vector<UString> items;
    for (std::int64_t i = 0; i < popup.Size(); ++i)
      items.push_back(popup.GetItemString(i));
    return items;
  }
  void ExpectAlignButtons(bool left, bool center, bool right) {
    EXPECT_EQ(Inspector::AlignLeftButton(View()).GetValue(), left);
    EXPECT_EQ(Inspector::AlignCenterButton(View()).GetValue(), center);
    EXPECT_EQ(Inspector::AlignRightButton(View()).GetValue(), right);
  }
  // An own format on show instead of the selection's.
  Info Publish(void (*change)(CaptionFormatInfo&)) {
    const Info info(new CaptionFormatInfo);
    change(*info);
    View().PublishFormat(info);
    return info;
  }
  PointT<int> ClosedCell() { return Inspector::ClosedPositionGrid(View())->GetValue(); }
};

TD::CaptionFontRecord Face(const UString& style) {
  TD::CaptionFontRecord face;
  face.styleName = style;
  face.fullName = style;
  return face;
}

} // namespace

// --- Publishing

TEST_F(FormatReadback, WithNoSelectedRowAFreshFormatIsPublishedAndShown) {
  Span span = Sized(40);
  span.italic = true;
  span.underline = true;
  span.bold = true;
  span.edgeWidth = 3;
  ParagraphStyleAttributes paragraph;
  paragraph.alignment = ParagraphStyleAttributes::kTextAlignment_Right;
  paragraph.lineSpacing = 20;
  ShowOpen({MakeLook(1, span, paragraph)});
  ASSERT_EQ(Inspector::FontSizeControl(View())->GetValue(), 40);
  ASSERT_TRUE(Inspector::BoldButton(View()).GetValue());
  ASSERT_EQ(Inspector::EdgeWidthControl(View())->GetValue(), 3);
  ASSERT_EQ(Inspector::LineSpacingControl(View())->GetValue(), 20);
  const Info held = Shown();
  SelectNothing();
  EXPECT_NE(Shown(), held);
  EXPECT_EQ(Inspector::FontSizeControl(View())->GetValue(), 18);
  EXPECT_EQ(Inspector::EdgeWidthControl(View())->GetValue(), 0);
  EXPECT_EQ(Inspector::LineSpacingControl(View())->GetValue(), 0);
  EXPECT_FALSE(Inspector::ItalicButton(View()).GetValue());
  EXPECT_FALSE(Inspector::UnderlineButton(View()).GetValue());
  EXPECT_FALSE(Inspector::BoldButton(View()).GetValue());
  ExpectAlignButtons(true, false, false);
}

TEST_F(FormatReadback, ANullFormatChangesNothing) {
  ShowClosed(MakeCaptions({1}));
  const Info held = Shown();
  View().PublishFormat(nullptr);
  EXPECT_EQ(Shown(), held);
}

TEST_F(FormatReadback, TheFormatOnShowOnceMoreRefreshesTheGridAlone) {
  ShowClosed(MakeCaptions({1}));
  Shown()->SetIsItalicized(true, true);
  Shown()->SetAnchorID(4, false);
  View().PublishFormat(Shown());
  EXPECT_EQ(ClosedCell(), (PointT<int>{1, 1}));
  EXPECT_FALSE(Inspector::ItalicButton(View()).GetValue());
}

TEST_F(FormatReadback, TheGridOfTheModeShowsTheAnchorsCell) {
  struct Row {
    int anchor;
    PointT<int> cell;
  };
  const Row rows[] = {{0, {0, 0}},    {1, {1, 0}},   {2, {2, 0}},  {3, {0, 1}},  {4, {1, 1}},
                      {5, {2, 1}},    {6, {0, 2}},   {7, {1, 2}},  {8, {2, 2}},  {-2, {-1, -1}},
                      {-1, {-1, -1}}, {9, {-1, -1}}, {10, {0, 0}}, {-3, {0, 0}}, {1000, {0, 0}}};
  for (const bool isOpen : {false, true}) {
    if (isOpen)
      ShowOpen(MakeCaptions({1}));
    else
      ShowClosed(MakeCaptions({1}));
    auto& shown = isOpen ? Inspector::OpenPositionGrid(View()) : Inspector::ClosedPositionGrid(View());
    auto& other = isOpen ? Inspector::ClosedPositionGrid(View()) : Inspector::OpenPositionGrid(View());
    other->SetValue({2, 2});
    for (const Row& row : rows) {
      // A cell that is none of those to be shown.
      shown->SetValue({1, 1});
      Shown()->SetAnchorID(row.anchor, false);
      View().PublishFormat(Shown());
      EXPECT_EQ(shown->GetValue(), row.cell) << row.anchor;
      EXPECT_EQ(other->GetValue(), (PointT<int>{2, 2}));
    }
  }
}

TEST_F(FormatReadback, WithoutTheModesGridTheRestIsShown) {
  ShowClosed(MakeCaptions({1}));
  const auto kept = std::exchange(Inspector::ClosedPositionGrid(View()), nullptr);
  Publish([](CaptionFormatInfo& info) { info.SetIsItalicized(true, true); });
  EXPECT_TRUE(Inspector::ItalicButton(View()).GetValue());
  Inspector::ClosedPositionGrid(View()) = kept;
}

TEST_F(FormatReadback, APublicationFromAFocusedTextRemembersToKeepTheFocusThere) {
  ShowClosed(MakeCaptions({1}));
  Inspector::KeepTextFocus(Pane()) = false;
  Pane().PublishSelectionFormat();
  EXPECT_FALSE(Inspector::KeepTextFocus(Pane()));
  FocusText(1);
  Pane().PublishSelectionFormat();
  EXPECT_TRUE(Inspector::KeepTextFocus(Pane()));
}

TEST_F(FormatReadback, FollowsTheCaretThroughTheText) {
  Span italic;
  italic.italic = true;
  ShowOpen({MakeLook(1, u"Hello", {{0, Span()}, {2, italic}})});
  SelectPart(1, {0, 2});
  EXPECT_FALSE(Inspector::ItalicButton(View()).GetValue());
  SelectPart(1, {3, 5});
  EXPECT_TRUE(Inspector::ItalicButton(View()).GetValue());
}

TEST_F(FormatReadback, OfSeveralCaptionsTheWholeIsShownWhereverTheCaretStood) {
  Span italic;
  italic.italic = true;
  ShowOpen({MakeLook(1, u"Hello", {{0, Span()}, {2, italic}}), MakeLook(3, u"there", {{0, Span()}, {4, Sized(30)}})});
  SelectPart(1, {3, 4});
  ASSERT_TRUE(Inspector::ItalicButton(View()).GetValue());
  Pane().SelectAllCaptions();
  EXPECT_FALSE(Inspector::ItalicButton(View()).GetValue());
  EXPECT_TRUE(Inspector::FontSizeControl(View())->IsValueUnknown());
  SelectPart(1, {3, 4});
  Click(1);
  SelectPart(1, {3, 4});
  Click(3, 4);
  EXPECT_FALSE(Inspector::ItalicButton(View()).GetValue());
  EXPECT_TRUE(Inspector::FontSizeControl(View())->IsValueUnknown());
}

TEST_F(FormatReadback, OpenControlsAreReadInTheirOrder) {
  TD::SetTitlerFontList({{u"Alpha", {Face(u"Regular")}}, {u"Beta", {Face(u"Regular")}}});
  ShowOpen({MakeLook(1, OfFamily(u"Alpha"))});
  zebcore::trace::Take();
  Pane().PublishSelectionFormat();
  std::vector<std::string> course;
  for (const auto& call : zebcore::trace::Take()) {
    const auto colons = call.call.find("::SetValue");
    if (colons != std::string::npos)
      course.push_back(call.call.substr(0, colons) + (call.args.contains("text") ? " text" : ""));
    else if (call.call == "ColorPickerControl::SetColor")
      course.emplace_back("picker");
  }
  EXPECT_EQ(course, (std::vector<std::string>{
                        "UI_Popup",                                                 // display type
                        "PictureButton", "PictureButton", "PictureButton",          // italic, underline, bold
                        "PictureButton", "PictureButton", "PictureButton",          // alignment
                        "picker", "UI_HotTextNumber",                               // colour
                        "UI_Popup text",                                            // weight
                        "UI_HotTextNumber", "UI_HotTextNumber", "UI_HotTextNumber", // size, edge width, line spacing
                        "UI_Popup", "UI_Popup",                                     // region, style
                        "UI_HotTextNumber", "UI_HotTextNumber",                     // position
                        "UI_PositionGridControl"}));
}

TEST_F(FormatReadback, ClosedControlsAreReadInTheirOrderUpToTheHeight) {
  ShowClosed(MakeCaptions({1}));
  Inspector::BoldButton(View()).SetValue(true);
  Inspector::FontSizeControl(View())->SetValue(77);
  Inspector::FontFamilyPopup(View())->SetValueString(u"Kept", true, true);
  zebcore::trace::Take();
  Pane().PublishSelectionFormat();
  std::vector<std::string> course;
  for (const auto& call : zebcore::trace::Take()) {
    if (const auto colons = call.call.find("::SetValue"); colons != std::string::npos)
      course.push_back(call.call.substr(0, colons));
  }
  EXPECT_EQ(course, (std::vector<std::string>{"UI_Popup", "PictureButton", "PictureButton", "PictureButton",
                                              "PictureButton", "PictureButton", "UI_Swatch", "UI_Popup",
                                              "UI_HotTextNumber", "UI_HotTextNumber", "UI_PositionGridControl"}));
  EXPECT_TRUE(Inspector::BoldButton(View()).GetValue());
  EXPECT_EQ(Inspector::FontSizeControl(View())->GetValue(), 77);
  EXPECT_EQ(Inspector::FontFamilyPopup(View())->GetValueString(), u"Kept");
}

// --- Display type

TEST_F(FormatReadback, TheDisplayTypeIsTheItemThatItBelongsTo) {
  ParagraphStyleAttributes rollUp3;
  rollUp3.captionType = 3;
  ShowClosed({MakeLook(1, Span(), rollUp3), MakeLook(3, Span())});
  auto& popup = *Inspector::CaptionTypePopup(View());
  EXPECT_EQ(popup.GetValueString(), u"Roll-up 3 rows");
  // No type at all, though something is remembered for it.
  Inspector::CaptionTypeMap(View()).insert({77, zebcaptioning::kCaptionType_None});
  Click(3);
  EXPECT_EQ(popup.GetValue(), 0);
}

TEST_F(FormatReadback, ADisplayTypeThatTheFormatLacksShowsTheFirstItem) {
  ParagraphStyleAttributes rollUp;
  rollUp.captionType = 5;
  ShowClosed({MakeLook(1, Span(), rollUp)});
  Inspector::CaptionTypePopup(View())->SetValue(2);
  Publish([](CaptionFormatInfo& info) { info.SetCaptionType(5, true); });
  EXPECT_EQ(Inspector::CaptionTypePopup(View())->GetValue(), 0);
}

TEST_F(FormatReadback, DisplayTypesThatDifferShowMultiple) {
  ParagraphStyleAttributes popOn;
  popOn.captionType = 0;
  ParagraphStyleAttributes paintOn;
  paintOn.captionType = 1;
  ShowClosed({MakeLook(1, Span(), popOn), MakeLook(3, Span(), paintOn)});
  Pane().SelectAllCaptions();
  EXPECT_EQ(Inspector::CaptionTypePopup(View())->GetValueString(), u"Multiple");
  Click(3);
  EXPECT_EQ(Inspector::CaptionTypePopup(View())->GetValue(), 1);
}

TEST_F(FormatReadback, APopupThatIsMissingEndsItsOwnStepAlone) {
  ShowOpen(MakeCaptions({1}));
  auto& view = View();
  const auto type = std::exchange(Inspector::CaptionTypePopup(view), nullptr);
  const auto family = std::exchange(Inspector::FontFamilyPopup(view), nullptr);
  const auto region = std::exchange(Inspector::RegionPopup(view), nullptr);
  Publish([](CaptionFormatInfo& info) { info.SetFontSize(44, true); });
  EXPECT_EQ(Inspector::FontSizeControl(view)->GetValue(), 44);
  Inspector::CaptionTypePopup(view) = type;
  Inspector::FontFamilyPopup(view) = family;
  Inspector::RegionPopup(view) = region;
  ShowClosed(MakeCaptions({1}));
  const auto height = std::exchange(Inspector::DoubleHeightPopup(view), nullptr);
  Publish([](CaptionFormatInfo& info) { info.SetPositionX(7); });
  EXPECT_EQ(Inspector::ClosedPositionXControl(view)->GetValue(), 8);
  Inspector::DoubleHeightPopup(view) = height;
}

// --- Buttons

TEST_F(FormatReadback, TheFaceButtonsShowTheValueWhetherOrNotItIsUniform) {
  ShowOpen(MakeCaptions({1}));
  for (const bool isUniform : {true, false}) {
    for (const bool value : {true, false}) {
      const Info info(new CaptionFormatInfo);
      info->SetIsItalicized(value, isUniform);
      info->SetIsUnderlined(!value, isUniform);
      info->SetIsBolded(value, isUniform);
      View().PublishFormat(info);
      EXPECT_EQ(Inspector::ItalicButton(View()).GetValue(), value);
      EXPECT_EQ(Inspector::UnderlineButton(View()).GetValue(), !value);
      EXPECT_EQ(Inspector::BoldButton(View()).GetValue(), value);
    }
  }
}

TEST_F(FormatReadback, OnlyTheAlignmentThatAllCaptionsHaveIsOn) {
  std::vector<boost::intrusive_ptr<Caption>> captions;
  for (const int alignment : {0, 1, 2}) {
    ParagraphStyleAttributes paragraph;
    paragraph.alignment = static_cast<ParagraphStyleAttributes::TextAlignmentType>(alignment);
    captions.push_back(MakeLook(2 * alignment + 1, Span(), paragraph));
  }
  ShowClosed(captions);
  ExpectAlignButtons(true, false, false);
  Click(3);
  ExpectAlignButtons(false, true, false);
  Click(5);
  ExpectAlignButtons(false, false, true);
  Pane().SelectAllCaptions();
  ExpectAlignButtons(false, false, false);
}

// --- Height

TEST_F(FormatReadback, ASizeOfExactly24IsOfNormalHeightAndAboveItIsDouble) {
  ShowStream(kEbuTrack1, MakeCaptions({1}));
  auto& popup = *Inspector::DoubleHeightPopup(View());
  Publish([](CaptionFormatInfo& info) { info.SetFontSize(24.5F, true); });
  EXPECT_EQ(popup.GetValue(), 1);
  Publish([](CaptionFormatInfo& info) { info.SetFontSize(24.0F, true); });
  EXPECT_EQ(popup.GetValue(), 0);
}

TEST_F(FormatReadback, HeightsThatDifferAddAThirdItemAndOneCaptionTakesItAway) {
  ShowStream(kEbuTrack1, {MakeLook(1, Sized(18)), MakeLook(3, Sized(36))});
  auto& popup = *Inspector::DoubleHeightPopup(View());
  const auto two = Items(popup);
  ASSERT_EQ(two.size(), 2U);
  Pane().SelectAllCaptions();
  ASSERT_EQ(popup.Size(), 3);
  EXPECT_EQ(popup.GetItemString(2), u"Mixed");
  EXPECT_EQ(popup.GetValue(), 2);
  Pane().PublishSelectionFormat();
  EXPECT_EQ(popup.Size(), 3);
  Click(3);
  EXPECT_EQ(Items(popup), two);
  EXPECT_EQ(popup.GetValue(), 1);
}

// --- Family

TEST_F(FormatReadback, TheFirstItemThatBeginsWithTheFamilyIsShownAndItsWeightsLoaded) {
  TD::SetTitlerFontList({{u"Go", {Face(u"Regular"), Face(u"Light")}}, {u"Go Mono", {Face(u"Regular"), Face(u"Book")}}});
  ShowOpen({MakeLook(1, OfFamily(u"Arial")), MakeLook(3, OfFamily(u"Go"))});
  Click(3);
  EXPECT_EQ(Inspector::FontFamilyPopup(View())->GetValueString(), u"Go");
  EXPECT_EQ(Items(*Inspector::FontWeightPopup(View())), (std::vector<UString>{u"Regular", u"Light"}));
  // With the longer name first, that one is found.
  auto& families = *Inspector::FontFamilyPopup(View());
  Click(1);
  families.DeleteAllItems();
  families.AddItem(u"Go Mono");
  families.AddItem(u"Go");
  Click(3);
  EXPECT_EQ(families.GetValueString(), u"Go Mono");
  EXPECT_EQ(Items(*Inspector::FontWeightPopup(View())), (std::vector<UString>{u"Regular", u"Book"}));
}

TEST_F(FormatReadback, AFamilyThatNoItemBeginsWithLeavesThePopupAsItWas) {
  TD::SetTitlerFontList({{u"Alpha", {Face(u"Regular")}}, {u"Beta", {Face(u"Regular")}}});
  ShowOpen({MakeLook(1, OfFamily(u"Beta")), MakeLook(3, OfFamily(u"Nowhere"))});
  EXPECT_EQ(Inspector::FontFamilyPopup(View())->GetValueString(), u"Beta");
  Click(3);
  EXPECT_EQ(Inspector::FontFamilyPopup(View())->GetValueString(), u"Beta");
}

TEST_F(FormatReadback, AnEmptyFamilyMatchesTheFirstItem) {
  TD::SetTitlerFontList({{u"Alpha", {Face(u"Regular")}}, {u"Beta", {Face(u"Regular")}}});
  ShowOpen({MakeLook(1, OfFamily(u"Beta"))});
  Publish([](CaptionFormatInfo& info) { info.SetFontFamily(u"", true); });
  EXPECT_EQ(Inspector::FontFamilyPopup(View())->GetValueString(), u"Alpha");
}

TEST_F(FormatReadback, TheSameFamilyPublishedAgainDoesNotRefillTheWeights) {
  TD::SetTitlerFontList({{u"Alpha", {Face(u"Regular")}}, {u"Beta", {Face(u"Regular")}}});
  ShowOpen({MakeLook(1, OfFamily(u"Alpha")), MakeLook(3, OfFamily(u"Beta"))});
  Inspector::FontWeightPopup(View())->AddItem(u"Marker");
  Pane().PublishSelectionFormat();
  EXPECT_EQ(Items(*Inspector::FontWeightPopup(View())), (std::vector<UString>{u"Regular", u"Marker"}));
  Click(3);
  EXPECT_EQ(Items(*Inspector::FontWeightPopup(View())), (std::vector<UString>{u"Regular"}));
}

TEST_F(FormatReadback, FamiliesThatDifferShowMultipleAndOneOfThemShowsItselfAgain) {
  TD::SetTitlerFontList({{u"Alpha", {Face(u"Regular")}}, {u"Beta", {Face(u"Regular")}}});
  ShowOpen({MakeLook(1, OfFamily(u"Alpha")), MakeLook(3, OfFamily(u"Beta"))});
  Pane().SelectAllCaptions();
  EXPECT_EQ(Inspector::FontFamilyPopup(View())->GetValueString(), u"Multiple");
  EXPECT_EQ(Inspector::FontWeightPopup(View())->GetValueString(), u"Multiple");
  Click(1);
  EXPECT_EQ(Inspector::FontFamilyPopup(View())->GetValueString(), u"Alpha");
  EXPECT_EQ(Inspector::FontWeightPopup(View())->GetValueString(), u"Regular");
}

TEST_F(FormatReadback, AGenericFamilyIsShownAsTheInstalledOneThatStandsForIt) {
  const UString installed = Span::GetGenericUIFontName(u"serif");
  ASSERT_NE(installed, u"serif");
  TD::SetTitlerFontList({{u"A first one", {Face(u"Regular")}}, {installed, {Face(u"Regular")}}});
  ShowOpen({MakeLook(1, OfFamily(u"serif")), MakeLook(3, OfFamily(u"A first one"))});
  EXPECT_EQ(Inspector::FontFamilyPopup(View())->GetValueString(), installed);
  UString family;
  bool isUniform = false;
  Shown()->GetFontFamily(family, isUniform);
  EXPECT_EQ(family, installed);
  EXPECT_TRUE(isUniform);
  EXPECT_EQ(Look(1).family, u"serif");
  Inspector::FontWeightPopup(View())->AddItem(u"Marker");
  Pane().PublishSelectionFormat();
  EXPECT_EQ(Inspector::FontWeightPopup(View())->Size(), 2);
  Pane().SelectAllCaptions();
  Shown()->GetFontFamily(family, isUniform);
  EXPECT_EQ(family, installed);
  EXPECT_FALSE(isUniform);
}

// --- Numbers

TEST_F(FormatReadback, NumbersThatDifferShowSoAndUniformOnesTheirValue) {
  Span span = Sized(30);
  span.edgeWidth = 2.5F;
  ParagraphStyleAttributes paragraph;
  paragraph.lineSpacing = 15;
  ShowOpen({MakeLook(1, span, paragraph), MakeLook(3, Span())});
  EXPECT_EQ(Inspector::FontSizeControl(View())->GetValue(), 30);
  EXPECT_EQ(Inspector::EdgeWidthControl(View())->GetValue(), 2.5);
  EXPECT_EQ(Inspector::LineSpacingControl(View())->GetValue(), 15);
  Pane().SelectAllCaptions();
  for (const auto& control : {Inspector::FontSizeControl(View()), Inspector::EdgeWidthControl(View()),
                              Inspector::LineSpacingControl(View())}) {
    EXPECT_TRUE(control->IsValueUnknown());
    EXPECT_EQ(control->GetText(), u"mul.");
  }
  Click(3);
  EXPECT_FALSE(Inspector::FontSizeControl(View())->IsValueUnknown());
  EXPECT_EQ(Inspector::FontSizeControl(View())->GetValue(), 18);
}

TEST_F(FormatReadback, ACaptionOfSeveralLooksIsMixedInItself) {
  ShowOpen({MakeLook(1, u"Hello", {{0, Sized(20)}, {2, Sized(30)}})});
  EXPECT_TRUE(Inspector::FontSizeControl(View())->IsValueUnknown());
  SelectPart(1, {2, 5});
  EXPECT_EQ(Inspector::FontSizeControl(View())->GetValue(), 30);
}

// --- Region and style

TEST_F(FormatReadback, TheRegionAndTheStyleAreTheItemsOfTheirNamesAndTheFirstOnesForNone) {
  ShowOpenInRegions({"Top", "Bottom"}, {"Narrator", "Song"},
                    {MakeLook(1, Span(), InRegion("Bottom", "Narrator")), MakeLook(3, Span())});
  EXPECT_EQ(Items(*Inspector::RegionPopup(View())), (std::vector<UString>{u"None", u"Top", u"Bottom"}));
  EXPECT_EQ(Items(*Inspector::StylePopup(View())), (std::vector<UString>{u"Custom", u"Narrator", u"Song"}));
  EXPECT_EQ(Inspector::RegionPopup(View())->GetValue(), 2);
  EXPECT_EQ(Inspector::StylePopup(View())->GetValue(), 1);
  Click(3);
  EXPECT_EQ(Inspector::RegionPopup(View())->GetValue(), 0);
  EXPECT_EQ(Inspector::StylePopup(View())->GetValue(), 0);
}

TEST_F(FormatReadback, ARegionThatThePopupDoesNotListKeepsThePreviousOne) {
  ShowOpenInRegions({"Top", "Bottom"}, {"Song"},
                    {MakeLook(1, Span(), InRegion("Bottom", "Song")), MakeLook(3, Span(), InRegion("bottom", "song")),
                     MakeLook(5, Span(), InRegion("Elsewhere", "Other"))});
  for (const double begin : {3, 5}) {
    Click(begin);
    EXPECT_EQ(Inspector::RegionPopup(View())->GetValue(), 2) << begin;
    EXPECT_EQ(Inspector::StylePopup(View())->GetValue(), 1) << begin;
  }
  EXPECT_TRUE(boxes.empty());
}

TEST_F(FormatReadback, ARegionThatIsNamedLikeTheFirstItemIsFoundBehindIt) {
  ShowOpenInRegions({"Top", "None"}, {"Custom"}, {MakeLook(1, Span(), InRegion("None", "Custom"))});
  EXPECT_EQ(Inspector::RegionPopup(View())->GetValue(), 2);
  EXPECT_EQ(Inspector::StylePopup(View())->GetValue(), 1);
}

TEST_F(FormatReadback, RegionsAndStylesThatDifferShowMultiple) {
  ShowOpenInRegions({"Top", "Bottom"}, {"Song"},
                    {MakeLook(1, Span(), InRegion("Top", "Song")), MakeLook(3, Span(), InRegion("Bottom"))});
  Pane().SelectAllCaptions();
  EXPECT_EQ(Inspector::RegionPopup(View())->GetValueString(), u"Multiple");
  EXPECT_EQ(Inspector::StylePopup(View())->GetValueString(), u"Multiple");
}

} // namespace Captivo::Testing
