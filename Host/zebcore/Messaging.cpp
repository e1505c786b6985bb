#include "zebcore/Messaging.h"

#include <deque>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <typeinfo>
#include <unordered_map>
#include <utility>
#include <vector>

#include <boost/core/demangle.hpp>
#include <boost/functional/hash.hpp>
#include <boost/intrusive/list.hpp>

#include "zebcore/Boundary.h"
#include "zebcore/Trace.h"

namespace zebcore::messaging {

namespace {

namespace bi = boost::intrusive;
using utility::ImmutableString;

struct Station;

// One listener on one station. It hangs in the station's list, in joining order, and in the listener's.
struct Membership {
  Station* station = nullptr;
  Listener* listener = nullptr;
  std::uint64_t number = 0; // counts all joinings
  bi::list_member_hook<bi::link_mode<bi::auto_unlink>> inStation;
  bi::list_member_hook<bi::link_mode<bi::auto_unlink>> inListener;
};

template <auto Hook>
using MembershipList =
    bi::list<Membership, bi::member_hook<Membership, bi::list_member_hook<bi::link_mode<bi::auto_unlink>>, Hook>,
             bi::constant_time_size<false>>;
using StationMembers = MembershipList<&Membership::inStation>;
using ListenerMembers = MembershipList<&Membership::inListener>;

// Where a broadcast stands: the member to be called next. Whoever takes a member away moves the cursors on.
struct Cursor {
  StationMembers::iterator next;
  Cursor* outer = nullptr;
};

struct Station {
  ImmutableString name;
  StationMembers members;
  std::size_t count = 0;
  Cursor* cursors = nullptr;
};

using MembershipKey = std::pair<const Station*, const Listener*>;

class Bus {
 public:
  static Bus& Instance() {
    static auto* const bus = new Bus; // listeners with static lifetime leave after main
    return *bus;
  }

  void Join(const ImmutableString& name, Listener* listener) {
    Station& station = mStations[name];
    station.name = name;
    const auto [place, isNew] = mMemberships.try_emplace({&station, listener});
    if (!isNew)
      return;
    Membership& member = place->second;
    member.station = &station;
    member.listener = listener;
    member.number = ++mJoinings;
    station.members.push_back(member);
    ++station.count;
    mListeners[listener].push_back(member);
  }

  void Leave(const ImmutableString& name, Listener* listener) {
    const auto station = mStations.find(name);
    if (station == mStations.end())
      return;
    const auto member = mMemberships.find({&station->second, listener});
    if (member == mMemberships.end())
      return;
    Remove(member->second);
    const auto rest = mListeners.find(listener);
    if (rest->second.empty())
      mListeners.erase(rest);
  }

  void LeaveAll(Listener* listener) {
    const auto found = mListeners.find(listener);
    if (found == mListeners.end())
      return;
    while (!found->second.empty())
      Remove(found->second.front());
    mListeners.erase(found);
  }

  void Deliver(const ImmutableString& name, const Message& message) {
    const auto found = mStations.find(name);
    if (found == mStations.end())
      return;
    Station& station = found->second;
    const std::uint64_t last = mJoinings; // who joins from here on hears the next message
    Cursor cursor{station.members.begin(), station.cursors};
    station.cursors = &cursor;
    while (cursor.next != station.members.end() && cursor.next->number <= last) {
      Listener* const listener = (cursor.next++)->listener;
      boundary::Guard("messaging::BroadcastMessage", [&] { listener->HandleMessage(message); });
    }
    station.cursors = cursor.outer;
    ForgetIfIdle(station);
  }

  const Station* Find(const ImmutableString& name) const {
    const auto found = mStations.find(name);
    return found == mStations.end() ? nullptr : &found->second;
  }

  bool IsMember(const Station* station, const Listener* listener) const {
    return mMemberships.contains({station, listener});
  }

 private:
  void Remove(Membership& member) {
    Station& station = *member.station;
    const auto place = station.members.iterator_to(member);
    for (Cursor* cursor = station.cursors; cursor; cursor = cursor->outer)
      if (cursor->next == place)
        ++cursor->next;
    --station.count;
    mMemberships.erase({&station, member.listener}); // unlinks itself
    ForgetIfIdle(station);
  }

  void ForgetIfIdle(Station& station) {
    if (station.members.empty() && !station.cursors)
      mStations.erase(ImmutableString(station.name));
  }

  std::unordered_map<ImmutableString, Station> mStations;
  std::unordered_map<MembershipKey, Membership, boost::hash<MembershipKey>> mMemberships;
  std::unordered_map<const Listener*, ListenerMembers> mListeners;
  std::uint64_t mJoinings = 0;
};

struct TypeNames {
  std::mutex mutex;
  std::unordered_map<MessageID, std::string> byID;
};

TypeNames& TheTypeNames() {
  static auto* const names = new TypeNames;
  return *names;
}

// FNV-1a. The prime stands in for 0, which means "not computed yet" to whoever caches ids.
MessageID HashName(std::string_view name) {
  constexpr MessageID kOffsetBasis = 2166136261u;
  constexpr MessageID kPrime = 16777619u;
  MessageID hash = kOffsetBasis;
  for (const char c : name)
    hash = (hash ^ static_cast<unsigned char>(c)) * kPrime;
  return hash != 0 ? hash : kPrime;
}

struct Posted {
  ImmutableString station;
  std::unique_ptr<Message> message;
};

using PostedKey = std::pair<ImmutableString, MessageID>;
struct PostedKeyHash {
  std::size_t operator()(const PostedKey& key) const noexcept {
    std::size_t seed = key.first.Hash();
    boost::hash_combine(seed, key.second);
    return seed;
  }
};

class PostQueue {
 public:
  static PostQueue& Instance() {
    static auto* const queue = new PostQueue;
    return *queue;
  }

  void Post(const ImmutableString& station, const Message& message, bool replace) {
    std::unique_ptr<Message> clone = message.Clone();
    const PostedKey key(station, message.GetMessageID());
    bool wasEmpty = false;
    {
      std::lock_guard lock(mMutex);
      const auto [latest, isNew] = mLatest.try_emplace(key, mFirst + mQueue.size());
      if (replace && !isNew) {
        // What it refers to may belong to the UI thread, so it ends there.
        std::swap(mQueue[latest->second - mFirst].message, clone);
        mReplaced.push_back(std::move(clone));
        return;
      }
      wasEmpty = mQueue.empty();
      latest->second = mFirst + mQueue.size();
      mQueue.push_back({station, std::move(clone)});
    }
    if (wasEmpty)
      Notify();
  }

  std::optional<Posted> TakeFirst() {
    std::vector<std::unique_ptr<Message>> replaced; // destroyed after the lock is given back
    std::lock_guard lock(mMutex);
    replaced.swap(mReplaced);
    if (mQueue.empty())
      return std::nullopt;
    Posted first = std::move(mQueue.front());
    const auto latest = mLatest.find({first.station, first.message->GetMessageID()});
    if (latest != mLatest.end() && latest->second == mFirst)
      mLatest.erase(latest);
    mQueue.pop_front();
    ++mFirst;
    return first;
  }

  void SetNotifier(std::function<void()> notifier) {
    {
      std::lock_guard lock(mNotifierMutex);
      mNotifier.swap(notifier);
    }
    bool isEmpty = false;
    {
      std::lock_guard lock(mMutex);
      isEmpty = mQueue.empty();
    }
    if (!isEmpty)
      Notify();
  }

 private:
  void Notify() {
    std::lock_guard lock(mNotifierMutex);
    if (mNotifier)
      mNotifier();
  }

  std::mutex mMutex;
  std::deque<Posted> mQueue;
  std::uint64_t mFirst = 0; // number of the first in the queue
  std::unordered_map<PostedKey, std::uint64_t, PostedKeyHash> mLatest;
  std::vector<std::unique_ptr<Message>> mReplaced;
  std::recursive_mutex mNotifierMutex; // a notifier may post
  std::function<void()> mNotifier;
};

std::string ClassOf(const Listener& listener) {
  return boost::core::demangle(typeid(listener).name());
}

std::string ClassOf(const Message& message) {
  std::string name = GetMessageTypeName(message.GetMessageID());
  return name.empty() ? boost::core::demangle(typeid(message).name()) : name;
}

} // namespace

MessageID HashMessageTypeNameToMessageID(const char* typeName) {
  if (!typeName)
    throw std::logic_error("A message class without a name");
  const MessageID id = HashName(typeName);
  TypeNames& names = TheTypeNames();
  std::lock_guard lock(names.mutex);
  const auto [known, isNew] = names.byID.try_emplace(id, typeName);
  if (!isNew && known->second != typeName)
    throw std::logic_error("Two message classes share one id: " + known->second + " and " + typeName);
  return id;
}

std::string GetMessageTypeName(MessageID id) {
  TypeNames& names = TheTypeNames();
  std::lock_guard lock(names.mutex);
  const auto found = names.byID.find(id);
  return found == names.byID.end() ? std::string() : found->second;
}

Message::~Message() = default;

Listener::~Listener() {
  Bus::Instance().LeaveAll(this);
}

void AddListener(const ImmutableString& station, Listener* listener) {
  if (station.IsNull() || !listener)
    return;
  if (trace::IsOn())
    trace::Record("messaging::AddListener", {{"station", station.Text()}, {"listener", ClassOf(*listener)}});
  Bus::Instance().Join(station, listener);
}

void RemoveListener(const ImmutableString& station, Listener* listener) {
  if (station.IsNull() || !listener)
    return;
  if (trace::IsOn())
    trace::Record("messaging::RemoveListener", {{"station", station.Text()}, {"listener", ClassOf(*listener)}});
  Bus::Instance().Leave(station, listener);
}

void BroadcastMessage(const ImmutableString& station, const Message& message) {
  if (station.IsNull())
    return;
  if (trace::IsOn())
    trace::Record("messaging::BroadcastMessage", {{"station", station.Text()}, {"message", ClassOf(message)}});
  Bus::Instance().Deliver(station, message);
}

void PostMessageToUIThread(const ImmutableString& station, const Message& message, bool replace) {
  if (station.IsNull())
    return;
  if (trace::IsOn())
    trace::Record("messaging::PostMessageToUIThread",
                  {{"station", station.Text()}, {"message", ClassOf(message)}, {"replace", replace}});
  PostQueue::Instance().Post(station, message, replace);
}

std::size_t DeliverPostedMessages() {
  std::size_t delivered = 0;
  while (const std::optional<Posted> posted = PostQueue::Instance().TakeFirst()) {
    Bus::Instance().Deliver(posted->station, *posted->message);
    ++delivered;
  }
  return delivered;
}

void SetPostNotifier(std::function<void()> notifier) {
  PostQueue::Instance().SetNotifier(std::move(notifier));
}

std::size_t CountListeners(const ImmutableString& station) {
  const Station* found = Bus::Instance().Find(station);
  return found ? found->count : 0;
}

bool IsListening(const ImmutableString& station, const Listener* listener) {
  const Station* found = Bus::Instance().Find(station);
  return found && Bus::Instance().IsMember(found, listener);
}

} // namespace zebcore::messaging
