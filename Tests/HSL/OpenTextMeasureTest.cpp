#include <gtest/gtest.h>

#include "HSL/OpenTextMeasure.h"
#include "OpenCaptions.h"

namespace {

using test::Boxed;
using test::Caption;
using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using zebmediatypes::kPixelAspectRatio_Square;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

std::vector<CaptionStatePtr> ManyCaptions(std::size_t count) {
  std::vector<CaptionStatePtr> captions;
  for (std::size_t i = 0; i < count; ++i)
    captions.push_back(
        Caption(zebcore::FromUTF8("Caption " + std::to_string(i % 37) + std::string(i % 5, '\n') + "x"), Boxed()));
  return captions;
}

bool MeasureAll(std::vector<CaptionStatePtr>& captions, const std::function<bool(std::size_t)>& progress = {}) {
  return HSL::MeasureOpenTexts(captions, kWidth, kHeight, kPixelAspectRatio_Square, progress);
}

bool TakeFrom(CaptionStatePtr& caption, const CaptionStatePtr& measured) {
  return HSL::TakeMeasureFrom(caption, *measured, kWidth, kHeight, kPixelAspectRatio_Square);
}

CaptionStatePtr Measured(const CaptionStatePtr& caption) {
  std::vector<CaptionStatePtr> captions{caption};
  MeasureAll(captions);
  return captions.front();
}

template <class Change> CaptionStatePtr With(const CaptionStatePtr& caption, Change change) {
  const boost::intrusive_ptr<CaptionState> next(new CaptionState(*caption));
  change(*next);
  return next;
}

template <class Change> CaptionStatePtr WithSpan(const CaptionStatePtr& caption, Change change) {
  return With(caption, [&](CaptionState& state) {
    zebcaptioning::TextSpanAttributes span = *state.runs.front().attributes;
    change(span);
    state.runs.front().attributes = zebcaptioning::Share(span);
  });
}

TEST(ManyOpenTexts, AreMeasuredAsEachAlone) {
  std::vector<CaptionStatePtr> captions = ManyCaptions(2500);
  ASSERT_TRUE(MeasureAll(captions));
  for (const CaptionStatePtr& caption : captions) {
    const HSL::OpenTextMeasure alone = HSL::MeasureOpenText(*caption, kWidth, kHeight);
    ASSERT_GT(alone.lineWidth, 0);
    ASSERT_EQ(caption->paragraph.lineWidth, alone.lineWidth);
    ASSERT_EQ(caption->paragraph.blockHeight, alone.blockHeight);
  }
}

TEST(ManyOpenTexts, ThatWereMeasuredInThisFrameStayAsTheyAre) {
  const CaptionStatePtr measured = Measured(Caption(u"once", Boxed()));
  EXPECT_EQ(Measured(measured), measured);
  std::vector<CaptionStatePtr> elsewhere{measured};
  HSL::MeasureOpenTexts(elsewhere, kWidth / 2, kHeight / 2, kPixelAspectRatio_Square);
  EXPECT_LT(elsewhere.front()->paragraph.lineWidth, measured->paragraph.lineWidth);
}

TEST(ManyOpenTexts, AreMeasuredAgainInACopyThatWasChanged) {
  const CaptionStatePtr measured = Measured(Caption(u"once", Boxed()));
  const CaptionStatePtr longer = Measured(With(measured, [](CaptionState& state) { state.text += u" and again"; }));
  EXPECT_GT(longer->paragraph.lineWidth, measured->paragraph.lineWidth);
}

TEST(ManyOpenTexts, StayUnmeasuredWhenProgressStopsThem) {
  std::vector<CaptionStatePtr> captions = ManyCaptions(300);
  std::size_t told = 0;
  EXPECT_FALSE(MeasureAll(captions, [&told](std::size_t done) {
    told = done;
    return false;
  }));
  EXPECT_GT(told, 0U);
  EXPECT_LT(told, 300U);
  EXPECT_EQ(captions.front()->paragraph.lineWidth, zebcaptioning::ParagraphStyleAttributes::kLineWidth_Unknown);
}

TEST(ManyOpenTexts, AreAllToldAsDoneAtTheEnd) {
  std::vector<CaptionStatePtr> captions = ManyCaptions(300);
  std::size_t told = 0;
  EXPECT_TRUE(MeasureAll(captions, [&told](std::size_t done) {
    told = done;
    return true;
  }));
  EXPECT_EQ(told, 300U);
}

TEST(AMeasure, IsTakenFromACaptionThatDiffersInColourPlaceAndTimesOnly) {
  const CaptionStatePtr measured = Measured(Caption(u"once", Boxed()));
  CaptionStatePtr caption = With(WithSpan(measured,
                                          [](auto& span) {
                                            span.textColor = {1.0F, 0.0F, 0.0F, 0.5F};
                                          }),
                                 [](CaptionState& state) {
                                   state.paragraph.x += 10;
                                   state.paragraph.anchor = 4;
                                   state.end = state.end + zebmediatypes::TickTime(5);
                                   state.paragraph.lineWidth = 1;
                                 });
  ASSERT_TRUE(TakeFrom(caption, measured));
  EXPECT_EQ(caption->paragraph.lineWidth, measured->paragraph.lineWidth);
  EXPECT_EQ(caption->paragraph.blockHeight, measured->paragraph.blockHeight);
  EXPECT_EQ(Measured(caption), caption);
}

TEST(AMeasure, IsNotTakenWhereTheSizeMayDiffer) {
  const CaptionStatePtr measured = Measured(Caption(u"once", Boxed()));
  const auto differs = [&](CaptionStatePtr caption) { return !TakeFrom(caption, measured); };
  EXPECT_FALSE(differs(measured));
  EXPECT_TRUE(differs(WithSpan(measured, [](auto& span) { span.bold = !span.bold; })));
  EXPECT_TRUE(differs(WithSpan(measured, [](auto& span) { span.italic = !span.italic; })));
  EXPECT_TRUE(differs(WithSpan(measured, [](auto& span) { span.size += 1.0F; })));
  EXPECT_TRUE(differs(WithSpan(measured, [](auto& span) { span.family = u"Monospace"; })));
  EXPECT_TRUE(differs(WithSpan(measured, [](auto& span) { span.backgroundColor.alpha = 0.0F; })));
  EXPECT_TRUE(differs(WithSpan(measured, [](auto& span) {
    span.edgeColor = {0.0F, 0.0F, 0.0F, 1.0F};
    span.edgeWidth = 7.0F;
  })));
  EXPECT_TRUE(differs(With(measured, [](CaptionState& state) { state.text += u"x"; })));
  EXPECT_TRUE(differs(With(measured, [](CaptionState& state) { ++state.paragraph.lineSpacing; })));
  EXPECT_TRUE(differs(With(measured, [](CaptionState& state) {
    state.runs.push_back({2, state.runs.front().attributes});
  })));
}

TEST(AMeasure, IsNotTakenFromACaptionThatHasNone) {
  const CaptionStatePtr unmeasured = Caption(u"once", Boxed());
  CaptionStatePtr caption = unmeasured;
  EXPECT_FALSE(TakeFrom(caption, unmeasured));
}

} // namespace
