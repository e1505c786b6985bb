#include <atomic>
#include <thread>

#include <gtest/gtest.h>
#include <malloc.h>
#include <rapidcheck/gtest.h>

#include "zebcore/Guid.h"
#include "zebcore/ImmutableString.h"
#include "zebcore/UString.h"

namespace zebcore {
namespace {

using utility::Guid;
using utility::ImmutableString;

TEST(HostStrings, CountUTF16Units) {
  EXPECT_EQ(FromUTF8("a\xc3\xa9\xe2\x82\xac\xf0\x9d\x84\x9e"), u"a\u00e9\u20ac\xd834\xdd1e");
  EXPECT_EQ(FromUTF8("\xf0\x9d\x84\x9e").size(), 2u);
  EXPECT_EQ(ToUTF8(u"a\u00e9\u20ac\xd834\xdd1e"), "a\xc3\xa9\xe2\x82\xac\xf0\x9d\x84\x9e");
}

TEST(HostStrings, KeepZeroUnits) {
  EXPECT_EQ(FromUTF8(std::string_view("a\0b", 3)), (UString{u'a', u'\0', u'b'}));
  EXPECT_EQ(ToUTF8(UString{u'a', u'\0', u'b'}), std::string("a\0b", 3));
}

TEST(HostStrings, EachBrokenSequenceBecomesOneReplacementCharacter) {
  EXPECT_EQ(FromUTF8("a\x80z"), u"a\ufffdz");
  EXPECT_EQ(FromUTF8("\xffz"), u"\ufffdz");
  EXPECT_EQ(FromUTF8("\xc3"), u"\ufffd");                       // cut short
  EXPECT_EQ(FromUTF8("\xe2\x82z"), u"\ufffdz");                 // cut short by a letter
  EXPECT_EQ(FromUTF8("\xf0\x9d\x84\xc3\xa9"), u"\ufffd\u00e9"); // cut short by another sequence
}

TEST(HostStrings, OverlongFormsSurrogatesAndNumbersPastTheLastAreBroken) {
  EXPECT_EQ(FromUTF8("\xc0\xaf"), u"\ufffd\ufffd");
  EXPECT_EQ(FromUTF8("\xe0\x80\xaf"), u"\ufffd\ufffd\ufffd");
  EXPECT_EQ(FromUTF8("\xed\xa0\x80"), u"\ufffd\ufffd\ufffd");
  EXPECT_EQ(FromUTF8("\xf4\x90\x80\x80"), u"\ufffd\ufffd\ufffd\ufffd");
  EXPECT_EQ(FromUTF8("\xf4\x8f\xbf\xbf"), u"\xdbff\xdfff");
}

TEST(HostStrings, ALoneSurrogateBecomesAReplacementCharacter) {
  EXPECT_EQ(ToUTF8(u"a\xd834z"), "a\xef\xbf\xbdz");
  EXPECT_EQ(ToUTF8(u"\xdd1e"), "\xef\xbf\xbd");
  EXPECT_EQ(ToUTF8(UString{u'\xd834'}), "\xef\xbf\xbd");
  EXPECT_EQ(ToUTF8(u"\xd834\xd834\xdd1e"), "\xef\xbf\xbd\xf0\x9d\x84\x9e");
}

RC_GTEST_PROP(HostStrings, WellFormedTextComesBackAsItWas, ()) {
  UString text;
  for (const int c : *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 0x110000))) {
    if (c >= 0xd800 && c <= 0xdfff)
      continue;
    if (c >= 0x10000) {
      text.push_back(static_cast<char16_t>(0xd7c0 + (c >> 10)));
      text.push_back(static_cast<char16_t>(0xdc00 + (c & 0x3ff)));
    } else {
      text.push_back(static_cast<char16_t>(c));
    }
  }
  RC_ASSERT(FromUTF8(ToUTF8(text)) == text);
}

RC_GTEST_PROP(HostStrings, AnyBytesBecomeWellFormedText, (const std::vector<unsigned char>& bytes)) {
  const UString text = FromUTF8(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  RC_ASSERT(FromUTF8(ToUTF8(text)) == text);
  RC_ASSERT(text.size() <= bytes.size());
}

TEST(InternedStrings, OfOneTextAreEqualHoweverTheyWereMade) {
  const std::string text = "StringsTest.One";
  const ImmutableString made(text);
  EXPECT_EQ(made, ImmutableString("StringsTest.One"));
  EXPECT_EQ(made.Hash(), ImmutableString("StringsTest.One").Hash());
  EXPECT_EQ(&made.Text(), &ImmutableString("StringsTest.One").Text());
  EXPECT_NE(made, ImmutableString("StringsTest.Two"));
}

TEST(InternedStrings, TheNullStringEqualsNoTextNotEvenTheEmptyOne) {
  const ImmutableString null;
  EXPECT_TRUE(null.IsNull());
  EXPECT_EQ(null.Text(), "");
  EXPECT_EQ(null, ImmutableString(static_cast<const char*>(nullptr)));
  EXPECT_NE(null, ImmutableString(""));
  EXPECT_FALSE(ImmutableString("").IsNull());
  EXPECT_EQ(ImmutableString(""), ImmutableString(std::string_view()));
}

TEST(InternedStrings, AreOrderedByTextWithTheNullStringFirst) {
  EXPECT_LT(ImmutableString(), ImmutableString(""));
  EXPECT_LT(ImmutableString(""), ImmutableString("a"));
  EXPECT_LT(ImmutableString("a"), ImmutableString("b"));
  EXPECT_FALSE(ImmutableString("b") < ImmutableString("a"));
  EXPECT_FALSE(ImmutableString("a") < ImmutableString("a"));
  EXPECT_FALSE(ImmutableString() < ImmutableString());
}

TEST(InternedStrings, AreCopiedMovedAndAssigned) {
  ImmutableString a("StringsTest.A");
  ImmutableString copy(a);
  EXPECT_EQ(copy, a);
  const ImmutableString moved(std::move(a));
  EXPECT_EQ(moved, copy);
  copy = ImmutableString("StringsTest.B");
  EXPECT_EQ(copy.Text(), "StringsTest.B");
  copy = moved;
  EXPECT_EQ(copy, moved);
  ImmutableString& self = copy;
  copy = self;
  EXPECT_EQ(copy.Text(), "StringsTest.A");
}

TEST(InternedStrings, MayHoldZeroBytes) {
  EXPECT_NE(ImmutableString(std::string_view("a\0b", 3)), ImmutableString("a"));
  EXPECT_EQ(ImmutableString(std::string_view("a\0b", 3)).Text().size(), 3u);
}

TEST(InternedStrings, ATextThatIsNoLongerUsedCostsNothing) {
  constexpr std::size_t kTexts = 200000;
  ImmutableString warm("StringsTest.Warm");
  const std::size_t before = mallinfo2().uordblks;
  for (std::size_t i = 0; i < kTexts; ++i)
    ImmutableString("StringsTest.A text that is too long to be kept in place " + std::to_string(i));
  EXPECT_LT(mallinfo2().uordblks, before + 10 * kTexts);
}

TEST(InternedStrings, MayBeMadeCopiedAndDroppedOnManyThreads) {
  std::vector<std::thread> threads;
  std::atomic<int> wrong{0};
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&wrong] {
      for (int i = 0; i < 20000; ++i) {
        const std::string text = "StringsTest.Shared" + std::to_string(i % 3);
        const ImmutableString first{std::string_view(text)};
        const ImmutableString copy = first;
        wrong += copy != ImmutableString{std::string_view(text)} || copy.Text() != text;
      }
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(wrong, 0);
}

TEST(Guids, ARandomOneIsNotZeroAndNotAnother) {
  const Guid guid = Guid::Random();
  EXPECT_NE(guid, Guid());
  EXPECT_NE(guid, Guid::Random());
}

TEST(Guids, AreWrittenAs32HexadecimalDigits) {
  EXPECT_EQ(Guid().ToText(), std::string(32, '0'));
  EXPECT_EQ((Guid{0x0123456789abcdef, 0xfedcba9876543210}).ToText(), "0123456789abcdeffedcba9876543210");
}

TEST(Guids, AreOrderedByTheHighHalfFirst) {
  EXPECT_LT((Guid{1, 9}), (Guid{2, 0}));
  EXPECT_LT((Guid{1, 1}), (Guid{1, 2}));
}

} // namespace
} // namespace zebcore
