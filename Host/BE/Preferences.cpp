#include "BE/Preferences.h"

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>

#include <nlohmann/json.hpp>

#include "BE/UserFolders.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "zebcore/Log.h"

namespace BE {

zeb_exception::zeb_exception(const std::string& text) : std::runtime_error(text) {}
zeb_exception::~zeb_exception() = default;

exSerializeableTypeMismatch::exSerializeableTypeMismatch() : zeb_exception("SerializeableTypeMismatch") {}
exSerializeableTypeMismatch::~exSerializeableTypeMismatch() = default;

void SerializeableValueBase::ThrowTypeMismatch() {
  throw exSerializeableTypeMismatch();
}

namespace Conversion {

bool Result(const char* text, std::int64_t& value) {
  if (!text || *text == '\0')
    return false;
  char* end = nullptr;
  errno = 0;
  const long long number = std::strtoll(text, &end, 10);
  if (errno != 0 || *end != '\0')
    return false;
  value = number;
  return true;
}

bool Result(const char* text, zebmediatypes::FrameRate& value) {
  std::int64_t ticks = 0;
  if (!Result(text, ticks))
    return false;
  value = zebmediatypes::FrameRate(ticks);
  return true;
}

bool Result(const char* text, bool& value) {
  if (!text)
    return false;
  if (std::strcmp(text, "true") == 0)
    value = true;
  else if (std::strcmp(text, "false") == 0)
    value = false;
  else
    return false;
  return true;
}

} // namespace Conversion

void SerializeableValue<std::int64_t>::FromString(const char* text) {
  Conversion::Result(text, mValue);
}

void SerializeableValue<std::int64_t>::Assign(const SerializeableValueBase& other) {
  const auto* value = dynamic_cast<const SerializeableValue<std::int64_t>*>(&other);
  if (other.GetTypeNumber() != GetTypeNumber() || !value)
    ThrowTypeMismatch();
  mValue = value->mValue;
}

std::string SerializeableValue<std::int64_t>::ToString() const {
  char text[32];
  std::snprintf(text, sizeof text, "%lli", static_cast<long long>(mValue));
  return text;
}

std::unique_ptr<SerializeableValueBase> SerializeableValue<std::int64_t>::Clone() const {
  return std::make_unique<SerializeableValue<std::int64_t>>(GetTypeNumber(), mValue);
}

void SerializeableValue<zebmediatypes::FrameRate>::FromString(const char* text) {
  zebmediatypes::FrameRate rate(mValue);
  if (Conversion::Result(text, rate))
    mValue = rate.GetTicksPerFrame();
}

std::unique_ptr<SerializeableValueBase> SerializeableValue<zebmediatypes::FrameRate>::Clone() const {
  return std::make_unique<SerializeableValue<zebmediatypes::FrameRate>>(GetTypeNumber(), GetFrameRate());
}

void SerializeableValue<bool>::FromString(const char* text) {
  Conversion::Result(text, mValue);
}

void SerializeableValue<bool>::Assign(const SerializeableValueBase& other) {
  const auto* value = dynamic_cast<const SerializeableValue<bool>*>(&other);
  if (other.GetTypeNumber() != GetTypeNumber() || !value)
    ThrowTypeMismatch();
  mValue = value->mValue;
}

std::string SerializeableValue<bool>::ToString() const {
  return mValue ? "true" : "false";
}

std::unique_ptr<SerializeableValueBase> SerializeableValue<bool>::Clone() const {
  return std::make_unique<SerializeableValue<bool>>(GetTypeNumber(), mValue);
}

namespace {

using zebcore::classref::InterfaceRef;

// The user's preferences: in memory, and in one JSON file that is rewritten whole at each change.
class PreferenceStore : public IPreferenceStore {
 public:
  bool Read(const char* key, SerializeableValueBase& value) const override {
    Load();
    const auto found = mValues.find(key);
    if (found == mValues.end())
      return false;
    value.Assign(*found->second);
    return true;
  }

  void Write(const char* key, const SerializeableValueBase& value) override {
    Load();
    mValues[key] = value.Clone();
    Save();
    Report(key);
  }

  void Remove(const char* key) override {
    Load();
    if (mValues.erase(key) == 0)
      return;
    Save();
    Report(key);
  }

  void ForgetFile() {
    mInMemory = true;
    mLoaded = true;
    mValues.clear();
  }

 private:
  static std::filesystem::path GetPath() { return folders::GetConfigFolder() / "preferences.json"; }

  void Load() const {
    if (mLoaded)
      return;
    mLoaded = true;
    std::ifstream file(GetPath());
    const nlohmann::json document = nlohmann::json::parse(file, nullptr, false);
    if (!document.is_object())
      return;
    for (const auto& [key, entry] : document.items()) {
      if (!entry.is_object() || !entry.contains("type") || !entry["type"].is_number_integer() ||
          !entry.contains("value") || !entry["value"].is_string())
        continue;
      const std::string text = entry["value"].get<std::string>();
      std::int64_t number = 0;
      bool flag = false;
      const int type = entry["type"].get<int>();
      if (type == kSerializeableType_Int64 && Conversion::Result(text.c_str(), number))
        mValues[key] = std::make_unique<SerializeableValue<std::int64_t>>(type, number);
      else if (type == kSerializeableType_Bool && Conversion::Result(text.c_str(), flag))
        mValues[key] = std::make_unique<SerializeableValue<bool>>(type, flag);
    }
  }

  // A full disk costs the preference its next start, and nothing else.
  void Save() const {
    if (mInMemory)
      return;
    nlohmann::json document = nlohmann::json::object();
    for (const auto& [key, value] : mValues)
      document[key] = {{"type", value->GetTypeNumber()}, {"value", value->ToString()}};
    std::error_code error;
    const std::filesystem::path path = GetPath();
    std::filesystem::create_directories(path.parent_path(), error);
    const std::filesystem::path next = path.string() + ".new";
    {
      std::ofstream file(next);
      file << document.dump(2) << '\n';
      file.flush();
      if (!file) {
        zebcore::log::Write(zebcore::log::Level::Warning, "Preferences could not be written: " + path.string());
        return;
      }
    }
    std::filesystem::rename(next, path, error);
    if (error)
      zebcore::log::Write(zebcore::log::Level::Warning, "Preferences could not be written: " + path.string());
  }

  void Report(const char* key) {
    PropertiesChangedMessage message;
    message.records.push_back({InterfaceRef<>(this), zebcore::utility::ImmutableString(key)});
    zebcore::messaging::BroadcastMessage(kBackendPreferencesChangedStationID, message);
  }

  mutable bool mLoaded = false;
  bool mInMemory = false;
  mutable std::map<std::string, std::unique_ptr<SerializeableValueBase>> mValues;
};

class Backend : public IBackend {
 public:
  Backend() : mStore(new PreferenceStore) {}
  InterfaceRef<IPreferenceStore> GetPreferences() const override {
    return mAvailable ? InterfaceRef<IPreferenceStore>(mStore) : nullptr;
  }
  void SetAvailable(bool available) { mAvailable = available; }
  PreferenceStore& GetStore() { return *mStore; }

 private:
  InterfaceRef<PreferenceStore> mStore;
  bool mAvailable = true;
};

const InterfaceRef<Backend>& TheBackend() {
  static const InterfaceRef<Backend> backend(new Backend);
  return backend;
}

} // namespace

InterfaceRef<IBackend> GetBackend() {
  return TheBackend();
}
void SetPreferencesAvailable(bool available) {
  TheBackend()->SetAvailable(available);
}
void SetPreferencesInMemory() {
  TheBackend()->GetStore().ForgetFile();
}

} // namespace BE
