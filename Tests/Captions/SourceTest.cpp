#include "BE/Preferences.h"
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
  EXPECT_EQ(source.GetTimeDisplay(false), MZ::ProjectActions::GetCurrentVideoTimeDisplayValue(
                                              MZ::GetProject(), zebmediatypes::kFrameRate_2997, false));
}

TEST_F(Source, AStillImageWithoutPreferencesHasNoRateAndDropsFrames) {
  const CaptionsSource source{InterfaceRef<>(AddStill())};
  EXPECT_EQ(source.GetFrameRate(false), zebmediatypes::kFrameRate_Invalid);
  EXPECT_EQ(source.GetTimeDisplay(false), MZ::ProjectActions::GetCurrentVideoTimeDisplayValue(
                                              MZ::GetProject(), zebmediatypes::kFrameRate_Invalid, true));
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

} // namespace Captivo::Testing
