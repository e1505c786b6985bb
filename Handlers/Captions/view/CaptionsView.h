#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <boost/bimap.hpp>

#include "Captions/contracts/CaptionFormatInfo.h"
#include "Captions/shell/CaptionsSource.h"
#include "Captions/shell/HostTypes.h"
#include "UIF/ColorPickerControl.h"
#include "UIF/PictureButton.h"
#include "UIF/ScrollBar.h"
#include "UIF/TabView.h"
#include "zebcore/Messaging.h"
#include "zebui/HotNumber.h"
#include "zebui/Popup.h"
#include "zebui/PositionGrid.h"
#include "zebui/SearchBox.h"
#include "zebui/StaticControls.h"
#include "zebui/Swatch.h"

namespace TD {
struct CaptionFontRecord;
}

namespace Captivo {

class CaptionsPane;

// The Captions panel: the format bar on top, the list of captions with its scroll bar in the middle, buttons below. It
// reaches captions only through its pane.
class CaptionsView : public UIF::TabView, public zebcore::messaging::Listener {
 public:
  // The context in which the panel's shortcuts are declared.
  explicit CaptionsView(const std::string& shortcutContextName);
  ~CaptionsView() override;

  // Host's hooks.
  bool FindCommandStatus(int id, bool& enabled, bool& marked, UIF::MenuMark& mark, UString& name) override;
  bool ObeyCommand(const UIF::Command& command) override;
  void NowOnDuty() override;
  // Commits: what was done in the panel is on the undo stack once the user has left it.
  void NowOffDuty() override;
  void Destroy() override;
  using UIF::TabView::Destroy;
  UIF::ViewBase* GetParent() const override { return nullptr; }
  int GetStackedDimensionHeightMin() const override;
  void HandleMessage(const zebcore::messaging::Message& message) override;

  // For the handler.
  void SelectCaptionAtTime(const TickTime& time);
  // To that stream first, if it is another one; a stream that the clip does not hold changes nothing.
  void SelectStreamByFormat(const std::vector<TickTime>& times, const StreamFormat& format);
  void ForgetPreview(const InterfaceRef<BE::IVideoSegments>& video);

  // For the pane.
  void ScrollSelectionIntoView();
  // The scroll bar alone; with reset back to the top.
  void UpdateScrollRange(bool reset);
  void UpdateAvailability();
  void UpdateAvailabilityAndLayout();
  void PublishFormat(const boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo>& info);
  void SetRegionNames(const std::vector<UString>& names);
  void SetStyleNames(const std::vector<UString>& names);
  // What is on show is another; the region's dimensions in cells, or pixels for open captions.
  void UpdateForSource(const CaptionsSource& source, int columns, int rows);

 protected:
  void SetBoundsSelf(const RectT<int>& bounds) override;
  void PaintSelf(UIF::DC& dc) override;
  bool MouseWheelSelf(const PointT<int>& point, const UIF::KeyModifiers& modifiers, int delta) override;
  bool MousePanSelf(const PointT<int>& point, const PointT<int>& delta) override;
  void CreateSelf(const RectT<int>& bounds) override;
  void DestroySelf() override;
  std::string GetWingMenuName() const override;
  bool FindCommandEnabled(int id, bool& enabled) override;

 private:
  friend class CaptionsInspector;

  template <class Control> using Ref = boost::intrusive_ptr<Control>;
  using SearchBox = Ref<zebui::controls::UI_SearchBox>;
  using StaticText = Ref<zebui::controls::UI_StaticText>;
  using Popup = Ref<zebui::controls::UI_Popup>;
  using HotNumber = Ref<zebui::controls::UI_HotTextNumber>;
  using Divider = Ref<zebui::controls::UI_Divider>;
  using Swatch = Ref<zebui::controls::UI_Swatch>;
  using PositionGrid = Ref<zebui::controls::UI_PositionGridControl>;
  using TextButton = Ref<zebui::controls::UI_TextButton>;
  using Message = zebcore::messaging::Message;
  using Changed = zebui::ui::UI_ControlChangedMessage;
  using InteractivelyChanged = zebui::ui::UI_InteractiveControlChangedMessage;
  using ColorType = zebcaptioning::CaptioningColor::ColorType;
  using CaptionFormatInfo = zebcaptioning::CaptionFormatInfo;

  // Controls.
  void CreateStreamRow();
  void CreateFontRow();
  void CreateCaptionTypeControls();
  void CreateStyleButtons(RectT<int>& place);
  void CreateColorControls(RectT<int>& place);
  void CreateClosedPositionControls(RectT<int>& place);
  void CreateOpenPositionControls(RectT<int>& place);
  void CreateBottomRow();
  void CreatePaneAndScrollBar(const RectT<int>& bounds);
  void CreatePictureButton(UIF::PictureButton& button, const RectT<int>& place, int command, UIF::DecalID decal,
                           const char* toolTip);
  Divider CreateDivider(const RectT<int>& place);
  StaticText CreateLabel(const RectT<int>& place, const char* text);
  TextButton CreateTextButton(const char* text, const char* toolTip, void (CaptionsView::*handler)(const Changed&));
  void UpdateControlVisibility();
  void OnFilterChanged();
  void OnStreamChanged(const Changed&);
  void OnImportSettings(const Changed&);
  void OnExportSettings(const Changed&);
  void OnAddCaption(const Changed&);
  void OnDeleteCaption(const Changed&);

  // What can be used.
  void UpdateControlStates();
  void UpdateButtonStates(bool isSelected);
  void UpdateOpenControlStates(bool isSelected);
  void UpdateClosedControlStates(bool isSelected);

  // Layout.
  void LayoutFormatBar();
  void LayoutStreamRow(zebui::drawbot::Drawbot& drawbot);
  void LayoutFontRow(zebui::drawbot::Drawbot& drawbot);
  // Right of them the buttons begin.
  float LayoutCaptionType(zebui::drawbot::Drawbot& drawbot);
  void LayoutButtons(zebui::drawbot::Drawbot& drawbot, int x, int y);
  void LayoutClosedPosition(zebui::drawbot::Drawbot& drawbot, int x, int y);
  void LayoutOpenPosition(zebui::drawbot::Drawbot& drawbot, int x, int y);
  void LayoutContent(const RectT<int>& rect);
  void PlaceBottomButtons(const RectT<int>& rect, int addX);
  RectT<int> GetScrollBarRect(const RectT<int>& rect) const;
  int GetScrollBarWidth() const;
  void SetScrollRange(int page);
  void OnScrollVertical(int position);

  // Commands.
  void ApplyAlignment(zebcaptioning::ParagraphStyleAttributes::TextAlignmentType alignment);
  void ToggleItalic();
  void ToggleUnderline();
  void ToggleBold();
  void EditColor(ColorType type);

  // From the controls to the captions. A copy goes out, because the format that is published in the end takes the place
  // of formatInfo while the handler still runs.
  void ApplyFormatInfo(zebcaptioning::CaptionFormatParameter parameter);
  void OnCaptionTypeChanged(const Changed&);
  void OnDoubleHeightChanged(const Changed&);
  void OnFontSizeChanged(const InteractivelyChanged& message);
  void OnEdgeWidthChanged(const InteractivelyChanged& message);
  void OnLineSpacingChanged(const InteractivelyChanged& message);

  // From the captions to the controls.
  void UpdateFormatControls();
  void UpdateCaptionTypePopup();
  void UpdateAlignmentButtons();
  void UpdateDoubleHeightPopup();
  void UpdateFontFamilyPopup();
  void UpdateRegionAndStylePopups();
  void UpdatePositionGrid(int anchor);

  // Fonts.
  void FillFontWeights(const UString& familyName);
  void UpdateFontWeightPopup();
  UString ComposeFontStyleName(bool& uniform) const;
  // The flags of the style on show to the format, and to the buttons; whether each was another or mixed.
  void ApplyStyleToFlags(bool& boldChanged, bool& italicChanged);
  void LogChosenFont() const;
  void OnFontFamilyChanged(const Changed&);
  void OnFontWeightChanged(const Changed&);

  // Colours.
  void SelectColorType(ColorType type);
  void MarkColorType();
  // With the opacity on show, or with the colour's own.
  void ApplyColor(zebcaptioning::CaptioningColor color, bool useGivenAlpha);
  void ShowColorMenu();
  void OnPickerColorChanged(std::uint8_t red, std::uint8_t green, std::uint8_t blue);
  void OnPickerSwatchClicked();
  void OnOpacityChanged(const InteractivelyChanged& message);
  zebcaptioning::CaptioningColor GetEdgeColorForNewEdge() const;
  void UpdateColorControls();
  void ShowTextOrBackgroundColor();
  void ShowEdgeColor();
  void ShowOpacity();

  // Position.
  void GetGridAnchor(CaptionFormatInfo::AnchorID& anchor) const;
  void UpdatePositionRanges();
  void UpdateOpenPositionControls();
  void UpdateClosedPositionControls();
  void OnClosedGridChanged(const Changed&);
  void OnOpenGridChanged(const Changed&);
  void ApplyGridAnchor();
  void OnClosedPositionXChanged(const InteractivelyChanged& message);
  void OnClosedPositionYChanged(const InteractivelyChanged& message);
  void OnOpenPositionXChanged(const InteractivelyChanged& message);
  void OnOpenPositionYChanged(const InteractivelyChanged& message);
  // Nothing for a position that all captions have already.
  void ApplyPositionX(int x);
  void ApplyPositionY(int y);
  // Teletext rows are shown as they are stored, all others counted from 1.
  int GetShownRowOffset() const;

  // Streams.
  void FillStreamPopup(const CaptionsSource& source);
  void FillCaptionTypePopup();
  void OnRegionChanged(const Changed&);
  void OnStyleChanged(const Changed&);

  std::string contextName;
  CaptionsPane* pane = nullptr; // owned from CreateSelf to DestroySelf
  bool created = false;
  bool onDuty = false;
  UIF::ScrollBar scrollBar;
  std::int32_t scrollPosition = 0; // pixels; the view's copy of the bar's position
  std::int32_t formatBarHeight;
  bool regionAndStyleEnabled = false;
  SearchBox filterBox;
  StaticText streamLabel;
  Popup streamPopup;
  StaticText gridLabel;
  StaticText gridSizeText;
  StaticText fontLabel;
  Popup fontFamilyPopup;
  Popup fontWeightPopup;
  StaticText fontSizeLabel;
  HotNumber fontSizeControl;
  Popup doubleHeightPopup;
  StaticText edgeWidthLabel;
  HotNumber edgeWidthControl;
  StaticText lineSpacingLabel;
  HotNumber lineSpacingControl;
  Popup regionPopup;
  Popup stylePopup;
  StaticText captionTypeLabel;
  Popup captionTypePopup;
  boost::bimap<std::int64_t, zebcaptioning::CaptionType> captionTypeMap; // by the popup's index
  UIF::PictureButton alignLeftButton;
  UIF::PictureButton alignCenterButton;
  UIF::PictureButton alignRightButton;
  Divider alignDivider;
  UIF::PictureButton boldButton;
  UIF::PictureButton italicButton;
  UIF::PictureButton underlineButton;
  UIF::PictureButton musicNoteButton;
  Divider styleDivider;
  UIF::PictureButton textColorButton;
  UIF::PictureButton backgroundColorButton;
  UIF::PictureButton edgeColorButton;
  Swatch colorSwatch;
  UIF::ColorPickerControl colorPicker;
  HotNumber opacityControl;
  StaticText opacityUnitText;
  Divider colorDivider;
  PositionGrid closedPositionGrid;
  StaticText closedPositionXLabel;
  HotNumber closedPositionXControl;
  StaticText closedPositionYLabel;
  HotNumber closedPositionYControl;
  PositionGrid openPositionGrid;
  StaticText openPositionXLabel;
  HotNumber openPositionXControl;
  StaticText openPositionXUnitText;
  StaticText openPositionYLabel;
  HotNumber openPositionYControl;
  StaticText openPositionYUnitText;
  TextButton importSettingsButton;
  TextButton exportSettingsButton;
  TextButton addCaptionButton;
  TextButton deleteCaptionButton;
  StreamFormat streamFormat = zebcaptioning::kStreamFormat_None;
  bool isOpenCaptions = false;
  std::vector<const TD::CaptionFontRecord*> familyFonts; // of the family on show; the font list owns them
  ColorType colorType = zebcaptioning::CaptioningColor::kColorType_Text; // under edit
  boost::intrusive_ptr<CaptionFormatInfo> formatInfo;                    // on show
  bool underlineAllowed = true;
  bool italicAllowed = true;
  bool boldAllowed = true;
  RectT<std::int32_t> frameRect; // of open captions' video, in pixels
  std::int32_t gridColumns = 0;
  std::int32_t gridRows = 0;
  std::int32_t minPositionX = 0;
  std::int32_t maxPositionX = 0;
  std::int32_t minPositionY = 0;
  std::int32_t maxPositionY = 0;
  zebcaptioning::CaptioningColor lastEdgeColor; // the last one that could be seen; all zero for none yet
  UString fontStyleName;                        // what the weight popup shows
  bool eyedropperActive = false;
};

} // namespace Captivo
