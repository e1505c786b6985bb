#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Support.h"

// What the handler does upon the host's messages once the panel was open and is closed again, and in which order.
namespace Captivo::Testing {

namespace {

using zebcore::messaging::BroadcastMessage;

class ClosedPanel : public PanelTest {
 protected:
  ~ClosedPanel() override { UIF::Workspace::SetSelectionRepeater(nullptr); }
  // The handler still holds the view, which is not created any more.
  void OpenAndClose() {
    OpenPanelOn(MakeCaptions({1, 3}));
    View().Destroy(UIF::TabView::kDestroy_Closing);
    ASSERT_NE(Inspector::View(Handler()), nullptr);
    ASSERT_FALSE(View().IsCreated());
    zebcore::trace::Take();
  }
  static std::vector<std::string> TakeOrder(std::initializer_list<const char*> names) {
    std::vector<std::string> calls;
    for (const auto& call : zebcore::trace::Take()) {
      for (const char* name : names) {
        if (call.call == name)
          calls.push_back(call.call);
      }
    }
    return calls;
  }
};

MZ::CaptionsSelectionChangedMessage Chosen(double seconds) {
  MZ::CaptionsSelectionChangedMessage message;
  message.times = {Seconds(seconds)};
  return message;
}

} // namespace

TEST_F(ClosedPanel, IsNotOpenedByASelectionOfCaptions) {
  OpenAndClose();
  const CaptionsView* const closed = &View();
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, Chosen(3));
  EXPECT_EQ(&View(), closed);
  EXPECT_FALSE(View().IsCreated());
}

TEST_F(ClosedPanel, GivesWayToANewOneWhenCaptionsAreOpened) {
  OpenAndClose();
  const auto closed = Inspector::View(Handler());
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, MZ::ClosedCaptionsOpenedMessage());
  ASSERT_NE(Inspector::View(Handler()), closed);
  EXPECT_TRUE(View().IsCreated());
  EXPECT_TRUE(View().IsShown());
}

TEST_F(ClosedPanel, GivesWayToANewOneThatSelectsTheRowOfAnOpenedTrackItem) {
  OpenAndClose();
  const auto closed = Inspector::View(Handler());
  UIF::Workspace::SetSelectionRepeater([this] { SelectClip(clip); });
  MZ::CaptioningTrackItemOpenedMessage message;
  message.time = Seconds(3);
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
  ASSERT_NE(Inspector::View(Handler()), closed);
  EXPECT_TRUE(View().IsShown());
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{3}));
}

TEST_F(ClosedPanel, LeavesTheHandlerWithTheMasterClip) {
  OpenAndClose();
  const auto other = AddClip(u"Other");
  const auto otherStream = AddStream(other, MakeCaptions({5}));
  SelectClip(other);
  EXPECT_TRUE(Inspector::Source(Handler()).GetMasterClip() == other);
  project->ChangeStreamFormat(otherStream, zebcaptioning::kStreamFormat_608_CC1 + 1, u"Change format");
  EXPECT_EQ(Inspector::Source(Handler()).GetStreamFormat(), zebcaptioning::kStreamFormat_608_CC1 + 1);
  EXPECT_FALSE(View().IsCreated());
}

TEST_F(ClosedPanel, AnOpenOneForgetsThePicturesBeforeAMissingStreamIsNoticed) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Paint();
  const auto video = Inspector::Source(Pane()).GetVideoClip();
  ASSERT_GT(Inspector::CountPreviews(Pane(), video), 0U);
  EXPECT_THROW(Handler().HandleMessage(BE::CaptionStreamFormatModifiedMessage()),
               zebcore::classref::NullInterfaceException);
  EXPECT_EQ(Inspector::CountPreviews(Pane(), video), 0U);
}

TEST_F(ClosedPanel, TheFormatsAreReadAgainAfterTheStreamWasMeasured) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  SelectClip(clip);
  AddStream(clip, MakeCaptions({3}), kOpenTrack1);
  ASSERT_EQ(Inspector::Source(Handler()).GetAvailableFormats().size(), 1U);
  BE::CaptionStreamFormatModifiedMessage message; // of no stream: the measuring is the step that throws
  EXPECT_THROW(Handler().HandleMessage(message), zebcore::classref::NullInterfaceException);
  EXPECT_EQ(Inspector::Source(Handler()).GetAvailableFormats().size(), 1U);
  message.stream = stream;
  Handler().HandleMessage(message);
  EXPECT_EQ(Inspector::Source(Handler()).GetAvailableFormats().size(), 2U);
}

TEST_F(ClosedPanel, TheStationOfAStreamIsJoinedBeforeItIsMeasured) {
  MakeHandler();
  clip = AddClip();
  AddStream(clip, MakeCaptions({1}), kOpenTrack1);
  zebcore::trace::Take();
  SelectClip(clip);
  EXPECT_EQ(TakeOrder({"messaging::AddListener", "CaptioningStreamUpdater::CaptioningStreamUpdater",
                       "CaptioningStreamUpdater::UpdateTextWidthAndPositioning",
                       "CaptioningStreamUpdater::~CaptioningStreamUpdater"}),
            (std::vector<std::string>{"messaging::AddListener", "CaptioningStreamUpdater::CaptioningStreamUpdater",
                                      "CaptioningStreamUpdater::UpdateTextWidthAndPositioning",
                                      "CaptioningStreamUpdater::~CaptioningStreamUpdater"}));
}

} // namespace Captivo::Testing
