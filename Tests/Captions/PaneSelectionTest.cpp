#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Support.h"

namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;
constexpr std::uint8_t kExtend = UIF::KeyModifiers::kExtend;
constexpr std::uint8_t kToggle = UIF::KeyModifiers::kToggle;
constexpr short kUp = -38;
constexpr short kDown = -40;
constexpr short kHome = -36;
constexpr short kEnd = -35;
constexpr short kPageDown = -34;
constexpr short kDelete = -46;
constexpr short kBackspace = 8;

class Ear : public zebcore::messaging::Listener {
 public:
  Ear() { zebcore::messaging::AddListener(HSL::kStation_CaptionSelection, this); }
  ~Ear() override { zebcore::messaging::RemoveListener(HSL::kStation_CaptionSelection, this); }
  void HandleMessage(const zebcore::messaging::Message& message) override {
    if (const auto* selected = zebcore::messaging::MessageCast<HSL::CaptionSelectedMessage>(message))
      heard.push_back(*selected);
  }
  std::vector<HSL::CaptionSelectedMessage> heard;
};

class PaneSelection : public PanelTest {
 protected:
  std::size_t CountCommits() { return TakeCalls("CaptioningStreamUpdater::CommitChangesUndoable").size(); }
  std::vector<HSL::CaptionSelectedMessage> Heard() {
    zebcore::messaging::DeliverPostedMessages();
    return std::exchange(ear.heard, {});
  }
  Ear ear;
};

} // namespace

TEST_F(PaneSelection, AClickSelectsCommitsAndTellsTheHost) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Heard();
  Click(3);
  EXPECT_EQ(SelectedBegins(), (Times{3}));
  EXPECT_EQ(CountCommits(), 1U);
  const auto heard = Heard();
  ASSERT_EQ(heard.size(), 1U);
  EXPECT_TRUE(heard[0].stream == stream);
  EXPECT_EQ(heard[0].caption, Row(3)->GetCaption());
}

TEST_F(PaneSelection, AClickOnTheOnlySelectedRowCommitsAndTellsNobody) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(3);
  Heard();
  zebcore::trace::Take();
  Click(3);
  EXPECT_EQ(CountCommits(), 1U);
  EXPECT_TRUE(Heard().empty());
}

TEST_F(PaneSelection, AToggleOnTheOnlySelectedRowChangesNothing) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(1, kToggle);
  EXPECT_EQ(SelectedBegins(), (Times{1}));
}

TEST_F(PaneSelection, TogglingWinsOverExtending) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Click(5, kToggle | kExtend);
  EXPECT_EQ(SelectedBegins(), (Times{1, 5}));
}

TEST_F(PaneSelection, AToggleThatLeavesOneRowSelectedTellsNobody) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(3, kToggle);
  Heard();
  Click(3, kToggle);
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  EXPECT_TRUE(Heard().empty());
}

TEST_F(PaneSelection, DownOnTheLastRowStaysAndTellsNobody) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Click(3);
  Heard();
  EXPECT_TRUE(PressKey(kDown));
  EXPECT_EQ(SelectedBegins(), (Times{3}));
  EXPECT_TRUE(Heard().empty());
}

TEST_F(PaneSelection, PageDownInAPaneOfTwoHundredPixelsMovesThreeRows) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11}));
  Pane().SetBounds({0, 0, 500, 200});
  EXPECT_TRUE(PressKey(kPageDown));
  EXPECT_EQ(SelectedBegins(), (Times{7}));
}

TEST_F(PaneSelection, HomeAndEndGoToTheEndsAndShiftExtendsFromTheAnchor) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  PressKey(kEnd);
  EXPECT_EQ(SelectedBegins(), (Times{5}));
  PressKey(kUp, kExtend);
  EXPECT_EQ(SelectedBegins(), (Times{3, 5}));
  PressKey(kHome);
  EXPECT_EQ(SelectedBegins(), (Times{1}));
}

TEST_F(PaneSelection, KeysBelongToTheTextThatHasTheCaret) {
  OpenPanelOn(MakeCaptions({1, 3}));
  FocusText(1);
  zebcore::trace::Take();
  EXPECT_FALSE(PressKey(kDown));
  EXPECT_FALSE(PressKey(kDelete));
  EXPECT_EQ(CountCommits(), 0U);
  EXPECT_EQ(Begins(), (Times{1, 3}));
}

TEST_F(PaneSelection, AnyOtherKeyIsNotUsed) {
  OpenPanelOn(MakeCaptions({1, 3}));
  zebcore::trace::Take();
  EXPECT_FALSE(PressKey('A'));
  EXPECT_EQ(CountCommits(), 0U);
}

TEST_F(PaneSelection, AClickBelowTheRowsClearsTheSelectionWithoutACommitAndKeepsTheTextFocus) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Inspector::KeepTextFocus(Pane()) = true;
  zebcore::trace::Take();
  Pane().DispatchLeftButtonUp({10, 400}, UIF::KeyModifiers());
  EXPECT_EQ(SelectedBegins(), Times{});
  EXPECT_EQ(CountCommits(), 0U);
  EXPECT_TRUE(Inspector::KeepTextFocus(Pane()));
}

TEST_F(PaneSelection, AClickOnARowGivesTheTextFocusUp) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Inspector::KeepTextFocus(Pane()) = true;
  Click(1);
  EXPECT_FALSE(Inspector::KeepTextFocus(Pane()));
}

TEST_F(PaneSelection, UpWithNothingSelectedOnlyCommits) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Pane().DispatchLeftButtonUp({10, 400}, UIF::KeyModifiers());
  zebcore::trace::Take();
  EXPECT_TRUE(PressKey(kUp));
  EXPECT_EQ(SelectedBegins(), Times{});
  EXPECT_EQ(CountCommits(), 1U);
}

TEST_F(PaneSelection, DeleteAndBackspaceDeleteTheSelectionAsAStepOfItsOwn) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  const auto steps = project->GetUndoNames().size();
  EXPECT_TRUE(PressKey(kDelete));
  EXPECT_EQ(Begins(), (Times{3, 5}));
  EXPECT_EQ(stream->GetCaptionCount(), 2U);
  EXPECT_EQ(project->GetUndoNames().size(), steps + 1);
  EXPECT_TRUE(PressKey(kBackspace));
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneSelection, ACommandFromElsewhereNeitherCommitsNorTells) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Heard();
  zebcore::trace::Take();
  Pane().SelectCaptionAtTime(Seconds(3));
  Pane().SelectCaptionTimes({Seconds(1), Seconds(5)});
  EXPECT_EQ(SelectedBegins(), (Times{1, 5}));
  Pane().SelectAllCaptions();
  EXPECT_EQ(SelectedBegins(), (Times{1, 3, 5}));
  EXPECT_EQ(CountCommits(), 0U);
  EXPECT_TRUE(Heard().empty());
}

TEST_F(PaneSelection, TheContextMenuActsOnWhatWasSelectedBefore) {
  OpenPanelOn(MakeCaptions({1, 3}));
  std::string menu;
  UIF::MenuUtils::SetMenuHook([&](const std::string& name, const auto&) {
    menu = name;
    return 0;
  });
  Pane().DispatchRightButtonDown({10, 100}, UIF::KeyModifiers());
  UIF::MenuUtils::SetMenuHook(nullptr);
  EXPECT_EQ(menu, "Captivo_Context_Menu");
  EXPECT_EQ(SelectedBegins(), (Times{1}));
}

} // namespace Captivo::Testing
