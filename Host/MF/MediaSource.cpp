extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/log.h>
}

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <mutex>

#include "MF/MediaSource.h"
#include "zebcore/Localizer.h"

namespace MF {

namespace {

// Demuxers that take any text or bytes for pictures by the file's name alone, or that read other files than the one
// that was opened.
constexpr std::array<const char*, 14> kNotMedia{"tty",        "bin", "xbin", "adf", "idf", "concat",   "concatf",
                                                "ffmetadata", "hls", "dash", "sdp", "imf", "rawvideo", "data"};
constexpr std::array<const char*, 14> kCaptionFiles{"srt",      "webvtt", "ass",     "subviewer", "subviewer1",
                                                    "microdvd", "mpl2",   "jacosub", "sami",      "realtext",
                                                    "vplayer",  "pjs",    "scc",     "stl"};

template <std::size_t N> bool IsOneOf(const char* name, const std::array<const char*, N>& names) {
  for (const char* candidate : names) {
    if (std::strcmp(name, candidate) == 0)
      return true;
  }
  return false;
}

std::string Say(const char* keyWithDefault, const std::filesystem::path& path) {
  std::string text = zebcore::ToUTF8(zebcore::config::Localizer::Get().Localize(keyWithDefault));
  if (const std::size_t at = text.find("{0}"); at != std::string::npos)
    text.replace(at, 3, path.filename().string());
  return text;
}

// What is wrong before anything is decoded; empty if nothing is.
std::string CheckFile(const std::filesystem::path& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (status.type() == std::filesystem::file_type::not_found)
    return Say("$$$/Vidra/MF/NotFound=The file \"{0}\" does not exist. Was it moved or renamed?", path);
  if (status.type() == std::filesystem::file_type::directory)
    return Say("$$$/Vidra/MF/Directory=\"{0}\" is a folder. Choose a media file inside it.", path);
  if (error || status.type() != std::filesystem::file_type::regular)
    return Say("$$$/Vidra/MF/Unreadable=The file \"{0}\" cannot be read. Check its permissions.", path);
  std::ifstream file(path, std::ios::binary);
  if (!file)
    return Say("$$$/Vidra/MF/Unreadable=The file \"{0}\" cannot be read. Check its permissions.", path);
  if (file.peek() == std::ifstream::traits_type::eof())
    return Say("$$$/Vidra/MF/Empty=The file \"{0}\" is empty.", path);
  return {};
}

// Messages of the libraries go nowhere: what matters is told by the problem.
void QuietLibraries() {
  static std::once_flag once;
  std::call_once(once, [] { av_log_set_level(AV_LOG_QUIET); });
}

bool BeginsAsIsoMedia(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  char head[8] = {};
  file.read(head, sizeof head);
  return file.gcount() == sizeof head &&
         (std::memcmp(head + 4, "ftyp", 4) == 0 || std::memcmp(head + 4, "mdat", 4) == 0 ||
          std::memcmp(head + 4, "moov", 4) == 0);
}

bool BeginsAsMatroska(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  char head[4] = {};
  file.read(head, sizeof head);
  return file.gcount() == sizeof head && std::memcmp(head, "\x1A\x45\xDF\xA3", 4) == 0;
}

} // namespace

void MediaSourceCloser::operator()(AVFormatContext* context) const {
  avformat_close_input(&context);
}

MediaSourcePtr OpenMediaSource(const std::filesystem::path& path, std::string& problem) {
  problem = CheckFile(path);
  if (!problem.empty())
    return nullptr;
  QuietLibraries();
  const bool isCutOff = BeginsAsIsoMedia(path) || BeginsAsMatroska(path);
  const std::string notMedia =
      isCutOff ? Say("$$$/Vidra/MF/CutOff=The file \"{0}\" is cut off or damaged: what a player needs to know of it is "
                     "missing. Copy or record it again.",
                     path)
               : Say("$$$/Vidra/MF/NotMedia=The file \"{0}\" is no media file that can be read.", path);
  AVDictionary* options = nullptr;
  // No network and no other file, whatever the file asks for.
  av_dict_set(&options, "protocol_whitelist", "file", 0);
  AVFormatContext* opened = nullptr;
  const std::string url = "file:" + path.string();
  const int result = avformat_open_input(&opened, url.c_str(), nullptr, &options);
  av_dict_free(&options);
  if (result < 0) {
    problem = notMedia;
    return nullptr;
  }
  MediaSourcePtr source(opened);
  const char* name = source->iformat->name;
  if (IsOneOf(name, kNotMedia)) {
    problem = Say("$$$/Vidra/MF/NotMedia=The file \"{0}\" is no media file that can be read.", path);
    return nullptr;
  }
  if (IsOneOf(name, kCaptionFiles)) {
    problem =
        Say("$$$/Vidra/MF/CaptionFile=The file \"{0}\" holds captions and neither picture nor sound. Choose a clip and "
            "import the captions into it.",
            path);
    return nullptr;
  }
  if (avformat_find_stream_info(source.get(), nullptr) < 0) {
    problem = notMedia;
    return nullptr;
  }
  return source;
}

} // namespace MF
