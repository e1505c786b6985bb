#include "Captions/pane/CaptionsPane.h"
#include "Captions/shell/CaptionsCommands.h"
#include "Captions/view/CaptionsView.h"

namespace Captivo {

using zebcaptioning::CaptionFormatParameter;
using zebcaptioning::ParagraphStyleAttributes;

namespace {

// The host's own commands that are handed to the pane.
constexpr int kHostCommands[] = {57644, 57643, 57634, 57635, 57637, 57632, 57642};
constexpr char16_t kMusicNote = 0x266A;

bool IsHostCommand(int id) {
  for (const int command : kHostCommands) {
    if (command == id)
      return true;
  }
  return false;
}

bool IsPanelCommand(int id) {
  switch (id) {
  case kCommand_JustifyLeft:
  case kCommand_JustifyCenter:
  case kCommand_JustifyRight:
  case kCommand_Italicize:
  case kCommand_Underline:
  case kCommand_MusicNote:
  case kCommand_Bold:
  case kCommand_SelectAll:
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
  case kCommand_SelectAll:
    pane->SelectAllCaptions();
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

// A copy, because the format that is published in the end takes the place of formatInfo.
void CaptionsView::ApplyFormatInfo(CaptionFormatParameter parameter) {
  const boost::intrusive_ptr<zebcaptioning::CaptionFormatInfo> copy(new zebcaptioning::CaptionFormatInfo(*formatInfo));
  pane->ApplyFormat(parameter, *copy);
}

} // namespace Captivo
