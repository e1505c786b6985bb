#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "BE/Project.h"

// What the project file holds, as plain values. Objects are numbered within their project, from 1; a number is never
// given twice.
namespace BE {

using ObjectNumber = std::int64_t;

struct ClipRecord {
  ObjectNumber number = 0;
  UString name;
  std::filesystem::path media;
  MediaInfo info;
  bool merged = false;
  bool removed = false; // by a step that can be undone
};

// A stretch of a clip on a track of a sequence.
struct ItemRecord {
  ObjectNumber number = 0;
  ObjectNumber clip = 0;
  TickTime start;
  bool video = true;
  bool audio = true;
  int track = 0;     // from 0, of video and audio alike
  TickTime in;       // from the clip's first frame to the first one that is shown
  TickTime duration; // 0: all that follows of the clip

  friend bool operator==(const ItemRecord&, const ItemRecord&) = default;
};

// A dissolve between two items that meet, half of it before the cut.
struct TransitionRecord {
  ObjectNumber number = 0;
  ObjectNumber left = 0;
  ObjectNumber right = 0;
  TickTime duration;

  friend bool operator==(const TransitionRecord&, const TransitionRecord&) = default;
};

using SequencePart = std::variant<ItemRecord, TransitionRecord>;

inline ObjectNumber GetNumber(const SequencePart& part) {
  return std::visit([](const auto& record) { return record.number; }, part);
}

// One part of a sequence before and after a change; nothing where it did not exist.
struct SequencePartDelta {
  std::optional<SequencePart> before;
  std::optional<SequencePart> after;
};

struct SequenceRecord {
  ObjectNumber number = 0;
  UString name;
  FrameRate videoRate;
  FrameRate audioRate;
  TimeDisplay videoDisplay;
  TimeDisplay audioDisplay;
  bool removed = false;            // by a step that can be undone
  std::vector<SequencePart> parts; // by number
};

struct StreamRecord {
  ObjectNumber number = 0;
  ObjectNumber clip = 0;
  StreamDescription description;
  bool removed = false;
};

struct StoredCaption {
  ICaptioningStream::CaptionKey key;
  std::uint64_t age = 0;
  zebcaptioning::CaptionStatePtr state;
};

enum class StepKind : int {
  EditCaptions = 0,
  AddStream = 1,
  RemoveStream = 2,
  ChangeFormat = 3,
  RemoveClip = 4,
  EditSequence = 5,
  RemoveSequence = 6
};

// One undoable step. It holds what it touched and nothing else.
struct Step {
  ObjectNumber number = 0;
  StepKind kind = StepKind::EditCaptions;
  UString name;
  ObjectNumber stream = 0;
  ObjectNumber clip = 0;                                      // RemoveClip
  ObjectNumber sequence = 0;                                  // EditSequence, RemoveSequence
  StreamFormat oldFormat = zebcaptioning::kStreamFormat_None; // ChangeFormat
  StreamFormat newFormat = zebcaptioning::kStreamFormat_None;
  std::optional<std::vector<CaptionDelta>> deltas; // nothing: they are in the file only
  std::vector<SequencePartDelta> parts;            // EditSequence; there if deltas are
};

enum class StepState : int { Done = 0, Undone = 1, Open = 2 };

struct StepRecord {
  Step step;
  StepState state = StepState::Done;
  std::int64_t position = 0; // ascending from the oldest step
};

struct ProjectRecord {
  std::map<std::string, std::string> settings;
  std::vector<ClipRecord> clips;
  std::vector<SequenceRecord> sequences;
  std::vector<StreamRecord> streams;
  std::vector<StepRecord> steps; // by position, then number; without deltas
};

} // namespace BE
