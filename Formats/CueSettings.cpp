#include "Formats/CueSettings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Formats/Text.h"

namespace Formats {

using zebcaptioning::ParagraphStyleAttributes;

namespace {

constexpr int kNoAnchor = 9;

// "12.5%", from 0 to 100.
std::optional<double> ParsePercent(std::u16string_view text) {
  if (!text.ends_with(u'%'))
    return std::nullopt;
  text.remove_suffix(1);
  const std::optional<double> number = ParseNumber(text);
  return number && *number >= 0 && *number <= 100 && !text.starts_with(u'-') ? number : std::nullopt;
}

enum class Edge { Start, Center, End };

struct Settings {
  std::optional<int> lineNumber;
  std::optional<double> linePercent;
  Edge lineEdge = Edge::Start;
  std::optional<double> position;
  std::optional<Edge> positionEdge;
  int alignment = ParagraphStyleAttributes::kTextAlignment_Center;

  bool HasPlace() const { return lineNumber || linePercent || position; }
};

bool ReadLine(std::u16string_view value, Settings& settings) {
  const std::size_t comma = value.find(u',');
  Edge edge = Edge::Start;
  if (comma != std::u16string_view::npos) {
    const std::u16string_view name = value.substr(comma + 1);
    if (name == u"center")
      edge = Edge::Center;
    else if (name == u"end")
      edge = Edge::End;
    else if (name != u"start")
      return false;
    value = value.substr(0, comma);
  }
  if (const std::optional<double> percent = ParsePercent(value)) {
    settings.linePercent = percent;
    settings.lineNumber.reset();
  } else {
    const std::optional<double> number = ParseNumber(value);
    if (!number || *number != std::floor(*number) || std::abs(*number) > 1000000)
      return false;
    settings.lineNumber = static_cast<int>(*number);
    settings.linePercent.reset();
  }
  settings.lineEdge = edge;
  return true;
}

bool ReadPosition(std::u16string_view value, Settings& settings) {
  const std::size_t comma = value.find(u',');
  std::optional<Edge> edge;
  if (comma != std::u16string_view::npos) {
    const std::u16string_view name = value.substr(comma + 1);
    if (name == u"line-left" || name == u"start")
      edge = Edge::Start;
    else if (name == u"center" || name == u"middle")
      edge = Edge::Center;
    else if (name == u"line-right" || name == u"end")
      edge = Edge::End;
    else
      return false;
    value = value.substr(0, comma);
  }
  const std::optional<double> percent = ParsePercent(value);
  if (!percent)
    return false;
  settings.position = percent;
  settings.positionEdge = edge;
  return true;
}

bool ReadAlign(std::u16string_view value, Settings& settings) {
  if (value == u"start" || value == u"left")
    settings.alignment = ParagraphStyleAttributes::kTextAlignment_Left;
  else if (value == u"center" || value == u"middle")
    settings.alignment = ParagraphStyleAttributes::kTextAlignment_Center;
  else if (value == u"end" || value == u"right")
    settings.alignment = ParagraphStyleAttributes::kTextAlignment_Right;
  else
    return false;
  return true;
}

Settings Parse(std::u16string_view text, CueBuilder& builder) {
  Settings settings;
  while (!(text = Trim(text)).empty()) {
    const std::size_t end = std::min(text.find_first_of(u" \t\f"), text.size());
    const std::u16string_view setting = text.substr(0, end);
    text = text.substr(end);
    const std::size_t colon = setting.find(u':');
    const std::u16string_view name = setting.substr(0, colon);
    const std::u16string_view value =
        colon == std::u16string_view::npos ? std::u16string_view() : setting.substr(colon + 1);
    const bool isKept = (name == u"line" && ReadLine(value, settings)) ||
                        (name == u"position" && ReadPosition(value, settings)) ||
                        (name == u"align" && ReadAlign(value, settings));
    if (!isKept)
      builder.Lose(Say("$$$/Vidra/Formats/LossSetting=the setting \"{0}\"", {Quote(setting)}));
  }
  return settings;
}

// Row of the anchor grid that the line names in exactly the way in which anchors are written.
std::optional<int> AnchorRow(const Settings& settings) {
  if (settings.lineNumber && settings.lineEdge == Edge::Start && *settings.lineNumber == 0)
    return 0;
  if (settings.linePercent && settings.lineEdge == Edge::Center && *settings.linePercent == 50)
    return 1;
  if (settings.lineNumber && settings.lineEdge == Edge::Start && *settings.lineNumber == -1)
    return 2;
  return std::nullopt;
}

std::optional<int> AnchorColumn(const Settings& settings) {
  if (!settings.position)
    return settings.alignment;
  const Edge edge = settings.positionEdge.value_or(*settings.position == 0     ? Edge::Start
                                                   : *settings.position == 100 ? Edge::End
                                                                               : Edge::Center);
  if (*settings.position == 0 && edge == Edge::Start)
    return 0;
  if (*settings.position == 50 && edge == Edge::Center)
    return 1;
  if (*settings.position == 100 && edge == Edge::End)
    return 2;
  return std::nullopt;
}

int Third(double percent) {
  return percent < 100.0 / 3 ? 0 : percent <= 200.0 / 3 ? 1 : 2;
}

// Open captions: the cell of the anchor grid that the place lies in.
Placement PlaceOpen(const Settings& settings, CueBuilder& builder) {
  constexpr int kLines = 15; // as a line number counts in most players
  const double line = settings.linePercent  ? *settings.linePercent
                      : settings.lineNumber ? (*settings.lineNumber >= 0 ? *settings.lineNumber + 0.5
                                                                         : kLines + *settings.lineNumber + 0.5) *
                                                  100.0 / kLines
                                            : 100.0;
  const int column = settings.position ? Third(*settings.position) : settings.alignment;
  builder.Lose(Say("$$$/Vidra/Formats/LossPlace=the exact position (it is kept as one of nine places)"));
  Placement placement;
  placement.anchor = Third(line) * 3 + column;
  placement.alignment = settings.alignment;
  return placement;
}

Placement PlaceClosed(const Settings& settings, StreamFormat format, std::u16string_view text) {
  const int rows = zebcaptioning::GetCaptionRows(format);
  const int columns = zebcaptioning::GetCaptionColumns(format, false);
  const int top = zebcaptioning::GetTopPosition(format);
  // Where the block would stand by itself, at the right and at the bottom: that tells its size.
  Placement placement = PlaceText(format, text, kNoAnchor, ParagraphStyleAttributes::kTextAlignment_Right);
  const int height = rows - placement.y;
  const int width = columns - placement.x;
  placement.alignment = settings.alignment;
  double y = placement.y;
  if (settings.lineNumber) {
    y = *settings.lineNumber >= 0 ? *settings.lineNumber : rows + *settings.lineNumber - (height - 1);
  } else if (settings.linePercent) {
    y = *settings.linePercent * rows / 100;
    y -= settings.lineEdge == Edge::Center ? height / 2.0 : settings.lineEdge == Edge::End ? height : 0;
  }
  const Edge edge = settings.positionEdge.value_or(static_cast<Edge>(settings.alignment));
  double x = settings.position ? *settings.position * columns / 100 : settings.alignment * columns / 2.0;
  x -= edge == Edge::Center ? width / 2.0 : edge == Edge::End ? width : 0;
  placement.y = std::max(std::min(static_cast<int>(std::lround(y)), rows - 1), top);
  placement.x = std::clamp(static_cast<int>(std::lround(x)), 0, columns - 1);
  return placement;
}

std::string PrintPercent(int part, int whole) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", part * 100.0 / whole);
  std::string percent = text;
  while (percent.ends_with('0'))
    percent.pop_back();
  if (percent.ends_with('.'))
    percent.pop_back();
  return percent + '%';
}

const char* AlignName(int alignment) {
  return alignment == ParagraphStyleAttributes::kTextAlignment_Left ? "start" : "end";
}

std::string PrintAnchor(const Placement& placement) {
  static const char* const kLines[] = {" line:0", " line:50%,center", " line:-1"};
  static const char* const kPositions[] = {" position:0%,line-left", " position:50%,center",
                                           " position:100%,line-right"};
  std::string text = kLines[placement.anchor / 3];
  if (placement.anchor % 3 != placement.alignment)
    text += kPositions[placement.anchor % 3];
  return text;
}

} // namespace

Placement ReadCueSettings(std::u16string_view text, StreamFormat format, CueBuilder& builder) {
  const Settings settings = Parse(text, builder);
  if (!settings.HasPlace())
    return PlaceText(format, builder.GetText(), kNoAnchor, settings.alignment);
  const std::optional<int> row = AnchorRow(settings);
  const std::optional<int> column = AnchorColumn(settings);
  const bool hasLine = settings.lineNumber || settings.linePercent;
  if (!hasLine && column == settings.alignment)
    return PlaceText(format, builder.GetText(), kNoAnchor, settings.alignment);
  if (row && column)
    return PlaceText(format, builder.GetText(), *row * 3 + *column, settings.alignment);
  return zebcaptioning::IsOpenCaptions(format) ? PlaceOpen(settings, builder)
                                               : PlaceClosed(settings, format, builder.GetText());
}

std::string WriteCueSettings(const Placement& placement, StreamFormat format, std::u16string_view text, bool& isLost) {
  const bool isOpen = zebcaptioning::IsOpenCaptions(format);
  const bool hasAnchor = placement.anchor >= 0 && placement.anchor <= 8;
  const Placement byItself = PlaceText(format, text, placement.anchor, placement.alignment);
  const bool isElsewhere = placement.x != byItself.x || placement.y != byItself.y;
  isLost = isElsewhere && (isOpen || hasAnchor);
  std::string settings;
  if (hasAnchor) {
    settings = PrintAnchor(placement);
  } else if (isElsewhere && !isOpen) {
    const int rows = zebcaptioning::GetCaptionRows(format);
    const int columns = zebcaptioning::GetCaptionColumns(format, false);
    if (placement.x < 0 || placement.x >= columns || placement.y < 0 || placement.y >= rows)
      isLost = true;
    else
      settings =
          " line:" + PrintPercent(placement.y, rows) + " position:" + PrintPercent(placement.x, columns) + ",line-left";
  }
  if (placement.alignment != ParagraphStyleAttributes::kTextAlignment_Center)
    settings += std::string(" align:") + AlignName(placement.alignment);
  return settings;
}

} // namespace Formats
