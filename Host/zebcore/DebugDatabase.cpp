#include "zebcore/DebugDatabase.h"

#include <map>
#include <mutex>

namespace zebcore::debug {

namespace {

struct Values {
  std::mutex mutex;
  std::map<std::string, std::string> byName;
};

Values& TheValues() {
  static auto* const values = new Values;
  return *values;
}

} // namespace

DebugDatabase& DebugDatabase::Instance() {
  static DebugDatabase database;
  return database;
}

std::string DebugDatabase::GetValue(const std::string& name, const std::string& defaultValue) const {
  Values& values = TheValues();
  std::lock_guard lock(values.mutex);
  const auto found = values.byName.find(name);
  return found == values.byName.end() ? defaultValue : found->second;
}

void DebugDatabase::SetValue(const std::string& name, const std::string& value) {
  Values& values = TheValues();
  std::lock_guard lock(values.mutex);
  values.byName[name] = value;
}

void DebugDatabase::RemoveValue(const std::string& name) {
  Values& values = TheValues();
  std::lock_guard lock(values.mutex);
  values.byName.erase(name);
}

} // namespace zebcore::debug
