#include <malloc.h>

#include <memory>
#include <random>

#include <benchmark/benchmark.h>

#include "Captions/list/CaptionsItemList.h"

// What the rows of a list cost, by their number. No row has controls.
namespace Captivo {

namespace {

constexpr int kRowPitch = 100; // ticks from begin to begin
constexpr int kRowLength = 50;

boost::intrusive_ptr<Caption> MakeCaption(std::int64_t begin, std::int64_t end) {
  static const zebcaptioning::SharedSpan kPlain = zebcaptioning::Share(zebcaptioning::TextSpanAttributes());
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(new zebcaptioning::CaptionState);
  state->begin = TickTime(begin);
  state->end = TickTime(end);
  state->text = u"A line of a caption";
  state->runs.push_back({0, kPlain});
  return new Caption(zebcaptioning::CaptionStatePtr(state));
}

TickTime BeginOf(std::int64_t row) {
  return TickTime(row * kRowPitch);
}

// A list of so many rows; the last one asked for is kept.
CaptionsItemList& ListOf(std::int64_t rows) {
  static std::unique_ptr<CaptionsItemList> list;
  if (!list || static_cast<std::int64_t>(list->GetRowCount()) != rows) {
    list = std::make_unique<CaptionsItemList>(nullptr);
    for (std::int64_t row = 0; row < rows; ++row)
      list->AddRow(MakeCaption(row * kRowPitch, row * kRowPitch + kRowLength));
  }
  return *list;
}

// Rows in an order that no cache can guess, the same in every run.
class RandomRow {
 public:
  explicit RandomRow(std::int64_t rows) : mRow(0, rows - 1) {}
  std::int64_t operator()() { return mRow(mEngine); }

 private:
  std::mt19937_64 mEngine{20240607};
  std::uniform_int_distribution<std::int64_t> mRow;
};

void Find(benchmark::State& state) {
  const CaptionsItemList& list = ListOf(state.range(0));
  RandomRow next(state.range(0));
  state.SetComplexityN(state.range(0));
  boost::shared_ptr<CaptionsItem> row;
  for (auto _ : state)
    benchmark::DoNotOptimize(list.FindItem(BeginOf(next()), row));
}

void RowAtIndex(benchmark::State& state) {
  const CaptionsItemList& list = ListOf(state.range(0));
  RandomRow next(state.range(0));
  state.SetComplexityN(state.range(0));
  boost::shared_ptr<CaptionsItem> row;
  for (auto _ : state)
    benchmark::DoNotOptimize(list.GetRowAtIndex(static_cast<int>(next()), row));
}

void Select(benchmark::State& state) {
  CaptionsItemList& list = ListOf(state.range(0));
  RandomRow next(state.range(0));
  state.SetComplexityN(state.range(0));
  for (auto _ : state)
    benchmark::DoNotOptimize(list.SelectSingle(BeginOf(next())));
}

void FirstSelectedIndex(benchmark::State& state) {
  CaptionsItemList& list = ListOf(state.range(0));
  list.SelectSingle(BeginOf(state.range(0) / 2));
  state.SetComplexityN(state.range(0));
  for (auto _ : state)
    benchmark::DoNotOptimize(list.GetFirstSelectedIndex());
}

// A caption between two others, and away again, so that the number of rows stays.
void AddAndRemove(benchmark::State& state) {
  CaptionsItemList& list = ListOf(state.range(0));
  list.SelectSingle(BeginOf(0));
  RandomRow next(state.range(0));
  state.SetComplexityN(state.range(0));
  for (auto _ : state) {
    const std::int64_t begin = next() * kRowPitch + kRowLength;
    list.AddRow(MakeCaption(begin, begin + 10));
    list.RemoveRowAt(TickTime(begin));
  }
}

// Into a gap anywhere, and back.
void MoveThereAndBack(benchmark::State& state) {
  CaptionsItemList& list = ListOf(state.range(0));
  list.SelectSingle(BeginOf(0));
  RandomRow next(state.range(0));
  state.SetComplexityN(state.range(0));
  bool reordered = false;
  for (auto _ : state) {
    const TickTime home = BeginOf(next());
    const TickTime gap = BeginOf(next()) + TickTime(kRowLength);
    TickTime length(10);
    list.MoveRow(home, gap, length, reordered);
    length = TickTime(kRowLength);
    list.MoveRow(gap, home, length, reordered);
  }
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

BENCHMARK(Find)->Apply(Sizes);
BENCHMARK(RowAtIndex)->Apply(Sizes);
BENCHMARK(Select)->Apply(Sizes);
BENCHMARK(FirstSelectedIndex)->Apply(Sizes);
BENCHMARK(AddAndRemove)->Apply(Sizes);
BENCHMARK(MoveThereAndBack)->Apply(Sizes);
BENCHMARK(Memory)->RangeMultiplier(10)->Range(1000, 100000)->Iterations(1);

} // namespace

} // namespace Captivo

BENCHMARK_MAIN();
