#include "CaptionsModel.h"

#include <algorithm>

namespace Tests {

namespace {

constexpr Time kNewLength = 254016000000;
constexpr Time kNoTime = INT64_MAX;

} // namespace

void CaptionsModel::Open(const std::vector<ModelCaption>& captions) {
  for (ModelCaption caption : captions) {
    caption.age = ++mLastAge;
    mStream[caption.age] = caption;
  }
  mCommitted = mStream;
  mUndo.push_back({});
  Reload();
}

std::vector<ModelCaption> CaptionsModel::GetStream() const {
  std::vector<ModelCaption> captions;
  for (const auto& [age, caption] : mStream)
    captions.push_back(caption);
  std::stable_sort(captions.begin(), captions.end(),
                   [](const ModelCaption& a, const ModelCaption& b) { return a.begin < b.begin; });
  return captions;
}

bool CaptionsModel::MeansOtherCaptions() const {
  return std::any_of(mRows.begin(), mRows.end(), [&](const auto& row) {
    const ModelCaption* newest = FindNewest(mStream, row.first);
    return !newest || newest->age != row.second.caption;
  });
}

const ModelCaption* CaptionsModel::FindNewest(const Stream& stream, Time begin) const {
  const ModelCaption* newest = nullptr;
  for (const auto& [age, caption] : stream) {
    if (caption.begin == begin)
      newest = &caption;
  }
  return newest;
}

void CaptionsModel::Become(const Stream& next) {
  const Stream before = mStream;
  std::set<Time> touched;
  for (const auto& [age, caption] : before) {
    const auto now = next.find(age);
    if (now == next.end() || !(now->second == caption))
      touched.insert(caption.begin);
  }
  for (const auto& [age, caption] : next) {
    const auto then = before.find(age);
    if (then == before.end() || !(then->second == caption))
      touched.insert(caption.begin);
  }
  mStream = next;
  Hear(before, touched);
}

// Added first, then removed, then changed; a begin at which another caption is now the newest is both of the latter.
void CaptionsModel::Hear(const Stream& before, const std::set<Time>& touched) {
  std::vector<ModelCaption> added;
  std::vector<Time> removed;
  std::vector<ModelCaption> changed;
  for (const Time begin : touched) {
    const ModelCaption* then = FindNewest(before, begin);
    const ModelCaption* now = FindNewest(mStream, begin);
    if (!then && now)
      added.push_back(*now);
    if (then && (!now || now->age != then->age))
      removed.push_back(begin);
    if (then && now && !(*now == *then))
      changed.push_back(*now);
  }
  for (const ModelCaption& caption : added)
    HearCaption(caption);
  for (const Time begin : removed)
    RemoveRow(begin);
  for (const ModelCaption& caption : changed)
    HearCaption(caption);
}

// A row that stands there reads its own caption again, if that begins there; else a row comes to be.
void CaptionsModel::HearCaption(const ModelCaption& caption) {
  const auto row = mRows.find(caption.begin);
  if (row == mRows.end()) {
    mRows[caption.begin] = {caption.age, caption.end, caption.text};
    return;
  }
  const auto own = mStream.find(row->second.caption);
  if (own != mStream.end() && own->second.begin == caption.begin)
    row->second = {own->first, own->second.end, own->second.text};
}

void CaptionsModel::RemoveRow(Time begin) {
  const auto row = mRows.find(begin);
  if (row == mRows.end())
    return;
  mSelected.erase(begin);
  std::optional<Time> next;
  if (mSelected.empty() && mRows.size() >= 2)
    next = std::next(row) != mRows.end() ? std::next(row)->first : std::prev(row)->first;
  mRows.erase(row);
  if (next)
    SelectSingle(*next);
}

void CaptionsModel::Reload() {
  const std::vector<Time> times(mSelected.begin(), mSelected.end());
  mRows.clear();
  mSelected.clear();
  for (const ModelCaption& caption : GetStream())
    mRows[caption.begin] = {caption.age, caption.end, caption.text};
  Restore(times);
}

void CaptionsModel::Restore(const std::vector<Time>& times) {
  bool all = !times.empty();
  for (const Time time : times) {
    if (mRows.count(time) != 0)
      mSelected.insert(time);
    else
      all = false;
  }
  if (!all && !mRows.empty())
    SelectSingle(mRows.begin()->first);
}

bool CaptionsModel::SelectSingle(Time time) {
  if (mRows.count(time) == 0)
    return false;
  const bool same = mSelected.size() == 1 && *mSelected.begin() == time;
  mSelected = {time};
  mAnchor = time;
  return !same;
}

void CaptionsModel::Gesture(Time time, bool toggle, bool extend) {
  Commit();
  if (mRows.count(time) == 0)
    return;
  if (toggle) {
    if (mSelected.count(time) == 0)
      mSelected.insert(time);
    else if (mSelected.size() > 1)
      mSelected.erase(time);
    return;
  }
  if (!extend || !mAnchor || mSelected.count(*mAnchor) == 0) {
    if (!(extend && mAnchor && time == *mAnchor))
      SelectSingle(time);
    return;
  }
  if (time == *mAnchor)
    return;
  const Time low = std::min(time, *mAnchor);
  const Time high = std::max(time, *mAnchor);
  mSelected.clear();
  for (const auto& [begin, row] : mRows) {
    if (begin >= low && begin <= high)
      mSelected.insert(begin);
  }
}

void CaptionsModel::Click(Time row, bool toggle, bool extend) {
  Gesture(row, toggle, extend);
}

void CaptionsModel::ClickBelow() {
  mSelected.clear();
}

void CaptionsModel::MoveKey(int offset, bool toggle, bool extend) {
  if (mSelected.empty()) {
    Commit();
    return;
  }
  auto row = mRows.find(offset < 0 ? *mSelected.begin() : *mSelected.rbegin());
  for (; offset < 0 && row != mRows.begin(); ++offset)
    --row;
  for (; offset > 0 && std::next(row) != mRows.end(); --offset)
    ++row;
  Gesture(row->first, toggle, extend);
}

void CaptionsModel::EndKey(bool last, bool toggle, bool extend) {
  if (mRows.empty())
    Commit();
  else
    Gesture(last ? mRows.rbegin()->first : mRows.begin()->first, toggle, extend);
}

void CaptionsModel::Commit() {
  if (mStream != mCommitted)
    PushStep();
}

void CaptionsModel::PushStep() {
  mUndo.emplace_back(mCommitted, mStream);
  mRedo.clear();
  mCommitted = mStream;
}

bool CaptionsModel::Add() {
  Commit();
  Time begin = 0;
  Time limit = kNoTime;
  if (!mRows.empty()) {
    const auto pattern = mSelected.empty() ? std::prev(mRows.end()) : mRows.find(*mSelected.rbegin());
    begin = pattern->second.end;
    if (!mSelected.empty() && std::next(pattern) != mRows.end())
      limit = std::next(pattern)->first;
  }
  if (begin == limit)
    return false;
  const Time end = std::min(begin + kNewLength, limit);
  mSelected.clear();
  const ModelCaption made{++mLastAge, begin, end, ""};
  mRows[begin] = {made.age, end, ""};
  SelectSingle(begin);
  Stream next = mStream;
  next[made.age] = made;
  Become(next);
  return true;
}

std::optional<Time> CaptionsModel::FindSuccessor() const {
  auto row = mRows.find(*mSelected.begin());
  for (auto above = row; above != mRows.begin();) {
    --above;
    if (mSelected.count(above->first) == 0)
      return above->first;
  }
  // Below, but never the last row of the list.
  for (; row != mRows.end(); ++row) {
    if (mSelected.count(row->first) == 0)
      return std::next(row) == mRows.end() ? std::nullopt : std::optional(row->first);
  }
  return std::nullopt;
}

void CaptionsModel::Delete(bool byKey) {
  Commit();
  if (!mSelected.empty()) {
    const std::optional<Time> successor = FindSuccessor();
    const std::set<Time> gone = mSelected;
    for (const Time time : gone)
      mRows.erase(time);
    mSelected.clear();
    if (successor)
      SelectSingle(*successor);
    Stream next = mStream;
    for (const Time time : gone) {
      if (const ModelCaption* newest = FindNewest(mStream, time))
        next.erase(newest->age);
    }
    Become(next);
  }
  if (byKey)
    Commit();
}

bool CaptionsModel::Retime(Time begin, bool outEnd, Time value, bool selectsFirst) {
  if (selectsFirst)
    SelectSingle(begin);
  const Row moved = mRows.at(begin);
  Time newIn = begin;
  Time newOut = moved.end;
  if (outEnd) {
    newOut = std::max(value, mFrame);
    if (begin >= newOut)
      newIn = newOut - mFrame;
  } else {
    newIn = value;
    if (value >= moved.end)
      newOut = newIn + mFrame;
  }
  Time duration = newOut - newIn;

  auto after = mRows.end();
  auto at = mRows.find(newIn);
  if (at == mRows.end()) {
    after = mRows.upper_bound(newIn);
    at = after == mRows.begin() ? mRows.end() : std::prev(after);
  }
  if (at != mRows.end() && at->first != begin && at->second.end > newIn)
    return false;
  if (after != mRows.end() && after->first != begin && after->first <= newIn + duration)
    duration = after->first - newIn;

  const bool wasSelected = mSelected.erase(begin) != 0;
  mRows.erase(begin);
  mRows[newIn] = {moved.caption, newIn + duration, moved.text};
  if (wasSelected)
    mSelected.insert(newIn);
  if (mSelected.count(begin) == 0 || mSelected.size() > 1)
    Gesture(begin, false, false);

  if (const ModelCaption* newest = FindNewest(mStream, begin)) {
    Stream next = mStream;
    next[newest->age].begin = newIn;
    next[newest->age].end = newIn + duration;
    Become(next);
  }
  return true;
}

void CaptionsModel::Retype(Time begin, const std::string& text) {
  mRows.at(begin).text = text;
  if (const ModelCaption* newest = FindNewest(mStream, begin)) {
    Stream next = mStream;
    next[newest->age].text = text;
    Become(next);
  }
}

bool CaptionsModel::Undo() {
  Commit();
  if (mUndo.size() <= 1) // the stream itself came into being by a step, which is left alone
    return false;
  const auto step = mUndo.back();
  mUndo.pop_back();
  mRedo.push_back(step);
  Become(step.first);
  mCommitted = mStream;
  return true;
}

bool CaptionsModel::Redo() {
  Commit();
  if (mRedo.empty())
    return false;
  const auto step = mRedo.back();
  mRedo.pop_back();
  mUndo.push_back(step);
  Become(step.second);
  mCommitted = mStream;
  return true;
}

void CaptionsModel::HostAdd(const std::vector<ModelCaption>& captions) {
  Commit();
  Stream next = mStream;
  for (ModelCaption caption : captions) {
    caption.age = ++mLastAge;
    next[caption.age] = caption;
  }
  Become(next);
  Commit();
}

void CaptionsModel::HostRemove(Time begin) {
  Commit();
  Stream next = mStream;
  next.erase(FindNewest(mStream, begin)->age);
  Become(next);
  Commit();
}

void CaptionsModel::HostChange(Time begin, Time end, const std::string& text) {
  Commit();
  Stream next = mStream;
  ModelCaption& caption = next[FindNewest(mStream, begin)->age];
  caption.end = end;
  caption.text = text;
  Become(next);
  Commit();
}

void CaptionsModel::HostMove(Time from, Time to, Time offset) {
  Commit();
  bool any = false;
  for (auto& [age, caption] : mStream) {
    if (caption.begin < from || caption.begin > to)
      continue;
    caption.begin += offset;
    caption.end += offset;
    any = true;
  }
  if (!any || offset == 0)
    return;
  // A selected row goes along if the time at which it stood lies in the range after the shift.
  std::set<Time> selected;
  for (const Time time : mSelected) {
    const auto own = mStream.find(mRows.at(time).caption);
    const bool follows = time >= from + offset && time <= to + offset && own != mStream.end();
    selected.insert(follows ? own->second.begin : time);
  }
  mSelected = selected;
  Reload();
  Commit();
}

} // namespace Tests
