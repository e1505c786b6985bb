#include <algorithm>

#include "App/Session.h"
#include "App/session/Streams.h"
#include "App/session/Text.h"
#include "zebcore/Localizer.h"

// Sequences, as the program makes and changes them.
namespace App {

using zebmediatypes::TickTime;

namespace {

constexpr int kSampleRate = 48000;
constexpr std::int64_t kStillSeconds = 5;

zebcore::UString Named(std::string_view keyWithDefault) {
  return zebcore::FromUTF8(Text(keyWithDefault));
}

// The name, with a number behind it where another sequence bears it.
std::string NotYetTaken(const std::string& name, const BE::Project& project) {
  const auto sequences = project.GetSequences();
  const auto isTaken = [&](const std::string& wanted) {
    return std::any_of(sequences.begin(), sequences.end(),
                       [&](const auto& each) { return zebcore::ToUTF8(each->GetName()) == wanted; });
  };
  std::string free = name;
  for (int number = 2; isTaken(free); ++number)
    free = name + " " + std::to_string(number);
  return free;
}

} // namespace

BE::Project::SequenceItem MakeSequenceItem(const InterfaceRef<BE::MasterClip>& clip, TickTime start, int track) {
  const BE::MediaInfo& info = clip->GetMediaInfo();
  BE::Project::SequenceItem item;
  item.clip = clip;
  item.start = start;
  item.video = info.width > 0;
  item.audio = info.sampleRate > 0;
  item.track = track;
  item.duration = info.duration;
  if (info.still && info.duration <= TickTime())
    item.duration = TickTime(kStillSeconds * zebmediatypes::kTicksPerSecond);
  return item;
}

InterfaceRef<BE::Sequence> Session::NewSequence(const InterfaceRef<BE::MasterClip>& clip) {
  if (!mProject || mProject->IsReadOnly())
    return nullptr;
  zebmediatypes::FrameRate rate = zebmediatypes::kFrameRate_25;
  int sampleRate = kSampleRate;
  std::vector<BE::Project::SequenceItem> items;
  std::string name;
  bool dropFrame = true;
  if (clip) {
    const BE::MediaInfo& info = clip->GetMediaInfo();
    if (info.width > 0 && info.frameRate.IsValid()) {
      rate = info.frameRate;
      dropFrame = info.dropFrame;
    }
    if (info.sampleRate > 0)
      sampleRate = info.sampleRate;
    items.push_back(MakeSequenceItem(clip, TickTime(), 0));
    name = std::filesystem::path(zebcore::ToUTF8(clip->GetName())).stem().string();
  }
  if (name.empty())
    name = Text("$$$/Vidra/Captivo/Sequence/Name=Sequence {1}", {std::to_string(mProject->GetSequences().size() + 1)});
  name = NotYetTaken(name, *mProject);
  const auto sequence = mProject->AddSequence(zebcore::FromUTF8(name), rate,
                                              zebmediatypes::FrameRate::FromRational(sampleRate, 1), items);
  if (sequence && clip)
    sequence->SetTimeDisplays(zebmediatypes::GetTimecodeDisplay(rate, dropFrame), sequence->GetAudioTimeDisplay());
  return sequence;
}

void Session::RemoveSequence(const InterfaceRef<BE::Sequence>& sequence) {
  Commit();
  if (mProject)
    mProject->RemoveSequence(sequence);
}

InterfaceRef<BE::TrackItem> Session::PutClip(const InterfaceRef<BE::Sequence>& sequence,
                                             const InterfaceRef<BE::MasterClip>& clip, TickTime start, int track) {
  if (!mProject || !clip)
    return nullptr;
  Commit();
  return mProject->InsertItem(sequence, MakeSequenceItem(clip, start, track),
                              Named("$$$/Vidra/Captivo/Step/PutClip=Add to Sequence"));
}

void Session::MoveItems(const InterfaceRef<BE::Sequence>& sequence, const std::vector<BE::Project::ItemPlace>& places) {
  if (!mProject)
    return;
  Commit();
  mProject->MoveItems(sequence, places, Named("$$$/Vidra/Captivo/Step/MoveItem=Move in Sequence"));
}

void Session::RemoveItem(const InterfaceRef<BE::Sequence>& sequence, const InterfaceRef<BE::TrackItem>& item) {
  if (!mProject)
    return;
  Commit();
  mProject->RemoveItems(sequence, {item}, Named("$$$/Vidra/Captivo/Step/RemoveItem=Delete from Sequence"));
}

InterfaceRef<BE::Transition> Session::AddDissolve(const InterfaceRef<BE::Sequence>& sequence,
                                                  const InterfaceRef<BE::TrackItem>& left,
                                                  const InterfaceRef<BE::TrackItem>& right) {
  if (!mProject)
    return nullptr;
  Commit();
  return mProject->AddTransition(sequence, left, right, TickTime(zebmediatypes::kTicksPerSecond),
                                 Named("$$$/Vidra/Captivo/Step/AddDissolve=Add Cross Dissolve"));
}

void Session::RemoveTransition(const InterfaceRef<BE::Sequence>& sequence,
                               const InterfaceRef<BE::Transition>& transition) {
  if (!mProject)
    return;
  Commit();
  mProject->RemoveTransition(sequence, transition, Named("$$$/Vidra/Captivo/Step/RemoveTransition=Delete Transition"));
}

} // namespace App
