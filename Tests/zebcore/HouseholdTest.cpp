#include <stdexcept>

#include <gmock/gmock.h>

#include "zebcore/Boundary.h"
#include "zebcore/Clock.h"
#include "zebcore/DebugDatabase.h"
#include "zebcore/Log.h"

namespace zebcore {
namespace {

using testing::ElementsAre;

struct Logged : testing::Test {
  Logged() {
    boundary::TakeReports();
    log::SetSink([this](log::Level level, std::string_view text) {
      lines.push_back((level == log::Level::Error     ? "E "
                       : level == log::Level::Warning ? "W "
                                                      : "I ") +
                      std::string(text));
    });
  }
  ~Logged() override {
    log::SetSink(nullptr);
    boundary::TakeReports();
  }
  std::vector<std::string> lines;
};

using Log = Logged;
using Boundary = Logged;

TEST_F(Log, LinesGoToTheSink) {
  log::Write(log::Level::Info, "one");
  log::Write(log::Level::Warning, "two");
  EXPECT_THAT(lines, ElementsAre("I one", "W two"));
}

TEST_F(Log, WithoutASinkLinesGoToStandardError) {
  log::SetSink(nullptr);
  testing::internal::CaptureStderr();
  log::Write(log::Level::Error, "three");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "captivo: error: three\n");
}

TEST_F(Boundary, ACallThatDoesNotThrowIsNotReported) {
  int ran = 0;
  EXPECT_TRUE(boundary::Guard("here", [&ran] { ++ran; }));
  EXPECT_EQ(ran, 1);
  EXPECT_TRUE(boundary::TakeReports().empty());
}

TEST_F(Boundary, WhatIsThrownIsReportedLoggedAndGoesNoFurther) {
  EXPECT_FALSE(boundary::Guard("here", [] { throw std::invalid_argument("bad"); }));
  const auto reports = boundary::TakeReports();
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].where, "here");
  EXPECT_EQ(reports[0].type, "std::invalid_argument");
  EXPECT_EQ(reports[0].text, "bad");
  EXPECT_THAT(lines, ElementsAre("E here: std::invalid_argument: bad"));
  EXPECT_TRUE(boundary::TakeReports().empty());
}

TEST_F(Boundary, WhatIsNoExceptionClassIsCaughtToo) {
  boundary::Guard("a", [] { throw 7; });
  boundary::Guard("b", [] { throw "text"; });
  boundary::Guard("c", [] { throw std::string("string"); });
  const auto reports = boundary::TakeReports();
  ASSERT_EQ(reports.size(), 3u);
  EXPECT_EQ(reports[0].type, "int");
  EXPECT_EQ(reports[0].text, "");
  EXPECT_EQ(reports[1].text, "text");
  EXPECT_EQ(reports[2].text, "string");
}

TEST_F(Boundary, OfTooManyReportsTheLastAreKept) {
  for (std::size_t i = 0; i < boundary::kMaximumReports + 5; ++i)
    boundary::Guard("here", [i] { throw std::runtime_error(std::to_string(i)); });
  const auto reports = boundary::TakeReports();
  ASSERT_EQ(reports.size(), boundary::kMaximumReports);
  EXPECT_EQ(reports.front().text, "5");
}

struct HostClock : testing::Test {
  Clock& clock = Clock::Instance();
  ~HostClock() override { clock.UseReal(); }
};

TEST_F(HostClock, RunsByItself) {
  EXPECT_FALSE(clock.IsManual());
  const std::int64_t before = clock.Now();
  while (clock.Now() == before) {
  }
  EXPECT_GT(clock.Now(), before);
}

TEST_F(HostClock, StandsStillWhenItIsTurnedByHand) {
  const std::int64_t before = clock.Now();
  clock.UseManual();
  EXPECT_TRUE(clock.IsManual());
  const std::int64_t stopped = clock.Now();
  EXPECT_GE(stopped, before);
  clock.SetNow(stopped + 250);
  EXPECT_EQ(clock.Now(), stopped + 250);
}

TEST_F(HostClock, NeverGoesBackwards) {
  clock.UseManual();
  const std::int64_t stopped = clock.Now();
  clock.SetNow(stopped - 1);
  EXPECT_EQ(clock.Now(), stopped);
  clock.SetNow(stopped + 1'000'000);
  clock.UseReal();
  EXPECT_GE(clock.Now(), stopped + 1'000'000);
}

TEST_F(HostClock, ARunningClockIsNotSet) {
  const std::int64_t before = clock.Now();
  clock.SetNow(before + 1'000'000'000);
  EXPECT_LT(clock.Now(), before + 1'000'000'000);
}

TEST(DebugValues, AnUnknownNameAnswersTheDefault) {
  EXPECT_EQ(debug::DebugDatabase::Instance().GetValue("HouseholdTest.Unknown", "false"), "false");
}

TEST(DebugValues, AreSetReplacedAndRemovedByName) {
  auto& database = debug::DebugDatabase::Instance();
  database.SetValue("HouseholdTest.A", "true");
  EXPECT_EQ(database.GetValue("HouseholdTest.A", "false"), "true");
  database.SetValue("HouseholdTest.A", "");
  EXPECT_EQ(database.GetValue("HouseholdTest.A", "false"), "");
  database.RemoveValue("HouseholdTest.A");
  EXPECT_EQ(database.GetValue("HouseholdTest.A", "false"), "false");
}

} // namespace
} // namespace zebcore
