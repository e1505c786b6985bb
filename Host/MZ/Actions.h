#pragma once

#include <set>

#include "BE/Interfaces.h"

// What of the host's workspace concerns the project in hand.
namespace MZ {

using zebcore::classref::InterfaceRef;

// The project that the user works in; null if there is none.
InterfaceRef<BE::IProject> GetProject();
InterfaceRef<BE::IProject> GetActiveProject();
// Makes it the active one and says so by BE::ProjectActivatedMessage. Null for none.
void SetActiveProject(const InterfaceRef<BE::IProject>& project);

// A master clip with what the host adds to it.
class MasterClip {
 public:
  explicit MasterClip(const InterfaceRef<BE::IMasterClip>& clip) : mClip(clip) {}
  // Zero for a null clip.
  zebmediatypes::TickTime GetMediaOffset(int index) const;

 private:
  InterfaceRef<BE::IMasterClip> mClip;
};

namespace SequenceActions {
zebmediatypes::TimeDisplay GetVideoTimeDisplayFormat(const InterfaceRef<BE::ISequence>& sequence, bool current);
zebmediatypes::TimeDisplay GetAudioTimeDisplayFormat(const InterfaceRef<BE::ISequence>& sequence);
int GetFrameAlignment(const InterfaceRef<BE::ISequence>& sequence);
} // namespace SequenceActions

namespace ProjectActions {
// The timecode that goes with the clip's own rate, unless the project was told to show all video otherwise.
zebmediatypes::TimeDisplay GetCurrentVideoTimeDisplayValueForMasterClip(const InterfaceRef<BE::IProject>& project,
                                                                        const InterfaceRef<BE::IMasterClip>& clip);
zebmediatypes::TimeDisplay GetCurrentVideoTimeDisplayValue(const InterfaceRef<BE::IProject>& project,
                                                           zebmediatypes::FrameRate rate, bool dropFrame);
zebmediatypes::TimeDisplay GetCurrentAudioTimeDisplayValue(const InterfaceRef<BE::IProject>& project);
} // namespace ProjectActions

// 0: a font that a person chose for captions.
using FontUsageType = int;
// One readable line for each font in the host's log of fonts.
void LogFontUsage(const std::set<zebcore::UString>& names, FontUsageType type);

} // namespace MZ
