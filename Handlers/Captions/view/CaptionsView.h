#pragma once

#include <string>
#include <vector>

#include "Captions/contracts/CaptionFormatInfo.h"
#include "Captions/shell/CaptionsSource.h"
#include "Captions/shell/HostTypes.h"
#include "UIF/ScrollBar.h"
#include "UIF/TabView.h"
#include "zebcore/Messaging.h"

namespace zebui::controls {
class UI_TextButton;
}

namespace zebui::ui {
struct UI_ControlChangedMessage;
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

  using TextButton = boost::intrusive_ptr<zebui::controls::UI_TextButton>;

  // Controls.
  TextButton CreateTextButton(const char* text, const char* toolTip,
                              void (CaptionsView::*handler)(const zebui::ui::UI_ControlChangedMessage&));
  void CreatePaneAndScrollBar(const RectT<int>& bounds);
  void OnAddCaption(const zebui::ui::UI_ControlChangedMessage&);
  void OnDeleteCaption(const zebui::ui::UI_ControlChangedMessage&);
  void UpdateControlStates();

  // Layout.
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
  void ApplyFormatInfo(zebcaptioning::CaptionFormatParameter parameter);

  std::string contextName;
  CaptionsPane* pane = nullptr; // owned from CreateSelf to DestroySelf
  bool created = false;
  bool onDuty = false;
  UIF::ScrollBar scrollBar;
  std::int32_t scrollPosition = 0; // pixels; the view's copy of the bar's position
  std::int32_t formatBarHeight;
  bool regionAndStyleEnabled = false;
  TextButton addCaptionButton;
  TextButton deleteCaptionButton;
  StreamFormat streamFormat = zebcaptioning::kStreamFormat_None;
  bool isOpenCaptions = false;
  boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> formatInfo;
  bool underlineAllowed = true;
  bool italicAllowed = true;
  bool boldAllowed = true;
  RectT<std::int32_t> frameRect;
  std::int32_t gridColumns = 0;
  std::int32_t gridRows = 0;
};

} // namespace Captivo
