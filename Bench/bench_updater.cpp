#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "BE/Project.h"
#include "Captions/contracts/CaptioningStreamUpdater.h"
#include "zebcaptioning/Spans.h"

namespace {

using zebcore::classref::InterfaceRef;
using zebmediatypes::TickTime;

std::vector<BE::NewCaption> MakeCaptions(std::int64_t count) {
  std::vector<BE::NewCaption> captions;
  for (std::int64_t at = 0; at < count; ++at)
    captions.push_back({zebcaptioning::MakeCaptionState(TickTime(at * 100), TickTime(at * 100 + 90),
                                                        zebcore::FromUTF8("Caption number " + std::to_string(at)))});
  return captions;
}

// A project on the disk with one stream.
class Document {
 public:
  explicit Document(std::int64_t count) : mCaptions(MakeCaptions(count)) {
    std::string pattern = (std::filesystem::temp_directory_path() / "captivo-bench-XXXXXX").string();
    mFolder = mkdtemp(pattern.data());
    mProject = *BE::Project::Create(mFolder / "p.captivo").value;
  }
  ~Document() {
    mProject->Close();
    std::filesystem::remove_all(mFolder);
  }
  InterfaceRef<BE::CaptioningStream> AddStream() {
    BE::StreamDescription description;
    description.format = zebcaptioning::kStreamFormat_608_CC1;
    return *mProject->AddStream(mProject->AddClip(u"clip", "", {}, false), description, mCaptions, u"Import").value;
  }
  std::filesystem::path Close() {
    mProject->Close();
    return mFolder / "p.captivo";
  }

 private:
  std::vector<BE::NewCaption> mCaptions;
  std::filesystem::path mFolder;
  InterfaceRef<BE::Project> mProject;
};

// One key in a row, from the updater to the file. The passage is closed now and then, as it is when someone works.
void BM_Keystroke(benchmark::State& state) {
  Document document(state.range(0));
  const auto stream = document.AddStream();
  HSL::CaptioningStreamUpdater updater(stream);
  const TickTime begin(state.range(0) / 2 * 100);
  zebcore::UString text = stream->FindByBegin(begin)->GetState()->text;
  for (auto _ : state) {
    zebcore::UString next = text;
    if (next.size() < 60)
      next += u'x';
    else
      next.resize(15);
    updater.ApplyTextChange(begin, text, next, {next.size(), next.size()}, false);
    text = next;
    if (text.size() == 15)
      updater.CommitChangesUndoable(true);
  }
}
BENCHMARK(BM_Keystroke)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);

void BM_AddStream(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto document = std::make_unique<Document>(state.range(0));
    state.ResumeTiming();
    benchmark::DoNotOptimize(document->AddStream());
    state.PauseTiming();
    document.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_AddStream)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_OpenProject(benchmark::State& state) {
  Document document(state.range(0));
  document.AddStream();
  const std::filesystem::path path = document.Close();
  for (auto _ : state)
    benchmark::DoNotOptimize(BE::Project::Open(path));
}
BENCHMARK(BM_OpenProject)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
