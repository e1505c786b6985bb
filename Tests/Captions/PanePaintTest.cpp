#include "Support.h"

namespace Captivo::Testing {

namespace {

class PanePaint : public PanelTest {
 protected:
  // The calls of one pass over the pane, which comes after the background of the view below it.
  std::vector<zebcore::trace::Call> PaintCalls() {
    zebcore::trace::Take();
    Paint();
    std::vector<zebcore::trace::Call> calls;
    for (auto& call : zebcore::trace::Take())
      if (call.call.rfind("DC::", 0) == 0)
        calls.push_back(call);
    if (!calls.empty())
      calls.erase(calls.begin());
    return calls;
  }
  static std::size_t Count(const std::vector<zebcore::trace::Call>& calls, const std::string& name) {
    return static_cast<std::size_t>(
        std::count_if(calls.begin(), calls.end(), [&](auto& call) { return call.call == name; }));
  }
  RectT<int> PlaceOfText(double begin) {
    const auto rect = Text(begin).UI_GetLocalRectF();
    return {static_cast<int>(rect.x), static_cast<int>(rect.y), static_cast<int>(rect.width),
            static_cast<int>(rect.height)};
  }
};

} // namespace

TEST_F(PanePaint, AnEmptyListPaintsTheBackgroundOnly) {
  OpenPanelOn({});
  const auto calls = PaintCalls();
  EXPECT_EQ(Count(calls, "DC::FillRect"), 1U);
  EXPECT_EQ(Count(calls, "DC::DrawString"), 0U);
  EXPECT_EQ(Count(calls, "DC::DrawLine"), 0U);
}

TEST_F(PanePaint, EveryRowInViewHasTwoLabelsAndADividerButTheLast) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  const auto calls = PaintCalls();
  EXPECT_EQ(Count(calls, "DC::FillRect"), 2U);
  EXPECT_EQ(Count(calls, "DC::DrawString"), 6U);
  EXPECT_EQ(Count(calls, "DC::DrawLine"), 2U);
}

TEST_F(PanePaint, TheControlsStandInTheirRow) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Paint();
  const RectT<int> in = Row(3)->GetInControl().GetBounds();
  const RectT<int> out = Row(3)->GetOutControl().GetBounds();
  EXPECT_EQ(in.y, 76 + 5);
  EXPECT_EQ(out.y, 76 + 53);
  EXPECT_EQ(in.width, 80);
  EXPECT_EQ(in.height, 17);
  const RectT<int> text = PlaceOfText(3);
  EXPECT_EQ(text.x, in.x + 90);
  EXPECT_EQ(text.y, 81);
  EXPECT_EQ(text.height, 65);
  EXPECT_EQ(text.Right(), Pane().ClientRect().width - 5);
}

TEST_F(PanePaint, WithoutVideoTheLabelsStartAsBesideASquareThumbnail) {
  BE::MediaInfo info;
  info.sampleRate = 48000;
  info.duration = Seconds(60);
  clip = AddClip(info);
  AddStream(clip, MakeCaptions({1}));
  OpenPanel();
  SelectClip(clip);
  for (const auto& call : PaintCalls()) {
    if (call.call == "DC::DrawString") {
      EXPECT_EQ(call.args["rect"][0], 5 + 64 + 5);
      return;
    }
  }
  FAIL() << "no label was painted";
}

TEST_F(PanePaint, ARowThatIsCutAtTheBottomCountsAsVisible) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11}));
  Pane().SetBounds({0, 0, 500, 160});
  EXPECT_EQ(Inspector::FirstVisibleRow(Pane()), 0);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 2);
  EXPECT_TRUE(Row(5)->HasControls());
  EXPECT_FALSE(Row(7)->HasControls());
}

TEST_F(PanePaint, TheOffsetSnapsDownToWholeRows) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11}));
  Pane().SetScrollOffset(80);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 75U);
  Pane().SetScrollOffset(74);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 0U);
}

TEST_F(PanePaint, AnUnavailablePaneWithRowsDoesNotScroll) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11}));
  Pane().SetScrollOffset(75);
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  ASSERT_TRUE(Pane().IsUnavailable());
  Pane().SetScrollOffset(150);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 75U);
  EXPECT_EQ(Inspector::FirstVisibleRow(Pane()), 1);
  stream->SetBusy(false);
  Tick(250);
  Pane().SetScrollOffset(150);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 150U);
}

TEST_F(PanePaint, AnUnavailablePaneWithoutRowsTakesTheOffset) {
  OpenPanel();
  ASSERT_TRUE(Pane().IsUnavailable());
  Pane().SetScrollOffset(160);
  EXPECT_EQ(Inspector::ScrollOffset(Pane()), 150U);
}

TEST_F(PanePaint, AnUnavailablePaneWorksOutNoRowsWhenItsBoundsChange) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11}));
  stream->SetBusy(true);
  Pane().ReloadCaptions();
  Pane().SetBounds({0, 0, 500, 160});
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 5);
  stream->SetBusy(false);
  Tick(250);
  Pane().SetBounds({0, 0, 500, 160});
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 2);
}

TEST_F(PanePaint, PaintingRunsAheadOfAListThatShrank) {
  OpenPanelOn(MakeCaptions({1, 3, 5}));
  Inspector::LastVisibleRow(Pane()) = 7;
  Paint();
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 2);
}

TEST_F(PanePaint, ARowThatComesIntoViewAsksForItsPicture) {
  OpenPanelOn(MakeCaptions({1, 3}));
  ASSERT_EQ(renderRequests.size(), 2U);
  EXPECT_EQ(renderRequests[0].time, Seconds(2) - zebmediatypes::kFrameRate_25.GetFrameDuration());
}

TEST_F(PanePaint, PaintingAsksForNoPicture) {
  OpenPanelOn(MakeCaptions({1, 3}));
  renderRequests.clear();
  Paint();
  EXPECT_TRUE(renderRequests.empty());
}

} // namespace Captivo::Testing
