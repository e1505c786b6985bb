#include "zebui/LineEndText.h"

#include <algorithm>

namespace zebui::controls {

namespace {

bool IsPair(std::u16string_view text, std::size_t position) {
  return text[position] == u'\r' && position + 1 < text.size() && text[position + 1] == u'\n';
}

} // namespace

bool LineEndText::IsLineEnd(char16_t unit) {
  return unit == u'\r' || unit == u'\n' || unit == u'\u2029' || unit == u'\uFDD0' || unit == u'\uFDD1';
}

UString LineEndText::GetShown() const {
  UString shown;
  shown.reserve(mText.size());
  for (std::size_t i = 0; i < mText.size(); ++i) {
    shown.push_back(IsLineEnd(mText[i]) ? kShownLineEnd : mText[i]);
    if (IsPair(mText, i))
      ++i;
  }
  return shown;
}

std::size_t LineEndText::ToShown(std::size_t position) const {
  std::size_t shown = 0;
  for (std::size_t i = 0; i < std::min(position, mText.size()); ++shown) {
    const std::size_t next = i + (IsPair(mText, i) ? 2 : 1);
    if (next > position)
      break;
    i = next;
  }
  return shown;
}

std::size_t LineEndText::FromShown(std::size_t shownPosition) const {
  std::size_t i = 0;
  for (std::size_t shown = 0; shown < shownPosition && i < mText.size(); ++shown)
    i += IsPair(mText, i) ? 2 : 1;
  return i;
}

void LineEndText::Replace(std::size_t shownPosition, std::size_t shownRemoved, std::u16string_view inserted) {
  const std::size_t begin = FromShown(shownPosition);
  const std::size_t end = FromShown(shownPosition + shownRemoved);
  const UString replacement = WithCRLF(inserted);
  mText.replace(begin, end - begin, replacement);
  const bool joined = replacement.empty() && begin > 0 && IsPair(mText, begin - 1);
  if (joined)
    mText.insert(begin, 1, u'\n');
}

bool LineEndText::Follow(std::u16string_view shown, std::size_t hintPosition, std::size_t hintRemoved,
                         std::size_t hintAdded) {
  const UString old = GetShown();
  if (old == shown)
    return false;

  // The hint may count the end of the document; it is good if the rest of both texts is the same.
  const std::size_t position = std::min({hintPosition, old.size(), shown.size()});
  const std::size_t removed = std::min(hintRemoved, old.size() - position);
  const std::size_t added = std::min(hintAdded, shown.size() - position);
  const std::u16string_view oldView = old;
  const bool hintIsGood = oldView.substr(0, position) == shown.substr(0, position) &&
                          oldView.substr(position + removed) == shown.substr(position + added);
  std::size_t from = 0;
  std::size_t oldEnd = old.size();
  std::size_t newEnd = shown.size();
  if (hintIsGood) {
    from = position;
    oldEnd = position + removed;
    newEnd = position + added;
  }
  // Without what is the same at both ends, so that line ends there stay as they are.
  while (from < oldEnd && from < newEnd && old[from] == shown[from])
    ++from;
  while (oldEnd > from && newEnd > from && old[oldEnd - 1] == shown[newEnd - 1]) {
    --oldEnd;
    --newEnd;
  }
  Replace(from, oldEnd - from, shown.substr(from, newEnd - from));
  return true;
}

UString LineEndText::WithCRLF(std::u16string_view text) {
  UString result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!IsLineEnd(text[i])) {
      result.push_back(text[i]);
      continue;
    }
    result += u"\r\n";
    if (IsPair(text, i))
      ++i;
  }
  return result;
}

UString LineEndText::OnOneLine(std::u16string_view text) {
  UString result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    result.push_back(IsLineEnd(text[i]) ? u' ' : text[i]);
    if (IsPair(text, i))
      ++i;
  }
  return result;
}

} // namespace zebui::controls
