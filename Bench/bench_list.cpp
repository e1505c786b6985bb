#include <malloc.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "Captions/list/CaptionsItemList.h"

// What the rows of a list cost, by their number. No row has controls.
//
// Each operation is measured on rows that follow one another, as in painting, and on rows in an order that no cache can
// guess. Lists, captions and orders are there before the clock starts. Flat is a copy of the pointer to a row out of an
// array, which is what the memory alone takes: nothing in a list can grow less than that.
namespace Captivo {

namespace {

constexpr int kRowPitch = 100; // ticks from begin to begin
constexpr int kRowLength = 50;

boost::intrusive_ptr<zebcaptioning::CaptionState> MakeState(std::int64_t begin, std::int64_t end) {
  static const zebcaptioning::SharedSpan kPlain = zebcaptioning::Share(zebcaptioning::TextSpanAttributes());
  boost::intrusive_ptr<zebcaptioning::CaptionState> state(new zebcaptioning::CaptionState);
  state->begin = TickTime(begin);
  state->end = TickTime(end);
  state->text = u"A line of a caption";
  state->runs.push_back({0, kPlain});
  return state;
}

boost::intrusive_ptr<Caption> MakeCaption(std::int64_t begin, std::int64_t end) {
  return new Caption(zebcaptioning::CaptionStatePtr(MakeState(begin, end)));
}

TickTime BeginOf(std::int64_t row) {
  return TickTime(row * kRowPitch);
}

// A list of so many rows; the last one asked for is kept.
CaptionsItemList& ListOf(std::int64_t rows) {
  static std::unique_ptr<CaptionsItemList> list;
  if (!list || static_cast<std::int64_t>(list->GetRowCount()) != rows) {
    list.reset();
    list = std::make_unique<CaptionsItemList>(nullptr);
    for (std::int64_t row = 0; row < rows; ++row)
      list->AddRow(MakeCaption(row * kRowPitch, row * kRowPitch + kRowLength));
  }
  return *list;
}

enum class Access { Sequential, Random };

// Positions of rows, over and over, the same in every run. As long for few rows as for many, so that the order itself
// costs the same.
class Order {
 public:
  Order(Access access, std::int64_t rows) : mRows(kLength) {
    std::mt19937_64 engine{20240607};
    std::uniform_int_distribution<std::int64_t> random(0, rows - 1);
    for (std::size_t i = 0; i < kLength; ++i)
      mRows[i] = static_cast<int>(access == Access::Random ? random(engine) : static_cast<std::int64_t>(i) % rows);
  }
  int Next() { return mRows[mNext++ % kLength]; }

 private:
  static constexpr std::size_t kLength = 1 << 20;
  std::vector<int> mRows;
  std::size_t mNext = 0;
};

void Flat(benchmark::State& state, Access access) {
  CaptionsItemList& list = ListOf(state.range(0));
  std::vector<boost::shared_ptr<CaptionsItem>> rows(list.GetRowCount());
  for (std::size_t i = 0; i < rows.size(); ++i)
    list.GetRowAtIndex(static_cast<int>(i), rows[i]);
  Order order(access, state.range(0));
  state.SetComplexityN(state.range(0));
  boost::shared_ptr<CaptionsItem> row;
  for (auto _ : state) {
    row = rows[static_cast<std::size_t>(order.Next())];
    benchmark::DoNotOptimize(row);
  }
}

void Find(benchmark::State& state, Access access) {
  const CaptionsItemList& list = ListOf(state.range(0));
  Order order(access, state.range(0));
  state.SetComplexityN(state.range(0));
  boost::shared_ptr<CaptionsItem> row;
  for (auto _ : state)
    benchmark::DoNotOptimize(list.FindItem(BeginOf(order.Next()), row));
}

void RowAtIndex(benchmark::State& state, Access access) {
  const CaptionsItemList& list = ListOf(state.range(0));
  Order order(access, state.range(0));
  state.SetComplexityN(state.range(0));
  boost::shared_ptr<CaptionsItem> row;
  for (auto _ : state)
    benchmark::DoNotOptimize(list.GetRowAtIndex(order.Next(), row));
}

void Select(benchmark::State& state, Access access) {
  CaptionsItemList& list = ListOf(state.range(0));
  Order order(access, state.range(0));
  state.SetComplexityN(state.range(0));
  for (auto _ : state)
    benchmark::DoNotOptimize(list.SelectSingle(BeginOf(order.Next())));
}

// With the selecting that makes it another index each time.
void SelectAndIndex(benchmark::State& state, Access access) {
  CaptionsItemList& list = ListOf(state.range(0));
  Order order(access, state.range(0));
  state.SetComplexityN(state.range(0));
  for (auto _ : state) {
    list.SelectSingle(BeginOf(order.Next()));
    benchmark::DoNotOptimize(list.GetFirstSelectedIndex());
  }
}

// A caption between two others, and away again, so that the number of rows stays. It is one caption, whose times are
// set.
void AddAndRemove(benchmark::State& state, Access access) {
  CaptionsItemList& list = ListOf(state.range(0));
  list.SelectSingle(BeginOf(0));
  Order order(access, state.range(0));
  const auto times = MakeState(0, 0);
  const boost::intrusive_ptr<Caption> caption(new Caption(zebcaptioning::CaptionStatePtr(times)));
  state.SetComplexityN(state.range(0));
  for (auto _ : state) {
    const TickTime begin = BeginOf(order.Next()) + TickTime(kRowLength);
    times->begin = begin;
    times->end = begin + TickTime(10);
    list.AddRow(caption);
    if (!list.RemoveRowAt(begin))
      state.SkipWithError("not removed");
  }
}

// Into a gap anywhere, and back: two moves. In sequence, past the next row.
void MoveThereAndBack(benchmark::State& state, Access access) {
  CaptionsItemList& list = ListOf(state.range(0));
  list.SelectSingle(BeginOf(0));
  Order order(access, state.range(0));
  const std::int64_t last = state.range(0) - 1;
  state.SetComplexityN(state.range(0));
  bool reordered = false;
  for (auto _ : state) {
    const int row = order.Next();
    const TickTime home = BeginOf(row);
    const std::int64_t target = access == Access::Random ? order.Next() : std::min<std::int64_t>(row + 1, last);
    const TickTime gap = BeginOf(target) + TickTime(kRowLength);
    TickTime length(10);
    const bool there = list.MoveRow(home, gap, length, reordered);
    length = TickTime(kRowLength);
    if (!there || !list.MoveRow(gap, home, length, reordered))
      state.SkipWithError("not moved");
  }
}

void SelectAll(benchmark::State& state) {
  CaptionsItemList& list = ListOf(state.range(0));
  state.SetComplexityN(state.range(0));
  for (auto _ : state)
    list.SelectAll();
  list.ClearSelection();
}

// Bytes of the heap that a row takes, without its caption; and with the caption and its text.
void Memory(benchmark::State& state) {
  const std::int64_t rows = state.range(0);
  double captionBytes = 0;
  double rowBytes = 0;
  for (auto _ : state) {
    const auto inUse = [] { return static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd); };
    const double atStart = inUse();
    std::vector<boost::intrusive_ptr<Caption>> captions;
    captions.reserve(static_cast<std::size_t>(rows));
    const double atCaptions = inUse();
    for (std::int64_t row = 0; row < rows; ++row)
      captions.push_back(MakeCaption(row * kRowPitch, row * kRowPitch + kRowLength));
    captionBytes = inUse() - atCaptions;
    CaptionsItemList list(nullptr);
    const double atRows = inUse();
    for (const auto& caption : captions)
      list.AddRow(caption);
    rowBytes = inUse() - atRows;
    benchmark::DoNotOptimize(atStart);
  }
  const auto count = static_cast<double>(rows);
  state.counters["row"] = rowBytes / count;
  state.counters["caption"] = captionBytes / count;
  state.counters["together"] = (rowBytes + captionBytes) / count;
  state.counters["text"] = 2 * static_cast<double>(std::u16string_view(u"A line of a caption").size());
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->RangeMultiplier(10)->Range(1000, 1000000)->Complexity(benchmark::oLogN);
}

BENCHMARK_CAPTURE(Flat, sequential, Access::Sequential)->Apply(Sizes);
BENCHMARK_CAPTURE(Flat, random, Access::Random)->Apply(Sizes);
BENCHMARK_CAPTURE(Find, sequential, Access::Sequential)->Apply(Sizes);
BENCHMARK_CAPTURE(Find, random, Access::Random)->Apply(Sizes);
BENCHMARK_CAPTURE(RowAtIndex, sequential, Access::Sequential)->Apply(Sizes);
BENCHMARK_CAPTURE(RowAtIndex, random, Access::Random)->Apply(Sizes);
BENCHMARK_CAPTURE(Select, sequential, Access::Sequential)->Apply(Sizes);
BENCHMARK_CAPTURE(Select, random, Access::Random)->Apply(Sizes);
BENCHMARK_CAPTURE(SelectAndIndex, sequential, Access::Sequential)->Apply(Sizes);
BENCHMARK_CAPTURE(SelectAndIndex, random, Access::Random)->Apply(Sizes);
BENCHMARK_CAPTURE(AddAndRemove, sequential, Access::Sequential)->Apply(Sizes);
BENCHMARK_CAPTURE(AddAndRemove, random, Access::Random)->Apply(Sizes);
BENCHMARK_CAPTURE(MoveThereAndBack, sequential, Access::Sequential)->Apply(Sizes);
BENCHMARK_CAPTURE(MoveThereAndBack, random, Access::Random)->Apply(Sizes);
BENCHMARK(SelectAll)->RangeMultiplier(10)->Range(1000, 1000000)->Complexity(benchmark::oN);
BENCHMARK(Memory)->RangeMultiplier(10)->Range(1000, 100000)->Iterations(1);

} // namespace

} // namespace Captivo

BENCHMARK_MAIN();
