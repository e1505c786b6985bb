// Captions as another part of the host sees and edits them, and the facts of their formats.

#include "Captions/contracts/CaptioningColor.h"
#include "Drive/CaptionJson.h"
#include "Drive/Driver.h"

namespace Drive {

namespace {

using BE::CaptionDelta;
using zebcaptioning::CaptioningColor;

Json TellStream(Driver& driver, const Fields& fields) {
  const auto stream = driver.Stream(fields);
  return {{"captions", FromStream(*stream)}, {"stream_format", stream->GetStreamFormat()}};
}

std::optional<BE::ICaptioningStream::CaptionKey> FindKey(const BE::CaptioningStream& stream, const std::string& text) {
  std::vector<BE::ICaptioningStream::CaptionKey> keys;
  stream.GetCaptionKeys(keys);
  const auto found = std::find_if(keys.begin(), keys.end(), [&](const auto& key) { return key.ToText() == text; });
  return found == keys.end() ? std::nullopt : std::optional(*found);
}

std::vector<CaptionDelta> ReadAdded(const Fields& fields) {
  std::vector<CaptionDelta> deltas;
  for (const Fields& caption : fields.Objects("add"))
    deltas.push_back({{}, 0, nullptr, ReadCaption(caption)});
  return deltas;
}

std::vector<CaptionDelta> ReadRemoved(const BE::CaptioningStream& stream, const Fields& fields) {
  std::vector<CaptionDelta> deltas;
  for (const auto& time : fields.Times("remove")) {
    const auto key = stream.FindKeyByBegin(time);
    if (!key)
      fields.Refuse("remove", "no caption begins at " + std::to_string(time.GetTicks()));
    deltas.push_back({*key, 0, stream.GetCaption(*key)->GetState(), nullptr});
  }
  return deltas;
}

// A caption is named by its key, else by its begin; what is not given stays.
std::vector<CaptionDelta> ReadChanged(const BE::CaptioningStream& stream, const Fields& fields) {
  std::vector<CaptionDelta> deltas;
  for (const Fields& caption : fields.Objects("change")) {
    const auto key =
        caption.Has("key") ? FindKey(stream, caption.Text("key")) : stream.FindKeyByBegin(caption.Time("begin"));
    if (!key)
      caption.Refuse(caption.Has("key") ? "key" : "begin", "the stream has no such caption");
    const auto before = stream.GetCaption(*key)->GetState();
    deltas.push_back({*key, 0, before, ReadCaption(caption, before)});
  }
  return deltas;
}

Json EditStream(Driver& driver, const Fields& fields) {
  const auto stream = driver.Stream(fields);
  const int kinds = fields.Has("add") + fields.Has("remove") + fields.Has("change") + fields.Has("move");
  if (kinds != 1)
    throw RequestError("add: give one of add, remove, change and move");
  const auto project = driver.Project();
  if (fields.Has("move")) {
    const Fields move = fields.Object("move");
    project->ShiftCaptions(stream, move.Time("from"), move.Time("to"), move.Time("offset"), u"Move captions");
  } else if (fields.Has("add")) {
    project->EditCaptions(stream, ReadAdded(fields), u"Add captions");
  } else if (fields.Has("remove")) {
    project->EditCaptions(stream, ReadRemoved(*stream, fields), u"Delete captions");
  } else {
    project->EditCaptions(stream, ReadChanged(*stream, fields), u"Change captions");
  }
  return Json::object();
}

Json ChangeFormat(Driver& driver, const Fields& fields) {
  const auto stream = driver.Stream(fields);
  const auto problem = driver.Project()->ChangeStreamFormat(stream, ReadFormat(fields, "format"), u"Change format");
  if (problem)
    throw RequestError(problem->text);
  return {{"stream", stream->GetID()}, {"stream_format", stream->GetStreamFormat()}};
}

Json SetBusy(Driver& driver, const Fields& fields) {
  const auto stream = driver.Stream(fields);
  const bool on = fields.Flag("on");
  if (!on && !stream->IsBusy())
    fields.Refuse("on", "no long job holds the stream");
  stream->SetBusy(on);
  return {{"busy", stream->IsBusy()}};
}

// What a caption of this format still holds of each attribute, found out by giving it one.
Json TellKept(zebcaptioning::StreamFormat format, int columns, int rows) {
  using namespace zebcaptioning;
  const boost::intrusive_ptr<CaptionState> odd(new CaptionState());
  odd->text = u"x";
  odd->paragraph.alignment = ParagraphStyleAttributes::kTextAlignment_Right;
  odd->paragraph.anchor = 4;
  odd->paragraph.x = 3;
  odd->paragraph.y = 5;
  odd->paragraph.lineSpacing = 7;
  TextSpanAttributes span;
  span.family = u"Captivo Test Family";
  span.size = 31.0F;
  span.bold = span.italic = span.underline = true;
  span.textColor = {0.25F, 0.5F, 0.75F, 0.3F};
  span.backgroundColor = {0.3F, 0.6F, 0.9F, 0.4F};
  span.edgeColor = {0.1F, 0.2F, 0.3F, 0.6F};
  span.edgeWidth = 2.5F;
  odd->runs = {{0, Share(span)}};
  const boost::intrusive_ptr<Caption> pattern(new Caption(odd));
  const Caption kept(zebmediatypes::kTime_Zero, zebmediatypes::TickTime(1), pattern, format, columns, rows);
  const auto& paragraph = kept.GetState()->paragraph;
  const auto& run = *kept.GetState()->runs.front().attributes;
  return {{"alignment", paragraph.alignment == odd->paragraph.alignment},
          {"anchor", paragraph.anchor == odd->paragraph.anchor},
          {"x", paragraph.x == odd->paragraph.x},
          {"y", paragraph.y == odd->paragraph.y},
          {"line_spacing", paragraph.lineSpacing == odd->paragraph.lineSpacing},
          {"family", run.family == span.family},
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

Json TellFacts(Driver&, const Fields& fields) {
  for (const char* name : {"types", "colors", "opacities"}) {
    if (fields.Has(name))
      fields.Refuse(name, "the facts of a format cannot be replaced yet");
  }
  const zebcaptioning::StreamFormat format = ReadFormat(fields, "stream_format");
  const int rows = zebcaptioning::GetCaptionRows(format);
  const int columns = zebcaptioning::GetCaptionColumns(format, false);
  Json colors = Json::object();
  Json opacities = Json::object();
  static constexpr std::pair<const char*, CaptioningColor::ColorType> kTypes[] = {
      {"text", CaptioningColor::kColorType_Text},
      {"background", CaptioningColor::kColorType_Background},
      {"edge", CaptioningColor::kColorType_Edge}};
  for (const auto& [name, type] : kTypes) {
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

void AddStreamRequests(RequestTable& table) {
  table["stream"] = {&TellStream};
  table["edit_stream"] = {&EditStream};
  table["change_format"] = {&ChangeFormat};
  table["busy"] = {&SetBusy};
  table["facts"] = {&TellFacts};
}

} // namespace Drive
