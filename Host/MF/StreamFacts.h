#pragma once

#include <optional>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/rational.h>
}

// What is read out of an opened media file, the same for whoever opens it.
namespace MF {

// The stream of a type that a clip shows or sounds: the default one, else the first that can be used; no cover. Null if
// there is none.
const AVStream* FindStream(const AVFormatContext& source, AVMediaType type);

// Frames a second; 25 where nothing tells.
AVRational GetRate(const AVStream& stream);

// The rate that all pictures of the stream keep, but for the rounding of their timestamps. Nothing where they do not
// follow one.
std::optional<AVRational> GetConstantRate(const AVStream& stream);

// One picture without a time.
bool IsStill(const AVFormatContext& source);

} // namespace MF
