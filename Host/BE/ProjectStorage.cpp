#include "BE/ProjectStorage.h"

#include "BE/Problems.h"
#include "zebcore/Boundary.h"
#include "zebcore/Log.h"

namespace BE {

ProjectStorage::ProjectStorage(std::unique_ptr<ProjectFile> file) : mFile(std::move(file)) {}
ProjectStorage::~ProjectStorage() {
  Close();
}

void ProjectStorage::Write(Operation operation) {
  if (!mFile)
    return;
  mPending.push_back(std::move(operation));
  WritePending();
}

bool ProjectStorage::WritePending() {
  try {
    if (mFile->IsGone())
      mFile->Restore();
    if (std::optional<Problem> obstacle = mFile->FindObstacle()) {
      SetProblem(std::move(obstacle));
      return false;
    }
    // While much waits, one operation alone finds out whether writing works again, so that a key pressed beside a full
    // disk does not pay for all that waits.
    if (mProblem && mPending.size() > 1) {
      mFile->Perform(mPending.front());
      mPending.pop_front();
    }
    mFile->Perform([this](ProjectFile& file) {
      for (const Operation& each : mPending)
        each(file);
    });
    mPending.clear();
    SetProblem(std::nullopt);
    return true;
  } catch (const std::exception& failure) {
    SetProblem(mFile->Describe(failure));
    return false;
  }
}

// Said once when it begins and once when it is over; not again for each change in between.
void ProjectStorage::SetProblem(std::optional<Problem> problem) {
  const bool sameState = problem.has_value() == mProblem.has_value();
  mProblem = std::move(problem);
  if (sameState)
    return;
  if (mProblem)
    zebcore::log::Write(zebcore::log::Level::Error, mProblem->text);
  if (mListener)
    zebcore::boundary::Guard("BE::Project storage problem", [this] { mListener(mProblem); });
}

std::optional<Problem> ProjectStorage::SaveAs(const std::filesystem::path& path) {
  if (!mFile)
    return MakeProblem("$$$/Vidra/Project/IsClosed=The project is closed. Open it again to save it.", {});
  std::error_code error;
  if (std::filesystem::equivalent(path, mFile->GetPath(), error) && !mFile->IsCopy()) {
    WritePending();
    return mProblem;
  }
  // What the old place refused goes into the copy before that is put in its place.
  const auto writePending = [this](ProjectFile& copy) {
    for (const Operation& each : mPending)
      each(copy);
  };
  if (std::optional<Problem> problem = mFile->CopyTo(path, writePending))
    return problem;
  Result<std::unique_ptr<ProjectFile>> next = ProjectFile::Open(path);
  if (!next)
    return next.problem;
  mFile = std::move(*next.value);
  mFile->SetIsRead();
  mPending.clear();
  SetProblem(std::nullopt);
  return std::nullopt;
}

void ProjectStorage::Close() {
  if (!mFile)
    return;
  if (!mPending.empty())
    WritePending();
  mFile.reset();
}

std::filesystem::path ProjectStorage::GetPath() const {
  return mFile ? mFile->GetPath() : std::filesystem::path();
}

} // namespace BE
