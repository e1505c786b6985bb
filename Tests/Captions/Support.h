#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "BE/Project.h"
#include "Captions/list/CaptionsItem.h"
#include "Captions/list/CaptionsItemList.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/pane/CaptionsTextEdit.h"
#include "Captions/shell/CaptionsHandler.h"
#include "Captions/view/CaptionsView.h"
#include "HSL/Module.h"
#include "ML/RenderFrame.h"
#include "UIF/Dialogs.h"
#include "UIF/Workspace.h"
#include "zebcore/Trace.h"
#include "zebui/Controls.h"

namespace Captivo {

// Reads, and where a test must set a stage also writes, what the panel keeps to itself.
class CaptionsInspector {
 public:
  static auto& View(CaptionsHandler& handler) { return handler.mView; }
  static auto& Source(CaptionsHandler& handler) { return handler.mSource; }

  static CaptionsPane* Pane(CaptionsView& view) { return view.pane; }
  static auto& Bar(CaptionsView& view) { return view.scrollBar; }
  static auto& ScrollPosition(CaptionsView& view) { return view.scrollPosition; }
  static auto& AddButton(CaptionsView& view) { return view.addCaptionButton; }
  static auto& DeleteButton(CaptionsView& view) { return view.deleteCaptionButton; }
  static auto& GridColumns(CaptionsView& view) { return view.gridColumns; }
  static auto& GridRows(CaptionsView& view) { return view.gridRows; }
  static auto& FormatInfo(CaptionsView& view) { return view.formatInfo; }
  static auto& RegionAndStyleEnabled(CaptionsView& view) { return view.regionAndStyleEnabled; }
  static auto& FormatBarHeight(CaptionsView& view) { return view.formatBarHeight; }
  static bool IsOnDuty(CaptionsView& view) { return view.onDuty; }
  static bool IsCreated(CaptionsView& view) { return view.created; }
  static void LayoutContent(CaptionsView& view, const RectT<int>& rect) { view.LayoutContent(rect); }
  static void FillStreamPopup(CaptionsView& view, const CaptionsSource& source) { view.FillStreamPopup(source); }
  static void FillCaptionTypePopup(CaptionsView& view) { view.FillCaptionTypePopup(); }
  static void ReportFilterChange(CaptionsView& view) { view.OnFilterChanged(); }

  static void ReportClosedGrid(CaptionsView& view) { view.OnClosedGridChanged(zebui::ui::UI_ControlChangedMessage()); }

  // The controls of the format bar by their fields.
#define CAPTIVO_VIEW_FIELD(Name, field)                                                                                \
  static auto& Name(CaptionsView& view) {                                                                              \
    return view.field;                                                                                                 \
  }
  CAPTIVO_VIEW_FIELD(FilterBox, filterBox)
  CAPTIVO_VIEW_FIELD(StreamLabel, streamLabel)
  CAPTIVO_VIEW_FIELD(StreamPopup, streamPopup)
  CAPTIVO_VIEW_FIELD(GridLabel, gridLabel)
  CAPTIVO_VIEW_FIELD(GridSizeText, gridSizeText)
  CAPTIVO_VIEW_FIELD(FontLabel, fontLabel)
  CAPTIVO_VIEW_FIELD(FontFamilyPopup, fontFamilyPopup)
  CAPTIVO_VIEW_FIELD(FontWeightPopup, fontWeightPopup)
  CAPTIVO_VIEW_FIELD(FontSizeLabel, fontSizeLabel)
  CAPTIVO_VIEW_FIELD(FontSizeControl, fontSizeControl)
  CAPTIVO_VIEW_FIELD(DoubleHeightPopup, doubleHeightPopup)
  CAPTIVO_VIEW_FIELD(EdgeWidthLabel, edgeWidthLabel)
  CAPTIVO_VIEW_FIELD(EdgeWidthControl, edgeWidthControl)
  CAPTIVO_VIEW_FIELD(LineSpacingLabel, lineSpacingLabel)
  CAPTIVO_VIEW_FIELD(LineSpacingControl, lineSpacingControl)
  CAPTIVO_VIEW_FIELD(RegionPopup, regionPopup)
  CAPTIVO_VIEW_FIELD(StylePopup, stylePopup)
  CAPTIVO_VIEW_FIELD(CaptionTypeLabel, captionTypeLabel)
  CAPTIVO_VIEW_FIELD(CaptionTypePopup, captionTypePopup)
  CAPTIVO_VIEW_FIELD(CaptionTypeMap, captionTypeMap)
  CAPTIVO_VIEW_FIELD(AlignLeftButton, alignLeftButton)
  CAPTIVO_VIEW_FIELD(AlignCenterButton, alignCenterButton)
  CAPTIVO_VIEW_FIELD(AlignRightButton, alignRightButton)
  CAPTIVO_VIEW_FIELD(AlignDivider, alignDivider)
  CAPTIVO_VIEW_FIELD(BoldButton, boldButton)
  CAPTIVO_VIEW_FIELD(ItalicButton, italicButton)
  CAPTIVO_VIEW_FIELD(UnderlineButton, underlineButton)
  CAPTIVO_VIEW_FIELD(MusicNoteButton, musicNoteButton)
  CAPTIVO_VIEW_FIELD(StyleDivider, styleDivider)
  CAPTIVO_VIEW_FIELD(TextColorButton, textColorButton)
  CAPTIVO_VIEW_FIELD(BackgroundColorButton, backgroundColorButton)
  CAPTIVO_VIEW_FIELD(EdgeColorButton, edgeColorButton)
  CAPTIVO_VIEW_FIELD(ColorSwatch, colorSwatch)
  CAPTIVO_VIEW_FIELD(ColorPicker, colorPicker)
  CAPTIVO_VIEW_FIELD(OpacityControl, opacityControl)
  CAPTIVO_VIEW_FIELD(OpacityUnitText, opacityUnitText)
  CAPTIVO_VIEW_FIELD(ColorDivider, colorDivider)
  CAPTIVO_VIEW_FIELD(ClosedPositionGrid, closedPositionGrid)
  CAPTIVO_VIEW_FIELD(ClosedPositionXLabel, closedPositionXLabel)
  CAPTIVO_VIEW_FIELD(ClosedPositionXControl, closedPositionXControl)
  CAPTIVO_VIEW_FIELD(ClosedPositionYLabel, closedPositionYLabel)
  CAPTIVO_VIEW_FIELD(ClosedPositionYControl, closedPositionYControl)
  CAPTIVO_VIEW_FIELD(OpenPositionGrid, openPositionGrid)
  CAPTIVO_VIEW_FIELD(OpenPositionXLabel, openPositionXLabel)
  CAPTIVO_VIEW_FIELD(OpenPositionXControl, openPositionXControl)
  CAPTIVO_VIEW_FIELD(OpenPositionXUnitText, openPositionXUnitText)
  CAPTIVO_VIEW_FIELD(OpenPositionYLabel, openPositionYLabel)
  CAPTIVO_VIEW_FIELD(OpenPositionYControl, openPositionYControl)
  CAPTIVO_VIEW_FIELD(OpenPositionYUnitText, openPositionYUnitText)
  CAPTIVO_VIEW_FIELD(ImportSettingsButton, importSettingsButton)
  CAPTIVO_VIEW_FIELD(ExportSettingsButton, exportSettingsButton)
  CAPTIVO_VIEW_FIELD(AddCaptionButton, addCaptionButton)
  CAPTIVO_VIEW_FIELD(DeleteCaptionButton, deleteCaptionButton)
  CAPTIVO_VIEW_FIELD(StreamFormatOnShow, streamFormat)
  CAPTIVO_VIEW_FIELD(IsOpenCaptions, isOpenCaptions)
  CAPTIVO_VIEW_FIELD(FamilyFonts, familyFonts)
  CAPTIVO_VIEW_FIELD(ColorType, colorType)
  CAPTIVO_VIEW_FIELD(UnderlineAllowed, underlineAllowed)
  CAPTIVO_VIEW_FIELD(ItalicAllowed, italicAllowed)
  CAPTIVO_VIEW_FIELD(BoldAllowed, boldAllowed)
  CAPTIVO_VIEW_FIELD(FrameRect, frameRect)
  CAPTIVO_VIEW_FIELD(MinPositionX, minPositionX)
  CAPTIVO_VIEW_FIELD(MaxPositionX, maxPositionX)
  CAPTIVO_VIEW_FIELD(MinPositionY, minPositionY)
  CAPTIVO_VIEW_FIELD(MaxPositionY, maxPositionY)
  CAPTIVO_VIEW_FIELD(LastEdgeColor, lastEdgeColor)
  CAPTIVO_VIEW_FIELD(FontStyleName, fontStyleName)
  CAPTIVO_VIEW_FIELD(EyedropperActive, eyedropperActive)
  CAPTIVO_VIEW_FIELD(ContextName, contextName)
#undef CAPTIVO_VIEW_FIELD

  static auto& Source(CaptionsPane& pane) {
    return pane.source;
  }
  static CaptionsItemList& List(CaptionsPane& pane) {
    return *pane.list;
  }
  static auto& Updater(CaptionsPane& pane) {
    return *pane.updater;
  }
  static auto& ScrollOffset(CaptionsPane& pane) {
    return pane.scrollOffset;
  }
  static auto& FirstVisibleRow(CaptionsPane& pane) {
    return pane.firstVisibleRow;
  }
  static auto& LastVisibleRow(CaptionsPane& pane) {
    return pane.lastVisibleRow;
  }
  static auto& ResetScrollPending(CaptionsPane& pane) {
    return pane.resetScrollPending;
  }
  static auto& DeferActive(CaptionsPane& pane) {
    return pane.deferActive;
  }
  static auto& ReloadPending(CaptionsPane& pane) {
    return pane.reloadPending;
  }
  static auto& SourcePending(CaptionsPane& pane) {
    return pane.sourcePending;
  }
  static auto& PendingSource(CaptionsPane& pane) {
    return pane.pendingSource;
  }
  static auto& FilterText(CaptionsPane& pane) {
    return pane.filterText;
  }
  static auto& KeepTextFocus(CaptionsPane& pane) {
    return pane.keepTextFocus;
  }
  static auto PollTimer(CaptionsPane& pane) {
    return pane.pollTimer;
  }
  static auto DeferTimer(CaptionsPane& pane) {
    return pane.deferTimer;
  }
  static bool IsCreated(CaptionsPane& pane) {
    return pane.created;
  }
  static void SelectRememberedOrFirst(CaptionsPane& pane) {
    pane.SelectRememberedOrFirst();
  }
  static auto& RendererStation(CaptionsPane& pane) {
    return pane.rendererStation;
  }
  static auto& PreviewCache(CaptionsPane& pane) {
    return pane.previewCache;
  }
  static auto& FindPreviewEntry(CaptionsPane& pane, const InterfaceRef<BE::IVideoSegments>& video,
                                const TickTime& time) {
    return pane.FindPreviewEntry(video, time, nullptr);
  }
  static std::size_t CountPreviews(CaptionsPane& pane, const InterfaceRef<BE::IVideoSegments>& video) {
    const auto found = pane.previewCache.find(video);
    return found == pane.previewCache.end() ? 0 : found->second.size();
  }

  static StreamFormat Format(const CaptionsItemList& list) {
    return list.mStreamFormat;
  }
  static int Columns(const CaptionsItemList& list) {
    return list.mColumns;
  }
  static int Rows(const CaptionsItemList& list) {
    return list.mRows;
  }
  static const TickTime& Anchor(CaptionsItemList& list) {
    return list.mAnchorTime;
  }
  static const TextRange& TextSelection(CaptionsItemList& list) {
    return list.mTextSelection;
  }
  static std::vector<TickTime> SelectedKeys(CaptionsItemList& list) {
    std::vector<TickTime> keys;
    for (const CaptionsRow& row : list.mSelected)
      keys.push_back(row.time);
    return keys;
  }

  // No selection of the host leads to a sequence as a source.
  static CaptionsSource MakeSequenceSource(const InterfaceRef<>& sequence) {
    return {CaptionsSource::kKind_Sequence, sequence};
  }
  static const TimeDisplay& DisplayOverride(const CaptionsSource& source, int kind, bool isVideo) {
    return source.mDisplayOverrides[(kind == CaptionsSource::kKind_Sequence ? 2U : 0U) + (isVideo ? 0U : 1U)];
  }
  static auto& SequenceMediaIsVideo(CaptionsSource& source) {
    return source.mSequenceMediaIsVideo;
  }

  static bool IsTimeEditPending(const CaptionsItem& item) {
    return item.mTimeEditPending;
  }
  static void ForgetFontProbe() {
    CaptionsItem::sFontProbe = CaptionsItem::FontProbe::NotProbed;
  }
};

} // namespace Captivo

namespace Captivo::Testing {

using Inspector = CaptionsInspector;

inline constexpr StreamFormat kOpenTrack1 = 0x4F504E31; // "OPN1"

// The toolkit's application object, offscreen; made once.
void NeedApplication();

TickTime Seconds(double seconds);
boost::intrusive_ptr<Caption> MakeCaption(double begin, double end, const UString& text = u"Text");
// Captions of a second each, beginning at these seconds.
std::vector<boost::intrusive_ptr<Caption>> MakeCaptions(const std::vector<double>& begins);

struct RenderRequest {
  TickTime time;
  std::uint32_t id;
};

// What the renderer was told, and what it answers with: without a picture it is still at work.
struct RendererStage {
  std::vector<std::pair<std::string, int>> settings;
  InterfaceRef<MF::IVideoFrame> picture;
};

// A person who clicks message boxes away, and a host with one project, a frame for the panel and a renderer that only
// remembers what it was asked for.
class PanelTest : public testing::Test {
 protected:
  PanelTest();
  ~PanelTest() override;

  // A clip of 25 frames a second.
  InterfaceRef<BE::MasterClip> AddClip(const UString& name = u"Clip", bool isMerged = false);
  InterfaceRef<BE::MasterClip> AddClip(const BE::MediaInfo& info);
  InterfaceRef<BE::CaptioningStream> AddStream(const InterfaceRef<BE::MasterClip>& clip,
                                               const std::vector<boost::intrusive_ptr<Caption>>& captions,
                                               StreamFormat format = zebcaptioning::kStreamFormat_608_CC1);
  void SelectClip(const InterfaceRef<BE::IMasterClip>& clip);

  // The panel on a clip with these captions, in a container of this size.
  void OpenPanelOn(const std::vector<boost::intrusive_ptr<Caption>>& captions, int width = 600, int height = 700);
  void OpenPanel(int width = 600, int height = 700);
  // As it was created, before the host lays it out.
  void OpenPanelWithoutLayout(int width = 600, int height = 700);

  void MakeHandler();
  CaptionsHandler& Handler() { return *handler; }
  CaptionsView& View() { return *Inspector::View(*handler); }
  CaptionsPane& Pane() { return *Inspector::Pane(View()); }
  CaptionsItemList& List() { return Inspector::List(Pane()); }
  boost::shared_ptr<CaptionsItem> Row(double begin);
  CaptionsTextEdit& Text(double begin) { return *Row(begin)->GetTextEdit(); }
  std::vector<double> Begins();
  std::vector<double> SelectedBegins();
  // What the source on show offers, in the order of the popup.
  std::vector<StreamFormat> OfferedFormats();

  void Click(double begin, std::uint8_t modifiers = 0);
  bool PressKey(short keyCode, std::uint8_t modifiers = 0);
  // Turns the clock, firing what falls due.
  void Tick(int milliseconds);
  void FocusText(double begin);
  // One pass over everything that is on show.
  void Paint();
  // What is painted at a point of the pane, as 0xAARRGGBB.
  std::uint32_t PaintedColor(const PointT<int>& point);

  // The report that the renderer's worker would send.
  void CompleteRender(std::uint32_t id, const TickTime& time, const InterfaceRef<MF::IVideoFrame>& picture);
  InterfaceRef<BE::IVideoSegments> Video();

  // Names of the recorded calls since the last time.
  std::vector<std::string> TakeCalls(const std::string& start);

  InterfaceRef<BE::Project> project;
  InterfaceRef<BE::MasterClip> clip;
  InterfaceRef<BE::CaptioningStream> stream;
  std::vector<UIF::MessageBoxRecord> boxes;
  std::vector<RenderRequest>& renderRequests;
  RendererStage& renderer;

 private:
  struct Frame;
  std::unique_ptr<Frame> frame;
  std::unique_ptr<HSL::Handler> ownedHandler;
  CaptionsHandler* handler = nullptr;
};

} // namespace Captivo::Testing
