#include "Drive/RowTimes.h"

#include "UIF/HotTimecodeControl.h"
#include "zebmediatypes/TimeDisplay.h"

namespace Drive {

namespace {

using zebmediatypes::TickTime;

// The text that stands for exactly this time in the source's display.
std::optional<zebcore::UString> Spell(TickTime value, const Captivo::CaptionsInspector::SourceState& source) {
  const TickTime shown = value + source.zeroPoint;
  const auto display = source.chosenDisplay.value_or(source.timeDisplay);
  const auto text = zebmediatypes::FormatTime(shown, display, source.frameRate);
  const auto read = zebmediatypes::ParseTime(text, display, source.frameRate);
  return read && *read == shown ? std::optional(text) : std::nullopt;
}

} // namespace

void TypeTime(UIF::HotTimecodeControl& control, const Captivo::CaptionsInspector::SourceState& source,
              const Fields& fields, const char* name) {
  const bool asText = fields.Get(name).is_string();
  const auto text = asText ? std::optional(zebcore::FromUTF8(fields.Text(name))) : Spell(fields.Time(name), source);
  control.OpenInlineEditor();
  if (text && control.EnterText(*text))
    return;
  control.CloseInlineEditor(true);
  if (asText)
    fields.Refuse(name, "the field does not take it for a time");
  control.Scrub(fields.Time(name), true);
}

} // namespace Drive
