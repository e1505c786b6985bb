#include "DLG/CaptionsSettingsDialogs.h"

#include <set>

#include <QApplication>

#include "DLG/SettingsWindows.h"
#include "MZ/Actions.h"
#include "UIF/ModalScope.h"
#include "zebcore/Trace.h"
#include "zebui/Toolkit.h"

namespace DLG {

namespace {

using ProjectRef = zebcore::classref::InterfaceRef<BE::Project>;

CaptionsSettingsHook& GetHook() {
  static CaptionsSettingsHook hook;
  return hook;
}

// The rate that most of the project's work will be at: that of the first clip with pictures.
BE::FrameRate ClipRate(const BE::Project& project) {
  for (const auto& clip : project.GetClips()) {
    if (clip->GetMediaInfo().frameRate.IsValid())
      return clip->GetMediaInfo().frameRate;
  }
  return {};
}

std::vector<BE::StreamFormat> StreamsOf(const BE::Project& project) {
  std::set<BE::StreamFormat> formats;
  for (const auto& clip : project.GetClips()) {
    for (const auto& stream : clip->GetStreams())
      formats.insert(stream->GetStreamFormat());
  }
  return {formats.begin(), formats.end()};
}

bool Run(QDialog& window) {
  const UIF::ModalScope modal;
  return window.exec() == QDialog::Accepted;
}

bool AskImport(BE::Project& project) {
  ImportSettingsWindow window(QApplication::activeWindow(), ClipRate(project));
  window.Set(BE::GetCaptionsImportSettings(project));
  if (!Run(window))
    return false;
  BE::SetCaptionsImportSettings(project, window.Get());
  return true;
}

bool AskExport(BE::Project& project) {
  ExportSettingsWindow window(QApplication::activeWindow(), ClipRate(project), StreamsOf(project));
  window.Set(BE::GetCaptionsExportSettings(project));
  if (!Run(window))
    return false;
  BE::SetCaptionsExportSettings(project, window.Get());
  return true;
}

bool Display(CaptionsSettings which) {
  const bool isImport = which == CaptionsSettings::Import;
  if (zebcore::trace::IsOn())
    zebcore::trace::Record(isImport ? "CaptionsImportSettingsDialog::DisplayCaptionsImportSettingsDialog"
                                    : "CaptionsExportSettingsDialog::DisplayCaptionsExportSettingsDialog",
                           nlohmann::json::object());
  if (const CaptionsSettingsHook hook = GetHook())
    return hook(which);
  const ProjectRef project = MZ::GetActiveProject().Query<BE::Project>();
  if (!zebui::toolkit::HasApplication() || !project)
    return false;
  return isImport ? AskImport(*project) : AskExport(*project);
}

} // namespace

bool CaptionsImportSettingsDialog::DisplayCaptionsImportSettingsDialog() {
  return Display(CaptionsSettings::Import);
}

bool CaptionsExportSettingsDialog::DisplayCaptionsExportSettingsDialog() {
  return Display(CaptionsSettings::Export);
}

void SetCaptionsSettingsHook(CaptionsSettingsHook hook) {
  GetHook() = std::move(hook);
}

} // namespace DLG
