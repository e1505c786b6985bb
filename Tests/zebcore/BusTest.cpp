#include <stdexcept>

#include <gmock/gmock.h>

#include "zebcore/Boundary.h"
#include "zebcore/Log.h"
#include "zebcore/Messaging.h"

namespace zebcore::messaging {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using utility::ImmutableString;

struct Note : MessageOf<Note> {
  static constexpr const char* kTypeName = "BusTest::Note";
  explicit Note(int n = 0) : number(n) {}
  int number;
};

const ImmutableString kStation("BusTest.Station");
const ImmutableString kOther("BusTest.Other");

// Writes down its name for each message, then does what it was told to.
struct Hearer : Listener {
  Hearer(std::vector<std::string>& heard, std::string itsName) : log(heard), name(std::move(itsName)) {}
  void HandleMessage(const Message& message) override {
    const Note* note = MessageCast<Note>(message);
    log.push_back(name + (note && note->number ? std::to_string(note->number) : ""));
    if (const auto act = std::exchange(then, nullptr))
      act();
  }
  std::vector<std::string>& log;
  std::string name;
  std::function<void()> then; // once
};

struct Bus : testing::Test {
  std::vector<std::string> heard;
  Hearer a{heard, "a"};
  Hearer b{heard, "b"};
  Hearer c{heard, "c"};

  void JoinAll() {
    for (Hearer* hearer : {&a, &b, &c})
      AddListener(kStation, hearer);
  }
  std::vector<std::string> Broadcast(int number = 0, const ImmutableString& station = kStation) {
    BroadcastMessage(station, Note(number));
    return std::exchange(heard, {});
  }
};

TEST_F(Bus, ListenersAreCalledInJoiningOrder) {
  AddListener(kStation, &b);
  AddListener(kStation, &c);
  AddListener(kStation, &a);
  EXPECT_THAT(Broadcast(), ElementsAre("b", "c", "a"));
}

TEST_F(Bus, OnlyTheStationsOwnListenersHearAMessage) {
  AddListener(kStation, &a);
  AddListener(kOther, &b);
  EXPECT_THAT(Broadcast(0, kOther), ElementsAre("b"));
}

TEST_F(Bus, AStationIsKnownByItsTextNotByItsObject) {
  AddListener(kStation, &a);
  EXPECT_THAT(Broadcast(0, ImmutableString(std::string("BusTest.") + "Station")), ElementsAre("a"));
}

TEST_F(Bus, JoiningTwiceIsJoiningOnceAtTheFirstPlace) {
  JoinAll();
  AddListener(kStation, &a);
  EXPECT_THAT(Broadcast(), ElementsAre("a", "b", "c"));
  EXPECT_EQ(CountListeners(kStation), 3u);
  RemoveListener(kStation, &a);
  EXPECT_FALSE(IsListening(kStation, &a));
}

TEST_F(Bus, WhoLeavesAndJoinsAgainComesLast) {
  JoinAll();
  RemoveListener(kStation, &a);
  AddListener(kStation, &a);
  EXPECT_THAT(Broadcast(), ElementsAre("b", "c", "a"));
}

TEST_F(Bus, AListenerMayBeOnSeveralStationsAndLeavesThemOneByOne) {
  AddListener(kStation, &a);
  AddListener(kOther, &a);
  RemoveListener(kStation, &a);
  EXPECT_THAT(Broadcast(), IsEmpty());
  EXPECT_THAT(Broadcast(0, kOther), ElementsAre("a"));
}

TEST_F(Bus, AListenerThatHasLeftAllFourOfItsStationsHearsNothingAnyMore) {
  const ImmutableString stations[] = {"BusTest.In", "BusTest.Out", "BusTest.InEdit", "BusTest.OutEdit"};
  for (const ImmutableString& station : stations)
    AddListener(station, &a);
  for (const ImmutableString& station : stations)
    RemoveListener(station, &a);
  for (const ImmutableString& station : stations) {
    EXPECT_THAT(Broadcast(0, station), IsEmpty());
    EXPECT_EQ(CountListeners(station), 0u);
  }
}

TEST_F(Bus, LeavingAStationThatWasNeverJoinedDoesNothing) {
  AddListener(kStation, &a);
  RemoveListener(kStation, &b);
  RemoveListener(kOther, &a);
  EXPECT_THAT(Broadcast(), ElementsAre("a"));
}

TEST_F(Bus, AMessageOnAStationWithoutListenersIsLost) {
  EXPECT_THAT(Broadcast(), IsEmpty());
  AddListener(kStation, &a);
  EXPECT_THAT(heard, IsEmpty());
}

TEST_F(Bus, ANullStationOrListenerIsIgnored) {
  const ImmutableString null;
  AddListener(null, &a);
  AddListener(kStation, nullptr);
  RemoveListener(null, &a);
  RemoveListener(kStation, nullptr);
  EXPECT_EQ(CountListeners(null), 0u);
  EXPECT_EQ(CountListeners(kStation), 0u);
  EXPECT_THAT(Broadcast(0, null), IsEmpty());
}

TEST_F(Bus, TheEmptyTextIsAStationLikeAnyOther) {
  AddListener("", &a);
  EXPECT_THAT(Broadcast(0, ""), ElementsAre("a"));
}

TEST_F(Bus, AListenerThatLeavesDuringABroadcastIsNotCalledAnyMore) {
  JoinAll();
  a.then = [this] { RemoveListener(kStation, &b); };
  EXPECT_THAT(Broadcast(), ElementsAre("a", "c"));
}

TEST_F(Bus, AListenerMayLeaveWhileItIsCalled) {
  JoinAll();
  b.then = [this] { RemoveListener(kStation, &b); };
  EXPECT_THAT(Broadcast(), ElementsAre("a", "b", "c"));
  EXPECT_THAT(Broadcast(), ElementsAre("a", "c"));
}

TEST_F(Bus, AllMayLeaveWhileTheFirstIsCalled) {
  JoinAll();
  a.then = [this] {
    for (Hearer* hearer : {&a, &b, &c})
      RemoveListener(kStation, hearer);
  };
  EXPECT_THAT(Broadcast(), ElementsAre("a"));
  EXPECT_EQ(CountListeners(kStation), 0u);
  AddListener(kStation, &c);
  EXPECT_THAT(Broadcast(), ElementsAre("c"));
}

TEST_F(Bus, AListenerThatJoinsDuringABroadcastHearsTheNextMessage) {
  AddListener(kStation, &a);
  a.then = [this] { AddListener(kStation, &b); };
  EXPECT_THAT(Broadcast(), ElementsAre("a"));
  EXPECT_THAT(Broadcast(), ElementsAre("a", "b"));
}

TEST_F(Bus, AListenerThatLeavesAndJoinsAgainDuringABroadcastHearsTheNextMessage) {
  JoinAll();
  a.then = [this] {
    RemoveListener(kStation, &b);
    AddListener(kStation, &b);
  };
  EXPECT_THAT(Broadcast(), ElementsAre("a", "c"));
  EXPECT_THAT(Broadcast(), ElementsAre("a", "c", "b"));
}

TEST_F(Bus, WhenAllLeaveAndJoinAgainDuringABroadcastNobodyHearsItTwice) {
  JoinAll();
  a.then = [this] {
    for (Hearer* hearer : {&a, &b, &c})
      RemoveListener(kStation, hearer);
    JoinAll();
  };
  EXPECT_THAT(Broadcast(), ElementsAre("a"));
  EXPECT_THAT(Broadcast(), ElementsAre("a", "b", "c"));
}

TEST_F(Bus, AListenerMayDestroyAnotherThatIsStillToBeCalled) {
  AddListener(kStation, &a);
  auto doomed = std::make_unique<Hearer>(heard, "doomed");
  AddListener(kStation, doomed.get());
  AddListener(kStation, &c);
  a.then = [&doomed] { doomed.reset(); };
  EXPECT_THAT(Broadcast(), ElementsAre("a", "c"));
}

TEST_F(Bus, AListenerMayDestroyAnotherThatWasCalledAlready) {
  auto doomed = std::make_unique<Hearer>(heard, "doomed");
  AddListener(kStation, doomed.get());
  AddListener(kStation, &b);
  AddListener(kStation, &c);
  b.then = [&doomed] { doomed.reset(); };
  EXPECT_THAT(Broadcast(), ElementsAre("doomed", "b", "c"));
}

TEST_F(Bus, AListenerMayDestroyItself) {
  AddListener(kStation, &a);
  auto* doomed = new Hearer(heard, "doomed");
  AddListener(kStation, doomed);
  AddListener(kOther, doomed);
  AddListener(kStation, &c);
  doomed->then = [doomed] { delete doomed; };
  EXPECT_THAT(Broadcast(), ElementsAre("a", "doomed", "c"));
  EXPECT_THAT(Broadcast(), ElementsAre("a", "c"));
  EXPECT_THAT(Broadcast(0, kOther), IsEmpty());
}

TEST_F(Bus, AListenerThatGoesLeavesTheStationsThatItForgot) {
  {
    Hearer forgetful(heard, "forgetful");
    AddListener(kStation, &forgetful);
    AddListener(kOther, &forgetful);
    RemoveListener(kOther, &forgetful);
    EXPECT_EQ(CountListeners(kStation), 1u);
  }
  EXPECT_EQ(CountListeners(kStation), 0u);
  EXPECT_THAT(Broadcast(), IsEmpty());
}

TEST_F(Bus, ANewListenerAtTheAddressOfOneThatWentDuringTheBroadcastHearsTheNextMessage) {
  alignas(Hearer) unsigned char place[sizeof(Hearer)];
  AddListener(kStation, &a);
  auto* first = new (place) Hearer(heard, "first");
  AddListener(kStation, first);
  Hearer* second = nullptr;
  a.then = [&] {
    first->~Hearer();
    second = new (place) Hearer(heard, "second");
    AddListener(kStation, second);
  };
  EXPECT_THAT(Broadcast(), ElementsAre("a"));
  EXPECT_THAT(Broadcast(), ElementsAre("a", "second"));
  second->~Hearer();
}

TEST_F(Bus, ABroadcastInsideABroadcastIsDeliveredAtOnce) {
  JoinAll();
  b.then = [] { BroadcastMessage(kStation, Note(2)); };
  EXPECT_THAT(Broadcast(1), ElementsAre("a1", "b1", "a2", "b2", "c2", "c1"));
}

TEST_F(Bus, AListenerThatLeavesInsideANestedBroadcastIsCalledByNeither) {
  JoinAll();
  a.then = [this] {
    b.then = [this] { RemoveListener(kStation, &c); };
    BroadcastMessage(kStation, Note(2));
  };
  EXPECT_THAT(Broadcast(1), ElementsAre("a1", "a2", "b2", "b1"));
}

TEST_F(Bus, AListenerThatIsDestroyedInsideANestedBroadcastIsCalledByNeither) {
  auto doomed = std::make_unique<Hearer>(heard, "doomed");
  AddListener(kStation, &a);
  AddListener(kStation, doomed.get());
  AddListener(kStation, &c);
  a.then = [&] {
    a.then = [&] { doomed.reset(); };
    BroadcastMessage(kStation, Note(2));
  };
  EXPECT_THAT(Broadcast(1), ElementsAre("a1", "a2", "c2", "c1"));
}

TEST_F(Bus, OneThatJoinsDuringABroadcastHearsTheNestedOneThatFollows) {
  AddListener(kStation, &a);
  a.then = [this] {
    AddListener(kStation, &b);
    BroadcastMessage(kStation, Note(2));
  };
  EXPECT_THAT(Broadcast(1), ElementsAre("a1", "a2", "b2"));
}

TEST_F(Bus, TheStationsNameMayGoWithTheListenerThatOwnedIt) {
  struct Owner : Hearer {
    using Hearer::Hearer;
    ImmutableString station{std::string_view("BusTest.Owned")};
  };
  auto owner = std::make_unique<Owner>(heard, "owner");
  AddListener(owner->station, owner.get());
  AddListener(owner->station, &b);
  owner->then = [&owner] { owner.reset(); };
  BroadcastMessage(owner->station, Note());
  EXPECT_THAT(heard, ElementsAre("owner", "b"));
}

TEST_F(Bus, WhatAListenerThrowsIsReportedAndTheNextIsCalled) {
  std::vector<std::string> lines;
  log::SetSink([&lines](log::Level, std::string_view text) { lines.emplace_back(text); });
  boundary::TakeReports();
  JoinAll();
  a.then = [] { throw std::out_of_range("too far"); };
  EXPECT_THAT(Broadcast(), ElementsAre("a", "b", "c"));
  log::SetSink(nullptr);

  const auto reports = boundary::TakeReports();
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].where, "messaging::BroadcastMessage");
  EXPECT_EQ(reports[0].type, "std::out_of_range");
  EXPECT_EQ(reports[0].text, "too far");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_NE(lines[0].find("too far"), std::string::npos);
}

TEST_F(Bus, WhatIsThrownInANestedBroadcastDoesNotEndTheOuterOne) {
  log::SetSink([](log::Level, std::string_view) {});
  JoinAll();
  a.then = [this] {
    b.then = [] { throw 5; };
    BroadcastMessage(kStation, Note(2));
  };
  EXPECT_THAT(Broadcast(1), ElementsAre("a1", "a2", "b2", "c2", "b1", "c1"));
  log::SetSink(nullptr);
  const auto reports = boundary::TakeReports();
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].type, "int");
}

TEST_F(Bus, ManyListenersOnOneStationAndManyStationsOfOneListenerAllComeAndGo) {
  constexpr std::size_t kMany = 20000;
  std::vector<std::unique_ptr<Hearer>> crowd;
  for (std::size_t i = 0; i < kMany; ++i) {
    crowd.push_back(std::make_unique<Hearer>(heard, "x"));
    AddListener(kStation, crowd.back().get());
    AddListener(ImmutableString("BusTest.Own" + std::to_string(i)), &a);
  }
  EXPECT_EQ(CountListeners(kStation), kMany);
  EXPECT_EQ(Broadcast().size(), kMany);
  for (std::size_t i = 0; i < kMany; i += 2)
    crowd[i].reset();
  EXPECT_EQ(Broadcast().size(), kMany / 2);
  for (std::size_t i = 0; i < kMany; ++i)
    RemoveListener(ImmutableString("BusTest.Own" + std::to_string(i)), &a);
  EXPECT_FALSE(IsListening("BusTest.Own7", &a));
}

} // namespace
} // namespace zebcore::messaging
