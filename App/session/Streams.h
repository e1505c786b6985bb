#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "BE/Project.h"

// What the session's operations on streams have in common.
namespace App {

// The format itself if the clip does not hold it, else the first free one of its family.
std::optional<zebcaptioning::StreamFormat> FindFreeFormat(const BE::InterfaceRef<BE::MasterClip>& clip,
                                                          zebcaptioning::StreamFormat format);

// The width of the grid that captions of the format have on such a picture; 0 for open captions, which have none.
int GetGridColumns(zebcaptioning::StreamFormat format, const BE::MediaInfo& picture);

// The captions of a stream as they are now, in its order.
std::vector<zebcaptioning::CaptionStatePtr> CaptionStates(const BE::InterfaceRef<BE::CaptioningStream>& stream);

zebcore::UString StepName(std::string_view keyWithDefault);

// A job that the user stopped.
BE::Problem Stopped();
// What is refused, since the project may not be changed.
BE::Problem DescribeReadOnly(const BE::Project& project);
BE::Problem NoClip();
BE::Problem NoStream();
BE::Problem NoFreeFormat(const BE::InterfaceRef<BE::MasterClip>& clip, zebcaptioning::StreamFormat format);

} // namespace App
