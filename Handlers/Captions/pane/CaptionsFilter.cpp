#include "Captions/pane/CaptionsFilter.h"

#include <algorithm>

namespace Captivo {

namespace {

char16_t FoldASCII(char16_t unit) {
  constexpr int kCapitalToSmall = 32;
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + kCapitalToSmall) : unit;
}

} // namespace

bool ContainsFolded(const UString& text, const UString& part) {
  const auto isSame = [](char16_t a, char16_t b) { return FoldASCII(a) == FoldASCII(b); };
  return part.empty() || std::search(text.begin(), text.end(), part.begin(), part.end(), isSame) != text.end();
}

} // namespace Captivo
