#include <iterator>

#include <boost/make_shared.hpp>

#include "Captions/list/CaptionsItemList.h"

// Rows are taken off the list before they are let go: a row that goes takes its controls along, and a control that
// loses the focus can call back into the list.
namespace Captivo {

namespace {

void File(CaptionsRowMap& rows, const TickTime& time, CaptionsRowItem item) {
  const auto [row, inserted] = rows.insert(time, item);
  if (!inserted)
    row->item.swap(item);
}

} // namespace

void CaptionsItemList::FileRow(const TickTime& time, const boost::shared_ptr<CaptionsItem>& item) {
  // A selected row that is replaced stays selected, as the new one.
  if (IsSelected(time))
    File(mSelected, time, item);
  File(mItems, time, item);
}

void CaptionsItemList::Clear() {
  CaptionsRowMap items;
  CaptionsRowMap selected;
  items.swap(mItems);
  selected.swap(mSelected);
  mSelectedTimes.clear();
  mTextSelection = kTextRange_Empty;
}

void CaptionsItemList::AddRow(const boost::intrusive_ptr<Caption>& caption) {
  const auto item = boost::make_shared<CaptionsItem>(mPane, caption);
  FileRow(item->GetBeginTime(), item);
}

bool CaptionsItemList::AddOrUpdateCaption(const boost::intrusive_ptr<Caption>& caption) {
  boost::shared_ptr<CaptionsItem> item;
  if (!FindItem(caption->GetBeginTime(), item)) {
    AddRow(caption);
    return true;
  }
  // The row keeps its own caption; the argument only finds the row.
  if (item->GetCaption()->GetBeginTime() == caption->GetBeginTime())
    item->SyncFromCaption();
  return false;
}

bool CaptionsItemList::RemoveRowAt(const TickTime& time) {
  const auto row = mItems.find(time);
  if (row == mItems.end())
    return false;
  const boost::shared_ptr<CaptionsItem> removed = row->item;
  mSelected.erase(row->time);
  const TickTime next = mSelected.empty() ? GetNeighbourTime(row) : kTime_Min;
  mItems.erase(row);
  if (next != kTime_Min)
    SelectSingle(next);
  RebuildSelectedTimes();
  return true;
}

TickTime CaptionsItemList::GetNeighbourTime(CaptionsRowMap::const_iterator row) const {
  if (mItems.size() < 2)
    return kTime_Min;
  const auto below = std::next(row);
  return below != mItems.end() ? below->time : std::prev(row)->time;
}

void CaptionsItemList::RemoveSelectedRows(std::vector<TickTime>& removed) {
  if (mSelected.empty())
    return;
  TickTime next;
  GetNextSelectableTime(next);
  const CaptionsRowMap gone = mSelected;
  for (const CaptionsRow& row : gone) {
    removed.push_back(row.time);
    mItems.erase(row.time);
  }
  if (mItems.find(next) != mItems.end())
    SelectSingle(next);
  else
    EmptySelection();
}

bool CaptionsItemList::InsertCaptionAfterSelection(const TickTime& duration) {
  TickTime begin = kTime_Zero;
  TickTime limit = kTime_Max;
  boost::intrusive_ptr<Caption> pattern;
  if (!mItems.empty()) {
    const CaptionsRow& last = mSelected.empty() ? *mItems.rbegin() : *mSelected.rbegin();
    pattern = last.item->GetCaption();
    begin = last.item->GetEndTime();
    const auto following = mItems.upper_bound(last.time);
    if (following != mItems.end())
      limit = following->time;
  }
  TickTime end = begin + duration;
  if (limit < end) {
    // Deliberately nothing but an empty gap refuses, not even captions that overlap already.
    if (begin == limit)
      return false;
    end = limit;
  }
  EmptySelection();
  if (!pattern)
    pattern.reset(new Caption);
  const boost::intrusive_ptr<Caption> caption(new Caption(begin, end, pattern, mStreamFormat, mColumns, mRows));
  AddRow(caption);
  SelectSingle(caption->GetBeginTime());
  return true;
}

bool CaptionsItemList::MoveRow(const TickTime& oldBegin, const TickTime& newBegin, TickTime& duration,
                               bool& reordered) {
  boost::shared_ptr<CaptionsItem> moved;
  if (!FindItem(oldBegin, moved))
    return false;
  reordered = false;
  boost::shared_ptr<CaptionsItem> at;
  boost::shared_ptr<CaptionsItem> after;
  FindItemsAround(newBegin, at, after);
  const bool isLegal = !at || at->GetBeginTime() == oldBegin || at->GetEndTime() <= newBegin;
  if (isLegal) {
    if (after && after->GetBeginTime() != oldBegin && after->GetBeginTime() <= newBegin + duration)
      duration = after->GetBeginTime() - newBegin;
    if (ReKeyRow(oldBegin, newBegin, duration, reordered))
      return true;
  }
  moved->ResetTimeControls();
  return false;
}

bool CaptionsItemList::ReKeyRow(const TickTime& oldBegin, const TickTime& newBegin, const TickTime& duration,
                                bool& reordered) {
  reordered = false;
  const auto row = mItems.find(oldBegin);
  if (row == mItems.end())
    return false;
  const boost::shared_ptr<CaptionsItem> item = row->item;
  if (oldBegin == newBegin) {
    item->SetTimes(newBegin, newBegin + duration);
  } else {
    const TickTime before = GetTimeBefore(row);
    const bool wasSelected = mSelected.erase(row->time) != 0;
    mItems.erase(row);
    item->SetTimes(newBegin, newBegin + duration);
    FileRow(item->GetBeginTime(), item);
    if (wasSelected)
      File(mSelected, item->GetBeginTime(), item);
    reordered = GetTimeBefore(mItems.find(item->GetBeginTime())) != before;
  }
  RebuildSelectedTimes();
  return true;
}

TickTime CaptionsItemList::GetTimeBefore(CaptionsRowMap::const_iterator row) const {
  return row == mItems.begin() ? kTime_Min : std::prev(row)->time;
}

void CaptionsItemList::AdjustRows(const TickTime& rangeBegin, const TickTime& rangeEnd, const TickTime& delta) {
  const TickTime low = rangeBegin == kTime_Min ? kTime_Min : rangeBegin + delta;
  const TickTime high = rangeEnd == kTime_Max ? kTime_Max : rangeEnd + delta;
  CaptionsRowMap adjusted;
  for (const CaptionsRow& row : mSelected) {
    if (row.time >= low && row.time <= high)
      row.item->SyncFromCaption();
    File(adjusted, row.item->GetBeginTime(), row.item);
  }
  mSelected.swap(adjusted);
  RebuildSelectedTimes();
}

void CaptionsItemList::RefreshTimeDisplays() {
  for (const CaptionsRow& row : mItems) {
    if (row.item->HasControls())
      row.item->UpdateTimeDisplay();
  }
}

} // namespace Captivo
