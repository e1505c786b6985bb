#pragma once

// The geometry of the panel, in pixels.
namespace Captivo {

inline constexpr int kFormatBarHeight_Closed = 52;
inline constexpr int kFormatBarHeight_Open = 85;
inline constexpr int kGapUnderBar = 7;
inline constexpr int kSpaceUnderPane = 40;

inline constexpr int kBottomButtonWidth = 88;
inline constexpr int kBottomButtonHeight = 18;
inline constexpr int kBottomButtonRise = 30; // from the bottom of the panel to the top of the button
inline constexpr int kImportSettingsX = 20;
inline constexpr int kExportSettingsX = 120;
inline constexpr int kAddCaptionFromRight = 192;
inline constexpr int kDeleteCaptionFromAdd = 96;

// Deliberately not the height of a row: the bar moves in its own steps, and the pane snaps down to whole rows.
inline constexpr int kScrollStep = 73;

} // namespace Captivo
