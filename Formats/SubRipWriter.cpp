#include "Formats/CueWriter.h"
#include "Formats/Markup.h"
#include "Formats/Text.h"

namespace Formats {

using zebcaptioning::CaptionState;

namespace {

constexpr const char* kNothing = "<b></b>";

std::vector<std::string> Tags(const TextSpanAttributes& span, Losses& losses) {
  static const TextSpanAttributes kPlain;
  static const std::string kWhite = PrintColor(kPlain.textColor);
  std::vector<std::string> tags;
  if (const std::string color = PrintColor(span.textColor); color != kWhite)
    tags.push_back("<font color=\"" + color + "\">");
  if (span.backgroundColor != kPlain.backgroundColor)
    AddLoss(losses, Say("$$$/Vidra/Formats/LossBackgroundColor=the background"));
  if (span.bold)
    tags.emplace_back("<b>");
  if (span.italic)
    tags.emplace_back("<i>");
  if (span.underline)
    tags.emplace_back("<u>");
  return tags;
}

bool StartsTag(std::u16string_view text) {
  if (text.size() < 2)
    return false;
  const char16_t c = text[1];
  return c == u'/' || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

// Most players know no character references, so they stand only where the bare character would be read as something
// else.
std::string Escape(std::u16string_view text) {
  UString escaped;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::u16string_view rest = text.substr(i);
    if (rest[0] == u'&' && ParseEntity(rest.substr(0, 12)).length > 0)
      escaped += u"&amp;";
    else if (rest[0] == u'<' && StartsTag(rest))
      escaped += u"&lt;";
    else if (rest[0] == u'>' && i >= 2 && text[i - 1] == u'-' && text[i - 2] == u'-')
      escaped += u"&gt;";
    else if (rest.starts_with(u"{\\"))
      escaped += u"{<b></b>";
    else
      escaped += rest[0];
  }
  return zebcore::ToUTF8(escaped);
}

} // namespace

WriteResult WriteSubRip(std::span<const CaptionStatePtr> captions, StreamFormat format, const Progress& progress) {
  Syntax syntax;
  syntax.format = format;
  syntax.hasNumbers = true;
  syntax.decimalMark = ',';
  syntax.nothing = kNothing;
  syntax.tags = Tags;
  syntax.escape = Escape;
  syntax.settings = [](const CaptionState&, Losses&) { return std::string(); };
  syntax.prefix = [format](const CaptionState& state, Losses& losses) {
    const int anchor = state.paragraph.anchor;
    const bool hasAnchor = anchor >= 0 && anchor <= 8;
    const Placement read = PlaceText(format, state.text, anchor, GetAnchorAlignment(anchor));
    if (read.alignment != state.paragraph.alignment)
      AddLoss(losses, Say("$$$/Vidra/Formats/LossAlignment=the text alignment"));
    if (read.x != state.paragraph.x || read.y != state.paragraph.y)
      AddLoss(losses, Say("$$$/Vidra/Formats/LossPosition=the position"));
    return hasAnchor ? "{\\an" + std::to_string(KeypadFromAnchor(anchor)) + "}" : std::string();
  };
  return WriteCues(syntax, captions, progress);
}

} // namespace Formats
