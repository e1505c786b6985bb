#include "BE/Interfaces.h"

#include "BE/Project.h"

namespace BE {

void QueryAvailableCaptionStreamFormats(const InterfaceRef<IMasterClip>& clip, std::set<StreamFormat>& formats) {
  const InterfaceRef<MasterClip> holder = clip.Query<MasterClip>();
  if (!holder)
    return;
  for (const InterfaceRef<CaptioningStream>& stream : holder->GetStreams())
    formats.insert(stream->GetStreamFormat());
}

InterfaceRef<ICaptioningStream> CaptioningStreamFromMasterClip(const InterfaceRef<IMasterClip>& clip,
                                                               StreamFormat format) {
  const InterfaceRef<MasterClip> holder = clip.Query<MasterClip>();
  if (!holder)
    return nullptr;
  for (const InterfaceRef<CaptioningStream>& stream : holder->GetStreams()) {
    if (stream->GetStreamFormat() == format)
      return stream;
  }
  return nullptr;
}

bool IsMergedClip(const InterfaceRef<IMasterClip>& clip) {
  return clip && clip->IsMerged();
}

namespace SequenceUtils {

TickTime GetZeroPoint(const InterfaceRef<ISequence>& sequence) {
  return sequence ? sequence->GetZeroPoint() : zebmediatypes::kTime_Zero;
}

} // namespace SequenceUtils
} // namespace BE
