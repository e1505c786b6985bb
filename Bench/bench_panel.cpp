// What a captioner waits for, measured through the whole panel on the real host: a key typed in a row, and a caption
// file that becomes rows.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <QApplication>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QWidget>
#include <benchmark/benchmark.h>
#include <unistd.h>

#include "BE/Project.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Formats/Formats.h"
#include "HSL/Module.h"
#include "MZ/Actions.h"
#include "UIF/TabView.h"
#include "UIF/Workspace.h"
#include "zebcore/Messaging.h"
#include "zebui/Driver.h"

namespace {

using zebcore::UString;
using zebcore::classref::InterfaceRef;

constexpr int kLongestText = 60;

void NeedApplication() {
  if (QApplication::instance())
    return;
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  static int argc = 1;
  static char name[] = "bench_panel";
  static char* argv[] = {name, nullptr};
  new QApplication(argc, argv);
}

struct Frame : UIF::WorkspaceFrame {
  void* GetContainer() override { return &container; }
  void SetTitle(const UString&) override {}
  void SetShown(bool shown) override { container.setVisible(shown); }
  bool IsShown() const override { return true; }
  void BringToFront() override {}
  bool IsFrontMost() const override { return true; }
  QWidget container;
};

std::string WriteSubRip(std::int64_t count) {
  const auto stamp = [](std::int64_t milliseconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d,%03d", static_cast<int>(milliseconds / 3600000),
                  static_cast<int>(milliseconds / 60000 % 60), static_cast<int>(milliseconds / 1000 % 60),
                  static_cast<int>(milliseconds % 1000));
    return std::string(text);
  };
  std::string bytes;
  for (std::int64_t cue = 0; cue < count; ++cue) {
    bytes += std::to_string(cue + 1) + "\n" + stamp(cue * 800) + " --> " + stamp(cue * 800 + 700) +
             "\nA first line of caption " + std::to_string(cue) + "\nand <i>its second</i> one\n\n";
  }
  return bytes;
}

// A project on the disk with one clip, and the panel in a window of 800 by 700.
class Stage {
 public:
  Stage() {
    std::string pattern = (std::filesystem::temp_directory_path() / "captivo-bench-XXXXXX").string();
    mFolder = mkdtemp(pattern.data());
    mProject = *BE::Project::Create(mFolder / "p.captivo").value;
    MZ::SetActiveProject(mProject);
    BE::MediaInfo info;
    info.width = 1920;
    info.height = 1080;
    info.frameRate = zebmediatypes::kFrameRate_25;
    info.duration = zebmediatypes::TickTimeFromSeconds(90000);
    mClip = mProject->AddClip(u"clip", "", info, false);
    mFrame.container.resize(800, 700);
    mFrame.container.show();
    QApplication::setActiveWindow(&mFrame.container);
    UIF::Workspace::SetFrameFactory([this](const UString&) { return &mFrame; });
    mHandler = HSL::Handler::CreateHandler(HSL::kCaptionsHandlerID, u"Captions");
    zebcore::messaging::BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, MZ::ClosedCaptionsOpenedMessage());
  }
  ~Stage() {
    mHandler.reset();
    UIF::Workspace::SetFrameFactory({});
    mProject->Close();
    MZ::SetActiveProject(nullptr);
    std::filesystem::remove_all(mFolder);
  }

  // From the bytes of a file to rows.
  void Import(const std::string& bytes) {
    const auto read = Formats::ReadSubRip(bytes, zebcaptioning::kStreamFormat_608_CC1);
    std::vector<BE::NewCaption> captions;
    for (const auto& state : read.captions)
      captions.push_back({state});
    BE::StreamDescription description;
    description.format = zebcaptioning::kStreamFormat_608_CC1;
    mProject->AddStream(mClip, description, captions, u"Import captions");
    MZ::MasterClipSelectedMessage message;
    message.clip = mClip;
    zebcore::messaging::BroadcastMessage(MZ::kStation_MasterClipActivation, message);
  }

  bool FocusFirstText() {
    for (QWidget* widget : mFrame.container.findChildren<QWidget*>()) {
      if (qobject_cast<QPlainTextEdit*>(widget) || qobject_cast<QTextEdit*>(widget)) {
        widget->setFocus(Qt::MouseFocusReason);
        return true;
      }
    }
    return false;
  }

  void Commit() {
    zebcore::messaging::BroadcastMessage(HSL::kStation_CaptionSelection, HSL::CaptionCommitEditsMessage());
  }

 private:
  std::filesystem::path mFolder;
  InterfaceRef<BE::Project> mProject;
  InterfaceRef<BE::MasterClip> mClip;
  Frame mFrame;
  std::unique_ptr<HSL::Handler> mHandler;
};

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
  NeedApplication();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
