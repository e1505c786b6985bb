#include "App/monitor/CaptionScreen.h"

#include <QChar>
#include <QFont>
#include <QString>
#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <utility>

#include "zebcaptioning/Spans.h"

namespace App::monitor {

using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using zebcaptioning::FormatFacts;
using zebcaptioning::ParagraphStyleAttributes;
using zebcaptioning::SharedSpan;
using zebcaptioning::StreamFormat;

namespace {

// A window of CEA-708 that rolls up has the rows that it was defined with; encoders define three.
constexpr int kRowsOfWindow = 3;

struct Glyph {
  zebcore::UString text; // empty for a space
  SharedSpan look;
  bool isDouble = false;
};

struct Line {
  std::vector<Glyph> glyphs; // from left to right
  bool isDouble = false;
  int column = 0;

  int Width() const { return static_cast<int>(glyphs.size()); }
  int Height() const { return isDouble ? 2 : 1; }
};

struct Area {
  int column = 0;
  int row = 0;
  int width = 0;
  int height = 0;
};

bool IsRightToLeft(QChar c) {
  return c.direction() == QChar::DirR || c.direction() == QChar::DirAL;
}

// Cells are filled from left to right, whatever way a text is read.
void PutInSight(std::vector<Glyph>& glyphs, const std::vector<qsizetype>& starts, const QString& text) {
  if (std::none_of(text.begin(), text.end(), IsRightToLeft))
    return;
  QTextLayout layout(text, QFont());
  layout.beginLayout();
  QTextLine line = layout.createLine();
  layout.endLayout();
  std::vector<std::pair<qreal, std::size_t>> places;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    const int end = static_cast<int>(i + 1 < starts.size() ? starts[i + 1] : text.size());
    places.emplace_back(line.cursorToX(static_cast<int>(starts[i])) + line.cursorToX(end), i);
  }
  std::stable_sort(places.begin(), places.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<Glyph> sorted;
  for (const auto& [x, index] : places)
    sorted.push_back(glyphs[index]);
  glyphs = std::move(sorted);
}

// The line of the text from start to end.
Line ReadLine(const CaptionState& state, std::size_t start, std::size_t end, const FormatFacts& facts) {
  const QString text(reinterpret_cast<const QChar*>(state.text.data()) + start, static_cast<qsizetype>(end - start));
  Line line;
  std::vector<qsizetype> starts;
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  for (qsizetype from = 0; from < text.size();) {
    const qsizetype next = finder.toNextBoundary();
    const qsizetype to = next > from ? next : text.size();
    Glyph glyph;
    glyph.look = state.runs[zebcaptioning::FindRun(state, start + static_cast<std::size_t>(from))].attributes;
    glyph.isDouble = facts.doubleHeight && glyph.look->size > zebcaptioning::kFontSize_DoubleAbove;
    if (!text.at(from).isSpace())
      glyph.text = state.text.substr(start + static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
    line.isDouble = line.isDouble || glyph.isDouble;
    line.glyphs.push_back(std::move(glyph));
    starts.push_back(from);
    from = to;
  }
  PutInSight(line.glyphs, starts, text);
  return line;
}

std::vector<Line> ReadLines(const CaptionState& state, const FormatFacts& facts) {
  std::vector<Line> lines;
  std::size_t start = 0;
  while (start <= state.text.size()) {
    std::size_t end = state.text.find(u'\n', start);
    if (end == zebcore::UString::npos)
      end = state.text.size();
    lines.push_back(ReadLine(state, start, end, facts));
    start = end + 1;
  }
  return lines;
}

int HeightOf(const std::vector<Line>& lines) {
  int height = 0;
  for (const Line& line : lines)
    height += line.Height();
  return height;
}

int WidthOf(const std::vector<Line>& lines) {
  int width = 0;
  for (const Line& line : lines)
    width = std::max(width, line.Width());
  return width;
}

Area AreaOf(const CaptionOnShow& caption, const CaptionScreen& screen) {
  const Area whole{0, screen.GetTop(), screen.GetColumns(), screen.GetRows() - screen.GetTop()};
  if (!caption.region || caption.region->area.width <= 0.0F || caption.region->area.height <= 0.0F)
    return whole;
  const auto& area = caption.region->area;
  const float unitX = caption.region->percent ? static_cast<float>(screen.GetColumns()) / 100.0F : 1.0F;
  const float unitY = caption.region->percent ? static_cast<float>(screen.GetRows()) / 100.0F : 1.0F;
  const auto cells = [](float length) {
    constexpr float kFar = 10000.0F;
    return static_cast<int>(std::lround(std::clamp(length, -kFar, kFar)));
  };
  return {cells(area.x * unitX), cells(area.y * unitY), cells(area.width * unitX), cells(area.height * unitY)};
}

struct Place {
  int column = 0;
  int row = 0;
};

Place PlaceBlock(const CaptionOnShow& caption, const CaptionScreen& screen, int width, int height) {
  const ParagraphStyleAttributes& paragraph = caption.state->paragraph;
  const Area area = AreaOf(caption, screen);
  Place place;
  if (paragraph.anchor >= 0 && paragraph.anchor <= 8) {
    place = {area.column + (area.width - width) * (paragraph.anchor % 3) / 2,
             area.row + (area.height - height) * (paragraph.anchor / 3) / 2};
  } else {
    place = {paragraph.x, paragraph.y};
    if (caption.region) {
      place.column += area.column;
      place.row += area.row;
    }
  }
  place.column = std::clamp(place.column, 0, std::max(0, screen.GetColumns() - width));
  place.row = std::clamp(place.row, screen.GetTop(), std::max(screen.GetTop(), screen.GetRows() - height));
  return place;
}

// The lines of a caption get their columns; gives the row of the first.
int PlaceLines(const CaptionOnShow& caption, const CaptionScreen& screen, std::vector<Line>& lines) {
  const int width = WidthOf(lines);
  const Place place = PlaceBlock(caption, screen, width, HeightOf(lines));
  for (Line& line : lines)
    line.column = place.column + (width - line.Width()) * caption.state->paragraph.alignment / 2;
  return place.row;
}

// The newest line stands on the base row, which has to have room above it for all rows. Those that it pushed up stand
// above, as many as there are rows.
int RollUp(const CaptionOnShow& caption, const CaptionScreen& screen, const FormatFacts& facts, int rows,
           std::vector<Line>& lines) {
  const int base = PlaceLines(caption, screen, lines) + HeightOf(lines);
  std::vector<Line> all;
  for (const CaptionStatePtr& older : caption.rolledUp) {
    std::vector<Line> above = ReadLines(*older, facts);
    PlaceLines({older, {}, caption.region}, screen, above);
    std::move(above.begin(), above.end(), std::back_inserter(all));
  }
  std::move(lines.begin(), lines.end(), std::back_inserter(all));
  const auto count = std::min(all.size(), static_cast<std::size_t>(rows));
  lines.assign(std::make_move_iterator(all.end() - static_cast<std::ptrdiff_t>(count)),
               std::make_move_iterator(all.end()));
  return std::max(base, screen.GetTop() + rows) - HeightOf(lines);
}

void PutMargin(CaptionScreen& screen, int row, int column, const SharedSpan& look) {
  if (!screen.Holds(row, column) || !screen.At(row, column).text.empty())
    return;
  zebcaptioning::TextSpanAttributes margin = *look;
  margin.underline = false;
  screen.At(row, column) = {margin.backgroundColor.alpha > 0.0F, false, {}, zebcaptioning::Share(margin)};
}

// A row of a line: its upper one, or the lower one of double height.
void PutRow(CaptionScreen& screen, const Line& line, int row, bool isLower) {
  for (int i = 0; i < line.Width(); ++i) {
    const Glyph& glyph = line.glyphs[static_cast<std::size_t>(i)];
    const int column = line.column + i;
    if (row < screen.GetTop() || row >= screen.GetRows() || column < 0 || column >= screen.GetColumns()) {
      if (!isLower && !glyph.text.empty())
        screen.LoseCharacter();
      continue;
    }
    screen.At(row, column) = {glyph.look->backgroundColor.alpha > 0.0F, glyph.isDouble && !isLower,
                              isLower ? zebcore::UString() : glyph.text, glyph.look};
  }
  if (line.glyphs.empty() || row < screen.GetTop())
    return;
  PutMargin(screen, row, line.column - 1, line.glyphs.front().look);
  PutMargin(screen, row, std::min(line.column + line.Width(), screen.GetColumns()), line.glyphs.back().look);
}

} // namespace

CaptionScreen::CaptionScreen(StreamFormat format, int columns, int rows)
    : mFacts(&zebcaptioning::GetFormatFacts(format)), mColumns(zebcaptioning::GridColumns(format, columns)),
      mRows(zebcaptioning::GridRows(format, rows)),
      mCells(static_cast<std::size_t>(mRows) * static_cast<std::size_t>(mColumns + 2)) {}

int CountRollUpRows(zebcaptioning::CaptionType type) {
  switch (type) {
  case zebcaptioning::kCaptionType_RollUp2:
    return 2;
  case zebcaptioning::kCaptionType_RollUp3:
    return 3;
  case zebcaptioning::kCaptionType_RollUp4:
    return 4;
  case zebcaptioning::kCaptionType_RollUp:
    return kRowsOfWindow;
  default:
    return 0;
  }
}

CaptionScreen LayOutScreen(const std::vector<CaptionOnShow>& captions, StreamFormat format, int columns, int rows) {
  const FormatFacts& facts = zebcaptioning::GetFormatFacts(format);
  if (!facts.limited || facts.family == zebcaptioning::FormatFamily::None)
    return {};
  CaptionScreen screen(format, columns, rows);
  for (const CaptionOnShow& caption : captions) {
    std::vector<Line> lines = ReadLines(*caption.state, facts);
    const int rollUpRows = CountRollUpRows(caption.state->paragraph.captionType);
    int row = rollUpRows > 0 ? RollUp(caption, screen, facts, rollUpRows, lines) : PlaceLines(caption, screen, lines);
    for (const Line& line : lines) {
      PutRow(screen, line, row, false);
      if (line.isDouble)
        PutRow(screen, line, row + 1, true);
      row += line.Height();
    }
  }
  return screen;
}

} // namespace App::monitor
