#include <map>
#include <set>

#include <QAbstractButton>
#include <QApplication>

#include "Captions/contracts/StreamFormat.h"
#include "Captions/view/CaptionsView.h"
#include "Support.h"
#include "TD/TitlerFontList.h"
#include "zebcore/DebugDatabase.h"

namespace Captivo::Testing {

namespace {

using namespace zebui::controls;
using Bounds = RectT<int>;

constexpr StreamFormat kEbuN19 = 0x45424E31;   // "EBN1"
constexpr StreamFormat kTeletext = 0x54545831; // "TTX1"

enum class Shown { All, Open, Closed, Ebu, Never };

// A node control of the bar at its creation.
struct NodeRow {
  const char* field;
  zebui::ui::UI_Node* (*find)(CaptionsView&);
  Bounds bounds;
  UString text;    // of a label or button
  UString toolTip; // of any other control
  Shown shown;
};

struct ButtonRow {
  const char* field;
  UIF::PictureButton& (*find)(CaptionsView&);
  Bounds bounds;
  int command;
  UString toolTip;
  Shown shown;
};

struct NumberRow {
  const char* field;
  UI_HotTextNumber* (*find)(CaptionsView&);
  int decimals;
  double value;
  double min;
  double max;
};

#define NODE(Name) #Name, [](CaptionsView & view) -> zebui::ui::UI_Node* { return Inspector::Name(view).get(); }
#define BUTTON(Name) #Name, [](CaptionsView & view) -> UIF::PictureButton& { return Inspector::Name(view); }
#define NUMBER(Name) #Name, [](CaptionsView & view) -> UI_HotTextNumber* { return Inspector::Name(view).get(); }

const std::vector<NodeRow>& NodeRows() {
  static const std::vector<NodeRow> rows = {
      {NODE(FilterBox), {3, 3, 167, 19}, u"", u"Filter caption content", Shown::All},
      {NODE(StreamLabel), {171, 3, 55, 19}, u"Caption Stream:", u"", Shown::All},
      {NODE(StreamPopup), {226, 3, 149, 19}, u"", u"Select caption stream", Shown::All},
      {NODE(GridLabel), {171, 3, 30, 19}, u"Grid:", u"", Shown::All},
      {NODE(GridSizeText), {205, 3, 30, 19}, u"", u"", Shown::All},
      {NODE(FontLabel), {171, 3, 55, 19}, u"Font:", u"", Shown::Open},
      {NODE(FontFamilyPopup), {226, 3, 149, 19}, u"", u"Select Font Family", Shown::Open},
      {NODE(FontWeightPopup), {171, 3, 100, 19}, u"", u"Select font weight", Shown::Open},
      {NODE(FontSizeLabel), {275, 3, 40, 19}, u"Size:", u"", Shown::Open},
      {NODE(FontSizeControl), {319, 3, 40, 19}, u"", u"Set Font Size", Shown::Open},
      {NODE(DoubleHeightPopup), {319, 3, 70, 19}, u"", u"Switch between normal and double height", Shown::Ebu},
      {NODE(EdgeWidthLabel), {365, 3, 40, 19}, u"Edge:", u"", Shown::Open},
      {NODE(EdgeWidthControl), {409, 3, 40, 19}, u"", u"Set Text Edge Width", Shown::Open},
      {NODE(LineSpacingLabel), {455, 3, 40, 19}, u"Line Spacing:", u"", Shown::Open},
      {NODE(LineSpacingControl), {500, 3, 20, 19}, u"", u"Set Line Spacing in %", Shown::Open},
      {NODE(RegionPopup), {600, 3, 100, 19}, u"", u"Select Region", Shown::Never},
      {NODE(StylePopup), {680, 3, 100, 19}, u"", u"Select Style", Shown::Never},
      {NODE(CaptionTypeLabel), {0, 33, 32, 19}, u"Type:", u"", Shown::Closed},
      {NODE(CaptionTypePopup), {34, 33, 99, 19}, u"", u"Set display style", Shown::Closed},
      {NODE(AlignDivider), {225, 32, 2, 20}, u"", u"", Shown::All},
      {NODE(StyleDivider), {318, 32, 2, 20}, u"", u"", Shown::All},
      {NODE(ColorSwatch), {391, 32, 20, 20}, u"", u"Choose Color", Shown::Closed},
      {NODE(OpacityControl), {319, 3, 40, 19}, u"", u"Opacity", Shown::Open},
      {NODE(OpacityUnitText), {476, 32, 10, 20}, u"%", u"", Shown::Open},
      {NODE(ColorDivider), {501, 32, 2, 20}, u"", u"", Shown::All},
      {NODE(ClosedPositionGrid), {506, 32, 20, 20}, u"", u"Position Caption Block", Shown::Closed},
      {NODE(ClosedPositionXLabel), {536, 32, 10, 20}, u"x:", u"", Shown::Closed},
      {NODE(ClosedPositionXControl), {551, 32, 30, 20}, u"", u"Set Horizontal Position", Shown::Closed},
      {NODE(ClosedPositionYLabel), {576, 32, 10, 20}, u"y:", u"", Shown::Closed},
      {NODE(ClosedPositionYControl), {591, 32, 30, 20}, u"", u"Set Vertical Position", Shown::Closed},
      {NODE(OpenPositionGrid), {621, 32, 20, 20}, u"", u"Open Position Caption Block", Shown::Open},
      {NODE(OpenPositionXLabel), {646, 32, 10, 20}, u"x:", u"", Shown::Open},
      {NODE(OpenPositionXControl), {676, 32, 36, 20}, u"", u"Set Horizontal Position (%)", Shown::Open},
      {NODE(OpenPositionXUnitText), {701, 32, 10, 20}, u"%", u"", Shown::Open},
      {NODE(OpenPositionYLabel), {741, 32, 10, 20}, u"y:", u"", Shown::Open},
      {NODE(OpenPositionYControl), {771, 32, 36, 20}, u"", u"Set Vertical Position (%)", Shown::Open},
      {NODE(OpenPositionYUnitText), {796, 32, 10, 20}, u"%", u"", Shown::Open},
      {NODE(ImportSettingsButton),
       {20, 670, 88, 18},
       u"Import Settings",
       u"Define import style settings for captions",
       Shown::All},
      {NODE(ExportSettingsButton), {120, 670, 88, 18}, u"Export Settings", u"Define export defaults", Shown::All},
  };
  return rows;
}

const std::vector<ButtonRow>& ButtonRows() {
  static const std::vector<ButtonRow> rows = {
      {BUTTON(AlignLeftButton), {145, 32, 20, 20}, 32000, u"Align Left", Shown::All},
      {BUTTON(AlignCenterButton), {170, 32, 20, 20}, 32001, u"Align Center", Shown::All},
      {BUTTON(AlignRightButton), {195, 32, 20, 20}, 32002, u"Align Right", Shown::All},
      {BUTTON(BoldButton), {230, 32, 20, 20}, 32015, u"Bold", Shown::Open},
      {BUTTON(ItalicButton), {238, 32, 20, 20}, 32010, u"Italicize", Shown::All},
      {BUTTON(UnderlineButton), {263, 32, 20, 20}, 32011, u"Underline", Shown::All},
      {BUTTON(MusicNoteButton), {288, 32, 20, 20}, 32012, u"Insert Music Note", Shown::All},
      {BUTTON(BackgroundColorButton), {326, 32, 20, 20}, 32013, u"Background Color", Shown::All},
      {BUTTON(TextColorButton), {346, 32, 20, 20}, 32014, u"Text Color", Shown::All},
      {BUTTON(EdgeColorButton), {366, 32, 20, 20}, 32016, u"Edge Color", Shown::Open},
  };
  return rows;
}

const std::vector<NumberRow>& NumberRows() {
  static const std::vector<NumberRow> rows = {
      {NUMBER(FontSizeControl), 0, 20, 6, 144},      {NUMBER(EdgeWidthControl), 1, 0, 0, 24},
      {NUMBER(LineSpacingControl), 0, 50, 0, 100},   {NUMBER(OpacityControl), 0, 100, 0, 100},
      {NUMBER(ClosedPositionXControl), 0, 1, 1, 32}, {NUMBER(ClosedPositionYControl), 0, 1, 1, 15},
      {NUMBER(OpenPositionXControl), 2, 0, 0, 100},  {NUMBER(OpenPositionYControl), 2, 0, 0, 100},
  };
  return rows;
}

bool IsToBeShown(Shown shown, StreamFormat format) {
  const bool isOpen = zebcaptioning::IsOpenCaptions(format);
  switch (shown) {
  case Shown::All:
    return true;
  case Shown::Open:
    return isOpen;
  case Shown::Closed:
    return !isOpen;
  case Shown::Ebu:
    return zebcaptioning::IsEbuN19(format);
  case Shown::Never:
    return false;
  }
  return false;
}

Bounds ToInt(const RectT<float>& rect) {
  return {static_cast<int>(rect.x), static_cast<int>(rect.y), static_cast<int>(rect.width),
          static_cast<int>(rect.height)};
}

class ControlTree : public PanelTest {
 protected:
  // As the controls were made, before any layout: no stream is on show.
  void CreateOnly() { OpenPanelWithoutLayout(600, 700); }

  void ExpectShownFor(StreamFormat format) {
    for (const NodeRow& row : NodeRows())
      EXPECT_EQ(row.find(View())->UI_IsShown(), IsToBeShown(row.shown, format)) << row.field;
    for (const ButtonRow& row : ButtonRows())
      EXPECT_EQ(row.find(View()).IsShown(), IsToBeShown(row.shown, format)) << row.field;
    EXPECT_EQ(Inspector::ColorPicker(View()).IsShown(), IsToBeShown(Shown::Open, format));
  }
};

} // namespace

TEST_F(ControlTree, EveryControlIsMadeWhereItsRowSays) {
  CreateOnly();
  for (const NodeRow& row : NodeRows()) {
    ASSERT_NE(row.find(View()), nullptr) << row.field;
    EXPECT_EQ(ToInt(row.find(View())->UI_GetLocalRectF()), row.bounds) << row.field;
  }
  for (const ButtonRow& row : ButtonRows())
    EXPECT_EQ(row.find(View()).GetBounds(), row.bounds) << row.field;
  EXPECT_EQ(Inspector::ColorPicker(View()).GetBounds(), (Bounds{416, 32, 20, 20}));
}

TEST_F(ControlTree, EveryControlBearsItsTextAndItsTip) {
  CreateOnly();
  for (const NodeRow& row : NodeRows()) {
    zebui::ui::UI_Node* node = row.find(View());
    EXPECT_EQ(node->UI_GetToolTip(), row.toolTip) << row.field;
    if (const auto* label = dynamic_cast<UI_StaticText*>(node)) {
      EXPECT_EQ(label->GetValue(), row.text) << row.field;
    }
    if (const auto* button = dynamic_cast<UI_TextButton*>(node)) {
      EXPECT_EQ(button->GetText(), row.text) << row.field;
    }
  }
  EXPECT_EQ(Inspector::AddCaptionButton(View())->GetText(), u"+");
  EXPECT_EQ(Inspector::AddCaptionButton(View())->UI_GetToolTip(), u"Add Caption");
  EXPECT_EQ(Inspector::DeleteCaptionButton(View())->GetText(), u"-");
  EXPECT_EQ(Inspector::DeleteCaptionButton(View())->UI_GetToolTip(), u"Delete Caption");
}

TEST_F(ControlTree, PictureButtonsBearTheirCommandsAndTips) {
  CreateOnly();
  for (const ButtonRow& row : ButtonRows()) {
    EXPECT_EQ(row.find(View()).GetCommandID(), row.command) << row.field;
    EXPECT_EQ(row.find(View()).GetToolTipText(), row.toolTip) << row.field;
  }
}

TEST_F(ControlTree, NumbersBeginWithTheirRanges) {
  CreateOnly();
  for (const NumberRow& row : NumberRows()) {
    const UI_HotTextNumber* control = row.find(View());
    EXPECT_EQ(control->GetDecimalPlaces(), row.decimals) << row.field;
    EXPECT_EQ(control->GetValue(), row.value) << row.field;
    EXPECT_EQ(control->GetMinValue(), row.min) << row.field;
    EXPECT_EQ(control->GetMaxValue(), row.max) << row.field;
    EXPECT_EQ(control->GetUnknownStateText(), u"mul.") << row.field;
    EXPECT_FALSE(control->IsValueUnknown()) << row.field;
  }
}

TEST_F(ControlTree, AMixedValueShowsTheUnknownTextUntilTheNextValue) {
  CreateOnly();
  for (const NumberRow& row : NumberRows()) {
    UI_HotTextNumber* control = row.find(View());
    control->SetValueUnknown();
    EXPECT_EQ(control->GetText(), u"mul.") << row.field;
    control->SetValue(7.0);
    EXPECT_NE(control->GetText(), u"mul.") << row.field;
  }
}

TEST_F(ControlTree, PopupsBeginWithTheirItems) {
  CreateOnly();
  const auto items = [](const UI_Popup& popup) {
    std::vector<UString> texts;
    for (std::int64_t i = 0; i < popup.Size(); ++i)
      texts.push_back(popup.GetItemString(i));
    return texts;
  };
  EXPECT_EQ(items(*Inspector::RegionPopup(View())), std::vector<UString>{u"None"});
  EXPECT_EQ(Inspector::RegionPopup(View())->GetValue(), 0);
  EXPECT_EQ(items(*Inspector::StylePopup(View())), std::vector<UString>{u"Custom"});
  EXPECT_EQ(Inspector::StylePopup(View())->GetValue(), 0);
  EXPECT_EQ(Inspector::FontWeightPopup(View())->Size(), 0);
  std::vector<UString> families;
  for (const auto& [key, family] : TD::GetTitlerFontList())
    families.push_back(family.name);
  ASSERT_FALSE(families.empty());
  EXPECT_EQ(items(*Inspector::FontFamilyPopup(View())), families);
}

TEST_F(ControlTree, TheDisplayTypesBeginWithThoseOf608) {
  CreateOnly();
  std::set<zebcaptioning::CaptionType> types;
  zebcaptioning::GetSupportedCaptionTypes(zebcaptioning::kStreamFormat_608, types);
  ASSERT_GT(types.size(), 1U);
  EXPECT_EQ(static_cast<std::size_t>(Inspector::CaptionTypePopup(View())->Size()), types.size());
  EXPECT_EQ(Inspector::CaptionTypeMap(View()).size(), types.size());
}

TEST_F(ControlTree, TheTwoGridsBeginApart) {
  CreateOnly();
  EXPECT_EQ(Inspector::ClosedPositionGrid(View())->GetValue(), (PointT<int>{-1, -1}));
  EXPECT_EQ(Inspector::OpenPositionGrid(View())->GetValue(), (PointT<int>{0, 0}));
}

TEST_F(ControlTree, TheTextColourIsUnderEditAtFirst) {
  CreateOnly();
  EXPECT_TRUE(Inspector::TextColorButton(View()).GetValue());
  EXPECT_FALSE(Inspector::BackgroundColorButton(View()).GetValue());
  EXPECT_FALSE(Inspector::EdgeColorButton(View()).GetValue());
}

TEST_F(ControlTree, ControlsAreMadeInTheOrderOfTheirRowsAndTheBottomRowLast) {
  CreateOnly();
  std::vector<nlohmann::json> places;
  for (const auto& call : zebcore::trace::Take()) {
    const bool isHalf = call.args.contains("class") && call.args.at("class") == "UIF::ColorPickerHalf";
    if (call.call == "UI_Node::UI_SetLocalRectF" && !isHalf)
      places.push_back(call.args.at("rect"));
  }
  const auto at = [](double x, double y, double width, double height) { return nlohmann::json({x, y, width, height}); };
  EXPECT_EQ(
      places,
      (std::vector<nlohmann::json>{
          at(3, 3, 167, 19),    at(171, 3, 55, 19),  at(226, 3, 149, 19), at(171, 3, 30, 19),  at(205, 3, 30, 19),
          at(171, 3, 55, 19),   at(226, 3, 149, 19), at(171, 3, 100, 19), at(275, 3, 40, 19),  at(319, 3, 40, 19),
          at(319, 3, 70, 19),   at(365, 3, 40, 19),  at(409, 3, 40, 19),  at(455, 3, 40, 19),  at(500, 3, 20, 19),
          at(600, 3, 100, 19),  at(680, 3, 100, 19), at(0, 33, 32, 19),   at(34, 33, 99, 19),  at(145, 32, 20, 20),
          at(170, 32, 20, 20),  at(195, 32, 20, 20), at(225, 32, 2, 20),  at(230, 32, 20, 20), at(238, 32, 20, 20),
          at(263, 32, 20, 20),  at(288, 32, 20, 20), at(318, 32, 2, 20),  at(326, 32, 20, 20), at(346, 32, 20, 20),
          at(366, 32, 20, 20),  at(391, 32, 20, 20), at(416, 32, 20, 20), at(319, 3, 40, 19),  at(476, 32, 10, 20),
          at(501, 32, 2, 20),   at(506, 32, 20, 20), at(536, 32, 10, 20), at(551, 32, 30, 20), at(576, 32, 10, 20),
          at(591, 32, 30, 20),  at(621, 32, 20, 20), at(646, 32, 10, 20), at(676, 32, 36, 20), at(701, 32, 10, 20),
          at(741, 32, 10, 20),  at(771, 32, 36, 20), at(796, 32, 10, 20), at(20, 670, 88, 18), at(120, 670, 88, 18),
          at(408, 670, 88, 18), at(504, 670, 88, 18)}));
}

TEST_F(ControlTree, LabelsThatStandBeforeTheirPopupsAndTheSizeOfTheGridAreFlushRight) {
  CreateOnly();
  const std::set<std::string> flushRight = {"StreamLabel", "GridLabel", "GridSizeText", "FontLabel",
                                            "CaptionTypeLabel"};
  for (const NodeRow& row : NodeRows()) {
    if (const auto* label = dynamic_cast<UI_StaticText*>(row.find(View()))) {
      EXPECT_EQ(label->GetAlignment() == kControlAlignment_Right, flushRight.count(row.field) == 1) << row.field;
    }
  }
}

TEST_F(ControlTree, ThePopupOfTheDisplayTypesAloneIsNotDisabledAsItIsMade) {
  CreateOnly();
  std::vector<nlohmann::json> disabled;
  nlohmann::json place;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call == "View::Enable")
      break; // the first pass over all of them
    if (call.call == "UI_Node::UI_SetLocalRectF")
      place = call.args.at("rect");
    else if (call.call == "UI_ControlView::SetDisabled" && call.args.at("disabled") == true)
      disabled.push_back(place);
  }
  using Json = nlohmann::json;
  EXPECT_EQ(disabled, (std::vector<Json>{Json({226.0, 3.0, 149.0, 19.0}), Json({226.0, 3.0, 149.0, 19.0}),
                                         Json({171.0, 3.0, 100.0, 19.0}), Json({319.0, 3.0, 70.0, 19.0}),
                                         Json({600.0, 3.0, 100.0, 19.0}), Json({680.0, 3.0, 100.0, 19.0})}));
}

TEST_F(ControlTree, TheHeightBeginsWithAMixedEntryThatTheFirstCaptionTakesAway) {
  CreateOnly();
  auto& heights = *Inspector::DoubleHeightPopup(View());
  ASSERT_EQ(heights.Size(), 3);
  EXPECT_EQ(heights.GetItemString(0), u"Normal");
  EXPECT_EQ(heights.GetItemString(1), u"Double");
  EXPECT_EQ(heights.GetItemString(2), u"Mixed");
  EXPECT_EQ(heights.GetValue(), 0);
  clip = AddClip();
  AddStream(clip, MakeCaptions({1}), kEbuN19);
  SelectClip(clip);
  EXPECT_EQ(heights.Size(), 2);
}

TEST_F(ControlTree, TheSwatchIsMadeBlueAndThenShowsTheColourUnderEdit) {
  CreateOnly();
  std::vector<nlohmann::json> colors;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call == "UI_Swatch::SetValue")
      colors.push_back(call.args.at("value"));
  }
  ASSERT_EQ(colors.size(), 2U);
  EXPECT_EQ(colors[0], nlohmann::json({0.0, 0.0, 1.0, 1.0}));
  bool isUniform = false;
  zebcaptioning::CaptioningColor color;
  Inspector::FormatInfo(View())->GetColor(zebcaptioning::CaptioningColor::kColorType_Text, color, isUniform);
  EXPECT_EQ(colors[1], nlohmann::json({color.red, color.green, color.blue, color.alpha}));
}

TEST_F(ControlTree, AClickOnAPictureButtonLeavesTheFocusInTheText) {
  CreateOnly();
  std::map<std::string, Qt::FocusPolicy> policies;
  for (const QWidget* widget : QApplication::allWidgets()) {
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
      policies[button->accessibleName().toStdString()] = button->focusPolicy();
  }
  for (const ButtonRow& row : ButtonRows()) {
    const auto found = policies.find(zebcore::ToUTF8(row.toolTip));
    ASSERT_NE(found, policies.end()) << row.field;
    EXPECT_EQ(found->second, Qt::TabFocus) << row.field << " takes the focus by the keyboard only";
  }
}

TEST_F(ControlTree, ControlsComeOnShowByTheStreamFormat) {
  CreateOnly();
  ExpectShownFor(zebcaptioning::kStreamFormat_608);
  for (const StreamFormat format : {zebcaptioning::kStreamFormat_608_CC1, kOpenTrack1, kEbuN19, kTeletext}) {
    const auto other = AddClip();
    AddStream(other, MakeCaptions({1}), format);
    SelectClip(other);
    SCOPED_TRACE(format);
    ExpectShownFor(format);
  }
}

TEST_F(ControlTree, RegionsAndStylesNeverAppearEvenWithTheNewReadingSwitchedOn) {
  zebcore::debug::DebugDatabase::Instance().SetValue("New_XML_Caption_Reading", "true");
  clip = AddClip();
  AddStream(clip, MakeCaptions({1}), kOpenTrack1);
  OpenPanel();
  SelectClip(clip);
  zebcore::debug::DebugDatabase::Instance().RemoveValue("New_XML_Caption_Reading");
  EXPECT_TRUE(Inspector::FontLabel(View())->UI_IsShown());
  EXPECT_FALSE(Inspector::RegionPopup(View())->UI_IsShown());
  EXPECT_FALSE(Inspector::StylePopup(View())->UI_IsShown());
}

} // namespace Captivo::Testing
