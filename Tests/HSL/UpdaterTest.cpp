#include "Captions/contracts/CaptioningStreamUpdater.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "../BE/Builders.h"
#include "zebcaptioning/StreamNumbers.h"
#include "zebcore/Trace.h"

namespace {

using namespace test;
using HSL::CaptioningStreamUpdater;
using testing::ElementsAre;
using testing::IsEmpty;
using zebcaptioning::CaptionFormatInfo;

constexpr std::pair<std::size_t, std::size_t> kAll{0, zebcaptioning::kTextRange_End};

class Updater : public testing::Test {
 protected:
  InterfaceRef<BE::Project> project = BE::Project::CreateInMemory();
  InterfaceRef<BE::MasterClip> clip = AddVideoClip(project);
  InterfaceRef<BE::CaptioningStream> stream = AddStream(project, clip, {State(10, 20, "one"), State(30, 40, "two")});
  MessageLog log{stream};
  std::size_t base = project->GetUndoNames().size();

  std::size_t Steps() const { return project->GetUndoNames().size() - base; }
  zebcore::UString LastStep() const { return project->GetUndoNames().front(); }
  static void Type(CaptioningStreamUpdater& updater, std::int64_t begin, const zebcore::UString& from,
                   const zebcore::UString& to) {
    updater.ApplyTextChange(TickTime(begin), from, to, {to.size(), to.size()}, false);
  }
};

TEST_F(Updater, ACommitWithNothingOpenChangesNothingAndCreatesNoUndoStep) {
  CaptioningStreamUpdater updater(stream);
  updater.CommitChangesUndoable(true);
  updater.CommitChangesUndoable(false);
  EXPECT_EQ(Steps(), 0U);
  EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(Updater, WithANullStreamIsNotBusyEvenIfItsLastOneIs) {
  CaptioningStreamUpdater updater(stream);
  stream->SetBusy(true);
  EXPECT_TRUE(updater.IsBusy());
  updater.UpdateCaptioningStream(nullptr);
  EXPECT_FALSE(updater.IsBusy());
}

TEST_F(Updater, IsBusyOnlyWhileAJobHoldsTheStream) {
  CaptioningStreamUpdater updater(stream);
  EXPECT_FALSE(updater.IsBusy());
  stream->SetBusy(true);
  EXPECT_TRUE(updater.IsBusy());
  stream->SetBusy(false);
  EXPECT_FALSE(updater.IsBusy());
}

TEST_F(Updater, RegionAndStyleNamesAreEmptyWithNoStream) {
  CaptioningStreamUpdater updater(nullptr);
  std::vector<zebcore::UString> names{u"left over"};
  updater.GetRegionNames(names);
  EXPECT_THAT(names, IsEmpty());
  names.push_back(u"left over");
  updater.GetStyleNames(names);
  EXPECT_THAT(names, IsEmpty());
}

TEST_F(Updater, RegionAndStyleNamesComeInTheStreamsOrder) {
  BE::StreamDescription description{kCC2, {{"top", {}, true}, {"bottom", {}, true}}, {"z", "a"}};
  CaptioningStreamUpdater updater(*project->AddStream(clip, description, {}, u"New stream").value);
  std::vector<zebcore::UString> names;
  updater.GetRegionNames(names);
  EXPECT_THAT(names, ElementsAre(u"top", u"bottom"));
  updater.GetStyleNames(names);
  EXPECT_THAT(names, ElementsAre(u"z", u"a"));
}

TEST_F(Updater, RemovingCaptionsIgnoresTimesThatNoLongerExist) {
  CaptioningStreamUpdater updater(stream);
  updater.RemoveCaptions({TickTime(10), TickTime(11), TickTime(10)}, false);
  updater.RemoveCaptions({TickTime(10)}, false);
  updater.CommitChangesUndoable(true);
  EXPECT_THAT(Contents(stream), ElementsAre("30-40 two"));
  EXPECT_EQ(Steps(), 1U);
  EXPECT_EQ(LastStep(), u"Delete caption");
  EXPECT_THAT(log.Take(), ElementsAre("removed 10"));
}

TEST_F(Updater, APassageOfTypingIsOneStep) {
  CaptioningStreamUpdater updater(stream);
  Type(updater, 10, u"one", u"one ");
  Type(updater, 10, u"one ", u"one m");
  Type(updater, 10, u"one m", u"one mo");
  EXPECT_EQ(Steps(), 0U);
  updater.CommitChangesUndoable(true);
  EXPECT_EQ(Steps(), 1U);
  EXPECT_EQ(LastStep(), u"Type");
  EXPECT_THAT(log.Take(), ElementsAre("changed 10", "changed 10", "changed 10"));
  project->Undo();
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 one", "30-40 two"));
}

TEST_F(Updater, EverythingSinceTheLastCommitIsOneChangeWhateverItsKind) {
  CaptioningStreamUpdater updater(stream);
  Type(updater, 10, u"one", u"x");
  updater.RemoveCaptions({TickTime(30)}, false);
  updater.AddCaption(new zebcaptioning::Caption(State(50, 60, "")));
  updater.UpdateCaptionStartAndDuration(TickTime(10), TickTime(12), TickTime(5), false, {});
  updater.CommitChangesUndoable(false);
  EXPECT_EQ(Steps(), 1U);
  EXPECT_EQ(LastStep(), u"Edit captions");
  EXPECT_THAT(Contents(stream), ElementsAre("12-17 x", "50-60 "));
  project->Undo();
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 one", "30-40 two"));
}

TEST_F(Updater, RevertDropsTheOpenChangeAndReportsTheCaptionsAsTheyWere) {
  CaptioningStreamUpdater updater(stream);
  Type(updater, 10, u"one", u"x");
  updater.UpdateCaptionStartAndDuration(TickTime(30), TickTime(32), TickTime(5), false, {});
  log.Take();
  updater.RevertChanges();
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 one", "30-40 two"));
  EXPECT_THAT(log.Take(), ElementsAre("added 30", "removed 32", "changed 10"));
  updater.CommitChangesUndoable(true);
  EXPECT_EQ(Steps(), 0U);
}

TEST_F(Updater, RevertTakesBackNothingThatWasCommitted) {
  CaptioningStreamUpdater updater(stream);
  Type(updater, 10, u"one", u"x");
  updater.CommitChangesUndoable(true);
  log.Take();
  updater.RevertChanges();
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 x", "30-40 two"));
  EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(Updater, PointedAtAnotherStreamCommitsWhatIsOpen) {
  const auto other = AddStream(project, clip, {}, kCC2);
  base = project->GetUndoNames().size();
  CaptioningStreamUpdater updater(stream);
  Type(updater, 10, u"one", u"x");
  updater.UpdateCaptioningStream(stream);
  EXPECT_EQ(Steps(), 0U);
  updater.UpdateCaptioningStream(other);
  EXPECT_EQ(Steps(), 1U);
  updater.RevertChanges();
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 x", "30-40 two"));
}

TEST_F(Updater, DestroyedCommitsWhatIsOpen) {
  {
    CaptioningStreamUpdater updater(stream);
    Type(updater, 10, u"one", u"x");
  }
  EXPECT_EQ(Steps(), 1U);
}

TEST_F(Updater, UndoCommitsWhatIsOpenAndTheUpdaterGoesOn) {
  CaptioningStreamUpdater updater(stream);
  Type(updater, 10, u"one", u"x");
  project->Undo();
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 one", "30-40 two"));
  updater.RevertChanges();
  Type(updater, 10, u"one", u"y");
  updater.CommitChangesUndoable(true);
  EXPECT_EQ(Steps(), 1U);
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 y", "30-40 two"));
}

TEST_F(Updater, AnAddedCaptionIsTheVeryObjectThatThePanelMade) {
  CaptioningStreamUpdater updater(stream);
  const boost::intrusive_ptr<zebcaptioning::Caption> caption(new zebcaptioning::Caption(State(50, 60, "")));
  updater.AddCaption(caption);
  EXPECT_THAT(log.Take(), ElementsAre("added 50"));
  EXPECT_EQ(stream->FindByBegin(TickTime(50)), caption);
  Type(updater, 50, u"", u"typed");
  EXPECT_EQ(caption->GetState()->text, u"typed");
}

TEST_F(Updater, ATimeMeansTheNewestOfSeveralCaptions) {
  project->EditCaptions(stream, {Adding(State(10, 15, "newer"))}, u"Edit");
  CaptioningStreamUpdater updater(stream);
  Type(updater, 10, u"newer", u"x");
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 one", "10-15 x", "30-40 two"));
}

TEST_F(Updater, AMoveTakesTheTimesAsTheyAre) {
  CaptioningStreamUpdater updater(stream);
  updater.UpdateCaptionStartAndDuration(TickTime(10), TickTime(-7), TickTime(3), false,
                                        zebmediatypes::kTimeDisplay_Timecode25);
  updater.UpdateCaptionStartAndDuration(TickTime(99), TickTime(1), TickTime(3), false, {});
  EXPECT_THAT(Contents(stream), ElementsAre("-7--4 one", "30-40 two"));
  EXPECT_THAT(log.Take(), ElementsAre("added -7", "removed 10"));
  updater.CommitChangesUndoable(true);
  EXPECT_EQ(LastStep(), u"Move caption");
}

TEST_F(Updater, AMoveAlignedToFramesPutsBothTimesOnFrames) {
  const std::int64_t frame = zebmediatypes::kFrameRate_25.GetTicksPerFrame();
  CaptioningStreamUpdater updater(stream);
  updater.UpdateCaptionStartAndDuration(TickTime(10), TickTime(2 * frame + 5), TickTime(frame + frame / 2), true,
                                        zebmediatypes::kTimeDisplay_Timecode25);
  const auto caption = stream->FindByBegin(TickTime(2 * frame));
  ASSERT_TRUE(caption);
  EXPECT_EQ(caption->GetEndTime(), TickTime(3 * frame));
}

TEST_F(Updater, AFormatGoesToEveryNamedCaptionInOneMessage) {
  CaptioningStreamUpdater updater(stream);
  CaptionFormatInfo info;
  info.SetIsItalicized(true, true);
  updater.ApplyFormatParameter(zebcaptioning::kFormatItalic, info, {TickTime(10), TickTime(30), TickTime(77)}, kAll);
  updater.CommitChangesUndoable(true);
  EXPECT_THAT(log.Take(), ElementsAre("changed 10 30"));
  EXPECT_EQ(LastStep(), u"Italic");
  EXPECT_TRUE(stream->FindByBegin(TickTime(10))->GetState()->runs[0].attributes->italic);
  EXPECT_TRUE(stream->FindByBegin(TickTime(30))->GetState()->runs[0].attributes->italic);
}

TEST_F(Updater, AFormatThatTheCaptionsHaveAlreadyMakesNoStep) {
  CaptioningStreamUpdater updater(stream);
  CaptionFormatInfo info;
  info.SetIsItalicized(false, true);
  updater.ApplyFormatParameter(zebcaptioning::kFormatItalic, info, {TickTime(10)}, kAll);
  updater.CommitChangesUndoable(true);
  EXPECT_EQ(Steps(), 0U);
  EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(Updater, TheStyleOfWhatIsTypedNextKeepsTheGuid) {
  CaptioningStreamUpdater updater(stream);
  CaptionFormatInfo info;
  info.SetIsItalicized(true, true);
  const auto guid = stream->GetGuid();
  updater.ApplyFormatParameter(zebcaptioning::kFormatItalic, info, {TickTime(10)}, {3, 3});
  EXPECT_THAT(log.Take(), ElementsAre("changed 10"));
  EXPECT_EQ(stream->GetGuid(), guid);
}

TEST_F(Updater, ClosingTheGapMovesLaterCaptionsUpByWhatWentBeforeThem) {
  CaptioningStreamUpdater updater(stream);
  updater.RemoveCaptions({TickTime(10)}, true);
  EXPECT_THAT(Contents(stream), ElementsAre("20-30 two"));
}

TEST_F(Updater, WithNoStreamNothingHappens) {
  CaptioningStreamUpdater updater(nullptr);
  updater.AddCaption(new zebcaptioning::Caption(State(1, 2, "")));
  updater.RemoveCaptions({TickTime(10)}, false);
  Type(updater, 10, u"one", u"x");
  updater.UpdateCaptionStartAndDuration(TickTime(10), TickTime(11), TickTime(1), false, {});
  updater.ApplyFormatParameter(zebcaptioning::kFormatBold, CaptionFormatInfo(), {TickTime(10)}, kAll);
  updater.UpdateTextWidthAndPositioning(true);
  updater.CommitChangesUndoable(true);
  updater.RevertChanges();
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 one", "30-40 two"));
  EXPECT_EQ(Steps(), 0U);
}

TEST_F(Updater, ClosedCaptionsAreNotMeasured) {
  CaptioningStreamUpdater(stream).UpdateTextWidthAndPositioning(true);
  EXPECT_FALSE(stream->FindByBegin(TickTime(10))->HasLineWidth());
}

TEST_F(Updater, OpenCaptionsAreMeasuredAtOnceWithNoStepAndOnlyOnceUnlessAllAreAskedFor) {
  const auto open =
      AddStream(project, clip, {State(10, 20, "one"), State(30, 40, "")}, zebcaptioning::GetStreamFormat("open", 1));
  base = project->GetUndoNames().size();
  open->WriteMeasures({{*open->FindKeyByBegin(TickTime(30)), 5, 6}});
  CaptioningStreamUpdater updater(open);
  updater.UpdateTextWidthAndPositioning(false);
  EXPECT_GT(open->FindByBegin(TickTime(10))->GetState()->paragraph.lineWidth, 0);
  EXPECT_EQ(open->FindByBegin(TickTime(30))->GetState()->paragraph.lineWidth, 5);
  updater.UpdateTextWidthAndPositioning(true);
  EXPECT_EQ(open->FindByBegin(TickTime(30))->GetState()->paragraph.lineWidth, 0);
  updater.CommitChangesUndoable(true);
  EXPECT_EQ(Steps(), 0U);
}

TEST_F(Updater, AnOpenCaptionsMeasureFollowsItsText) {
  const auto open = AddStream(project, clip, {State(10, 20, "i")}, zebcaptioning::GetStreamFormat("open", 1));
  CaptioningStreamUpdater updater(open);
  updater.UpdateTextWidthAndPositioning(true);
  const int narrow = open->FindByBegin(TickTime(10))->GetState()->paragraph.lineWidth;
  Type(updater, 10, u"i", u"a much longer line");
  EXPECT_GT(open->FindByBegin(TickTime(10))->GetState()->paragraph.lineWidth, narrow);
}

TEST_F(Updater, AnOpenCaptionsMeasureFollowsItsFormat) {
  const auto open = AddStream(project, clip, {State(10, 20, "line")}, zebcaptioning::GetStreamFormat("open", 1));
  CaptioningStreamUpdater updater(open);
  updater.UpdateTextWidthAndPositioning(true);
  const auto former = open->FindByBegin(TickTime(10))->GetState()->paragraph;
  ASSERT_GT(former.blockHeight, 0);
  CaptionFormatInfo info;
  bool uniform = false;
  info.SetFontSize(info.GetFontSize(uniform) * 3, true);
  updater.ApplyFormatParameter(zebcaptioning::kFormatFontSize, info, {TickTime(10)}, kAll);
  EXPECT_GT(open->FindByBegin(TickTime(10))->GetState()->paragraph.lineWidth, former.lineWidth);
  EXPECT_GT(open->FindByBegin(TickTime(10))->GetState()->paragraph.blockHeight, former.blockHeight);
}

TEST_F(Updater, AnOpenCaptionsMeasureIsThatOfItsTextAfterUndoAndRedo) {
  const auto open =
      AddStream(project, clip, {State(10, 20, "i"), State(30, 40, "two")}, zebcaptioning::GetStreamFormat("open", 1));
  const auto width = [&open] { return open->FindByBegin(TickTime(10))->GetState()->paragraph.lineWidth; };
  // Done before anything was measured.
  project->EditCaptions(open, {Turning(open, 10, State(10, 20, "a much longer line"))}, u"Edit");
  CaptioningStreamUpdater updater(open);
  updater.UpdateTextWidthAndPositioning(false);
  const int wide = width();
  project->Undo();
  const int narrow = width();
  EXPECT_GT(narrow, 0);
  EXPECT_LT(narrow, wide);
  updater.UpdateTextWidthAndPositioning(true);
  EXPECT_EQ(width(), narrow);
  project->Redo();
  EXPECT_EQ(width(), wide);
  // Done while another measure stood.
  open->WriteMeasures({{*open->FindKeyByBegin(TickTime(10)), 5, 6}});
  Type(updater, 10, u"a much longer line", u"i");
  updater.CommitChangesUndoable(true);
  EXPECT_EQ(width(), narrow);
  project->Undo();
  EXPECT_EQ(width(), wide);
  project->Redo();
  EXPECT_EQ(width(), narrow);
  // Taken away before it was measured.
  project->EditCaptions(open, {Adding(State(50, 60, "n"))}, u"Edit");
  project->EditCaptions(open, {Turning(open, 50, nullptr)}, u"Edit");
  project->Undo();
  EXPECT_GT(open->FindByBegin(TickTime(50))->GetState()->paragraph.lineWidth, 0);
}

TEST_F(Updater, AnOpenCaptionsMeasureIsThatOfItsTextAfterARevert) {
  const auto open = AddStream(project, clip, {State(10, 20, "i")}, zebcaptioning::GetStreamFormat("open", 1));
  CaptioningStreamUpdater updater(open);
  updater.UpdateTextWidthAndPositioning(true);
  const int narrow = open->FindByBegin(TickTime(10))->GetState()->paragraph.lineWidth;
  Type(updater, 10, u"i", u"a much longer line");
  CaptioningStreamUpdater(open).UpdateTextWidthAndPositioning(true);
  open->WriteMeasures({{*open->FindKeyByBegin(TickTime(10)), 7777, 6}});
  updater.RevertChanges();
  EXPECT_EQ(open->FindByBegin(TickTime(10))->GetState()->paragraph.lineWidth, narrow);
}

TEST_F(Updater, UndoMeasuresNothingInAStreamThatWasNeverMeasured) {
  const auto open =
      AddStream(project, clip, {State(10, 20, "i"), State(30, 40, "two")}, zebcaptioning::GetStreamFormat("open", 1));
  project->EditCaptions(open, {Turning(open, 10, State(10, 20, "ii"))}, u"Edit");
  project->Undo();
  EXPECT_FALSE(open->FindByBegin(TickTime(10))->HasLineWidth());
}

TEST_F(Updater, ItsEndThrowsNothingWhenAListenerOfTheHistoryThrows) {
  {
    CaptioningStreamUpdater updater(stream);
    Type(updater, 10, u"one", u"x");
    project->SetHistoryListener([] { throw std::runtime_error("not now"); });
    EXPECT_NO_THROW(updater.CommitChangesUndoable(true));
    Type(updater, 10, u"x", u"xy");
  }
  EXPECT_EQ(Steps(), 2U);
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 xy", "30-40 two"));
}

TEST_F(Updater, WritesDownItsCallsWhileTheTraceIsOn) {
  zebcore::trace::SetOn(true);
  zebcore::trace::Take();
  {
    CaptioningStreamUpdater updater(stream);
    updater.RemoveCaptions({TickTime(10)}, false);
    updater.ApplyFormatParameter(zebcaptioning::kFormatItalic, CaptionFormatInfo(), {TickTime(30)}, kAll);
  }
  zebcore::trace::SetOn(false);
  nlohmann::json removed;
  nlohmann::json formatted;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call == "CaptioningStreamUpdater::RemoveCaptions")
      removed = call.args;
    if (call.call == "CaptioningStreamUpdater::ApplyFormatParameter")
      formatted = call.args;
  }
  EXPECT_EQ(removed["times"], nlohmann::json({10}));
  EXPECT_EQ(removed["close_gap"], false);
  EXPECT_EQ(removed["stream"], stream->GetID());
  EXPECT_EQ(formatted["parameter"], 2);
  EXPECT_EQ(formatted["range"], nlohmann::json({0, -1}));
}

} // namespace
