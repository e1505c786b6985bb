#include "Captions/contracts/StreamMessages.h"
#include "Support.h"

// Commits come before what they close is left behind; rows change before the screen, and the screen before the stream.
namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;

// A call, and the rows and the selection at its moment.
struct Moment {
  std::string call;
  Times rows;
  Times selected;

  bool operator==(const Moment&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Moment& moment) {
  out << moment.call << " rows";
  for (const double row : moment.rows)
    out << ' ' << row;
  out << " selected";
  for (const double row : moment.selected)
    out << ' ' << row;
  return out;
}

class PaneEditOrder : public PanelTest {
 protected:
  void Watch() {
    zebcore::trace::Take();
    moments.clear();
    zebcore::trace::SetAnnotator([this](zebcore::trace::Call& call) {
      std::string name = call.call.substr(call.call.rfind(':') + 1);
      const bool isUpdaters = call.call.rfind("CaptioningStreamUpdater::", 0) == 0;
      const bool isFocus = call.call == "View::SetFocus";
      if (call.call == "messaging::PostMessageToUIThread")
        name = call.args["message"];
      else if (!isUpdaters && !isFocus && call.call != "TabView::UpdateStackedDimensions")
        return;
      if (name == "CommitChangesUndoable")
        name += call.args["ends_passage"].get<bool>() ? " true" : " false";
      moments.push_back({name, Begins(), SelectedBegins()});
    });
  }
  ~PaneEditOrder() override { zebcore::trace::SetAnnotator(nullptr); }

  std::vector<Moment> moments;
};

using Moments = std::vector<Moment>;

} // namespace

TEST_F(PaneEditOrder, AClickCommitsBeforeItSelectsAndTellsTheHostAfterwards) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Watch();
  Click(3);
  EXPECT_EQ(moments,
            (Moments{{"CommitChangesUndoable true", {1, 3}, {1}}, {"HSL::CaptionSelectedMessage", {1, 3}, {3}}}));
}

TEST_F(PaneEditOrder, AKeyCommitsBeforeItSelects) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Watch();
  ASSERT_TRUE(PressKey(-40));
  EXPECT_EQ(moments,
            (Moments{{"CommitChangesUndoable true", {1, 3}, {1}}, {"HSL::CaptionSelectedMessage", {1, 3}, {3}}}));
}

TEST_F(PaneEditOrder, ANewCaptionIsInTheRowsThenOnTheScreenThenInTheStream) {
  OpenPanelOn(MakeCaptions({1, 5}));
  Watch();
  Pane().AddNewCaption();
  EXPECT_EQ(moments, (Moments{{"CommitChangesUndoable false", {1, 5}, {1}},
                              {"UpdateStackedDimensions", {1, 2, 5}, {2}},
                              {"AddCaption", {1, 2, 5}, {2}},
                              {"SetFocus", {1, 2, 5}, {2}}}));
}

TEST_F(PaneEditOrder, DeletedCaptionsAreOffTheRowsThenOffTheScreenThenOutOfTheStream) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Click(3);
  Watch();
  Pane().DeleteSelectedCaptions();
  EXPECT_EQ(moments, (Moments{{"CommitChangesUndoable true", {1, 3, 5}, {3}},
                              {"UpdateStackedDimensions", {1, 5}, {1}},
                              {"RemoveCaptions", {1, 5}, {1}},
                              {"SetFocus", {1, 5}, {1}}}));
}

TEST_F(PaneEditOrder, AMovedCaptionIsInItsNewPlaceBeforeTheStreamHearsOfIt) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Watch();
  Pane().ChangeCaptionTimes(Seconds(1), Seconds(7), Seconds(1));
  // What the stream still holds is read in between, so the place is asked for by the time that the list files it under.
  const std::vector<std::string> calls{"UpdateStackedDimensions", "CommitChangesUndoable true",
                                       "UpdateCaptionStartAndDuration"};
  ASSERT_EQ(moments.size(), calls.size());
  for (std::size_t i = 0; i < calls.size(); ++i) {
    EXPECT_EQ(moments[i].call, calls[i]);
    EXPECT_EQ(moments[i].rows.front(), 3);
    EXPECT_EQ(moments[i].selected, (Times{7}));
  }
  EXPECT_EQ(Begins(), (Times{3, 7}));
}

TEST_F(PaneEditOrder, ASourceIsCommittedBeforeItIsLeft) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddClip(u"Other");
  AddStream(other, MakeCaptions({5}));
  Click(3);
  Watch();
  SelectClip(other);
  ASSERT_GT(moments.size(), 2U);
  EXPECT_EQ(moments[0], (Moment{"IsBusy", {1, 3}, {3}}));
  EXPECT_EQ(moments[1], (Moment{"CommitChangesUndoable true", {1, 3}, {3}}));
  EXPECT_EQ(moments[2], (Moment{"UpdateCaptioningStream", {1, 3}, {3}}));
  EXPECT_EQ(moments.back(), (Moment{"UpdateStackedDimensions", {5}, {5}}));
}

TEST_F(PaneEditOrder, AFormatIsCommittedBeforeItIsLeft) {
  OpenPanelOn(MakeCaptions({1, 3}));
  AddStream(clip, MakeCaptions({5}), zebcaptioning::kStreamFormat_608_CC1 + 1);
  Click(3);
  Watch();
  Pane().SelectStreamFormat(1);
  ASSERT_GT(moments.size(), 2U);
  EXPECT_EQ(moments[0], (Moment{"CommitChangesUndoable true", {1, 3}, {3}}));
  EXPECT_EQ(moments[1], (Moment{"UpdateCaptioningStream", {1, 3}, {3}}));
  EXPECT_EQ(moments.back(), (Moment{"UpdateStackedDimensions", {5}, {5}}));
}

TEST_F(PaneEditOrder, TheHostsWishToCommitIsPassedOnAsOneThatEndsNoPassage) {
  OpenPanelOn(MakeCaptions({1}));
  Watch();
  Pane().HandleMessage(HSL::CaptionCommitEditsMessage());
  EXPECT_EQ(moments, (Moments{{"CommitChangesUndoable false", {1}, {1}}}));
}

} // namespace Captivo::Testing
