#pragma once

#include <array>
#include <cstdint>
#include <set>

#include "BE/Interfaces.h"
#include "Captions/shell/HostTypes.h"

namespace Captivo {

// What the panel looks at, as a value: a host object, what kind of object it is, and which of the object's caption
// streams is selected. It never re-targets itself; a new object means a new record, assigned over the old one.
//
// Resolving the stream also settles the selected format: a format whose stream has vanished gives way to the first that
// the clip offers. So every operation that resolves it, comparing included, can change GetStreamFormat.
class CaptionsSource {
 public:
  enum Kind : std::int32_t { kKind_Nothing = 0, kKind_MasterClip = 1, kKind_Sequence = 2, kKind_TrackItem = 3 };

  CaptionsSource();
  // A master clip, or nothing if the object is null.
  explicit CaptionsSource(const InterfaceRef<>& object);
  static CaptionsSource ForTrackItem(const InterfaceRef<>& object);
  CaptionsSource(const CaptionsSource& other);
  // All but the display overrides and the media fields: these are choices of the user, and belong to whoever holds the
  // record until the next Refresh.
  CaptionsSource& operator=(const CaptionsSource& other);

  // The same stream, whatever leads to it, or none on both sides.
  friend bool operator==(const CaptionsSource& a, const CaptionsSource& b);

  Kind GetKind() const { return mKind; }
  bool IsEmpty() const { return mKind == kKind_Nothing; }
  StreamFormat GetStreamFormat() const { return mStreamFormat; }
  const std::set<StreamFormat>& GetAvailableFormats() const { return mAvailableFormats; }
  // No change for a format that the object does not offer.
  void SelectStreamFormat(const StreamFormat& format);
  // By position in the set; 0, no format, past its end.
  void SelectStreamFormatAtIndex(int index);

  // Recomputes everything, and drops the user's choices.
  void Refresh();
  // For when a stream's format changed: keeps the selected format where it can, else prefers one that has just
  // appeared. True if the selected format had to change.
  bool RefreshAvailableFormats();

  // Both: kind 2 is the sequence, every other kind the clip. True if the value changed.
  bool SetDisplayOverride(int kind, int isVideo, const TimeDisplay& display);
  bool SetMediaIsVideo(int kind, int isVideo);

  // Without recompute, what the last Refresh found.
  FrameRate GetFrameRate(bool recompute) const;
  TimeDisplay GetTimeDisplay(bool recompute) const;
  TickTime GetZeroPoint() const;

  // Null where there is none.
  InterfaceRef<BE::IMasterClip> GetMasterClip() const;
  InterfaceRef<BE::ISequence> GetSequence() const;
  InterfaceRef<BE::ICaptioningStream> GetCaptioningStream() const;
  InterfaceRef<BE::IVideoSegments> GetVideoClip() const;

 private:
  friend class CaptionsInspector;

  CaptionsSource(Kind kind, const InterfaceRef<>& object);
  bool IsShownAsVideo() const;
  InterfaceRef<BE::IClip> GetClip(BE::MediaType type) const;
  FrameRate ComputeClipFrameRate() const;
  TimeDisplay ComputeClipTimeDisplay() const;

  Kind mKind = kKind_Nothing;
  InterfaceRef<> mObject;
  FrameRate mFrameRate;
  TimeDisplay mTimeDisplay;
  // Clip video, clip audio, sequence video, sequence audio.
  std::array<TimeDisplay, 4> mDisplayOverrides;
  std::int32_t mClipMediaIsVideo = 1;
  std::int32_t mSequenceMediaIsVideo = 1;
  std::set<StreamFormat> mAvailableFormats;
  mutable StreamFormat mStreamFormat = zebcaptioning::kStreamFormat_None;
};

} // namespace Captivo
