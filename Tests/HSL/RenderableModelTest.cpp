#include "Captions/contracts/CaptioningRenderableModel.h"

#include <utility>

#include <gtest/gtest.h>

#include "../BE/Builders.h"
#include "Captions/contracts/CaptioningStreamUpdater.h"
#include "zebcaptioning/StreamNumbers.h"

namespace {

using namespace test;
using zebcaptioning::CaptionFormatInfo;
using zebcaptioning::CaptioningRenderableModel;

const zebcaptioning::StreamFormat kOpen = zebcaptioning::GetStreamFormat(zebcaptioning::FormatFamily::Open, 1);
constexpr std::pair<std::size_t, std::size_t> kAll{0, zebcaptioning::kTextRange_End};

class RenderableModel : public testing::Test {
 protected:
  InterfaceRef<BE::Project> project = BE::Project::CreateInMemory();
  InterfaceRef<BE::MasterClip> clip = AddVideoClip(project);
  InterfaceRef<BE::CaptioningStream> stream =
      AddStream(project, clip, {State(10, 20, "one"), State(15, 30, "two"), State(40, 50, "three")}, kOpen);

  zebcore::utility::Guid Hash(std::int64_t time = 12) const {
    return CaptioningRenderableModel::CalculateRequestHash(stream->GetGuid(), TickTime(time),
                                                           stream->GetStreamFormat());
  }
  std::vector<zebcore::UString> Shown(std::int64_t time) const {
    std::vector<zebcore::UString> texts;
    if (const auto model = stream->GetRenderableModel(TickTime(time)))
      for (const auto& caption : model->GetCaptions())
        texts.push_back(caption->text);
    return texts;
  }
  // Whether the hash, and with it the preview, is another after the change.
  template <class Change> bool Renews(Change change) {
    const auto before = Hash();
    change();
    return Hash() != before;
  }
};

TEST_F(RenderableModel, HoldsTheCaptionsOnShowTheOldestFirst) {
  EXPECT_EQ(Shown(9), (std::vector<zebcore::UString>{}));
  EXPECT_EQ(Shown(10), (std::vector<zebcore::UString>{u"one"}));
  EXPECT_EQ(Shown(15), (std::vector<zebcore::UString>{u"one", u"two"}));
  EXPECT_EQ(Shown(19), (std::vector<zebcore::UString>{u"one", u"two"}));
  EXPECT_EQ(Shown(20), (std::vector<zebcore::UString>{u"two"})) << "the end is no longer on show";
}

TEST_F(RenderableModel, IsNullBetweenCaptionsAndForClosedFormats) {
  EXPECT_FALSE(stream->GetRenderableModel(TickTime(35)));
  EXPECT_FALSE(AddStream(project, clip, {State(10, 20, "closed")})->GetRenderableModel(TickTime(12)));
}

TEST_F(RenderableModel, KnowsTheFrameAndItsPixels) {
  BE::MediaInfo info = VideoInfo();
  info.width = 720;
  info.height = 576;
  info.pixelAspect = {64, 45};
  const auto pal = AddStream(project, project->AddClip(u"pal", "", info, false), {State(10, 20, "x")}, kOpen);
  const auto model = pal->GetRenderableModel(TickTime(12));
  ASSERT_TRUE(model);
  EXPECT_EQ(model->GetFrameWidth(), 720);
  EXPECT_EQ(model->GetFrameHeight(), 576);
  EXPECT_EQ(model->GetPixelAspectRatio(), (zebmediatypes::PixelAspectRatio{64, 45}));
}

TEST_F(RenderableModel, StaysAsItWasWhenItsCaptionsChange) {
  const auto model = stream->GetRenderableModel(TickTime(12));
  HSL::CaptioningStreamUpdater updater(stream);
  updater.ApplyTextChange(TickTime(10), u"one", u"other", {5, 5}, false);
  EXPECT_EQ(model->GetCaptions().front()->text, u"one");
  EXPECT_EQ(Shown(12), (std::vector<zebcore::UString>{u"other"}));
}

TEST_F(RenderableModel, ItsHashIsTheSameForAsLongAsNothingChangesAndAnotherForEachTime) {
  EXPECT_EQ(Hash(12), Hash(12));
  EXPECT_NE(Hash(12), Hash(13));
}

TEST_F(RenderableModel, ItsHashChangesWithTextTimesAndEveryAttributeThatIsDrawn) {
  HSL::CaptioningStreamUpdater updater(stream);
  CaptionFormatInfo info;
  info.SetIsUnderlined(true, true);
  info.SetIsItalicized(true, true);
  info.SetIsBolded(true, true);
  info.SetFontFamily(u"DejaVu Serif", true);
  info.SetFontSize(33, true);
  info.SetAnchorID(2, false);
  info.SetTextAlignment(zebcaptioning::ParagraphStyleAttributes::kTextAlignment_Right, true);
  for (const int type : {0, 1, 2}) {
    info.SetColor(static_cast<zebcaptioning::CaptioningColor::ColorType>(type), {0.25F, 0.5F, 0.75F, 1}, true);
    info.SetOpacity(static_cast<zebcaptioning::CaptioningColor::ColorType>(type), 0.5F, true);
  }
  info.SetTextEdgeWidth(3, true);
  info.SetPositionX(77);
  info.SetPositionY(88);
  info.SetLineSpacing(40, true);
  // A colour brings its opacity, and that of an edge its width, so that these have to differ once more.
  CaptionFormatInfo again = info;
  for (const int type : {0, 1, 2})
    again.SetOpacity(static_cast<zebcaptioning::CaptioningColor::ColorType>(type), 0.125F, true);
  again.SetTextEdgeWidth(5, true);
  for (int parameter = zebcaptioning::kFormatUnderline; parameter <= zebcaptioning::kFormatLineSpacing; ++parameter) {
    const auto asParameter = static_cast<zebcaptioning::CaptionFormatParameter>(parameter);
    const bool cameWithColor =
        parameter >= zebcaptioning::kFormatTextOpacity && parameter <= zebcaptioning::kFormatEdgeWidth;
    const auto apply = [&] {
      updater.ApplyFormatParameter(asParameter, cameWithColor ? again : info, {TickTime(10)}, kAll);
    };
    EXPECT_TRUE(Renews(apply)) << parameter;
    EXPECT_FALSE(Renews(apply)) << parameter << ": the same again changes no picture";
  }
  EXPECT_TRUE(Renews([&] { updater.ApplyTextChange(TickTime(10), u"one", u"on", {2, 2}, false); }));
}

TEST_F(RenderableModel, ItsHashChangesWithUndoAndRedo) {
  {
    HSL::CaptioningStreamUpdater updater(stream);
    updater.ApplyTextChange(TickTime(10), u"one", u"other", {5, 5}, false);
    EXPECT_FALSE(Renews([&] { updater.CommitChangesUndoable(true); })) << "committing changes no picture";
  }
  EXPECT_TRUE(Renews([&] { project->Undo(); }));
  EXPECT_TRUE(Renews([&] { project->Redo(); }));
}

TEST_F(RenderableModel, ItsHashChangesWithARevert) {
  HSL::CaptioningStreamUpdater updater(stream);
  updater.ApplyTextChange(TickTime(10), u"one", u"other", {5, 5}, false);
  EXPECT_TRUE(Renews([&] { updater.RevertChanges(); }));
  EXPECT_FALSE(Renews([&] { updater.RevertChanges(); }));
}

TEST_F(RenderableModel, ItsHashDoesNotChangeWithMeasuresAndQuestions) {
  HSL::CaptioningStreamUpdater updater(stream);
  EXPECT_FALSE(Renews([&] { updater.UpdateTextWidthAndPositioning(true); }));
  EXPECT_FALSE(Renews([&] { stream->GetRenderableModel(TickTime(12)); }));
  EXPECT_FALSE(Renews([&] { stream->SetBusy(true); }));
  stream->SetBusy(false);
}

TEST_F(RenderableModel, ItsHashDoesNotChangeWithAnotherStream) {
  const auto other = AddStream(project, clip, {State(10, 20, "closed")});
  EXPECT_FALSE(Renews([&] {
    HSL::CaptioningStreamUpdater updater(other);
    updater.ApplyTextChange(TickTime(10), u"closed", u"x", {1, 1}, false);
  }));
}

} // namespace
