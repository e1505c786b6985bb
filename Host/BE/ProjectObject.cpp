#include "BE/ProjectObject.h"

#include <stdexcept>

#include <sys/stat.h>
#include <unistd.h>

#include "BE/Problems.h"
#include "BE/UserFolders.h"
#include "Captions/contracts/Stations.h"
#include "zebcore/Localizer.h"
#include "zebcore/Log.h"

namespace BE {

namespace {

constexpr const char* kSetting_Tag = "project.tag";

Result<InterfaceRef<Project>> Fail(Problem problem) {
  return {std::nullopt, std::move(problem)};
}

// Files of projects that were never given a name carry the first free number.
Result<std::unique_ptr<ProjectFile>> CreateUntitledFile() {
  const std::filesystem::path folder = folders::GetDataFolder();
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  for (int number = 1;; ++number) {
    const std::filesystem::path path = folder / ("untitled-" + std::to_string(number) + ProjectFile::kSuffix);
    if (!std::filesystem::exists(path, error))
      return ProjectFile::Create(path);
  }
}

bool IsInDataFolder(const std::filesystem::path& path) {
  std::error_code error;
  return path.filename().string().starts_with("untitled-") &&
         std::filesystem::equivalent(path.parent_path(), folders::GetDataFolder(), error);
}

// A file that its owner has closed to writing, or that is another user's, is a project to be looked at.
bool MayOnlyBeRead(const std::filesystem::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
    return false;
  const bool mayWrite = (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0 && access(path.c_str(), W_OK) == 0;
  return !mayWrite && access(path.c_str(), R_OK) == 0;
}

} // namespace

Result<InterfaceRef<Project>> Project::Create(const std::filesystem::path& path) {
  Result<std::unique_ptr<ProjectFile>> file = path.empty() ? CreateUntitledFile() : ProjectFile::Create(path);
  if (!file)
    return Fail(std::move(file.problem));
  const std::filesystem::path place = (*file.value)->GetPath();
  const InterfaceRef<ProjectObject> project(new ProjectObject(std::move(*file.value)));
  project->Start();
  project->SetShownPath(place);
  project->SetUntitled(path.empty());
  if (std::optional<Problem> problem = project->GetStorageProblem())
    return Fail(std::move(*problem));
  return {InterfaceRef<Project>(project), {}};
}

InterfaceRef<Project> Project::CreateInMemory() {
  const InterfaceRef<ProjectObject> project(new ProjectObject(ProjectFile::CreateInMemory()));
  project->Start();
  return project;
}

Result<InterfaceRef<Project>> Project::Open(const std::filesystem::path& path, bool readOnly) {
  readOnly = readOnly || MayOnlyBeRead(path);
  Result<std::unique_ptr<ProjectFile>> file = readOnly ? ProjectFile::OpenCopy(path) : ProjectFile::Open(path);
  if (!file)
    return Fail(std::move(file.problem));
  // Outlives the project that fails to load, to tell why.
  ProjectFile* opened = file.value->get();
  const InterfaceRef<ProjectObject> project(new ProjectObject(std::move(*file.value)));
  try {
    project->Load();
  } catch (const std::exception& failure) {
    return Fail(opened->Describe(failure));
  }
  project->SetShownPath(path);
  project->SetUntitled(IsInDataFolder(path));
  if (readOnly)
    project->SetReadOnly(true);
  return {InterfaceRef<Project>(project), {}};
}

ProjectObject::ProjectObject(std::unique_ptr<ProjectFile> file)
    : mStorage(std::move(file)), mTag(zebcore::utility::Guid::Random().ToText().substr(0, 8)) {
  mStation = zebcore::utility::ImmutableString(std::string_view("project:" + mTag));
}

void ProjectObject::Start() {
  mStorage.GetFile().SetIsRead();
  SetSetting(kSetting_Tag, mTag);
}

ProjectObject::~ProjectObject() {
  mHistoryListener = nullptr;
  mStorage.SetProblemListener(nullptr);
  ProjectObject::Close();
  for (OpenChangeObject* change : mOpenChanges)
    change->Detach();
  for (const auto& [number, stream] : mStreams)
    stream->Detach();
  for (const InterfaceRef<ClipObject>& clip : mClips)
    clip->Detach();
  for (const InterfaceRef<SequenceObject>& sequence : mSequences)
    sequence->Detach();
}

void ProjectObject::Load() {
  ProjectFile& file = mStorage.GetFile();
  ProjectRecord record = file.LoadProject();
  mSettings = std::move(record.settings);
  if (const std::string tag = GetSetting(kSetting_Tag, ""); !tag.empty())
    mTag = tag;
  mStation = zebcore::utility::ImmutableString(std::string_view("project:" + mTag));

  const auto take = [this](ObjectNumber number) { mNextNumber = std::max(mNextNumber, number + 1); };
  std::map<ObjectNumber, InterfaceRef<ClipObject>> clips;
  for (ClipRecord& clip : record.clips) {
    take(clip.number);
    const ObjectNumber number = clip.number;
    mClips.push_back(new ClipObject(this, MakeID(number), std::move(clip)));
    clips[number] = mClips.back();
  }
  const auto findClip = [&clips](ObjectNumber number) {
    const auto found = clips.find(number);
    if (found == clips.end())
      throw std::runtime_error("a clip is missing");
    return found->second;
  };
  for (StreamRecord& stream : record.streams) {
    take(stream.number);
    const ObjectNumber number = stream.number;
    const InterfaceRef<ClipObject> clip = findClip(stream.clip);
    const InterfaceRef<StreamObject> object(new StreamObject(this, clip.Get(), MakeID(number), std::move(stream)));
    if (!object->IsRemoved())
      object->Load(file.LoadCaptions(number));
    clip->AddStream(object);
    mStreams[number] = object;
  }
  for (SequenceRecord& sequence : record.sequences) {
    take(sequence.number);
    for (const SequencePart& part : sequence.parts)
      take(GetNumber(part));
    mSequences.push_back(new SequenceObject(this, mTag, std::move(sequence)));
  }
  file.SetIsRead();
  LoadHistory(std::move(record.steps));
}

std::string ProjectObject::MakeID(ObjectNumber number) const {
  return mTag + "-" + std::to_string(number);
}

UString ProjectObject::GetName() const {
  if (mUntitled || mShownPath.empty())
    return zebcore::config::Localizer::Get().Localize("$$$/Vidra/Project/Untitled=Untitled");
  return zebcore::FromUTF8(mShownPath.stem().string());
}

std::optional<Problem> ProjectObject::SaveAs(const std::filesystem::path& path) {
  BroadcastCommit();
  CommitOpenChanges();
  if (std::optional<Problem> problem = mStorage.SaveAs(path))
    return problem;
  mShownPath = path;
  mUntitled = false;
  SetReadOnly(false);
  return std::nullopt;
}

void ProjectObject::SetReadOnly(bool readOnly) {
  if (readOnly == mReadOnly)
    return;
  if (readOnly)
    CommitOpenChanges();
  mReadOnly = readOnly;
  ReadOnlyStateChangedMessage message;
  message.project = InterfaceRef<IProject>(this);
  message.readOnly = readOnly;
  zebcore::messaging::BroadcastMessage(kBackendProjectActivationStationID, message);
}

void ProjectObject::SetStorageProblemListener(std::function<void(const std::optional<Problem>&)> listener) {
  mStorage.SetProblemListener(std::move(listener));
}

InterfaceRef<MasterClip> ProjectObject::AddClip(const UString& name, const std::filesystem::path& media,
                                                const MediaInfo& info, bool merged) {
  ClipRecord record;
  record.number = TakeNumber();
  record.name = name;
  record.media = media;
  record.info = info;
  record.merged = merged;
  mStorage.Write([record](ProjectFile& file) { file.PutClip(record); });
  mClips.push_back(new ClipObject(this, MakeID(record.number), record));
  ReportBin();
  return mClips.back();
}

std::vector<InterfaceRef<MasterClip>> ProjectObject::GetClips() const {
  std::vector<InterfaceRef<MasterClip>> clips;
  for (const InterfaceRef<ClipObject>& clip : mClips) {
    if (!clip->IsRemoved())
      clips.push_back(clip);
  }
  return clips;
}

InterfaceRef<MasterClip> ProjectObject::FindClip(const std::string& id) const {
  for (const InterfaceRef<ClipObject>& clip : mClips) {
    if (!clip->IsRemoved() && clip->GetID() == id)
      return clip;
  }
  return nullptr;
}

InterfaceRef<Sequence> ProjectObject::AddSequence(const UString& name, FrameRate videoRate, FrameRate audioRate,
                                                  const std::vector<SequenceItem>& items) {
  SequenceRecord record;
  record.number = TakeNumber();
  record.name = name;
  record.videoRate = videoRate;
  record.audioRate = audioRate;
  record.videoDisplay = zebmediatypes::GetTimecodeDisplay(videoRate, true);
  record.audioDisplay = zebmediatypes::kTimeDisplay_AudioSamples;
  for (const SequenceItem& item : items) {
    if (const InterfaceRef<ClipObject> clip = item.clip.Query<ClipObject>())
      record.parts.push_back(ItemRecord{TakeNumber(), clip->GetRecord().number, item.start, item.video, item.audio,
                                        item.track, item.in, item.duration});
  }
  mStorage.Write([record](ProjectFile& file) {
    file.PutSequence(record);
    for (const SequencePart& part : record.parts)
      file.PutPart(record.number, part);
  });
  mSequences.push_back(new SequenceObject(this, mTag, record));
  ReportBin();
  return mSequences.back();
}

std::vector<InterfaceRef<Sequence>> ProjectObject::GetSequences() const {
  std::vector<InterfaceRef<Sequence>> sequences;
  for (const InterfaceRef<SequenceObject>& sequence : mSequences) {
    if (!sequence->IsRemoved())
      sequences.push_back(sequence);
  }
  return sequences;
}

// What lies in the bin is another.
void ProjectObject::ReportBin() const {
  PropertiesChangedMessage message;
  message.records.push_back(
      {InterfaceRef<>(const_cast<ProjectObject*>(this)), zebcore::utility::ImmutableString("bin")});
  zebcore::messaging::BroadcastMessage(mStation, message);
}

void ProjectObject::Close() {
  ProjectObject::CommitOpenChanges();
  mStorage.Close();
}

std::string ProjectObject::GetSetting(const std::string& key, const std::string& defaultValue) const {
  const auto found = mSettings.find(key);
  return found == mSettings.end() ? defaultValue : found->second;
}

void ProjectObject::SetSetting(const std::string& key, const std::string& value) {
  mSettings[key] = value;
  mStorage.Write([key, value](ProjectFile& file) { file.PutSetting(key, value); });
}

} // namespace BE
