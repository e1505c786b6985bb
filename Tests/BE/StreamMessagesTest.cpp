#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Builders.h"

namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

class StreamMessages : public testing::Test {
 protected:
  InterfaceRef<BE::Project> project = BE::Project::CreateInMemory();
  InterfaceRef<BE::MasterClip> clip = AddVideoClip(project);
  InterfaceRef<BE::CaptioningStream> stream =
      AddStream(project, clip, {State(10, 20, "a"), State(30, 40, "b"), State(50, 60, "c")});
  MessageLog log{stream};

  void Edit(const std::vector<CaptionDelta>& deltas) { project->EditCaptions(stream, deltas, u"Edit"); }
};

TEST_F(StreamMessages, ANewCaptionIsAdded) {
  Edit({Adding(State(22, 25, "n"))});
  EXPECT_THAT(log.Take(), ElementsAre("added 22"));
}

TEST_F(StreamMessages, ARemovedCaptionIsRemoved) {
  Edit({Turning(stream, 30, nullptr)});
  EXPECT_THAT(log.Take(), ElementsAre("removed 30"));
}

TEST_F(StreamMessages, AChangedTextIsChanged) {
  Edit({Turning(stream, 30, State(30, 40, "bb"))});
  EXPECT_THAT(log.Take(), ElementsAre("changed 30"));
}

TEST_F(StreamMessages, AMovedCaptionIsAddedWhereItIsNowAndRemovedWhereItWas) {
  Edit({Turning(stream, 30, State(22, 28, "b"))});
  EXPECT_THAT(log.Take(), ElementsAre("added 22", "removed 30"));
}

TEST_F(StreamMessages, OneEditSendsAtMostOneOfEachKindSortedByBegin) {
  Edit({Adding(State(70, 80, "n")), Turning(stream, 50, nullptr), Turning(stream, 30, State(30, 45, "b")),
        Turning(stream, 10, nullptr), Adding(State(65, 68, "m"))});
  EXPECT_THAT(log.Take(), ElementsAre("added 65 70", "removed 10 50", "changed 30"));
}

TEST_F(StreamMessages, ACaptionPutOverAnotherOfTheSameBeginTakesItsPlace) {
  Edit({Adding(State(30, 35, "over"))});
  EXPECT_THAT(log.Take(), ElementsAre("removed 30", "changed 30"));
  EXPECT_EQ(stream->FindByBegin(TickTime(30))->GetState()->text, u"over");
}

TEST_F(StreamMessages, TakingAwayTheNewerOfTwoShowsTheOlderAgain) {
  Edit({Adding(State(30, 35, "over"))});
  log.Take();
  Edit({Turning(stream, 30, nullptr)});
  EXPECT_THAT(log.Take(), ElementsAre("removed 30", "changed 30"));
  EXPECT_EQ(stream->FindByBegin(TickTime(30))->GetState()->text, u"b");
}

TEST_F(StreamMessages, AChangeUnderANewerCaptionIsReportedAndRenewsTheGuid) {
  const auto older = *stream->FindKeyByBegin(TickTime(30));
  Edit({Adding(State(30, 35, "over"))});
  log.Take();
  const auto guid = stream->GetGuid();
  CaptionDelta delta;
  delta.key = older;
  delta.after = State(30, 90, "b");
  Edit({delta});
  EXPECT_THAT(log.Take(), ElementsAre("changed 30"));
  EXPECT_NE(stream->GetGuid(), guid);
}

TEST_F(StreamMessages, ACaptionMovedUnderANewerOneIsChangedThereAndRemovedWhereItWas) {
  struct Ear : zebcore::messaging::Listener {
    void HandleMessage(const zebcore::messaging::Message& message) override {
      if (const auto* changed = MessageCast<BE::CaptionsChangedMessage>(message)) {
        for (const auto& [stream, caption] : changed->captions)
          captions.push_back(caption);
      }
    }
    std::vector<boost::intrusive_ptr<zebcaptioning::Caption>> captions;
  } ear;
  zebcore::messaging::AddListener(stream->GetStationID(), &ear);
  const auto moved = stream->FindByBegin(TickTime(10));
  Edit({Turning(stream, 10, State(30, 40, "a")), Turning(stream, 50, State(50, 70, "c"))});
  EXPECT_THAT(log.Take(), ElementsAre("removed 10", "changed 30 50"));
  EXPECT_EQ(stream->FindByBegin(TickTime(30))->GetState()->text, u"b");
  ASSERT_EQ(ear.captions.size(), 2U);
  EXPECT_EQ(ear.captions[0], moved);
  project->Undo();
  EXPECT_THAT(log.Take(), ElementsAre("added 10", "changed 50"));
}

TEST_F(StreamMessages, OfTwoChangedCaptionsWithOneBeginTheOneThatShowsComesFirst) {
  struct Ear : zebcore::messaging::Listener {
    void HandleMessage(const zebcore::messaging::Message& message) override {
      if (const auto* changed = MessageCast<BE::CaptionsChangedMessage>(message)) {
        for (const auto& [stream, caption] : changed->captions)
          texts.push_back(zebcore::ToUTF8(caption->GetState()->text));
      }
    }
    Lines texts;
  } ear;
  zebcore::messaging::AddListener(stream->GetStationID(), &ear);
  Edit({Turning(stream, 10, State(30, 40, "older")), Turning(stream, 30, State(30, 40, "newer"))});
  EXPECT_THAT(ear.texts, ElementsAre("newer", "older"));
}

TEST_F(StreamMessages, TwoCaptionsThatChangePlacesAreRemovedAndChanged) {
  Edit({Turning(stream, 10, State(30, 40, "a")), Turning(stream, 30, State(10, 20, "b"))});
  EXPECT_THAT(log.Take(), ElementsAre("removed 10 30", "changed 10 30"));
}

TEST_F(StreamMessages, AnEditThatChangesNothingSendsNothingMakesNoStepAndKeepsTheGuid) {
  const auto guid = stream->GetGuid();
  const auto steps = project->GetUndoNames().size();
  Edit({Turning(stream, 30, State(30, 40, "b"))});
  Edit({});
  EXPECT_THAT(log.Take(), IsEmpty());
  EXPECT_EQ(project->GetUndoNames().size(), steps);
  EXPECT_EQ(stream->GetGuid(), guid);
}

TEST_F(StreamMessages, UndoAndRedoReportByTheSameMessages) {
  Edit({Turning(stream, 30, State(22, 28, "b")), Turning(stream, 10, State(10, 20, "aa"))});
  log.Take();
  project->Undo();
  EXPECT_THAT(log.Take(), ElementsAre("added 30", "removed 22", "changed 10"));
  project->Redo();
  EXPECT_THAT(log.Take(), ElementsAre("added 22", "removed 30", "changed 10"));
}

TEST_F(StreamMessages, AShiftSendsMovedThenStreamChanged) {
  project->ShiftCaptions(stream, TickTime(30), TickTime(50), TickTime(100), u"Shift");
  EXPECT_THAT(log.Take(), ElementsAre("moved", "stream"));
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 a", "130-140 b", "150-160 c"));
}

TEST_F(StreamMessages, AShiftBelowZeroIsAccepted) {
  project->ShiftCaptions(stream, zebmediatypes::kTime_Min, zebmediatypes::kTime_Max, TickTime(-15), u"Shift");
  EXPECT_THAT(Contents(stream), ElementsAre("-5-5 a", "15-25 b", "35-45 c"));
}

TEST_F(StreamMessages, UndoingAShiftReportsRowsAddedAndRemoved) {
  project->ShiftCaptions(stream, TickTime(50), TickTime(50), TickTime(100), u"Shift");
  log.Take();
  project->Undo();
  EXPECT_THAT(log.Take(), ElementsAre("added 50", "removed 150"));
}

TEST_F(StreamMessages, EverythingHasChangedWhenTheFirstMessageGoesOut) {
  struct Reader : zebcore::messaging::Listener {
    Reader(InterfaceRef<BE::Project> p, InterfaceRef<BE::CaptioningStream> s) : project(p), stream(s) {
      zebcore::messaging::AddListener(stream->GetStationID(), this);
    }
    void HandleMessage(const zebcore::messaging::Message&) override {
      seen.push_back(Contents(stream));
      names.push_back(zebcore::ToUTF8(project->GetUndoNames().front()));
    }
    InterfaceRef<BE::Project> project;
    InterfaceRef<BE::CaptioningStream> stream;
    std::vector<Lines> seen;
    Lines names;
  } reader(project, stream);
  Edit({Turning(stream, 30, State(22, 28, "b")), Turning(stream, 10, State(10, 20, "aa"))});
  ASSERT_EQ(reader.seen.size(), 3U);
  for (const Lines& lines : reader.seen)
    EXPECT_EQ(lines, Contents(stream));
  EXPECT_THAT(reader.names, testing::Each("Edit"));
}

TEST_F(StreamMessages, AddingAStreamIsReportedOnTheClipsStationWithTheNewStream) {
  MessageLog clipLog(clip);
  AddStream(project, clip, {}, kCC2);
  EXPECT_THAT(clipLog.Take(), ElementsAre("stream"));
  EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(StreamMessages, RemovingTheLastStreamReportsNull) {
  MessageLog clipLog(clip);
  project->RemoveStream(stream, u"Delete stream");
  EXPECT_THAT(clipLog.Take(), ElementsAre("no stream"));
  project->Undo();
  EXPECT_THAT(clipLog.Take(), ElementsAre("stream"));
}

TEST_F(StreamMessages, RemovingOneOfTwoStreamsReportsTheFirstThatIsLeft) {
  const auto second = AddStream(project, clip, {}, kCC2);
  struct Reader : zebcore::messaging::Listener {
    void HandleMessage(const zebcore::messaging::Message& message) override {
      stream = MessageCast<BE::CaptioningStreamChangedMessage>(message)->stream;
    }
    InterfaceRef<BE::ICaptioningStream> stream;
  } reader;
  zebcore::messaging::AddListener(clip->GetStationID(), &reader);
  project->RemoveStream(stream, u"Delete stream");
  EXPECT_TRUE(reader.stream == second);
}

TEST_F(StreamMessages, AChangeOfFormatSaysSoAndThenThatTheStreamIsAnother) {
  MessageLog clipLog(clip);
  EXPECT_FALSE(project->ChangeStreamFormat(stream, kCC2, u"Change format"));
  EXPECT_THAT(log.Take(), ElementsAre("format", "stream"));
  EXPECT_EQ(stream->GetStreamFormat(), kCC2);
  project->Undo();
  EXPECT_THAT(log.Take(), ElementsAre("format", "stream"));
  EXPECT_EQ(stream->GetStreamFormat(), kCC1);
  EXPECT_THAT(clipLog.Take(), IsEmpty());
}

TEST_F(StreamMessages, MeasuresChangeNeitherGuidNorHistoryAndAreNotReported) {
  const auto guid = stream->GetGuid();
  const auto steps = project->GetUndoNames().size();
  stream->WriteMeasures({{*stream->FindKeyByBegin(TickTime(30)), 120, 40}});
  EXPECT_TRUE(stream->FindByBegin(TickTime(30))->HasLineWidth());
  EXPECT_EQ(stream->GetGuid(), guid);
  EXPECT_EQ(project->GetUndoNames().size(), steps);
  EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(StreamMessages, TheGuidChangesWithEveryEditAndEveryUndo) {
  auto guid = stream->GetGuid();
  Edit({Turning(stream, 30, State(30, 40, "x"))});
  EXPECT_NE(std::exchange(guid, stream->GetGuid()), stream->GetGuid());
  project->Undo();
  EXPECT_NE(std::exchange(guid, stream->GetGuid()), stream->GetGuid());
  AddStream(project, clip, {}, kCC2);
  EXPECT_EQ(guid, stream->GetGuid());
}

} // namespace
