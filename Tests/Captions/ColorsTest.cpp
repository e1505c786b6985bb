#include "DLG/ColorPickerDialog.h"
#include "FormatStage.h"
#include "UIF/Drawing.h"
#include "zebcaptioning/FormatFacts.h"
#include "zebui/Menu.h"

namespace Captivo::Testing {

namespace {

using zebcaptioning::CaptioningColor;
using zebcaptioning::TextSpanAttributes;
using zebui::controls::UnManagedRGBA;
using Item = zebui::utility::OSMenu::Item;
using Parameters = std::vector<int>;

constexpr int kCommand_Background = 32013;
constexpr int kCommand_Text = 32014;
constexpr int kCommand_Edge = 32016;

const CaptioningColor kRed{1, 0, 0, 1};
const CaptioningColor kGreen{0, 1, 0, 1};
const CaptioningColor kBlue{0, 0, 1, 1};
const CaptioningColor kNone;

CaptioningColor WithAlpha(CaptioningColor color, float alpha) {
  color.alpha = alpha;
  return color;
}

SetLook TextIn(const CaptioningColor& color) {
  return [color](TextSpanAttributes& look) { look.textColor = color; };
}
SetLook BackgroundIn(const CaptioningColor& color) {
  return [color](TextSpanAttributes& look) { look.backgroundColor = color; };
}
SetLook EdgeIn(const CaptioningColor& color, float width) {
  return [color, width](TextSpanAttributes& look) {
    look.edgeColor = color;
    look.edgeWidth = width;
    look.size = 30.0F;
  };
}

class Colors : public FormatStage {
 protected:
  Colors() {
    zebui::ui::SetPopupMenuHook([this](const zebui::utility::OSMenu& menu) {
      menus.push_back(menu.GetItems());
      return answer;
    });
    DLG::ColorPickerDialog::SetHook([this](const UIF::Color& current) {
      asked.push_back(current);
      return picked;
    });
  }
  ~Colors() override {
    DLG::ColorPickerDialog::SetHook(nullptr);
    zebui::ui::SetPopupMenuHook(nullptr);
    for (const StreamFormat format : {zebcaptioning::kStreamFormat_None, k608})
      zebcaptioning::OverrideFacts(format, std::nullopt);
  }

  void ShowClosed(const std::vector<SetLook>& looks) { FormatStage::ShowClosed(MakeLooks(looks)); }
  void ShowOpen(const std::vector<SetLook>& looks) { FormatStage::ShowOpen(MakeLooks(looks)); }
  void Edit(int command) {
    Command(command);
    zebcore::trace::Take();
  }

  // Opens the menu behind the swatch and answers it with an id.
  void ChooseInMenu(int id) {
    answer = id;
    menus.clear();
    Inspector::ColorSwatch(View())->Press();
  }
  const std::vector<Item>& Menu() {
    EXPECT_EQ(menus.size(), 1U);
    static const std::vector<Item> none;
    return menus.empty() ? none : menus.front();
  }
  // The id of the entry of this text.
  int ID(const UString& text) {
    ChooseInMenu(0);
    for (const Item& item : Menu()) {
      if (item.text == text)
        return item.id;
    }
    ADD_FAILURE() << zebcore::ToUTF8(text) << " is not in the menu";
    return 0;
  }
  std::vector<std::string> Checked() {
    std::vector<std::string> names;
    for (const Item& item : Menu()) {
      if (item.checked)
        names.push_back(zebcore::ToUTF8(item.text));
    }
    return names;
  }

  UIF::ColorPickerControl& Picker() { return Inspector::ColorPicker(View()); }
  void Pick(const UIF::Color& color) { Picker().SetColor(color, true); }
  UnManagedRGBA Swatch() { return Inspector::ColorSwatch(View())->GetValue(); }
  zebui::controls::UI_HotTextNumber& Opacity() { return *Inspector::OpacityControl(View()); }
  static UIF::Color Window() { return UIF::ColorManager::GetColor(UIF::kColor_WindowBackground); }
  static UnManagedRGBA WindowRGBA() {
    const UIF::Color color = Window();
    return {static_cast<float>(color.red) / 255.0F, static_cast<float>(color.green) / 255.0F,
            static_cast<float>(color.blue) / 255.0F, 1.0F};
  }

  // Of the background.
  static CaptioningColor ColorOf(const zebcaptioning::CaptionFormatInfo& info) {
    CaptioningColor color;
    bool isUniform = false;
    info.GetColor(CaptioningColor::kColorType_Background, color, isUniform);
    EXPECT_TRUE(isUniform);
    return color;
  }

  std::vector<std::vector<Item>> menus;
  int answer = 0;
  std::vector<UIF::Color> asked;
  std::optional<UIF::Color> picked;
};

} // namespace

// --- The menu of closed captions

TEST_F(Colors, TheMenuNumbersTheLegalColoursFromOneInTheirOrder) {
  ShowClosed({TextIn(kRed)});
  ChooseInMenu(0);
  std::map<CaptioningColor, UString> colors;
  std::map<float, UString> opacities;
  CaptioningColor::EnumerateLegalColors(k608, CaptioningColor::kColorType_Text, colors, opacities);
  ASSERT_EQ(Menu().size(), colors.size());
  int id = 0;
  for (const auto& [color, name] : colors) {
    const Item& item = Menu()[static_cast<std::size_t>(id)];
    EXPECT_EQ(item.text, name);
    EXPECT_EQ(item.id, ++id);
    EXPECT_TRUE(item.enabled);
    EXPECT_TRUE(item.hasCheck);
    EXPECT_FALSE(item.separator);
  }
  EXPECT_EQ(Checked(), std::vector<std::string>{"Red"});
}

TEST_F(Colors, TheMenuOfTheBackgroundGoesOnWithTheOpacities) {
  ShowClosed({BackgroundIn(WithAlpha(kBlue, 0.5F))});
  Edit(kCommand_Background);
  ChooseInMenu(0);
  ASSERT_EQ(Menu().size(), 12U);
  EXPECT_TRUE(Menu()[8].separator);
  EXPECT_EQ(Menu()[8].id, 0);
  for (std::size_t i = 9; i < 12; ++i) {
    EXPECT_EQ(Menu()[i].id, static_cast<int>(i));
    EXPECT_TRUE(Menu()[i].enabled);
  }
  EXPECT_EQ(Checked(), (std::vector<std::string>{"Blue", "Semi-transparent"})) << "whatever the alpha of the entry";
}

TEST_F(Colors, AnInvisibleBackgroundChecksNoColourButItsOpacity) {
  ShowClosed({BackgroundIn(kNone)});
  Edit(kCommand_Background);
  ChooseInMenu(0);
  EXPECT_EQ(Checked(), std::vector<std::string>{"Transparent"});
}

TEST_F(Colors, MixedColoursLeaveTheMarksAloneAndSwitchThoseOfTheOpacitiesOff) {
  ShowClosed({BackgroundIn(kRed), BackgroundIn(kBlue)});
  SelectAll();
  Edit(kCommand_Background);
  ChooseInMenu(0);
  for (std::size_t i = 0; i < 8; ++i)
    EXPECT_FALSE(Menu()[i].hasCheck);
  for (std::size_t i = 9; i < 12; ++i) {
    EXPECT_TRUE(Menu()[i].hasCheck);
    EXPECT_FALSE(Menu()[i].checked);
  }
}

TEST_F(Colors, AMenuClosedWithoutAChoiceChangesNothing) {
  ShowClosed({TextIn(kRed)});
  ChooseInMenu(0);
  EXPECT_EQ(TakeApplied(), Parameters{});
  EXPECT_EQ(Look(1).textColor, kRed);
}

TEST_F(Colors, AChosenColourGoesToTheSelection) {
  ShowClosed({TextIn(kRed), TextIn(kBlue)});
  SelectAll();
  const int green = ID(u"Green");
  zebcore::trace::Take();
  ChooseInMenu(green);
  EXPECT_EQ(TakeApplied(), Parameters{8});
  EXPECT_EQ(Look(1).textColor, kGreen);
  EXPECT_EQ(Look(3).textColor, kGreen);
  EXPECT_EQ(Swatch(), (UnManagedRGBA{0, 1, 0, 1}));
}

TEST_F(Colors, ANamelessEntryIsASeparatorThatKeepsItsNumber) {
  zebcaptioning::FactsOverride facts;
  facts.colors[0] = {{kBlue, u"Blue"}, {kGreen, u""}, {kRed, u"Red"}};
  zebcaptioning::OverrideFacts(k608, facts);
  ShowClosed({TextIn(kBlue)});
  ChooseInMenu(3);
  ASSERT_EQ(Menu().size(), 3U);
  EXPECT_TRUE(Menu()[1].separator);
  EXPECT_EQ(Menu()[1].id, 2);
  EXPECT_EQ(Look(1).textColor, kRed);
}

TEST_F(Colors, AFormatWithoutColoursShowsNoMenu) {
  zebcaptioning::FactsOverride facts;
  for (const int type : {0, 1}) {
    facts.colors[static_cast<std::size_t>(type)].emplace();
    facts.opacities[static_cast<std::size_t>(type)].emplace();
  }
  zebcaptioning::OverrideFacts(k608, facts);
  ShowClosed({TextIn(kBlue)});
  ChooseInMenu(1);
  EXPECT_TRUE(menus.empty());
  Edit(kCommand_Background);
  ChooseInMenu(1);
  EXPECT_TRUE(menus.empty()) << "a separator alone is nothing to choose from";
  EXPECT_EQ(TakeApplied(), Parameters{});
}

TEST_F(Colors, WithoutAStreamThereIsNoMenu) {
  zebcaptioning::FactsOverride facts;
  facts.colors[0] = {{kBlue, u"Blue"}};
  zebcaptioning::OverrideFacts(zebcaptioning::kStreamFormat_None, facts);
  ShowClosed({TextIn(kBlue)});
  SelectClip(nullptr);
  ASSERT_EQ(Inspector::StreamFormatOnShow(View()), zebcaptioning::kStreamFormat_None);
  Inspector::ColorSwatch(View())->SetDisabled(false);
  ChooseInMenu(1);
  EXPECT_TRUE(menus.empty());
}

TEST_F(Colors, AChosenOpacityKeepsTheColour) {
  ShowClosed({BackgroundIn(kBlue)});
  Edit(kCommand_Background);
  const int half = ID(u"Semi-transparent");
  zebcore::trace::Take();
  ChooseInMenu(half);
  EXPECT_EQ(TakeApplied(), Parameters{9});
  EXPECT_EQ(Look(1).backgroundColor, WithAlpha(kBlue, 0.5F));
}

TEST_F(Colors, AColourOverAVisibleOneKeepsTheOpacity) {
  ShowClosed({BackgroundIn(WithAlpha(kBlue, 0.5F))});
  Edit(kCommand_Background);
  ChooseInMenu(ID(u"Red"));
  EXPECT_EQ(Look(1).backgroundColor, WithAlpha(kRed, 0.5F));
}

TEST_F(Colors, AColourOverAnInvisibleOneBringsItsOwnOpacity) {
  ShowClosed({BackgroundIn(kNone)});
  Edit(kCommand_Background);
  ChooseInMenu(ID(u"Red"));
  EXPECT_EQ(Look(1).backgroundColor, kRed);
}

TEST_F(Colors, AnInvisibleChoiceIsAllZeroAndShowsTheWindow) {
  ShowClosed({BackgroundIn(kBlue)});
  Edit(kCommand_Background);
  ChooseInMenu(ID(u"Transparent"));
  EXPECT_EQ(Look(1).backgroundColor, kNone);
  EXPECT_EQ(Swatch(), WindowRGBA());
}

TEST_F(Colors, AnInvisibleChoiceIsAllZeroBeforeItGoesToTheStream) {
  ShowClosed({BackgroundIn(kBlue)});
  Edit(kCommand_Background);
  const int transparent = ID(u"Transparent");
  SelectNothing();
  Inspector::ColorSwatch(View())->SetDisabled(false);
  const auto info = Inspector::FormatInfo(View());
  info->SetColor(CaptioningColor::kColorType_Background, kBlue, true);
  ChooseInMenu(transparent);
  ASSERT_EQ(Inspector::FormatInfo(View()), info) << "nothing is published";
  EXPECT_EQ(ColorOf(*info), kNone);
}

TEST_F(Colors, WithNothingSelectedAColourStaysInTheFormatOnShow) {
  ShowOpen({BackgroundIn(kBlue)});
  Edit(kCommand_Background);
  SelectNothing();
  const auto info = Inspector::FormatInfo(View());
  Pick({255, 0, 0});
  EXPECT_EQ(ColorOf(*info), kRed);
  Opacity().SetDisabled(false);
  Opacity().Enter(50.0);
  EXPECT_EQ(ColorOf(*info), WithAlpha(kRed, 0.5F));
  EXPECT_EQ(TakeApplied(), Parameters{});
}

TEST_F(Colors, EveryClosedFormatOffersWhatItAllows) {
  for (const StreamFormat format : {k608, kService1, kTeletextPage1, kEbuTrack1, kAustralianPage1}) {
    ShowStream(format, MakeLooks({TextIn(kRed)}));
    for (const int command : {kCommand_Text, kCommand_Background}) {
      Edit(command);
      ChooseInMenu(0);
      const auto type = Inspector::ColorType(View());
      std::map<CaptioningColor, UString> colors;
      std::map<float, UString> opacities;
      EXPECT_TRUE(CaptioningColor::EnumerateLegalColors(format, type, colors, opacities));
      const bool isBackground = type == CaptioningColor::kColorType_Background;
      EXPECT_EQ(Menu().size(), colors.size() + (isBackground ? 1 + opacities.size() : 0)) << format;
      // Each one can be chosen and is stored as it is listed.
      int id = 0;
      for (const auto& [color, name] : colors) {
        ChooseInMenu(++id);
        const Span& look = Look(1);
        EXPECT_EQ(isBackground ? look.backgroundColor : look.textColor, color) << zebcore::ToUTF8(name);
      }
    }
  }
}

// --- The picker of open captions

TEST_F(Colors, APickedColourKeepsTheOpacity) {
  ShowOpen({BackgroundIn(WithAlpha(kBlue, 0.25F))});
  Edit(kCommand_Background);
  Pick({51, 102, 255});
  EXPECT_EQ(TakeApplied(), Parameters{9});
  EXPECT_EQ(Look(1).backgroundColor, (CaptioningColor{51 / 255.0F, 102 / 255.0F, 1.0F, 0.25F}));
  EXPECT_EQ(Picker().GetColor(), (UIF::Color{51, 102, 255}));
}

TEST_F(Colors, APickedTextColourLeavesAnInvisibleTextInvisible) {
  ShowOpen({TextIn(WithAlpha(kBlue, 0.0F))});
  Pick({255, 0, 0});
  EXPECT_EQ(TakeApplied(), Parameters{8});
  EXPECT_EQ(Look(1).textColor, WithAlpha(kRed, 0.0F));
}

TEST_F(Colors, APickedEdgeColourMakesTheEdgeATenthOfTheFontSizeWhateverItWas) {
  ShowOpen({EdgeIn(kBlue, 7.5F), EdgeIn(kNone, 0.0F)});
  Edit(kCommand_Edge);
  Pick({0, 255, 0});
  EXPECT_EQ(TakeApplied(), Parameters{10});
  EXPECT_EQ(Look(1).edgeColor, kGreen);
  EXPECT_EQ(Look(1).edgeWidth, 3.0F);
  Click(3);
  Pick({255, 0, 0});
  EXPECT_EQ(Look(3).edgeColor, kRed) << "an edge that could not be seen is opaque";
  EXPECT_EQ(Look(3).edgeWidth, 3.0F);
}

TEST_F(Colors, ThePickersSwatchAsksForAColour) {
  ShowOpen({TextIn(kBlue)});
  picked = UIF::Color{255, 0, 0};
  Picker().ClickSwatch();
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(asked.front(), (UIF::Color{0, 0, 255}));
  EXPECT_EQ(Look(1).textColor, kRed);
  EXPECT_EQ(Picker().GetColor(), (UIF::Color{255, 0, 0}));
}

TEST_F(Colors, ACancelledDialogGoesOnWithTheColourOnShow) {
  ShowOpen({TextIn(kBlue)});
  Picker().ClickSwatch();
  EXPECT_EQ(TakeApplied(), Parameters{8});
  EXPECT_EQ(Look(1).textColor, kBlue);
}

TEST_F(Colors, TheSwatchTakesTheColourBeforeItIsApplied) {
  ShowOpen({TextIn(kBlue)});
  picked = UIF::Color{255, 0, 0};
  Picker().ClickSwatch();
  std::vector<std::string> calls;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call == "ColorPickerControl::SetColor" || call.call == "CaptioningStreamUpdater::ApplyFormatParameter")
      calls.push_back(call.call);
  }
  ASSERT_GE(calls.size(), 2U);
  EXPECT_EQ(calls[0], "ColorPickerControl::SetColor");
  EXPECT_EQ(calls[1], "CaptioningStreamUpdater::ApplyFormatParameter");
}

TEST_F(Colors, WhileTheEyedropperIsOutOneColourStaysInThePicker) {
  ShowOpen({TextIn(kBlue), TextIn(kRed), TextIn(kRed)});
  Picker().StartEyedropper();
  EXPECT_TRUE(Inspector::EyedropperActive(View()));
  Click(3);
  EXPECT_EQ(Picker().GetColor(), (UIF::Color{0, 0, 255}));
  SelectAll();
  EXPECT_EQ(Picker().GetColor(), Window()) << "a mixed one is shown as such all the same";
  const UIF::Color green{0, 255, 0};
  Picker().EndEyedropper(&green);
  EXPECT_FALSE(Inspector::EyedropperActive(View()));
  EXPECT_EQ(Look(1).textColor, kGreen);
  EXPECT_EQ(Look(5).textColor, kGreen);
  EXPECT_EQ(Picker().GetColor(), green);
}

TEST_F(Colors, AnEyedropperThatPicksNothingChangesNothing) {
  ShowOpen({TextIn(kBlue)});
  Picker().StartEyedropper();
  Picker().EndEyedropper(nullptr);
  EXPECT_FALSE(Inspector::EyedropperActive(View()));
  EXPECT_EQ(TakeApplied(), Parameters{});
}

TEST_F(Colors, TheEdgeUnderTheEyedropperStaysToo) {
  ShowOpen({EdgeIn(kBlue, 2.0F), EdgeIn(kRed, 2.0F)});
  Edit(kCommand_Edge);
  Picker().StartEyedropper();
  Click(3);
  EXPECT_EQ(Picker().GetColor(), (UIF::Color{0, 0, 255}));
  EXPECT_EQ(Inspector::LastEdgeColor(View()), kRed) << "remembered all the same";
  SelectAll();
  EXPECT_EQ(Picker().GetColor(), Window());
}

// --- Opacity

TEST_F(Colors, AnOpacityIsStoredAndShownWithoutRounding) {
  ShowOpen({BackgroundIn(kBlue)});
  Edit(kCommand_Background);
  Opacity().Enter(37.0);
  EXPECT_EQ(TakeApplied(), Parameters{12});
  EXPECT_EQ(Look(1).backgroundColor, WithAlpha(kBlue, 37.0F / 100.0F));
  EXPECT_EQ(Opacity().GetValue(), static_cast<double>(37.0F / 100.0F * 100.0F));
  EXPECT_EQ(Opacity().GetText(), u"37");
}

TEST_F(Colors, TheOpacityOfTheTextIsAppliedAsItsOwn) {
  ShowOpen({TextIn(kBlue)});
  Opacity().SetDisabled(false);
  Opacity().Enter(50.0);
  EXPECT_EQ(TakeApplied(), Parameters{11});
  EXPECT_EQ(Look(1).textColor, WithAlpha(kBlue, 0.5F));
}

TEST_F(Colors, AnOpacityOnItsWayChangesNothing) {
  using Changes = zebui::ui::UI_InteractiveControlChangedMessage;
  ShowOpen({BackgroundIn(kBlue)});
  Edit(kCommand_Background);
  for (const auto phase : {Changes::kChange_Started, Changes::kChange_Changed, Changes::kChange_Cancelled}) {
    Opacity().Enter(37.0, phase);
    EXPECT_EQ(TakeApplied(), Parameters{}) << phase;
  }
}

TEST_F(Colors, TheFirstOpacityOfAnEdgeMakesItsWidthAndColourFirst) {
  ShowOpen({EdgeIn(kNone, 0.0F)});
  Edit(kCommand_Edge);
  Opacity().Enter(50.0);
  EXPECT_EQ(TakeApplied(), (Parameters{14, 10, 13}));
  EXPECT_EQ(Look(1).edgeWidth, 3.0F);
  EXPECT_EQ(Look(1).edgeColor, WithAlpha(kRed, 0.5F)) << "red, as none was seen before";
}

TEST_F(Colors, TheOpacityOfAnEdgeThatIsThereIsOneApplication) {
  ShowOpen({EdgeIn(kBlue, 1.0F)});
  Edit(kCommand_Edge);
  Opacity().Enter(50.0);
  EXPECT_EQ(TakeApplied(), Parameters{13});
  EXPECT_EQ(Look(1).edgeWidth, 1.0F);
  EXPECT_EQ(Look(1).edgeColor, WithAlpha(kBlue, 0.5F));
}

TEST_F(Colors, ANewEdgeTakesTheLastColourThatWasSeen) {
  ShowOpen({EdgeIn(WithAlpha(kBlue, 0.5F), 1.0F), EdgeIn(kNone, 0.0F)});
  Edit(kCommand_Edge);
  Click(3);
  Opacity().Enter(100.0);
  EXPECT_EQ(Look(3).edgeColor, kBlue);
}

TEST_F(Colors, ABlackEdgeIsNotRemembered) {
  ShowOpen({EdgeIn({0, 0, 0, 1}, 1.0F), EdgeIn(kNone, 0.0F)});
  Edit(kCommand_Edge);
  Click(3);
  Inspector::EdgeWidthControl(View())->Enter(2.0);
  EXPECT_EQ(Look(3).edgeColor, kRed);
}

TEST_F(Colors, ANewEdgeIsNeverInvisible) {
  ShowOpen({EdgeIn(kNone, 0.0F)});
  Inspector::LastEdgeColor(View()) = WithAlpha(kBlue, 0.0F);
  Inspector::EdgeWidthControl(View())->Enter(2.0);
  EXPECT_EQ(Look(1).edgeColor, kBlue);
}

// --- What is shown

TEST_F(Colors, TheColourUnderEditIsMarkedOnItsButtonAlone) {
  ShowOpen({TextIn(kBlue)});
  const auto marks = [this] {
    return std::vector<bool>{Inspector::TextColorButton(View()).GetValue(),
                             Inspector::BackgroundColorButton(View()).GetValue(),
                             Inspector::EdgeColorButton(View()).GetValue()};
  };
  EXPECT_EQ(marks(), (std::vector<bool>{true, false, false}));
  Edit(kCommand_Background);
  EXPECT_EQ(marks(), (std::vector<bool>{false, true, false}));
  Edit(kCommand_Edge);
  EXPECT_EQ(marks(), (std::vector<bool>{false, false, true}));
  Click(1);
  EXPECT_EQ(Inspector::ColorType(View()), CaptioningColor::kColorType_Edge);
}

TEST_F(Colors, TextIsShownAsItIsAndItsOpacityIsNotToBeEdited) {
  ShowOpen({TextIn(WithAlpha(kBlue, 0.0F)), TextIn(WithAlpha(kRed, 0.5F))});
  EXPECT_EQ(Picker().GetColor(), (UIF::Color{0, 0, 255})) << "an invisible text too";
  EXPECT_EQ(Opacity().GetValue(), 0.0);
  EXPECT_TRUE(Opacity().IsDisabled());
  Click(3);
  EXPECT_EQ(Opacity().GetValue(), 50.0);
  SelectAll();
  EXPECT_EQ(Picker().GetColor(), Window());
  EXPECT_TRUE(Opacity().IsValueUnknown());
  EXPECT_TRUE(Opacity().IsDisabled());
}

TEST_F(Colors, AnInvisibleBackgroundShowsTheWindow) {
  ShowOpen({BackgroundIn(WithAlpha(kBlue, 0.0F)), BackgroundIn(kBlue)});
  Edit(kCommand_Background);
  EXPECT_EQ(Picker().GetColor(), Window());
  EXPECT_EQ(Opacity().GetValue(), 0.0);
  EXPECT_FALSE(Opacity().IsDisabled());
  Click(3);
  EXPECT_EQ(Picker().GetColor(), (UIF::Color{0, 0, 255}));
  EXPECT_EQ(Opacity().GetValue(), 100.0);
}

TEST_F(Colors, AnInvisibleEdgeShowsTheWindowAndIsNotRemembered) {
  ShowOpen({EdgeIn(WithAlpha(kBlue, 0.5F), 2.0F), EdgeIn(WithAlpha(kGreen, 0.0F), 2.0F)});
  Edit(kCommand_Edge);
  EXPECT_EQ(Picker().GetColor(), (UIF::Color{0, 0, 255}));
  EXPECT_EQ(Inspector::LastEdgeColor(View()), WithAlpha(kBlue, 0.5F));
  EXPECT_FALSE(Opacity().IsDisabled());
  Click(3);
  EXPECT_EQ(Picker().GetColor(), Window());
  EXPECT_EQ(Inspector::LastEdgeColor(View()), WithAlpha(kBlue, 0.5F)) << "an opacity of 0 is not remembered either";
  EXPECT_EQ(Opacity().GetValue(), 0.0);
}

TEST_F(Colors, MixedEdgesOfOneOpacityShowTheWindowAndRememberTheOpacity) {
  ShowOpen({EdgeIn(WithAlpha(kBlue, 0.25F), 2.0F), EdgeIn(WithAlpha(kGreen, 0.25F), 2.0F)});
  Edit(kCommand_Edge);
  Inspector::LastEdgeColor(View()) = kRed;
  SelectAll();
  EXPECT_EQ(Picker().GetColor(), Window());
  EXPECT_EQ(Opacity().GetValue(), 25.0);
  EXPECT_EQ(Inspector::LastEdgeColor(View()), WithAlpha(kRed, 0.25F));
}

TEST_F(Colors, MixedOpacitiesOfTheEdgeAreUnknown) {
  ShowOpen({EdgeIn(WithAlpha(kBlue, 0.25F), 2.0F), EdgeIn(kBlue, 2.0F)});
  Edit(kCommand_Edge);
  SelectAll();
  EXPECT_TRUE(Opacity().IsValueUnknown());
}

TEST_F(Colors, OfClosedCaptionsAMixedColourShowsTheWindow) {
  ShowClosed({TextIn(kRed), TextIn(kBlue)});
  EXPECT_EQ(Swatch(), (UnManagedRGBA{1, 0, 0, 1}));
  SelectAll();
  EXPECT_EQ(Swatch(), WindowRGBA());
}

TEST_F(Colors, TheEdgeCommandLeavesTheSwatchOfClosedCaptionsAsItWas) {
  ShowClosed({TextIn(kRed), TextIn(kBlue)});
  EXPECT_FALSE(Inspector::EdgeColorButton(View()).IsEnabled());
  Edit(kCommand_Edge);
  EXPECT_EQ(Swatch(), (UnManagedRGBA{1, 0, 0, 1}));
  Click(3);
  EXPECT_EQ(Swatch(), (UnManagedRGBA{1, 0, 0, 1}));
}

TEST_F(Colors, TheEdgeStaysUnderEditWhenClosedCaptionsComeOnShow) {
  ShowOpen({EdgeIn(kBlue, 2.0F)});
  Edit(kCommand_Edge);
  const UnManagedRGBA before = Swatch();
  const auto closedClip = AddClip();
  AddStream(closedClip, MakeLooks({TextIn(kRed)}), k608);
  SelectClip(closedClip);
  EXPECT_FALSE(Inspector::IsOpenCaptions(View()));
  EXPECT_EQ(Inspector::ColorType(View()), CaptioningColor::kColorType_Edge);
  EXPECT_EQ(Swatch(), before);
}

} // namespace Captivo::Testing
