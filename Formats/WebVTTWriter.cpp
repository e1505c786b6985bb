#include "Formats/CueSettings.h"
#include "Formats/CueWriter.h"
#include "Formats/Text.h"

namespace Formats {

using zebcaptioning::CaptionState;

namespace {

// The class of the colour, or of the nearest that has one.
std::string ClassOf(const CaptioningColor& color) {
  std::vector<CaptioningColor> known;
  for (const auto& [name, value] : GetCueColors())
    known.push_back(value);
  const CaptioningColor nearest = NearestColor(color, known);
  for (const auto& [name, value] : GetCueColors()) {
    if (value == nearest)
      return zebcore::ToUTF8(name);
  }
  return {};
}

bool HasClass(const CaptioningColor& color) {
  for (const auto& [name, value] : GetCueColors()) {
    if (PrintColor(value) == PrintColor(color))
      return true;
  }
  return false;
}

std::vector<std::string> Tags(const TextSpanAttributes& span, Losses& losses) {
  static const TextSpanAttributes kPlain;
  std::string classes;
  if (PrintColor(span.textColor) != PrintColor(kPlain.textColor)) {
    classes += "." + ClassOf(span.textColor);
    if (!HasClass(span.textColor))
      AddLoss(losses, Say("$$$/Vidra/Formats/LossColor=the colour {0} (now {1})",
                          {PrintColor(span.textColor), ClassOf(span.textColor)}));
  }
  if (span.backgroundColor != kPlain.backgroundColor) {
    const bool isVisible = span.backgroundColor.alpha > 0;
    if (isVisible)
      classes += ".bg_" + ClassOf(span.backgroundColor);
    if (!isVisible || span.backgroundColor.alpha != 1.0F)
      AddLoss(losses, Say("$$$/Vidra/Formats/LossBackgroundOpacity=the opacity of the background"));
    else if (!HasClass(span.backgroundColor))
      AddLoss(losses, Say("$$$/Vidra/Formats/LossBackground=the background {0} (now {1})",
                          {PrintColor(span.backgroundColor), ClassOf(span.backgroundColor)}));
  }
  std::vector<std::string> tags;
  if (!classes.empty())
    tags.push_back("<c" + classes + ">");
  if (span.bold)
    tags.emplace_back("<b>");
  if (span.italic)
    tags.emplace_back("<i>");
  if (span.underline)
    tags.emplace_back("<u>");
  return tags;
}

std::string Escape(std::u16string_view text) {
  std::string escaped;
  for (const char c : zebcore::ToUTF8(text)) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else if (c == '>')
      escaped += "&gt;";
    else
      escaped += c;
  }
  return escaped;
}

} // namespace

WriteResult WriteWebVTT(std::span<const CaptionStatePtr> captions, StreamFormat format, const Progress& progress,
                        const std::string& language) {
  Syntax syntax;
  syntax.format = format;
  syntax.head = language.empty() ? "WEBVTT\n\n" : "WEBVTT\nLanguage: " + language + "\n\n";
  syntax.nothing = "<c></c>";
  syntax.tags = Tags;
  syntax.escape = Escape;
  syntax.prefix = [](const CaptionState&, Losses&) { return std::string(); };
  syntax.settings = [format](const CaptionState& state, Losses& losses) {
    Placement placement;
    placement.anchor = state.paragraph.anchor;
    placement.alignment = state.paragraph.alignment;
    placement.x = state.paragraph.x;
    placement.y = state.paragraph.y;
    bool isLost = false;
    const std::string settings = WriteCueSettings(placement, format, state.text, isLost);
    if (isLost)
      AddLoss(losses, Say("$$$/Vidra/Formats/LossPosition=the position"));
    return settings;
  };
  return WriteCues(syntax, captions, progress);
}

} // namespace Formats
