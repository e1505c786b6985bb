// What formatting many captions costs: the merged format of all of them for the bar, and an attribute applied to all.

#include <memory>

#include <benchmark/benchmark.h>

#include "Captions/pane/CaptionsPane.h"
#include "Captions/shell/CaptionsHandler.h"
#include "Captions/view/CaptionsView.h"
#include "Stage.h"
#include "zebcaptioning/StreamNumbers.h"

namespace Captivo {

class CaptionsInspector {
 public:
  static CaptionsView& View(HSL::Handler& handler) { return *dynamic_cast<CaptionsHandler&>(handler).mView; }
  static CaptionsPane& Pane(CaptionsView& view) { return *view.pane; }
  static const CaptionsItemList& List(CaptionsPane& pane) { return *pane.list; }
};

} // namespace Captivo

namespace {

using Bench::Stage;
using Bench::WriteSubRip;
using Inspector = Captivo::CaptionsInspector;

constexpr int kCommand_Bold = 32015;
constexpr int kCommand_SelectAll = 32020;

std::unique_ptr<Stage> OpenOn(std::int64_t count) {
  auto stage = std::make_unique<Stage>();
  stage->Import(WriteSubRip(count), zebcaptioning::GetStreamFormat("open", 1));
  return stage;
}

Captivo::CaptionsView& ViewOf(Stage& stage) {
  return Inspector::View(stage.GetHandler());
}

// A plain loop over the runs of the selected captions, to compare with.
void BM_ReadRunsOfAll(benchmark::State& state) {
  const auto stage = OpenOn(state.range(0));
  ViewOf(*stage).ObeyCommand(UIF::Command(kCommand_SelectAll));
  std::vector<boost::intrusive_ptr<zebcaptioning::Caption>> captions;
  const auto& list = Inspector::List(Inspector::Pane(ViewOf(*stage)));
  for (int i = 0; i < static_cast<int>(list.GetRowCount()); ++i) {
    boost::shared_ptr<Captivo::CaptionsItem> item;
    list.FindItem(list.GetTimeAtIndex(i), item);
    captions.push_back(item->GetCaption());
  }
  for (auto _ : state) {
    int bold = 0;
    for (const auto& caption : captions) {
      for (const auto& run : caption->GetState()->runs)
        bold += run.attributes->bold ? 1 : 0;
    }
    benchmark::DoNotOptimize(bold);
  }
}
BENCHMARK(BM_ReadRunsOfAll)->Arg(100000)->Unit(benchmark::kMicrosecond);

// Ratio to look at: against reading the runs.
void BM_PublishFormatOfAll(benchmark::State& state) {
  const auto stage = OpenOn(state.range(0));
  ViewOf(*stage).ObeyCommand(UIF::Command(kCommand_SelectAll));
  auto& pane = Inspector::Pane(ViewOf(*stage));
  for (auto _ : state)
    pane.PublishSelectionFormat();
}
BENCHMARK(BM_PublishFormatOfAll)->Arg(100000)->Unit(benchmark::kMicrosecond);

void BM_SelectAll(benchmark::State& state) {
  const auto stage = OpenOn(state.range(0));
  for (auto _ : state)
    ViewOf(*stage).ObeyCommand(UIF::Command(kCommand_SelectAll));
}
BENCHMARK(BM_SelectAll)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

// One call, one step to undo. Ratio to look at: 100,000 captions against 10,000.
void BM_BoldForAll(benchmark::State& state) {
  const auto stage = OpenOn(state.range(0));
  ViewOf(*stage).ObeyCommand(UIF::Command(kCommand_SelectAll));
  for (auto _ : state) {
    ViewOf(*stage).ObeyCommand(UIF::Command(kCommand_Bold));
    state.PauseTiming();
    stage->Commit();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_BoldForAll)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
  Bench::NeedApplication();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
