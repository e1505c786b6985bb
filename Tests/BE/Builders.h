#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "BE/Project.h"
#include "Captions/contracts/StreamMessages.h"
#include "zebcore/Messaging.h"

// What the tests of projects have in common.
namespace test {

using BE::CaptionDelta;
using BE::TickTime;
using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using zebcore::classref::InterfaceRef;
using zebcore::messaging::MessageCast;

inline constexpr zebcaptioning::StreamFormat kCC1 = zebcaptioning::kStreamFormat_608_CC1;
inline constexpr zebcaptioning::StreamFormat kCC2 = 0x36434332;

// Times in the tests are small numbers of ticks.
inline CaptionStatePtr State(std::int64_t begin, std::int64_t end, const std::string& text) {
  auto* state = new CaptionState;
  state->begin = TickTime(begin);
  state->end = TickTime(end);
  state->text = zebcore::FromUTF8(text);
  state->runs.push_back({0, zebcaptioning::Share(zebcaptioning::TextSpanAttributes())});
  return state;
}

inline CaptionStatePtr WithText(const CaptionStatePtr& state, const std::string& text) {
  auto* changed = new CaptionState(*state);
  changed->text = zebcore::FromUTF8(text);
  return changed;
}

inline CaptionStatePtr WithTimes(const CaptionStatePtr& state, std::int64_t begin, std::int64_t end) {
  auto* changed = new CaptionState(*state);
  changed->begin = TickTime(begin);
  changed->end = TickTime(end);
  return changed;
}

inline CaptionDelta Adding(const CaptionStatePtr& state) {
  CaptionDelta delta;
  delta.after = state;
  return delta;
}

inline BE::MediaInfo VideoInfo() {
  BE::MediaInfo info;
  info.width = 1280;
  info.height = 720;
  info.frameRate = zebmediatypes::kFrameRate_25;
  info.duration = TickTime(60 * zebmediatypes::kTicksPerSecond);
  info.sampleRate = 48000;
  return info;
}

inline InterfaceRef<BE::MasterClip> AddVideoClip(const InterfaceRef<BE::Project>& project,
                                                 const zebcore::UString& name = u"clip") {
  return project->AddClip(name, "", VideoInfo(), false);
}

inline InterfaceRef<BE::CaptioningStream> AddStream(const InterfaceRef<BE::Project>& project,
                                                    const InterfaceRef<BE::MasterClip>& clip,
                                                    const std::vector<CaptionStatePtr>& states = {},
                                                    zebcaptioning::StreamFormat format = kCC1) {
  BE::StreamDescription description;
  description.format = format;
  std::vector<BE::NewCaption> captions;
  for (const CaptionStatePtr& state : states)
    captions.push_back({state});
  const auto result = project->AddStream(clip, description, captions, u"New stream");
  return result ? *result.value : nullptr;
}

// The delta that turns the caption which shows at a begin time into another state, or null to remove it.
inline CaptionDelta Turning(const InterfaceRef<BE::CaptioningStream>& stream, std::int64_t begin,
                            const CaptionStatePtr& after) {
  const auto key = stream->FindKeyByBegin(TickTime(begin));
  CaptionDelta delta;
  if (!key)
    return delta;
  delta.key = *key;
  delta.before = stream->GetCaption(*key)->GetState();
  delta.after = after;
  return delta;
}

// "begin-end text" of every caption, in order of begin, then age.
inline std::vector<std::string> Contents(const InterfaceRef<BE::ICaptioningStream>& stream) {
  std::vector<boost::intrusive_ptr<zebcaptioning::Caption>> captions;
  stream->GetCaptions(captions);
  std::vector<std::string> lines;
  for (const auto& caption : captions)
    lines.push_back(std::to_string(caption->GetBeginTime().GetTicks()) + "-" +
                    std::to_string(caption->GetEndTime().GetTicks()) + " " +
                    zebcore::ToUTF8(caption->GetState()->text));
  return lines;
}

// Writes down every message of a station in words: "added 5 7", "removed 3", "changed 5", "moved", "stream", "format".
class MessageLog : public zebcore::messaging::Listener {
 public:
  explicit MessageLog(const InterfaceRef<BE::INotification>& object) : mStation(object->GetStationID()) {
    zebcore::messaging::AddListener(mStation, this);
  }
  ~MessageLog() override { zebcore::messaging::RemoveListener(mStation, this); }

  void HandleMessage(const zebcore::messaging::Message& message) override {
    if (const auto* added = MessageCast<BE::CaptionsAddedMessage>(message))
      mLines.push_back("added" + Begins(added->captions));
    else if (const auto* removed = MessageCast<BE::CaptionsRemovedMessage>(message)) {
      std::string line = "removed";
      for (const auto& [stream, begin] : removed->captions)
        line += " " + std::to_string(begin.GetTicks());
      mLines.push_back(line);
    } else if (const auto* changed = MessageCast<BE::CaptionsChangedMessage>(message))
      mLines.push_back("changed" + Begins(changed->captions));
    else if (MessageCast<BE::CaptionsMovedMessage>(message))
      mLines.push_back("moved");
    else if (const auto* stream = MessageCast<BE::CaptioningStreamChangedMessage>(message))
      mLines.push_back(stream->stream ? "stream" : "no stream");
    else if (MessageCast<BE::CaptionStreamFormatModifiedMessage>(message))
      mLines.push_back("format");
  }

  std::vector<std::string> Take() { return std::exchange(mLines, {}); }

 private:
  template <class Pairs> static std::string Begins(const Pairs& pairs) {
    std::string text;
    for (const auto& [stream, caption] : pairs)
      text += " " + std::to_string(caption->GetBeginTime().GetTicks());
    return text;
  }

  zebcore::utility::ImmutableString mStation;
  std::vector<std::string> mLines;
};

// A folder that goes away with the test.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "captivo-test-XXXXXX").string();
    mPath = mkdtemp(pattern.data());
  }
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::permissions(mPath, std::filesystem::perms::owner_all, error);
    std::filesystem::remove_all(mPath, error);
  }
  std::filesystem::path operator/(const std::string& name) const { return mPath / name; }
  const std::filesystem::path& GetPath() const { return mPath; }

 private:
  std::filesystem::path mPath;
};

using Lines = std::vector<std::string>;

} // namespace test
