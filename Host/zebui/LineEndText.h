#pragma once

#include <cstddef>
#include <string_view>

#include "zebcore/UString.h"

namespace zebui::controls {

using zebcore::UString;

// A text with the line ends that it was given, beside the text that is shown, which has one unit, kShownLineEnd, for
// each of them. Line ends are CR LF, CR, LF and the units that the toolkit takes for ends of a paragraph: U+2029,
// U+FDD0 and U+FDD1. What is put in comes with CR LF.
class LineEndText {
 public:
  static constexpr char16_t kShownLineEnd = u'\u2029';

  LineEndText() = default;
  explicit LineEndText(UString text) : mText(std::move(text)) {}

  const UString& Get() const { return mText; }
  UString GetShown() const;
  static bool IsLineEnd(char16_t unit);

  // Positions past the end count as the end; one between CR and LF is shown before the line end.
  std::size_t ToShown(std::size_t position) const;
  std::size_t FromShown(std::size_t shownPosition) const;

  // Takes shown units out and puts others in at their place. A CR and an LF that this brings together stay two line
  // ends: the CR becomes CR LF.
  void Replace(std::size_t shownPosition, std::size_t shownRemoved, std::u16string_view inserted);
  // After an edit on screen: takes over what is shown now. The place of the edit is a hint, which tells apart edits
  // that look alike; false if nothing changed.
  bool Follow(std::u16string_view shown, std::size_t hintPosition, std::size_t hintRemoved, std::size_t hintAdded);

  // Every line end as CR LF.
  static UString WithCRLF(std::u16string_view text);
  // Every line end as a blank, for a control of one line.
  static UString OnOneLine(std::u16string_view text);

 private:
  UString mText;
};

} // namespace zebui::controls
