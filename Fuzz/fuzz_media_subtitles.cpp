#include <cstdint>
#include <string_view>

#include "Formats/CueBuilder.h"
#include "Formats/EventStyles.h"
#include "Formats/Markup.h"

// Our side of subtitle tracks: heads of scripts, events and override blocks. The decoders themselves are not ours.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Formats;
  const UString text = zebcore::FromUTF8({reinterpret_cast<const char*>(data), size});
  const EventStyles styles = ParseEventStyles(text);
  const Event event = ParseEvent(text);
  FormatRules rules(zebcaptioning::kStreamFormat_608_CC1);
  CueBuilder builder(rules);
  const auto style = styles.find(event.style);
  AppendEventText(event.text, style != styles.end() ? style->second.attributes : TextSpanAttributes(), builder);
  builder.TrimEnd();
  builder.Build(zebmediatypes::TickTime(0), zebmediatypes::TickTime(1), Placement());
  return 0;
}
