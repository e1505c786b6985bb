// What a captioner waits for, measured through the whole panel on the real host: a key typed in a row, and a caption
// file that becomes rows.

#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "Stage.h"
#include "zebui/Driver.h"

namespace {

using Bench::Stage;
using Bench::WriteSubRip;

constexpr int kLongestText = 60;

// Ratio to look at: 100,000 captions against 100.
void BM_KeystrokeInARow(benchmark::State& state) {
  Stage stage;
  stage.Import(WriteSubRip(state.range(0)));
  if (!stage.FocusFirstText()) {
    state.SkipWithError("no row is on show");
    return;
  }
  int length = 0;
  for (auto _ : state) {
    if (length++ < kLongestText) {
      zebui::driver::TypeText(u"x");
      continue;
    }
    state.PauseTiming();
    while (--length > 0)
      zebui::driver::PressKey(zebui::ui::kKeyboardCode_Backspace);
    stage.Commit();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_KeystrokeInARow)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);

// Ratio to look at: 100,000 captions against 10,000.
void BM_ImportIntoRows(benchmark::State& state) {
  const std::string bytes = WriteSubRip(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    auto stage = std::make_unique<Stage>();
    state.ResumeTiming();
    stage->Import(bytes);
    state.PauseTiming();
    stage.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_ImportIntoRows)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
  Bench::NeedApplication();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
