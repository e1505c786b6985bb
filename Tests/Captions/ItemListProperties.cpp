#include <algorithm>
#include <cstdlib>
#include <optional>

#include <rapidcheck.h>

#include "Support.h"

// The list held against a plain vector that is searched from end to end.
namespace Captivo::Testing {

namespace {

// Read by the library when the first property is checked.
[[maybe_unused]] const int kTenThousandCases = setenv("RC_PARAMS", "max_success=10000", 0);

struct ModelRow {
  int begin;
  int end;
  bool selected = false;
};

// Written without a look at the list: everything is a walk over a sorted vector.
struct Model {
  std::vector<ModelRow> rows;
  std::optional<int> anchor;

  std::size_t Position(int begin) const {
    std::size_t i = 0;
    while (i < rows.size() && rows[i].begin != begin)
      ++i;
    return i;
  }
  bool Has(int begin) const { return Position(begin) < rows.size(); }
  int CountSelected() const {
    return static_cast<int>(std::count_if(rows.begin(), rows.end(), [](auto& row) { return row.selected; }));
  }
  std::vector<int> Selected() const {
    std::vector<int> begins;
    for (const auto& row : rows)
      if (row.selected)
        begins.push_back(row.begin);
    return begins;
  }
  void SelectNone() {
    for (auto& row : rows)
      row.selected = false;
  }
  void Sort() {
    std::sort(rows.begin(), rows.end(), [](auto& a, auto& b) { return a.begin < b.begin; });
  }
  void Add(int begin, int end) {
    if (Has(begin)) {
      rows[Position(begin)].end = end;
      return;
    }
    rows.push_back({begin, end});
    Sort();
  }
  bool Single(int begin) {
    if (!Has(begin))
      return false;
    const auto before = Selected();
    SelectNone();
    rows[Position(begin)].selected = true;
    anchor = begin;
    return before != std::vector<int>{begin};
  }
  bool Toggle(int begin) {
    if (!Has(begin))
      return false;
    auto& row = rows[Position(begin)];
    if (row.selected && CountSelected() == 1)
      return false;
    row.selected = !row.selected;
    return true;
  }
  bool Extend(int begin) {
    if (!Has(begin) || anchor == begin)
      return false;
    if (!anchor || !Has(*anchor) || !rows[Position(*anchor)].selected)
      return Single(begin);
    for (auto& row : rows)
      row.selected = row.begin >= std::min(*anchor, begin) && row.begin <= std::max(*anchor, begin);
    return true;
  }
  std::optional<int> Next() const {
    const auto first = std::find_if(rows.begin(), rows.end(), [](auto& row) { return row.selected; });
    if (first == rows.end())
      return std::nullopt;
    if (first != rows.begin())
      return std::prev(first)->begin;
    for (std::size_t i = 0; i + 1 < rows.size(); ++i)
      if (!rows[i].selected)
        return rows[i].begin;
    return std::nullopt;
  }
  std::vector<int> RemoveSelected() {
    const auto next = Next();
    const auto gone = Selected();
    std::erase_if(rows, [](auto& row) { return row.selected; });
    if (next)
      Single(*next);
    return gone;
  }
  bool Remove(int begin) {
    const std::size_t i = Position(begin);
    if (i == rows.size())
      return false;
    const bool wasLastSelected = CountSelected() == (rows[i].selected ? 1 : 0);
    rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(i));
    if (wasLastSelected && !rows.empty())
      Single(rows[std::min(i, rows.size() - 1)].begin);
    return true;
  }
  bool Insert(int duration) {
    std::size_t pattern = rows.size();
    for (std::size_t i = 0; i < rows.size(); ++i)
      if (rows[i].selected || (CountSelected() == 0 && i + 1 == rows.size()))
        pattern = i;
    const int begin = pattern < rows.size() ? rows[pattern].end : 0;
    int end = begin + duration;
    if (pattern + 1 < rows.size() && rows[pattern + 1].begin < end) {
      if (rows[pattern + 1].begin == begin)
        return false;
      end = rows[pattern + 1].begin;
    }
    SelectNone();
    Add(begin, end);
    Single(begin);
    return true;
  }
  bool Move(int from, int to, int& duration, bool& reordered) {
    reordered = false;
    if (!Has(from))
      return false;
    const ModelRow* at = nullptr;
    const ModelRow* after = nullptr;
    for (const auto& row : rows) {
      if (row.begin <= to)
        at = &row;
      else if (!after)
        after = &row;
    }
    if (at && at->begin == to)
      after = nullptr;
    if (at && at->begin != from && at->end > to)
      return false;
    if (after && after->begin != from && after->begin <= to + duration)
      duration = after->begin - to;
    const auto before = [&](int begin) -> std::optional<int> {
      const std::size_t i = Position(begin);
      return i == 0 ? std::nullopt : std::optional<int>(rows[i - 1].begin);
    };
    const auto formerNeighbour = before(from);
    ModelRow row = rows[Position(from)];
    row.begin = to;
    row.end = to + duration;
    rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(Position(from)));
    if (Has(to)) {
      row.selected |= rows[Position(to)].selected;
      rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(Position(to)));
    }
    rows.push_back(row);
    Sort();
    reordered = from != to && before(to) != formerNeighbour;
    return true;
  }
};

TickTime Ticks(int value) {
  return TickTime(value);
}

boost::intrusive_ptr<Caption> CaptionAt(int begin, int end) {
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(new zebcaptioning::CaptionState);
  state->begin = Ticks(begin);
  state->end = Ticks(end);
  state->runs.push_back({0, zebcaptioning::Share(zebcaptioning::TextSpanAttributes())});
  return new Caption(zebcaptioning::CaptionStatePtr(state));
}

std::vector<int> ToInts(const std::vector<TickTime>& times) {
  std::vector<int> numbers;
  for (const TickTime& time : times)
    numbers.push_back(static_cast<int>(time.GetTicks()));
  return numbers;
}

void CompareRows(const Model& model, CaptionsItemList& list) {
  RC_ASSERT(list.GetRowCount() == model.rows.size());
  for (std::size_t i = 0; i < model.rows.size(); ++i) {
    boost::shared_ptr<CaptionsItem> row;
    RC_ASSERT(list.GetRowAtIndex(static_cast<int>(i), row));
    RC_ASSERT(row->GetBeginTime() == Ticks(model.rows[i].begin));
    RC_ASSERT(row->GetEndTime() == Ticks(model.rows[i].end));
    RC_ASSERT(list.IsSelected(row->GetBeginTime()) == model.rows[i].selected);
  }
  boost::shared_ptr<CaptionsItem> none;
  RC_ASSERT(!list.GetRowAtIndex(static_cast<int>(model.rows.size()), none));
  RC_ASSERT(list.GetFirstTime() == (model.rows.empty() ? kTime_Min : Ticks(model.rows.front().begin)));
  RC_ASSERT(list.GetLastTime() == (model.rows.empty() ? kTime_Min : Ticks(model.rows.back().begin)));
}

void CompareSelection(const Model& model, CaptionsItemList& list) {
  RC_ASSERT(ToInts(list.GetSelectedTimes()) == model.Selected());
  RC_ASSERT(ToInts(Inspector::SelectedKeys(list)) == model.Selected());
  RC_ASSERT(Inspector::Anchor(list) == (model.anchor ? Ticks(*model.anchor) : kTime_Min));
  const auto selected = model.Selected();
  RC_ASSERT(list.GetFirstSelectedIndex() ==
            (selected.empty() ? -1 : static_cast<int>(model.Position(selected.front()))));
  TickTime next;
  list.GetNextSelectableTime(next);
  const auto expected = model.Next();
  RC_ASSERT(next == (expected ? Ticks(*expected) : kTime_Min));
}

void CompareOffsets(const Model& model, CaptionsItemList& list, int offset) {
  const auto selected = model.Selected();
  if (selected.empty()) {
    RC_ASSERT(list.GetTimeByOffset(offset) == kTime_Min);
    return;
  }
  int position = static_cast<int>(model.Position(offset < 0 ? selected.front() : selected.back()));
  for (int i = 0; i < std::abs(offset); ++i)
    position = std::clamp(position + (offset < 0 ? -1 : 1), 0, static_cast<int>(model.rows.size()) - 1);
  RC_ASSERT(list.GetTimeByOffset(offset) == Ticks(model.rows[static_cast<std::size_t>(position)].begin));
}

void CompareAround(const Model& model, CaptionsItemList& list, int time) {
  boost::shared_ptr<CaptionsItem> at;
  boost::shared_ptr<CaptionsItem> after;
  list.FindItemsAround(Ticks(time), at, after);
  const ModelRow* before = nullptr;
  const ModelRow* behind = nullptr;
  for (const auto& row : model.rows) {
    if (row.begin <= time)
      before = &row;
    else if (!behind)
      behind = &row;
  }
  if (before && before->begin == time)
    behind = nullptr;
  RC_ASSERT((at ? at->GetBeginTime() : kTime_Min) == (before ? Ticks(before->begin) : kTime_Min));
  RC_ASSERT((after ? after->GetBeginTime() : kTime_Min) == (behind ? Ticks(behind->begin) : kTime_Min));
}

// One random operation on both; they must answer alike.
void Step(Model& model, CaptionsItemList& list) {
  const int time = *rc::gen::inRange(0, 24);
  const int length = *rc::gen::inRange(0, 6);
  switch (*rc::gen::inRange(0, 11)) {
  case 0:
  case 1:
    model.Add(time, time + length);
    list.AddRow(CaptionAt(time, time + length));
    break;
  case 2:
    RC_ASSERT(list.RemoveRowAt(Ticks(time)) == model.Remove(time));
    break;
  case 3: {
    std::vector<TickTime> removed;
    list.RemoveSelectedRows(removed);
    RC_ASSERT(ToInts(removed) == model.RemoveSelected());
    break;
  }
  case 4:
    RC_ASSERT(list.SelectSingle(Ticks(time)) == model.Single(time));
    break;
  case 5:
    RC_ASSERT(list.ToggleSelection(Ticks(time)) == model.Toggle(time));
    break;
  case 6:
    RC_ASSERT(list.ExtendSelection(Ticks(time)) == model.Extend(time));
    break;
  case 7:
    list.SelectAll();
    for (auto& row : model.rows)
      row.selected = true;
    break;
  case 8:
    RC_ASSERT(list.InsertCaptionAfterSelection(Ticks(length)) == model.Insert(length));
    break;
  case 9: {
    int duration = *rc::gen::inRange(0, 6);
    TickTime listDuration = Ticks(duration);
    bool modelReordered = false;
    bool listReordered = false;
    const int from = model.rows.empty() ? time : (*rc::gen::elementOf(model.rows)).begin;
    RC_ASSERT(list.MoveRow(Ticks(from), Ticks(time), listDuration, listReordered) ==
              model.Move(from, time, duration, modelReordered));
    RC_ASSERT(listDuration == Ticks(duration));
    RC_ASSERT(listReordered == modelReordered);
    break;
  }
  default: {
    const auto times = *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 24));
    bool complete = !times.empty();
    const auto former = model.Selected();
    model.SelectNone();
    std::vector<TickTime> ticks;
    for (const int t : times) {
      ticks.push_back(Ticks(t));
      if (model.Has(t))
        model.rows[model.Position(t)].selected = true;
      else
        complete = false;
    }
    if (model.CountSelected() == 0 && !former.empty())
      model.Single(former.front());
    RC_ASSERT(list.RestoreSelection(ticks) == complete);
    break;
  }
  }
}

} // namespace

TEST(ItemListProperties, AnyCourseOfOperationsEndsWhereAPlainVectorEnds) {
  EXPECT_TRUE(rc::check([] {
    Model model;
    CaptionsItemList list(nullptr);
    const int steps = *rc::gen::inRange(1, 40);
    for (int i = 0; i < steps; ++i) {
      Step(model, list);
      CompareRows(model, list);
      CompareSelection(model, list);
    }
    CompareOffsets(model, list, *rc::gen::inRange(-30, 30));
    CompareAround(model, list, *rc::gen::inRange(-1, 26));
  }));
}

} // namespace Captivo::Testing
