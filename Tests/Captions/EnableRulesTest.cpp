#include <map>

#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "MZ/Actions.h"
#include "Support.h"
#include "zebcore/Boundary.h"
#include "zebcore/InterfaceRef.h"

namespace Captivo::Testing {

namespace {

constexpr StreamFormat kEbuN19 = 0x45424E31;   // "EBN1"
constexpr StreamFormat kTeletext = 0x54545831; // "TTX1"

// Which controls can be used, as the whole of a decision table.
class EnableRules : public PanelTest {
 protected:
  void ShowStream(StreamFormat format) {
    clip = AddClip();
    stream = AddStream(clip, MakeCaptions({1, 3}), format);
    OpenPanel(1000, 700);
    SelectClip(clip);
  }
  void SelectNothing() { Pane().DispatchLeftButtonUp({10, 400}, UIF::KeyModifiers()); }
  void SetReadOnly(bool isReadOnly) {
    project->SetReadOnly(isReadOnly);
    BE::ReadOnlyStateChangedMessage message;
    message.readOnly = isReadOnly;
    zebcore::messaging::BroadcastMessage(BE::kBackendProjectActivationStationID, message);
  }

  std::map<std::string, bool> Closed() {
    auto& view = View();
    return {{"captionTypeLabel", !Inspector::CaptionTypeLabel(view)->IsDisabled()},
            {"captionTypePopup", !Inspector::CaptionTypePopup(view)->IsDisabled()},
            {"closedPositionGrid", !Inspector::ClosedPositionGrid(view)->IsDisabled()},
            {"colorSwatch", !Inspector::ColorSwatch(view)->IsDisabled()},
            {"closedPositionXLabel", !Inspector::ClosedPositionXLabel(view)->IsDisabled()},
            {"closedPositionXControl", !Inspector::ClosedPositionXControl(view)->IsDisabled()},
            {"closedPositionYLabel", !Inspector::ClosedPositionYLabel(view)->IsDisabled()},
            {"closedPositionYControl", !Inspector::ClosedPositionYControl(view)->IsDisabled()}};
  }
  std::map<std::string, bool> Open() {
    auto& view = View();
    return {{"fontLabel", !Inspector::FontLabel(view)->IsDisabled()},
            {"fontFamilyPopup", !Inspector::FontFamilyPopup(view)->IsDisabled()},
            {"fontSizeLabel", !Inspector::FontSizeLabel(view)->IsDisabled()},
            {"fontSizeControl", !Inspector::FontSizeControl(view)->IsDisabled()},
            {"edgeWidthLabel", !Inspector::EdgeWidthLabel(view)->IsDisabled()},
            {"edgeWidthControl", !Inspector::EdgeWidthControl(view)->IsDisabled()},
            {"lineSpacingLabel", !Inspector::LineSpacingLabel(view)->IsDisabled()},
            {"lineSpacingControl", !Inspector::LineSpacingControl(view)->IsDisabled()},
            {"colorPicker", Inspector::ColorPicker(view).IsEnabled()},
            {"openPositionGrid", !Inspector::OpenPositionGrid(view)->IsDisabled()},
            {"openPositionXLabel", !Inspector::OpenPositionXLabel(view)->IsDisabled()},
            {"openPositionXControl", !Inspector::OpenPositionXControl(view)->IsDisabled()},
            {"openPositionXUnitText", !Inspector::OpenPositionXUnitText(view)->IsDisabled()},
            {"openPositionYLabel", !Inspector::OpenPositionYLabel(view)->IsDisabled()},
            {"openPositionYControl", !Inspector::OpenPositionYControl(view)->IsDisabled()},
            {"openPositionYUnitText", !Inspector::OpenPositionYUnitText(view)->IsDisabled()}};
  }
  std::map<std::string, bool> Buttons() {
    auto& view = View();
    return {{"alignLeft", Inspector::AlignLeftButton(view).IsEnabled()},
            {"alignCenter", Inspector::AlignCenterButton(view).IsEnabled()},
            {"alignRight", Inspector::AlignRightButton(view).IsEnabled()},
            {"bold", Inspector::BoldButton(view).IsEnabled()},
            {"italic", Inspector::ItalicButton(view).IsEnabled()},
            {"underline", Inspector::UnderlineButton(view).IsEnabled()},
            {"musicNote", Inspector::MusicNoteButton(view).IsEnabled()},
            {"textColor", Inspector::TextColorButton(view).IsEnabled()},
            {"backgroundColor", Inspector::BackgroundColorButton(view).IsEnabled()},
            {"edgeColor", Inspector::EdgeColorButton(view).IsEnabled()}};
  }
  static void ExpectAll(const std::map<std::string, bool>& states, bool expected,
                        const std::map<std::string, bool>& but = {}) {
    for (const auto& [name, state] : states) {
      const auto exception = but.find(name);
      EXPECT_EQ(state, exception == but.end() ? expected : exception->second) << name;
    }
  }
  bool CanUse(const zebui::ui::UI_ControlView& control) { return !control.IsDisabled(); }
};

} // namespace

TEST_F(EnableRules, ASelectionOfClosedCaptionsOpensTheClosedControls) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  ExpectAll(Closed(), true);
  ExpectAll(Buttons(), true, {{"bold", false}, {"edgeColor", false}});
  SelectNothing();
  ExpectAll(Closed(), false);
  ExpectAll(Buttons(), false);
}

TEST_F(EnableRules, ASelectionOfOpenCaptionsOpensTheOpenControls) {
  ShowStream(kOpenTrack1);
  ExpectAll(Open(), true);
  EXPECT_FALSE(CanUse(*Inspector::RegionPopup(View())));
  EXPECT_FALSE(CanUse(*Inspector::StylePopup(View())));
  SelectNothing();
  ExpectAll(Open(), false);
  ExpectAll(Buttons(), false);
}

TEST_F(EnableRules, ClosedControlsStayAsTheyWereWhileOpenCaptionsAreOnShow) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  const auto before = Closed();
  const auto openClip = AddClip();
  AddStream(openClip, MakeCaptions({1}), kOpenTrack1);
  SelectClip(openClip);
  ExpectAll(Closed(), true, {{"captionTypePopup", before.at("captionTypePopup")}});
  SelectNothing();
  ExpectAll(Closed(), true);
}

TEST_F(EnableRules, OpenControlsStayAsTheyWereWhileClosedCaptionsAreOnShow) {
  ShowStream(kOpenTrack1);
  const auto closedClip = AddClip();
  AddStream(closedClip, MakeCaptions({1}));
  SelectClip(closedClip);
  SelectNothing();
  ExpectAll(Open(), true);
}

TEST_F(EnableRules, AReadOnlyProjectReadsAsNothingSelectedAndDisablesThePane) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  AddStream(clip, MakeCaptions({1}), kOpenTrack1);
  EXPECT_TRUE(CanUse(*Inspector::StreamPopup(View())));
  SetReadOnly(true);
  EXPECT_EQ(SelectedBegins().size(), 1U);
  ExpectAll(Closed(), false);
  ExpectAll(Buttons(), false);
  EXPECT_TRUE(CanUse(*Inspector::FilterBox(View())));
  EXPECT_TRUE(CanUse(*Inspector::StreamPopup(View())));
  EXPECT_FALSE(CanUse(*Inspector::AddCaptionButton(View())));
  EXPECT_FALSE(CanUse(*Inspector::DeleteCaptionButton(View())));
  EXPECT_FALSE(Pane().IsEnabled());
  EXPECT_TRUE(CanUse(*Inspector::ImportSettingsButton(View())));
  EXPECT_TRUE(CanUse(*Inspector::ExportSettingsButton(View())));
  SetReadOnly(false);
  ExpectAll(Closed(), true);
  EXPECT_TRUE(Pane().IsEnabled());
}

TEST_F(EnableRules, AnUnavailablePaneWithASelectionLeftKeepsItsFormatControls) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  AddStream(clip, MakeCaptions({1}), kOpenTrack1);
  ASSERT_EQ(SelectedBegins().size(), 1U);
  Inspector::DeferActive(Pane()) = true;
  View().UpdateAvailabilityAndLayout();
  Inspector::DeferActive(Pane()) = false;
  EXPECT_FALSE(CanUse(*Inspector::StreamLabel(View())));
  EXPECT_FALSE(CanUse(*Inspector::StreamPopup(View())));
  EXPECT_FALSE(CanUse(*Inspector::FilterBox(View())));
  EXPECT_FALSE(CanUse(*Inspector::AddCaptionButton(View())));
  EXPECT_FALSE(CanUse(*Inspector::DeleteCaptionButton(View())));
  EXPECT_FALSE(CanUse(*Inspector::GridLabel(View())));
  EXPECT_FALSE(CanUse(*Inspector::GridSizeText(View())));
  ExpectAll(Closed(), true);
  ExpectAll(Buttons(), true, {{"bold", false}, {"edgeColor", false}});
}

TEST_F(EnableRules, AStreamPopupWithOneEntryIsDisabled) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  EXPECT_EQ(Inspector::StreamPopup(View())->Size(), 1);
  EXPECT_FALSE(CanUse(*Inspector::StreamPopup(View())));
  EXPECT_TRUE(CanUse(*Inspector::StreamLabel(View())));
}

TEST_F(EnableRules, ASingleDisplayTypeLeavesNothingToChoose) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  EXPECT_TRUE(CanUse(*Inspector::CaptionTypePopup(View())));
  auto& types = Inspector::CaptionTypeMap(View());
  while (types.size() > 1)
    types.erase(types.begin());
  View().ScrollSelectionIntoView();
  EXPECT_FALSE(CanUse(*Inspector::CaptionTypePopup(View())));
}

TEST_F(EnableRules, TheOpacityOfTheTextIsNotToBeEdited) {
  ShowStream(kOpenTrack1);
  EXPECT_FALSE(CanUse(*Inspector::OpacityControl(View())));
  EXPECT_FALSE(CanUse(*Inspector::OpacityUnitText(View())));
  for (const int command : {32013, 32016}) {
    View().ObeyCommand(UIF::Command(command));
    View().ScrollSelectionIntoView();
    EXPECT_TRUE(CanUse(*Inspector::OpacityControl(View()))) << command;
    EXPECT_TRUE(CanUse(*Inspector::OpacityUnitText(View()))) << command;
  }
}

TEST_F(EnableRules, AReadbackBringsTheOpacityBackInAReadOnlyProject) {
  ShowStream(kOpenTrack1);
  View().ObeyCommand(UIF::Command(32013));
  SetReadOnly(true);
  EXPECT_FALSE(CanUse(*Inspector::OpacityControl(View())));
  Pane().PublishSelectionFormat();
  EXPECT_TRUE(CanUse(*Inspector::OpacityControl(View())));
  View().ScrollSelectionIntoView();
  EXPECT_FALSE(CanUse(*Inspector::OpacityControl(View())));
}

TEST_F(EnableRules, TheHeightOfClosedCaptionsThatHaveNoneIsDisabledAndHidden) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  EXPECT_FALSE(CanUse(*Inspector::DoubleHeightPopup(View())));
  EXPECT_FALSE(Inspector::DoubleHeightPopup(View())->UI_IsShown());
}

TEST_F(EnableRules, TheHeightOfEbuCaptionsFollowsTheSelection) {
  ShowStream(kEbuN19);
  EXPECT_TRUE(CanUse(*Inspector::DoubleHeightPopup(View())));
  SelectNothing();
  EXPECT_FALSE(CanUse(*Inspector::DoubleHeightPopup(View())));
}

TEST_F(EnableRules, WithoutASelectionOfOpenCaptionsTheHeightKeepsItsState) {
  ShowStream(kOpenTrack1);
  SelectNothing();
  Inspector::DoubleHeightPopup(View())->SetDisabled(false);
  View().ScrollSelectionIntoView();
  EXPECT_TRUE(CanUse(*Inspector::DoubleHeightPopup(View())));
  Click(1);
  EXPECT_FALSE(CanUse(*Inspector::DoubleHeightPopup(View())));
}

TEST_F(EnableRules, TeletextHasNeitherItalicNorUnderline) {
  ShowStream(kTeletext);
  ExpectAll(Buttons(), true, {{"bold", false}, {"edgeColor", false}, {"italic", false}, {"underline", false}});
  const auto other = AddClip();
  AddStream(other, MakeCaptions({1}));
  SelectClip(other);
  ExpectAll(Buttons(), true, {{"bold", false}, {"edgeColor", false}});
}

TEST_F(EnableRules, AMissingProjectEndsThePassBeforeAnyControlChanges) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  Pane().Disable();
  Inspector::StreamLabel(View())->SetDisabled(true);
  MZ::SetActiveProject(nullptr);
  const auto reports = zebcore::boundary::TakeReports(); // the view was told, too
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports.front().text, "A NULL interface pointer has been dereferenced: BE::IProject");
  EXPECT_THROW(View().UpdateAvailabilityAndLayout(), zebcore::classref::NullInterfaceException);
  EXPECT_TRUE(Inspector::StreamLabel(View())->IsDisabled());
  EXPECT_FALSE(Pane().IsEnabled());
  MZ::SetActiveProject(project);
}

} // namespace Captivo::Testing
