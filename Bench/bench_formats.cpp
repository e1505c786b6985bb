// Reading and writing caption files. Times per caption must not grow with the file.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "Formats/Formats.h"

namespace {

std::string MakeFile(std::int64_t count, Formats::FileKind kind) {
  const bool isWebVTT = kind == Formats::FileKind::WebVTT;
  const char mark = isWebVTT ? '.' : ',';
  std::string file = isWebVTT ? "WEBVTT\n\n" : "";
  for (std::int64_t i = 0; i < count; ++i) {
    const int s = static_cast<int>(i) * 2;
    char times[80];
    std::snprintf(times, sizeof times, "%d\n%02d:%02d:%02d%c000 --> %02d:%02d:%02d%c500\n", static_cast<int>(i) + 1,
                  s / 3600, s / 60 % 60, s % 60, mark, s / 3600, s / 60 % 60, s % 60 + 1, mark);
    file += times;
    file += isWebVTT ? "<i>A caption</i> of <c.red>two</c>\nlines &amp; more\n\n"
                     : "<i>A caption</i> of <font color=\"#ff0000\">two</font>\nlines & more\n\n";
  }
  return file;
}

void Read(benchmark::State& state, Formats::FileKind kind) {
  const std::string file = MakeFile(state.range(0), kind);
  for (auto _ : state) {
    const Formats::ReadResult result = Formats::Read(file, "", zebcaptioning::kStreamFormat_608_CC1);
    if (static_cast<std::int64_t>(result.captions.size()) != state.range(0))
      state.SkipWithError("captions are missing");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Write(benchmark::State& state, Formats::FileKind kind) {
  const Formats::ReadResult captions =
      Formats::Read(MakeFile(state.range(0), kind), "", zebcaptioning::kStreamFormat_608_CC1);
  for (auto _ : state)
    benchmark::DoNotOptimize(Formats::Write(kind, captions.captions, zebcaptioning::kStreamFormat_608_CC1));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK_CAPTURE(Read, SubRip, Formats::FileKind::SubRip)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK_CAPTURE(Read, WebVTT, Formats::FileKind::WebVTT)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK_CAPTURE(Write, SubRip, Formats::FileKind::SubRip)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK_CAPTURE(Write, WebVTT, Formats::FileKind::WebVTT)->RangeMultiplier(10)->Range(1000, 100000);

} // namespace

BENCHMARK_MAIN();
