#include <cstring>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "BE/ProjectFileStatements.h"
#include "zebcaptioning/CaptionCodec.h"

namespace BE {

namespace {

using Json = nlohmann::json;
using CaptionKey = ICaptioningStream::CaptionKey;

constexpr std::size_t kKeySize = 16;

[[noreturn]] void ThrowDamaged(const char* what) {
  throw std::runtime_error(what);
}

// Keys of one stream in order of age lie together in the file.
std::string WriteKey(const CaptionKey& key) {
  std::string bytes(kKeySize, '\0');
  for (std::size_t at = 0; at < 8; ++at) {
    bytes[at] = static_cast<char>(key.high >> (56 - 8 * at));
    bytes[8 + at] = static_cast<char>(key.low >> (56 - 8 * at));
  }
  return bytes;
}

CaptionKey ReadKey(const SQLite::Column& column) {
  if (column.getBytes() != static_cast<int>(kKeySize))
    ThrowDamaged("a caption's key is not one");
  const auto* bytes = static_cast<const unsigned char*>(column.getBlob());
  CaptionKey key;
  for (std::size_t at = 0; at < 8; ++at) {
    key.high = key.high << 8 | bytes[at];
    key.low = key.low << 8 | bytes[8 + at];
  }
  return key;
}

zebcaptioning::CaptionStatePtr ReadState(const SQLite::Column& column) {
  if (column.isNull())
    return nullptr;
  const std::string_view bytes(static_cast<const char*>(column.getBlob()), static_cast<std::size_t>(column.getBytes()));
  zebcaptioning::CaptionStatePtr state = zebcaptioning::Decode(bytes);
  if (!state)
    ThrowDamaged("a caption is garbled");
  return state;
}

void BindBlob(SQLite::Statement& statement, int index, const std::string& bytes) {
  statement.bind(index, static_cast<const void*>(bytes.data()), static_cast<int>(bytes.size()));
}

void BindState(SQLite::Statement& statement, int index, const zebcaptioning::CaptionStatePtr& state) {
  if (state)
    BindBlob(statement, index, zebcaptioning::Encode(*state));
  else
    statement.bind(index);
}

SQLite::Statement& Ready(SQLite::Database& database, std::unique_ptr<SQLite::Statement>& statement, const char* text) {
  if (!statement)
    statement = std::make_unique<SQLite::Statement>(database, text);
  else
    statement->tryReset();
  return *statement;
}

void Run(SQLite::Statement& statement) {
  statement.exec();
  statement.reset();
}

std::string Dump(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json WriteMedia(const MediaInfo& info) {
  return {{"width", info.width},
          {"height", info.height},
          {"pixel_aspect", {info.pixelAspect.numerator, info.pixelAspect.denominator}},
          {"frame_rate", info.frameRate.GetTicksPerFrame()},
          {"drop_frame", info.dropFrame},
          {"duration", info.duration.GetTicks()},
          {"start", info.start.GetTicks()},
          {"sample_rate", info.sampleRate},
          {"still", info.still}};
}

MediaInfo ReadMedia(const Json& json) {
  MediaInfo info;
  info.width = json.at("width").get<int>();
  info.height = json.at("height").get<int>();
  info.pixelAspect.numerator = json.at("pixel_aspect").at(0).get<int>();
  info.pixelAspect.denominator = json.at("pixel_aspect").at(1).get<int>();
  info.frameRate = FrameRate(json.at("frame_rate").get<std::int64_t>());
  info.dropFrame = json.at("drop_frame").get<bool>();
  info.duration = TickTime(json.at("duration").get<std::int64_t>());
  info.start = TickTime(json.at("start").get<std::int64_t>());
  info.sampleRate = json.at("sample_rate").get<int>();
  info.still = json.at("still").get<bool>();
  return info;
}

Json WriteDescription(const StreamDescription& description) {
  Json regions = Json::array();
  for (const StreamDescription::Region& region : description.regions)
    regions.push_back({{"name", region.name},
                       {"area", {region.area.x, region.area.y, region.area.width, region.area.height}},
                       {"percent", region.percent}});
  return {{"regions", regions}, {"styles", description.styles}};
}

StreamDescription ReadDescription(StreamFormat format, const Json& json) {
  StreamDescription description;
  description.format = format;
  for (const Json& region : json.at("regions")) {
    const Json& area = region.at("area");
    description.regions.push_back(
        {region.at("name").get<std::string>(),
         {area.at(0).get<float>(), area.at(1).get<float>(), area.at(2).get<float>(), area.at(3).get<float>()},
         region.at("percent").get<bool>()});
  }
  description.styles = json.at("styles").get<std::vector<std::string>>();
  return description;
}

UString ReadName(const SQLite::Column& column) {
  return zebcore::FromUTF8(column.getString());
}

} // namespace

void ProjectFile::CreateTables() {
  Perform([this](ProjectFile&) {
    mDatabase->exec(R"(
PRAGMA application_id=1129337942;
PRAGMA user_version=2;
CREATE TABLE settings(key TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;
CREATE TABLE clips(number INTEGER PRIMARY KEY, name TEXT NOT NULL, media BLOB NOT NULL, info TEXT NOT NULL,
  merged INTEGER NOT NULL, removed INTEGER NOT NULL);
CREATE TABLE sequences(number INTEGER PRIMARY KEY, name TEXT NOT NULL, video_rate INTEGER NOT NULL,
  audio_rate INTEGER NOT NULL, video_display INTEGER NOT NULL, audio_display INTEGER NOT NULL,
  removed INTEGER NOT NULL);
CREATE TABLE sequence_parts(number INTEGER PRIMARY KEY, sequence INTEGER NOT NULL, part TEXT NOT NULL);
CREATE TABLE streams(number INTEGER PRIMARY KEY, clip INTEGER NOT NULL, format INTEGER NOT NULL,
  description TEXT NOT NULL, removed INTEGER NOT NULL);
CREATE TABLE captions(stream INTEGER NOT NULL, key BLOB NOT NULL, age INTEGER NOT NULL, state BLOB NOT NULL,
  PRIMARY KEY(stream, key)) WITHOUT ROWID;
CREATE TABLE steps(number INTEGER PRIMARY KEY, position INTEGER NOT NULL, state INTEGER NOT NULL,
  kind INTEGER NOT NULL, name TEXT NOT NULL, stream INTEGER NOT NULL, clip INTEGER NOT NULL,
  old_format INTEGER NOT NULL, new_format INTEGER NOT NULL, sequence INTEGER NOT NULL DEFAULT 0);
CREATE TABLE deltas(step INTEGER NOT NULL, key BLOB NOT NULL, age INTEGER NOT NULL, before BLOB, after BLOB,
  PRIMARY KEY(step, key)) WITHOUT ROWID;
CREATE TABLE sequence_deltas(step INTEGER NOT NULL, part INTEGER NOT NULL, before TEXT, after TEXT,
  PRIMARY KEY(step, part)) WITHOUT ROWID;
)");
  });
}

void ProjectFile::PutSetting(const std::string& key, const std::string& value) {
  SQLite::Statement put(*mDatabase, "INSERT OR REPLACE INTO settings VALUES(?,?)");
  put.bind(1, key);
  put.bind(2, value);
  put.exec();
}

void ProjectFile::PutClip(const ClipRecord& clip) {
  SQLite::Statement put(*mDatabase, "INSERT OR REPLACE INTO clips VALUES(?,?,?,?,?,?)");
  put.bind(1, clip.number);
  put.bind(2, zebcore::ToUTF8(clip.name));
  BindBlob(put, 3, clip.media.native());
  put.bind(4, Dump(WriteMedia(clip.info)));
  put.bind(5, clip.merged ? 1 : 0);
  put.bind(6, clip.removed ? 1 : 0);
  put.exec();
}

void ProjectFile::PutStream(const StreamRecord& stream) {
  SQLite::Statement put(*mDatabase, "INSERT OR REPLACE INTO streams VALUES(?,?,?,?,?)");
  put.bind(1, stream.number);
  put.bind(2, stream.clip);
  put.bind(3, static_cast<std::int64_t>(stream.description.format));
  put.bind(4, Dump(WriteDescription(stream.description)));
  put.bind(5, stream.removed ? 1 : 0);
  put.exec();
}

void ProjectFile::EraseStream(ObjectNumber stream) {
  for (const char* text : {"DELETE FROM captions WHERE stream=?", "DELETE FROM streams WHERE number=?"}) {
    SQLite::Statement erase(*mDatabase, text);
    erase.bind(1, stream);
    erase.exec();
  }
}

void ProjectFile::PutCaption(ObjectNumber stream, const CaptionKey& key, std::uint64_t age,
                             const zebcaptioning::CaptionState& state) {
  SQLite::Statement& put =
      Ready(*mDatabase, mStatements->putCaption, "INSERT OR REPLACE INTO captions VALUES(?,?,?,?)");
  put.bind(1, stream);
  BindBlob(put, 2, WriteKey(key));
  put.bind(3, static_cast<std::int64_t>(age));
  BindBlob(put, 4, zebcaptioning::Encode(state));
  Run(put);
}

void ProjectFile::EraseCaption(ObjectNumber stream, const CaptionKey& key) {
  SQLite::Statement& erase =
      Ready(*mDatabase, mStatements->eraseCaption, "DELETE FROM captions WHERE stream=? AND key=?");
  erase.bind(1, stream);
  BindBlob(erase, 2, WriteKey(key));
  Run(erase);
}

void ProjectFile::PutStep(const Step& step, StepState state, std::int64_t position) {
  SQLite::Statement& put =
      Ready(*mDatabase, mStatements->putStep, "INSERT OR REPLACE INTO steps VALUES(?,?,?,?,?,?,?,?,?,?)");
  put.bind(1, step.number);
  put.bind(2, position);
  put.bind(3, static_cast<int>(state));
  put.bind(4, static_cast<int>(step.kind));
  put.bind(5, zebcore::ToUTF8(step.name));
  put.bind(6, step.stream);
  put.bind(7, step.clip);
  put.bind(8, static_cast<std::int64_t>(step.oldFormat));
  put.bind(9, static_cast<std::int64_t>(step.newFormat));
  put.bind(10, step.sequence);
  Run(put);
}

void ProjectFile::SetStepState(ObjectNumber step, StepState state) {
  SQLite::Statement set(*mDatabase, "UPDATE steps SET state=? WHERE number=?");
  set.bind(1, static_cast<int>(state));
  set.bind(2, step);
  set.exec();
}

void ProjectFile::EraseStep(ObjectNumber step) {
  for (const char* text : {"DELETE FROM deltas WHERE step=?", "DELETE FROM sequence_deltas WHERE step=?",
                           "DELETE FROM steps WHERE number=?"}) {
    SQLite::Statement erase(*mDatabase, text);
    erase.bind(1, step);
    erase.exec();
  }
}

void ProjectFile::PutDelta(ObjectNumber step, const CaptionDelta& delta) {
  SQLite::Statement& put = Ready(*mDatabase, mStatements->putDelta, "INSERT OR REPLACE INTO deltas VALUES(?,?,?,?,?)");
  put.bind(1, step);
  BindBlob(put, 2, WriteKey(delta.key));
  put.bind(3, static_cast<std::int64_t>(delta.age));
  BindState(put, 4, delta.before);
  BindState(put, 5, delta.after);
  Run(put);
}

void ProjectFile::EraseDelta(ObjectNumber step, const CaptionKey& key) {
  SQLite::Statement& erase = Ready(*mDatabase, mStatements->eraseDelta, "DELETE FROM deltas WHERE step=? AND key=?");
  erase.bind(1, step);
  BindBlob(erase, 2, WriteKey(key));
  Run(erase);
}

ProjectRecord ProjectFile::LoadProject() {
  ProjectRecord project;
  SQLite::Statement settings(*mDatabase, "SELECT key, value FROM settings");
  while (settings.executeStep())
    project.settings[settings.getColumn(0).getString()] = settings.getColumn(1).getString();

  SQLite::Statement clips(*mDatabase, "SELECT number, name, media, info, merged, removed FROM clips ORDER BY number");
  while (clips.executeStep()) {
    ClipRecord clip;
    clip.number = clips.getColumn(0).getInt64();
    clip.name = ReadName(clips.getColumn(1));
    clip.media = clips.getColumn(2).getString();
    clip.info = ReadMedia(Json::parse(clips.getColumn(3).getString()));
    clip.merged = clips.getColumn(4).getInt() != 0;
    clip.removed = clips.getColumn(5).getInt() != 0;
    project.clips.push_back(std::move(clip));
  }

  LoadSequences(project);

  SQLite::Statement streams(*mDatabase,
                            "SELECT number, clip, format, description, removed FROM streams ORDER BY number");
  while (streams.executeStep()) {
    StreamRecord stream;
    stream.number = streams.getColumn(0).getInt64();
    stream.clip = streams.getColumn(1).getInt64();
    stream.description = ReadDescription(static_cast<StreamFormat>(streams.getColumn(2).getInt64()),
                                         Json::parse(streams.getColumn(3).getString()));
    stream.removed = streams.getColumn(4).getInt() != 0;
    project.streams.push_back(std::move(stream));
  }

  SQLite::Statement steps(*mDatabase,
                          "SELECT number, position, state, kind, name, stream, clip, old_format, new_format, "
                          "sequence FROM steps ORDER BY position, number");
  while (steps.executeStep()) {
    const int state = steps.getColumn(2).getInt();
    const int kind = steps.getColumn(3).getInt();
    if (state < 0 || state > static_cast<int>(StepState::Open) || kind < 0 ||
        kind > static_cast<int>(StepKind::RemoveSequence))
      ThrowDamaged("a step of the history is not one");
    StepRecord record;
    record.step.number = steps.getColumn(0).getInt64();
    record.position = steps.getColumn(1).getInt64();
    record.state = static_cast<StepState>(state);
    record.step.kind = static_cast<StepKind>(kind);
    record.step.name = ReadName(steps.getColumn(4));
    record.step.stream = steps.getColumn(5).getInt64();
    record.step.clip = steps.getColumn(6).getInt64();
    record.step.oldFormat = static_cast<StreamFormat>(steps.getColumn(7).getInt64());
    record.step.newFormat = static_cast<StreamFormat>(steps.getColumn(8).getInt64());
    record.step.sequence = steps.getColumn(9).getInt64();
    project.steps.push_back(std::move(record));
  }
  return project;
}

std::vector<StoredCaption> ProjectFile::LoadCaptions(ObjectNumber stream) {
  SQLite::Statement select(*mDatabase, "SELECT key, age, state FROM captions WHERE stream=? ORDER BY key");
  select.bind(1, stream);
  std::vector<StoredCaption> captions;
  while (select.executeStep()) {
    zebcaptioning::CaptionStatePtr state = ReadState(select.getColumn(2));
    if (!state)
      ThrowDamaged("a caption is missing");
    captions.push_back(
        {ReadKey(select.getColumn(0)), static_cast<std::uint64_t>(select.getColumn(1).getInt64()), std::move(state)});
  }
  return captions;
}

std::vector<CaptionDelta> ProjectFile::LoadDeltas(ObjectNumber step) {
  SQLite::Statement select(*mDatabase, "SELECT key, age, before, after FROM deltas WHERE step=? ORDER BY key");
  select.bind(1, step);
  std::vector<CaptionDelta> deltas;
  while (select.executeStep())
    deltas.push_back({ReadKey(select.getColumn(0)), static_cast<std::uint64_t>(select.getColumn(1).getInt64()),
                      ReadState(select.getColumn(2)), ReadState(select.getColumn(3))});
  return deltas;
}

} // namespace BE
