#include "Captions/list/LineEnds.h"

#include <algorithm>

namespace Captivo::LineEnds {

namespace {

constexpr char16_t kCarriageReturn = 13;
constexpr char16_t kLineFeed = 10;

bool IsPairAt(const UString& text, std::size_t position, std::size_t bound) {
  return position + 1 < bound && text[position] == kCarriageReturn && text[position + 1] == kLineFeed;
}

// Up to and including the position, as far as there is text.
std::size_t BoundAfter(std::size_t position, const UString& text) {
  return position < text.size() ? position + 1 : text.size();
}

} // namespace

void Normalize(UString& text) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!IsPairAt(text, i, text.size()))
      text[kept++] = text[i];
  }
  text.resize(kept);
}

TextRange ToStoredRange(const UString& controlText, const TextRange& controlRange) {
  TextRange stored = controlRange;
  const std::size_t bound = BoundAfter(controlRange.first, controlText);
  for (std::size_t i = 0; i < bound; ++i) {
    if (IsPairAt(controlText, i, bound)) {
      --stored.first;
      --stored.second;
      ++i;
    }
  }
  return stored;
}

TextRange ToControlRange(const UString& controlText, const TextRange& storedRange) {
  TextRange control = storedRange;
  std::size_t bound = BoundAfter(control.first, controlText);
  for (std::size_t i = 0; i < bound; ++i) {
    if (IsPairAt(controlText, i, bound)) {
      ++control.first;
      ++control.second;
      bound = BoundAfter(control.first, controlText);
      ++i;
    }
  }
  return control;
}

} // namespace Captivo::LineEnds
