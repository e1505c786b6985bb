#pragma once

#include "Formats/Formats.h"

namespace Formats {

// See Write.
WriteResult WriteSubRip(std::span<const zebcaptioning::CaptionStatePtr> captions, zebcaptioning::StreamFormat format,
                        const Progress& progress);
WriteResult WriteWebVTT(std::span<const zebcaptioning::CaptionStatePtr> captions, zebcaptioning::StreamFormat format,
                        const Progress& progress, const std::string& language);

} // namespace Formats
