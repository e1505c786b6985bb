#include "zebcore/InterfaceRef.h"

#include <map>
#include <mutex>

namespace zebcore::classref {

namespace {

struct Registry {
  std::mutex mutex;
  std::map<ClassID, ClassFactory> factories;
};

// Factories are registered while objects are being loaded and unloaded, so it is there first and goes never.
Registry& TheRegistry() {
  static auto* const registry = new Registry;
  return *registry;
}

} // namespace

NullInterfaceException::NullInterfaceException(const std::string& interfaceName)
    : std::runtime_error("A NULL interface pointer has been dereferenced: " + interfaceName) {}
NullInterfaceException::~NullInterfaceException() = default;

void ThrowNullInterface(const std::type_info& interfaceType) {
  throw NullInterfaceException(boost::core::demangle(interfaceType.name()));
}

void RegisterClass(const ClassID& id, ClassFactory factory) {
  if (id.IsNull() || !factory)
    return;
  Registry& registry = TheRegistry();
  std::lock_guard lock(registry.mutex);
  registry.factories[id] = factory;
}

void UnregisterClass(const ClassID& id) {
  Registry& registry = TheRegistry();
  std::lock_guard lock(registry.mutex);
  registry.factories.erase(id);
}

InterfaceRef<> CreateClassInstanceRef(const ClassID& id) {
  ClassFactory factory = nullptr;
  {
    Registry& registry = TheRegistry();
    std::lock_guard lock(registry.mutex);
    if (const auto found = registry.factories.find(id); found != registry.factories.end())
      factory = found->second;
  }
  return factory ? factory() : InterfaceRef<>();
}

} // namespace zebcore::classref
