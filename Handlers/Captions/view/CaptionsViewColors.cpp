#include "Captions/pane/CaptionsPane.h"
#include "Captions/shell/CaptionsCommands.h"
#include "Captions/view/CaptionsView.h"
#include "DLG/ColorPickerDialog.h"
#include "UIF/Drawing.h"
#include "zebui/Menu.h"

namespace Captivo {

using zebcaptioning::CaptionFormatParameter;
using zebcaptioning::CaptioningColor;
using zebui::controls::UnManagedRGBA;

namespace {

constexpr float kEdgeWidthOfFontSize = 10.0F;

CaptioningColor ToCaptioningColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
  constexpr float kMaxByte = 255.0F;
  return {static_cast<float>(red) / kMaxByte, static_cast<float>(green) / kMaxByte, static_cast<float>(blue) / kMaxByte,
          1.0F};
}

UnManagedRGBA ToSwatchColor(const CaptioningColor& color) {
  return {color.red, color.green, color.blue, color.alpha};
}

UIF::Color ToPickerColor(const CaptioningColor& color) {
  return UIF::ZEBConversionUtilities::ZEBColorRGBAtoKSLColor({color.red, color.green, color.blue, color.alpha});
}

CaptioningColor GetWindowBackground() {
  const UIF::Color color = UIF::ColorManager::GetColor(UIF::kColor_WindowBackground);
  return ToCaptioningColor(color.red, color.green, color.blue);
}

bool IsSameRGB(const CaptioningColor& a, const CaptioningColor& b) {
  return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

CaptionFormatParameter ColorParameter(CaptioningColor::ColorType type) {
  return static_cast<CaptionFormatParameter>(static_cast<int>(zebcaptioning::kFormatTextColor) +
                                             static_cast<int>(type));
}

CaptionFormatParameter OpacityParameter(CaptioningColor::ColorType type) {
  return static_cast<CaptionFormatParameter>(static_cast<int>(zebcaptioning::kFormatTextOpacity) +
                                             static_cast<int>(type));
}

float WidthOfNewEdge(const zebcaptioning::CaptionFormatInfo& info) {
  bool isUniform = false;
  return info.GetFontSize(isUniform) / kEdgeWidthOfFontSize;
}

// The legal colours of a format, and for the background its opacities, as a menu. Every entry takes an id, one above
// its index, those that show as a separator too.
class LegalColorMenu {
 public:
  LegalColorMenu(StreamFormat format, CaptioningColor::ColorType type, const CaptioningColor& current, bool isUniform)
      : mMenu(zebui::utility::CreateOSMenu()) {
    std::map<CaptioningColor, UString> legalColors;
    std::map<float, UString> legalOpacities;
    CaptioningColor::EnumerateLegalColors(format, type, legalColors, legalOpacities);
    for (const auto& [color, name] : legalColors) {
      const std::size_t entry = AddEntry(name);
      if (isUniform)
        mMenu->SetItemCheckMark(entry, !current.IsTransparent() && IsSameRGB(color, current));
      mColors.push_back(color);
    }
    if (type != CaptioningColor::kColorType_Background)
      return;
    mMenu->AddSeparator();
    for (const auto& [opacity, name] : legalOpacities) {
      const std::size_t entry = AddEntry(name);
      mMenu->SetItemCheckMark(entry, isUniform && current.alpha == opacity);
      mOpacities.push_back(opacity);
    }
  }

  const zebui::utility::OSMenu& GetMenu() const { return *mMenu; }

  // A colour chosen over a visible one keeps the present opacity, over a transparent one it brings its own.
  CaptioningColor GetChosen(std::size_t index, const CaptioningColor& current) const {
    CaptioningColor color = current;
    if (index < mColors.size()) {
      color = mColors[index];
      if (!current.IsTransparent())
        color.alpha = current.alpha;
    } else if (index - mColors.size() < mOpacities.size()) {
      color.alpha = mOpacities[index - mColors.size()];
    }
    return color.IsTransparent() ? CaptioningColor() : color;
  }

 private:
  std::size_t AddEntry(const UString& name) {
    const std::size_t entry = name.empty() ? mMenu->AddSeparator() : mMenu->AddItem(name);
    mMenu->EnableItem(entry, true);
    mMenu->SetItemID(entry, ++mLastID);
    return entry;
  }

  std::unique_ptr<zebui::utility::OSMenu> mMenu;
  std::vector<CaptioningColor> mColors;
  std::vector<float> mOpacities;
  int mLastID = 0;
};

} // namespace

void CaptionsView::SelectColorType(ColorType type) {
  colorType = type;
  MarkColorType();
  UpdateColorControls();
}

void CaptionsView::MarkColorType() {
  textColorButton.SetValue(colorType == CaptioningColor::kColorType_Text);
  backgroundColorButton.SetValue(colorType == CaptioningColor::kColorType_Background);
  edgeColorButton.SetValue(colorType == CaptioningColor::kColorType_Edge);
}

// Choosing an edge colour gives the edge the usual width, whatever width it had.
void CaptionsView::ApplyColor(CaptioningColor color, bool useGivenAlpha) {
  if (!useGivenAlpha) {
    bool isUniform = false;
    color.alpha = formatInfo->GetOpacity(colorType, isUniform);
  }
  CaptionFormatInfo workInfo(*formatInfo);
  if (colorType == CaptioningColor::kColorType_Edge) {
    if (color.alpha == 0.0F)
      color.alpha = 1.0F;
    workInfo.SetTextEdgeWidth(WidthOfNewEdge(*formatInfo), true);
  }
  formatInfo->SetColor(colorType, color, true);
  workInfo.SetColor(colorType, color, true);
  pane->ApplyFormat(ColorParameter(colorType), workInfo);
}

void CaptionsView::ShowColorMenu() {
  if (streamFormat == zebcaptioning::kStreamFormat_None)
    return;
  CaptioningColor current;
  bool isUniform = false;
  formatInfo->GetColor(colorType, current, isUniform);
  const LegalColorMenu menu(streamFormat, colorType, current, isUniform);
  if (menu.GetMenu().CountItems() == 0)
    return;
  const int index =
      zebui::ui::UI_DoPopupMenu(menu.GetMenu(), colorSwatch.get(), colorSwatch->UI_GetLocalRectF(), false) - 1;
  if (index >= 0)
    ApplyColor(menu.GetChosen(static_cast<std::size_t>(index), current), true);
}

void CaptionsView::OnPickerColorChanged(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
  ApplyColor(ToCaptioningColor(red, green, blue), false);
}

// A cancelled dialog goes on with what it left in the result.
void CaptionsView::OnPickerSwatchClicked() {
  UIF::Color result;
  DLG::ColorPickerDialog::PickColor(colorPicker.GetColor(), result);
  colorPicker.SetColor(result, false);
  ApplyColor(ToCaptioningColor(result.red, result.green, result.blue), false);
}

// The first opacity of an edge that is not there brings the edge into being: width, colour, opacity.
void CaptionsView::OnOpacityChanged(const InteractivelyChanged& message) {
  constexpr float kPercent = 100.0F;
  if (message.GetChangeMessage() != InteractivelyChanged::kChange_Finished)
    return;
  const float opacity = static_cast<float>(opacityControl->GetValue()) / kPercent;
  formatInfo->SetOpacity(colorType, opacity, true);
  CaptionFormatInfo workInfo(*formatInfo);
  bool isUniform = false;
  if (colorType == CaptioningColor::kColorType_Edge && formatInfo->GetTextEdgeWidth(isUniform) == 0.0F) {
    const CaptioningColor color = GetEdgeColorForNewEdge();
    workInfo.SetTextEdgeWidth(WidthOfNewEdge(*formatInfo), true);
    pane->ApplyFormat(zebcaptioning::kFormatEdgeWidth, workInfo);
    workInfo.SetColor(colorType, color, true);
    pane->ApplyFormat(zebcaptioning::kFormatEdgeColor, workInfo);
  }
  workInfo.SetOpacity(colorType, opacity, true);
  pane->ApplyFormat(OpacityParameter(colorType), workInfo);
}

// A black edge cannot be told from none.
CaptioningColor CaptionsView::GetEdgeColorForNewEdge() const {
  if (IsSameRGB(lastEdgeColor, CaptioningColor()))
    return {1.0F, 0.0F, 0.0F, 1.0F};
  CaptioningColor color = lastEdgeColor;
  if (color.alpha == 0.0F)
    color.alpha = 1.0F;
  return color;
}

void CaptionsView::UpdateColorControls() {
  if (colorType == CaptioningColor::kColorType_Edge)
    ShowEdgeColor();
  else
    ShowTextOrBackgroundColor();
}

// While the eyedropper is out, the colour under it stays in the picker.
void CaptionsView::ShowTextOrBackgroundColor() {
  const CaptioningColor background = GetWindowBackground();
  const bool isBackground = colorType == CaptioningColor::kColorType_Background;
  CaptioningColor color;
  bool isUniform = false;
  formatInfo->GetColor(colorType, color, isUniform);
  if (!isUniform || (isBackground && color.IsTransparent()))
    color = background;
  if (!isOpenCaptions) {
    colorSwatch->SetValue(ToSwatchColor(color));
    return;
  }
  if (!isUniform || !eyedropperActive)
    colorPicker.SetColor(ToPickerColor(color), false);
  ShowOpacity();
  opacityControl->SetDisabled(!isBackground);
}

void CaptionsView::ShowOpacity() {
  bool isUniform = false;
  const float opacity = formatInfo->GetOpacity(colorType, isUniform);
  if (isUniform)
    opacityControl->SetValue(static_cast<double>(opacity * 100.0F));
  else
    opacityControl->SetValueUnknown();
}

// Closed captions have no edge.
void CaptionsView::ShowEdgeColor() {
  if (!isOpenCaptions)
    return;
  CaptioningColor color;
  bool isUniform = false;
  formatInfo->GetColor(colorType, color, isUniform);
  if (isUniform && !color.IsTransparent())
    lastEdgeColor = color;
  else
    color = GetWindowBackground();
  if (!isUniform || !eyedropperActive)
    colorPicker.SetColor(ToPickerColor(color), false);

  ShowOpacity();
  bool isOpacityUniform = false;
  const float opacity = formatInfo->GetOpacity(colorType, isOpacityUniform);
  if (isOpacityUniform && opacity != 0.0F)
    lastEdgeColor.alpha = opacity;
  opacityControl->SetDisabled(false);
}

} // namespace Captivo
