#include <gmock/gmock.h>

#include <algorithm>

#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "MZ/Actions.h"
#include "Support.h"
#include "UIF/Workspace.h"

namespace AppTest {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using zebcore::messaging::MessageCast;

namespace {

// Notes the clips that the host says are selected, and how often edits are asked to be committed.
class Ear : public zebcore::messaging::Listener {
 public:
  Ear() {
    zebcore::messaging::AddListener(MZ::kStation_MasterClipActivation, this);
    zebcore::messaging::AddListener(MZ::kStation_ClosedCaptionsActivation, this);
    zebcore::messaging::AddListener(HSL::kStation_CaptionSelection, this);
  }
  void HandleMessage(const zebcore::messaging::Message& message) override {
    if (const auto* selected = MessageCast<MZ::MasterClipSelectedMessage>(message))
      clips.push_back(selected->clip);
    else if (MessageCast<MZ::ClosedCaptionsOpenedMessage>(message))
      ++opened;
    else if (MessageCast<HSL::CaptionCommitEditsMessage>(message))
      ++commits;
  }

  std::vector<InterfaceRef<BE::IMasterClip>> clips;
  int opened = 0;
  int commits = 0;
};

std::vector<std::string> Texts(const InterfaceRef<BE::CaptioningStream>& stream) {
  std::vector<boost::intrusive_ptr<zebcaptioning::Caption>> captions;
  stream->GetCaptions(captions);
  std::vector<std::string> texts;
  for (const auto& caption : captions)
    texts.push_back(zebcore::ToUTF8(caption->GetState()->text));
  return texts;
}

} // namespace

TEST_F(SessionTest, ACaptionFileComesInAsOneUndoableStep) {
  const auto before = project()->GetUndoNames();
  const auto report = session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1);
  ASSERT_TRUE(report) << report.problem.text;
  EXPECT_THAT(Texts(report.value->stream), ElementsAre("The harbour wakes.", "A gull calls."));
  EXPECT_EQ(report.value->encoding, "UTF-8");
  EXPECT_EQ(project()->GetUndoNames().size(), before.size() + 1);
  EXPECT_TRUE(session().Undo());
  EXPECT_THAT(clip->GetStreams(), IsEmpty());
  EXPECT_TRUE(session().Redo());
  ASSERT_EQ(clip->GetStreams().size(), 1u);
  EXPECT_THAT(Texts(clip->GetStreams().front()), ElementsAre("The harbour wakes.", "A gull calls."));
}

TEST_F(SessionTest, ASecondFileOfOneFormatTakesTheNextFreeChannel) {
  const fs::path path = folder.Write("good.srt", kTwoCaptions);
  ASSERT_TRUE(session().ImportCaptions(clip, path, cc1));
  const auto second = session().ImportCaptions(clip, path, cc1);
  ASSERT_TRUE(second) << second.problem.text;
  EXPECT_EQ(second.value->stream->GetStreamFormat(), App::GetStreamFormat("cea608", 2));
}

TEST_F(SessionTest, WhenEveryChannelIsTakenTheNextFileIsRefusedInWords) {
  const fs::path path = folder.Write("good.srt", kTwoCaptions);
  for (int channel = 1; channel <= 4; ++channel)
    ASSERT_TRUE(session().ImportCaptions(clip, path, cc1));
  const auto fifth = session().ImportCaptions(clip, path, cc1);
  EXPECT_FALSE(fifth);
  EXPECT_THAT(fifth.problem.text, HasSubstr("Harbour"));
  EXPECT_EQ(clip->GetStreams().size(), 4u);
}

TEST_F(SessionTest, AnImportThatIsStoppedLeavesNothingBehind) {
  const Picture before = TakePicture();
  const auto report = session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1,
                                               [](double, const std::string&) { return false; });
  EXPECT_FALSE(report);
  EXPECT_FALSE(report.problem.text.empty());
  EXPECT_EQ(TakePicture(), before);
}

TEST_F(SessionTest, AnImportThatIsStoppedAtTheLastMomentLeavesNothingBehind) {
  const Picture before = TakePicture();
  const auto report = session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1,
                                               [](double fraction, const std::string&) { return fraction < 0.8; });
  EXPECT_FALSE(report);
  EXPECT_EQ(TakePicture(), before);
}

TEST_F(SessionTest, AnImportTellsWhatItImports) {
  std::string told;
  ASSERT_TRUE(session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1,
                                       [&told](double, const std::string& what) {
                                         told = what;
                                         return true;
                                       }));
  EXPECT_THAT(told, HasSubstr("good.srt"));
}

TEST_F(SessionTest, WhatIsExportedComesInAgainAsItWas) {
  const auto report = session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1);
  ASSERT_TRUE(report);
  for (const auto& [name, kind] :
       {std::pair{"out.srt", Formats::FileKind::SubRip}, {"out.vtt", Formats::FileKind::WebVTT}}) {
    const auto problems = session().ExportCaptions(report.value->stream, folder / name, kind);
    ASSERT_TRUE(problems) << problems.problem.text;
    const auto again = session().ImportCaptions(clip, folder / name, cc1);
    ASSERT_TRUE(again) << again.problem.text;
    EXPECT_THAT(Texts(again.value->stream), ElementsAre("The harbour wakes.", "A gull calls."));
  }
}

TEST_F(SessionTest, AnExportThatFailsLeavesTheFileThatWasThere) {
  const auto report = session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1);
  ASSERT_TRUE(report);
  fs::create_directory(folder / "folder.srt");
  folder.Write("folder.srt/inside", "kept");
  const auto problems =
      session().ExportCaptions(report.value->stream, folder / "folder.srt", Formats::FileKind::SubRip);
  EXPECT_FALSE(problems);
  EXPECT_THAT(problems.problem.text, HasSubstr("folder.srt"));
  EXPECT_EQ(ReadFile(folder / "folder.srt/inside"), "kept");
}

TEST_F(SessionTest, AnExportThatIsStoppedLeavesTheFileThatWasThere) {
  const auto report = session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1);
  ASSERT_TRUE(report);
  const fs::path path = folder.Write("out.srt", "what was there");
  EXPECT_FALSE(session().ExportCaptions(report.value->stream, path, Formats::FileKind::SubRip,
                                        [](double, const std::string&) { return false; }));
  EXPECT_EQ(ReadFile(path), "what was there");
}

TEST_F(SessionTest, BeforeAnExportOpenEditsAreCommitted) {
  const auto report = session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1);
  ASSERT_TRUE(report);
  Ear ear;
  ASSERT_TRUE(session().ExportCaptions(report.value->stream, folder / "out.srt", Formats::FileKind::SubRip));
  EXPECT_EQ(ear.commits, 1);
}

TEST_F(SessionTest, ANewStreamIsEmptyAndItsFormatCannotBeGivenTwice) {
  const auto stream = session().NewStream(clip, cc1);
  ASSERT_TRUE(stream) << stream.problem.text;
  EXPECT_EQ((*stream.value)->GetCaptionCount(), 0u);
  const auto second = session().NewStream(clip, cc1);
  EXPECT_FALSE(second);
  EXPECT_FALSE(second.problem.text.empty());
}

TEST_F(SessionTest, EveryFamilyHasAStreamThatACopyCanBeMadeIn) {
  const auto report = session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1);
  ASSERT_TRUE(report);
  for (const std::string& family : App::GetStreamFamilies()) {
    const auto format = App::GetStreamFormat(family, family == "cea608" ? 2 : 1);
    const auto copy = session().DuplicateStream(report.value->stream, format);
    ASSERT_TRUE(copy) << family << ": " << copy.problem.text;
    EXPECT_EQ((*copy.value)->GetStreamFormat(), format);
    EXPECT_THAT(Texts(*copy.value), ElementsAre("The harbour wakes.", "A gull calls.")) << family;
  }
  EXPECT_THAT(Texts(report.value->stream), ElementsAre("The harbour wakes.", "A gull calls."));
}

TEST_F(SessionTest, ACopyInAFormatWithFewerColoursTakesTheNearestOnes) {
  const auto report = session().ImportCaptions(
      clip, folder.Write("red.srt", "1\n00:00:01,000 --> 00:00:02,000\n<font color=\"#e01010\">Red</font>\n"),
      App::GetStreamFormat("open", 1));
  ASSERT_TRUE(report) << report.problem.text;
  const auto copy = session().DuplicateStream(report.value->stream, cc1);
  ASSERT_TRUE(copy) << copy.problem.text;
  const auto caption = (*copy.value)->FindByBegin(zebmediatypes::TickTime(zebmediatypes::kTicksPerSecond));
  ASSERT_TRUE(caption);
  const zebcaptioning::CaptioningColor color = caption->GetState()->runs.front().attributes->textColor;
  EXPECT_EQ(color, zebcaptioning::CaptioningColor(1.0F, 0.0F, 0.0F, 1.0F));
}

TEST_F(SessionTest, ADeletedStreamIsBackAfterUndo) {
  const auto report = session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1);
  ASSERT_TRUE(report);
  session().DeleteStream(report.value->stream);
  EXPECT_THAT(clip->GetStreams(), IsEmpty());
  EXPECT_TRUE(session().Undo());
  EXPECT_EQ(clip->GetStreams().size(), 1u);
}

TEST_F(SessionTest, SelectingAClipIsSaidAndIsSaidAgainToAPanelThatWasMadeLater) {
  Ear ear;
  session().SelectClip(clip);
  ASSERT_EQ(ear.clips.size(), 1u);
  EXPECT_EQ(ear.clips[0], clip);
  session().RepeatSelection();
  ASSERT_EQ(ear.clips.size(), 2u);
  EXPECT_EQ(ear.clips[1], clip);
  session().SelectNothing();
  EXPECT_FALSE(ear.clips.back());
}

TEST_F(SessionTest, OpeningCaptionsIsSaid) {
  Ear ear;
  session().OpenCaptions();
  EXPECT_EQ(ear.opened, 1);
}

TEST_F(SessionTest, AProjectIsTheActiveOneAndNothingIsSelectedInANewOne) {
  session().SelectClip(clip);
  ASSERT_FALSE(session().NewProject(folder / "Next.captivo"));
  EXPECT_FALSE(session().GetSelectedClip());
  EXPECT_EQ(MZ::GetActiveProject(), project());
  session().CloseProject();
  EXPECT_FALSE(session().GetProject());
  EXPECT_FALSE(MZ::GetActiveProject());
}

TEST_F(SessionTest, ReopeningShowsEverythingAsItWasLeft) {
  ASSERT_TRUE(session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1));
  const auto names = project()->GetUndoNames();
  clip = nullptr;
  session().CloseProject();
  const auto problem = session().OpenProject(folder / "Harbour.captivo");
  ASSERT_FALSE(problem) << problem->text;
  ASSERT_EQ(project()->GetClips().size(), 1u);
  ASSERT_EQ(project()->GetClips()[0]->GetStreams().size(), 1u);
  EXPECT_THAT(Texts(project()->GetClips()[0]->GetStreams()[0]), ElementsAre("The harbour wakes.", "A gull calls."));
  EXPECT_EQ(project()->GetUndoNames(), names);
}

TEST_F(SessionTest, OpeningTheProjectThatIsOpenKeepsItOpen) {
  const auto same = project();
  const auto problem = session().OpenProject(folder / "Harbour.captivo");
  EXPECT_FALSE(problem) << problem->text;
  EXPECT_EQ(project(), same);
}

TEST_F(SessionTest, AfterSaveAsTheProjectLivesAtItsNewPlace) {
  const auto problem = session().SaveProjectAs(folder / "Quay.captivo");
  ASSERT_FALSE(problem) << problem->text;
  EXPECT_EQ(project()->GetPath(), folder / "Quay.captivo");
  EXPECT_FALSE(project()->IsUntitled());
}

TEST_F(SessionTest, AnUntitledProjectThatWasNeverTouchedLeavesNoFile) {
  ASSERT_FALSE(session().NewProject());
  const fs::path path = project()->GetPath();
  ASSERT_TRUE(fs::exists(path));
  session().CloseProject();
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(SessionTest, AnUntitledProjectWithAClipIsKept) {
  ASSERT_FALSE(session().NewProject());
  const fs::path path = project()->GetPath();
  AddClip("Something");
  session().CloseProject();
  EXPECT_TRUE(fs::exists(path));
}

TEST_F(SessionTest, ARemovedClipIsNotSelectedAnyMore) {
  session().SelectClip(clip);
  session().RemoveClip(clip);
  EXPECT_FALSE(session().GetSelectedClip());
  EXPECT_THAT(project()->GetClips(), IsEmpty());
}

TEST(StreamNumbers, AFamilyThatIsNotKnownAndAChannelThatIsNotThereHaveNone) {
  EXPECT_EQ(App::GetStreamFormat("cea609", 1), zebcaptioning::kStreamFormat_None);
  EXPECT_EQ(App::GetStreamFormat("cea608", 0), zebcaptioning::kStreamFormat_None);
  EXPECT_EQ(App::GetStreamFormat("cea608", 5), zebcaptioning::kStreamFormat_None);
}

TEST(StreamNumbers, TheSixFamiliesAreNamedInOrder) {
  EXPECT_THAT(App::GetStreamFamilies(), ElementsAre("cea608", "cea708", "teletext", "ebu_n19", "australian", "open"));
  EXPECT_EQ(App::GetStreamFormat("cea608", 1), zebcaptioning::kStreamFormat_608_CC1);
}

} // namespace AppTest
