#include "Support.h"

#include <cstdlib>

#include <QApplication>
#include <QWidget>

#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "MZ/Actions.h"
#include "UIF/TabView.h"
#include "zebcore/Boundary.h"
#include "zebcore/Clock.h"
#include "zebcore/Messaging.h"
#include "zebmediatypes/FrameRate.h"

namespace Captivo::Testing {

namespace {

std::vector<RenderRequest> sRenderRequests;
RendererStage sRenderer;

class RecordingRenderer : public ML::IRenderFrame {
 public:
  void SetLookAhead(int value) override { sRenderer.settings.emplace_back("SetLookAhead", value); }
  void SetFields(int value) override { sRenderer.settings.emplace_back("SetFields", value); }
  void SetProgressive(int value) override { sRenderer.settings.emplace_back("SetProgressive", value); }
  void SetQuality(int value) override { sRenderer.settings.emplace_back("SetQuality", value); }
  void SetDownsampling(int value) override { sRenderer.settings.emplace_back("SetDownsampling", value); }
  void SetPriority(int value) override { sRenderer.settings.emplace_back("SetPriority", value); }
  ImmutableString GetStationID() const override { return "test.renderer"; }
  void SetFrameSize(const RectT<int>&, const zebmediatypes::PixelAspectRatio&) override {}
  void SetLetterbox(int) override {}
  ML::RenderStatus Render(const TickTime& time, const zebcore::utility::Guid&, const InterfaceRef<BE::IVideoSegments>&,
                          const std::vector<zebmediatypes::PixelFormat>&, bool, int, int,
                          InterfaceRef<MF::IVideoFrame>& picture, std::uint32_t& requestID, bool,
                          zebmediatypes::PixelFormat, const zebmediatypes::ColorSpace&,
                          const zebcore::utility::Guid&) override {
    requestID = static_cast<std::uint32_t>(sRenderRequests.size()) + 1;
    sRenderRequests.push_back({time, requestID});
    picture = sRenderer.picture;
    return picture ? ML::kRenderStatus_Complete : ML::kRenderStatus_Pending;
  }
};

InterfaceRef<> CreateRecordingRenderer() {
  return InterfaceRef<>(new RecordingRenderer);
}

} // namespace

void NeedApplication() {
  if (QApplication::instance())
    return;
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  static int argc = 1;
  static char name[] = "test_Captions";
  static char* argv[] = {name, nullptr};
  new QApplication(argc, argv);
}

TickTime Seconds(double seconds) {
  return zebmediatypes::TickTimeFromSeconds(seconds);
}

boost::intrusive_ptr<Caption> MakeCaption(double begin, double end, const UString& text) {
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(new zebcaptioning::CaptionState);
  state->begin = Seconds(begin);
  state->end = Seconds(end);
  state->text = text;
  state->runs.push_back({0, zebcaptioning::Share(zebcaptioning::TextSpanAttributes())});
  return new Caption(zebcaptioning::CaptionStatePtr(state));
}

std::vector<boost::intrusive_ptr<Caption>> MakeCaptions(const std::vector<double>& begins) {
  std::vector<boost::intrusive_ptr<Caption>> captions;
  for (const double begin : begins)
    captions.push_back(MakeCaption(begin, begin + 1));
  return captions;
}

struct PanelTest::Frame : UIF::WorkspaceFrame {
  void* GetContainer() override { return &container; }
  void SetTitle(const UString& newTitle) override { title = newTitle; }
  void SetShown(bool newShown) override {
    shown = newShown;
    container.setVisible(newShown);
  }
  bool IsShown() const override { return shown; }
  void BringToFront() override { isFrontMost = true; }
  bool IsFrontMost() const override { return isFrontMost; }
  bool LaysOutNewViews() const override { return laysOutNewViews; }

  QWidget container;
  UString title;
  bool shown = true;
  bool isFrontMost = false;
  bool laysOutNewViews = true;
};

PanelTest::PanelTest() : renderRequests(sRenderRequests), renderer(sRenderer) {
  NeedApplication();
  zebcore::Clock::Instance().UseManual();
  zebcore::classref::RegisterClass(ML::kRenderFrameClassID, &CreateRecordingRenderer);
  renderRequests.clear();
  renderer = RendererStage();
  project = BE::Project::CreateInMemory();
  MZ::SetActiveProject(project);
  frame = std::make_unique<Frame>();
  frame->container.resize(600, 700);
  UIF::Workspace::SetFrameFactory([this](const UString&) { return frame.get(); });
  UIF::SetMessageBoxHook([this](const UIF::MessageBoxRecord& box) {
    boxes.push_back(box);
    return box.defaultResult;
  });
  UIF::KeyModifiers::SetCurrent(UIF::KeyModifiers());
  zebcore::trace::SetOn(true);
  zebcore::trace::Take();
  zebcore::boundary::TakeReports();
}

PanelTest::~PanelTest() {
  ownedHandler.reset();
  zebcore::messaging::DeliverPostedMessages();
  for (const auto& report : zebcore::boundary::TakeReports())
    ADD_FAILURE() << "thrown in " << report.where << ": " << report.type << ": " << report.text;
  zebcore::trace::SetOn(false);
  UIF::SetMessageBoxHook(nullptr);
  UIF::Workspace::SetFrameFactory(nullptr);
  MZ::SetActiveProject(nullptr);
}

InterfaceRef<BE::MasterClip> PanelTest::AddClip(const UString& name, bool isMerged) {
  BE::MediaInfo info;
  info.width = 1920;
  info.height = 1080;
  info.frameRate = zebmediatypes::kFrameRate_25;
  info.duration = Seconds(3600);
  return project->AddClip(name, {}, info, isMerged);
}

InterfaceRef<BE::MasterClip> PanelTest::AddClip(const BE::MediaInfo& info) {
  return project->AddClip(u"Clip", {}, info, false);
}

InterfaceRef<BE::CaptioningStream> PanelTest::AddStream(const InterfaceRef<BE::MasterClip>& toClip,
                                                        const std::vector<boost::intrusive_ptr<Caption>>& captions,
                                                        StreamFormat format) {
  BE::StreamDescription description;
  description.format = format;
  std::vector<BE::NewCaption> states;
  for (const auto& caption : captions)
    states.push_back({caption->GetState()});
  const auto result = project->AddStream(toClip, description, states, u"Add stream");
  return result ? *result.value : nullptr;
}

void PanelTest::SelectClip(const InterfaceRef<BE::IMasterClip>& selected) {
  MZ::MasterClipSelectedMessage message;
  message.clip = selected;
  zebcore::messaging::BroadcastMessage(MZ::kStation_MasterClipActivation, message);
}

void PanelTest::MakeHandler() {
  ownedHandler = HSL::Handler::CreateHandler(HSL::kCaptionsHandlerID, u"Captions");
  handler = dynamic_cast<CaptionsHandler*>(ownedHandler.get());
}

void PanelTest::OpenPanel(int width, int height) {
  if (!handler)
    MakeHandler();
  frame->container.resize(width, height);
  zebcore::messaging::BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, MZ::ClosedCaptionsOpenedMessage());
}

void PanelTest::OpenPanelWithoutLayout(int width, int height) {
  if (!handler)
    MakeHandler();
  frame->container.resize(width, height);
  frame->container.show(); // a size that waits to be reported would lay the view out
  frame->laysOutNewViews = false;
  UIF::Workspace::Instance()->CreateOrReanimateTabView(handler->GetTabID(), {});
  frame->laysOutNewViews = true;
}

void PanelTest::OpenPanelOn(const std::vector<boost::intrusive_ptr<Caption>>& captions, int width, int height) {
  clip = AddClip();
  stream = AddStream(clip, captions);
  OpenPanel(width, height);
  SelectClip(clip);
  zebcore::trace::Take();
}

boost::shared_ptr<CaptionsItem> PanelTest::Row(double begin) {
  boost::shared_ptr<CaptionsItem> row;
  List().FindItem(Seconds(begin), row);
  return row;
}

std::vector<double> PanelTest::Begins() {
  std::vector<double> begins;
  for (int i = 0; i < static_cast<int>(List().GetRowCount()); ++i)
    begins.push_back(zebmediatypes::ToSeconds(List().GetTimeAtIndex(i)));
  return begins;
}

std::vector<double> PanelTest::SelectedBegins() {
  std::vector<double> begins;
  for (const TickTime& time : List().GetSelectedTimes())
    begins.push_back(zebmediatypes::ToSeconds(time));
  return begins;
}

std::vector<StreamFormat> PanelTest::OfferedFormats() {
  const std::set<StreamFormat>& formats = Inspector::Source(Pane()).GetAvailableFormats();
  return {formats.begin(), formats.end()};
}

void PanelTest::Click(double begin, std::uint8_t modifiers) {
  const auto begins = Begins();
  for (std::size_t i = 0; i < begins.size(); ++i) {
    if (begins[i] == begin) {
      const int top = static_cast<int>(i) * 75 - static_cast<int>(Inspector::ScrollOffset(Pane()));
      Pane().DispatchLeftButtonUp({10, top + 10}, UIF::KeyModifiers(modifiers));
      return;
    }
  }
  FAIL() << "no row begins at " << begin;
}

bool PanelTest::PressKey(short keyCode, std::uint8_t modifiers) {
  UIF::KeyModifiers::SetCurrent(UIF::KeyModifiers(modifiers));
  const bool handled = Pane().DispatchKeyDown(0, keyCode, false);
  UIF::KeyModifiers::SetCurrent(UIF::KeyModifiers());
  return handled;
}

void PanelTest::Tick(int milliseconds) {
  auto* manager = zebui::ui::UI_NodeManager::Get();
  auto& clock = zebcore::Clock::Instance();
  const std::int64_t target = clock.Now() + milliseconds;
  for (auto due = manager->GetTimeUntilNextDue(); due && clock.Now() + *due <= target;
       due = manager->GetTimeUntilNextDue()) {
    clock.SetNow(clock.Now() + *due);
    manager->FireDueTimers();
  }
  clock.SetNow(target);
}

void PanelTest::FocusText(double begin) {
  Text(begin).UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
}

void PanelTest::Paint() {
  frame->container.grab();
}

void PanelTest::CompleteRender(std::uint32_t id, const TickTime& time, const InterfaceRef<MF::IVideoFrame>& picture) {
  ML::RenderFrameCompletionMessage message;
  message.requestID = id;
  message.time = time;
  message.frame = picture;
  zebcore::messaging::BroadcastMessage(Inspector::RendererStation(Pane()), message);
}

InterfaceRef<BE::IVideoSegments> PanelTest::Video() {
  return clip->GetClip(BE::kMediaType_Video, 0).Query<BE::IVideoSegments>();
}

std::uint32_t PanelTest::PaintedColor(const PointT<int>& point) {
  const RectT<int> bounds = Pane().GetBounds();
  return frame->container.grab().toImage().pixel(bounds.x + point.x, bounds.y + point.y);
}

std::vector<std::string> PanelTest::TakeCalls(const std::string& start) {
  std::vector<std::string> names;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.call.rfind(start, 0) == 0)
      names.push_back(call.call);
  }
  return names;
}

} // namespace Captivo::Testing
