#include "Formats/EventStyles.h"

#include "Formats/Markup.h"
#include "Formats/Text.h"

namespace Formats {

namespace {

std::vector<UString> SplitFields(std::u16string_view text) {
  std::vector<UString> fields;
  for (;;) {
    const std::size_t comma = text.find(u',');
    fields.emplace_back(Trim(text.substr(0, comma)));
    if (comma == std::u16string_view::npos)
      return fields;
    text = text.substr(comma + 1);
  }
}

bool IsOn(const UString& value) {
  return !value.empty() && value != u"0";
}

constexpr int kUsualAlignment = 2; // keypad: bottom centre

} // namespace

EventStyles ParseEventStyles(std::u16string_view script) {
  EventStyles styles;
  std::vector<UString> names;
  const Lines lines(script);
  for (std::size_t i = 0; i < lines.Count(); ++i) {
    const std::u16string_view line = lines[i];
    if (line.starts_with(u"[Events"))
      break;
    if (line.starts_with(u"Format:"))
      names = SplitFields(line.substr(7));
    if (!line.starts_with(u"Style:"))
      continue;
    const std::vector<UString> values = SplitFields(line.substr(6));
    EventStyle style;
    UString name;
    for (std::size_t field = 0; field < std::min(names.size(), values.size()); ++field) {
      const UString& value = values[field];
      if (names[field] == u"Name")
        name = value;
      else if (names[field] == u"PrimaryColour")
        style.attributes.textColor = ParseEventColor(value).value_or(style.attributes.textColor);
      else if (names[field] == u"Bold")
        style.attributes.bold = IsOn(value);
      else if (names[field] == u"Italic")
        style.attributes.italic = IsOn(value);
      else if (names[field] == u"Underline")
        style.attributes.underline = IsOn(value);
      else if (names[field] == u"Alignment" && value.size() == 1 && value[0] >= u'1' && value[0] <= u'9' &&
               value[0] - u'0' != kUsualAlignment)
        style.anchor = AnchorFromKeypad(value[0] - u'0');
    }
    styles[name] = style;
  }
  return styles;
}

Event ParseEvent(std::u16string_view line) {
  Event event;
  for (int field = 0; field < 8; ++field) {
    const std::size_t comma = line.find(u',');
    if (comma == std::u16string_view::npos)
      return event;
    if (field == 2)
      event.style = UString(Trim(line.substr(0, comma)));
    line = line.substr(comma + 1);
  }
  event.text = line;
  return event;
}

} // namespace Formats
