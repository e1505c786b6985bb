#include <algorithm>

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include "Captions/contracts/TextSpanAttributes.h"
#include "TD/FaceNames.h"

using namespace TD;
using zebcaptioning::TextSpanAttributes;
using zebcore::ToUTF8;

namespace {

FaceFacts Face(const char* style, double weight = FC_WEIGHT_REGULAR, int slant = FC_SLANT_ROMAN, double width = 100) {
  FaceFacts face;
  face.style = style;
  face.fullName = std::string("Full ") + style;
  face.weight = weight;
  face.slant = slant;
  face.width = width;
  return face;
}

std::vector<std::string> Styles(const std::vector<CaptionFontRecord>& records) {
  std::vector<std::string> styles;
  for (const CaptionFontRecord& record : records)
    styles.push_back(ToUTF8(record.styleName));
  return styles;
}
using Names = std::vector<std::string>;

std::string Style(const char* style, double weight = FC_WEIGHT_REGULAR, int slant = FC_SLANT_ROMAN) {
  return ToUTF8(StyleName(Face(style, weight, slant)));
}

// Lists that a test sets go with it.
struct FontList : testing::Test {
  void TearDown() override { SetTitlerFontList({}); }
  static Names Families() {
    Names names;
    for (const auto& [key, family] : GetTitlerFontList())
      names.push_back(ToUTF8(family.name));
    return names;
  }
};

FontFamilyDescription Family(const char16_t* name) {
  CaptionFontRecord regular;
  regular.styleName = u"Regular";
  return {name, {regular}};
}

} // namespace

TEST(StyleNames, OfThePlainFacesAreThoseOfTheCaptionModel) {
  EXPECT_EQ(StyleName(Face("Book")), TextSpanAttributes::kFontStyleString_Regular);
  EXPECT_EQ(StyleName(Face("Roman")), TextSpanAttributes::kFontStyleString_Regular);
  EXPECT_EQ(StyleName(Face("")), TextSpanAttributes::kFontStyleString_Regular);
  EXPECT_EQ(StyleName(Face("Oblique", FC_WEIGHT_REGULAR, FC_SLANT_OBLIQUE)),
            TextSpanAttributes::kFontStyleString_Italic);
  EXPECT_EQ(StyleName(Face("Bold", FC_WEIGHT_BOLD)), TextSpanAttributes::kFontStyleString_Bold);
  EXPECT_EQ(StyleName(Face("Bold Oblique", FC_WEIGHT_BOLD, FC_SLANT_OBLIQUE)),
            TextSpanAttributes::kFontStyleString_BoldItalic);
}

TEST(StyleNames, OfFacesWithoutAStyleComeFromTheirNumbers) {
  EXPECT_EQ(Style("", FC_WEIGHT_BOLD, FC_SLANT_ITALIC), "Bold Italic");
  EXPECT_EQ(Style("Regular", FC_WEIGHT_REGULAR, FC_SLANT_ITALIC), "Italic");
}

TEST(StyleNames, UseTheWeightWordsThatThePanelTakesApart) {
  EXPECT_EQ(Style("ExtraLight", FC_WEIGHT_EXTRALIGHT), "Ultra Light");
  EXPECT_EQ(Style("Extra Light Italic", FC_WEIGHT_EXTRALIGHT, FC_SLANT_ITALIC), "Ultra Light Italic");
  EXPECT_EQ(Style("SemiBold", FC_WEIGHT_DEMIBOLD), "Demi Bold");
  EXPECT_EQ(Style("Demi-Bold Oblique", FC_WEIGHT_DEMIBOLD, FC_SLANT_OBLIQUE), "Demi Bold Italic");
  EXPECT_EQ(Style("Light", FC_WEIGHT_LIGHT), "Light");
  EXPECT_EQ(Style("Heavy", FC_WEIGHT_HEAVY), "Heavy");
}

TEST(StyleNames, PutBoldInFrontAndItalicAtTheEnd) {
  EXPECT_EQ(Style("Condensed Bold Oblique", FC_WEIGHT_BOLD, FC_SLANT_OBLIQUE), "Bold Condensed Italic");
  EXPECT_EQ(Style("Condensed Italic", FC_WEIGHT_REGULAR, FC_SLANT_ITALIC), "Condensed Italic");
  EXPECT_EQ(Style("Italic Display", FC_WEIGHT_REGULAR, FC_SLANT_ITALIC), "Display Italic");
}

TEST(Faces, StartWithTheFourPlainOnesAndGoOnByWeight) {
  const auto records =
      MakeRecords({Face("Black", FC_WEIGHT_BLACK), Face("Bold Italic", FC_WEIGHT_BOLD, FC_SLANT_ITALIC),
                   Face("Thin", FC_WEIGHT_THIN), Face("Bold", FC_WEIGHT_BOLD),
                   Face("Italic", FC_WEIGHT_REGULAR, FC_SLANT_ITALIC), Face("Regular")});
  EXPECT_EQ(Styles(records), Names({"Regular", "Italic", "Bold", "Bold Italic", "Thin", "Black"}));
}

TEST(Faces, OfOneStyleAreFoldedAndTheOneOfCommonWidthStays) {
  auto wide = Face("Regular", FC_WEIGHT_REGULAR, FC_SLANT_ROMAN, FC_WIDTH_EXPANDED);
  wide.fullName = "Wide";
  auto plain = Face("Book");
  plain.fullName = "Plain";
  const auto records = MakeRecords({wide, plain});
  ASSERT_EQ(Styles(records), Names({"Regular"}));
  EXPECT_EQ(ToUTF8(records.front().fullName), "Plain");
}

TEST(Faces, SayWhetherTheyAreBoldOrItalic) {
  const auto records = MakeRecords({Face("SemiBold", FC_WEIGHT_DEMIBOLD), Face("Bold", FC_WEIGHT_BOLD),
                                    Face("Oblique", FC_WEIGHT_REGULAR, FC_SLANT_OBLIQUE)});
  ASSERT_EQ(Styles(records), Names({"Italic", "Bold", "Demi Bold"}));
  EXPECT_FALSE(records[0].isBold);
  EXPECT_TRUE(records[0].isItalic);
  EXPECT_TRUE(records[1].isBold);
  EXPECT_FALSE(records[1].isItalic);
  EXPECT_FALSE(records[2].isBold);
}

TEST(Faces, ThatCallThemselvesBoldAreBoldWhateverTheirWeightSays) {
  EXPECT_TRUE(MakeRecords({Face("Bold", FC_WEIGHT_REGULAR)}).front().isBold);
}

TEST(Faces, OfOutlinesCanBeMadeBoldAndItalicWithoutATwin) {
  const auto records = MakeRecords({Face("Regular")});
  EXPECT_TRUE(records.front().boldSelectable);
  EXPECT_TRUE(records.front().italicSelectable);
}

TEST(Faces, OfColouredPicturesAreBoldOrItalicOnlyByATwin) {
  FaceFacts picture = Face("Regular");
  picture.color = true;
  EXPECT_FALSE(MakeRecords({picture}).front().boldSelectable);
  EXPECT_FALSE(MakeRecords({picture}).front().italicSelectable);
  FaceFacts bold = Face("Bold", FC_WEIGHT_BOLD);
  bold.color = true;
  for (const CaptionFontRecord& record : MakeRecords({picture, bold})) {
    EXPECT_TRUE(record.boldSelectable);
    EXPECT_FALSE(record.italicSelectable);
  }
}

TEST_F(FontList, OfTheMachineHoldsScalableFamiliesWithFacesAndNoHiddenOnes) {
  ASSERT_FALSE(GetTitlerFontList().empty());
  int id = 0;
  for (const auto& [key, family] : GetTitlerFontList()) {
    EXPECT_EQ(family.id, ++id);
    ASSERT_FALSE(family.name.empty());
    EXPECT_NE(family.name.front(), u'.');
    ASSERT_NE(family.faces, nullptr);
    ASSERT_FALSE(family.faces->empty());
    Names styles;
    for (const CaptionFontRecord* face : *family.faces)
      styles.push_back(ToUTF8(face->styleName));
    std::ranges::sort(styles);
    EXPECT_EQ(std::ranges::adjacent_find(styles), styles.end()) << ToUTF8(family.name);
  }
}

TEST_F(FontList, HasNoTwoFamiliesOfOneName) {
  Names names = Families();
  std::ranges::sort(names);
  EXPECT_EQ(std::ranges::adjacent_find(names), names.end());
}

TEST_F(FontList, IsSortedAsPeopleSortNames) {
  SetTitlerFontList({Family(u"zeta"), Family(u"Beta"), Family(u"alpha"), Family(u"Älpha"), Family(u"beta")});
  EXPECT_EQ(Families(), Names({"alpha", "Älpha", "beta", "Beta", "zeta"}));
}

TEST_F(FontList, StaysInTheOrderOfItsFamiliesIfItIsGivenSo) {
  SetTitlerFontListAsGiven({Family(u"zeta"), Family(u"Alpha Two"), Family(u"Alpha"), Family(u"zeta")});
  EXPECT_EQ(Families(), Names({"zeta", "Alpha Two", "Alpha"}));
  EXPECT_EQ(GetTitlerFontList().begin()->second.id, 1);
}

TEST_F(FontList, MayBeGivenWithoutAFamily) {
  SetTitlerFontListAsGiven({});
  EXPECT_TRUE(Families().empty());
}

TEST_F(FontList, KeepsTheFacesThatItIsGivenInTheirOrder) {
  CaptionFontRecord heavy;
  heavy.styleName = u"Heavy";
  heavy.boldSelectable = false;
  CaptionFontRecord regular;
  regular.styleName = u"Regular";
  SetTitlerFontList({{u"Test", {heavy, regular}}});
  ASSERT_EQ(GetTitlerFontList().size(), 1U);
  const auto& faces = *GetTitlerFontList().begin()->second.faces;
  ASSERT_EQ(faces.size(), 2U);
  EXPECT_EQ(faces[0]->styleName, u"Heavy");
  EXPECT_FALSE(faces[0]->boldSelectable);
}

TEST_F(FontList, LeavesItsFacesToWhoeverTookThemWhenAnotherTakesItsPlace) {
  SetTitlerFontList({Family(u"A family with a name of some length")});
  const std::vector<const CaptionFontRecord*>& faces = *GetTitlerFontList().begin()->second.faces;
  const CaptionFontRecord record = *faces.front();
  SetTitlerFontList({Family(u"Another family with a name of some length")});
  SetTitlerFontList({});
  ASSERT_FALSE(faces.empty());
  EXPECT_EQ(faces.front()->styleName, record.styleName);
  EXPECT_EQ(faces.front()->fullName, record.fullName);
}

TEST_F(FontList, IsTheMachinesAgainAfterAnEmptyOne) {
  const Names machine = Families();
  SetTitlerFontList({Family(u"Only")});
  EXPECT_EQ(Families(), Names({"Only"}));
  SetTitlerFontList({});
  EXPECT_EQ(Families(), machine);
}
