#include <fstream>

#include <SQLiteCpp/SQLiteCpp.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Builders.h"

namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

InterfaceRef<BE::Project> Create(const std::filesystem::path& path) {
  auto result = BE::Project::Create(path);
  EXPECT_TRUE(result) << result.problem.text;
  return *result.value;
}

InterfaceRef<BE::Project> Open(const std::filesystem::path& path, bool readOnly = false) {
  auto result = BE::Project::Open(path, readOnly);
  EXPECT_TRUE(result) << result.problem.text;
  return result ? *result.value : nullptr;
}

InterfaceRef<BE::CaptioningStream> FirstStream(const InterfaceRef<BE::Project>& project) {
  return project->GetClips().at(0)->GetStreams().at(0);
}

void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

class ProjectFile : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::filesystem::path path = folder / "p.captivo";

  // A project with a clip, two captions and one step after that.
  void Prepare() {
    const auto project = Create(path);
    const auto stream = AddStream(project, AddVideoClip(project, u"Café"), {State(10, 20, "a"), State(30, 40, "b")});
    project->EditCaptions(stream, {Turning(stream, 30, State(33, 44, "bé\n♪"))}, u"Edit");
    project->SetSetting("window", "wide");
  }
};

TEST_F(ProjectFile, BringsBackClipsStreamsCaptionsAndSettings) {
  Prepare();
  const auto project = Open(path);
  ASSERT_EQ(project->GetClips().size(), 1U);
  const auto clip = project->GetClips()[0];
  EXPECT_EQ(clip->GetName(), u"Café");
  EXPECT_EQ(clip->GetMediaInfo().frameRate, zebmediatypes::kFrameRate_25);
  EXPECT_EQ(clip->GetMediaInfo().sampleRate, 48000);
  EXPECT_THAT(Contents(FirstStream(project)), ElementsAre("10-20 a", "33-44 bé\n♪"));
  EXPECT_EQ(project->GetSetting("window", ""), "wide");
  EXPECT_EQ(project->GetSetting("other", "none"), "none");
  EXPECT_EQ(project->GetName(), u"p");
  EXPECT_FALSE(project->IsUntitled());
}

TEST_F(ProjectFile, ObjectsKeepTheirIds) {
  std::string clipID;
  std::string streamID;
  {
    const auto project = Create(path);
    const auto clip = AddVideoClip(project);
    clipID = clip->GetID();
    streamID = AddStream(project, clip)->GetID();
  }
  const auto project = Open(path);
  EXPECT_TRUE(project->FindClip(clipID));
  EXPECT_TRUE(project->FindStream(streamID));
}

TEST_F(ProjectFile, TheHistoryOutlivesARestart) {
  Prepare();
  {
    const auto project = Open(path);
    EXPECT_THAT(project->GetUndoNames(), ElementsAre(u"Edit", u"New stream"));
    project->Undo();
    EXPECT_THAT(Contents(FirstStream(project)), ElementsAre("10-20 a", "30-40 b"));
    project->Undo();
    EXPECT_TRUE(project->GetClips()[0]->GetStreams().empty());
  }
  const auto project = Open(path);
  EXPECT_THAT(project->GetRedoNames(), ElementsAre(u"New stream", u"Edit"));
  EXPECT_TRUE(project->GetClips()[0]->GetStreams().empty());
  project->Redo();
  EXPECT_THAT(Contents(FirstStream(project)), ElementsAre("10-20 a", "30-40 b"));
  project->Redo();
  EXPECT_THAT(Contents(FirstStream(project)), ElementsAre("10-20 a", "33-44 bé\n♪"));
}

TEST_F(ProjectFile, AChangeOfFormatAndRegionsComeBack) {
  {
    const auto project = Create(path);
    BE::StreamDescription description{kCC1, {{"top", {0, 0, 100, 20}, true}}, {"loud"}};
    const auto stream = *project->AddStream(AddVideoClip(project), description, {}, u"New stream").value;
    project->ChangeStreamFormat(stream, kCC2, u"Change format");
  }
  const auto project = Open(path);
  EXPECT_EQ(FirstStream(project)->GetStreamFormat(), kCC2);
  EXPECT_EQ(FirstStream(project)->GetDescription().regions.at(0).name, "top");
  EXPECT_EQ(FirstStream(project)->GetDescription().styles, Lines{"loud"});
  project->Undo();
  EXPECT_EQ(FirstStream(project)->GetStreamFormat(), kCC1);
}

TEST_F(ProjectFile, SequencesComeBack) {
  {
    const auto project = Create(path);
    const auto clip = AddVideoClip(project);
    const auto sequence = project->AddSequence(u"cut", zebmediatypes::kFrameRate_24, zebmediatypes::FrameRate(5292000),
                                               {{clip, TickTime(7), true, false}});
    sequence->SetVideoFrameRate(zebmediatypes::kFrameRate_30);
  }
  const auto project = Open(path);
  ASSERT_EQ(project->GetSequences().size(), 1U);
  EXPECT_EQ(project->GetSequences()[0]->GetVideoFrameRate(), zebmediatypes::kFrameRate_30);
  EXPECT_EQ(project->GetSequences()[0]->GetItems().at(0)->GetStart(), TickTime(7));
}

TEST_F(ProjectFile, AChangeThatWasOpenWhenTheProcessDiedIsAStepAfterwards) {
  Prepare();
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const auto project = *BE::Project::Open(path).value;
    const auto stream = FirstStream(project);
    const auto change = stream->BeginChange();
    change->Apply({Turning(stream, 10, State(10, 20, "ab"))}, u"Type");
    change->Apply({Turning(stream, 10, State(10, 20, "abc"))}, u"Type");
    kill(getpid(), SIGKILL);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status));
  const auto project = Open(path);
  EXPECT_THAT(project->GetUndoNames(), ElementsAre(u"Type", u"Edit", u"New stream"));
  EXPECT_THAT(Contents(FirstStream(project)), ElementsAre("10-20 abc", "33-44 bé\n♪"));
  project->Undo();
  EXPECT_THAT(Contents(FirstStream(project)), ElementsAre("10-20 a", "33-44 bé\n♪"));
}

TEST_F(ProjectFile, IsNotReplacedByANewProject) {
  Prepare();
  const auto result = BE::Project::Create(path);
  EXPECT_FALSE(result);
  EXPECT_THAT(result.problem.text, HasSubstr("p.captivo"));
  EXPECT_EQ(Contents(FirstStream(Open(path))).size(), 2U);
}

TEST_F(ProjectFile, ThatIsOpenCannotBeOpenedASecondTime) {
  Prepare();
  const auto project = Open(path);
  const auto second = BE::Project::Open(path);
  EXPECT_FALSE(second);
  EXPECT_THAT(second.problem.text, HasSubstr("open already"));
  const pid_t child = fork();
  if (child == 0)
    _exit(BE::Project::Open(path) ? 1 : 0);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(project->GetStorageProblem().has_value(), false);
}

TEST_F(ProjectFile, OfANewerVersionIsRefusedAndLeftAsItIs) {
  Prepare();
  SQLite::Database(path.string(), SQLite::OPEN_READWRITE).exec("PRAGMA user_version=99");
  const auto result = BE::Project::Open(path);
  EXPECT_FALSE(result);
  EXPECT_THAT(result.problem.text, HasSubstr("newer version"));
  EXPECT_EQ(SQLite::Database(path.string()).execAndGet("PRAGMA user_version").getInt(), 99);
}

TEST_F(ProjectFile, ThatIsNoneIsRefusedByName) {
  WriteBytes(folder / "text.captivo", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");
  WriteBytes(folder / "empty.captivo", "");
  WriteBytes(folder / "zeros.captivo", std::string(100000, '\0'));
  WriteBytes(folder / "head.captivo", std::string("SQLite format 3\0", 16));
  std::filesystem::create_directory(folder / "folder.captivo");
  SQLite::Database(folder / "other.captivo", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec("CREATE TABLE t(x)");
  for (const char* name : {"text.captivo", "empty.captivo", "zeros.captivo", "head.captivo", "folder.captivo",
                           "other.captivo", "missing.captivo"}) {
    for (const bool readOnly : {false, true}) {
      const auto result = BE::Project::Open(folder / name, readOnly);
      EXPECT_FALSE(result) << name;
      EXPECT_THAT(result.problem.text, HasSubstr(name));
    }
  }
}

TEST_F(ProjectFile, CutOffAnywhereIsRefusedAndNeverCrashes) {
  {
    const auto project = Create(path);
    std::vector<CaptionStatePtr> states;
    for (int at = 0; at < 500; ++at)
      states.push_back(State(at * 10, at * 10 + 9, "caption number " + std::to_string(at)));
    AddStream(project, AddVideoClip(project), states);
  }
  const auto size = std::filesystem::file_size(path);
  for (std::uintmax_t length = 16; length < size; length += size / 37) {
    const std::filesystem::path cut = folder / "cut.captivo";
    std::filesystem::copy_file(path, cut, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::resize_file(cut, length);
    const auto result = BE::Project::Open(cut);
    EXPECT_FALSE(result) << length;
    EXPECT_THAT(result.problem.text, HasSubstr("cut.captivo"));
  }
}

TEST_F(ProjectFile, WithGarbledCaptionsIsRefused) {
  Prepare();
  SQLite::Database(path.string(), SQLite::OPEN_READWRITE).exec("UPDATE captions SET state=x'ff00ff'");
  const auto result = BE::Project::Open(path);
  EXPECT_FALSE(result);
  EXPECT_THAT(result.problem.text, HasSubstr("damaged"));
}

TEST_F(ProjectFile, WithoutItsTablesIsRefused) {
  Prepare();
  SQLite::Database(path.string(), SQLite::OPEN_READWRITE).exec("DROP TABLE deltas; DROP TABLE streams");
  EXPECT_FALSE(BE::Project::Open(path));
}

TEST_F(ProjectFile, OpenedForReadingStaysAsItIs) {
  Prepare();
  const auto before = std::filesystem::last_write_time(path);
  {
    const auto project = Open(path, true);
    EXPECT_TRUE(project->IsReadOnly());
    EXPECT_THAT(Contents(FirstStream(project)), ElementsAre("10-20 a", "33-44 bé\n♪"));
    project->SetSetting("window", "narrow");
    EXPECT_FALSE(project->Undo());
  }
  EXPECT_EQ(std::filesystem::last_write_time(path), before);
  EXPECT_EQ(Open(path)->GetSetting("window", ""), "wide");
}

TEST_F(ProjectFile, WhoseOwnerForbidsWritingOpensForReading) {
  Prepare();
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_TRUE(Open(path)->IsReadOnly());
}

TEST_F(ProjectFile, SavedAsAnotherGoesOnThere) {
  Prepare();
  const auto project = Open(path);
  const auto other = folder / "other.captivo";
  EXPECT_FALSE(project->SaveAs(other));
  EXPECT_EQ(project->GetPath(), other);
  const auto stream = FirstStream(project);
  project->EditCaptions(stream, {Turning(stream, 10, nullptr)}, u"Edit");
  EXPECT_EQ(Contents(FirstStream(Open(path))).size(), 2U);
  project->Close();
  const auto again = Open(other);
  EXPECT_EQ(Contents(FirstStream(again)).size(), 1U);
  EXPECT_EQ(again->GetUndoNames().size(), 3U);
}

TEST_F(ProjectFile, SavedOverAnotherReplacesItWhole) {
  Prepare();
  const auto other = folder / "other.captivo";
  { AddVideoClip(Create(other), u"old"); }
  const auto project = Open(path);
  EXPECT_FALSE(project->SaveAs(other));
  project->Close();
  EXPECT_EQ(Open(other)->GetClips().at(0)->GetName(), u"Café");
}

TEST_F(ProjectFile, ThatCannotBeSavedElsewhereStaysWhereItIs) {
  Prepare();
  const auto project = Open(path);
  for (const auto& place : {folder / "no/such/folder.captivo", folder.GetPath()}) {
    const auto problem = project->SaveAs(place);
    ASSERT_TRUE(problem);
    EXPECT_THAT(problem->text, HasSubstr(place.string()));
    EXPECT_EQ(project->GetPath(), path);
  }
  const auto busy = folder / "busy.captivo";
  const auto holder = Create(busy);
  EXPECT_TRUE(project->SaveAs(busy));
  EXPECT_FALSE(project->GetStorageProblem());
}

// Makes the file refuse, from the inside, every step of that name.
void RefuseSteps(const std::filesystem::path& path, const std::string& name) {
  SQLite::Database(path.string(), SQLite::OPEN_READWRITE)
      .exec("CREATE INDEX refusing ON steps(CASE name WHEN '" + name +
            "' THEN abs(-9223372036854775807 - 1) ELSE 0 END)");
}

TEST_F(ProjectFile, ThatRefusesAStepKeepsWhatThatStepWouldForget) {
  Prepare();
  RefuseSteps(path, "Refused");
  const auto project = Open(path);
  project->Undo();
  project->EditCaptions(FirstStream(project), {Adding(State(90, 99, "n"))}, u"Refused");
  ASSERT_TRUE(project->GetStorageProblem());
  EXPECT_TRUE(project->GetRedoNames().empty());
  SQLite::Database file(path.string());
  EXPECT_EQ(file.execAndGet("SELECT count(*) FROM steps WHERE name='Edit' AND state=1").getInt(), 1);
  EXPECT_EQ(file.execAndGet("SELECT count(*) FROM deltas").getInt(), 1);
}

TEST_F(ProjectFile, SavedWhereWhatWaitsIsRefusedStaysWhereItIs) {
  Prepare();
  RefuseSteps(path, "Refused");
  setenv("XDG_DATA_HOME", folder.GetPath().c_str(), 1);
  const auto project = Open(path);
  project->EditCaptions(FirstStream(project), {Adding(State(90, 99, "n"))}, u"Refused");
  ASSERT_TRUE(project->GetStorageProblem());
  const auto other = folder / "other.captivo";
  WriteBytes(other, "what was there before");
  const auto problem = project->SaveAs(other);
  ASSERT_TRUE(problem);
  EXPECT_THAT(problem->text, HasSubstr("other.captivo"));
  EXPECT_EQ(project->GetPath(), path);
  EXPECT_EQ(project->GetName(), u"p");
  EXPECT_TRUE(project->GetStorageProblem());
  EXPECT_EQ(std::filesystem::file_size(other), 21U);
  for (const auto& entry : std::filesystem::directory_iterator(folder.GetPath()))
    EXPECT_EQ(entry.path().string().find(".new"), std::string::npos) << entry.path();
  EXPECT_THAT(BE::Project::Open(path).problem.text, HasSubstr("open already"));
  EXPECT_EQ(Contents(FirstStream(project)).size(), 3U);
}

TEST_F(ProjectFile, ThatIsClosedLiesWholeInOneFileEvenWhileAnotherReadsIt) {
  Prepare();
  const auto project = Open(path);
  SQLite::Database reader(path.string(), SQLite::OPEN_READWRITE);
  EXPECT_EQ(reader.execAndGet("SELECT count(*) FROM captions").getInt(), 2);
  project->EditCaptions(FirstStream(project), {Adding(State(90, 99, "n"))}, u"Edit");
  project->Close();
  std::error_code error;
  const auto log = path.string() + "-wal";
  EXPECT_TRUE(!std::filesystem::exists(log) || std::filesystem::file_size(log) == 0U);
  std::filesystem::copy_file(path, folder / "copy.captivo");
  EXPECT_EQ(Contents(FirstStream(Open(folder / "copy.captivo"))).size(), 3U);
}

TEST_F(ProjectFile, SavedUnderItsOwnNameStaysOpen) {
  Prepare();
  const auto project = Open(path);
  EXPECT_FALSE(project->SaveAs(path));
  project->SetSetting("window", "narrow");
  project->Close();
  EXPECT_EQ(Open(path)->GetSetting("window", ""), "narrow");
}

TEST_F(ProjectFile, AProjectInMemoryCanBeSaved) {
  const auto project = BE::Project::CreateInMemory();
  AddStream(project, AddVideoClip(project), {State(1, 2, "a")});
  EXPECT_FALSE(project->SaveAs(path));
  project->Close();
  EXPECT_EQ(Contents(FirstStream(Open(path))), Lines{"1-2 a"});
}

TEST_F(ProjectFile, AnUntitledProjectLivesInTheUsersDataFolder) {
  setenv("XDG_DATA_HOME", folder.GetPath().c_str(), 1);
  const auto project = Create("");
  const auto second = Create("");
  EXPECT_TRUE(project->IsUntitled());
  EXPECT_EQ(project->GetPath(), folder / "captivo/untitled-1.captivo");
  EXPECT_EQ(second->GetPath(), folder / "captivo/untitled-2.captivo");
  EXPECT_FALSE(project->SaveAs(path));
  EXPECT_FALSE(project->IsUntitled());
  second->Close();
  EXPECT_TRUE(Open(folder / "captivo/untitled-2.captivo")->IsUntitled());
}

TEST_F(ProjectFile, AClosedProjectAnswersFromMemory) {
  Prepare();
  const auto project = Open(path);
  const auto stream = FirstStream(project);
  project->Close();
  EXPECT_EQ(Contents(stream).size(), 2U);
  project->EditCaptions(stream, {Turning(stream, 10, nullptr)}, u"Edit");
  project->Undo();
  EXPECT_EQ(Contents(stream).size(), 2U);
}

} // namespace
