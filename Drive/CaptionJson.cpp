#include "Drive/CaptionJson.h"

#include <cmath>

#include "App/Session.h"

namespace Drive {

using zebcaptioning::CaptioningColor;
using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using zebcaptioning::ParagraphStyleAttributes;
using zebcaptioning::TextSpanAttributes;

namespace {

Json FromName(const zebcore::utility::ImmutableString& name) {
  return name.IsNull() ? Json() : Json(name.Text());
}

Json FromParagraph(const ParagraphStyleAttributes& paragraph) {
  return {
      {"caption_type", paragraph.captionType},
      {"alignment", static_cast<int>(paragraph.alignment)},
      {"anchor", paragraph.anchor},
      {"x", paragraph.x},
      {"y", paragraph.y},
      {"line_spacing", paragraph.lineSpacing},
      {"region", FromName(paragraph.region)},
      {"style", FromName(paragraph.style)},
      {"line_width",
       paragraph.lineWidth == ParagraphStyleAttributes::kLineWidth_Unknown ? Json() : Json(paragraph.lineWidth)},
      {"block_height", paragraph.blockHeight},
  };
}

Json FromRun(std::size_t start, std::size_t end, const TextSpanAttributes& span) {
  return {
      {"start", start},
      {"end", end},
      {"family", zebcore::ToUTF8(span.family)},
      {"size", FromFloat(span.size)},
      {"bold", span.bold},
      {"italic", span.italic},
      {"underline", span.underline},
      {"text_color", FromColor(span.textColor)},
      {"background_color", FromColor(span.backgroundColor)},
      {"edge_color", FromColor(span.edgeColor)},
      {"edge_width", FromFloat(span.edgeWidth)},
  };
}

zebcore::utility::ImmutableString ReadName(const Fields& fields, const char* name) {
  return fields.Has(name) ? zebcore::utility::ImmutableString(fields.Text(name)) : zebcore::utility::ImmutableString();
}

void ReadParagraph(const Fields& fields, ParagraphStyleAttributes& paragraph) {
  paragraph.captionType = fields.Int("caption_type", paragraph.captionType);
  paragraph.alignment =
      static_cast<ParagraphStyleAttributes::TextAlignmentType>(fields.Integer("alignment", 0, 2, paragraph.alignment));
  paragraph.anchor = static_cast<int>(fields.Integer("anchor", -2, 9, paragraph.anchor));
  paragraph.x = fields.Int("x", paragraph.x);
  paragraph.y = fields.Int("y", paragraph.y);
  paragraph.lineSpacing = fields.Int("line_spacing", paragraph.lineSpacing);
  if (fields.Mentions("region"))
    paragraph.region = ReadName(fields, "region");
  if (fields.Mentions("style"))
    paragraph.style = ReadName(fields, "style");
  if (fields.Mentions("line_width"))
    paragraph.lineWidth = fields.Int("line_width", ParagraphStyleAttributes::kLineWidth_Unknown);
  paragraph.blockHeight = fields.Int("block_height", paragraph.blockHeight);
}

float ReadSize(const Fields& fields, const char* name, float absent) {
  if (!fields.Has(name))
    return absent;
  const auto size = static_cast<float>(fields.Number(name));
  if (!std::isfinite(size))
    fields.Refuse(name, "must be a number that is finite");
  return size;
}

void ReadSpan(const Fields& fields, TextSpanAttributes& span) {
  if (fields.Has("family"))
    span.family = zebcore::FromUTF8(fields.Text("family"));
  span.size = ReadSize(fields, "size", span.size);
  span.bold = fields.Flag("bold", span.bold);
  span.italic = fields.Flag("italic", span.italic);
  span.underline = fields.Flag("underline", span.underline);
  if (fields.Has("text_color"))
    span.textColor = ReadColor(fields, "text_color");
  if (fields.Has("background_color"))
    span.backgroundColor = ReadColor(fields, "background_color");
  if (fields.Has("edge_color"))
    span.edgeColor = ReadColor(fields, "edge_color");
  span.edgeWidth = ReadSize(fields, "edge_width", span.edgeWidth);
}

// Spans by the position at which they start; each reaches to the next one.
using Spans = std::map<std::uint32_t, TextSpanAttributes>;

void SplitAt(Spans& spans, std::uint32_t position) {
  if (!spans.contains(position))
    spans.emplace(position, std::prev(spans.lower_bound(position))->second);
}

void ReadRuns(const Fields& fields, CaptionState& state) {
  const auto length = static_cast<std::uint32_t>(state.text.size());
  Spans spans{{0, TextSpanAttributes()}};
  for (const Fields& run : fields.Objects("runs")) {
    const auto start = static_cast<std::uint32_t>(run.Integer("start", 0, length, 0));
    const auto end = static_cast<std::uint32_t>(run.Integer("end", start, length, length));
    if (start == end && length > 0)
      continue;
    SplitAt(spans, start);
    if (end < length)
      SplitAt(spans, end);
    for (auto span = spans.find(start); span != spans.end() && (span->first < end || span->first == start); ++span)
      ReadSpan(run, span->second);
  }
  state.runs.clear();
  for (const auto& [start, span] : spans) {
    if (state.runs.empty() || !(*state.runs.back().attributes == span))
      state.runs.push_back({start, zebcaptioning::Share(span)});
  }
}

} // namespace

Json FromColor(const CaptioningColor& color) {
  return Json::array({FromFloat(color.red), FromFloat(color.green), FromFloat(color.blue), FromFloat(color.alpha)});
}

Json FromCaption(const BE::ICaptioningStream::CaptionKey& key, const CaptionState& state) {
  Json runs = Json::array();
  for (std::size_t i = 0; i < state.runs.size(); ++i) {
    const std::size_t end = i + 1 < state.runs.size() ? state.runs[i + 1].start : state.text.size();
    runs.push_back(FromRun(state.runs[i].start, end, *state.runs[i].attributes));
  }
  return {
      {"key", key.ToText()},
      {"begin", FromTime(state.begin)},
      {"end", FromTime(state.end)},
      {"text", FromText(state.text)},
      {"paragraph", FromParagraph(state.paragraph)},
      {"runs", std::move(runs)},
  };
}

Json FromStream(const BE::CaptioningStream& stream) {
  std::vector<BE::ICaptioningStream::CaptionKey> keys;
  stream.GetCaptionKeys(keys);
  Json captions = Json::array();
  for (const auto& key : keys) {
    if (const auto caption = stream.GetCaption(key))
      captions.push_back(FromCaption(key, *caption->GetState()));
  }
  return captions;
}

CaptioningColor ReadColor(const Fields& fields, const char* name) {
  const Json& list = fields.Get(name);
  if (!list.is_array() || list.size() != 4)
    fields.Refuse(name, "must be [red, green, blue, alpha], each from 0 to 1");
  float parts[4] = {};
  for (std::size_t i = 0; i < 4; ++i) {
    if (!list[i].is_number() || list[i].get<double>() < 0.0 || list[i].get<double>() > 1.0)
      fields.Refuse(name + ("[" + std::to_string(i) + "]"), "must be a number from 0 to 1");
    parts[i] = list[i].get<float>();
  }
  return {parts[0], parts[1], parts[2], parts[3]};
}

CaptionStatePtr ReadCaption(const Fields& fields, const CaptionStatePtr& pattern) {
  const boost::intrusive_ptr<CaptionState> state(
      new CaptionState(pattern ? *pattern : *zebcaptioning::Caption().GetState()));
  if (!pattern || fields.Has("begin"))
    state->begin = fields.Time("begin");
  if (!pattern || fields.Has("end"))
    state->end = fields.Time("end");
  const bool otherText = fields.Has("text") && zebcore::FromUTF8(fields.Text("text")) != state->text;
  if (fields.Has("text"))
    state->text = zebcore::FromUTF8(fields.Text("text"));
  if (fields.Has("paragraph"))
    ReadParagraph(fields.Object("paragraph"), state->paragraph);
  if (fields.Has("runs")) {
    ReadRuns(fields, *state);
  } else if (otherText) {
    // The runs that still have a character to stand on.
    std::erase_if(state->runs,
                  [&](const zebcaptioning::TextRun& run) { return run.start > 0 && run.start >= state->text.size(); });
  }
  if (otherText)
    state->typing.reset();
  return state;
}

std::vector<BE::NewCaption> ReadCaptions(const Fields& fields, const char* name) {
  std::vector<BE::NewCaption> captions;
  if (fields.Has(name)) {
    for (const Fields& caption : fields.Objects(name))
      captions.push_back({ReadCaption(caption)});
  }
  return captions;
}

zebcaptioning::StreamFormat ReadFormat(const Fields& fields, const char* name, std::optional<std::string> absent) {
  if (fields.Has(name) && fields.Get(name).is_number())
    return static_cast<zebcaptioning::StreamFormat>(fields.Integer(name, 0, 0xFFFFFFFFLL));
  const std::string family = absent ? fields.Text(name, *absent) : fields.Text(name);
  const std::vector<std::string> families = App::GetStreamFamilies();
  if (std::find(families.begin(), families.end(), family) == families.end())
    fields.Refuse(name, "must be cea608, cea708, teletext, ebu_n19, australian, open or a format's number");
  const int channel = fields.Int("channel", 1);
  const zebcaptioning::StreamFormat format = App::GetStreamFormat(family, channel);
  if (format == zebcaptioning::kStreamFormat_None)
    fields.Refuse("channel", family + " has no channel " + std::to_string(channel));
  return format;
}

} // namespace Drive
