#include <csignal>
#include <random>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Builders.h"

namespace {

using namespace test;

constexpr int kMoments = 200;
constexpr int kOperations = 300;
// The first moments are hit exactly: so many operations are done, and no more.
constexpr int kExactMoments = 20;
// How a session ends that could not be.
constexpr int kExit_NoProject = 3;
constexpr int kExit_NoPipe = 4;
constexpr int kExit_Exception = 5;

// Nothing where it was undone.
InterfaceRef<BE::CaptioningStream> FirstStream(const InterfaceRef<BE::Project>& project) {
  const auto clips = project->GetClips();
  const auto streams = clips.empty() ? std::vector<InterfaceRef<BE::CaptioningStream>>() : clips.front()->GetStreams();
  return streams.empty() ? nullptr : streams.front();
}

// An editing session, the same each time: passages of typing, commits, reverts, undo and redo, edits from elsewhere.
class Session {
 public:
  explicit Session(const InterfaceRef<BE::Project>& project)
      : mProject(project), mStream(FirstStream(project)), mChange(mStream->BeginChange()) {}

  void Do(int operation) {
    const std::int64_t begin = operation / 12 % 5 * 10;
    const auto caption = mStream->FindByBegin(TickTime(begin));
    if (operation % 12 == 11) {
      mChange->Commit();
    } else if (operation % 47 == 0) {
      mProject->Undo();
    } else if (operation % 47 == 1) {
      mProject->Redo();
    } else if (operation % 53 == 0) {
      mChange->Revert();
    } else if (operation % 29 == 0) {
      mProject->EditCaptions(mStream, {Adding(State(1000 + operation, 2000, "new"))}, u"Edit");
    } else if (operation % 31 == 0) {
      mProject->ShiftCaptions(mStream, TickTime(1000), TickTime(5000), TickTime(1), u"Shift");
    } else if (caption) {
      const std::string text = zebcore::ToUTF8(caption->GetState()->text) + static_cast<char>('a' + operation % 26);
      mChange->Apply({Turning(mStream, begin, WithText(caption->GetState(), text))}, u"Type");
    }
  }

  // What a reopened project has to hold if the process died now: what is open has become a step.
  struct Expected {
    Lines captions;
    std::vector<zebcore::UString> undo;
    std::vector<zebcore::UString> redo;
    friend bool operator==(const Expected&, const Expected&) = default;
  };
  static Expected Read(const InterfaceRef<BE::Project>& project) {
    const auto stream = FirstStream(project);
    return {stream ? Contents(stream) : Lines(), project->GetUndoNames(), project->GetRedoNames()};
  }
  Expected Expect() const {
    Expected expected = Read(mProject);
    if (const auto name = mProject->GetOpenChangeName()) {
      expected.undo.insert(expected.undo.begin(), *name);
      expected.redo.clear();
    }
    return expected;
  }

 private:
  InterfaceRef<BE::Project> mProject;
  InterfaceRef<BE::CaptioningStream> mStream;
  std::shared_ptr<BE::OpenChange> mChange;
};

// The process that is killed. It must not return into the test.
[[noreturn]] void RunSession(const std::filesystem::path& path, int operations, int progress) {
  try {
    const auto project = BE::Project::Open(path);
    if (!project || !FirstStream(*project.value))
      _exit(kExit_NoProject);
    Session session(*project.value);
    for (int operation = 0; operation < operations; ++operation) {
      session.Do(operation);
      if (write(progress, "+", 1) != 1)
        _exit(kExit_NoPipe);
    }
    for (;;)
      pause();
  } catch (...) {
    _exit(kExit_Exception);
  }
}

void Fill(const InterfaceRef<BE::Project>& project) {
  AddStream(project, AddVideoClip(project),
            {State(0, 9, ""), State(10, 19, ""), State(20, 29, ""), State(30, 39, ""), State(40, 49, "")});
}

TEST(Crash, KilledAtAnyMomentLosesNoCommittedStepAndAtMostTheLastKey) {
  const TemporaryFolder folder;
  const auto base = folder / "base.captivo";
  {
    const auto created = BE::Project::Create(base);
    ASSERT_TRUE(created) << created.problem.text;
    Fill(*created.value);
    (*created.value)->Close();
  }
  ASSERT_FALSE(std::filesystem::exists(base.string() + "-wal"));

  std::vector<Session::Expected> expected;
  {
    const auto project = BE::Project::CreateInMemory();
    Fill(project);
    Session session(project);
    expected.push_back(session.Expect());
    for (int operation = 0; operation < kOperations; ++operation) {
      session.Do(operation);
      expected.push_back(session.Expect());
    }
  }

  std::mt19937 random(20240229);
  int inTheMiddle = 0;
  for (int moment = 0; moment < kMoments; ++moment) {
    SCOPED_TRACE("moment " + std::to_string(moment));
    const bool isExact = moment < kExactMoments;
    const auto path = folder / "session.captivo";
    std::filesystem::copy_file(base, path, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::remove(path.string() + "-wal");
    std::filesystem::remove(path.string() + "-shm");
    int progress[2];
    ASSERT_EQ(pipe(progress), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      close(progress[0]);
      RunSession(path, isExact ? moment : kOperations, progress[1]);
    }
    close(progress[1]);
    // The session runs on while the signal is on its way.
    const int wanted = isExact ? moment : std::uniform_int_distribution<int>(0, kOperations - 1)(random);
    int done = 0;
    char sign = 0;
    while (done < wanted && read(progress[0], &sign, 1) == 1)
      ++done;
    for (auto discarded = std::uniform_int_distribution<unsigned long long>(0, 30000)(random); discarded > 0;
         --discarded)
      random.discard(1);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the session ended by itself, with " << WEXITSTATUS(status);
    while (read(progress[0], &sign, 1) == 1)
      ++done;
    close(progress[0]);

    auto reopened = BE::Project::Open(path);
    ASSERT_TRUE(reopened) << reopened.problem.text;
    const auto project = *reopened.value;
    const Session::Expected found = Session::Read(project);
    const auto after = static_cast<std::size_t>(isExact ? done : std::min(done + 1, kOperations));
    const bool isBefore = found == expected[static_cast<std::size_t>(done)];
    EXPECT_TRUE(isBefore || found == expected[after]) << "after " << done << " operations";
    inTheMiddle += done > 0 && done < kOperations;

    // And the history works.
    while (project->Undo()) {
    }
    ASSERT_EQ(project->GetClips().size(), 1U);
    EXPECT_FALSE(FirstStream(project));
  }
  EXPECT_GT(inTheMiddle, kMoments / 2);
}

} // namespace
