#include "BE/Preferences.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "MZ/Actions.h"
#include "Support.h"
#include "zebmediatypes/FrameRate.h"

namespace Captivo::Testing {

namespace {

constexpr StreamFormat kCC1 = zebcaptioning::kStreamFormat_608_CC1;
constexpr StreamFormat kCC2 = kCC1 + 1;
constexpr StreamFormat kCC3 = kCC1 + 2;

class Source : public PanelTest {
 protected:
  ~Source() override {
    BE::SetPreferencesAvailable(true);
    BE::GetBackend()->GetPreferences()->Remove(BE::kPrefsStillImagesDefaultFramerate);
    BE::GetBackend()->GetPreferences()->Remove(BE::kPrefsStillImagesDefaultIsDropFrame);
  }
  InterfaceRef<BE::MasterClip> AddStill() {
    BE::MediaInfo info;
    info.width = 800;
    info.height = 600;
    info.still = true;
    return AddClip(info);
  }
  // Pictures at 25 frames a second and sound, from an hour on.
  InterfaceRef<BE::MasterClip> AddSoundingClip() {
    BE::MediaInfo info;
    info.width = 1280;
    info.height = 720;
    info.frameRate = zebmediatypes::kFrameRate_25;
    info.duration = Seconds(60);
    info.start = Seconds(3600);
    info.sampleRate = 48000;
    return AddClip(info);
  }
  InterfaceRef<BE::TrackItem> AddTrackItem(const InterfaceRef<BE::MasterClip>& ofClip) {
    const auto sequence = project->AddSequence(u"Sequence", zebmediatypes::kFrameRate_25,
                                               FrameRate::FromRational(48000, 1), {{ofClip, Seconds(5)}});
    return sequence->GetItems().front();
  }
  void SelectSource(int kind, const InterfaceRef<BE::IMasterClip>& ofClip, const InterfaceRef<BE::ITrackItem>& item) {
    HSL::SourceClipSelectedMessage message;
    message.kind = kind;
    message.clip = ofClip;
    message.item = item;
    zebcore::messaging::BroadcastMessage(HSL::kStation_CaptionSelection, message);
  }
};

} // namespace

TEST_F(Source, AnEmptyRecordResolvesToNothing) {
  const CaptionsSource source;
  EXPECT_TRUE(source.IsEmpty());
  EXPECT_FALSE(source.GetCaptioningStream());
  EXPECT_FALSE(source.GetMasterClip());
  EXPECT_FALSE(source.GetSequence());
  EXPECT_FALSE(source.GetVideoClip());
  EXPECT_EQ(source.GetStreamFormat(), 0U);
  EXPECT_EQ(source.GetFrameRate(true), zebmediatypes::kFrameRate_Invalid);
  EXPECT_EQ(source.GetZeroPoint(), kTime_Zero);
}

TEST_F(Source, TwoEmptyRecordsAreTheSameAndOneWithAStreamIsAnother) {
  clip = AddClip();
  AddStream(clip, MakeCaptions({1}));
  EXPECT_TRUE(CaptionsSource() == CaptionsSource());
  EXPECT_FALSE(CaptionsSource() == CaptionsSource(InterfaceRef<>(clip)));
  EXPECT_TRUE(CaptionsSource(InterfaceRef<>(clip)) == CaptionsSource(InterfaceRef<>(clip)));
}

TEST_F(Source, AMasterClipWithoutStreamsHasNoFormatAndAnEmptySet) {
  const CaptionsSource source{InterfaceRef<>(AddClip())};
  EXPECT_EQ(source.GetKind(), CaptionsSource::kKind_MasterClip);
  EXPECT_EQ(source.GetStreamFormat(), 0U);
  EXPECT_TRUE(source.GetAvailableFormats().empty());
  EXPECT_FALSE(source.GetCaptioningStream());
}

TEST_F(Source, ANullMasterClipIsNothingAndANullTrackItemIsATrackItem) {
  EXPECT_TRUE(CaptionsSource(InterfaceRef<>()).IsEmpty());
  const CaptionsSource item = CaptionsSource::ForTrackItem(nullptr);
  EXPECT_EQ(item.GetKind(), CaptionsSource::kKind_TrackItem);
  EXPECT_FALSE(item.GetCaptioningStream());
  EXPECT_EQ(item.GetFrameRate(true), zebmediatypes::kFrameRate_Invalid);
}

TEST_F(Source, TakesTheFirstFormatThatTheClipOffers) {
  clip = AddClip();
  AddStream(clip, {}, kCC2);
  AddStream(clip, {}, kCC1);
  CaptionsSource source{InterfaceRef<>(clip)};
  EXPECT_EQ(source.GetStreamFormat(), kCC1);
  source.SelectStreamFormat(kCC2);
  EXPECT_EQ(source.GetCaptioningStream()->GetStreamFormat(), kCC2);
  source.SelectStreamFormat(kCC3);
  EXPECT_EQ(source.GetStreamFormat(), kCC2);
  source.SelectStreamFormatAtIndex(0);
  EXPECT_EQ(source.GetStreamFormat(), kCC1);
  source.SelectStreamFormatAtIndex(2);
  EXPECT_EQ(source.GetStreamFormat(), 0U);
}

TEST_F(Source, AFormatThatVanishedGivesWayToOneThatHasJustAppeared) {
  clip = AddClip();
  AddStream(clip, {}, kCC1);
  stream = AddStream(clip, {}, kCC2);
  CaptionsSource source{InterfaceRef<>(clip)};
  source.SelectStreamFormat(kCC2);
  project->ChangeStreamFormat(stream, kCC3, u"Change format");
  EXPECT_TRUE(source.RefreshAvailableFormats());
  EXPECT_EQ(source.GetStreamFormat(), kCC3);
}

TEST_F(Source, AFormatThatVanishedWithNothingNewGivesWayToTheFirstThatIsLeft) {
  clip = AddClip();
  AddStream(clip, {}, kCC1);
  stream = AddStream(clip, {}, kCC2);
  CaptionsSource source{InterfaceRef<>(clip)};
  source.SelectStreamFormat(kCC2);
  project->RemoveStream(stream, u"Delete stream");
  EXPECT_TRUE(source.RefreshAvailableFormats());
  EXPECT_EQ(source.GetStreamFormat(), kCC1);
}

TEST_F(Source, AFormatThatIsStillThereStaysSelected) {
  clip = AddClip();
  stream = AddStream(clip, {}, kCC1);
  CaptionsSource source{InterfaceRef<>(clip)};
  AddStream(clip, {}, kCC2);
  EXPECT_FALSE(source.RefreshAvailableFormats());
  EXPECT_EQ(source.GetStreamFormat(), kCC1);
  EXPECT_EQ(source.GetAvailableFormats().size(), 2U);
}

TEST_F(Source, AStillImageTakesItsRateAndDropFrameFromThePreferences) {
  const auto preferences = BE::GetBackend()->GetPreferences();
  preferences->Write(BE::kPrefsStillImagesDefaultFramerate,
                     BE::SerializeableValue<FrameRate>(7, zebmediatypes::kFrameRate_2997));
  preferences->Write(BE::kPrefsStillImagesDefaultIsDropFrame, BE::SerializeableValue<bool>(12, false));
  const CaptionsSource source{InterfaceRef<>(AddStill())};
  EXPECT_EQ(source.GetFrameRate(false), zebmediatypes::kFrameRate_2997);
  EXPECT_EQ(source.GetTimeDisplay(false), zebmediatypes::kTimeDisplay_Timecode2997NonDrop);
}

TEST_F(Source, AStillImageOfAKnownRateDropsFramesIfThePreferenceIsMissing) {
  BE::GetBackend()->GetPreferences()->Write(BE::kPrefsStillImagesDefaultFramerate,
                                            BE::SerializeableValue<FrameRate>(7, zebmediatypes::kFrameRate_2997));
  const CaptionsSource source{InterfaceRef<>(AddStill())};
  EXPECT_EQ(source.GetFrameRate(false), zebmediatypes::kFrameRate_2997);
  EXPECT_EQ(source.GetTimeDisplay(false), zebmediatypes::kTimeDisplay_Timecode2997Drop);
}

TEST_F(Source, AStillImageWithoutPreferencesHasNoRate) {
  const CaptionsSource source{InterfaceRef<>(AddStill())};
  EXPECT_EQ(source.GetFrameRate(false), zebmediatypes::kFrameRate_Invalid);
  EXPECT_EQ(source.GetTimeDisplay(false), zebmediatypes::kTimeDisplay_Default);
}

TEST_F(Source, AStillImageWithoutAPreferenceStoreThrowsTheHostsException) {
  const auto still = AddStill();
  BE::SetPreferencesAvailable(false);
  EXPECT_THROW(CaptionsSource{InterfaceRef<>(still)}, zebcore::classref::NullInterfaceException);
}

TEST_F(Source, APreferenceOfTheWrongTypeThrowsTheHostsException) {
  const auto still = AddStill();
  BE::GetBackend()->GetPreferences()->Write(BE::kPrefsStillImagesDefaultFramerate,
                                            BE::SerializeableValue<bool>(12, false));
  EXPECT_THROW(CaptionsSource{InterfaceRef<>(still)}, BE::exSerializeableTypeMismatch);
}

TEST_F(Source, TheUsersChoicesStayWithTheRecordUntilItIsRefreshed) {
  CaptionsSource source{InterfaceRef<>(AddClip())};
  const TimeDisplay own = source.GetTimeDisplay(true);
  EXPECT_TRUE(source.SetDisplayOverride(1, 1, zebmediatypes::kTimeDisplay_Frames));
  EXPECT_FALSE(source.SetDisplayOverride(1, 1, zebmediatypes::kTimeDisplay_Frames));
  EXPECT_EQ(source.GetTimeDisplay(true), zebmediatypes::kTimeDisplay_Frames);
  source = CaptionsSource(InterfaceRef<>(AddClip()));
  EXPECT_EQ(source.GetTimeDisplay(true), zebmediatypes::kTimeDisplay_Frames);
  EXPECT_EQ(CaptionsSource(source).GetTimeDisplay(true), own);
  source.Refresh();
  EXPECT_EQ(source.GetTimeDisplay(true), own);
}

// --- Track items.

TEST_F(Source, ATrackItemLeadsToTheFirstStreamOfItsClipAndOffersNoOther) {
  clip = AddSoundingClip();
  AddStream(clip, {}, kCC2);
  stream = AddStream(clip, {}, kCC1);
  CaptionsSource source = CaptionsSource::ForTrackItem(AddTrackItem(clip));
  EXPECT_EQ(source.GetKind(), CaptionsSource::kKind_TrackItem);
  EXPECT_TRUE(source.GetMasterClip() == clip);
  EXPECT_TRUE(source.GetCaptioningStream() == stream);
  EXPECT_EQ(source.GetStreamFormat(), kCC1);
  EXPECT_EQ(source.GetAvailableFormats(), (std::set<StreamFormat>{kCC1}));
  EXPECT_FALSE(source.GetSequence());
  source.SelectStreamFormat(kCC2);
  EXPECT_EQ(source.GetStreamFormat(), kCC1);
  EXPECT_FALSE(source.RefreshAvailableFormats());
  EXPECT_EQ(source.GetAvailableFormats(), (std::set<StreamFormat>{kCC1, kCC2}));
}

TEST_F(Source, ATrackItemHasTheRateDisplayPicturesAndZeroPointOfItsClip) {
  clip = AddSoundingClip();
  const CaptionsSource source = CaptionsSource::ForTrackItem(AddTrackItem(clip));
  EXPECT_EQ(source.GetFrameRate(false), zebmediatypes::kFrameRate_25);
  EXPECT_EQ(source.GetTimeDisplay(false), zebmediatypes::kTimeDisplay_Timecode25);
  EXPECT_TRUE(source.GetVideoClip() == clip->GetClip(BE::kMediaType_Video, 0));
  EXPECT_EQ(source.GetZeroPoint(), Seconds(3600));
}

TEST_F(Source, ATrackItemIsTheSameAsItsClipAndAnotherClipIsNot) {
  clip = AddSoundingClip();
  AddStream(clip, MakeCaptions({1}));
  const auto other = AddClip();
  AddStream(other, MakeCaptions({1}));
  const CaptionsSource item = CaptionsSource::ForTrackItem(AddTrackItem(clip));
  EXPECT_TRUE(item == CaptionsSource(InterfaceRef<>(clip)));
  EXPECT_FALSE(item == CaptionsSource(InterfaceRef<>(other)));
}

TEST_F(Source, AnObjectOfAnotherSortLeadsNowhere) {
  clip = AddSoundingClip();
  AddStream(clip, {});
  EXPECT_FALSE(CaptionsSource::ForTrackItem(InterfaceRef<>(clip)).GetMasterClip());
  const CaptionsSource source{InterfaceRef<>(AddTrackItem(clip))};
  EXPECT_FALSE(source.GetMasterClip());
  EXPECT_FALSE(source.GetCaptioningStream());
  EXPECT_EQ(source.GetFrameRate(true), zebmediatypes::kFrameRate_Invalid);
  EXPECT_EQ(source.GetZeroPoint(), kTime_Zero);
}

TEST_F(Source, AChosenTrackItemIsShownInThePanelAndSoIsAChosenClip) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddSoundingClip();
  AddStream(other, MakeCaptions({5}));
  SelectSource(2, clip, AddTrackItem(other));
  EXPECT_EQ(Inspector::Source(Pane()).GetKind(), CaptionsSource::kKind_TrackItem);
  EXPECT_EQ(Begins(), (std::vector<double>{5}));
  SelectSource(1, clip, AddTrackItem(other));
  EXPECT_EQ(Inspector::Source(Pane()).GetKind(), CaptionsSource::kKind_MasterClip);
  EXPECT_EQ(Begins(), (std::vector<double>{1, 3}));
}

TEST_F(Source, AChoiceOfNeitherClipNorTrackItemChangesNothing) {
  OpenPanelOn(MakeCaptions({1, 3}));
  const auto other = AddSoundingClip();
  AddStream(other, MakeCaptions({5}));
  for (const int kind : {0, 3}) {
    SelectSource(kind, other, AddTrackItem(other));
    EXPECT_EQ(Begins(), (std::vector<double>{1, 3})) << kind;
  }
}

// --- Pictures, sound and time.

TEST_F(Source, TheVideoClipIsTheOneOfTheMasterClip) {
  clip = AddSoundingClip();
  const auto video = CaptionsSource(InterfaceRef<>(clip)).GetVideoClip();
  ASSERT_TRUE(video);
  EXPECT_TRUE(video == clip->GetClip(BE::kMediaType_Video, 0));
  EXPECT_EQ(video->GetFrameRect(), RectT<int>(0, 0, 1280, 720));
  EXPECT_FALSE(CaptionsSource(InterfaceRef<>(AddStill())).GetVideoClip());
}

TEST_F(Source, TheZeroPointIsTheFirstTimecodeOfTheClip) {
  EXPECT_EQ(CaptionsSource(InterfaceRef<>(AddSoundingClip())).GetZeroPoint(), Seconds(3600));
}

TEST_F(Source, AClipThatCountsAsSoundHasTheRateAndDisplayOfItsSound) {
  CaptionsSource source{InterfaceRef<>(AddSoundingClip())};
  EXPECT_EQ(source.GetFrameRate(true), zebmediatypes::kFrameRate_25);
  EXPECT_EQ(source.GetTimeDisplay(true), zebmediatypes::kTimeDisplay_Timecode25);
  EXPECT_TRUE(source.SetMediaIsVideo(1, 0));
  EXPECT_FALSE(source.SetMediaIsVideo(1, 0));
  EXPECT_EQ(source.GetFrameRate(true), FrameRate::FromRational(48000, 1));
  EXPECT_EQ(source.GetTimeDisplay(true), zebmediatypes::kTimeDisplay_AudioSamples);
  EXPECT_EQ(source.GetFrameRate(false), zebmediatypes::kFrameRate_25) << "until it is refreshed";
  EXPECT_EQ(source.GetTimeDisplay(false), zebmediatypes::kTimeDisplay_Timecode25);
  source.Refresh();
  EXPECT_EQ(source.GetFrameRate(true), zebmediatypes::kFrameRate_25);
}

TEST_F(Source, EveryKindButTheSequenceCountsAsTheClip) {
  CaptionsSource source{InterfaceRef<>(AddSoundingClip())};
  EXPECT_TRUE(source.SetMediaIsVideo(2, 0));
  EXPECT_EQ(source.GetFrameRate(true), zebmediatypes::kFrameRate_25);
  EXPECT_TRUE(source.SetDisplayOverride(2, 1, zebmediatypes::kTimeDisplay_Frames));
  EXPECT_EQ(source.GetTimeDisplay(true), zebmediatypes::kTimeDisplay_Timecode25);
  EXPECT_TRUE(source.SetMediaIsVideo(3, 0));
  EXPECT_FALSE(source.SetMediaIsVideo(0, 0));
  EXPECT_EQ(source.GetFrameRate(true), FrameRate::FromRational(48000, 1));
}

TEST_F(Source, SoundHasAChosenDisplayOfItsOwn) {
  CaptionsSource source{InterfaceRef<>(AddSoundingClip())};
  EXPECT_TRUE(source.SetDisplayOverride(1, 0, zebmediatypes::kTimeDisplay_Milliseconds));
  EXPECT_EQ(source.GetTimeDisplay(true), zebmediatypes::kTimeDisplay_Timecode25);
  EXPECT_TRUE(source.SetMediaIsVideo(1, 0));
  EXPECT_EQ(source.GetTimeDisplay(true), zebmediatypes::kTimeDisplay_Milliseconds);
}

TEST_F(Source, AnyMediumButSoundHasThePicturesRateYetOnlyVideoTheirDisplay) {
  CaptionsSource source{InterfaceRef<>(AddSoundingClip())};
  EXPECT_TRUE(source.SetMediaIsVideo(1, 2));
  EXPECT_EQ(source.GetFrameRate(true), zebmediatypes::kFrameRate_25);
  EXPECT_EQ(source.GetTimeDisplay(true), zebmediatypes::kTimeDisplay_AudioSamples);
}

TEST_F(Source, ASilentClipThatCountsAsSoundHasTheRateOfAStillImage) {
  CaptionsSource source{InterfaceRef<>(AddClip())};
  EXPECT_TRUE(source.SetMediaIsVideo(1, 0));
  EXPECT_EQ(source.GetFrameRate(true), zebmediatypes::kFrameRate_Invalid);
  BE::GetBackend()->GetPreferences()->Write(BE::kPrefsStillImagesDefaultFramerate,
                                            BE::SerializeableValue<FrameRate>(7, zebmediatypes::kFrameRate_2997));
  EXPECT_EQ(source.GetFrameRate(true), zebmediatypes::kFrameRate_2997);
}

} // namespace Captivo::Testing
