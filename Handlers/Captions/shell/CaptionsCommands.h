#pragma once

namespace UIF {
class ShortcutManager;
}

namespace Captivo {

// The shortcut context of the panel, and the commands in it.
inline constexpr const char* kShortcutContext = "captions";

inline constexpr int kCommand_JustifyLeft = 32000;
inline constexpr int kCommand_JustifyCenter = 32001;
inline constexpr int kCommand_JustifyRight = 32002;
inline constexpr int kCommand_Italicize = 32010;
inline constexpr int kCommand_Underline = 32011;
inline constexpr int kCommand_MusicNote = 32012;
inline constexpr int kCommand_BackgroundColor = 32013;
inline constexpr int kCommand_TextColor = 32014;
inline constexpr int kCommand_Bold = 32015;
inline constexpr int kCommand_EdgeColor = 32016;
inline constexpr int kCommand_SelectAll = 32020;
inline constexpr int kCommand_ImportSettings = 32030;
inline constexpr int kCommand_ExportSettings = 32031;

// Declares the context and its commands to the host.
void RegisterCaptionsCommands(UIF::ShortcutManager* manager);

} // namespace Captivo
