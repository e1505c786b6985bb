#pragma once

#include <functional>

namespace DLG {

// How captions are brought into the active project. Modal; true if the settings were accepted.
class CaptionsImportSettingsDialog {
 public:
  static bool DisplayCaptionsImportSettingsDialog();
};

// How captions are written to files. Modal; true if the settings were accepted.
class CaptionsExportSettingsDialog {
 public:
  static bool DisplayCaptionsExportSettingsDialog();
};

// In place of both windows, for whoever drives the program; null restores them.
enum class CaptionsSettings { Import, Export };
using CaptionsSettingsHook = std::function<bool(CaptionsSettings which)>;
void SetCaptionsSettingsHook(CaptionsSettingsHook hook);

} // namespace DLG
