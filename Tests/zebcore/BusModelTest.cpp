#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "zebcore/Messaging.h"

// The bus against a small model of it, under random joining, leaving, destroying and broadcasting, all of which happens
// inside broadcasts too.

namespace zebcore::messaging {
namespace {

constexpr int kListeners = 5;
constexpr int kStations = 3;
constexpr int kDeepest = 3;

enum class Deed { Join, Leave, Destroy, Broadcast };
struct Step {
  Deed deed = Deed::Join;
  int listener = 0;
  int station = 0;
};
// What each listener does at each of its calls, and what happens from outside.
struct Story {
  std::vector<Step> outside;
  std::vector<std::vector<Step>> inside; // one for each call, in the order of calls
};

class World {
 public:
  explicit World(const Story& story) : mStory(story) {}
  virtual ~World() = default;

  std::vector<std::string> Run() {
    for (const Step& step : mStory.outside)
      Do(step);
    return mLog;
  }

 protected:
  virtual void Join(int listener, int station) = 0;
  virtual void Leave(int listener, int station) = 0;
  virtual void Destroy(int listener) = 0; // another one takes its place at once
  virtual void Broadcast(int station) = 0;

  void Called(int listener, int station) {
    mLog.push_back(std::to_string(listener) + "@" + std::to_string(station));
    if (mCalls >= mStory.inside.size())
      return;
    for (const Step& step : mStory.inside[mCalls++])
      Do(step);
  }

 private:
  void Do(const Step& step) {
    if (step.deed == Deed::Join)
      Join(step.listener, step.station);
    else if (step.deed == Deed::Leave)
      Leave(step.listener, step.station);
    else if (step.deed == Deed::Destroy)
      Destroy(step.listener);
    else if (mDepth < kDeepest) {
      ++mDepth;
      Broadcast(step.station);
      --mDepth;
    }
  }

  const Story& mStory;
  std::size_t mCalls = 0;
  int mDepth = 0;
  std::vector<std::string> mLog;
};

// Every broadcast works through a copy of the members, and asks of each whether that very joining still stands.
class ModelWorld : public World {
 public:
  using World::World;

 protected:
  void Join(int listener, int station) override {
    for (const Member& member : mMembers)
      if (member.listener == listener && member.station == station)
        return;
    mMembers.push_back({listener, station, ++mJoinings});
  }
  void Leave(int listener, int station) override {
    std::erase_if(mMembers, [=](const Member& m) { return m.listener == listener && m.station == station; });
  }
  void Destroy(int listener) override {
    std::erase_if(mMembers, [=](const Member& m) { return m.listener == listener; });
  }
  void Broadcast(int station) override {
    for (const Member& member : std::vector<Member>(mMembers))
      if (member.station == station && Stands(member))
        Called(member.listener, station);
  }

 private:
  struct Member {
    int listener;
    int station;
    int joining;
  };
  bool Stands(const Member& member) const {
    return std::any_of(mMembers.begin(), mMembers.end(), [&](const Member& m) { return m.joining == member.joining; });
  }
  std::vector<Member> mMembers;
  int mJoinings = 0;
};

class BusWorld : public World {
 public:
  explicit BusWorld(const Story& story) : World(story) {
    for (int i = 0; i < kListeners; ++i)
      mListeners.push_back(std::make_unique<Ear>(*this, i));
  }

 protected:
  void Join(int listener, int station) override { AddListener(Name(station), At(listener)); }
  void Leave(int listener, int station) override { RemoveListener(Name(station), At(listener)); }
  void Destroy(int listener) override {
    mListeners[static_cast<std::size_t>(listener)] = std::make_unique<Ear>(*this, listener);
  }
  void Broadcast(int station) override { BroadcastMessage(Name(station), Word(station)); }

 private:
  struct Word : MessageOf<Word> {
    static constexpr const char* kTypeName = "BusModelTest::Word";
    explicit Word(int itsStation) : station(itsStation) {}
    int station;
  };
  struct Ear : Listener {
    Ear(BusWorld& itsWorld, int itsNumber) : world(itsWorld), number(itsNumber) {}
    void HandleMessage(const Message& message) override {
      // It may be gone when this returns.
      world.Called(number, MessageCast<Word>(message)->station);
    }
    BusWorld& world;
    int number;
  };
  static utility::ImmutableString Name(int station) {
    return utility::ImmutableString("BusModelTest." + std::to_string(station));
  }
  Listener* At(int listener) const { return mListeners[static_cast<std::size_t>(listener)].get(); }

  std::vector<std::unique_ptr<Ear>> mListeners;
};

rc::Gen<Step> AnyStep() {
  return rc::gen::apply(
      [](Deed deed, int listener, int station) {
        return Step{deed, listener, station};
      },
      rc::gen::weightedElement<Deed>({{4, Deed::Join}, {2, Deed::Leave}, {1, Deed::Destroy}, {3, Deed::Broadcast}}),
      rc::gen::inRange(0, kListeners), rc::gen::inRange(0, kStations));
}

RC_GTEST_PROP(BusAgainstItsModel, TheSameListenersAreCalledInTheSameOrder, ()) {
  Story story;
  story.outside = *rc::gen::container<std::vector<Step>>(AnyStep());
  story.inside = *rc::gen::container<std::vector<std::vector<Step>>>(
      rc::gen::resize(4, rc::gen::container<std::vector<Step>>(AnyStep())));
  const std::vector<std::string> expected = ModelWorld(story).Run();
  RC_CLASSIFY(expected.size() > 10);
  RC_ASSERT(BusWorld(story).Run() == expected);
}

} // namespace
} // namespace zebcore::messaging
