#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Captions/shell/CaptionsModule.h"
#include "Support.h"
#include "UIF/ShortcutManager.h"
#include "zebappsupport/Feature.h"
#include "zebcore/Boundary.h"
#include "zebcore/Localizer.h"

namespace Captivo::Testing {

namespace {

using zebcore::messaging::BroadcastMessage;
using zebcore::messaging::CountListeners;
using zebcore::messaging::IsListening;

class Handling : public PanelTest {
 protected:
  ~Handling() override { zebappsupport::feature::SetFeatureEnabled("NewGenCaption", false); }
  bool HasWindowClass() {
    for (const auto& windowClass : UIF::GetWindowClasses())
      if (windowClass.typeID == UIF::kCaptionsWindowTypeID)
        return true;
    return false;
  }
  const zebcore::messaging::Listener* HandlerListener() { return &Handler(); }
};

class CountingHandler : public CaptionsHandler {
 public:
  CountingHandler() : CaptionsHandler(u"Captions") {}
  bool OnSelectNextPanel() override {
    ++asked;
    return answer;
  }
  int asked = 0;
  bool answer = false;
};

InterfaceRef<BE::INotification> Notifying(const InterfaceRef<BE::CaptioningStream>& stream) {
  return stream.Query<BE::INotification>();
}

} // namespace

TEST_F(Handling, WithTheNewerPanelOnNothingIsRegisteredYetTheCommandsAre) {
  zebappsupport::feature::SetFeatureEnabled("NewGenCaption", true);
  const auto before = CountListeners(MZ::kStation_ClosedCaptionsActivation);
  EXPECT_EQ(HSL::Handler::CreateHandler(HSL::kCaptionsHandlerID, u"Captions"), nullptr);
  EXPECT_EQ(CountListeners(MZ::kStation_ClosedCaptionsActivation), before);
  EXPECT_FALSE(HasWindowClass());
  const std::unique_ptr<HSL::Module> module(CreateModule(u"Captions"));
  ASSERT_NE(module, nullptr);
  EXPECT_NE(UIF::ShortcutManager::Instance()->GetContext("captions"), nullptr);
}

TEST_F(Handling, TheShortcutContextHoldsThirteenCommandsInOrder) {
  const std::unique_ptr<HSL::Module> module = HSL::Module::CreateModule(HSL::kCaptionsModuleID, u"Captions");
  const auto* context = UIF::ShortcutManager::Instance()->GetContext("captions");
  ASSERT_NE(context, nullptr);
  std::vector<int> numbers;
  for (const auto& command : context->GetCommands()) {
    numbers.push_back(command.number);
    EXPECT_EQ(command.kind, 0);
    EXPECT_TRUE(command.decal.empty());
    EXPECT_TRUE(command.text.IsNull());
    EXPECT_FALSE(command.flag);
  }
  EXPECT_EQ(numbers, (std::vector<int>{32000, 32001, 32002, 32010, 32011, 32012, 32013, 32014, 32015, 32016, 32020,
                                       32030, 32031}));
  EXPECT_EQ(context->GetCommands().front().name, "cmd.captions.justify.left");
  EXPECT_EQ(context->GetName(), u"Captions Panel");
}

TEST_F(Handling, DestroyingAHandlerWithoutAViewWithdrawsStationsAndWindowClass) {
  {
    CaptionsHandler own(u"Captions");
    const zebcore::messaging::Listener* listener = &own;
    EXPECT_TRUE(HasWindowClass());
    EXPECT_TRUE(IsListening(MZ::kStation_ClosedCaptionsActivation, listener));
    EXPECT_TRUE(IsListening(MZ::kStation_MasterClipActivation, listener));
    zebcore::trace::Take();
  }
  EXPECT_FALSE(HasWindowClass());
  EXPECT_EQ(CountListeners(MZ::kStation_ClosedCaptionsActivation), 0U);
  EXPECT_EQ(TakeCalls("TabView::Destroy"), std::vector<std::string>{});
}

TEST_F(Handling, AFurtherViewTakesThePlaceOfTheFirst) {
  OpenPanel();
  const boost::shared_ptr<CaptionsView> first = Inspector::View(Handler());
  UIF::WorkspaceFrame* frameOfFirst = first->GetFrame();
  UIF::TabView* second = Handler().CreateTabView(frameOfFirst);
  EXPECT_EQ(Inspector::View(Handler()).get(), second);
  EXPECT_NE(second, first.get());
  EXPECT_EQ(first.use_count(), 1);
  first->Destroy(UIF::TabView::kDestroy_Closing);
}

TEST_F(Handling, OpeningAPanelThatIsInFrontDoesNothing) {
  OpenPanel();
  ASSERT_TRUE(View().IsFrontMost());
  zebcore::trace::Take();
  OpenPanel();
  EXPECT_EQ(TakeCalls("TabView::"), std::vector<std::string>{});
}

TEST_F(Handling, TheWingMenuIsTheTitleABlankAndThePanelMenu) {
  MakeHandler();
  bool found = false;
  for (const auto& menu : UIF::ShortcutManager::Instance()->GetWindowMenuIDs()) {
    if (menu.menu == "Captivo_Wing_Menu") {
      EXPECT_EQ(menu.context, "captions");
      EXPECT_EQ(menu.label, u"Captions Panel Menu");
      found = true;
    }
  }
  EXPECT_TRUE(found);
}

TEST_F(Handling, APanelCommandThatIsNotDoneFallsThroughToTheBase) {
  CountingHandler own;
  EXPECT_FALSE(own.ObeyCommand(UIF::Command(11916)));
  EXPECT_EQ(own.asked, 1);
  own.answer = true;
  EXPECT_TRUE(own.ObeyCommand(UIF::Command(11916)));
}

TEST_F(Handling, AnyOtherCommandGoesToTheBase) {
  CountingHandler own;
  EXPECT_FALSE(own.ObeyCommand(UIF::Command(32000)));
  EXPECT_EQ(own.asked, 0);
}

TEST_F(Handling, CaptionsOpenedMakesAndShowsThePanel) {
  MakeHandler();
  EXPECT_EQ(Inspector::View(Handler()), nullptr);
  OpenPanel();
  ASSERT_NE(Inspector::View(Handler()), nullptr);
  EXPECT_TRUE(View().IsCreated());
  EXPECT_TRUE(View().IsShown());
  EXPECT_TRUE(View().IsFrontMost());
}

TEST_F(Handling, ATrackItemOpenedMakesThePanelAndSelectsTheRow) {
  OpenPanelOn(MakeCaptions({1, 3}));
  MZ::CaptioningTrackItemOpenedMessage message;
  message.time = Seconds(3);
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{3}));
}

TEST_F(Handling, ATrackItemOpenedWithNoWorkspaceIsGuarded) {
  MakeHandler();
  UIF::Workspace::SetFrameFactory(nullptr);
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, MZ::CaptioningTrackItemOpenedMessage());
  EXPECT_EQ(Inspector::View(Handler()), nullptr);
}

TEST_F(Handling, ASelectionOfCaptionsDoesNotOpenAClosedPanel) {
  MakeHandler();
  MZ::CaptionsSelectionChangedMessage message;
  message.times = {Seconds(1)};
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
  EXPECT_EQ(Inspector::View(Handler()), nullptr);
}

TEST_F(Handling, ASelectionOfCaptionsPassesAHiddenPanelBy) {
  OpenPanelOn(MakeCaptions({1, 3}));
  View().Show(false);
  MZ::CaptionsSelectionChangedMessage message;
  message.times = {Seconds(3)};
  message.format = zebcaptioning::kStreamFormat_608_CC1;
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{1}));
  View().Show(true);
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{3}));
}

TEST_F(Handling, ASelectionInAnotherStreamSwitchesToItAndInAnUnknownOneDoesNothing) {
  OpenPanelOn(MakeCaptions({1, 3}));
  AddStream(clip, MakeCaptions({5, 7}), zebcaptioning::kStreamFormat_608_CC1 + 1);
  MZ::CaptionsSelectionChangedMessage message;
  message.times = {Seconds(7)};
  message.format = zebcaptioning::kStreamFormat_608_CC1 + 2;
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{1}));
  message.format = zebcaptioning::kStreamFormat_608_CC1 + 1;
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{7}));
}

TEST_F(Handling, AClosedPanelsHandlerFollowsTheMasterClip) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  SelectClip(clip);
  EXPECT_TRUE(Inspector::Source(Handler()).GetMasterClip() == clip);
  EXPECT_TRUE(IsListening(Notifying(stream)->GetStationID(), HandlerListener()));
  SelectClip(nullptr);
  EXPECT_TRUE(Inspector::Source(Handler()).IsEmpty());
  EXPECT_FALSE(IsListening(Notifying(stream)->GetStationID(), HandlerListener()));
}

TEST_F(Handling, SelectingTheSameClipTwiceJoinsItsStationOnce) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  SelectClip(clip);
  zebcore::trace::Take();
  SelectClip(clip);
  EXPECT_EQ(TakeCalls("messaging::AddListener"), std::vector<std::string>{});
}

TEST_F(Handling, AModifiedFormatIsFollowedWithoutAView) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  SelectClip(clip);
  project->ChangeStreamFormat(stream, zebcaptioning::kStreamFormat_608_CC1 + 1, u"Change format");
  EXPECT_EQ(Inspector::Source(Handler()).GetStreamFormat(), zebcaptioning::kStreamFormat_608_CC1 + 1);
}

TEST_F(Handling, OpenCaptionsThatWereNeverMeasuredAreMeasuredWhenTheirClipIsSelected) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1, 3}), kOpenTrack1);
  ASSERT_FALSE(stream->FindByBegin(Seconds(3))->HasLineWidth());
  SelectClip(clip);
  EXPECT_TRUE(stream->FindByBegin(Seconds(1))->HasLineWidth());
  EXPECT_TRUE(stream->FindByBegin(Seconds(3))->HasLineWidth());
}

TEST_F(Handling, AMeasuredFirstCaptionStandsForAllOthers) {
  MakeHandler();
  const auto first = MakeCaption(1, 2);
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(new zebcaptioning::CaptionState(*first->GetState()));
  state->paragraph.lineWidth = 100;
  first->SetState(state);
  clip = AddClip();
  stream = AddStream(clip, {first, MakeCaption(3, 4)}, kOpenTrack1);
  zebcore::trace::Take();
  SelectClip(clip);
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::UpdateTextWidthAndPositioning"), std::vector<std::string>{});
  EXPECT_FALSE(stream->FindByBegin(Seconds(3))->HasLineWidth());
}

TEST_F(Handling, AnEmptyStreamOfOpenCaptionsIsNotMeasured) {
  MakeHandler();
  clip = AddClip();
  AddStream(clip, {}, kOpenTrack1);
  zebcore::trace::Take();
  SelectClip(clip);
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::UpdateTextWidthAndPositioning"), std::vector<std::string>{});
}

TEST_F(Handling, AStreamThatBecameOpenIsMeasuredWhole) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1, 3}));
  SelectClip(clip);
  project->ChangeStreamFormat(stream, kOpenTrack1, u"Change format");
  EXPECT_TRUE(stream->FindByBegin(Seconds(3))->HasLineWidth());
}

TEST_F(Handling, AModifiedFormatWithoutAStreamThrowsTheHostsException) {
  MakeHandler();
  Handler().HandleMessage(MZ::CaptionsSelectionChangedMessage());
  EXPECT_THROW(Handler().HandleMessage(BE::CaptionStreamFormatModifiedMessage()),
               zebcore::classref::NullInterfaceException);
}

} // namespace Captivo::Testing
