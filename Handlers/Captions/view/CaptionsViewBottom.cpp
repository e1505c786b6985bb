#include <boost/bind/bind.hpp>

#include "Captions/pane/CaptionsPane.h"
#include "Captions/view/CaptionsView.h"
#include "Captions/view/ControlBlocks.h"
#include "Captions/view/ViewMeasures.h"
#include "DLG/CaptionsSettingsDialogs.h"
#include "zebui/Controls.h"

namespace Captivo {

using boost::placeholders::_1;

namespace {

constexpr int kScrollBar_Vertical = 1;
constexpr int kGapUnderBar_ScrollBarAtCreation = 3;

} // namespace

void CaptionsView::CreateBottomRow() {
  importSettingsButton =
      CreateTextButton("$$$/Vidra/Handlers/Captions/ImportSettings...=Import Settings",
                       "$$$/Vidra/Handlers/Captions/ImportSettingsTooltip=Define import style settings for captions",
                       &CaptionsView::OnImportSettings);
  exportSettingsButton = CreateTextButton("$$$/Vidra/Handlers/Captions/ExportSettings...=Export Settings",
                                          "$$$/Vidra/Handlers/Captions/ExportSettingsTooltip=Define export defaults",
                                          &CaptionsView::OnExportSettings);
  addCaptionButton =
      CreateTextButton("$$$/Vidra/Handlers/Captions/AddCaption...=+",
                       "$$$/Vidra/Handlers/Captions/AddCaptionTooltip=Add Caption", &CaptionsView::OnAddCaption);
  deleteCaptionButton = CreateTextButton("$$$/Vidra/Handlers/Captions/DeleteCaption...=-",
                                         "$$$/Vidra/Handlers/Captions/DeleteCaptionTooltip=Delete Caption",
                                         &CaptionsView::OnDeleteCaption);
}

CaptionsView::TextButton CaptionsView::CreateTextButton(const char* text, const char* toolTip,
                                                        void (CaptionsView::*handler)(const Changed&)) {
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
    for (const TextButton& button :
         {importSettingsButton, exportSettingsButton, addCaptionButton, deleteCaptionButton}) {
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
  zebcore::messaging::AddListener(scrollBar.GetStationID(), this);
  scrollBar.SetScrollParameters(0, 2 * barHeight, barHeight, kScrollStep);
  scrollBar.SetScrollBarPosition(scrollPosition, true);
  scrollBar.Show(true);
}

void CaptionsView::OnImportSettings(const Changed&) {
  DLG::CaptionsImportSettingsDialog::DisplayCaptionsImportSettingsDialog();
}

void CaptionsView::OnExportSettings(const Changed&) {
  DLG::CaptionsExportSettingsDialog::DisplayCaptionsExportSettingsDialog();
}

void CaptionsView::OnAddCaption(const Changed&) {
  if (pane)
    pane->AddNewCaption();
}

void CaptionsView::OnDeleteCaption(const Changed&) {
  if (pane)
    pane->DeleteSelectedCaptions();
}

} // namespace Captivo
