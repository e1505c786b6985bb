#pragma once

#include "zebcore/Geometry.h"

namespace zebui::ui {

// Red, green, blue, alpha from 0 to 1.
struct ColorRGBA {
  float red = 0.0F;
  float green = 0.0F;
  float blue = 0.0F;
  float alpha = 1.0F;
  friend bool operator==(const ColorRGBA&, const ColorRGBA&) = default;
};
using ColorID = int;
ColorRGBA GetColor(ColorID id);

} // namespace zebui::ui

namespace zebui::skins::core {
class SkinSet;
namespace utilities {
// Null is the skin in use.
ui::ColorID GetDividerColorID(const SkinSet* skins);
} // namespace utilities
} // namespace zebui::skins::core
