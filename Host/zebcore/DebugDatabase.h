#pragma once

#include <string>

namespace zebcore::debug {

// Named switches for people who build and support the host. They last as long as the process.
class DebugDatabase {
 public:
  static DebugDatabase& Instance();

  std::string GetValue(const std::string& name, const std::string& defaultValue) const;
  void SetValue(const std::string& name, const std::string& value);
  void RemoveValue(const std::string& name);
};

} // namespace zebcore::debug
