#include "Captions/contracts/CaptioningRenderableModel.h"

#include <algorithm>

namespace zebcaptioning {

namespace {

// The finisher of SplitMix64.
std::uint64_t Scramble(std::uint64_t value) {
  value += 0x9E3779B97F4A7C15ULL;
  value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9ULL;
  value = (value ^ value >> 27) * 0x94D049BB133111EBULL;
  return value ^ value >> 31;
}

} // namespace

CaptioningRenderableModel::CaptioningRenderableModel(std::vector<CaptionStatePtr> captions, int frameWidth,
                                                     int frameHeight,
                                                     const zebmediatypes::PixelAspectRatio& pixelAspect)
    : mCaptions(std::move(captions)), mFrameWidth(frameWidth), mFrameHeight(frameHeight), mPixelAspect(pixelAspect) {
  std::stable_sort(mCaptions.begin(), mCaptions.end(),
                   [](const CaptionStatePtr& a, const CaptionStatePtr& b) { return a->begin < b->begin; });
}

zebcore::utility::Guid CaptioningRenderableModel::CalculateRequestHash(const zebcore::utility::Guid& stream,
                                                                       const zebmediatypes::TickTime& time,
                                                                       StreamFormat format) {
  zebcore::utility::Guid hash;
  for (const std::uint64_t part :
       {stream.high, stream.low, static_cast<std::uint64_t>(time.GetTicks()), std::uint64_t{format}}) {
    hash.high = Scramble(hash.high ^ part);
    hash.low = Scramble(hash.low + Scramble(part ^ hash.high));
  }
  if (hash == zebcore::utility::Guid())
    hash.low = 1;
  return hash;
}

} // namespace zebcaptioning
