#include <functional>

#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "MZ/Actions.h"
#include "Support.h"

// The whole decision table of what can be used: each control in each case, from either state.
namespace Captivo::Testing {

namespace {

constexpr StreamFormat kEbuN19 = 0x45424E31;   // "EBN1"
constexpr StreamFormat kTeletext = 0x54545831; // "TTX1"

struct Case {
  StreamFormat format = zebcaptioning::kStreamFormat_None;
  bool hasSelection = false; // in the list
  bool isReadOnly = false;
  bool isUnavailable = false;

  bool IsOpen() const { return zebcaptioning::IsOpenCaptions(format); }
  bool IsEbu() const { return zebcaptioning::IsEbuN19(format); }
  bool IsTeletext() const { return zebcaptioning::IsTeletext(format); }
  bool IsSelected() const { return hasSelection && !isReadOnly; }
};

enum class Cell { Usable, Disabled, Stays };

Cell UsableIf(bool usable) {
  return usable ? Cell::Usable : Cell::Disabled;
}

// A control of the bar, however its state is kept.
struct Control {
  std::string name;
  std::function<bool()> isUsable;
  std::function<void(bool)> setUsable;
  std::function<Cell(const Case&)> rule;
};

Control Node(const std::string& name, zebui::ui::UI_ControlView& node, std::function<Cell(const Case&)> rule) {
  return {name, [&node] { return !node.IsDisabled(); }, [&node](bool usable) { node.SetDisabled(!usable); },
          std::move(rule)};
}

template <class View> Control ViewControl(const std::string& name, View& view, std::function<Cell(const Case&)> rule) {
  return {name, [&view] { return view.IsEnabled(); }, [&view](bool usable) { view.Enable(usable); }, std::move(rule)};
}

Cell WhileAvailable(const Case& is) {
  return UsableIf(!is.isUnavailable);
}
Cell WithASelection(const Case& is) {
  return UsableIf(is.IsSelected());
}
Cell OfOpenCaptions(const Case& is) {
  return is.IsOpen() ? UsableIf(is.IsSelected()) : Cell::Stays;
}
Cell OfClosedCaptions(const Case& is) {
  return is.IsOpen() ? Cell::Stays : UsableIf(is.IsSelected());
}
Cell NeverOfOpenCaptions(const Case& is) {
  return is.IsOpen() ? Cell::Disabled : Cell::Stays;
}
Cell Untouched(const Case&) {
  return Cell::Stays;
}

class EnableTable : public PanelTest {
 protected:
  // The clip has a second stream, so that there is one to choose.
  void Show(const Case& is) {
    clip = AddClip();
    AddStream(clip, MakeCaptions({1, 3}), is.format);
    AddStream(clip, MakeCaptions({1, 3}), is.IsOpen() ? kOpenTrack1 + 1 : zebcaptioning::kStreamFormat_608_CC1 + 1);
    OpenPanel(1000, 700);
    SelectClip(clip);
    Inspector::Source(Pane()).SelectStreamFormat(is.format);
    View().UpdateForSource(Inspector::Source(Pane()), 32, 15);
    Pane().SelectCaptionAtTime(Seconds(1));
    if (!is.hasSelection)
      Pane().DispatchLeftButtonUp({10, 400}, UIF::KeyModifiers());
    Inspector::DeferActive(Pane()) = is.isUnavailable;
    project->SetReadOnly(is.isReadOnly);
  }
  // As the host tells it.
  void RunPass() {
    zebcore::messaging::BroadcastMessage(BE::kBackendProjectActivationStationID, BE::ReadOnlyStateChangedMessage());
  }
  void Reset() {
    Inspector::DeferActive(Pane()) = false;
    project->SetReadOnly(false);
  }
  // In the order in which a pass writes them; those that it never writes at the end.
  std::vector<Control> Controls();
  std::vector<Control> FormatControls();

  static std::vector<Case> AllCases() {
    std::vector<Case> cases;
    for (const StreamFormat format : {zebcaptioning::kStreamFormat_608_CC1, kTeletext, kEbuN19, kOpenTrack1}) {
      for (int bits = 0; bits < 8; ++bits)
        cases.push_back({format, (bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0});
    }
    return cases;
  }
};

#define NODE(Name, rule) Node(#Name, *Inspector::Name(View()), rule)
#define VIEW(Name, rule) ViewControl(#Name, Inspector::Name(View()), rule)

std::vector<Control> EnableTable::Controls() {
  const auto unlessTeletext = [](const Case& is) { return UsableIf(is.IsSelected() && !is.IsTeletext()); };
  std::vector<Control> controls = {
      NODE(StreamLabel, WhileAvailable),
      NODE(StreamPopup, WhileAvailable),
      NODE(FilterBox, WhileAvailable),
      NODE(AddCaptionButton, [](const Case& is) { return UsableIf(!is.isUnavailable && !is.isReadOnly); }),
      NODE(DeleteCaptionButton, [](const Case& is) { return UsableIf(!is.isUnavailable && is.IsSelected()); }),
      NODE(GridLabel, WhileAvailable),
      NODE(GridSizeText, WhileAvailable),
      VIEW(AlignLeftButton, WithASelection),
      VIEW(AlignCenterButton, WithASelection),
      VIEW(AlignRightButton, WithASelection),
      VIEW(BoldButton, [](const Case& is) { return UsableIf(is.IsSelected() && is.IsOpen()); }),
      VIEW(ItalicButton, unlessTeletext),
      VIEW(UnderlineButton, unlessTeletext),
      VIEW(MusicNoteButton, WithASelection),
      VIEW(TextColorButton, WithASelection),
      VIEW(BackgroundColorButton, WithASelection),
      VIEW(EdgeColorButton, [](const Case& is) { return UsableIf(is.IsSelected() && is.IsOpen()); })};
  for (const Control& control : FormatControls())
    controls.push_back(control);
  for (const Control& control :
       {NODE(ImportSettingsButton, Untouched), NODE(ExportSettingsButton, Untouched), NODE(AlignDivider, Untouched),
        NODE(StyleDivider, Untouched), NODE(ColorDivider, Untouched)})
    controls.push_back(control);
  return controls;
}

std::vector<Control> EnableTable::FormatControls() {
  return {NODE(FontLabel, OfOpenCaptions),
          NODE(FontFamilyPopup, OfOpenCaptions),
          NODE(FontWeightPopup, OfOpenCaptions), // of a family that is known, with a choice
          NODE(FontSizeLabel, OfOpenCaptions),
          NODE(FontSizeControl, OfOpenCaptions),
          NODE(EdgeWidthLabel, OfOpenCaptions),
          NODE(EdgeWidthControl, OfOpenCaptions),
          NODE(LineSpacingLabel, OfOpenCaptions),
          NODE(LineSpacingControl, OfOpenCaptions),
          NODE(RegionPopup, NeverOfOpenCaptions),
          NODE(StylePopup, NeverOfOpenCaptions),
          VIEW(ColorPicker, OfOpenCaptions),
          NODE(OpacityControl, NeverOfOpenCaptions), // while the text's colour is under edit
          NODE(OpacityUnitText, NeverOfOpenCaptions),
          NODE(OpenPositionGrid, OfOpenCaptions),
          NODE(OpenPositionXLabel, OfOpenCaptions),
          NODE(OpenPositionXControl, OfOpenCaptions),
          NODE(OpenPositionXUnitText, OfOpenCaptions),
          NODE(OpenPositionYLabel, OfOpenCaptions),
          NODE(OpenPositionYControl, OfOpenCaptions),
          NODE(OpenPositionYUnitText, OfOpenCaptions),
          NODE(CaptionTypeLabel, OfClosedCaptions),
          NODE(CaptionTypePopup,
               [this](const Case& is) {
                 if (is.IsOpen())
                   return Cell::Stays;
                 return UsableIf(is.IsSelected() && Inspector::CaptionTypeMap(View()).size() > 1);
               }),
          NODE(ClosedPositionGrid, OfClosedCaptions),
          NODE(ColorSwatch, OfClosedCaptions),
          NODE(ClosedPositionXLabel, OfClosedCaptions),
          NODE(ClosedPositionXControl, OfClosedCaptions),
          NODE(ClosedPositionYLabel, OfClosedCaptions),
          NODE(ClosedPositionYControl, OfClosedCaptions),
          NODE(DoubleHeightPopup, [](const Case& is) {
            if (is.IsOpen() && !is.IsSelected())
              return Cell::Stays;
            return UsableIf(is.IsSelected() && is.IsEbu());
          })};
}

// What a pass wrote to controls: the class of each, in order.
std::vector<std::string> TakeWrites() {
  std::vector<std::string> writes;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call == "UI_ControlView::SetDisabled" || call.call == "UI_Node::UI_SetEnabled")
      writes.push_back(call.args.contains("control") ? call.args.at("control") : call.args.at("class"));
  }
  return writes;
}

} // namespace

TEST_F(EnableTable, EachControlInEachCaseIsUsableDisabledOrLeftAsItWas) {
  for (const Case& is : AllCases()) {
    SCOPED_TRACE(testing::Message() << "format " << is.format << ", selected " << is.hasSelection << ", read-only "
                                    << is.isReadOnly << ", unavailable " << is.isUnavailable);
    Show(is);
    ASSERT_EQ(Inspector::StreamFormatOnShow(View()), is.format);
    ASSERT_EQ(Pane().HasSelection(), is.hasSelection);
    for (const bool former : {false, true}) {
      const auto controls = Controls();
      for (const Control& control : controls)
        control.setUsable(former);
      RunPass();
      for (const Control& control : controls) {
        const Cell cell = control.rule(is);
        EXPECT_EQ(control.isUsable(), cell == Cell::Stays ? former : cell == Cell::Usable)
            << control.name << (former ? ", usable before" : ", disabled before");
      }
      EXPECT_EQ(Pane().IsEnabled(), !is.isReadOnly);
    }
    Reset();
  }
}

TEST_F(EnableTable, APassOverClosedCaptionsWritesInTheOrderOfTheTable) {
  Show({zebcaptioning::kStreamFormat_608_CC1, true, false, false});
  zebcore::trace::Take();
  RunPass();
  const std::string label = "zebui::controls::UI_StaticText";
  const std::string popup = "zebui::controls::UI_Popup";
  const std::string number = "zebui::controls::UI_HotTextNumberT<double>";
  const std::string button = "zebui::controls::UI_TextButton";
  EXPECT_EQ(TakeWrites(), (std::vector<std::string>{label,
                                                    popup,
                                                    "zebui::controls::UI_SearchBox",
                                                    button,
                                                    button,
                                                    label,
                                                    label,
                                                    "command 32000",
                                                    "command 32001",
                                                    "command 32002",
                                                    "command 32015",
                                                    "command 32010",
                                                    "command 32011",
                                                    "command 32012",
                                                    "command 32014",
                                                    "command 32013",
                                                    "command 32016",
                                                    label,
                                                    popup,
                                                    "zebui::controls::UI_PositionGridControl",
                                                    "zebui::controls::UI_Swatch",
                                                    label,
                                                    number,
                                                    label,
                                                    number,
                                                    popup}));
}

TEST_F(EnableTable, APassOverOpenCaptionsWritesTheHeightLastAndOnlyWithASelection) {
  Show({kOpenTrack1, true, false, false});
  zebcore::trace::Take();
  RunPass();
  const std::string label = "zebui::controls::UI_StaticText";
  const std::string popup = "zebui::controls::UI_Popup";
  const std::string number = "zebui::controls::UI_HotTextNumberT<double>";
  constexpr std::ptrdiff_t kBeforeTheFormat = 17;
  auto writes = TakeWrites();
  ASSERT_GT(writes.size(), static_cast<std::size_t>(kBeforeTheFormat));
  writes.erase(writes.begin(), writes.begin() + kBeforeTheFormat);
  const std::vector<std::string> format = {
      label, popup,         popup,  label,  number,
      label, number,        label,  number, popup,
      popup, "colorPicker", number, label,  "zebui::controls::UI_PositionGridControl",
      label, number,        label,  label,  number,
      label};
  std::vector<std::string> withHeight = format;
  withHeight.push_back(popup);
  EXPECT_EQ(writes, withHeight);

  Pane().DispatchLeftButtonUp({10, 400}, UIF::KeyModifiers());
  zebcore::trace::Take();
  RunPass();
  writes = TakeWrites();
  writes.erase(writes.begin(), writes.begin() + kBeforeTheFormat);
  EXPECT_EQ(writes, format);
}

TEST_F(EnableTable, TheWeightNeedsAFamilyThatAllShareAndMoreThanOneToChooseFrom) {
  Show({kOpenTrack1, true, false, false});
  auto& weights = *Inspector::FontWeightPopup(View());
  const auto canUse = [&] {
    RunPass();
    return !weights.IsDisabled();
  };
  while (weights.Size() < 2)
    weights.AddItem(u"Bold");
  EXPECT_TRUE(canUse());
  Inspector::FormatInfo(View())->SetFontFamily(u"Mixed", false);
  EXPECT_FALSE(canUse());
  Inspector::FormatInfo(View())->SetFontFamily(u"Noto Sans", true);
  EXPECT_TRUE(canUse());
  while (weights.Size() > 1)
    weights.RemoveItem(1);
  EXPECT_FALSE(canUse());
}

TEST_F(EnableTable, BoldItalicAndUnderlineAreUsableOnlyAsFarAsTheyAreAllowed) {
  Show({kOpenTrack1, true, false, false});
  const auto usable = [&] {
    RunPass();
    return std::vector<bool>{Inspector::BoldButton(View()).IsEnabled(), Inspector::ItalicButton(View()).IsEnabled(),
                             Inspector::UnderlineButton(View()).IsEnabled()};
  };
  for (const bool bold : {false, true}) {
    for (const bool italic : {false, true}) {
      for (const bool underline : {false, true}) {
        Inspector::BoldAllowed(View()) = bold;
        Inspector::ItalicAllowed(View()) = italic;
        Inspector::UnderlineAllowed(View()) = underline;
        EXPECT_EQ(usable(), (std::vector<bool>{bold, italic, underline}));
      }
    }
  }
}

TEST_F(EnableTable, RegionsAndStylesWouldFollowTheSelectionOnceTheyWereEnabled) {
  Show({kOpenTrack1, true, false, false});
  Inspector::RegionAndStyleEnabled(View()) = true;
  RunPass();
  EXPECT_FALSE(Inspector::RegionPopup(View())->IsDisabled());
  EXPECT_FALSE(Inspector::StylePopup(View())->IsDisabled());
  Pane().DispatchLeftButtonUp({10, 400}, UIF::KeyModifiers());
  EXPECT_TRUE(Inspector::RegionPopup(View())->IsDisabled());
  EXPECT_TRUE(Inspector::StylePopup(View())->IsDisabled());
}

} // namespace Captivo::Testing
