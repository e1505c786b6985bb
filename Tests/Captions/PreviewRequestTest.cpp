#include "Captions/contracts/SelectionMessages.h"
#include "MF/VideoFrame.h"
#include "Support.h"
#include "zebui/Driver.h"

// What the panel asks of the renderer, and that it never waits for it.
namespace Captivo::Testing {

namespace {

const TickTime kFrame = zebmediatypes::kFrameRate_25.GetFrameDuration();

struct Order {
  RectT<int> size;
  zebmediatypes::PixelAspectRatio aspect;
  int letterbox = -1;
  TickTime time;
  zebcore::utility::Guid content;
  InterfaceRef<BE::IVideoSegments> video;
  std::vector<zebmediatypes::PixelFormat> formats;
  bool fieldsOnly = true;
  int timeout = 0;
  int flags = -1;
  bool synchronous = true;
  zebmediatypes::PixelFormat fallback = zebmediatypes::kPixelFormat_BGRA_4444_8u;
  zebcore::utility::Guid context;
};
std::vector<Order> sOrders;

// Takes every order down and serves none.
class HoldingRenderer : public ML::IRenderFrame {
 public:
  void SetLookAhead(int) override {}
  void SetFields(int) override {}
  void SetProgressive(int) override {}
  void SetQuality(int) override {}
  void SetDownsampling(int) override {}
  void SetPriority(int) override {}
  ImmutableString GetStationID() const override { return "test.renderer"; }
  void SetFrameSize(const RectT<int>& rect, const zebmediatypes::PixelAspectRatio& aspect) override {
    mNext.size = rect;
    mNext.aspect = aspect;
  }
  void SetLetterbox(int mode) override { mNext.letterbox = mode; }
  ML::RenderStatus Render(const TickTime& time, const zebcore::utility::Guid& content,
                          const InterfaceRef<BE::IVideoSegments>& video,
                          const std::vector<zebmediatypes::PixelFormat>& formats, bool fieldsOnly, int timeout,
                          int flags, InterfaceRef<MF::IVideoFrame>&, std::uint32_t& requestID, bool synchronous,
                          zebmediatypes::PixelFormat fallback, const zebmediatypes::ColorSpace&,
                          const zebcore::utility::Guid& context) override {
    mNext.time = time;
    mNext.content = content;
    mNext.video = video;
    mNext.formats = formats;
    mNext.fieldsOnly = fieldsOnly;
    mNext.timeout = timeout;
    mNext.flags = flags;
    mNext.synchronous = synchronous;
    mNext.fallback = fallback;
    mNext.context = context;
    sOrders.push_back(mNext);
    mNext = Order();
    requestID = static_cast<std::uint32_t>(sOrders.size());
    return 0;
  }

 private:
  Order mNext;
};

class PreviewRequest : public PanelTest {
 protected:
  PreviewRequest() {
    sOrders.clear();
    zebcore::classref::RegisterClass(
        ML::kRenderFrameClassID, +[] { return InterfaceRef<>(new HoldingRenderer); });
  }
  ~PreviewRequest() override { sOrders.clear(); }
};

} // namespace

TEST_F(PreviewRequest, AsksForTheLastFrameAtTheSizeOfThePictureInSquarePixels) {
  OpenPanelOn({MakeCaption(1, 2)});
  ASSERT_EQ(sOrders.size(), 1U);
  const Order& order = sOrders.front();
  EXPECT_EQ(order.time, Seconds(2) - kFrame);
  EXPECT_EQ(order.size, (RectT<int>{0, 0, 114, 64}));
  EXPECT_EQ(order.aspect, zebmediatypes::kPixelAspectRatio_Square);
  EXPECT_EQ(order.letterbox, 0);
  EXPECT_TRUE(order.video == Video());
  EXPECT_EQ(order.content, Video()->GetContentID());
  EXPECT_EQ(order.formats, (std::vector{zebmediatypes::kPixelFormat_BGRA_4444_8u}));
  EXPECT_FALSE(order.fieldsOnly);
  EXPECT_EQ(order.timeout, 800);
  EXPECT_EQ(order.flags, 0);
  EXPECT_FALSE(order.synchronous);
  EXPECT_EQ(order.fallback, zebmediatypes::kPixelFormat_Invalid);
  EXPECT_EQ(order.context, zebcore::utility::Guid());
}

TEST_F(PreviewRequest, AnyOtherStatusIsARequestUnderWay) {
  OpenPanelOn({MakeCaption(1, 2)});
  CompleteRender(1, Seconds(2) - kFrame, MF::CreateVideoFrame(114, 64, zebmediatypes::kPixelAspectRatio_Square));
  EXPECT_TRUE(Inspector::FindPreviewEntry(Pane(), Video(), Seconds(2) - kFrame).frame);
}

TEST_F(PreviewRequest, AnAnswerMakesThePanePaintAnew) {
  OpenPanelOn({MakeCaption(1, 2)});
  Paint();
  zebcore::trace::Take();
  CompleteRender(1, Seconds(2) - kFrame, MF::CreateVideoFrame(114, 64, zebmediatypes::kPixelAspectRatio_Square));
  EXPECT_FALSE(TakeCalls("View::Invalidate").empty());
}

TEST_F(PreviewRequest, AChangeOfTimesAsksForTheNewLastFrameAndKeepsTheFormerRequest) {
  OpenPanelOn({MakeCaption(1, 2)});
  Pane().ChangeCaptionTimes(Seconds(1), Seconds(1), Seconds(3));
  ASSERT_EQ(sOrders.size(), 2U);
  EXPECT_EQ(sOrders[1].time, Seconds(4) - kFrame);
  const auto former = MF::CreateVideoFrame(114, 64, zebmediatypes::kPixelAspectRatio_Square);
  CompleteRender(1, Seconds(2) - kFrame, former);
  EXPECT_TRUE(Inspector::FindPreviewEntry(Pane(), Video(), Seconds(2) - kFrame).frame == former);
}

// A day of captions, as the host reads it from a long recording.
class LongStream : public PreviewRequest {
 protected:
  static constexpr int kCaptions = 100000;
  static constexpr double kStep = 86400.0 / kCaptions;

  void OpenADayOfCaptions(int count) {
    std::vector<boost::intrusive_ptr<Caption>> captions;
    for (int i = 0; i < count; ++i)
      captions.push_back(MakeCaption(i * kStep, i * kStep + 0.6, u"Text"));
    BE::MediaInfo info;
    info.width = 1920;
    info.height = 1080;
    info.frameRate = zebmediatypes::kFrameRate_25;
    info.duration = Seconds(86400);
    clip = AddClip(info);
    zebcore::trace::SetOn(false);
    stream = AddStream(clip, captions);
    OpenPanel();
    SelectClip(clip);
    Pane().SetBounds({0, 0, 500, 10 * 75});
  }
  int CountRealisedRows() {
    int count = 0;
    boost::shared_ptr<CaptionsItem> item;
    for (int i = 0; i < static_cast<int>(List().GetRowCount()); ++i) {
      if (List().GetRowAtIndex(i, item) && item->HasControls())
        ++count;
    }
    return count;
  }
};

TEST_F(LongStream, ScrollingToAnyPlaceRealisesTheRowsInViewAndNoOthers) {
  OpenADayOfCaptions(kCaptions);
  for (const unsigned row : {0U, 50000U, 99990U, 12345U, 99999U, 3U}) {
    sOrders.clear();
    Pane().SetScrollOffset(row * 75);
    EXPECT_LE(CountRealisedRows(), 10) << row;
    EXPECT_LE(sOrders.size(), 10U) << row;
    boost::shared_ptr<CaptionsItem> item;
    ASSERT_TRUE(List().GetRowAtIndex(static_cast<int>(row), item));
    EXPECT_TRUE(item->HasControls()) << row;
  }
}

TEST_F(LongStream, TypingGoesOnWhileAThousandPreviewsAreUnderWay) {
  OpenADayOfCaptions(1200);
  for (unsigned row = 10; row < 1100; row += 10)
    Pane().SetScrollOffset(row * 75);
  ASSERT_GE(sOrders.size(), 1000U) << "and not one was answered";
  Pane().SetScrollOffset(0);
  boost::shared_ptr<CaptionsItem> item;
  ASSERT_TRUE(List().GetRowAtIndex(3, item));
  item->GetTextEdit()->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  item->GetTextEdit()->SetSelection({4, 4});
  zebui::driver::TypeText(u" and more");
  EXPECT_EQ(item->GetText(), u"Text and more");
  std::vector<BE::ICaptioningStream::CaptionKey> keys;
  stream->GetCaptionKeys(keys);
  EXPECT_EQ(stream->GetCaption(keys.at(3))->GetState()->text, u"Text and more");
}

} // namespace Captivo::Testing
