#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <QApplication>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QWidget>
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
#include "zebmediatypes/FrameRate.h"

// The whole panel on the real host, without a display, for measuring.
namespace Bench {

using zebcore::UString;
using zebcore::classref::InterfaceRef;

inline void NeedApplication() {
  if (QApplication::instance())
    return;
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  static int argc = 1;
  static char name[] = "bench";
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

inline std::string WriteSubRip(std::int64_t count) {
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
  explicit Stage(const std::filesystem::path& media = {}) {
    std::string pattern = (std::filesystem::temp_directory_path() / "captivo-bench-XXXXXX").string();
    mFolder = mkdtemp(pattern.data());
    mProject = *BE::Project::Create(mFolder / "p.captivo").value;
    MZ::SetActiveProject(mProject);
    BE::MediaInfo info;
    info.width = 1920;
    info.height = 1080;
    info.frameRate = zebmediatypes::kFrameRate_25;
    info.duration = zebmediatypes::TickTimeFromSeconds(90000);
    mClip = mProject->AddClip(u"clip", media, info, false);
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
  void Import(const std::string& bytes, zebcaptioning::StreamFormat format = zebcaptioning::kStreamFormat_608_CC1) {
    const auto read = Formats::ReadSubRip(bytes, format);
    std::vector<BE::NewCaption> captions;
    for (const auto& state : read.captions)
      captions.push_back({state});
    BE::StreamDescription description;
    description.format = format;
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

  HSL::Handler& GetHandler() { return *mHandler; }
  QWidget& GetWindow() { return mFrame.container; }

 private:
  std::filesystem::path mFolder;
  InterfaceRef<BE::Project> mProject;
  InterfaceRef<BE::MasterClip> mClip;
  Frame mFrame;
  std::unique_ptr<HSL::Handler> mHandler;
};

} // namespace Bench
