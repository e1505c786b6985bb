#include "Captions/contracts/TextSpanAttributes.h"

#include <array>
#include <cmath>
#include <functional>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace zebcaptioning {

using zebcore::UString;

const UString TextSpanAttributes::kFontStyleString_Regular = u"Regular";
const UString TextSpanAttributes::kFontStyleString_Italic = u"Italic";
const UString TextSpanAttributes::kFontStyleString_Bold = u"Bold";
const UString TextSpanAttributes::kFontStyleString_BoldItalic = u"Bold Italic";

namespace {

std::size_t HashOf(const TextSpanAttributes& span) {
  std::size_t hash = std::hash<UString>()(span.family);
  const auto mix = [&hash](std::size_t value) {
    hash = (hash ^ value) * 0x9E3779B97F4A7C15ULL;
    hash ^= hash >> 29;
  };
  const std::hash<float> number;
  mix(number(span.size));
  mix(std::size_t{span.bold} | std::size_t{span.italic} << 1 | std::size_t{span.underline} << 2);
  for (const CaptioningColor* color : {&span.textColor, &span.backgroundColor, &span.edgeColor}) {
    mix(number(color->red));
    mix(number(color->green));
    mix(number(color->blue));
    mix(number(color->alpha));
  }
  mix(number(span.edgeWidth));
  return hash;
}

// Readers share spans on workers while the panel does on the UI thread.
struct Interned {
  std::mutex mutex;
  std::unordered_multimap<std::size_t, std::weak_ptr<const TextSpanAttributes>> spans;
};

// Never destroyed: the last spans may go after every static object.
Interned& Table() {
  static Interned* table = new Interned;
  return *table;
}

// Takes the dead span out of the table. A new span with the same hash may stand there by now, and stays.
void Forget(std::size_t hash) {
  Interned& table = Table();
  const std::lock_guard lock(table.mutex);
  auto [entry, end] = table.spans.equal_range(hash);
  while (entry != end)
    entry = entry->second.expired() ? table.spans.erase(entry) : std::next(entry);
}

std::array<float*, 14> NumbersOf(TextSpanAttributes& span) {
  CaptioningColor& text = span.textColor;
  CaptioningColor& back = span.backgroundColor;
  CaptioningColor& edge = span.edgeColor;
  return {&span.size,  &span.edgeWidth, &text.red,   &text.green, &text.blue,  &text.alpha, &back.red,
          &back.green, &back.blue,      &back.alpha, &edge.red,   &edge.green, &edge.blue,  &edge.alpha};
}

bool IsFinite(const CaptioningColor& color) {
  return std::isfinite(color.red) && std::isfinite(color.green) && std::isfinite(color.blue) &&
         std::isfinite(color.alpha);
}

bool IsFinite(const TextSpanAttributes& span) {
  return std::isfinite(span.size) && std::isfinite(span.edgeWidth) && IsFinite(span.textColor) &&
         IsFinite(span.backgroundColor) && IsFinite(span.edgeColor);
}

// What is no number equals nothing, itself neither, and what has no end cannot be drawn: both read as if not said.
TextSpanAttributes MakeFinite(TextSpanAttributes span) {
  TextSpanAttributes usual;
  const std::array<float*, 14> numbers = NumbersOf(span);
  const std::array<float*, 14> usualNumbers = NumbersOf(usual);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (!std::isfinite(*numbers[i]))
      *numbers[i] = *usualNumbers[i];
  }
  return span;
}

} // namespace

SharedSpan Share(const TextSpanAttributes& attributes) {
  if (!IsFinite(attributes))
    return Share(MakeFinite(attributes));
  const std::size_t hash = HashOf(attributes);
  Interned& table = Table();
  // What may turn out to be a last reference is let go when the table is open again.
  SharedSpan made;
  std::vector<SharedSpan> others;
  const std::lock_guard lock(table.mutex);
  const auto [first, last] = table.spans.equal_range(hash);
  for (auto entry = first; entry != last; ++entry) {
    SharedSpan span = entry->second.lock();
    if (span && *span == attributes)
      return span;
    if (span)
      others.push_back(std::move(span));
  }
  made.reset(new TextSpanAttributes(attributes), [hash](const TextSpanAttributes* span) {
    delete span;
    Forget(hash);
  });
  table.spans.emplace(hash, made);
  return made;
}

} // namespace zebcaptioning
