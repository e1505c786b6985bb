#include "BE/OpenChangeObject.h"

#include "BE/ProjectObject.h"
#include "zebcaptioning/Spans.h"
#include "zebcore/Boundary.h"
#include "zebcore/Localizer.h"

namespace BE {

using zebcaptioning::CaptionStatePtr;

OpenChangeObject::OpenChangeObject(const InterfaceRef<StreamObject>& stream)
    : mStream(stream), mProject(stream->GetProjectObject()) {
  if (mProject)
    mProject->Register(this);
}

OpenChangeObject::~OpenChangeObject() {
  OpenChangeObject::Commit();
  if (mProject)
    mProject->Unregister(this);
}

void OpenChangeObject::Apply(const std::vector<CaptionDelta>& deltas, const UString& stepName) {
  if (mProject && mProject->IsReadOnly())
    mStream->SendAsTheyAre(deltas);
  else
    Take(mStream->Resolve(deltas), stepName, nullptr);
}

void OpenChangeObject::Add(const boost::intrusive_ptr<zebcaptioning::Caption>& caption, const UString& stepName) {
  if (!caption)
    return;
  CaptionDelta delta;
  delta.after = caption->GetState();
  if (mProject && mProject->IsReadOnly())
    mStream->SendAsTheyAre({delta});
  else
    Take(mStream->Resolve({delta}), stepName, caption);
}

void OpenChangeObject::Take(const std::vector<CaptionDelta>& deltas, const UString& stepName,
                            const boost::intrusive_ptr<zebcaptioning::Caption>& made) {
  if (deltas.empty() || mStream->IsGone())
    return;
  if (mProject)
    mProject->CommitOpenChangesOf(mStream.Get(), this);
  TakeName(stepName);
  for (const CaptionDelta& delta : deltas)
    Merge(delta);
  const CaptionReport report = mStream->Apply(deltas, true, made);
  if (mProject) {
    if (mStep == 0)
      mStep = mProject->TakeNumber();
    Step header;
    header.number = mStep;
    header.name = mName;
    header.stream = mStream->GetNumber();
    std::vector<CaptionDelta> journal;
    for (const CaptionDelta& delta : deltas) {
      const auto merged = mDeltas.find(delta.key);
      if (merged != mDeltas.end())
        journal.push_back(merged->second);
      else
        journal.push_back({delta.key, delta.age, nullptr, nullptr}); // added and removed again
    }
    mProject->GetStorage().Write([header, deltas, journal](ProjectFile& file) {
      file.PutStep(header, StepState::Open, 0);
      for (const CaptionDelta& delta : deltas) {
        if (delta.after)
          file.PutCaption(header.stream, delta.key, delta.age, *delta.after);
        else
          file.EraseCaption(header.stream, delta.key);
      }
      for (const CaptionDelta& delta : journal) {
        if (delta.before || delta.after)
          file.PutDelta(header.number, delta);
        else
          file.EraseDelta(header.number, delta.key);
      }
    });
  }
  mStream->Send(report);
  if (mProject)
    mProject->ReportHistory();
}

void OpenChangeObject::TakeName(const UString& stepName) {
  if (mDeltas.empty())
    mName = stepName;
  else if (mName != stepName)
    mName = zebcore::config::Localizer::Get().Localize("$$$/Vidra/Undo/EditCaptions=Edit captions");
}

void OpenChangeObject::Merge(const CaptionDelta& delta) {
  const auto [at, isNew] = mDeltas.try_emplace(delta.key, delta);
  if (isNew)
    return;
  at->second.after = delta.after;
  if (!at->second.before && !at->second.after)
    mDeltas.erase(at);
}

std::optional<UString> OpenChangeObject::GetStepName() const {
  const bool changes = std::any_of(mDeltas.begin(), mDeltas.end(), [](const auto& entry) {
    return !LooksSame(entry.second.before, entry.second.after);
  });
  return changes ? std::optional<UString>(mName) : std::nullopt;
}

void OpenChangeObject::Commit() {
  zebcore::boundary::Guard("BE::OpenChange::Commit", [this] { MakeStep(); });
}

void OpenChangeObject::MakeStep() {
  if (mStep == 0) {
    mDeltas.clear();
    return;
  }
  Step step;
  step.number = std::exchange(mStep, 0);
  step.name = mName;
  step.stream = mStream->GetNumber();
  step.deltas.emplace();
  std::vector<ICaptioningStream::CaptionKey> unchanged;
  for (const auto& [key, delta] : std::exchange(mDeltas, {})) {
    if (LooksSame(delta.before, delta.after))
      unchanged.push_back(key);
    else
      step.deltas->push_back(delta);
  }
  if (!mProject)
    return;
  const ObjectNumber number = step.number;
  if (step.deltas->empty()) {
    mProject->GetStorage().Write([number](ProjectFile& file) { file.EraseStep(number); });
    mProject->ReportHistory();
    return;
  }
  mProject->PushStep(std::move(step), [number, unchanged](ProjectFile& file) {
    for (const auto& key : unchanged)
      file.EraseDelta(number, key);
  });
}

void OpenChangeObject::Revert() {
  if (mDeltas.empty()) {
    Commit(); // what is left of it is an empty entry in the journal
    return;
  }
  const ObjectNumber step = std::exchange(mStep, 0);
  std::vector<CaptionDelta> deltas;
  for (const auto& [key, delta] : std::exchange(mDeltas, {}))
    deltas.push_back(delta);
  mStream->RefreshMeasures(deltas, false);
  const CaptionReport report = mStream->Apply(deltas, false);
  if (mProject) {
    mProject->GetStorage().Write([step, stream = mStream->GetNumber(), deltas](ProjectFile& file) {
      for (const CaptionDelta& delta : deltas) {
        if (delta.before)
          file.PutCaption(stream, delta.key, delta.age, *delta.before);
        else
          file.EraseCaption(stream, delta.key);
      }
      file.EraseStep(step);
    });
  }
  mStream->Send(report);
  if (mProject)
    mProject->ReportHistory();
}

void OpenChangeObject::TakeMeasure(const CaptioningStream::Measure& measure) {
  const auto found = mDeltas.find(measure.key);
  if (found == mDeltas.end())
    return;
  for (CaptionStatePtr* state : {&found->second.before, &found->second.after}) {
    if (*state)
      *state = zebcaptioning::WithMeasure(**state, measure.lineWidth, measure.blockHeight, measure.frame);
  }
}

} // namespace BE
