// The rows of a day's captions with their pictures: what scrolling and typing cost, and what the pictures weigh.

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "Captions/pane/CaptionsPane.h"
#include "Captions/shell/CaptionsHandler.h"
#include "Captions/view/CaptionsView.h"
#include "ML/FrameService.h"
#include "Stage.h"
#include "zebui/Driver.h"

namespace Captivo {

class CaptionsInspector {
 public:
  static CaptionsPane& Pane(HSL::Handler& handler) { return *dynamic_cast<CaptionsHandler&>(handler).mView->pane; }
  struct Weight {
    std::size_t pictures = 0;
    std::size_t bytes = 0;
  };
  static Weight Weigh(const CaptionsPane& pane) {
    Weight weight;
    for (const auto& [video, entries] : pane.previewCache) {
      for (const auto& [time, entry] : entries) {
        if (!entry.frame)
          continue;
        ++weight.pictures;
        weight.bytes += static_cast<std::size_t>(entry.frame->GetRowBytes()) *
                        static_cast<std::size_t>(entry.frame->GetRect().height);
      }
    }
    return weight;
  }
};

} // namespace Captivo

namespace {

using Bench::Stage;
using Bench::WriteSubRip;
using Inspector = Captivo::CaptionsInspector;

constexpr unsigned kRow = 75;
constexpr int kLongestText = 60;

// A minute of pictures; goes at the end of the program.
class Recording {
 public:
  Recording(const std::string& name, const std::string& size)
      : mPath(std::filesystem::temp_directory_path() / ("captivo-bench-" + std::to_string(::getpid()) + name)) {
    const std::string command = "ffmpeg -v error -y -f lavfi -i testsrc2=s=" + size +
                                ":r=25:d=60 -c:v libx264 -preset ultrafast -g 50 -bf 2 -pix_fmt yuv420p \"" +
                                mPath.string() + "\" </dev/null";
    mMade = std::system(command.c_str()) == 0;
  }
  ~Recording() {
    std::error_code ignored;
    std::filesystem::remove(mPath, ignored);
  }
  const std::filesystem::path& Path() const { return mPath; }
  bool IsMade() const { return mMade; }

 private:
  std::filesystem::path mPath;
  bool mMade = false;
};

double ResidentBytes() {
  std::ifstream file("/proc/self/statm");
  double size = 0;
  double resident = 0;
  file >> size >> resident;
  return resident * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

// One row further, there and back over fifty rows, painted. Ratio to look at: 100,000 captions against 100.
void BM_ScrollStep(benchmark::State& state) {
  Stage stage;
  stage.Import(WriteSubRip(state.range(0)));
  Captivo::CaptionsPane& pane = Inspector::Pane(stage.GetHandler());
  const auto middle = static_cast<unsigned>(state.range(0) / 2 - 25);
  unsigned step = 0;
  for (auto _ : state) {
    const unsigned place = ++step % 100;
    pane.SetScrollOffset((middle + (place < 50 ? place : 99 - place)) * kRow);
    QApplication::processEvents();
  }
}
BENCHMARK(BM_ScrollStep)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);

// To rows that are far from those on show. The same ratio.
void BM_ScrollJump(benchmark::State& state) {
  Stage stage;
  stage.Import(WriteSubRip(state.range(0)));
  Captivo::CaptionsPane& pane = Inspector::Pane(stage.GetHandler());
  const auto count = static_cast<unsigned>(state.range(0)) - 10;
  unsigned place = 0;
  for (auto _ : state) {
    place = (place + count * 2 / 5 + 1) % count;
    pane.SetScrollOffset(place * kRow);
    QApplication::processEvents();
  }
}
BENCHMARK(BM_ScrollJump)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);

// With so many pictures asked for and not there yet. Ratio to look at: 1,000 against none.
void BM_KeystrokeWhilePreviewsAreUnderWay(benchmark::State& state) {
  static const Recording recording("-large.mp4", "1920x1080");
  if (!recording.IsMade()) {
    state.SkipWithError("no recording could be made");
    return;
  }
  const auto wanted = static_cast<std::size_t>(state.range(0));
  Stage stage(wanted == 0 ? std::filesystem::path() : recording.Path());
  stage.Import(WriteSubRip(2000));
  Captivo::CaptionsPane& pane = Inspector::Pane(stage.GetHandler());
  const auto ask = [&] {
    if (wanted == 0)
      return;
    for (unsigned row = 10; row < 10 + wanted; row += 8)
      pane.SetScrollOffset(row * kRow);
  };
  ask();
  pane.SetScrollOffset(0);
  if (!stage.FocusFirstText()) {
    state.SkipWithError("no row is on show");
    return;
  }
  int length = 0;
  for (auto _ : state) {
    zebui::driver::TypeText(u"x");
    if (++length < kLongestText)
      continue;
    state.PauseTiming();
    while (--length > 0)
      zebui::driver::PressKey(zebui::ui::kKeyboardCode_Backspace);
    stage.Commit();
    state.ResumeTiming();
  }
  state.counters["still_under_way"] = static_cast<double>(ML::FrameService::Instance().CountWaiting());
  ML::FrameService::Instance().WaitUntilIdle();
}
BENCHMARK(BM_KeystrokeWhilePreviewsAreUnderWay)->Arg(0)->Arg(1000)->Iterations(2000)->Unit(benchmark::kMicrosecond);

// Every row of so many is seen once; pictures stay.
void BM_SeeEveryRow(benchmark::State& state) {
  static const Recording recording("-small.mp4", "320x180");
  if (!recording.IsMade()) {
    state.SkipWithError("no recording could be made");
    return;
  }
  for (auto _ : state) {
    Stage stage(recording.Path());
    stage.Import(WriteSubRip(state.range(0)));
    Captivo::CaptionsPane& pane = Inspector::Pane(stage.GetHandler());
    const double before = ResidentBytes();
    for (unsigned row = 0; row < static_cast<unsigned>(state.range(0)); row += 4) {
      pane.SetScrollOffset(row * kRow);
      zebcore::messaging::DeliverPostedMessages();
    }
    ML::FrameService::Instance().WaitUntilIdle();
    zebcore::messaging::DeliverPostedMessages();
    const Inspector::Weight weight = Inspector::Weigh(pane);
    state.counters["pictures"] = static_cast<double>(weight.pictures);
    state.counters["picture_MB"] = static_cast<double>(weight.bytes) / 1e6;
    state.counters["resident_MB"] = (ResidentBytes() - before) / 1e6;
  }
}
BENCHMARK(BM_SeeEveryRow)->Arg(10000)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace

int main(int argc, char** argv) {
  Bench::NeedApplication();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
