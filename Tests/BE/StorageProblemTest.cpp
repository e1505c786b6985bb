#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "Builders.h"

namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

class StorageProblem : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(home);
    auto created = BE::Project::Create(path);
    ASSERT_TRUE(created) << created.problem.text;
    project = *created.value;
    stream = AddStream(project, AddVideoClip(project), {State(10, 20, "a")});
    project->SetStorageProblemListener(
        [this](const std::optional<BE::Problem>& problem) { said.push_back(problem ? problem->text : "over"); });
  }

  void Type(const std::string& text) {
    const auto change = stream->BeginChange();
    change->Apply({Turning(stream, 10, State(10, 20, text))}, u"Type");
  }

  // What the file holds for the next start.
  Lines Reopen() {
    project->Close();
    auto opened = BE::Project::Open(path);
    EXPECT_TRUE(opened) << opened.problem.text;
    return opened ? Contents((*opened.value)->GetClips().at(0)->GetStreams().at(0)) : Lines();
  }

  TemporaryFolder folder;
  std::filesystem::path home = folder / "home";
  std::filesystem::path path = home / "p.captivo";
  InterfaceRef<BE::Project> project;
  InterfaceRef<BE::CaptioningStream> stream;
  Lines said;
};

TEST_F(StorageProblem, AFileTurnedReadOnlyIsSaidOnceAndTypingGoesOnInMemory) {
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  Type("ab");
  Type("abc");
  ASSERT_EQ(said.size(), 1U);
  EXPECT_THAT(said[0], HasSubstr("may no longer be changed"));
  EXPECT_THAT(said[0], HasSubstr("p.captivo"));
  EXPECT_TRUE(project->GetStorageProblem());
  EXPECT_FALSE(project->IsReadOnly());
  EXPECT_EQ(Contents(stream), Lines{"10-20 abc"});
  EXPECT_TRUE(project->Undo());
  EXPECT_EQ(Contents(stream), Lines{"10-20 ab"});
}

TEST_F(StorageProblem, WhatWasMissedIsStoredOnceTheFileMayBeWrittenAgain) {
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  Type("ab");
  project->EditCaptions(stream, {Adding(State(30, 40, "n"))}, u"Edit");
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  project->EditCaptions(stream, {Adding(State(50, 60, "m"))}, u"Edit");
  ASSERT_EQ(said.size(), 2U);
  EXPECT_EQ(said[1], "over");
  EXPECT_FALSE(project->GetStorageProblem());
  EXPECT_EQ(Reopen(), (Lines{"10-20 ab", "30-40 n", "50-60 m"}));
}

TEST_F(StorageProblem, AFullDiskIsSaidOnceAndEverythingIsStoredWhenThereIsRoom) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  rlimit full = before;
  full.rlim_cur = std::filesystem::file_size(path.string() + "-wal") + 20000;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
  std::string text;
  for (int key = 0; key < 40; ++key) {
    text += std::string(200, static_cast<char>('a' + key % 26));
    Type(text);
  }
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  ASSERT_EQ(said.size(), 1U);
  EXPECT_FALSE(project->IsReadOnly());
  EXPECT_EQ(Contents(stream), Lines{"10-20 " + text});
  EXPECT_EQ(project->GetUndoNames().size(), 41U);
  Type(text + "!");
  ASSERT_EQ(said.size(), 2U);
  EXPECT_EQ(said[1], "over");
  EXPECT_EQ(Reopen(), Lines{"10-20 " + text + "!"});
}

TEST_F(StorageProblem, AFolderThatIsGoneIsSaidAndTheFileComesBackWithIt) {
  std::filesystem::remove_all(home);
  Type("ab");
  ASSERT_EQ(said.size(), 1U);
  EXPECT_THAT(said[0], HasSubstr("p.captivo"));
  std::filesystem::create_directory(home);
  Type("abc");
  EXPECT_EQ(said.back(), "over");
  EXPECT_EQ(Reopen(), Lines{"10-20 abc"});
}

TEST_F(StorageProblem, AFileThatWasDeletedIsPutBackWithTheNextChange) {
  std::filesystem::remove(path);
  Type("ab");
  EXPECT_THAT(said, ElementsAre());
  EXPECT_EQ(Reopen(), Lines{"10-20 ab"});
}

TEST_F(StorageProblem, AFileThatCannotBePutBackYetIsKeptAndPutBackByALaterChange) {
  Type("ab");
  const std::filesystem::path log = path.string() + "-wal";
  for (const char* suffix : {"", "-wal", "-shm"})
    std::filesystem::remove(path.string() + suffix);
  std::filesystem::create_directories(log / "in the way");
  Type("abc");
  project->EditCaptions(stream, {Adding(State(30, 40, "n"))}, u"Edit");
  EXPECT_TRUE(project->Undo());
  EXPECT_TRUE(project->Redo());
  ASSERT_EQ(said.size(), 1U);
  EXPECT_THAT(said[0], HasSubstr("p.captivo"));
  EXPECT_TRUE(project->GetStorageProblem());
  EXPECT_EQ(Contents(stream), (Lines{"10-20 abc", "30-40 n"}));
  std::filesystem::remove_all(log);
  Type("abcd");
  EXPECT_EQ(said.back(), "over");
  EXPECT_EQ(Reopen(), (Lines{"10-20 abcd", "30-40 n"}));
}

TEST_F(StorageProblem, AFileThatCannotBePutBackCanBeSavedElsewhere) {
  Type("ab");
  for (const char* suffix : {"", "-wal", "-shm"})
    std::filesystem::remove(path.string() + suffix);
  std::filesystem::create_directories(path.string() + "-wal/in the way");
  Type("abc");
  path = folder / "elsewhere.captivo";
  EXPECT_FALSE(project->SaveAs(path));
  EXPECT_EQ(said.back(), "over");
  EXPECT_EQ(project->GetPath(), path);
  EXPECT_EQ(Reopen(), Lines{"10-20 abc"});
}

TEST_F(StorageProblem, AListenerThatThrowsStopsNoStep) {
  project->SetStorageProblemListener([](const std::optional<BE::Problem>&) { throw std::runtime_error("not now"); });
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_NO_THROW(Type("ab"));
  EXPECT_EQ(Contents(stream), Lines{"10-20 ab"});
  EXPECT_EQ(project->GetUndoNames().size(), 2U);
}

TEST_F(StorageProblem, AnotherFileInItsPlaceIsLeftAlone) {
  std::filesystem::rename(path, home / "moved.captivo");
  std::filesystem::copy_file(home / "moved.captivo", path);
  const auto size = std::filesystem::file_size(path);
  Type("ab");
  ASSERT_EQ(said.size(), 1U);
  EXPECT_THAT(said[0], HasSubstr("no longer where it was"));
  EXPECT_EQ(std::filesystem::file_size(path), size);
}

TEST_F(StorageProblem, SavingElsewhereStoresWhatTheOldPlaceRefused) {
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  Type("ab");
  Type("abc");
  path = folder / "elsewhere.captivo";
  EXPECT_FALSE(project->SaveAs(path));
  EXPECT_EQ(said.back(), "over");
  EXPECT_EQ(Reopen(), Lines{"10-20 abc"});
}

} // namespace
