#include "Formats/CaptionEdit.h"

#include <algorithm>

#include <unicode/uchar.h>

namespace Formats {

using zebcaptioning::CaptionState;
using zebcaptioning::TextRun;

namespace {

// Runs that begin where another one does, or behind the text, hold no character; the later of two says how it looks.
void TidyRuns(CaptionState& caption) {
  std::vector<TextRun> tidy;
  for (const TextRun& run : caption.runs) {
    if (run.start >= caption.text.size() && !tidy.empty())
      continue;
    if (!tidy.empty() && tidy.back().start == run.start)
      tidy.pop_back();
    if (tidy.empty() || !(*tidy.back().attributes == *run.attributes))
      tidy.push_back(run);
  }
  caption.runs = std::move(tidy);
}

} // namespace

CaptionDraft CopyCaption(const CaptionState& state) {
  return CaptionDraft(new CaptionState(state));
}

void ChangeText(CaptionState& caption, std::span<const TextChange> changes) {
  if (changes.empty())
    return;
  UString text;
  text.reserve(caption.text.size() + changes.size());
  auto run = caption.runs.begin();
  std::size_t from = 0;
  for (const TextChange& change : changes) {
    for (; run != caption.runs.end() && run->start <= change.begin; ++run)
      run->start = static_cast<std::uint32_t>(text.size() + (run->start - from));
    text.append(caption.text, from, change.begin - from);
    if (change.with != 0)
      text += change.with;
    for (; run != caption.runs.end() && run->start < change.end; ++run)
      run->start = static_cast<std::uint32_t>(text.size());
    from = change.end;
  }
  for (; run != caption.runs.end(); ++run)
    run->start = static_cast<std::uint32_t>(text.size() + (run->start - from));
  text.append(caption.text, from);
  caption.text = std::move(text);
  caption.typing.reset();
  TidyRuns(caption);
}

CaptionDraft CutCaption(const CaptionState& state, std::size_t begin, std::size_t end) {
  CaptionDraft part(new CaptionState);
  part->begin = state.begin;
  part->end = state.end;
  part->paragraph = state.paragraph;
  part->text = state.text.substr(begin, end - begin);
  // The last run that begins at the part or before it, and those within.
  auto run = std::upper_bound(state.runs.begin(), state.runs.end(), begin,
                              [](std::size_t at, const TextRun& candidate) { return at < candidate.start; });
  part->runs.push_back({0, std::prev(run)->attributes});
  for (; run != state.runs.end() && run->start < end; ++run)
    part->runs.push_back({static_cast<std::uint32_t>(run->start - begin), run->attributes});
  TidyRuns(*part);
  return part;
}

void AppendBelow(CaptionState& caption, const CaptionState& below) {
  if (below.text.empty())
    return;
  caption.typing.reset();
  if (caption.text.empty()) {
    caption.text = below.text;
    caption.runs = below.runs;
    return;
  }
  caption.text += u'\n';
  const auto shift = static_cast<std::uint32_t>(caption.text.size());
  caption.text += below.text;
  for (const TextRun& run : below.runs) {
    if (caption.runs.empty() || !(*caption.runs.back().attributes == *run.attributes))
      caption.runs.push_back({run.start + shift, run.attributes});
  }
}

void PlaceAgain(CaptionState& caption, std::u16string_view textBefore, StreamFormat format) {
  const auto& place = caption.paragraph;
  PlaceAgain(caption, PlaceText(format, textBefore, place.anchor, place.alignment), format);
}

void PlaceAgain(CaptionState& caption, const Placement& before, StreamFormat format) {
  if (zebcaptioning::IsOpenCaptions(format))
    return;
  auto& place = caption.paragraph;
  if (place.x == before.x && place.y == before.y) {
    const Placement now = PlaceText(format, caption.text, place.anchor, place.alignment);
    place.x = now.x;
    place.y = now.y;
    return;
  }
  // At the bottom and at the right the block has its last place in the grid.
  const Placement last = PlaceText(format, caption.text, 8, place.alignment);
  place.x = std::max(std::min(place.x, last.x), 0);
  place.y = std::max(std::min(place.y, last.y), zebcaptioning::GetTopPosition(format));
}

std::size_t CountCells(std::u16string_view line) {
  return static_cast<std::size_t>(std::count_if(line.begin(), line.end(), [](char16_t c) {
    const bool isSecondHalf = c >= 0xDC00 && c < 0xE000;
    return !isSecondHalf && u_charType(c) != U_NON_SPACING_MARK;
  }));
}

bool IsBreakable(char16_t c) {
  return c == u' ' || c == u'\t' || c == 0x3000;
}

} // namespace Formats
