#include "Captions/shell/CaptionsHandler.h"

#include <new>

#include "Captions/contracts/CaptioningRenderableModel.h"
#include "Captions/contracts/CaptioningStreamUpdater.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Captions/shell/CaptionsCommands.h"
#include "Captions/view/CaptionsView.h"
#include "UIF/ShortcutManager.h"
#include "UIF/Workspace.h"
#include "zebappsupport/Feature.h"
#include "zebcore/Localizer.h"

namespace Captivo {

using zebcore::messaging::AddListener;
using zebcore::messaging::MessageCast;
using zebcore::messaging::RemoveListener;

namespace {

constexpr UIF::WindowClassType kWindowClass_Panel = 1;
constexpr const char* kWingMenu = "Captivo_Wing_Menu";
constexpr int kCommand_SelectFindBox = 11311;
constexpr int kCommand_SelectNextPanel = 11916;
constexpr int kCommand_SelectPreviousPanel = 11917;

UString Localize(const char* key) {
  return zebcore::config::Localizer::Get().Localize(key);
}

UString GetWindowTitle() {
  return Localize("$$$/Vidra/Handlers/Captions/CaptionsWindowTitle=Captions");
}

// The one place that asks for the feature: with the newer captions panel on, this one does not come into being.
HSL::Handler* CreateHandler(const UString& name) {
  if (zebappsupport::feature::IsFeatureEnabled("NewGenCaption"))
    return nullptr;
  return new (std::nothrow) CaptionsHandler(name);
}

[[maybe_unused]] const bool kIsFactoryRegistered =
    HSL::Handler::RegisterFactory(HSL::kCaptionsHandlerID, &CreateHandler);

} // namespace

CaptionsHandler::CaptionsHandler(const UString& name) : Handler(name, HSL::kCaptionsHandlerID) {
  RegisterWindow();
  AddListener(MZ::kStation_ClosedCaptionsActivation, this);
  AddListener(MZ::kStation_MasterClipActivation, this);
}

void CaptionsHandler::RegisterWindow() {
  UIF::AddWindowClass(UIF::kCaptionsWindowTypeID, HSL::kCaptionsHandlerID, kWindowClass_Panel);
  const UString title = GetWindowTitle();
  UIF::AddWindow(UIF::kCaptionsWindowTypeID, UIF::kDefaultWindowID, title, UIF::kDefaultWindowContextID);
  const UString menuLabel = title + u" " + Localize("$$$/Vidra/Handlers/PanelMenu=Panel Menu");
  UIF::ShortcutManager::Instance()->AddWindowMenuID(kShortcutContext, menuLabel, kWingMenu);
}

CaptionsHandler::~CaptionsHandler() {
  if (!mSource.IsEmpty())
    RemoveListener(GetSourceStation(), this);
  RemoveListener(MZ::kStation_ClosedCaptionsActivation, this);
  RemoveListener(MZ::kStation_MasterClipActivation, this);
  UIF::RemoveWindowClass(UIF::kCaptionsWindowTypeID);
  if (HasCreatedView())
    mView->Destroy(UIF::TabView::kDestroy_Closing);
}

// Null, and so no station, without a stream.
ImmutableString CaptionsHandler::GetSourceStation() const {
  const auto notification = mSource.GetCaptioningStream().Query<BE::INotification>();
  return notification ? notification->GetStationID() : ImmutableString();
}

const std::string& CaptionsHandler::GetShortcutContextName() const {
  static const std::string name = kShortcutContext;
  return name;
}

bool CaptionsHandler::ObeyCommand(const UIF::Command& command) {
  bool isObeyed = false;
  switch (command.GetID()) {
  case kCommand_SelectFindBox:
    isObeyed = OnSelectFindBox();
    break;
  case kCommand_SelectNextPanel:
    isObeyed = OnSelectNextPanel();
    break;
  case kCommand_SelectPreviousPanel:
    isObeyed = OnSelectPreviousPanel();
    break;
  default:
    break;
  }
  // Past the handler's own base, deliberately: that one answers the same three commands.
  return isObeyed || UIF::CommandHandler::ObeyCommand(command); // NOLINT(bugprone-parent-virtual-call)
}

UIF::TabView* CaptionsHandler::CreateTabView(UIF::WorkspaceFrame* frame) {
  {
    boost::shared_ptr<CaptionsView> view(new CaptionsView(GetShortcutContextName()));
    mView.swap(view);
  }
  if (!mView)
    return nullptr;
  mView->Create(HSL::kCaptionsHandlerID, GetWindowTitle(), frame, true);
  return mView.get();
}

bool CaptionsHandler::HasCreatedView() const {
  return mView && mView->IsCreated();
}

void CaptionsHandler::OpenPanel() {
  if (!HasCreatedView()) {
    if (UIF::Workspace* workspace = UIF::Workspace::Instance())
      workspace->CreateOrReanimateTabView(GetTabID(), UIF::PropertyList());
  }
  if (!HasCreatedView())
    return;
  if (!mView->IsShown())
    mView->Show(true);
  if (mView->IsShown() && !mView->IsFrontMost())
    mView->BringToFront(true, false);
}

void CaptionsHandler::HandleMessage(const zebcore::messaging::Message& message) {
  if (MessageCast<MZ::ClosedCaptionsOpenedMessage>(message))
    OpenPanel();
  else if (const auto* opened = MessageCast<MZ::CaptioningTrackItemOpenedMessage>(message))
    OnCaptioningTrackItemOpened(opened->time);
  else if (const auto* chosen = MessageCast<MZ::CaptionsSelectionChangedMessage>(message))
    OnCaptionsSelectionChanged(chosen->times, chosen->format);
  else if (const auto* selected = MessageCast<MZ::MasterClipSelectedMessage>(message))
    OnMasterClipSelected(selected->clip);
  else if (const auto* modified = MessageCast<BE::CaptionStreamFormatModifiedMessage>(message))
    OnCaptionStreamFormatModified(modified->stream);
}

void CaptionsHandler::OnCaptioningTrackItemOpened(const TickTime& time) {
  OpenPanel();
  if (HasCreatedView())
    mView->SelectCaptionAtTime(time);
}

// A closed or hidden panel is not opened by a selection.
void CaptionsHandler::OnCaptionsSelectionChanged(const std::vector<TickTime>& times, StreamFormat format) {
  if (HasCreatedView() && mView->IsShown())
    mView->SelectStreamByFormat(times, format);
}

// The view is not called: its pane listens on the same station.
void CaptionsHandler::OnMasterClipSelected(const InterfaceRef<BE::IMasterClip>& clip) {
  const CaptionsSource newSource{InterfaceRef<>(clip)};
  if (newSource == mSource)
    return;
  if (!mSource.IsEmpty())
    RemoveListener(GetSourceStation(), this);
  mSource = newSource;
  if (!mSource.IsEmpty())
    AddListener(GetSourceStation(), this);
  if (zebcaptioning::IsOpenCaptions(mSource.GetStreamFormat()))
    MeasureNewCaptions();
}

// The first caption stands for all of them.
void CaptionsHandler::MeasureNewCaptions() {
  const auto stream = mSource.GetCaptioningStream();
  std::vector<boost::intrusive_ptr<Caption>> captions;
  stream->GetCaptions(captions);
  if (!captions.empty() && !captions.front()->HasLineWidth())
    HSL::CaptioningStreamUpdater(stream).UpdateTextWidthAndPositioning(false);
}

void CaptionsHandler::OnCaptionStreamFormatModified(const InterfaceRef<BE::ICaptioningStream>& stream) {
  if (HasCreatedView())
    mView->ForgetPreview(mSource.GetVideoClip());
  if (zebcaptioning::IsOpenCaptions(stream->GetStreamFormat()))
    HSL::CaptioningStreamUpdater(stream).UpdateTextWidthAndPositioning(true);
  mSource.RefreshAvailableFormats();
}

} // namespace Captivo
