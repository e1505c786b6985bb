#include "ClipMaking.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
#include <libavutil/frame.h>
#include <libavutil/log.h>
#include <libavutil/pixdesc.h>
}
#include <unistd.h>

namespace MLTest {

namespace {

namespace fs = std::filesystem;

void Check(int result, const char* what) {
  if (result < 0)
    throw std::runtime_error(what);
}

struct CodecCloser {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct FrameCloser {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct PacketCloser {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FormatCloser {
  void operator()(AVFormatContext* context) const {
    if (context->pb)
      avio_closep(&context->pb);
    avformat_free_context(context);
  }
};

AVDictionary* MakeOptions(const std::map<std::string, std::string>& values) {
  AVDictionary* options = nullptr;
  for (const auto& [key, value] : values)
    av_dict_set(&options, key.c_str(), value.c_str(), 0);
  return options;
}

// Black and white in the depth of the format, planes of colour in grey.
void Draw(AVFrame& frame, int number) {
  const AVPixFmtDescriptor* form = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
  const int depth = form->comp[0].depth;
  const bool isRGB = (form->flags & AV_PIX_FMT_FLAG_RGB) != 0;
  const auto put = [&](int plane, int x, int y, int value) {
    std::uint8_t* row = frame.data[plane] + static_cast<std::ptrdiff_t>(y) * frame.linesize[plane];
    if (depth > 8)
      reinterpret_cast<std::uint16_t*>(row)[x] = static_cast<std::uint16_t>(value << (depth - 8));
    else
      row[x] = static_cast<std::uint8_t>(value);
  };
  for (int y = 0; y < frame.height; ++y) {
    for (int x = 0; x < frame.width; ++x) {
      const bool isOn = (number >> (x * kBits / frame.width)) & 1;
      if (isRGB) {
        for (int channel = 0; channel < 3; ++channel)
          put(0, x * 3 + channel, y, isOn ? 255 : 0);
      } else {
        put(0, x, y, isOn ? 235 : 16);
      }
    }
  }
  if (isRGB)
    return;
  for (int plane = 1; plane <= 2; ++plane) {
    for (int y = 0; y < AV_CEIL_RSHIFT(frame.height, form->log2_chroma_h); ++y) {
      for (int x = 0; x < AV_CEIL_RSHIFT(frame.width, form->log2_chroma_w); ++x)
        put(plane, x, y, 128);
    }
  }
}

// Encodes the pictures of a description, and hands the packets on.
class Encoder {
 public:
  Encoder(const ClipDescription& description, bool globalHeader) : mDescription(description) {
    const AVCodec* codec = avcodec_find_encoder_by_name(description.encoder);
    if (!codec)
      throw std::runtime_error(std::string("no encoder ") + description.encoder);
    context.reset(avcodec_alloc_context3(codec));
    context->width = kWidth;
    context->height = kHeight;
    context->pix_fmt = description.format;
    context->time_base = av_inv_q(description.rate);
    context->framerate = description.rate;
    context->sample_aspect_ratio = description.pixelAspect;
    context->gop_size = description.keyInterval;
    context->max_b_frames = description.bFrames;
    context->bit_rate = 4000000;
    context->thread_count = 1;
    if (globalHeader)
      context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    AVDictionary* options = MakeOptions(description.options);
    const int result = avcodec_open2(context.get(), codec, &options);
    av_dict_free(&options);
    Check(result, "encoder");
  }

  template <class Write> void Run(Write&& write) {
    const std::unique_ptr<AVFrame, FrameCloser> frame(av_frame_alloc());
    frame->format = context->pix_fmt;
    frame->width = context->width;
    frame->height = context->height;
    frame->sample_aspect_ratio = context->sample_aspect_ratio;
    Check(av_frame_get_buffer(frame.get(), 0), "frame");
    for (int number = 0; number < mDescription.pictures; ++number) {
      Check(av_frame_make_writable(frame.get()), "frame");
      Draw(*frame, number);
      frame->pts = mDescription.starts.empty() ? number : mDescription.starts[static_cast<std::size_t>(number)];
      Check(avcodec_send_frame(context.get(), frame.get()), "send");
      Drain(write);
    }
    Check(avcodec_send_frame(context.get(), nullptr), "flush");
    Drain(write);
  }

  std::unique_ptr<AVCodecContext, CodecCloser> context;

 private:
  template <class Write> void Drain(Write&& write) {
    const std::unique_ptr<AVPacket, PacketCloser> packet(av_packet_alloc());
    while (avcodec_receive_packet(context.get(), packet.get()) == 0) {
      packet->duration = DurationFrom(packet->pts);
      write(*packet);
      av_packet_unref(packet.get());
    }
  }

  // Each picture stays until the next one starts.
  std::int64_t DurationFrom(std::int64_t start) const {
    const auto& starts = mDescription.starts;
    const auto following = std::upper_bound(starts.begin(), starts.end(), start);
    return following == starts.end() ? 1 : *following - start;
  }

  const ClipDescription& mDescription;
};

void MakeStill(const ClipDescription& description, const fs::path& path) {
  Encoder encoder(description, false);
  std::ofstream file(path, std::ios::binary);
  encoder.Run([&](const AVPacket& packet) { file.write(reinterpret_cast<const char*>(packet.data), packet.size); });
}

void MakeVideo(const ClipDescription& description, const fs::path& path) {
  AVFormatContext* opened = nullptr;
  Check(avformat_alloc_output_context2(&opened, nullptr, nullptr, path.c_str()), "container");
  const std::unique_ptr<AVFormatContext, FormatCloser> format(opened);
  Encoder encoder(description, (format->oformat->flags & AVFMT_GLOBALHEADER) != 0);
  AVStream* stream = avformat_new_stream(format.get(), nullptr);
  Check(avcodec_parameters_from_context(stream->codecpar, encoder.context.get()), "parameters");
  stream->time_base = encoder.context->time_base;
  stream->avg_frame_rate = description.starts.empty() ? description.rate : AVRational{0, 1};
  stream->sample_aspect_ratio = description.pixelAspect;
  Check(avio_open(&format->pb, path.c_str(), AVIO_FLAG_WRITE), "file");
  AVDictionary* options = MakeOptions(description.muxerOptions);
  const int begun = avformat_write_header(format.get(), &options);
  av_dict_free(&options);
  Check(begun, "header");
  const auto offset =
      static_cast<std::int64_t>(std::llround(description.firstSecond / av_q2d(encoder.context->time_base)));
  encoder.Run([&](AVPacket& packet) {
    packet.pts += offset;
    packet.dts += offset;
    packet.stream_index = stream->index;
    av_packet_rescale_ts(&packet, encoder.context->time_base, stream->time_base);
    Check(av_interleaved_write_frame(format.get(), &packet), "write");
  });
  Check(av_write_trailer(format.get()), "trailer");
}

} // namespace

Clip::Clip(const ClipDescription& description) {
  static std::atomic<int> count{0};
  av_log_set_level(AV_LOG_QUIET);
  mPath = fs::temp_directory_path() /
          ("captivo-" + std::to_string(::getpid()) + "-" + std::to_string(count++) + "-" + description.name);
  if (mPath.extension() == ".png")
    MakeStill(description, mPath);
  else
    MakeVideo(description, mPath);
}

Clip::~Clip() {
  std::error_code ignored;
  fs::remove(mPath, ignored);
}

void Clip::Damage(double from, double to) const {
  const auto size = static_cast<double>(fs::file_size(mPath));
  std::fstream file(mPath, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(static_cast<std::streamoff>(size * from));
  std::uint32_t state = 12345;
  for (auto left = static_cast<std::int64_t>(size * (to - from)); left > 0; --left) {
    state = state * 1664525U + 1013904223U;
    file.put(static_cast<char>(state >> 24));
  }
}

void Clip::CutOff(double at) const {
  fs::resize_file(mPath, static_cast<std::uintmax_t>(static_cast<double>(fs::file_size(mPath)) * at));
}

int NumberOn(const zebcore::classref::InterfaceRef<MF::IVideoFrame>& frame) {
  if (!frame)
    return -1;
  const zebcore::geom::RectT<int> rect = frame->GetRect();
  const std::uint8_t* row = frame->GetPixels() + static_cast<std::ptrdiff_t>(rect.height / 2) * frame->GetRowBytes();
  int number = 0;
  for (int bit = 0; bit < kBits; ++bit) {
    if (row[(2 * bit + 1) * rect.width / (2 * kBits) * 4] > 128)
      number |= 1 << bit;
  }
  return number;
}

} // namespace MLTest
