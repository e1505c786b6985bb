#include "ML/FrameDecoder.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
#include <libavutil/mathematics.h>
}

#include "MF/MediaSource.h"
#include "MF/StreamFacts.h"
#include "ML/FrameScaler.h"

namespace ML {

namespace {

// A target this far ahead of the last decoded picture is reached sooner by decoding on than by seeking.
constexpr std::int64_t kDecodeOnMilliseconds = 1500;
// How far before the target a seek aims after it landed behind it, which it may where an index is missing; at each
// further try four times as far, and from so far on at the beginning of the file.
constexpr std::int64_t kSecondSeekBackMilliseconds = 1000;
constexpr std::int64_t kLastSeekBackMilliseconds = 60000;
// The same for a picture that came out damaged, as one may whose references lie before the place that was sought.
constexpr std::int64_t kLastSeekBackForDamageMilliseconds = 4000;
// A file that ends so much before the end that it tells was cut off; so long a hole is a loss.
constexpr std::int64_t kCutOffMilliseconds = 500;
// So many errors in a row from a decoder that is only asked for what it still holds are taken for the end.
constexpr int kErrorsAtEnd = 64;

// Products of times and time bases, which 64 bits do not hold.
__extension__ using Int128 = __int128;

struct CodecCloser {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct FrameCloser {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct PacketCloser {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};

struct Picture {
  std::unique_ptr<AVFrame, FrameCloser> frame{av_frame_alloc()};
  std::int64_t timestamp = AV_NOPTS_VALUE;

  bool IsThere() const { return timestamp != AV_NOPTS_VALUE; }
  bool IsDamaged() const { return (frame->flags & AV_FRAME_FLAG_CORRUPT) != 0 || frame->decode_error_flags != 0; }
  void Forget() {
    av_frame_unref(frame.get());
    timestamp = AV_NOPTS_VALUE;
  }
};

} // namespace

struct FrameDecoder::Impl {
  explicit Impl(const std::atomic<bool>* stopFlag) : stop(stopFlag) {}

  const std::atomic<bool>* stop;
  MF::MediaSourcePtr format;
  std::unique_ptr<AVCodecContext, CodecCloser> codec;
  std::unique_ptr<AVPacket, PacketCloser> packet{av_packet_alloc()};
  FrameScaler scaler;
  // The picture on show, and the one that takes its place.
  Picture current;
  Picture next;
  AVStream* stream = nullptr;
  std::optional<AVRational> rate; // if the pictures keep one
  std::int64_t firstTimestamp = 0;
  std::int64_t lastOutput = AV_NOPTS_VALUE;
  std::int64_t lastSent = AV_NOPTS_VALUE;
  // Of packets since the last seek that were cut short or that the decoder refused.
  std::vector<std::int64_t> damagedTimestamps;
  bool draining = false;
  bool brokenOff = false; // reading ended with an error instead of the end
  bool still = false;
  bool open = false;

  bool IsStopped() const { return stop && stop->load(std::memory_order_relaxed); }

  bool Open(const std::filesystem::path& path) {
    std::string problem;
    format = MF::OpenMediaSource(path, problem);
    const AVStream* found = format ? MF::FindStream(*format, AVMEDIA_TYPE_VIDEO) : nullptr;
    if (!found)
      return false;
    stream = format->streams[found->index];
    const AVCodec* decoder = avcodec_find_decoder(stream->codecpar->codec_id);
    for (unsigned i = 0; i < format->nb_streams; ++i)
      format->streams[i]->discard = static_cast<int>(i) == stream->index ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    codec.reset(avcodec_alloc_context3(decoder));
    if (!decoder || !codec || avcodec_parameters_to_context(codec.get(), stream->codecpar) < 0)
      return false;
    codec->pkt_timebase = stream->time_base;
    codec->thread_count = 1;
    if (avcodec_open2(codec.get(), decoder, nullptr) < 0)
      return false;
    still = MF::IsStill(*format);
    rate = MF::GetConstantRate(*stream);
    if (!ReadPicture())
      return false;
    firstTimestamp = next.timestamp;
    Advance();
    return true;
  }

  std::int64_t FromMilliseconds(std::int64_t milliseconds) const {
    return av_rescale_q(milliseconds, AVRational{1, 1000}, stream->time_base);
  }

  std::int64_t FrameUnits() const {
    return std::max<std::int64_t>(1, av_rescale_q(1, av_inv_q(MF::GetRate(*stream)), stream->time_base));
  }

  // Ticks from the first picture, up: a picture is on show from the first tick at or behind its start. Timestamps that
  // were rounded to the units of the file belong to the nearest frame of the rate.
  Int128 StartOf(std::int64_t timestamp) const {
    const AVRational base = stream->time_base;
    const Int128 units = static_cast<Int128>(timestamp) - firstTimestamp;
    if (rate) {
      const Int128 framesPerUnit = static_cast<Int128>(base.num) * rate->num;
      const Int128 scale = static_cast<Int128>(base.den) * rate->den;
      const Int128 frame = DivideDown(2 * units * framesPerUnit + scale, 2 * scale);
      const Int128 offset = units * framesPerUnit - frame * scale;
      const bool isFine = 2 * framesPerUnit <= scale; // two units a frame at least
      if (isFine && offset < framesPerUnit && -offset < framesPerUnit)
        return DivideUp(frame * rate->den * zebmediatypes::kTicksPerSecond, rate->num);
    }
    return DivideUp(units * base.num * zebmediatypes::kTicksPerSecond, base.den);
  }

  static Int128 DivideDown(Int128 value, Int128 by) { return value >= 0 ? value / by : -((-value + by - 1) / by); }
  static Int128 DivideUp(Int128 value, Int128 by) { return -DivideDown(-value, by); }

  // The last timestamp at or before a time.
  std::int64_t TimestampAt(std::int64_t ticks) const {
    const AVRational base = stream->time_base;
    const Int128 units =
        static_cast<Int128>(ticks) * base.den / (static_cast<Int128>(zebmediatypes::kTicksPerSecond) * base.num);
    constexpr Int128 kLast = std::numeric_limits<std::int64_t>::max() / 4;
    return static_cast<std::int64_t>(std::min(units + firstTimestamp, kLast));
  }

  // The next picture in order of presentation, into next. False at the end.
  bool ReadPicture() {
    next.Forget();
    for (int errors = 0; !IsStopped();) {
      const int received = avcodec_receive_frame(codec.get(), next.frame.get());
      if (received == 0) {
        TakeTimestamp();
        return true;
      }
      if (received == AVERROR_EOF)
        return false;
      if (received != AVERROR(EAGAIN)) {
        MarkDamage(lastSent);
        if (draining && ++errors > kErrorsAtEnd)
          return false;
      } else if (draining) {
        return false;
      } else {
        SendPacket();
      }
    }
    return false;
  }

  void TakeTimestamp() {
    next.timestamp = next.frame->best_effort_timestamp;
    if (next.timestamp == AV_NOPTS_VALUE)
      next.timestamp = lastOutput == AV_NOPTS_VALUE ? 0 : lastOutput + FrameUnits();
    lastOutput = next.timestamp;
  }

  void SendPacket() {
    int read = 0;
    while ((read = av_read_frame(format.get(), packet.get())) >= 0) {
      const bool isOurs = packet->stream_index == stream->index;
      if (isOurs) {
        lastSent = packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts;
        // A packet that the decoder refuses is damaged: the pictures around it still count.
        if (avcodec_send_packet(codec.get(), packet.get()) < 0 || (packet->flags & AV_PKT_FLAG_CORRUPT) != 0)
          MarkDamage(lastSent);
      }
      av_packet_unref(packet.get());
      if (isOurs)
        return;
    }
    brokenOff = read != AVERROR_EOF;
    draining = true;
    avcodec_send_packet(codec.get(), nullptr);
  }

  void MarkDamage(std::int64_t timestamp) {
    if (timestamp != AV_NOPTS_VALUE)
      damagedTimestamps.push_back(timestamp);
  }

  void Advance() {
    std::swap(current, next);
    next.Forget();
    // What lies so far before the picture on show does not matter any more.
    std::erase_if(damagedTimestamps,
                  [oldest = current.timestamp - FrameUnits()](std::int64_t timestamp) { return timestamp <= oldest; });
  }

  // To the first packet. A search by timestamp in a container without an index may end behind the first picture.
  bool Rewind() {
    if (format->iformat->flags & AVFMT_TS_DISCONT) {
      if (av_seek_frame(format.get(), -1, 0, AVSEEK_FLAG_BYTE) < 0)
        return false;
      Forget();
      return true;
    }
    return Seek(firstTimestamp);
  }

  bool Seek(std::int64_t timestamp) {
    if (av_seek_frame(format.get(), stream->index, timestamp, AVSEEK_FLAG_BACKWARD) < 0 &&
        avformat_seek_file(format.get(), stream->index, std::numeric_limits<std::int64_t>::min(), timestamp,
                           std::numeric_limits<std::int64_t>::max(), 0) < 0)
      return false;
    Forget();
    return true;
  }

  // All that was decoded at the former place.
  void Forget() {
    avcodec_flush_buffers(codec.get());
    draining = false;
    brokenOff = false;
    lastOutput = AV_NOPTS_VALUE;
    lastSent = AV_NOPTS_VALUE;
    damagedTimestamps.clear();
    current.Forget();
    next.Forget();
  }

  // Decodes on until current is the picture on show at a time and next, if there is one, starts behind it.
  void DecodeUpTo(std::int64_t ticks) {
    for (;;) {
      if (!next.IsThere() && !ReadPicture())
        return;
      if (current.IsThere() && StartOf(next.timestamp) > ticks)
        return;
      Advance();
      if (StartOf(current.timestamp) > ticks)
        return;
    }
  }

  // The picture on show at the time was not reached while current is still behind it.
  bool IsReached(std::int64_t ticks) const { return current.IsThere() && StartOf(current.timestamp) <= ticks; }

  bool Reach(std::int64_t ticks) {
    if (still)
      return true;
    const std::int64_t target = TimestampAt(ticks);
    if (IsReached(ticks) && (draining || target - current.timestamp <= FromMilliseconds(kDecodeOnMilliseconds))) {
      DecodeUpTo(ticks);
      return !IsStopped();
    }
    for (std::int64_t back = 0; !IsStopped(); back = back == 0 ? kSecondSeekBackMilliseconds : back * 4) {
      const std::int64_t aim = std::max(firstTimestamp, target - FromMilliseconds(back));
      const bool isAtStart = aim == firstTimestamp || back > kLastSeekBackMilliseconds;
      if (!(isAtStart ? Rewind() : Seek(aim)))
        return false;
      DecodeUpTo(ticks);
      if (!IsReached(ticks) && WasRefused(target))
        return false;
      const bool isGoodEnough = !current.IsDamaged() || back >= kLastSeekBackForDamageMilliseconds;
      if (isAtStart || (IsReached(ticks) && isGoodEnough))
        return current.IsThere();
    }
    return false;
  }

  // The very picture at the timestamp was among those that the decoder refused, so that nothing before it helps.
  bool WasRefused(std::int64_t target) const {
    const std::int64_t frame = FrameUnits();
    return std::any_of(damagedTimestamps.begin(), damagedTimestamps.end(),
                       [=](std::int64_t damaged) { return damaged <= target && target < damaged + frame; });
  }

  // Whether current is what was filmed at the time, and not only what is left of a damaged stretch.
  bool IsWhole(std::int64_t ticks) const {
    if (current.IsDamaged())
      return false;
    if (still)
      return true;
    const std::int64_t target = TimestampAt(ticks);
    for (const std::int64_t damaged : damagedTimestamps) {
      if (damaged > current.timestamp && damaged <= target)
        return false;
    }
    return next.IsThere() ? !IsHoleAt(target) : !IsCutOffAt(target);
  }

  std::int64_t EndOfCurrent() const {
    return current.timestamp + std::max<std::int64_t>(current.frame->pkt_duration, FrameUnits());
  }

  // A broadcast sends its pictures one after another: where many are missing, they were lost on the way.
  bool IsHoleAt(std::int64_t target) const {
    return (format->iformat->flags & AVFMT_TS_DISCONT) != 0 && target >= EndOfCurrent() &&
           next.timestamp - EndOfCurrent() > FromMilliseconds(kCutOffMilliseconds);
  }

  // Whether the file should hold pictures behind the last one, the time included.
  bool IsCutOffAt(std::int64_t target) const {
    const std::int64_t end = EndOfCurrent();
    if (target < end)
      return false;
    if (brokenOff)
      return true;
    return stream->duration != AV_NOPTS_VALUE &&
           end + FromMilliseconds(kCutOffMilliseconds) < firstTimestamp + stream->duration;
  }
};

FrameDecoder::FrameDecoder(const std::filesystem::path& path, const std::atomic<bool>* stop)
    : mImpl(std::make_unique<Impl>(stop)) {
  mImpl->open = mImpl->Open(path);
}

FrameDecoder::~FrameDecoder() = default;

bool FrameDecoder::IsOpen() const {
  return mImpl->open;
}

zebcore::classref::InterfaceRef<MF::IVideoFrame> FrameDecoder::Decode(zebmediatypes::TickTime time, int width,
                                                                      int height) {
  if (!mImpl->open || width < 1 || height < 1)
    return nullptr;
  const std::int64_t ticks = std::max<std::int64_t>(time.GetTicks(), 0);
  if (!mImpl->Reach(ticks) || !mImpl->IsWhole(ticks))
    return nullptr;
  return mImpl->scaler.Scale(*mImpl->current.frame, width, height);
}

} // namespace ML
