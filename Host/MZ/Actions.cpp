#include "MZ/Actions.h"

#include <cstdlib>
#include <string>

#include <nlohmann/json.hpp>

#include "BE/Project.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "zebcore/Log.h"
#include "zebcore/Messaging.h"
#include "zebcore/Trace.h"

namespace MZ {

using zebmediatypes::FrameRate;
using zebmediatypes::TimeDisplay;

namespace {

InterfaceRef<BE::IProject>& ActiveProject() {
  static InterfaceRef<BE::IProject> project;
  return project;
}

// The display that the project's document asks for, or nothing.
bool ReadDisplaySetting(const InterfaceRef<BE::IProject>& project, const char* key, TimeDisplay& display) {
  const InterfaceRef<BE::Project> document = project.Query<BE::Project>();
  if (!document)
    return false;
  const std::string text = document->GetSetting(key, "");
  char* end = nullptr;
  const long number = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0')
    return false;
  display = TimeDisplay(static_cast<int>(number));
  return true;
}

} // namespace

InterfaceRef<BE::IProject> GetProject() {
  return ActiveProject();
}
InterfaceRef<BE::IProject> GetActiveProject() {
  return ActiveProject();
}

void SetActiveProject(const InterfaceRef<BE::IProject>& project) {
  ActiveProject() = project;
  BE::ProjectActivatedMessage message;
  message.project = project;
  zebcore::messaging::BroadcastMessage(BE::kBackendProjectActivationStationID, message);
}

zebmediatypes::TickTime MasterClip::GetMediaOffset(int index) const {
  return mClip ? mClip->GetMediaOffset(index) : zebmediatypes::kTime_Zero;
}

namespace SequenceActions {

// A sequence has one format, the current one, so that the flag makes no difference here.
TimeDisplay GetVideoTimeDisplayFormat(const InterfaceRef<BE::ISequence>& sequence, bool) {
  return sequence ? sequence->GetVideoTimeDisplay() : TimeDisplay();
}

TimeDisplay GetAudioTimeDisplayFormat(const InterfaceRef<BE::ISequence>& sequence) {
  return sequence ? sequence->GetAudioTimeDisplay() : TimeDisplay();
}

int GetFrameAlignment(const InterfaceRef<BE::ISequence>& sequence) {
  return sequence ? sequence->GetFrameAlignment() : 0;
}

} // namespace SequenceActions

namespace ProjectActions {

TimeDisplay GetCurrentVideoTimeDisplayValueForMasterClip(const InterfaceRef<BE::IProject>& project,
                                                         const InterfaceRef<BE::IMasterClip>& clip) {
  const InterfaceRef<BE::MasterClip> holder = clip.Query<BE::MasterClip>();
  if (holder)
    return GetCurrentVideoTimeDisplayValue(project, holder->GetMediaInfo().frameRate, holder->GetMediaInfo().dropFrame);
  InterfaceRef<BE::IClip> video;
  if (clip)
    video = clip->GetClip(BE::kMediaType_Video, 0);
  return GetCurrentVideoTimeDisplayValue(project, video ? video->GetFrameRate() : FrameRate(), false);
}

TimeDisplay GetCurrentVideoTimeDisplayValue(const InterfaceRef<BE::IProject>& project, FrameRate rate, bool dropFrame) {
  TimeDisplay display;
  if (ReadDisplaySetting(project, "MZ.VideoTimeDisplay", display))
    return display;
  return zebmediatypes::GetTimecodeDisplay(rate, dropFrame);
}

TimeDisplay GetCurrentAudioTimeDisplayValue(const InterfaceRef<BE::IProject>& project) {
  TimeDisplay display = zebmediatypes::kTimeDisplay_AudioSamples;
  ReadDisplaySetting(project, "MZ.AudioTimeDisplay", display);
  return display;
}

} // namespace ProjectActions

void LogFontUsage(const std::set<zebcore::UString>& names, FontUsageType type) {
  nlohmann::json list = nlohmann::json::array();
  for (const zebcore::UString& name : names) {
    list.push_back(zebcore::ToUTF8(name));
    zebcore::log::Write(zebcore::log::Level::Info, "Font used for captions: " + zebcore::ToUTF8(name));
  }
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("MZ::LogFontUsage", {{"names", list}, {"type", type}});
}

} // namespace MZ
