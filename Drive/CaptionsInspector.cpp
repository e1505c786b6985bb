#include "Drive/CaptionsInspector.h"

#include "BE/Project.h"
#include "Captions/list/CaptionsItem.h"
#include "Captions/list/CaptionsItemList.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/pane/CaptionsTextEdit.h"
#include "Captions/shell/CaptionsHandler.h"
#include "Captions/shell/CaptionsSource.h"
#include "Captions/view/CaptionsView.h"
#include "MZ/Actions.h"
#include "zebui/Controls.h"

namespace Captivo {

namespace {

using zebcore::classref::InterfaceRef;

// What CaptionsSource::GetMasterClip finds, without asking it.
InterfaceRef<BE::IMasterClip> FindMasterClip(int kind, const InterfaceRef<>& object) {
  if (kind == CaptionsSource::kKind_MasterClip)
    return object.Query<BE::IMasterClip>();
  if (kind != CaptionsSource::kKind_TrackItem)
    return nullptr;
  const auto item = object.Query<BE::IClipTrackItem>();
  const auto clip = item ? item->GetClip() : nullptr;
  return clip ? clip->GetMasterClip() : nullptr;
}

} // namespace

CaptionsInspector::CaptionsInspector(const HSL::Handler* handler)
    : mHandler(static_cast<const CaptionsHandler*>(handler)) {
  if (mHandler)
    mView = mHandler->mView.get();
  if (mView)
    mPane = mView->pane;
}

UIF::TabView* CaptionsInspector::GetTabView() const {
  return mView;
}

UIF::ViewBase* CaptionsInspector::GetPane() const {
  return mPane;
}

bool CaptionsInspector::IsViewCreated() const {
  return mView && mView->created;
}

CaptionsInspector::Row CaptionsInspector::Describe(const CaptionsItem& item) const {
  Row row;
  row.begin = item.mBeginTime;
  row.end = item.mEndTime;
  row.text = item.mText;
  row.timeEditPending = item.mTimeEditPending;
  row.selected = mPane->list->mSelected.find(item.mBeginTime) != mPane->list->mSelected.end();
  if (item.mControlsCreated) {
    // The controls are the row's own; looking at them changes nothing.
    auto& owner = const_cast<CaptionsItem&>(item);
    row.in = &owner.mInControl;
    row.out = &owner.mOutControl;
    row.textEdit = item.mTextEdit.get();
  }
  return row;
}

std::vector<CaptionsInspector::Row> CaptionsInspector::GetRows() const {
  std::vector<Row> rows;
  if (!mPane || !mPane->list)
    return rows;
  rows.reserve(mPane->list->mItems.size());
  for (const CaptionsRow& row : mPane->list->mItems)
    rows.push_back(Describe(*row.item));
  return rows;
}

std::optional<CaptionsInspector::Row> CaptionsInspector::FindRow(TickTime begin) const {
  if (!mPane || !mPane->list)
    return std::nullopt;
  const auto found = mPane->list->mItems.find(begin);
  return found == mPane->list->mItems.end() ? std::nullopt : std::optional(Describe(*found->item));
}

std::vector<CaptionsInspector::TickTime> CaptionsInspector::GetRowTimes() const {
  std::vector<TickTime> times;
  if (mPane && mPane->list) {
    for (const CaptionsRow& row : mPane->list->mItems)
      times.push_back(row.time);
  }
  return times;
}

std::vector<CaptionsInspector::TickTime> CaptionsInspector::GetSelectedTimes() const {
  return mPane && mPane->list ? mPane->list->mSelectedTimes : std::vector<TickTime>();
}

std::optional<CaptionsInspector::PaneState> CaptionsInspector::GetPaneState() const {
  if (!mPane)
    return std::nullopt;
  PaneState state;
  state.anchor = mPane->list->mAnchorTime;
  state.caret = mPane->list->mTextSelection;
  state.firstVisible = mPane->firstVisibleRow;
  state.lastVisible = mPane->lastVisibleRow;
  state.scrollOffset = mPane->scrollOffset;
  state.filterText = mPane->filterText;
  state.deferActive = mPane->deferActive;
  state.reloadPending = mPane->reloadPending;
  state.sourcePending = mPane->sourcePending;
  state.resetScrollPending = mPane->resetScrollPending;
  state.keepTextFocus = mPane->keepTextFocus;
  state.unavailable = mPane->deferActive || !Describe(mPane->source).leadsToStream;
  state.pollTimer = mPane->pollTimer;
  state.deferTimer = mPane->deferTimer;
  return state;
}

CaptionsInspector::SourceState CaptionsInspector::Describe(const CaptionsSource& source) const {
  SourceState state;
  state.kind = source.mKind;
  state.format = source.mStreamFormat;
  state.formats = source.mAvailableFormats;
  state.frameRate = source.mFrameRate;
  state.timeDisplay = source.mTimeDisplay;
  state.overrides = source.mDisplayOverrides;
  const bool isSequence = source.mKind == CaptionsSource::kKind_Sequence;
  const bool isVideo = (isSequence ? source.mSequenceMediaIsVideo : source.mClipMediaIsVideo) != 0;
  const auto chosen = source.mDisplayOverrides[(isSequence ? 2 : 0) + (isVideo ? 0 : 1)];
  if (chosen != zebmediatypes::kTimeDisplay_Invalid)
    state.chosenDisplay = chosen;
  const auto clip = FindMasterClip(source.mKind, source.mObject);
  if (clip && state.format != zebcaptioning::kStreamFormat_None)
    state.stream = BE::CaptioningStreamFromMasterClip(clip, state.format);
  std::set<zebcaptioning::StreamFormat> offered;
  BE::QueryAvailableCaptionStreamFormats(clip, offered);
  state.leadsToStream = !offered.empty();
  if (isSequence)
    state.zeroPoint = BE::SequenceUtils::GetZeroPoint(source.mObject.Query<BE::ISequence>());
  else
    state.zeroPoint = MZ::MasterClip(clip).GetMediaOffset(0);
  return state;
}

std::optional<CaptionsInspector::SourceState> CaptionsInspector::GetSource(SourceOf of) const {
  if (of == SourceOf::Handler)
    return mHandler ? std::optional(Describe(mHandler->mSource)) : std::nullopt;
  if (!mPane)
    return std::nullopt;
  return Describe(of == SourceOf::Pane ? mPane->source : mPane->pendingSource);
}

std::vector<CaptionsInspector::Preview> CaptionsInspector::GetPreviews() const {
  std::vector<Preview> previews;
  if (!mPane)
    return previews;
  for (const auto& [video, entries] : mPane->previewCache) {
    for (const auto& [time, entry] : entries)
      previews.push_back(
          {video, time, static_cast<bool>(entry.frame), static_cast<bool>(entry.model), entry.requestHash});
  }
  return previews;
}

std::map<std::uint32_t, InterfaceRef<BE::IVideoSegments>> CaptionsInspector::GetPendingRenders() const {
  return mPane ? mPane->pendingRenders : std::map<std::uint32_t, InterfaceRef<BE::IVideoSegments>>();
}

int CaptionsInspector::GetScrollPosition() const {
  return mView ? mView->scrollPosition : 0;
}

int CaptionsInspector::GetFormatBarHeight() const {
  return mView ? mView->formatBarHeight : 0;
}

boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> CaptionsInspector::GetFormatInfo() const {
  return mView ? mView->formatInfo : nullptr;
}

// A field that the view does not have is left out, so that the names stand here in one place as the panel grows.
#define CAPTIVO_FIELD(name, key, value)                                                                                \
  if constexpr (requires { view.name; })                                                                               \
  fields.emplace_back(key, value)

template <class View>
void CaptionsInspector::CollectFields(const View& view, std::vector<std::pair<std::string, Value>>& fields) {
  const auto number = [](auto field) { return Value(static_cast<std::int64_t>(field)); };
  const auto color = [](const auto& field) {
    return Value(std::array<float, 4>{field.red, field.green, field.blue, field.alpha});
  };
  const auto rect = [](const auto& field) {
    return Value(std::array<int, 4>{field.x, field.y, field.width, field.height});
  };
  CAPTIVO_FIELD(streamFormat, "stream_format", number(view.streamFormat));
  CAPTIVO_FIELD(isOpenCaptions, "is_open", view.isOpenCaptions);
  CAPTIVO_FIELD(colorType, "color_type", number(view.colorType));
  CAPTIVO_FIELD(lastEdgeColor, "last_edge_color", color(view.lastEdgeColor));
  CAPTIVO_FIELD(eyedropperActive, "eyedropper_active", view.eyedropperActive);
  CAPTIVO_FIELD(fontStyleName, "font_style_name", view.fontStyleName);
  CAPTIVO_FIELD(underlineAllowed, "underline_allowed", view.underlineAllowed);
  CAPTIVO_FIELD(italicAllowed, "italic_allowed", view.italicAllowed);
  CAPTIVO_FIELD(boldAllowed, "bold_allowed", view.boldAllowed);
  CAPTIVO_FIELD(regionAndStyleEnabled, "region_and_style_enabled", view.regionAndStyleEnabled);
  CAPTIVO_FIELD(onDuty, "on_duty", view.onDuty);
  CAPTIVO_FIELD(gridColumns, "grid_columns", number(view.gridColumns));
  CAPTIVO_FIELD(gridRows, "grid_rows", number(view.gridRows));
  CAPTIVO_FIELD(frameRect, "frame_rect", rect(view.frameRect));
  CAPTIVO_FIELD(minPositionX, "min_position_x", number(view.minPositionX));
  CAPTIVO_FIELD(maxPositionX, "max_position_x", number(view.maxPositionX));
  CAPTIVO_FIELD(minPositionY, "min_position_y", number(view.minPositionY));
  CAPTIVO_FIELD(maxPositionY, "max_position_y", number(view.maxPositionY));
}

#undef CAPTIVO_FIELD

std::vector<std::pair<std::string, CaptionsInspector::Value>> CaptionsInspector::GetViewFields() const {
  std::vector<std::pair<std::string, Value>> fields;
  if (mView)
    CollectFields(*mView, fields);
  return fields;
}

// In the order in which the panel makes them. A control that is not made yet is left out.
#define CAPTIVO_CONTROL(name)                                                                                          \
  if constexpr (requires { view.name; })                                                                               \
  add(#name, view.name)

template <class View> void CaptionsInspector::CollectControls(View& view, std::vector<Control>& controls) {
  const auto add = [&](const char* name, auto& field) {
    if constexpr (requires { field.get(); }) {
      if (field)
        controls.push_back({name, static_cast<zebui::ui::UI_Node*>(field.get())});
    } else {
      controls.push_back({name, &field});
    }
  };
  CAPTIVO_CONTROL(filterBox);
  CAPTIVO_CONTROL(streamLabel);
  CAPTIVO_CONTROL(streamPopup);
  CAPTIVO_CONTROL(gridLabel);
  CAPTIVO_CONTROL(gridSizeText);
  CAPTIVO_CONTROL(fontLabel);
  CAPTIVO_CONTROL(fontFamilyPopup);
  CAPTIVO_CONTROL(fontWeightPopup);
  CAPTIVO_CONTROL(fontSizeLabel);
  CAPTIVO_CONTROL(fontSizeControl);
  CAPTIVO_CONTROL(doubleHeightPopup);
  CAPTIVO_CONTROL(edgeWidthLabel);
  CAPTIVO_CONTROL(edgeWidthControl);
  CAPTIVO_CONTROL(lineSpacingLabel);
  CAPTIVO_CONTROL(lineSpacingControl);
  CAPTIVO_CONTROL(regionPopup);
  CAPTIVO_CONTROL(stylePopup);
  CAPTIVO_CONTROL(captionTypeLabel);
  CAPTIVO_CONTROL(captionTypePopup);
  CAPTIVO_CONTROL(alignLeftButton);
  CAPTIVO_CONTROL(alignCenterButton);
  CAPTIVO_CONTROL(alignRightButton);
  CAPTIVO_CONTROL(alignDivider);
  CAPTIVO_CONTROL(boldButton);
  CAPTIVO_CONTROL(italicButton);
  CAPTIVO_CONTROL(underlineButton);
  CAPTIVO_CONTROL(musicNoteButton);
  CAPTIVO_CONTROL(styleDivider);
  CAPTIVO_CONTROL(backgroundColorButton);
  CAPTIVO_CONTROL(textColorButton);
  CAPTIVO_CONTROL(edgeColorButton);
  CAPTIVO_CONTROL(colorSwatch);
  CAPTIVO_CONTROL(colorPicker);
  CAPTIVO_CONTROL(opacityControl);
  CAPTIVO_CONTROL(opacityUnitText);
  CAPTIVO_CONTROL(colorDivider);
  CAPTIVO_CONTROL(closedPositionGrid);
  CAPTIVO_CONTROL(closedPositionXLabel);
  CAPTIVO_CONTROL(closedPositionXControl);
  CAPTIVO_CONTROL(closedPositionYLabel);
  CAPTIVO_CONTROL(closedPositionYControl);
  CAPTIVO_CONTROL(openPositionGrid);
  CAPTIVO_CONTROL(openPositionXLabel);
  CAPTIVO_CONTROL(openPositionXControl);
  CAPTIVO_CONTROL(openPositionXUnitText);
  CAPTIVO_CONTROL(openPositionYLabel);
  CAPTIVO_CONTROL(openPositionYControl);
  CAPTIVO_CONTROL(openPositionYUnitText);
  CAPTIVO_CONTROL(importSettingsButton);
  CAPTIVO_CONTROL(exportSettingsButton);
  CAPTIVO_CONTROL(addCaptionButton);
  CAPTIVO_CONTROL(deleteCaptionButton);
  if (view.pane)
    controls.push_back({"pane", static_cast<UIF::ViewBase*>(view.pane)});
  controls.push_back({"scrollBar", &view.scrollBar});
}

#undef CAPTIVO_CONTROL

std::vector<CaptionsInspector::Control> CaptionsInspector::GetControls() const {
  std::vector<Control> controls;
  if (IsViewCreated())
    CollectControls(*mView, controls);
  return controls;
}

} // namespace Captivo
