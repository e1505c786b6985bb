#include <map>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "BE/ProjectFileStatements.h"

// The sequences of a project in its file: a row for each, and one for each of their parts.
namespace BE {

namespace {

using Json = nlohmann::json;

std::string Write(const SequencePart& part) {
  Json json;
  if (const auto* item = std::get_if<ItemRecord>(&part))
    json = {{"clip", item->clip},
            {"start", item->start.GetTicks()},
            {"video", item->video},
            {"audio", item->audio},
            {"track", item->track},
            {"in", item->in.GetTicks()},
            {"duration", item->duration.GetTicks()}};
  else if (const auto* transition = std::get_if<TransitionRecord>(&part))
    json = {{"left", transition->left}, {"right", transition->right}, {"duration", transition->duration.GetTicks()}};
  return json.dump();
}

// Items of the first version had neither track nor trim.
ItemRecord ReadItem(ObjectNumber number, const Json& json) {
  ItemRecord item;
  item.number = number;
  item.clip = json.at("clip").get<ObjectNumber>();
  item.start = TickTime(json.at("start").get<std::int64_t>());
  item.video = json.at("video").get<bool>();
  item.audio = json.at("audio").get<bool>();
  item.track = json.value("track", 0);
  item.in = TickTime(json.value("in", std::int64_t{0}));
  item.duration = TickTime(json.value("duration", std::int64_t{0}));
  return item;
}

SequencePart ReadPart(ObjectNumber number, const std::string& text) {
  const Json json = Json::parse(text);
  if (json.contains("clip"))
    return ReadItem(number, json);
  TransitionRecord transition;
  transition.number = number;
  transition.left = json.at("left").get<ObjectNumber>();
  transition.right = json.at("right").get<ObjectNumber>();
  transition.duration = TickTime(json.at("duration").get<std::int64_t>());
  return transition;
}

std::optional<SequencePart> ReadPartOrNothing(ObjectNumber number, const SQLite::Column& column) {
  if (column.isNull())
    return std::nullopt;
  return ReadPart(number, column.getString());
}

void BindPart(SQLite::Statement& statement, int index, const std::optional<SequencePart>& part) {
  if (part)
    statement.bind(index, Write(*part));
  else
    statement.bind(index);
}

} // namespace

void ProjectFile::PutSequence(const SequenceRecord& sequence) {
  SQLite::Statement put(*mDatabase, "INSERT OR REPLACE INTO sequences(number, name, video_rate, audio_rate, "
                                    "video_display, audio_display, removed) VALUES(?,?,?,?,?,?,?)");
  put.bind(1, sequence.number);
  put.bind(2, zebcore::ToUTF8(sequence.name));
  put.bind(3, sequence.videoRate.GetTicksPerFrame());
  put.bind(4, sequence.audioRate.GetTicksPerFrame());
  put.bind(5, sequence.videoDisplay.GetNumber());
  put.bind(6, sequence.audioDisplay.GetNumber());
  put.bind(7, sequence.removed ? 1 : 0);
  put.exec();
}

void ProjectFile::PutPart(ObjectNumber sequence, const SequencePart& part) {
  SQLite::Statement put(*mDatabase, "INSERT OR REPLACE INTO sequence_parts(number, sequence, part) VALUES(?,?,?)");
  put.bind(1, GetNumber(part));
  put.bind(2, sequence);
  put.bind(3, Write(part));
  put.exec();
}

void ProjectFile::ErasePart(ObjectNumber part) {
  SQLite::Statement erase(*mDatabase, "DELETE FROM sequence_parts WHERE number=?");
  erase.bind(1, part);
  erase.exec();
}

void ProjectFile::PutPartDelta(ObjectNumber step, const SequencePartDelta& delta) {
  SQLite::Statement put(*mDatabase, "INSERT OR REPLACE INTO sequence_deltas VALUES(?,?,?,?)");
  put.bind(1, step);
  put.bind(2, GetNumber(delta.before ? *delta.before : *delta.after));
  BindPart(put, 3, delta.before);
  BindPart(put, 4, delta.after);
  put.exec();
}

std::vector<SequencePartDelta> ProjectFile::LoadPartDeltas(ObjectNumber step) {
  SQLite::Statement select(*mDatabase, "SELECT part, before, after FROM sequence_deltas WHERE step=? ORDER BY part");
  select.bind(1, step);
  std::vector<SequencePartDelta> deltas;
  while (select.executeStep()) {
    const ObjectNumber number = select.getColumn(0).getInt64();
    deltas.push_back({ReadPartOrNothing(number, select.getColumn(1)), ReadPartOrNothing(number, select.getColumn(2))});
  }
  return deltas;
}

void ProjectFile::LoadSequences(ProjectRecord& project) {
  std::map<ObjectNumber, std::vector<SequencePart>> parts;
  SQLite::Statement selectParts(*mDatabase, "SELECT number, sequence, part FROM sequence_parts ORDER BY number");
  while (selectParts.executeStep())
    parts[selectParts.getColumn(1).getInt64()].push_back(
        ReadPart(selectParts.getColumn(0).getInt64(), selectParts.getColumn(2).getString()));

  SQLite::Statement select(*mDatabase, "SELECT number, name, video_rate, audio_rate, video_display, audio_display, "
                                       "removed FROM sequences ORDER BY number");
  while (select.executeStep()) {
    SequenceRecord sequence;
    sequence.number = select.getColumn(0).getInt64();
    sequence.name = zebcore::FromUTF8(select.getColumn(1).getString());
    sequence.videoRate = FrameRate(select.getColumn(2).getInt64());
    sequence.audioRate = FrameRate(select.getColumn(3).getInt64());
    sequence.videoDisplay = TimeDisplay(select.getColumn(4).getInt());
    sequence.audioDisplay = TimeDisplay(select.getColumn(5).getInt());
    sequence.removed = select.getColumn(6).getInt() != 0;
    sequence.parts = std::move(parts[sequence.number]);
    project.sequences.push_back(std::move(sequence));
  }
}

// The first version kept the items of a sequence as one text beside its name.
void ProjectFile::Upgrade(int version) {
  if (version != 1)
    throw std::runtime_error("the format of the project is none");
  Perform([this](ProjectFile&) {
    mDatabase->exec(R"(
ALTER TABLE sequences ADD COLUMN removed INTEGER NOT NULL DEFAULT 0;
ALTER TABLE steps ADD COLUMN sequence INTEGER NOT NULL DEFAULT 0;
CREATE TABLE sequence_parts(number INTEGER PRIMARY KEY, sequence INTEGER NOT NULL, part TEXT NOT NULL);
CREATE TABLE sequence_deltas(step INTEGER NOT NULL, part INTEGER NOT NULL, before TEXT, after TEXT,
  PRIMARY KEY(step, part)) WITHOUT ROWID;
)");
    std::vector<std::pair<ObjectNumber, std::string>> lists;
    {
      SQLite::Statement select(*mDatabase, "SELECT number, items FROM sequences");
      while (select.executeStep())
        lists.emplace_back(select.getColumn(0).getInt64(), select.getColumn(1).getString());
    }
    for (const auto& [sequence, items] : lists) {
      for (const Json& item : Json::parse(items))
        PutPart(sequence, ReadItem(item.at("number").get<ObjectNumber>(), item));
    }
    mDatabase->exec("ALTER TABLE sequences DROP COLUMN items; PRAGMA user_version=2;");
  });
}

} // namespace BE
