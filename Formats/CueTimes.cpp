#include "Formats/CueTimes.h"

#include <algorithm>

#include "Formats/CueBuilder.h"
#include "Formats/Text.h"

namespace Formats {

using zebmediatypes::TickTime;

namespace {

constexpr std::u16string_view kArrow = u"-->";
// Longer than any time that ticks can count.
constexpr std::int64_t kMaxHours = 9999;

struct ParsedTime {
  TickTime time;
  std::size_t length = 0; // 0: no time
  bool isTooLate = false;
};

struct Digits {
  std::int64_t value = 0;
  std::size_t count = 0;
};

Digits TakeDigits(std::u16string_view text) {
  Digits digits;
  while (digits.count < text.size() && IsDigit(text[digits.count])) {
    digits.value = std::min<std::int64_t>(digits.value * 10 + (text[digits.count] - u'0'), 1000000000000);
    ++digits.count;
  }
  return digits;
}

ParsedTime ParseTime(std::u16string_view text, bool isStrict) {
  Digits fields[3];
  std::size_t count = 0;
  std::size_t at = 0;
  for (;;) {
    fields[count] = TakeDigits(text.substr(at));
    if (fields[count].count == 0)
      return {};
    at += fields[count++].count;
    if (count == 3 || at >= text.size() || text[at] != u':')
      break;
    ++at;
  }
  if (count < 2)
    return {};
  const Digits hours = count == 3 ? fields[0] : Digits{0, 2};
  const Digits minutes = fields[count - 2];
  const Digits seconds = fields[count - 1];
  if (minutes.value > 59 || seconds.value > 59 || minutes.count > 2 || seconds.count > 2)
    return {};
  if (isStrict && (hours.count < 2 || minutes.count != 2 || seconds.count != 2))
    return {};
  std::int64_t fraction = 0;
  if (at < text.size() && (text[at] == u'.' || text[at] == u',')) {
    const Digits digits = TakeDigits(text.substr(at + 1));
    if (digits.count == 0 || digits.count > 9 || (isStrict && digits.count != 3))
      return {};
    at += 1 + digits.count;
    std::int64_t scale = 1;
    for (std::size_t i = 0; i < digits.count; ++i)
      scale *= 10;
    fraction = zebmediatypes::TickTimeFromRational(digits.value, 1, scale).GetTicks();
  } else if (isStrict) {
    return {};
  }
  ParsedTime parsed;
  parsed.length = at;
  parsed.isTooLate = hours.value > kMaxHours;
  if (!parsed.isTooLate) {
    const std::int64_t whole = (hours.value * 60 + minutes.value) * 60 + seconds.value;
    parsed.time = TickTime(whole * zebmediatypes::kTicksPerSecond + fraction);
  }
  return parsed;
}

std::u16string_view SkipSpaces(std::u16string_view text) {
  while (!text.empty() && IsSpace(text.front()))
    text.remove_prefix(1);
  return text;
}

CueTimes Fail(const char* keyWithDefault, std::u16string_view line) {
  CueTimes times;
  times.error = Say(keyWithDefault, {Quote(line)});
  return times;
}

CueTimes Parse(std::u16string_view line, bool isStrict) {
  std::u16string_view rest = SkipSpaces(line);
  const auto fail = [&] {
    return Fail("$$$/Vidra/Formats/BadTimes=The caption is left out: its times, \"{0}\", cannot be read.", line);
  };
  const ParsedTime begin = ParseTime(rest, isStrict);
  if (begin.length == 0)
    return fail();
  rest = SkipSpaces(rest.substr(begin.length));
  if (!rest.starts_with(kArrow))
    return fail();
  rest = SkipSpaces(rest.substr(kArrow.size()));
  const ParsedTime end = ParseTime(rest, isStrict);
  rest = rest.substr(end.length);
  if (end.length == 0 || (!rest.empty() && !IsSpace(rest.front())))
    return fail();
  if (begin.isTooLate || end.isTooLate)
    return Fail("$$$/Vidra/Formats/TooLate=The caption is left out: its times, \"{0}\", are later than any clip.",
                line);
  if (end.time <= begin.time)
    return Fail("$$$/Vidra/Formats/EndBeforeBegin=The caption is left out: it ends before it begins (\"{0}\").", line);
  CueTimes times;
  times.begin = begin.time;
  times.end = end.time;
  times.rest = Trim(rest);
  return times;
}

} // namespace

bool LooksLikeTimes(std::u16string_view line) {
  const std::u16string_view text = SkipSpaces(line);
  const std::size_t arrow = text.find(kArrow);
  if (arrow == std::u16string_view::npos || arrow > 40)
    return false;
  // "00:00:0x,000 -->", "-00:00:01,000 -->" and "1 -->" too, but not a sentence with an arrow in it.
  const std::u16string_view before = Trim(text.substr(0, arrow));
  const bool hasBlank = before.find_first_of(u" \t") != std::u16string_view::npos;
  const bool startsAsTime = !before.empty() && (IsDigit(before.front()) ||
                                                (before.front() == u'-' && before.size() > 1 && IsDigit(before[1])));
  const std::u16string_view after = SkipSpaces(text.substr(arrow + kArrow.size()));
  const bool goesOnAsTime = !after.empty() && IsDigit(after.front());
  const bool hasColon = before.find(u':') != std::u16string_view::npos;
  return (startsAsTime && (hasColon || goesOnAsTime || !hasBlank)) || (goesOnAsTime && !hasBlank);
}

CueTimes ParseLooseTimes(std::u16string_view line) {
  return Parse(line, false);
}
CueTimes ParseStrictTimes(std::u16string_view line) {
  return Parse(line, true);
}

} // namespace Formats
