#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zebcore/UString.h"

// Small things that every reader and writer of text needs.
namespace Formats {

// The text that a person reads: a localised pattern with {0}, {1} ... replaced. UTF-8.
std::string Say(std::string_view keyWithDefault, const std::vector<std::string>& values = {});

// For messages: what a file said, shortened to a length that a list can show.
std::string Quote(std::u16string_view text);

bool IsSpace(char16_t c); // space, tab, form feed
bool IsDigit(char16_t c);
bool IsBlank(std::u16string_view line); // nothing but white space
std::u16string_view Trim(std::u16string_view text);
zebcore::UString LowerASCII(std::u16string_view text);
bool AllDigits(std::u16string_view text); // and not empty
// ASCII only; other characters become question marks.
std::string NarrowASCII(std::u16string_view text);
// Decimal digits with an optional sign and fraction; nothing for anything else.
std::optional<double> ParseNumber(std::u16string_view text);

// The bytes hold zeros and are no UTF-16: no text, whatever the name says. Looks at the beginning only.
bool IsBinary(std::string_view bytes);

// The lines of a text, which must outlive this. Ended by CR LF, LF or CR; a last line without an end counts, the empty
// one after a last line end does not.
class Lines {
 public:
  explicit Lines(std::u16string_view text);
  std::size_t Count() const { return mStarts.size(); }
  std::u16string_view operator[](std::size_t line) const;
  // Of the line's first character.
  std::size_t Offset(std::size_t line) const { return mStarts[line].first; }

 private:
  std::u16string_view mText;
  std::vector<std::pair<std::size_t, std::size_t>> mStarts; // begin, end
};

// A character reference at the start of text ("&amp;", "&#233;"), with how many units it takes; length 0 for none.
struct Entity {
  zebcore::UString text;
  std::size_t length = 0;
};
Entity ParseEntity(std::u16string_view text);

} // namespace Formats
