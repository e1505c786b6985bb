#pragma once

#include <vector>

#include "Captions/contracts/StreamFormat.h"
#include "zebcore/InterfaceRef.h"
#include "zebcore/Messaging.h"
#include "zebmediatypes/TickTime.h"
#include "zebmediatypes/TimeDisplay.h"

// What the host says about what the user has selected, opened and chosen.

namespace BE {
class IMasterClip;
class ISequence;
class ITrackItem;
class IBin;
} // namespace BE

namespace MF {
class IVideoFrame;
}

namespace MZ {

using zebcore::classref::InterfaceRef;
using zebcore::messaging::MessageOf;
using zebmediatypes::TickTime;

struct ClosedCaptionsOpenedMessage : MessageOf<ClosedCaptionsOpenedMessage> {
  static constexpr const char* kTypeName = "MZ::ClosedCaptionsOpenedMessage";
};

struct CaptioningTrackItemOpenedMessage : MessageOf<CaptioningTrackItemOpenedMessage> {
  static constexpr const char* kTypeName = "MZ::CaptioningTrackItemOpenedMessage";
  InterfaceRef<BE::ISequence> sequence;
  InterfaceRef<BE::ITrackItem> item;
  TickTime time;
};

struct CaptionsSelectionChangedMessage : MessageOf<CaptionsSelectionChangedMessage> {
  static constexpr const char* kTypeName = "MZ::CaptionsSelectionChangedMessage";
  std::vector<TickTime> times;
  zebcaptioning::StreamFormat format = zebcaptioning::kStreamFormat_None;
};

struct MasterClipSelectedMessage : MessageOf<MasterClipSelectedMessage> {
  static constexpr const char* kTypeName = "MZ::MasterClipSelectedMessage";
  InterfaceRef<BE::IMasterClip> clip;
  bool opened = false;
};

struct MasterClipClosedMessage : MessageOf<MasterClipClosedMessage> {
  static constexpr const char* kTypeName = "MZ::MasterClipClosedMessage";
  InterfaceRef<BE::IMasterClip> clip;
  bool opened = false;
};

struct TrackItemInfo {
  InterfaceRef<BE::ITrackItem> item;
  InterfaceRef<BE::IMasterClip> clip;
};

struct VideoTrackItemInfoMessage : MessageOf<VideoTrackItemInfoMessage> {
  static constexpr const char* kTypeName = "MZ::VideoTrackItemInfoMessage";
  TrackItemInfo info;
};
struct AudioVideoTrackItemInfoMessage : MessageOf<AudioVideoTrackItemInfoMessage> {
  static constexpr const char* kTypeName = "MZ::AudioVideoTrackItemInfoMessage";
  TrackItemInfo info;
};
struct AudioTrackItemInfoMessage : MessageOf<AudioTrackItemInfoMessage> {
  static constexpr const char* kTypeName = "MZ::AudioTrackItemInfoMessage";
  TrackItemInfo info;
};
struct TransitionTrackItemInfoMessage : MessageOf<TransitionTrackItemInfoMessage> {
  static constexpr const char* kTypeName = "MZ::TransitionTrackItemInfoMessage";
};
struct EmptyTrackItemInfoMessage : MessageOf<EmptyTrackItemInfoMessage> {
  static constexpr const char* kTypeName = "MZ::EmptyTrackItemInfoMessage";
};
struct NothingInfoMessage : MessageOf<NothingInfoMessage> {
  static constexpr const char* kTypeName = "MZ::NothingInfoMessage";
};

struct SequenceSettingsChangedMessage : MessageOf<SequenceSettingsChangedMessage> {
  static constexpr const char* kTypeName = "MZ::SequenceSettingsChangedMessage";
  InterfaceRef<BE::ISequence> sequence;
};
struct BinSelectedMessage : MessageOf<BinSelectedMessage> {
  static constexpr const char* kTypeName = "MZ::BinSelectedMessage";
  InterfaceRef<> bin;
};
struct SequenceSelectedMessage : MessageOf<SequenceSelectedMessage> {
  static constexpr const char* kTypeName = "MZ::SequenceSelectedMessage";
  InterfaceRef<BE::ISequence> sequence;
};

} // namespace MZ

namespace HSL {

struct SourceClipSelectedMessage : zebcore::messaging::MessageOf<SourceClipSelectedMessage> {
  static constexpr const char* kTypeName = "HSL::SourceClipSelectedMessage";
  int kind = 0; // 1 master clip, 2 track item
  zebcore::classref::InterfaceRef<BE::IMasterClip> clip;
  zebcore::classref::InterfaceRef<BE::ITrackItem> item;
};

} // namespace HSL

namespace ML {

// A frame that was asked for is there.
struct RenderFrameCompletionMessage : zebcore::messaging::MessageOf<RenderFrameCompletionMessage> {
  static constexpr const char* kTypeName = "ML::RenderFrameCompletionMessage";
  std::uint32_t requestID = 0;
  zebmediatypes::TickTime time;
  zebcore::classref::InterfaceRef<MF::IVideoFrame> frame;
};

} // namespace ML

namespace UIF {

struct HotTimecodeVideoTimeDisplayChangedMessage
    : zebcore::messaging::MessageOf<HotTimecodeVideoTimeDisplayChangedMessage> {
  static constexpr const char* kTypeName = "UIF::HotTimecodeVideoTimeDisplayChangedMessage";
  zebmediatypes::TimeDisplay display;
};

} // namespace UIF
