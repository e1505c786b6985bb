extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avutil.h>
#include <libavutil/dict.h>
#include <libavutil/rational.h>
}

#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>

#include "MF/MediaFile.h"
#include "MF/MediaSource.h"
#include "MF/StreamFacts.h"
#include "zebcore/Localizer.h"

namespace MF {

using zebmediatypes::FrameRate;
using zebmediatypes::TickTime;

namespace {

BE::Problem Say(const char* keyWithDefault, const std::filesystem::path& path) {
  std::string text = zebcore::ToUTF8(zebcore::config::Localizer::Get().Localize(keyWithDefault));
  if (const std::size_t at = text.find("{0}"); at != std::string::npos)
    text.replace(at, 3, path.filename().string());
  return {text};
}

bool IsRate(AVRational rate) {
  return rate.num > 0 && rate.den > 0;
}

zebmediatypes::PixelAspectRatio GetPixelAspect(const AVStream& stream) {
  const AVRational told =
      IsRate(stream.sample_aspect_ratio) ? stream.sample_aspect_ratio : stream.codecpar->sample_aspect_ratio;
  if (!IsRate(told))
    return zebmediatypes::kPixelAspectRatio_Square;
  AVRational reduced{1, 1};
  av_reduce(&reduced.num, &reduced.den, told.num, told.den, 1 << 20);
  return {reduced.num, reduced.den};
}

// Of the container, of the picture, or of a track of its own.
std::string FindTimecode(const AVFormatContext& source) {
  const auto look = [](AVDictionary* metadata) {
    const AVDictionaryEntry* entry = av_dict_get(metadata, "timecode", nullptr, 0);
    return entry != nullptr ? std::string(entry->value) : std::string();
  };
  if (const AVStream* video = FindStream(source, AVMEDIA_TYPE_VIDEO)) {
    if (const std::string timecode = look(video->metadata); !timecode.empty())
      return timecode;
  }
  if (const std::string timecode = look(source.metadata); !timecode.empty())
    return timecode;
  for (unsigned i = 0; i < source.nb_streams; ++i) {
    if (const std::string timecode = look(source.streams[i]->metadata); !timecode.empty())
      return timecode;
  }
  return {};
}

struct Timecode {
  TickTime time;
  bool dropFrame = false;
};

// "01:00:00:00", "01:00:00;00"; the rate tells how many frames a second counts.
std::optional<Timecode> ParseTimecode(const std::string& text, FrameRate rate) {
  std::array<std::int64_t, 4> fields{};
  const char* at = text.data();
  const char* const end = text.data() + text.size();
  char lastMark = ':';
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) {
      if (at == end || std::strchr(":;.,", *at) == nullptr)
        return std::nullopt;
      lastMark = *at++;
    }
    const auto [next, error] = std::from_chars(at, end, fields[i]);
    if (error != std::errc() || fields[i] < 0 || fields[i] > 99)
      return std::nullopt;
    at = next;
  }
  if (!rate.IsValid())
    return std::nullopt;
  const std::int64_t perSecond =
      (zebmediatypes::kTicksPerSecond + rate.GetTicksPerFrame() / 2) / rate.GetTicksPerFrame();
  const std::int64_t minutes = fields[0] * 60 + fields[1];
  std::int64_t frames = (minutes * 60 + fields[2]) * perSecond + fields[3];
  Timecode timecode;
  // Only rates of 30000/1001 and its multiples leave numbers out.
  timecode.dropFrame = (lastMark == ';' || lastMark == ',') && perSecond % 30 == 0 &&
                       rate.GetTicksPerFrame() * perSecond != zebmediatypes::kTicksPerSecond;
  if (timecode.dropFrame)
    frames -= perSecond / 30 * 2 * (minutes - minutes / 10);
  timecode.time = TickTime(frames * rate.GetTicksPerFrame());
  return timecode;
}

TickTime GetToldDuration(const AVFormatContext& source, const AVStream* video, const AVStream* audio) {
  TickTime longest;
  for (const AVStream* stream : {video, audio}) {
    if (stream == nullptr || stream->duration == AV_NOPTS_VALUE || stream->duration <= 0)
      continue;
    longest = std::max(
        longest, zebmediatypes::TickTimeFromRational(stream->duration, stream->time_base.num, stream->time_base.den));
  }
  if (longest.GetTicks() == 0 && source.duration != AV_NOPTS_VALUE && source.duration > 0)
    longest = zebmediatypes::TickTimeFromRational(source.duration, 1, AV_TIME_BASE);
  return longest;
}

struct PacketCloser {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};

// Where the last whole packet from here on ends; nothing if none is left.
std::optional<TickTime> ReadToEnd(AVFormatContext& source, const AVStream* video, const AVStream* audio) {
  const std::unique_ptr<AVPacket, PacketCloser> packet(av_packet_alloc());
  std::optional<TickTime> last;
  while (av_read_frame(&source, packet.get()) >= 0) {
    const AVStream* stream = source.streams[packet->stream_index];
    const std::int64_t pts = packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts;
    const bool isWhole = packet->size > 0 && (packet->flags & AV_PKT_FLAG_CORRUPT) == 0;
    if ((stream == video || stream == audio) && isWhole) {
      const std::int64_t start = stream->start_time != AV_NOPTS_VALUE ? stream->start_time : 0;
      const std::int64_t end = pts == AV_NOPTS_VALUE ? 0 : pts - start + packet->duration;
      const TickTime time = zebmediatypes::TickTimeFromRational(end, stream->time_base.num, stream->time_base.den);
      last = std::max(last.value_or(TickTime(0)), time);
    }
    av_packet_unref(packet.get());
  }
  return last;
}

// What the file really holds: a recording that was cut off tells the duration it should have had. Only when the end is
// not where it was told to be is the file read through. Nothing if there is not one whole packet.
std::optional<TickTime> GetDuration(AVFormatContext& source, const AVStream* video, const AVStream* audio) {
  constexpr std::int64_t kTail = 3 * AV_TIME_BASE;
  const TickTime slack(zebmediatypes::kTicksPerSecond * 3 / 2);
  const TickTime told = GetToldDuration(source, video, audio);
  const std::int64_t start = source.start_time != AV_NOPTS_VALUE ? source.start_time : 0;
  const auto toldMicroseconds = static_cast<std::int64_t>(zebmediatypes::ToSeconds(told) * AV_TIME_BASE);
  if (toldMicroseconds > kTail &&
      av_seek_frame(&source, -1, start + toldMicroseconds - kTail, AVSEEK_FLAG_BACKWARD) >= 0) {
    const std::optional<TickTime> last = ReadToEnd(source, video, audio);
    if (last && *last + slack >= told)
      return told;
    if (av_seek_frame(&source, -1, start, AVSEEK_FLAG_BACKWARD) < 0)
      return last;
  }
  const std::optional<TickTime> last = ReadToEnd(source, video, audio);
  if (!last || (told.GetTicks() > 0 && *last + slack >= told) || last->GetTicks() == 0)
    return last ? std::optional(told) : std::nullopt;
  return last;
}

} // namespace

BE::Result<BE::MediaInfo> ProbeMedia(const std::filesystem::path& path) {
  BE::Result<BE::MediaInfo> result;
  const MediaSourcePtr source = OpenMediaSource(path, result.problem.text);
  if (!source)
    return result;
  const AVStream* video = FindStream(*source, AVMEDIA_TYPE_VIDEO);
  const AVStream* audio = FindStream(*source, AVMEDIA_TYPE_AUDIO);
  if (video == nullptr && audio == nullptr) {
    result.problem = Say("$$$/Vidra/MF/NoPictureNoSound=The file \"{0}\" holds neither picture nor sound.", path);
    return result;
  }
  BE::MediaInfo info;
  if (video != nullptr) {
    info.width = video->codecpar->width;
    info.height = video->codecpar->height;
    info.pixelAspect = GetPixelAspect(*video);
    info.still = IsStill(*source);
    const AVRational rate = info.still ? AVRational{25, 1} : GetRate(*video);
    info.frameRate = FrameRate::FromRational(rate.num, rate.den);
  }
  if (audio != nullptr)
    info.sampleRate = audio->codecpar->sample_rate;
  if (!info.still) {
    const std::optional<TickTime> duration = GetDuration(*source, video, audio);
    if (!duration) {
      result.problem =
          Say("$$$/Vidra/MF/NothingLeft=The file \"{0}\" is cut off before its first frame. Copy or record it "
              "again.",
              path);
      return result;
    }
    info.duration = *duration;
  }
  if (const std::optional<Timecode> timecode = ParseTimecode(FindTimecode(*source), info.frameRate)) {
    info.start = timecode->time;
    info.dropFrame = timecode->dropFrame;
  }
  result.value = info;
  return result;
}

std::vector<SubtitleTrack> FindSubtitleTracks(const std::filesystem::path& path) {
  std::vector<SubtitleTrack> tracks;
  std::string problem;
  const MediaSourcePtr source = OpenMediaSource(path, problem);
  if (!source)
    return tracks;
  for (unsigned i = 0; i < source->nb_streams; ++i) {
    const AVStream& stream = *source->streams[i];
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get(stream.codecpar->codec_id);
    if (stream.codecpar->codec_type != AVMEDIA_TYPE_SUBTITLE || descriptor == nullptr ||
        (descriptor->props & AV_CODEC_PROP_TEXT_SUB) == 0)
      continue;
    const auto get = [&](const char* key) {
      const AVDictionaryEntry* entry = av_dict_get(stream.metadata, key, nullptr, 0);
      return entry != nullptr ? std::string(entry->value) : std::string();
    };
    SubtitleTrack track;
    track.index = static_cast<int>(i);
    track.language = get("language") == "und" ? "" : get("language");
    track.title = get("title");
    tracks.push_back(track);
  }
  return tracks;
}

} // namespace MF
