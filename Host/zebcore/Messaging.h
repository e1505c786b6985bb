#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "zebcore/ImmutableString.h"

// The host's message bus. Stations are named channels; every listener of a station receives every message that is
// broadcast there. All of it belongs to the UI thread but PostMessageToUIThread, which any thread may call.
namespace zebcore::messaging {

using MessageID = std::uint32_t;

// A stable number for a message class, never 0. Throws std::logic_error when a second name hashes to a number that is
// already taken by another one, at the moment the second is hashed.
MessageID HashMessageTypeNameToMessageID(const char* typeName);
// The name that hashed to this number; empty for a number that no name has hashed to yet.
std::string GetMessageTypeName(MessageID id);

class Message {
 public:
  virtual ~Message();
  virtual std::unique_ptr<Message> Clone() const = 0;
  MessageID GetMessageID() const noexcept { return mID; }

 protected:
  explicit Message(MessageID id) noexcept : mID(id) {}
  Message(const Message&) = default;
  Message& operator=(const Message&) = default;

 private:
  MessageID mID;
};

// The id of a message class, which names itself by a constant kTypeName with its namespace. Computed at first use.
template <class T> MessageID MessageIDOf() {
  static std::atomic<MessageID> cached{0};
  MessageID id = cached.load(std::memory_order_relaxed);
  if (id == 0) {
    id = HashMessageTypeNameToMessageID(T::kTypeName);
    cached.store(id, std::memory_order_relaxed);
  }
  return id;
}

// The message as the class asked for, or null if it is of another class.
template <class T> const T* MessageCast(const Message& message) {
  return message.GetMessageID() == MessageIDOf<T>() ? static_cast<const T*>(&message) : nullptr;
}

// The clone of a message, made for deferred delivery.
template <class T> class DynamicallyAllocatedMessage final : public T {
 public:
  explicit DynamicallyAllocatedMessage(const T& message) : T(message) {}
};

// Base of a concrete message class: struct X : MessageOf<X> { static constexpr const char* kTypeName = "N::X"; ... };
template <class T> class MessageOf : public Message {
 public:
  MessageOf() : Message(MessageIDOf<T>()) {}
  std::unique_ptr<Message> Clone() const override {
    return std::make_unique<DynamicallyAllocatedMessage<T>>(static_cast<const T&>(*this));
  }
};

// Whoever listens. A listener leaves each station that it joined; what it forgot is left for it when it goes.
class Listener {
 public:
  Listener() = default;
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  virtual ~Listener();
  virtual void HandleMessage(const Message& message) = 0;
};

// Joining a station twice is joining it once. A null station or listener is ignored by all three.
void AddListener(const utility::ImmutableString& station, Listener* listener);
void RemoveListener(const utility::ImmutableString& station, Listener* listener);

// Delivers to the station's listeners in the order in which they joined. A listener may join, leave or be destroyed
// meanwhile, itself included: one that has gone is not called any more, one that joined hears the next message. What a
// listener throws is caught here, reported (see Boundary.h), and the next listener is called.
void BroadcastMessage(const utility::ImmutableString& station, const Message& message);

// Clones the message and broadcasts the clone on the same station later, on the UI thread, in the order of posting. The
// flag asks for the clone to replace the latest undelivered one of the same class on the same station, in its place in
// the queue. A null station is ignored.
void PostMessageToUIThread(const utility::ImmutableString& station, const Message& message, bool replace);

// Delivers everything posted so far and what is posted meanwhile; returns how many messages that were. Called by the
// program's event loop, or by whoever turns the clock by hand.
std::size_t DeliverPostedMessages();

// Called, from any thread, when the queue of posted messages stops being empty, and at once if it is not empty now. It
// must not wait for another thread. Once this returns, the notifier before is not called any more.
void SetPostNotifier(std::function<void()> notifier);

std::size_t CountListeners(const utility::ImmutableString& station);
bool IsListening(const utility::ImmutableString& station, const Listener* listener);

} // namespace zebcore::messaging
