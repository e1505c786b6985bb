#include "Formats/CueTimes.h"

#include <algorithm>
#include <cstdio>

#include "Formats/CueBuilder.h"
#include "Formats/Text.h"
#include "zebmediatypes/TimeDisplay.h"

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

// The frame that a count names; nothing if there is none such in a second, or no rate to count by.
std::optional<TickTime> FindFrame(std::u16string_view text, const Digits& frame, const FrameCount& count,
                                  bool dropFrame) {
  if (!count.rate.IsValid() || count.rate.GetTicksPerFrame() <= 0)
    return std::nullopt;
  const std::int64_t length = count.rate.GetTicksPerFrame();
  if (frame.value >= (zebmediatypes::kTicksPerSecond + length / 2) / length)
    return std::nullopt;
  const zebmediatypes::TimeDisplay display = zebmediatypes::GetTimecodeDisplay(count.rate, dropFrame);
  return zebmediatypes::ParseTime(text, display, count.rate);
}

// With frames also counts of frames are understood, and times that are strict are not.
ParsedTime ParseTime(std::u16string_view text, bool isStrict, const FrameCount* frames) {
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
  const bool hasFraction = at < text.size() && (text[at] == u'.' || text[at] == u',');
  if (hasFraction) {
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
  if (frames != nullptr && count == 3 && !hasFraction && at + 1 < text.size() &&
      (text[at] == u':' || text[at] == u';')) {
    const Digits frame = TakeDigits(text.substr(at + 1));
    if (frame.count == 0 || frame.count > 3)
      return {};
    parsed.length = at + 1 + frame.count;
    if (parsed.isTooLate)
      return parsed;
    const auto time = FindFrame(text.substr(0, parsed.length), frame, *frames, frames->dropFrame || text[at] == u';');
    if (!time)
      return {};
    parsed.time = *time;
    return parsed;
  }
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

CueTimes Parse(std::u16string_view line, bool isStrict, const FrameCount* frames) {
  std::u16string_view rest = SkipSpaces(line);
  const auto fail = [&] {
    return Fail("$$$/Vidra/Formats/BadTimes=The caption is left out: its times, \"{0}\", cannot be read.", line);
  };
  const ParsedTime begin = ParseTime(rest, isStrict, frames);
  if (begin.length == 0)
    return fail();
  rest = SkipSpaces(rest.substr(begin.length));
  if (!rest.starts_with(kArrow))
    return fail();
  rest = SkipSpaces(rest.substr(kArrow.size()));
  const ParsedTime end = ParseTime(rest, isStrict, frames);
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

std::string PrintCueTime(std::int64_t milliseconds, char decimalMark) {
  char text[48];
  const auto seconds = static_cast<long long>(milliseconds / 1000);
  std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld%c%03d", seconds / 3600, seconds / 60 % 60, seconds % 60,
                decimalMark, static_cast<int>(milliseconds % 1000));
  return text;
}
std::string PrintCueTime(TickTime time) {
  return PrintCueTime(std::max<std::int64_t>(ToMilliseconds(time), 0), '.');
}

CueTimes ParseLooseTimes(std::u16string_view line, const FrameCount& frames) {
  return Parse(line, false, &frames);
}
CueTimes ParseStrictTimes(std::u16string_view line) {
  return Parse(line, true, nullptr);
}

} // namespace Formats
