#include "zebcaptioning/LineEnds.h"

#include <string_view>

#include "zebcaptioning/Spans.h"

namespace zebcaptioning {

using zebcore::UString;

namespace {

constexpr std::u16string_view kPair = u"\r\n";

// What counts as one at index: a pair, or a unit.
std::size_t StepAt(const UString& text, std::size_t index) {
  return text.compare(index, kPair.size(), kPair) == 0 ? kPair.size() : 1;
}

bool IsLineEnd(const UString& text, std::size_t index) {
  return text[index] == u'\n' || StepAt(text, index) > 1;
}

std::size_t ToTextUnit(const UString& text, std::size_t place) {
  std::size_t index = 0;
  for (; place > 0 && index < text.size(); --place)
    index += StepAt(text, index);
  return index + place;
}

} // namespace

TextRange ToTextUnits(const UString& text, const TextRange& range) {
  if (text.find(kPair) == UString::npos)
    return range;
  const auto convert = [&text](std::size_t place) { return place == kTextRange_End ? place : ToTextUnit(text, place); };
  return {convert(range.first), convert(range.second)};
}

CaptionStatePtr TakeLineEnds(const CaptionStatePtr& state, const UString& text) {
  if (state->text == text)
    return state;
  const boost::intrusive_ptr<CaptionState> next(new CaptionState(*state));
  next->text = text;
  auto run = next->runs.begin();
  std::size_t from = 0;
  std::size_t to = 0;
  while (from < state->text.size() && to < text.size()) {
    const bool isEnd = IsLineEnd(state->text, from);
    if (isEnd != IsLineEnd(text, to) || (!isEnd && state->text[from] != text[to]))
      return state;
    const std::size_t fromBehind = from + StepAt(state->text, from);
    const std::size_t toBehind = to + StepAt(text, to);
    // What began inside a pair begins behind it.
    const auto convert = [&](std::uint32_t place) { return static_cast<std::uint32_t>(place == from ? to : toBehind); };
    for (; run != next->runs.end() && run->start < fromBehind; ++run)
      run->start = convert(run->start);
    if (state->typingAt >= from && state->typingAt < fromBehind)
      next->typingAt = convert(state->typingAt);
    from = fromBehind;
    to = toBehind;
  }
  if (from < state->text.size() || to < text.size())
    return state;
  if (state->typingAt >= from)
    next->typingAt = static_cast<std::uint32_t>(to);
  NormaliseRuns(*next);
  return next;
}

} // namespace zebcaptioning
