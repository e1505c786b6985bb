#include <atomic>
#include <stdexcept>
#include <thread>

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
  static constexpr const char* kTypeName = "PostTest::Note";
  explicit Note(int n) : number(n) {}
  int number;
};
struct Tag : MessageOf<Tag> {
  static constexpr const char* kTypeName = "PostTest::Tag";
  explicit Tag(int n) : number(n) {}
  int number;
};
// Counts how many of its kind live.
struct Counted : MessageOf<Counted> {
  static constexpr const char* kTypeName = "PostTest::Counted";
  Counted() { ++alive; }
  Counted(const Counted& other) : MessageOf(other) { ++alive; }
  ~Counted() override {
    --alive;
    diedOn = std::this_thread::get_id();
  }
  static inline int alive = 0;
  static inline std::thread::id diedOn;
};

struct Recorder : Listener {
  explicit Recorder(std::vector<std::string>& heard, std::string itsName = {}) : log(heard), name(std::move(itsName)) {}
  void HandleMessage(const Message& message) override {
    if (const Note* note = MessageCast<Note>(message))
      log.push_back(name + "note" + std::to_string(note->number));
    else if (const Tag* tag = MessageCast<Tag>(message))
      log.push_back(name + "tag" + std::to_string(tag->number));
    if (const auto act = std::exchange(then, nullptr))
      act();
  }
  std::vector<std::string>& log;
  std::string name;
  std::function<void()> then;
};

const ImmutableString kStation("PostTest.Station");
const ImmutableString kOther("PostTest.Other");

struct PostedMessages : testing::Test {
  PostedMessages() { AddListener(kStation, &listener); }
  ~PostedMessages() override {
    SetPostNotifier(nullptr);
    DeliverPostedMessages();
  }
  std::vector<std::string> heard;
  Recorder listener{heard};
};

TEST_F(PostedMessages, AreDeliveredLaterNotAtOnce) {
  PostMessageToUIThread(kStation, Note(1), false);
  EXPECT_THAT(heard, IsEmpty());
  EXPECT_EQ(DeliverPostedMessages(), 1u);
  EXPECT_THAT(heard, ElementsAre("note1"));
  EXPECT_EQ(DeliverPostedMessages(), 0u);
}

TEST_F(PostedMessages, AreDeliveredInTheOrderOfPosting) {
  PostMessageToUIThread(kStation, Note(1), false);
  PostMessageToUIThread(kStation, Tag(2), false);
  PostMessageToUIThread(kStation, Note(3), false);
  EXPECT_EQ(DeliverPostedMessages(), 3u);
  EXPECT_THAT(heard, ElementsAre("note1", "tag2", "note3"));
}

TEST_F(PostedMessages, KeepTheirStationAndTheirFieldsWhenTheSendersFrameIsGone) {
  Recorder other(heard, "other:");
  AddListener(kOther, &other);
  {
    const auto station = std::make_unique<ImmutableString>(std::string_view("PostTest.Other"));
    const auto message = std::make_unique<Note>(7);
    PostMessageToUIThread(*station, *message, false);
    message->number = 8;
  }
  DeliverPostedMessages();
  EXPECT_THAT(heard, ElementsAre("other:note7"));
}

TEST_F(PostedMessages, AreDeliveredAsTheClassThatTheyWere) {
  struct Check : Listener {
    void HandleMessage(const Message& message) override {
      isTheClass = dynamic_cast<const Note*>(&message) != nullptr &&
                   dynamic_cast<const DynamicallyAllocatedMessage<Note>*>(&message) != nullptr;
    }
    bool isTheClass = false;
  } check;
  AddListener(kStation, &check);
  PostMessageToUIThread(kStation, Note(1), false);
  DeliverPostedMessages();
  EXPECT_TRUE(check.isTheClass);
}

TEST_F(PostedMessages, ReachWhoeverListensWhenTheyAreDelivered) {
  Recorder late(heard, "late:");
  PostMessageToUIThread(kStation, Note(1), false);
  RemoveListener(kStation, &listener);
  AddListener(kStation, &late);
  DeliverPostedMessages();
  EXPECT_THAT(heard, ElementsAre("late:note1"));
}

TEST_F(PostedMessages, OneThatIsPostedDuringDeliveryIsDeliveredToo) {
  listener.then = [] { PostMessageToUIThread(kStation, Note(2), false); };
  PostMessageToUIThread(kStation, Note(1), false);
  EXPECT_EQ(DeliverPostedMessages(), 2u);
  EXPECT_THAT(heard, ElementsAre("note1", "note2"));
}

TEST_F(PostedMessages, ADeliveryInsideADeliveryGoesOnWithTheNext) {
  listener.then = [] { DeliverPostedMessages(); };
  for (int i = 1; i <= 3; ++i)
    PostMessageToUIThread(kStation, Note(i), false);
  EXPECT_EQ(DeliverPostedMessages(), 1u);
  EXPECT_THAT(heard, ElementsAre("note1", "note2", "note3"));
}

TEST_F(PostedMessages, AReplacingOneTakesThePlaceOfTheUndeliveredOneOfItsClassAndStation) {
  PostMessageToUIThread(kStation, Note(1), true);
  PostMessageToUIThread(kStation, Tag(2), true);
  PostMessageToUIThread(kStation, Note(3), true);
  EXPECT_EQ(DeliverPostedMessages(), 2u);
  EXPECT_THAT(heard, ElementsAre("note3", "tag2"));
}

TEST_F(PostedMessages, AReplacingOneReplacesTheLatestOfSeveral) {
  PostMessageToUIThread(kStation, Note(1), false);
  PostMessageToUIThread(kStation, Note(2), false);
  PostMessageToUIThread(kStation, Note(3), true);
  DeliverPostedMessages();
  EXPECT_THAT(heard, ElementsAre("note1", "note3"));
}

TEST_F(PostedMessages, AReplacingOneLeavesOtherStationsAlone) {
  Recorder other(heard, "other:");
  AddListener(kOther, &other);
  PostMessageToUIThread(kStation, Note(1), true);
  PostMessageToUIThread(kOther, Note(2), true);
  DeliverPostedMessages();
  EXPECT_THAT(heard, ElementsAre("note1", "other:note2"));
}

TEST_F(PostedMessages, AReplacingOneIsPostedWhenTheOneBeforeIsBeingDelivered) {
  listener.then = [] { PostMessageToUIThread(kStation, Note(2), true); };
  PostMessageToUIThread(kStation, Note(1), true);
  EXPECT_EQ(DeliverPostedMessages(), 2u);
  EXPECT_THAT(heard, ElementsAre("note1", "note2"));
}

TEST_F(PostedMessages, WithoutReplacingAllAreDelivered) {
  PostMessageToUIThread(kStation, Note(1), true);
  PostMessageToUIThread(kStation, Note(2), false);
  DeliverPostedMessages();
  EXPECT_THAT(heard, ElementsAre("note1", "note2"));
}

TEST_F(PostedMessages, AReplacedOneEndsOnTheThreadThatDelivers) {
  PostMessageToUIThread(kStation, Counted(), true);
  std::thread([] { PostMessageToUIThread(kStation, Counted(), true); }).join();
  EXPECT_EQ(Counted::alive, 2);
  DeliverPostedMessages();
  EXPECT_EQ(Counted::alive, 0);
  EXPECT_EQ(Counted::diedOn, std::this_thread::get_id());
}

TEST_F(PostedMessages, ANullStationTakesNone) {
  PostMessageToUIThread(ImmutableString(), Note(1), false);
  EXPECT_EQ(DeliverPostedMessages(), 0u);
}

TEST_F(PostedMessages, WhatAListenerThrowsDoesNotKeepTheOthersFromDelivery) {
  log::SetSink([](log::Level, std::string_view) {});
  listener.then = [] { throw std::runtime_error("no"); };
  PostMessageToUIThread(kStation, Note(1), false);
  PostMessageToUIThread(kStation, Note(2), false);
  EXPECT_EQ(DeliverPostedMessages(), 2u);
  EXPECT_THAT(heard, ElementsAre("note1", "note2"));
  log::SetSink(nullptr);
  EXPECT_EQ(boundary::TakeReports().size(), 1u);
}

TEST_F(PostedMessages, FromManyThreadsAllArriveEachThreadsInItsOrder) {
  constexpr int kThreads = 4;
  constexpr int kEach = 2000;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([t] {
      for (int i = 0; i < kEach; ++i)
        PostMessageToUIThread(ImmutableString("PostTest.Thread" + std::to_string(t)), Note(i), false);
    });
  std::vector<std::vector<std::string>> heardBy(kThreads);
  std::vector<std::unique_ptr<Recorder>> recorders;
  for (int t = 0; t < kThreads; ++t) {
    recorders.push_back(std::make_unique<Recorder>(heardBy[static_cast<std::size_t>(t)]));
    AddListener(ImmutableString("PostTest.Thread" + std::to_string(t)), recorders.back().get());
  }
  std::size_t delivered = 0;
  while (delivered < 100)
    delivered += DeliverPostedMessages();
  for (std::thread& thread : threads)
    thread.join();
  delivered += DeliverPostedMessages();
  EXPECT_EQ(delivered, static_cast<std::size_t>(kThreads * kEach));
  for (const auto& log : heardBy) {
    ASSERT_EQ(log.size(), static_cast<std::size_t>(kEach));
    for (int i = 0; i < kEach; ++i)
      ASSERT_EQ(log[static_cast<std::size_t>(i)], "note" + std::to_string(i));
  }
}

TEST_F(PostedMessages, TheNotifierIsCalledOnceUntilTheQueueIsEmptyAgain) {
  int calls = 0;
  SetPostNotifier([&calls] { ++calls; });
  PostMessageToUIThread(kStation, Note(1), false);
  PostMessageToUIThread(kStation, Note(2), false);
  PostMessageToUIThread(kStation, Note(3), true);
  EXPECT_EQ(calls, 1);
  DeliverPostedMessages();
  PostMessageToUIThread(kStation, Note(4), false);
  EXPECT_EQ(calls, 2);
}

TEST_F(PostedMessages, ANotifierThatComesLateIsToldOfWhatWaits) {
  PostMessageToUIThread(kStation, Note(1), false);
  int calls = 0;
  SetPostNotifier([&calls] { ++calls; });
  EXPECT_EQ(calls, 1);
}

TEST_F(PostedMessages, TheNotifierIsCalledOnTheThreadThatPosts) {
  std::thread::id calledOn;
  SetPostNotifier([&calledOn] { calledOn = std::this_thread::get_id(); });
  std::thread poster([] { PostMessageToUIThread(kStation, Note(1), false); });
  const std::thread::id posterID = poster.get_id();
  poster.join();
  EXPECT_EQ(calledOn, posterID);
}

TEST_F(PostedMessages, ANotifierMayPost) {
  SetPostNotifier([] { PostMessageToUIThread(kStation, Note(2), false); });
  PostMessageToUIThread(kStation, Note(1), false);
  SetPostNotifier(nullptr);
  EXPECT_EQ(DeliverPostedMessages(), 2u);
}

} // namespace
} // namespace zebcore::messaging
