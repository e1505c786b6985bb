#include <algorithm>

#include "Formats/CaptionEdit.h"
#include "Formats/CueTimes.h"
#include "Formats/Text.h"
#include "Formats/Treatment.h"

// Lines that are too long and captions with too many of them.
namespace Formats {

using zebcaptioning::CaptionState;
using zebmediatypes::TickTime;

namespace {

bool IsGap(char16_t c) {
  return IsBreakable(c) || c == u'\n';
}

bool HasLongLine(std::u16string_view text, std::size_t length) {
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(u'\n', begin), text.size());
    std::u16string_view line = text.substr(begin, end - begin);
    while (!line.empty() && IsBreakable(line.back()))
      line.remove_suffix(1);
    if (CountCells(line) > length)
      return true;
    begin = end + 1;
  }
  return false;
}

// As many words as fit into each line.
std::vector<TextChange> FindWraps(std::u16string_view text, std::size_t length) {
  std::vector<TextChange> changes;
  std::size_t cells = 0;    // of the line so far
  std::size_t gapBegin = 0; // last place to break; none while both are equal
  std::size_t gapEnd = 0;
  std::size_t cellsToGap = 0; // up to the end of that place
  bool hasWord = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c == u'\n') {
      cells = 0;
      gapBegin = gapEnd = i + 1;
      hasWord = false;
      continue;
    }
    cells += CountCells({&c, 1});
    if (IsBreakable(c)) {
      if (hasWord) {
        if (gapEnd != i || gapBegin == gapEnd)
          gapBegin = i;
        gapEnd = i + 1;
        cellsToGap = cells;
      }
      continue;
    }
    hasWord = true;
    if (cells > length && gapBegin < gapEnd) {
      changes.push_back({gapBegin, gapEnd, u'\n'});
      cells -= cellsToGap;
      gapBegin = gapEnd;
    }
  }
  return changes;
}

struct Word {
  std::size_t begin;
  std::size_t end;
  std::size_t cells;
};

std::vector<Word> FindWords(std::u16string_view text) {
  std::vector<Word> words;
  for (std::size_t i = 0; i < text.size();) {
    if (IsGap(text[i])) {
      ++i;
      continue;
    }
    const std::size_t begin = i;
    while (i < text.size() && !IsGap(text[i]))
      ++i;
    words.push_back({begin, i, CountCells(text.substr(begin, i - begin))});
  }
  return words;
}

// How many lines it takes, filling each as far as length.
std::size_t CountLines(const std::vector<Word>& words, std::size_t length) {
  std::size_t lines = 0;
  std::size_t cells = 0;
  for (const Word& word : words) {
    if (lines == 0 || cells + 1 + word.cells > length) {
      ++lines;
      cells = word.cells;
    } else {
      cells += 1 + word.cells;
    }
  }
  return lines;
}

// Joined with single blanks, and broken into as few lines as length allows, the longest as short as that can be.
std::vector<TextChange> FindReflow(std::u16string_view text, std::size_t length) {
  const std::vector<Word> words = FindWords(text);
  const std::size_t lines = CountLines(words, length);
  std::size_t tooShort = 0;
  std::size_t enough = length;
  while (tooShort + 1 < enough) {
    const std::size_t middle = (tooShort + enough) / 2;
    (CountLines(words, middle) > lines ? tooShort : enough) = middle;
  }
  std::vector<TextChange> changes;
  const auto change = [&](std::size_t begin, std::size_t end, char16_t with) {
    const bool isSame = with == 0 ? begin == end : end == begin + 1 && text[begin] == with;
    if (!isSame)
      changes.push_back({begin, end, with});
  };
  std::size_t cells = 0;
  std::size_t from = 0;
  for (const Word& word : words) {
    const bool isFirst = word.begin == words.front().begin;
    const bool isNext = isFirst || cells + 1 + word.cells > enough;
    change(from, word.begin, isFirst ? u'\0' : isNext ? u'\n' : u' ');
    cells = isNext ? word.cells : cells + 1 + word.cells;
    from = word.end;
  }
  if (!words.empty())
    change(from, text.size(), 0);
  return changes;
}

std::vector<std::size_t> FindLineStarts(std::u16string_view text) {
  std::vector<std::size_t> starts{0};
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\n')
      starts.push_back(i + 1);
  }
  return starts;
}

// Of a length that may be long, times part by whole; whole is below the number of a text's units.
std::int64_t Share(std::int64_t length, std::int64_t part, std::int64_t whole) {
  return length / whole * part + length % whole * part / whole;
}

// Parts one after the other; none where there is not a tick for each.
Captions Split(const CaptionState& caption, std::size_t lineCount, StreamFormat format) {
  const std::vector<std::size_t> starts = FindLineStarts(caption.text);
  const std::size_t count = (starts.size() + lineCount - 1) / lineCount;
  Captions parts;
  std::vector<CaptionDraft> drafts;
  std::vector<std::int64_t> weights{0};
  for (std::size_t part = 0, line = 0; part < count; ++part) {
    const std::size_t lines = starts.size() / count + (part < starts.size() % count ? 1 : 0);
    const std::size_t begin = starts[line];
    line += lines;
    const std::size_t end = line < starts.size() ? starts[line] - 1 : caption.text.size();
    drafts.push_back(CutCaption(caption, begin, end));
    // Without the line feeds between its lines.
    const auto cells = static_cast<std::int64_t>(CountCells(drafts.back()->text) - (lines - 1));
    weights.push_back(weights.back() + std::max<std::int64_t>(cells, 1));
  }
  const Placement byItself = PlaceText(format, caption.text, caption.paragraph.anchor, caption.paragraph.alignment);
  const std::int64_t duration = (caption.end - caption.begin).GetTicks();
  for (std::size_t part = 0; part < count; ++part) {
    const CaptionDraft& draft = drafts[part];
    draft->begin = caption.begin + TickTime(Share(duration, weights[part], weights.back()));
    draft->end = caption.begin + TickTime(Share(duration, weights[part + 1], weights.back()));
    if (draft->end <= draft->begin)
      return {};
    PlaceAgain(*draft, byItself, format);
    parts.push_back(draft);
  }
  return parts;
}

} // namespace

Captions BreakLines(Captions captions, BE::LongLines how, std::size_t length, StreamFormat format, Problems& problems) {
  if (how == BE::LongLines::Keep || length == 0)
    return captions;
  std::size_t broken = 0;
  for (CaptionStatePtr& caption : captions) {
    const UString& text = caption->text;
    if (!HasLongLine(text, length))
      continue;
    const std::vector<TextChange> changes =
        how == BE::LongLines::Wrap ? FindWraps(text, length) : FindReflow(text, length);
    if (!changes.empty()) {
      CaptionDraft draft = CopyCaption(*caption);
      ChangeText(*draft, changes);
      PlaceAgain(*draft, text, format);
      caption = draft;
      ++broken;
    }
    if (HasLongLine(caption->text, length))
      problems.push_back({0, Say("$$$/Vidra/Formats/WordTooLong=The caption \"{0}\" at {1} holds a word that is longer "
                                 "than the longest line of {2} characters; it stays in one piece.",
                                 {Quote(caption->text), PrintCueTime(caption->begin), std::to_string(length)})});
  }
  if (broken > 0)
    problems.push_back({0, Say("$$$/Vidra/Formats/LinesBroken=Captions whose lines were broken anew because one was "
                               "longer than {1} characters: {0}.",
                               {std::to_string(broken), std::to_string(length)})});
  return captions;
}

Captions SplitCaptions(Captions captions, std::size_t lineCount, StreamFormat format, Problems& problems) {
  lineCount = std::max<std::size_t>(lineCount, 1);
  Captions all;
  all.reserve(captions.size());
  std::size_t split = 0;
  for (const CaptionStatePtr& caption : captions) {
    const auto lines = static_cast<std::size_t>(std::count(caption->text.begin(), caption->text.end(), u'\n')) + 1;
    const Captions parts = lines > lineCount ? Split(*caption, lineCount, format) : Captions();
    if (parts.empty()) {
      if (lines > lineCount)
        problems.push_back({0, Say("$$$/Vidra/Formats/TooShortToSplit=The caption \"{0}\" at {1} keeps its {2} lines: "
                                   "its time is too short to be shared.",
                                   {Quote(caption->text), PrintCueTime(caption->begin), std::to_string(lines)})});
      all.push_back(caption);
      continue;
    }
    ++split;
    all.insert(all.end(), parts.begin(), parts.end());
  }
  SortByBegin(all);
  if (split > 0)
    problems.push_back({0, Say("$$$/Vidra/Formats/CaptionsSplit=Captions that were split because they had more than "
                               "{1} lines: {0}.",
                               {std::to_string(split), std::to_string(lineCount)})});
  return all;
}

} // namespace Formats
