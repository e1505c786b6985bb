#pragma once

// How large things are in a timeline, in pixels.
namespace App::timeline {

inline constexpr int kHeaderWidth = 44;
inline constexpr int kRulerHeight = 26;
inline constexpr int kVideoHeight = 44;
inline constexpr int kAudioHeight = 30;
inline constexpr int kPieceMargin = 2;
inline constexpr int kPieceTitle = 14; // above it a click means the item, below it a dissolve that lies there
inline constexpr int kNarrowestDissolve = 5;
inline constexpr int kFitMargin = 24;
inline constexpr int kSnapPixels = 8;

} // namespace App::timeline
