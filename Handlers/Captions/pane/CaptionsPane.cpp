#include "Captions/pane/CaptionsPane.h"

#include <boost/make_shared.hpp>

#include "Captions/contracts/CaptioningRenderableModel.h"
#include "Captions/contracts/CaptioningStreamUpdater.h"
#include "Captions/contracts/Stations.h"
#include "Captions/pane/PaneMeasures.h"
#include "Captions/view/CaptionsView.h"
#include "ML/RenderFrame.h"
#include "zebui/NodeManager.h"

namespace Captivo {

using zebcore::messaging::AddListener;
using zebcore::messaging::RemoveListener;
using zebui::ui::UI_NodeManager;

namespace {

constexpr int kPollPeriod = 100;
constexpr int kDeferPeriod = 250;

} // namespace

CaptionsPane::CaptionsPane(UIF::Commander* owner)
    : SubView(owner), view(static_cast<CaptionsView*>(owner)),
      pollTimer(UI_NodeManager::Get(false)->GetUniqueTimerID()),
      deferTimer(UI_NodeManager::Get(false)->GetUniqueTimerID()) {
  sourceTimeDisplayListener = std::make_unique<TimeDisplayListener>(this, UIF::kStation_SourceTimeDisplayChanged);
  sequenceTimeDisplayListener = std::make_unique<TimeDisplayListener>(this, UIF::kStation_SequenceTimeDisplayChanged);
  updater = boost::make_shared<HSL::CaptioningStreamUpdater>(source.GetCaptioningStream());
  list = boost::make_shared<CaptionsItemList>(this);
}

CaptionsPane::~CaptionsPane() {
  sequenceTimeDisplayListener.reset();
  sourceTimeDisplayListener.reset();
}

void CaptionsPane::CreateSelf(const RectT<int>&) {
  renderer = zebcore::classref::CreateClassInstanceRef(ML::kRenderFrameClassID).Query<ML::IRenderFrame>();
  renderer->SetLookAhead(2);
  renderer->SetFields(0);
  renderer->SetProgressive(1);
  renderer->SetQuality(31);
  renderer->SetDownsampling(1);
  renderer->SetPriority(6);
  rendererStation = renderer->GetStationID();

  AddListener(rendererStation, this);
  AddListener(MZ::kStation_Info, this);
  AddListener(BE::kBackendPreferencesChangedStationID, this);
  AddListener(MZ::kStation_MasterClipActivation, this);
  AddListener(MZ::kStation_SequenceActivation, this);
  AddListener(MZ::kStation_TrackItemActivation, this);
  AddListener(UIF::kStation_SourceTimeDisplayChanged, this);
  AddListener(MZ::kStation_BinActivation, this);
  AddListener(HSL::kStation_CaptionSelection, this);

  EnableDoubleBuffering(true, false);
  WantsDragAndDropEvents(true);
  SetTimer(pollTimer, kPollPeriod);
  created = true;
}

void CaptionsPane::DestroySelf() {
  created = false;
  list->Clear();
  ForgetVisibleRows();
  SubView::DestroySelf();

  if (const auto station = source.GetCaptioningStream().Query<BE::INotification>())
    RemoveListener(station->GetStationID(), this);
  if (const auto station = source.GetMasterClip().Query<BE::INotification>())
    RemoveListener(station->GetStationID(), this);
  RemoveListener(UIF::kStation_SourceTimeDisplayChanged, this);
  RemoveListener(rendererStation, this);
  RemoveListener(BE::kBackendPreferencesChangedStationID, this);
  RemoveListener(MZ::kStation_Info, this);
  RemoveListener(MZ::kStation_MasterClipActivation, this);
  RemoveListener(MZ::kStation_SequenceActivation, this);
  RemoveListener(MZ::kStation_TrackItemActivation, this);
  RemoveListener(MZ::kStation_BinActivation, this);
  // HSL::kStation_CaptionSelection is deliberately kept until the listener goes.

  SetSource(CaptionsSource());
  if (deferActive)
    RemoveTimer(deferTimer);
  RemoveTimer(pollTimer);
  renderer = nullptr;
  previewCache.clear();
}

void CaptionsPane::ForgetVisibleRows() {
  firstVisibleRow = -1;
  lastVisibleRow = -2;
}

// Commands are the view's: it calls the pane's operations by name.
bool CaptionsPane::FindCommandStatus(int, bool&, bool&, UIF::MenuMark&, UString&) {
  return false;
}

bool CaptionsPane::ObeyCommand(const UIF::Command&) {
  return false;
}

void CaptionsPane::SetBounds(const RectT<int>& bounds) {
  SubView::SetBounds(bounds);
  if (!IsUnavailable())
    UpdateVisibleRows();
}

UIF::ViewBase* CaptionsPane::GetLayoutParent() const {
  const UIF::ViewBase* parent = GetParent();
  return parent ? parent->GetLayoutParent() : nullptr;
}

int CaptionsPane::GetRowHeight() const {
  return kRowHeight;
}

int CaptionsPane::GetContentHeight(bool noExtraRow) const {
  return (static_cast<int>(list->GetRowCount()) + (noExtraRow ? 0 : 1)) * kRowHeight;
}

bool CaptionsPane::IsUnavailable() const {
  return deferActive || !source.GetCaptioningStream() || source.GetStreamFormat() == zebcaptioning::kStreamFormat_None;
}

void CaptionsPane::Defer() {
  if (deferActive)
    RemoveTimer(deferTimer);
  deferActive = true;
  SetTimer(deferTimer, kDeferPeriod);
}

bool CaptionsPane::TimerNotifySelf(std::uint32_t id) {
  const UI_NodeManager* manager = UI_NodeManager::Get();
  if (manager && manager->HasModalWindow())
    return true;
  if (id == pollTimer && !deferActive) {
    if (list->UpdateTextSelection())
      PublishSelectionFormat();
    return true;
  }
  if (id != deferTimer)
    return false;
  RemoveTimer(deferTimer);
  RunDeferredSteps();
  // Deliberately also when a step was put off once more: its own flag and the timer stand, and the next tick runs it.
  deferActive = false;
  if (view)
    view->UpdateAvailabilityAndLayout();
  return true;
}

void CaptionsPane::RunDeferredSteps() {
  if (reloadPending) {
    reloadPending = false;
    ReloadCaptions();
  }
  if (sourcePending) {
    sourcePending = false;
    if (SetSource(pendingSource))
      pendingSource = CaptionsSource();
  }
}

} // namespace Captivo
