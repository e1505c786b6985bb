#include "Captions/shell/CaptionsSource.h"

#include <iterator>

#include "BE/Preferences.h"
#include "MZ/Actions.h"

namespace Captivo {

namespace {

std::size_t OverrideIndex(int kind, bool isVideo) {
  return (kind == CaptionsSource::kKind_Sequence ? 2U : 0U) + (isVideo ? 0U : 1U);
}

// A still image has no rate of its own; these are the user's defaults for it.
FrameRate ReadStillImageFrameRate() {
  BE::SerializeableValue<FrameRate> rate(BE::kSerializeableType_Int64, zebmediatypes::kFrameRate_Invalid);
  BE::GetBackend()->GetPreferences()->Read(BE::kPrefsStillImagesDefaultFramerate, rate);
  return rate.GetFrameRate();
}

bool ReadStillImageIsDropFrame() {
  BE::SerializeableValue<bool> isDropFrame(BE::kSerializeableType_Bool, true);
  BE::GetBackend()->GetPreferences()->Read(BE::kPrefsStillImagesDefaultIsDropFrame, isDropFrame);
  return isDropFrame.GetValue();
}

} // namespace

CaptionsSource::CaptionsSource() : CaptionsSource(kKind_Nothing, InterfaceRef<>()) {}

CaptionsSource::CaptionsSource(const InterfaceRef<>& object)
    : CaptionsSource(object ? kKind_MasterClip : kKind_Nothing, object) {}

CaptionsSource CaptionsSource::ForTrackItem(const InterfaceRef<>& object) {
  return CaptionsSource(kKind_TrackItem, object);
}

CaptionsSource::CaptionsSource(Kind kind, const InterfaceRef<>& object) : mKind(kind), mObject(object) {
  Refresh();
}

CaptionsSource::CaptionsSource(const CaptionsSource& other) {
  mDisplayOverrides.fill(kTimeDisplay_Invalid);
  *this = other;
}

CaptionsSource& CaptionsSource::operator=(const CaptionsSource& other) {
  mKind = other.mKind;
  mObject = other.mObject;
  mAvailableFormats = other.mAvailableFormats;
  mStreamFormat = other.mStreamFormat;
  mFrameRate = other.mFrameRate;
  mTimeDisplay = other.mTimeDisplay;
  return *this;
}

bool operator==(const CaptionsSource& a, const CaptionsSource& b) {
  const auto streamA = a.GetCaptioningStream();
  const auto streamB = b.GetCaptioningStream();
  if (!streamA || !streamB)
    return !streamA && !streamB;
  return streamA->GetIdentity() == streamB->GetIdentity();
}

void CaptionsSource::SelectStreamFormat(const StreamFormat& format) {
  if (mAvailableFormats.contains(format))
    mStreamFormat = format;
}

void CaptionsSource::SelectStreamFormatAtIndex(int index) {
  mStreamFormat = zebcaptioning::kStreamFormat_None;
  if (index >= 0 && static_cast<std::size_t>(index) < mAvailableFormats.size())
    mStreamFormat = *std::next(mAvailableFormats.begin(), index);
}

void CaptionsSource::Refresh() {
  mDisplayOverrides.fill(kTimeDisplay_Invalid);
  mClipMediaIsVideo = 1;
  mSequenceMediaIsVideo = 1;
  mAvailableFormats.clear();
  mStreamFormat = zebcaptioning::kStreamFormat_None;

  if (mKind == kKind_MasterClip) {
    BE::QueryAvailableCaptionStreamFormats(GetMasterClip(), mAvailableFormats);
  } else if (const auto stream = GetCaptioningStream()) {
    mStreamFormat = stream->GetStreamFormat();
    mAvailableFormats.insert(mStreamFormat);
  }
  if (!mAvailableFormats.empty() && !mAvailableFormats.contains(mStreamFormat))
    mStreamFormat = *mAvailableFormats.begin();

  mTimeDisplay = GetTimeDisplay(true);
  mFrameRate = GetFrameRate(true);
}

bool CaptionsSource::RefreshAvailableFormats() {
  const auto clip = GetMasterClip();
  if (!clip)
    return false;

  const std::set<StreamFormat> formerFormats = mAvailableFormats;
  mAvailableFormats.clear();
  BE::QueryAvailableCaptionStreamFormats(clip, mAvailableFormats);
  if (mStreamFormat == zebcaptioning::kStreamFormat_None || mAvailableFormats.contains(mStreamFormat))
    return false;

  mStreamFormat = zebcaptioning::kStreamFormat_None;
  for (const StreamFormat format : mAvailableFormats) {
    if (!formerFormats.contains(format)) {
      mStreamFormat = format;
      break;
    }
  }
  if (mStreamFormat == zebcaptioning::kStreamFormat_None && !mAvailableFormats.empty())
    mStreamFormat = *mAvailableFormats.begin();
  return true;
}

bool CaptionsSource::SetDisplayOverride(int kind, int isVideo, const TimeDisplay& display) {
  TimeDisplay& stored = mDisplayOverrides[OverrideIndex(kind, isVideo != 0)];
  if (stored == display)
    return false;
  stored = display;
  return true;
}

bool CaptionsSource::SetMediaIsVideo(int kind, int isVideo) {
  std::int32_t& stored = kind == kKind_Sequence ? mSequenceMediaIsVideo : mClipMediaIsVideo;
  if (stored == isVideo)
    return false;
  stored = isVideo;
  return true;
}

bool CaptionsSource::IsShownAsVideo() const {
  return (mKind == kKind_Sequence ? mSequenceMediaIsVideo : mClipMediaIsVideo) != 0;
}

FrameRate CaptionsSource::GetFrameRate(bool recompute) const {
  if (!recompute)
    return mFrameRate;
  switch (mKind) {
  case kKind_Sequence:
    if (const auto sequence = GetSequence())
      return IsShownAsVideo() ? sequence->GetVideoFrameRate() : sequence->GetAudioFrameRate();
    break;
  case kKind_MasterClip:
  case kKind_TrackItem:
    if (GetMasterClip())
      return ComputeClipFrameRate();
    break;
  case kKind_Nothing:
    break;
  }
  return zebmediatypes::kFrameRate_Invalid;
}

FrameRate CaptionsSource::ComputeClipFrameRate() const {
  const auto clip = GetClip(IsShownAsVideo() ? BE::kMediaType_Video : BE::kMediaType_Audio);
  return clip ? clip->GetFrameRate() : ReadStillImageFrameRate();
}

TimeDisplay CaptionsSource::GetTimeDisplay(bool recompute) const {
  if (!recompute)
    return mTimeDisplay;
  const TimeDisplay chosen = mDisplayOverrides[OverrideIndex(mKind, IsShownAsVideo())];
  if (chosen != kTimeDisplay_Invalid)
    return chosen;
  switch (mKind) {
  case kKind_Sequence:
    if (const auto sequence = GetSequence()) {
      return mSequenceMediaIsVideo == 1 ? MZ::SequenceActions::GetVideoTimeDisplayFormat(sequence, true)
                                        : MZ::SequenceActions::GetAudioTimeDisplayFormat(sequence);
    }
    break;
  case kKind_MasterClip:
  case kKind_TrackItem:
    if (GetMasterClip())
      return ComputeClipTimeDisplay();
    break;
  case kKind_Nothing:
    break;
  }
  return TimeDisplay();
}

TimeDisplay CaptionsSource::ComputeClipTimeDisplay() const {
  if (mClipMediaIsVideo != 1)
    return MZ::ProjectActions::GetCurrentAudioTimeDisplayValue(MZ::GetProject());
  if (GetClip(BE::kMediaType_Video))
    return MZ::ProjectActions::GetCurrentVideoTimeDisplayValueForMasterClip(MZ::GetProject(), GetMasterClip());
  const FrameRate rate = ReadStillImageFrameRate();
  return MZ::ProjectActions::GetCurrentVideoTimeDisplayValue(MZ::GetProject(), rate, ReadStillImageIsDropFrame());
}

TickTime CaptionsSource::GetZeroPoint() const {
  switch (mKind) {
  case kKind_Sequence:
    if (const auto sequence = GetSequence())
      return BE::SequenceUtils::GetZeroPoint(sequence);
    break;
  case kKind_MasterClip:
  case kKind_TrackItem:
    return MZ::MasterClip(GetMasterClip()).GetMediaOffset(0);
  case kKind_Nothing:
    break;
  }
  return kTime_Zero;
}

InterfaceRef<BE::IMasterClip> CaptionsSource::GetMasterClip() const {
  if (mKind == kKind_MasterClip)
    return mObject.Query<BE::IMasterClip>();
  if (mKind != kKind_TrackItem)
    return nullptr;
  const auto item = mObject.Query<BE::ITrackItem>().Query<BE::IClipTrackItem>();
  const auto clip = item ? item->GetClip() : nullptr;
  return clip ? clip->GetMasterClip() : nullptr;
}

InterfaceRef<BE::ISequence> CaptionsSource::GetSequence() const {
  return mObject.Query<BE::ISequence>();
}

InterfaceRef<BE::ICaptioningStream> CaptionsSource::GetCaptioningStream() const {
  const auto clip = GetMasterClip();
  if (!clip)
    return nullptr;
  if (mStreamFormat != zebcaptioning::kStreamFormat_None) {
    if (auto stream = BE::CaptioningStreamFromMasterClip(clip, mStreamFormat))
      return stream;
  }
  std::set<StreamFormat> formats;
  BE::QueryAvailableCaptionStreamFormats(clip, formats);
  if (formats.empty()) {
    mStreamFormat = zebcaptioning::kStreamFormat_None;
    return nullptr;
  }
  mStreamFormat = *formats.begin();
  return BE::CaptioningStreamFromMasterClip(clip, mStreamFormat);
}

InterfaceRef<BE::IVideoSegments> CaptionsSource::GetVideoClip() const {
  switch (mKind) {
  case kKind_Sequence:
    return mObject.Query<BE::IVideoSegments>();
  case kKind_MasterClip:
  case kKind_TrackItem:
    return GetClip(BE::kMediaType_Video).Query<BE::IVideoSegments>();
  case kKind_Nothing:
    break;
  }
  return nullptr;
}

InterfaceRef<BE::IClip> CaptionsSource::GetClip(BE::MediaType type) const {
  const auto clip = GetMasterClip();
  return clip ? clip->GetClip(type, 0) : nullptr;
}

} // namespace Captivo
