#include "MF/StreamFacts.h"

#include <array>
#include <cmath>
#include <cstring>

namespace MF {

namespace {

// The rates that pictures are made at. Containers with coarse time stamps tell a rate that is a little off.
constexpr std::array<AVRational, 11> kUsualRates{{{24000, 1001},
                                                  {24, 1},
                                                  {25, 1},
                                                  {30000, 1001},
                                                  {30, 1},
                                                  {48, 1},
                                                  {50, 1},
                                                  {60000, 1001},
                                                  {60, 1},
                                                  {15, 1},
                                                  {12, 1}}};
constexpr double kRateTolerance = 0.0003;
// A short clip, or one that ends on a longer frame, has an average a little beside the rate that it was made at.
constexpr double kAverageTolerance = 0.02;
constexpr double kHighestRate = 240;

AVRational Snap(AVRational rate) {
  const double value = av_q2d(rate);
  for (const AVRational& usual : kUsualRates) {
    if (std::abs(value / av_q2d(usual) - 1) < kRateTolerance)
      return usual;
  }
  return rate;
}

bool IsRate(AVRational rate) {
  return rate.num > 0 && rate.den > 0;
}

bool IsCover(const AVStream& stream) {
  return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

} // namespace

const AVStream* FindStream(const AVFormatContext& source, AVMediaType type) {
  const AVStream* best = nullptr;
  for (unsigned i = 0; i < source.nb_streams; ++i) {
    const AVStream* stream = source.streams[i];
    if (stream->codecpar->codec_type != type || IsCover(*stream))
      continue;
    if (type == AVMEDIA_TYPE_VIDEO && (stream->codecpar->width <= 0 || stream->codecpar->height <= 0))
      continue;
    if (type == AVMEDIA_TYPE_AUDIO && stream->codecpar->sample_rate <= 0)
      continue;
    const bool isDefault = (stream->disposition & AV_DISPOSITION_DEFAULT) != 0;
    if (best == nullptr || (isDefault && (best->disposition & AV_DISPOSITION_DEFAULT) == 0))
      best = stream;
  }
  return best;
}

// The average where a stream tells it, since that is what its frames come at; the base rate where the two agree but for
// rounding, and where there is no average. Interlaced streams give fields as base rate, which the average is not.
AVRational GetRate(const AVStream& stream) {
  if (const auto constant = GetConstantRate(stream))
    return *constant;
  if (IsRate(stream.avg_frame_rate))
    return Snap(stream.avg_frame_rate);
  return IsRate(stream.r_frame_rate) ? Snap(stream.r_frame_rate) : AVRational{25, 1};
}

std::optional<AVRational> GetConstantRate(const AVStream& stream) {
  const AVRational average = stream.avg_frame_rate;
  const AVRational base = stream.r_frame_rate;
  if (!IsRate(average) || !IsRate(base) || av_q2d(base) > kHighestRate)
    return std::nullopt;
  if (std::abs(av_q2d(average) / av_q2d(base) - 1) >= kAverageTolerance)
    return std::nullopt;
  return Snap(base);
}

bool IsStill(const AVFormatContext& source) {
  const char* name = source.iformat->name;
  const std::size_t length = std::strlen(name);
  constexpr const char* kPipe = "_pipe";
  const bool isPipe = length > std::strlen(kPipe) && std::strcmp(name + length - std::strlen(kPipe), kPipe) == 0;
  return isPipe || std::strcmp(name, "image2") == 0;
}

} // namespace MF
