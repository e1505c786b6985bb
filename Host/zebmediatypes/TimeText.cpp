#include <algorithm>
#include <array>
#include <vector>

#include "zebmediatypes/TimeDisplay.h"
#include "zebmediatypes/WideInteger.h"

// Times as text and back. Every display counts something (frames, samples, milliseconds) and writes the count in one to
// four fields.

namespace zebmediatypes {

namespace {

using zebcore::UString;

// Fields and what stands between them are numbered from the right.
struct Layout {
  std::int64_t ticksPerCount = 0;
  std::size_t fields = 1;
  std::array<std::int64_t, 3> radix{}; // of each field but the leftmost
  std::array<int, 4> digits{1, 1, 1, 1};
  std::array<char16_t, 3> separators{u':', u':', u':'};
  std::int64_t dropped = 0;         // numbers left out at each minute but every tenth
  bool rightmostIsFraction = false; // "59.5" is half a second
  bool plusSeparates = false;
};

constexpr int kSlowestAudioRate = 4000;
constexpr FrameRate kDefaultAudioRate{kTicksPerSecond / 48000};
constexpr int kFramesPerFoot35mm = 16;
constexpr int kFramesPerFoot16mm = 40;

Layout MillisecondLayout() {
  Layout layout;
  layout.ticksPerCount = kTicksPerSecond / 1000;
  layout.fields = 4;
  layout.radix = {1000, 60, 60};
  layout.digits = {3, 2, 2, 2};
  layout.separators = {u'.', u':', u':'};
  layout.rightmostIsFraction = true;
  return layout;
}

Layout TimecodeLayout(FrameRate rate, bool dropFrame) {
  Layout layout;
  layout.ticksPerCount = rate.GetTicksPerFrame();
  layout.fields = 4;
  const std::int64_t framesPerSecond =
      std::max<std::int64_t>(1, (kTicksPerSecond + layout.ticksPerCount / 2) / layout.ticksPerCount);
  layout.radix = {framesPerSecond, 60, 60};
  layout.digits = {2, 2, 2, 2};
  for (std::int64_t limit = 100; limit < framesPerSecond; limit *= 10)
    ++layout.digits[0];
  if (dropFrame) {
    layout.dropped = framesPerSecond / 15;
    layout.separators[0] = u';';
  }
  return layout;
}

Layout FeetLayout(FrameRate rate, int framesPerFoot) {
  Layout layout;
  layout.ticksPerCount = rate.GetTicksPerFrame();
  layout.fields = 2;
  layout.radix[0] = framesPerFoot;
  layout.digits[0] = 2;
  layout.separators[0] = u'+';
  layout.plusSeparates = true;
  return layout;
}

Layout CountLayout(FrameRate rate) {
  Layout layout;
  layout.ticksPerCount = rate.GetTicksPerFrame();
  return layout;
}

Layout LayoutOf(TimeDisplay display, FrameRate givenRate) {
  if (display == kTimeDisplay_Milliseconds)
    return MillisecondLayout();
  if (display == kTimeDisplay_AudioSamples) {
    const bool isAudio = givenRate.IsValid() && givenRate.GetTicksPerFrame() <= kTicksPerSecond / kSlowestAudioRate;
    return CountLayout(isAudio ? givenRate : kDefaultAudioRate);
  }
  const FrameRate rate = GetDisplayRate(display, givenRate);
  if (!rate.IsValid())
    return MillisecondLayout();
  if (display == kTimeDisplay_Frames)
    return CountLayout(rate);
  if (display == kTimeDisplay_FeetAndFrames35mm)
    return FeetLayout(rate, kFramesPerFoot35mm);
  if (display == kTimeDisplay_FeetAndFrames16mm)
    return FeetLayout(rate, kFramesPerFoot16mm);
  return TimecodeLayout(rate, IsDropFrame(display));
}

std::int64_t CountsPerMinute(const Layout& layout) {
  return layout.radix[0] * layout.radix[1];
}

// From a count to the number that is written for it.
Int128 NumberOfCount(const Layout& layout, Int128 count) {
  if (layout.dropped == 0)
    return count;
  const std::int64_t perMinute = CountsPerMinute(layout) - layout.dropped;
  const std::int64_t perTenMinutes = 10 * perMinute + layout.dropped;
  const Int128 tens = count / perTenMinutes;
  const Int128 rest = count % perTenMinutes;
  // The first of ten minutes drops nothing and so is longer.
  const Int128 minutes = rest < layout.dropped ? Int128{0} : (rest - layout.dropped) / perMinute;
  return count + layout.dropped * (9 * tens + minutes);
}

// The inverse; a number that is left out counts as the next one that is not.
Int128 CountOfNumber(const Layout& layout, Int128 number) {
  if (layout.dropped == 0)
    return number;
  const Int128 minutes = number / CountsPerMinute(layout);
  if (minutes % 10 != 0)
    number = std::max(number, minutes * CountsPerMinute(layout) + layout.dropped);
  return number - layout.dropped * (minutes - minutes / 10);
}

// Writes towards the left.
void PrependDigits(UString& reversed, Int128 value, int digits) {
  for (int written = 0; written < digits || value > 0; ++written, value /= 10)
    reversed.push_back(static_cast<char16_t>(u'0' + static_cast<int>(value % 10)));
}

bool IsBlank(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\x00a0' || c == u'\x202f';
}
bool IsDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

// What was typed: the runs of digits, and how many fields were left out before them.
struct Typed {
  bool isNegative = false;
  std::size_t leftOut = 0;
  std::vector<std::u16string_view> fields; // from the left
  char16_t lastSeparator = 0;
};

// One separator with blanks around it, or blanks alone; 0 if the text does not go on with one.
char16_t TakeSeparator(std::u16string_view& text, bool plusSeparates) {
  char16_t separator = 0;
  while (!text.empty()) {
    const char16_t c = text.front();
    const bool isMark = c == u':' || c == u';' || c == u'.' || c == u',' || (plusSeparates && c == u'+');
    if (isMark && (separator == 0 || separator == u' '))
      separator = c;
    else if (!isMark && IsBlank(c))
      separator = separator == 0 ? u' ' : separator;
    else
      break;
    text.remove_prefix(1);
  }
  return separator;
}

std::optional<Typed> Divide(std::u16string_view text, bool plusSeparates) {
  const auto trim = [&text] {
    while (!text.empty() && IsBlank(text.front()))
      text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
      text.remove_suffix(1);
  };
  Typed typed;
  trim();
  if (!text.empty() && (text.front() == u'-' || text.front() == u'\x2212')) {
    typed.isNegative = true;
    text.remove_prefix(1);
    trim();
  }
  while (const char16_t separator = TakeSeparator(text, plusSeparates)) {
    typed.lastSeparator = separator;
    ++typed.leftOut;
  }
  while (true) {
    const auto end = std::find_if_not(text.begin(), text.end(), IsDigit);
    const auto length = static_cast<std::size_t>(end - text.begin());
    if (length == 0)
      return std::nullopt;
    typed.fields.push_back(text.substr(0, length));
    text.remove_prefix(length);
    if (text.empty())
      return typed;
    typed.lastSeparator = TakeSeparator(text, plusSeparates);
    if (typed.lastSeparator == 0)
      return std::nullopt;
  }
}

// Digits in one run, cut into the fields of the layout from the right.
std::vector<std::u16string_view> Cut(std::u16string_view digits, const Layout& layout) {
  std::vector<std::u16string_view> fields;
  for (std::size_t i = 0; i + 1 < layout.fields && digits.size() > static_cast<std::size_t>(layout.digits[i]); ++i) {
    const std::size_t cut = digits.size() - static_cast<std::size_t>(layout.digits[i]);
    fields.insert(fields.begin(), digits.substr(cut));
    digits = digits.substr(0, cut);
  }
  fields.insert(fields.begin(), digits);
  return fields;
}

std::optional<Int128> ValueOf(std::u16string_view digits) {
  constexpr std::size_t kMostDigits = 18; // more is past every time, whatever is counted
  digits.remove_prefix(std::min(digits.find_first_not_of(u'0'), digits.size()));
  if (digits.size() > kMostDigits)
    return std::nullopt;
  Int128 value = 0;
  for (const char16_t c : digits)
    value = value * 10 + (c - u'0');
  return value;
}

std::optional<Int128> NumberOf(const Typed& typed, const Layout& layout) {
  Int128 number = 0;
  Int128 weight = 1;
  for (std::size_t i = 0; i < typed.fields.size(); ++i) {
    const std::u16string_view digits = typed.fields[typed.fields.size() - 1 - i];
    std::optional<Int128> value = ValueOf(digits);
    if (!value)
      return std::nullopt;
    const bool isFraction =
        layout.rightmostIsFraction && i == 0 && (typed.lastSeparator == u'.' || typed.lastSeparator == u',');
    if (isFraction) {
      if (digits.size() > static_cast<std::size_t>(layout.digits[0]))
        return std::nullopt;
      for (auto length = digits.size(); length < static_cast<std::size_t>(layout.digits[0]); ++length)
        *value *= 10;
    }
    const bool isFirst = i + 1 == typed.fields.size();
    if (!isFirst && *value >= layout.radix[i])
      return std::nullopt;
    number += *value * weight;
    if (!isFirst)
      weight *= layout.radix[i];
  }
  return number;
}

} // namespace

UString FormatTime(TickTime time, TimeDisplay display, FrameRate rate) {
  if (time == kTime_Invalid)
    return {};
  const Layout layout = LayoutOf(display, rate);
  const Int128 count = FloorDivide(time.GetTicks(), layout.ticksPerCount);
  Int128 number = NumberOfCount(layout, count < 0 ? -count : count);
  UString reversed;
  for (std::size_t i = 0; i + 1 < layout.fields; ++i) {
    PrependDigits(reversed, number % layout.radix[i], layout.digits[i]);
    reversed.push_back(layout.separators[i]);
    number /= layout.radix[i];
  }
  PrependDigits(reversed, number, layout.digits[layout.fields - 1]);
  if (count < 0)
    reversed.push_back(u'-');
  return UString(reversed.rbegin(), reversed.rend());
}

std::optional<TickTime> ParseTime(std::u16string_view text, TimeDisplay display, FrameRate rate) {
  const Layout layout = LayoutOf(display, rate);
  std::optional<Typed> typed = Divide(text, layout.plusSeparates);
  if (!typed || typed->leftOut + typed->fields.size() > layout.fields)
    return std::nullopt;
  if (typed->fields.size() == 1 && typed->leftOut == 0)
    typed->fields = Cut(typed->fields.front(), layout);
  const std::optional<Int128> number = NumberOf(*typed, layout);
  if (!number)
    return std::nullopt;
  const Int128 ticks = CountOfNumber(layout, *number) * layout.ticksPerCount;
  if (ticks > kTime_Max.GetTicks())
    return std::nullopt;
  return TickTime(static_cast<std::int64_t>(typed->isNegative ? -ticks : ticks));
}

} // namespace zebmediatypes
