#include <algorithm>
#include <iterator>

#include "Captions/pane/CaptionsPane.h"
#include "Captions/shell/CaptionsCommands.h"
#include "Captions/view/CaptionsView.h"
#include "DLG/CaptionsSettingsDialogs.h"

namespace Captivo {

using zebcaptioning::CaptioningColor;
using zebcaptioning::ParagraphStyleAttributes;

namespace {

constexpr int kHostCommand_Find = 11311;
// The host's own commands: what the pane does not answer of them, nobody here does.
constexpr int kHostCommands[] = {57644, 57643, 57634, 57635, 57637, 57632, 57642, kHostCommand_Find};
constexpr char16_t kMusicNote = 0x266A;

bool IsHostCommand(int id) {
  return std::find(std::begin(kHostCommands), std::end(kHostCommands), id) != std::end(kHostCommands);
}

bool IsPanelCommand(int id) {
  switch (id) {
  case kCommand_JustifyLeft:
  case kCommand_JustifyCenter:
  case kCommand_JustifyRight:
  case kCommand_Italicize:
  case kCommand_Underline:
  case kCommand_MusicNote:
  case kCommand_BackgroundColor:
  case kCommand_TextColor:
  case kCommand_Bold:
  case kCommand_EdgeColor:
  case kCommand_SelectAll:
  case kCommand_ImportSettings:
  case kCommand_ExportSettings:
    return true;
  default:
    return false;
  }
}

} // namespace

bool CaptionsView::FindCommandStatus(int id, bool& enabled, bool&, UIF::MenuMark&, UString&) {
  return (IsHostCommand(id) || IsPanelCommand(id)) && FindCommandEnabled(id, enabled);
}

bool CaptionsView::FindCommandEnabled(int id, bool& enabled) {
  if (IsPanelCommand(id)) {
    enabled = true;
    return true;
  }
  return pane && pane->FindTextCommandStatus(id, enabled);
}

bool CaptionsView::ObeyCommand(const UIF::Command& command) {
  if (command.GetID() == kHostCommand_Find && filterBox) {
    filterBox->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Program);
    return true;
  }
  if (!pane)
    return false;
  if (IsHostCommand(command.GetID()))
    return pane->ObeyTextCommand(command);
  switch (command.GetID()) {
  case kCommand_JustifyLeft:
    ApplyAlignment(ParagraphStyleAttributes::kTextAlignment_Left);
    return true;
  case kCommand_JustifyCenter:
    ApplyAlignment(ParagraphStyleAttributes::kTextAlignment_Center);
    return true;
  case kCommand_JustifyRight:
    ApplyAlignment(ParagraphStyleAttributes::kTextAlignment_Right);
    return true;
  case kCommand_Italicize:
    ToggleItalic();
    return true;
  case kCommand_Underline:
    ToggleUnderline();
    return true;
  case kCommand_Bold:
    ToggleBold();
    return true;
  case kCommand_MusicNote:
    pane->InsertText(UString(1, kMusicNote));
    return true;
  case kCommand_BackgroundColor:
    EditColor(CaptioningColor::kColorType_Background);
    return true;
  case kCommand_TextColor:
    EditColor(CaptioningColor::kColorType_Text);
    return true;
  case kCommand_EdgeColor:
    EditColor(CaptioningColor::kColorType_Edge);
    return true;
  case kCommand_SelectAll:
    pane->SelectAllCaptions();
    return true;
  case kCommand_ImportSettings:
    DLG::CaptionsImportSettingsDialog::DisplayCaptionsImportSettingsDialog();
    return true;
  case kCommand_ExportSettings:
    DLG::CaptionsExportSettingsDialog::DisplayCaptionsExportSettingsDialog();
    return true;
  default:
    return false;
  }
}

void CaptionsView::ApplyAlignment(ParagraphStyleAttributes::TextAlignmentType alignment) {
  formatInfo->SetTextAlignment(alignment, true);
  ApplyFormatInfo(zebcaptioning::kFormatTextAlignment);
}

// The toggles go by the value and not by its uniform flag: a mixed selection becomes alike.
void CaptionsView::ToggleItalic() {
  bool isUniform = false;
  formatInfo->SetIsItalicized(!formatInfo->GetIsItalicized(isUniform), true);
  ApplyFormatInfo(zebcaptioning::kFormatItalic);
}

void CaptionsView::ToggleUnderline() {
  bool isUniform = false;
  formatInfo->SetIsUnderlined(!formatInfo->GetIsUnderlined(isUniform), true);
  ApplyFormatInfo(zebcaptioning::kFormatUnderline);
}

void CaptionsView::ToggleBold() {
  bool isUniform = false;
  formatInfo->SetIsBolded(!formatInfo->GetIsBolded(isUniform), true);
  ApplyFormatInfo(zebcaptioning::kFormatBold);
}

// Changes what the colour controls show and applies nothing.
void CaptionsView::EditColor(ColorType type) {
  colorType = type;
  MarkColorType();
  UpdateColorControls();
  pane->RestoreTextFocus();
}

} // namespace Captivo
