#include "Formats/Treatment.h"

#include <functional>

#include "zebcaptioning/FormatFacts.h"

namespace Formats {

using zebcaptioning::StreamFormat;

void Treat(ReadResult& result, const BE::CaptionsImportSettings& settings, StreamFormat format, int columns,
           const Progress& progress) {
  Problems& problems = result.problems;
  const auto length = static_cast<std::size_t>(std::max(settings.lineLength > 0 ? settings.lineLength : columns, 0));
  const std::vector<std::function<Captions(Captions)>> treatments{
      [&](Captions captions) { return GiveStyle(std::move(captions), settings.style, format, problems); },
      [&](Captions captions) { return GivePlace(std::move(captions), settings.alignment, settings.anchor, format); },
      [&](Captions captions) { return ShiftTimes(std::move(captions), settings.offset, problems); },
      [&](Captions captions) { return BreakLines(std::move(captions), settings.longLines, length, format, problems); },
      [&](Captions captions) { return ResolveOverlaps(std::move(captions), settings.overlaps, format, problems); },
      [&](Captions captions) {
        return settings.longCaptions == BE::LongCaptions::Split
                   ? SplitCaptions(std::move(captions), static_cast<std::size_t>(settings.lineCount), format, problems)
                   : captions;
      },
      [&](Captions captions) { return LengthenCaptions(std::move(captions), settings.minimumDuration, problems); },
  };
  for (std::size_t i = 0; i < treatments.size(); ++i) {
    if (progress && !progress(static_cast<double>(i) / static_cast<double>(treatments.size()))) {
      result.cancelled = true;
      return;
    }
    result.captions = treatments[i](std::move(result.captions));
  }
}

} // namespace Formats
