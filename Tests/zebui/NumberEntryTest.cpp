#include "zebui/NumberEntry.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

using zebui::controls::ReadNumberEntry;

namespace {

std::u16string Wide(const std::string& text) {
  return {text.begin(), text.end()};
}

} // namespace

TEST(NumberEntry, ReadsANumber) {
  EXPECT_EQ(ReadNumberEntry(u"12", 5.0), 12.0);
  EXPECT_EQ(ReadNumberEntry(u" 12.5 ", 5.0), 12.5);
  EXPECT_EQ(ReadNumberEntry(u".5", 5.0), 0.5);
  EXPECT_EQ(ReadNumberEntry(u"7.", 5.0), 7.0);
  EXPECT_EQ(ReadNumberEntry(u"-3", 5.0), -3.0);
}

TEST(NumberEntry, TakesAPlainNumberWhenTheValueIsNotKnown) {
  EXPECT_EQ(ReadNumberEntry(u"12", std::nullopt), 12.0);
}

TEST(NumberEntry, ReadsADecimalComma) {
  EXPECT_EQ(ReadNumberEntry(u"12,5", 5.0), 12.5);
  EXPECT_EQ(ReadNumberEntry(u"+2,5", 5.0), 7.5);
}

TEST(NumberEntry, GoesOutFromTheValueWithASignInFront) {
  EXPECT_EQ(ReadNumberEntry(u"+2.5", 5.0), 7.5);
  EXPECT_EQ(ReadNumberEntry(u"*2", 5.0), 10.0);
  EXPECT_EQ(ReadNumberEntry(u"/2", 5.0), 2.5);
  EXPECT_EQ(ReadNumberEntry(u"/2/5", 5.0), 0.5);
  EXPECT_EQ(ReadNumberEntry(u"+2*3", 5.0), 11.0);
  EXPECT_EQ(ReadNumberEntry(u"*2+1", 5.0), 11.0);
}

TEST(NumberEntry, GoesOutFromTheValueWithASignAndAnEqualsSign) {
  EXPECT_EQ(ReadNumberEntry(u"+=2", 5.0), 7.0);
  EXPECT_EQ(ReadNumberEntry(u"-=2", 5.0), 3.0);
  EXPECT_EQ(ReadNumberEntry(u"*=2+1", 5.0), 15.0);
  EXPECT_EQ(ReadNumberEntry(u" /= 2", 5.0), 2.5);
}

TEST(NumberEntry, RefusesToGoOutFromAValueThatIsNotKnown) {
  for (const char16_t* text : {u"+2", u"*2", u"/2", u"-=2"})
    EXPECT_EQ(ReadNumberEntry(text, std::nullopt), std::nullopt);
}

TEST(NumberEntry, ReckonsProductsBeforeSums) {
  EXPECT_EQ(ReadNumberEntry(u"20+4*1.5", 5.0), 26.0);
  EXPECT_EQ(ReadNumberEntry(u"(20+4)*1,5", 5.0), 36.0);
  EXPECT_EQ(ReadNumberEntry(u"10-4-3", 5.0), 3.0);
  EXPECT_EQ(ReadNumberEntry(u"100/10/5", 5.0), 2.0);
  EXPECT_EQ(ReadNumberEntry(u"2*-3", 5.0), -6.0);
}

TEST(NumberEntry, ReadsTheSignsOfOtherKeyboards) {
  EXPECT_EQ(ReadNumberEntry(u"6\u00D72", 5.0), 12.0);
  EXPECT_EQ(ReadNumberEntry(u"6\u00F72", 5.0), 3.0);
  EXPECT_EQ(ReadNumberEntry(u"\u22126", 5.0), -6.0);
  EXPECT_EQ(ReadNumberEntry(u"\uFF11\uFF12\uFF0E\uFF15", 5.0), 12.5);
}

TEST(NumberEntry, LetsAPercentSignStandBehind) {
  EXPECT_EQ(ReadNumberEntry(u"50 %", 5.0), 50.0);
  EXPECT_EQ(ReadNumberEntry(u"50%5", 5.0), std::nullopt);
}

TEST(NumberEntry, RefusesWhatIsNoNumber) {
  for (const char16_t* text : {u"", u"  ", u"soon", u"1 2", u"1+", u"(1", u"1)", u"--", u".", u"1..2", u"0x10", u"inf",
                               u"nan", u"1e5", u"=", u"+=", u"2+=3", u"\u4E00"})
    EXPECT_EQ(ReadNumberEntry(text, 5.0), std::nullopt)
        << std::string(text, text + std::char_traits<char16_t>::length(text));
}

TEST(NumberEntry, RefusesWhatLeadsToNoNumber) {
  EXPECT_EQ(ReadNumberEntry(u"1/0", 5.0), std::nullopt);
  EXPECT_EQ(ReadNumberEntry(u"0/0", 5.0), std::nullopt);
  EXPECT_EQ(ReadNumberEntry(std::u16string(400, u'9'), 5.0), std::nullopt);
  EXPECT_EQ(ReadNumberEntry(u"+1", std::numeric_limits<double>::quiet_NaN()), std::nullopt);
}

TEST(NumberEntry, RefusesBracketsWithoutEnd) {
  EXPECT_EQ(ReadNumberEntry(std::u16string(100000, u'('), 5.0), std::nullopt);
  std::u16string signs(100000, u'-');
  signs.push_back(u'1');
  EXPECT_EQ(ReadNumberEntry(signs, 5.0), std::nullopt);
}

RC_GTEST_PROP(NumberEntry, ReadsEverySumAsItIsWritten, (int a, std::int16_t b, std::int16_t c)) {
  const std::string text = std::to_string(a) + " + " + std::to_string(b) + "*" + std::to_string(c);
  RC_ASSERT(ReadNumberEntry(Wide(text), std::nullopt) == static_cast<double>(a) + static_cast<double>(b) * c);
}

RC_GTEST_PROP(NumberEntry, AnswersWithAFiniteNumberOrNothingForAnyText, (const std::vector<char>& choice)) {
  static constexpr char16_t kSigns[] = u"0123456789+-*/().,=% ";
  std::u16string text;
  for (const char character : choice)
    text += kSigns[static_cast<unsigned char>(character) % (std::size(kSigns) - 1)];
  const auto read = ReadNumberEntry(text, 3.0);
  RC_ASSERT(std::isfinite(read.value_or(0.0)));
}
