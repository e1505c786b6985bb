#include <algorithm>

#include "Captions/contracts/CaptioningStreamUpdater.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/pane/CaptionsTextEdit.h"
#include "Captions/view/CaptionsView.h"
#include "UIF/Dialogs.h"
#include "zebcore/Localizer.h"

namespace Captivo {

namespace {

constexpr TickTime kDefaultCaptionDuration{254016000000};

constexpr int kCommand_Delete = 57632;
constexpr int kCommand_Copy = 57634;
constexpr int kCommand_Cut = 57635;
constexpr int kCommand_Paste = 57637;

void ShowWarning(const char* text, const char* title) {
  constexpr int kFlag_Acknowledge = 1;
  constexpr int kIcon_Warning = 4;
  const auto& localizer = zebcore::config::Localizer::Get();
  UIF::MessageBoxW(localizer.Localize(text), localizer.Localize(title), kFlag_Acknowledge, kIcon_Warning, 0);
}

} // namespace

void CaptionsPane::CommitChanges() {
  updater->CommitChangesUndoable(true);
}

void CaptionsPane::RefreshAfterRowChange() {
  UpdateVisibleRows();
  UpdateViewAfterRowChange();
}

void CaptionsPane::UpdateViewAfterRowChange() {
  if (!view)
    return;
  if (resetScrollPending) {
    view->UpdateScrollRange(true);
    resetScrollPending = false;
  }
  view->ScrollSelectionIntoView();
  view->UpdateStackedDimensions(true);
  view->UpdateAvailability();
  PublishSelectionFormat();
}

void CaptionsPane::AddNewCaption() {
  updater->CommitChangesUndoable(false);
  if (!list->InsertCaptionAfterSelection(kDefaultCaptionDuration)) {
    ShowWarning("$$$/Vidra/Handlers/Captions/NoRoomForCaption=There is not enough time available to insert a new "
                "caption between the current caption and the next caption in the list.",
                "$$$/Vidra/Handlers/Captions/NoRoomForCaptionTitle=Closed Captioning");
    return;
  }
  boost::intrusive_ptr<Caption> caption;
  list->GetSelectedCaption(caption);
  resetScrollPending = true;
  ++lastVisibleRow;
  RefreshAfterRowChange();
  updater->AddCaption(caption);
  SetFocus();
}

void CaptionsPane::DeleteSelectedCaptions() {
  updater->CommitChangesUndoable(true);
  RemoveSelectedCaptions();
}

void CaptionsPane::RemoveSelectedCaptions() {
  std::vector<TickTime> times;
  list->RemoveSelectedRows(times);
  if (times.empty())
    return;
  resetScrollPending = true;
  RefreshAfterRowChange();
  if (list->GetRowCount() == 0)
    ForgetVisibleRows();
  // Set once more, for the next refresh.
  resetScrollPending = true;
  updater->RemoveCaptions(times, false);
  SetFocus();
}

void CaptionsPane::ApplyTextChange(const TickTime& begin, const UString& oldText, const UString& newText,
                                   const TextRange& range, bool flag) {
  if (newText == oldText)
    return;
  // Deliberately by order and not by length.
  if (newText < oldText)
    list->UpdateTextSelection();
  updater->ApplyTextChange(begin, oldText, newText, range, flag);
}

void CaptionsPane::ChangeCaptionTimes(const TickTime& oldBegin, const TickTime& newBegin, const TickTime& duration) {
  TickTime fittedDuration = duration;
  bool reordered = false;
  if (!list->MoveRow(oldBegin, newBegin, fittedDuration, reordered)) {
    ShowWarning("$$$/Vidra/Handlers/Captions/CaptionDuplicateTime=The selected caption cannot be moved because another "
                "caption already exists in the specified location.",
                "$$$/Vidra/Handlers/Captions/CaptionDuplicateTimeTitle=Closed Captioning");
    return;
  }
  if (reordered)
    RefreshAfterRowChange();
  // After a change of the begin the old time names no row, and the gesture only commits.
  if (!list->IsSelected(oldBegin) || list->GetSelectedCount() > 1)
    ApplySelectionGesture(oldBegin, UIF::KeyModifiers::GetCurrent(), GestureKind::Keyboard);
  updater->UpdateCaptionStartAndDuration(oldBegin, newBegin, fittedDuration, false, GetTimeDisplay());
  RequestPreview(GetLastFrameTime(newBegin + fittedDuration), source);
}

void CaptionsPane::RevertTextChange(bool takeFocus) {
  updater->RevertChanges();
  if (!takeFocus)
    return;
  keepTextFocus = true;
  SetFocus();
  PublishSelectionFormat();
}

void CaptionsPane::InsertText(const UString& text) {
  const std::vector<TickTime> times = list->GetSelectedTimes();
  boost::intrusive_ptr<CaptionsTextEdit> textEdit;
  list->GetSelectedTextEdit(textEdit);
  if (times.empty() || !textEdit)
    return;
  const TextRange range = list->NormalizeTextSelection();
  const UString oldValue = textEdit->GetValue();
  UString newValue = oldValue.substr(0, std::min(oldValue.size(), range.first)) + text;
  if (range.second < oldValue.size())
    newValue += oldValue.substr(range.second);
  textEdit->SetValue(newValue, false);
  list->SetStoredTextOfSelection(newValue);
  updater->ApplyTextChange(times.front(), oldValue, newValue, range, !keepTextFocus);
  // One further, whatever the length: what is inserted is a single unit.
  const TextRange caret{range.first + 1, range.first + 1};
  list->SetTextSelection(caret);
  if (keepTextFocus)
    list->RestoreTextSelection(caret);
  PublishSelectionFormat();
}

void CaptionsPane::ApplyFormat(zebcaptioning::CaptionFormatParameter parameter,
                               const zebcaptioning::CaptionFormatInfo& info) {
  const std::vector<TickTime> times = list->GetSelectedTimes();
  if (times.empty())
    return;
  const TextRange range = list->NormalizeTextSelection();
  updater->ApplyFormatParameter(parameter, info, times, range);
  if (keepTextFocus)
    list->RestoreTextSelection(range);
  PublishSelectionFormat();
}

void CaptionsPane::RestoreTextFocus() {
  const TextRange range = list->NormalizeTextSelection();
  if (keepTextFocus)
    list->RestoreTextSelection(range);
  PublishSelectionFormat();
}

bool CaptionsPane::FindTextCommandStatus(int id, bool& enabled) const {
  boost::intrusive_ptr<CaptionsTextEdit> textEdit;
  list->GetSelectedTextEdit(textEdit);
  if (!textEdit)
    return false;
  switch (id) {
  case kCommand_Delete:
    enabled = textEdit->CanDelete();
    return true;
  case kCommand_Copy:
    enabled = textEdit->CanCopy();
    return true;
  case kCommand_Cut:
    enabled = textEdit->CanCut();
    return true;
  case kCommand_Paste:
    enabled = textEdit->CanPaste();
    return true;
  default:
    return false;
  }
}

bool CaptionsPane::ObeyTextCommand(const UIF::Command& command) {
  boost::intrusive_ptr<CaptionsTextEdit> textEdit;
  list->GetSelectedTextEdit(textEdit);
  if (!textEdit)
    return false;
  switch (command.GetID()) {
  case kCommand_Delete:
    textEdit->Delete();
    return true;
  case kCommand_Copy:
    textEdit->Copy();
    return true;
  case kCommand_Cut:
    textEdit->Cut();
    return true;
  case kCommand_Paste:
    textEdit->Paste();
    return true;
  default:
    return false;
  }
}

} // namespace Captivo
