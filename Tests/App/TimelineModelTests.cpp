#include <gmock/gmock.h>

#include "App/window/TimelineModel.h"
#include "Support.h"

// What lies where in a timeline, and what comes next to what.
namespace AppTest {

using App::TimelineModel;
using App::TimelineSelection;
using ::testing::ElementsAre;
using What = TimelineSelection::What;
using zebmediatypes::TickTime;

class TimelineOf : public SessionTest {
 protected:
  TimelineOf() {
    length = clip->GetMediaInfo().duration;
    sequence = project()->AddSequence(u"Cut", zebmediatypes::kFrameRate_25,
                                      zebmediatypes::FrameRate::FromRational(48000, 1), {});
  }
  InterfaceRef<BE::TrackItem> Put(std::int64_t lengths, int track = 0, bool video = true, bool audio = true) {
    auto item = App::MakeSequenceItem(clip, At(lengths), track);
    item.video = video;
    item.audio = audio;
    return project()->InsertItem(sequence, item, u"Add");
  }
  // In lengths of the clip.
  TickTime At(double lengths) const {
    return TickTime(static_cast<std::int64_t>(lengths * static_cast<double>(length.GetTicks())));
  }
  TimelineModel Model() {
    TimelineModel model;
    model.SetSequence(sequence);
    return model;
  }
  // The lane of V1 where there are two tracks of each kind.
  static constexpr int kV1 = 1;
  static constexpr int kA1 = 2;

  TickTime length;
  InterfaceRef<BE::Sequence> sequence;
};

TEST_F(TimelineOf, ASequenceHasVideoLanesAboveAudioLanesAndOneTrackMoreThanItUses) {
  Put(0, 1);
  const TimelineModel model = Model();
  std::vector<std::string> lanes;
  for (const auto& lane : model.GetLanes())
    lanes.push_back((lane.isVideo ? "V" : "A") + std::to_string(lane.track + 1));
  EXPECT_THAT(lanes, ElementsAre("V3", "V2", "V1", "A1", "A2", "A3"));
}

TEST_F(TimelineOf, AnItemLiesOnTheLanesOfItsMedia) {
  Put(0, 0, true, false);
  Put(1, 0, false, true);
  const TimelineModel model = Model();
  EXPECT_TRUE(model.FindPiece(kV1, At(0.5)));
  EXPECT_FALSE(model.FindPiece(kA1, At(0.5)));
  EXPECT_FALSE(model.FindPiece(kV1, At(1.5)));
  EXPECT_TRUE(model.FindPiece(kA1, At(1.5)));
}

TEST_F(TimelineOf, AnEmptySpotLiesBeforeAnItemAndNothingBehindTheLast) {
  Put(1);
  Put(3);
  const TimelineModel model = Model();
  const TimelineSelection before = model.SelectAt(kV1, TickTime(0));
  EXPECT_EQ(before.what, What::EmptySpot);
  EXPECT_EQ(before.to, At(1));
  const TimelineSelection between = model.SelectAt(kV1, At(2.5));
  EXPECT_EQ(between.what, What::EmptySpot);
  EXPECT_EQ(between.from, At(2));
  EXPECT_EQ(between.to, At(3));
  EXPECT_EQ(model.SelectAt(kV1, At(4)).what, What::Nothing);
  EXPECT_EQ(model.SelectAt(0, At(1)).what, What::Nothing);
  EXPECT_EQ(model.SelectAt(-1, At(1)).what, What::Nothing);
}

TEST_F(TimelineOf, AlongALaneComeItemsDissolvesAndEmptySpotsInTheirOrder) {
  const auto a = Put(1);
  const auto b = Put(2);
  Put(4);
  ASSERT_TRUE(session().AddDissolve(sequence, a, b));
  const TimelineModel model = Model();
  std::vector<What> forward;
  TimelineSelection at = model.SelectFirst(kV1);
  for (int step = 0; step < 7; ++step) {
    forward.push_back(at.what);
    at = model.SelectNext(at);
  }
  EXPECT_THAT(forward, ElementsAre(What::EmptySpot, What::Item, What::Transition, What::Item, What::EmptySpot,
                                   What::Item, What::Item));
  std::vector<What> back;
  for (int step = 0; step < 6; ++step) {
    at = model.SelectPrevious(at);
    back.push_back(at.what);
  }
  EXPECT_THAT(back,
              ElementsAre(What::EmptySpot, What::Item, What::Transition, What::Item, What::EmptySpot, What::EmptySpot));
}

TEST_F(TimelineOf, WhatIsSelectedIsFoundAgainWhenATrackIsAdded) {
  const auto a = Put(0);
  TimelineModel model = Model();
  const TimelineSelection selection = model.SelectAt(kV1, At(0.5));
  ASSERT_EQ(selection.id, a->GetID());
  Put(0, 1);
  model.Read();
  const TimelineSelection renewed = model.Renew(selection);
  EXPECT_EQ(renewed.id, a->GetID());
  EXPECT_EQ(renewed.lane, 2);
  project()->RemoveItems(sequence, {a}, u"Delete");
  model.Read();
  EXPECT_EQ(model.Renew(renewed).what, What::Nothing);
}

TEST_F(TimelineOf, ATimeSnapsToTheNearestCutWithinReach) {
  Put(1);
  const TimelineModel model = Model();
  EXPECT_EQ(model.SnapToCut(At(1) + TickTime(90), TickTime(100)), At(1));
  EXPECT_EQ(model.SnapToCut(At(2) - TickTime(90), TickTime(100)), At(2));
  EXPECT_EQ(model.SnapToCut(At(1) + TickTime(110), TickTime(100)), At(1) + TickTime(110));
}

// As the driver may make it: laid over each other, which edits never do.
TEST_F(TimelineOf, OfItemsThatOverlapTheLaterOneIsOnTop) {
  sequence = project()->AddSequence(u"Pile", zebmediatypes::kFrameRate_25, zebmediatypes::FrameRate(),
                                    {App::MakeSequenceItem(clip, At(0), 0), App::MakeSequenceItem(clip, At(0.5), 0)});
  const TimelineModel model = Model();
  EXPECT_EQ(model.FindPiece(kV1, At(0.75))->start, At(0.5));
  EXPECT_EQ(model.FindPiece(kV1, At(0.25))->start, At(0));
  EXPECT_EQ(model.FindFirst(kV1, At(1.25)), 1U);
  EXPECT_EQ(model.FindFirst(kV1, At(2)), 2U);
}

} // namespace AppTest
