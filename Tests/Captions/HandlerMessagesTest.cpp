#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "Fading.h"
#include "Support.h"

// What the handler does upon the host's messages, with and without a panel.
namespace Captivo::Testing {

namespace {

using zebcore::messaging::BroadcastMessage;
using zebcore::messaging::IsListening;
using Measuring = std::pair<std::string, bool>; // the stream's id, and whether measured captions were measured again

class HandlerMessages : public PanelTest {
 protected:
  ~HandlerMessages() override { UIF::Workspace::SetSelectionRepeater(nullptr); }
  const zebcore::messaging::Listener* HandlerListener() { return &Handler(); }
  static std::vector<Measuring> TakeMeasurings() {
    std::vector<Measuring> measurings;
    for (const auto& call : zebcore::trace::Take()) {
      if (call.call == "CaptioningStreamUpdater::UpdateTextWidthAndPositioning")
        measurings.emplace_back(call.args.at("stream").get<std::string>(), call.args.at("all").get<bool>());
    }
    return measurings;
  }
};

MZ::CaptioningTrackItemOpenedMessage TrackItemOpened(double seconds) {
  MZ::CaptioningTrackItemOpenedMessage message;
  message.time = Seconds(seconds);
  return message;
}

BE::CaptionStreamFormatModifiedMessage FormatModified(const InterfaceRef<BE::ICaptioningStream>& stream) {
  BE::CaptionStreamFormatModifiedMessage message;
  message.stream = stream;
  return message;
}

InterfaceRef<BE::INotification> Notifying(const InterfaceRef<BE::CaptioningStream>& stream) {
  return stream.Query<BE::INotification>();
}

} // namespace

TEST_F(HandlerMessages, CaptionsOpenedMakesAndShowsThePanel) {
  MakeHandler();
  EXPECT_EQ(Inspector::View(Handler()), nullptr);
  OpenPanel();
  ASSERT_NE(Inspector::View(Handler()), nullptr);
  EXPECT_TRUE(View().IsCreated());
  EXPECT_TRUE(View().IsShown());
  EXPECT_TRUE(View().IsFrontMost());
}

TEST_F(HandlerMessages, ATrackItemOpenedSelectsTheRowOfAnOpenPanel) {
  OpenPanelOn(MakeCaptions({1, 3}));
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, TrackItemOpened(3));
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{3}));
}

TEST_F(HandlerMessages, ATrackItemOpenedBringsAClosedPanelUpAndThenSelectsTheRow) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1, 3}));
  UIF::Workspace::SetSelectionRepeater([this] { SelectClip(clip); });
  ASSERT_EQ(Inspector::View(Handler()), nullptr);
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, TrackItemOpened(3));
  ASSERT_NE(Inspector::View(Handler()), nullptr);
  EXPECT_TRUE(View().IsCreated());
  EXPECT_TRUE(View().IsShown());
  EXPECT_TRUE(View().IsFrontMost());
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{3}));
}

TEST_F(HandlerMessages, ATrackItemOpenedShowsAHiddenPanel) {
  OpenPanelOn(MakeCaptions({1, 3}));
  View().Show(false);
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, TrackItemOpened(3));
  EXPECT_TRUE(View().IsShown());
  EXPECT_EQ(SelectedBegins(), (std::vector<double>{3}));
}

TEST_F(HandlerMessages, ATrackItemOpenedWithNoWorkspaceIsGuarded) {
  MakeHandler();
  UIF::Workspace::SetFrameFactory(nullptr);
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, MZ::CaptioningTrackItemOpenedMessage());
  EXPECT_EQ(Inspector::View(Handler()), nullptr);
}

TEST_F(HandlerMessages, ASelectionOfCaptionsDoesNotOpenAClosedPanel) {
  MakeHandler();
  MZ::CaptionsSelectionChangedMessage message;
  message.times = {Seconds(1)};
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, message);
  EXPECT_EQ(Inspector::View(Handler()), nullptr);
}

TEST_F(HandlerMessages, ASelectionOfCaptionsPassesAHiddenPanelBy) {
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

TEST_F(HandlerMessages, ASelectionInAnotherStreamSwitchesToItAndInAnUnknownOneDoesNothing) {
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

TEST_F(HandlerMessages, AClosedPanelsHandlerFollowsTheMasterClip) {
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

TEST_F(HandlerMessages, SelectingTheSameClipTwiceJoinsItsStationOnce) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  SelectClip(clip);
  zebcore::trace::Take();
  SelectClip(clip);
  EXPECT_EQ(TakeCalls("messaging::AddListener"), std::vector<std::string>{});
}

TEST_F(HandlerMessages, AModifiedFormatIsFollowedWithoutAView) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  SelectClip(clip);
  project->ChangeStreamFormat(stream, zebcaptioning::kStreamFormat_608_CC1 + 1, u"Change format");
  EXPECT_EQ(Inspector::Source(Handler()).GetStreamFormat(), zebcaptioning::kStreamFormat_608_CC1 + 1);
}

TEST_F(HandlerMessages, OpenCaptionsThatWereNeverMeasuredAreMeasuredWhenTheirClipIsSelected) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1, 3}), kOpenTrack1);
  ASSERT_FALSE(stream->FindByBegin(Seconds(3))->HasLineWidth());
  zebcore::trace::Take();
  SelectClip(clip);
  EXPECT_EQ(TakeMeasurings(), (std::vector<Measuring>{{stream->GetID(), false}}));
  EXPECT_TRUE(stream->FindByBegin(Seconds(1))->HasLineWidth());
  EXPECT_TRUE(stream->FindByBegin(Seconds(3))->HasLineWidth());
}

TEST_F(HandlerMessages, AMeasuredFirstCaptionStandsForAllOthers) {
  MakeHandler();
  const auto first = MakeCaption(1, 2);
  const boost::intrusive_ptr<zebcaptioning::CaptionState> state(new zebcaptioning::CaptionState(*first->GetState()));
  state->paragraph.lineWidth = 100;
  first->SetState(state);
  clip = AddClip();
  stream = AddStream(clip, {first, MakeCaption(3, 4)}, kOpenTrack1);
  zebcore::trace::Take();
  SelectClip(clip);
  EXPECT_EQ(TakeMeasurings(), std::vector<Measuring>{});
  EXPECT_FALSE(stream->FindByBegin(Seconds(3))->HasLineWidth());
}

TEST_F(HandlerMessages, AnEmptyStreamOfOpenCaptionsIsNotMeasured) {
  MakeHandler();
  clip = AddClip();
  AddStream(clip, {}, kOpenTrack1);
  zebcore::trace::Take();
  SelectClip(clip);
  EXPECT_EQ(TakeMeasurings(), std::vector<Measuring>{});
}

TEST_F(HandlerMessages, AStreamThatBecameOpenIsMeasuredWhole) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1, 3}));
  SelectClip(clip);
  zebcore::trace::Take();
  project->ChangeStreamFormat(stream, kOpenTrack1, u"Change format");
  EXPECT_EQ(TakeMeasurings(), (std::vector<Measuring>{{stream->GetID(), true}}));
  EXPECT_TRUE(stream->FindByBegin(Seconds(3))->HasLineWidth());
}

TEST_F(HandlerMessages, AStreamThatIsMeasuredIsTheMessagesEvenIfAnotherOneIsFollowed) {
  MakeHandler();
  clip = AddClip();
  AddStream(clip, MakeCaptions({1}));
  SelectClip(clip);
  stream = AddStream(AddClip(), MakeCaptions({3}), kOpenTrack1);
  zebcore::trace::Take();
  Handler().HandleMessage(FormatModified(stream));
  EXPECT_EQ(TakeMeasurings(), (std::vector<Measuring>{{stream->GetID(), true}}));
}

TEST_F(HandlerMessages, AStreamThatBecameAClosedFormatIsNotMeasured) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  SelectClip(clip);
  zebcore::trace::Take();
  project->ChangeStreamFormat(stream, zebcaptioning::kStreamFormat_608_CC1 + 1, u"Change format");
  EXPECT_EQ(TakeMeasurings(), std::vector<Measuring>{});
}

TEST_F(HandlerMessages, AModifiedFormatMakesAnOpenPanelForgetThePicturesOfItsClip) {
  OpenPanelOn(MakeCaptions({1, 3}));
  Paint();
  const auto video = Inspector::Source(Pane()).GetVideoClip();
  ASSERT_TRUE(video);
  ASSERT_GT(Inspector::CountPreviews(Pane(), video), 0U);
  Handler().HandleMessage(FormatModified(stream));
  EXPECT_EQ(Inspector::CountPreviews(Pane(), video), 0U);
}

TEST_F(HandlerMessages, AModifiedFormatWithoutAStreamThrowsTheHostsException) {
  MakeHandler();
  Handler().HandleMessage(MZ::CaptionsSelectionChangedMessage());
  EXPECT_THROW(Handler().HandleMessage(BE::CaptionStreamFormatModifiedMessage()),
               zebcore::classref::NullInterfaceException);
}

TEST_F(HandlerMessages, AStreamThatVanishesWhileItsClipIsBeingSelectedThrowsTheHostsException) {
  MakeHandler();
  clip = AddClip();
  AddStream(clip, MakeCaptions({1}), kOpenTrack1);
  const InterfaceRef<FadingClip> fading(new FadingClip(clip));
  MZ::MasterClipSelectedMessage message;
  message.clip = fading;
  Handler().HandleMessage(message);
  const int looks = fading->looks;
  ASSERT_GT(looks, 1);
  Handler().HandleMessage(MZ::MasterClipSelectedMessage());

  fading->looks = 0;
  fading->looksThatFindStreams = looks - 1;
  EXPECT_THROW(Handler().HandleMessage(message), zebcore::classref::NullInterfaceException);
}

TEST_F(HandlerMessages, AnotherClipsStreamIsJoinedAfterTheFirstOnesWasLeft) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  SelectClip(clip);
  const auto other = AddClip(u"Other");
  const auto otherStream = AddStream(other, MakeCaptions({3}));
  zebcore::trace::Take();
  SelectClip(other);
  std::vector<std::string> calls;
  for (const auto& call : zebcore::trace::Take()) {
    if (call.args.contains("listener"))
      calls.push_back(call.call + " " + call.args["station"].get<std::string>());
  }
  EXPECT_EQ(calls,
            (std::vector<std::string>{"messaging::RemoveListener " + Notifying(stream)->GetStationID().Text(),
                                      "messaging::AddListener " + Notifying(otherStream)->GetStationID().Text()}));
}

TEST_F(HandlerMessages, AClipWithoutStreamsChangesNothingWhileNothingIsFollowed) {
  MakeHandler();
  zebcore::trace::Take();
  SelectClip(AddClip());
  EXPECT_TRUE(Inspector::Source(Handler()).IsEmpty());
  EXPECT_EQ(TakeCalls("messaging::AddListener"), std::vector<std::string>{});
}

TEST_F(HandlerMessages, AClipWithoutStreamsEndsTheFollowingOfAnother) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  SelectClip(clip);
  const auto bare = AddClip(u"Bare");
  zebcore::trace::Take();
  SelectClip(bare);
  EXPECT_TRUE(Inspector::Source(Handler()).GetMasterClip() == bare);
  EXPECT_FALSE(IsListening(Notifying(stream)->GetStationID(), HandlerListener()));
  EXPECT_EQ(TakeCalls("messaging::AddListener"), std::vector<std::string>{});
}

TEST_F(HandlerMessages, TheClipOfAnyClosedFormatIsNotMeasured) {
  MakeHandler();
  clip = AddClip();
  AddStream(clip, MakeCaptions({1}));
  zebcore::trace::Take();
  SelectClip(clip);
  EXPECT_EQ(TakeMeasurings(), std::vector<Measuring>{});
}

TEST_F(HandlerMessages, AMessageOfAnyOtherClassIsIgnored) {
  MakeHandler();
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  SelectClip(clip);
  MZ::MasterClipClosedMessage closed;
  closed.clip = clip;
  BroadcastMessage(MZ::kStation_MasterClipActivation, closed);
  BroadcastMessage(MZ::kStation_ClosedCaptionsActivation, MZ::BinSelectedMessage());
  EXPECT_TRUE(Inspector::Source(Handler()).GetMasterClip() == clip);
  EXPECT_EQ(Inspector::View(Handler()), nullptr);
}

TEST_F(HandlerMessages, AnOpenPanelIsNotCalledWhenAClipIsSelectedAndFollowsByItself) {
  OpenPanelOn(MakeCaptions({1}));
  const auto other = AddClip(u"Other");
  AddStream(other, MakeCaptions({5}));
  MZ::MasterClipSelectedMessage message;
  message.clip = other;
  Handler().HandleMessage(message);
  EXPECT_EQ(Begins(), (std::vector<double>{1}));
  SelectClip(other);
  EXPECT_EQ(Begins(), (std::vector<double>{5}));
}

} // namespace Captivo::Testing
