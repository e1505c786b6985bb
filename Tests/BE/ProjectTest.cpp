#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Builders.h"
#include "MZ/Actions.h"

namespace {

using namespace test;

TEST(Bin, AClipWithVideoAndAudioHasBothClips) {
  const auto project = BE::Project::CreateInMemory();
  const auto clip = AddVideoClip(project);
  const auto video = clip->GetClip(BE::kMediaType_Video, 0);
  ASSERT_TRUE(video);
  EXPECT_EQ(video->GetFrameRate(), zebmediatypes::kFrameRate_25);
  EXPECT_TRUE(video->GetMasterClip() == clip);
  EXPECT_EQ(video.Query<BE::IVideoSegments>()->GetFrameRect().width, 1280);
  EXPECT_EQ(clip->GetClip(BE::kMediaType_Audio, 0)->GetFrameRate(), zebmediatypes::FrameRate::FromRational(48000, 1));
  EXPECT_FALSE(clip->GetClip(BE::kMediaType_Video, 1));
}

TEST(Bin, AnAudioClipHasNoVideoClip) {
  const auto project = BE::Project::CreateInMemory();
  BE::MediaInfo info;
  info.sampleRate = 44100;
  const auto clip = project->AddClip(u"speech", "", info, false);
  EXPECT_FALSE(clip->GetClip(BE::kMediaType_Video, 0));
  EXPECT_TRUE(clip->GetClip(BE::kMediaType_Audio, 0));
}

TEST(Bin, AStillHasNoVideoClipButAPicture) {
  const auto project = BE::Project::CreateInMemory();
  BE::MediaInfo info;
  info.width = 640;
  info.height = 480;
  info.still = true;
  const auto clip = project->AddClip(u"still", "", info, false);
  EXPECT_FALSE(clip->GetClip(BE::kMediaType_Video, 0));
  EXPECT_TRUE(clip->IsStill());
  EXPECT_EQ(clip.Query<BE::IVideoSegments>()->GetFrameRect().height, 480);
}

TEST(Bin, AMergedClipSaysSo) {
  const auto project = BE::Project::CreateInMemory();
  EXPECT_TRUE(BE::IsMergedClip(project->AddClip(u"m", "", VideoInfo(), true)));
  EXPECT_FALSE(BE::IsMergedClip(AddVideoClip(project)));
  EXPECT_FALSE(BE::IsMergedClip(nullptr));
}

TEST(Bin, FormatsOfAClipAreThoseOfItsStreamsAscending) {
  const auto project = BE::Project::CreateInMemory();
  const auto clip = AddVideoClip(project);
  const auto second = AddStream(project, clip, {}, kCC2);
  const auto first = AddStream(project, clip, {}, kCC1);
  std::set<zebcaptioning::StreamFormat> formats;
  BE::QueryAvailableCaptionStreamFormats(clip, formats);
  EXPECT_EQ(formats, (std::set<zebcaptioning::StreamFormat>{kCC1, kCC2}));
  EXPECT_TRUE(BE::CaptioningStreamFromMasterClip(clip, kCC1) == first);
  EXPECT_TRUE(BE::CaptioningStreamFromMasterClip(clip, kCC2) == second);
  EXPECT_FALSE(BE::CaptioningStreamFromMasterClip(clip, 608));
  EXPECT_TRUE(clip->GetStreams().front() == first);
  BE::QueryAvailableCaptionStreamFormats(nullptr, formats);
  EXPECT_EQ(formats.size(), 2U);
  EXPECT_FALSE(BE::CaptioningStreamFromMasterClip(nullptr, kCC1));
}

TEST(Bin, ObjectsAreFoundByIdAndReportOnStationsNamedForThem) {
  const auto project = BE::Project::CreateInMemory();
  const auto clip = AddVideoClip(project);
  const auto stream = AddStream(project, clip);
  EXPECT_TRUE(project->FindClip(clip->GetID()) == clip);
  EXPECT_TRUE(project->FindStream(stream->GetID()) == stream);
  EXPECT_FALSE(project->FindStream("nobody"));
  EXPECT_EQ(clip->GetStationID().Text(), "clip:" + clip->GetID());
  EXPECT_EQ(stream->GetStationID().Text(), "stream:" + stream->GetID());
}

TEST(Bin, ObjectsOfTwoProjectsDoNotShareAStation) {
  const auto first = BE::Project::CreateInMemory();
  const auto second = BE::Project::CreateInMemory();
  EXPECT_NE(AddVideoClip(first)->GetStationID(), AddVideoClip(second)->GetStationID());
}

TEST(Bin, AStreamOutlivesItsProjectAsItWas) {
  InterfaceRef<BE::CaptioningStream> stream;
  std::shared_ptr<BE::OpenChange> change;
  {
    const auto project = BE::Project::CreateInMemory();
    stream = AddStream(project, AddVideoClip(project), {State(1, 2, "a")});
    change = stream->BeginChange();
  }
  EXPECT_FALSE(stream->GetMasterClip());
  change->Apply({Turning(stream, 1, State(1, 2, "b"))}, u"Type");
  change->Revert();
  EXPECT_EQ(Contents(stream), Lines{"1-2 a"});
}

TEST(Bin, ASequencesOwnMasterClipAnswersTheQueryForASequence) {
  const auto project = BE::Project::CreateInMemory();
  const auto clip = AddVideoClip(project);
  const auto sequence =
      project->AddSequence(u"cut", zebmediatypes::kFrameRate_25, zebmediatypes::FrameRate::FromRational(48000, 1),
                           {{clip, TickTime(0), true, true}, {clip, TickTime(100), false, true}});
  const auto own = sequence.Query<BE::IMasterClip>();
  ASSERT_TRUE(own);
  EXPECT_TRUE(own.Query<BE::ISequence>() == sequence);
  EXPECT_EQ(sequence.Query<BE::IVideoSegments>()->GetFrameRect().width, 1280);
  const auto items = sequence->GetItems();
  ASSERT_EQ(items.size(), 2U);
  const auto shown = items[0].Query<BE::IClipTrackItem>()->GetClip();
  EXPECT_EQ(shown->GetMediaType(), BE::kMediaType_Video);
  EXPECT_TRUE(shown->GetMasterClip() == clip);
  EXPECT_EQ(items[1].Query<BE::IClipTrackItem>()->GetClip()->GetMediaType(), BE::kMediaType_Audio);
  EXPECT_EQ(items[1]->GetStart(), TickTime(100));
  EXPECT_EQ(BE::SequenceUtils::GetZeroPoint(sequence), TickTime(0));
  EXPECT_EQ(BE::SequenceUtils::GetZeroPoint(nullptr), TickTime(0));
}

TEST(Stream, OfSeveralCaptionsWithOneBeginTheNewestIsFoundAndKeysComeByBeginThenAge) {
  const auto project = BE::Project::CreateInMemory();
  const auto stream =
      AddStream(project, AddVideoClip(project), {State(5, 9, "old"), State(5, 7, "new"), State(1, 2, "x")});
  EXPECT_EQ(stream->FindByBegin(TickTime(5))->GetState()->text, u"new");
  EXPECT_EQ(Contents(stream), (Lines{"1-2 x", "5-9 old", "5-7 new"}));
  std::vector<BE::ICaptioningStream::CaptionKey> keys;
  stream->GetCaptionKeys(keys);
  ASSERT_EQ(keys.size(), 3U);
  EXPECT_EQ(stream->GetCaption(keys[1])->GetState()->text, u"old");
  EXPECT_FALSE(stream->GetCaption({}));
  EXPECT_EQ(stream->GetCaptionCount(), 3U);
  EXPECT_FALSE(stream->FindByBegin(TickTime(2)));
}

TEST(Stream, ShowsAtATimeThoseThatHaveBegunAndNotEnded) {
  const auto project = BE::Project::CreateInMemory();
  const auto stream =
      AddStream(project, AddVideoClip(project), {State(0, 100, "long"), State(5, 9, "a"), State(9, 12, "b")});
  const auto texts = [&](std::int64_t time) {
    std::vector<std::string> found;
    for (const auto& caption : stream->FindAt(TickTime(time)))
      found.push_back(zebcore::ToUTF8(caption->GetState()->text));
    return found;
  };
  EXPECT_EQ(texts(4), Lines{"long"});
  EXPECT_EQ(texts(5), (Lines{"long", "a"}));
  EXPECT_EQ(texts(9), (Lines{"long", "b"}));
  EXPECT_EQ(texts(100), Lines{});
}

TEST(Stream, IsBusyUntilEveryJobHasLetGo) {
  const auto project = BE::Project::CreateInMemory();
  const auto stream = AddStream(project, AddVideoClip(project));
  stream->SetBusy(true);
  stream->SetBusy(true);
  stream->SetBusy(false);
  EXPECT_TRUE(stream->IsBusy());
  stream->SetBusy(false);
  EXPECT_FALSE(stream->IsBusy());
  stream->SetBusy(false);
  stream->SetBusy(true);
  EXPECT_TRUE(stream->IsBusy());
}

TEST(Stream, AClosedFormatHasNoModelAndTheGridOfItsFormat) {
  const auto project = BE::Project::CreateInMemory();
  const auto stream = AddStream(project, AddVideoClip(project), {State(0, 9, "a")});
  EXPECT_FALSE(stream->GetRenderableModel(TickTime(1)));
  zebcaptioning::CaptionDisplaySettings settings;
  stream->GetDisplaySettings(TickTime(1), settings);
  int columns = 0;
  int rows = 0;
  EXPECT_EQ(settings.GetRegionBaseDimensions(columns, rows), kCC1);
  EXPECT_EQ(columns, 32);
  EXPECT_EQ(rows, 15);
}

TEST(ActiveProject, IsTheOneThatWasSetAndSaysSo) {
  const auto project = BE::Project::CreateInMemory();
  MZ::SetActiveProject(project);
  EXPECT_TRUE(MZ::GetProject() == project);
  EXPECT_TRUE(MZ::GetActiveProject() == project);
  MZ::SetActiveProject(nullptr);
  EXPECT_FALSE(MZ::GetProject());
}

TEST(TimeDisplays, FollowTheClipUnlessTheProjectSaysOtherwise) {
  const auto project = BE::Project::CreateInMemory();
  BE::MediaInfo info = VideoInfo();
  info.frameRate = zebmediatypes::kFrameRate_2997;
  info.dropFrame = true;
  info.start = TickTime(1234);
  const auto clip = project->AddClip(u"drop", "", info, false);
  EXPECT_EQ(MZ::ProjectActions::GetCurrentVideoTimeDisplayValueForMasterClip(project, clip),
            zebmediatypes::kTimeDisplay_Timecode2997Drop);
  EXPECT_EQ(MZ::MasterClip(clip).GetMediaOffset(0), TickTime(1234));
  EXPECT_EQ(MZ::MasterClip(nullptr).GetMediaOffset(0), TickTime(0));
  project->SetSetting("MZ.VideoTimeDisplay", "12");
  EXPECT_EQ(MZ::ProjectActions::GetCurrentVideoTimeDisplayValueForMasterClip(project, clip),
            zebmediatypes::kTimeDisplay_Frames);
}

} // namespace
