#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <stdexcept>
#include <type_traits>
#include <typeinfo>

#include <boost/core/demangle.hpp>

#include "zebcore/ImmutableString.h"

namespace zebcore::classref {

// The root of every host object. All interfaces derive virtually from it, so that an object has exactly one root, whose
// address is the object's identity. An object starts with no reference and goes with the last one.
class IObject {
 public:
  IObject() = default;
  IObject(const IObject&) = delete;
  IObject& operator=(const IObject&) = delete;

  void AddReference() const noexcept { mReferences.fetch_add(1, std::memory_order_relaxed); }
  void ReleaseReference() const noexcept {
    if (mReferences.fetch_sub(1, std::memory_order_acq_rel) == 1)
      delete this;
  }

 protected:
  virtual ~IObject() = default;

 private:
  mutable std::atomic<int> mReferences{0};
};

// What a checked dereference of a null reference throws.
class __attribute__((visibility("default"))) NullInterfaceException : public std::runtime_error {
 public:
  // The text is "A NULL interface pointer has been dereferenced: " and the interface name.
  explicit NullInterfaceException(const std::string& interfaceName);
  ~NullInterfaceException() override;
};

[[noreturn]] void ThrowNullInterface(const std::type_info& interfaceType);

// A counted reference to an interface of a host object, possibly null. Only a query and a dereference need the whole
// interface to be declared; copying, comparing and destroying do not.
template <class I = IObject> class InterfaceRef {
 public:
  InterfaceRef() noexcept = default;
  InterfaceRef(std::nullptr_t) noexcept {}
  InterfaceRef(I* object) noexcept : mInterface(object), mRoot(object) { Acquire(); }
  InterfaceRef(const InterfaceRef& other) noexcept : mInterface(other.mInterface), mRoot(other.mRoot) { Acquire(); }
  InterfaceRef(InterfaceRef&& other) noexcept : mInterface(other.mInterface), mRoot(other.mRoot) {
    other.mInterface = nullptr;
    other.mRoot = nullptr;
  }
  // To a base interface, or to the root.
  template <class J>
  requires(!std::is_same_v<I, J> && std::is_convertible_v<J*, I*>) InterfaceRef(const InterfaceRef<J>& other)
  noexcept : mInterface(other.Get()), mRoot(other.Root()) { Acquire(); }

  InterfaceRef& operator=(const InterfaceRef& other) noexcept {
    InterfaceRef copy(other);
    Swap(copy);
    return *this;
  }
  InterfaceRef& operator=(InterfaceRef&& other) noexcept {
    InterfaceRef taken(std::move(other));
    Swap(taken);
    return *this;
  }
  ~InterfaceRef() {
    if (mRoot)
      mRoot->ReleaseReference();
  }

  // Another interface of the same object; null if this is null or the object does not offer it.
  template <class J> InterfaceRef<J> Query() const {
    return mRoot ? InterfaceRef<J>(dynamic_cast<J*>(mRoot)) : InterfaceRef<J>();
  }

  // Unchecked; null for a null reference.
  I* Get() const noexcept { return mInterface; }
  // The object's identity.
  IObject* Root() const noexcept { return mRoot; }

  // Checked: throws NullInterfaceException.
  I* operator->() const {
    if (!mInterface)
      ThrowNullInterface(typeid(I));
    return mInterface;
  }
  I& operator*() const { return *operator->(); }

  explicit operator bool() const noexcept { return mRoot != nullptr; }

  void Swap(InterfaceRef& other) noexcept {
    std::swap(mInterface, other.mInterface);
    std::swap(mRoot, other.mRoot);
  }

 private:
  void Acquire() noexcept {
    if (mRoot)
      mRoot->AddReference();
  }

  I* mInterface = nullptr;
  IObject* mRoot = nullptr;
};

// Two references are the same when they lead to the same object, whatever their interfaces.
template <class I, class J> bool operator==(const InterfaceRef<I>& a, const InterfaceRef<J>& b) noexcept {
  return a.Root() == b.Root();
}
template <class I, class J> bool operator!=(const InterfaceRef<I>& a, const InterfaceRef<J>& b) noexcept {
  return a.Root() != b.Root();
}
template <class I, class J> bool operator<(const InterfaceRef<I>& a, const InterfaceRef<J>& b) noexcept {
  return std::less<const IObject*>()(a.Root(), b.Root());
}

// Class instances by id: the host's way to closed implementations.
using ClassID = utility::ImmutableString;
using ClassFactory = InterfaceRef<> (*)();
void RegisterClass(const ClassID& id, ClassFactory factory);
void UnregisterClass(const ClassID& id);
// Null for an unknown id.
InterfaceRef<> CreateClassInstanceRef(const ClassID& id);

} // namespace zebcore::classref
