#pragma once

#include <optional>
#include <string_view>

namespace zebui::controls {

// What a person typed into a number field: a number, or sums with + - * / and brackets, point or comma before the
// decimals, blanks anywhere between, a percent sign behind. It goes out from the current value when it begins with
// + * or /, or with += -= *= /=; a lone minus in front is a negative number. Nothing for a text that is no number, that
// leads to none, or that goes out from a value that is not known.
std::optional<double> ReadNumberEntry(std::u16string_view text, std::optional<double> current);

} // namespace zebui::controls
