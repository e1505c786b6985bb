#include "Captions/list/CaptionsItemList.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "Captions/pane/CaptionsTextEdit.h"

namespace Captivo {

CaptionsRowItem::CaptionsRowItem(boost::shared_ptr<CaptionsItem> item)
    : boost::shared_ptr<CaptionsItem>(std::move(item)), mCaption(*this ? (*this)->GetCaption().get() : nullptr) {}

CaptionsItemList::CaptionsItemList(CaptionsPane* pane) : mPane(pane) {}

CaptionsItemList::~CaptionsItemList() {
  Clear();
}

void CaptionsItemList::SetStreamSettings(StreamFormat format, int columns, int rows) {
  mStreamFormat = format;
  mColumns = columns;
  mRows = rows;
}

bool CaptionsItemList::FindItem(const TickTime& time, boost::shared_ptr<CaptionsItem>& out) const {
  const auto row = mItems.find(time);
  if (row == mItems.end())
    return false;
  out = row->item;
  return true;
}

bool CaptionsItemList::GetRowAtIndex(int index, boost::shared_ptr<CaptionsItem>& out) const {
  const auto position = static_cast<unsigned>(index);
  if (position >= mItems.size())
    return FindItem(kTime_Min, out);
  const CaptionsRow row = *mItems.nth(position);
  if (row.item->GetBeginTime() != row.time)
    return FindItem(row.item->GetBeginTime(), out);
  out = row.item;
  return true;
}

const TickTime& CaptionsItemList::GetTimeAtIndex(int index) const {
  const auto position = static_cast<unsigned>(index);
  return position < mItems.size() ? mItems.nth(position)->item->GetBeginTime() : kTime_Min;
}

const TickTime& CaptionsItemList::GetFirstTime() const {
  return mItems.empty() ? kTime_Min : mItems.begin()->item->GetBeginTime();
}

const TickTime& CaptionsItemList::GetLastTime() const {
  return mItems.empty() ? kTime_Min : mItems.rbegin()->item->GetBeginTime();
}

void CaptionsItemList::FindItemsAround(const TickTime& time, boost::shared_ptr<CaptionsItem>& at,
                                       boost::shared_ptr<CaptionsItem>& after) const {
  const auto row = mItems.lower_bound(time);
  if (row != mItems.end() && row->time == time) {
    at = row->item;
    return;
  }
  after = row == mItems.end() ? CaptionsRowItem() : row->item;
  at = row == mItems.begin() ? CaptionsRowItem() : std::prev(row)->item;
}

int CaptionsItemList::GetFirstSelectedIndex() const {
  if (mSelected.empty())
    return -1;
  const auto row = mItems.find(mSelected.begin()->time);
  return row == mItems.end() ? -1 : static_cast<int>(mItems.rank(row));
}

CaptionsItem* CaptionsItemList::GetOnlySelectedItem() const {
  return mSelected.size() == 1 ? mSelected.begin()->item.get() : nullptr;
}

CaptionsTextEdit* CaptionsItemList::GetOnlySelectedTextEdit() const {
  const CaptionsItem* item = GetOnlySelectedItem();
  return item ? item->GetTextEdit().get() : nullptr;
}

void CaptionsItemList::GetSelectedTextEdit(boost::intrusive_ptr<CaptionsTextEdit>& out) const {
  out = GetOnlySelectedTextEdit();
}

void CaptionsItemList::GetSelectedCaption(boost::intrusive_ptr<Caption>& out) const {
  const CaptionsItem* item = GetOnlySelectedItem();
  out = item ? item->GetCaption() : nullptr;
}

bool CaptionsItemList::HasFocusInText() const {
  const CaptionsTextEdit* textEdit = GetOnlySelectedTextEdit();
  return textEdit && textEdit->UI_HasKeyboardFocus(true);
}

bool CaptionsItemList::IsSelectedRowBeingEdited() const {
  const CaptionsItem* item = GetOnlySelectedItem();
  return item && item->HasFocus();
}

const TickTime& CaptionsItemList::GetTimeByOffset(int offset) const {
  if (mSelected.empty())
    return kTime_Min;
  const auto start = mItems.find(offset < 0 ? mSelected.begin()->time : mSelected.rbegin()->time);
  if (start == mItems.end())
    return kTime_Min;
  const auto last = static_cast<long long>(mItems.size()) - 1;
  const auto reached = static_cast<long long>(mItems.rank(start)) + offset;
  return mItems.nth(static_cast<std::size_t>(std::clamp(reached, 0LL, last)))->item->GetBeginTime();
}

void CaptionsItemList::GetNextSelectableTime(TickTime& next) const {
  next = kTime_Min;
  if (mSelected.empty())
    return;
  const auto first = mItems.find(mSelected.begin()->time);
  if (first == mItems.end())
    return;
  auto above = first;
  while (above != mItems.begin() && IsSelected(above->time))
    --above;
  if (!IsSelected(above->time)) {
    next = above->item->GetBeginTime();
    return;
  }
  // The candidate trails the walk by one step, so that the last row of the list is never reached: this is deliberate.
  auto candidate = first;
  auto walk = first;
  while (walk != mItems.end() && IsSelected(candidate->time))
    candidate = walk++;
  if (walk != mItems.end())
    next = candidate->item->GetBeginTime();
}

bool CaptionsItemList::SelectSingle(const TickTime& time) {
  const auto row = mItems.find(time);
  if (row == mItems.end())
    return false;
  const std::size_t formerCount = mSelected.size();
  const TickTime formerTime = formerCount == 1 ? mSelected.begin()->item->GetBeginTime() : kTime_Zero;
  const TickTime selected = row->time;
  const boost::shared_ptr<CaptionsItem> item = row->item;
  mAnchorTime = selected;
  mSelected.clear();
  mSelected.insert(selected, item);
  mTextSelection = kTextRange_Whole;
  RebuildSelectedTimes();
  return formerCount != 1 || formerTime != mAnchorTime;
}

bool CaptionsItemList::ToggleSelection(const TickTime& time) {
  const auto row = mItems.find(time);
  if (row == mItems.end())
    return false;
  bool changed = true;
  if (!IsSelected(row->time))
    mSelected.insert(row->time, row->item);
  else if (mSelected.size() > 1)
    mSelected.erase(row->time);
  else
    changed = false;
  RebuildSelectedTimes();
  return changed;
}

bool CaptionsItemList::ExtendSelection(const TickTime& time) {
  if (time == mAnchorTime || mItems.find(time) == mItems.end())
    return false;
  if (!IsSelected(mAnchorTime))
    return SelectSingle(time);
  const TickTime low = std::min(mAnchorTime, time);
  const TickTime high = std::max(mAnchorTime, time);
  mSelected.clear();
  for (auto row = mItems.find(low); row != mItems.end() && row->time <= high; ++row)
    mSelected.insert(row->time, row->item);
  RebuildSelectedTimes();
  return true;
}

void CaptionsItemList::SelectAll() {
  mSelected = mItems;
  RebuildSelectedTimes();
}

void CaptionsItemList::ClearSelection() {
  EmptySelection();
}

void CaptionsItemList::EmptySelection() {
  mSelected.clear();
  mSelectedTimes.clear();
}

bool CaptionsItemList::RestoreSelection(const std::vector<TickTime>& times) {
  bool complete = !times.empty();
  const TickTime fallback = mSelected.empty() ? kTime_Min : mSelected.begin()->time;
  mSelected.clear();
  for (const TickTime& time : times) {
    const auto row = mItems.find(time);
    if (row == mItems.end())
      complete = false;
    else
      mSelected.insert(row->time, row->item);
  }
  if (!mSelected.empty() || !SelectSingle(fallback))
    RebuildSelectedTimes();
  return complete;
}

const TextRange& CaptionsItemList::NormalizeTextSelection() {
  if (mSelected.empty())
    mTextSelection = kTextRange_Empty;
  else if (mSelected.size() > 1)
    mTextSelection = kTextRange_Whole;
  return mTextSelection;
}

bool CaptionsItemList::UpdateTextSelection() {
  const CaptionsTextEdit* textEdit = GetOnlySelectedTextEdit();
  if (!textEdit || !textEdit->UI_HasKeyboardFocus(false))
    return false;
  TextRange range;
  GetOnlySelectedItem()->GetTextSelection(range);
  if (range == mTextSelection)
    return false;
  mTextSelection = range;
  return true;
}

void CaptionsItemList::RestoreTextSelection(const TextRange& range) {
  CaptionsTextEdit* textEdit = GetOnlySelectedTextEdit();
  if (!textEdit)
    return;
  if (!textEdit->UI_HasKeyboardFocus(false))
    textEdit->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Program);
  if (CaptionsItem* item = GetOnlySelectedItem())
    item->SetTextSelection(range);
}

void CaptionsItemList::SetStoredTextOfSelection(const UString& text) {
  if (CaptionsItem* item = GetOnlySelectedItem())
    item->SetStoredText(text);
}

// Each pointer on the way to a caption's format is asked for some captions before it is followed: with thousands of
// captions, waiting for memory one by one is most of the work.
void CaptionsItemList::GatherSelectionFormat(boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo>& info) const {
  // Of several captions the whole is meant, though a caret may have stood in one of them before.
  const TextRange range = mSelected.size() > 1 ? kTextRange_Whole : mTextSelection;
  constexpr std::size_t kAhead = 16;
  std::array<const Caption*, 4 * kAhead> captions{};
  const auto at = [&](std::size_t index) { return captions[index % captions.size()]; };
  const std::size_t count = mSelected.size();
  auto row = mSelected.begin();
  for (std::size_t i = 0; i < count + 3 * kAhead; ++i) {
    if (i < count) {
      captions[i % captions.size()] = row->item.GetCaption();
      __builtin_prefetch(at(i));
      ++row;
    }
    if (i >= kAhead && i - kAhead < count)
      at(i - kAhead)->GetState()->Prefetch();
    if (i >= 2 * kAhead && i - 2 * kAhead < count)
      __builtin_prefetch(at(i - 2 * kAhead)->GetState()->runs.data());
    if (i >= 3 * kAhead)
      at(i - 3 * kAhead)->GetFormatInfo(info, range, mColumns, mRows, i == 3 * kAhead);
  }
}

void CaptionsItemList::RebuildSelectedTimes() {
  mSelectedTimes.clear();
  for (const CaptionsRow& row : mSelected)
    mSelectedTimes.push_back(row.time);
}

} // namespace Captivo
