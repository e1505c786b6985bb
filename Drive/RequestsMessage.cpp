// Any message as another part of the host would send it.

#include <memory>

#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Drive/CaptionJson.h"
#include "Drive/CaptionsInspector.h"
#include "Drive/Driver.h"
#include "Drive/Rendering.h"
#include "Drive/TimeDisplayNames.h"
#include "MF/VideoFrame.h"
#include "UIF/ColorPickerControl.h"
#include "UIF/HotTimecodeControl.h"
#include "UIF/ScrollBar.h"

namespace Drive {

namespace {

using zebcore::messaging::Message;
using zebcore::utility::ImmutableString;
using MessagePtr = std::unique_ptr<Message>;

// A message of a class that nobody knows; it has a name and an id like any other.
class UnknownMessage final : public Message {
 public:
  explicit UnknownMessage(zebcore::messaging::MessageID id) : Message(id) {}
  MessagePtr Clone() const override { return std::make_unique<UnknownMessage>(*this); }
};

BE::InterfaceRef<BE::CaptioningStream> FindStream(Driver& driver, const Fields& fields, const char* name) {
  if (!fields.Has(name))
    return nullptr;
  const auto removed = driver.removedStreams.find(fields.Text(name));
  return removed == driver.removedStreams.end() ? driver.Stream(fields, name) : removed->second;
}

template <class I> BE::InterfaceRef<I> FindInterface(Driver& driver, const Fields& fields, const char* name) {
  return FindStream(driver, fields, name).Query<I>();
}

BE::InterfaceRef<BE::IMasterClip> FindClip(Driver& driver, const Fields& fields, const char* name = "clip") {
  return fields.Has(name) ? driver.AnyClip(fields, name) : nullptr;
}

BE::InterfaceRef<BE::ISequence> FindSequence(Driver& driver, const Fields& fields, const char* name = "sequence") {
  return fields.Has(name) ? driver.Sequence(fields, name).Query<BE::ISequence>() : nullptr;
}

BE::InterfaceRef<BE::ITrackItem> FindItem(Driver& driver, const Fields& fields, const char* name = "item") {
  return fields.Has(name) ? driver.Item(fields, name).Query<BE::ITrackItem>() : nullptr;
}

// One that stands in the stream, by "begin" or "key", or a stranger, as "caption".
boost::intrusive_ptr<zebcaptioning::Caption> FindCaption(const BE::InterfaceRef<BE::CaptioningStream>& stream,
                                                         const Fields& fields) {
  if (fields.Has("caption"))
    return new zebcaptioning::Caption(ReadCaption(fields.Object("caption")));
  if (!stream)
    fields.Refuse("caption", "missing");
  if (!fields.Has("key")) {
    const auto caption = stream->FindByBegin(fields.Time("begin"));
    if (!caption)
      fields.Refuse("begin", "no caption of the stream begins there");
    return caption;
  }
  std::vector<BE::ICaptioningStream::CaptionKey> keys;
  stream->GetCaptionKeys(keys);
  for (const auto& key : keys) {
    if (key.ToText() == fields.Text("key"))
      return stream->GetCaption(key);
  }
  fields.Refuse("key", "no caption of the stream has it");
}

std::vector<Fields> Entries(const Fields& fields, const char* name) {
  return fields.Has(name) ? fields.Objects(name) : std::vector<Fields>();
}

template <class M> MessagePtr MakeBare(Driver&, const Fields&) {
  return std::make_unique<M>();
}

template <class M> MessagePtr MakeOfCaptions(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<M>();
  for (const Fields& entry : Entries(fields, "captions")) {
    const auto stream = FindStream(driver, entry, "stream");
    message->captions.emplace_back(stream.Query<BE::ICaptioningStream>(), FindCaption(stream, entry));
  }
  return message;
}

MessagePtr MakeRemoved(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<BE::CaptionsRemovedMessage>();
  for (const Fields& entry : Entries(fields, "captions"))
    message->captions.emplace_back(FindInterface<BE::ICaptioningStream>(driver, entry, "stream"), entry.Time("begin"));
  return message;
}

MessagePtr MakeMoved(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<BE::CaptionsMovedMessage>();
  for (const Fields& entry : Entries(fields, "ranges"))
    message->ranges.push_back({FindInterface<BE::ICaptioningStream>(driver, entry, "stream"), entry.Time("begin"),
                               entry.Time("end"), entry.Time("offset")});
  return message;
}

template <class M> MessagePtr MakeOfStream(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<M>();
  message->stream = FindInterface<BE::ICaptioningStream>(driver, fields, "stream");
  return message;
}

MessagePtr MakeFormatModified(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<BE::CaptionStreamFormatModifiedMessage>();
  message->stream = FindInterface<BE::ICaptioningStream>(driver, fields, "stream");
  message->oldFormat = static_cast<std::int32_t>(fields.Integer("old_format", INT32_MIN, UINT32_MAX, 0));
  return message;
}

BE::InterfaceRef<> FindObject(Driver& driver, const Fields& fields) {
  if (fields.Has("sequence"))
    return driver.Sequence(fields);
  if (fields.Has("clip"))
    return driver.AnyClip(fields);
  if (fields.Has("item"))
    return driver.Item(fields);
  return FindStream(driver, fields, "stream");
}

MessagePtr MakePropertiesChanged(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<BE::PropertiesChangedMessage>();
  for (const Fields& record : Entries(fields, "records"))
    message->records.push_back({FindObject(driver, record), ImmutableString(record.Text("property", ""))});
  return message;
}

MessagePtr MakeReadOnlyChanged(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<BE::ReadOnlyStateChangedMessage>();
  message->project = driver.Session().GetProject().Query<BE::IProject>();
  message->readOnly = fields.Flag("read_only", false);
  return message;
}

MessagePtr MakeActivated(Driver& driver, const Fields&) {
  auto message = std::make_unique<BE::ProjectActivatedMessage>();
  message->project = driver.Session().GetProject().Query<BE::IProject>();
  return message;
}

MessagePtr MakeCaptionSelected(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<HSL::CaptionSelectedMessage>();
  const auto stream = FindStream(driver, fields, "stream");
  message->stream = stream.Query<BE::ICaptioningStream>();
  if (fields.Has("caption") || fields.Has("begin") || fields.Has("key"))
    message->caption = FindCaption(stream, fields);
  return message;
}

template <class M> MessagePtr MakeOfClip(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<M>();
  message->clip = FindClip(driver, fields);
  message->opened = fields.Flag("opened", false);
  return message;
}

template <class M> MessagePtr MakeOfItem(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<M>();
  message->info.item = FindItem(driver, fields);
  if (fields.Mentions("clip")) {
    message->info.clip = FindClip(driver, fields);
  } else if (fields.Has("item")) {
    const auto clip = driver.Item(fields)->GetClip();
    message->info.clip = clip ? clip->GetMasterClip() : nullptr;
  }
  return message;
}

template <class M> MessagePtr MakeOfSequence(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<M>();
  message->sequence = FindSequence(driver, fields);
  return message;
}

MessagePtr MakeSourceClip(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<HSL::SourceClipSelectedMessage>();
  message->clip = FindClip(driver, fields);
  message->item = FindItem(driver, fields);
  message->kind = fields.Int("kind", message->item ? 2 : 1);
  return message;
}

MessagePtr MakeItemOpened(Driver& driver, const Fields& fields) {
  auto message = std::make_unique<MZ::CaptioningTrackItemOpenedMessage>();
  message->sequence = FindSequence(driver, fields);
  message->item = FindItem(driver, fields);
  if (fields.Has("time"))
    message->time = fields.Time("time");
  return message;
}

MessagePtr MakeSelectionChanged(Driver&, const Fields& fields) {
  auto message = std::make_unique<MZ::CaptionsSelectionChangedMessage>();
  if (fields.Has("times"))
    message->times = fields.Times("times");
  if (fields.Has("format"))
    message->format = ReadFormat(fields, "format");
  return message;
}

MessagePtr MakeFrameComplete(Driver&, const Fields& fields) {
  auto message = std::make_unique<ML::RenderFrameCompletionMessage>();
  message->requestID = static_cast<std::uint32_t>(fields.Integer("request", 0, UINT32_MAX, 0));
  if (fields.Has("time"))
    message->time = fields.Time("time");
  return message;
}

MessagePtr MakeDisplayChanged(Driver&, const Fields& fields) {
  auto message = std::make_unique<UIF::HotTimecodeVideoTimeDisplayChangedMessage>();
  if (fields.Has("display"))
    message->display = ReadTimeDisplay(fields, "display");
  return message;
}

template <class M> MessagePtr MakeOfTimecode(Driver&, const Fields& fields) {
  auto message = std::make_unique<M>();
  message->id = static_cast<std::uint32_t>(fields.Integer("id", 0, UINT32_MAX, 0));
  if constexpr (requires { message->time; }) {
    if (fields.Has("time"))
      message->time = fields.Time("time");
  }
  return message;
}

MessagePtr MakeScrolled(Driver&, const Fields& fields) {
  auto message = std::make_unique<UIF::ScrollVerticalMessage>();
  message->position = fields.Int("position", 0);
  return message;
}

MessagePtr MakeColorPicked(Driver&, const Fields& fields) {
  auto message = std::make_unique<UIF::ColorPickerControlChangedMessage>();
  const auto part = [&](const char* name) { return static_cast<std::uint8_t>(fields.Integer(name, 0, UINT8_MAX, 0)); };
  message->red = part("red");
  message->green = part("green");
  message->blue = part("blue");
  message->id = static_cast<std::uint32_t>(fields.Integer("id", 0, UINT32_MAX, 0));
  return message;
}

struct MessageClass {
  MessagePtr (*make)(Driver& driver, const Fields& fields);
  // Where the host itself sends it; null where that is an object's own station.
  ImmutableString station;
};

using MessageTable = std::map<std::string, MessageClass>;

template <class M>
void Add(MessageTable& table, MessagePtr (*make)(Driver&, const Fields&), const ImmutableString& station = {}) {
  table[M::kTypeName] = {make, station};
}

MessageTable MakeMessageTable() {
  MessageTable table;
  Add<BE::CaptionsAddedMessage>(table, &MakeOfCaptions<BE::CaptionsAddedMessage>);
  Add<BE::CaptionsRemovedMessage>(table, &MakeRemoved);
  Add<BE::CaptionsChangedMessage>(table, &MakeOfCaptions<BE::CaptionsChangedMessage>);
  Add<BE::CaptionsMovedMessage>(table, &MakeMoved);
  Add<BE::CaptioningStreamChangedMessage>(table, &MakeOfStream<BE::CaptioningStreamChangedMessage>);
  Add<BE::CaptionStreamFormatModifiedMessage>(table, &MakeFormatModified);
  Add<BE::PropertiesChangedMessage>(table, &MakePropertiesChanged, BE::kBackendPreferencesChangedStationID);
  Add<BE::ProjectActivatedMessage>(table, &MakeActivated, BE::kBackendProjectActivationStationID);
  Add<BE::ReadOnlyStateChangedMessage>(table, &MakeReadOnlyChanged, BE::kBackendProjectActivationStationID);
  Add<HSL::CaptionSelectedMessage>(table, &MakeCaptionSelected, HSL::kStation_CaptionSelection);
  Add<HSL::CaptionCommitEditsMessage>(table, &MakeBare<HSL::CaptionCommitEditsMessage>, HSL::kStation_CaptionSelection);
  Add<HSL::SourceClipSelectedMessage>(table, &MakeSourceClip, HSL::kStation_CaptionSelection);
  Add<MZ::ClosedCaptionsOpenedMessage>(table, &MakeBare<MZ::ClosedCaptionsOpenedMessage>,
                                       MZ::kStation_ClosedCaptionsActivation);
  Add<MZ::CaptioningTrackItemOpenedMessage>(table, &MakeItemOpened, MZ::kStation_ClosedCaptionsActivation);
  Add<MZ::CaptionsSelectionChangedMessage>(table, &MakeSelectionChanged, MZ::kStation_ClosedCaptionsActivation);
  Add<MZ::MasterClipSelectedMessage>(table, &MakeOfClip<MZ::MasterClipSelectedMessage>,
                                     MZ::kStation_MasterClipActivation);
  Add<MZ::MasterClipClosedMessage>(table, &MakeOfClip<MZ::MasterClipClosedMessage>, MZ::kStation_MasterClipActivation);
  Add<MZ::VideoTrackItemInfoMessage>(table, &MakeOfItem<MZ::VideoTrackItemInfoMessage>, MZ::kStation_Info);
  Add<MZ::AudioVideoTrackItemInfoMessage>(table, &MakeOfItem<MZ::AudioVideoTrackItemInfoMessage>, MZ::kStation_Info);
  Add<MZ::AudioTrackItemInfoMessage>(table, &MakeOfItem<MZ::AudioTrackItemInfoMessage>, MZ::kStation_Info);
  Add<MZ::TransitionTrackItemInfoMessage>(table, &MakeBare<MZ::TransitionTrackItemInfoMessage>, MZ::kStation_Info);
  Add<MZ::EmptyTrackItemInfoMessage>(table, &MakeBare<MZ::EmptyTrackItemInfoMessage>, MZ::kStation_Info);
  Add<MZ::NothingInfoMessage>(table, &MakeBare<MZ::NothingInfoMessage>, MZ::kStation_Info);
  Add<MZ::SequenceSettingsChangedMessage>(table, &MakeOfSequence<MZ::SequenceSettingsChangedMessage>,
                                          MZ::kStation_SequenceActivation);
  Add<MZ::BinSelectedMessage>(table, &MakeBare<MZ::BinSelectedMessage>, MZ::kStation_BinActivation);
  Add<MZ::SequenceSelectedMessage>(table, &MakeOfSequence<MZ::SequenceSelectedMessage>,
                                   MZ::kStation_SequenceActivation);
  Add<ML::RenderFrameCompletionMessage>(table, &MakeFrameComplete);
  Add<UIF::HotTimecodeVideoTimeDisplayChangedMessage>(table, &MakeDisplayChanged,
                                                      UIF::kStation_SourceTimeDisplayChanged);
  Add<UIF::HotTimecodeValueChangingMessage>(table, &MakeOfTimecode<UIF::HotTimecodeValueChangingMessage>);
  Add<UIF::HotTimecodeValueChangedMessage>(table, &MakeOfTimecode<UIF::HotTimecodeValueChangedMessage>);
  Add<UIF::InlineEditTextActiveMessage>(table, &MakeOfTimecode<UIF::InlineEditTextActiveMessage>);
  Add<UIF::ScrollVerticalMessage>(table, &MakeScrolled);
  Add<UIF::ColorPickerControlChangedMessage>(table, &MakeColorPicked);
  Add<UIF::ColorPickerSwatchClickedMessage>(table, &MakeBare<UIF::ColorPickerSwatchClickedMessage>);
  Add<UIF::ColorPickerSwatchStartEyedropperModeMessage>(table,
                                                        &MakeBare<UIF::ColorPickerSwatchStartEyedropperModeMessage>);
  Add<UIF::ColorPickerSwatchEndEyedropperModeMessage>(table, &MakeBare<UIF::ColorPickerSwatchEndEyedropperModeMessage>);
  return table;
}

// A class may be called without its namespace.
const MessageClass* FindClass(const std::string& name) {
  static const MessageTable table = MakeMessageTable();
  const auto exact = table.find(name);
  if (exact != table.end())
    return &exact->second;
  for (const auto& [full, message] : table) {
    if (full.substr(full.rfind(':') + 1) == name)
      return &message;
  }
  return nullptr;
}

// A station of the host may be called by its constant; any other text is the station itself.
ImmutableString FindStation(const std::string& name) {
  static const std::map<std::string, ImmutableString> constants = {
      {"kStation_ClosedCaptionsActivation", MZ::kStation_ClosedCaptionsActivation},
      {"kStation_MasterClipActivation", MZ::kStation_MasterClipActivation},
      {"kStation_Info", MZ::kStation_Info},
      {"kStation_SequenceActivation", MZ::kStation_SequenceActivation},
      {"kStation_TrackItemActivation", MZ::kStation_TrackItemActivation},
      {"kStation_BinActivation", MZ::kStation_BinActivation},
      {"kBackendPreferencesChangedStationID", BE::kBackendPreferencesChangedStationID},
      {"kBackendProjectActivationStationID", BE::kBackendProjectActivationStationID},
      {"kStation_CaptionSelection", HSL::kStation_CaptionSelection},
      {"kStation_SourceTimeDisplayChanged", UIF::kStation_SourceTimeDisplayChanged},
      {"kStation_SequenceTimeDisplayChanged", UIF::kStation_SequenceTimeDisplayChanged},
  };
  const std::size_t space = name.rfind("::");
  const auto found = constants.find(space == std::string::npos ? name : name.substr(space + 2));
  return found == constants.end() ? ImmutableString(name) : found->second;
}

// The control of the panel, or its renderer, from which messages of that class come; null for other classes, and while
// there is none.
ImmutableString FindSender(Driver& driver, const std::string& name) {
  const auto isOf = [&](const char* part) { return name.find(part) != std::string::npos; };
  if (isOf("RenderFrame"))
    return Rendering::GetStation();
  for (const auto& control : Captivo::CaptionsInspector(driver.Handler()).GetControls()) {
    if (UIF::ColorPickerControl* const* picker = std::get_if<UIF::ColorPickerControl*>(&control.pointer);
        picker && isOf("ColorPicker"))
      return (*picker)->GetStationID();
    if (UIF::ScrollBar* const* bar = std::get_if<UIF::ScrollBar*>(&control.pointer); bar && isOf("ScrollVertical"))
      return (*bar)->GetStationID();
  }
  return {};
}

// An entry of a list of captions or ranges may be its begin time alone, or a pair of its stream and that.
Json SpellEntry(const Json& entry) {
  if (entry.is_number())
    return {{"begin", entry}};
  if (entry.is_array() && entry.size() == 2)
    return {{"stream", entry[0]}, {entry[1].is_object() ? "caption" : "begin", entry[1]}};
  return entry;
}

// Entries that name no stream mean that of the message, else that on whose station it is sent.
Json SpellEntries(Json values, const std::string& station) {
  constexpr std::string_view kStream = "stream:";
  Json stream;
  if (values.contains("stream"))
    stream = values.at("stream");
  else if (station.compare(0, kStream.size(), kStream) == 0)
    stream = station.substr(kStream.size());
  for (const char* name : {"captions", "ranges"}) {
    if (!values.contains(name) || !values.at(name).is_array())
      continue;
    for (Json& entry : values.at(name)) {
      entry = SpellEntry(entry);
      if (entry.is_object() && !entry.contains("stream"))
        entry["stream"] = stream;
    }
  }
  return values;
}

Json Send(Driver& driver, const Fields& fields) {
  const std::string name = fields.Text("message");
  const MessageClass* const known = FindClass(name);
  const Json spelled = fields.Has("fields")
                           ? SpellEntries(fields.Object("fields").GetJson(), fields.Text("station", ""))
                           : Json::object();
  const Fields values(spelled, "fields.");
  const MessagePtr message =
      known ? known->make(driver, values)
            : std::make_unique<UnknownMessage>(zebcore::messaging::HashMessageTypeNameToMessageID(name.c_str()));
  ImmutableString station = known ? known->station : ImmutableString();
  if (fields.Has("station"))
    station = FindStation(fields.Text("station"));
  else if (known && station.IsNull())
    station = FindSender(driver, name);
  if (station.IsNull())
    fields.Refuse("station", "missing, and the message has none of its own");
  zebcore::messaging::BroadcastMessage(station, *message);
  return {{"known", known != nullptr}, {"listeners", zebcore::messaging::CountListeners(station)}};
}

} // namespace

void AddMessageRequests(RequestTable& table) {
  table["send"] = {&Send};
}

} // namespace Drive
