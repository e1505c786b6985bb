#include <stdexcept>

#include "BE/ProjectObject.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "zebcore/Boundary.h"

namespace BE {

namespace {

bool IsOfSequence(const Step& step) {
  return step.kind == StepKind::EditSequence || step.kind == StepKind::RemoveSequence;
}

} // namespace

// A change that was open when the process died is a step of its own, on top of all others, unless it came to nothing.
void ProjectObject::LoadHistory(std::vector<StepRecord> steps) {
  std::vector<Step> open;
  for (StepRecord& record : steps) {
    mNextNumber = std::max(mNextNumber, record.step.number + 1);
    mNextPosition = std::max(mNextPosition, record.position + 1);
    if (IsOfSequence(record.step)) {
      if (!FindSequenceObject(record.step.sequence))
        throw std::runtime_error("a step has no sequence");
    } else if (record.step.kind != StepKind::RemoveClip && !mStreams.contains(record.step.stream)) {
      throw std::runtime_error("a step has no stream");
    }
    if (record.state == StepState::Done)
      mDone.push_back(std::move(record.step));
    else if (record.state == StepState::Undone)
      mUndone.push_back(std::move(record.step));
    else
      open.push_back(std::move(record.step));
  }
  std::reverse(mUndone.begin(), mUndone.end());
  for (Step& step : open) {
    if (!Prepare(step))
      throw std::runtime_error("an open change cannot be read");
    std::vector<ICaptioningStream::CaptionKey> unchanged;
    for (const CaptionDelta& delta : *step.deltas) {
      if (LooksSame(delta.before, delta.after))
        unchanged.push_back(delta.key);
    }
    std::erase_if(*step.deltas, [](const CaptionDelta& delta) { return LooksSame(delta.before, delta.after); });
    if (step.deltas->empty()) {
      mStorage.Write([number = step.number](ProjectFile& file) { file.EraseStep(number); });
      continue;
    }
    const ObjectNumber number = step.number;
    PushStep(std::move(step), [number, unchanged](ProjectFile& file) {
      for (const auto& key : unchanged)
        file.EraseDelta(number, key);
    });
  }
}

void ProjectObject::PushStep(Step step, ProjectStorage::Operation storing) {
  ProjectStorage::Operation forgetting = ForgetUndone();
  Step header = step;
  header.deltas.reset();
  mDone.push_back(std::move(step));
  // One operation: whatever happens to the process, either the step is there or what it puts out of reach.
  mStorage.Write([header, forgetting = std::move(forgetting), storing = std::move(storing),
                  position = mNextPosition++](ProjectFile& file) {
    if (forgetting)
      forgetting(file);
    storing(file);
    file.PutStep(header, StepState::Done, position);
  });
  ReportHistory();
}

// With the streams that only those steps could have brought back. Answers with what is to be written of that, if
// anything.
ProjectStorage::Operation ProjectObject::ForgetUndone() {
  if (mUndone.empty())
    return nullptr;
  std::vector<ObjectNumber> steps;
  std::vector<ObjectNumber> streams;
  for (const Step& step : std::exchange(mUndone, {})) {
    steps.push_back(step.number);
    if (step.kind == StepKind::AddStream)
      streams.push_back(step.stream);
  }
  for (const ObjectNumber number : streams) {
    const InterfaceRef<StreamObject> stream = mStreams[number];
    mStreams.erase(number);
    if (ClipObject* clip = stream->GetClipObject())
      clip->DropStream(stream.Get());
    stream->Detach();
  }
  return [steps, streams](ProjectFile& file) {
    for (const ObjectNumber step : steps)
      file.EraseStep(step);
    for (const ObjectNumber stream : streams)
      file.EraseStream(stream);
  };
}

bool ProjectObject::Prepare(Step& step) {
  if (!step.deltas) {
    step.deltas =
        mStorage.Read<std::vector<CaptionDelta>>([&step](ProjectFile& file) { return file.LoadDeltas(step.number); });
    if (!step.deltas)
      return false;
    if (step.kind == StepKind::EditSequence) {
      auto parts = mStorage.Read<std::vector<SequencePartDelta>>(
          [&step](ProjectFile& file) { return file.LoadPartDeltas(step.number); });
      if (!parts) {
        step.deltas.reset();
        return false;
      }
      step.parts = std::move(*parts);
    }
  }
  if (step.kind == StepKind::RemoveClip || IsOfSequence(step))
    return true;
  const InterfaceRef<StreamObject>& stream = mStreams[step.stream];
  if (!stream->IsLoaded()) {
    const auto captions = mStorage.Read<std::vector<StoredCaption>>(
        [&step](ProjectFile& file) { return file.LoadCaptions(step.stream); });
    if (!captions)
      return false;
    stream->Load(*captions);
  }
  return true;
}

ProjectObject::Report ProjectObject::Perform(const Step& step, bool forward) {
  if (step.kind == StepKind::RemoveClip) {
    for (const InterfaceRef<ClipObject>& clip : mClips) {
      if (clip->GetRecord().number == step.clip)
        clip->SetRemoved(forward);
    }
    return [this] { ReportBin(); };
  }
  if (IsOfSequence(step)) {
    const InterfaceRef<SequenceObject> sequence = FindSequenceObject(step.sequence);
    if (step.kind == StepKind::RemoveSequence) {
      sequence->SetRemoved(forward);
      return [this] { ReportBin(); };
    }
    sequence->Apply(step.parts, forward);
    return [sequence] { sequence->ReportParts(); };
  }
  const InterfaceRef<StreamObject> stream = mStreams[step.stream];
  const InterfaceRef<ClipObject> clip(stream->GetClipObject());
  switch (step.kind) {
  case StepKind::AddStream:
  case StepKind::RemoveStream: {
    const bool removes = forward == (step.kind == StepKind::RemoveStream);
    stream->SetRemoved(removes);
    return [clip, stream, removes] {
      if (!removes) {
        clip->ReportStreams(stream);
        return;
      }
      const std::vector<InterfaceRef<CaptioningStream>> left = clip->GetStreams();
      clip->ReportStreams(left.empty() ? nullptr : InterfaceRef<ICaptioningStream>(left.front()));
    };
  }
  case StepKind::ChangeFormat:
    stream->SetFormat(forward ? step.newFormat : step.oldFormat);
    stream->Apply(*step.deltas, forward);
    return [stream, old = forward ? step.oldFormat : step.newFormat] {
      CaptionStreamFormatModifiedMessage message;
      message.stream = stream;
      message.oldFormat = static_cast<std::int32_t>(old);
      zebcore::messaging::BroadcastMessage(stream->GetStationID(), message);
      stream->SendStreamChanged();
    };
  default:
    return [stream, report = stream->Apply(*step.deltas, forward)] { stream->Send(report); };
  }
}

void ProjectObject::Store(const Step& step, bool forward) {
  if (IsOfSequence(step)) {
    StoreSequence(step, forward);
    return;
  }
  StreamRecord stream;
  ClipRecord clip;
  if (step.kind == StepKind::RemoveClip) {
    for (const InterfaceRef<ClipObject>& each : mClips) {
      if (each->GetRecord().number == step.clip)
        clip = each->GetRecord();
    }
  } else {
    stream = mStreams[step.stream]->GetRecord();
  }
  mStorage.Write(
      [number = step.number, kind = step.kind, deltas = *step.deltas, stream, clip, forward](ProjectFile& file) {
        for (const CaptionDelta& delta : deltas) {
          const zebcaptioning::CaptionStatePtr& state = forward ? delta.after : delta.before;
          if (state)
            file.PutCaption(stream.number, delta.key, delta.age, *state);
          else
            file.EraseCaption(stream.number, delta.key);
        }
        if (kind == StepKind::RemoveClip)
          file.PutClip(clip);
        else if (kind != StepKind::EditCaptions)
          file.PutStream(stream);
        file.SetStepState(number, forward ? StepState::Done : StepState::Undone);
      });
}

void ProjectObject::StoreSequence(const Step& step, bool forward) {
  mStorage.Write([number = step.number, parts = step.parts, forward,
                  record = FindSequenceObject(step.sequence)->GetRecord()](ProjectFile& file) {
    for (const SequencePartDelta& delta : parts) {
      const std::optional<SequencePart>& part = forward ? delta.after : delta.before;
      if (part)
        file.PutPart(record.number, *part);
      else
        file.ErasePart(GetNumber(delta.before ? *delta.before : *delta.after));
    }
    file.PutSequence(record);
    file.SetStepState(number, forward ? StepState::Done : StepState::Undone);
  });
}

bool ProjectObject::Move(std::vector<Step>& from, std::vector<Step>& to, bool forward) {
  if (mReadOnly)
    return false;
  // What listeners do to the project must not pull it from under this operation.
  const InterfaceRef<Project> alive(this);
  BroadcastCommit();
  CommitOpenChanges();
  if (from.empty() || !Prepare(from.back()))
    return false;
  Step step = std::move(from.back());
  from.pop_back();
  if (step.kind == StepKind::EditCaptions)
    mStreams[step.stream]->RefreshMeasures(*step.deltas, forward);
  const Report report = Perform(step, forward);
  Store(step, forward);
  to.push_back(std::move(step));
  report();
  ReportHistory();
  return true;
}

bool ProjectObject::Undo() {
  return Move(mDone, mUndone, false);
}
bool ProjectObject::Redo() {
  return Move(mUndone, mDone, true);
}

bool ProjectObject::CanUndo() const {
  return !mReadOnly && (!mDone.empty() || GetOpenChangeName());
}
bool ProjectObject::CanRedo() const {
  return !mReadOnly && !mUndone.empty() && !GetOpenChangeName();
}

std::vector<UString> ProjectObject::GetUndoNames() const {
  std::vector<UString> names;
  for (auto step = mDone.rbegin(); step != mDone.rend(); ++step)
    names.push_back(step->name);
  return names;
}

std::vector<UString> ProjectObject::GetRedoNames() const {
  std::vector<UString> names;
  for (auto step = mUndone.rbegin(); step != mUndone.rend(); ++step)
    names.push_back(step->name);
  return names;
}

std::optional<UString> ProjectObject::GetOpenChangeName() const {
  for (const OpenChangeObject* change : mOpenChanges) {
    if (std::optional<UString> name = change->GetStepName())
      return name;
  }
  return std::nullopt;
}

void ProjectObject::BroadcastCommit() {
  zebcore::messaging::BroadcastMessage(HSL::kStation_CaptionSelection, HSL::CaptionCommitEditsMessage());
}

void ProjectObject::CommitOpenChanges() {
  CommitOpenChangesOf(nullptr, nullptr);
}

// Committing makes its step and tells the history's listener, which may open and close changes of its own: hence a
// copy.
void ProjectObject::CommitOpenChangesOf(const StreamObject* stream, const OpenChangeObject* butThis) {
  const std::vector<OpenChangeObject*> changes = mOpenChanges;
  for (OpenChangeObject* change : changes) {
    const bool isThere = std::find(mOpenChanges.begin(), mOpenChanges.end(), change) != mOpenChanges.end();
    if (isThere && change != butThis && (!stream || change->GetStream().Get() == stream))
      change->Commit();
  }
}

void ProjectObject::ReportHistory() const {
  if (mHistoryListener)
    zebcore::boundary::Guard("BE::Project history", mHistoryListener);
}

} // namespace BE
