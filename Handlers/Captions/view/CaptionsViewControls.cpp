#include <boost/bind.hpp>

#include "Captions/contracts/Stations.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/view/CaptionsView.h"
#include "Captions/view/ViewMeasures.h"
#include "MZ/Actions.h"
#include "zebcore/DebugDatabase.h"
#include "zebcore/Localizer.h"
#include "zebui/Controls.h"

namespace Captivo {

using zebcore::messaging::AddListener;
using zebcore::messaging::RemoveListener;
using zebui::ui::UI_ControlChangedMessage;

namespace {

constexpr int kToolTipDelay = 400;
constexpr int kScrollBar_Vertical = 1;
constexpr int kGapUnderBar_ScrollBarAtCreation = 3;

UString Localize(const char* key) {
  return zebcore::config::Localizer::Get().Localize(key);
}

} // namespace

void CaptionsView::CreateSelf(const RectT<int>& bounds) {
  // The switch can only take away what was enabled before, which nothing does: regions and styles stay off.
  const bool newReading =
      zebcore::debug::DebugDatabase::Instance().GetValue("New_XML_Caption_Reading", "false") == "true";
  if (regionAndStyleEnabled)
    regionAndStyleEnabled = newReading;
  EnableDoubleBuffering(true);
  streamFormat = zebcaptioning::kStreamFormat_608;

  addCaptionButton =
      CreateTextButton("$$$/Vidra/Handlers/Captions/AddCaption...=+",
                       "$$$/Vidra/Handlers/Captions/AddCaptionTooltip=Add Caption", &CaptionsView::OnAddCaption);
  deleteCaptionButton = CreateTextButton("$$$/Vidra/Handlers/Captions/DeleteCaption...=-",
                                         "$$$/Vidra/Handlers/Captions/DeleteCaptionTooltip=Delete Caption",
                                         &CaptionsView::OnDeleteCaption);
  CreatePaneAndScrollBar(bounds);

  AddListener(MZ::kStation_SequenceActivation, this);
  AddListener(BE::kBackendProjectActivationStationID, this);
  created = true;
  UpdateControlStates();
}

CaptionsView::TextButton
CaptionsView::CreateTextButton(const char* text, const char* toolTip,
                               void (CaptionsView::*handler)(const UI_ControlChangedMessage&)) {
  TextButton button(new zebui::controls::UI_TextButton);
  GetZEBNode()->ChildPushBack(button);
  button->SetText(Localize(text));
  button->NotifyWhenChanged(boost::bind(handler, this, _1));
  button->UI_SetEnabled(true);
  button->UI_SetToolTip(Localize(toolTip), kToolTipDelay);
  button->UI_Show(true);
  return button;
}

// Unlike any later layout, this one neither asks whether the view is stacked nor keeps the buttons apart.
void CaptionsView::CreatePaneAndScrollBar(const RectT<int>& bounds) {
  const int barWidth = UIF::ScrollBar::GetDefaultSize();
  const int paneTop = bounds.y + formatBarHeight + kGapUnderBar;
  const int paneHeight = bounds.Bottom() - paneTop - kSpaceUnderPane;
  const RectT<int> paneRect{bounds.x, paneTop, bounds.width - barWidth, paneHeight};
  pane = new CaptionsPane(this);
  pane->Create(this, paneRect);
  pane->Show(true);
  if (paneHeight > 0) {
    pane->SetBounds(paneRect);
    PlaceBottomButtons(bounds, bounds.Right() - kAddCaptionFromRight);
    if (!pane->IsShown())
      pane->Show(true);
    for (const TextButton& button : {addCaptionButton, deleteCaptionButton}) {
      if (!button->UI_IsShown())
        button->UI_Show(true);
    }
  } else {
    pane->Show(false);
    addCaptionButton->UI_Show(false);
    deleteCaptionButton->UI_Show(false);
  }

  const int barTop = bounds.y + formatBarHeight + kGapUnderBar_ScrollBarAtCreation;
  const int barHeight = bounds.Bottom() - kSpaceUnderPane - barTop;
  scrollBar.Create(this, {bounds.Right() - barWidth, barTop, barWidth, barHeight}, kScrollBar_Vertical, 0);
  AddListener(scrollBar.GetStationID(), this);
  scrollBar.SetScrollParameters(0, 2 * barHeight, barHeight, kScrollStep);
  scrollBar.SetScrollBarPosition(scrollPosition, true);
  scrollBar.Show(true);
}

void CaptionsView::DestroySelf() {
  created = false;
  if (pane) {
    pane->Destroy();
    delete pane;
    pane = nullptr;
  }
  addCaptionButton.reset();
  deleteCaptionButton.reset();
  RemoveListener(scrollBar.GetStationID(), this);
  RemoveListener(MZ::kStation_SequenceActivation, this);
  RemoveListener(BE::kBackendProjectActivationStationID, this);
  scrollBar.Destroy();
  TabView::DestroySelf();
}

void CaptionsView::OnAddCaption(const UI_ControlChangedMessage&) {
  if (pane)
    pane->AddNewCaption();
}

void CaptionsView::OnDeleteCaption(const UI_ControlChangedMessage&) {
  if (pane)
    pane->DeleteSelectedCaptions();
}

void CaptionsView::UpdateControlStates() {
  const bool isUnavailable = pane->IsUnavailable();
  bool isSelected = pane->HasSelection();
  const bool isReadOnly = MZ::GetActiveProject()->IsReadOnly();
  if (isReadOnly) {
    isSelected = false;
    pane->Disable();
  } else {
    pane->Enable(true);
  }
  addCaptionButton->SetDisabled(isUnavailable || isReadOnly);
  deleteCaptionButton->SetDisabled(isUnavailable || !isSelected);
}

void CaptionsView::UpdateAvailability() {
  const bool isAvailable = !pane->IsUnavailable();
  addCaptionButton->UI_Show(isAvailable);
  deleteCaptionButton->UI_Show(isAvailable);
  pane->Show(isAvailable);
}

void CaptionsView::UpdateAvailabilityAndLayout() {
  UpdateAvailability();
  UpdateControlStates();
}

} // namespace Captivo
