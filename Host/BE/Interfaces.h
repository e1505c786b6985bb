#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "Captions/contracts/Caption.h"
#include "Captions/contracts/CaptionDisplaySettings.h"
#include "Captions/contracts/CaptioningRenderableModel.h"
#include "Captions/contracts/StreamFormat.h"
#include "zebcore/Geometry.h"
#include "zebcore/Guid.h"
#include "zebcore/ImmutableString.h"
#include "zebcore/InterfaceRef.h"
#include "zebcore/UString.h"
#include "zebmediatypes/FrameRate.h"
#include "zebmediatypes/PixelAspectRatio.h"
#include "zebmediatypes/TickTime.h"
#include "zebmediatypes/TimeDisplay.h"

// The interfaces under which the host offers its objects. An object offers several; query one from another.
namespace BE {

using zebcaptioning::StreamFormat;
using zebcore::UString;
using zebcore::classref::InterfaceRef;
using zebcore::classref::IObject;
using zebmediatypes::FrameRate;
using zebmediatypes::TickTime;
using zebmediatypes::TimeDisplay;

enum MediaType : int { kMediaType_Video = 0, kMediaType_Audio = 1 };

class IMasterClip;

// Objects that report their changes on a station of their own.
class INotification : public virtual IObject {
 public:
  // "clip:ID", "stream:ID", "sequence:ID".
  virtual zebcore::utility::ImmutableString GetStationID() const = 0;
};

// One medium of a master clip.
class IClip : public virtual IObject {
 public:
  virtual MediaType GetMediaType() const = 0;
  virtual FrameRate GetFrameRate() const = 0;
  virtual TickTime GetDuration() const = 0;
  virtual InterfaceRef<IMasterClip> GetMasterClip() const = 0;
};

// The pictures of a video clip or of a sequence.
class IVideoSegments : public virtual IObject {
 public:
  // (0, 0, width, height) in pixels.
  virtual zebcore::geom::RectT<int> GetFrameRect() const = 0;
  virtual zebmediatypes::PixelAspectRatio GetPixelAspectRatio() const = 0;
  virtual zebcore::utility::Guid GetContentID() const = 0;
};

class IMasterClip : public virtual IObject {
 public:
  virtual UString GetName() const = 0;
  // The clip of a medium; null if the master clip has none. A still image has no video clip.
  virtual InterfaceRef<IClip> GetClip(MediaType type, int index) const = 0;
  // The time of the first frame, as the file's start timecode gives it.
  virtual TickTime GetMediaOffset(int index) const = 0;
  virtual bool IsMerged() const = 0;
  virtual bool IsStill() const = 0;
};

// A stretch of a sequence's track.
class ITrackItem : public virtual IObject {
 public:
  virtual TickTime GetStart() const = 0;
  virtual TickTime GetEnd() const = 0;
};

// A track item that shows a clip.
class IClipTrackItem : public virtual IObject {
 public:
  virtual InterfaceRef<IClip> GetClip() const = 0;
};

class ISequence : public virtual IObject {
 public:
  virtual UString GetName() const = 0;
  virtual FrameRate GetVideoFrameRate() const = 0;
  virtual FrameRate GetAudioFrameRate() const = 0;
  virtual TickTime GetZeroPoint() const = 0;
  virtual TimeDisplay GetVideoTimeDisplay() const = 0;
  virtual TimeDisplay GetAudioTimeDisplay() const = 0;
  // Edits of the sequence fall on frames (0) or on samples (1).
  virtual int GetFrameAlignment() const = 0;
};

// The captions of one format of a master clip, by begin time. It reports on its station (INotification).
class ICaptioningStream : public virtual IObject {
 public:
  virtual StreamFormat GetStreamFormat() const = 0;
  virtual std::size_t GetCaptionCount() const = 0;
  // Opaque; handed back to GetCaption.
  using CaptionKey = zebcore::utility::Guid;
  // In order of begin time, then age.
  virtual void GetCaptionKeys(std::vector<CaptionKey>& keys) const = 0;
  // Null for a key that is not in the stream.
  virtual boost::intrusive_ptr<zebcaptioning::Caption> GetCaption(const CaptionKey& key) const = 0;
  virtual void GetCaptions(std::vector<boost::intrusive_ptr<zebcaptioning::Caption>>& captions) const = 0;
  virtual void GetDisplaySettings(const TickTime& time, zebcaptioning::CaptionDisplaySettings& settings) const = 0;
  // Changes with every change that can alter a picture, and with nothing else.
  virtual zebcore::utility::Guid GetGuid() const = 0;
  // The open captions on show at a time; null for closed formats and where none is on show.
  virtual boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel>
  GetRenderableModel(const TickTime& time) const = 0;
  // The object's own pointer: two references lead to the same stream when these are equal.
  virtual const void* GetIdentity() const = 0;
};

class IProject : public virtual IObject {
 public:
  virtual UString GetName() const = 0;
  virtual bool IsReadOnly() const = 0;
};

// The formats of the streams that a clip holds; the set is filled, not emptied. Nothing for a null clip.
void QueryAvailableCaptionStreamFormats(const InterfaceRef<IMasterClip>& clip, std::set<StreamFormat>& formats);
// Null if the clip has no stream of that format.
InterfaceRef<ICaptioningStream> CaptioningStreamFromMasterClip(const InterfaceRef<IMasterClip>& clip,
                                                               StreamFormat format);
// False for null.
bool IsMergedClip(const InterfaceRef<IMasterClip>& clip);

namespace SequenceUtils {
TickTime GetZeroPoint(const InterfaceRef<ISequence>& sequence);
}

} // namespace BE
