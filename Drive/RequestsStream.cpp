// Captions as another part of the host sees and edits them, and the facts of their formats.

#include "Drive/CaptionJson.h"
#include "Drive/Driver.h"

namespace Drive {

namespace {

using BE::CaptionDelta;

Json TellStream(Driver& driver, const Fields& fields) {
  const auto stream = driver.Stream(fields);
  return {{"captions", FromStream(*stream)}, {"stream_format", stream->GetStreamFormat()}};
}

std::optional<BE::ICaptioningStream::CaptionKey> FindKey(const BE::CaptioningStream& stream, const std::string& text) {
  std::vector<BE::ICaptioningStream::CaptionKey> keys;
  stream.GetCaptionKeys(keys);
  const auto found = std::find_if(keys.begin(), keys.end(), [&](const auto& key) { return key.ToText() == text; });
  return found == keys.end() ? std::nullopt : std::optional(*found);
}

std::vector<CaptionDelta> ReadAdded(const Fields& fields) {
  std::vector<CaptionDelta> deltas;
  for (const Fields& caption : fields.Objects("add"))
    deltas.push_back({{}, 0, nullptr, ReadCaption(caption)});
  return deltas;
}

std::vector<CaptionDelta> ReadRemoved(const BE::CaptioningStream& stream, const Fields& fields) {
  std::vector<CaptionDelta> deltas;
  for (const auto& time : fields.Times("remove")) {
    const auto key = stream.FindKeyByBegin(time);
    if (!key)
      fields.Refuse("remove", "no caption begins at " + std::to_string(time.GetTicks()));
    deltas.push_back({*key, 0, stream.GetCaption(*key)->GetState(), nullptr});
  }
  return deltas;
}

// A caption is named by its key, else by its begin; what is not given stays.
std::vector<CaptionDelta> ReadChanged(const BE::CaptioningStream& stream, const Fields& fields) {
  std::vector<CaptionDelta> deltas;
  for (const Fields& caption : fields.Objects("change")) {
    const auto key =
        caption.Has("key") ? FindKey(stream, caption.Text("key")) : stream.FindKeyByBegin(caption.Time("begin"));
    if (!key)
      caption.Refuse(caption.Has("key") ? "key" : "begin", "the stream has no such caption");
    const auto before = stream.GetCaption(*key)->GetState();
    deltas.push_back({*key, 0, before, ReadCaption(caption, before)});
  }
  return deltas;
}

Json EditStream(Driver& driver, const Fields& fields) {
  const auto stream = driver.Stream(fields);
  const int kinds = fields.Has("add") + fields.Has("remove") + fields.Has("change") + fields.Has("move");
  if (kinds != 1)
    throw RequestError("add: give one of add, remove, change and move");
  const auto project = driver.Project();
  if (fields.Has("move")) {
    const Fields move = fields.Object("move");
    project->ShiftCaptions(stream, move.Time("from"), move.Time("to"), move.Time("offset"), u"Move captions");
  } else if (fields.Has("add")) {
    project->EditCaptions(stream, ReadAdded(fields), u"Add captions");
  } else if (fields.Has("remove")) {
    project->EditCaptions(stream, ReadRemoved(*stream, fields), u"Delete captions");
  } else {
    project->EditCaptions(stream, ReadChanged(*stream, fields), u"Change captions");
  }
  return Json::object();
}

Json ChangeFormat(Driver& driver, const Fields& fields) {
  const auto stream = driver.Stream(fields);
  const auto problem = driver.Project()->ChangeStreamFormat(stream, ReadFormat(fields, "format"), u"Change format");
  if (problem)
    throw RequestError(problem->text);
  return {{"stream", stream->GetID()}, {"stream_format", stream->GetStreamFormat()}};
}

Json SetBusy(Driver& driver, const Fields& fields) {
  const auto stream = driver.Stream(fields);
  const bool on = fields.Flag("on", true);
  // One job of the script's a stream, besides those that the host has of its own.
  const bool changes =
      on ? driver.busyStreams.insert(stream->GetID()).second : driver.busyStreams.erase(stream->GetID()) != 0;
  if (changes)
    stream->SetBusy(on);
  return {{"busy", stream->IsBusy()}};
}

} // namespace

void AddStreamRequests(RequestTable& table) {
  table["stream"] = {&TellStream};
  table["edit_stream"] = {&EditStream};
  table["change_format"] = {&ChangeFormat};
  table["busy"] = {&SetBusy};
}

} // namespace Drive
