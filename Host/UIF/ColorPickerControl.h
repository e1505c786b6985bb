#pragma once

#include <memory>

#include "UIF/Drawing.h"
#include "UIF/View.h"
#include "zebcore/ImmutableString.h"
#include "zebcore/Messaging.h"

namespace UIF {

// A person picked a colour, by the eyedropper or by a drop.
struct ColorPickerControlChangedMessage : zebcore::messaging::MessageOf<ColorPickerControlChangedMessage> {
  static constexpr const char* kTypeName = "UIF::ColorPickerControlChangedMessage";
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint32_t id = 0;
};
// The swatch was clicked: whoever listens opens a dialog.
struct ColorPickerSwatchClickedMessage : zebcore::messaging::MessageOf<ColorPickerSwatchClickedMessage> {
  static constexpr const char* kTypeName = "UIF::ColorPickerSwatchClickedMessage";
};
struct ColorPickerSwatchStartEyedropperModeMessage
    : zebcore::messaging::MessageOf<ColorPickerSwatchStartEyedropperModeMessage> {
  static constexpr const char* kTypeName = "UIF::ColorPickerSwatchStartEyedropperModeMessage";
};
struct ColorPickerSwatchEndEyedropperModeMessage
    : zebcore::messaging::MessageOf<ColorPickerSwatchEndEyedropperModeMessage> {
  static constexpr const char* kTypeName = "UIF::ColorPickerSwatchEndEyedropperModeMessage";
};

// A swatch with an eyedropper beside it that picks a colour from anywhere on the screen. Its messages are broadcast on
// its station.
class ColorPickerControl {
 public:
  explicit ColorPickerControl(Commander* super);
  ~ColorPickerControl();
  ColorPickerControl(const ColorPickerControl&) = delete;
  ColorPickerControl& operator=(const ColorPickerControl&) = delete;

  // extent: of the swatch, (0, 0) for one that fills its half. name: for assistive technology; empty for the usual one.
  void Create(ViewBase* parent, const RectT<int>& bounds, unsigned id, const PointT<int>& extent, const UString& name);
  void Destroy();
  zebcore::utility::ImmutableString GetStationID() const;
  Color GetColor() const;
  // notify: as if a person had picked it.
  void SetColor(const Color& color, bool notify);
  void SetBounds(const RectT<int>& bounds);
  RectT<int> GetBounds() const;
  void Show(bool show);
  bool IsShown() const;
  void Enable(bool enable);
  bool IsEnabled() const;
  bool HasFocus() const;
  // As a person would; nothing when it is disabled.
  void ClickSwatch();
  void StartEyedropper();
  // With a colour under the pointer, or cancelled with null.
  void EndEyedropper(const Color* picked);
  bool IsEyedropperActive() const;
  // The node it is on screen with; null before Create.
  zebui::ui::UI_Node* GetNode() const;

 private:
  struct Impl;
  Commander* mSuper;
  std::unique_ptr<Impl> mImpl;
};

} // namespace UIF
