extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include "Formats/CueSettings.h"
#include "Formats/EventStyles.h"
#include "Formats/Markup.h"
#include "Formats/MediaSubtitles.h"
#include "Formats/Text.h"
#include "MF/MediaSource.h"

namespace Formats {

using zebmediatypes::TickTime;

namespace {

struct PacketCloser {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct DecoderCloser {
  void operator()(AVCodecContext* decoder) const { avcodec_free_context(&decoder); }
};
using DecoderPtr = std::unique_ptr<AVCodecContext, DecoderCloser>;

// Tracks of these kinds carry their files' own marks in each packet; reading those ourselves keeps colours and places
// that a detour through events would lose.
bool IsSubRip(AVCodecID codec) {
  return codec == AV_CODEC_ID_SUBRIP || codec == AV_CODEC_ID_TEXT;
}
bool IsWebVTT(AVCodecID codec) {
  return codec == AV_CODEC_ID_WEBVTT;
}

UString WithoutLineEnd(std::string_view bytes) {
  UString text;
  const UString raw = zebcore::FromUTF8(bytes);
  const Lines lines(raw);
  for (std::size_t i = 0; i < lines.Count(); ++i) {
    if (i > 0)
      text += u'\n';
    text += lines[i];
  }
  while (text.ends_with(u'\n') || text.ends_with(u'\0'))
    text.pop_back();
  return text;
}

class Track {
 public:
  Track(const AVStream& stream, StreamFormat format, ReadResult& result)
      : mStream(stream), mRules(format), mResult(result) {
    const AVCodecID codec = stream.codecpar->codec_id;
    mResult.kind = IsWebVTT(codec) ? FileKind::WebVTT : FileKind::SubRip;
    if (IsSubRip(codec) || IsWebVTT(codec))
      return;
    const AVCodec* found = avcodec_find_decoder(codec);
    mDecoder.reset(found != nullptr ? avcodec_alloc_context3(found) : nullptr);
    if (mDecoder == nullptr || avcodec_parameters_to_context(mDecoder.get(), stream.codecpar) < 0) {
      mDecoder.reset();
      return;
    }
    mDecoder->pkt_timebase = stream.time_base;
    if (avcodec_open2(mDecoder.get(), found, nullptr) < 0) {
      mDecoder.reset();
      return;
    }
    if (mDecoder->subtitle_header != nullptr)
      mStyles = ParseEventStyles(zebcore::FromUTF8({reinterpret_cast<const char*>(mDecoder->subtitle_header),
                                                    static_cast<std::size_t>(mDecoder->subtitle_header_size)}));
  }

  bool CanRead() const {
    const AVCodecID codec = mStream.codecpar->codec_id;
    return mDecoder != nullptr || IsSubRip(codec) || IsWebVTT(codec);
  }

  void Take(AVPacket& packet) {
    if (packet.pts == AV_NOPTS_VALUE)
      return;
    CueBuilder builder(mRules);
    Placement placement;
    if (mDecoder ? !Decode(packet, builder, placement) : !ReadMarks(packet, builder, placement))
      return;
    ++mCount;
    const auto toTicks = [&](std::int64_t value) {
      return zebmediatypes::TickTimeFromRational(value, mStream.time_base.num, mStream.time_base.den);
    };
    const TickTime begin = toTicks(packet.pts);
    const TickTime end = toTicks(packet.pts + std::max<std::int64_t>(packet.duration, 0));
    if (end <= begin || begin < TickTime(0)) {
      Report(Say("$$$/Vidra/Formats/NoDuration=The caption \"{0}\" is left out: its times cannot be used.",
                 {Quote(builder.GetText())}));
      return;
    }
    mResult.captions.push_back(builder.Build(begin, end, placement));
    if (const std::string losses = DescribeLosses(builder.GetLosses()); !losses.empty())
      Report(losses);
  }

 private:
  void Report(std::string reason) { mResult.problems.push_back({mCount, std::move(reason)}); }

  bool ReadMarks(const AVPacket& packet, CueBuilder& builder, Placement& placement) {
    const UString text =
        WithoutLineEnd({reinterpret_cast<const char*>(packet.data), static_cast<std::size_t>(packet.size)});
    if (IsWebVTT(mStream.codecpar->codec_id)) {
      AppendMarkup(text, Dialect::WebVTT, builder);
      std::size_t size = 0;
      const std::uint8_t* settings = av_packet_get_side_data(&packet, AV_PKT_DATA_WEBVTT_SETTINGS, &size);
      placement = ReadCueSettings(
          settings != nullptr ? zebcore::FromUTF8({reinterpret_cast<const char*>(settings), size}) : UString(),
          mRules.GetFormat(), builder);
      return true;
    }
    const int anchor = AppendMarkup(text, Dialect::SubRip, builder).value_or(9);
    placement = PlaceText(mRules.GetFormat(), builder.GetText(), anchor, GetAnchorAlignment(anchor));
    return true;
  }

  // False for a packet that says that nothing is on show.
  bool Decode(AVPacket& packet, CueBuilder& builder, Placement& placement) {
    AVSubtitle subtitle{};
    int hasSubtitle = 0;
    if (avcodec_decode_subtitle2(mDecoder.get(), &subtitle, &hasSubtitle, &packet) < 0) {
      ++mCount;
      Report(Say("$$$/Vidra/Formats/BrokenPacket=A caption is left out: it is damaged."));
      return false;
    }
    bool hasText = false;
    int anchor = 9;
    for (unsigned i = 0; hasSubtitle != 0 && i < subtitle.num_rects; ++i) {
      const AVSubtitleRect& rect = *subtitle.rects[i];
      if (rect.ass == nullptr)
        continue;
      const UString line = zebcore::FromUTF8(rect.ass);
      const Event event = ParseEvent(line);
      if (event.text.empty())
        continue;
      const auto known = mStyles.find(event.style);
      const EventStyle style = known != mStyles.end() ? known->second : EventStyle();
      if (hasText)
        builder.Append(u"\n");
      const std::optional<int> ownAnchor = AppendEventText(event.text, style.attributes, builder);
      anchor = ownAnchor ? *ownAnchor : style.anchor.value_or(anchor);
      hasText = true;
    }
    if (hasSubtitle != 0)
      avsubtitle_free(&subtitle);
    if (!hasText)
      return false;
    builder.TrimEnd();
    placement = PlaceText(mRules.GetFormat(), builder.GetText(), anchor, GetAnchorAlignment(anchor));
    return true;
  }

  const AVStream& mStream;
  FormatRules mRules;
  ReadResult& mResult;
  DecoderPtr mDecoder;
  EventStyles mStyles;
  int mCount = 0;
};

} // namespace

ReadResult ReadSubtitleTrack(const std::filesystem::path& path, int index, StreamFormat format,
                             const Progress& progress) {
  ReadResult result;
  const MF::MediaSourcePtr source = MF::OpenMediaSource(path, result.error);
  if (!source)
    return result;
  const auto noTrack = [&] {
    result.error = Say("$$$/Vidra/Formats/NoTrack=The file \"{0}\" has no subtitle track with text of that number.",
                       {path.filename().string()});
  };
  if (index < 0 || static_cast<unsigned>(index) >= source->nb_streams ||
      source->streams[index]->codecpar->codec_type != AVMEDIA_TYPE_SUBTITLE) {
    noTrack();
    return result;
  }
  Track track(*source->streams[index], format, result);
  if (!track.CanRead()) {
    noTrack();
    return result;
  }
  for (unsigned i = 0; i < source->nb_streams; ++i)
    source->streams[i]->discard = static_cast<int>(i) == index ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
  const std::int64_t size = avio_size(source->pb);
  ProgressMeter meter(progress, static_cast<std::size_t>(std::max<std::int64_t>(size, 1)));
  const std::unique_ptr<AVPacket, PacketCloser> packet(av_packet_alloc());
  while (av_read_frame(source.get(), packet.get()) >= 0) {
    if (packet->stream_index == index)
      track.Take(*packet);
    const std::int64_t at = avio_tell(source->pb);
    av_packet_unref(packet.get());
    if (!meter.Reach(static_cast<std::size_t>(std::max<std::int64_t>(at, 0)))) {
      result.cancelled = true;
      break;
    }
  }
  SortByBegin(result.captions);
  return result;
}

} // namespace Formats
