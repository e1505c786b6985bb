#include "Captions/contracts/CaptioningRenderableModel.h"
#include "MF/VideoFrame.h"
#include "Support.h"

namespace Captivo::Testing {

namespace {

const TickTime kFrame = zebmediatypes::kFrameRate_25.GetFrameDuration();

class PanePreview : public PanelTest {
 protected:
  void OpenPanelOnOpenCaptions(const std::vector<boost::intrusive_ptr<Caption>>& captions) {
    clip = AddClip();
    stream = AddStream(clip, captions, kOpenTrack1);
    OpenPanel();
    SelectClip(clip);
  }
  static InterfaceRef<MF::IVideoFrame> MakePicture() {
    return MF::CreateVideoFrame(114, 64, zebmediatypes::kPixelAspectRatio_Square);
  }
  std::uint32_t FindRequest(const TickTime& time) {
    for (const RenderRequest& request : renderRequests) {
      if (request.time == time)
        return request.id;
    }
    ADD_FAILURE() << "no picture was asked for";
    return 0;
  }
  // How many pictures one pass over the panel paints.
  std::size_t CountPaintedPictures() {
    zebcore::trace::Take();
    Paint();
    return TakeCalls("VideoFrameBlit::BlitFrame").size();
  }
  auto& Entry(const TickTime& time) { return Inspector::FindPreviewEntry(Pane(), Video(), time); }
  std::size_t CountEntries() { return Inspector::CountPreviews(Pane(), Video()); }
};

} // namespace

TEST_F(PanePreview, ARowShowsTheLastFrameOfItsCaption) {
  OpenPanelOn({MakeCaption(1, 2), MakeCaption(3, 4)});
  EXPECT_EQ(CountPaintedPictures(), 0U);
  const auto picture = MakePicture();
  CompleteRender(FindRequest(Seconds(4) - kFrame), Seconds(4) - kFrame, picture);
  EXPECT_EQ(CountPaintedPictures(), 1U);
  EXPECT_TRUE(Entry(Seconds(4) - kFrame).frame == picture);
}

TEST_F(PanePreview, APictureOfAnyOtherTimeIsKeptAndShownByNoRow) {
  OpenPanelOn({MakeCaption(1, 2)});
  const auto picture = MakePicture();
  CompleteRender(FindRequest(Seconds(2) - kFrame), Seconds(2), picture);
  EXPECT_EQ(CountPaintedPictures(), 0U);
  EXPECT_TRUE(Entry(Seconds(2)).frame == picture);
}

TEST_F(PanePreview, APictureThatIsThereAtOnceIsKeptWithoutAReport) {
  renderer.picture = MakePicture();
  OpenPanelOn({MakeCaption(1, 2)});
  EXPECT_TRUE(Entry(Seconds(2) - kFrame).frame == renderer.picture);
  EXPECT_EQ(CountPaintedPictures(), 1U);
}

TEST_F(PanePreview, APictureForAMovedRowIsKeptAndShownByNoRow) {
  OpenPanelOn({MakeCaption(1, 2)});
  const TickTime former = Seconds(2) - kFrame;
  Pane().ChangeCaptionTimes(Seconds(1), Seconds(5), Seconds(1));
  CompleteRender(FindRequest(former), former, MakePicture());
  EXPECT_EQ(CountPaintedPictures(), 0U);
  EXPECT_TRUE(Entry(former).frame);
  CompleteRender(FindRequest(Seconds(6) - kFrame), Seconds(6) - kFrame, MakePicture());
  EXPECT_EQ(CountPaintedPictures(), 1U);
}

TEST_F(PanePreview, APictureThatNobodyAskedForIsKeptUnderNoVideo) {
  OpenPanelOn({MakeCaption(1, 2)});
  const TickTime time = Seconds(2) - kFrame;
  const std::uint32_t unknown = FindRequest(time) + 1000;
  CompleteRender(unknown, time, MakePicture());
  EXPECT_EQ(Inspector::CountPreviews(Pane(), nullptr), 1U);
  EXPECT_EQ(CountPaintedPictures(), 0U);
  CompleteRender(FindRequest(time), time, MakePicture());
  EXPECT_EQ(Inspector::CountPreviews(Pane(), nullptr), 1U);
  EXPECT_EQ(CountPaintedPictures(), 1U);
}

TEST_F(PanePreview, TwoRowsThatEndTogetherShareOnePicture) {
  OpenPanelOn({MakeCaption(1, 4), MakeCaption(3, 4)});
  ASSERT_EQ(renderRequests.size(), 2U);
  CompleteRender(renderRequests[0].id, renderRequests[0].time, MakePicture());
  EXPECT_EQ(CountPaintedPictures(), 2U);
  EXPECT_EQ(CountEntries(), 1U);
}

TEST_F(PanePreview, AReportWithoutAPictureKeepsTheFormerOne) {
  OpenPanelOn({MakeCaption(1, 2)});
  const TickTime time = Seconds(2) - kFrame;
  const auto picture = MakePicture();
  CompleteRender(FindRequest(time), time, picture);
  CompleteRender(FindRequest(time), time, nullptr);
  EXPECT_TRUE(Entry(time).frame == picture);
  const auto further = MakePicture();
  CompleteRender(FindRequest(time), time, further);
  EXPECT_TRUE(Entry(time).frame == further);
}

TEST_F(PanePreview, AStreamWithoutCaptionsFetchesNoOverlayAndKeepsThePicture) {
  OpenPanelOnOpenCaptions({});
  CompleteRender(1, Seconds(1), MakePicture());
  EXPECT_EQ(Entry(Seconds(1)).requestHash, zebcore::utility::Guid());
  EXPECT_EQ(Entry(Seconds(1)).model, nullptr);
  EXPECT_TRUE(Inspector::PreviewCache(Pane())[nullptr][Seconds(1)].frame);
}

TEST_F(PanePreview, OpenCaptionsAreFetchedOnceAndAgainAfterTheStreamChanged) {
  OpenPanelOnOpenCaptions({MakeCaption(1, 2, u"One")});
  const TickTime time = Seconds(2) - kFrame;
  const auto model = Entry(time).model;
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(Entry(time).requestHash,
            zebcaptioning::CaptioningRenderableModel::CalculateRequestHash(stream->GetGuid(), time, kOpenTrack1));
  EXPECT_EQ(Entry(time).model, model);
  Pane().ApplyTextChange(Seconds(1), u"One", u"Two", {3, 3}, false);
  Paint();
  ASSERT_NE(Entry(time).model, model);
  EXPECT_EQ(Entry(time).model->GetCaptions().front()->text, u"Two");
}

TEST_F(PanePreview, TheOverlayIsDrawnOnACopyOfThePicture) {
  OpenPanelOnOpenCaptions({MakeCaption(1, 2, u"WWWWWWWW")});
  const TickTime time = Seconds(2) - kFrame;
  const auto picture = MakePicture();
  const std::size_t size = static_cast<std::size_t>(picture->GetRowBytes()) * 64;
  constexpr std::uint8_t kBlue[] = {255, 0, 0, 255}; // as stored
  for (std::size_t i = 0; i < size; ++i)
    picture->GetWritablePixels()[i] = kBlue[i % 4];
  const std::vector<std::uint8_t> before(picture->GetPixels(), picture->GetPixels() + size);
  CompleteRender(FindRequest(time), time, picture);
  EXPECT_EQ(CountPaintedPictures(), 1U);
  EXPECT_EQ(std::vector<std::uint8_t>(picture->GetPixels(), picture->GetPixels() + size), before);
  constexpr PointT<int> kBesideTheText{5 + 4, 6 + 32};
  EXPECT_EQ(PaintedColor(kBesideTheText), 0xFF0000FFU);
}

TEST_F(PanePreview, PicturesOfAClipOutliveItsStayOnShow) {
  OpenPanelOn({MakeCaption(1, 2)});
  const TickTime time = Seconds(2) - kFrame;
  CompleteRender(FindRequest(time), time, MakePicture());
  SelectClip(nullptr);
  EXPECT_EQ(CountEntries(), 1U);
  SelectClip(clip);
  EXPECT_EQ(CountPaintedPictures(), 1U);
}

TEST_F(PanePreview, ARowThatScrollsBackIntoViewAsksAgainAndShowsWhatItHasMeanwhile) {
  OpenPanelOn(MakeCaptions({1, 3, 5, 7, 9, 11}));
  Pane().SetBounds({0, 0, 500, 75});
  const TickTime time = Seconds(2) - kFrame;
  CompleteRender(FindRequest(time), time, MakePicture());
  Pane().SetScrollOffset(75);
  renderRequests.clear();
  Pane().SetScrollOffset(0);
  FindRequest(time);
  EXPECT_EQ(CountPaintedPictures(), 1U);
}

TEST_F(PanePreview, ForgettingAVideoDropsItsPicturesAndNoOthers) {
  OpenPanelOn({MakeCaption(1, 2)});
  const TickTime time = Seconds(2) - kFrame;
  CompleteRender(FindRequest(time), time, MakePicture());
  CompleteRender(1000, time, MakePicture());
  View().ForgetPreview(AddClip()->GetClip(BE::kMediaType_Video, 0).Query<BE::IVideoSegments>());
  EXPECT_EQ(CountEntries(), 1U);
  View().ForgetPreview(Video());
  EXPECT_EQ(CountEntries(), 0U);
  EXPECT_EQ(Inspector::CountPreviews(Pane(), nullptr), 1U);
  EXPECT_EQ(CountPaintedPictures(), 0U);
}

TEST_F(PanePreview, WithoutVideoNoPictureIsAskedFor) {
  BE::MediaInfo info;
  info.sampleRate = 48000;
  info.duration = Seconds(60);
  clip = AddClip(info);
  stream = AddStream(clip, MakeCaptions({1}));
  OpenPanel();
  SelectClip(clip);
  EXPECT_TRUE(Row(1)->HasControls());
  EXPECT_TRUE(renderRequests.empty());
}

} // namespace Captivo::Testing
