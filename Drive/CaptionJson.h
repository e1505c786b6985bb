#pragma once

#include "BE/Project.h"
#include "Drive/Fields.h"

// Captions and what belongs to them, to and from JSON.
namespace Drive {

Json FromColor(const zebcaptioning::CaptioningColor& color);
Json FromCaption(const BE::ICaptioningStream::CaptionKey& key, const zebcaptioning::CaptionState& state);
Json FromStream(const BE::CaptioningStream& stream);

// What is absent is taken from the pattern or, without one, is what a caption starts with; the times are needed unless
// there is a pattern. Runs name only what they set; of several runs over one character the last holds.
zebcaptioning::CaptionStatePtr ReadCaption(const Fields& fields, const zebcaptioning::CaptionStatePtr& pattern = {});
std::vector<BE::NewCaption> ReadCaptions(const Fields& fields, const char* name);
zebcaptioning::CaptioningColor ReadColor(const Fields& fields, const char* name);

// A family's name with "channel", or the number itself. The default is for a request without the field.
zebcaptioning::StreamFormat ReadFormat(const Fields& fields, const char* name,
                                       std::optional<std::string> absent = std::nullopt);

} // namespace Drive
