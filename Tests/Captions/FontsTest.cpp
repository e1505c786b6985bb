#include "FormatStage.h"

namespace Captivo::Testing {

namespace {

using Names = std::vector<std::string>;

TD::CaptionFontRecord Face(const UString& family, const UString& style, bool bold = false, bool italic = false) {
  TD::CaptionFontRecord face;
  face.styleName = style;
  face.fullName = family + u" " + style;
  face.isBold = bold;
  face.isItalic = italic;
  return face;
}

TD::FontFamilyDescription Family(const UString& name, const std::vector<UString>& styles) {
  TD::FontFamilyDescription family{name, {}};
  for (const UString& style : styles)
    family.faces.push_back(Face(name, style, style.starts_with(u"Bold"), style.ends_with(u"Italic")));
  return family;
}

SetLook In(const UString& family, bool bold = false, bool italic = false) {
  return [=](zebcaptioning::TextSpanAttributes& look) {
    look.family = family;
    look.bold = bold;
    look.italic = italic;
  };
}

// Open captions and a machine with these families.
class Fonts : public FormatStage {
 protected:
  Fonts() {
    TD::FontFamilyDescription pictures = Family(u"Pictures", {u"Regular", u"Bold"});
    pictures.faces[0].boldSelectable = false;
    TD::FontFamilyDescription upright = Family(u"Upright", {u"Regular", u"Bold"});
    upright.faces[1].italicSelectable = false;
    TD::FontFamilyDescription twins = Family(u"Twins", {u"Regular", u"Regular", u"Light"});
    twins.faces[0].fullName = u"Twins One";
    twins.faces[1].fullName = u"Twins Two";
    TD::SetTitlerFontList({Family(u"Plain", {u"Regular", u"Italic", u"Bold", u"Bold Italic"}),
                           Family(u"Rich", {u"Light", u"Medium", u"Demi Bold", u"Bold", u"Light Italic", u"Condensed",
                                            u"Condensed Italic", u"Bold Condensed"}),
                           Family(u"Single", {u"Regular"}), Family(u"Wide", {u"Regular", u"Wide", u"Bold Extended"}),
                           Family(u"Stout", {u"Regular", u"Bold"}), pictures, upright, twins});
  }

  void ShowCaptions(const std::vector<SetLook>& looks) { ShowOpen(MakeLooks(looks)); }
  zebui::controls::UI_Popup& Families() { return *Inspector::FontFamilyPopup(View()); }
  zebui::controls::UI_Popup& Weights() { return *Inspector::FontWeightPopup(View()); }
  static Names Items(const zebui::controls::UI_Popup& popup) {
    Names names;
    for (std::int64_t i = 0; i < popup.Size(); ++i)
      names.push_back(zebcore::ToUTF8(popup.GetItemString(i)));
    return names;
  }
  static void Choose(zebui::controls::UI_Popup& popup, const UString& text) {
    for (std::int64_t i = 0; i < popup.Size(); ++i) {
      if (popup.GetItemString(i) == text)
        return popup.Choose(i);
    }
    FAIL() << zebcore::ToUTF8(text) << " is no item";
  }
  void ExpectWeight(const UString& name) {
    EXPECT_EQ(zebcore::ToUTF8(Weights().GetValueString()), zebcore::ToUTF8(name));
    EXPECT_EQ(Inspector::FontStyleName(View()), name);
  }
  void ToggleBold() { Command(32015); }
  void ToggleItalic() { Command(32010); }
  // The reports since the last time, each with its names.
  std::vector<Names> TakeReports() {
    std::vector<Names> reports;
    for (const auto& call : zebcore::trace::Take()) {
      if (call.call != "MZ::LogFontUsage")
        continue;
      EXPECT_EQ(call.args.at("type"), 0);
      reports.push_back(call.args.at("names").get<Names>());
    }
    return reports;
  }
};

} // namespace

TEST_F(Fonts, FamiliesStandInThePopupOnceInTheOrderOfTheList) {
  ShowCaptions({In(u"Plain")});
  const Names families{"Pictures", "Plain", "Rich", "Single", "Stout", "Twins", "Upright", "Wide"};
  EXPECT_EQ(Items(Families()), families);
  SelectClip(nullptr);
  SelectClip(clip);
  EXPECT_EQ(Items(Families()), families);
}

TEST_F(Fonts, TheFacesOfAFamilyAreTheWeightsInTheirOrder) {
  ShowCaptions({In(u"Plain")});
  EXPECT_EQ(Items(Weights()), (Names{"Regular", "Italic", "Bold", "Bold Italic"}));
  EXPECT_EQ(Inspector::FamilyFonts(View()).size(), 4U);
  Choose(Families(), u"Stout");
  EXPECT_EQ(Items(Weights()), (Names{"Regular", "Bold"}));
  ASSERT_EQ(Inspector::FamilyFonts(View()).size(), 2U);
  EXPECT_EQ(Inspector::FamilyFonts(View())[1]->fullName, u"Stout Bold");
}

TEST_F(Fonts, AFamilyThatTheListLacksLeavesWeightsAndButtonsAsTheyWere) {
  ShowCaptions({In(u"Pictures")});
  Families().AddItem(u"Gone");
  EXPECT_FALSE(Inspector::BoldAllowed(View()));
  Choose(Families(), u"Gone");
  EXPECT_EQ(Look(1).family, u"Gone");
  EXPECT_EQ(Items(Weights()), (Names{"Regular", "Bold"}));
  EXPECT_EQ(Inspector::FamilyFonts(View()).front()->fullName, u"Pictures Regular");
  EXPECT_FALSE(Inspector::BoldAllowed(View()));
  EXPECT_TRUE(boxes.empty());
}

TEST_F(Fonts, AListThatTakesThePlaceOfTheOneOnShowLeavesTheFamilyAsItIs) {
  ShowCaptions({In(u"Wide")});
  TD::SetTitlerFontList({Family(u"Plain", {u"Regular", u"Italic"})});
  ToggleBold();
  ExpectWeight(u"Bold Extended");
  Choose(Families(), u"Plain");
  EXPECT_EQ(Items(Weights()), (Names{"Regular", "Italic"}));
}

TEST_F(Fonts, OneFaceThatCannotBeSwitchedTakesTheButtonFromTheWholeFamily) {
  ShowCaptions({In(u"Plain")});
  EXPECT_TRUE(Inspector::BoldAllowed(View()));
  EXPECT_TRUE(Inspector::ItalicAllowed(View()));
  Choose(Families(), u"Pictures");
  EXPECT_FALSE(Inspector::BoldAllowed(View()));
  EXPECT_TRUE(Inspector::ItalicAllowed(View()));
  EXPECT_FALSE(Inspector::BoldButton(View()).IsEnabled());
  Choose(Families(), u"Upright");
  EXPECT_TRUE(Inspector::BoldAllowed(View()));
  EXPECT_FALSE(Inspector::ItalicAllowed(View()));
  EXPECT_TRUE(Inspector::BoldButton(View()).IsEnabled());
  EXPECT_FALSE(Inspector::ItalicButton(View()).IsEnabled());
}

TEST_F(Fonts, AFamilyWithOneFaceLeavesNothingToChoose) {
  ShowCaptions({In(u"Single")});
  EXPECT_EQ(Items(Weights()), (Names{"Regular"}));
  EXPECT_TRUE(Weights().IsDisabled());
  Choose(Families(), u"Plain");
  EXPECT_FALSE(Weights().IsDisabled());
}

TEST_F(Fonts, TheWeightFollowsBoldAndItalic) {
  ShowCaptions({In(u"Plain"), In(u"Plain", true), In(u"Plain", false, true), In(u"Plain", true, true)});
  ExpectWeight(u"Regular");
  Click(3);
  ExpectWeight(u"Bold");
  Click(5);
  ExpectWeight(u"Italic");
  Click(7);
  ExpectWeight(u"Bold Italic");
}

TEST_F(Fonts, AWeightStaysWhileBoldIsOffAndDoesNotComeBackAfterIt) {
  ShowCaptions({In(u"Rich")});
  Choose(Weights(), u"Light");
  ToggleItalic();
  ExpectWeight(u"Light Italic");
  ToggleItalic();
  ExpectWeight(u"Light");
  ToggleBold();
  ExpectWeight(u"Bold");
  ToggleBold();
  ExpectWeight(u"Light"); // no Regular here: the first face that is neither bold nor italic
  Choose(Weights(), u"Medium");
  ToggleBold();
  ToggleBold();
  ExpectWeight(u"Light");
}

TEST_F(Fonts, DemiBoldIsNotBoldAndGivesWayWhenBoldIsSwitchedOn) {
  ShowCaptions({In(u"Rich")});
  zebcore::trace::Take();
  Choose(Weights(), u"Demi Bold");
  EXPECT_EQ(TakeApplied(), std::vector<int>{});
  EXPECT_FALSE(Look(1).bold);
  ToggleBold();
  ExpectWeight(u"Bold");
}

TEST_F(Fonts, AStyleThatIsNoWeightGoesAlongWithBoldAndItalic) {
  ShowCaptions({In(u"Rich")});
  Choose(Weights(), u"Condensed");
  ToggleBold();
  ExpectWeight(u"Bold Condensed");
  ToggleBold();
  ExpectWeight(u"Condensed");
  ToggleItalic();
  ExpectWeight(u"Condensed Italic");
}

TEST_F(Fonts, BoldWithoutABoldTwinTakesTheFirstFaceOfTheSameFlags) {
  ShowCaptions({In(u"Wide")});
  Choose(Weights(), u"Wide");
  ToggleBold();
  ExpectWeight(u"Bold Extended");
}

TEST_F(Fonts, BoldWithoutABoldFaceShowsTheFirstFaceWhileTheCaptionStaysBold) {
  ShowCaptions({In(u"Single")});
  ToggleBold();
  ExpectWeight(u"Regular");
  EXPECT_TRUE(Look(1).bold);
  EXPECT_TRUE(Inspector::BoldButton(View()).GetValue());
}

TEST_F(Fonts, BoldGivingWayToItalicIsItalicEvenWhereTheFamilyHasNoSuchFace) {
  ShowCaptions({In(u"Stout", true), In(u"Stout", false, true)});
  ExpectWeight(u"Bold");
  Click(3);
  ExpectWeight(u"Italic");
}

TEST_F(Fonts, RegularTurnedItalicWithoutSuchAFaceShowsTheFirstFace) {
  ShowCaptions({In(u"Stout")});
  ToggleItalic();
  ExpectWeight(u"Regular");
  EXPECT_TRUE(Look(1).italic);
}

TEST_F(Fonts, MixedBoldInOneFamilyShowsMultipleAndStaysOpenToChoice) {
  ShowCaptions({In(u"Plain"), In(u"Plain", true)});
  SelectAll();
  ExpectWeight(u"Multiple");
  EXPECT_FALSE(Weights().IsDisabled());
  EXPECT_TRUE(Inspector::BoldAllowed(View()));
}

TEST_F(Fonts, MixedItalicInOneFamilyShowsMultipleToo) {
  ShowCaptions({In(u"Plain"), In(u"Plain", false, true)});
  SelectAll();
  ExpectWeight(u"Multiple");
  EXPECT_FALSE(Weights().IsDisabled());
}

TEST_F(Fonts, MixedFamiliesShowMultipleAndTakeTheWeightsAndBothFlags) {
  ShowCaptions({In(u"Plain"), In(u"Stout")});
  SelectAll();
  ExpectWeight(u"Multiple");
  EXPECT_TRUE(Weights().IsDisabled());
  EXPECT_FALSE(Inspector::BoldAllowed(View()));
  EXPECT_FALSE(Inspector::ItalicAllowed(View()));
  Click(1);
  ExpectWeight(u"Regular");
  EXPECT_FALSE(Weights().IsDisabled());
  EXPECT_TRUE(Inspector::BoldAllowed(View()));
  EXPECT_TRUE(Inspector::ItalicAllowed(View()));
}

TEST_F(Fonts, APlaceholderGivesWayToAFaceOfTheFlags) {
  ShowCaptions({In(u"Plain", false, true), In(u"Plain", true, true)});
  SelectAll();
  ExpectWeight(u"Multiple");
  Click(3);
  ExpectWeight(u"Bold Italic");
}

TEST_F(Fonts, AFamilyThatLacksTheStyleTakesItFromTheSelectionInOneStep) {
  ShowCaptions({In(u"Plain", true, true), In(u"Plain", true, true)});
  SelectAll();
  zebcore::trace::Take();
  Choose(Families(), u"Single");
  EXPECT_EQ(TakeApplied(), std::vector<int>{4});
  for (const double begin : {1.0, 3.0}) {
    EXPECT_EQ(Look(begin).family, u"Single");
    EXPECT_FALSE(Look(begin).bold);
    EXPECT_FALSE(Look(begin).italic);
  }
  EXPECT_FALSE(Inspector::BoldButton(View()).GetValue());
  EXPECT_FALSE(Inspector::ItalicButton(View()).GetValue());
}

TEST_F(Fonts, AFamilyThatHasTheStyleLeavesBoldAndItalic) {
  ShowCaptions({In(u"Plain", true)});
  zebcore::trace::Take();
  Choose(Families(), u"Stout");
  EXPECT_EQ(TakeApplied(), std::vector<int>{4});
  EXPECT_EQ(Look(1).family, u"Stout");
  EXPECT_TRUE(Look(1).bold);
  ExpectWeight(u"Bold");
}

TEST_F(Fonts, OnlyTheFlagThatTheNewFamilyLacksIsForced) {
  ShowCaptions({In(u"Plain", true, true)});
  Choose(Families(), u"Stout");
  // No face is both: the first one is taken, which is neither.
  EXPECT_FALSE(Look(1).bold);
  EXPECT_FALSE(Look(1).italic);
  ShowCaptions({In(u"Plain", false, true)});
  Choose(Families(), u"Rich");
  EXPECT_EQ(Inspector::FontStyleName(View()), u"Light Italic");
  EXPECT_TRUE(Look(1).italic);
  EXPECT_FALSE(Look(1).bold);
}

TEST_F(Fonts, AFamilyChosenOverMixedBoldMakesAllCaptionsAlike) {
  ShowCaptions({In(u"Plain"), In(u"Plain", true)});
  SelectAll();
  Choose(Families(), u"Stout");
  EXPECT_FALSE(Look(1).bold);
  EXPECT_FALSE(Look(3).bold);
  EXPECT_EQ(Look(3).family, u"Stout");
}

TEST_F(Fonts, AWeightThatIsBoldAndItalicChangesBothInOneApplication) {
  ShowCaptions({In(u"Plain")});
  Choose(Weights(), u"Bold Italic");
  EXPECT_EQ(TakeApplied(), std::vector<int>{3});
  EXPECT_TRUE(Look(1).bold);
  EXPECT_TRUE(Look(1).italic);
  EXPECT_TRUE(Inspector::BoldButton(View()).GetValue());
  EXPECT_TRUE(Inspector::ItalicButton(View()).GetValue());
}

TEST_F(Fonts, AWeightThatIsBoldAloneTakesItalicFromAMixedSelection) {
  ShowCaptions({In(u"Plain"), In(u"Plain", false, true)});
  SelectAll();
  Choose(Weights(), u"Bold");
  EXPECT_EQ(TakeApplied(), std::vector<int>{3});
  EXPECT_TRUE(Look(1).bold);
  EXPECT_FALSE(Look(3).italic) << "a mixed flag counts as changed";
}

TEST_F(Fonts, AWeightThatIsItalicAloneChangesItalicAlone) {
  ShowCaptions({In(u"Plain")});
  Choose(Weights(), u"Italic");
  EXPECT_EQ(TakeApplied(), std::vector<int>{2});
  EXPECT_TRUE(Look(1).italic);
  EXPECT_FALSE(Look(1).bold);
}

TEST_F(Fonts, TheFaceButtonsGoAlongWithAWeightThatNoCaptionTakes) {
  ShowCaptions({In(u"Plain")});
  SelectNothing();
  Weights().SetDisabled(false);
  ASSERT_FALSE(Inspector::BoldButton(View()).GetValue());
  ASSERT_FALSE(Inspector::ItalicButton(View()).GetValue());
  Choose(Weights(), u"Bold Italic");
  EXPECT_EQ(TakeApplied(), std::vector<int>{});
  EXPECT_TRUE(Inspector::BoldButton(View()).GetValue());
  EXPECT_TRUE(Inspector::ItalicButton(View()).GetValue());
}

TEST_F(Fonts, AFamilyWithALongerStylePushesWhatFollowsInTheRow) {
  const UString style = u"Bold " + UString(60, u'W');
  TD::SetTitlerFontList({Family(u"Plain", {u"Regular"}), Family(u"Long", {u"Regular", style})});
  ShowCaptions({In(u"Plain")});
  const float before = Inspector::FontSizeControl(View())->UI_GetLocalRectF().x;
  Choose(Families(), u"Long");
  EXPECT_GT(Inspector::FontSizeControl(View())->UI_GetLocalRectF().x, before + 100);
}

TEST_F(Fonts, AnotherWeightOfTheSameFlagsChangesNoCaption) {
  ShowCaptions({In(u"Rich")});
  Choose(Weights(), u"Medium");
  EXPECT_EQ(TakeApplied(), std::vector<int>{});
  ExpectWeight(u"Medium");
}

TEST_F(Fonts, AChosenFamilyIsReportedAndThenItsFace) {
  ShowCaptions({In(u"Plain", true)});
  Choose(Families(), u"Stout");
  EXPECT_EQ(TakeReports(), (std::vector<Names>{{"Stout"}, {"Stout Bold"}}));
}

TEST_F(Fonts, AChosenWeightIsNotReported) {
  ShowCaptions({In(u"Plain")});
  Choose(Weights(), u"Bold");
  EXPECT_EQ(TakeReports(), std::vector<Names>{});
}

TEST_F(Fonts, OfSeveralFacesOfOneStyleTheLastIsReported) {
  ShowCaptions({In(u"Plain")});
  Choose(Families(), u"Twins");
  EXPECT_EQ(TakeReports(), (std::vector<Names>{{"Twins"}, {"Twins Two"}}));
}

TEST_F(Fonts, AFamilyOutsideTheListIsReportedWithTheFaceThatIsStillOnShow) {
  ShowCaptions({In(u"Stout")});
  Families().AddItem(u"Gone");
  Choose(Families(), u"Gone");
  EXPECT_EQ(TakeReports(), (std::vector<Names>{{"Gone"}, {"Stout Regular"}}));
}

} // namespace Captivo::Testing
