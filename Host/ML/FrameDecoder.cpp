#include "ML/FrameDecoder.h"

#include <algorithm>
#include <limits>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
#include <libavutil/mathematics.h>
#include <libswscale/swscale.h>
}

namespace ML {

namespace {

// A target this far ahead of the last decoded picture is reached sooner by decoding on than by seeking.
constexpr std::int64_t kDecodeOnMilliseconds = 1500;
// How far before the target a seek aims at first, and at most; where an index is missing a seek may land behind it.
constexpr std::int64_t kFirstSeekBackMilliseconds = 0;
constexpr std::int64_t kLastSeekBackMilliseconds = 60000;

// Products of times and time bases, which 64 bits do not hold.
__extension__ using Int128 = __int128;

struct FormatCloser {
  void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
struct CodecCloser {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct FrameCloser {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct PacketCloser {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct ScalerCloser {
  void operator()(SwsContext* context) const { sws_freeContext(context); }
};

} // namespace

struct FrameDecoder::Impl {
  std::unique_ptr<AVFormatContext, FormatCloser> format;
  std::unique_ptr<AVCodecContext, CodecCloser> codec;
  std::unique_ptr<SwsContext, ScalerCloser> scaler;
  std::unique_ptr<AVPacket, PacketCloser> packet{av_packet_alloc()};
  // The last picture decoded and the one before it, by presentation time.
  std::unique_ptr<AVFrame, FrameCloser> current{av_frame_alloc()};
  std::unique_ptr<AVFrame, FrameCloser> next{av_frame_alloc()};
  AVStream* stream = nullptr;
  std::int64_t firstTimestamp = 0;
  std::int64_t currentTimestamp = AV_NOPTS_VALUE;
  std::int64_t nextTimestamp = AV_NOPTS_VALUE;
  std::int64_t lastOutput = AV_NOPTS_VALUE;
  bool draining = false;
  bool open = false;

  bool Open(const std::filesystem::path& path) {
    AVFormatContext* context = nullptr;
    if (avformat_open_input(&context, path.c_str(), nullptr, nullptr) < 0)
      return false;
    format.reset(context);
    if (avformat_find_stream_info(context, nullptr) < 0)
      return false;
    const AVCodec* decoder = nullptr;
    const int index = av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, &decoder, 0);
    if (index < 0 || !decoder)
      return false;
    stream = context->streams[index];
    for (unsigned i = 0; i < context->nb_streams; ++i)
      context->streams[i]->discard = static_cast<int>(i) == index ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    codec.reset(avcodec_alloc_context3(decoder));
    if (!codec || avcodec_parameters_to_context(codec.get(), stream->codecpar) < 0)
      return false;
    codec->pkt_timebase = stream->time_base;
    codec->thread_count = 1;
    if (avcodec_open2(codec.get(), decoder, nullptr) < 0)
      return false;
    if (!ReadPicture())
      return false;
    firstTimestamp = nextTimestamp;
    Advance();
    return true;
  }

  std::int64_t FromMilliseconds(std::int64_t milliseconds) const {
    return av_rescale_q(milliseconds, AVRational{1, 1000}, stream->time_base);
  }

  // The next picture in order of presentation, into next. False at the end.
  bool ReadPicture() {
    av_frame_unref(next.get());
    nextTimestamp = AV_NOPTS_VALUE;
    for (;;) {
      const int received = avcodec_receive_frame(codec.get(), next.get());
      if (received == 0) {
        nextTimestamp = next->best_effort_timestamp;
        if (nextTimestamp == AV_NOPTS_VALUE)
          nextTimestamp = lastOutput == AV_NOPTS_VALUE ? 0 : lastOutput + std::max<std::int64_t>(1, FrameTicks());
        lastOutput = nextTimestamp;
        return true;
      }
      if (received != AVERROR(EAGAIN) || draining)
        return false;
      SendPacket();
    }
  }

  std::int64_t FrameTicks() const {
    const AVRational rate = stream->avg_frame_rate.num > 0 ? stream->avg_frame_rate : AVRational{25, 1};
    return av_rescale_q(1, av_inv_q(rate), stream->time_base);
  }

  void SendPacket() {
    while (av_read_frame(format.get(), packet.get()) >= 0) {
      const bool ours = packet->stream_index == stream->index;
      // A packet that the decoder refuses is damaged: the pictures around it still count.
      if (ours)
        avcodec_send_packet(codec.get(), packet.get());
      av_packet_unref(packet.get());
      if (ours)
        return;
    }
    draining = true;
    avcodec_send_packet(codec.get(), nullptr);
  }

  void Advance() {
    std::swap(current, next);
    currentTimestamp = nextTimestamp;
    av_frame_unref(next.get());
    nextTimestamp = AV_NOPTS_VALUE;
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
    lastOutput = AV_NOPTS_VALUE;
    currentTimestamp = AV_NOPTS_VALUE;
    nextTimestamp = AV_NOPTS_VALUE;
    av_frame_unref(current.get());
    av_frame_unref(next.get());
  }

  // Decodes on until current is the picture on show at the target and next, if there is one, starts behind it.
  void DecodeUpTo(std::int64_t target) {
    for (;;) {
      if (nextTimestamp == AV_NOPTS_VALUE && !ReadPicture())
        return;
      if (currentTimestamp != AV_NOPTS_VALUE && nextTimestamp > target)
        return;
      Advance();
      if (currentTimestamp > target)
        return;
    }
  }

  bool Reach(std::int64_t target) {
    const bool ahead = currentTimestamp != AV_NOPTS_VALUE && currentTimestamp <= target;
    if (ahead && (draining || target - currentTimestamp <= FromMilliseconds(kDecodeOnMilliseconds))) {
      DecodeUpTo(target);
      return true;
    }
    for (std::int64_t back = kFirstSeekBackMilliseconds;; back = back == 0 ? 1000 : back * 4) {
      const std::int64_t aim = std::max(firstTimestamp, target - FromMilliseconds(back));
      const bool atStart = aim == firstTimestamp || back > kLastSeekBackMilliseconds;
      if (!(atStart ? Rewind() : Seek(aim)))
        return false;
      DecodeUpTo(target);
      if (atStart || (currentTimestamp != AV_NOPTS_VALUE && currentTimestamp <= target))
        return currentTimestamp != AV_NOPTS_VALUE;
    }
  }

  zebcore::classref::InterfaceRef<MF::IVideoFrame> Scale(int width, int height) {
    scaler.reset(sws_getCachedContext(scaler.release(), current->width, current->height,
                                      static_cast<AVPixelFormat>(current->format), width, height, AV_PIX_FMT_BGRA,
                                      SWS_BICUBIC, nullptr, nullptr, nullptr));
    if (!scaler)
      return nullptr;
    auto frame = MF::CreateVideoFrame(width, height, zebmediatypes::kPixelAspectRatio_Square);
    std::uint8_t* const planes[4] = {frame->GetWritablePixels(), nullptr, nullptr, nullptr};
    const int strides[4] = {frame->GetRowBytes(), 0, 0, 0};
    if (sws_scale(scaler.get(), current->data, current->linesize, 0, current->height, planes, strides) <= 0)
      return nullptr;
    return frame;
  }
};

FrameDecoder::FrameDecoder(const std::filesystem::path& path) : mImpl(std::make_unique<Impl>()) {
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
  // Ticks to the stream's own units, down: the picture that starts at or before the time. Its last tick still counts.
  const AVRational base = mImpl->stream->time_base;
  const Int128 ticks = std::max<std::int64_t>(time.GetTicks(), 0);
  const Int128 units = ticks * base.den / (static_cast<Int128>(zebmediatypes::kTicksPerSecond) * base.num);
  const Int128 target = units + mImpl->firstTimestamp;
  if (target > std::numeric_limits<std::int64_t>::max() / 4)
    return nullptr;
  if (!mImpl->Reach(static_cast<std::int64_t>(target)))
    return nullptr;
  return mImpl->Scale(width, height);
}

} // namespace ML
