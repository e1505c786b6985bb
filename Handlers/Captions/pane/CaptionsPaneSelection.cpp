#include "Captions/contracts/CaptioningStreamUpdater.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/pane/CaptionsTextEdit.h"
#include "Captions/pane/PaneMeasures.h"
#include "Captions/view/CaptionsView.h"
#include "UIF/Dialogs.h"

namespace Captivo {

namespace {

constexpr const char* kContextMenu = "Captivo_Context_Menu";

// As the host hands them to KeyDownSelf.
constexpr short kKey_Backspace = 8;
constexpr short kKey_PageUp = -33;
constexpr short kKey_PageDown = -34;
constexpr short kKey_End = -35;
constexpr short kKey_Home = -36;
constexpr short kKey_Up = -38;
constexpr short kKey_Down = -40;
constexpr short kKey_Delete = -46;

} // namespace

void CaptionsPane::ApplySelectionGesture(const TickTime& time, const UIF::KeyModifiers& modifiers, GestureKind kind) {
  updater->CommitChangesUndoable(true);
  bool changed = false;
  if (modifiers.Has(UIF::KeyModifiers::kToggle)) {
    changed = list->ToggleSelection(time);
  } else if (modifiers.Has(UIF::KeyModifiers::kExtend)) {
    changed = list->ExtendSelection(time);
  } else {
    changed = list->SelectSingle(time);
    if (changed && kind != GestureKind::None)
      BroadcastSelectedCaption();
  }
  if (!changed)
    return;
  if (view)
    view->ScrollSelectionIntoView();
  Invalidate();
  PublishSelectionFormat();
}

void CaptionsPane::BroadcastSelectedCaption() {
  HSL::CaptionSelectedMessage message;
  list->GetSelectedCaption(message.caption);
  if (!message.caption)
    return;
  message.stream = source.GetCaptioningStream();
  zebcore::messaging::PostMessageToUIThread(HSL::kStation_CaptionSelection, message, false);
}

void CaptionsPane::LeftButtonUpSelf(const PointT<int>& point, const UIF::KeyModifiers& modifiers) {
  const unsigned index = (scrollOffset + static_cast<unsigned>(point.y)) / kRowHeight;
  if (index < list->GetRowCount()) {
    const TickTime time = list->GetTimeAtIndex(static_cast<int>(index));
    ApplySelectionGesture(time, modifiers, GestureKind::Mouse);
    list->ResetTextSelection();
    keepTextFocus = false;
    return;
  }
  list->ResetTextSelection();
  list->ClearSelection();
  if (view)
    view->ScrollSelectionIntoView();
  Invalidate();
  PublishSelectionFormat();
}

// The menu acts on what was selected before, so the selection stays.
void CaptionsPane::RightButtonDownSelf(const PointT<int>& point, const UIF::KeyModifiers&) {
  UIF::MenuUtils::TrackContextMenu(kContextMenu, GetZEBNode(), point);
}

bool CaptionsPane::KeyDownSelf(wchar_t, short keyCode, bool) {
  if (list->HasFocusInText())
    return false;
  TickTime time = kTime_Min;
  if (keyCode == kKey_Delete || keyCode == kKey_Backspace) {
    updater->CommitChangesUndoable(true);
    RemoveSelectedCaptions();
  } else if (!FindTimeForKey(keyCode, time)) {
    return false;
  }
  // With a time that names no row this only commits, so that a deletion is a step of its own.
  ApplySelectionGesture(time, UIF::KeyModifiers::GetCurrent(), GestureKind::Keyboard);
  return true;
}

bool CaptionsPane::FindTimeForKey(short keyCode, TickTime& time) {
  const int pageRows = (ClientRect().height + kRowHeight - 1) / kRowHeight;
  switch (keyCode) {
  case kKey_Down:
    time = list->GetTimeByOffset(1);
    return true;
  case kKey_Up:
    time = list->GetTimeByOffset(-1);
    return true;
  case kKey_Home:
    time = list->GetFirstTime();
    return true;
  case kKey_End:
    time = list->GetLastTime();
    return true;
  case kKey_PageDown:
    time = list->GetTimeByOffset(pageRows);
    return true;
  case kKey_PageUp:
    time = list->GetTimeByOffset(-pageRows);
    return true;
  default:
    return false;
  }
}

void CaptionsPane::SelectCaptionAtTime(const TickTime& time) {
  list->SelectSingle(time);
  if (view)
    view->ScrollSelectionIntoView();
  PublishSelectionFormat();
  Invalidate();
}

void CaptionsPane::SelectCaptionTimes(const std::vector<TickTime>& times) {
  const std::vector<TickTime> formerTimes = list->GetSelectedTimes();
  list->RestoreSelection(times);
  // What the caret stood in before is no part of a row that was not the selected one.
  if (list->GetSelectedCount() == 1 && list->GetSelectedTimes() != formerTimes && !list->HasFocusInText())
    list->ResetTextSelection();
  UpdateViewAfterRowChange();
}

void CaptionsPane::SelectAllCaptions() {
  list->SelectAll();
  PublishSelectionFormat();
  Invalidate();
}

void CaptionsPane::PublishSelectionFormat() {
  boost::intrusive_ptr<CaptionsTextEdit> textEdit;
  list->GetSelectedTextEdit(textEdit);
  if (textEdit && textEdit->UI_HasKeyboardFocus(false))
    keepTextFocus = true;

  boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> info(new zebcaptioning::CaptionFormatInfo);
  list->GatherSelectionFormat(info);
  UString family;
  bool isUniform = false;
  info->GetFontFamily(family, isUniform);
  if (zebcaptioning::TextSpanAttributes::IsGenericFontName(family))
    info->SetFontFamily(zebcaptioning::TextSpanAttributes::GetGenericUIFontName(family), isUniform);
  if (view)
    view->PublishFormat(info);
}

} // namespace Captivo
