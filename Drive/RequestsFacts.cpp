// The facts of stream formats, and other ones in their place.

#include "Captions/contracts/CaptioningColor.h"
#include "Drive/CaptionJson.h"
#include "Drive/Driver.h"
#include "zebcaptioning/FormatFacts.h"

namespace Drive {

namespace {

using zebcaptioning::CaptioningColor;

constexpr std::pair<const char*, CaptioningColor::ColorType> kColorTypes[] = {
    {"text", CaptioningColor::kColorType_Text},
    {"background", CaptioningColor::kColorType_Background},
    {"edge", CaptioningColor::kColorType_Edge}};

// A colour that the format has and that no caption begins with; any will do where colours are free. Nothing if the
// format has no colours of that type.
CaptioningColor OtherColor(zebcaptioning::StreamFormat format, CaptioningColor::ColorType type,
                           const CaptioningColor& usual) {
  std::map<CaptioningColor, zebcore::UString> colors;
  std::map<float, zebcore::UString> opacities;
  if (!CaptioningColor::EnumerateLegalColors(format, type, colors, opacities))
    return {0.25F, 0.5F, 0.75F, 0.3F};
  for (const auto& [color, name] : colors) {
    CaptioningColor other = color;
    other.alpha = opacities.empty() ? other.alpha : opacities.rbegin()->first;
    if (!(other == usual))
      return other;
  }
  return usual;
}

// What a caption of this format still holds of each attribute, found out by giving it one that it does not begin with.
Json TellKept(zebcaptioning::StreamFormat format, int columns, int rows) {
  using namespace zebcaptioning;
  const boost::intrusive_ptr<CaptionState> odd(new CaptionState());
  odd->text = u"x";
  odd->paragraph.alignment = ParagraphStyleAttributes::kTextAlignment_Right;
  odd->paragraph.anchor = 4;
  odd->paragraph.x = 3;
  odd->paragraph.y = 5;
  odd->paragraph.lineSpacing = 7;
  odd->paragraph.region = zebcore::utility::ImmutableString("Captivo Test Region");
  odd->paragraph.style = zebcore::utility::ImmutableString("Captivo Test Style");
  std::set<CaptionType> types;
  GetSupportedCaptionTypes(format, types);
  if (!types.empty())
    odd->paragraph.captionType = *types.rbegin();
  const FormatFacts& facts = GetFormatFacts(format);
  const TextSpanAttributes usual;
  TextSpanAttributes span;
  span.family = u"Captivo Test Family";
  span.size = facts.limited ? kFontSize_Double : 31.0F;
  span.bold = span.italic = span.underline = true;
  span.textColor = OtherColor(format, CaptioningColor::kColorType_Text, usual.textColor);
  span.backgroundColor = OtherColor(format, CaptioningColor::kColorType_Background, usual.backgroundColor);
  span.edgeColor = OtherColor(format, CaptioningColor::kColorType_Edge, usual.edgeColor);
  span.edgeWidth = 2.5F;
  odd->runs = {{0, Share(span)}};
  const boost::intrusive_ptr<Caption> pattern(new Caption(odd));
  const Caption kept(zebmediatypes::kTime_Zero, zebmediatypes::TickTime(1), pattern, format, columns, rows);
  const auto& paragraph = kept.GetState()->paragraph;
  const auto& run = *kept.GetState()->runs.front().attributes;
  return {{"caption_type", !types.empty() && paragraph.captionType == odd->paragraph.captionType},
          {"region", paragraph.region == odd->paragraph.region},
          {"style", paragraph.style == odd->paragraph.style},
          {"alignment", paragraph.alignment == odd->paragraph.alignment},
          {"anchor", paragraph.anchor == odd->paragraph.anchor},
          {"x", paragraph.x == odd->paragraph.x},
          {"y", paragraph.y == odd->paragraph.y},
          {"line_spacing", paragraph.lineSpacing == odd->paragraph.lineSpacing},
          {"family", run.family == span.family || (facts.limited && facts.genericFonts)},
          {"size", run.size == span.size},
          {"bold", run.bold},
          {"italic", run.italic},
          {"underline", run.underline},
          {"text_color", run.textColor == span.textColor},
          {"background_color", run.backgroundColor == span.backgroundColor},
          {"edge_color", run.edgeColor == span.edgeColor},
          {"edge_width", run.edgeWidth == span.edgeWidth}};
}

Json TellTypes(zebcaptioning::StreamFormat format) {
  std::set<zebcaptioning::CaptionType> types;
  zebcaptioning::GetSupportedCaptionTypes(format, types);
  Json list = Json::array();
  for (const auto type : types)
    list.push_back({{"type", type}, {"name", FromText(zebcaptioning::GetCaptionTypeDescription(type))}});
  return list;
}

// Lists by type of colour, or one list for all three.
template <class Read> void ReadByColorType(const Fields& fields, const char* name, Read&& read) {
  if (!fields.Has(name))
    return;
  if (fields.Get(name).is_array()) {
    for (const auto& [typeName, type] : kColorTypes)
      read(fields, name, type);
    return;
  }
  const Fields byType = fields.Object(name);
  for (const auto& [typeName, type] : kColorTypes) {
    if (byType.Has(typeName))
      read(byType, typeName, type);
  }
}

// Nothing, which brings the format's own facts back, if all that is mentioned is null.
std::optional<zebcaptioning::FactsOverride> ReadOverride(const Fields& fields) {
  if (!fields.Has("types") && !fields.Has("colors") && !fields.Has("opacities"))
    return std::nullopt;
  zebcaptioning::FactsOverride facts;
  if (fields.Has("types")) {
    facts.types.emplace();
    for (const Fields& entry : fields.Objects("types"))
      facts.types->emplace_back(entry.Int("type"), zebcore::FromUTF8(entry.Text("name")));
  }
  ReadByColorType(fields, "colors", [&](const Fields& in, const char* name, CaptioningColor::ColorType type) {
    facts.colors[type].emplace();
    for (const Fields& entry : in.Objects(name))
      facts.colors[type]->emplace(ReadColor(entry, "color"), zebcore::FromUTF8(entry.Text("name")));
  });
  ReadByColorType(fields, "opacities", [&](const Fields& in, const char* name, CaptioningColor::ColorType type) {
    facts.opacities[type].emplace();
    for (const Fields& entry : in.Objects(name))
      facts.opacities[type]->emplace(static_cast<float>(entry.Number("opacity")),
                                     zebcore::FromUTF8(entry.Text("name")));
  });
  return facts;
}

Json TellFacts(Driver&, const Fields& fields) {
  const zebcaptioning::StreamFormat format = ReadFormat(fields, "stream_format");
  if (fields.Mentions("types") || fields.Mentions("colors") || fields.Mentions("opacities"))
    zebcaptioning::OverrideFacts(format, ReadOverride(fields));
  const int rows = zebcaptioning::GetCaptionRows(format);
  const int columns = zebcaptioning::GetCaptionColumns(format, false);
  Json colors = Json::object();
  Json opacities = Json::object();
  for (const auto& [name, type] : kColorTypes) {
    std::map<CaptioningColor, zebcore::UString> legalColors;
    std::map<float, zebcore::UString> legalOpacities;
    const bool limited = CaptioningColor::EnumerateLegalColors(format, type, legalColors, legalOpacities);
    colors[name] = Json::array();
    for (const auto& [color, text] : legalColors)
      colors[name].push_back({{"color", FromColor(color)}, {"name", FromText(text)}});
    opacities[name] = Json::array();
    for (const auto& [opacity, text] : legalOpacities)
      opacities[name].push_back({{"opacity", FromFloat(opacity)}, {"name", FromText(text)}});
    if (!limited) {
      colors[name] = Json();
      opacities[name] = Json();
    }
  }
  return {{"stream_format", format},
          {"label", FromText(zebcaptioning::GetFullStreamFormatLabel(format))},
          {"rows", rows},
          {"columns", columns},
          {"columns_standard_aspect", zebcaptioning::GetCaptionColumns(format, true)},
          {"top_position", zebcaptioning::GetTopPosition(format)},
          {"types", TellTypes(format)},
          {"colors", std::move(colors)},
          {"opacities", std::move(opacities)},
          {"is_open", zebcaptioning::IsOpenCaptions(format)},
          {"is_teletext", zebcaptioning::IsTeletext(format)},
          {"is_australian", zebcaptioning::IsAustralianCaption(format)},
          {"is_ebu_n19", zebcaptioning::IsEbuN19(format)},
          {"keeps", TellKept(format, columns, rows)}};
}

} // namespace

void AddFactsRequests(RequestTable& table) {
  table["facts"] = {&TellFacts};
}

} // namespace Drive
