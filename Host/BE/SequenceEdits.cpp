#include <algorithm>
#include <map>
#include <set>

#include "BE/ProjectObject.h"
#include "zebcore/Localizer.h"

// Edits of sequences. Each works out what the sequence is to hold afterwards; what is different makes the step.
namespace BE {

namespace {

struct Parts {
  std::map<ObjectNumber, ItemRecord> items;
  std::map<ObjectNumber, TransitionRecord> transitions;
};

using MakeNumber = std::function<ObjectNumber()>;

Parts PartsOf(const SequenceObject& sequence) {
  Parts parts;
  // With the length that it has now, so that a cut has something to shorten.
  for (const auto& [number, item] : sequence.GetItemObjects())
    parts.items[number] = item->GetRecord();
  for (const auto& [number, transition] : sequence.GetTransitionObjects())
    parts.transitions[number] = transition->GetRecord();
  return parts;
}

TickTime LengthOf(const ItemRecord& item, const ProjectObject& project) {
  if (item.duration > TickTime())
    return item.duration;
  const InterfaceRef<ClipObject> clip = project.FindClipObject(item.clip);
  return clip ? std::max(clip->GetMediaInfo().duration - item.in, TickTime()) : TickTime();
}

bool ShareTrack(const ItemRecord& a, const ItemRecord& b) {
  return a.track == b.track && ((a.video && b.video) || (a.audio && b.audio));
}

// Takes [from, to) out of the item. Answers with what is left behind it, if it is cut in two.
std::optional<ItemRecord> Cut(ItemRecord& item, TickTime length, TickTime from, TickTime to) {
  const TickTime end = item.start + length;
  std::optional<ItemRecord> behind;
  if (end > to) {
    behind = item;
    behind->in = item.in + (to - item.start);
    behind->start = to;
    behind->duration = end - to;
  }
  item.duration = std::max(from - item.start, TickTime()); // nothing is left of it at 0
  return behind;
}

void MakeRoom(Parts& parts, const std::set<ObjectNumber>& placed, const ProjectObject& project,
              const MakeNumber& makeNumber) {
  std::vector<ItemRecord> behind;
  for (const ObjectNumber number : placed) {
    const ItemRecord& above = parts.items.at(number);
    const TickTime from = above.start;
    const TickTime to = from + LengthOf(above, project);
    for (auto at = parts.items.begin(); at != parts.items.end();) {
      ItemRecord& item = at->second;
      const TickTime length = LengthOf(item, project);
      if (placed.contains(at->first) || !ShareTrack(above, item) || item.start >= to || item.start + length <= from) {
        ++at;
        continue;
      }
      std::optional<ItemRecord> rest = Cut(item, length, from, to);
      const bool isGone = item.duration == TickTime();
      if (rest && isGone)
        item = *rest;
      else if (rest)
        behind.push_back(*rest);
      at = isGone && !rest ? parts.items.erase(at) : std::next(at);
    }
    for (ItemRecord& rest : behind) {
      rest.number = makeNumber();
      parts.items[rest.number] = rest;
    }
    behind.clear();
  }
}

bool Meet(const ItemRecord& left, const ItemRecord& right, const ProjectObject& project) {
  return left.number != right.number && left.video && right.video && left.track == right.track &&
         left.start + LengthOf(left, project) == right.start;
}

void DropLooseTransitions(Parts& parts, const ProjectObject& project) {
  std::erase_if(parts.transitions, [&](const auto& entry) {
    const auto left = parts.items.find(entry.second.left);
    const auto right = parts.items.find(entry.second.right);
    return left == parts.items.end() || right == parts.items.end() || !Meet(left->second, right->second, project);
  });
}

template <class T>
void AddDeltas(const std::map<ObjectNumber, T>& before, const std::map<ObjectNumber, T>& after,
               std::vector<SequencePartDelta>& deltas) {
  for (const auto& [number, part] : before) {
    const auto now = after.find(number);
    if (now == after.end())
      deltas.push_back({part, std::nullopt});
    else if (!(now->second == part))
      deltas.push_back({part, now->second});
  }
  for (const auto& [number, part] : after) {
    if (!before.contains(number))
      deltas.push_back({std::nullopt, part});
  }
}

std::vector<SequencePartDelta> DeltasBetween(const Parts& before, const Parts& after) {
  std::vector<SequencePartDelta> deltas;
  AddDeltas(before.items, after.items, deltas);
  AddDeltas(before.transitions, after.transitions, deltas);
  return deltas;
}

// The number of an object of the sequence; 0 for any other.
template <class T, class Map> ObjectNumber NumberOf(const Map& objects, const InterfaceRef<T>& object) {
  for (const auto& [number, each] : objects) {
    if (object && each->GetID() == object->GetID())
      return number;
  }
  return 0;
}

} // namespace

InterfaceRef<SequenceObject> ProjectObject::Own(const InterfaceRef<Sequence>& sequence) const {
  const InterfaceRef<SequenceObject> object = sequence.Query<SequenceObject>();
  return object && object->GetProjectObject() == this && !object->IsRemoved() && !mReadOnly ? object : nullptr;
}

InterfaceRef<ClipObject> ProjectObject::FindClipObject(ObjectNumber number) const {
  for (const InterfaceRef<ClipObject>& clip : mClips) {
    if (clip->GetRecord().number == number)
      return clip;
  }
  return nullptr;
}

void ProjectObject::PushSequenceEdit(const InterfaceRef<SequenceObject>& sequence,
                                     std::vector<SequencePartDelta> deltas, const UString& stepName) {
  if (deltas.empty())
    return;
  CommitOpenChanges();
  Step step;
  step.number = TakeNumber();
  step.kind = StepKind::EditSequence;
  step.name = stepName;
  step.sequence = sequence->GetRecord().number;
  step.deltas.emplace();
  step.parts = std::move(deltas);
  const Report report = Perform(step, true);
  PushStep(step, [step](ProjectFile& file) {
    for (const SequencePartDelta& delta : step.parts) {
      if (delta.after)
        file.PutPart(step.sequence, *delta.after);
      else
        file.ErasePart(GetNumber(*delta.before));
      file.PutPartDelta(step.number, delta);
    }
  });
  report();
}

InterfaceRef<TrackItem> ProjectObject::InsertItem(const InterfaceRef<Sequence>& sequence, const SequenceItem& item,
                                                  const UString& stepName) {
  const InterfaceRef<SequenceObject> object = Own(sequence);
  const InterfaceRef<ClipObject> clip = item.clip.Query<ClipObject>();
  if (!object || !clip || clip->GetProject() != InterfaceRef<Project>(this))
    return nullptr;
  const Parts before = PartsOf(*object);
  Parts after = before;
  const ObjectNumber number = TakeNumber();
  after.items[number] = {number,     clip->GetRecord().number, std::max(item.start, TickTime()), item.video,
                         item.audio, std::max(item.track, 0),  std::max(item.in, TickTime()),    item.duration};
  MakeRoom(after, {number}, *this, [this] { return TakeNumber(); });
  DropLooseTransitions(after, *this);
  PushSequenceEdit(object, DeltasBetween(before, after), stepName);
  return object->GetItemObjects().at(number);
}

void ProjectObject::MoveItems(const InterfaceRef<Sequence>& sequence, const std::vector<ItemPlace>& places,
                              const UString& stepName) {
  const InterfaceRef<SequenceObject> object = Own(sequence);
  if (!object)
    return;
  const Parts before = PartsOf(*object);
  Parts after = before;
  std::set<ObjectNumber> placed;
  for (const ItemPlace& place : places) {
    const ObjectNumber number = NumberOf(object->GetItemObjects(), place.item);
    if (number == 0)
      continue;
    after.items[number].start = std::max(place.start, TickTime());
    after.items[number].track = std::max(place.track, 0);
    placed.insert(number);
  }
  MakeRoom(after, placed, *this, [this] { return TakeNumber(); });
  DropLooseTransitions(after, *this);
  PushSequenceEdit(object, DeltasBetween(before, after), stepName);
}

void ProjectObject::RemoveItems(const InterfaceRef<Sequence>& sequence,
                                const std::vector<InterfaceRef<TrackItem>>& items, const UString& stepName) {
  const InterfaceRef<SequenceObject> object = Own(sequence);
  if (!object)
    return;
  const Parts before = PartsOf(*object);
  Parts after = before;
  for (const InterfaceRef<TrackItem>& item : items)
    after.items.erase(NumberOf(object->GetItemObjects(), item));
  DropLooseTransitions(after, *this);
  PushSequenceEdit(object, DeltasBetween(before, after), stepName);
}

InterfaceRef<Transition> ProjectObject::AddTransition(const InterfaceRef<Sequence>& sequence,
                                                      const InterfaceRef<TrackItem>& left,
                                                      const InterfaceRef<TrackItem>& right, TickTime duration,
                                                      const UString& stepName) {
  const InterfaceRef<SequenceObject> object = Own(sequence);
  if (!object || duration <= TickTime())
    return nullptr;
  const Parts before = PartsOf(*object);
  const auto first = before.items.find(NumberOf(object->GetItemObjects(), left));
  const auto second = before.items.find(NumberOf(object->GetItemObjects(), right));
  if (first == before.items.end() || second == before.items.end() || !Meet(first->second, second->second, *this))
    return nullptr;
  Parts after = before;
  std::erase_if(after.transitions, [&](const auto& entry) {
    return entry.second.left == first->first && entry.second.right == second->first;
  });
  const ObjectNumber number = TakeNumber();
  after.transitions[number] = {number, first->first, second->first,
                               std::min({duration, LengthOf(first->second, *this), LengthOf(second->second, *this)})};
  PushSequenceEdit(object, DeltasBetween(before, after), stepName);
  return object->GetTransitionObjects().at(number);
}

void ProjectObject::RemoveTransition(const InterfaceRef<Sequence>& sequence, const InterfaceRef<Transition>& transition,
                                     const UString& stepName) {
  const InterfaceRef<SequenceObject> object = Own(sequence);
  if (!object)
    return;
  const Parts before = PartsOf(*object);
  Parts after = before;
  after.transitions.erase(NumberOf(object->GetTransitionObjects(), transition));
  PushSequenceEdit(object, DeltasBetween(before, after), stepName);
}

void ProjectObject::RemoveSequence(const InterfaceRef<Sequence>& sequence) {
  const InterfaceRef<SequenceObject> object = Own(sequence);
  if (!object)
    return;
  CommitOpenChanges();
  Step step;
  step.number = TakeNumber();
  step.kind = StepKind::RemoveSequence;
  step.name = zebcore::config::Localizer::Get().Localize("$$$/Vidra/Undo/RemoveSequence=Remove sequence");
  step.sequence = object->GetRecord().number;
  step.deltas.emplace();
  const Report report = Perform(step, true);
  PushStep(std::move(step), [record = object->GetRecord()](ProjectFile& file) { file.PutSequence(record); });
  report();
}

InterfaceRef<SequenceObject> ProjectObject::FindSequenceObject(ObjectNumber number) const {
  for (const InterfaceRef<SequenceObject>& sequence : mSequences) {
    if (sequence->GetRecord().number == number)
      return sequence;
  }
  return nullptr;
}

InterfaceRef<Sequence> ProjectObject::FindSequence(const std::string& id) const {
  for (const InterfaceRef<SequenceObject>& sequence : mSequences) {
    if (!sequence->IsRemoved() && sequence->GetID() == id)
      return sequence;
  }
  return nullptr;
}

} // namespace BE
