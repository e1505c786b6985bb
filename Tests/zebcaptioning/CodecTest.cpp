#include <malloc.h>

#include <chrono>

#include "Builders.h"
#include "zebcaptioning/CaptionCodec.h"
#include "zebcaptioning/CaptionIndex.h"

using namespace builders;

namespace {

CaptionStatePtr Rich() {
  ParagraphStyleAttributes paragraph;
  paragraph.captionType = kCaptionType_RollUp4;
  paragraph.alignment = ParagraphStyleAttributes::kTextAlignment_Right;
  paragraph.anchor = -2;
  paragraph.x = -5;
  paragraph.y = 2000000000;
  paragraph.lineSpacing = -100;
  paragraph.lineWidth = 0;
  paragraph.blockHeight = 7;
  paragraph.region = "Región";
  paragraph.style = "";
  TextSpanAttributes span;
  span.family = u"Some Family";
  span.size = 12.5F;
  span.underline = true;
  span.textColor = {0.1F, 0.2F, 0.3F, 0.4F};
  span.backgroundColor = {};
  span.edgeColor = kRed;
  span.edgeWidth = 1.5F;
  const UString withHalfAPair{u'H', u'\u00E9', 0xD83D, 0xDE00, u'\n', u'x', 0xD800};
  auto state = MakeCaptionState(zebmediatypes::kTime_Min, zebmediatypes::kTime_Max, withHalfAPair,
                                {{0, Share(span)}, {2, Share(Bold())}, {4, Share(Italic())}}, paragraph);
  boost::intrusive_ptr<CaptionState> typing(new CaptionState(*state));
  typing->typing = Share(span);
  typing->typingAt = 4;
  return typing;
}

} // namespace

TEST(CaptionCodec, BringsEverythingBack) {
  for (const CaptionStatePtr& state : {Rich(), State(u""), State(u"a"), State(u"abc", {{0, Bold()}, {1, Plain()}})}) {
    const auto decoded = Decode(Encode(*state));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, *state);
  }
  EXPECT_FALSE(Decode(Encode(*Rich()))->paragraph.style.IsNull());
  EXPECT_TRUE(Decode(Encode(*State(u"a")))->paragraph.region.IsNull());
}

TEST(CaptionCodec, StoresAPlainCaptionInLittleMoreThanItsText) {
  const auto state = State(u"thirty characters of some text");
  EXPECT_LE(Encode(*state).size(), 30U + 15U);
}

TEST(CaptionCodec, GivesNullForEveryCutAndEveryFlippedBit) {
  const std::string bytes = Encode(*Rich());
  for (std::size_t size = 0; size < bytes.size(); ++size)
    EXPECT_FALSE(Decode(std::string_view(bytes).substr(0, size)));
  for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
    std::string damaged = bytes;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ 1 << bit % 8);
    EXPECT_FALSE(Decode(damaged)) << bit;
  }
  EXPECT_FALSE(Decode(bytes + '\0'));
}

TEST(CaptionCodec, GivesNullOrAProperCaptionForDamageThatTheChecksumWouldMiss) {
  EXPECT_TRUE(CheckTenThousand("damaged bytes behind the checksum", [] {
    static const std::string whole = Encode(*Rich());
    std::string bytes = whole.substr(0, whole.size() - 4);
    const int changes = *rc::gen::inRange(1, 5);
    for (int i = 0; i < changes; ++i)
      bytes[*rc::gen::inRange<std::size_t>(0, bytes.size())] = *rc::gen::arbitrary<char>();
    if (*rc::gen::inRange(0, 4) == 0)
      bytes.resize(*rc::gen::inRange<std::size_t>(0, bytes.size() + 1));
    const auto decoded = DecodeWithoutChecksum(bytes);
    if (decoded) {
      RC_ASSERT(!decoded->runs.empty());
      RC_ASSERT(decoded->runs.front().start == 0U);
      for (std::size_t i = 1; i < decoded->runs.size(); ++i) {
        RC_ASSERT(decoded->runs[i].start > decoded->runs[i - 1].start);
        RC_ASSERT(decoded->runs[i].start < decoded->text.size());
      }
      const std::string again = Encode(*decoded);
      RC_ASSERT(*Decode(again) == *decoded);
    }
  }));
}

// The figures are printed for whoever reads the log; what is required is far from them.
TEST(ModelFigures, OfMemoryAndOfStoringStayFarBelowTheirLimits) {
  constexpr std::size_t kCount = 100000;
  std::vector<CaptionStatePtr> states;
  states.reserve(kCount);
  CaptionIndex index;
  const SharedSpan span = Share(Plain());
  const std::size_t before = mallinfo2().uordblks;
  for (std::size_t i = 0; i < kCount; ++i) {
    states.push_back(MakeCaptionState(TickTime(static_cast<std::int64_t>(i) * 1000),
                                      TickTime(static_cast<std::int64_t>(i) * 1000 + 900), u"short", {{0, span}}));
    index.Insert({9, i}, i, new Caption(states.back()));
  }
  const std::size_t each = (mallinfo2().uordblks - before) / kCount;
  RecordProperty("bytes_per_caption", static_cast<int>(each));
  std::cout << "bytes for a caption, its index entry included: " << each << std::endl;
  EXPECT_LT(each, 400U);

  const auto start = std::chrono::steady_clock::now();
  std::size_t size = 0;
  for (const CaptionStatePtr& state : states) {
    const std::string bytes = Encode(*state);
    size += bytes.size();
    ASSERT_TRUE(Decode(bytes));
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::cout << "100,000 captions encoded and decoded in " << seconds.count() << " s, " << size << " bytes" << std::endl;
}
