#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Support.h"

// What a click or a key calls, in which order, and what it leaves alone.
namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;
constexpr std::uint8_t kExtend = UIF::KeyModifiers::kExtend;
constexpr std::uint8_t kToggle = UIF::KeyModifiers::kToggle;
constexpr short kUp = -38;
constexpr short kDown = -40;
constexpr short kHome = -36;
constexpr short kEnd = -35;
constexpr short kPageUp = -33;
constexpr short kPageDown = -34;
constexpr short kDelete = -46;
constexpr short kBackspace = 8;

class PaneGesture : public PanelTest, public zebcore::messaging::Listener {
 protected:
  PaneGesture() { zebcore::messaging::AddListener(HSL::kStation_CaptionSelection, this); }
  ~PaneGesture() override { zebcore::messaging::RemoveListener(HSL::kStation_CaptionSelection, this); }
  void HandleMessage(const zebcore::messaging::Message& message) override {
    if (zebcore::messaging::MessageCast<HSL::CaptionSelectedMessage>(message))
      ++told;
  }
  int TakeTold() {
    zebcore::messaging::DeliverPostedMessages();
    return std::exchange(told, 0);
  }
  void OpenRows(int count) {
    std::vector<double> begins;
    for (int i = 0; i < count; ++i)
      begins.push_back(2 * i + 1);
    OpenPanelOn(MakeCaptions(begins));
    TakeTold();
    zebcore::trace::Take();
  }
  static void Once(std::vector<std::string>& course, const char* word) {
    if (course.empty() || course.back() != word)
      course.emplace_back(word);
  }
  // Commits, posts, moves of the scroll bar and repaints of the pane, by one word each.
  std::vector<std::string> TakeCourse() {
    std::vector<std::string> course;
    for (const auto& call : zebcore::trace::Take()) {
      if (call.call == "CaptioningStreamUpdater::CommitChangesUndoable")
        course.push_back(call.args["ends_passage"] == true ? "commit" : "commit in passing");
      else if (call.call == "CaptioningStreamUpdater::RemoveCaptions")
        course.push_back(call.args["close_gap"] == false ? "remove" : "remove and close");
      else if (call.call == "messaging::PostMessageToUIThread")
        course.push_back("tell");
      else if (call.call == "ScrollBar::SetScrollBarPosition")
        Once(course, "scroll");
      else if (call.call == "View::SetFocus")
        course.push_back("focus");
      else if (call.call == "View::Invalidate" && call.args["class"] == "Captivo::CaptionsPane")
        Once(course, "repaint");
    }
    return course;
  }
  // Whether a format has gone to the format bar since the last time.
  bool TakePublished() {
    const auto now = Inspector::FormatInfo(View());
    return std::exchange(published, now) != now;
  }
  void ClickAt(int x, int y, std::uint8_t modifiers = 0) {
    Pane().DispatchLeftButtonUp({x, y}, UIF::KeyModifiers(modifiers));
  }
  const TextRange& Caret() { return Inspector::TextSelection(List()); }

  using Course = std::vector<std::string>;
  int told = 0;

 private:
  boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> published;
};

} // namespace

TEST_F(PaneGesture, APlainSelectionCommitsThenTellsThenScrollsThenRepaints) {
  OpenRows(30);
  EXPECT_TRUE(PressKey(kEnd));
  EXPECT_EQ(TakeCourse(), (Course{"commit", "tell", "scroll", "repaint"}));
}

TEST_F(PaneGesture, TheCommitSeesTheFormerSelection) {
  OpenRows(3);
  FocusText(1);
  Text(1).SetValue(u"Typed", true);
  const auto steps = project->GetUndoNames().size();
  Click(5);
  EXPECT_EQ(project->GetUndoNames().size(), steps + 1);
  EXPECT_EQ(SelectedBegins(), (Times{5}));
}

TEST_F(PaneGesture, ListenersHearOfASelectionWhenTheGestureIsOver) {
  OpenRows(3);
  Click(5);
  EXPECT_EQ(told, 0);
  EXPECT_EQ(TakeTold(), 1);
}

TEST_F(PaneGesture, AGestureThatChangesNothingStillCommitsAndDoesNothingElse) {
  OpenRows(3);
  for (const std::uint8_t modifiers : {std::uint8_t{0}, kToggle, kExtend}) {
    TakePublished();
    ClickAt(10, 10, modifiers);
    EXPECT_EQ(TakeCourse(), (Course{"commit"})) << int{modifiers};
    EXPECT_FALSE(TakePublished()) << int{modifiers};
    EXPECT_EQ(TakeTold(), 0) << int{modifiers};
  }
}

TEST_F(PaneGesture, AToggleAndAnExtensionScrollAndRepaintButTellNobody) {
  OpenRows(3);
  TakePublished();
  Click(5, kToggle);
  EXPECT_EQ(TakeCourse(), (Course{"commit", "repaint"}));
  EXPECT_TRUE(TakePublished());
  Click(3, kExtend);
  EXPECT_EQ(TakeCourse(), (Course{"commit", "repaint"}));
  EXPECT_TRUE(TakePublished());
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneGesture, AnExtensionThatLeavesOneRowSelectedTellsNobody) {
  OpenRows(3);
  Click(3, kToggle);
  Click(1, kToggle);
  ASSERT_EQ(SelectedBegins(), (Times{3})) << "the row that a range starts from is not selected any more";
  TakeTold();
  Click(5, kExtend);
  EXPECT_EQ(SelectedBegins(), (Times{5}));
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneGesture, AButtonThatGoesDownSelectsNothing) {
  OpenRows(3);
  Pane().DispatchLeftButtonDown({10, 85}, UIF::KeyModifiers());
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneGesture, ARowReachesFromItsFirstPixelToItsLast) {
  OpenRows(3);
  ClickAt(10, 75);
  EXPECT_EQ(SelectedBegins(), (Times{3}));
  ClickAt(10, 74);
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  ClickAt(10, 224);
  EXPECT_EQ(SelectedBegins(), (Times{5}));
  ClickAt(10, 225);
  EXPECT_EQ(SelectedBegins(), Times{});
}

TEST_F(PaneGesture, AClickCountsFromTheTopOfTheRowsAndNotOfThePane) {
  OpenRows(30);
  Pane().SetScrollOffset(75 * 10);
  ClickAt(10, 80);
  EXPECT_EQ(SelectedBegins(), (Times{23}));
}

TEST_F(PaneGesture, AButtonThatIsLetGoAboveThePaneCountsAsBelowTheRows) {
  OpenRows(3);
  ClickAt(10, -5);
  EXPECT_EQ(SelectedBegins(), Times{});
  EXPECT_EQ(TakeCourse(), (Course{"repaint"}));
}

TEST_F(PaneGesture, AClickOnARowForgetsTheCaretInItsText) {
  OpenRows(3);
  for (const std::uint8_t modifiers : {std::uint8_t{0}, kToggle, kExtend}) {
    List().SetTextSelection({1, 2});
    Click(1, modifiers);
    EXPECT_EQ(Caret(), kTextRange_Whole) << int{modifiers};
    EXPECT_EQ(SelectedBegins(), (Times{1}));
  }
}

TEST_F(PaneGesture, AClickBelowTheRowsForgetsTheCaretAndPublishesTheFormatOfNothing) {
  OpenRows(3);
  List().SetTextSelection({1, 2});
  TakePublished();
  ClickAt(10, 400);
  EXPECT_EQ(Caret(), kTextRange_Whole);
  EXPECT_TRUE(TakePublished());
  EXPECT_EQ(TakeCourse(), (Course{"repaint"}));
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneGesture, TheContextMenuOpensWhereTheButtonWentDownAndCommitsNothing) {
  OpenRows(3);
  UIF::MenuUtils::SetMenuHook([](const std::string&, const auto&) { return 0; });
  Pane().DispatchRightButtonDown({12, 100}, UIF::KeyModifiers());
  UIF::MenuUtils::SetMenuHook(nullptr);
  int menus = 0;
  for (const auto& call : zebcore::trace::Take()) {
    EXPECT_EQ(call.call.rfind("CaptioningStreamUpdater::", 0), std::string::npos) << call.call;
    if (call.call != "MenuUtils::TrackContextMenu")
      continue;
    ++menus;
    EXPECT_EQ(call.args["menu"], "Captivo_Context_Menu");
    EXPECT_EQ(call.args["x"], 12);
    EXPECT_EQ(call.args["y"], 100);
  }
  EXPECT_EQ(menus, 1);
}

TEST_F(PaneGesture, AKeyGoesByItsCodeAndNotByItsCharacter) {
  OpenRows(3);
  EXPECT_FALSE(Pane().DispatchKeyDown(L'\b', 0, false));
  EXPECT_FALSE(Pane().DispatchKeyDown(L'\b', -8, false));
  EXPECT_FALSE(Pane().DispatchKeyDown(0, 46, false)) << "a full stop";
  EXPECT_FALSE(Pane().DispatchKeyDown(0, 40, false)) << "a bracket";
  EXPECT_EQ(TakeCourse(), Course{});
  EXPECT_TRUE(Pane().DispatchKeyDown(L'x', kDown, true));
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneGesture, ArrowsGoFromTheEdgesOfTheSelection) {
  OpenRows(7);
  Click(5);
  Click(9, kExtend);
  PressKey(kDown);
  EXPECT_EQ(SelectedBegins(), (Times{11}));
  Click(5);
  Click(9, kExtend);
  PressKey(kUp);
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneGesture, ShiftWithAnArrowExtendsFromTheAnchorAndMovesFromTheEdge) {
  OpenRows(7);
  Click(7);
  PressKey(kUp, kExtend);
  PressKey(kUp, kExtend);
  EXPECT_EQ(SelectedBegins(), (Times{3, 5, 7}));
  PressKey(kDown, kExtend);
  EXPECT_EQ(SelectedBegins(), (Times{7, 9})) << "one below the lowest selected row, though the last one came on top";
}

TEST_F(PaneGesture, TheToggleKeyWithAnArrowToggles) {
  OpenRows(5);
  Click(5);
  PressKey(kUp, kToggle);
  EXPECT_EQ(SelectedBegins(), (Times{3, 5}));
  PressKey(kDown, kToggle);
  EXPECT_EQ(SelectedBegins(), (Times{3, 5, 7}));
}

TEST_F(PaneGesture, APageIsEveryRowThatShowsAPixel) {
  OpenRows(30);
  for (const auto& [height, rows] : {std::pair(225, 3), {226, 4}, {75, 1}, {1, 1}, {300, 4}}) {
    Pane().SetBounds({0, 0, 500, height});
    Pane().SelectCaptionAtTime(Seconds(21));
    PressKey(kPageDown);
    EXPECT_EQ(SelectedBegins(), (Times{21.0 + 2 * rows})) << height;
    Pane().SelectCaptionAtTime(Seconds(21));
    PressKey(kPageUp);
    EXPECT_EQ(SelectedBegins(), (Times{21.0 - 2 * rows})) << height;
  }
}

TEST_F(PaneGesture, PagesStopAtTheEndsOfTheList) {
  OpenRows(5);
  Pane().SetBounds({0, 0, 500, 750});
  Click(5);
  PressKey(kPageDown);
  EXPECT_EQ(SelectedBegins(), (Times{9}));
  PressKey(kPageUp);
  EXPECT_EQ(SelectedBegins(), (Times{1}));
}

TEST_F(PaneGesture, RelativeMovesWithNothingSelectedOnlyCommitAndTheEndsAreStillReached) {
  OpenRows(3);
  for (const short key : {kUp, kDown, kPageUp, kPageDown}) {
    List().ClearSelection();
    EXPECT_TRUE(PressKey(key)) << key;
    EXPECT_EQ(SelectedBegins(), Times{}) << key;
    EXPECT_EQ(TakeCourse(), (Course{"commit"})) << key;
  }
  PressKey(kHome);
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  List().ClearSelection();
  PressKey(kEnd);
  EXPECT_EQ(SelectedBegins(), (Times{5}));
}

TEST_F(PaneGesture, KeysInAnEmptyListOnlyCommit) {
  OpenRows(0);
  for (const short key : {kHome, kEnd, kUp, kDown, kPageUp, kPageDown}) {
    EXPECT_TRUE(PressKey(key)) << key;
    EXPECT_EQ(TakeCourse(), (Course{"commit"})) << key;
  }
}

TEST_F(PaneGesture, DeletingByKeyCommitsTakesTheRowsRefreshesTellsTheStreamAndCommitsAgain) {
  for (const short key : {kDelete, kBackspace}) {
    OpenRows(3);
    EXPECT_TRUE(PressKey(key));
    EXPECT_EQ(TakeCourse(), (Course{"commit", "scroll", "repaint", "remove", "focus", "commit"})) << key;
    EXPECT_TRUE(Inspector::ResetScrollPending(Pane())) << "for the next refresh";
    EXPECT_EQ(TakeTold(), 0);
    EXPECT_TRUE(Pane().HasFocus());
  }
}

TEST_F(PaneGesture, DeletingByKeyWithNothingSelectedOnlyCommitsTwice) {
  OpenRows(3);
  List().ClearSelection();
  Inspector::ResetScrollPending(Pane()) = false;
  EXPECT_TRUE(PressKey(kDelete));
  EXPECT_EQ(TakeCourse(), (Course{"commit", "commit"}));
  EXPECT_FALSE(Inspector::ResetScrollPending(Pane()));
  EXPECT_EQ(Begins(), (Times{1, 3, 5}));
}

TEST_F(PaneGesture, DeletingTheLastRowByKeyForgetsTheRowsInView) {
  OpenRows(1);
  PressKey(kBackspace);
  EXPECT_EQ(Inspector::FirstVisibleRow(Pane()), -1);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), -2);
}

TEST_F(PaneGesture, ModifiersDoNotKeepDeleteFromDeleting) {
  for (const std::uint8_t modifiers : {kToggle, kExtend}) {
    OpenRows(3);
    Click(1);
    PressKey(kDelete, modifiers);
    EXPECT_EQ(Begins(), (Times{3, 5}));
    EXPECT_EQ(SelectedBegins(), (Times{3}));
  }
}

TEST_F(PaneGesture, ARowThatGainsTheFocusIsScrolledToPublishedAndRepaintedEvenIfItWasSelected) {
  OpenRows(30);
  TakePublished();
  Pane().SelectCaptionAtTime(Seconds(51));
  EXPECT_EQ(TakeCourse(), (Course{"scroll", "repaint"}));
  EXPECT_TRUE(TakePublished());
  Pane().SelectCaptionAtTime(Seconds(51));
  EXPECT_EQ(TakeCourse(), (Course{"repaint"}));
  EXPECT_TRUE(TakePublished());
  Pane().SelectCaptionAtTime(Seconds(2));
  EXPECT_EQ(SelectedBegins(), (Times{51})) << "no row begins there";
  EXPECT_TRUE(TakePublished());
  EXPECT_EQ(TakeTold(), 0);
}

TEST_F(PaneGesture, TimesFromElsewhereResetTheScrollPositionOnlyIfThatWasPending) {
  OpenRows(30);
  PressKey(kEnd);
  const auto bottom = Inspector::ScrollOffset(Pane());
  ASSERT_GT(bottom, 0U);
  TakePublished();
  Inspector::ResetScrollPending(Pane()) = false;
  Pane().SelectCaptionTimes({Seconds(57), Seconds(59)});
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), bottom);
  EXPECT_TRUE(TakePublished());
  Inspector::ResetScrollPending(Pane()) = true;
  zebcore::trace::Take();
  Pane().SelectCaptionTimes({Seconds(1)});
  EXPECT_FALSE(Inspector::ResetScrollPending(Pane()));
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 0U);
  int stackings = 0;
  for (const std::string& call : TakeCalls("TabView::UpdateStackedDimensions"))
    stackings += !call.empty();
  EXPECT_EQ(stackings, 1);
}

TEST_F(PaneGesture, TimesOfNoRowLeaveTheFormerFirstRowSelected) {
  OpenRows(3);
  Click(3);
  Click(5, kExtend);
  Pane().SelectCaptionTimes({Seconds(2), Seconds(4)});
  EXPECT_EQ(SelectedBegins(), (Times{3}));
}

TEST_F(PaneGesture, SelectingEverythingPublishesAndRepaints) {
  OpenRows(3);
  TakePublished();
  Pane().SelectAllCaptions();
  EXPECT_TRUE(TakePublished());
  EXPECT_EQ(TakeCourse(), (Course{"repaint"}));
}

TEST_F(PaneGesture, APublishedFormatNotesTheTextThatHasTheFocusAndNeverForgetsIt) {
  OpenRows(3);
  Pane().PublishSelectionFormat();
  EXPECT_FALSE(Inspector::KeepTextFocus(Pane()));
  FocusText(1);
  Inspector::KeepTextFocus(Pane()) = false;
  Pane().SelectAllCaptions();
  EXPECT_FALSE(Inspector::KeepTextFocus(Pane())) << "with several rows selected no text counts";
  Pane().SelectCaptionAtTime(Seconds(3));
  EXPECT_FALSE(Inspector::KeepTextFocus(Pane())) << "nor does that of another row";
  Pane().SelectCaptionAtTime(Seconds(1));
  EXPECT_TRUE(Inspector::KeepTextFocus(Pane()));
  Pane().SetFocus();
  Pane().SelectCaptionAtTime(Seconds(5));
  EXPECT_TRUE(Inspector::KeepTextFocus(Pane()));
}

TEST_F(PaneGesture, AGenericFontIsPublishedUnderTheNameThatPeopleKnow) {
  const auto caption = MakeCaption(1, 2, u"Hello");
  auto* state = new zebcaptioning::CaptionState(*caption->GetState());
  zebcaptioning::TextSpanAttributes generic;
  generic.family = u"monospaceSerif";
  ASSERT_TRUE(zebcaptioning::TextSpanAttributes::IsGenericFontName(generic.family));
  state->runs = {{0, zebcaptioning::Share(generic)}};
  caption->SetState(zebcaptioning::CaptionStatePtr(state));
  clip = AddClip();
  stream = AddStream(clip, {caption, MakeCaption(3, 4)}, kOpenTrack1);
  OpenPanel();
  SelectClip(clip);
  UString family;
  bool isUniform = false;
  Inspector::FormatInfo(View())->GetFontFamily(family, isUniform);
  EXPECT_EQ(family, zebcaptioning::TextSpanAttributes::GetGenericUIFontName(generic.family));
  EXPECT_NE(family, generic.family);
  EXPECT_TRUE(isUniform);
  Pane().SelectAllCaptions();
  Inspector::FormatInfo(View())->GetFontFamily(family, isUniform);
  EXPECT_FALSE(isUniform);
}

TEST_F(PaneGesture, AGestureOnATimeWithoutARowDoesNothingButCommit) {
  OpenRows(3);
  PressKey(kDelete);
  zebcore::trace::Take();
  List().ClearSelection();
  TakePublished();
  PressKey(kUp);
  EXPECT_EQ(TakeCourse(), (Course{"commit"}));
  EXPECT_FALSE(TakePublished());
  EXPECT_EQ(TakeTold(), 0);
}

} // namespace Captivo::Testing
