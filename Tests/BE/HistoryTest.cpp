#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Builders.h"
#include "Captions/contracts/Stations.h"

namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

class History : public testing::Test {
 protected:
  InterfaceRef<BE::Project> project = BE::Project::CreateInMemory();
  InterfaceRef<BE::MasterClip> clip = AddVideoClip(project);
  InterfaceRef<BE::CaptioningStream> stream = AddStream(project, clip, {State(10, 20, "a"), State(30, 40, "b")});

  std::vector<std::string> UndoNames() {
    std::vector<std::string> names;
    for (const auto& name : project->GetUndoNames())
      names.push_back(zebcore::ToUTF8(name));
    return names;
  }
};

TEST_F(History, AddingAStreamIsAStepAndAddingAClipIsNone) {
  EXPECT_THAT(UndoNames(), ElementsAre("New stream"));
}

TEST_F(History, APassageOfTypingIsOneStep) {
  const auto change = stream->BeginChange();
  for (const char* text : {"h", "he", "hel"})
    change->Apply({Turning(stream, 10, State(10, 20, text))}, u"Type");
  EXPECT_THAT(UndoNames(), ElementsAre("New stream"));
  change->Commit();
  EXPECT_THAT(UndoNames(), ElementsAre("Type", "New stream"));
  project->Undo();
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 a", "30-40 b"));
  project->Redo();
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 hel", "30-40 b"));
}

TEST_F(History, AChangeOfSeveralKindsIsNamedForNone) {
  const auto change = stream->BeginChange();
  change->Apply({Turning(stream, 10, State(10, 20, "x"))}, u"Type");
  change->Apply({Turning(stream, 10, State(12, 20, "x"))}, u"Move caption");
  change->Commit();
  EXPECT_EQ(UndoNames().front(), "Edit captions");
}

TEST_F(History, ACommitWithNothingOpenMakesNoStep) {
  const auto change = stream->BeginChange();
  change->Commit();
  project->CommitOpenChanges();
  EXPECT_THAT(UndoNames(), ElementsAre("New stream"));
}

TEST_F(History, AChangeThatCameBackToWhereItBeganMakesNoStep) {
  const auto change = stream->BeginChange();
  change->Apply({Turning(stream, 10, State(10, 20, "x"))}, u"Type");
  change->Apply({Turning(stream, 10, State(10, 20, "a"))}, u"Type");
  change->Apply({Adding(State(70, 80, "n"))}, u"Add caption");
  change->Apply({Turning(stream, 70, nullptr)}, u"Delete caption");
  EXPECT_EQ(project->GetOpenChangeName(), std::nullopt);
  change->Commit();
  EXPECT_THAT(UndoNames(), ElementsAre("New stream"));
}

TEST_F(History, AChangeThatCameToNothingLeavesWhatCanBeRedone) {
  project->EditCaptions(stream, {Turning(stream, 10, nullptr)}, u"Edit");
  project->Undo();
  const auto change = stream->BeginChange();
  change->Apply({Turning(stream, 10, State(10, 20, "x"))}, u"Type");
  EXPECT_FALSE(project->CanRedo());
  change->Revert();
  EXPECT_TRUE(project->CanRedo());
  EXPECT_TRUE(project->Redo());
  EXPECT_THAT(Contents(stream), ElementsAre("30-40 b"));
}

TEST_F(History, TheStyleOfWhatIsTypedNextIsNoStepAndLeavesWhatCanBeRedone) {
  project->EditCaptions(stream, {Turning(stream, 10, nullptr)}, u"Edit");
  project->Undo();
  auto* bold = new CaptionState(*stream->FindByBegin(TickTime(30))->GetState());
  zebcaptioning::TextSpanAttributes attributes;
  attributes.bold = true;
  bold->typing = zebcaptioning::Share(attributes);
  bold->typingAt = 1;
  const auto change = stream->BeginChange();
  change->Apply({Turning(stream, 30, bold)}, u"Bold");
  EXPECT_EQ(project->GetOpenChangeName(), std::nullopt);
  change->Commit();
  EXPECT_THAT(UndoNames(), ElementsAre("New stream"));
  EXPECT_TRUE(stream->FindByBegin(TickTime(30))->GetState()->typing);
  EXPECT_TRUE(project->Redo());
  EXPECT_THAT(Contents(stream), ElementsAre("30-40 b"));
}

TEST_F(History, AMeasureAloneIsNoStepAndLeavesWhatCanBeRedone) {
  project->EditCaptions(stream, {Turning(stream, 10, nullptr)}, u"Edit");
  project->Undo();
  auto* measured = new CaptionState(*stream->FindByBegin(TickTime(30))->GetState());
  measured->paragraph.lineWidth = 80;
  const auto change = stream->BeginChange();
  change->Apply({Turning(stream, 30, measured)}, u"Type");
  change->Commit();
  EXPECT_THAT(UndoNames(), ElementsAre("New stream"));
  EXPECT_TRUE(project->CanRedo());
}

TEST_F(History, RevertPutsTheStreamBackAndReportsIt) {
  MessageLog log(stream);
  const auto change = stream->BeginChange();
  change->Apply({Turning(stream, 10, State(12, 20, "x"))}, u"Type");
  change->Apply({Adding(State(70, 80, "n"))}, u"Add caption");
  log.Take();
  change->Revert();
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 a", "30-40 b"));
  EXPECT_THAT(log.Take(), ElementsAre("added 10", "removed 12 70"));
  EXPECT_THAT(UndoNames(), ElementsAre("New stream"));
}

TEST_F(History, UndoTakesWhatIsOpenBackFirst) {
  const auto change = stream->BeginChange();
  change->Apply({Turning(stream, 10, State(10, 20, "x"))}, u"Type");
  EXPECT_TRUE(project->CanUndo());
  EXPECT_EQ(project->GetOpenChangeName(), u"Type");
  EXPECT_TRUE(project->Undo());
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 a", "30-40 b"));
  EXPECT_TRUE(change->IsEmpty());
}

TEST_F(History, UndoAndRedoAskEverybodyToCommitFirst) {
  struct Counter : zebcore::messaging::Listener {
    void HandleMessage(const zebcore::messaging::Message& message) override {
      count += MessageCast<HSL::CaptionCommitEditsMessage>(message) != nullptr;
    }
    int count = 0;
  } counter;
  zebcore::messaging::AddListener(HSL::kStation_CaptionSelection, &counter);
  project->Undo();
  project->Redo();
  EXPECT_EQ(counter.count, 2);
}

TEST_F(History, AnEditFromElsewhereCommitsWhatIsOpenFirst) {
  const auto change = stream->BeginChange();
  change->Apply({Turning(stream, 10, State(10, 20, "x"))}, u"Type");
  project->EditCaptions(stream, {Turning(stream, 30, nullptr)}, u"Edit");
  EXPECT_THAT(UndoNames(), ElementsAre("Edit", "Type", "New stream"));
}

TEST_F(History, TwoChangesOfOneStreamDoNotCrossEachOther) {
  const auto first = stream->BeginChange();
  const auto second = stream->BeginChange();
  first->Apply({Turning(stream, 10, State(10, 20, "first"))}, u"Type");
  second->Apply({Turning(stream, 10, State(10, 20, "second"))}, u"Type");
  second->Revert();
  first->Revert();
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 first", "30-40 b"));
}

TEST_F(History, AChangeThatGoesAwayCommits) {
  stream->BeginChange()->Apply({Turning(stream, 10, State(10, 20, "x"))}, u"Type");
  EXPECT_THAT(UndoNames(), ElementsAre("Type", "New stream"));
}

TEST_F(History, ANewStepForgetsWhatWasUndone) {
  project->EditCaptions(stream, {Turning(stream, 10, nullptr)}, u"Edit");
  project->Undo();
  project->EditCaptions(stream, {Turning(stream, 30, nullptr)}, u"Other");
  EXPECT_FALSE(project->CanRedo());
  EXPECT_FALSE(project->Redo());
  EXPECT_THAT(UndoNames(), ElementsAre("Other", "New stream"));
}

TEST_F(History, AnEmptyHistoryUndoesNothing) {
  EXPECT_TRUE(project->Undo());
  EXPECT_FALSE(project->CanUndo());
  EXPECT_FALSE(project->Undo());
}

TEST_F(History, UndoingANewStreamTakesItAwayAndRedoBringsTheSameOneBack) {
  project->Undo();
  EXPECT_TRUE(clip->GetStreams().empty());
  EXPECT_FALSE(project->FindStream(stream->GetID()));
  project->Redo();
  EXPECT_TRUE(project->FindStream(stream->GetID()) == stream);
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 a", "30-40 b"));
}

TEST_F(History, EditsOfAStreamThatWasTakenAwayAreIgnored) {
  const auto change = stream->BeginChange();
  project->Undo();
  change->Apply({Adding(State(1, 2, "n"))}, u"Add caption");
  project->EditCaptions(stream, {Adding(State(3, 4, "n"))}, u"Edit");
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 a", "30-40 b"));
  EXPECT_TRUE(project->CanRedo());
}

TEST_F(History, TheCaptionObjectStaysTheSameThroughEditsAndUndo) {
  const auto caption = stream->FindByBegin(TickTime(10));
  project->EditCaptions(stream, {Turning(stream, 10, State(15, 25, "x"))}, u"Edit");
  EXPECT_EQ(stream->FindByBegin(TickTime(15)), caption);
  project->Undo();
  EXPECT_EQ(stream->FindByBegin(TickTime(10)), caption);
}

TEST_F(History, AnAddedCaptionIsTheVeryObject) {
  const boost::intrusive_ptr<zebcaptioning::Caption> caption(new zebcaptioning::Caption(State(70, 80, "n")));
  const auto change = stream->BeginChange();
  change->Add(caption, u"Add caption");
  EXPECT_EQ(stream->FindByBegin(TickTime(70)), caption);
  change->Apply({Turning(stream, 70, State(70, 90, "nn"))}, u"Add caption");
  EXPECT_EQ(caption->GetState()->text, u"nn");
}

TEST_F(History, ADeletedCaptionComesBackUnderItsOldKey) {
  const auto key = *stream->FindKeyByBegin(TickTime(10));
  project->EditCaptions(stream, {Turning(stream, 10, nullptr)}, u"Edit");
  project->Undo();
  EXPECT_EQ(stream->FindKeyByBegin(TickTime(10)), key);
}

TEST_F(History, RemovingAClipCanBeUndoneWithItsStreams) {
  project->RemoveClip(clip);
  EXPECT_TRUE(project->GetClips().empty());
  project->Undo();
  ASSERT_EQ(project->GetClips().size(), 1U);
  EXPECT_TRUE(project->GetClips()[0]->GetStreams().at(0) == stream);
}

TEST_F(History, StreamsOfARemovedClipCannotBeFoundAndTakeNoSteps) {
  const auto change = stream->BeginChange();
  project->RemoveClip(clip);
  EXPECT_FALSE(project->FindStream(stream->GetID()));
  change->Apply({Adding(State(1, 2, "n"))}, u"Add caption");
  change->Commit();
  project->EditCaptions(stream, {Adding(State(3, 4, "n"))}, u"Edit");
  project->ShiftCaptions(stream, TickTime(0), TickTime(99), TickTime(1), u"Shift");
  project->RemoveStream(stream, u"Delete stream");
  EXPECT_TRUE(project->ChangeStreamFormat(stream, kCC2, u"Change format"));
  EXPECT_THAT(UndoNames(), ElementsAre("Remove clip", "New stream"));
  EXPECT_TRUE(project->Undo());
  EXPECT_TRUE(project->FindStream(stream->GetID()) == stream);
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 a", "30-40 b"));
}

TEST_F(History, AListenerThatThrowsStopsNoStepAndNoChangeFromGoingAway) {
  project->SetHistoryListener([] { throw std::runtime_error("not now"); });
  EXPECT_NO_THROW(project->EditCaptions(stream, {Turning(stream, 10, nullptr)}, u"Edit"));
  const auto change = stream->BeginChange();
  EXPECT_NO_THROW(change->Apply({Turning(stream, 30, State(30, 40, "x"))}, u"Type"));
  EXPECT_NO_THROW(change->Commit());
  EXPECT_NO_THROW(project->Undo());
  stream->BeginChange()->Apply({Turning(stream, 30, State(30, 40, "y"))}, u"Type");
  EXPECT_THAT(UndoNames(), ElementsAre("Type", "Edit", "New stream"));
}

TEST_F(History, TheListenerHearsOfEveryChangeOfTheHistory) {
  int count = 0;
  project->SetHistoryListener([&count] { ++count; });
  project->EditCaptions(stream, {Turning(stream, 10, nullptr)}, u"Edit");
  EXPECT_EQ(count, 1);
  project->Undo();
  EXPECT_EQ(count, 2);
  const auto change = stream->BeginChange();
  change->Apply({Turning(stream, 30, nullptr)}, u"Delete caption");
  EXPECT_EQ(count, 3);
  change->Commit();
  EXPECT_EQ(count, 4);
}

TEST_F(History, AReadOnlyProjectIsNotChangedAndSaysHowItsCaptionsAre) {
  project->SetReadOnly(true);
  MessageLog log(stream);
  const auto change = stream->BeginChange();
  change->Apply({Turning(stream, 10, State(12, 20, "x"))}, u"Type");
  EXPECT_THAT(log.Take(), ElementsAre("added 10", "removed 12"));
  project->EditCaptions(stream, {Turning(stream, 30, nullptr)}, u"Edit");
  project->RemoveStream(stream, u"Delete stream");
  EXPECT_FALSE(project->Undo());
  EXPECT_FALSE(project->AddStream(clip, {kCC2, {}, {}}, {}, u"New stream"));
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 a", "30-40 b"));
  EXPECT_TRUE(project->FindStream(stream->GetID()) == stream);
}

TEST_F(History, TheReadOnlyStateIsReportedWhenItChanges) {
  struct Counter : zebcore::messaging::Listener {
    void HandleMessage(const zebcore::messaging::Message& message) override {
      count += MessageCast<BE::ReadOnlyStateChangedMessage>(message) != nullptr;
    }
    int count = 0;
  } counter;
  zebcore::messaging::AddListener(BE::kBackendProjectActivationStationID, &counter);
  project->SetReadOnly(false);
  project->SetReadOnly(true);
  project->SetReadOnly(true);
  project->SetReadOnly(false);
  EXPECT_EQ(counter.count, 2);
}

TEST_F(History, AFormatThatTheClipHoldsAlreadyIsAProblem) {
  const auto result = project->AddStream(clip, {kCC1, {}, {}}, {}, u"New stream");
  EXPECT_FALSE(result);
  EXPECT_NE(result.problem.text.find("clip"), std::string::npos);
  AddStream(project, clip, {}, kCC2);
  EXPECT_TRUE(project->ChangeStreamFormat(stream, kCC2, u"Change format"));
  EXPECT_EQ(stream->GetStreamFormat(), kCC1);
}

TEST_F(History, NoStreamBearsTheNumberOfTheFamilyOrZero) {
  EXPECT_FALSE(project->AddStream(clip, {zebcaptioning::kStreamFormat_608, {}, {}}, {}, u"New stream"));
  EXPECT_FALSE(project->AddStream(clip, {0, {}, {}}, {}, u"New stream"));
  EXPECT_FALSE(project->AddStream(nullptr, {kCC2, {}, {}}, {}, u"New stream"));
}

TEST_F(History, AMeasureOutlivesTheRevertOfTheChangeThatHeldTheCaption) {
  const auto change = stream->BeginChange();
  change->Apply({Turning(stream, 10, State(10, 20, "x"))}, u"Type");
  stream->WriteMeasures({{*stream->FindKeyByBegin(TickTime(10)), 77, 11}});
  change->Revert();
  EXPECT_EQ(stream->FindByBegin(TickTime(10))->GetState()->paragraph.lineWidth, 77);
  EXPECT_THAT(Contents(stream), ElementsAre("10-20 a", "30-40 b"));
}

} // namespace
