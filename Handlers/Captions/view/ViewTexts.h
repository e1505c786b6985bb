#pragma once

#include "Captions/shell/HostTypes.h"

// Texts that several rooms of the view show, by their keys.
namespace Captivo {

inline constexpr const char* kText_MultipleValues = "$$$/Vidra/Handlers/Captions/MultipleValues=mul.";
inline constexpr const char* kText_MultipleFontFamily = "$$$/Vidra/Handlers/Captions/MultipleFontFamily=Multiple";
inline constexpr const char* kText_MultipleFontWeight = "$$$/Vidra/Handlers/Captions/MultipleFontWeight=Multiple";
inline constexpr const char* kText_PopupMultiple = "$$$/Vidra/Handlers/Captions/PopupMultiple=Multiple";
inline constexpr const char* kText_MixedHeight = "$$$/Vidra/Handlers/Captions/MixedHeight=Mixed";
inline constexpr const char* kText_NoRegionEntry = "$$$/Vidra/Handlers/Captions/NoRegionEntry=None";
inline constexpr const char* kText_CustomStyle = "$$$/Vidra/Handlers/Captions/CustomStyle=Custom";
inline constexpr const char* kText_Grid = "$$$/Vidra/Handlers/Captions/Grid=Grid:";
inline constexpr const char* kText_Frame = "$$$/Vidra/Handlers/Captions/Frame=Frame:";

// In the program's language.
UString Localize(const char* key);

} // namespace Captivo
