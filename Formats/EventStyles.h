#pragma once

#include <map>
#include <optional>
#include <string_view>

#include "Formats/CueBuilder.h"

// The head of an Advanced SubStation Alpha script: what its styles look like.
namespace Formats {

struct EventStyle {
  TextSpanAttributes attributes;
  std::optional<int> anchor; // none for the usual place at the bottom
};

using EventStyles = std::map<UString, EventStyle>;
EventStyles ParseEventStyles(std::u16string_view script);

// An event's line as decoders give it: "ReadOrder,Layer,Style,Name,MarginL,MarginR,MarginV,Effect,Text".
struct Event {
  UString style;
  std::u16string_view text;
};
Event ParseEvent(std::u16string_view line);

} // namespace Formats
