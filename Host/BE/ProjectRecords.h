#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
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

struct SequenceRecord {
  struct Item {
    ObjectNumber number = 0;
    ObjectNumber clip = 0;
    TickTime start;
    bool video = true;
    bool audio = true;
  };
  ObjectNumber number = 0;
  UString name;
  FrameRate videoRate;
  FrameRate audioRate;
  TimeDisplay videoDisplay;
  TimeDisplay audioDisplay;
  std::vector<Item> items;
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

enum class StepKind : int { EditCaptions = 0, AddStream = 1, RemoveStream = 2, ChangeFormat = 3, RemoveClip = 4 };

// One undoable step. It holds what it touched and nothing else.
struct Step {
  ObjectNumber number = 0;
  StepKind kind = StepKind::EditCaptions;
  UString name;
  ObjectNumber stream = 0;
  ObjectNumber clip = 0;                                      // RemoveClip
  StreamFormat oldFormat = zebcaptioning::kStreamFormat_None; // ChangeFormat
  StreamFormat newFormat = zebcaptioning::kStreamFormat_None;
  std::optional<std::vector<CaptionDelta>> deltas; // nothing: they are in the file only
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
