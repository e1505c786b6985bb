#include "BE/Problems.h"
#include "BE/ProjectObject.h"
#include "zebcore/Localizer.h"

namespace BE {

namespace {

void PutDeltas(ProjectFile& file, ObjectNumber stream, ObjectNumber step, const std::vector<CaptionDelta>& deltas) {
  for (const CaptionDelta& delta : deltas) {
    if (delta.after)
      file.PutCaption(stream, delta.key, delta.age, *delta.after);
    else
      file.EraseCaption(stream, delta.key);
    file.PutDelta(step, delta);
  }
}

} // namespace

InterfaceRef<StreamObject> ProjectObject::Own(const InterfaceRef<CaptioningStream>& stream) const {
  const InterfaceRef<StreamObject> object = stream.Query<StreamObject>();
  return object && object->GetProjectObject() == this && !object->IsGone() ? object : nullptr;
}

std::optional<Problem> ProjectObject::FindStreamProblem(const InterfaceRef<ClipObject>& clip,
                                                        StreamFormat format) const {
  if (mReadOnly)
    return MakeProblem(
        "$$$/Vidra/Project/IsReadOnly=The project \u201c%1\u201d is open for reading only. Save it under "
        "another name to change it.",
        {zebcore::ToUTF8(GetName())});
  if (!clip || clip->IsRemoved())
    return MakeProblem("$$$/Vidra/Project/NoClip=There is no clip to put captions on. Select one first.", {});
  if (format == zebcaptioning::kStreamFormat_None || format == zebcaptioning::kStreamFormat_608)
    return MakeProblem("$$$/Vidra/Project/NoSuchFormat=Captions cannot be kept in that format. Choose another one.",
                       {});
  if (clip->FindStream(format))
    return MakeProblem(
        "$$$/Vidra/Project/FormatTaken=The clip \u201c%1\u201d has captions in the format %2 already. Choose "
        "another channel or format, or delete those first.",
        {zebcore::ToUTF8(clip->GetName()), zebcore::ToUTF8(zebcaptioning::GetFullStreamFormatLabel(format))});
  return std::nullopt;
}

Result<InterfaceRef<CaptioningStream>> ProjectObject::AddStream(const InterfaceRef<MasterClip>& clip,
                                                                const StreamDescription& description,
                                                                const std::vector<NewCaption>& captions,
                                                                const UString& stepName) {
  const InterfaceRef<ClipObject> holder = clip.Query<ClipObject>();
  if (std::optional<Problem> problem = FindStreamProblem(holder, description.format))
    return {std::nullopt, std::move(*problem)};
  CommitOpenChanges();

  StreamRecord record;
  record.number = TakeNumber();
  record.clip = holder->GetRecord().number;
  record.description = description;
  const InterfaceRef<StreamObject> stream(new StreamObject(this, holder.Get(), MakeID(record.number), record));
  std::vector<StoredCaption> stored;
  stored.reserve(captions.size());
  for (const NewCaption& caption : captions) {
    if (caption.state)
      stored.push_back(stream->MakeStoredCaption(caption.state));
  }
  stream->Load(stored);
  mStreams[record.number] = stream;
  holder->AddStream(stream);

  Step step;
  step.number = TakeNumber();
  step.kind = StepKind::AddStream;
  step.name = stepName;
  step.stream = record.number;
  step.deltas.emplace();
  PushStep(std::move(step), [record, stored = std::move(stored)](ProjectFile& file) {
    file.PutStream(record);
    for (const StoredCaption& caption : stored)
      file.PutCaption(record.number, caption.key, caption.age, *caption.state);
  });
  holder->ReportStreams(stream);
  return {InterfaceRef<CaptioningStream>(stream), {}};
}

void ProjectObject::RemoveStream(const InterfaceRef<CaptioningStream>& stream, const UString& stepName) {
  const InterfaceRef<StreamObject> object = Own(stream);
  if (!object || mReadOnly)
    return;
  CommitOpenChanges();
  Step step;
  step.number = TakeNumber();
  step.kind = StepKind::RemoveStream;
  step.name = stepName;
  step.stream = object->GetNumber();
  step.deltas.emplace();
  const Report report = Perform(step, true);
  PushStep(std::move(step), [record = object->GetRecord()](ProjectFile& file) { file.PutStream(record); });
  report();
}

void ProjectObject::RemoveClip(const InterfaceRef<MasterClip>& clip) {
  const InterfaceRef<ClipObject> object = clip.Query<ClipObject>();
  if (!object || object->IsRemoved() || mReadOnly || object->GetProject() != InterfaceRef<Project>(this))
    return;
  CommitOpenChanges();
  Step step;
  step.number = TakeNumber();
  step.kind = StepKind::RemoveClip;
  step.name = zebcore::config::Localizer::Get().Localize("$$$/Vidra/Undo/RemoveClip=Remove clip");
  step.clip = object->GetRecord().number;
  step.deltas.emplace();
  const Report report = Perform(step, true);
  PushStep(std::move(step), [record = object->GetRecord()](ProjectFile& file) { file.PutClip(record); });
  report();
}

std::optional<Problem> ProjectObject::ChangeStreamFormat(const InterfaceRef<CaptioningStream>& stream,
                                                         StreamFormat format, const UString& stepName) {
  const InterfaceRef<StreamObject> object = Own(stream);
  if (!object)
    return MakeProblem("$$$/Vidra/Project/NoStream=Those captions are no longer in the project.", {});
  if (object->GetStreamFormat() == format)
    return std::nullopt;
  const InterfaceRef<ClipObject> clip(object->GetClipObject());
  if (std::optional<Problem> problem = FindStreamProblem(clip, format))
    return problem;
  CommitOpenChanges();
  Step step;
  step.number = TakeNumber();
  step.kind = StepKind::ChangeFormat;
  step.name = stepName;
  step.stream = object->GetNumber();
  step.oldFormat = object->GetStreamFormat();
  step.newFormat = format;
  step.deltas = object->Resolve(object->MakeFormatDeltas(format));
  const Report report = Perform(step, true);
  PushStep(step, [step, record = object->GetRecord()](ProjectFile& file) {
    file.PutStream(record);
    PutDeltas(file, step.stream, step.number, *step.deltas);
  });
  report();
  return std::nullopt;
}

InterfaceRef<CaptioningStream> ProjectObject::FindStream(const std::string& id) const {
  for (const auto& [number, stream] : mStreams) {
    if (!stream->IsGone() && stream->GetID() == id)
      return stream;
  }
  return nullptr;
}

void ProjectObject::PushEdit(const InterfaceRef<StreamObject>& stream, std::vector<CaptionDelta> deltas,
                             const UString& stepName) {
  Step step;
  step.number = TakeNumber();
  step.name = stepName;
  step.stream = stream->GetNumber();
  step.deltas = deltas;
  const ObjectNumber number = step.number;
  PushStep(std::move(step), [number, stream = stream->GetNumber(), deltas = std::move(deltas)](ProjectFile& file) {
    PutDeltas(file, stream, number, deltas);
  });
}

void ProjectObject::EditCaptions(const InterfaceRef<CaptioningStream>& stream, const std::vector<CaptionDelta>& deltas,
                                 const UString& stepName) {
  const InterfaceRef<StreamObject> object = Own(stream);
  if (!object || mReadOnly)
    return;
  CommitOpenChanges();
  std::vector<CaptionDelta> resolved = object->Resolve(deltas);
  if (resolved.empty())
    return;
  const CaptionReport report = object->Apply(resolved, true);
  PushEdit(object, std::move(resolved), stepName);
  object->Send(report);
}

void ProjectObject::ShiftCaptions(const InterfaceRef<CaptioningStream>& stream, TickTime from, TickTime to,
                                  TickTime offset, const UString& stepName) {
  const InterfaceRef<StreamObject> object = Own(stream);
  if (!object || mReadOnly)
    return;
  CommitOpenChanges();
  std::vector<CaptionDelta> resolved = object->Resolve(object->MakeShiftDeltas(from, to, offset));
  if (resolved.empty())
    return;
  object->Apply(resolved, true);
  PushEdit(object, std::move(resolved), stepName);
  CaptionsMovedMessage moved;
  moved.ranges.push_back({object, from, to, offset});
  zebcore::messaging::BroadcastMessage(object->GetStationID(), moved);
  object->SendStreamChanged();
}

} // namespace BE
