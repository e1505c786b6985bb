#include "zebui/Skin.h"

#include "zebui/Toolkit.h"

namespace {

constexpr zebui::ui::ColorID kColor_Divider = 1;
zebui::ui::ColorRGBA sDivider{0.80F, 0.82F, 0.85F, 1.0F};

} // namespace

namespace zebui::ui {

ColorRGBA GetColor(ColorID id) {
  return id == kColor_Divider ? sDivider : ColorRGBA();
}

} // namespace zebui::ui

namespace zebui::skins::core::utilities {

ui::ColorID GetDividerColorID(const SkinSet*) {
  return kColor_Divider;
}

} // namespace zebui::skins::core::utilities

namespace zebui::toolkit {

void SetDividerColor(const ui::ColorRGBA& color) {
  sDivider = color;
}

} // namespace zebui::toolkit
