#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <SQLiteCpp/SQLiteCpp.h>

#include "Builders.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"

// Sequences: what lies in them, how they are edited, and what the project file keeps of it.
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// "start-end @in", for each item of a track, by start.
std::vector<std::string> Items(const InterfaceRef<BE::Sequence>& sequence, int track = 0) {
  std::vector<std::pair<TickTime, std::string>> items;
  for (const auto& item : sequence->GetItems()) {
    if (item->GetTrack() == track)
      items.emplace_back(item->GetStart(), std::to_string(item->GetStart().GetTicks()) + "-" +
                                               std::to_string(item->GetEnd().GetTicks()) + " @" +
                                               std::to_string(item->GetIn().GetTicks()));
  }
  std::sort(items.begin(), items.end());
  std::vector<std::string> texts;
  for (auto& [start, text] : items)
    texts.push_back(std::move(text));
  return texts;
}

class SequenceEdits : public ::testing::Test {
 protected:
  SequenceEdits() { Take(BE::Project::CreateInMemory()); }

  void Take(const InterfaceRef<BE::Project>& made) {
    project = made;
    clip = AddClip(100);
    sequence = project->AddSequence(u"Cut", zebmediatypes::kFrameRate_25,
                                    zebmediatypes::FrameRate::FromRational(48000, 1), {});
  }
  InterfaceRef<BE::MasterClip> AddClip(std::int64_t ticks) {
    BE::MediaInfo info = VideoInfo();
    info.duration = TickTime(ticks);
    return project->AddClip(u"clip", "", info, false);
  }
  InterfaceRef<BE::TrackItem> Insert(std::int64_t start, int track = 0, bool video = true, bool audio = true) {
    return project->InsertItem(sequence, {clip, TickTime(start), video, audio, track, {}, {}}, u"Add to sequence");
  }
  InterfaceRef<BE::TrackItem> ItemAt(std::int64_t start) {
    for (const auto& item : sequence->GetItems()) {
      if (item->GetStart() == TickTime(start))
        return item;
    }
    return nullptr;
  }

  InterfaceRef<BE::Project> project;
  InterfaceRef<BE::MasterClip> clip;
  InterfaceRef<BE::Sequence> sequence;
};

struct Hearer : zebcore::messaging::Listener {
  explicit Hearer(const zebcore::utility::ImmutableString& station) { zebcore::messaging::AddListener(station, this); }
  void HandleMessage(const zebcore::messaging::Message& message) override {
    if (const auto* properties = MessageCast<BE::PropertiesChangedMessage>(message))
      heard.push_back(properties->records.at(0).property.Text());
    else if (MessageCast<MZ::SequenceSettingsChangedMessage>(message))
      heard.push_back("settings changed");
  }
  std::vector<std::string> heard;
};

TEST_F(SequenceEdits, WhatIsPutBeforeTheBeginningBeginsThere) {
  Insert(-40);
  EXPECT_THAT(Items(sequence), ElementsAre("0-100 @0"));
}

TEST_F(SequenceEdits, AnItemPutOverTheEndOfAnotherShortensIt) {
  Insert(0);
  Insert(60);
  EXPECT_THAT(Items(sequence), ElementsAre("0-60 @0", "60-160 @0"));
}

TEST_F(SequenceEdits, AnItemPutOverTheBeginningOfAnotherTrimsItsFirstFrames) {
  Insert(50);
  Insert(0);
  EXPECT_THAT(Items(sequence), ElementsAre("0-100 @0", "100-150 @50"));
}

TEST_F(SequenceEdits, AnItemThatIsCoveredGoes) {
  Insert(10);
  Insert(10);
  EXPECT_THAT(Items(sequence), ElementsAre("10-110 @0"));
}

TEST_F(SequenceEdits, AnItemPutIntoTheMiddleOfALongerOneCutsItInTwo) {
  Insert(0);
  project->InsertItem(sequence, {clip, TickTime(40), true, true, 0, {}, TickTime(20)}, u"Add");
  EXPECT_THAT(Items(sequence), ElementsAre("0-40 @0", "40-60 @0", "60-100 @60"));
}

TEST_F(SequenceEdits, ItemsOfOtherTracksAndMediaLieUnderEachOther) {
  Insert(0);
  Insert(50, 1);
  EXPECT_THAT(Items(sequence), ElementsAre("0-100 @0"));
  EXPECT_THAT(Items(sequence, 1), ElementsAre("50-150 @0"));
  Insert(0, 2, true, false);
  Insert(50, 2, false, true);
  EXPECT_THAT(Items(sequence, 2), ElementsAre("0-100 @0", "50-150 @0"));
}

TEST_F(SequenceEdits, ItemsThatAreMovedTogetherDoNotCutEachOther) {
  const auto a = Insert(0);
  const auto b = Insert(100);
  project->MoveItems(sequence, {{a, TickTime(30), 0}, {b, TickTime(130), 0}}, u"Move");
  EXPECT_THAT(Items(sequence), ElementsAre("30-130 @0", "130-230 @0"));
}

TEST_F(SequenceEdits, UndoBringsBackTheVeryItemAndRedoTakesItAgain) {
  const auto first = Insert(0);
  Insert(0);
  EXPECT_NE(ItemAt(0), first);
  EXPECT_TRUE(project->Undo());
  EXPECT_EQ(ItemAt(0), first);
  EXPECT_THAT(project->GetUndoNames(), ElementsAre(zebcore::UString(u"Add to sequence")));
  EXPECT_TRUE(project->Redo());
  EXPECT_NE(ItemAt(0), first);
  EXPECT_THAT(Items(sequence), ElementsAre("0-100 @0"));
}

TEST_F(SequenceEdits, AMoveThatChangesNothingIsNoStep) {
  const auto item = Insert(0);
  project->MoveItems(sequence, {{item, TickTime(0), 0}}, u"Move");
  project->RemoveItems(sequence, {}, u"Delete");
  EXPECT_EQ(project->GetUndoNames().size(), 1U);
}

TEST_F(SequenceEdits, ADissolveLiesHalfBeforeTheCutAndGoesWithIt) {
  const auto a = Insert(0);
  const auto b = Insert(100);
  const auto dissolve = project->AddTransition(sequence, a, b, TickTime(20), u"Dissolve");
  ASSERT_TRUE(dissolve);
  EXPECT_EQ(dissolve->GetStart(), TickTime(90));
  EXPECT_EQ(dissolve->GetEnd(), TickTime(110));
  project->MoveItems(sequence, {{b, TickTime(120), 0}}, u"Move");
  EXPECT_THAT(sequence->GetTransitions(), IsEmpty());
  project->Undo();
  ASSERT_EQ(sequence->GetTransitions().size(), 1U);
  EXPECT_EQ(sequence->GetTransitions()[0]->GetRight(), b);
  project->RemoveTransition(sequence, sequence->GetTransitions()[0], u"Delete");
  EXPECT_THAT(sequence->GetTransitions(), IsEmpty());
}

TEST_F(SequenceEdits, ADissolveIsNoLongerThanTheShorterItemAndNeedsItemsThatMeet) {
  const auto a = Insert(0);
  const auto b = Insert(100);
  const auto apart = Insert(300);
  EXPECT_FALSE(project->AddTransition(sequence, a, apart, TickTime(20), u"Dissolve"));
  EXPECT_FALSE(project->AddTransition(sequence, b, a, TickTime(20), u"Dissolve"));
  EXPECT_FALSE(project->AddTransition(sequence, a, nullptr, TickTime(20), u"Dissolve"));
  const auto dissolve = project->AddTransition(sequence, a, b, TickTime(5000), u"Dissolve");
  EXPECT_EQ(dissolve->GetEnd() - dissolve->GetStart(), TickTime(100));
  project->AddTransition(sequence, a, b, TickTime(10), u"Dissolve");
  EXPECT_EQ(sequence->GetTransitions().size(), 1U);
}

TEST_F(SequenceEdits, EachIsReportedOnceOnTheSequencesStationAndUndoToo) {
  Hearer hearer(sequence->GetStationID());
  const auto item = Insert(0);
  project->RemoveItems(sequence, {item}, u"Delete");
  project->Undo();
  EXPECT_THAT(hearer.heard, ElementsAre("items", "items", "items"));
}

TEST_F(SequenceEdits, SettingsSayOnceThatTheyChangedAndNothingIfTheyDidNot) {
  Hearer properties(sequence->GetStationID());
  Hearer settings(MZ::kStation_SequenceActivation);
  sequence->SetSettings(zebmediatypes::kFrameRate_30, zebmediatypes::kTimeDisplay_Frames,
                        zebmediatypes::kTimeDisplay_Milliseconds);
  sequence->SetVideoFrameRate(zebmediatypes::kFrameRate_30);
  EXPECT_THAT(properties.heard, ElementsAre("settings"));
  EXPECT_THAT(settings.heard, ElementsAre("settings changed"));
  EXPECT_THAT(project->GetUndoNames(), IsEmpty());
}

TEST_F(SequenceEdits, NothingHappensInAReadOnlyProject) {
  const auto item = Insert(0);
  project->SetReadOnly(true);
  EXPECT_FALSE(Insert(100));
  project->RemoveItems(sequence, {item}, u"Delete");
  project->RemoveSequence(sequence);
  EXPECT_THAT(Items(sequence), ElementsAre("0-100 @0"));
  EXPECT_EQ(project->GetSequences().size(), 1U);
}

TEST_F(SequenceEdits, ASequenceThatWasRemovedComesBackWithUndo) {
  Insert(0);
  project->RemoveSequence(sequence);
  EXPECT_THAT(project->GetSequences(), IsEmpty());
  EXPECT_FALSE(project->FindSequence(sequence->GetID()));
  project->Undo();
  EXPECT_EQ(project->FindSequence(sequence->GetID()), sequence);
  EXPECT_THAT(Items(sequence), ElementsAre("0-100 @0"));
}

TEST_F(SequenceEdits, SoundComesAndGoesWithTheItemsThatHaveSome) {
  const auto own = sequence.Query<BE::IMasterClip>();
  EXPECT_FALSE(own->GetClip(BE::kMediaType_Audio, 0));
  const auto item = Insert(0);
  EXPECT_TRUE(own->GetClip(BE::kMediaType_Audio, 0));
  project->RemoveItems(sequence, {item}, u"Delete");
  EXPECT_FALSE(own->GetClip(BE::kMediaType_Audio, 0));
}

class SequenceFile : public SequenceEdits {
 protected:
  SequenceFile() : path(std::filesystem::temp_directory_path() / ("captivo-sequence-" + std::to_string(getpid()))) {
    Remove();
    auto made = BE::Project::Create(path);
    EXPECT_TRUE(made) << made.problem.text;
    Take(*made.value);
  }
  ~SequenceFile() override {
    sequence = nullptr;
    clip = nullptr;
    project = nullptr;
    Remove();
  }
  void Remove() const {
    for (const char* suffix : {"", "-wal", "-shm"})
      std::filesystem::remove(path.string() + suffix);
  }
  void Close() {
    sequence = nullptr;
    clip = nullptr;
    project->Close();
    project = nullptr;
  }
  void Reopen() {
    if (project)
      Close();
    auto opened = BE::Project::Open(path);
    ASSERT_TRUE(opened) << opened.problem.text;
    project = *opened.value;
    clip = project->GetClips().at(0);
    sequence = project->GetSequences().empty() ? nullptr : project->GetSequences().at(0);
  }

  std::filesystem::path path;
};

TEST_F(SequenceFile, KeepsItemsDissolvesSettingsAndTheHistoryOfBoth) {
  const auto a = Insert(0);
  const auto b = Insert(100);
  project->AddTransition(sequence, a, b, TickTime(20), u"Dissolve");
  Insert(60);
  sequence->SetSettings(zebmediatypes::kFrameRate_24, zebmediatypes::kTimeDisplay_Frames,
                        zebmediatypes::kTimeDisplay_Milliseconds);
  Reopen();
  EXPECT_EQ(sequence->GetVideoFrameRate(), zebmediatypes::kFrameRate_24);
  EXPECT_EQ(sequence->GetVideoTimeDisplay(), zebmediatypes::kTimeDisplay_Frames);
  EXPECT_THAT(Items(sequence), ElementsAre("0-60 @0", "60-160 @0", "160-200 @60"));
  EXPECT_THAT(sequence->GetTransitions(), IsEmpty());

  EXPECT_TRUE(project->Undo());
  EXPECT_THAT(Items(sequence), ElementsAre("0-100 @0", "100-200 @0"));
  EXPECT_EQ(sequence->GetTransitions().size(), 1U);
  Reopen();
  EXPECT_EQ(sequence->GetTransitions().size(), 1U);
  EXPECT_TRUE(project->Redo());
  EXPECT_THAT(Items(sequence), ElementsAre("0-60 @0", "60-160 @0", "160-200 @60"));
  for (int step = 0; step < 4; ++step)
    EXPECT_TRUE(project->Undo());
  EXPECT_FALSE(project->CanUndo());
  EXPECT_THAT(Items(sequence), IsEmpty());
}

TEST_F(SequenceFile, ARemovedSequenceStaysRemovedAndCanStillComeBack) {
  Insert(0);
  project->RemoveSequence(sequence);
  Reopen();
  EXPECT_THAT(project->GetSequences(), IsEmpty());
  project->Undo();
  Reopen();
  ASSERT_TRUE(sequence);
  EXPECT_THAT(Items(sequence), ElementsAre("0-100 @0"));
}

TEST_F(SequenceFile, WhatIsAddedAfterOpeningTakesNoNumberThatWasGivenBefore) {
  const auto item = Insert(0);
  const std::string id = item->GetID();
  project->Undo();
  Reopen();
  EXPECT_NE(Insert(0)->GetID(), id);
}

// As the first version wrote it: items as one text beside the name of the sequence.
TEST_F(SequenceFile, OfTheFirstVersionIsReadWithItsSequencesAndItsHistory) {
  Insert(0);
  const std::string clipNumber = clip->GetID().substr(clip->GetID().rfind('-') + 1);
  const std::string sequenceNumber = sequence->GetID().substr(sequence->GetID().rfind('-') + 1);
  project->RemoveClip(clip);
  project->Undo();
  project->Undo();
  test::AddStream(project, clip, {State(1, 2, "kept")}); // what was undone is forgotten
  Close();
  {
    SQLite::Database file(path.string(), SQLite::OPEN_READWRITE);
    file.exec("DROP TABLE sequence_parts; DROP TABLE sequence_deltas;"
              "ALTER TABLE steps DROP COLUMN sequence; ALTER TABLE sequences DROP COLUMN removed;"
              "ALTER TABLE sequences ADD COLUMN items TEXT NOT NULL DEFAULT '[]'; PRAGMA user_version=1;");
    file.exec("UPDATE sequences SET items='[{\"number\":90,\"clip\":" + clipNumber +
              ",\"start\":7,\"video\":true,\"audio\":false}]' WHERE number=" + sequenceNumber);
  }
  Reopen();
  ASSERT_TRUE(sequence);
  EXPECT_THAT(Items(sequence), ElementsAre("7-107 @0"));
  EXPECT_FALSE(sequence->GetItems().at(0)->HasAudio());
  EXPECT_EQ(Insert(500)->GetID().substr(8), "-91");
  EXPECT_TRUE(project->Undo());
  EXPECT_TRUE(project->Undo()); // the stream
  EXPECT_THAT(clip->GetStreams(), IsEmpty());
  Reopen();
  EXPECT_THAT(Items(sequence), ElementsAre("7-107 @0"));
}

TEST_F(SequenceFile, WhosePartsAreGarbledSaysSoAndStaysAsItIs) {
  Insert(0);
  Close();
  SQLite::Database(path.string(), SQLite::OPEN_READWRITE).exec("UPDATE sequence_parts SET part='{'");
  const auto opened = BE::Project::Open(path);
  EXPECT_FALSE(opened);
  EXPECT_FALSE(opened.problem.text.empty());
}

} // namespace
