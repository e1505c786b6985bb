#include <algorithm>
#include <map>

#include <QApplication>
#include <QListView>
#include <QMouseEvent>
#include <QWidget>

#include "Captions/view/CaptionsView.h"
#include "Support.h"
#include "UIF/Workspace.h"
#include "zebcore/DebugDatabase.h"
#include "zebui/Driver.h"
#include "zebui/PopupList.h"
#include "zebui/Toolkit.h"

// What each block that makes a control gives it besides its place, its text and its range.
namespace Captivo::Testing {

namespace {

using Strings = std::vector<std::string>;
using namespace zebui::controls;
using zebui::ui::UI_Node;

template <class T> struct Named {
  const char* name;
  T* control;
};

#define NAMED(Name)                                                                                                    \
  { #Name, Inspector::Name(View()).get() }
#define NAMED_BUTTON(Name)                                                                                             \
  { #Name, &Inspector::Name(View()) }

class ControlDetails : public PanelTest {
 protected:
  std::vector<Named<UI_Popup>> Popups() {
    return {NAMED(StreamPopup), NAMED(FontFamilyPopup), NAMED(FontWeightPopup), NAMED(DoubleHeightPopup),
            NAMED(RegionPopup), NAMED(StylePopup),      NAMED(CaptionTypePopup)};
  }
  std::vector<Named<UI_HotTextNumber>> Numbers() {
    return {NAMED(FontSizeControl),      NAMED(EdgeWidthControl),       NAMED(LineSpacingControl),
            NAMED(OpacityControl),       NAMED(ClosedPositionXControl), NAMED(ClosedPositionYControl),
            NAMED(OpenPositionXControl), NAMED(OpenPositionYControl)};
  }
  // All node controls and the nodes of the view controls, by their rows.
  std::vector<Named<UI_Node>> Nodes();

  static QWidget* WidgetOf(const UI_Node& node) { return node.Impl().widget; }
  static void Press(const UI_Node& node) {
    QWidget* const widget = WidgetOf(node);
    const QPointF middle = widget->rect().center();
    QMouseEvent press(QEvent::MouseButtonPress, middle, widget->mapToGlobal(middle), Qt::LeftButton, Qt::LeftButton,
                      {});
    QCoreApplication::sendEvent(widget, &press);
  }
  // As it is drawn when it is on and can be used.
  static QImage Picture(UIF::PictureButton& button) {
    button.SetValue(true);
    button.Enable(true);
    return WidgetOf(*button.GetNode())->grab().toImage();
  }
};

std::vector<Named<UI_Node>> ControlDetails::Nodes() {
  const auto node = [](const char* name, UIF::PictureButton& button) { return Named<UI_Node>{name, button.GetNode()}; };
#define BUTTON_NODE(Name) node(#Name, Inspector::Name(View()))
  return {NAMED(FilterBox),
          NAMED(StreamLabel),
          NAMED(StreamPopup),
          NAMED(GridLabel),
          NAMED(GridSizeText),
          NAMED(FontLabel),
          NAMED(FontFamilyPopup),
          NAMED(FontWeightPopup),
          NAMED(FontSizeLabel),
          NAMED(FontSizeControl),
          NAMED(DoubleHeightPopup),
          NAMED(EdgeWidthLabel),
          NAMED(EdgeWidthControl),
          NAMED(LineSpacingLabel),
          NAMED(LineSpacingControl),
          NAMED(RegionPopup),
          NAMED(StylePopup),
          NAMED(CaptionTypeLabel),
          NAMED(CaptionTypePopup),
          BUTTON_NODE(AlignLeftButton),
          BUTTON_NODE(AlignCenterButton),
          BUTTON_NODE(AlignRightButton),
          NAMED(AlignDivider),
          BUTTON_NODE(BoldButton),
          BUTTON_NODE(ItalicButton),
          BUTTON_NODE(UnderlineButton),
          BUTTON_NODE(MusicNoteButton),
          NAMED(StyleDivider),
          BUTTON_NODE(BackgroundColorButton),
          BUTTON_NODE(TextColorButton),
          BUTTON_NODE(EdgeColorButton),
          NAMED(ColorSwatch),
          {"ColorPicker", Inspector::ColorPicker(View()).GetNode()},
          NAMED(OpacityControl),
          NAMED(OpacityUnitText),
          NAMED(ColorDivider),
          NAMED(ClosedPositionGrid),
          NAMED(ClosedPositionXLabel),
          NAMED(ClosedPositionXControl),
          NAMED(ClosedPositionYLabel),
          NAMED(ClosedPositionYControl),
          NAMED(OpenPositionGrid),
          NAMED(OpenPositionXLabel),
          NAMED(OpenPositionXControl),
          NAMED(OpenPositionXUnitText),
          NAMED(OpenPositionYLabel),
          NAMED(OpenPositionYControl),
          NAMED(OpenPositionYUnitText),
          NAMED(ImportSettingsButton),
          NAMED(ExportSettingsButton),
          NAMED(AddCaptionButton),
          NAMED(DeleteCaptionButton)};
#undef BUTTON_NODE
}

// A frame that a view of the test's own stands in.
struct OwnFrame : UIF::WorkspaceFrame {
  void* GetContainer() override { return &container; }
  void SetTitle(const UString&) override {}
  void SetShown(bool) override {}
  bool IsShown() const override { return true; }
  void BringToFront() override {}
  bool IsFrontMost() const override { return false; }
  QWidget container;
};

} // namespace

TEST_F(ControlDetails, ControlsStandUnderTheViewInTheOrderOfTheirRows) {
  OpenPanelWithoutLayout();
  std::map<const UI_Node*, std::string> names;
  Strings expected;
  for (const auto& [name, node] : Nodes()) {
    ASSERT_NE(node, nullptr) << name;
    names[node] = name;
    expected.emplace_back(name);
  }
  Strings order;
  for (const auto& child : View().GetZEBNode()->Impl().children) {
    const auto found = names.find(child.get());
    if (found != names.end())
      order.push_back(found->second);
  }
  EXPECT_EQ(order, expected);
}

TEST_F(ControlDetails, EveryButtonBearsThePictureOfItsDecalAndNoOther) {
  OpenPanelWithoutLayout();
  struct Row {
    Named<UIF::PictureButton> button;
    UIF::DecalID decal;
  };
  const Row rows[] = {{NAMED_BUTTON(AlignLeftButton), UIF::kCaptionJustifyLeftDecal},
                      {NAMED_BUTTON(AlignCenterButton), UIF::kCaptionJustifyCenterDecal},
                      {NAMED_BUTTON(AlignRightButton), UIF::kCaptionJustifyRightDecal},
                      {NAMED_BUTTON(BoldButton), UIF::kCaptionBoldDecal},
                      {NAMED_BUTTON(ItalicButton), UIF::kCaptionItalicizeDecal},
                      {NAMED_BUTTON(UnderlineButton), UIF::kCaptionUnderlineDecal},
                      {NAMED_BUTTON(MusicNoteButton), UIF::kCaptionMusicNoteDecal},
                      {NAMED_BUTTON(BackgroundColorButton), UIF::kCaptionBackgroundColorDecal},
                      {NAMED_BUTTON(TextColorButton), UIF::kCaptionTextColorDecal},
                      {NAMED_BUTTON(EdgeColorButton), UIF::kCaptionTextOutlineColorDecal}};
  for (const Row& row : rows) {
    for (const Row& other : rows) {
      UIF::PictureButton pattern(&View());
      pattern.Create(&View(), row.button.control->GetBounds(), 1, UIF::Bitmap::GetBitmap(other.decal, nullptr));
      EXPECT_EQ(Picture(*row.button.control) == Picture(pattern), row.decal == other.decal)
          << row.button.name << " beside the picture of " << other.button.name;
    }
  }
}

TEST_F(ControlDetails, TipsComeUpAfterTheSameTimeOnAllControls) {
  OpenPanelWithoutLayout();
  int tips = 0;
  for (const auto& [name, node] : Nodes()) {
    if (!node->UI_GetToolTip().empty()) {
      EXPECT_EQ(node->Impl().toolTipDelay, 400) << name;
      ++tips;
    }
  }
  constexpr int kTipsOfNodes = 1 + 7 + 8 + 1 + 2 + 4; // filter, popups, numbers, swatch, grids, buttons below
  constexpr int kTipsOfPictureButtons = 10;
  EXPECT_EQ(tips, kTipsOfNodes + kTipsOfPictureButtons);
}

TEST_F(ControlDetails, PopupsAndNumbersTakeTheKeyboardFocus) {
  OpenPanelWithoutLayout();
  for (const auto& [name, popup] : Popups())
    EXPECT_TRUE(popup->Impl().wantsFocus) << name;
  for (const auto& [name, number] : Numbers())
    EXPECT_TRUE(number->Impl().wantsFocus) << name;
}

TEST_F(ControlDetails, TheOpenListOfEveryPopupMarksTheItemThatIsItsValue) {
  OpenPanelWithoutLayout();
  for (const auto& [name, popup] : Popups()) {
    popup->SetDisabled(false);
    popup->AddItem(u"One more");
    popup->SetValue(0);
    popup->UI_Show(true);
    Press(*popup);
    const QListView* list = nullptr;
    for (const auto* one : WidgetOf(*popup)->findChildren<QListView*>()) {
      if (one->isVisible())
        list = one;
    }
    ASSERT_NE(list, nullptr) << name;
    const auto* items = dynamic_cast<const PopupItems*>(list->model());
    ASSERT_NE(items, nullptr) << name;
    EXPECT_TRUE(items->MarksValue()) << name;
    list->window()->close();
  }
}

TEST_F(ControlDetails, TheSwatchHasABorderOfItsOwn) {
  OpenPanelWithoutLayout();
  UI_Swatch& swatch = *Inspector::ColorSwatch(View());
  const auto picture = [&] { return WidgetOf(swatch)->grab().toImage(); };
  const QImage asMade = picture();
  swatch.SetDisplayBorder(false);
  EXPECT_NE(picture(), asMade);
  swatch.SetDisplayBorder(true);
  EXPECT_EQ(picture(), asMade);
}

TEST_F(ControlDetails, TheViewIsPaintedByWayOfABuffer) {
  OpenPanelWithoutLayout();
  std::vector<nlohmann::json> views;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call == "View::EnableDoubleBuffering" && call.args.at("enable") == true)
      views.push_back(call.args.at("class"));
  }
  ASSERT_FALSE(views.empty());
  EXPECT_EQ(views.front(), "Captivo::CaptionsView") << "and the pane's only after it";
}

TEST_F(ControlDetails, TheFilterFollowsEachKeyAndTheButtonThatEmptiesTheBox) {
  OpenPanelOn({MakeCaption(1, 2, u"Anna"), MakeCaption(3, 4, u"Bob"), MakeCaption(5, 6, u"Bea")});
  UI_SearchBox& filter = *Inspector::FilterBox(View());
  filter.UI_GainKeyboardFocus(zebui::ui::kFocusChange_Program);
  zebui::driver::TypeText(u"b");
  EXPECT_EQ(Begins(), (std::vector<double>{3, 5}));
  zebui::driver::TypeText(u"e");
  EXPECT_EQ(Begins(), (std::vector<double>{5}));
  filter.Clear();
  EXPECT_EQ(Begins(), (std::vector<double>{1, 3, 5}));
}

TEST_F(ControlDetails, TheFilterIsAppliedOnceMoreWithEnter) {
  OpenPanelOn({MakeCaption(1, 2, u"Anna"), MakeCaption(3, 4, u"Bob")});
  UI_SearchBox& filter = *Inspector::FilterBox(View());
  filter.UI_GainKeyboardFocus(zebui::ui::kFocusChange_Program);
  zebui::driver::TypeText(u"b");
  Pane().SetFilterText(u"a");
  ASSERT_EQ(Begins(), std::vector<double>{1});
  zebui::driver::PressKey(zebui::ui::kKeyboardCode_Enter);
  EXPECT_EQ(Begins(), std::vector<double>{3});
}

TEST_F(ControlDetails, TheFirstPassOverWhatCanBeUsedRunsAsTheViewIsMade) {
  OpenPanelWithoutLayout();
  EXPECT_FALSE(Inspector::AlignLeftButton(View()).IsEnabled());
  EXPECT_FALSE(Inspector::MusicNoteButton(View()).IsEnabled());
  EXPECT_TRUE(Inspector::StreamLabel(View())->IsDisabled());
  EXPECT_TRUE(Inspector::AddCaptionButton(View())->IsDisabled());
  EXPECT_TRUE(Inspector::CaptionTypePopup(View())->IsDisabled());
}

TEST_F(ControlDetails, TheNewReadingCanOnlyTakeRegionsAndStylesAway) {
  auto& switches = zebcore::debug::DebugDatabase::Instance();
  struct Row {
    const char* value; // null: none
    bool enabledBefore;
    bool enabled;
  };
  const Row rows[] = {{nullptr, false, false}, {nullptr, true, false}, {"false", true, false}, {"TRUE", true, false},
                      {"1", true, false},      {"true", true, true},   {"true", false, false}};
  for (const Row& row : rows) {
    if (row.value)
      switches.SetValue("New_XML_Caption_Reading", row.value);
    OwnFrame own;
    own.container.resize(600, 700);
    CaptionsView view("captions");
    Inspector::RegionAndStyleEnabled(view) = row.enabledBefore;
    view.Create(u"own", u"Own", &own, false);
    switches.RemoveValue("New_XML_Caption_Reading");
    EXPECT_EQ(Inspector::RegionAndStyleEnabled(view), row.enabled)
        << (row.value ? row.value : "none") << (row.enabledBefore ? ", enabled before" : "");
    view.Destroy();
  }
}

TEST_F(ControlDetails, TheBarIsMadeAtThePositionThatTheViewRemembers) {
  OwnFrame own;
  own.container.resize(600, 700);
  CaptionsView view("captions");
  Inspector::ScrollPosition(view) = 146;
  view.Create(u"own", u"Own", &own, false);
  const auto calls = zebcore::trace::Take();
  const auto set = std::find_if(calls.begin(), calls.end(),
                                [](const auto& call) { return call.call == "ScrollBar::SetScrollBarPosition"; });
  ASSERT_NE(set, calls.end());
  EXPECT_EQ(set->args.at("position"), 146);
  view.Destroy();
}

TEST_F(ControlDetails, PictureButtonsAreGivenUpInTheirOrderAndThePickerAfterThem) {
  OpenPanel();
  Strings gone;
  const auto watch = [&](const char* name, UI_Node* node) {
    QObject::connect(WidgetOf(*node), &QObject::destroyed, [&gone, name] { gone.emplace_back(name); });
  };
  for (const auto& [name, button] : std::vector<Named<UIF::PictureButton>>{
           NAMED_BUTTON(AlignLeftButton), NAMED_BUTTON(AlignCenterButton), NAMED_BUTTON(AlignRightButton),
           NAMED_BUTTON(BoldButton), NAMED_BUTTON(ItalicButton), NAMED_BUTTON(UnderlineButton),
           NAMED_BUTTON(MusicNoteButton), NAMED_BUTTON(TextColorButton), NAMED_BUTTON(BackgroundColorButton),
           NAMED_BUTTON(EdgeColorButton)})
    watch(name, button->GetNode());
  watch("ColorPicker", Inspector::ColorPicker(View()).GetNode());
  watch("FilterBox", Inspector::FilterBox(View()).get());
  View().Destroy();
  EXPECT_EQ(gone, (Strings{"AlignLeftButton", "AlignCenterButton", "AlignRightButton", "ItalicButton",
                           "UnderlineButton", "MusicNoteButton", "BackgroundColorButton", "TextColorButton",
                           "EdgeColorButton", "BoldButton", "ColorPicker", "FilterBox"}));
}

TEST_F(ControlDetails, AViewThatIsNeverDestroyedStillTakesItsPaneAlong) {
  OwnFrame own;
  own.container.resize(600, 700);
  {
    CaptionsView view("captions");
    view.Create(u"own", u"Own", &own, false);
    ASSERT_NE(Inspector::Pane(view), nullptr);
    zebcore::trace::Take();
  }
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::~"), Strings{"CaptioningStreamUpdater::~CaptioningStreamUpdater"});
}

} // namespace Captivo::Testing
