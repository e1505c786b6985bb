#include "App/Session.h"

#include "App/session/Text.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "MZ/Actions.h"
#include "UIF/Workspace.h"
#include "zebcore/Messaging.h"

namespace App {

namespace fs = std::filesystem;
using zebcore::messaging::BroadcastMessage;

namespace {

// An untitled project in which nothing was ever done leaves no file behind.
void CloseAndTidy(const InterfaceRef<BE::Project>& project) {
  const bool untouched = project->IsUntitled() && project->GetClips().empty() && project->GetSequences().empty() &&
                         !project->CanUndo() && !project->CanRedo();
  const fs::path path = project->GetPath();
  project->Close();
  std::error_code error;
  if (untouched && !path.empty())
    fs::remove(path, error);
}

bool IsSameFile(const fs::path& a, const fs::path& b) {
  std::error_code error;
  return !a.empty() && !b.empty() && fs::equivalent(a, b, error) && !error;
}

} // namespace

Session::Session() {
  UIF::Workspace::SetSelectionRepeater([this] { RepeatSelection(); });
}

void Session::Commit() {
  BroadcastMessage(HSL::kStation_CaptionSelection, HSL::CaptionCommitEditsMessage());
  if (mProject)
    mProject->CommitOpenChanges();
}

Session& Session::Instance() {
  static Session* const session = new Session; // outlives every static that may still ask for it
  return *session;
}

std::optional<Problem> Session::NewProject(const fs::path& path) {
  Commit();
  return Replace(BE::Project::Create(path));
}

void Session::NewProjectInMemory() {
  Commit();
  Replace({BE::Project::CreateInMemory(), {}});
}

std::optional<Problem> Session::OpenProject(const fs::path& path, bool readOnly) {
  Commit();
  if (!mProject || !IsSameFile(mProject->GetPath(), path))
    return Replace(BE::Project::Open(path, readOnly));
  // A file that may only be read is no reason not to show what is open already.
  if (auto problem = SetReadOnly(readOnly); problem && !mIsCopy)
    return problem;
  return std::nullopt;
}

std::optional<Problem> Session::SetReadOnly(bool readOnly) {
  if (!mProject || mProject->IsReadOnly() == readOnly)
    return std::nullopt;
  if (readOnly)
    Commit();
  if (readOnly || !mIsCopy) {
    mProject->SetReadOnly(readOnly);
    return std::nullopt;
  }
  Result<InterfaceRef<BE::Project>> writable = BE::Project::Open(mProject->GetPath());
  if (writable && (*writable.value)->IsReadOnly())
    return Problem{
        Text("$$$/Vidra/Captivo/Error/FileIsReadOnly=The project file {1} may only be read. Save the project "
             "under another name to change it.",
             {Quoted(mProject->GetPath().filename().string())})};
  return Replace(std::move(writable));
}

std::optional<Problem> Session::SaveProjectAs(const fs::path& path) {
  if (!mProject)
    return std::nullopt;
  Commit();
  auto problem = mProject->SaveAs(path);
  if (!problem)
    mIsCopy = false;
  return problem;
}

// The new one is active before the old one goes, so that a view never stands without a project.
std::optional<Problem> Session::Replace(Result<InterfaceRef<BE::Project>> next) {
  if (!next)
    return next.problem;
  if (mProject)
    SelectNothing();
  const InterfaceRef<BE::Project> previous = mProject;
  mProject = *next.value;
  mIsCopy = mProject->IsReadOnly();
  MZ::SetActiveProject(mProject);
  if (previous)
    CloseAndTidy(previous);
  return std::nullopt;
}

void Session::CloseProject() {
  if (!mProject)
    return;
  Commit();
  SelectNothing();
  const InterfaceRef<BE::Project> previous = mProject;
  mProject = nullptr;
  MZ::SetActiveProject(nullptr);
  CloseAndTidy(previous);
}

void Session::SelectStream(const InterfaceRef<BE::CaptioningStream>& stream) {
  if (!stream)
    return;
  MZ::CaptionsSelectionChangedMessage message;
  message.format = stream->GetStreamFormat();
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
}

void Session::OpenCaptions() {
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, MZ::ClosedCaptionsOpenedMessage());
}

void Session::RemoveClip(const InterfaceRef<BE::MasterClip>& clip) {
  if (!mProject || !clip || mProject->IsReadOnly())
    return;
  Commit();
  MZ::MasterClipClosedMessage closed;
  closed.clip = clip;
  BroadcastMessage(MZ::kStation_MasterClipActivation, closed);
  if (mSelectedClip == clip)
    SelectNothing();
  mProject->RemoveClip(clip);
}

bool Session::Undo() {
  return mProject && mProject->Undo();
}

bool Session::Redo() {
  return mProject && mProject->Redo();
}

} // namespace App
