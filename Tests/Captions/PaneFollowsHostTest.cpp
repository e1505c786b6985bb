#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "MZ/Actions.h"
#include "Support.h"

namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;
using zebcore::messaging::BroadcastMessage;

constexpr int kSequence = CaptionsSource::kKind_Sequence;
constexpr int kMasterClip = CaptionsSource::kKind_MasterClip;

// What the pane shows follows what is selected elsewhere.
class PaneFollowsHost : public PanelTest {
 protected:
  PaneFollowsHost() {
    OpenPanelOn(MakeCaptions({1, 3}));
    other = AddClip(u"Other");
    AddStream(other, MakeCaptions({5}));
    merged = AddClip(u"Merged", true);
    AddStream(merged, MakeCaptions({7}));
  }

  template <class M> void SendInfo(const InterfaceRef<BE::IMasterClip>& ofClip) {
    M message;
    message.info.clip = ofClip;
    BroadcastMessage(MZ::kStation_Info, message);
  }
  // The same for every message that has nothing to show.
  template <class M> void ExpectToEmptyThePane(const ImmutableString& station) {
    SelectClip(clip);
    ASSERT_EQ(Begins(), (Times{1, 3}));
    BroadcastMessage(station, M());
    EXPECT_EQ(Begins(), Times{});
    EXPECT_TRUE(Inspector::Source(Pane()).IsEmpty());
  }
  void SendSourceClip(int kind, const InterfaceRef<BE::IMasterClip>& ofClip,
                      const InterfaceRef<BE::ITrackItem>& item = nullptr) {
    HSL::SourceClipSelectedMessage message;
    message.kind = kind;
    message.clip = ofClip;
    message.item = item;
    BroadcastMessage(MZ::kStation_TrackItemActivation, message);
  }
  InterfaceRef<BE::ITrackItem> AddTrackItem(const InterfaceRef<BE::MasterClip>& ofClip) {
    const auto sequence = AddSequence({{ofClip, Seconds(0)}});
    return sequence->GetItems().front();
  }
  InterfaceRef<BE::Sequence> AddSequence(const std::vector<BE::Project::SequenceItem>& items = {}) {
    return project->AddSequence(u"Sequence", zebmediatypes::kFrameRate_25, zebmediatypes::FrameRate(), items);
  }
  // A switch to the other clip that waits, with 50 milliseconds to go.
  void LetASwitchWait() {
    stream->SetBusy(true);
    SelectClip(other);
    Tick(200);
    ASSERT_TRUE(Inspector::SourcePending(Pane()));
    ASSERT_EQ(TimeToGo(), 50);
  }
  std::optional<std::int64_t> TimeToGo() {
    return zebui::ui::UI_NodeManager::Get()->GetTimeUntilDue(Inspector::DeferTimer(Pane()));
  }
  const TimeDisplay& Override(int kind, bool isVideo) {
    return Inspector::DisplayOverride(Inspector::Source(Pane()), kind, isVideo);
  }

  InterfaceRef<BE::MasterClip> other;
  InterfaceRef<BE::MasterClip> merged;
};

// The pane on a sequence, which no selection leads to, with one row that has no controls yet.
class PaneOnASequence : public PaneFollowsHost {
 protected:
  PaneOnASequence() {
    sequence = AddSequence();
    SelectClip(nullptr);
    Inspector::Source(Pane()) = Inspector::MakeSequenceSource(InterfaceRef<>(sequence));
    List().AddRow(MakeCaption(1, 2));
  }
  void SendSettings(const InterfaceRef<BE::ISequence>& ofSequence) {
    MZ::SequenceSettingsChangedMessage message;
    message.sequence = ofSequence;
    BroadcastMessage(MZ::kStation_SequenceActivation, message);
  }
  InterfaceRef<BE::Sequence> sequence;
};

} // namespace

TEST_F(PaneFollowsHost, ClosingAnotherClipChangesNothingAndClosingThisOneEmptiesThePane) {
  MZ::MasterClipClosedMessage message;
  message.clip = other;
  BroadcastMessage(MZ::kStation_MasterClipActivation, message);
  EXPECT_EQ(Begins(), (Times{1, 3}));
  message.clip = clip;
  BroadcastMessage(MZ::kStation_MasterClipActivation, message);
  EXPECT_EQ(Begins(), Times{});
}

TEST_F(PaneFollowsHost, AVideoTrackItemShowsTheCaptionsOfItsClip) {
  SendInfo<MZ::VideoTrackItemInfoMessage>(other);
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneFollowsHost, AnAudioAndVideoTrackItemShowsTheCaptionsOfItsClip) {
  SendInfo<MZ::AudioVideoTrackItemInfoMessage>(other);
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneFollowsHost, ATrackItemOfAMergedClipLeavesEverythingAsItIs) {
  SendInfo<MZ::VideoTrackItemInfoMessage>(merged);
  SendInfo<MZ::AudioVideoTrackItemInfoMessage>(merged);
  EXPECT_EQ(Begins(), (Times{1, 3}));
}

TEST_F(PaneFollowsHost, AnAudioTrackItemEmptiesThePaneEvenIfItsClipHasCaptions) {
  SendInfo<MZ::AudioTrackItemInfoMessage>(clip);
  EXPECT_EQ(Begins(), Times{});
  SendInfo<MZ::AudioTrackItemInfoMessage>(other);
  EXPECT_EQ(Begins(), Times{});
}

TEST_F(PaneFollowsHost, ATransitionEmptiesThePane) {
  ExpectToEmptyThePane<MZ::TransitionTrackItemInfoMessage>(MZ::kStation_Info);
}

TEST_F(PaneFollowsHost, AnEmptyTrackSpotEmptiesThePane) {
  ExpectToEmptyThePane<MZ::EmptyTrackItemInfoMessage>(MZ::kStation_Info);
}

TEST_F(PaneFollowsHost, AnEmptySelectionEmptiesThePane) {
  ExpectToEmptyThePane<MZ::NothingInfoMessage>(MZ::kStation_Info);
}

TEST_F(PaneFollowsHost, ASelectedBinEmptiesThePane) {
  ExpectToEmptyThePane<MZ::BinSelectedMessage>(MZ::kStation_BinActivation);
}

TEST_F(PaneFollowsHost, ASelectedSequenceEmptiesThePane) {
  ExpectToEmptyThePane<MZ::SequenceSelectedMessage>(MZ::kStation_SequenceActivation);
}

TEST_F(PaneFollowsHost, ASelectedSequenceIsNotShownThoughTheMessageNamesIt) {
  MZ::SequenceSelectedMessage message;
  message.sequence = AddSequence({{other, Seconds(0)}});
  BroadcastMessage(MZ::kStation_SequenceActivation, message);
  EXPECT_EQ(Begins(), Times{});
  EXPECT_FALSE(Inspector::Source(Pane()).GetSequence());
}

TEST_F(PaneFollowsHost, AMessageOfAnyOtherClassIsIgnored) {
  BroadcastMessage(MZ::kStation_Info, MZ::CaptionsSelectionChangedMessage());
  BroadcastMessage(MZ::kStation_BinActivation, MZ::ClosedCaptionsOpenedMessage());
  EXPECT_EQ(Begins(), (Times{1, 3}));
}

TEST_F(PaneFollowsHost, SelectingABinWhileASwitchWaitsTakesTheWaitingOnesPlace) {
  LetASwitchWait();
  EXPECT_TRUE(Inspector::PendingSource(Pane()).GetMasterClip() == other);
  BroadcastMessage(MZ::kStation_BinActivation, MZ::BinSelectedMessage());
  EXPECT_TRUE(Inspector::SourcePending(Pane()));
  EXPECT_TRUE(Inspector::PendingSource(Pane()).IsEmpty());
  // It was put off in its own right, and waits the full time.
  EXPECT_EQ(TimeToGo(), 250);
  EXPECT_EQ(Begins(), (Times{1, 3}));
  stream->SetBusy(false);
  Tick(250);
  EXPECT_EQ(Begins(), Times{});
}

TEST_F(PaneFollowsHost, AnEmptyTrackSpotWhileASwitchWaitsAimsItAtNothing) {
  LetASwitchWait();
  BroadcastMessage(MZ::kStation_Info, MZ::EmptyTrackItemInfoMessage());
  EXPECT_TRUE(Inspector::SourcePending(Pane()));
  EXPECT_TRUE(Inspector::PendingSource(Pane()).IsEmpty());
  EXPECT_EQ(TimeToGo(), 50);
  stream->SetBusy(false);
  Tick(50);
  EXPECT_EQ(Begins(), Times{});
}

TEST_F(PaneFollowsHost, ASelectedClipOfTheHostIsShownUnlessItIsMerged) {
  SendSourceClip(1, other);
  EXPECT_EQ(Begins(), (Times{5}));
  SendSourceClip(1, merged);
  EXPECT_EQ(Begins(), (Times{5}));
}

TEST_F(PaneFollowsHost, ASelectedTrackItemOfTheHostIsShownAsATrackItemMergedOrNot) {
  SendSourceClip(2, clip, AddTrackItem(other));
  EXPECT_EQ(Begins(), (Times{5}));
  EXPECT_EQ(Inspector::Source(Pane()).GetKind(), CaptionsSource::kKind_TrackItem);
  SendSourceClip(2, clip, AddTrackItem(merged));
  EXPECT_EQ(Begins(), (Times{7}));
}

TEST_F(PaneFollowsHost, ASelectionOfTheHostOfAnyOtherKindDoesNothing) {
  const auto item = AddTrackItem(other);
  for (const int kind : {-1, 0, 3, 4})
    SendSourceClip(kind, other, item);
  EXPECT_EQ(Begins(), (Times{1, 3}));
}

TEST_F(PaneFollowsHost, ADisplayChosenForTheSourceReachesTheTimecodesInView) {
  const UString former = Row(1)->GetInControl().GetText();
  UIF::HotTimecodeVideoTimeDisplayChangedMessage message;
  message.display = zebmediatypes::kTimeDisplay_Frames;
  BroadcastMessage(UIF::kStation_SourceTimeDisplayChanged, message);
  EXPECT_EQ(Override(kMasterClip, true), zebmediatypes::kTimeDisplay_Frames);
  EXPECT_EQ(Override(kSequence, true), kTimeDisplay_Invalid);
  EXPECT_NE(Row(1)->GetInControl().GetText(), former);
  EXPECT_EQ(Row(1)->GetInControl().GetText(), u"25");
}

TEST_F(PaneFollowsHost, ADisplayChosenForTheSequenceIsKeptForSequencesAlone) {
  const UString former = Row(1)->GetInControl().GetText();
  UIF::HotTimecodeVideoTimeDisplayChangedMessage message;
  message.display = zebmediatypes::kTimeDisplay_Frames;
  BroadcastMessage(UIF::kStation_SequenceTimeDisplayChanged, message);
  EXPECT_EQ(Override(kSequence, true), zebmediatypes::kTimeDisplay_Frames);
  EXPECT_EQ(Override(kSequence, false), kTimeDisplay_Invalid);
  EXPECT_EQ(Override(kMasterClip, true), kTimeDisplay_Invalid);
  EXPECT_EQ(Row(1)->GetInControl().GetText(), former);
}

TEST_F(PaneFollowsHost, ADisplayThatWasChosenBeforeRedrawsNoTimecode) {
  UIF::HotTimecodeVideoTimeDisplayChangedMessage message;
  message.display = zebmediatypes::kTimeDisplay_Frames;
  BroadcastMessage(UIF::kStation_SourceTimeDisplayChanged, message);
  Row(1)->GetInControl().SetTimeDisplay(zebmediatypes::kTimeDisplay_Milliseconds, zebmediatypes::kFrameRate_25, false);
  const UString shown = Row(1)->GetInControl().GetText();
  BroadcastMessage(UIF::kStation_SourceTimeDisplayChanged, message);
  EXPECT_EQ(Row(1)->GetInControl().GetText(), shown);
  message.display = zebmediatypes::kTimeDisplay_FeetAndFrames16mm;
  BroadcastMessage(UIF::kStation_SourceTimeDisplayChanged, message);
  EXPECT_NE(Row(1)->GetInControl().GetText(), shown);
}

TEST_F(PaneFollowsHost, AnyOtherMessageOfTheTimeDisplayStationsChangesNothing) {
  BroadcastMessage(UIF::kStation_SourceTimeDisplayChanged, MZ::CaptioningTrackItemOpenedMessage());
  BroadcastMessage(UIF::kStation_SequenceTimeDisplayChanged, MZ::CaptioningTrackItemOpenedMessage());
  EXPECT_EQ(Override(kMasterClip, true), kTimeDisplay_Invalid);
  EXPECT_EQ(Override(kSequence, true), kTimeDisplay_Invalid);
}

TEST_F(PaneOnASequence, ADisplayChosenForTheSequenceReachesTheTimecodesInView) {
  Pane().UpdateVisibleRows();
  UIF::HotTimecodeVideoTimeDisplayChangedMessage message;
  message.display = zebmediatypes::kTimeDisplay_Frames;
  BroadcastMessage(UIF::kStation_SequenceTimeDisplayChanged, message);
  EXPECT_EQ(Pane().GetTimeDisplay(), zebmediatypes::kTimeDisplay_Frames);
  EXPECT_EQ(Row(1)->GetInControl().GetText(), u"25");
}

TEST_F(PaneOnASequence, ChangedSettingsOfItAreTakenUpAndTheRowsRefreshed) {
  Inspector::SequenceMediaIsVideo(Inspector::Source(Pane())) = 0;
  Inspector::FirstVisibleRow(Pane()) = -1;
  sequence->SetTimeDisplays(zebmediatypes::kTimeDisplay_Frames, zebmediatypes::kTimeDisplay_AudioSamples);
  SendSettings(sequence);
  EXPECT_EQ(Override(kSequence, true), zebmediatypes::kTimeDisplay_Frames);
  EXPECT_EQ(Override(kSequence, false), zebmediatypes::kTimeDisplay_AudioSamples);
  EXPECT_EQ(Override(kMasterClip, true), kTimeDisplay_Invalid);
  ASSERT_EQ(sequence->GetFrameAlignment(), 0);
  EXPECT_EQ(Inspector::SequenceMediaIsVideo(Inspector::Source(Pane())), 1);
  EXPECT_EQ(Inspector::FirstVisibleRow(Pane()), 0);
  EXPECT_TRUE(Row(1)->HasControls());
}

TEST_F(PaneOnASequence, SettingsThatStayedTheSameRefreshNothing) {
  SendSettings(sequence);
  Inspector::LastVisibleRow(Pane()) = -2;
  SendSettings(sequence);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), -2);
  Inspector::SequenceMediaIsVideo(Inspector::Source(Pane())) = 0;
  SendSettings(sequence);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 0);
}

TEST_F(PaneOnASequence, SettingsOfAnotherSequenceChangeNothing) {
  const auto second = AddSequence();
  SendSettings(second);
  EXPECT_EQ(Override(kSequence, true), kTimeDisplay_Invalid);
  EXPECT_FALSE(Row(1)->HasControls());
}

TEST_F(PaneOnASequence, ChangedPropertiesOfItCountAsChangedSettings) {
  BE::PropertiesChangedMessage message;
  message.records.push_back({InterfaceRef<>(AddSequence()), "display"});
  BroadcastMessage(MZ::kStation_SequenceActivation, message);
  EXPECT_EQ(Override(kSequence, true), kTimeDisplay_Invalid);
  EXPECT_FALSE(Row(1)->HasControls());
  message.records.push_back({InterfaceRef<>(sequence), "display"});
  BroadcastMessage(MZ::kStation_SequenceActivation, message);
  EXPECT_EQ(Override(kSequence, true), sequence->GetVideoTimeDisplay());
  EXPECT_EQ(Override(kSequence, false), sequence->GetAudioTimeDisplay());
  EXPECT_TRUE(Row(1)->HasControls());
}

TEST_F(PaneFollowsHost, ChangedPropertiesOrSettingsWithoutASequenceOnShowChangeNothing) {
  const auto sequence = AddSequence();
  BE::PropertiesChangedMessage properties;
  properties.records.push_back({InterfaceRef<>(sequence), "display"});
  BroadcastMessage(MZ::kStation_SequenceActivation, properties);
  MZ::SequenceSettingsChangedMessage settings;
  settings.sequence = sequence;
  BroadcastMessage(MZ::kStation_SequenceActivation, settings);
  EXPECT_EQ(Override(kSequence, true), kTimeDisplay_Invalid);
}

} // namespace Captivo::Testing
