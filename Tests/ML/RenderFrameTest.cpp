#include "ML/RenderFrame.h"

#include <future>
#include <memory>
#include <set>

#include <gtest/gtest.h>

#include "BE/Project.h"
#include "Captions/contracts/SelectionMessages.h"
#include "ClipMaking.h"
#include "ML/FrameService.h"
#include "zebcore/Messaging.h"
#include "zebmediatypes/FrameRate.h"

namespace MLTest {

namespace {

using ML::FrameService;
using zebcore::classref::InterfaceRef;
using zebmediatypes::TickTime;

const TickTime kFrame = zebmediatypes::kFrameRate_25.GetFrameDuration();
TickTime Frames(std::int64_t count) {
  return TickTime(kFrame.GetTicks() * count);
}

// Keeps the worker from serving what is ordered, until it is let go.
class HeldWorker {
 public:
  HeldWorker() {
    const auto reached = std::make_shared<std::promise<void>>();
    // The worker may still be about to wait when this object is gone.
    const std::shared_future<void> released = mRelease.get_future().share();
    FrameService::Instance().Order({"/nothing", zebcore::utility::Guid::Random(), TickTime(), 1, 1},
                                   [reached, released](const auto&) {
                                     reached->set_value();
                                     released.wait();
                                   });
    reached->get_future().wait();
  }
  ~HeldWorker() { LetGo(); }
  void LetGo() {
    if (!mLetGo)
      mRelease.set_value();
    mLetGo = true;
  }

 private:
  std::promise<void> mRelease;
  bool mLetGo = false;
};

// A panel's side of the renderer: requests, and the answers on its station.
class RenderFrameTest : public testing::Test, public zebcore::messaging::Listener {
 protected:
  RenderFrameTest() {
    renderer->SetFrameSize({0, 0, kWidth, kHeight}, zebmediatypes::kPixelAspectRatio_Square);
    zebcore::messaging::AddListener(renderer->GetStationID(), this);
    zebcore::messaging::AddListener(ML::kStation_UndecodablePictures, this);
  }
  ~RenderFrameTest() override {
    FrameService::Instance().WaitUntilIdle();
    zebcore::messaging::DeliverPostedMessages();
  }

  void HandleMessage(const zebcore::messaging::Message& message) override {
    if (const auto* done = zebcore::messaging::MessageCast<ML::RenderFrameCompletionMessage>(message))
      answers.push_back(*done);
    else if (const auto* failed = zebcore::messaging::MessageCast<ML::PictureUndecodableMessage>(message))
      failures.push_back(*failed);
  }

  InterfaceRef<BE::MasterClip> AddClip(const std::filesystem::path& media, bool still = false) {
    BE::MediaInfo info;
    info.width = kWidth;
    info.height = kHeight;
    info.still = still;
    info.frameRate = zebmediatypes::kFrameRate_25;
    info.duration = Frames(300);
    return project->AddClip(u"clip", media, info, false);
  }
  static InterfaceRef<BE::IVideoSegments> VideoOf(const InterfaceRef<BE::MasterClip>& clip) {
    return clip->GetClip(BE::kMediaType_Video, 0).Query<BE::IVideoSegments>();
  }

  struct Answer {
    ML::RenderStatus status;
    InterfaceRef<MF::IVideoFrame> frame;
    std::uint32_t request = 0;
  };
  Answer Ask(const InterfaceRef<BE::IVideoSegments>& video, TickTime time, bool synchronous = false) {
    Answer answer;
    answer.status =
        renderer->Render(time, video->GetContentID(), video, {zebmediatypes::kPixelFormat_BGRA_4444_8u}, false, 800, 0,
                         answer.frame, answer.request, synchronous, zebmediatypes::kPixelFormat_Invalid, {}, {});
    return answer;
  }
  void Settle() {
    FrameService::Instance().WaitUntilIdle();
    zebcore::messaging::DeliverPostedMessages();
  }

  InterfaceRef<BE::Project> project = BE::Project::CreateInMemory();
  InterfaceRef<ML::IRenderFrame> renderer =
      zebcore::classref::CreateClassInstanceRef(ML::kRenderFrameClassID).Query<ML::IRenderFrame>();
  std::vector<ML::RenderFrameCompletionMessage> answers;
  std::vector<ML::PictureUndecodableMessage> failures;
};

TEST_F(RenderFrameTest, APictureComesByMessageAndTheSecondTimeAtOnce) {
  const Clip media({.name = "a.mp4", .pictures = 50, .bFrames = 2});
  const auto video = VideoOf(AddClip(media.Path()));
  const Answer first = Ask(video, Frames(31));
  EXPECT_NE(first.status, ML::kRenderStatus_Complete);
  EXPECT_FALSE(first.frame);
  Settle();
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers[0].requestID, first.request);
  EXPECT_EQ(answers[0].time, Frames(31));
  EXPECT_EQ(NumberOn(answers[0].frame), 31);
  const Answer second = Ask(video, Frames(31));
  EXPECT_EQ(second.status, 0x200D0000U);
  EXPECT_EQ(NumberOn(second.frame), 31);
  EXPECT_NE(second.request, first.request);
  Settle();
  EXPECT_EQ(answers.size(), 1U);
}

TEST_F(RenderFrameTest, AnotherSizeOfAKeptPictureIsMadeAnew) {
  const Clip media({.name = "a.mp4", .pictures = 50});
  const auto video = VideoOf(AddClip(media.Path()));
  Ask(video, Frames(7));
  Settle();
  renderer->SetFrameSize({0, 0, 114, 64}, zebmediatypes::kPixelAspectRatio_Square);
  EXPECT_FALSE(Ask(video, Frames(7)).frame);
  Settle();
  ASSERT_EQ(answers.size(), 2U);
  EXPECT_EQ(answers[1].frame->GetRect().width, 114);
  EXPECT_EQ(NumberOn(answers[1].frame), 7);
}

TEST_F(RenderFrameTest, TheNewestRequestIsServedFirstAndNoneIsDropped) {
  const Clip media({.name = "a.mp4", .bFrames = 2});
  const auto video = VideoOf(AddClip(media.Path()));
  HeldWorker held;
  std::vector<std::uint32_t> asked;
  for (int number = 0; number < 300; ++number)
    asked.push_back(Ask(video, Frames(number)).request);
  held.LetGo();
  Settle();
  std::vector<std::uint32_t> served;
  for (const auto& answer : answers)
    served.push_back(answer.requestID);
  EXPECT_EQ(served, std::vector<std::uint32_t>(asked.rbegin(), asked.rend()));
  for (const auto& answer : answers)
    EXPECT_EQ(NumberOn(answer.frame), answer.time.GetTicks() / kFrame.GetTicks());
}

// More of them than pictures are kept.
TEST_F(RenderFrameTest, RequestsOutliveThePicturesThatAreKept) {
  const Clip media({.name = "a.mov", .encoder = "prores_ks", .format = AV_PIX_FMT_YUV422P10, .pictures = 30});
  const auto video = VideoOf(AddClip(media.Path()));
  HeldWorker held;
  constexpr int kRequests = 3000;
  for (int number = 0; number < kRequests; ++number)
    Ask(video, TickTime(Frames(29).GetTicks() * number / kRequests));
  held.LetGo();
  Settle();
  EXPECT_EQ(answers.size(), static_cast<std::size_t>(kRequests));
}

TEST_F(RenderFrameTest, OfLargePicturesFewerAreKept) {
  const Clip media({.name = "a.mp4", .pictures = 50});
  const auto video = VideoOf(AddClip(media.Path()));
  renderer->SetFrameSize({0, 0, 1920, 1080}, zebmediatypes::kPixelAspectRatio_Square); // 8 MB each
  constexpr int kLast = 11;
  for (int number = 0; number <= kLast; ++number) {
    Ask(video, Frames(number));
    Settle();
  }
  EXPECT_TRUE(Ask(video, Frames(kLast)).frame);
  EXPECT_FALSE(Ask(video, Frames(0)).frame);
}

TEST_F(RenderFrameTest, AskingNeverWaitsForAPictureUnderWay) {
  const Clip media({.name = "a.mp4", .pictures = 50});
  const auto video = VideoOf(AddClip(media.Path()));
  HeldWorker held; // the pictures before this one take for ever
  for (int number = 0; number < 1000; ++number)
    EXPECT_FALSE(Ask(video, TickTime(number)).frame);
  EXPECT_TRUE(answers.empty());
}

TEST_F(RenderFrameTest, ARequestThatIsMadeTwiceIsAnsweredTwice) {
  const Clip media({.name = "a.mp4", .pictures = 50});
  const auto video = VideoOf(AddClip(media.Path()));
  HeldWorker held;
  Ask(video, Frames(3));
  Ask(video, Frames(3));
  held.LetGo();
  Settle();
  ASSERT_EQ(answers.size(), 2U);
  EXPECT_TRUE(answers[0].frame == answers[1].frame);
}

TEST_F(RenderFrameTest, MoreFilesThanStayOpenAreServedInTurn) {
  std::vector<std::unique_ptr<Clip>> media;
  std::vector<InterfaceRef<BE::IVideoSegments>> videos;
  for (int file = 0; file < 6; ++file) {
    media.push_back(std::make_unique<Clip>(ClipDescription{.name = "a.mp4", .pictures = 50, .bFrames = 2}));
    videos.push_back(VideoOf(AddClip(media.back()->Path())));
  }
  for (const int number : {40, 3, 20}) {
    for (const auto& video : videos)
      Ask(video, Frames(number));
  }
  Settle();
  ASSERT_EQ(answers.size(), 18U);
  for (const auto& answer : answers)
    EXPECT_EQ(NumberOn(answer.frame), answer.time.GetTicks() / kFrame.GetTicks());
}

TEST_F(RenderFrameTest, AStillImageHasItsPictureAtEveryTime) {
  const Clip media({.name = "s.png", .encoder = "png", .format = AV_PIX_FMT_RGB24, .pictures = 1});
  const auto still = AddClip(media.Path(), true).Query<BE::IVideoSegments>();
  Ask(still, Frames(0));
  Ask(still, Frames(100000));
  Settle();
  ASSERT_EQ(answers.size(), 2U);
  for (const auto& answer : answers)
    EXPECT_EQ(NumberOn(answer.frame), 0);
}

TEST_F(RenderFrameTest, AVideoWithoutAMediaFileStaysWithoutAnAnswer) {
  const auto video = VideoOf(AddClip({}));
  EXPECT_NE(Ask(video, Frames(1)).status, ML::kRenderStatus_Complete);
  Settle();
  EXPECT_TRUE(answers.empty());
  EXPECT_TRUE(failures.empty());
}

TEST_F(RenderFrameTest, PicturesThatCannotBeDecodedStayOutAndTheirClipIsNamedOnce) {
  const Clip media({.name = "bad.mov",
                    .encoder = "prores_ks",
                    .format = AV_PIX_FMT_YUV422P10,
                    .muxerOptions = {{"movflags", "faststart"}}});
  media.Damage(0.5, 0.85);
  const auto video = VideoOf(AddClip(media.Path()));
  HeldWorker held; // until all are asked for
  for (const int number : {10, 180, 190, 200, 20})
    Ask(video, Frames(number));
  held.LetGo();
  Settle();
  std::set<int> shown;
  for (const auto& answer : answers)
    shown.insert(NumberOn(answer.frame));
  EXPECT_EQ(shown, (std::set<int>{10, 20}));
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_EQ(failures[0].media, media.Path());
  EXPECT_EQ(failures[0].time, Frames(200)) << "the first that was tried";

  Ask(VideoOf(AddClip(media.Path())), Frames(185));
  Settle();
  EXPECT_EQ(failures.size(), 2U) << "another clip of the same file";
}

TEST_F(RenderFrameTest, WhoeverWaitsGetsThePictureItself) {
  const Clip media({.name = "a.mp4", .pictures = 50});
  const auto video = VideoOf(AddClip(media.Path()));
  const Answer answer = Ask(video, Frames(12), true);
  EXPECT_EQ(answer.status, ML::kRenderStatus_Complete);
  EXPECT_EQ(NumberOn(answer.frame), 12);
  Settle();
  EXPECT_TRUE(answers.empty());
}

TEST_F(RenderFrameTest, EveryRendererAnswersOnAStationOfItsOwn) {
  const InterfaceRef<ML::IRenderFrame> other = ML::CreateRenderFrame().Query<ML::IRenderFrame>();
  EXPECT_FALSE(other->GetStationID() == renderer->GetStationID());
}

} // namespace

} // namespace MLTest
